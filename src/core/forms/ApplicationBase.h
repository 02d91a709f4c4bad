#pragma once

#include "Form.h"
#include "core/files/AppHome.h"
#include "core/port/UiPort.h"
#include "core/runtime/AutoObject.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Waiter.h"
#include "core/settings/SettingsStore.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tessaly {

// The application's title: message box captions and the main window's title.
inline const QString AppTitle = QStringLiteral("Tessaly");

// The machine-wide settings key, as the registry path of the original.
inline const QString MachineKey = QStringLiteral("Software\\Morvane Works\\KORV");
// The per-user settings section.
inline const QString UserSection = QStringLiteral("Data");

// What every run of Tessaly shares: the UI port, the waiter, the application
// home with its two settings stores, the forms (each created on first use and
// destroyed on Unload), the modal stack, and the dispatcher that turns an
// untrapped run-time error into the default error box.
//
// The logic layer derives the Application with the module variables.
class ApplicationBase : public AutoObject {
public:
    ApplicationBase(UiPort& ui, Waiter& waiter, AppHome home);
    ~ApplicationBase() override;

    UiPort& ui;
    Waiter& waiter;
    AppHome home;
    SettingsStore machineSettings; // the registry key of the original
    SettingsStore userSettings;    // the per-application settings, section "Data"

    // Forms by name. `form()` creates and loads the form on first use.
    void registerForm(const QString& name, std::function<FormPtr(ApplicationBase&)> factory);
    Form& form(const QString& name);
    // Adds what another subsystem contributes to a form (its commands'
    // handlers, its routines): run on every new instance of the form, after
    // the form's own constructor and before its Load, in the order added.
    void extendForm(const QString& name, std::function<void(Form&)> extension);
    template <class T> T& form() { return static_cast<T&>(form(T::FormName)); }
    Form* loaded(const QString& name) const;
    bool isForm(const QString& name) const;
    // The names of every registered form, as registered, in alphabetical order.
    QStringList registeredForms() const;
    std::vector<Form*> loadedForms() const;

    // Shows a form; a modal form goes on the modal stack. A modal Show is the
    // last step of the handler that calls it.
    void show(Form& form, bool modal);
    // Unloads a form: QueryUnload, Unload, then it is gone. Returns false when
    // its handlers kept it loaded.
    bool unload(Form& form);
    const std::vector<Form*>& modalStack() const { return modal_; }
    // The loaded main window (the form whose unload ends the process), if any.
    Form* mainForm() const;
    // Whether input may reach `form` now: it is the top modal form, or there is none.
    bool acceptsInput(const Form& form) const;

    // Runs a handler. An untrapped run-time error shows the default error
    // box and abandons the handler; the program goes on. Returns false then.
    bool dispatch(const std::function<void()>& handler);
    void showDefaultError(const RuntimeError& e);

    // Sleep, through the injected waiter.
    void sleep(int milliseconds) { waiter.sleep(milliseconds); }

    // The process ends when the last of Tessaly's main windows unloads.
    bool ended() const { return ended_; }
    virtual void endProcess();

    // Global routines and module variables by name (script driver, call and print).
    void routine(const QString& name, Routine routine);
    void variable(const QString& name, std::function<QVariant()> getter,
                  std::function<void(const QVariant&)> setter = {});

    QString typeName() const override { return QStringLiteral("Application"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

    // Told of every form that is created, so that a view can be made for it.
    std::function<void(Form&)> onFormCreated;

protected:
    // Forms destroyed by Unload are kept until the outermost handler returns.
    void collectGarbage();

private:
    static QString key(const QString& n) { return n.toLower(); }

    struct Factory {
        QString name; // as registered
        std::function<FormPtr(ApplicationBase&)> make;
    };
    std::map<QString, Factory> factories_;
    std::map<QString, std::vector<std::function<void(Form&)>>> extensions_;
    std::map<QString, FormPtr> forms_;
    std::vector<FormPtr> unloaded_;
    std::vector<Form*> modal_;
    std::map<QString, std::pair<QString, Routine>> routines_;
    struct Variable {
        QString name;
        std::function<QVariant()> getter;
        std::function<void(const QVariant&)> setter;
    };
    std::map<QString, Variable> variables_;
    int dispatchDepth_ = 0;
    bool ended_ = false;
};

} // namespace tessaly
