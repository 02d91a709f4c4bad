#pragma once

#include "core/runtime/AutoObject.h"

#include <QString>
#include <QVariant>
#include <functional>
#include <map>

namespace tessaly::reports {

// An object of the report engine reachable by name from the program's logic
// and from scripts: its properties and methods are entered in a table, and
// objects it holds (sections, controls) are found through `child`.
// Names are matched without regard to case.
class EngineObject : public AutoObject {
public:
    using Getter = std::function<QVariant()>;
    using Setter = std::function<void(const QVariant&)>;
    using Method = std::function<QVariant(QVariantList&)>;

    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

protected:
    // A property; one without a setter is read-only (run-time error 383 on a write).
    void property(const QString& name, Getter getter, Setter setter = {});
    void method(const QString& name, Method method);
    // An object held by this one under `name` (a section, a control), or null.
    virtual AutoPtr child(const QString& name) const;
    virtual QStringList childNames() const { return {}; }

private:
    static QString key(const QString& name) { return name.toLower(); }
    struct Property {
        QString name;
        Getter getter;
        Setter setter;
    };
    std::map<QString, Property> properties_;
    std::map<QString, std::pair<QString, Method>> methods_;
};

} // namespace tessaly::reports
