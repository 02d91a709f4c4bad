// The project manager and the client window as the desktop shows them: the
// tabs follow the states of the site area, locked boxes are read-only in the
// window colour and turn light green for editing, the plan grid is a table of
// the site's plans that moves its data control, sorts by a column and walks
// by the keyboard. With TESSALY_SHOT_DIR set each tab and panel is saved as a
// picture, "projects-*.png", for a look.
#include "ProjectsFixture.h"
#include "UiTestSupport.h"
#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/forms/DataBinding.h"
#include "core/forms/TabStrip.h"
#include "core/runtime/Clock.h"
#include "program/Program.h"
#include "projects/frmClientSites.h"
#include "reports/ActiveReport.h"
#include "schedule/ScheduleControl.h"
#include "ui/DataGridWidget.h"
#include "ui/FormView.h"
#include "ui/ScheduleWidget.h"
#include "ui/reports/ReportViewer.h"
#include "workspace/Application.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTest>

namespace tessaly::ui {
namespace {

using testing::TempHome;

constexpr QRgb LightGreen = qRgb(0xC0, 0xFF, 0xC0); // 0xC0FFC0 as the screen shows it

class ProjectsView : public ::testing::Test {
protected:
    TempHome home;
    bool installed = (program::installHome(home.home()), true);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, home.home());
    std::unique_ptr<FormView> view;
    std::unique_ptr<FormView> clientView;

    QString connection() const {
        return QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + home.home().databasePath() +
               QStringLiteral(";Persist Security Info=False;");
    }

    int addRow(const QString& table, const QString& keyField, const QVariantMap& fields) {
        return projects::test::addRow(connection(), table, keyField, fields);
    }

    void SetUp() override {
        const int client = addRow(QStringLiteral("Clients"), QStringLiteral("ClientID"),
                                  {{QStringLiteral("Client"), QStringLiteral("Harbour Homes Ltd")},
                                   {QStringLiteral("Address"), QStringLiteral("12 Quay Street")},
                                   {QStringLiteral("PostCode"), QStringLiteral("TR1 2AB")}});
        addRow(QStringLiteral("Clients"), QStringLiteral("ClientID"),
               {{QStringLiteral("Client"), QStringLiteral("Morgan And Daughters")},
                {QStringLiteral("Address"), QStringLiteral("3 Chapel Hill")},
                {QStringLiteral("PostCode"), QStringLiteral("TR18 4DW")}});
        const struct {
            const char* site;
            const char* address;
            const char* postCode;
        } sites[] = {{"Barn Conversion", "Old Barn, Trelowen Lane", "TR3 6QB"},
                     {"Kitchen Extension", "4 Fore Street", "TR1 1HD"},
                     {"Garden Studio", "9 Park Row", "TR2 5JN"}};
        int first = 0;
        for (const auto& s : sites) {
            const int id =
                addRow(QStringLiteral("Sites"), QStringLiteral("SiteID"),
                       {{QStringLiteral("ClientID"), client},
                        {QStringLiteral("Site"), QString::fromLatin1(s.site)},
                        {QStringLiteral("Address"), QString::fromLatin1(s.address)},
                        {QStringLiteral("Town"), QStringLiteral("Truro")},
                        {QStringLiteral("County"), QStringLiteral("Cornwall")},
                        {QStringLiteral("PostCode"), QString::fromLatin1(s.postCode)},
                        {QStringLiteral("TelNumber"), QStringLiteral("01872 270000")},
                        {QStringLiteral("Contact"), QStringLiteral("Jenna Pascoe")},
                        {QStringLiteral("Comments"), QStringLiteral("Access by the farm track.")}});
            if (!first)
                first = id;
        }
        for (const char* plan : {"Site Plan", "Ground Floor", "First Floor", "Elevations"})
            addRow(QStringLiteral("SitePlans"), QString(),
                   {{QStringLiteral("SiteID"), first},
                    {QStringLiteral("PlanDescription"), QString::fromLatin1(plan)}});

        ASSERT_TRUE(app->Main());
        Form& splash = app->form(QStringLiteral("frmSplash"));
        splash.raiseEvent(splash.control(QStringLiteral("Timer1")), QStringLiteral("Timer"));
        Form& main = app->form(QStringLiteral("frmMain"));
        app->dispatch([&] {
            main.raiseEvent(main.control(QStringLiteral("mnuFile_OpenProject")), QStringLiteral("Click"));
        });
        view = std::make_unique<FormView>(manager());
        view->resize(view->initialSize());
        view->show();
        QApplication::processEvents();
    }

