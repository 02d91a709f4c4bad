#pragma once

#include "core/runtime/AutoObject.h"

#include <QString>

namespace tessaly {

class Control;

// The tabs of a tab strip control. A strip keeps its captions in the
// property "Tabs" (a list), the index of the selected tab from 0 in "Tab", and
// which tabs are enabled in "TabEnabled" (a list of flags; a tab missing
// there is enabled). The logic numbers the tabs from 1, as Tabs1.Tabs(N).
namespace tabs {

int count(const Control& strip);
QString caption(const Control& strip, int tab);
void setCaption(Control& strip, int tab, const QString& caption);
bool enabled(const Control& strip, int tab);
void setEnabled(Control& strip, int tab, bool on);
bool selected(const Control& strip, int tab);
// Makes a tab the selected one; the strip raises Click with the tab that was
// selected before (its index from 0), as a click on the tab does. Selecting the
// selected tab again changes nothing.
void select(Control& strip, int tab);
// Tabs1.Tabs(N): one tab with Caption, Enabled and Selected. Error 35600 for
// a number outside 1 to the count.
AutoPtr tabObject(Control& strip, int tab);

} // namespace tabs
} // namespace tessaly
