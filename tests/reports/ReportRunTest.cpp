// Report runs: sections laid onto pages in order, events, fields bound to the
// rows of the data control, summaries, page breaks, pictures in image
// controls, and the report as an object of the program and a document of
// the viewer.
#include "reports/ActiveReport.h"
#include "reports/Controls.h"
#include "reports/ReportDataControl.h"

#include "Database.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/RuntimeError.h"
#include "metafile/Picture.h"

#include <QBuffer>
#include <QImage>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::reports;

namespace {

// Every text on a page, in the order laid.
QStringList textsOf(const ReportPage& page) {
    QStringList texts;
    for (const PageItem& item : page.items())
        if (const auto* t = std::get_if<PageText>(&item))
            texts << t->text;
    return texts;
}

// Where a text lies on its page.
QRectF boxOf(const ReportPage& page, const QString& text) {
    for (const PageItem& item : page.items())
        if (const auto* t = std::get_if<PageText>(&item); t && t->text == text)
            return t->box;
    return {};
}

Label& addLabel(Section& section, const QString& name, const QString& caption, double left, double top) {
    auto& label = section.add(std::make_shared<Label>(name, caption));
    label.Left = left;
    label.Top = top;
    label.Width = 3000;
    label.Height = 250;
    return label;
}

Field& addField(Section& section, const QString& name, const QString& dataField, double left) {
    auto& field = section.add(std::make_shared<Field>(name));
    field.DataField = dataField;
    field.Left = left;
    field.Width = 2000;
    field.Height = 250;
    return field;
}

// Rectangles equal to within a twip: picture sizes pass through 0.01 mm.
::testing::AssertionResult near(const QRectF& actual, const QRectF& expected) {
    const double tolerance = 1;
    if (std::abs(actual.left() - expected.left()) <= tolerance &&
        std::abs(actual.top() - expected.top()) <= tolerance &&
        std::abs(actual.width() - expected.width()) <= tolerance &&
        std::abs(actual.height() - expected.height()) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << actual.left() << ", " << actual.top() << ", "
                                         << actual.width() << ", " << actual.height() << ")";
}

std::shared_ptr<const metafile::Picture> pngPicture(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return std::make_shared<const metafile::Picture>(metafile::Picture::fromData(buffer.data()));
}

} // namespace

TEST(ReportRun, ReportWithoutDataPrintsItsDetailOnceOnOnePage) {
    ActiveReport report(QStringLiteral("rptPlain"), nullptr);
    report.pageSettings().setMargins(720, 720, 1000, 1000);
    addLabel(report.addSection(SectionType::PageHeader, QStringLiteral("PageHeader"), 500),
             QStringLiteral("lblHead"), QStringLiteral("Heading"), 100, 50);
    addLabel(report.addSection(SectionType::Detail, QStringLiteral("Detail"), 800), QStringLiteral("lblBody"),
             QStringLiteral("Body"), 200, 100);
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 1);
    const ReportPage& page = report.Pages().page(0);
    EXPECT_EQ(page.size(), QSizeF(12240, 15840));
    EXPECT_EQ(page.printableArea(), QRectF(720, 1000, 12240 - 1440, 15840 - 2000));
    EXPECT_EQ(textsOf(page), (QStringList{QStringLiteral("Heading"), QStringLiteral("Body")}));
    // Controls lie at their place in their section; sections from the top margin down.
    EXPECT_EQ(boxOf(page, QStringLiteral("Heading")).topLeft(), QPointF(720 + 100, 1000 + 50));
    EXPECT_EQ(boxOf(page, QStringLiteral("Body")).topLeft(), QPointF(720 + 200, 1000 + 500 + 100));
}

TEST(ReportRun, EventsComeInOrderWithThePageNumber) {
    ActiveReport report(QStringLiteral("rptEvents"), nullptr);
    QStringList events;
    Section& header = report.addSection(SectionType::ReportHeader, QStringLiteral("ReportHeader"), 100);
    Section& detail = report.addSection(SectionType::Detail, QStringLiteral("Detail"), 100);
    Section& footer = report.addSection(SectionType::PageFooter, QStringLiteral("PageFooter"), 300);
    auto& lblPage = addLabel(footer, QStringLiteral("lblPage"), QString(), 0, 0);
    report.onReportStart = [&] { events << QStringLiteral("start %1").arg(report.PageNumber()); };
    header.onFormat = [&] { events << QStringLiteral("header %1").arg(report.PageNumber()); };
    detail.onFormat = [&] { events << QStringLiteral("detail"); };
    footer.onFormat = [&] {
        events << QStringLiteral("footer");
        lblPage.Caption = QStringLiteral("Page ") + QString::number(report.PageNumber());
    };
    report.onReportEnd = [&] { events << QStringLiteral("end"); };
    report.Run(false);
    EXPECT_EQ(events, (QStringList{"start 0", "header 1", "detail", "footer", "end"}));
    EXPECT_EQ(textsOf(report.Pages().page(0)), QStringList{QStringLiteral("Page 1")});
    // The page footer lies at the foot of the printable area.
    EXPECT_EQ(boxOf(report.Pages().page(0), QStringLiteral("Page 1")).top(), 15840 - 1440 - 300);
}

