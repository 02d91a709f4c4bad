// What users wait for in the project manager, on a large project database:
// 100,000 clients, 300,000 sites and 30,000 plans, and a plan of 100,000
// shapes saved with all its files.
//
//   projects_bench [--benchmark_filter=...]
//
// The database is built once per run in a temporary folder by one
// transaction of plain inserts; with TESSALY_BENCH_PROJECTS_DB naming a file,
// that file is built once and used again by later runs. Every wait of the
// program is recorded, not slept; the save reports how many it recorded.

#include "canvas/api/POLARDraw.h"
#include "core/db/DataControl.h"
#include "core/db/ProjectDatabase.h"
#include "core/db/Recordset.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "drawing_files/ProjectSave.h"
#include "program/Program.h"
#include "projects/frmClientSites.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include "../support/LargeProjectData.h"
#include "../support/ProgramOnDatabase.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <numeric>
#include <random>

using namespace tessaly;

namespace {

constexpr int ClientCount = 100000;
using tessaly::bench::SitesPerClient;
constexpr int PlanCount = 30000;
constexpr int PlansPerSite = 3;    // the first sites have plans, three each
constexpr int PlanShapes = 100000; // shapes of the plan that the save writes

QString databasePath;
std::unique_ptr<QTemporaryDir> homeDir;

void fill(const QString& path) {
    tessaly::bench::fillDatabase(path, [](QSqlQuery& q) {
        tessaly::bench::addClients(q, ClientCount);
        tessaly::bench::addSites(q, ClientCount);
        q.prepare(QStringLiteral("INSERT INTO SitePlans (SiteID, PlanDescription) VALUES (?, ?)"));
        for (int i = 0; i < PlanCount; ++i) {
            q.addBindValue(1 + i / PlansPerSite);
            q.addBindValue(QStringLiteral("Plan %1").arg(i));
            q.exec();
        }
    });
}

// Tessaly started on the benchmark's home with the large database.
struct Run : tessaly::bench::ProgramOnDatabase {
    Run() : ProgramOnDatabase(homeDir->path(), databasePath) {}
};

// FillClientCombo: every client read, one combo line each.
void BM_FillClientCombo(benchmark::State& state) {
    Run run;
    frmClientSites& m = run.openManager();
    for (auto _ : state) {
        m.FillClientCombo();
        if (m.cboCilent.listCount() != ClientCount)
            state.SkipWithError("wrong number of clients");
    }
}
BENCHMARK(BM_FillClientCombo)->Unit(benchmark::kMillisecond);

// Where FillClientCombo's time goes: the rows of every client read into the
// recordset and let go of again, no field read. The rest of the fill is the
// making of the combo's lines.
void BM_FillClientCombo_ReadRows(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        db::Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Clients;"), *run.app->gConnection, db::adOpenDynamic,
                db::adLockReadOnly, db::adCmdText);
        benchmark::DoNotOptimize(rs.RecordCount());
        rs.Close();
    }
}
BENCHMARK(BM_FillClientCombo_ReadRows)->Unit(benchmark::kMillisecond);

// Opening the project manager from the File menu: the window made and
// loaded, shown modally, and its client combo filled by the activation.
void BM_OpenClientSites(benchmark::State& state) {
    Run run;
    for (auto _ : state) {
        frmClientSites& m = run.openManager();
        if (m.cboCilent.listCount() != ClientCount)
            state.SkipWithError("wrong number of clients");
        state.PauseTiming();
        run.app->unload(m);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenClientSites)->Unit(benchmark::kMillisecond);

// A move of the site cursor: the site event with its refresh of the plans
// and of the cost lines, the bound boxes following.
void BM_SiteCursorMove(benchmark::State& state) {
    Run run;
    frmClientSites& m = run.openManager();
    // A client whose sites have plans.
    run.app->dispatch([&] { m.cboCilent.setListIndex(0); });
    db::Recordset& sites = m.sites().Recordset();
    int step = 0;
    for (auto _ : state) {
        if (step++ % 2 == 0)
            sites.MoveNext();
        else
            sites.MovePrevious();
        if (m.drawings().Recordset().RecordCount() != PlansPerSite)
            state.SkipWithError("wrong number of plans");
    }
}
BENCHMARK(BM_SiteCursorMove)->Unit(benchmark::kMicrosecond);

// SaveProjectOutputs of a 100,000-shape plan, as the File menu's save runs
// it: .pdr, .emf, .wmf, the scratch metafile, and the two report exports
// (which fail as run-time errors, and are logged, where the output subsystem
// is not joined).
void BM_SaveProjectOutputs(benchmark::State& state) {
    Run run;
    frmMain& main = run.app->form<frmMain>();
    auto canvas = std::dynamic_pointer_cast<canvas::POLARDraw>(main.canvas1());
    auto shapes =
        toObject(toObject(canvas->get(QStringLiteral("Page"))).get()->get(QStringLiteral("Shapes")));
    for (int i = 0; i < PlanShapes; ++i) {
        QVariantList box{1 + i % 3, i % 280, (i / 280) % 200, i % 280 + 6, (i / 280) % 200 + 4};
        shapes->call(QStringLiteral("AddShape"), box);
    }
    QDir().mkpath(homeDir->path() + QStringLiteral("/FileStore/Site 0 Low Road"));
    run.app->gPlanFileName = QStringLiteral("Site 0 Low Road\\Large Plan");
    std::size_t waits = 0;
    int waitedMs = 0;
    for (auto _ : state) {
        run.waiter.waits.clear();
        SaveProjectOutputs(*run.app, PlanSaveUse::Save);
        waits = run.waiter.waits.size();
        waitedMs = std::accumulate(run.waiter.waits.begin(), run.waiter.waits.end(), 0);
    }
    const QString stem = homeDir->path() + QStringLiteral("/FileStore/Site 0 Low Road/Large Plan");
    state.counters["waits"] = static_cast<double>(waits);
    state.counters["waited_ms"] = waitedMs;
    state.counters["pdr_MB"] = QFileInfo(stem + QStringLiteral(".pdr")).size() / 1e6;
    state.counters["emf_MB"] = QFileInfo(stem + QStringLiteral(".emf")).size() / 1e6;
    state.counters["wmf_MB"] = QFileInfo(stem + QStringLiteral(".wmf")).size() / 1e6;
}
BENCHMARK(BM_SaveProjectOutputs)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication qt(argc, argv);
    QTemporaryDir dir;
    const QString kept = qEnvironmentVariable("TESSALY_BENCH_PROJECTS_DB");
    databasePath = kept.isEmpty() ? dir.filePath(QStringLiteral("KORV.mdb")) : kept;
    homeDir = tessaly::bench::prepare(databasePath, fill);
    const int status = tessaly::bench::runBenchmarks(argc, argv);
    homeDir.reset();
    return status;
}
