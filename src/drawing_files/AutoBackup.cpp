#include "AutoBackup.h"

#include "FileCommands.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Clock.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

namespace tessaly::drawing_files {

namespace {
// The date and time in a backup's name: "ddmmyy-hhnnss", minutes for "nn".
const QString BackupStampFormat = QStringLiteral("ddMMyy-HHmmss");
const QString BackupStem = QStringLiteral("\\Temp\\Backup_");
const QString BackupExtension = QStringLiteral(".pdr");
} // namespace

QString BackupPath(const QString& appPath, const QDateTime& when) {
    return appPath + BackupStem + when.toString(BackupStampFormat) + BackupExtension;
}

void Timer1_Timer(frmMain& main, Application& app) {
    // 1.
    app.gBackupTicks = vb::checkInt32(static_cast<long long>(app.gBackupTicks) + 1);
    // 2.
    main.SB1.setPanelText(BackupPanel, QString::number(app.gBackupTicks));
    // 3. Only a count that passes through the period exactly fires. No trap:
    //    a save that fails does so as the canvas's save fails.
    if (app.gBackupTicks == BackupPeriod) {
        app.ui.setMousePointer(pointer::Hourglass);
        const QString path = BackupPath(app.home.appPath(), clock::now());
        late::call(main.canvas1(), "SaveFile", {fs::toHost(path), PdrFormat});
        app.gBackupTicks = 0;
        app.ui.setMousePointer(pointer::Default);
    }
}

void mnuFileAutoBackup_Click(frmMain& main, Application&) {
    Control& entry = main.control(QStringLiteral("mnuFileAutoBackup"));
    if (entry.checked()) {
        main.Timer1.setEnabled(false);
        entry.setChecked(false);
        main.SB1.setPanelText(BackupPanel, BackupOff);
    } else {
        // Checked again, and nothing else: the timer waits for the next
        // command that starts it.
        entry.setChecked(true);
    }
}

void registerAutoBackup(frmMain& main, Application& app) {
    main.on(main.Timer1.name(), QStringLiteral("Timer"),
            [&main, &app](Control&, EventArgs&) { Timer1_Timer(main, app); });
    main.on(QStringLiteral("mnuFileAutoBackup"), QStringLiteral("Click"),
            [&main, &app](Control&, EventArgs&) { mnuFileAutoBackup_Click(main, app); });
}

} // namespace tessaly::drawing_files
