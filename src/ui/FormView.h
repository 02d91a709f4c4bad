#pragma once

#include "ControlWidget.h"

#include <QSize>
#include <QWidget>
#include <map>
#include <memory>

class QAction;
class QKeySequence;
class QMenu;
class QMenuBar;

namespace tessaly {
class Form;
}

namespace tessaly::ui {

class MenuView;

// The window of one form: a widget for each of its controls, placed by the
// control's twips, and the form's menu bar. Model and widgets stay in step
// both ways: the model tells the view of every property change, and what the
// user does reaches the model as the events the platform fires. The view is
// generic: it knows control kinds, never a particular window.
class FormView final : public QWidget, public ViewSink {
    Q_OBJECT
public:
    explicit FormView(Form& form, QWidget* parent = nullptr);
    ~FormView() override;

    // The form shown, or nullptr once the form is unloaded.
    Form* form() const { return form_; }
    // The form is going away: stop its timers and never touch it again.
    void detach();

    QWidget* widgetFor(const Control& control) const;
    QObject* objectFor(const Control& control) const; // a timer's QTimer
    QAction* actionFor(const Control& menuEntry) const;
    QMenu* popupMenu(const QString& menuName) const;
    QMenuBar* menuBar() const { return menuBar_; }
    // The form's inner area, under the menu bar, where the controls sit.
    QWidget* surface() const { return surface_; }

    // The window's size in pixels when it first shows: the form's inner size
    // with the menu bar on top.
    QSize initialSize() const;
    // Lays every control out again from its model.
    void relayout();
    // Moves the keyboard focus to the control that the form has focused.
    void syncFocus();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool userInput(const std::function<void()>& step) override;
    bool tick(const std::function<void()>& step) override;
    bool deliver(const std::function<void()>& step, bool fromUser);

    void build();
    void bindControl(Control& control);
    void placeInContainers();
    // Where a control's widget goes: its twips, a scrolling control kept
    // inside the panel that holds it.
    QRect placed(const Control& control, const QWidget& widget) const;
    void placeScrollersIn(const Control& holder);
    // Keys that press controls: a control's "Shortcut" anywhere in the
    // window; Enter on a "Default" button and Escape on a "Cancel" one.
    void bindShortcuts();
    void pressOn(Control& control, const QKeySequence& keys, QWidget* scope, Qt::ShortcutContext context);
    void controlChanged(Control& control, const QString& property);
    void applyShared(Control& control, QWidget* widget, const QString& property);
    void applyFont(const Control& control, QWidget* widget);
    void applyColours(const Control& control, QWidget* widget);
    // Controls on a tab strip ("Container" names it) show on the tab that
    // their "ContainerTab" gives, or on every tab when they give none.
    bool onCurrentTab(const Control& control) const;
    void showCurrentTab(const Control& strip);
    void formChanged(const QString& property);
    void surfaceResized();
    bool controlEvent(Control& control, QEvent* event);
    bool keyPressed(Control& control, QEvent* event);

    Form* form_;
    // Set when the form is owned by a shared pointer (as every loaded form
    // is): lets the view notice a form that went away without being detached.
    std::weak_ptr<AutoObject> alive_;
    bool owned_;
    QMenuBar* menuBar_ = nullptr;
    QWidget* surface_ = nullptr;
    std::unique_ptr<MenuView> menus_;
    std::map<const Control*, ControlWidget> widgets_;
    std::map<const QObject*, Control*> controlOf_;
    QSize lastInner_;
    // The control whose widget the view last gave the keyboard focus (or saw
    // take it); compared only, never used to reach the control.
    const Control* shownFocus_ = nullptr;
};

} // namespace tessaly::ui
