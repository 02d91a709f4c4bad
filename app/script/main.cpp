// tessaly-script: runs Tessaly headless from a script.
//
//   tessaly-script [--home DIR] [--screen WxH] [--locale NAME] SCRIPT
//
// --locale names the system's locale whose date and currency formats the
// program uses (default en_GB).
// SCRIPT may be "-" for standard input. Exit status: 0 when the script ran to
// its end and every expect held, 1 at the first failed expect, 2 when a line
// cannot be run.
#include "core/files/AppHome.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "program/Program.h"

#include <QFile>
#include <QGuiApplication>
#include <QLocale>
#include <QRegularExpression>
#include <QTextStream>
#include <cstdio>

namespace {
constexpr int UsageError = 2; // the exit status of a bad command line, as for a bad line
// The system's locale when none is named: its dates read day first, its money is in pounds.
const QString DefaultLocale = QStringLiteral("en_GB");

int usage(QTextStream& err, const QString& why) {
    err << "tessaly-script: " << why
        << "\nusage: tessaly-script [--home DIR] [--screen WxH] [--locale NAME] SCRIPT\n";
    err.flush();
    return UsageError;
}
} // namespace

int main(int argc, char** argv) {
    // The canvas renders through Qt Gui; no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication qapp(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);

    QString home = tessaly::AppHome::fromEnvironment().dir();
    QSize screen(1024, 768);
    QString localeName = DefaultLocale;
    QString scriptPath;
    const QStringList args = qapp.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        if (a == QLatin1String("--home") && i + 1 < args.size()) {
            home = args[++i];
        } else if (a == QLatin1String("--screen") && i + 1 < args.size()) {
            const auto m = QRegularExpression(QStringLiteral("^(\\d+)x(\\d+)$")).match(args[++i]);
            if (!m.hasMatch())
                return usage(err, QStringLiteral("--screen takes WxH, for example 1024x768"));
            screen = QSize(m.captured(1).toInt(), m.captured(2).toInt());
        } else if (a == QLatin1String("--locale") && i + 1 < args.size()) {
            localeName = args[++i];
            if (QLocale(localeName).language() == QLocale::C && localeName != QLatin1String("C"))
                return usage(err,
                             QStringLiteral("--locale takes a locale's name, for example en_GB or en_US"));
        } else if (scriptPath.isEmpty()) {
            scriptPath = a;
        } else {
            return usage(err, QStringLiteral("unexpected argument '%1'").arg(a));
        }
    }
    if (scriptPath.isEmpty())
        return usage(err, QStringLiteral("no script given"));

    QFile file;
    if (scriptPath == QLatin1String("-")) {
        if (!file.open(stdin, QIODevice::ReadOnly))
            return usage(err, QStringLiteral("cannot read standard input"));
    } else {
        file.setFileName(scriptPath);
        if (!file.open(QIODevice::ReadOnly))
            return usage(err, QStringLiteral("cannot read '%1'").arg(scriptPath));
    }
    QLocale::setDefault(QLocale(localeName));
    const QString script = QString::fromUtf8(file.readAll());
    tessaly::script::Registry registry;
    tessaly::program::addScriptCommands(registry);
    tessaly::script::Runner runner(registry, tessaly::program::scriptProgram(), home, screen, out, err);
    return runner.run(script);
}
