// The install step's database: tables and fields, keys, defaults, the pick
// list, and the relations that cascade from a site but not from a client.

#include "Database.h"
#include "TestErrors.h"
#include "core/db/Connection.h"
#include "core/db/ProjectDatabase.h"
#include "core/db/QuerySql.h"
#include "core/db/Recordset.h"
#include "core/db/Values.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class Schema : public DbTest {};

QStringList fieldNames(const QString& connectionString, const QString& table) {
    Connection c;
    c.Open(connectionString);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM %1;").arg(table), c, adOpenDynamic, adLockReadOnly, adCmdText);
    QStringList names;
    for (int i = 0; i < rs.FieldCount(); ++i)
        names.append(rs.FieldName(i));
    return names;
}

} // namespace

TEST_P(Schema, EveryTableHasItsFieldsInOrder) {
    const QString cs = connectionString();
    EXPECT_EQ(fieldNames(cs, QStringLiteral("Clients")).join(QLatin1Char(',')),
              QStringLiteral("ClientID,Client,Address,Area,Town,County,PostCode,Email,Tel,Contact"));
    EXPECT_EQ(
        fieldNames(cs, QStringLiteral("Sites")).join(QLatin1Char(',')),
        QStringLiteral("SiteID,ClientID,Site,Address,Area,Town,County,PostCode,TelNumber,FAXNumber,Email,"
                       "Contact,DateAdded,Comments"));
    EXPECT_EQ(fieldNames(cs, QStringLiteral("SitePlans")).join(QLatin1Char(',')),
              QStringLiteral("PlanID,SiteID,PlanDescription,DateCreated,ColourOutputCreated"));
    EXPECT_EQ(fieldNames(cs, QStringLiteral("ProjectCosts")).join(QLatin1Char(',')),
              QStringLiteral("SiteID,ProjectItem,ProjectTimeLine,Cost,ActualCost"));
    EXPECT_EQ(fieldNames(cs, QStringLiteral("ProjectItems")).join(QLatin1Char(',')),
              QStringLiteral("ProjectItems"));
    EXPECT_EQ(fieldNames(cs, QStringLiteral("ProjectTimeLines")).join(QLatin1Char(',')),
              QStringLiteral("SiteID,TimeLineDesc"));
    EXPECT_EQ(
        fieldNames(cs, QStringLiteral("Schedule")).join(QLatin1Char(',')),
        QStringLiteral("ScheduleID,SiteID,ProjectItem,StartDate,StartTime,EndDate,EndTime,BarStyle,BarText,"
                       "BarTextAlign,BarColour,Comments,ImageIndex"));
    EXPECT_EQ(fieldNames(cs, QStringLiteral("TemplateFiles")).join(QLatin1Char(',')),
              QStringLiteral("ID,TemplateName"));
}

TEST_P(Schema, FieldsKnowTheirTypes) {
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(rs.Fields(QStringLiteral("ScheduleID")).Type(), FieldType::Counter);
    EXPECT_EQ(rs.Fields(QStringLiteral("ProjectItem")).Type(), FieldType::Short);
    EXPECT_EQ(rs.Fields(QStringLiteral("StartDate")).Type(), FieldType::Date);
    EXPECT_EQ(rs.Fields(QStringLiteral("StartTime")).Type(), FieldType::Long);
    EXPECT_EQ(rs.Fields(QStringLiteral("Comments")).Type(), FieldType::Memo);
    rs.Close();
    rs.Open(QStringLiteral("SELECT * FROM ProjectCosts;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(rs.Fields(QStringLiteral("Cost")).Type(), FieldType::Currency);
    rs.Close();
    rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), c, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(rs.Fields(QStringLiteral("ColourOutputCreated")).Type(), FieldType::Boolean);
}

TEST_P(Schema, ProjectItemsComeWithTheDatabase) {
    const QList<QVariantMap> items =
        querySql(connectionString(), QStringLiteral("SELECT * FROM ProjectItems;"));
    EXPECT_GE(items.size(), 20);
    QStringList names;
    for (const QVariantMap& row : items)
        names.append(row.value(QStringLiteral("ProjectItems")).toString());
    for (const char* expected : {"Foundations", "Brickwork", "Roofing", "First Fix Electrics", "Plastering"})
        EXPECT_TRUE(names.contains(QLatin1String(expected))) << expected;
    EXPECT_EQ(names.first(), QStringLiteral("Site Clearance"));
}

TEST_P(Schema, KeysAreNumberedByTheDatabaseAndNeverReused) {
    const int first = addClient(connectionString(), QStringLiteral("A"));
    const int second = addClient(connectionString(), QStringLiteral("B"));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=2));"), c, adOpenDynamic,
            adLockOptimistic, adCmdText);
    EXPECT_EQ(addClient(connectionString(), QStringLiteral("C")), 3);
}

TEST_P(Schema, DatesOfAddingAndTheColourFlagHaveDefaults) {
    // Two minutes before now, read once, so that the date and time agree across midnight.
    const QDateTime earlier = QDateTime::currentDateTime().addSecs(-120);
    const double before = values::serialFromDate(QDateTime(earlier.date(), earlier.time(), Qt::UTC));
    const int client = addClient(connectionString(), QStringLiteral("Client"));
    const int site = addSite(connectionString(), client, QStringLiteral("Site"), QStringLiteral("1 High St"));
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.SiteID)=%1));").arg(site), c, adOpenDynamic,
            adLockReadOnly, adCmdText);
    ASSERT_FALSE(rs.EOF_());
    const double added = rs.Fields(QStringLiteral("DateAdded")).Value().toDouble();
    EXPECT_GT(added, before);
    EXPECT_LT(added, before + 1.0 / 24); // within the hour around now
    rs.Close();

    rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Fields(QStringLiteral("PlanDescription")) = QStringLiteral("Ground Floor");
    rs.Update();
    // The new row is read back with what the database filled in.
    EXPECT_EQ(rs.Fields(QStringLiteral("ColourOutputCreated")).Value(), QVariant(0));
    EXPECT_GT(rs.Fields(QStringLiteral("DateCreated")).Value().toDouble(), before);
    EXPECT_GE(rs.Fields(QStringLiteral("PlanID")).Value().toInt(), 1);
}