TEST(ReportRun, ASectionTallerThanThePageIsLaidOnOnePageAndCutAtTheMargins) {
    ActiveReport report(QStringLiteral("rptTall"), nullptr);
    report.pageSettings().setMargins(0, 0, 0, 0);
    Section& detail = report.addSection(SectionType::Detail, QStringLiteral("Detail"), 20000);
    addLabel(detail, QStringLiteral("lblLow"), QStringLiteral("Below the paper"), 0, 17000);
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 1);
    // Laid out where the layout says; painting cuts it off at the printable area.
    EXPECT_EQ(boxOf(report.Pages().page(0), QStringLiteral("Below the paper")).top(), 17000);
    EXPECT_EQ(report.Pages().page(0).printableArea(), QRectF(0, 0, 12240, 15840));
}

TEST(ReportRun, LandscapeSwapsThePaper) {
    ActiveReport report(QStringLiteral("rptWide"), nullptr);
    report.pageSettings().Orientation = orientation::Landscape;
    report.pageSettings().setMargins(360, 360, 0, 360);
    report.addSection(SectionType::Detail, QStringLiteral("Detail"), 100);
    report.Run(false);
    EXPECT_EQ(report.Pages().page(0).size(), QSizeF(15840, 12240));
    EXPECT_EQ(report.Pages().page(0).printableArea(), QRectF(360, 0, 15840 - 720, 12240 - 360));
}

TEST(ReportRun, RunningAgainMakesThePagesAnew) {
    ActiveReport report(QStringLiteral("rptAgain"), nullptr);
    int starts = 0;
    report.onReportStart = [&] { ++starts; };
    report.addSection(SectionType::Detail, QStringLiteral("Detail"), 100);
    report.Run(false);
    report.Run(true);
    EXPECT_EQ(starts, 2);
    EXPECT_EQ(report.Pages().count(), 1);
}

TEST(ImageControl, ZoomKeepsTheProportionsInTheMiddleOfTheBox) {
    ImageControl image(QStringLiteral("img"));
    image.Left = 100;
    image.Top = 200;
    image.Width = 4000;
    image.Height = 1000;
    image.SizeMode = size_mode::Zoom;
    image.PictureAlignment = picture_align::Center;
    image.setPicture(pngPicture(QSize(200, 100))); // twice as wide as high
    const QRectF printable(0, 0, 12240, 15840);
    EXPECT_TRUE(near(image.pictureBox(QPointF(0, 0), printable), QRectF(100 + 1000, 200, 2000, 1000)));
    image.PictureAlignment = picture_align::TopLeft;
    EXPECT_TRUE(near(image.pictureBox(QPointF(0, 0), printable), QRectF(100, 200, 2000, 1000)));
    image.PictureAlignment = picture_align::BottomRight;
    EXPECT_TRUE(near(image.pictureBox(QPointF(0, 0), printable), QRectF(100 + 2000, 200, 2000, 1000)));
    image.SizeMode = size_mode::Stretch;
    EXPECT_TRUE(near(image.pictureBox(QPointF(0, 0), printable), QRectF(100, 200, 4000, 1000)));
}

TEST(ImageControl, ZoomFitsThePartOfTheBoxWithinThePrintableArea) {
    ImageControl image(QStringLiteral("img"));
    image.Width = 4000;
    image.Height = 4000;
    image.SizeMode = size_mode::Zoom;
    image.PictureAlignment = picture_align::Center;
    image.setPicture(pngPicture(QSize(100, 100)));
    // Only 3000 of the box's 4000 twips of height lie within the printable area.
    const QRectF printable(0, 0, 10000, 3000);
    EXPECT_TRUE(near(image.pictureBox(QPointF(0, 0), printable), QRectF(500, 0, 3000, 3000)));
}

