// The script driver's query: its own connection, one SELECT, rows as maps.

#include "core/db/QuerySql.h"
#include "Database.h"
#include "TestErrors.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class QuerySqlTest : public DbTest {};

} // namespace

TEST_P(QuerySqlTest, RowsComeAsMapsWithDatesAsIsoText) {
    const int client =
        addClient(connectionString(), QStringLiteral("Ann"), QStringLiteral("1 Road"), QStringLiteral("TR1"));
    const int site = addSite(connectionString(), client, QStringLiteral("S"), QStringLiteral("A"));
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Fields(QStringLiteral("StartDate")) = 45292.75; // 01/01/2024 18:00
    rs.Fields(QStringLiteral("BarText")) = QStringLiteral("Groundworks");
    rs.Update();
    rs.Close();

    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Schedule;"));
    ASSERT_EQ(rows.size(), 1);
    const QVariantMap& row = rows[0];
    EXPECT_EQ(row.size(), 13);
    EXPECT_EQ(row.value(QStringLiteral("StartDate")), QVariant(QStringLiteral("2024-01-01T18:00:00")));
    EXPECT_EQ(row.value(QStringLiteral("BarText")), QVariant(QStringLiteral("Groundworks")));
    EXPECT_EQ(row.value(QStringLiteral("SiteID")), QVariant(site));
    EXPECT_TRUE(row.value(QStringLiteral("EndDate")).isNull());

    const QList<QVariantMap> joined =
        querySql(connectionString(),
                 QStringLiteral("SELECT Clients.Client, Sites.SiteID FROM Clients INNER JOIN Sites ON "
                                "Clients.ClientID = Sites.ClientID;"));
    ASSERT_EQ(joined.size(), 1);
    EXPECT_EQ(joined[0].value(QStringLiteral("Client")), QVariant(QStringLiteral("Ann")));
    const QList<QVariantMap> counted =
        querySql(connectionString(), QStringLiteral("SELECT count(*) AS n FROM Clients"));
    EXPECT_EQ(counted[0].value(QStringLiteral("n")).toInt(), 1);
}

TEST_P(QuerySqlTest, OnlyASelectIsRun) {
    addClient(connectionString(), QStringLiteral("Ann"));
    EXPECT_EQ(errorOf([&] {
                  querySql(connectionString(),
                           QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=1));"));
              }).number(),
              -2147217900);
    EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Clients;")), 1);
}

TESSALY_DB_ENGINES(QuerySqlTest);
