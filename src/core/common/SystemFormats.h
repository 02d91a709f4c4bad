#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>

// The system's formats of dates, times and money, as the platform's Format
// and FormatCurrency give them: the formats of the locale that Tessaly runs
// in (the desktop's, or the script driver's --locale). Years always show four
// digits, as the platform's short date does.
namespace tessaly::sysfmt {

// "23/11/2026" in en_GB, "11/23/2026" in en_US.
QString shortDate(const QDate& date);
// The long time without a time zone: "14:30:00" in en_GB, "2:30:00 PM" in en_US.
QString longTime(const QTime& time);
// The general date format: the short date, followed by the long time where the
// value holds a time of day other than midnight.
QString generalDate(const QDateTime& dateTime);
// The long date: "Monday, 23 November 2026" in en_GB.
QString longDate(const QDate& date);
// A currency text with `decimals` decimals: "£1,234.50", "-£12.00" in en_GB
// (a negative amount that rounds to zero shows as zero).
QString currency(double value, int decimals);
// A date typed as text in the short date's order of day, month and year
// ("01/01/1900"); an invalid date when the text is none.
QDate dateFromText(const QString& text);

} // namespace tessaly::sysfmt
