#include "Form.h"

#include "ApplicationBase.h"
#include "ControlEvents.h"
#include "WiringError.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly {

using member::is;

Form::Form(ApplicationBase& app, QString name) : app_(app), name_(std::move(name)) {}

Form::~Form() = default;

void Form::setCaption(const QString& caption) {
    caption_ = caption;
    if (onChanged)
        onChanged(QStringLiteral("Caption"));
}

Control& Form::add(ControlKind kind, const QString& name, int index) {
    auto c = std::make_shared<Control>(*this, kind, name, index);
    controls_[key(name)][index] = c;
    order_.push_back(c);
    return *c;
}

Control* Form::find(const QString& name, int index) const {
    const auto it = controls_.find(key(name));
    if (it == controls_.end())
        return nullptr;
    const auto jt = it->second.find(index);
    return jt == it->second.end() ? nullptr : jt->second.get();
}

bool Form::hasControlArray(const QString& name) const {
    const auto it = controls_.find(key(name));
    return it != controls_.end() && !it->second.contains(-1);
}

Control& Form::control(const QString& name, int index) const {
    if (Control* c = find(name, index))
        return *c;
    if (controls_.contains(key(name)))
        raiseError(err::NoArrayElement,
                   QStringLiteral("Control array element '%1' doesn't exist").arg(index));
    raiseError(err::NoControl, QStringLiteral("Control '%1' not found").arg(name));
}

void Form::checkWiring(const QString& control, const QString& event) const {
    const auto it = controls_.find(key(control));
    if (it == controls_.end() || it->second.empty())
        throw WiringError(name_, control, event, QStringLiteral("the form has no control of that name"));
    for (const auto& [index, c] : it->second)
        if (!control_events::raises(c->kind(), event))
            throw WiringError(name_, control, event,
                              QStringLiteral("a %1 never raises %2").arg(controlKindName(c->kind()), event));
}

void Form::on(const QString& control, const QString& event, ControlHandler handler) {
    checkWiring(control, event);
    handlers_[key(control) + QLatin1Char('.') + key(event)] = {control + QLatin1Char('.') + event,
                                                               std::move(handler)};
}

void Form::onForm(const QString& event, FormHandler handler) {
    if (!control_events::formRaises(event))
        throw WiringError(name_, QString(), event, QStringLiteral("a form never raises %1").arg(event));
    formHandlers_[key(event)] = {event, std::move(handler)};
}

bool Form::hasHandler(const QString& control, const QString& event) const {
    return handlers_.contains(key(control) + QLatin1Char('.') + key(event));
}

QStringList Form::handlerNames() const {
    QStringList names;
    for (const auto& [k, wired] : handlers_)
        names << wired.name;
    return names;
}

QStringList Form::formHandlerNames() const {
    QStringList names;
    for (const auto& [k, wired] : formHandlers_)
        names << wired.name;
    return names;
}

void Form::member(const QString& name, std::function<QVariant()> getter,
                  std::function<void(const QVariant&)> setter) {
    members_[key(name)] = Member{name, std::move(getter), std::move(setter)};
}

void Form::routine(const QString& name, Routine r) {
    routines_[key(name)] = {name, std::move(r)};
}

bool Form::raiseEvent(Control& control, const QString& event, EventArgs& args) {
    const auto it = handlers_.find(key(control.name()) + QLatin1Char('.') + key(event));
    if (it == handlers_.end())
        return true;
    // The handler may unload this form; keep the handler alive while it runs.
    const ControlHandler handler = it->second.handler;
    return app_.dispatch([&] { handler(control, args); });
}

bool Form::raiseEvent(Control& control, const QString& event) {
    EventArgs none;
    return raiseEvent(control, event, none);
}

bool Form::raiseFormEvent(const QString& event, EventArgs& args) {
    const auto it = formHandlers_.find(key(event));
    if (it == formHandlers_.end())
        return true;
    const FormHandler handler = it->second.handler;
    return app_.dispatch([&] { handler(args); });
}

bool Form::raiseFormEvent(const QString& event) {
    EventArgs none;
    return raiseFormEvent(event, none);
}

void Form::setFocus(Control* control) {
    if (focus_ == control)
        return;
    Control* old = focus_;
    focus_ = control;
    if (old)
        raiseEvent(*old, QStringLiteral("LostFocus"));
    if (control)
        raiseEvent(*control, QStringLiteral("GotFocus"));
}

void Form::clearOtherOptions(Control& chosen) {
    const QVariant container = chosen.prop(QStringLiteral("Container"));
    for (const ControlPtr& c : order_)
        if (c.get() != &chosen && c->kind() == ControlKind::OptionButton &&
            c->prop(QStringLiteral("Container")) == container)
            c->setProp(QStringLiteral("Value"), 0);
}

void Form::setSize(int width, int height, int innerWidth, int innerHeight) {
    width_ = width;
    height_ = height;
    scaleWidth_ = innerWidth;
    scaleHeight_ = innerHeight;
}

void Form::setVisible(bool on) {
    visible_ = on;
    if (onChanged)
        onChanged(QStringLiteral("Visible"));
}

QVariant Form::get(const QString& name, const QVariantList& index) {
    if (Control* c = find(name, index.isEmpty() ? -1 : vb::toInt32(index.value(0))))
        return toVariant(std::static_pointer_cast<AutoObject>(c->shared_from_this()));
    if (controls_.contains(key(name)))
        control(name, index.isEmpty() ? -1 : vb::toInt32(index.value(0)));
    if (const auto it = members_.find(key(name)); it != members_.end())
        return it->second.getter();
    if (is(name, "Caption"))
        return caption_;
    if (is(name, "Visible"))
        return visible_;
    if (is(name, "Width"))
        return width_;
    if (is(name, "Height"))
        return height_;
    if (is(name, "ScaleWidth"))
        return scaleWidth_;
    if (is(name, "ScaleHeight"))
        return scaleHeight_;
    if (is(name, "Name"))
        return name_;
    raiseNoMember(name_, name);
}

void Form::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (const auto it = members_.find(key(name)); it != members_.end()) {
        if (!it->second.setter)
            raiseError(383, QStringLiteral("'%1' is read-only").arg(name));
        return it->second.setter(value);
    }
    if (is(name, "Caption"))
        return setCaption(vb::toText(value));
    AutoObject::set(name, value, index);
}

QVariant Form::call(const QString& name, QVariantList& args) {
    if (const auto it = routines_.find(key(name)); it != routines_.end())
        return it->second.second(args);
    raiseNoMember(name_, name);
}

QStringList Form::memberNames() const {
    QStringList names;
    for (const ControlPtr& c : order_)
        if (!names.contains(c->name()))
            names << c->name();
    for (const auto& [k, m] : members_)
        names << m.name;
    for (const auto& [k, r] : routines_)
        names << r.first;
    names << QStringLiteral("Caption") << QStringLiteral("Visible");
    return names;
}

} // namespace tessaly
