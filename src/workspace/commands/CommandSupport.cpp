#include "workspace/commands/CommandSupport.h"

#include "core/port/UiPort.h"
#include "workspace/Application.h"

namespace tessaly::commands {

namespace {
const QString NothingSelectedText = QStringLiteral("Nothing selected!");
const QString WarningTitle = QStringLiteral("Warning");
constexpr int CheckedValue = 1; // the Value of a ticked check box
} // namespace

AutoPtr selectedRange(Application& app) {
    return object(app.gSelection, "Range");
}

bool RequireSelection(Application& app) {
    const AutoPtr range = selectedRange(app);
    if (range && get(range, "Count").toInt() > 0)
        return true;
    app.ui.msgBox(NothingSelectedText, mb::Exclamation, WarningTitle);
    return false;
}

void onClick(Form& form, const QString& name, std::function<void()> handler) {
    form.on(name, QStringLiteral("Click"), [h = std::move(handler)](Control&, EventArgs&) { h(); });
}

bool ticked(int checkValue) {
    return checkValue != 0;
}

int checkValueOf(bool on) {
    return on ? CheckedValue : 0;
}

} // namespace tessaly::commands
