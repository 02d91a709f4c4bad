#pragma once

#include "core/runtime/AutoObject.h"
#include "workspace/LateBound.h"

#include <QString>
#include <QVariant>
#include <functional>

namespace tessaly {

class Application;
class Form;

// Small helpers shared by the page, view and shape commands: late-bound
// access to the canvas objects, and the guard in front of the shape commands.
namespace commands {

using late::get;
// A member that holds an object; Nothing is an empty pointer.
using late::object;
inline void put(const AutoPtr& o, const char* member, const QVariant& value) {
    late::set(o, member, value);
}
inline QVariant invoke(const AutoPtr& o, const char* member, QVariantList args = {}) {
    return late::call(o, member, args);
}

// The selected shapes of the main canvas as one range (Selection.Range);
// empty when nothing was ever selected.
AutoPtr selectedRange(Application& app);

// True when the main canvas's selection holds at least one shape. Otherwise
// the "Nothing selected!" warning, and false.
bool RequireSelection(Application& app);

// Registers `handler` as the Click of the control `name` of `form`.
void onClick(Form& form, const QString& name, std::function<void()> handler);

// A check box's state as a Boolean: any value but 0 (unticked) is true.
bool ticked(int checkValue);
// The value a check box shows for a Boolean.
int checkValueOf(bool on);

} // namespace commands
} // namespace tessaly
