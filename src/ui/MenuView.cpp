#include "MenuView.h"

#include "core/forms/Form.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace tessaly::ui {

namespace {
bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}
} // namespace

MenuView::MenuView(Form& form, QMenuBar& bar, ViewSink& sink) : bar_(bar), sink_(sink) {
    build(form);
}

void MenuView::build(Form& form) {
    std::set<const Control*> holders;
    for (const ControlPtr& c : form.controls())
        if (c->kind() == ControlKind::Menu && c->parentMenu())
            holders.insert(c->parentMenu());
    for (const ControlPtr& c : form.controls())
        if (c->kind() == ControlKind::Menu)
            addEntry(*c, holders);
}

void MenuView::addEntry(Control& entry, const std::set<const Control*>& holders) {
    QWidget* owner = &bar_;
    if (entry.parentMenu()) {
        const auto it = menus_.find(entry.parentMenu());
        if (it == menus_.end())
            return; // a holder that is not a menu entry: nothing to hang it on
        owner = it->second;
    }
    QAction* action = nullptr;
    if (holders.contains(&entry)) {
        auto* menu = new QMenu(entry.caption(), owner);
        menu->setObjectName(entry.fullName());
        menus_[&entry] = menu;
        byName_[entry.name().toLower()] = menu;
        action = menu->menuAction();
        // Opening a menu is a click on its entry, as the platform reports it.
        QObject::connect(menu, &QMenu::aboutToShow, menu, [this, &entry] {
            sink_.userInput([&] { entry.form().raiseEvent(entry, QStringLiteral("Click")); });
        });
    } else {
        action = new QAction(owner);
        QObject::connect(action, &QAction::triggered, action, [this, &entry] { triggered(entry); });
    }
    action->setObjectName(entry.fullName());
    actions_[&entry] = action;
    owner->addAction(action);
    sync(entry, QString());
}

void MenuView::triggered(Control& entry) {
    // The check mark is the model's to set: the handler decides.
    if (sink_.userInput([&] { entry.form().raiseEvent(entry, QStringLiteral("Click")); }))
        sync(entry, QStringLiteral("Checked"));
}

QAction* MenuView::actionFor(const Control& entry) const {
    const auto it = actions_.find(&entry);
    return it == actions_.end() ? nullptr : it->second;
}

QMenu* MenuView::menuFor(const Control& entry) const {
    const auto it = menus_.find(&entry);
    return it == menus_.end() ? nullptr : it->second;
}

QMenu* MenuView::popup(const QString& name) const {
    const auto it = byName_.find(name.toLower());
    return it == byName_.end() ? nullptr : it->second;
}

void MenuView::sync(Control& entry, const QString& p) {
    QAction* action = actionFor(entry);
    if (!action)
        return;
    if (wants(p, "Caption")) {
        // A separator's "-" is no text to show: styles would draw it beside the line.
        action->setText(entry.isSeparator() ? QString() : entry.caption());
        action->setSeparator(entry.isSeparator());
    }
    if (wants(p, "Checked")) {
        action->setCheckable(entry.checked());
        action->setChecked(entry.checked());
    }
    if (wants(p, "Enabled"))
        action->setEnabled(entry.enabled());
    if (wants(p, "Visible"))
        action->setVisible(entry.visible());
    if (wants(p, "Shortcut"))
        action->setShortcut(QKeySequence(entry.prop(QStringLiteral("Shortcut")).toString()));
}

} // namespace tessaly::ui
