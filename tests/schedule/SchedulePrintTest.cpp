// The print of the chart: the range and rows tiled over pages that each
// repeat the row titles and the time scale, under the print heading and over
// the footer, written to PDF and read back by poppler.
#include "schedule/SchedulePrint.h"
#include "ScheduleTestSupport.h"

#include <QPageLayout>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>

namespace tessaly::schedule::testing {
namespace {

QString run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return QStringLiteral("<%1 failed>").arg(program);
    return QString::fromUtf8(p.readAllStandardOutput());
}

int pdfPages(const QString& file) {
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(run(PDFINFO_PROGRAM, {file}));
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QString pageText(const QString& file, int page) {
    return run(PDFTOTEXT_PROGRAM, {QStringLiteral("-layout"), QStringLiteral("-f"), QString::number(page),
                                   QStringLiteral("-l"), QString::number(page), file, QStringLiteral("-")});
}

class SchedulePrintTest : public ScheduleTest {
protected:
    // Prints into an A4 PDF turned across with margins of 10 mm; returns the pages printed.
    int print(const QString& file) {
        QPdfWriter writer(file);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                         QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter));
        writer.setTitle(s.printTitle);
        return s.printTo(writer);
    }
    void rows(int count) {
        s.clearAll();
        for (int i = 1; i <= count; ++i)
            s.addRow(QStringLiteral("Element %1").arg(i));
    }
};

TEST_F(SchedulePrintTest, ARangeWiderThanThePaperIsTiledAcross) {
    const PrintPlan plan = planPrint(s, defaultPrintPage());
    // 887 pixels of chart at 28 a day hold 31 days: 60 days need two pages.
    EXPECT_DOUBLE_EQ(plan.daysPerPage, 31);
    EXPECT_EQ(plan.across, 2);
    EXPECT_EQ(plan.down(), 1);
    s.setLastDay(d0 + 30);
    EXPECT_EQ(planPrint(s, defaultPrintPage()).pages(), 1);
}

TEST_F(SchedulePrintTest, ManyRowsAreTiledDown) {
    rows(100);
    s.setLastDay(d0 + 399);
    const PrintPlan plan = planPrint(s, defaultPrintPage());
    EXPECT_EQ(plan.bands, (std::vector<int>{1, 31, 61, 91})); // 30 rows of 20 pixels a page
    EXPECT_EQ(plan.down(), 4);
    EXPECT_EQ(plan.across, 13);
    EXPECT_EQ(plan.pages(), 52);
}

TEST_F(SchedulePrintTest, RowsThatGrowForTheirLanesTakeMoreOfAPage) {
    rows(100);
    // Three overlapping bars on each of the first ten rows: each grows to three lanes.
    for (int row = 1; row <= 10; ++row)
        for (int k = 0; k < 3; ++k)
            s.addBar(row, DayTime{d0 + k, 0}, DayTime{d0 + 5, 0});
    EXPECT_DOUBLE_EQ(s.layout().rowHeight(1), 20 + 2 * 14);
    const PrintPlan plan = planPrint(s, defaultPrintPage());
    // 602 pixels hold ten rows of 48 and six of 20.
    EXPECT_EQ(plan.bands, (std::vector<int>{1, 17, 47, 77}));
}

TEST_F(SchedulePrintTest, AnEndlessRangeIsDrawnNarrowerRatherThanOnThousandsOfPages) {
    s.setLastDay(d0 + 2000000);
    const PrintPlan plan = planPrint(s, defaultPrintPage());
    EXPECT_EQ(plan.across, 100);
    EXPECT_LT(plan.dayWidth, 1);
    s.setLastDay(d0 - 10); // an empty range still prints its titles
    EXPECT_EQ(planPrint(s, defaultPrintPage()).pages(), 1);
}

TEST_F(SchedulePrintTest, EveryPageRepeatsTheTitlesAndTheDateHeading) {
    rows(40);
    s.setFirstDay(static_cast<int32_t>(dayOfDate(QDate(2026, 8, 24))));
    s.setLastDay(s.firstDay() + 59); // into October, over September
    s.addBar(1, DayTime{s.firstDay() + 2, 0}, DayTime{s.firstDay() + 40, 1440});
    s.editBar(1, 1).text = "Long booking";
    s.printTitle = QStringLiteral("Schedule Print");
    const QString file = dir.filePath(QStringLiteral("schedule.pdf"));
    const int pages = print(file);
    EXPECT_EQ(pages, 4); // two across, two down
    ASSERT_EQ(pdfPages(file), 4);
    for (int page = 1; page <= pages; ++page) {
        const QString text = pageText(file, page);
        SCOPED_TRACE(text.toStdString());
        EXPECT_TRUE(text.contains("Tessaly::Project Schedule"));
        EXPECT_TRUE(text.contains("Schedule Print"));
        EXPECT_TRUE(text.contains("Report"));
        EXPECT_TRUE(text.contains(QStringLiteral("Page %1 of 4").arg(page)));
        EXPECT_TRUE(text.contains("Mon, Aug 24/2026 - Thu, Oct 22/2026"));
        EXPECT_TRUE(text.contains("Project Element"));
        EXPECT_TRUE(text.contains("Sept 2026")); // the month heading of every page
        const bool firstBand = page <= 2;
        EXPECT_EQ(text.contains("Element 1 "), firstBand);
        EXPECT_EQ(text.contains("Element 40"), !firstBand);
    }
    EXPECT_TRUE(pageText(file, 1).contains("Long booking"));
    EXPECT_TRUE(pageText(file, 1).contains("Aug 2026"));
    EXPECT_TRUE(pageText(file, 2).contains("Oct 2026"));
}

TEST_F(SchedulePrintTest, WithoutAPrinterThePrintGoesToThePortsRecord) {
    s.printTitle = QStringLiteral("Schedule Print");
    s.addBar(1, DayTime{d0, 0}, DayTime{d0, 1440});
    QVariantList none;
    form->ctSchedule1.call(QStringLiteral("PrintChart"), none);
    ASSERT_FALSE(portEvents.empty());
    EXPECT_EQ(portEvents.back().value("event").toString(), "print");
    EXPECT_EQ(portEvents.back().value("what").toString(),
              "schedule \"Schedule Print\" of 3 rows and 1 bars on 2 pages");
}

} // namespace
} // namespace tessaly::schedule::testing
