#include "Vb.h"

#include "RuntimeError.h"

#include <QLocale>
#include <cmath>
#include <limits>

namespace tessaly::vb {

double roundHalfEven(double value) {
    return std::nearbyint(value); // the default rounding mode rounds halves to even
}

static bool parseNumber(const QString& text, double* out) {
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
        bool ok = false;
        const qlonglong v = t.mid(2).toLongLong(&ok, 16);
        if (ok && out)
            *out = static_cast<double>(v);
        return ok;
    }
    bool ok = false;
    const double v = QLocale::c().toDouble(t, &ok);
    if (!ok || !std::isfinite(v))
        return false;
    if (out)
        *out = v;
    return true;
}

bool isNumeric(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return false;
    switch (value.metaType().id()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    case QMetaType::QString:
        return parseNumber(value.toString(), nullptr);
    default:
        return false;
    }
}

double toDouble(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return 0.0;
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool() ? -1.0 : 0.0;
    if (value.metaType().id() == QMetaType::QString) {
        double d = 0;
        if (!parseNumber(value.toString(), &d))
            raiseError(err::TypeMismatch);
        return d;
    }
    bool ok = false;
    const double d = value.toDouble(&ok);
    if (!ok)
        raiseError(err::TypeMismatch);
    return d;
}

int16_t checkInt16(long long value) {
    if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
        raiseError(err::Overflow);
    return static_cast<int16_t>(value);
}

int32_t checkInt32(long long value) {
    if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max())
        raiseError(err::Overflow);
    return static_cast<int32_t>(value);
}

static long long roundedWhole(const QVariant& value) {
    const double d = roundHalfEven(toDouble(value));
    if (d < -9.0e18 || d > 9.0e18)
        raiseError(err::Overflow);
    return static_cast<long long>(d);
}

int16_t toInt16(const QVariant& value) {
    return checkInt16(roundedWhole(value));
}

int32_t toInt32(const QVariant& value) {
    return checkInt32(roundedWhole(value));
}

QString toText(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return QString();
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = value.toDouble();
        if (d == std::floor(d) && std::fabs(d) < 1e15)
            return QString::number(static_cast<long long>(d));
        return QString::number(d, 'g', 15);
    }
    default:
        return value.toString();
    }
}

bool toBool(const QVariant& value) {
    if (value.metaType().id() == QMetaType::QString) {
        const QString t = value.toString().trimmed();
        if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
        return toDouble(value) != 0.0;
    }
    if (value.metaType().id() == QMetaType::Bool)
        return value.toBool();
    return toDouble(value) != 0.0;
}

double val(const QString& text) {
    QString digits;
    bool seenDigit = false, seenPoint = false, seenExp = false;
    for (const QChar c : text) {
        if (c == QLatin1Char(' ') || c == QLatin1Char('\t'))
            continue;
        if (c.isDigit()) {
            digits += c;
            seenDigit = true;
        } else if ((c == QLatin1Char('-') || c == QLatin1Char('+')) &&
                   (digits.isEmpty() || digits.endsWith(QLatin1Char('E')))) {
            digits += c;
        } else if (c == QLatin1Char('.') && !seenPoint && !seenExp) {
            digits += c;
            seenPoint = true;
        } else if ((c == QLatin1Char('e') || c == QLatin1Char('E')) && seenDigit && !seenExp) {
            digits += QLatin1Char('E');
            seenExp = true;
        } else {
            break;
        }
    }
    while (!digits.isEmpty() && !digits.back().isDigit() && digits.back() != QLatin1Char('.'))
        digits.chop(1);
    bool ok = false;
    const double d = QLocale::c().toDouble(digits, &ok);
    return ok ? d : 0.0;
}

} // namespace tessaly::vb
