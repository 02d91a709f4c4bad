#include "Section.h"

#include "core/runtime/Vb.h"

namespace tessaly::reports {

Section::Section(QString name, SectionType type, double height)
    : Height(height), name_(std::move(name)), type_(type) {
    property(QStringLiteral("Name"), [this] { return name_; });
    property(QStringLiteral("Type"), [this] { return static_cast<int>(type_); });
    property(
        QStringLiteral("Height"), [this] { return Height; },
        [this](const QVariant& v) { Height = vb::toDouble(v); });
    property(
        QStringLiteral("Visible"), [this] { return Visible; },
        [this](const QVariant& v) { Visible = vb::toBool(v); });
    property(QStringLiteral("ControlCount"), [this] { return static_cast<int>(controls_.size()); });
}

ReportControl* Section::find(const QString& name) const {
    for (const ControlPtr& c : controls_)
        if (c->name().compare(name, Qt::CaseInsensitive) == 0)
            return c.get();
    return nullptr;
}

AutoPtr Section::child(const QString& name) const {
    for (const ControlPtr& c : controls_)
        if (c->name().compare(name, Qt::CaseInsensitive) == 0)
            return c;
    return nullptr;
}

QStringList Section::childNames() const {
    QStringList names;
    for (const ControlPtr& c : controls_)
        names << c->name();
    return names;
}

} // namespace tessaly::reports
