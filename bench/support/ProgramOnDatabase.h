#pragma once

// Tessaly started for a benchmark on an installed home with a project
// database file of the benchmark's own, and the filling of such a file.

#include "core/db/ProjectDatabase.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "program/Program.h"
#include "projects/frmClientSites.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <functional>
#include <memory>

namespace tessaly::bench {

// Runs `fill` with a query on the SQLite file `path`, inside one transaction
// on a connection of its own that is closed afterwards.
inline void fillDatabase(const QString& path, const std::function<void(QSqlQuery&)>& fill) {
    const QString name = QStringLiteral("fill");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.open();
        QSqlQuery q(db);
        q.exec(QStringLiteral("BEGIN"));
        fill(q);
        q.exec(QStringLiteral("COMMIT"));
        q.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

// Tessaly started on `home`: the splash's timer has run and the main window
// is up, with the project database of the file `database` open.
struct ProgramOnDatabase {
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;

    ProgramOnDatabase(const QString& home, const QString& database) {
        app = program::makeApplication(port, waiter, AppHome(home));
        app->Main();
        Form& splash = app->form(QStringLiteral("frmSplash"));
        splash.raiseEvent(splash.control(QStringLiteral("Timer1")), QStringLiteral("Timer"));
        app->CloseDatabase();
        app->gDatabaseLocation = database;
        app->gConnectionString = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + database +
                                 QStringLiteral(";Persist Security Info=False;");
        app->OpenConnection();
    }
    ~ProgramOnDatabase() {
        app->CloseDatabase();
        app->releaseInstanceLock();
    }
    ProgramOnDatabase(const ProgramOnDatabase&) = delete;
    ProgramOnDatabase& operator=(const ProgramOnDatabase&) = delete;

    // The File menu's entry that opens the project manager.
    frmClientSites& openManager() {
        frmMain& main = app->form<frmMain>();
        app->dispatch([&] {
            main.raiseEvent(main.control(QStringLiteral("mnuFile_OpenProject")), QStringLiteral("Click"));
        });
        return static_cast<frmClientSites&>(*app->loaded(QStringLiteral("frmClientSites")));
    }
};

// A benchmark's home, installed in a temporary folder, and its project
// database at `database`, made and filled by `fill` when it is new.
inline std::unique_ptr<QTemporaryDir> prepare(const QString& database,
                                              const std::function<void(const QString&)>& fill) {
    auto home = std::make_unique<QTemporaryDir>();
    program::installHome(AppHome(home->path()));
    if (db::createProjectDatabase(database))
        fill(database);
    return home;
}

// Runs the benchmarks that the command line selects; the exit status.
inline int runBenchmarks(int& argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace tessaly::bench
