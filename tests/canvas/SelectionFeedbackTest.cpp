// What the select tool leaves on the screen and where its handles stand: the
// rubber band goes when the button comes up, the handles stand outside the
// outline so that any line of a selected shape moves it, and Ctrl+Shift+Z
// redoes.
#include "CanvasSupport.h"

#include "canvas/engine/ToolController.h"
#include "canvas/model/ShapeTypes.h"

#include <QImage>
#include <QPainter>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

constexpr int SelectTool = 1;
constexpr QRgb Paper = 0xFFFFFFFF;

// A canvas whose screen is repainted only when the canvas asks for it, as the
// window does: what the image holds is what the user sees.
struct Screen : ::testing::Test {
    std::shared_ptr<POLARDraw> c = makeCanvas();
    QImage shown{800, 600, QImage::Format_ARGB32};
    Screen() {
        c->setScreenOrigin(QPoint(0, 0));
        c->setRepaintCallback([this] { paint(); });
        c->view()->set("ToolMode", SelectTool);
        paint();
    }
    void paint() {
        shown.fill(Qt::gray);
        QPainter p(&shown);
        c->renderView(p);
    }
    QPoint px(double x, double y) const { return c->pageToScreen(QPointF(x, y)).toPoint(); }
    QPointF at(double x, double y) const { return c->pageToScreen(QPointF(x, y)); }
    void press(double x, double y) { c->mousePress(1, 0, at(x, y).x(), at(x, y).y()); }
    void moveTo(double x, double y) { c->mouseMove(1, 0, at(x, y).x(), at(x, y).y()); }
    void release(double x, double y) { c->mouseRelease(1, 0, at(x, y).x(), at(x, y).y()); }
    void drag(QPointF from, QPointF to) {
        press(from.x(), from.y());
        moveTo((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
        moveTo(to.x(), to.y());
        release(to.x(), to.y());
    }
    // Pixels of the screen along the page row `y` from `x0` to `x1` (mm) that are not paper.
    int marksAlong(double y, double x0, double x1) const {
        int n = 0;
        const int row = px(0, y).y();
        for (int x = px(x0, y).x(); x <= px(x1, y).x(); ++x)
            for (int dy = -1; dy <= 1; ++dy)
                if (shown.pixel(x, row + dy) != Paper)
                    ++n;
        return n;
    }
    double gap() const { return ToolController::HandleGapPx / c->viewGeometry().pixelsPerMm(); }
    const ShapeData& shape(int id) const { return *c->drawing().find(id); }
};

} // namespace

TEST_F(Screen, TheRubberBandIsOnTheScreenWhileDraggedAndGoneOnRelease) {
    press(20, 20);
    moveTo(40, 35);
    moveTo(60, 50);
    EXPECT_GT(marksAlong(20, 25, 55), 0) << "the band's top edge is shown while the button is down";
    release(60, 50);
    EXPECT_EQ(marksAlong(20, 25, 55), 0) << "the band's top edge stays on the screen after the release";
    EXPECT_TRUE(c->tools().feedback().rubberBand.isNull());
    // A later click on the empty page leaves nothing either.
    press(100, 100);
    release(100, 100);
    EXPECT_EQ(marksAlong(20, 25, 55), 0);
    EXPECT_EQ(marksAlong(50, 25, 55), 0);
}

TEST_F(Screen, HandlesStandOutsideTheOutline) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(20, 20, 40, 30), {}, false);
    c->setSelection({id});
    const std::vector<QPointF> h = c->tools().handles();
    ASSERT_EQ(h.size(), 8u);
    const QRectF box(20, 20, 40, 30);
    for (const QPointF& p : h) {
        const double outside =
            std::max({box.left() - p.x(), p.x() - box.right(), box.top() - p.y(), p.y() - box.bottom()});
        EXPECT_NEAR(outside * c->viewGeometry().pixelsPerMm(), ToolController::HandleGapPx, 1e-6);
    }
    // The same distance on the screen at another zoom.
    c->setZoom(400);
    EXPECT_NEAR((20 - c->tools().handles()[0].x()) * c->viewGeometry().pixelsPerMm(),
                ToolController::HandleGapPx, 1e-6);
}

TEST_F(Screen, ATinyShapeMovesByAnyOfItsLinesAndSizesByItsHandles) {
    // 2 by 1.5 mm: at 100% about 8 by 6 pixels, smaller than its handles.
    const QRectF box(40, 40, 2, 1.5);
    const int id = c->addShapeMm(shape_type::Rectangle, box, {}, false);
    const QPointF onLines[] = {{41, 40}, {42, 40.75}, {41, 41.5}, {40, 40.75}, {40, 40}, {42, 41.5}};
    QPointF at = box.topLeft();
    for (const QPointF& line : onLines) {
        c->setSelection({id});
        const QPointF from = line + (at - box.topLeft());
        drag(from, from + QPointF(10, 5));
        at += QPointF(10, 5);
        EXPECT_NEAR(shape(id).left, at.x(), 1e-4) << "press at " << line.x() << "," << line.y();
        EXPECT_NEAR(shape(id).top, at.y(), 1e-4);
        EXPECT_NEAR(shape(id).right - shape(id).left, 2, 1e-4) << "the shape was sized instead of moved";
        EXPECT_NEAR(shape(id).bottom - shape(id).top, 1.5, 1e-4);
    }
    // Its bottom-right handle still sizes it.
    c->setSelection({id});
    const QPointF handle = c->tools().handles()[4];
    drag(handle, handle + QPointF(8, 6));
    EXPECT_NEAR(shape(id).right - shape(id).left, 10, 1e-4);
    EXPECT_NEAR(shape(id).bottom - shape(id).top, 7.5, 1e-4);
    EXPECT_NEAR(shape(id).left, at.x(), 1e-4);
}

TEST_F(Screen, ASideHandleSizesFromWhereItWasTakenAndSnapsTheOutline) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(20, 20, 40, 30), {}, false);
    c->setSelection({id});
    c->view()->set("SnapToGrid", true);
    c->page()->set("GridSpacingX", 5);
    const QPointF right = c->tools().handles()[3];
    ASSERT_NEAR(right.x(), 60 + gap(), 1e-9);
    drag(right, right + QPointF(11.2, 0)); // the side goes to 71.2, snapped to 70
    EXPECT_NEAR(shape(id).right, 70, 1e-4);
    EXPECT_NEAR(shape(id).left, 20, 1e-4);
}

TEST_F(Screen, CtrlShiftZRedoesAsCtrlYDoes) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(20, 20, 40, 30));
    ASSERT_TRUE(c->drawing().contains(id));
    c->keyPress(key_code::Z, shift_state::Ctrl);
    EXPECT_FALSE(c->drawing().contains(id));
    c->keyPress(key_code::Z, shift_state::Ctrl | shift_state::Shift);
    EXPECT_TRUE(c->drawing().contains(id));
    c->keyPress(key_code::Z, shift_state::Ctrl);
    c->keyPress(key_code::Y, shift_state::Ctrl);
    EXPECT_TRUE(c->drawing().contains(id));
}
