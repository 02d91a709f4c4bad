#include "Values.h"

#include "DbErrors.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include <QLocale>
#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace tessaly::db {

namespace {

constexpr qint64 SecondsPerDay = 86400;
constexpr int CurrencyDecimals = 4; // the decimals currency keeps exactly

// Day 0 of the date serials.
QDate serialEpoch() {
    return QDate(1899, 12, 30);
}

bool isNullValue(const QVariant& v) {
    return !v.isValid() || v.isNull();
}

// Rounds a decimal digit string's cut-off part half to even; returns the carry.
bool roundsUp(const QString& dropped, qint64 kept) {
    if (dropped.isEmpty())
        return false;
    const QChar first = dropped.at(0);
    if (first > QLatin1Char('5'))
        return true;
    if (first < QLatin1Char('5'))
        return false;
    for (int i = 1; i < dropped.size(); ++i)
        if (dropped.at(i) != QLatin1Char('0'))
            return true;
    return (kept % 2) != 0; // exactly half: to the even neighbour
}

// Exact parse of [sign]digits[.digits]; false when the text is not that.
bool parseDecimal(const QString& text, qint64* out) {
    static const QRegularExpression shape(QStringLiteral("^([+-]?)(\\d*)(?:\\.(\\d*))?$"));
    const QRegularExpressionMatch m = shape.match(text);
    if (!m.hasMatch())
        return false;
    const QString whole = m.captured(2);
    const QString fraction = m.captured(3);
    if (whole.isEmpty() && fraction.isEmpty())
        return false;
    const QString kept = fraction.left(CurrencyDecimals).leftJustified(CurrencyDecimals, QLatin1Char('0'));
    const QString dropped = fraction.mid(CurrencyDecimals);
    // 922337203685477 is the largest whole part currency holds.
    const QString wholeDigits = whole.isEmpty() ? QStringLiteral("0") : whole;
    QString trimmedWhole = wholeDigits;
    while (trimmedWhole.size() > 1 && trimmedWhole.startsWith(QLatin1Char('0')))
        trimmedWhole.remove(0, 1);
    if (trimmedWhole.size() > 15)
        raiseError(err::Overflow);
    bool ok = false;
    qint64 value = (trimmedWhole + kept).toLongLong(&ok);
    if (!ok)
        raiseError(err::Overflow);
    if (roundsUp(dropped, value))
        ++value;
    if (m.captured(1) == QLatin1String("-"))
        value = -value;
    *out = value;
    return true;
}

qint64 currencyFromDouble(double d) {
    const double scaled = vb::roundHalfEven(d * static_cast<double>(CurrencyScale));
    // 9.22e18: the range of 64-bit ten-thousandths.
    if (!std::isfinite(scaled) || std::fabs(scaled) >= 9.2233720368547e18)
        raiseError(err::Overflow);
    return static_cast<qint64>(scaled);
}

// True for the characters a locale may group digits with: its own
// separator, and the spaces that stand for it when a person types.
bool isGroupMark(QChar c, const QString& localeGroup) {
    return localeGroup.contains(c) || (localeGroup.at(0).isSpace() &&
                                       (c == QLatin1Char(' ') || c == QChar(0x00A0) || c == QChar(0x202F)));
}

// A number in the form of the locale Tessaly runs in, where that locale's
// decimal mark is not a point ("1 250,50" in fr_FR), rewritten as
// [digits][.digits]; empty when the text is not in that form.
QString fromLocaleForm(const QString& t) {
    const QLocale locale; // the locale the program runs in
    const QString point = locale.decimalPoint();
    const QString group = locale.groupSeparator();
    if (point == QLatin1String(".") || point.size() != 1 || group.isEmpty())
        return {};
    QString out;
    bool seenPoint = false;
    for (int i = 0; i < t.size(); ++i) {
        const QChar c = t.at(i);
        if (c.isDigit()) {
            out += c;
        } else if (c == point.at(0) && !seenPoint) {
            seenPoint = true;
            out += QLatin1Char('.');
        } else if (!seenPoint && isGroupMark(c, group) && i > 0 && t.at(i - 1).isDigit() &&
                   i + 3 < t.size() && t.at(i + 1).isDigit() && t.at(i + 2).isDigit() &&
                   t.at(i + 3).isDigit()) {
            continue; // a group mark between digit groups
        } else {
            return {};
        }
    }
    return out;
}

// The text of a currency entry without what a person may type around the
// number: a sign, the currency symbol before or after it, and the thousands
// separators between digit groups. In a locale whose decimal mark is a comma,
// the number is read in that locale's form first.
QString bareNumber(const QString& text) {
    QString t = text.trimmed();
    bool negative = false;
    if (t.startsWith(QLatin1Char('-'))) {
        negative = true;
        t = t.mid(1).trimmed();
    }
    static const QString symbols = QStringLiteral("£$€");
    if (!t.isEmpty() && symbols.contains(t.at(0)))
        t = t.mid(1).trimmed();
    else if (!t.isEmpty() && symbols.contains(t.at(t.size() - 1)))
        t = t.left(t.size() - 1).trimmed();
    const QString local = fromLocaleForm(t);
    if (!local.isEmpty())
        return negative ? QLatin1Char('-') + local : local;
    // Thousands separators between digit groups.
    static const QRegularExpression grouped(QStringLiteral("^\\d{1,3}(,\\d{3})+(\\.\\d*)?$"));
    if (grouped.match(t).hasMatch())
        t.remove(QLatin1Char(','));
    return negative ? QLatin1Char('-') + t : t;
}

QDateTime wallClock(const QDate& date, const QTime& time) {
    return QDateTime(date, time, Qt::UTC);
}

QDateTime dateFromText(const QString& raw) {
    const QString text = raw.trimmed();
    if (vb::isNumeric(text))
        return values::dateFromSerial(vb::toDouble(text));
    QDateTime iso = values::fromIsoText(text);
    if (iso.isValid())
        return iso;
    static const char* const formats[] = {"dd/MM/yyyy HH:mm:ss", "dd/MM/yyyy HH:mm", "dd/MM/yyyy",
                                          "d/M/yyyy"};
    for (const char* f : formats) {
        const QDateTime dt = QDateTime::fromString(text, QLatin1String(f));
        if (dt.isValid())
            return wallClock(dt.date(), dt.time());
    }
    static const char* const timeFormats[] = {"HH:mm:ss", "HH:mm"};
    for (const char* f : timeFormats) {
        const QTime t = QTime::fromString(text, QLatin1String(f));
        if (t.isValid())
            return wallClock(serialEpoch(), t);
    }
    raiseError(err::TypeMismatch);
}

} // namespace

