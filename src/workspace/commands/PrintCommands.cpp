#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/commands/Registration.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

namespace {
const QString NothingToPrint = QStringLiteral("Nothing to print!");

// Prints the page through the canvas, with its print dialog when asked; a
// page without shapes (guide lines and grid do not count) is refused.
void PrintCanvas(frmMain& form, Application& app, bool& showDialog) {
    const int count = get(object(app.gPage, "Shapes"), "Count").toInt();
    if (count == 0) {
        app.ui.msgBox(NothingToPrint, mb::Critical, AppTitle);
        return;
    }
    QVariantList args{showDialog};
    form.canvas1()->call(QStringLiteral("PrintDrawing"), args);
    showDialog = vb::toBool(args.value(0));
}
} // namespace

void registerPrintCommands(frmMain& form, Application& app) {
    onClick(form, QStringLiteral("mnuFile_PageSetup"), [&form] { invoke(form.canvas1(), "ShowPageSetup"); });
    onClick(form, QStringLiteral("mnuFile_Print"), [&form, &app] {
        bool showDialog = true;
        PrintCanvas(form, app, showDialog);
    });
    form.routine(QStringLiteral("PrintCanvas"), [&form, &app](QVariantList& a) {
        bool showDialog = a.isEmpty() || vb::toBool(a[0]);
        PrintCanvas(form, app, showDialog);
        if (!a.isEmpty())
            a[0] = showDialog;
        return QVariant();
    });
}

} // namespace tessaly
