// The recordset: cursor, reading, adding, updating, cancelling and deleting,
// read-only refusals, commands passed to Open, and every statement the
// program builds.

#include "core/db/Recordset.h"
#include "ConnectedDbTest.h"
#include "TestErrors.h"
#include "core/db/Connection.h"
#include "core/db/QuerySql.h"

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class RecordsetTest : public ConnectedDbTest {
protected:
    void addCost(int site, const QString& item, const QString& cost) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site),
                connection, adOpenDynamic, adLockOptimistic, adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("ProjectItem")) = item;
        rs.Fields(QStringLiteral("ProjectTimeLine")) = QStringLiteral("N/A");
        rs.Fields(QStringLiteral("Cost")) = cost;
        rs.Update();
        rs.Close();
    }
};

} // namespace

TEST_P(RecordsetTest, TheCursorStandsOnRowsOrBeforeOrAfterThem) {
    for (const char* name : {"Ann", "Bob", "Cy"})
        addClient(connectionString(), QLatin1String(name));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(rs.State(), adStateOpen);
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_FALSE(rs.BOF());
    EXPECT_FALSE(rs.EOF_());
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
    rs.MoveNext();
    rs.MoveNext();
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    EXPECT_EQ(rs.Fields(QStringLiteral("client")).Value().toString(),
              QStringLiteral("Cy")); // names match in any case
    rs.MoveNext();
    EXPECT_TRUE(rs.EOF_());
    EXPECT_FALSE(rs.BOF());
    EXPECT_EQ(rs.AbsolutePosition(), adPosEOF);
    EXPECT_EQ(errorOf([&] { rs.MoveNext(); }).number(), 3021);
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("Client")).Value(); }).number(), 3021);
    rs.MovePrevious();
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Cy"));
    rs.MoveFirst();
    rs.MovePrevious();
    EXPECT_TRUE(rs.BOF());
    EXPECT_EQ(rs.AbsolutePosition(), adPosBOF);
    EXPECT_EQ(errorOf([&] { rs.MovePrevious(); }).number(), 3021);
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
    rs.MoveLast();
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    rs.setAbsolutePosition(2);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Bob"));
    EXPECT_EQ(errorOf([&] { rs.setAbsolutePosition(4); }).number(), 3001);
    rs.Close();
    EXPECT_EQ(rs.State(), adStateClosed);
    EXPECT_EQ(errorOf([&] { rs.RecordCount(); }).number(), 3704);
}

TEST_P(RecordsetTest, NoRowsMeansBothBofAndEof) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=7));"), connection, adOpenDynamic,
            adLockOptimistic, adCmdText);
    EXPECT_TRUE(rs.BOF());
    EXPECT_TRUE(rs.EOF_());
    EXPECT_EQ(rs.RecordCount(), 0);
    const RuntimeError e = errorOf([&] { rs.MoveFirst(); });
    EXPECT_EQ(e.number(), 3021);
    EXPECT_EQ(e.description(),
              QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                             "Requested operation requires a current record."));
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("Site")).Value(); }).number(), 3021);
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("NoSuchField")); }).number(), 3265);
}

TEST_P(RecordsetTest, AddNewAndUpdateReadBackTheGeneratedKey) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockOptimistic, adCmdText);
    EXPECT_EQ(rs.EditMode(), adEditNone);
    rs.AddNew();
    EXPECT_EQ(rs.EditMode(), adEditAdd);
    EXPECT_TRUE(rs.Fields(QStringLiteral("ClientID")).isNull());
    rs.Fields(QStringLiteral("Client")) = QStringLiteral("Morvane Builders");
    rs.Fields(QStringLiteral("PostCode")) = QStringLiteral("TR1 1AA");
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Morvane Builders"));
    rs.Update();
    EXPECT_EQ(rs.EditMode(), adEditNone);
    EXPECT_EQ(rs.Fields(QStringLiteral("ClientID")).Value(), QVariant(1));
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    // Fields not written stay Null.
    EXPECT_TRUE(rs.Fields(QStringLiteral("Town")).isNull());
    rs.Close();

    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].value(QStringLiteral("Client")).toString(), QStringLiteral("Morvane Builders"));
    EXPECT_EQ(rows[0].value(QStringLiteral("PostCode")).toString(), QStringLiteral("TR1 1AA"));
    EXPECT_TRUE(rows[0].value(QStringLiteral("Town")).isNull());
}

