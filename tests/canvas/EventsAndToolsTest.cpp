#include "CanvasSupport.h"

#include "canvas/engine/ToolController.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QLineF>
#include <QRegularExpression>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

// A canvas with an event log, driven with page millimetres through screen pixels.
struct Tools : ::testing::Test {
    std::shared_ptr<POLARDraw> c = makeCanvas();
    EventLog log;
    Tools() {
        c->setScreenOrigin(QPoint(300, 200));
        c->addEventSink(&log);
    }
    QPointF at(double x, double y) const { return c->pageToScreen(QPointF(x, y)); }
    void press(double x, double y, int button = 1, int shift = 0) {
        const QPointF p = at(x, y);
        c->mousePress(button, shift, p.x(), p.y());
    }
    void moveTo(double x, double y, int button = 1) {
        const QPointF p = at(x, y);
        c->mouseMove(button, 0, p.x(), p.y());
    }
    void release(double x, double y, int button = 1) {
        const QPointF p = at(x, y);
        c->mouseRelease(button, 0, p.x(), p.y());
    }
    void drag(double x0, double y0, double x1, double y1) {
        press(x0, y0);
        moveTo((x0 + x1) / 2, (y0 + y1) / 2);
        moveTo(x1, y1);
        release(x1, y1);
    }
    void tool(int mode, int type = -1, int option = -1) {
        AutoPtr view = c->view();
        view->set("ToolMode", mode);
        if (type != -1)
            view->set("ToolShapeType", type);
        if (option != -1)
            view->set("ToolOption", option);
    }
    static bool near(const QPointF& a, const QPointF& b) { return QLineF(a, b).length() < 1e-4; }
    const ShapeData& last() const { return *c->drawing().at(c->drawing().count() - 1); }
};

} // namespace

TEST_F(Tools, MouseEventsCarryScreenCoordinates) {
    c->mousePress(1, 2, 350.5, 260.25);
    c->mouseMove(0, 0, 351, 261);
    c->mouseRelease(1, 0, 352, 262);
    EXPECT_EQ(log.lines.at(0), "MouseDown 1 2 350.5 260.25");
    EXPECT_EQ(log.lines.at(1), "MouseMove 0 0 351 261");
    EXPECT_EQ(log.lines.last(), "MouseUp 1 0 352 262");
}

TEST_F(Tools, DrawnRectangleRaisesAddedThenFinishedWithTheShapeSelected) {
    tool(4, 1);
    QStringList selectionAtFinish;
    log.onShapeFinished = [&](int id) {
        const std::vector<int>& sel = c->selectedIds();
        selectionAtFinish << QString::number(sel.size() == 1 && sel[0] == id);
    };
    drag(10, 10, 50, 30);
    ASSERT_EQ(c->drawing().count(), 1);
    const ShapeData& s = last();
    EXPECT_EQ(s.type, 1);
    EXPECT_NEAR(s.left, 10, 1e-4);
    EXPECT_NEAR(s.bottom, 30, 1e-4);
    const QStringList events = log.lines.filter(QRegularExpression("^(Shape|Selection)"));
    EXPECT_EQ(events, (QStringList{QStringLiteral("SelectionChanged %1").arg(s.id),
                                   QStringLiteral("ShapeAdded 1 %1").arg(s.id),
                                   QStringLiteral("ShapeFinished 1 %1").arg(s.id)}));
    EXPECT_EQ(selectionAtFinish, QStringList{"1"});
    EXPECT_TRUE(log.lines.last().startsWith("MouseUp"));
    // the tool stays armed: a second stroke makes a second rectangle
    drag(60, 10, 80, 20);
    EXPECT_EQ(c->drawing().count(), 2);
    EXPECT_EQ(c->viewSettings().toolMode, 4);
}