    frmClientSites& manager() {
        return static_cast<frmClientSites&>(*app->loaded(QStringLiteral("frmClientSites")));
    }
    template <class W> W* widget(const Control& c) const { return qobject_cast<W*>(view->widgetFor(c)); }
    QTabBar* tabBar() const { return view->findChild<QTabBar*>(QStringLiteral("tabs")); }
    DataGridView* grid() { return dynamic_cast<DataGridView*>(view->widgetFor(manager().TDBGrid1)); }

    void chooseClient(int index) {
        app->dispatch([&] { manager().cboCilent.setListIndex(index); });
        QApplication::processEvents();
    }
    void click(Control& c) {
        app->dispatch([&] { c.form().raiseEvent(c, QStringLiteral("Click")); });
        QApplication::processEvents();
    }
    void showTab(int tab) {
        app->dispatch([&] { tabs::select(manager().Tabs1, tab); });
        QApplication::processEvents();
    }
    std::vector<bool> tabsEnabled() const {
        std::vector<bool> out;
        for (int i = 0; i < tabBar()->count(); ++i)
            out.push_back(tabBar()->isTabEnabled(i));
        return out;
    }
    void shoot(QWidget& window, const char* name) {
        QApplication::processEvents();
        testing::saveShot(window, "TESSALY_SHOT_DIR",
                          QStringLiteral("projects-%1.png").arg(QLatin1String(name)));
    }
};

TEST_F(ProjectsView, TheTabsFollowTheStatesOfTheSiteArea) {
    ASSERT_NE(tabBar(), nullptr);
    ASSERT_EQ(tabBar()->count(), 4);
    EXPECT_EQ(tabBar()->tabText(0), QStringLiteral("Site Details"));
    EXPECT_EQ(tabBar()->tabText(3), QStringLiteral("Project Costs and Estimations"));
    EXPECT_EQ(tabsEnabled(), (std::vector<bool>{false, false, false, false})); // no client
    shoot(*view, "no-client");
    chooseClient(1); // a client with no sites
    EXPECT_EQ(tabsEnabled(), (std::vector<bool>{true, false, false, false}));
    chooseClient(0);
    EXPECT_EQ(tabsEnabled(), (std::vector<bool>{true, true, true, true}));
    EXPECT_EQ(widget<QLabel>(manager().lblSiteDetailsInfo)->text(), QStringLiteral("Record: 1 of 3"));
    shoot(*view, "site-details");
    click(manager().cmdSiteDetailButton(frmClientSites::EditSite));
    EXPECT_EQ(tabsEnabled(), (std::vector<bool>{true, false, false, false}));
    EXPECT_FALSE(widget<QPushButton>(manager().cmdSiteDetailButton(frmClientSites::NextSite))->isEnabled());
    EXPECT_TRUE(widget<QPushButton>(manager().cmdSiteDetailButton(frmClientSites::SaveSite))->isEnabled());
}

TEST_F(ProjectsView, LockedBoxesAreReadOnlyInTheWindowColourAndGreenWhileEdited) {
    chooseClient(0);
    auto* address = widget<QLineEdit>(manager().txtSiteDetails(frmClientSites::AddressBox));
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(address->text(), QStringLiteral("Old Barn, Trelowen Lane"));
    EXPECT_TRUE(address->isReadOnly());
    const QColor windowColour = QApplication::palette(address).color(QPalette::Base);
    EXPECT_EQ(address->palette().color(QPalette::Base), windowColour);
    auto* comments =
        qobject_cast<QPlainTextEdit*>(view->widgetFor(manager().txtSiteDetails(frmClientSites::CommentsBox)));
    ASSERT_NE(comments, nullptr) << "the comments box has several lines";
    EXPECT_EQ(comments->toPlainText(), QStringLiteral("Access by the farm track."));
    EXPECT_FALSE(view->widgetFor(manager().txtSiteDetails(frmClientSites::DateAddedBox))->isEnabled());

    click(manager().cmdSiteDetailButton(frmClientSites::NewSite));
    EXPECT_FALSE(address->isReadOnly());
    EXPECT_EQ(address->palette().color(QPalette::Base).rgb(), LightGreen);
    EXPECT_EQ(address->text(), QString()); // the new row
    shoot(*view, "site-new");
    click(manager().cmdSiteDetailButton(frmClientSites::UndoSite));
    EXPECT_TRUE(address->isReadOnly());
    EXPECT_EQ(address->palette().color(QPalette::Base), windowColour);
    EXPECT_EQ(address->text(), QStringLiteral("Old Barn, Trelowen Lane"));
}

TEST_F(ProjectsView, TheSiteListShowsOverTheTabAndARightClickHidesIt) {
    chooseClient(0);
    click(manager().cmdSiteDetailButton(frmClientSites::SiteList));
    auto* list = widget<QListWidget>(manager().lstSiteList);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isVisible());
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("Barn Conversion, TR3 6QB"));
    shoot(*view, "site-list");
    QTest::mouseClick(list->viewport(), Qt::RightButton, {}, list->visualItemRect(list->item(1)).center());
    QApplication::processEvents();
    EXPECT_FALSE(manager().lstSiteList.visible());
    EXPECT_FALSE(list->isVisible());
}

