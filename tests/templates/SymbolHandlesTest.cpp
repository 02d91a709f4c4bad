// A door from the template library, selected on a canvas: a drag that starts
// on its leaf moves the door and leaves its size and hand alone, since the
// selection's handles stand outside the symbol's outline.
#include "canvas/api/POLARDraw.h"
#include "canvas/api/ViewObjects.h"
#include "canvas/engine/ToolController.h"
#include "templates/library/DrawingSet.h"
#include "templates/library/LibraryDrawing.h"

#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::templates;
using tessaly::canvas::POLARDraw;
using tessaly::canvas::ShapeData;

namespace {
constexpr int SelectTool = 1;
constexpr int MainCanvasZoom = 90; // the page zoom of a 1280 by 1024 screen
} // namespace

TEST(SymbolHandles, ADragOnADoorsLeafMovesTheDoor) {
    const auto draw = buildLibraryDrawing(*builtInCatalogue().find(QStringLiteral("Standard Doors")), 50);
    draw->setViewportSize(QSize(1000, 700));
    draw->setZoom(MainCanvasZoom);
    draw->setScroll(QPointF(0, 0));
    draw->setScreenOrigin(QPoint(0, 0));
    draw->view()->set("ToolMode", SelectTool);
    for (const auto& shape : draw->drawing().shapes()) {
        const int id = shape->id;
        const ShapeData before = *shape;
        draw->setSelection({id});
        // The leaf stands along the left side of a left-hand door, the right side of a right-hand one,
        // from the top of the symbol down to the wall line; the side handle is level with the box's middle.
        const bool left = before.name.contains(QStringLiteral("Left"));
        const QRectF box = before.box();
        const double leafX = left ? box.left() + 0.2 : box.right() - 0.2;
        const QPointF from(leafX, box.center().y() - 0.5);
        const QPointF to = from + QPointF(12, 7);
        const QPointF a = draw->pageToScreen(from), b = draw->pageToScreen(to);
        draw->mousePress(1, 0, a.x(), a.y());
        draw->mouseMove(1, 0, (a.x() + b.x()) / 2, (a.y() + b.y()) / 2);
        draw->mouseMove(1, 0, b.x(), b.y());
        draw->mouseRelease(1, 0, b.x(), b.y());
        const ShapeData& after = *draw->drawing().find(id);
        EXPECT_NEAR(after.left - before.left, 12, 1e-3) << before.name.toStdString();
        EXPECT_NEAR(after.top - before.top, 7, 1e-3) << before.name.toStdString();
        EXPECT_NEAR(after.box().width(), box.width(), 1e-3) << before.name.toStdString() << " was sized";
        EXPECT_NEAR(after.box().height(), box.height(), 1e-3) << before.name.toStdString() << " was sized";
    }
}
