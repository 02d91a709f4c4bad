// Values through the database: exact currency, date serials, flags, the
// widths of whole numbers and Nulls.

#include "ConnectedDbTest.h"
#include "TestErrors.h"
#include "core/db/Connection.h"
#include "core/db/QuerySql.h"
#include "core/db/Recordset.h"
#include "core/db/Values.h"

#include <QSqlDatabase>
#include <QSqlQuery>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

class Types : public ConnectedDbTest {
protected:
    void SetUp() override {
        ConnectedDbTest::SetUp();
        if (HasFatalFailure())
            return;
        site = addSite(connectionString(), addClient(connectionString(), QStringLiteral("C")),
                       QStringLiteral("S"), QStringLiteral("A"));
    }
    int site = 0;
};

} // namespace

TEST_P(Types, CurrencyTakesTheTextOfTheEntryBoxExactly) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site),
            connection, adOpenDynamic, adLockOptimistic, adCmdText);
    for (int i = 0; i < 10; ++i) {
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("Cost")) = i == 0 ? QStringLiteral("12.5") : QStringLiteral("0.1");
        rs.Update();
    }
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    const RuntimeError e = errorOf([&] { rs.Fields(QStringLiteral("Cost")) = QStringLiteral("a lot"); });
    EXPECT_EQ(e.number(), 13);
    EXPECT_TRUE(rs.Fields(QStringLiteral("Cost")).isNull());
    rs.Fields(QStringLiteral("Cost")) = QStringLiteral("1234.5678");
    rs.Update();
    rs.Close();

    Recordset read;
    read.Open(QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site),
              connection, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(read.Fields(QStringLiteral("Cost")).Value(), QVariant(12.5));
    EXPECT_TRUE(read.Fields(QStringLiteral("ActualCost")).isNull());
    qint64 total = 0;
    while (!read.EOF_()) {
        total += values::currencyFromVariant(read.Fields(QStringLiteral("Cost")).Value());
        read.MoveNext();
    }
    EXPECT_EQ(total, 125000 + 9 * 1000 + 12345678);
    read.MoveLast();
    EXPECT_EQ(read.Fields(QStringLiteral("Cost")).Value(), QVariant(1234.5678));
}

TEST_P(Types, DatesRoundTripAsSerials) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), connection, adOpenDynamic, adLockOptimistic,
            adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Fields(QStringLiteral("StartDate")) = 45000.5;          // 15/03/2023 12:00
    rs.Fields(QStringLiteral("EndDate")) = QDate(2023, 3, 20); // as a date picker gives it
    rs.Update();
    const int id = rs.Fields(QStringLiteral("ScheduleID")).Value().toInt();
    rs.Close();
    Recordset read;
    read.Open(QStringLiteral("SELECT * FROM Schedule WHERE (((Schedule.ScheduleID)=%1));").arg(id),
              connection, adOpenDynamic, adLockReadOnly, adCmdText);
    EXPECT_EQ(read.Fields(QStringLiteral("StartDate")).Value(), QVariant(45000.5));
    EXPECT_EQ(read.Fields(QStringLiteral("EndDate")).Value(), QVariant(45005.0));
    read.Close();
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Schedule;"));
    EXPECT_EQ(rows[0].value(QStringLiteral("StartDate")).toString(), QStringLiteral("2023-03-15T12:00:00"));
    if (isSqlite()) {
        // SQLite holds the date as ISO text.
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("types-raw"));
        db.setDatabaseName(databasePath());
        ASSERT_TRUE(db.open());
        {
            QSqlQuery q(db);
            ASSERT_TRUE(q.exec(QStringLiteral("SELECT StartDate, typeof(StartDate) FROM Schedule")));
            ASSERT_TRUE(q.next());
            EXPECT_EQ(q.value(0).toString(), QStringLiteral("2023-03-15 12:00:00"));
            EXPECT_EQ(q.value(1).toString(), QStringLiteral("text"));
        }
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("types-raw"));
    }
}

TEST_P(Types, ShortAndLongFieldsOverflowAtTheirWidth) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), connection, adOpenDynamic, adLockOptimistic,
            adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    for (const char* field : {"ProjectItem", "BarStyle", "BarTextAlign", "ImageIndex"}) {
        EXPECT_EQ(errorOf([&] { rs.Fields(QLatin1String(field)) = 32768; }).number(), 6) << field;
        EXPECT_EQ(errorOf([&] { rs.Fields(QLatin1String(field)) = QStringLiteral("-32769"); }).number(), 6)
            << field;
        rs.Fields(QLatin1String(field)) = -32768;
    }
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("StartTime")) = 2147483648.0; }).number(), 6);
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("StartTime")) = QStringLiteral("noon"); }).number(), 13);
    rs.Fields(QStringLiteral("StartTime")) = QStringLiteral("540");
    rs.Fields(QStringLiteral("BarColour")) = 16777215;
    rs.Update();
    EXPECT_EQ(rs.Fields(QStringLiteral("ProjectItem")).Value(), QVariant(-32768));
    EXPECT_EQ(rs.Fields(QStringLiteral("StartTime")).Value(), QVariant(540));
    EXPECT_EQ(rs.Fields(QStringLiteral("BarColour")).Value(), QVariant(16777215));
    // The key is the database's: the program cannot write it.
    EXPECT_EQ(errorOf([&] { rs.Fields(QStringLiteral("ScheduleID")) = 5; }).number(), -2147217887);
}

TEST_P(Types, NullsReadAsNullAndFailWhenReadAsText) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Schedule;"), connection, adOpenDynamic, adLockOptimistic,
            adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Fields(QStringLiteral("BarText")) = QString();
    rs.Update();
    EXPECT_TRUE(rs.Fields(QStringLiteral("Comments")).isNull());
    EXPECT_FALSE(rs.Fields(QStringLiteral("BarText")).isNull()); // an empty text is not Null
    EXPECT_EQ(textOf(rs.Fields(QStringLiteral("BarText"))), QString());
    const RuntimeError e = errorOf([&] { textOf(rs.Fields(QStringLiteral("Comments"))); });
    EXPECT_EQ(e.number(), 94);
    EXPECT_EQ(e.description(), QStringLiteral("Invalid use of Null"));
    // A Null can be written back.
    rs.Fields(QStringLiteral("BarText")) = QVariant();
    rs.Update();
    EXPECT_TRUE(rs.Fields(QStringLiteral("BarText")).isNull());
}

TEST_P(Types, FlagsReadBackAsMinusOneAndZero) {
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), connection, adOpenDynamic, adLockOptimistic,
            adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = site;
    rs.Update();
    EXPECT_EQ(rs.Fields(QStringLiteral("ColourOutputCreated")).Value(), QVariant(0));
    rs.Fields(QStringLiteral("ColourOutputCreated")) = -1;
    rs.Update();
    rs.Close();
    EXPECT_EQ(querySql(connectionString(), QStringLiteral("SELECT * FROM SitePlans;"))[0].value(
                  QStringLiteral("ColourOutputCreated")),
              QVariant(-1));
    // Jet's True in a condition finds it.
    EXPECT_EQ(
        countRows(connectionString(),
                  QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.ColourOutputCreated)=True));")),
        1);
}

TESSALY_DB_ENGINES(Types);