TEST(ImageControl, AnEmptyPictureLaysNothing) {
    ActiveReport report(QStringLiteral("rptEmpty"), nullptr);
    auto& image = report.addSection(SectionType::Detail, QStringLiteral("Detail"), 2000)
                      .add(std::make_shared<ImageControl>(QStringLiteral("img")));
    image.Width = 1000;
    image.Height = 1000;
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 1);
    EXPECT_TRUE(report.Pages().page(0).items().empty());
}

TEST(ReportObject, SectionsAndControlsAreReachedByName) {
    ActiveReport report(QStringLiteral("rptNames"), nullptr);
    Section& detail = report.addSection(SectionType::Detail, QStringLiteral("Detail"), 1234);
    addLabel(detail, QStringLiteral("lblOne"), QStringLiteral("One"), 10, 20);
    EXPECT_EQ(toObject(report.get(QStringLiteral("Detail")))->get(QStringLiteral("Height")).toDouble(), 1234);
    const AutoPtr label = toObject(report.get(QStringLiteral("lblone")));
    ASSERT_TRUE(label);
    EXPECT_EQ(label->get(QStringLiteral("Caption")).toString(), QStringLiteral("One"));
    label->set(QStringLiteral("Left"), 500);
    EXPECT_EQ(detail.find(QStringLiteral("lblOne"))->Left, 500);
    EXPECT_EQ(
        toObject(report.get(QStringLiteral("PageSettings")))->get(QStringLiteral("PaperWidth")).toDouble(),
        12240);
    try {
        report.set(QStringLiteral("PageNumber"), 3);
        ADD_FAILURE() << "a read-only property was written";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 383);
    }
    try {
        report.get(QStringLiteral("NoSuchThing"));
        ADD_FAILURE() << "an unknown member was read";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::NotSupported);
    }
}

TEST(ReportObject, ShowRunsTheReportAndOpensTheViewerThroughThePort) {
    ScriptedUiPort port;
    std::vector<QJsonObject> events;
    port.onEvent = [&](const QJsonObject& e) { events.push_back(e); };
    auto report = std::make_shared<ActiveReport>(QStringLiteral("rptShown"), &port);
    report->Caption = QStringLiteral("Project Cost Report");
    report->DocumentName = QStringLiteral("Tessaly - Project Cost Report");
    report->addSection(SectionType::Detail, QStringLiteral("Detail"), 100);
    QVariantList modal{1};
    report->call(QStringLiteral("Show"), modal);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0][QStringLiteral("event")].toString(), QStringLiteral("report"));
    EXPECT_EQ(events[0][QStringLiteral("caption")].toString(), QStringLiteral("Project Cost Report"));
    EXPECT_EQ(events[0][QStringLiteral("document")].toString(),
              QStringLiteral("Tessaly - Project Cost Report"));
    EXPECT_EQ(events[0][QStringLiteral("pages")].toInt(), 1);
    EXPECT_TRUE(events[0][QStringLiteral("modal")].toBool());
}

TEST(ReportObject, UnloadDropsThePagesAndTellsTheHolder) {
    ActiveReport report(QStringLiteral("rptGone"), nullptr);
    report.addSection(SectionType::Detail, QStringLiteral("Detail"), 100);
    QString told;
    report.onUnload = [&](ActiveReport& r) { told = r.name(); };
    report.Run(false);
    report.Unload();
    EXPECT_EQ(report.Pages().count(), 0);
    EXPECT_EQ(told, QStringLiteral("rptGone"));
}

// --- reports on the project database ---------------------------------------------

