// The cost tab of frmClientSites and its report: the total of the lines as
// exact currency, the cursor left at EOF, the three messages, the raw cost
// text, the delete and its missing guard, and ProjectCostReport run over a
// connection of its own and exported to a PDF that poppler reads back.
#include "ExportTools.h"
#include "ProjectsFixture.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/forms/DataBinding.h"
#include "core/forms/TabStrip.h"
#include "core/runtime/Clock.h"
#include "projects/ProjectCostReport.h"
#include "projects/frmClientSites.h"
#include "reports/ActiveReport.h"
#include "reports/Controls.h"
#include "workspace/Application.h"

#include <QProcess>

namespace tessaly::projects::test {
namespace {

// The text of a PDF as pdftotext lays it out, line by line, blanks run together.
QString layoutText(const QString& pdf) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished();
    QStringList lines;
    for (const QString& line : QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n')))
        if (!line.simplified().isEmpty())
            lines << line.simplified();
    return lines.join(QLatin1Char('\n'));
}

class CostTab : public ProjectsTest {
protected:
    int client = 0;
    int site = 0;

    frmClientSites& ready() {
        client =
            addClient(QStringLiteral("Harbour Homes"), QStringLiteral("Quay"), QStringLiteral("PL1 2AB"));
        site = addSite(client, QStringLiteral("Barn Site"), QStringLiteral("Old Barn"));
        frmClientSites& m = openManager();
        choose(m.cboCilent, 0);
        return m;
    }
    void enter(frmClientSites& m) {
        app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::SiteTab); });
        app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::CostsTab); });
    }
    void addLine(frmClientSites& m, const QString& item, const QString& timeLine, const QString& cost) {
        type(m.cboProjectItem, item);
        type(m.cboTimeLine, timeLine);
        type(m.txtCost, cost);
        click(m.cmdAddProjectCost);
    }
    void addCostRow(int siteId, const QString& item, const QVariant& cost, const QVariant& actual = {}) {
        addRow(connectionString(), QStringLiteral("ProjectCosts"), QString(),
               {{QStringLiteral("SiteID"), siteId},
                {QStringLiteral("ProjectItem"), item},
                {QStringLiteral("ProjectTimeLine"), QStringLiteral("N/A")},
                {QStringLiteral("Cost"), cost},
                {QStringLiteral("ActualCost"), actual}});
    }
    db::Recordset& costs(frmClientSites& m) { return dataControlOf(m.RS_ProjectCosts).Recordset(); }
};

TEST_P(CostTab, ASiteWithoutLinesShowsAnEmptyTotalAndTheLists) {
    frmClientSites& m = ready();
    enter(m);
    EXPECT_EQ(m.txtTotal.text(), QString());
    EXPECT_EQ(m.cboTimeLine.text(), QStringLiteral("N/A"));
    EXPECT_EQ(m.cboTimeLine.listCount(), 1);
    // The install step's project items fill the item list.
    EXPECT_EQ(m.cboProjectItem.listCount(), rows(QStringLiteral("SELECT * FROM ProjectItems")).size());
}

TEST_P(CostTab, TheTotalOfManyLinesIsExactToThePenny) {
    frmClientSites& m = ready();
    // 0.10 a hundred times is 10.00 exactly in currency, not in binary fractions.
    for (int i = 0; i < 100; ++i)
        addCostRow(site, QStringLiteral("Nails"), QStringLiteral("0.1"));
    app->dispatch([&] { dataControlOf(m.RS_ProjectCosts).Refresh(); });
    enter(m);
    EXPECT_EQ(m.txtTotal.text(), QStringLiteral("£10.00"));
    EXPECT_TRUE(costs(m).EOF_());
}

TEST_P(CostTab, AnAddChecksItsInputsInOrderThenWritesTheRawTextAndSums) {
    frmClientSites& m = ready();
    enter(m);
    addLine(m, QString(), QString(), QString());
    addLine(m, QStringLiteral("Roof"), QString(), QString());
    addLine(m, QStringLiteral("Roof"), QStringLiteral("N/A"), QString());
    EXPECT_EQ(
        takeBoxes(),
        (QStringList{QStringLiteral("Please enter a description for the project item...|48|Tessaly"),
                     QStringLiteral("Please enter a description for the accosiated time Llne or N/A if not "
                                    "applicable...|48|Tessaly"),
                     QStringLiteral("Please enter a cost...|48|Tessaly")}));
    takeWaits();
    addLine(m, QStringLiteral("Roof"), QStringLiteral("Stage 2"), QStringLiteral("2500.125"));
    EXPECT_EQ(takeWaits(), std::vector<int>{500});
    EXPECT_EQ(m.txtTotal.text(), QStringLiteral("£2,500.13"));
    EXPECT_EQ(m.cboTimeLine.text(), QString());
    EXPECT_TRUE(costs(m).EOF_());
    const QList<QVariantMap> stored =
        rows(QStringLiteral("SELECT SiteID, ProjectItem, ProjectTimeLine, Cost FROM ProjectCosts"));
    ASSERT_EQ(stored.size(), 1);
    EXPECT_EQ(stored[0].value(QStringLiteral("SiteID")).toInt(), site);
    EXPECT_EQ(stored[0].value(QStringLiteral("ProjectTimeLine")).toString(), QStringLiteral("Stage 2"));
    EXPECT_DOUBLE_EQ(stored[0].value(QStringLiteral("Cost")).toDouble(), 2500.125);
}

