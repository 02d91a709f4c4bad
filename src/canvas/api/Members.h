#pragma once

#include "canvas/model/ShapeStyle.h"
#include "core/runtime/AutoObject.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include <QHash>
#include <QStringList>
#include <functional>

namespace tessaly::canvas {

// Error raised when a read-only property is written.
constexpr int ReadOnlyProperty = 383;

// The late-bound members of one object class: properties (get, put) and
// methods by name, without regard to case. The default member answers to
// the empty name.
template <class Self> class Members {
public:
    using Getter = std::function<QVariant(Self&, const QVariantList&)>;
    using Setter = std::function<void(Self&, const QVariant&, const QVariantList&)>;
    using Method = std::function<QVariant(Self&, QVariantList&)>;

    Members& prop(const QString& name, Getter get, Setter set = {}) {
        add(name).get = std::move(get);
        entries_[key(name)].set = std::move(set);
        return *this;
    }
    Members& method(const QString& name, Method m) {
        add(name).call = std::move(m);
        return *this;
    }
    Members& byDefault(const QString& name) {
        default_ = key(name);
        return *this;
    }

    QVariant get(Self& self, const QString& name, const QVariantList& index) const {
        const Entry& e = find(self, name);
        if (e.get)
            return e.get(self, index);
        QVariantList args = index;
        return e.call(self, args);
    }
    void set(Self& self, const QString& name, const QVariant& value, const QVariantList& index) const {
        const Entry& e = find(self, name);
        if (!e.set)
            raiseError(ReadOnlyProperty, QStringLiteral("Can't assign to read-only property"));
        e.set(self, value, index);
    }
    QVariant call(Self& self, const QString& name, QVariantList& args) const {
        const Entry& e = find(self, name);
        if (e.call)
            return e.call(self, args);
        return e.get(self, args);
    }
    QStringList names() const { return names_; }

private:
    struct Entry {
        Getter get;
        Setter set;
        Method call;
    };
    static QString key(const QString& name) { return name.toLower(); }
    Entry& add(const QString& name) {
        if (!entries_.contains(key(name)))
            names_ << name;
        return entries_[key(name)];
    }
    const Entry& find(Self& self, const QString& name) const {
        const QString k = name.isEmpty() ? default_ : key(name);
        auto it = entries_.constFind(k);
        if (it == entries_.constEnd() || k.isEmpty())
            raiseNoMember(self.typeName(), name);
        return *it;
    }

    QHash<QString, Entry> entries_;
    QStringList names_;
    QString default_;
};

// Argument helpers: the n-th argument converted, error 5 (invalid argument) when missing.
inline const QVariant& arg(const QVariantList& args, int n) {
    if (n >= args.size())
        raiseError(err::InvalidProcedureCall, QStringLiteral("Argument not optional"));
    return args[n];
}
inline int argInt(const QVariantList& args, int n) {
    return vb::toInt32(arg(args, n));
}
inline bool argBool(const QVariantList& args, int n) {
    return vb::toBool(arg(args, n));
}
inline Colour toColour(const QVariant& v) {
    const long long c = vb::toInt32(v);
    if (c < 0 || c > 0xFFFFFF)
        raiseError(err::InvalidProcedureCall, QStringLiteral("Invalid colour value"));
    return static_cast<Colour>(c);
}

// Wires an AutoObject's overrides to a static member table.
#define TESSALY_AUTO_MEMBERS(Class)                                                                          \
    static const Members<Class>& members();                                                                  \
    QVariant get(const QString& name, const QVariantList& index = {}) override {                             \
        return members().get(*this, name, index);                                                            \
    }                                                                                                        \
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override {          \
        members().set(*this, name, value, index);                                                            \
    }                                                                                                        \
    QVariant call(const QString& name, QVariantList& args) override {                                        \
        return members().call(*this, name, args);                                                            \
    }                                                                                                        \
    QStringList memberNames() const override {                                                               \
        return members().names();                                                                            \
    }

} // namespace tessaly::canvas
