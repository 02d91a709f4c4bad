// The desktop program: `tessaly [--home DIR]` runs Tessaly; `tessaly --install
// [--home DIR]` prepares the application home and ends.
#include "core/files/AppHome.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Waiter.h"
#include "program/Program.h"
#include "ui/QtUiPort.h"
#include "ui/Skin.h"
#include "workspace/Application.h"

#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

const char* const InstallFlag = "--install";
// Exit codes of the program.
constexpr int ExitOk = 0;
constexpr int ExitFailed = 1;

// --install needs no display, so it is known before Qt starts.
bool asksForInstall(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], InstallFlag) == 0)
            return true;
    return false;
}

tessaly::AppHome homeFrom(const QCoreApplication& qt) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Tessaly: site and floor plans, drawn to scale."));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("install"), QStringLiteral("Prepare the application home and end.")});
    parser.addOption(
        {QStringLiteral("home"), QStringLiteral("The application home to use."), QStringLiteral("DIR")});
    parser.process(qt);
    if (parser.isSet(QStringLiteral("home")))
        return tessaly::AppHome(parser.value(QStringLiteral("home")));
    return tessaly::AppHome::fromEnvironment();
}

int install(int argc, char** argv) {
    QCoreApplication qt(argc, argv);
    const tessaly::AppHome home = homeFrom(qt);
    try {
        tessaly::program::installHome(home);
    } catch (const tessaly::RuntimeError& e) {
        std::fprintf(stderr, "tessaly: install failed: %d %s\n", e.number(), qPrintable(e.description()));
        return ExitFailed;
    }
    return ExitOk;
}

int run(int argc, char** argv) {
    QApplication qt(argc, argv);
    QCoreApplication::setApplicationName(tessaly::AppTitle);
    QCoreApplication::setApplicationVersion(tessaly::CoreApplication::versionText());
    // The process ends when the main window unloads, not with its last window.
    QApplication::setQuitOnLastWindowClosed(false);
    const tessaly::AppHome home = homeFrom(qt);
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
    if (asksForInstall(argc, argv))
        return install(argc, argv);
    return run(argc, argv);
}