TEST_F(ProjectsView, ThePlanGridShowsThePlansAndMovesItsDataControl) {
    chooseClient(0);
    showTab(frmClientSites::DrawingsTab);
    DataGridView* g = grid();
    ASSERT_NE(g, nullptr);
    QTableView* table = g->table();
    EXPECT_EQ(g->title()->text(), QStringLiteral("Project Drawings"));
    ASSERT_EQ(table->model()->rowCount(), 4);
    ASSERT_EQ(table->model()->columnCount(), 3);
    EXPECT_EQ(table->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Drawing"));
    EXPECT_EQ(table->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Date Created"));
    EXPECT_EQ(table->model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("SiteID"));
    EXPECT_EQ(table->model()->index(1, 0).data().toString(), QStringLiteral("Ground Floor"));
    db::Recordset& plans = manager().drawings().Recordset();
    EXPECT_EQ(plans.AbsolutePosition(), 1);
    EXPECT_EQ(table->currentIndex().row(), 0);
    shoot(*view, "project-drawings");

    // A click on the third row moves the data control there.
    table->setFocus();
    const QRect third = table->visualRect(table->model()->index(2, 0));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, third.center());
    QApplication::processEvents();
    EXPECT_EQ(plans.AbsolutePosition(), 3);
    EXPECT_EQ(plans.Fields(QStringLiteral("PlanDescription")).Value().toString(),
              QStringLiteral("First Floor"));
    // The keyboard walks the rows.
    QTest::keyClick(table, Qt::Key_Down);
    QApplication::processEvents();
    EXPECT_EQ(plans.AbsolutePosition(), 4);
    QTest::keyClick(table, Qt::Key_Home, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_EQ(plans.AbsolutePosition(), 1);

    // A header sorts the rows on show; the data control keeps its order.
    QTest::mouseClick(table->horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table->horizontalHeader()->sectionViewportPosition(0) + 10, 5));
    QApplication::processEvents();
    EXPECT_EQ(table->model()->index(0, 0).data().toString(), QStringLiteral("Elevations"));
    EXPECT_EQ(table->model()->index(3, 0).data().toString(), QStringLiteral("Site Plan"));
    EXPECT_EQ(plans.AbsolutePosition(), 1);
    EXPECT_EQ(table->model()->index(table->currentIndex().row(), 0).data().toString(),
              QStringLiteral("Site Plan"));
    const QRect top = table->visualRect(table->model()->index(0, 0));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, top.center());
    QApplication::processEvents();
    EXPECT_EQ(plans.Fields(QStringLiteral("PlanDescription")).Value().toString(),
              QStringLiteral("Elevations"));
    EXPECT_EQ(plans.AbsolutePosition(), 4);

    // A move of the data control shows as the current row.
    app->dispatch([&] { plans.MoveFirst(); });
    QApplication::processEvents();
    EXPECT_EQ(table->model()->index(table->currentIndex().row(), 0).data().toString(),
              QStringLiteral("Site Plan"));
}

