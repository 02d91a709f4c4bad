#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/commands/Registration.h"
#include "workspace/forms/frmGrid.h"
#include "workspace/forms/frmGuidelines.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

namespace {
// A menu switch: its own check mark flips, and the view follows the mark.
// The mark is not read back from the view, so the two can disagree.
void registerToggle(frmMain& form, Application& app, const char* menu, const char* viewSwitch) {
    const QString name = QString::fromLatin1(menu);
    onClick(form, name, [&form, &app, name, viewSwitch] {
        Control& entry = form.control(name);
        const bool on = !entry.checked();
        entry.setChecked(on);
        put(app.gView, viewSwitch, on);
    });
}
} // namespace

void registerGridGuideCommands(frmMain& form, Application& app) {
    registerToggle(form, app, "mnuPopup_ShowGrid", "ShowGrid");
    registerToggle(form, app, "mnuEdit_SnapToGrid", "SnapToGrid");
    registerToggle(form, app, "mnuPopup_ShowGuideLines", "ShowGuides");
    registerToggle(form, app, "mnuPopup_SnapToGuideLines", "SnapToGuides");
    onClick(form, QStringLiteral("mnuView_Page_GridSettings"),
            [&app] { app.show(app.form<frmGrid>(), true); });
    onClick(form, QStringLiteral("mnuView_Page_GuideLineSettings"),
            [&app] { app.show(app.form<frmGuidelines>(), true); });
}

} // namespace tessaly
