#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace tessaly::schedule {

// Colours are 24-bit values with red in the low byte (0x00BBGGRR).
using Colour = uint32_t;

// Minutes in a day: a bar's time runs from 0 to this value, the end of the day.
constexpr int MinutesPerDay = 1440;

// A point of a bar: a day number of the date serials (day 0 is 30 December
// 1899) and the minutes after that day's midnight.
struct DayTime {
    int32_t date = 0;
    int32_t minutes = 0;

    // The instant in days, the minutes as a fraction.
    double instant() const { return date + static_cast<double>(minutes) / MinutesPerDay; }
    bool operator==(const DayTime&) const = default;
};

// The point of a start, given in whole minutes from day 0: its day and the
// minutes into it.
DayTime startAt(long long minutes);
// The point of an end: an end on a midnight belongs to the day before, at
// minute 1440, so that a bar over whole days ends on its last day.
DayTime endAt(long long minutes);
// Whole minutes from day 0 of an instant in days.
long long minutesOf(double instant);
// The point moved by whole minutes; a point at minute 1440 stays at the end of
// its day when it lands on a midnight.
DayTime shifted(DayTime point, long long minutes);

// Dates of the day numbers.
QDate dateOfDay(int64_t day);
int64_t dayOfDate(const QDate& date);
// "2026-11-23", or nothing for a day outside the years 1 to 9999.
std::optional<QString> isoDay(int64_t day);

// The values the schedule control is designed with: titles, the names of days
// and months, the mask of a date heading, the marks of the hours before and
// after noon, and what a print carries above and below the chart.
struct ScheduleDesign {
    QString listTitle = QStringLiteral("Project Element");
    // Seven day names from Sunday, separated by semicolons.
    QString dayNames = QStringLiteral("Sun;Mon;Tue;Wed;Thu;Fri;Sat");
    // Twelve month names from January, separated by commas.
    QString monthNames = QStringLiteral("Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sept,Oct,Nov,Dec");
    // A day's heading: D the day name, M the month name, n the day of the
    // month, m the month's number, Y the year; anything else stands as written.
    QString dateMask = QStringLiteral("D, M n/Y");
    QString amMark = QStringLiteral("a");
    QString pmMark = QStringLiteral("p");
    QString printHeading = QStringLiteral("Tessaly::Project Schedule");
    QString printFooter = QStringLiteral("Report");

    // The name of a weekday (Qt's 1 Monday to 7 Sunday) and of a month (1 to 12).
    QString dayName(int qtDayOfWeek) const;
    QString monthName(int month) const;
    // A date through the date mask.
    QString formatDate(const QDate& date) const;
    // An hour of the clock (0 to 23) as "12a", "1a", ... "12p", "11p".
    QString hourText(int hour) const;
};

} // namespace tessaly::schedule
