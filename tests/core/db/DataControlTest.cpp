// The bound data control with its MoveComplete, the boxes bound by data
// field, and the grid model that follows the control's cursor.

#include "core/db/DataControl.h"
#include "Database.h"
#include "TestErrors.h"
#include "core/db/BoundField.h"
#include "core/db/DataGridModel.h"
#include "core/db/QuerySql.h"

#include <QRegularExpression>

using namespace tessaly;
using namespace tessaly::db;
using namespace tessaly::db::test;

namespace {

struct MoveRecord {
    int reason;
    int status;
    bool hadError;
    int position; // AbsolutePosition when the event ran
};

class DataControlTest : public DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        if (HasFatalFailure())
            return;
        client = addClient(connectionString(), QStringLiteral("Ann"));
        for (const char* address : {"1 High St", "2 Low St", "3 Mid St"})
            addSite(connectionString(), client, QStringLiteral("Site ") + QLatin1String(address).left(1),
                    QLatin1String(address));
        control.setConnectionString(controlConnectionString());
        control.setRecordSource(
            QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(client));
        control.MoveComplete = [this](int reason, const RuntimeError* error, int status, Recordset& rs) {
            moves.push_back({reason, status, error != nullptr, rs.AbsolutePosition()});
        };
    }

    DataControl control;
    std::vector<MoveRecord> moves;
    int client = 0;
};

} // namespace

TEST(DataControlSettings, StartAsTheProjectManagersControls) {
    DataControl c;
    EXPECT_EQ(c.CursorLocation(), 3);
    EXPECT_EQ(c.CursorType(), 2);
    EXPECT_EQ(c.LockType(), 3);
    EXPECT_EQ(c.CommandType(), 1);
    EXPECT_EQ(c.Mode(), 16);
    EXPECT_EQ(c.ConnectionTimeout(), 15);
    EXPECT_EQ(c.CommandTimeout(), 30);
    EXPECT_EQ(c.CacheSize(), 50);
    c.setCacheSize(10);
    c.setLockType(adLockReadOnly);
    EXPECT_EQ(c.CacheSize(), 10);
    EXPECT_EQ(c.LockType(), 1);
    EXPECT_EQ(c.Recordset().State(), adStateClosed);
}

TEST_P(DataControlTest, RefreshOpensTheSourceAndBringsTheFirstMoveComplete) {
    control.Refresh();
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].reason, adRsnMove);
    EXPECT_EQ(moves[0].status, adStatusOK);
    EXPECT_FALSE(moves[0].hadError);
    EXPECT_EQ(moves[0].position, 1);
    EXPECT_EQ(control.Recordset().RecordCount(), 3);
    EXPECT_EQ(control.Recordset().Fields(QStringLiteral("Address")).Value().toString(),
              QStringLiteral("1 High St"));
}

TEST_P(DataControlTest, EveryMoveRunsMoveComplete) {
    control.Refresh();
    Recordset& rs = control.Recordset();
    rs.MoveNext();
    rs.MoveLast();
    rs.MoveFirst();
    // "previous" on the first site: the cursor goes before the first row.
    rs.MovePrevious();
    ASSERT_EQ(moves.size(), 5u);
    EXPECT_EQ(moves[1].reason, adRsnMoveNext);
    EXPECT_EQ(moves[1].position, 2);
    EXPECT_EQ(moves[2].reason, adRsnMoveLast);
    EXPECT_EQ(moves[2].position, 3);
    EXPECT_EQ(moves[3].reason, adRsnMoveFirst);
    EXPECT_EQ(moves[4].reason, adRsnMovePrevious);
    EXPECT_EQ(moves[4].position, adPosBOF);
    EXPECT_TRUE(rs.BOF());
    // A new record source takes effect at the next Refresh.
    control.setRecordSource(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=999));"));
    control.Refresh();
    EXPECT_TRUE(rs.BOF());
    EXPECT_TRUE(rs.EOF_());
    EXPECT_EQ(moves.back().position, adPosBOF);
}

TEST_P(DataControlTest, AddingASiteThroughTheControl) {
    control.Refresh();
    Recordset& rs = control.Recordset();
    rs.AddNew();
    EXPECT_EQ(moves.back().reason, adRsnAddNew);
    EXPECT_FALSE(rs.BOF());
    EXPECT_FALSE(rs.EOF_());
    rs.Fields(QStringLiteral("ClientID")) = client;
    BoundField site(control, QStringLiteral("Site"));
    site.setText(QStringLiteral("Barn"));
    rs.Update();
    control.Refresh();
    EXPECT_EQ(rs.RecordCount(), 4);
    rs.MoveLast();
    EXPECT_EQ(rs.Fields(QStringLiteral("Site")).Value().toString(), QStringLiteral("Barn"));
    EXPECT_FALSE(rs.Fields(QStringLiteral("DateAdded")).isNull());
}