TEST_F(Tools, EveryTypeOfTheTableCanBeDrawnByDragging) {
    for (int type : shape_type::DrawableCodes) {
        tool(4, type, 0);
        const int before = c->drawing().count();
        if (type == shape_type::Freeform) {
            // option 0 of a freeform is the click-per-point tool: finish it with Enter
            press(20, 20);
            press(60, 50);
            c->keyPress(13, 0);
        } else {
            drag(20, 20, 60, 50);
        }
        ASSERT_EQ(c->drawing().count(), before + 1) << type;
        EXPECT_EQ(last().type, type);
        if (c->textEditor().open)
            c->commitTextEditor("x");
    }
    EXPECT_EQ(c->drawing().count(), 21);
}

TEST_F(Tools, AddShapeAddTextAddPictureRaiseShapeAddedOnly) {
    call(c->shapes(), "AddShape", {1, 5, 5, 45, 8});
    call(c->shapes(), "AddText", {"12", 5, 5, 25, 14});
    EXPECT_EQ(log.only("Shape"), (QStringList{"ShapeAdded 1 1", "ShapeAdded 2 2"}));
    EXPECT_TRUE(c->selectedIds().empty()); // the program does not select them
}

TEST_F(Tools, AutoRedrawLeftOffByAShapeAddedHandlerIsTurnedOnAfterTheOutermostCall) {
    int paints = 0;
    c->setRepaintCallback([&] { ++paints; });
    log.onShapeAdded = [&](const QString&, int id) {
        c->setAutoRedraw(false);
        AutoPtr s = toObject(c->shapes()->call("ItemById", *new QVariantList{id}));
        s->set("Filled", true); // a nested call into the canvas
    };
    const int before = c->repaintCount();
    call(c->shapes(), "AddShape", {1, 5, 5, 45, 8});
    EXPECT_TRUE(c->autoRedraw());
    EXPECT_EQ(c->repaintCount(), before + 1);
    EXPECT_EQ(paints, 1);
}

TEST_F(Tools, AutoRedrawSetOffByTheProgramStaysOffUntilTurnedOn) {
    const int before = c->repaintCount();
    c->set("AutoRedraw", false);
    c->setCoordinateMode(3);
    c->setCoordinateMode(1);
    call(c->page(), "HorizontalGuides"); // a read
    c->page()->set("PaperColour", 0xFF); // an edit, held back
    EXPECT_FALSE(c->autoRedraw());
    EXPECT_EQ(c->repaintCount(), before);
    c->set("AutoRedraw", true);
    call(c, "Redraw");
    EXPECT_GT(c->repaintCount(), before);
}

TEST_F(Tools, MultiPointLineEndsWithDoubleClickOrEnterAndEscapeAbandonsIt) {
    tool(4, 0, 2);
    press(10, 10);
    release(10, 10);
    moveTo(30, 10);
    press(30, 10);
    release(30, 10);
    press(30, 40);
    release(30, 40);
    const QPointF p = at(30, 40);
    c->mouseDoubleClick(1, 0, p.x(), p.y());
    ASSERT_EQ(c->drawing().count(), 1);
    EXPECT_EQ(geometry::freeformPoints(last()).size(), 3u);
    EXPECT_EQ(log.only("ShapeFinished").size(), 1);
    press(50, 50);
    press(60, 50);
    c->keyPress(13, 0);
    EXPECT_EQ(c->drawing().count(), 2);
    EXPECT_EQ(geometry::freeformPoints(last()).size(), 2u);
    press(70, 70);
    press(80, 80);
    c->keyPress(27, 0);
    EXPECT_EQ(c->drawing().count(), 2);
    EXPECT_EQ(log.only("DrawingCancelled").size(), 1);
    EXPECT_EQ(log.only("KeyDown"), (QStringList{"KeyDown 13 0", "KeyDown 27 0"}));
}

TEST_F(Tools, CurveFreehandAndSingleLine) {
    tool(4, 0, 1);
    press(10, 10);
    press(20, 30);
    press(40, 10);
    c->keyPress(13, 0);
    EXPECT_TRUE(last().has(shape_flag::Smooth));
    tool(4, 0, 3);
    press(10, 50);
    for (int i = 1; i <= 10; ++i)
        moveTo(10 + i * 3, 50 + (i % 2) * 4);
    release(40, 50);
    EXPECT_EQ(last().type, 0);
    EXPECT_GE(geometry::freeformPoints(last()).size(), 10u);
    tool(4, 20, 2);
    drag(60, 60, 20, 40); // right to left, upwards
    EXPECT_EQ(last().type, 20);
    EXPECT_TRUE(near(geometry::lineStart(last()), QPointF(60, 60)));
    EXPECT_TRUE(near(geometry::lineEnd(last()), QPointF(20, 40)));
}

