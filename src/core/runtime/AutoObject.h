#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <optional>

namespace tessaly {

class AutoObject;
using AutoPtr = std::shared_ptr<AutoObject>;

// An object reachable by name: the canvas object model, forms and their
// controls. The script driver and the Qt view layer walk it by member names,
// the way the original platform's late binding did.
//
// Unknown members raise run-time error 438. Arguments of a call are passed by
// reference: a method may write back into `args`.
class AutoObject : public std::enable_shared_from_this<AutoObject> {
public:
    virtual ~AutoObject() = default;

    virtual QString typeName() const = 0;

    // A property read; `index` holds the arguments of an indexed property
    // such as Panels(2) or List(0).
    virtual QVariant get(const QString& name, const QVariantList& index = {});
    // A property write; fires what the platform fires on that change.
    virtual void set(const QString& name, const QVariant& value, const QVariantList& index = {});
    // A method call.
    virtual QVariant call(const QString& name, QVariantList& args);

    // Whether `name` is a member (property or method) of this object.
    virtual bool hasMember(const QString& name) const;
    virtual QStringList memberNames() const { return {}; }

    // The value printed for the object itself, where it has one (a guide list
    // prints as its positions). Empty for plain objects.
    virtual std::optional<QVariant> printValue() { return std::nullopt; }
};

// Wraps an object for a QVariant, and unwraps it again. A null AutoPtr is the
// platform's Nothing.
QVariant toVariant(const AutoPtr& object);
AutoPtr toObject(const QVariant& value);
bool holdsObject(const QVariant& value);

// Raises error 438 for `name` on `type`.
[[noreturn]] void raiseNoMember(const QString& type, const QString& name);

} // namespace tessaly

Q_DECLARE_METATYPE(tessaly::AutoPtr)
