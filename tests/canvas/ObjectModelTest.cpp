#include "TestSupport.h"

#include "canvas/model/ShapeTypes.h"

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

TEST(ObjectModel, AddShapeByNameWalkAndReadBack) {
    auto c = makeCanvas();
    AutoPtr canvas = c;
    AutoPtr shapes = obj(obj(canvas, "Page"), "Shapes");
    call(shapes, "AddShape", {1, 5, 5, 45, 8});
    EXPECT_EQ(get(shapes, "Count").toInt(), 1);
    AutoPtr shape = obj(shapes, "Item", {1});
    EXPECT_EQ(get(shape, "Type").toInt(), 1);
    EXPECT_EQ(get(shape, "Left").toInt(), 5);
    EXPECT_EQ(get(shape, "Top").toInt(), 5);
    EXPECT_EQ(get(shape, "Right").toInt(), 45);
    EXPECT_EQ(get(shape, "Bottom").toInt(), 8);
    EXPECT_EQ(get(shape, "Width").toInt(), 40);
    EXPECT_EQ(get(shape, "Height").toInt(), 3);
    EXPECT_EQ(get(obj(obj(canvas, "Views"), ""), "Zoom").toInt(), 100);
}