namespace values {

qint64 currencyFromVariant(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UInt:
        return static_cast<qint64>(value.toLongLong()) * CurrencyScale;
    case QMetaType::LongLong: {
        const qint64 v = value.toLongLong();
        if (v > std::numeric_limits<qint64>::max() / CurrencyScale ||
            v < std::numeric_limits<qint64>::min() / CurrencyScale)
            raiseError(err::Overflow);
        return v * CurrencyScale;
    }
    case QMetaType::Bool:
        return value.toBool() ? -CurrencyScale : 0;
    case QMetaType::QString: {
        qint64 exact = 0;
        const QString bare = bareNumber(value.toString());
        if (parseDecimal(bare, &exact))
            return exact;
        return currencyFromDouble(vb::toDouble(bare)); // exponents and hex; 13 when not a number
    }
    default:
        return currencyFromDouble(vb::toDouble(value));
    }
}

QString currencyText(qint64 tenThousandths) {
    const bool negative = tenThousandths < 0;
    const quint64 magnitude =
        negative ? static_cast<quint64>(-(tenThousandths + 1)) + 1 : static_cast<quint64>(tenThousandths);
    const quint64 whole = magnitude / CurrencyScale;
    const quint64 part = magnitude % CurrencyScale;
    return QStringLiteral("%1%2.%3")
        .arg(negative ? QStringLiteral("-") : QString())
        .arg(whole)
        .arg(part, CurrencyDecimals, 10, QLatin1Char('0'));
}

bool parseCurrencyText(const QString& text, qint64* tenThousandths) {
    return parseDecimal(text.trimmed(), tenThousandths);
}

