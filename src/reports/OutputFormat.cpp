#include "OutputFormat.h"

#include "core/runtime/Vb.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QStringList>
#include <cmath>
#include <optional>

namespace tessaly::reports {

namespace {

// Day 0 of the platform's date serial numbers.
const QDate SerialEpoch(1899, 12, 30);
constexpr double SecondsPerDay = 86400.0;
constexpr int PercentFactor = 100;

bool isNamed(const QString& format, const char* name) {
    return format.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

// A date and time from a value: a date, a date and time, an ISO text or a serial number.
QDateTime toDateTime(const QVariant& value) {
    if (value.metaType().id() == QMetaType::QDate)
        return QDateTime(value.toDate(), QTime(0, 0));
    if (value.metaType().id() == QMetaType::QDateTime)
        return value.toDateTime();
    if (value.metaType().id() == QMetaType::QString) {
        const QDateTime parsed = QDateTime::fromString(value.toString(), Qt::ISODate);
        if (parsed.isValid())
            return parsed;
        const QDate date = QDate::fromString(value.toString(), Qt::ISODate);
        if (date.isValid())
            return QDateTime(date, QTime(0, 0));
    }
    if (vb::isNumeric(value)) {
        const double serial = vb::toDouble(value);
        const double days = std::floor(serial);
        const auto seconds = static_cast<qint64>(std::llround((serial - days) * SecondsPerDay));
        return QDateTime(SerialEpoch.addDays(static_cast<qint64>(days)), QTime(0, 0)).addSecs(seconds);
    }
    return {};
}

// One section of a number pattern, taken apart.
struct NumberPattern {
    QString prefix;
    QString suffix;
    int minIntegerDigits = 0;
    int minDecimals = 0;
    int maxDecimals = 0;
    bool grouped = false;
    bool percent = false;
    bool hasDigits = false;
};

NumberPattern parsePattern(const QString& section) {
    NumberPattern p;
    const auto isDigitChar = [](QChar c) {
        return c == QLatin1Char('0') || c == QLatin1Char('#') || c == QLatin1Char(',') ||
               c == QLatin1Char('.');
    };
    qsizetype first = -1, last = -1;
    for (qsizetype i = 0; i < section.size(); ++i)
        if (isDigitChar(section[i])) {
            if (first < 0)
                first = i;
            last = i;
        }
    if (first < 0) {
        p.prefix = section;
        p.prefix.remove(QLatin1Char('"'));
        p.prefix.remove(QLatin1Char('\\'));
        return p;
    }
    p.hasDigits = true;
    p.prefix = section.left(first);
    p.suffix = section.mid(last + 1);
    const QString body = section.mid(first, last - first + 1);
    const qsizetype point = body.indexOf(QLatin1Char('.'));
    const QString integer = point < 0 ? body : body.left(point);
    const QString decimals = point < 0 ? QString() : body.mid(point + 1);
    p.grouped = integer.contains(QLatin1Char(','));
    p.minIntegerDigits = static_cast<int>(integer.count(QLatin1Char('0')));
    p.minDecimals = static_cast<int>(decimals.count(QLatin1Char('0')));
    p.maxDecimals = p.minDecimals + static_cast<int>(decimals.count(QLatin1Char('#')));
    p.percent = section.contains(QLatin1Char('%'));
    for (QString* literal : {&p.prefix, &p.suffix}) {
        literal->remove(QLatin1Char('"'));
        literal->remove(QLatin1Char('\\'));
    }
    return p;
}

// Digits of |value| rounded half away from zero, as the report's formats round.
QString formatNumber(double value, const NumberPattern& p) {
    if (!p.hasDigits)
        return p.prefix;
    double v = std::fabs(value) * (p.percent ? PercentFactor : 1);
    const double scale = std::pow(10.0, p.maxDecimals);
    v = std::floor(v * scale + 0.5) / scale;
    QString text = QString::number(v, 'f', p.maxDecimals);
    QString integer = text.section(QLatin1Char('.'), 0, 0);
    QString decimals = text.section(QLatin1Char('.'), 1);
    while (decimals.size() > p.minDecimals && decimals.endsWith(QLatin1Char('0')))
        decimals.chop(1);
    if (integer == QLatin1String("0") && p.minIntegerDigits == 0)
        integer.clear();
    while (integer.size() < p.minIntegerDigits)
        integer.prepend(QLatin1Char('0'));
    if (p.grouped)
        for (qsizetype i = integer.size() - 3; i > 0; i -= 3)
            integer.insert(i, QLatin1Char(','));
    QString out = p.prefix + integer;
    if (!decimals.isEmpty())
        out += QLatin1Char('.') + decimals;
    return out + p.suffix;
}

QString formatWithPattern(double value, const QString& format) {
    const QStringList sections = format.split(QLatin1Char(';'));
    if (value == 0 && sections.size() >= 3 && !sections[2].isEmpty())
        return formatNumber(0, parsePattern(sections[2]));
    if (value < 0 && sections.size() >= 2 && !sections[1].isEmpty())
        return formatNumber(value, parsePattern(sections[1]));
    const NumberPattern p = parsePattern(sections[0]);
    const QString text = formatNumber(value, p);
    const bool showsDigit = text.contains(QRegularExpression(QStringLiteral("[1-9]")));
    return value < 0 && showsDigit ? QLatin1Char('-') + text : text;
}

std::optional<QString> namedFormat(const QVariant& value, const QString& format) {
    const QLocale locale;
    if (isNamed(format, "Long Date"))
        return locale.toString(toDateTime(value).date(), QLocale::LongFormat);
    if (isNamed(format, "Medium Date"))
        return toDateTime(value).date().toString(QStringLiteral("dd-MMM-yy"));
    if (isNamed(format, "Short Date"))
        return locale.toString(toDateTime(value).date(), QLocale::ShortFormat);
    if (isNamed(format, "Long Time"))
        return locale.toString(toDateTime(value).time(), QLocale::LongFormat);
    if (isNamed(format, "Short Time"))
        return toDateTime(value).time().toString(QStringLiteral("HH:mm"));
    if (!vb::isNumeric(value))
        return std::nullopt;
    const double number = vb::toDouble(value);
    if (isNamed(format, "General Number"))
        return vb::toText(number);
    if (isNamed(format, "Currency"))
        return locale.toCurrencyString(number);
    if (isNamed(format, "Fixed"))
        return formatWithPattern(number, QStringLiteral("0.00"));
    if (isNamed(format, "Standard"))
        return formatWithPattern(number, QStringLiteral("#,##0.00"));
    if (isNamed(format, "Percent"))
        return formatWithPattern(number, QStringLiteral("0.00%"));
    return std::nullopt;
}

} // namespace

QString formatValue(const QVariant& value, const QString& format) {
    if (!value.isValid() || value.isNull())
        return QString();
    if (format.isEmpty())
        return vb::toText(value);
    if (const std::optional<QString> named = namedFormat(value, format))
        return *named;
    if (!vb::isNumeric(value))
        return vb::toText(value);
    return formatWithPattern(vb::toDouble(value), format);
}

} // namespace tessaly::reports
