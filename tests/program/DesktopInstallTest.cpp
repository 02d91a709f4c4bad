// The desktop program's command line without a display, and what its install
// step gives the desktop: the launcher, the icons, the drawings' file type
// and the user guide, checked with the desktop's own tools.
#include "program/DesktopInstall.h"

#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::program;

namespace {

constexpr int RunTimeoutMs = 120000; // an install writes every symbol library

QString readText(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll());
}

// The desktop program with no display of any kind.
struct ProgramRun {
    int code = -1;
    QString out;
    QString err;
};

ProgramRun runTessaly(const QStringList& args, const QString& xdgDataHome = {}) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    if (!xdgDataHome.isEmpty())
        env.insert(QStringLiteral("XDG_DATA_HOME"), xdgDataHome);
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSALY_EXE), args);
    p.waitForFinished(RunTimeoutMs);
    return ProgramRun{p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                      QString::fromUtf8(p.readAllStandardOutput()),
                      QString::fromUtf8(p.readAllStandardError())};
}

} // namespace

TEST(CommandLine, VersionPrintsTheVersionWithNoDisplay) {
    const ProgramRun r = runTessaly({QStringLiteral("--version")});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("tessaly 1.0.0\n"));
}

TEST(CommandLine, HelpListsTheOptionsWithNoDisplay) {
    const ProgramRun r = runTessaly({QStringLiteral("--help")});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("--install"))) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("--home <DIR>"))) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("--version"))) << r.out.toStdString();
}

TEST(DesktopInstall, InstallPutsLauncherIconsAndDrawingTypeIntoTheUsersDataFolder) {
    QTemporaryDir dir;
    const QString xdg = dir.path() + QStringLiteral("/data home");
    const QString home = dir.path() + QStringLiteral("/tessaly home");
    const ProgramRun r = runTessaly({QStringLiteral("--install"), QStringLiteral("--home"), home}, xdg);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();

    const QString entry = xdg + QStringLiteral("/applications/tessaly.desktop");
    const QString text = readText(entry);
    EXPECT_TRUE(text.startsWith(QStringLiteral("[Desktop Entry]\n"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("\nName=Tessaly\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\nIcon=tessaly\n")));
    // The program with the home it was installed on, and no file.
    EXPECT_TRUE(text.contains(QStringLiteral("\nExec=\"%1\" --home \"%2\"\n")
                                  .arg(QFileInfo(QStringLiteral(TESSALY_EXE)).absoluteFilePath(), home)))
        << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("%f")));
    EXPECT_FALSE(text.contains(QStringLiteral("%F")));
    EXPECT_TRUE(QFileInfo(xdg + QStringLiteral("/icons/hicolor/scalable/apps/tessaly.svg")).size() > 0);
    EXPECT_TRUE(
        QFileInfo(xdg + QStringLiteral("/icons/hicolor/scalable/mimetypes/application-x-tessaly-drawing.svg"))
            .size() > 0);
    const QString mime = readText(xdg + QStringLiteral("/mime/packages/tessaly.xml"));
    EXPECT_TRUE(mime.contains(QStringLiteral("<mime-type type=\"application/x-tessaly-drawing\">")));
    EXPECT_TRUE(mime.contains(QStringLiteral("<glob pattern=\"*.pdr\"/>")));
    // The home itself was laid out as ever.
    EXPECT_TRUE(QFileInfo(home + QStringLiteral("/Templates/Default.pdr")).isFile());

    // The desktop's own tools: the entry is valid, and the MIME database now
    // maps *.pdr to the drawing type.
    const QString validate = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
    ASSERT_FALSE(validate.isEmpty()) << "desktop-file-validate (desktop-file-utils) is not installed";
    QProcess check;
    check.start(validate, {entry});
    check.waitForFinished(RunTimeoutMs);
    EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardOutput().toStdString();
    EXPECT_EQ(QString::fromUtf8(check.readAllStandardOutput()), QString());
    ASSERT_FALSE(QStandardPaths::findExecutable(QStringLiteral("update-mime-database")).isEmpty());
    EXPECT_TRUE(readText(xdg + QStringLiteral("/mime/globs2"))
                    .contains(QStringLiteral("application/x-tessaly-drawing:*.pdr")));
    EXPECT_TRUE(QFileInfo(xdg + QStringLiteral("/mime/application/x-tessaly-drawing.xml")).isFile());
}

TEST(DesktopInstall, ASecondInstallWritesTheSameFilesAgain) {
    QTemporaryDir dir;
    DesktopInstall d;
    d.executable = QStringLiteral("/opt/tessaly/bin/tessaly");
    d.dataHome = dir.path();
    d.runTools = false;
    const QStringList first = installDesktopEntries(d);
    d.executable = QStringLiteral("/usr/local/bin/tessaly");
    const QStringList second = installDesktopEntries(d);
    EXPECT_EQ(first, second);
    ASSERT_EQ(second.size(), 4);
    EXPECT_TRUE(readText(second[0]).contains(QStringLiteral("\nExec=\"/usr/local/bin/tessaly\"\n")));
}

TEST(DesktopInstall, TheLauncherQuotesItsArgumentsByTheDesktopEntryRules) {
    DesktopInstall d;
    d.executable = QStringLiteral("/home/a b/bin/tessaly");
    EXPECT_EQ(launcherExec(d), QStringLiteral("\"/home/a b/bin/tessaly\""));
    d.home = QStringLiteral("/x/\"q\" $HOME `c` 100% back\\slash");
    EXPECT_EQ(
        launcherExec(d),
        QStringLiteral("\"/home/a b/bin/tessaly\" --home \"/x/\\\\\"q\\\\\" \\\\$HOME \\\\`c\\\\` 100%% "
                       "back\\\\\\\\slash\""));
}

TEST(DesktopInstall, TheGuideIsCopiedIntoTheHomeWhole) {
    QTemporaryDir dir;
    const QString source = dir.path() + QStringLiteral("/built.pdf");
    QFile f(source);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("%PDF-1.5 guide");
    f.close();
    const AppHome home(dir.path() + QStringLiteral("/home"));
    QDir().mkpath(home.dir());
    const QString written = installGuide(home, source);
    EXPECT_EQ(written, home.dir() + QStringLiteral("/Tessaly-User-Guide.pdf"));
    EXPECT_EQ(readText(written), QStringLiteral("%PDF-1.5 guide"));
    // Without a built guide nothing is written.
    EXPECT_EQ(installGuide(home, dir.path() + QStringLiteral("/none.pdf")), QString());
    EXPECT_EQ(installGuide(home, QString()), QString());
}

TEST(DesktopInstall, AFolderThatCannotBeWrittenIsError75) {
    QTemporaryDir dir;
    const QString blocked = dir.path() + QStringLiteral("/file");
    QFile f(blocked);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    DesktopInstall d;
    d.executable = QStringLiteral("/bin/tessaly");
    d.dataHome = blocked; // a file where the folder should be
    d.runTools = false;
    int number = 0;
    try {
        installDesktopEntries(d);
    } catch (const RuntimeError& e) {
        number = e.number();
    }
    EXPECT_EQ(number, err::PathFileAccess);
}