QDateTime dateFromSerial(double serial) {
    if (!std::isfinite(serial) || std::fabs(serial) > 3.0e6) // about the year 10000 either way
        raiseError(err::Overflow);
    qint64 days = static_cast<qint64>(std::trunc(serial));
    const double fraction = std::fabs(serial - static_cast<double>(days));
    qint64 seconds = std::llround(fraction * static_cast<double>(SecondsPerDay));
    if (seconds >= SecondsPerDay) {
        seconds -= SecondsPerDay;
        ++days;
    }
    return wallClock(serialEpoch().addDays(days), QTime(0, 0).addSecs(static_cast<int>(seconds)));
}

double serialFromDate(const QDateTime& dateTime) {
    const qint64 days = serialEpoch().daysTo(dateTime.date());
    const double fraction = static_cast<double>(QTime(0, 0).secsTo(dateTime.time())) / SecondsPerDay;
    return days >= 0 ? static_cast<double>(days) + fraction : static_cast<double>(days) - fraction;
}

QDateTime dateFromVariant(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::QDateTime: {
        const QDateTime dt = value.toDateTime();
        const QTime t = dt.time();
        // Dates keep whole seconds.
        return wallClock(dt.date(), QTime(t.hour(), t.minute(), t.second())).addSecs(t.msec() >= 500 ? 1 : 0);
    }
    case QMetaType::QDate:
        return wallClock(value.toDate(), QTime(0, 0));
    case QMetaType::QString:
        return dateFromText(value.toString());
    default:
        return dateFromSerial(vb::toDouble(value));
    }
}

QString isoText(const QDateTime& dateTime) {
    return dateTime.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QDateTime fromIsoText(const QString& text) {
    static const QRegularExpression shape(
        QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})(?:[ T](\\d{2}):(\\d{2})(?::(\\d{2})(?:\\.(\\d+))?)?)?$"));
    const QRegularExpressionMatch m = shape.match(text.trimmed());
    if (!m.hasMatch())
        return {};
    const QDate date(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    const QTime time(m.captured(4).toInt(), m.captured(5).toInt(), m.captured(6).toInt());
    if (!date.isValid() || !time.isValid())
        return {};
    const bool roundUp = !m.captured(7).isEmpty() && m.captured(7).at(0) >= QLatin1Char('5');
    return wallClock(date, time).addSecs(roundUp ? 1 : 0);
}

QVariant fromProgram(FieldType type, const QVariant& value) {
    if (isNullValue(value))
        return QVariant();
    switch (type) {
    case FieldType::Counter:
    case FieldType::Long:
        return QVariant(static_cast<int>(vb::toInt32(value)));
    case FieldType::Short:
        return QVariant(static_cast<int>(vb::toInt16(value)));
    case FieldType::Text:
    case FieldType::Memo: {
        // An empty text is a text, not a Null: the engines' drivers would store
        // a null QString as NULL.
        const QString text = vb::toText(value);
        return QVariant(text.isNull() ? QString(QLatin1String("")) : text);
    }
    case FieldType::Date:
        return QVariant(dateFromVariant(value));
    case FieldType::Currency:
        return QVariant(static_cast<qlonglong>(currencyFromVariant(value)));
    case FieldType::Boolean:
        return QVariant(vb::toBool(value));
    case FieldType::Variant:
        return value;
    }
    return value;
}

QVariant toProgram(FieldType type, const QVariant& neutral) {
    if (isNullValue(neutral))
        return QVariant();
    switch (type) {
    case FieldType::Counter:
    case FieldType::Long:
    case FieldType::Short:
        return QVariant(neutral.toInt());
    case FieldType::Text:
    case FieldType::Memo:
        return QVariant(neutral.toString());
    case FieldType::Date:
        return QVariant(serialFromDate(neutral.toDateTime()));
    case FieldType::Currency:
        return QVariant(static_cast<double>(neutral.toLongLong()) / static_cast<double>(CurrencyScale));
    case FieldType::Boolean:
        return QVariant(neutral.toBool() ? int{vb::TrueValue} : int{vb::FalseValue});
    case FieldType::Variant:
        return neutral;
    }
    return neutral;
}

} // namespace values

QString textOf(const QVariant& value) {
    if (isNullValue(value))
        dberr::raiseInvalidUseOfNull();
    return vb::toText(value);
}

int longOf(const QVariant& value) {
    if (isNullValue(value))
        dberr::raiseInvalidUseOfNull();
    return vb::toInt32(value);
}

} // namespace tessaly::db