TEST_P(RecordsetTest, AddingToATableKeepsItsRowsAroundTheNewOne) {
    addClient(connectionString(), QStringLiteral("Ann"));
    addClient(connectionString(), QStringLiteral("Bob"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("Client")) = QStringLiteral("Cy");
    rs.Update();
    EXPECT_EQ(rs.Fields(QStringLiteral("ClientID")).Value(), QVariant(3));
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Cy"));
    rs.MoveFirst();
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
    rs.Close();

    // A new row that the condition would not select stays in the recordset all the same.
    rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=1));"), connection,
            adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("Client")) = QStringLiteral("Dee");
    rs.Update();
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_EQ(rs.AbsolutePosition(), 2);
    EXPECT_EQ(rs.Fields(QStringLiteral("ClientID")).Value(), QVariant(4));
    rs.MoveFirst();
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
    rs.Close();

    // A new row dropped before anything was read leaves the cursor on the first row.
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.CancelUpdate();
    EXPECT_FALSE(rs.BOF());
    EXPECT_EQ(rs.RecordCount(), 4);
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
}

TEST_P(RecordsetTest, UpdateWritesTheCurrentRowOnly) {
    const int a = addClient(connectionString(), QStringLiteral("Ann"), QStringLiteral("1 Road"));
    const int b = addClient(connectionString(), QStringLiteral("Bob"), QStringLiteral("2 Road"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=%1));").arg(b), connection,
            adOpenDynamic, adLockOptimistic, adCmdText);
    ASSERT_FALSE(rs.EOF_());
    rs.Fields(QStringLiteral("Address")) = QStringLiteral("9 Lane");
    EXPECT_EQ(rs.EditMode(), adEditInProgress);
    rs.Update();
    EXPECT_EQ(rs.EditMode(), adEditNone);
    rs.Close();
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].value(QStringLiteral("ClientID")).toInt(), a);
    EXPECT_EQ(rows[0].value(QStringLiteral("Address")).toString(), QStringLiteral("1 Road"));
    EXPECT_EQ(rows[1].value(QStringLiteral("Address")).toString(), QStringLiteral("9 Lane"));
}

TEST_P(RecordsetTest, CancelUpdateDropsTheEditOrTheNewRow) {
    addClient(connectionString(), QStringLiteral("Ann"), QStringLiteral("1 Road"));
    addClient(connectionString(), QStringLiteral("Bob"), QStringLiteral("2 Road"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.MoveNext();
    rs.Fields(QStringLiteral("Address")) = QStringLiteral("changed");
    rs.CancelUpdate();
    EXPECT_EQ(rs.EditMode(), adEditNone);
    EXPECT_EQ(rs.Fields(QStringLiteral("Address")).Value().toString(), QStringLiteral("2 Road"));
    rs.AddNew();
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    rs.CancelUpdate();
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_EQ(rs.AbsolutePosition(), 2);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Bob"));
    rs.Close();
    EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Clients;")), 2);
}

TEST_P(RecordsetTest, MovingWithAPendingEditWritesIt) {
    addClient(connectionString(), QStringLiteral("Ann"));
    addClient(connectionString(), QStringLiteral("Bob"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.Fields(QStringLiteral("Town")) = QStringLiteral("Truro");
    rs.MoveNext();
    EXPECT_EQ(rs.EditMode(), adEditNone);
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    EXPECT_EQ(rows[0].value(QStringLiteral("Town")).toString(), QStringLiteral("Truro"));
}

TEST_P(RecordsetTest, DeleteRemovesTheRowAtTheCursorOfATableWithoutKey) {
    const int client = addClient(connectionString(), QStringLiteral("Ann"));
    const int site = addSite(connectionString(), client, QStringLiteral("S"), QStringLiteral("A"));
    // Two identical lines: only the one under the cursor goes.
    addCost(site, QStringLiteral("Roofing"), QStringLiteral("100"));
    addCost(site, QStringLiteral("Roofing"), QStringLiteral("100"));
    addCost(site, QStringLiteral("Plastering"), QStringLiteral("50"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site),
            connection, adOpenDynamic, adLockOptimistic, adCmdText);
    ASSERT_EQ(rs.RecordCount(), 3);
    rs.MoveNext();
    rs.Delete(adAffectCurrent);
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_FALSE(rs.BOF());
    EXPECT_FALSE(rs.EOF_());
    EXPECT_EQ(rs.AbsolutePosition(), adPosUnknown);
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("ProjectItem")).Value(); }).number(), 3021);
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(QStringLiteral("ProjectItem")).Value().toString(), QStringLiteral("Plastering"));
    rs.Close();
    const QList<QVariantMap> rows =
        querySql(connectionString(), QStringLiteral("SELECT * FROM ProjectCosts;"));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].value(QStringLiteral("ProjectItem")).toString(), QStringLiteral("Roofing"));
    EXPECT_EQ(rows[1].value(QStringLiteral("ProjectItem")).toString(), QStringLiteral("Plastering"));
    // The layer's own row key never shows.
    EXPECT_FALSE(rows[0].contains(QStringLiteral("tessaly_rowid")));
    EXPECT_EQ(rows[0].size(), 5);
}

