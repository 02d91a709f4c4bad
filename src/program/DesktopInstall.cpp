#include "DesktopInstall.h"

#include "core/runtime/RuntimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace tessaly::program {

namespace {

// The icons' names in the hicolor theme: the program's, and its drawings' by
// the MIME rule (the type with "/" turned into "-").
const QString AppIconName = QStringLiteral("tessaly");
const QString DrawingIconName = QStringLiteral("application-x-tessaly-drawing");
const QString DrawingIconResource = QStringLiteral(":/app/tessaly-drawing.svg");
// Seconds a cache tool may take before the install goes on without it.
constexpr int ToolTimeoutMs = 30000;

// Characters that an argument of an Exec line escapes inside its quotes.
const QString ExecEscaped = QStringLiteral("\"`$\\");

void writeWhole(const QString& path, const QByteArray& bytes) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        raiseError(err::PathFileAccess, QStringLiteral("Cannot create the folder of %1").arg(path));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        raiseError(err::PathFileAccess, QStringLiteral("Cannot write %1").arg(path));
}

QByteArray resourceBytes(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        raiseError(err::FileNotFound, QStringLiteral("The program lacks its resource %1").arg(name));
    return file.readAll();
}

// One argument of an Exec line, quoted: the quoting rule escapes the double
// quote, backquote, dollar and backslash with a backslash, and the string
// rule of the file then doubles every backslash.
QString execArgument(const QString& arg) {
    QString quoted;
    for (const QChar c : arg) {
        if (c == QLatin1Char('%'))
            quoted += QStringLiteral("%%");
        else if (ExecEscaped.contains(c))
            quoted += QStringLiteral("\\\\") + (c == QLatin1Char('\\') ? QStringLiteral("\\\\") : QString(c));
        else
            quoted += c;
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QByteArray desktopEntry(const DesktopInstall& desktop) {
    QString text;
    text += QStringLiteral("[Desktop Entry]\n");
    text += QStringLiteral("Type=Application\n");
    text += QStringLiteral("Version=1.0\n");
    text += QStringLiteral("Name=Tessaly\n");
    text += QStringLiteral("GenericName=Floor Plan Drawing\n");
    text +=
        QStringLiteral("Comment=Draw site and floor plans to scale and keep the projects they belong to\n");
    text += QStringLiteral("Exec=%1\n").arg(launcherExec(desktop));
    text += QStringLiteral("Icon=%1\n").arg(AppIconName);
    text += QStringLiteral("Terminal=false\n");
    text += QStringLiteral("Categories=Graphics;2DGraphics;VectorGraphics;Engineering;\n");
    text += QStringLiteral("Keywords=plan;floor;site;architecture;drawing;\n");
    text += QStringLiteral("StartupWMClass=tessaly\n");
    return text.toUtf8();
}

QByteArray mimePackage() {
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
                          "  <mime-type type=\"%1\">\n"
                          "    <comment>Tessaly drawing</comment>\n"
                          "    <icon name=\"%2\"/>\n"
                          "    <glob pattern=\"*.pdr\"/>\n"
                          "  </mime-type>\n"
                          "</mime-info>\n")
        .arg(DrawingMimeType, DrawingIconName)
        .toUtf8();
}

// Runs a cache tool of the desktop when it is installed; a missing or failing
// tool leaves the files in place for the next login to find.
void runTool(const QString& tool, const QString& folder) {
    const QString path = QStandardPaths::findExecutable(tool);
    if (path.isEmpty())
        return;
    QProcess process;
    process.start(path, {folder});
    process.waitForFinished(ToolTimeoutMs);
}

} // namespace

QString xdgDataHome() {
    const QString set = qEnvironmentVariable("XDG_DATA_HOME");
    if (!set.isEmpty() && QDir::isAbsolutePath(set))
        return set;
    return QDir::homePath() + QStringLiteral("/.local/share");
}

QString launcherExec(const DesktopInstall& desktop) {
    QString exec = execArgument(desktop.executable);
    if (!desktop.home.isEmpty())
        exec += QStringLiteral(" --home ") + execArgument(desktop.home);
    return exec;
}

QStringList installDesktopEntries(const DesktopInstall& desktop) {
    const QString data = desktop.dataHome.isEmpty() ? xdgDataHome() : desktop.dataHome;
    const QString applications = data + QStringLiteral("/applications");
    const QString icons = data + QStringLiteral("/icons/hicolor/scalable");
    const QString mime = data + QStringLiteral("/mime");
    const QStringList written{
        applications + QStringLiteral("/tessaly.desktop"),
        icons + QStringLiteral("/apps/") + AppIconName + QStringLiteral(".svg"),
        icons + QStringLiteral("/mimetypes/") + DrawingIconName + QStringLiteral(".svg"),
        mime + QStringLiteral("/packages/tessaly.xml"),
    };
    writeWhole(written[0], desktopEntry(desktop));
    writeWhole(written[1], resourceBytes(AppIconResource));
    writeWhole(written[2], resourceBytes(DrawingIconResource));
    writeWhole(written[3], mimePackage());
    if (desktop.runTools) {
        runTool(QStringLiteral("update-desktop-database"), applications);
        runTool(QStringLiteral("update-mime-database"), mime);
    }
    return written;
}

QString builtGuide() {
    const QStringList candidates{QCoreApplication::applicationDirPath() + QLatin1Char('/') + GuideFileName,
                                 QStringLiteral(TESSALY_BUILT_GUIDE)};
    for (const QString& path : candidates)
        if (QFileInfo(path).isFile())
            return path;
    return {};
}

QString installGuide(const AppHome& home, const QString& source) {
    if (source.isEmpty() || !QFileInfo(source).isFile())
        return {};
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        raiseError(err::PathFileAccess, QStringLiteral("Cannot read %1").arg(source));
    const QString target = home.dir() + QLatin1Char('/') + GuideFileName;
    writeWhole(target, in.readAll());
    return target;
}

} // namespace tessaly::program
