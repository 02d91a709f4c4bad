#pragma once

#include "ControlWidget.h"

#include <QString>
#include <map>
#include <set>

class QAction;
class QMenu;
class QMenuBar;

namespace tessaly {
class Form;
}

namespace tessaly::ui {

// The menu tree of a form as a QMenuBar: one QMenu for each entry that holds
// others, one QAction for each of the rest, separators for "-". Captions keep
// their "&" access keys; a check mark shows where the model's entry is
// checked; hidden entries are hidden. A hidden top-level entry (the pop-up
// menu) stays out of sight in the bar and serves as a context menu.
class MenuView {
public:
    MenuView(Form& form, QMenuBar& bar, ViewSink& sink);

    QAction* actionFor(const Control& entry) const;
    // The drop-down of an entry that holds others.
    QMenu* menuFor(const Control& entry) const;
    // The drop-down of a top-level entry by name, for use as a context menu.
    QMenu* popup(const QString& name) const;

    // Brings one entry up to date with a property of its model.
    void sync(Control& entry, const QString& property);

private:
    void build(Form& form);
    void addEntry(Control& entry, const std::set<const Control*>& holders);
    void triggered(Control& entry);

    QMenuBar& bar_;
    ViewSink& sink_;
    std::map<const Control*, QAction*> actions_;
    std::map<const Control*, QMenu*> menus_;
    std::map<QString, QMenu*> byName_;
};

} // namespace tessaly::ui
