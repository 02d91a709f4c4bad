// The planner and the cost tab of the project manager on large sites:
//
//   planner_costs_bench [--benchmark_filter=...]
//
// - the rebuild of the schedule as the program does it (ResetScheduleRows,
//   then LoadScheduleBars) for a site of 1,000 time lines with 10,000 and
//   with 100,000 bookings, read from the project database;
// - the entry into the cost tab of a site with 10,000 cost lines: the item
//   and time line lists and the summing pass over the bound recordset.
//
// The database is built once per run in a temporary folder by one
// transaction of plain inserts.

#include "core/db/DataControl.h"
#include "core/db/ProjectDatabase.h"
#include "core/db/Recordset.h"
#include "core/forms/DataBinding.h"
#include "core/forms/TabStrip.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "program/Program.h"
#include "projects/frmClientSites.h"
#include "schedule/ScheduleControl.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include "../support/ProgramOnDatabase.h"

#include <QCoreApplication>
#include <QDate>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tessaly;

namespace {

constexpr int TimeLines = 1000;     // time lines of each planner site
constexpr int CostLines = 10000;    // cost lines of the cost site
constexpr int CostSite = 1;         // the first site of the first client
constexpr int SmallPlanSite = 2;    // 10,000 bookings
constexpr int LargePlanSite = 3;    // 100,000 bookings
constexpr int CurrencyUnit = 10000; // stored currency: ten-thousandths

QString databasePath;
std::unique_ptr<QTemporaryDir> homeDir;

void addBookings(QSqlQuery& q, int site, int count) {
    q.prepare(
        QStringLiteral("INSERT INTO Schedule (SiteID, ProjectItem, StartDate, StartTime, EndDate, EndTime, "
                       "BarStyle, BarText, BarTextAlign, BarColour, Comments, ImageIndex) "
                       "VALUES (?, ?, ?, ?, ?, ?, 1, ?, 0, ?, ?, 0)"));
    const QDate first(2026, 9, 1);
    for (int i = 0; i < count; ++i) {
        const QDate start = first.addDays(i % 240);
        q.addBindValue(site);
        q.addBindValue(1 + i % TimeLines);
        q.addBindValue(start.toString(QStringLiteral("yyyy-MM-dd 00:00:00")));
        q.addBindValue(480 + i % 120);
        q.addBindValue(start.addDays(1 + i % 9).toString(QStringLiteral("yyyy-MM-dd 00:00:00")));
        q.addBindValue(1020);
        q.addBindValue(QStringLiteral("Booking %1").arg(i));
        q.addBindValue(0x40A0F0 + i % 64);
        q.addBindValue(QStringLiteral("Crew %1").arg(i % 17));
        q.exec();
    }
}

void fill(const QString& path) {
    tessaly::bench::fillDatabase(path, [](QSqlQuery& q) {
        q.exec(QStringLiteral(
            "INSERT INTO Clients (Client, Address, PostCode) VALUES ('Big Builds', 'Quay', 'PL1')"));
        for (const char* site : {"Costs", "Ten thousand", "Hundred thousand"})
            q.exec(QStringLiteral("INSERT INTO Sites (ClientID, Site, Address) VALUES (1, '%1', '%1')")
                       .arg(QString::fromLatin1(site)));
        q.prepare(QStringLiteral("INSERT INTO ProjectTimeLines (SiteID, TimeLineDesc) VALUES (?, ?)"));
        for (int site : {SmallPlanSite, LargePlanSite})
            for (int i = 0; i < TimeLines; ++i) {
                q.addBindValue(site);
                q.addBindValue(QStringLiteral("Stage %1").arg(i + 1));
                q.exec();
            }
        addBookings(q, SmallPlanSite, 10000);
        addBookings(q, LargePlanSite, 100000);
        q.prepare(QStringLiteral(
            "INSERT INTO ProjectCosts (SiteID, ProjectItem, ProjectTimeLine, Cost, ActualCost) "
            "VALUES (?, ?, 'N/A', ?, ?)"));
        for (int i = 0; i < CostLines; ++i) {
            q.addBindValue(CostSite);
            q.addBindValue(QStringLiteral("Item %1").arg(i));
            q.addBindValue(static_cast<qlonglong>(i % 5000 + 1) * CurrencyUnit / 4);
            q.addBindValue(static_cast<qlonglong>(i % 700) * CurrencyUnit);
            q.exec();
        }
    });
}

// Tessaly started on the benchmark's home with the large database, the
// project manager open on the first client.
struct Run : tessaly::bench::ProgramOnDatabase {
    frmClientSites* manager = nullptr;

    Run() : ProgramOnDatabase(homeDir->path(), databasePath) {
        manager = &openManager();
        app->dispatch([&] { manager->cboCilent.setListIndex(0); });
    }
};

// The rebuild of the chart: the rows of 1,000 time lines, then every booking of the site.
void BM_RebuildSchedule(benchmark::State& state) {
    Run run;
    frmClientSites& m = *run.manager;
    const int site = state.range(0) == 10000 ? SmallPlanSite : LargePlanSite;
    m.CurrentSiteID = site;
    for (auto _ : state) {
        m.ResetScheduleRows();
        m.LoadScheduleBars(site);
    }
    if (m.schedule().model().rowCount() != TimeLines || m.schedule().model().totalBars() != state.range(0))
        state.SkipWithError("wrong number of rows or bars");
}
BENCHMARK(BM_RebuildSchedule)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// The entry into the cost tab of a site with 10,000 lines: the lists, and the
// summing pass from the first line to EOF with the total written.
void BM_CostTabEntry(benchmark::State& state) {
    Run run;
    frmClientSites& m = *run.manager;
    db::Recordset& rs = dataControlOf(m.RS_ProjectCosts).Recordset();
    if (m.CurrentSiteID != CostSite || rs.RecordCount() != CostLines)
        state.SkipWithError("the cost site is not on show");
    for (auto _ : state) {
        state.PauseTiming();
        run.app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::SiteTab); });
        rs.MoveFirst();
        m.txtTotal.setText(QString());
        state.ResumeTiming();
        run.app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::CostsTab); });
    }
    if (m.txtTotal.text().isEmpty() || !rs.EOF_())
        state.SkipWithError("no total");
    state.SetLabel(m.txtTotal.text().toStdString());
}
BENCHMARK(BM_CostTabEntry)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication qt(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("en_GB")));
    QTemporaryDir dir;
    databasePath = dir.filePath(QStringLiteral("KORV.mdb"));
    homeDir = tessaly::bench::prepare(databasePath, fill);
    const int status = tessaly::bench::runBenchmarks(argc, argv);
    homeDir.reset();
    return status;
}
