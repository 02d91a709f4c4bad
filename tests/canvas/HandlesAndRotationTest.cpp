// Sizing by the selection handles, editing points and turning shapes with
// the mouse, on shapes that are rotated: what stays on the page must stay
// where it was, and the handle dragged must end under the pointer.
#include "CanvasSupport.h"

#include "canvas/engine/ToolController.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QLineF>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

constexpr double Exact = 1e-6; // millimetres
constexpr int SelectTool = 1, RotateTool = 2, EditPointsTool = 3;

struct Handles : ::testing::Test {
    std::shared_ptr<POLARDraw> c = makeCanvas();
    Handles() { c->setScreenOrigin(QPoint(40, 30)); }

    void tool(int mode) { c->view()->set("ToolMode", mode); }
    // Millimetres between the outline and the handles that stand outside it.
    double gap() const { return ToolController::HandleGapPx / c->viewGeometry().pixelsPerMm(); }
    // A drag with the left button, in page millimetres through screen pixels.
    void drag(QPointF from, QPointF to) {
        const QPointF a = c->pageToScreen(from), b = c->pageToScreen(to);
        c->mousePress(1, 0, a.x(), a.y());
        const QPointF mid = (a + b) / 2;
        c->mouseMove(1, 0, mid.x(), mid.y());
        c->mouseMove(1, 0, b.x(), b.y());
        c->mouseRelease(1, 0, b.x(), b.y());
    }
    const ShapeData& shape(int id) const { return *c->drawing().find(id); }
    // The shape's outline on the page, rotation applied.
    QRectF onPage(int id) const { return geometry::pageOutline(shape(id)).boundingRect(); }
    std::vector<QPointF> pagePoints(int id) const {
        std::vector<QPointF> pts = geometry::freeformPoints(shape(id));
        const QTransform t = geometry::rotation(shape(id));
        for (QPointF& p : pts)
            p = t.map(p);
        return pts;
    }
    static void expectNear(QPointF a, QPointF b, double tolerance = Exact) {
        EXPECT_NEAR(a.x(), b.x(), tolerance);
        EXPECT_NEAR(a.y(), b.y(), tolerance);
    }
    static void expectNear(const QRectF& a, const QRectF& b, double tolerance) {
        EXPECT_NEAR(a.left(), b.left(), tolerance);
        EXPECT_NEAR(a.top(), b.top(), tolerance);
        EXPECT_NEAR(a.right(), b.right(), tolerance);
        EXPECT_NEAR(a.bottom(), b.bottom(), tolerance);
    }
};

} // namespace

TEST_F(Handles, AnUnturnedRectangleFollowsItsRightHandle) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(10, 10, 50, 30), {}, false);
    c->setSelection({id});
    tool(SelectTool);
    drag(QPointF(60 + gap(), 25), QPointF(75 + gap(), 25));
    expectNear(onPage(id), QRectF(QPointF(10, 10), QPointF(75, 40)), 1e-4);
}

TEST_F(Handles, ATurnedRectangleWidensOnThePageByItsRightHandle) {
    // 50 by 30 turned a quarter: on the page it stands 30 wide and 50 high.
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(10, 10, 50, 30), {}, false);
    c->rotateShapes({id}, 90);
    ASSERT_EQ(c->drawing().find(id)->rotation, 90);
    expectNear(onPage(id), QRectF(QPointF(20, 0), QPointF(50, 50)), 1e-4);
    c->setSelection({id});
    tool(SelectTool);
    drag(QPointF(50 + gap(), 25), QPointF(60 + gap(), 25)); // the right handle, 10 mm to the right
    // Wider on the page, no higher, the left side where it was, still turned.
    expectNear(onPage(id), QRectF(QPointF(20, 0), QPointF(60, 50)), 1e-4);
    EXPECT_EQ(shape(id).rotation, 90);
}

TEST_F(Handles, AHalfTurnedRectangleFollowsItsBottomHandle) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(10, 10, 50, 30), {}, false);
    c->rotateShapes({id}, 180);
    c->setSelection({id});
    tool(SelectTool);
    drag(QPointF(35, 40 + gap()), QPointF(35, 52 + gap()));
    expectNear(onPage(id), QRectF(QPointF(10, 10), QPointF(60, 52)), 1e-4);
}

