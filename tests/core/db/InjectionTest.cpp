// Names typed with quotes reach the SQL text unescaped, as the program builds
// it. A quote may break a query; it can never run a second statement, and
// never make a write reach rows that the query did not name.

#include "ConnectedDbTest.h"
#include "TestErrors.h"
#include "core/db/Connection.h"
#include "core/db/QuerySql.h"
#include "core/db/Recordset.h"

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class Injection : public ConnectedDbTest {
protected:
    void SetUp() override {
        ConnectedDbTest::SetUp();
        if (HasFatalFailure())
            return;
        const int client =
            addClient(connectionString(), QStringLiteral("O'Brien"), QStringLiteral("O'Brien House"));
        addClient(connectionString(), QStringLiteral("Other"));
        for (const char* address : {"1 High St", "2 Low St"}) {
            const int site = addSite(connectionString(), client, QStringLiteral("S"), QLatin1String(address));
            Recordset rs;
            rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), connection, adOpenDynamic, adLockOptimistic,
                    adCmdText);
            rs.AddNew();
            rs.Fields(QStringLiteral("SiteID")) = site;
            rs.Fields(QStringLiteral("PlanDescription")) = QStringLiteral("p");
            rs.Update();
            rs.Close();
        }
    }
    // The colour window's query, built as the program builds it.
    static QString colourQuery(const QString& address, const QString& plan) {
        return QStringLiteral("SELECT Sites.SiteID, Sites.Address, SitePlans.PlanDescription, "
                              "SitePlans.ColourOutputCreated ") +
               QStringLiteral("FROM Sites INNER JOIN SitePlans ON Sites.SiteID = SitePlans.SiteID ") +
               QStringLiteral("WHERE (((Sites.Address)='") + address +
               QStringLiteral("') AND ((SitePlans.PlanDescription)='") + plan + QStringLiteral("'));");
    }

    int markedPlans() {
        int n = 0;
        for (const QVariantMap& row :
             querySql(connectionString(), QStringLiteral("SELECT * FROM SitePlans;")))
            n += row.value(QStringLiteral("ColourOutputCreated")).toInt() != 0 ? 1 : 0;
        return n;
    }

    void expectNothingChanged() {
        EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Clients;")), 2);
        EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM Sites;")), 2);
        EXPECT_EQ(countRows(connectionString(), QStringLiteral("SELECT * FROM SitePlans;")), 2);
        EXPECT_EQ(markedPlans(), 0);
    }
};

} // namespace

TEST_P(Injection, AnApostropheIsStoredByFieldAndBreaksTheQuery) {
    const QList<QVariantMap> clients = querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"));
    EXPECT_EQ(clients[0].value(QStringLiteral("Client")).toString(), QStringLiteral("O'Brien"));
    Recordset rs;
    const RuntimeError e = errorOf([&] {
        rs.Open(colourQuery(QStringLiteral("O'Brien House"), QStringLiteral("p")), connection, adOpenDynamic,
                adLockOptimistic, adCmdText);
    });
    EXPECT_EQ(e.number(), -2147217900);
    EXPECT_EQ(rs.State(), adStateClosed);
    expectNothingChanged();
}

TEST_P(Injection, ASecondStatementNeverRuns) {
    Recordset rs;
    const RuntimeError e = errorOf([&] {
        rs.Open(colourQuery(QStringLiteral("x'); DELETE FROM Clients; --"), QStringLiteral("p")), connection,
                adOpenDynamic, adLockOptimistic, adCmdText);
    });
    EXPECT_EQ(e.number(), -2147217900);
    // Without the comment the text still carries a second statement.
    const RuntimeError second = errorOf([&] {
        rs.Open(QStringLiteral(
                    "SELECT * FROM Clients WHERE (((Clients.Client)='x')); DELETE FROM Clients; SELECT * "
                    "FROM Clients WHERE (((Clients.Client)='y'));"),
                connection, adOpenDynamic, adLockReadOnly, adCmdText);
    });
    EXPECT_EQ(second.number(), -2147217900);
    EXPECT_EQ(second.description(), QStringLiteral("Characters found after end of SQL statement."));
    expectNothingChanged();
}

TEST_P(Injection, ACommentCannotCutAwayTheRestOfTheCondition) {
    // Were "--" a comment, this address would leave "WHERE (((Sites.Address)='x' OR 1=1)))" and mark every
    // plan.
    Recordset rs;
    const RuntimeError e = errorOf([&] {
        rs.Open(colourQuery(QStringLiteral("x' OR 1=1))) --"), QStringLiteral("p")), connection,
                adOpenDynamic, adLockOptimistic, adCmdText);
    });
    EXPECT_EQ(e.number(), -2147217900);
    EXPECT_TRUE(e.description().contains(QStringLiteral("'--' outside quotes is not allowed")))
        << qPrintable(e.description());
    expectNothingChanged();
}

TEST_P(Injection, AnOrInTheConditionLeavesTheRowsReadOnly) {
    // A balanced OR reads more rows than the query named, but none of them can be written.
    Recordset rs;
    rs.Open(colourQuery(QStringLiteral("x' OR 'a'='a"), QStringLiteral("p")), connection, adOpenDynamic,
            adLockOptimistic, adCmdText);
    ASSERT_EQ(rs.State(), adStateOpen);
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_FALSE(rs.isUpdatable());
    const RuntimeError e = errorOf([&] { rs.Fields(QStringLiteral("ColourOutputCreated")) = true; });
    EXPECT_EQ(e.number(), 3251);
    rs.Close();
    expectNothingChanged();
}

TEST_P(Injection, ADeleteMustNameItsRowsByEquality) {
    // The client box's text used as the key: "1 OR 1=1".
    Recordset rs;
    const RuntimeError e = errorOf([&] {
        rs.Open(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=") +
                    QStringLiteral("1 OR 1=1") + QStringLiteral("));"),
                connection, adOpenDynamic, adLockOptimistic, adCmdText);
    });
    EXPECT_EQ(e.number(), -2147217900);
    const RuntimeError update = errorOf([&] {
        Recordset edit;
        edit.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=1 OR 1=1));"), connection,
                  adOpenDynamic, adLockOptimistic, adCmdText);
        edit.Fields(QStringLiteral("Client")) = QStringLiteral("overwritten");
    });
    EXPECT_EQ(update.number(), 3251);
    expectNothingChanged();
    EXPECT_EQ(querySql(connectionString(), QStringLiteral("SELECT * FROM Clients;"))[1].value(
                  QStringLiteral("Client")),
              QVariant(QStringLiteral("Other")));
}

TESSALY_DB_ENGINES(Injection);
