// A writer killed at any moment leaves a whole database with no half row;
// two programs writing to one database at once lose nothing.

#include "Database.h"
#include "core/db/QuerySql.h"

#include <QProcess>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <random>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

constexpr int KillRounds = 20;        // writers killed per test
constexpr int MaxLinesBeforeKill = 6; // a writer is killed after 1 to this many finished rows
constexpr int WaitMs = 30000;         // the longest a writer may take to answer
constexpr int RowsPerSharedWriter = 150;

const char* const ClientFields[] = {"Client",   "Address", "Area", "Town",   "County",
                                    "PostCode", "Email",   "Tel",  "Contact"};

class Reliability : public DbTest {
protected:
    // Rows whose nine fields do not all hold the same text: half-written rows.
    int halfRows(const QList<QVariantMap>& rows) {
        int n = 0;
        for (const QVariantMap& row : rows) {
            const QVariant first = row.value(QStringLiteral("Client"));
            bool whole = !first.isNull() && !first.toString().isEmpty();
            for (const char* f : ClientFields)
                whole = whole && row.value(QLatin1String(f)) == first;
            n += whole ? 0 : 1;
        }
        return n;
    }

    int rowsTagged(const QList<QVariantMap>& rows, const QString& tag) {
        int n = 0;
        for (const QVariantMap& row : rows)
            n += row.value(QStringLiteral("Client")).toString().startsWith(tag + QLatin1Char('-')) ? 1 : 0;
        return n;
    }

    // SQLite's own check of the file; the server keeps its own files whole.
    QString integrity() {
        if (!isSqlite())
            return QStringLiteral("ok");
        QString result;
        {
            QSqlDatabase db =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("integrity"));
            db.setDatabaseName(databasePath());
            if (!db.open())
                return db.lastError().text();
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("PRAGMA integrity_check")) && q.next())
                result = q.value(0).toString();
            q.finish();
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("integrity"));
        return result;
    }

    static QString writerPath() { return QStringLiteral(TESSALY_DB_WRITER); }
};

} // namespace

TEST_P(Reliability, AWriterKilledAtAnyMomentLeavesNoHalfRow) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int round = 0; round < KillRounds; ++round) {
        const QString tag = QStringLiteral("k%1").arg(round);
        QProcess writer;
        writer.start(writerPath(), {connectionString(), tag, QStringLiteral("0")});
        ASSERT_TRUE(writer.waitForStarted(WaitMs));
        const int wanted = 1 + static_cast<int>(random() % MaxLinesBeforeKill);
        int finished = 0;
        while (finished < wanted) {
            ASSERT_TRUE(writer.waitForReadyRead(WaitMs))
                << QString::fromLocal8Bit(writer.readAllStandardError()).toStdString();
            while (writer.canReadLine()) {
                writer.readLine();
                ++finished;
            }
        }
        writer.kill(); // SIGKILL: no chance to finish what it was doing
        ASSERT_TRUE(writer.waitForFinished(WaitMs));
        finished += static_cast<int>(writer.readAllStandardOutput().count('\n'));

        ASSERT_EQ(integrity(), QStringLiteral("ok")) << "round " << round;
        const QList<QVariantMap> rows =
            querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
        ASSERT_EQ(halfRows(rows), 0) << "round " << round;
        // Every row whose Update returned is there; at most the one under way besides.
        const int stored = rowsTagged(rows, tag);
        EXPECT_GE(stored, finished) << "round " << round;
        EXPECT_LE(stored, finished + 1) << "round " << round;
    }
}

TEST_P(Reliability, TwoProgramsWritingAtOnceLoseNothing) {
    QProcess a;
    QProcess b;
    a.start(writerPath(), {connectionString(), QStringLiteral("A"), QString::number(RowsPerSharedWriter)});
    b.start(writerPath(), {connectionString(), QStringLiteral("B"), QString::number(RowsPerSharedWriter)});
    ASSERT_TRUE(a.waitForFinished(4 * WaitMs));
    ASSERT_TRUE(b.waitForFinished(4 * WaitMs));
    EXPECT_EQ(a.exitCode(), 0) << QString::fromLocal8Bit(a.readAllStandardError()).toStdString();
    EXPECT_EQ(b.exitCode(), 0) << QString::fromLocal8Bit(b.readAllStandardError()).toStdString();
    EXPECT_EQ(integrity(), QStringLiteral("ok"));
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    EXPECT_EQ(rows.size(), 2 * RowsPerSharedWriter);
    EXPECT_EQ(rowsTagged(rows, QStringLiteral("A")), RowsPerSharedWriter);
    EXPECT_EQ(rowsTagged(rows, QStringLiteral("B")), RowsPerSharedWriter);
    EXPECT_EQ(halfRows(rows), 0);
    // The keys were handed out once each.
    QSet<int> keys;
    for (const QVariantMap& row : rows)
        keys.insert(row.value(QStringLiteral("ClientID")).toInt());
    EXPECT_EQ(keys.size(), 2 * RowsPerSharedWriter);
}

TESSALY_DB_ENGINES(Reliability);
