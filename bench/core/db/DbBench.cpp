// What users wait for in the project manager, on a large project database:
// 100,000 clients, 300,000 sites and 1,000,000 schedule bookings.
//
//   db_bench [--benchmark_filter=...]
//
// The database is built once per run in a temporary folder (about half a
// minute), by one transaction of plain inserts; with TESSALY_BENCH_DB naming
// a file, that file is built once and used again by later runs.

#include "core/db/Connection.h"
#include "core/db/DataControl.h"
#include "core/db/ProjectDatabase.h"
#include "core/db/Recordset.h"

#include "../../support/LargeProjectData.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <random>

using namespace tessaly::db;

namespace {

constexpr int ClientCount = 100000;
using tessaly::bench::SitesPerClient;
constexpr int ScheduleCount = 1000000;

QString connectionString;

void fill(const QString& path) {
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fill"));
        db.setDatabaseName(path);
        db.open();
        QSqlQuery q(db);
        q.exec(QStringLiteral("BEGIN"));
        tessaly::bench::addClients(q, ClientCount);
        tessaly::bench::addSites(q, ClientCount);
        q.prepare(QStringLiteral(
            "INSERT INTO Schedule (SiteID, ProjectItem, StartDate, StartTime, EndDate, EndTime, "
            "BarStyle, BarText, BarTextAlign, BarColour, Comments, ImageIndex) VALUES "
            "(?, ?, '2024-01-01 00:00:00', 480, '2024-01-05 00:00:00', 1020, 1, ?, 0, 255, '', 0)"));
        for (int i = 0; i < ScheduleCount; ++i) {
            q.addBindValue(1 + i % (ClientCount * SitesPerClient));
            q.addBindValue(1 + i % 10);
            q.addBindValue(QStringLiteral("Booking %1").arg(i));
            q.exec();
        }
        q.exec(QStringLiteral("COMMIT"));
        q.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("fill"));
}

// FillClientCombo: every client read, one combo line each.
void BM_FillClientCombo(benchmark::State& state) {
    Connection c;
    c.Open(connectionString);
    for (auto _ : state) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Clients;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
        QStringList lines;
        while (!rs.EOF_()) {
            lines.append(rs.value(QStringLiteral("Client")).toString() + QStringLiteral(", ") +
                         rs.value(QStringLiteral("Address")).toString() + QStringLiteral(", ") +
                         rs.value(QStringLiteral("PostCode")).toString());
            benchmark::DoNotOptimize(rs.value(QStringLiteral("ClientID")));
            rs.MoveNext();
        }
        rs.Close();
        if (lines.size() != ClientCount)
            state.SkipWithError("wrong number of clients");
    }
}
BENCHMARK(BM_FillClientCombo)->Unit(benchmark::kMillisecond);

// The fetch alone: all clients into the recordset, no field read.
void BM_OpenAllClients(benchmark::State& state) {
    Connection c;
    c.Open(connectionString);
    for (auto _ : state) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Clients;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
        benchmark::DoNotOptimize(rs.RecordCount());
        rs.Close();
    }
}
BENCHMARK(BM_OpenAllClients)->Unit(benchmark::kMillisecond);

// QuerySitesOfClient: the site data control given a client and refreshed.
void BM_OpenClientSites(benchmark::State& state) {
    DataControl sites;
    sites.setConnectionString(connectionString);
    std::mt19937 random(7);
    for (auto _ : state) {
        const int client = 1 + static_cast<int>(random() % ClientCount);
        sites.setRecordSource(
            QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(client));
        sites.Refresh();
        if (sites.Recordset().RecordCount() != SitesPerClient)
            state.SkipWithError("wrong number of sites");
    }
}
BENCHMARK(BM_OpenClientSites)->Unit(benchmark::kMillisecond);

// A booking added as SaveBooking adds it, on an open recordset of one site's bookings.
void BM_AddNewUpdate(benchmark::State& state) {
    Connection c;
    c.Open(connectionString);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.SiteID)=1));"), c, adOpenDynamic,
            adLockOptimistic, adCmdText);
    for (auto _ : state) {
        rs.AddNew();
        rs.setValue(QStringLiteral("SiteID"), 1);
        rs.setValue(QStringLiteral("ProjectItem"), 2);
        rs.setValue(QStringLiteral("StartDate"), 45292.0);
        rs.setValue(QStringLiteral("StartTime"), 480);
        rs.setValue(QStringLiteral("EndDate"), 45296.0);
        rs.setValue(QStringLiteral("EndTime"), 1020);
        rs.setValue(QStringLiteral("BarStyle"), 1);
        rs.setValue(QStringLiteral("BarText"), QStringLiteral("Roofing"));
        rs.setValue(QStringLiteral("BarTextAlign"), 0);
        rs.setValue(QStringLiteral("BarColour"), 255);
        rs.setValue(QStringLiteral("Comments"), QStringLiteral(""));
        rs.setValue(QStringLiteral("ImageIndex"), 0);
        rs.Update();
    }
}
BENCHMARK(BM_AddNewUpdate)->Unit(benchmark::kMillisecond);

// The program's whole adding idiom for a booking: open "SELECT * FROM Schedule;", AddNew, fields, Update,
// Close.
void BM_AddBookingIdiom(benchmark::State& state) {
    Connection c;
    c.Open(connectionString);
    for (auto _ : state) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Schedule;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
        rs.AddNew();
        rs.setValue(QStringLiteral("SiteID"), 1);
        rs.setValue(QStringLiteral("ProjectItem"), 2);
        rs.setValue(QStringLiteral("BarText"), QStringLiteral("Roofing"));
        rs.Update();
        rs.Close();
    }
}
BENCHMARK(BM_AddBookingIdiom)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString kept = qEnvironmentVariable("TESSALY_BENCH_DB");
    const QString path = kept.isEmpty() ? dir.filePath(QStringLiteral("KORV.mdb")) : kept;
    if (createProjectDatabase(path))
        fill(path);
    connectionString = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + path +
                       QStringLiteral(";Persist Security Info=False;");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
