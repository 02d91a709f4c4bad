#include "SystemFormats.h"

#include <QLocale>
#include <QRegularExpression>
#include <cmath>

namespace tessaly::sysfmt {

namespace {

// A short date format with its year widened to four digits.
QString shortDateFormat() {
    QString format = QLocale().dateFormat(QLocale::ShortFormat);
    static const QRegularExpression year(QStringLiteral("y+"));
    format.replace(year, QStringLiteral("yyyy"));
    return format;
}

// A time format without its time zone (the letters t), trimmed.
QString withoutZone(QString format) {
    static const QRegularExpression zone(QStringLiteral("\\s*t+\\s*"));
    format.replace(zone, QStringLiteral(" "));
    return format.trimmed();
}

} // namespace

QString shortDate(const QDate& date) {
    return QLocale().toString(date, shortDateFormat());
}

QString longTime(const QTime& time) {
    return QLocale().toString(time, withoutZone(QLocale().timeFormat(QLocale::LongFormat)));
}

QString generalDate(const QDateTime& dateTime) {
    const QString date = shortDate(dateTime.date());
    if (dateTime.time() == QTime(0, 0))
        return date;
    return date + QLatin1Char(' ') + longTime(dateTime.time());
}

QString longDate(const QDate& date) {
    return QLocale().toString(date, QLocale::LongFormat);
}

QString currency(double value, int decimals) {
    // A negative amount takes the locale's minus sign before its symbol
    // ("-£12.00"), as the desktop's regional settings write it by default,
    // not the brackets of an accountant's format.
    const QLocale locale;
    const QString amount = locale.toCurrencyString(std::abs(value), locale.currencySymbol(), decimals);
    const QString zero = locale.toCurrencyString(0.0, locale.currencySymbol(), decimals);
    return value < 0 && amount != zero ? locale.negativeSign() + amount : amount;
}

QDate dateFromText(const QString& text) {
    static const QRegularExpression parts(QStringLiteral("^\\s*(\\d{1,4})\\D(\\d{1,2})\\D(\\d{1,4})\\s*$"));
    const QRegularExpressionMatch m = parts.match(text);
    if (!m.hasMatch())
        return {};
    const int a = m.captured(1).toInt(), b = m.captured(2).toInt(), c = m.captured(3).toInt();
    // A year of more than two digits first is read year first.
    if (m.captured(1).size() > 2)
        return QDate(a, b, c);
    // Otherwise the short date's order of day and month decides which number is which.
    const QString format = shortDateFormat();
    const qsizetype day = format.indexOf(QLatin1Char('d'));
    const qsizetype month = format.indexOf(QLatin1Char('M'));
    if (month >= 0 && month < day)
        return QDate(c, a, b);
    return QDate(c, b, a);
}

} // namespace tessaly::sysfmt
