// Bad input and faults in the project manager: quotes in names, text that
// tries to add a statement, a database file that another program holds
// locked, and a database server that goes away while the window is up.
#include "ProjectsFixture.h"
#include "TcpRelay.h"
#include "core/db/Connection.h"
#include "core/db/ConnectionString.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace tessaly::projects::test {
namespace {

// Another program writing to the database file: it holds the write lock
// from its making to its end.
class WriteLock {
public:
    explicit WriteLock(const QString& path) {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), Name);
        other.setDatabaseName(path);
        held_ = other.open() && QSqlQuery(other).exec(QStringLiteral("BEGIN IMMEDIATE"));
    }
    ~WriteLock() {
        {
            QSqlDatabase other = QSqlDatabase::database(Name);
            QSqlQuery(other).exec(QStringLiteral("ROLLBACK"));
            other.close();
        }
        QSqlDatabase::removeDatabase(Name);
    }
    bool held() const { return held_; }

private:
    static inline const QString Name = QStringLiteral("holder");
    bool held_ = false;
};

class ProjectFaults : public ProjectsTest {
protected:
    QStringList runTimeErrors() { return takeBoxes().filter(QStringLiteral("Run-time error")); }
    // gConnection again, with a short wait for a locked database.
    void reconnectWithTimeout(int seconds) {
        app->CloseDatabase();
        auto c = std::make_shared<db::Connection>();
        c->setConnectionTimeout(seconds);
        c->Open(app->gConnectionString);
        app->gConnection = c;
    }
};

TEST_P(ProjectFaults, QuotesInNamesAreStoredAsTyped) {
    frmClientSites& m = openManager();
    click(m.cmdNewClient);
    type(clientWindow().txtClient(0), QStringLiteral("O'Brien's Builders'); DROP TABLE Clients; --"));
    click(clientWindow().cmdSaveClient);
    ASSERT_EQ(m.cboCilent.listCount(), 1);
    EXPECT_EQ(m.cboCilent.listItem(0), QStringLiteral("O'Brien's Builders'); DROP TABLE Clients; --, , "));
    choose(m.cboCilent, 0);
    click(m.cmdSiteDetailButton(frmClientSites::NewSite));
    type(m.txtSiteDetails(11), QStringLiteral("Miller's Barn"));
    type(m.txtSiteDetails(0), QStringLiteral("Miller's Lane"));
    click(m.cmdSiteDetailButton(frmClientSites::SaveSite));
    EXPECT_EQ(runTimeErrors(), QStringList());
    const QList<QVariantMap> site = rows(QStringLiteral("SELECT Site, Address FROM Sites"));
    ASSERT_EQ(site.size(), 1);
    EXPECT_EQ(site[0].value(QStringLiteral("Site")).toString(), QStringLiteral("Miller's Barn"));
    EXPECT_EQ(site[0].value(QStringLiteral("Address")).toString(), QStringLiteral("Miller's Lane"));
    EXPECT_EQ(m.txtSiteDetails(0).text(), QStringLiteral("Miller's Lane"));
}

TEST_P(ProjectFaults, AQuoteInTheKeyBoxBreaksItsStatementAndChangesNoRow) {
    addClient(QStringLiteral("Harbour Homes"));
    addClient(QStringLiteral("Morgan"));
    frmClientSites& m = openManager();
    choose(m.cboCilent, 0);
    click(m.cmdViewClient);
    frmNew& w = clientWindow();
    const QList<QVariantMap> before = rows(QStringLiteral("SELECT * FROM Clients ORDER BY ClientID"));
    for (const QString& key : {QStringLiteral("1'"), QStringLiteral("1)); DELETE * FROM Clients WHERE ((1=1"),
                               QStringLiteral("1)); UPDATE Clients SET Client='x';")}) {
        app->dispatch([&] { w.txtClient(frmNew::IdBox).setText(key); });
        type(w.txtClient(0), QStringLiteral("Changed"));
        click(w.cmdSaveClient);
        const QStringList shown = runTimeErrors();
        ASSERT_EQ(shown.size(), 1) << key.toStdString();
        EXPECT_TRUE(shown[0].startsWith(QLatin1String("Run-time error '-2147217900':")))
            << shown[0].toStdString();
        // The handler stopped at the failed statement: the window is still up.
        EXPECT_TRUE(isLoaded("frmNew"));
        EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients ORDER BY ClientID")), before);
    }
}

