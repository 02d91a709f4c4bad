#pragma once

#include "templates/library/Catalogue.h"

#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>

namespace tessaly::canvas {
class POLARDraw;
}

namespace tessaly::templates {

// The drawing scales a library file exists for: every scale a drawing can carry.
constexpr std::array<int, 8> LibraryScales = {1, 10, 50, 100, 200, 300, 400, 500};

// File names of the blank drawings in the template folder, and of the page
// templates in the application folder.
const QString NewDrawingFile = QStringLiteral("Default.pdr");               // File > New Blank Drawing
const QString TemplateBlankFile = QStringLiteral("System.pdr");             // start of a new user template
const QString DefaultTemplateFile = QStringLiteral("Default Template.pdr"); // My Templates at first
const QString UserItemsFile = QStringLiteral("User.pdr");                   // the "User Items" library
const QString PortraitTemplateFile = QStringLiteral("TemplatePortrate.pdr");
const QString LandscapeTemplateFile = QStringLiteral("TemplateLandscape.pdr");

// The symbol catalogue built into the program (read once, then shared).
const Catalogue& builtInCatalogue();

// One file of the installation's drawings.
struct DrawingFile {
    QString name;     // file name
    bool inAppFolder; // the application folder, else the template folder
    bool userData;    // the user may change it: an install leaves an existing one alone
    std::function<std::shared_ptr<canvas::POLARDraw>()> build;
};

// Every file: each library at each scale (scale-free ones once), then the
// blank drawings, "User.pdr" and the page templates.
std::vector<DrawingFile> drawingFiles(const Catalogue& catalogue);

// Writes the files into `templateFolder` and `appFolder` (host paths, both
// existing). Library files are written every time; user data only where it is
// missing. Returns the host paths written. A file that cannot be written is
// error 75.
QStringList writeDrawingFiles(const Catalogue& catalogue, const QString& templateFolder,
                              const QString& appFolder);

} // namespace tessaly::templates
