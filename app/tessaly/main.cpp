// The desktop program: `tessaly [--home DIR]` runs Tessaly; `tessaly --install
// [--home DIR]` prepares the application home, puts the launcher, the icons
// and the drawings' file type into the user's desktop folders, and ends;
// `--help` and `--version` print and end. None of the three needs a display.
#include "core/app/CoreApplication.h"
#include "core/files/AppHome.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Waiter.h"
#include "program/DesktopInstall.h"
#include "program/Program.h"
#include "ui/QtUiPort.h"
#include "ui/Skin.h"
#include "workspace/Application.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// Options that end before any window: they run without a display.
const char* const NoDisplayFlags[] = {"--install", "--help", "-h", "-?", "--help-all", "--version", "-v"};
// Exit codes of the program.
constexpr int ExitOk = 0;
constexpr int ExitFailed = 1;

bool needsNoDisplay(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        for (const char* flag : NoDisplayFlags)
            if (std::strcmp(argv[i], flag) == 0)
                return true;
    return false;
}

// The name and version that --help and --version print.
void describe() {
    QCoreApplication::setApplicationName(QStringLiteral("tessaly"));
    QCoreApplication::setApplicationVersion(tessaly::CoreApplication::versionText());
}

// What the command line asks for.
struct Options {
    bool install = false;
    bool homeGiven = false;
    tessaly::AppHome home;
};

// Parses the command line; --help and --version print and end the process here.
Options parse(const QCoreApplication& qt) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Tessaly: site and floor plans, drawn to scale."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(
        {QStringLiteral("install"),
         QStringLiteral("Prepare the application home, add Tessaly to the desktop's menu, and end.")});
    parser.addOption(
        {QStringLiteral("home"), QStringLiteral("The application home to use."), QStringLiteral("DIR")});
    parser.process(qt);
    const bool given = parser.isSet(QStringLiteral("home"));
    return Options{parser.isSet(QStringLiteral("install")), given,
                   given ? tessaly::AppHome(parser.value(QStringLiteral("home")))
                         : tessaly::AppHome::fromEnvironment()};
}

int install(const Options& options) {
    try {
        tessaly::program::installHome(options.home);
        tessaly::program::DesktopInstall desktop;
        desktop.executable = QCoreApplication::applicationFilePath();
        if (options.homeGiven)
            desktop.home = options.home.dir();
        tessaly::program::installGuide(options.home, tessaly::program::builtGuide());
        tessaly::program::installDesktopEntries(desktop);
    } catch (const tessaly::RuntimeError& e) {
        std::fprintf(stderr, "tessaly: install failed: %d %s\n", e.number(), qPrintable(e.description()));
        return ExitFailed;
    }
    return ExitOk;
}

// --install, --help and --version, with no display at all.
int withoutDisplay(int argc, char** argv) {
    QCoreApplication qt(argc, argv);
    describe();
    const Options options = parse(qt);
    return options.install ? install(options) : ExitOk;
}

int run(int argc, char** argv) {
    QApplication qt(argc, argv);
    describe();
    QCoreApplication::setApplicationName(tessaly::AppTitle);
    QGuiApplication::setDesktopFileName(QStringLiteral("tessaly"));
    QApplication::setWindowIcon(QIcon(tessaly::program::AppIconResource));
    // The process ends when the main window unloads, not with its last window.
    QApplication::setQuitOnLastWindowClosed(false);
    const tessaly::AppHome home = parse(qt).home;
    tessaly::ui::applySkin(qt);

    tessaly::RealWaiter waiter;
    tessaly::ui::QtUiPort port;
    auto app = tessaly::program::makeApplication(port, waiter, home);
    port.attach(*app);
    // A second instance ends at once, without a word.
    if (!app->Main())
        return ExitOk;
    const int code = app->ended() ? ExitOk : QApplication::exec();
    // The windows go before the forms they show.
    port.closeAll();
    app.reset();
    return code;
}

} // namespace

int main(int argc, char** argv) {
    if (needsNoDisplay(argc, argv))
        return withoutDisplay(argc, argv);
    return run(argc, argv);
}
