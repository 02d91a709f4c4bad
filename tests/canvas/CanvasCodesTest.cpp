// The canvas's codes: the shape type table that the main window's name tables
// come from, and the names the canvas gives its own shapes.
#include "canvas/api/CanvasCodes.h"
#include "canvas/model/ShapeTypes.h"

#include <QString>
#include <gtest/gtest.h>
#include <set>

namespace tessaly::canvas {
namespace {

TEST(CanvasCodes, ShapeTypeTableHoldsTheTwentyOneTypesInTheNameTablesOrder) {
    ASSERT_EQ(ShapeTypeTable.size(), 21u);
    EXPECT_EQ(ShapeTypeTable[0].code, 19);
    EXPECT_STREQ(ShapeTypeTable[0].name, "Arc");
    EXPECT_EQ(ShapeTypeTable[2].code, 10250);
    EXPECT_STREQ(ShapeTypeTable[2].name, "Dimension Bar");
    EXPECT_EQ(ShapeTypeTable[9].code, 10000);
    EXPECT_STREQ(ShapeTypeTable[9].name, "Link");
    EXPECT_EQ(ShapeTypeTable[13].code, 136);
    EXPECT_STREQ(ShapeTypeTable[13].name, "Plain Text");
    EXPECT_EQ(ShapeTypeTable[15].code, 1);
    EXPECT_STREQ(ShapeTypeTable[15].name, "Rectangle");
    EXPECT_EQ(ShapeTypeTable[19].code, 202);
    EXPECT_STREQ(ShapeTypeTable[20].name, "Trapezoid");
}

TEST(CanvasCodes, EveryDrawableCodeIsListedOnceAndNamedAsTheTableNamesIt) {
    std::set<int> seen;
    for (size_t i = 0; i < ShapeTypeTable.size(); ++i) {
        const ShapeTypeEntry& e = ShapeTypeTable[i];
        EXPECT_TRUE(seen.insert(e.code).second) << "code " << e.code << " listed twice";
        EXPECT_EQ(shape_type::DrawableCodes[i], e.code);
        EXPECT_EQ(shape_type::displayName(e.code), QString::fromLatin1(e.name));
    }
    EXPECT_EQ(shape_type::displayName(shape_type::Picture), QStringLiteral("Picture"));
    EXPECT_EQ(shape_type::displayName(shape_type::Group), QStringLiteral("Group"));
    EXPECT_EQ(shape_type::displayName(13), QString());
}

TEST(CanvasCodes, ToolModesAndReorderStepsAreTheObjectModelsValues) {
    EXPECT_EQ(tool_mode::Unavailable, -1);
    EXPECT_EQ(tool_mode::Select, 1);
    EXPECT_EQ(tool_mode::Rotate, 2);
    EXPECT_EQ(tool_mode::EditPoints, 3);
    EXPECT_EQ(tool_mode::Draw, 4);
    EXPECT_EQ(tool_option::Curve, 1);
    EXPECT_EQ(tool_option::MultiPoint, 2);
    EXPECT_EQ(tool_option::Freehand, 3);
    EXPECT_EQ(reorder_step::ToBack, 0);
    EXPECT_EQ(reorder_step::BackOne, 1);
    EXPECT_EQ(reorder_step::ForwardOne, 2);
    EXPECT_EQ(reorder_step::ToFront, 3);
}

} // namespace
} // namespace tessaly::canvas