TEST_F(Tools, LinkAttachesToTwoShapesAndFollowsThem) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    call(c->shapes(), "AddShape", {1, 80, 10, 100, 30});
    tool(4, 10000);
    drag(30, 20, 80, 20); // from the right side of one to the left side of the other
    ASSERT_EQ(last().type, shape_type::Link);
    const int linkId = last().id;
    EXPECT_EQ(last().extra->linkStart.shapeId, 1);
    EXPECT_EQ(last().extra->linkEnd.shapeId, 2);
    c->setSelection({2});
    call(c->selection()->range(), "Move", {0, 20});
    const ShapePtr link = c->drawing().find(linkId);
    EXPECT_TRUE(near(geometry::lineEnd(*link), QPointF(80, 40)));
    EXPECT_TRUE(near(geometry::lineStart(*link), QPointF(30, 20)));
    c->undo();
    EXPECT_TRUE(near(geometry::lineEnd(*c->drawing().find(linkId)), QPointF(80, 20)));
}

TEST_F(Tools, FreeTextOpensTheEditorAndTextFrameEditOpensTheSame) {
    tool(4, 136);
    press(20, 20);
    release(20, 20); // a click places a box of the default size
    ASSERT_EQ(c->drawing().count(), 1);
    EXPECT_EQ(last().type, 136);
    EXPECT_NEAR(last().right - last().left, 40, 1e-9);
    ASSERT_TRUE(c->textEditor().open);
    EXPECT_EQ(c->textEditor().shapeId, last().id);
    c->commitTextEditor("Kitchen");
    EXPECT_FALSE(c->textEditor().open);
    EXPECT_EQ(last().text(), "Kitchen");
    call(obj(c->selection()->range(), "Text"), "Edit");
    EXPECT_TRUE(c->textEditor().open);
    EXPECT_EQ(c->textEditor().text, "Kitchen");
    c->keyPress(27, 0);
    EXPECT_FALSE(c->textEditor().open);
    EXPECT_EQ(last().text(), "Kitchen");
}

TEST_F(Tools, DimensionBarIsAMeasuringLine) {
    tool(4, 10250);
    drag(10, 50, 110, 50);
    EXPECT_EQ(last().type, 10250);
    EXPECT_TRUE(near(geometry::lineStart(last()), QPointF(10, 50)));
    EXPECT_TRUE(near(geometry::lineEnd(last()), QPointF(110, 50)));
}

TEST_F(Tools, SelectClickShiftClickRubberBandAndDelete) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    call(c->shapes(), "AddShape", {3, 50, 10, 70, 30});
    call(c->shapes(), "AddShape", {1, 100, 100, 120, 120});
    tool(1);
    press(20, 20);
    release(20, 20);
    EXPECT_EQ(c->selectedIds(), std::vector<int>{1});
    press(60, 20, 1, 1);
    release(60, 20);
    EXPECT_EQ(c->selectedIds(), (std::vector<int>{1, 2}));
    press(200, 200);
    release(200, 200);
    EXPECT_TRUE(c->selectedIds().empty());
    EXPECT_EQ(log.only("SelectionCleared").size(), 1);
    drag(5, 5, 80, 40);
    EXPECT_EQ(c->selectedIds(), (std::vector<int>{1, 2}));
    c->keyPress(46, 0);
    EXPECT_EQ(c->drawing().count(), 1);
    EXPECT_EQ(log.only("KeyDown").last(), "KeyDown 46 0");
}