TEST_P(RecordsetTest, DeletingTheOnlyRowLeavesNoRowAndBothEnds) {
    const int client = addClient(connectionString(), QStringLiteral("Ann"));
    const int site = addSite(connectionString(), client, QStringLiteral("S"), QStringLiteral("A"));
    addCost(site, QStringLiteral("Roofing"), QStringLiteral("100"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site),
            connection, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.Delete(adAffectCurrent);
    EXPECT_EQ(rs.RecordCount(), 0);
    // With no row left the recordset reports both ends at once, and no move has anywhere to go.
    EXPECT_TRUE(rs.BOF());
    EXPECT_TRUE(rs.EOF_());
    EXPECT_EQ(errorOf([&] { rs.MoveFirst(); }).number(), 3021);
    EXPECT_EQ(errorOf([&] { rs.MoveNext(); }).number(), 3021);
    EXPECT_EQ(rs.AbsolutePosition(), adPosUnknown);
}

TEST_P(RecordsetTest, AReadOnlyRecordsetRefusesEveryWrite) {
    addClient(connectionString(), QStringLiteral("Ann"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockReadOnly, adCmdText);
    const QString text =
        QStringLiteral("Current Recordset does not support updating. This may be a limitation of "
                       "the provider, or of the selected locktype.");
    for (const auto& write : std::vector<std::function<void()>>{
             [&] { rs.AddNew(); }, [&] { rs.Fields(QStringLiteral("Client")) = QStringLiteral("x"); },
             [&] { rs.Delete(adAffectCurrent); }}) {
        const RuntimeError e = errorOf(write);
        EXPECT_EQ(e.number(), 3251);
        EXPECT_EQ(e.description(), text);
    }
    EXPECT_EQ(rs.EditMode(), adEditNone);
    EXPECT_EQ(rs.Fields(QStringLiteral("Client")).Value().toString(), QStringLiteral("Ann"));
}

TEST_P(RecordsetTest, ADeletePassedToOpenRunsAndLeavesItClosed) {
    const int client = addClient(connectionString(), QStringLiteral("Ann"));
    const int site = addSite(connectionString(), client, QStringLiteral("S"), QStringLiteral("A"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), connection, adOpenDynamic, adLockOptimistic,
            adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Update();
    const int booking = rs.Fields(QStringLiteral("ScheduleID")).Value().toInt();
    rs.Close();
    Recordset command;
    command.Open(QStringLiteral("DELETE * FROM Schedule WHERE (((Schedule.ScheduleID)=%1));").arg(booking),
                 connection, adOpenDynamic, adLockOptimistic, adCmdText);
    EXPECT_EQ(command.State(), adStateClosed);
    EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Schedule;")), 0);
}

// Every statement the program builds, with its lock, as the program builds it.
TEST_P(RecordsetTest, EveryStatementOfTheProgramIsAccepted) {
    const int client = addClient(connectionString(), QStringLiteral("Ann"), QStringLiteral("1 Road"));
    const int site = addSite(connectionString(), client, QStringLiteral("Site"), QStringLiteral("1 High St"));
    struct Case {
        QString sql;
        int lock;
    };
    const QString id = QString::number(client);
    const QString sid = QString::number(site);
    const std::vector<Case> selects = {
        {QStringLiteral("SELECT * FROM Clients;"), adLockReadOnly},
        {QStringLiteral("SELECT * FROM Clients;"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=") + id + QStringLiteral("));"),
         adLockReadOnly},
        {QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=") + id + QStringLiteral("));"),
         adLockOptimistic},
        {QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=") + id + QStringLiteral("));"),
         adLockOptimistic},
        {QStringLiteral("SELECT * FROM Sites WHERE (((Sites.SiteID)=") + sid + QStringLiteral("));"),
         adLockReadOnly},
        {QStringLiteral("SELECT * FROM SitePlans;"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.SiteID)=") + sid + QStringLiteral("));"),
         adLockOptimistic},
        {QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.SiteID)=") + sid + QStringLiteral("));"),
         adLockReadOnly},
        {QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=") + sid +
             QStringLiteral("));"),
         adLockOptimistic},
        {QStringLiteral("SELECT * FROM ProjectItems;"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM ProjectTimeLines;"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM ProjectTimeLines WHERE (((ProjectTimeLines.SiteID)=") + sid +
             QStringLiteral("));"),
         adLockReadOnly},
        {QStringLiteral("SELECT * FROM ProjectTimeLines WHERE (((ProjectTimeLines.SiteID)=") + sid +
             QStringLiteral("));"),
         adLockOptimistic},
        {QStringLiteral("SELECT * FROM Schedule;"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.SiteID)=") + sid + QStringLiteral("));"),
         adLockReadOnly},
        {QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.ScheduleID)=1));"), adLockReadOnly},
        {QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.ScheduleID)=1));"), adLockOptimistic},
        {QStringLiteral("SELECT * FROM TemplateFiles;"), adLockReadOnly},
        {QStringLiteral("SELECT * FROM TemplateFiles;"), adLockOptimistic},
        {QStringLiteral(
             "SELECT Clients.Client, Clients.Contact, Clients.Email, Sites.Address, Clients.ClientID, "
             "Sites.SiteID FROM Clients INNER JOIN Sites ON Clients.ClientID = Sites.ClientID;"),
         adLockOptimistic},
    };
    for (const Case& c : selects) {
        Recordset rs;
        rs.Open(c.sql, connection, adOpenDynamic, c.lock, adCmdText);
        EXPECT_EQ(rs.State(), adStateOpen) << c.sql.toStdString();
        EXPECT_EQ(rs.isUpdatable(), c.lock == adLockOptimistic) << c.sql.toStdString();
        rs.Close();
    }
    // The join of the e-mail window reads the fields in its order.
    Recordset rs1;
    rs1.Open(selects.back().sql, connection, adOpenDynamic, adLockReadOnly, adCmdText);
    ASSERT_EQ(rs1.RecordCount(), 1);
    QStringList names;
    for (int i = 0; i < rs1.FieldCount(); ++i)
        names.append(rs1.FieldName(i));
    EXPECT_EQ(names.join(QLatin1Char(',')), QStringLiteral("Client,Contact,Email,Address,ClientID,SiteID"));
    EXPECT_EQ(rs1.Fields(QStringLiteral("Address")).Value().toString(), QStringLiteral("1 High St"));
    EXPECT_EQ(rs1.Fields(QStringLiteral("SiteID")).Value().toInt(), site);
    rs1.Close();

    for (const QString& del :
         {QStringLiteral("DELETE * FROM SitePlans WHERE (((SitePlans.PlanID)=1));"),
          QStringLiteral("DELETE * FROM Schedule WHERE (((Schedule.ScheduleID)=1));"),
          QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=") + id + QStringLiteral("));")}) {
        Recordset rs;
        rs.Open(del, connection, adOpenDynamic, adLockOptimistic, adCmdText);
        EXPECT_EQ(rs.State(), adStateClosed);
    }
    EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Clients;")), 0);
}