TEST_F(Handles, MovingAPointOfATurnedFreeformLeavesTheOtherPointsInPlace) {
    const int id = c->addShapeMm(shape_type::Freeform, QRectF(10, 10, 60, 30), {}, false);
    c->editShapes({id}, [](ShapeData& s) {
        geometry::setFreeformPoints(s, {{10, 40}, {30, 10}, {50, 40}, {70, 15}});
    });
    c->rotateShapes({id}, 30);
    const std::vector<QPointF> before = pagePoints(id);
    c->setSelection({id});
    tool(EditPointsTool);
    // The last point moves out beyond the old box, so the box grows.
    const QPointF target = before[3] + QPointF(12, -9);
    drag(before[3], target);
    const std::vector<QPointF> after = pagePoints(id);
    ASSERT_EQ(after.size(), 4u);
    for (int i = 0; i < 3; ++i)
        expectNear(after[static_cast<size_t>(i)], before[static_cast<size_t>(i)], 1e-4);
    expectNear(after[3], target, 1e-4);
    EXPECT_EQ(shape(id).rotation, 30);
}

TEST_F(Handles, DraggingAnEndOfATurnedLineLeavesTheOtherEndInPlace) {
    const int id = c->addShapeMm(shape_type::Line, QRectF(QPointF(20, 50), QPointF(80, 50)), {}, false);
    c->rotateShapes({id}, 45);
    const QTransform t = geometry::rotation(shape(id));
    const QPointF start = t.map(geometry::lineStart(shape(id)));
    const QPointF end = t.map(geometry::lineEnd(shape(id)));
    c->setSelection({id});
    tool(SelectTool);
    const QPointF target = end + QPointF(15, 20);
    drag(end, target);
    const QTransform u = geometry::rotation(shape(id));
    expectNear(u.map(geometry::lineStart(shape(id))), start, 1e-4);
    expectNear(u.map(geometry::lineEnd(shape(id))), target, 1e-4);
}

TEST_F(Handles, FourQuarterTurnsByTheMouseBringAShapeBackExactly) {
    const int id = c->addShapeMm(shape_type::Rectangle, QRectF(40, 40, 40, 30), {}, false);
    const ShapeData first = shape(id);
    c->setSelection({id});
    tool(RotateTool);
    const QPointF centre = first.box().center();
    for (int turn = 0; turn < 4; ++turn) {
        // From the right of the centre to below it, inside the shape: a quarter
        // turn clockwise on the page.
        drag(centre + QPointF(10, 0), centre + QPointF(0, 10));
        EXPECT_EQ(shape(id).rotation, (turn + 1) % 4 * 90);
    }
    EXPECT_EQ(shape(id).rotation, 0);
    EXPECT_NEAR(shape(id).left, first.left, Exact);
    EXPECT_NEAR(shape(id).top, first.top, Exact);
    EXPECT_NEAR(shape(id).right, first.right, Exact);
    EXPECT_NEAR(shape(id).bottom, first.bottom, Exact);
}

TEST_F(Handles, WhileAHandleIsDraggedTheShapeShowsAtItsNewSize) {
    const int id = c->addShapeMm(shape_type::Ellipse, QRectF(10, 10, 50, 30), {}, false);
    c->setSelection({id});
    tool(SelectTool);
    const QPointF a = c->pageToScreen(QPointF(60 + gap(), 40 + gap()));
    const QPointF b = c->pageToScreen(QPointF(70 + gap(), 55 + gap()));
    c->mousePress(1, 0, a.x(), a.y());
    c->mouseMove(1, 0, b.x(), b.y());
    const ToolFeedback& shown = c->tools().feedback();
    ASSERT_EQ(shown.ghosts.size(), 1u);
    EXPECT_EQ(shown.ghosts[0].id, id);
    expectNear(shown.ghosts[0].box(), QRectF(QPointF(10, 10), QPointF(70, 55)), 1e-4);
    EXPECT_TRUE(shown.rubberBand.isNull());
    // The drawing itself changes only on release.
    expectNear(shape(id).box(), QRectF(10, 10, 50, 30), Exact);
    c->mouseRelease(1, 0, b.x(), b.y());
    expectNear(shape(id).box(), QRectF(QPointF(10, 10), QPointF(70, 55)), 1e-4);
}
