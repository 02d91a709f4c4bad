// The output formats of report fields.
#include "reports/OutputFormat.h"

#include <QDate>
#include <gtest/gtest.h>

using tessaly::reports::formatValue;

namespace {
const QString Money = QStringLiteral("#,##0.00");
}

TEST(OutputFormat, GroupsThousandsWithTwoDecimals) {
    EXPECT_EQ(formatValue(1234.5, Money), QStringLiteral("1,234.50"));
    EXPECT_EQ(formatValue(1234567.891, Money), QStringLiteral("1,234,567.89"));
    EXPECT_EQ(formatValue(0, Money), QStringLiteral("0.00"));
    EXPECT_EQ(formatValue(0.5, Money), QStringLiteral("0.50"));
    EXPECT_EQ(formatValue(999.999, Money), QStringLiteral("1,000.00"));
}

TEST(OutputFormat, NegativeNumbersKeepTheirSign) {
    EXPECT_EQ(formatValue(-1234.567, Money), QStringLiteral("-1,234.57"));
    EXPECT_EQ(formatValue(-0.001, Money), QStringLiteral("0.00"));
    EXPECT_EQ(formatValue(-5, QStringLiteral("0.00;(0.00)")), QStringLiteral("(5.00)"));
    EXPECT_EQ(formatValue(0, QStringLiteral("0.00;(0.00);\"nil\"")), QStringLiteral("nil"));
}

TEST(OutputFormat, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(formatValue(2.5, QStringLiteral("0")), QStringLiteral("3"));
    EXPECT_EQ(formatValue(0.125, QStringLiteral("0.00")), QStringLiteral("0.13"));
    EXPECT_EQ(formatValue(-2.5, QStringLiteral("0")), QStringLiteral("-3"));
}

TEST(OutputFormat, OptionalDigitsAndLiterals) {
    EXPECT_EQ(formatValue(3.1, QStringLiteral("#.##")), QStringLiteral("3.1"));
    EXPECT_EQ(formatValue(0.25, QStringLiteral("0%")), QStringLiteral("25%"));
    EXPECT_EQ(formatValue(7, QStringLiteral("000")), QStringLiteral("007"));
    EXPECT_EQ(formatValue(12.5, QStringLiteral("\\$#,##0.00")), QStringLiteral("$12.50"));
}

TEST(OutputFormat, TextNumbersAndNamedFormats) {
    EXPECT_EQ(formatValue(QStringLiteral("1500"), Money), QStringLiteral("1,500.00"));
    EXPECT_EQ(formatValue(1500, QStringLiteral("Standard")), QStringLiteral("1,500.00"));
    EXPECT_EQ(formatValue(2.5, QStringLiteral("Fixed")), QStringLiteral("2.50"));
    EXPECT_EQ(formatValue(0.5, QStringLiteral("Percent")), QStringLiteral("50.00%"));
}

TEST(OutputFormat, NullEmptyAndNonNumbers) {
    EXPECT_EQ(formatValue(QVariant(), Money), QString());
    EXPECT_EQ(formatValue(12.25, QString()), QStringLiteral("12.25"));
    EXPECT_EQ(formatValue(QStringLiteral("Bricks"), Money), QStringLiteral("Bricks"));
}

TEST(OutputFormat, DatesFromDatesTextsAndSerials) {
    const QDate day(2024, 3, 5);
    EXPECT_EQ(formatValue(day, QStringLiteral("Short Date")), QLocale().toString(day, QLocale::ShortFormat));
    EXPECT_EQ(formatValue(day, QStringLiteral("Long Date")), QLocale().toString(day, QLocale::LongFormat));
    // 45356 is 5 March 2024 as a date serial.
    EXPECT_EQ(formatValue(45356.0, QStringLiteral("Medium Date")), QStringLiteral("05-Mar-24"));
    EXPECT_EQ(formatValue(QStringLiteral("2024-03-05T14:30:00"), QStringLiteral("Short Time")),
              QStringLiteral("14:30"));
}
