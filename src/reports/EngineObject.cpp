#include "EngineObject.h"

#include "core/runtime/RuntimeError.h"

namespace tessaly::reports {

namespace {
// The platform's error for a write to a read-only property.
constexpr int PropertyReadOnly = 383;
} // namespace

void EngineObject::property(const QString& name, Getter getter, Setter setter) {
    properties_[key(name)] = Property{name, std::move(getter), std::move(setter)};
}

void EngineObject::method(const QString& name, Method m) {
    methods_[key(name)] = {name, std::move(m)};
}

AutoPtr EngineObject::child(const QString&) const {
    return nullptr;
}

QVariant EngineObject::get(const QString& name, const QVariantList& index) {
    if (const auto it = properties_.find(key(name)); it != properties_.end())
        return it->second.getter();
    if (AutoPtr held = child(name))
        return toVariant(held);
    if (const auto it = methods_.find(key(name)); it != methods_.end() && index.isEmpty()) {
        QVariantList none;
        return it->second.second(none);
    }
    raiseNoMember(typeName(), name);
}

void EngineObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    const auto it = properties_.find(key(name));
    if (it == properties_.end())
        return AutoObject::set(name, value, index);
    if (!it->second.setter)
        raiseError(PropertyReadOnly, QStringLiteral("Property '%1' is read-only").arg(it->second.name));
    it->second.setter(value);
}

QVariant EngineObject::call(const QString& name, QVariantList& args) {
    if (const auto it = methods_.find(key(name)); it != methods_.end())
        return it->second.second(args);
    raiseNoMember(typeName(), name);
}

QStringList EngineObject::memberNames() const {
    QStringList names;
    for (const auto& [k, p] : properties_)
        names << p.name;
    for (const auto& [k, m] : methods_)
        names << m.first;
    names << childNames();
    return names;
}

} // namespace tessaly::reports