TEST_F(ProjectsView, ThePlanPanelsShowOverTheGrid) {
    chooseClient(0);
    showTab(frmClientSites::DrawingsTab);
    click(manager().cmdNewDrawing);
    QWidget* panel = view->widgetFor(manager().NewPlanDialog);
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    auto* description = widget<QLineEdit>(manager().txtPlanDesc);
    EXPECT_EQ(description->palette().color(QPalette::Base).rgb(), LightGreen);
    shoot(*view, "new-plan");
    click(manager().cmdCancel);
    EXPECT_FALSE(panel->isVisible());

    port.queueOpen(home.home().templateDir() + QStringLiteral("/Default.pdr"));
    click(manager().cmdImport);
    EXPECT_TRUE(view->widgetFor(manager().ImportPlanDialog)->isVisible());
    EXPECT_EQ(widget<QLineEdit>(manager().txtImportFile)->text(),
              home.home().templateDir() + QStringLiteral("/Default.pdr"));
    shoot(*view, "import-plan");
}

TEST_F(ProjectsView, ThePlannerAndCostTabsAreThereAndEmpty) {
    chooseClient(0);
    showTab(frmClientSites::PlannerTab);
    EXPECT_EQ(tabBar()->currentIndex(), 2);
    EXPECT_FALSE(view->widgetFor(manager().TDBGrid1)->isVisible());
    shoot(*view, "project-planner");
    showTab(frmClientSites::CostsTab);
    EXPECT_EQ(tabBar()->currentIndex(), 3);
    shoot(*view, "project-costs");
}

// The cost lines of the first site, with the total after an entry into the tab.
TEST_F(ProjectsView, TheCostTabShowsTheLinesAndTheirTotal) {
    const struct {
        const char* item;
        const char* timeLine;
        double cost;
        double actual; // 0: none yet
    } lines[] = {{"Groundworks", "Footings", 4200.00, 4385.50},
                 {"Drainage", "Drainage", 1850.00, 1790.00},
                 {"Brickwork", "Walls", 9600.00, 0},
                 {"Roof Trusses", "Roof", 3125.75, 0},
                 {"Skip Hire", "N/A", 240.00, 240.00}};
    for (const auto& l : lines) {
        QVariantMap fields{{QStringLiteral("SiteID"), 1},
                           {QStringLiteral("ProjectItem"), QString::fromLatin1(l.item)},
                           {QStringLiteral("ProjectTimeLine"), QString::fromLatin1(l.timeLine)},
                           {QStringLiteral("Cost"), l.cost}};
        if (l.actual > 0)
            fields.insert(QStringLiteral("ActualCost"), l.actual);
        addRow(QStringLiteral("ProjectCosts"), QString(), fields);
    }
    chooseClient(0);
    showTab(frmClientSites::CostsTab);
    auto* costs = dynamic_cast<DataGridView*>(view->widgetFor(manager().TDBGrid2));
    ASSERT_NE(costs, nullptr);
    QTableView* table = costs->findChild<QTableView*>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->model()->rowCount(), 5);
    EXPECT_EQ(table->model()->index(0, 3).data().toString(), QStringLiteral("£4,200.00"));
    EXPECT_EQ(table->model()->index(0, 4).data().toString(), QStringLiteral("£4,385.50"));
    auto* total = widget<QLineEdit>(manager().txtTotal);
    ASSERT_NE(total, nullptr);
    EXPECT_EQ(total->text(), QStringLiteral("£19,015.75"));
    shoot(*view, "costs-lines");

    // The report of the same lines in the report viewer.
    click(manager().cmdPrintCosts);
    auto report = std::dynamic_pointer_cast<reports::ActiveReport>(
        toObject(app->get(QStringLiteral("ProjectCostReport"))));
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->pageCount(), 1);
    ReportViewer viewer(report);
    viewer.resize(1000, 860);
    viewer.show();
    QApplication::processEvents();
    EXPECT_EQ(viewer.windowTitle(), QStringLiteral("Project Cost Report"));
    shoot(viewer, "cost-report");
}