TEST_P(DataControlTest, BoundBoxesShowTheRowAndTheirEditsPutItIntoEdit) {
    BoundField address(control, QStringLiteral("Address"));
    BoundField added(control, QStringLiteral("DateAdded"));
    BoundField comments(control, QStringLiteral("Comments"));
    std::vector<QString> shown;
    address.onTextChanged = [&](const QString& text) { shown.push_back(text); };
    EXPECT_EQ(address.Text(), QString()); // no rows yet
    control.Refresh();
    Recordset& rs = control.Recordset();
    EXPECT_EQ(address.Text(), QStringLiteral("1 High St"));
    EXPECT_EQ(comments.Text(), QString()); // Null shows as empty
    EXPECT_TRUE(added.Text().contains(
        QRegularExpression(QStringLiteral("^\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d$"))))
        << qPrintable(added.Text());
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), QStringLiteral("1 High St"));

    address.setText(QStringLiteral("1 High St")); // unchanged: no edit
    EXPECT_EQ(rs.EditMode(), adEditNone);
    address.setText(QStringLiteral("1 High Street"));
    EXPECT_EQ(rs.EditMode(), adEditInProgress);
    rs.CancelUpdate();
    EXPECT_EQ(address.Text(), QStringLiteral("1 High St"));
    EXPECT_EQ(shown.back(), QStringLiteral("1 High St"));

    rs.MoveNext();
    EXPECT_EQ(shown.back(), QStringLiteral("2 Low St"));
    address.setText(QStringLiteral("2 Low Street"));
    rs.Update();
    EXPECT_EQ(rs.EditMode(), adEditNone);
    const QList<QVariantMap> rows = querySql(connectionString(), QStringLiteral("SELECT * FROM Sites;"));
    EXPECT_EQ(rows[0].value(QStringLiteral("Address")).toString(), QStringLiteral("1 High St"));
    EXPECT_EQ(rows[1].value(QStringLiteral("Address")).toString(), QStringLiteral("2 Low Street"));
}

TEST_P(DataControlTest, ABoxOfAReadOnlyControlRefusesEdits) {
    control.setLockType(adLockReadOnly);
    control.Refresh();
    BoundField address(control, QStringLiteral("Address"));
    EXPECT_EQ(errorOf([&] { address.setText(QStringLiteral("elsewhere")); }).number(), 3251);
}

TEST_P(DataControlTest, DeletingTheCurrentSiteThenRefreshing) {
    control.Refresh();
    Recordset& rs = control.Recordset();
    rs.MoveNext();
    rs.Delete(adAffectCurrent);
    control.Refresh();
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_EQ(rs.Fields(QStringLiteral("Address")).Value().toString(), QStringLiteral("1 High St"));
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(QStringLiteral("Address")).Value().toString(), QStringLiteral("3 Mid St"));
}

TEST_P(DataControlTest, TheCostGridShowsFollowsAndEditsInPlace) {
    const int site = querySql(connectionString(), QStringLiteral("SELECT * FROM Sites;"))[0]
                         .value(QStringLiteral("SiteID"))
                         .toInt();
    DataControl costs;
    costs.setConnectionString(controlConnectionString());
    costs.setRecordSource(
        QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site));
    DataGridModel grid(costs, {{QStringLiteral("SiteID"), QStringLiteral("SiteID")},
                               {QStringLiteral("Project Item"), QStringLiteral("ProjectItem")},
                               {QStringLiteral("Cost"), QStringLiteral("Cost"), GridColumn::Format::Currency},
                               {QStringLiteral("Actual Cost"), QStringLiteral("ActualCost"),
                                GridColumn::Format::Currency, true}});
    std::vector<int> rowsTold;
    std::vector<int> failures;
    QObject::connect(&grid, &DataGridModel::currentRowChanged, [&](int row) { rowsTold.push_back(row); });
    QObject::connect(&grid, &DataGridModel::writeFailed,
                     [&](int number, const QString&) { failures.push_back(number); });
    EXPECT_EQ(grid.rowCount(), 0);
    costs.Refresh();
    Recordset& rs = costs.Recordset();
    for (const auto& [item, cost] : {std::pair{"Roofing", "1250.5"}, std::pair{"Plastering", "300"}}) {
        rs.AddNew();
        rs.Fields(QStringLiteral("SiteID")) = site;
        rs.Fields(QStringLiteral("ProjectItem")) = QLatin1String(item);
        rs.Fields(QStringLiteral("Cost")) = QLatin1String(cost);
        rs.Update();
    }
    EXPECT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.columnCount(), 4);
    EXPECT_EQ(grid.headerData(3, Qt::Horizontal).toString(), QStringLiteral("Actual Cost"));
    EXPECT_EQ(grid.data(grid.index(0, 1)).toString(), QStringLiteral("Roofing"));
    EXPECT_EQ(grid.data(grid.index(0, 2)).toString(), QStringLiteral("£1,250.50"));
    EXPECT_EQ(grid.data(grid.index(1, 3)).toString(), QString());
    EXPECT_EQ(grid.currentRow(), 1);
    EXPECT_FALSE(grid.flags(grid.index(0, 2)) & Qt::ItemIsEditable);
    EXPECT_TRUE(grid.flags(grid.index(0, 3)) & Qt::ItemIsEditable);

    rs.MoveFirst();
    EXPECT_EQ(grid.currentRow(), 0);
    ASSERT_FALSE(rowsTold.empty());
    EXPECT_EQ(rowsTold.back(), 0);
    // An edit in place goes to its row and is written by Update.
    EXPECT_TRUE(grid.setData(grid.index(1, 3), QStringLiteral("299.99")));
    EXPECT_EQ(grid.currentRow(), 1);
    EXPECT_EQ(grid.data(grid.index(1, 3)).toString(), QStringLiteral("£299.99"));
    EXPECT_EQ(querySql(connectionString(), QStringLiteral("SELECT * FROM ProjectCosts;"))[1].value(
                  QStringLiteral("ActualCost")),
              QVariant(299.99));
    // A value the field cannot take is refused and the row keeps its value.
    EXPECT_FALSE(grid.setData(grid.index(0, 3), QStringLiteral("plenty")));
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0], 13);
    EXPECT_EQ(rs.EditMode(), adEditNone);
    EXPECT_EQ(grid.data(grid.index(0, 3)).toString(), QString());
    grid.setCurrentRow(0);
    EXPECT_EQ(rs.AbsolutePosition(), 1);
}

TESSALY_DB_ENGINES(DataControlTest);
