// The planner tab of frmClientSites on the schedule engine: a bar dragged
// with the mouse reaches BarChanged and the dialog, and nothing is stored
// until OK; LoadBooking puts the bar on the chart once more until the
// rebuild; bookings keep their dates and times through the database of
// either engine; a rebuild of many bookings.
#include "ProjectsFixture.h"
#include "core/forms/TabStrip.h"
#include "core/runtime/Clock.h"
#include "projects/frmClientSites.h"
#include "schedule/ScheduleControl.h"
#include "workspace/Application.h"

namespace tessaly::projects::test {
namespace {

// 2026-11-23 as a date serial.
constexpr int Day = 46349;

class Planner : public ProjectsTest {
protected:
    int site = 0;

    void TearDown() override {
        clock::pin(QDateTime());
        ProjectsTest::TearDown();
    }
    frmClientSites& ready(int timeLines = 2) {
        clock::pin(QDateTime(QDate(2026, 11, 23), QTime(9, 0)));
        const int client = addClient(QStringLiteral("Harbour Homes"));
        site = addSite(client, QStringLiteral("Mill"), QStringLiteral("12 Mill Lane"));
        for (int i = 1; i <= timeLines; ++i)
            addRow(connectionString(), QStringLiteral("ProjectTimeLines"), QString(),
                   {{QStringLiteral("SiteID"), site},
                    {QStringLiteral("TimeLineDesc"), QStringLiteral("Line %1").arg(i)}});
        frmClientSites& m = openManager();
        choose(m.cboCilent, 0);
        app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::PlannerTab); });
        return m;
    }
    int addBooking(int row, const QDateTime& start, int startTime, const QDateTime& end, int endTime,
                   const QString& text) {
        return addRow(connectionString(), QStringLiteral("Schedule"), QStringLiteral("ScheduleID"),
                      {{QStringLiteral("SiteID"), site},
                       {QStringLiteral("ProjectItem"), row},
                       {QStringLiteral("StartDate"), start},
                       {QStringLiteral("StartTime"), startTime},
                       {QStringLiteral("EndDate"), end},
                       {QStringLiteral("EndTime"), endTime},
                       {QStringLiteral("BarStyle"), 1},
                       {QStringLiteral("BarText"), text},
                       {QStringLiteral("BarTextAlign"), 0},
                       {QStringLiteral("BarColour"), 0x00FF00},
                       {QStringLiteral("Comments"), QString()},
                       {QStringLiteral("ImageIndex"), 0}});
    }
    static QDateTime date(int y, int mo, int d, int h = 0, int mi = 0) {
        return QDateTime(QDate(y, mo, d), QTime(h, mi), Qt::UTC);
    }
};

