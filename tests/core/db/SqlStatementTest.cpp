// The statement reader: one statement per text, Jet's dialect mapped for
// each engine, and the shape checks that keep a typed quote from widening a
// write. These need no database.

#include "core/db/SqlStatement.h"
#include "TestErrors.h"
#include "core/db/DbErrors.h"
#include "core/db/PostgresBackend.h"
#include "core/db/SqliteBackend.h"
#include "core/runtime/RuntimeError.h"

#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

QString sqlite(const QString& sql) {
    return SqlStatement::parse(sql).render(SqliteDialect());
}

QString postgres(const QString& sql) {
    return SqlStatement::parse(sql).render(PostgresDialect());
}

} // namespace

TEST(SqlStatement, JetDeleteBecomesDeleteFrom) {
    EXPECT_EQ(sqlite(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=5));")),
              QStringLiteral("DELETE  FROM Clients WHERE (((Clients.ClientID)=5))"));
    EXPECT_EQ(postgres(QStringLiteral("DELETE * FROM Schedule WHERE (((Schedule.ScheduleID)=17));")),
              QStringLiteral("DELETE  FROM \"Schedule\" WHERE (((\"Schedule\".\"ScheduleID\")=17))"));
    EXPECT_EQ(sqlite(QStringLiteral("DELETE SitePlans.* FROM SitePlans WHERE (((SitePlans.PlanID)=2));")),
              QStringLiteral("DELETE  FROM SitePlans WHERE (((SitePlans.PlanID)=2))"));
}

TEST(SqlStatement, PostgresQuotesTheTablesMixedCaseNames) {
    EXPECT_EQ(postgres(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=12));")),
              QStringLiteral("SELECT * FROM \"Clients\" WHERE (((\"Clients\".\"ClientID\")=12))"));
    // Names in any case reach the canonical spelling; other names stay as written.
    EXPECT_EQ(postgres(QStringLiteral("SELECT count(*) AS n FROM sites")),
              QStringLiteral("SELECT count(*) AS n FROM \"Sites\""));
    EXPECT_EQ(postgres(QStringLiteral("SELECT Clients.Client, Clients.Contact, Clients.Email, Sites.Address, "
                                      "Clients.ClientID, Sites.SiteID FROM Clients INNER JOIN Sites ON "
                                      "Clients.ClientID = Sites.ClientID;")),
              QStringLiteral(
                  "SELECT \"Clients\".\"Client\", \"Clients\".\"Contact\", \"Clients\".\"Email\", "
                  "\"Sites\".\"Address\", \"Clients\".\"ClientID\", \"Sites\".\"SiteID\" FROM \"Clients\" "
                  "INNER JOIN \"Sites\" ON \"Clients\".\"ClientID\" = \"Sites\".\"ClientID\""));
}

TEST(SqlStatement, FlagsBracketsQuotesAndAmpersand) {
    const QString sql = QStringLiteral("SELECT [PlanDescription] & \" copy\" AS x FROM SitePlans WHERE "
                                       "(((SitePlans.ColourOutputCreated)=True));");
    EXPECT_EQ(sqlite(sql), QStringLiteral("SELECT \"PlanDescription\" || ' copy' AS x FROM SitePlans WHERE "
                                          "(((SitePlans.ColourOutputCreated)=-1))"));
    EXPECT_EQ(postgres(sql),
              QStringLiteral("SELECT \"PlanDescription\" || ' copy' AS x FROM \"SitePlans\" WHERE "
                             "(((\"SitePlans\".\"ColourOutputCreated\")=TRUE))"));
}

TEST(SqlStatement, ASecondStatementIsRefused) {
    for (const QString& sql :
         {QStringLiteral("SELECT * FROM Clients; DELETE FROM Clients"),
          QStringLiteral("SELECT * FROM Clients;;"),
          QStringLiteral("DELETE * FROM Schedule WHERE (((Schedule.ScheduleID)=1)); DROP TABLE Sites;")}) {
        const RuntimeError e = errorOf([&] { SqlStatement::parse(sql); });
        EXPECT_EQ(e.number(), -2147217900) << sql.toStdString();
        EXPECT_EQ(e.description(), QStringLiteral("Characters found after end of SQL statement."));
    }
    // A semicolon inside a text is text.
    EXPECT_EQ(sqlite(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.Address)='a; b'));")),
              QStringLiteral("SELECT * FROM Sites WHERE (((Sites.Address)='a; b'))"));
}

TEST(SqlStatement, CommentsOutsideQuotesAreRefused) {
    for (const QString& sql : {QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=1)) -- x"),
                               QStringLiteral("SELECT * FROM Clients /* x */")}) {
        const RuntimeError e = errorOf([&] { SqlStatement::parse(sql); });
        EXPECT_EQ(e.number(), -2147217900);
        EXPECT_TRUE(e.description().contains(QStringLiteral("outside quotes is not allowed")))
            << qPrintable(e.description());
    }
    EXPECT_EQ(sqlite(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.Address)='a--b /* c */'));")),
              QStringLiteral("SELECT * FROM Sites WHERE (((Sites.Address)='a--b /* c */'))"));
}

