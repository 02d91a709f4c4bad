#include "ScheduleDesign.h"

#include <cmath>

namespace tessaly::schedule {

namespace {
constexpr int DaysPerWeek = 7;
constexpr int MonthsPerYear = 12;
constexpr int HoursPerHalfDay = 12;
constexpr int FirstYear = 1;   // the first year an ISO day text shows
constexpr int LastYear = 9999; // the last year an ISO day text shows

// Day 0 of the date serials.
QDate epoch() {
    return QDate(1899, 12, 30);
}

long long floorDiv(long long a, long long b) {
    long long q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

QString entry(const QString& list, QChar separator, int index, int count) {
    const QStringList parts = list.split(separator);
    if (index < 0 || index >= count || index >= parts.size())
        return QString();
    return parts[index].trimmed();
}
} // namespace

long long minutesOf(double instant) {
    return std::llround(instant * MinutesPerDay);
}

DayTime startAt(long long minutes) {
    const long long day = floorDiv(minutes, MinutesPerDay);
    return DayTime{static_cast<int32_t>(day), static_cast<int32_t>(minutes - day * MinutesPerDay)};
}

DayTime endAt(long long minutes) {
    DayTime p = startAt(minutes);
    if (p.minutes == 0) {
        --p.date;
        p.minutes = MinutesPerDay;
    }
    return p;
}

DayTime shifted(DayTime point, long long minutes) {
    const bool endOfDay = point.minutes == MinutesPerDay;
    const long long total = static_cast<long long>(point.date) * MinutesPerDay + point.minutes + minutes;
    const long long day = floorDiv(total, MinutesPerDay);
    DayTime r{static_cast<int32_t>(day), static_cast<int32_t>(total - day * MinutesPerDay)};
    if (endOfDay && r.minutes == 0) {
        --r.date;
        r.minutes = MinutesPerDay;
    }
    return r;
}

QDate dateOfDay(int64_t day) {
    return epoch().addDays(day);
}

int64_t dayOfDate(const QDate& date) {
    return epoch().daysTo(date);
}

std::optional<QString> isoDay(int64_t day) {
    const QDate d = dateOfDay(day);
    if (!d.isValid() || d.year() < FirstYear || d.year() > LastYear)
        return std::nullopt;
    return d.toString(QStringLiteral("yyyy-MM-dd"));
}

QString ScheduleDesign::dayName(int qtDayOfWeek) const {
    // The names start on Sunday; Qt counts Sunday as 7.
    return entry(dayNames, QLatin1Char(';'), qtDayOfWeek % DaysPerWeek, DaysPerWeek);
}

QString ScheduleDesign::monthName(int month) const {
    return entry(monthNames, QLatin1Char(','), month - 1, MonthsPerYear);
}

QString ScheduleDesign::formatDate(const QDate& date) const {
    QString out;
    for (const QChar c : dateMask) {
        switch (c.unicode()) {
        case 'D':
            out += dayName(date.dayOfWeek());
            break;
        case 'M':
            out += monthName(date.month());
            break;
        case 'n':
            out += QString::number(date.day());
            break;
        case 'm':
            out += QString::number(date.month());
            break;
        case 'Y':
            out += QString::number(date.year());
            break;
        default:
            out += c;
        }
    }
    return out;
}

QString ScheduleDesign::hourText(int hour) const {
    const int shown = hour % HoursPerHalfDay == 0 ? HoursPerHalfDay : hour % HoursPerHalfDay;
    return QString::number(shown) + (hour < HoursPerHalfDay ? amMark : pmMark);
}

} // namespace tessaly::schedule
