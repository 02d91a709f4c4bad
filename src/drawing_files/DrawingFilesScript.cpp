#include "DrawingFiles.h"

#include "core/app/CoreApplication.h"
#include "core/forms/Control.h"
#include "core/forms/Form.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"

namespace tessaly {

using script::LineError;
using script::Runner;
using script::Tokens;

namespace {

// The events of the three mouse actions.
QString mouseEvent(const QString& action) {
    if (action == QLatin1String("press"))
        return QStringLiteral("MouseDown");
    if (action == QLatin1String("move"))
        return QStringLiteral("MouseMove");
    if (action == QLatin1String("release"))
        return QStringLiteral("MouseUp");
    throw LineError(QStringLiteral("unknown mouse action '%1': press, move or release").arg(action));
}

double number(const Tokens& t, qsizetype i) {
    bool ok = false;
    const double value = t[i].text.toDouble(&ok);
    if (!ok)
        throw LineError(QStringLiteral("'%1' is not a number").arg(t[i].text));
    return value;
}

int whole(const Tokens& t, qsizetype i) {
    const double value = number(t, i);
    if (value != static_cast<int>(value))
        throw LineError(QStringLiteral("'%1' is not a whole number").arg(t[i].text));
    return static_cast<int>(value);
}

// mouse NAME ACTION BUTTON X Y [SHIFT]: MouseDown, MouseMove or MouseUp of a
// control with the platform's button and shift values (1 left, 2 right,
// 4 middle; 1 Shift, 2 Ctrl, 4 Alt) and X and Y in the control's scale units.
void mouseCommand(Runner& run, const Tokens& t) {
    if (t.size() < 6 || t.size() > 7)
        throw LineError(
            QStringLiteral("mouse needs a name, an action, a button, X and Y, and may take a shift value"));
    Control& control = run.resolveControl(t[1].text);
    if (control.kind() == ControlKind::Canvas)
        throw LineError(QStringLiteral("'%1' is a drawing canvas: use canvas").arg(t[1].text));
    const QString event = mouseEvent(t[2].text.toLower());
    run.requireInput(control.form(), control.fullName());
    // A disabled control takes no mouse input.
    if (!control.enabled())
        return;
    EventArgs args{whole(t, 3), t.size() > 6 ? whole(t, 6) : 0, static_cast<float>(number(t, 4)),
                   static_cast<float>(number(t, 5))};
    control.form().raiseEvent(control, event, args);
}

} // namespace

void addDrawingFilesScriptCommands(script::Registry& registry) {
    registry.command(QStringLiteral("mouse"), mouseCommand);
}

} // namespace tessaly
