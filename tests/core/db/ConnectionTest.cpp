// Opening the database from the program's connection strings, and the
// provider's errors for a missing or damaged file or an unreachable server.

#include "core/db/Connection.h"
#include "Database.h"
#include "TestErrors.h"
#include "core/db/ConnectionString.h"
#include "core/db/Recordset.h"

#include <QFile>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class ConnectionTest : public DbTest {};

} // namespace

TEST(ConnectionString, ReadsTheDataSourceAndIgnoresTheRest) {
    const ConnectionSettings s = parseConnectionString(QStringLiteral(
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\Data\\KORV.mdb;Persist Security Info=False;"));
    EXPECT_EQ(s.dataSource, QStringLiteral("C:\\Data\\KORV.mdb"));
    EXPECT_FALSE(s.isServer());
    const ConnectionSettings pg = parseConnectionString(QStringLiteral(
        "Provider=PostgreSQL;Data Source=db.office:6543/projects;User ID=ann;Password=\"a;b\";Schema=korv"));
    EXPECT_TRUE(pg.isServer());
    EXPECT_EQ(pg.host(), QStringLiteral("db.office"));
    EXPECT_EQ(pg.port(), 6543);
    EXPECT_EQ(pg.database(), QStringLiteral("projects"));
    EXPECT_EQ(pg.userId, QStringLiteral("ann"));
    EXPECT_EQ(pg.password, QStringLiteral("a;b"));
    EXPECT_EQ(pg.schema, QStringLiteral("korv"));
    EXPECT_EQ(parseConnectionString(QStringLiteral("Provider=PostgreSQL;Data Source=h/d")).port(), 5432);
}

TEST_P(ConnectionTest, OpensWithAndWithoutTheTrailingSemicolon) {
    for (const QString& cs : {connectionString(), controlConnectionString()}) {
        Connection c;
        EXPECT_EQ(c.State(), adStateClosed);
        c.Open(cs, QString(), QString(), adOptionUnspecified);
        EXPECT_EQ(c.State(), adStateOpen);
        EXPECT_EQ(c.ConnectionString(), cs);
        EXPECT_EQ(errorOf([&] { c.Open(cs); }).number(), 3705);
        c.Close();
        EXPECT_EQ(c.State(), adStateClosed);
    }
}

TEST_P(ConnectionTest, AMissingDatabaseFailsWithTheProvidersError) {
    Connection c;
    if (isSqlite()) {
        const QString missing = dir_->filePath(QStringLiteral("Missing.mdb"));
        const RuntimeError e = errorOf([&] {
            c.Open(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + missing +
                   QStringLiteral(";Persist Security Info=False;"));
        });
        EXPECT_EQ(e.number(), -2147467259);
        EXPECT_EQ(e.description(), QStringLiteral("Could not find file '%1'.").arg(missing));
        EXPECT_FALSE(QFile::exists(missing)); // opening never creates the file
        const RuntimeError empty = errorOf([&] {
            c.Open(
                QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Persist Security Info=False;"));
        });
        EXPECT_EQ(empty.description(), QStringLiteral("Could not find file ''."));
    } else {
        QString cs = PostgresServer::instance().connectionString();
        cs.replace(QStringLiteral("/tessaly;"), QStringLiteral("/no_such_database;"));
        const RuntimeError e = errorOf([&] { c.Open(cs); });
        EXPECT_EQ(e.number(), -2147467259);
        EXPECT_TRUE(e.description().contains(QStringLiteral("no_such_database")))
            << qPrintable(e.description());
    }
    EXPECT_EQ(c.State(), adStateClosed);
}

TEST_P(ConnectionTest, ADamagedOrUnreachableDatabaseFailsWithTheProvidersError) {
    Connection c;
    if (isSqlite()) {
        const QString damaged = dir_->filePath(QStringLiteral("Damaged.mdb"));
        QFile f(damaged);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray("Standard Jet DB\0\0\0 not what it seems", 37));
        f.close();
        const RuntimeError e = errorOf([&] {
            c.Open(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + damaged +
                   QStringLiteral(";Persist Security Info=False"));
        });
        EXPECT_EQ(e.number(), -2147467259);
        EXPECT_EQ(e.description(), QStringLiteral("Unrecognized database format '%1'.").arg(damaged));
        // A real database whose pages are wrecked after the header.
        QFile good(databasePath());
        ASSERT_TRUE(good.open(QIODevice::ReadWrite));
        good.seek(100);
        good.write(QByteArray(4000, '\xAB'));
        good.close();
        QFile::remove(databasePath() + QStringLiteral("-wal"));
        QFile::remove(databasePath() + QStringLiteral("-shm"));
        const RuntimeError wrecked = errorOf([&] { c.Open(connectionString()); });
        EXPECT_EQ(wrecked.number(), -2147467259);
        EXPECT_EQ(wrecked.description(),
                  QStringLiteral("Unrecognized database format '%1'.").arg(databasePath()));
    } else {
        // A port where no server listens.
        const RuntimeError e = errorOf([&] {
            c.Open(QStringLiteral("Provider=PostgreSQL;Data Source=127.0.0.1:1/tessaly;User ID=tessaly"));
        });
        EXPECT_EQ(e.number(), -2147467259);
        EXPECT_FALSE(e.description().isEmpty());
    }
    EXPECT_EQ(c.State(), adStateClosed);
}

TEST_P(ConnectionTest, PathsMatchWithoutRegardToCaseAndUserGoesByOpen) {
    Connection c;
    if (isSqlite()) {
        QString path = databasePath();
        path.replace(QStringLiteral("KORV.mdb"), QStringLiteral("korv.MDB"));
        path.replace(QLatin1Char('/'), QLatin1Char('\\'));
        c.Open(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + path +
               QStringLiteral(";Persist Security Info=False;"));
    } else {
        QString cs = connectionString();
        cs.replace(QStringLiteral(";User ID=tessaly"), QString());
        c.Open(cs, QStringLiteral("tessaly"), QString(), adOptionUnspecified);
    }
    ASSERT_EQ(c.State(), adStateOpen);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM ProjectItems;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_GE(rs.RecordCount(), 20);
}

TEST_P(ConnectionTest, ClosingTheConnectionStopsItsRecordsets) {
    addClient(connectionString(), QStringLiteral("Ann"));
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
    c.Close();
    rs.Fields(QStringLiteral("Town")) = QStringLiteral("Bodmin");
    EXPECT_EQ(errorOf([&] { rs.Update(); }).number(), 3704);
}

TESSALY_DB_ENGINES(ConnectionTest);
