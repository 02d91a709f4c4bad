// The canvas window: mouse, wheel and keys reach the canvas in its units, the
// view paints the page, the in-place text editor, and the canvas control's
// widget on a form.
#include "ui/CanvasWidget.h"
#include "UiTestSupport.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/ShapeObjects.h"
#include "canvas/api/ViewObjects.h"
#include "canvas/engine/ToolController.h"
#include "ui/CanvasTextEditor.h"
#include "ui/FormView.h"
#include "ui/dialogs/LineDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

namespace tessaly::ui {
namespace {

using canvas::POLARDraw;

// Pixels a page millimetre at 100% zoom.
constexpr double Ppm = 96.0 / 25.4;

QVariant member(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return o->get(QString::fromLatin1(name), index);
}
AutoPtr object(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return toObject(member(o, name, index));
}
void call(const AutoPtr& o, const char* name, QVariantList args = {}) {
    o->call(QString::fromLatin1(name), args);
}

class CanvasWidgetTest : public ::testing::Test {
protected:
    std::shared_ptr<POLARDraw> canvas = POLARDraw::create();
    CanvasWidget widget{canvas, nullptr};

    void SetUp() override {
        // Away from the screen's corner, so that screen and window pixels differ.
        widget.move(120, 70);
        widget.resize(800, 600);
        widget.show();
        testing::processPending();
        canvas->setZoom(100);
        canvas->setScroll(QPointF(0, 0)); // page mm (0,0) at the drawing area's top-left
    }