TEST_P(CostTab, ACostThatIsNoNumberWritesNothingAndTheTabGoesOn) {
    frmClientSites& m = ready();
    enter(m);
    addLine(m, QStringLiteral("Roof"), QStringLiteral("N/A"), QStringLiteral("twelve"));
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral("Run-time error '13':\n\nType mismatch|16|Tessaly")});
    EXPECT_TRUE(rows(QStringLiteral("SELECT * FROM ProjectCosts")).isEmpty());
    addLine(m, QStringLiteral("Roof"), QStringLiteral("N/A"), QStringLiteral("12"));
    EXPECT_EQ(m.txtTotal.text(), QStringLiteral("£12.00"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM ProjectCosts")).size(), 1);
}

TEST_P(CostTab, DeletingTheLastLineKeepsTheOldTotalAndAnEmptyGridHasNoGuard) {
    frmClientSites& m = ready();
    enter(m);
    addLine(m, QStringLiteral("Roof"), QStringLiteral("N/A"), QStringLiteral("40"));
    app->dispatch([&] { gridOf(m.TDBGrid2)->selectRow(0); });
    port.queueMsgBox(mb::ResultYes);
    click(m.cmdDeleteItem);
    EXPECT_TRUE(rows(QStringLiteral("SELECT * FROM ProjectCosts")).isEmpty());
    EXPECT_EQ(m.txtTotal.text(), QStringLiteral("£40.00"));
    takeBoxes();
    port.queueMsgBox(mb::ResultYes);
    click(m.cmdDeleteItem);
    const QStringList shown = takeBoxes();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[0],
              QStringLiteral("Are You Sure You Wish To Delete The Selected Cost|292|Confirm Cost Deletion"));
    EXPECT_TRUE(shown[1].startsWith(QStringLiteral("Run-time error '3021':")));
}

TEST_P(CostTab, TheReportReadsTheGridsRowsOverItsOwnConnectionAndExportsToPdf) {
    frmClientSites& m = ready();
    const int otherSite = addSite(client, QStringLiteral("Other"), QStringLiteral("Other Road"));
    addCostRow(site, QStringLiteral("Roofing"), QStringLiteral("1250.5"), QStringLiteral("1300"));
    addCostRow(site, QStringLiteral("Groundworks"), QStringLiteral("99.99"));
    addCostRow(otherSite, QStringLiteral("Elsewhere"), QStringLiteral("7"));
    app->dispatch([&] { dataControlOf(m.RS_ProjectCosts).Refresh(); });
    clock::pin(QDateTime(QDate(2026, 11, 23), QTime(10, 0)));
    click(m.cmdPrintCosts);
    bool shown = false;
    for (const QJsonObject& e : events)
        if (e[QStringLiteral("event")].toString() == QLatin1String("report")) {
            shown = true;
            EXPECT_EQ(e[QStringLiteral("caption")].toString(), QStringLiteral("Project Cost Report"));
            EXPECT_EQ(e[QStringLiteral("document")].toString(),
                      QStringLiteral("Tessaly - Project Cost Report"));
            EXPECT_TRUE(e[QStringLiteral("modal")].toBool());
        }
    EXPECT_TRUE(shown);
    const QString pdf = homeDir.filePath(QStringLiteral("costs.pdf"));
    // The instance the print showed, reached by its name.
    auto* report = dynamic_cast<reports::ActiveReport*>(toObject(app->get(CostReportName)).get());
    ASSERT_NE(report, nullptr);
    report->exportPdf(pdf);
    clock::pin(QDateTime());
    EXPECT_TRUE(tessaly::test::qpdfCheck(pdf));
    const QString text = layoutText(pdf);
    EXPECT_TRUE(text.contains(QStringLiteral("Project Costs Report"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Client: Harbour Homes, Quay, PL1 2AB"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Site: Barn Site"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Roofing N/A 1,250.50 1,300.00"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Groundworks N/A 99.99"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("Elsewhere")));
    EXPECT_TRUE(text.contains(QStringLiteral("Estimated Cost Total: 1,350.49"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Actual Cost Total: 1,300.00"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Monday, 23 November 2026 Page 1"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("£")));
}

TESSALY_DB_ENGINES(CostTab);

} // namespace
} // namespace tessaly::projects::test
