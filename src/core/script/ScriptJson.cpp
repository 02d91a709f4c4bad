#include "core/script/ScriptJson.h"

#include "core/forms/Control.h"
#include "core/runtime/AutoObject.h"
#include "core/runtime/MemberName.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <climits>

namespace tessaly::script {

namespace {

using member::is;

QJsonValue objectJson(const QVariant& value) {
    AutoPtr o = toObject(value);
    if (!o)
        return QJsonValue();
    if (auto pv = o->printValue())
        return toJson(*pv);
    if (auto* c = dynamic_cast<Control*>(o.get()))
        return c->text();
    return o->typeName();
}

} // namespace

QJsonValue toJson(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return QJsonValue();
    if (holdsObject(value))
        return objectJson(value);
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return static_cast<double>(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    case QMetaType::QDateTime: {
        // A date as ISO text, with its time of day where it holds one.
        const QDateTime at = value.toDateTime();
        if (at.time() == QTime(0, 0))
            return at.date().toString(QStringLiteral("yyyy-MM-dd"));
        return at.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss"));
    }
    case QMetaType::QStringList:
        return QJsonArray::fromStringList(value.toStringList());
    case QMetaType::QVariantList: {
        QJsonArray a;
        for (const QVariant& v : value.toList())
            a << toJson(v);
        return a;
    }
    case QMetaType::QVariantMap: {
        QJsonObject o;
        const QVariantMap m = value.toMap();
        for (auto it = m.begin(); it != m.end(); ++it)
            o.insert(it.key(), toJson(it.value()));
        return o;
    }
    default:
        return value.toString();
    }
}

QVariant parseLiteral(const QString& text, bool quoted) {
    if (quoted)
        return text;
    bool ok = false;
    const qlonglong i = text.toLongLong(&ok);
    if (ok)
        return (i >= INT_MIN && i <= INT_MAX) ? QVariant(static_cast<int>(i)) : QVariant(i);
    const double d = text.toDouble(&ok);
    if (ok)
        return d;
    if (is(text, "true"))
        return true;
    if (is(text, "false"))
        return false;
    if (is(text, "null") || is(text, "nothing"))
        return QVariant();
    return text;
}

} // namespace tessaly::script
