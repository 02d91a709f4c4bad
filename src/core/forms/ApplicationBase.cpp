#include "ApplicationBase.h"

#include "core/runtime/Vb.h"

#include <algorithm>

namespace tessaly {

ApplicationBase::ApplicationBase(UiPort& uiPort, Waiter& w, AppHome appHome)
    : ui(uiPort), waiter(w), home(std::move(appHome)), machineSettings(home.machineSettingsPath()),
      userSettings(home.userSettingsPath()) {}

ApplicationBase::~ApplicationBase() = default;

void ApplicationBase::registerForm(const QString& name, std::function<FormPtr(ApplicationBase&)> factory) {
    factories_[key(name)] = {name, std::move(factory)};
}

void ApplicationBase::extendForm(const QString& name, std::function<void(Form&)> extension) {
    extensions_[key(name)].push_back(std::move(extension));
}

bool ApplicationBase::isForm(const QString& name) const {
    return factories_.contains(key(name));
}

QStringList ApplicationBase::registeredForms() const {
    QStringList names;
    for (const auto& [k, factory] : factories_)
        names << factory.name;
    return names;
}

Form* ApplicationBase::loaded(const QString& name) const {
    const auto it = forms_.find(key(name));
    return it == forms_.end() ? nullptr : it->second.get();
}

std::vector<Form*> ApplicationBase::loadedForms() const {
    std::vector<Form*> out;
    for (const auto& [k, f] : forms_)
        out.push_back(f.get());
    return out;
}

Form& ApplicationBase::form(const QString& name) {
    if (Form* f = loaded(name))
        return *f;
    const auto it = factories_.find(key(name));
    if (it == factories_.end())
        raiseError(err::NotSupported, QStringLiteral("No window named %1").arg(name));
    FormPtr f = it->second.make(*this);
    for (const auto& extend : extensions_[key(name)])
        extend(*f);
    forms_[key(name)] = f;
    if (onFormCreated)
        onFormCreated(*f);
    f->raiseFormEvent(QStringLiteral("Load"));
    return *f;
}

void ApplicationBase::show(Form& f, bool modal) {
    f.setVisible(true);
    if (modal && std::find(modal_.begin(), modal_.end(), &f) == modal_.end())
        modal_.push_back(&f);
    ui.showForm(f, modal);
    f.raiseFormEvent(QStringLiteral("Activate"));
}

bool ApplicationBase::unload(Form& f) {
    const auto it = forms_.find(key(f.name()));
    if (it == forms_.end() || it->second.get() != &f)
        return true;
    EventArgs cancel{0, 0};
    f.raiseFormEvent(QStringLiteral("QueryUnload"), cancel);
    if (vb::toInt32(cancel.value(0)) != 0)
        return false;
    EventArgs cancelUnload{0};
    f.raiseFormEvent(QStringLiteral("Unload"), cancelUnload);
    if (vb::toInt32(cancelUnload.value(0)) != 0)
        return false;
    FormPtr keep = it->second;
    forms_.erase(it);
    const bool wasModal = std::erase(modal_, &f) > 0;
    f.setVisible(false);
    ui.unloadForm(f);
    unloaded_.push_back(std::move(keep));
    // The process lives for as long as a window of it is loaded.
    if (f.endsProcessOnUnload || forms_.empty())
        endProcess();
    // The window under a closed one becomes active again: the modal form
    // that lies underneath, or else, when a modal form closed, the main window.
    if (!modal_.empty())
        modal_.back()->raiseFormEvent(QStringLiteral("Activate"));
    else if (Form* main = wasModal ? mainForm() : nullptr)
        main->raiseFormEvent(QStringLiteral("Activate"));
    if (dispatchDepth_ == 0)
        collectGarbage();
    return true;
}

Form* ApplicationBase::mainForm() const {
    for (const auto& [k, f] : forms_)
        if (f->endsProcessOnUnload)
            return f.get();
    return nullptr;
}

bool ApplicationBase::acceptsInput(const Form& f) const {
    return modal_.empty() || modal_.back() == &f;
}

bool ApplicationBase::dispatch(const std::function<void()>& handler) {
    ++dispatchDepth_;
    bool ok = true;
    try {
        handler();
    } catch (const RuntimeError& e) {
        ok = false;
        showDefaultError(e);
    } catch (const std::exception& e) {
        ok = false;
        showDefaultError(
            RuntimeError(51, QStringLiteral("Internal error: %1").arg(QString::fromUtf8(e.what()))));
    }
    --dispatchDepth_;
    if (dispatchDepth_ == 0)
        collectGarbage();
    return ok;
}

void ApplicationBase::showDefaultError(const RuntimeError& e) {
    ui.msgBox(QStringLiteral("Run-time error '%1':\n\n%2").arg(e.number()).arg(e.description()), mb::Critical,
              AppTitle);
}

void ApplicationBase::endProcess() {
    if (ended_)
        return;
    ended_ = true;
    ui.processEnded();
}

void ApplicationBase::collectGarbage() {
    unloaded_.clear();
}

void ApplicationBase::routine(const QString& name, Routine r) {
    routines_[key(name)] = {name, std::move(r)};
}

void ApplicationBase::variable(const QString& name, std::function<QVariant()> getter,
                               std::function<void(const QVariant&)> setter) {
    variables_[key(name)] = Variable{name, std::move(getter), std::move(setter)};
}

QVariant ApplicationBase::get(const QString& name, const QVariantList& index) {
    if (const auto it = variables_.find(key(name)); it != variables_.end())
        return it->second.getter();
    if (isForm(name))
        return toVariant(std::static_pointer_cast<AutoObject>(form(name).shared_from_this()));
    if (const auto it = routines_.find(key(name)); it != routines_.end() && index.isEmpty()) {
        QVariantList none;
        return it->second.second(none);
    }
    raiseNoMember(typeName(), name);
}

void ApplicationBase::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (const auto it = variables_.find(key(name)); it != variables_.end() && it->second.setter)
        return it->second.setter(value);
    AutoObject::set(name, value, index);
}

QVariant ApplicationBase::call(const QString& name, QVariantList& args) {
    if (const auto it = routines_.find(key(name)); it != routines_.end())
        return it->second.second(args);
    raiseNoMember(typeName(), name);
}

QStringList ApplicationBase::memberNames() const {
    QStringList names;
    for (const auto& [k, v] : variables_)
        names << v.name;
    for (const auto& [k, r] : routines_)
        names << r.first;
    return names;
}

} // namespace tessaly