    QWidget* area() const { return widget.viewport(); }
    static QPoint px(double xMm, double yMm) {
        return QPoint(static_cast<int>(std::lround(xMm * Ppm)), static_cast<int>(std::lround(yMm * Ppm)));
    }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QMouseEvent event(type, QPointF(at), QPointF(area()->mapToGlobal(at)), button, buttons, mods);
        QApplication::sendEvent(area(), &event);
    }
    void drag(QPoint from, QPoint to) {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }
    void key(int qtKey, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QTest::keyClick(area(), static_cast<Qt::Key>(qtKey), mods);
    }
    void wheel(QPoint at, int delta, Qt::KeyboardModifiers mods) {
        QWheelEvent event(QPointF(at), QPointF(area()->mapToGlobal(at)), QPoint(), QPoint(0, delta),
                          Qt::NoButton, mods, Qt::NoScrollPhase, false);
        QApplication::sendEvent(area(), &event);
    }
    void arm(int mode, int shapeType) {
        canvas->view()->set(QStringLiteral("ToolMode"), mode);
        canvas->view()->set(QStringLiteral("ToolShapeType"), shapeType);
    }
    QVariantMap shape(int index) const { return canvas->describeShapes().at(index).toMap(); }
};

TEST_F(CanvasWidgetTest, AMiddleButtonDragPansThePageAndLeavesTheDrawingAlone) {
    call(canvas->shapes(), "AddShape", {1, 10, 10, 60, 40});
    const canvas::ShapeData before = *canvas->drawing().at(0);
    canvas->setScroll(QPointF(20, 15));
    // The page follows the pointer: 80 pixels right and 40 down bring the view's
    // top-left corner that many pixels' worth of millimetres up and left.
    mouse(QEvent::MouseButtonPress, QPoint(400, 300), Qt::MiddleButton, Qt::MiddleButton);
    mouse(QEvent::MouseMove, QPoint(440, 320), Qt::NoButton, Qt::MiddleButton);
    mouse(QEvent::MouseMove, QPoint(480, 340), Qt::NoButton, Qt::MiddleButton);
    mouse(QEvent::MouseButtonRelease, QPoint(480, 340), Qt::MiddleButton, Qt::NoButton);
    EXPECT_NEAR(canvas->viewGeometry().scroll.x(), 20 - 80 / Ppm, 1e-6);
    EXPECT_NEAR(canvas->viewGeometry().scroll.y(), 15 - 40 / Ppm, 1e-6);
    EXPECT_EQ(canvas->zoom(), 100);
    EXPECT_EQ(canvas->drawing().at(0)->box(), before.box()); // nothing moved on the page
    // A move after the release pans no more.
    mouse(QEvent::MouseMove, QPoint(300, 200), Qt::NoButton, Qt::NoButton);
    EXPECT_NEAR(canvas->viewGeometry().scroll.x(), 20 - 80 / Ppm, 1e-6);
    // The wheel still scrolls, and with Ctrl it zooms.
    const double y = canvas->viewGeometry().scroll.y();
    QWheelEvent down(QPointF(400, 300), QPointF(area()->mapToGlobal(QPoint(400, 300))), QPoint(),
                     QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(area(), &down);
    EXPECT_GT(canvas->viewGeometry().scroll.y(), y);
    EXPECT_EQ(canvas->zoom(), 100);
    QWheelEvent zoomIn(QPointF(400, 300), QPointF(area()->mapToGlobal(QPoint(400, 300))), QPoint(),
                       QPoint(0, 120), Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(area(), &zoomIn);
    EXPECT_EQ(canvas->zoom(), 100 + CanvasWidget::WheelZoomStep);
}

TEST_F(CanvasWidgetTest, TellsTheCanvasItsScreenOriginAndSize) {
    EXPECT_EQ(canvas->viewGeometry().screenOrigin, area()->mapToGlobal(QPoint(0, 0)));
    EXPECT_NE(canvas->viewGeometry().screenOrigin, QPoint(0, 0));
    EXPECT_EQ(canvas->viewGeometry().viewport, area()->size());
    widget.resize(640, 480);
    testing::processPending();
    EXPECT_EQ(canvas->viewGeometry().viewport, area()->size());
}

TEST_F(CanvasWidgetTest, DragWithTheRectangleToolDrawsARectangleOnThePage) {
    arm(4, 1);
    drag(px(20, 30), px(70, 60));
    ASSERT_EQ(canvas->drawing().count(), 1);
    const QVariantMap s = shape(0);
    EXPECT_EQ(s.value("type").toInt(), 1);
    EXPECT_EQ(s.value("left").toInt(), 20);
    EXPECT_EQ(s.value("top").toInt(), 30);
    EXPECT_EQ(s.value("right").toInt(), 70);
    EXPECT_EQ(s.value("bottom").toInt(), 60);
}

TEST_F(CanvasWidgetTest, MouseEventsCarryScreenPixelsThatConvertBackToThePage) {
    // The conversion the program makes of a click: ScreenToClient, then ClientToPage.
    struct Clicks : canvas::CanvasEvents {
        POLARDraw* c = nullptr;
        QPoint page{-1, -1};
        int button = 0;
        void MouseDown(int& b, int&, float& x, float& y) override {
            int ix = static_cast<int>(std::lround(x)), iy = static_cast<int>(std::lround(y));
            c->setCoordinateMode(3);
            QVariantList args{ix, iy};
            c->views()->call(QStringLiteral("ScreenToClient"), args);
            c->setCoordinateMode(1);
            c->views()->call(QStringLiteral("ClientToPage"), args);
            page = QPoint(args[0].toInt(), args[1].toInt());
            button = b;
        }
    } clicks;
    clicks.c = canvas.get();
    canvas->addEventSink(&clicks);
    mouse(QEvent::MouseButtonPress, px(123, 45), Qt::RightButton, Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, px(123, 45), Qt::RightButton, Qt::NoButton);
    canvas->removeEventSink(&clicks);
    EXPECT_EQ(clicks.page, QPoint(123, 45));
    EXPECT_EQ(clicks.button, 2);
}

TEST_F(CanvasWidgetTest, PaintShowsTheFillColourOfARectangle) {
    call(canvas->shapes(), "AddShape", {1, 10, 10, 60, 40});
    const AutoPtr s = object(canvas->shapes(), "Item", {1});
    object(s, "Fill")->set(QStringLiteral("Colour"), 0x0000FF); // red, in the low byte
    s->set(QStringLiteral("Filled"), true);
    const QImage shown = area()->grab().toImage();
    const QPoint inside = px(35, 25);
    EXPECT_EQ(QColor(shown.pixel(inside)), QColor(255, 0, 0));
    // Beside it the paper is white.
    EXPECT_EQ(QColor(shown.pixel(px(100, 25))), QColor(255, 255, 255));
}

TEST_F(CanvasWidgetTest, CtrlZUndoesAndCtrlYRedoesADrawnShape) {
    arm(4, 1);
    drag(px(20, 30), px(70, 60));
    ASSERT_EQ(canvas->drawing().count(), 1);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(canvas->drawing().count(), 0);
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(canvas->drawing().count(), 1);
}

TEST_F(CanvasWidgetTest, DeleteRemovesTheSelectionAndCopyPasteAddsACopy) {
    call(canvas->shapes(), "AddShape", {1, 10, 10, 60, 40});
    arm(1, 1);
    mouse(QEvent::MouseButtonPress, px(30, 20), Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, px(30, 20), Qt::LeftButton, Qt::NoButton);
    ASSERT_EQ(canvas->selectedIds().size(), 1u);
    key(Qt::Key_C, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(canvas->drawing().count(), 2);
    key(Qt::Key_Delete);
    EXPECT_EQ(canvas->drawing().count(), 1);
    key(Qt::Key_X, Qt::NoModifier); // a plain letter does nothing to the drawing
    EXPECT_EQ(canvas->drawing().count(), 1);
}

TEST_F(CanvasWidgetTest, EscapeAbandonsAShapeBeingDragged) {
    arm(4, 1);
    mouse(QEvent::MouseButtonPress, px(20, 30), Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, px(60, 50), Qt::NoButton, Qt::LeftButton);
    key(Qt::Key_Escape);
    mouse(QEvent::MouseButtonRelease, px(70, 60), Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(canvas->drawing().count(), 0);
}

TEST_F(CanvasWidgetTest, CtrlWheelZoomsByTenPercentANotchAroundThePointer) {
    const QPoint at(300, 200);
    const QPointF under = canvas->viewGeometry().clientToPage(QPointF(at));
    wheel(at, 120, Qt::ControlModifier);
    EXPECT_EQ(canvas->zoom(), 110);
    const QPointF still = canvas->viewGeometry().clientToPage(QPointF(at));
    EXPECT_NEAR(still.x(), under.x(), 0.01);
    EXPECT_NEAR(still.y(), under.y(), 0.01);
    wheel(at, -240, Qt::ControlModifier);
    EXPECT_EQ(canvas->zoom(), 90);
    canvas->setZoom(995);
    wheel(at, 120, Qt::ControlModifier);
    EXPECT_EQ(canvas->zoom(), 1000);
    canvas->setZoom(15);
    wheel(at, -120, Qt::ControlModifier);
    EXPECT_EQ(canvas->zoom(), 10);
}

TEST_F(CanvasWidgetTest, WheelWithoutCtrlScrollsAndLeavesTheZoom) {
    const double before = canvas->viewGeometry().scroll.y();
    wheel(QPoint(300, 200), -120, Qt::NoModifier);
    EXPECT_EQ(canvas->zoom(), 100);
    EXPECT_NEAR(canvas->viewGeometry().scroll.y() - before, 48 / Ppm, 0.01);
}

TEST_F(CanvasWidgetTest, ScrollBarsCoverThePageAndMoveIt) {
    canvas->setZoom(400);
    testing::processPending();
    QScrollBar* bar = widget.horizontalScrollBar();
    const double k = Ppm * 4;
    EXPECT_EQ(bar->maximum(), static_cast<int>(std::ceil((295 + 20) * k)) - area()->width());
    EXPECT_EQ(bar->value(), static_cast<int>(std::lround(canvas->viewGeometry().scroll.x() * k)));
    bar->setValue(400);
    EXPECT_NEAR(canvas->viewGeometry().scroll.x(), 400 / k, 1e-9);
}

TEST_F(CanvasWidgetTest, PointerIsACrossWhileADrawingToolIsArmed) {
    arm(4, 3);
    mouse(QEvent::MouseMove, px(50, 50), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(area()->cursor().shape(), Qt::CrossCursor);
    arm(1, 3);
    mouse(QEvent::MouseMove, px(50, 50), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(area()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CanvasWidgetTest, PointerOverASelectionHandleShowsTheSizingPointer) {
    call(canvas->shapes(), "AddShape", {1, 10, 10, 60, 40});
    canvas->setSelection({canvas->drawing().at(0)->id});
    // The handles stand a few pixels outside the outline.
    const int gap = static_cast<int>(canvas::ToolController::HandleGapPx);
    mouse(QEvent::MouseMove, px(60, 40) + QPoint(gap, gap), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(area()->cursor().shape(), Qt::SizeFDiagCursor);
    mouse(QEvent::MouseMove, px(35, 10) - QPoint(0, gap), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(area()->cursor().shape(), Qt::SizeVerCursor);
    // On the outline itself the pointer stays the arrow: a drag there moves the shape.
    mouse(QEvent::MouseMove, px(35, 10), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(area()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CanvasWidgetTest, TextToolOpensTheEditorAndCtrlEnterCommitsTheText) {
    arm(4, 136);
    drag(px(20, 30), px(90, 45));
    CanvasTextEditor* editor = widget.textEditor();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_TRUE(canvas->textEditor().open);
    // The editor lies over the shape.
    EXPECT_TRUE(editor->geometry().contains(px(50, 37)));
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Kitchen"));
    QTest::keyClick(editor, Qt::Key_Return, Qt::ControlModifier);
    testing::processPending();
    EXPECT_FALSE(canvas->textEditor().open);
    EXPECT_EQ(widget.textEditor(), nullptr);
    ASSERT_EQ(canvas->drawing().count(), 1);
    EXPECT_EQ(canvas->drawing().at(0)->text(), QStringLiteral("Kitchen"));
}

TEST_F(CanvasWidgetTest, EscapeInTheEditorKeepsTheOldText) {
    call(canvas->shapes(), "AddText", {QStringLiteral("Hall"), 20, 30, 90, 45});
    const int id = canvas->drawing().at(0)->id;
    // A double click on a text shape edits it in place.
    mouse(QEvent::MouseButtonDblClick, px(40, 37), Qt::LeftButton, Qt::LeftButton);
    CanvasTextEditor* editor = widget.textEditor();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(canvas->textEditor().shapeId, id);
    EXPECT_EQ(editor->toPlainText(), QStringLiteral("Hall"));
    QTest::keyClicks(editor, QStringLiteral("Lobby"));
    QTest::keyClick(editor, Qt::Key_Escape);
    testing::processPending();
    EXPECT_FALSE(canvas->textEditor().open);
    EXPECT_EQ(canvas->drawing().at(0)->text(), QStringLiteral("Hall"));
}

TEST_F(CanvasWidgetTest, TheCanvasDialogsAreTheWidgetsOwn) {
    call(canvas->shapes(), "AddShape", {1, 10, 10, 60, 40});
    canvas->setSelection({canvas->drawing().at(0)->id});
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<LineDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        seen = true;
        dialog->weightBox()->setValue(4);
        dialog->okButton()->click();
    });
    canvas->showLineDialog();
    EXPECT_TRUE(seen);
    EXPECT_EQ(canvas->drawing().at(0)->st().line.weight, 4);
}

// --- the canvas control on a form ---------------------------------------------------

TEST(CanvasControlView, EveryCanvasControlGetsACanvasWidgetPlacedByItsTwips) {
    testing::ScriptedApp scripted;
    auto form = std::make_shared<testing::RecordingForm>(scripted.app, QStringLiteral("frmCanvasHost"));
    form->setSize(9000, 6000, 9000, 6000);
    Control& drawing = form->add(ControlKind::Canvas, QStringLiteral("PD1"));
    drawing.inner = POLARDraw::create();
    drawing.move(1500, 750, 4500, 3000);
    Control& bare = form->add(ControlKind::Canvas, QStringLiteral("PD2"));
    FormView view(*form);
    view.show();
    auto* made = qobject_cast<CanvasWidget*>(view.widgetFor(drawing));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(&made->canvas(), drawing.inner.get());
    EXPECT_EQ(made->geometry(), QRect(100, 50, 300, 200));
    drawing.move(3000, 1500, 3000, 1500);
    EXPECT_EQ(made->geometry(), QRect(200, 100, 200, 100));
    // A canvas control without a canvas keeps the plain panel.
    EXPECT_EQ(qobject_cast<CanvasWidget*>(view.widgetFor(bare)), nullptr);
    EXPECT_EQ(view.widgetFor(bare)->property("placeholder").toString(), QStringLiteral("Canvas"));
}

TEST(CanvasControlView, InputWaitsWhileAModalFormIsAbove) {
    testing::ScriptedApp scripted;
    auto form = std::make_shared<testing::RecordingForm>(scripted.app, QStringLiteral("frmCanvasHost"));
    form->setSize(9000, 6000, 9000, 6000);
    Control& drawing = form->add(ControlKind::Canvas, QStringLiteral("PD1"));
    auto engine = POLARDraw::create();
    drawing.inner = engine;
    drawing.move(0, 0, 9000, 6000);
    FormView view(*form);
    view.show();
    auto* made = qobject_cast<CanvasWidget*>(view.widgetFor(drawing));
    ASSERT_NE(made, nullptr);
    engine->setZoom(100);
    engine->setScroll(QPointF(0, 0));
    call(engine->shapes(), "AddShape", {1, 10, 10, 60, 40});
    engine->setSelection({engine->drawing().at(0)->id});
    QWidget* area = made->viewport();
    QTest::keyClick(area, Qt::Key_Delete);
    EXPECT_EQ(engine->drawing().count(), 0); // the form takes input
    call(engine->shapes(), "AddShape", {1, 10, 10, 60, 40});
    engine->setSelection({engine->drawing().at(0)->id});
    testing::RecordingForm above(scripted.app, QStringLiteral("frmAbove"));
    scripted.app.show(above, true);
    QTest::keyClick(area, Qt::Key_Delete);
    EXPECT_EQ(engine->drawing().count(), 1); // refused below the modal form
}

} // namespace
} // namespace tessaly::ui

namespace tessaly::ui {
namespace {

TEST(CanvasControlView, KeysGoToTheCanvasAndNotAgainToTheForm) {
    testing::ScriptedApp scripted;
    testing::RecordingForm form(scripted.app, QStringLiteral("frmCanvasHost"));
    form.setSize(9000, 6000, 9000, 6000);
    Control& drawing = form.add(ControlKind::Canvas, QStringLiteral("PD1"));
    auto engine = POLARDraw::create();
    drawing.inner = engine;
    drawing.move(0, 0, 9000, 6000);
    // The canvas raises KeyDown itself; the form's view must not raise it a second time.
    form.record(QStringLiteral("PD1"), QStringLiteral("KeyDown"));
    FormView view(form);
    view.show();
    auto* made = qobject_cast<CanvasWidget*>(view.widgetFor(drawing));
    ASSERT_NE(made, nullptr);
    // Focusing the canvas focuses its drawing area, which takes the keys.
    made->setFocus();
    ASSERT_EQ(view.focusWidget(), made->viewport());
    call(engine->shapes(), "AddShape", {1, 10, 10, 60, 40});
    engine->setSelection({engine->drawing().at(0)->id});
    QTest::keyClick(view.focusWidget(), Qt::Key_Delete);
    EXPECT_EQ(engine->drawing().count(), 0);
    QTest::keyClick(view.focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(form.events.isEmpty());
}

} // namespace
} // namespace tessaly::ui