TEST_F(Tools, DragMovesAndRaisesShapeMovedAndChangedAsOneUndoStep) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    tool(1);
    const size_t steps = c->document().undoCount();
    drag(20, 20, 45, 30);
    EXPECT_NEAR(c->drawing().at(0)->left, 35, 1e-4);
    EXPECT_NEAR(c->drawing().at(0)->top, 20, 1e-4);
    EXPECT_EQ(log.only("ShapeMoved"), QStringList{"ShapeMoved 25 10"});
    EXPECT_EQ(log.only("ShapeChanged").size(), 1);
    EXPECT_EQ(c->document().undoCount(), steps + 1);
    c->keyPress(90, 2); // Ctrl+Z
    EXPECT_NEAR(c->drawing().at(0)->left, 10, 1e-4);
    c->keyPress(89, 2); // Ctrl+Y
    EXPECT_NEAR(c->drawing().at(0)->left, 35, 1e-4);
}

TEST_F(Tools, HandlesResizeTheSelection) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    tool(1);
    press(20, 20);
    release(20, 20);
    // The bottom-right handle, outside the corner.
    const double g = ToolController::HandleGapPx / c->viewGeometry().pixelsPerMm();
    drag(30 + g, 30 + g, 50 + g, 40 + g);
    EXPECT_NEAR(c->drawing().at(0)->right, 50, 1e-4);
    EXPECT_NEAR(c->drawing().at(0)->bottom, 40, 1e-4);
    EXPECT_NEAR(c->drawing().at(0)->left, 10, 1e-4);
}

TEST_F(Tools, LockedShapesStayPutUnderTheMouse) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    AutoPtr locks = obj(toObject(c->shapes()->get("Item", {1})), "Locks");
    locks->set("LockA", true);
    locks->set("LockB", true);
    tool(1);
    drag(20, 20, 60, 60);
    EXPECT_NEAR(c->drawing().at(0)->left, 10, 1e-4);
    tool(2);
    drag(25, 25, 25, 45);
    EXPECT_EQ(c->drawing().at(0)->rotation, 0);
}

TEST_F(Tools, RotateToolTurnsByWholeDegrees) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    tool(2);
    drag(30, 20, 20, 30); // a quarter turn about the centre (20, 20)
    EXPECT_EQ(c->drawing().at(0)->rotation, 90);
    EXPECT_EQ(log.only("ShapeChanged").size(), 1);
}

TEST_F(Tools, EditPointsMovesAVertex) {
    tool(4, 0, 2);
    press(10, 10);
    press(50, 10);
    press(50, 50);
    c->keyPress(13, 0);
    tool(3);
    drag(50, 10, 70, 5);
    const std::vector<QPointF> pts = geometry::freeformPoints(last());
    ASSERT_EQ(pts.size(), 3u);
    EXPECT_NEAR(pts[1].x(), 70, 1e-4);
    EXPECT_NEAR(pts[1].y(), 5, 1e-4);
    EXPECT_NEAR(pts[2].y(), 50, 1e-4);
}

TEST_F(Tools, SnapToGridAndGuides) {
    c->page()->set("GridSpacingX", 10);
    c->page()->set("GridSpacingY", 10);
    c->view()->set("SnapToGrid", true);
    tool(4, 1);
    drag(12, 13, 48, 36);
    EXPECT_EQ(last().box(), QRectF(QPointF(10, 10), QPointF(50, 40))); // snapped exactly
    c->view()->set("SnapToGrid", false);
    c->view()->set("SnapToGuides", true);
    call(c->horizontalGuides(), "Add", {77});
    call(c->verticalGuides(), "Add", {33});
    drag(32, 76, 90, 100);
    EXPECT_NEAR(last().left, 33, 1e-9);
    EXPECT_NEAR(last().top, 77, 1e-9);
}

TEST_F(Tools, ControlKeysReachTheClipboardAndKeyDownComesFirst) {
    call(c->shapes(), "AddShape", {1, 10, 10, 30, 30});
    c->setSelection({1});
    c->keyPress(67, 2); // Ctrl+C
    c->keyPress(86, 2); // Ctrl+V
    EXPECT_EQ(c->drawing().count(), 2);
    c->keyPress(88, 2); // Ctrl+X
    EXPECT_EQ(c->drawing().count(), 1);
    EXPECT_EQ(log.only("KeyDown"), (QStringList{"KeyDown 67 2", "KeyDown 86 2", "KeyDown 88 2"}));
}