// Twenty bookings on five time lines, the booking panel of one and the tip of another.
TEST_F(ProjectsView, ThePlannerShowsTheBookingsTheBookingPanelAndATip) {
    clock::pin(QDateTime(QDate(2026, 11, 2), QTime(9, 0)));
    for (const char* line : {"Site clearance", "Footings", "Drainage", "Brickwork", "Roof"})
        addRow(QStringLiteral("ProjectTimeLines"), QString(),
               {{QStringLiteral("SiteID"), 1}, {QStringLiteral("TimeLineDesc"), QString::fromLatin1(line)}});
    const struct {
        int row, from, to, startMinutes, endMinutes;
        const char* text;
        unsigned colour; // red in the low byte
    } bookings[] = {
        {1, 0, 1, 480, 1020, "Survey", 0xFAD2AA},
        {1, 2, 4, 0, 1440, "Clear site", 0x8CD2FA},
        {1, 3, 3, 0, 1440, "Skip hire", 0xE6E6E6},
        {1, 5, 5, 720, 720, "Site ready", 0x46963C},
        {2, 6, 9, 480, 1020, "Dig footings", 0x6EA0C8},
        {2, 8, 9, 0, 1440, "Inspection", 0x7878FA},
        {2, 10, 11, 420, 960, "Pour concrete", 0xAAA0A0},
        {2, 12, 13, 0, 1440, "Cure", 0xE1DCDC},
        {3, 9, 10, 480, 1020, "Drain runs", 0xDCB478},
        {3, 11, 12, 0, 1440, "Soakaway", 0xC88C5A},
        {3, 13, 13, 600, 600, "Drain test", 0xAA5A1E},
        {3, 14, 15, 480, 1020, "Backfill", 0x6496BE},
        {4, 14, 20, 0, 1440, "Ground floor walls", 0x3C50BE},
        {4, 17, 19, 0, 1440, "Scaffold", 0x3CC8F0},
        {4, 21, 26, 0, 1440, "First floor walls", 0x3246AA},
        {4, 24, 25, 480, 1020, "Lintels", 0x827878},
        {5, 27, 30, 0, 1440, "Trusses", 0x466E96},
        {5, 29, 33, 0, 1440, "Felt and batten", 0x5A5050},
        {5, 34, 38, 0, 1440, "Tiling", 0x283CB4},
        {5, 39, 39, 960, 960, "Roof done", 0x46963C},
    };
    const QDateTime first(QDate(2026, 11, 2), QTime(0, 0), Qt::UTC);
    for (const auto& b : bookings)
        addRow(QStringLiteral("Schedule"), QStringLiteral("ScheduleID"),
               {{QStringLiteral("SiteID"), 1},
                {QStringLiteral("ProjectItem"), b.row},
                {QStringLiteral("StartDate"), first.addDays(b.from)},
                {QStringLiteral("StartTime"), b.startMinutes},
                {QStringLiteral("EndDate"), first.addDays(b.to)},
                {QStringLiteral("EndTime"), b.endMinutes},
                {QStringLiteral("BarStyle"), 1},
                {QStringLiteral("BarText"), QString::fromLatin1(b.text)},
                {QStringLiteral("BarTextAlign"), 0},
                {QStringLiteral("BarColour"), b.colour},
                {QStringLiteral("Comments"), QStringLiteral("Booked with the site manager")},
                {QStringLiteral("ImageIndex"), 0}});
    chooseClient(0);
    showTab(frmClientSites::PlannerTab);
    clock::pin(QDateTime());
    schedule::ScheduleControl& chart = manager().schedule();
    EXPECT_EQ(chart.model().rowCount(), 5);
    EXPECT_EQ(chart.model().totalBars(), 20);
    auto* chartView = qobject_cast<ScheduleWidget*>(view->widgetFor(manager().ctSchedule1));
    ASSERT_NE(chartView, nullptr);
    // All forty days of the job in sight, from the day before the first booking.
    chart.setDayWidth(13);
    chart.setOriginDay(chart.bar(1, 1).start.date - 1);
    QApplication::processEvents();
    // The pointer on "Trusses" brings up its tip, below the rows.
    chart.selectBar(1, 2);
    const QRectF trusses = chart.barBox(5, 1);
    const QPointF p = trusses.center();
    QWidget* port = chartView->viewport();
    QMouseEvent move(QEvent::MouseMove, p, port->mapToGlobal(p), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(port, &move);
    QApplication::processEvents();
    ASSERT_TRUE(chart.shownTip().has_value());
    EXPECT_TRUE(chart.shownTip()->text.startsWith(
        QStringLiteral(" Trusses\r\nComments: Booked with the site manager")));
    EXPECT_EQ(manager().ctTips1.get(QStringLiteral("TipText")).toString(), chart.shownTip()->text);
    shoot(*view, "planner-bookings");
    // A double click opens the booking in the panel, over the live chart.
    app->dispatch([&] { chart.activateBar(2, 1); });
    QApplication::processEvents();
    EXPECT_TRUE(manager().ScheduleItem.visible());
    EXPECT_EQ(manager().txtBarText.text(), QStringLiteral("Dig footings"));
    EXPECT_EQ(manager().STime.value(), 480);
    shoot(*view, "planner-booking-panel");
    // Cancel rebuilds the chart; a new time line's panel.
    click(manager().cmdCancelSchedule);
    EXPECT_FALSE(manager().ScheduleItem.visible());
    EXPECT_EQ(chart.model().totalBars(), 20);
    click(manager().cmdNewTimeLineElement);
    auto* description = widget<QLineEdit>(manager().txtTimeLineDesc);
    ASSERT_NE(description, nullptr);
    EXPECT_TRUE(description->isVisible());
    shoot(*view, "planner-time-line");
}

TEST_F(ProjectsView, TheClientWindowShowsTheChosenClient) {
    chooseClient(0);
    click(manager().cmdViewClient);
    Form* client = app->loaded(QStringLiteral("frmNew"));
    ASSERT_NE(client, nullptr);
    clientView = std::make_unique<FormView>(*client);
    clientView->resize(clientView->initialSize());
    clientView->show();
    QApplication::processEvents();
    auto* name =
        qobject_cast<QLineEdit*>(clientView->widgetFor(client->control(QStringLiteral("txtClient"), 0)));
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->text(), QStringLiteral("Harbour Homes Ltd"));
    EXPECT_FALSE(clientView->widgetFor(client->control(QStringLiteral("txtClient"), 9))->isVisible());
    EXPECT_NE(qobject_cast<QPlainTextEdit*>(
                  clientView->widgetFor(client->control(QStringLiteral("txtClient"), 10))),
              nullptr);
    shoot(*clientView, "client");
}

} // namespace
} // namespace tessaly::ui
