// The install step on a fresh home puts every drawing in place, and a second
// install leaves the user's own drawings alone.

#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"
#include "core/files/AppHome.h"
#include "core/install/Installer.h"
#include "core/runtime/RuntimeError.h"
#include "templates/Drawings.h"
#include "templates/library/DrawingSet.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::templates;

namespace {

QByteArray bytesOf(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

TEST(InstallDrawings, FreshHomeGetsEveryFileInItsFolder) {
    QTemporaryDir tmp;
    const AppHome home(tmp.filePath(QStringLiteral("home")));
    install(home);
    installDrawings(home);
    const QDir templates(home.templateDir());
    for (const DrawingFile& f : drawingFiles(builtInCatalogue())) {
        const QString where = f.inAppFolder ? QDir(home.dir()).filePath(f.name) : templates.filePath(f.name);
        EXPECT_TRUE(QFileInfo::exists(where)) << where.toStdString();
    }
    EXPECT_TRUE(QFileInfo::exists(templates.filePath(QStringLiteral("Doors_50.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(templates.filePath(QStringLiteral("Default.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(templates.filePath(QStringLiteral("System.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(templates.filePath(QStringLiteral("User.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(templates.filePath(QStringLiteral("Default Template.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(QDir(home.dir()).filePath(QStringLiteral("TemplatePortrate.pdr"))));
    EXPECT_TRUE(QFileInfo::exists(QDir(home.dir()).filePath(QStringLiteral("TemplateLandscape.pdr"))));
    EXPECT_FALSE(QFileInfo::exists(templates.filePath(QStringLiteral("TemplatePortrate.pdr"))));
    EXPECT_EQ(templates.entryList({QStringLiteral("*.pdr")}, QDir::Files).size(), 8 * 7 + 5 + 4);
    // The pane's first load: the 1:50 doors, loadable by the canvas.
    auto draw = canvas::POLARDraw::create();
    EXPECT_NO_THROW(draw->loadFile(templates.filePath(QStringLiteral("Doors_50.pdr"))));
    EXPECT_EQ(draw->drawing().count(), 10);
}

TEST(InstallDrawings, ReinstallRenewsLibrariesAndKeepsUserDrawings) {
    QTemporaryDir tmp;
    const AppHome home(tmp.path());
    install(home);
    installDrawings(home);
    const QString user = QDir(home.templateDir()).filePath(QStringLiteral("User.pdr"));
    const QString portrait = QDir(home.dir()).filePath(QStringLiteral("TemplatePortrate.pdr"));
    const QString doors = QDir(home.templateDir()).filePath(QStringLiteral("Doors_100.pdr"));
    const QByteArray doorsBytes = bytesOf(doors);
    // The user's items: a drawing with one shape, saved over User.pdr and the portrait template.
    auto mine = canvas::POLARDraw::create();
    mine->addShapeMm(canvas::shape_type::Rectangle, QRectF(10, 10, 20, 20), {}, false);
    mine->saveFile(user, canvas::save_format::Pdr);
    mine->saveFile(portrait, canvas::save_format::Pdr);
    const QByteArray userBytes = bytesOf(user);
    QFile::remove(doors);
    QFile broken(QDir(home.templateDir()).filePath(QStringLiteral("Stairs_50.pdr")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("not a drawing");
    broken.close();

    installDrawings(home);
    EXPECT_EQ(bytesOf(user), userBytes);
    EXPECT_EQ(bytesOf(portrait), userBytes);
    EXPECT_EQ(bytesOf(doors), doorsBytes); // made again, byte for byte the same
    auto stairs = canvas::POLARDraw::create();
    EXPECT_NO_THROW(stairs->loadFile(broken.fileName()));
}

TEST(InstallDrawings, AFolderThatCannotBeWrittenIsError75) {
    QTemporaryDir tmp;
    const QString missing = tmp.filePath(QStringLiteral("no/such/folder"));
    try {
        writeDrawingFiles(builtInCatalogue(), missing, missing);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathFileAccess);
        EXPECT_TRUE(e.description().contains(QStringLiteral("no/such/folder")))
            << e.description().toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(missing));
}
