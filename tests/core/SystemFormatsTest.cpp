// The system's formats of dates and money follow the locale Tessaly runs in,
// and the present can be pinned.
#include "core/common/SystemFormats.h"
#include "core/runtime/Clock.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

// Runs the test body in one locale and puts the tests' own back afterwards.
class InLocale {
public:
    explicit InLocale(const char* name) : before_(QLocale()) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
    }
    ~InLocale() { QLocale::setDefault(before_); }
    InLocale(const InLocale&) = delete;
    InLocale& operator=(const InLocale&) = delete;

private:
    QLocale before_;
};

TEST(SystemFormatsTest, BritishDatesAndPounds) {
    InLocale gb("en_GB");
    EXPECT_EQ(sysfmt::shortDate(QDate(2026, 11, 3)), QStringLiteral("03/11/2026"));
    EXPECT_EQ(sysfmt::generalDate(QDateTime(QDate(2026, 11, 3), QTime(0, 0))), QStringLiteral("03/11/2026"));
    EXPECT_EQ(sysfmt::generalDate(QDateTime(QDate(2026, 11, 3), QTime(14, 30, 5))),
              QStringLiteral("03/11/2026 14:30:05"));
    EXPECT_EQ(sysfmt::longDate(QDate(2026, 11, 23)), QStringLiteral("Monday, 23 November 2026"));
    EXPECT_EQ(sysfmt::currency(1234.5, 2), QStringLiteral("£1,234.50"));
    EXPECT_EQ(sysfmt::currency(-12, 2), QStringLiteral("-£12.00"));
    EXPECT_EQ(sysfmt::currency(0.125, 2), QStringLiteral("£0.13"));
    EXPECT_EQ(sysfmt::currency(-0.001, 2), QStringLiteral("£0.00"));
}

TEST(SystemFormatsTest, AmericanDatesAndDollars) {
    InLocale us("en_US");
    EXPECT_EQ(sysfmt::shortDate(QDate(2026, 11, 3)), QStringLiteral("11/3/2026"));
    // The twelve-hour long time, its blank before the mark as the locale writes it.
    const QString general = sysfmt::generalDate(QDateTime(QDate(2026, 11, 3), QTime(14, 30, 5)));
    EXPECT_TRUE(general.startsWith(QStringLiteral("11/3/2026 2:30:05"))) << general.toStdString();
    EXPECT_TRUE(general.endsWith(QStringLiteral("PM"))) << general.toStdString();
    EXPECT_EQ(sysfmt::currency(1234.5, 2), QStringLiteral("$1,234.50"));
    EXPECT_EQ(sysfmt::currency(-7.5, 2), QStringLiteral("-$7.50"));
}

TEST(SystemFormatsTest, ATypedDateIsReadInTheShortDatesOrder) {
    {
        InLocale gb("en_GB");
        EXPECT_EQ(sysfmt::dateFromText(QStringLiteral("01/01/1900")), QDate(1900, 1, 1));
        EXPECT_EQ(sysfmt::dateFromText(QStringLiteral("03/11/2026")), QDate(2026, 11, 3));
        EXPECT_EQ(sysfmt::dateFromText(QStringLiteral("2026-11-03")), QDate(2026, 11, 3));
        EXPECT_FALSE(sysfmt::dateFromText(QStringLiteral("tomorrow")).isValid());
    }
    InLocale us("en_US");
    EXPECT_EQ(sysfmt::dateFromText(QStringLiteral("01/01/1900")), QDate(1900, 1, 1));
    EXPECT_EQ(sysfmt::dateFromText(QStringLiteral("03/11/2026")), QDate(2026, 3, 11));
}

TEST(ClockTest, APinnedPresentHoldsUntilItIsLetGo) {
    const QDateTime at(QDate(2026, 11, 23), QTime(14, 30));
    clock::pin(at);
    EXPECT_EQ(clock::now(), at);
    EXPECT_EQ(clock::today(), QDate(2026, 11, 23));
    clock::pin(QDateTime());
    EXPECT_LE(qAbs(clock::now().secsTo(QDateTime::currentDateTime())), 5);
}

} // namespace
} // namespace tessaly
