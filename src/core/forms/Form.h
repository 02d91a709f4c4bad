#pragma once

#include "Control.h"
#include "core/runtime/AutoObject.h"

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tessaly {

class ApplicationBase;

// Arguments of an event, passed by reference as the platform passes them.
using EventArgs = QVariantList;
// A control event handler: the control that raised it (its Index tells the
// member of a control array) and the event's arguments.
using ControlHandler = std::function<void(Control&, EventArgs&)>;
// A form event handler (Load, Activate, Resize, QueryUnload, Unload).
using FormHandler = std::function<void(EventArgs&)>;
// A public routine or a member reachable by name.
using Routine = std::function<QVariant(QVariantList&)>;

// One window of Tessaly as a model: its controls, its state and its event
// handlers, all registered by name so that the Qt view layer and the script
// driver reach them as "frmMain.cmdToolBarButton(20).Click".
class Form : public AutoObject {
public:
    Form(ApplicationBase& app, QString name);
    ~Form() override;

    ApplicationBase& app() const { return app_; }
    const QString& name() const { return name_; }
    QString typeName() const override { return name_; }

    QString caption() const { return caption_; }
    void setCaption(const QString& caption);

    // Controls, in the order they were added (the view lays them out so).
    Control& add(ControlKind kind, const QString& name, int index = -1);
    Control& control(const QString& name, int index = -1) const; // error 340/730 when absent
    Control* find(const QString& name, int index = -1) const;
    bool hasControlArray(const QString& name) const;
    const std::vector<ControlPtr>& controls() const { return order_; }

    // Handlers. `on("cmdSave", "Click", ...)` for a control or array;
    // `onForm("Load", ...)` for the form. A handler for a control the form
    // does not have (yet), or for an event that the control's kind or a form
    // never raises, is a WiringError at once.
    void on(const QString& control, const QString& event, ControlHandler handler);
    void onForm(const QString& event, FormHandler handler);
    bool hasHandler(const QString& control, const QString& event) const;

    // Form state and public routines by name, for the script driver.
    void member(const QString& name, std::function<QVariant()> getter,
                std::function<void(const QVariant&)> setter = {});
    void routine(const QString& name, Routine routine);

    // Raises a control event: runs its handler, if any, under the
    // dispatcher's error handling. Returns false when the handler ended in an
    // untrapped run-time error.
    bool raiseEvent(Control& control, const QString& event, EventArgs& args);
    bool raiseEvent(Control& control, const QString& event);
    bool raiseFormEvent(const QString& event, EventArgs& args);
    bool raiseFormEvent(const QString& event);

    // Focus: GotFocus and LostFocus as the platform fires them.
    void setFocus(Control* control);
    Control* focused() const { return focus_; }

    // Option buttons of one container: setting one clears the others.
    void clearOtherOptions(Control& chosen);

    // Geometry of the form in twips, and its inner size.
    int width() const { return width_; }
    int height() const { return height_; }
    int scaleWidth() const { return scaleWidth_; }
    int scaleHeight() const { return scaleHeight_; }
    void setSize(int width, int height, int innerWidth, int innerHeight);

    // The process ends when this form unloads (the main window).
    bool endsProcessOnUnload = false;

    bool visible() const { return visible_; }
    void setVisible(bool on);

    // AutoObject: controls, members, routines and form properties by name.
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

    std::function<void(const QString&)> onChanged; // caption, size, visibility for the view
    // Shows a menu of this form as a context menu at the pointer (the
    // platform's PopupMenu); the view sets it.
    std::function<void(const QString& menuName)> onPopupMenu;

    // The registered handlers, named as registered: "cmdSave.Click" for a
    // control or array, "Load" for the form.
    QStringList handlerNames() const;
    QStringList formHandlerNames() const;

private:
    static QString key(const QString& name) { return name.toLower(); }
    void checkWiring(const QString& control, const QString& event) const;

    ApplicationBase& app_;
    QString name_;
    QString caption_;
    std::vector<ControlPtr> order_;
    std::map<QString, std::map<int, ControlPtr>> controls_;
    template <class Handler> struct Wired {
        QString name; // as registered
        Handler handler;
    };
    std::map<QString, Wired<ControlHandler>> handlers_;
    std::map<QString, Wired<FormHandler>> formHandlers_;
    struct Member {
        QString name;
        std::function<QVariant()> getter;
        std::function<void(const QVariant&)> setter;
    };
    std::map<QString, Member> members_;
    std::map<QString, std::pair<QString, Routine>> routines_;
    Control* focus_ = nullptr;
    int width_ = 0, height_ = 0, scaleWidth_ = 0, scaleHeight_ = 0;
    bool visible_ = false;
};

using FormPtr = std::shared_ptr<Form>;

} // namespace tessaly
