#include "AutoObject.h"

#include "RuntimeError.h"

namespace tessaly {

QVariant AutoObject::get(const QString& name, const QVariantList&) {
    raiseNoMember(typeName(), name);
}

void AutoObject::set(const QString& name, const QVariant&, const QVariantList&) {
    raiseNoMember(typeName(), name);
}

QVariant AutoObject::call(const QString& name, QVariantList&) {
    raiseNoMember(typeName(), name);
}

bool AutoObject::hasMember(const QString& name) const {
    return memberNames().contains(name, Qt::CaseInsensitive);
}

QVariant toVariant(const AutoPtr& object) {
    return QVariant::fromValue(object);
}

AutoPtr toObject(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<AutoPtr>())
        return value.value<AutoPtr>();
    return nullptr;
}

bool holdsObject(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<AutoPtr>();
}

void raiseNoMember(const QString& type, const QString& name) {
    raiseError(err::NotSupported,
               QStringLiteral("Object doesn't support this property or method: %1.%2").arg(type, name));
}

} // namespace tessaly
