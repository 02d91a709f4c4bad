#pragma once

#include <QDateTime>
#include <QString>

namespace tessaly {

class Application;
class frmMain;

namespace drawing_files {

// Ticks of the main window's one-second timer between two backups.
constexpr int BackupPeriod = 300;
// The status bar panel that shows the backup counter.
constexpr int BackupPanel = 5;
// What that panel shows while backups are off.
inline const QString BackupOff = QStringLiteral("OFF");

// The backup file for a moment: the application folder, "\Temp\Backup_",
// the date and time as day, month, two-digit year, "-", hours, minutes and
// seconds, and ".pdr" (Backup_150226-143005.pdr).
QString BackupPath(const QString& appPath, const QDateTime& when);

// A tick of the main window's Timer1: counts, shows the count, and at the
// period writes the drawing on the canvas to a new backup file.
void Timer1_Timer(frmMain& main, Application& app);
// The Auto Backup entry of the File menu.
void mnuFileAutoBackup_Click(frmMain& main, Application& app);

// Registers both on the main window.
void registerAutoBackup(frmMain& main, Application& app);

} // namespace drawing_files
} // namespace tessaly
