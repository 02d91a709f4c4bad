#include "FileCommands.h"

#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "templates/library/DrawingSet.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

namespace tessaly::drawing_files {

void mnuFile_New_Click(frmMain& main, Application& app) {
    // 1. A new drawing is no project plan.
    app.gPlanFileName.clear();
    app.gOpenSiteID = 0;
    // 2. The template folder carries its own trailing separator.
    const QString path = app.gTemplateFolder + templates::NewDrawingFile;
    // 3. The path is never empty, so the blank drawing is always loaded. No
    //    question about unsaved changes, and the scale is not read back.
    if (!path.isEmpty())
        late::call(main.canvas1(), "LoadFile", {fs::toHost(path)});
    // 4.
    main.RestartBackupTimer();
    // 5.
    main.setCaption(UntitledTitle);
}

void mnuFile_Open_Click(frmMain& main, Application& app) {
    // 1. The plan is left before the dialog: a cancel leaves it too.
    app.gPlanFileName.clear();
    app.gOpenSiteID = 0;
    // 2.
    const QString path = common::ShowOpenDialog(app, DrawingFilter);
    // 3. A file the canvas refuses fails as the canvas fails.
    if (!path.isEmpty())
        late::call(main.canvas1(), "LoadFile", {fs::toHost(path)});
    // 4. The drawing's scale, also after a cancel, from the drawing still loaded.
    if (!vb::toText(late::get(main.canvas1(), "DrawingTag")).isEmpty())
        main.SetScale(vb::toText(late::get(main.canvas1(), "DrawingTag")));
    // 5.
    main.RestartBackupTimer();
    // 6. The path as the dialog returned it; "Tessaly - " alone after a cancel.
    main.setCaption(TitlePrefix + path);
}

void mnuFile_SaveAs_Click(frmMain& main, Application& app) {
    // 1.
    const QString path = common::ShowSaveDialog(app, DrawingFilter);
    // 2.
    if (!path.isEmpty())
        late::call(main.canvas1(), "SaveFile", {fs::toHost(path), PdrFormat});
    // 3. Also after a cancel: the drawing counts as unchanged. The plan and
    //    the title stay as they were.
    late::set(main.canvas1(), "Modified", false);
}

void mnuFile_Exit_Click(frmMain& main, Application& app) {
    // The main window's unload does the rest, for every way of closing it.
    app.unload(main);
}

void registerFileCommands(frmMain& main, Application& app) {
    const auto click = [&main, &app](const char* menu, void (*handler)(frmMain&, Application&)) {
        main.on(QString::fromLatin1(menu), QStringLiteral("Click"),
                [&main, &app, handler](Control&, EventArgs&) { handler(main, app); });
    };
    click("mnuFile_New", mnuFile_New_Click);
    click("mnuFile_Open", mnuFile_Open_Click);
    click("mnuFile_SaveAs", mnuFile_SaveAs_Click);
    click("mnuFile_Exit", mnuFile_Exit_Click);
}

} // namespace tessaly::drawing_files
