#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include <gtest/gtest.h>

using namespace tessaly;

TEST(Vb, RoundsHalvesToEven) {
    EXPECT_EQ(vb::roundHalfEven(0.5), 0.0);
    EXPECT_EQ(vb::roundHalfEven(1.5), 2.0);
    EXPECT_EQ(vb::roundHalfEven(2.5), 2.0);
    EXPECT_EQ(vb::roundHalfEven(-2.5), -2.0);
    EXPECT_EQ(vb::roundHalfEven(0.2), 0.0);
}

TEST(Vb, Int16OverflowRaisesError6) {
    EXPECT_EQ(vb::toInt16(QVariant(32767)), 32767);
    try {
        vb::toInt16(QVariant(32768));
        FAIL() << "no overflow";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 6);
        EXPECT_EQ(e.description(), QStringLiteral("Overflow"));
    }
}

TEST(Vb, NonNumericTextIsTypeMismatch) {
    try {
        vb::toInt32(QVariant(QStringLiteral("12a")));
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 13);
    }
}

TEST(Vb, IsNumericFollowsThePlatform) {
    EXPECT_TRUE(vb::isNumeric(QVariant(QStringLiteral(" 2000 "))));
    EXPECT_TRUE(vb::isNumeric(QVariant(QStringLiteral("0.5"))));
    EXPECT_FALSE(vb::isNumeric(QVariant(QStringLiteral(""))));
    EXPECT_FALSE(vb::isNumeric(QVariant(QStringLiteral("abc"))));
    EXPECT_FALSE(vb::isNumeric(QVariant(QStringLiteral("12a"))));
    EXPECT_FALSE(vb::isNumeric(QVariant()));
}

TEST(Vb, ValReadsTheLeadingNumber) {
    EXPECT_EQ(vb::val(QStringLiteral("12a")), 12.0);
    EXPECT_EQ(vb::val(QStringLiteral("abc")), 0.0);
    EXPECT_EQ(vb::val(QStringLiteral(" 1 5")), 15.0);
    EXPECT_EQ(vb::val(QStringLiteral("-40.5x")), -40.5);
}

TEST(Vb, TextOfValues) {
    EXPECT_EQ(vb::toText(QVariant(true)), QStringLiteral("True"));
    EXPECT_EQ(vb::toText(QVariant(2000.0)), QStringLiteral("2000"));
    EXPECT_EQ(vb::toText(QVariant(0.25)), QStringLiteral("0.25"));
}
