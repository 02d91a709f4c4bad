// A program that saves one project plan again and again, as the File menu's
// save does, and prints the number of each save once it has returned. The
// crash test kills it at random moments.
//
// Usage: project_saver HOME PLAN COUNT   (PLAN as gPlanFileName holds it;
// COUNT 0: until killed)

#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "drawing_files/ProjectSave.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <cstdio>

using namespace tessaly;

int main(int argc, char** argv) {
    QCoreApplication qt(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: project_saver HOME PLAN COUNT\n");
        return 2;
    }
    const AppHome home(QString::fromLocal8Bit(argv[1]));
    const QString plan = QString::fromLocal8Bit(argv[2]);
    const long count = std::strtol(argv[3], nullptr, 10);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, home);
    try {
        if (!app->Main())
            return 3;
        Form& splash = app->form(QStringLiteral("frmSplash"));
        splash.raiseEvent(splash.control(QStringLiteral("Timer1")), QStringLiteral("Timer"));
        auto& main = static_cast<frmMain&>(app->form(QStringLiteral("frmMain")));
        app->gPlanFileName = plan;
        late::call(main.canvas1(), "LoadFile",
                   {QDir(home.fileStoreDir())
                        .filePath(QString(plan).replace(QLatin1Char('\\'), QLatin1Char('/')) +
                                  QStringLiteral(".pdr"))});
        for (long i = 1; count == 0 || i <= count; ++i) {
            SaveProjectOutputs(*app, PlanSaveUse::Save);
            std::printf("%ld\n", i);
            std::fflush(stdout);
        }
    } catch (const RuntimeError& e) {
        std::fprintf(stderr, "%d %s\n", e.number(), qPrintable(e.description()));
        return 1;
    }
    app->releaseInstanceLock();
    return 0;
}
