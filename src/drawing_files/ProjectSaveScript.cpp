// The project save's part of the script driver: the lines of the error log
// without their times, whether a file is there, and whether two files hold
// the same bytes.
#include "core/files/FileSystem.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "drawing_files/ProjectSave.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

namespace tessaly {

using script::LineError;
using script::Runner;
using script::Tokens;

namespace {

// A path of a script: relative ones lie in the home.
QString inHome(Runner& run, const QString& path) {
    const QString host = fs::toHost(path);
    return QDir::isRelativePath(host) ? run.homeDir() + QLatin1Char('/') + host : host;
}

// `print errorlog`: each line of ErrorLog.Log with its leading date and time
// (and the "-" after them) left out, since they differ from run to run.
QJsonValue printErrorLog(Runner& run, const Tokens&) {
    static const QRegularExpression stamp(QStringLiteral("^\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d-"));
    QJsonArray lines;
    QFile log(run.homeDir() + QStringLiteral("/ErrorLog.Log"));
    if (!log.open(QIODevice::ReadOnly | QIODevice::Text))
        return lines;
    for (const QString& line :
         QString::fromLocal8Bit(log.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        lines << QString(line).remove(stamp);
    return lines;
}

// `print samefile "A" "B"`: true when both files are there and hold the same bytes.
QJsonValue printSameFile(Runner& run, const Tokens& expr) {
    QFile a(inHome(run, expr[1].text));
    QFile b(inHome(run, expr[2].text));
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly))
        return false;
    return a.readAll() == b.readAll();
}

// `print exists "PATH"`: whether a file is there, as FileExists finds it
// (names matched without regard to case, folders no match).
QJsonValue printExists(Runner& run, const Tokens& expr) {
    return fs::fileExists(inHome(run, expr[1].text));
}

} // namespace

void addProjectSaveScriptCommands(script::Registry& registry) {
    registry.printForm(QStringLiteral("errorlog"), 0, printErrorLog);
    registry.printForm(QStringLiteral("samefile"), 2, printSameFile);
    registry.printForm(QStringLiteral("exists"), 1, printExists);
}

} // namespace tessaly