TEST(SqlStatement, AnApostropheInANameBreaksTheQuery) {
    const QString sql = QStringLiteral(
        "SELECT Sites.SiteID, Sites.Address, SitePlans.PlanDescription, SitePlans.ColourOutputCreated FROM "
        "Sites "
        "INNER JOIN SitePlans ON Sites.SiteID = SitePlans.SiteID WHERE (((Sites.Address)='O'Brien') AND "
        "((SitePlans.PlanDescription)='Ground Floor'));");
    const RuntimeError e = errorOf([&] { SqlStatement::parse(sql); });
    EXPECT_EQ(e.number(), -2147217900);
    EXPECT_TRUE(e.description().startsWith(QStringLiteral("Syntax error in string in query expression '")))
        << qPrintable(e.description());
}

TEST(SqlStatement, ShapesOfTheProgramsStatements) {
    const SqlStatement join = SqlStatement::parse(QStringLiteral(
        "SELECT Sites.SiteID, Sites.Address, SitePlans.PlanDescription, SitePlans.ColourOutputCreated FROM "
        "Sites "
        "INNER JOIN SitePlans ON Sites.SiteID = SitePlans.SiteID WHERE (((Sites.Address)='1 High St') AND "
        "((SitePlans.PlanDescription)='Ground Floor'));"));
    EXPECT_TRUE(join.isSimpleSelect());
    EXPECT_TRUE(join.namesRowsByEquality());
    ASSERT_EQ(join.tables().size(), 2u);
    EXPECT_EQ(join.tables()[0].name, QStringLiteral("Sites"));
    EXPECT_EQ(join.tables()[1].name, QStringLiteral("SitePlans"));
    ASSERT_EQ(join.items().size(), 4u);
    EXPECT_EQ(join.items()[3].table, QStringLiteral("SitePlans"));
    EXPECT_EQ(join.items()[3].column, QStringLiteral("ColourOutputCreated"));

    const SqlStatement all = SqlStatement::parse(QStringLiteral("SELECT * FROM ProjectItems;"));
    EXPECT_TRUE(all.isSimpleSelect());
    EXPECT_FALSE(all.hasWhere());
    EXPECT_EQ(all.items().front().kind, SelectItem::Kind::Star);

    EXPECT_FALSE(SqlStatement::parse(QStringLiteral("SELECT count(*) FROM Clients")).isSimpleSelect());
    EXPECT_FALSE(SqlStatement::parse(QStringLiteral("SELECT DISTINCT Town FROM Clients")).isSimpleSelect());
}

TEST(SqlStatement, AnOrSmuggledIntoAWriteIsRefused) {
    // The address typed as: x' OR 'a'='a
    const SqlStatement widened = SqlStatement::parse(QStringLiteral(
        "SELECT Sites.SiteID, SitePlans.ColourOutputCreated FROM Sites INNER JOIN SitePlans ON Sites.SiteID "
        "= "
        "SitePlans.SiteID WHERE (((Sites.Address)='x' OR 'a'='a') AND ((SitePlans.PlanDescription)='p'));"));
    EXPECT_TRUE(widened.isSimpleSelect());
    EXPECT_FALSE(widened.namesRowsByEquality());

    const SqlStatement del =
        SqlStatement::parse(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=5 OR 1=1));"));
    const RuntimeError e = errorOf([&] { del.requireRowsNamed(); });
    EXPECT_EQ(e.number(), -2147217900);
    EXPECT_TRUE(e.description().contains(QStringLiteral("(((Clients.ClientID)=5 OR 1=1))")))
        << qPrintable(e.description());

    // Comparing a value with a value names no rows either.
    EXPECT_FALSE(
        SqlStatement::parse(QStringLiteral("DELETE * FROM Clients WHERE ((1=1));")).namesRowsByEquality());
    EXPECT_TRUE(SqlStatement::parse(QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=-3));"))
                    .namesRowsByEquality());
}

TEST(SqlStatement, OnlyStatementsOfTheDialectAreRun) {
    for (const QString& sql :
         {QStringLiteral(""), QStringLiteral("   ;"), QStringLiteral("DROP TABLE Clients"),
          QStringLiteral("PRAGMA writable_schema=1")}) {
        const RuntimeError e = errorOf([&] { SqlStatement::parse(sql); });
        EXPECT_EQ(e.number(), -2147217900) << sql.toStdString();
        EXPECT_EQ(e.description(),
                  QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', "
                                 "'SELECT', or 'UPDATE'."));
    }
}