TEST_P(RecordsetTest, TheColourQueryMarksTheOnePlanItFinds) {
    const int client = addClient(connectionString(), QStringLiteral("Ann"));
    const int site = addSite(connectionString(), client, QStringLiteral("Site"), QStringLiteral("1 High St"));
    const int other =
        addSite(connectionString(), client, QStringLiteral("Other"), QStringLiteral("2 Low St"));
    for (const auto& [s, plan] : {std::pair{site, "Ground Floor"}, std::pair{site, "First Floor"},
                                  std::pair{other, "Ground Floor"}}) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), connection, adOpenDynamic, adLockOptimistic,
                adCmdText);
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = s;
        rs.Fields(QStringLiteral("PlanDescription")) = QLatin1String(plan);
        rs.Update();
        rs.Close();
    }
    Recordset rs;
    rs.Open(QStringLiteral("SELECT Sites.SiteID, Sites.Address, SitePlans.PlanDescription, "
                           "SitePlans.ColourOutputCreated ") +
                QStringLiteral("FROM Sites INNER JOIN SitePlans ON Sites.SiteID = SitePlans.SiteID ") +
                QStringLiteral("WHERE (((Sites.Address)='") + QStringLiteral("1 High St") +
                QStringLiteral("') AND ((SitePlans.PlanDescription)='") + QStringLiteral("Ground Floor") +
                QStringLiteral("'));"),
            connection, adOpenDynamic, adLockOptimistic, adCmdText);
    ASSERT_FALSE(rs.EOF_());
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.Fields(QStringLiteral("ColourOutputCreated")).Value(), QVariant(0));
    rs.Fields(QStringLiteral("ColourOutputCreated")) = true;
    rs.Update();
    EXPECT_EQ(rs.Fields(QStringLiteral("ColourOutputCreated")).Value(), QVariant(-1));
    rs.Close();
    const QList<QVariantMap> plans = querySql(connectionString(), QStringLiteral("SELECT * FROM SitePlans;"));
    ASSERT_EQ(plans.size(), 3);
    EXPECT_EQ(plans[0].value(QStringLiteral("ColourOutputCreated")), QVariant(-1));
    EXPECT_EQ(plans[1].value(QStringLiteral("ColourOutputCreated")), QVariant(0));
    EXPECT_EQ(plans[2].value(QStringLiteral("ColourOutputCreated")), QVariant(0));
}

