#pragma once

#include <QString>

namespace tessaly {

class Application;
class frmMain;

namespace drawing_files {

// The filter of the open and save dialogs of drawing files.
inline const QString DrawingFilter = QStringLiteral("Polar Draw Files (*.pdr)|*.pdr|All Files (*.*)|*.*");
// POLARDraw.SaveFile's format code of a drawing file.
constexpr int PdrFormat = 1;
// The main window's title: its beginning, and its text for a new blank drawing.
inline const QString TitlePrefix = QStringLiteral("Tessaly - ");
inline const QString UntitledTitle = QStringLiteral("Tessaly - Untitled Drawing");

// The drawing commands of the File menu.
void mnuFile_New_Click(frmMain& main, Application& app);
void mnuFile_Open_Click(frmMain& main, Application& app);
void mnuFile_SaveAs_Click(frmMain& main, Application& app);
void mnuFile_Exit_Click(frmMain& main, Application& app);

// Registers their handlers on the main window.
void registerFileCommands(frmMain& main, Application& app);

} // namespace drawing_files
} // namespace tessaly