TEST_P(Schema, DeletingASiteTakesItsRowsWithIt) {
    const QString cs = connectionString();
    const int client = addClient(cs, QStringLiteral("Client"));
    const int doomed = addSite(cs, client, QStringLiteral("Doomed"), QStringLiteral("1 Old Road"));
    const int kept = addSite(cs, client, QStringLiteral("Kept"), QStringLiteral("2 New Road"));
    Connection c;
    c.Open(cs);
    for (int site : {doomed, kept}) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Update();
        rs.Close();
        rs.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site), c,
                adOpenDynamic, adLockOptimistic, adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("Cost")) = QStringLiteral("10");
        rs.Update();
        rs.Close();
        rs.Open(QStringLiteral("SELECT * FROM ProjectTimeLines;"), c, adOpenDynamic, adLockOptimistic,
                adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("TimeLineDesc")) = QStringLiteral("Groundworks");
        rs.Update();
        rs.Close();
        rs.Open(QStringLiteral("SELECT * FROM Schedule;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("ProjectItem")) = 1;
        rs.Update();
        rs.Close();
    }
    // The site's delete: Delete on the current row of the site recordset.
    Recordset sites;
    sites.Open(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(client), c,
               adOpenDynamic, adLockOptimistic, adCmdText);
    ASSERT_EQ(sites.Fields(QStringLiteral("SiteID")).Value().toInt(), doomed);
    sites.Delete(adAffectCurrent);
    for (const char* table : {"SitePlans", "ProjectCosts", "ProjectTimeLines", "Schedule"}) {
        EXPECT_EQ(countRows(cs, QStringLiteral("SELECT * FROM %1 WHERE (((%1.SiteID)=%2));")
                                    .arg(QLatin1String(table))
                                    .arg(doomed)),
                  0)
            << table;
        EXPECT_EQ(countRows(cs, QStringLiteral("SELECT * FROM %1 WHERE (((%1.SiteID)=%2));")
                                    .arg(QLatin1String(table))
                                    .arg(kept)),
                  1)
            << table;
    }
}

TEST_P(Schema, DeletingAClientLeavesItsSites) {
    const QString cs = connectionString();
    const int client = addClient(cs, QStringLiteral("Gone"));
    addSite(cs, client, QStringLiteral("Orphan"), QStringLiteral("3 Lane"));
    Connection c;
    c.Open(cs);
    Recordset rs;
    rs.Open(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=%1));").arg(client), c,
            adOpenDynamic, adLockOptimistic, adCmdText);
    EXPECT_EQ(rs.State(), adStateClosed);
    EXPECT_EQ(countRows(cs, QStringLiteral("SELECT * FROM Clients;")), 0);
    EXPECT_EQ(countRows(cs, QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(client)),
              1);
}

TEST_P(Schema, ARowOfASiteThatDoesNotExistIsRefused) {
    Connection c;
    c.Open(connectionString());
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = 999;
    const RuntimeError e = errorOf([&] { rs.Update(); });
    EXPECT_EQ(e.number(), -2147467259);
    EXPECT_EQ(rs.EditMode(), adEditAdd);
    rs.CancelUpdate();
    EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM SitePlans;")), 0);
}

TEST_P(Schema, CreatingAgainLeavesTheUsersData) {
    addClient(connectionString(), QStringLiteral("Precious"));
    if (isSqlite())
        EXPECT_FALSE(createProjectDatabase(databasePath()));
    else
        EXPECT_FALSE(createServerProjectDatabase(connectionString()));
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].value(QStringLiteral("Client")).toString(), QStringLiteral("Precious"));
}

TEST_P(Schema, TheFileIsSharedThroughWriteAheadLogging) {
    if (!isSqlite()) {
        // The server shares by itself; the schema lives in the test's own schema.
        EXPECT_TRUE(connectionString().contains(QStringLiteral(";Schema=t_")));
        return;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("wal-check"));
    db.setDatabaseName(databasePath());
    ASSERT_TRUE(db.open());
    {
        QSqlQuery q(db);
        ASSERT_TRUE(q.exec(QStringLiteral("PRAGMA journal_mode")));
        ASSERT_TRUE(q.next());
        EXPECT_EQ(q.value(0).toString(), QStringLiteral("wal"));
        ASSERT_TRUE(q.exec(QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'SitePlans'")));
        ASSERT_TRUE(q.next());
        EXPECT_TRUE(q.value(0).toString().contains(
            QStringLiteral("REFERENCES \"Sites\"(\"SiteID\") ON DELETE CASCADE")));
        ASSERT_TRUE(q.exec(QStringLiteral(
            "SELECT count(*) FROM sqlite_master WHERE type = 'index' AND name = 'Sites_ClientID'")));
        ASSERT_TRUE(q.next());
        EXPECT_EQ(q.value(0).toInt(), 1);
    }
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("wal-check"));
}

TESSALY_DB_ENGINES(Schema);