TEST_P(RecordsetTest, OpenTwiceAndAClosedConnectionAreRefused) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(errorOf([&] {
                  rs.Open(QStringLiteral("SELECT * FROM Clients;"), connection, adOpenDynamic, adLockReadOnly,
                          adCmdText);
              }).number(),
              3705);
    rs.Close();
    EXPECT_EQ(errorOf([&] { rs.Close(); }).number(), 3704);
    Connection closed;
    EXPECT_EQ(errorOf([&] {
                  rs.Open(QStringLiteral("SELECT * FROM Clients;"), closed, adOpenDynamic, adLockReadOnly,
                          adCmdText);
              }).number(),
              3709);
}

TEST_P(RecordsetTest, AQueryWithAnUnknownTableFailsWithTheEnginesText) {
    Recordset rs;
    const RuntimeError e = errorOf([&] {
        rs.Open(QStringLiteral("SELECT * FROM Nowhere;"), connection, adOpenDynamic, adLockReadOnly,
                adCmdText);
    });
    EXPECT_EQ(e.number(), -2147217900);
    EXPECT_TRUE(e.description().contains(QStringLiteral("owhere"), Qt::CaseInsensitive))
        << qPrintable(e.description());
    EXPECT_EQ(rs.State(), adStateClosed);
}

TESSALY_DB_ENGINES(RecordsetTest);
