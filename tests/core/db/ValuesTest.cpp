// Conversions between the program's values and the stored ones. These need no database.

#include "core/db/Values.h"
#include "core/runtime/RuntimeError.h"

#include <QLocale>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::db;

namespace {

int errorNumber(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(Values, CurrencyFromTextIsExact) {
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("12.5")), 125000);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral(" 1,250.00 ")), 12500000);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("£3.20")), 32000);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("-0.0001")), -1);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("922337203685477.5807")), 9223372036854775807LL);
    // Beyond four decimals: half to even.
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("0.00005")), 0);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("0.00015")), 2);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("0.000151")), 2);
    EXPECT_EQ(values::currencyFromVariant(QVariant(0.1)), 1000);
    EXPECT_EQ(values::currencyFromVariant(QVariant(7)), 70000);
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1e3")), 10000000);
}

TEST(Values, CurrencyRefusesWhatIsNoNumber) {
    EXPECT_EQ(errorNumber([] { values::currencyFromVariant(QStringLiteral("twelve")); }), 13);
    EXPECT_EQ(errorNumber([] { values::currencyFromVariant(QStringLiteral("")); }), 13);
    EXPECT_EQ(errorNumber([] { values::currencyFromVariant(QStringLiteral("1e20")); }), 6);
    EXPECT_EQ(errorNumber([] { values::currencyFromVariant(QStringLiteral("9999999999999999")); }), 6);
}

// Sets the program's locale for one test and puts en_GB back after it.
class InLocale {
public:
    explicit InLocale(const char* name) { QLocale::setDefault(QLocale(QLatin1String(name))); }
    ~InLocale() { QLocale::setDefault(QLocale(QStringLiteral("en_GB"))); }
    InLocale(const InLocale&) = delete;
    InLocale& operator=(const InLocale&) = delete;
};

TEST(Values, CurrencyTypedInALocaleWithADecimalCommaIsReadInItsForm) {
    {
        const InLocale french("fr_FR");
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1250,5")), 12505000);
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1 250,50 €")), 12505000);
        EXPECT_EQ(values::currencyFromVariant(QString::fromUtf8("1\u202f250,50")), 12505000);
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("-0,25")), -2500);
        // A point is still read as the decimal mark where no comma is.
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1250.5")), 12505000);
        EXPECT_EQ(errorNumber([] { values::currencyFromVariant(QStringLiteral("12,5,0")); }), 13);
    }
    {
        const InLocale german("de_DE");
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1.250,75")), 12507500);
        EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1250,75")), 12507500);
    }
    // In en_GB a comma groups thousands.
    EXPECT_EQ(values::currencyFromVariant(QStringLiteral("1,250")), 12500000);
}

TEST(Values, CurrencyText) {
    EXPECT_EQ(values::currencyText(125000), QStringLiteral("12.5000"));
    EXPECT_EQ(values::currencyText(-12345), QStringLiteral("-1.2345"));
    EXPECT_EQ(values::currencyText(5), QStringLiteral("0.0005"));
    qint64 v = 0;
    ASSERT_TRUE(values::parseCurrencyText(QStringLiteral("-1.2345"), &v));
    EXPECT_EQ(v, -12345);
}

TEST(Values, DateSerials) {
    const QDateTime noon = values::dateFromSerial(45000.5);
    EXPECT_EQ(noon.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), QStringLiteral("2023-03-15 12:00:00"));
    EXPECT_DOUBLE_EQ(values::serialFromDate(noon), 45000.5);
    // Before day 0 the whole part counts back and the time still runs forward.
    const QDateTime before = values::dateFromSerial(-1.25);
    EXPECT_EQ(before.toString(QStringLiteral("yyyy-MM-dd HH:mm")), QStringLiteral("1899-12-29 06:00"));
    EXPECT_DOUBLE_EQ(values::serialFromDate(before), -1.25);
    EXPECT_EQ(values::isoText(values::dateFromSerial(0)), QStringLiteral("1899-12-30 00:00:00"));
    // A time that rounds up to midnight is the next day.
    EXPECT_EQ(values::isoText(values::dateFromSerial(1.9999999999)), QStringLiteral("1900-01-01 00:00:00"));
}

TEST(Values, DatesFromTexts) {
    EXPECT_EQ(values::isoText(values::dateFromVariant(QStringLiteral("2024-03-05 14:30:00"))),
              QStringLiteral("2024-03-05 14:30:00"));
    EXPECT_EQ(values::isoText(values::dateFromVariant(QStringLiteral("05/03/2024"))),
              QStringLiteral("2024-03-05 00:00:00"));
    EXPECT_EQ(values::isoText(values::dateFromVariant(QDate(2024, 2, 29))),
              QStringLiteral("2024-02-29 00:00:00"));
    EXPECT_EQ(values::isoText(values::fromIsoText(QStringLiteral("2024-03-05T10:11:12.600"))),
              QStringLiteral("2024-03-05 10:11:13"));
    EXPECT_EQ(errorNumber([] { values::dateFromVariant(QStringLiteral("tomorrow")); }), 13);
}

TEST(Values, NullReadAsTextIsError94) {
    try {
        textOf(QVariant());
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 94);
        EXPECT_EQ(e.description(), QStringLiteral("Invalid use of Null"));
    }
    EXPECT_EQ(errorNumber([] { longOf(QVariant()); }), 94);
    EXPECT_EQ(textOf(QVariant(12)), QStringLiteral("12"));
    EXPECT_EQ(textOf(QVariant(QString())), QString());
    EXPECT_EQ(longOf(QVariant(QStringLiteral("41"))), 41);
}

TEST(Values, WholeNumbersOverflowAtTheirWidth) {
    EXPECT_EQ(values::fromProgram(FieldType::Short, QVariant(32767)).toInt(), 32767);
    EXPECT_EQ(errorNumber([] { values::fromProgram(FieldType::Short, QVariant(32768)); }), 6);
    EXPECT_EQ(errorNumber([] { values::fromProgram(FieldType::Short, QVariant(-32769)); }), 6);
    EXPECT_EQ(errorNumber([] { values::fromProgram(FieldType::Long, QStringLiteral("3000000000")); }), 6);
    EXPECT_EQ(errorNumber([] { values::fromProgram(FieldType::Long, QStringLiteral("x")); }), 13);
    // Banker's rounding on the way in.
    EXPECT_EQ(values::fromProgram(FieldType::Long, QVariant(2.5)).toInt(), 2);
    EXPECT_EQ(values::fromProgram(FieldType::Long, QVariant(3.5)).toInt(), 4);
}

TEST(Values, FlagsReadAsMinusOneAndZero) {
    EXPECT_EQ(values::toProgram(FieldType::Boolean, QVariant(true)).toInt(), -1);
    EXPECT_EQ(values::toProgram(FieldType::Boolean, QVariant(false)).toInt(), 0);
    EXPECT_TRUE(values::fromProgram(FieldType::Boolean, QVariant(-1)).toBool());
    EXPECT_TRUE(values::fromProgram(FieldType::Boolean, QStringLiteral("True")).toBool());
}
