#pragma once

#include "core/files/AppHome.h"

#include <QString>
#include <QStringList>

namespace tessaly::program {

// The application's icon, built into the program.
inline const QString AppIconResource = QStringLiteral(":/app/tessaly.svg");
// The file type of a drawing, as the desktop's shared MIME database knows it.
inline const QString DrawingMimeType = QStringLiteral("application/x-tessaly-drawing");
// The user guide's file name in the application home.
inline const QString GuideFileName = QStringLiteral("Tessaly-User-Guide.pdf");

// What the desktop learns of Tessaly at install: the launcher, the icons and
// the file type of the drawings.
struct DesktopInstall {
    QString executable;   // the program the launcher starts
    QString home;         // a home the launcher passes with --home; empty for the default
    QString dataHome;     // the user's data folder; empty: $XDG_DATA_HOME, else ~/.local/share
    bool runTools = true; // run update-desktop-database and update-mime-database where present
};

// The user's data folder by the XDG rules: $XDG_DATA_HOME, else ~/.local/share.
QString xdgDataHome();

// The Exec line of the launcher: the program, quoted by the desktop entry
// rules, and --home with the home when one is given. No file is passed: the
// program takes none.
QString launcherExec(const DesktopInstall& desktop);

// Writes tessaly.desktop into applications/, the icon of the program and of
// its drawings into icons/hicolor/scalable/, and the drawing type into
// mime/packages/, under the data folder; then brings the desktop's caches up
// to date with the tools that are present. Every file is written whole
// (temporary file renamed over the target) and written again at each
// install. Returns the files written; raises run-time error 75 when a folder
// cannot be written.
QStringList installDesktopEntries(const DesktopInstall& desktop);

// The user guide the build made, or an empty path when there is none: next to
// the program first, then where the build wrote it.
QString builtGuide();

// Copies the user guide into the application home, whole, replacing an older
// copy. Returns the path written, or an empty string when `source` is empty
// or missing (a build without the document tools). Raises run-time error 75
// when the home cannot be written.
QString installGuide(const AppHome& home, const QString& source);

} // namespace tessaly::program