namespace {

using namespace tessaly::db;
using namespace tessaly::db::test;

void addCost(const QString& connectionString, int siteId, const QString& item, const QVariant& cost,
             const QVariant& actual) {
    Connection c;
    c.Open(connectionString);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM ProjectCosts;"), c, adOpenDynamic, adLockOptimistic, adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = siteId;
    rs.Fields(QStringLiteral("ProjectItem")) = item;
    rs.Fields(QStringLiteral("ProjectTimeLine")) = QStringLiteral("N/A");
    rs.Fields(QStringLiteral("Cost")) = cost;
    rs.Fields(QStringLiteral("ActualCost")) = actual;
    rs.Update();
    rs.Close();
}

class CostReport : public DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        if (HasFatalFailure())
            return;
        const int client = addClient(connectionString(), QStringLiteral("Ann"));
        site = addSite(connectionString(), client, QStringLiteral("Site A"), QStringLiteral("1 High St"));
        report.pageSettings().setMargins(1440, 1440, 1440, 1440);
        Section& header = report.addSection(SectionType::PageHeader, QStringLiteral("PageHeader"), 1000);
        addLabel(header, QStringLiteral("Label1"), QStringLiteral("Project Costs Report"), 0, 0);
        Section& detail = report.addSection(SectionType::Detail, QStringLiteral("Detail"), 300);
        addField(detail, QStringLiteral("Field1"), QStringLiteral("ProjectItem"), 0);
        addField(detail, QStringLiteral("Field3"), QStringLiteral("Cost"), 4000).OutputFormat = Money;
        Section& footer = report.addSection(SectionType::PageFooter, QStringLiteral("PageFooter"), 400);
        auto& lblPage = addLabel(footer, QStringLiteral("lblPage"), QString(), 0, 0);
        auto& pageTotal = addField(footer, QStringLiteral("fldPageTotal"), QStringLiteral("Cost"), 4000);
        pageTotal.OutputFormat = Money;
        pageTotal.SummaryType = summary_type::PageTotal;
        footer.onFormat = [this, &lblPage] {
            lblPage.Caption = QStringLiteral("Page ") + QString::number(report.PageNumber());
        };
        Section& end = report.addSection(SectionType::ReportFooter, QStringLiteral("ReportFooter"), 600);
        auto& total = addField(end, QStringLiteral("Field5"), QStringLiteral("Cost"), 4000);
        total.OutputFormat = Money;
        total.SummaryType = summary_type::GrandTotal;
        auto& actual = addField(end, QStringLiteral("Field6"), QStringLiteral("ActualCost"), 7000);
        actual.OutputFormat = Money;
        actual.SummaryType = summary_type::GrandTotal;
        auto& count = addField(end, QStringLiteral("fldCount"), QStringLiteral("Cost"), 9000);
        count.SummaryType = summary_type::GrandTotal;
        count.SummaryFunc = summary_func::Count;
        ReportDataControl& rs1 = report.addDataControl(QStringLiteral("RS1"));
        report.onReportStart = [this, &rs1] {
            rs1.ConnectionString = controlConnectionString();
            rs1.Source =
                QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(site);
            rs1.Run();
        };
    }

    const QString Money = QStringLiteral("#,##0.00");
    ActiveReport report{QStringLiteral("ProjectCostReport"), nullptr};
    int site = 0;
};

} // namespace

TEST_P(CostReport, FieldsShowTheRowsAndTheFooterTheirSums) {
    addCost(connectionString(), site, QStringLiteral("Bricks"), 1234.5, 1000);
    addCost(connectionString(), site, QStringLiteral("Roof"), 100, QVariant());
    addCost(connectionString(), site, QStringLiteral("Paint"), 0.25, 50);
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 1);
    EXPECT_EQ(textsOf(report.Pages().page(0)),
              (QStringList{"Project Costs Report", "Bricks", "1,234.50", "Roof", "100.00", "Paint", "0.25",
                           "1,334.75", "1,050.00", "3", "Page 1", "1,334.75"}));
}

TEST_P(CostReport, ASiteWithoutCostsPrintsNoDetailAndZeroTotals) {
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 1);
    EXPECT_EQ(textsOf(report.Pages().page(0)),
              (QStringList{"Project Costs Report", "0.00", "0.00", "0", "Page 1", "0.00"}));
}

TEST_P(CostReport, ManyRowsBreakIntoPagesWithTheirOwnFooters) {
    // The body of a page: 15840 less the margins, header and footer: 11560
    // twips, 38 rows of 300.
    for (int i = 1; i <= 100; ++i)
        addCost(connectionString(), site, QStringLiteral("Item %1").arg(i), 1, 2);
    report.Run(false);
    ASSERT_EQ(report.Pages().count(), 3);
    const QStringList first = textsOf(report.Pages().page(0));
    EXPECT_TRUE(first.contains(QStringLiteral("Item 38")));
    EXPECT_FALSE(first.contains(QStringLiteral("Item 39")));
    EXPECT_EQ(first.mid(first.size() - 2), (QStringList{"Page 1", "38.00"}));
    const QStringList last = textsOf(report.Pages().page(2));
    EXPECT_EQ(last.first(), QStringLiteral("Project Costs Report"));
    EXPECT_EQ(last.mid(last.size() - 5), (QStringList{"100.00", "200.00", "100", "Page 3", "24.00"}));
    EXPECT_EQ(boxOf(report.Pages().page(1), QStringLiteral("Item 39")).top(), 1440 + 1000);
}

TESSALY_DB_ENGINES(CostReport);