TEST_P(ProjectFaults, ALockedDatabaseGivesTheErrorBoxAndTheWindowGoesOn) {
    if (!isSqlite())
        GTEST_SKIP() << "a file that another program holds locked is an embedded database's fault";
    reconnectWithTimeout(1);
    frmClientSites& m = openManager();
    click(m.cmdNewClient);
    type(clientWindow().txtClient(0), QStringLiteral("Harbour Homes"));
    {
        const WriteLock lock(databasePath());
        ASSERT_TRUE(lock.held());
        takeBoxes();
        click(clientWindow().cmdSaveClient);
        const QStringList shown = runTimeErrors();
        ASSERT_EQ(shown.size(), 1);
        EXPECT_TRUE(shown[0].startsWith(QLatin1String("Run-time error '-2147467259':")))
            << shown[0].toStdString();
        EXPECT_TRUE(isLoaded("frmNew"));
    }
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 0);
    // The lock gone, the same press stores the client once.
    click(clientWindow().cmdSaveClient);
    EXPECT_FALSE(isLoaded("frmNew"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 1);
    EXPECT_EQ(m.cboCilent.listCount(), 1);
}

TEST_P(ProjectFaults, ASiteSavedWhileTheDatabaseIsLockedIsSavedByTheNextPress) {
    if (!isSqlite())
        GTEST_SKIP() << "a file that another program holds locked is an embedded database's fault";
    const int client = addClient(QStringLiteral("Harbour Homes"));
    addSite(client, QStringLiteral("Barn"), QStringLiteral("Old Barn"));
    frmClientSites& m = openManager();
    choose(m.cboCilent, 0);
    m.sites().setConnectionTimeout(1);
    m.sites().setConnectionString(m.sites().ConnectionString() + QStringLiteral(";"));
    app->dispatch([&] { m.sites().Refresh(); });
    click(m.cmdSiteDetailButton(frmClientSites::EditSite));
    type(m.txtSiteDetails(2), QStringLiteral("Penryn"));
    {
        const WriteLock lock(databasePath());
        ASSERT_TRUE(lock.held());
        takeBoxes();
        click(m.cmdSiteDetailButton(frmClientSites::SaveSite));
        EXPECT_EQ(runTimeErrors().size(), 1);
    }
    EXPECT_TRUE(rows(QStringLiteral("SELECT Town FROM Sites"))[0].value(QStringLiteral("Town")).isNull());
    // The edit is still pending and Save is still there to press.
    EXPECT_TRUE(m.cmdSiteDetailButton(frmClientSites::SaveSite).enabled());
    click(m.cmdSiteDetailButton(frmClientSites::SaveSite));
    EXPECT_EQ(rows(QStringLiteral("SELECT Town FROM Sites"))[0].value(QStringLiteral("Town")).toString(),
              QStringLiteral("Penryn"));
    EXPECT_EQ(m.siteState(), frmClientSites::SiteState::View);
}

TEST_P(ProjectFaults, AServerThatGoesAwayGivesErrorBoxesAndTheWindowGoesOn) {
    if (isSqlite())
        GTEST_SKIP() << "an embedded database has no server to lose";
    const int client = addClient(QStringLiteral("Harbour Homes"));
    addSite(client, QStringLiteral("Barn"), QStringLiteral("Old Barn"));
    // The program reaches the server through a relay that can be cut.
    const db::ConnectionSettings settings = db::parseConnectionString(connectionString());
    TcpRelay relay(settings.port());
    app->gDatabaseLocation = QStringLiteral(";Provider=PostgreSQL;Data Source=%1:%2/%3;User ID=%4;Schema=%5")
                                 .arg(settings.host())
                                 .arg(relay.port())
                                 .arg(settings.database(), settings.userId, settings.schema);
    app->gConnectionString = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") +
                             app->gDatabaseLocation + QStringLiteral(";Persist Security Info=False;");
    reconnectWithTimeout(5);
    frmClientSites& m = openManager();
    choose(m.cboCilent, 0);
    ASSERT_EQ(m.lblSiteDetailsInfo.caption(), QStringLiteral("Record: 1 of 1"));
    click(m.cmdSiteDetailButton(frmClientSites::EditSite));
    type(m.txtSiteDetails(2), QStringLiteral("Penryn"));
    const QList<QVariantMap> before = rows(QStringLiteral("SELECT * FROM Sites"));

    relay.cut();
    takeBoxes();
    click(m.cmdSiteDetailButton(frmClientSites::SaveSite));
    EXPECT_EQ(runTimeErrors().size(), 1);
    choose(m.cboCilent, 0);
    EXPECT_EQ(runTimeErrors().size(), 1);
    click(m.cmdNewClient);
    type(clientWindow().txtClient(0), QStringLiteral("Lost"));
    click(clientWindow().cmdSaveClient);
    EXPECT_EQ(runTimeErrors().size(), 1);
    click(clientWindow().cmdClose);
    // The window still answers, and no row was written in part.
    click(m.cmdCopySite);
    EXPECT_EQ(m.txtSiteDetails(0).text(), m.txtSiteDetails(11).text());
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites")), before);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 1);
    click(m.cmdClose);
    EXPECT_FALSE(isLoaded("frmClientSites"));
}

TESSALY_DB_ENGINES(ProjectFaults);

} // namespace
} // namespace tessaly::projects::test