TEST_P(Planner, ADraggedBarOpensTheDialogWithItsNewDaysAndStoresNothingUntilOk) {
    frmClientSites& m = ready();
    addBooking(1, date(2026, 11, 24), 480, date(2026, 11, 25), 1020, QStringLiteral("Dig"));
    click(m.cmdRefreshSchedule);
    schedule::ScheduleControl& chart = m.schedule();
    chart.setViewportSize(QSizeF(1200, 400));
    chart.setDayWidth(40);
    chart.setOriginDay(Day - 2);
    const QRectF box = chart.barBox(1, 1);
    ASSERT_FALSE(box.isEmpty());
    // The bar's middle, dragged two days to the right.
    const QPointF from = box.center();
    app->dispatch([&] { chart.mousePress(schedule::mouse::Left, 0, from.x(), from.y()); });
    app->dispatch([&] { chart.mouseMove(schedule::mouse::Left, 0, from.x() + 40, from.y()); });
    app->dispatch([&] { chart.mouseMove(schedule::mouse::Left, 0, from.x() + 80, from.y()); });
    app->dispatch([&] { chart.mouseRelease(schedule::mouse::Left, 0, from.x() + 80, from.y()); });
    EXPECT_TRUE(m.ScheduleItem.visible());
    EXPECT_EQ(m.txtBarText.text(), QStringLiteral("Dig"));
    EXPECT_EQ(m.DTP1.prop(QStringLiteral("Value")).toDateTime().date(), QDate(2026, 11, 26));
    EXPECT_EQ(m.DTP2.prop(QStringLiteral("Value")).toDateTime().date(), QDate(2026, 11, 27));
    EXPECT_EQ(m.STime.prop(QStringLiteral("Value")).toInt(), 480);
    // Nothing stored yet; Cancel puts the bar back where the table has it.
    EXPECT_EQ(rows(QStringLiteral("SELECT StartTime FROM Schedule")).size(), 1);
    click(m.cmdCancelSchedule);
    EXPECT_EQ(chart.bar(1, 1).start.date, Day + 1);
    // Dragged again and confirmed: the row moves.
    app->dispatch([&] { chart.changeBar(1, 1, {Day + 3, 480}, {Day + 4, 1020}); });
    click(m.cmdSaveSchedule);
    EXPECT_EQ(chart.bar(1, 1).start.date, Day + 3);
    const QList<QVariantMap> stored = rows(QStringLiteral("SELECT StartDate, EndDate FROM Schedule"));
    ASSERT_EQ(stored.size(), 1);
    EXPECT_TRUE(
        stored[0].value(QStringLiteral("StartDate")).toString().startsWith(QLatin1String("2026-11-26")));
}

TEST_P(Planner, LoadBookingPutsTheBarOnTheChartOnceMoreUntilTheRebuild) {
    frmClientSites& m = ready();
    const int id = addBooking(2, date(2026, 11, 24), 60, date(2026, 11, 24), 120, QStringLiteral("Once"));
    click(m.cmdRefreshSchedule);
    EXPECT_EQ(m.schedule().model().barCount(2), 1);
    app->dispatch([&] { m.LoadBooking(id); });
    EXPECT_EQ(m.schedule().model().barCount(2), 2);
    EXPECT_EQ(m.STime.prop(QStringLiteral("Value")).toInt(), 60);
    click(m.cmdRefreshSchedule);
    EXPECT_EQ(m.schedule().model().barCount(2), 1);
}

TEST_P(Planner, ABookingKeepsItsDatesAndTimesAndAStartPastNoonShowsTheNextDay) {
    frmClientSites& m = ready();
    addBooking(1, date(2026, 11, 27, 13, 0), 0, date(2026, 11, 28, 11, 0), 1440, QStringLiteral("Noon"));
    click(m.cmdRefreshSchedule);
    const schedule::Bar& bar = m.schedule().bar(1, 1);
    EXPECT_EQ(bar.start.date, Day + 5);
    EXPECT_EQ(bar.end.date, Day + 5);
    EXPECT_EQ(bar.end.minutes, 1440);
    // The tip: the general dates and MinutesToTimeText.
    app->dispatch([&] { m.schedule().pointBar(1, 1); });
    EXPECT_EQ(m.ctTips1.get(QStringLiteral("TipText")).toString(),
              QStringLiteral(
                  " Noon\r\nComments:  \n From - 28/11/2026  12:00 Mid \n   To - 28/11/2026  12:00 Mid "));
}

TEST_P(Planner, ARebuildTakesEveryTimeLineAndBooking) {
    frmClientSites& m = ready(30);
    for (int i = 0; i < 60; ++i)
        addBooking(i % 30 + 1, date(2026, 11, 1).addDays(i), i, date(2026, 11, 2).addDays(i), 600 + i,
                   QStringLiteral("B%1").arg(i));
    click(m.cmdRefreshSchedule);
    EXPECT_EQ(m.schedule().model().rowCount(), 30);
    EXPECT_EQ(m.schedule().model().totalBars(), 60);
    EXPECT_EQ(m.schedule().bar(30, 2).text, QStringLiteral("B59"));
    EXPECT_EQ(m.schedule().bar(30, 2).end.minutes, 659);
}

TESSALY_DB_ENGINES(Planner);

} // namespace
} // namespace tessaly::projects::test
