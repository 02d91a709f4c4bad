// The report viewer window: a report shown through the desktop's UI port,
// paged, zoomed, printed to a PDF printer and exported, the files read back
// by poppler and libtiff. With TESSALY_VIEWER_SCREENSHOT set to a file name
// (scripts/screenshot-exports.sh runs it so under a virtual display) it saves
// a picture of the viewer showing the landscape export layout of a plan.
#include "UiTestSupport.h"

#include "ExportTools.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"
#include "output/ExportLayouts.h"
#include "reports/ActiveReport.h"
#include "reports/Controls.h"
#include "ui/QtUiPort.h"
#include "ui/reports/ReportPageView.h"
#include "ui/reports/ReportViewer.h"

#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPrinter>
#include <QScreen>
#include <QTemporaryDir>
#include <QToolButton>

namespace tessaly::ui {
namespace {

using namespace tessaly::reports;

// Three pages, a word on each, and a caption and document name as the cost report has them.
std::shared_ptr<ActiveReport> threePages(UiPort* port) {
    auto report = std::make_shared<ActiveReport>(QStringLiteral("rptThree"), port);
    report->Caption = QStringLiteral("Project Cost Report");
    report->DocumentName = QStringLiteral("Tessaly - Project Cost Report");
    const char* words[] = {"Alpha", "Beta", "Gamma"};
    const SectionType types[] = {SectionType::ReportHeader, SectionType::Detail, SectionType::ReportFooter};
    for (int i = 0; i < 3; ++i) {
        auto& label =
            report->addSection(types[i], QString::fromLatin1(words[i]), 9000)
                .add(std::make_shared<Label>(QStringLiteral("lbl%1").arg(i), QString::fromLatin1(words[i])));
        label.Width = 5000;
        label.Height = 600;
        label.FontSize = 24;
    }
    return report;
}

QToolButton* buttonWithTip(QWidget& viewer, const QString& tip) {
    for (QToolButton* b : viewer.findChildren<QToolButton*>())
        if (b->toolTip() == tip)
            return b;
    return nullptr;
}

class ReportViewerTest : public ::testing::Test {
protected:
    testing::TempHome home;
    QTemporaryDir out;
    QtUiPort port;
    RecordingWaiter waiter;
    ApplicationBase app{port, waiter, home.home()};

    void TearDown() override { port.closeAll(); }
    ReportViewer* shown() {
        const QList<QWidget*> viewers = port.reportViewers();
        return viewers.isEmpty() ? nullptr : qobject_cast<ReportViewer*>(viewers.first());
    }
};

} // namespace

TEST_F(ReportViewerTest, ShowingAReportModallyOpensTheViewer) {
    const auto report = threePages(&port);
    QVariantList modal{1};
    report->call(QStringLiteral("Show"), modal);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    EXPECT_TRUE(viewer->isVisible());
    EXPECT_EQ(viewer->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(viewer->windowTitle(), QStringLiteral("Project Cost Report"));
    EXPECT_EQ(viewer->report().pageCount(), 3);
    EXPECT_EQ(viewer->findChild<QLabel*>()->text(), QStringLiteral("Page 1 of 3"));
}

TEST_F(ReportViewerTest, PagesAreTurnedByItsButtons) {
    const auto report = threePages(&port);
    report->Show(false);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowModality(), Qt::NonModal);
    QToolButton* next = buttonWithTip(*viewer, QStringLiteral("Next page"));
    QToolButton* last = buttonWithTip(*viewer, QStringLiteral("Last page"));
    QToolButton* first = buttonWithTip(*viewer, QStringLiteral("First page"));
    ASSERT_TRUE(next && last && first);
    EXPECT_FALSE(first->isEnabled());
    next->click();
    EXPECT_EQ(viewer->pageText(), QStringLiteral("Page 2 of 3"));
    last->click();
    EXPECT_EQ(viewer->pageText(), QStringLiteral("Page 3 of 3"));
    EXPECT_FALSE(next->isEnabled());
    first->click();
    EXPECT_EQ(viewer->page(), 0);
}

TEST_F(ReportViewerTest, ZoomShowsThePaperAtItsSize) {
    const auto report = threePages(&port);
    report->Show(false);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    auto* page = viewer->findChild<ReportPageView*>();
    ASSERT_NE(page, nullptr);
    viewer->setZoom(100);
    // US Letter at the screen's resolution.
    EXPECT_EQ(page->paperPixels(),
              QSize(qRound(8.5 * page->logicalDpiX()), qRound(11.0 * page->logicalDpiX())));
    viewer->zoomIn();
    EXPECT_EQ(viewer->zoom(), 125);
    EXPECT_EQ(page->paperPixels().width(), qRound(8.5 * page->logicalDpiX() * 1.25));
    viewer->zoomOut();
    viewer->zoomOut();
    EXPECT_EQ(viewer->zoom(), 75);
    EXPECT_EQ(viewer->findChild<QComboBox*>()->currentText(), QStringLiteral("75%"));
    viewer->resize(700, 600);
    testing::processPending();
    viewer->fitPage();
    const auto* scroll = page->parentWidget();
    EXPECT_LE(page->height(), scroll->height());
    EXPECT_EQ(viewer->findChild<QComboBox*>()->currentText(), QStringLiteral("%1%").arg(viewer->zoom()));
    EXPECT_NE(viewer->zoom(), 75);
    EXPECT_EQ(viewer->findChild<QComboBox*>()->count(), 11);
}

TEST_F(ReportViewerTest, ThePageIsPaintedOnWhitePaper) {
    const auto report = threePages(&port);
    report->Show(false);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    viewer->setZoom(50);
    auto* page = viewer->findChild<ReportPageView*>();
    const QImage image = page->grab().toImage();
    // The paper is white, the desk around it grey, and the word is drawn.
    EXPECT_EQ(image.pixelColor(ReportPageView::Margin + 2, ReportPageView::Margin + 2), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(2, 2), QColor(128, 128, 128));
    const QImage paper =
        image.copy(QRect(QPoint(ReportPageView::Margin, ReportPageView::Margin), page->paperPixels()));
    EXPECT_FALSE(test::darkBounds(paper).isEmpty());
}

TEST_F(ReportViewerTest, PrintingSendsEveryPageToThePrinter) {
    const auto report = threePages(&port);
    report->Show(false);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const QString file = out.filePath(QStringLiteral("printed.pdf"));
    printer.setOutputFileName(file);
    viewer->printTo(printer);
    EXPECT_EQ(printer.docName(), QStringLiteral("Tessaly - Project Cost Report"));
    const auto info = test::pdfInfo(file);
    EXPECT_EQ(info.value(QStringLiteral("Pages")), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("Page size")), QStringLiteral("612 x 792 pts (letter)"));
    const QString text = test::pdfText(file);
    EXPECT_TRUE(text.contains(QStringLiteral("Alpha")) && text.contains(QStringLiteral("Gamma")));
}

TEST_F(ReportViewerTest, ExportsGoThroughTheEnginesFilters) {
    const auto report = threePages(&port);
    report->Show(false);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    EXPECT_TRUE(viewer->exportTo(out.filePath(QStringLiteral("viewer.pdf")), true));
    EXPECT_TRUE(viewer->exportTo(out.filePath(QStringLiteral("viewer.tiff")), false));
    EXPECT_EQ(test::pdfInfo(out.filePath(QStringLiteral("viewer.pdf"))).value(QStringLiteral("Pages")),
              QStringLiteral("3"));
    EXPECT_EQ(test::tiffPageCount(out.filePath(QStringLiteral("viewer.tiff"))), 3);
    // A folder that does not exist: the message says so, over the viewer.
    EXPECT_FALSE(viewer->exportTo(out.filePath(QStringLiteral("gone/viewer.pdf")), true));
    auto* box = viewer->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->text().contains(QStringLiteral("does not exist")));
    EXPECT_EQ(box->icon(), QMessageBox::Critical);
    box->close();
}

TEST_F(ReportViewerTest, TheLandscapeExportLayoutOfAPlan) {
    // A plan on the canvas, written as the scratch metafile the layout loads.
    const auto canvas = canvas::POLARDraw::create();
    canvas->addShapeMm(canvas::shape_type::Rectangle, QRectF(8, 8, 279, 194), {}, false);
    canvas->addShapeMm(canvas::shape_type::Rectangle, QRectF(25, 25, 150, 110), {}, false);
    canvas->addShapeMm(canvas::shape_type::Line, QRectF(100, 25, 0, 110), {}, false);
    canvas->addShapeMm(canvas::shape_type::TextBox, QRectF(40, 70, 50, 12), QStringLiteral("Kitchen"), false);
    canvas->addShapeMm(canvas::shape_type::TextBox, QRectF(115, 70, 50, 12), QStringLiteral("Lounge"), false);
    canvas->addShapeMm(canvas::shape_type::TextBox, QRectF(200, 170, 80, 12), QStringLiteral("Sample Plan"),
                       false);
    canvas->saveFile(home.home().dir() + QStringLiteral("/PrintTemp.emf"), canvas::save_format::Emf);
    const reports::ReportPtr layout = output::makeExportLayout(app, output::LandscapeLayout);
    layout->Caption = QStringLiteral("Tessaly Export Ouput");
    layout->Show(true);
    ReportViewer* viewer = shown();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->pageText(), QStringLiteral("Page 1 of 1"));
    const QByteArray shotPath = qgetenv("TESSALY_VIEWER_SCREENSHOT");
    if (!shotPath.isEmpty() && QGuiApplication::primaryScreen())
        viewer->setGeometry(QGuiApplication::primaryScreen()->availableGeometry().adjusted(40, 40, -40, -40));
    else
        viewer->resize(1000, 800);
    testing::processPending();
    viewer->fitPage();
    testing::processPending();
    auto* page = viewer->findChild<ReportPageView*>();
    const QImage image = page->grab().toImage();
    const QImage paper =
        image.copy(QRect(QPoint(ReportPageView::Margin, ReportPageView::Margin), page->paperPixels()));
    // The plan lies within the ImgEMF box of the landscape layout.
    const QRect ink = test::darkBounds(paper);
    const double k = paper.width() / 15840.0;
    EXPECT_GE(ink.left(), (360 + 510) * k - 2);
    EXPECT_GE(ink.top(), 567 * k - 2);
    EXPECT_LE(ink.bottom(), (567 + 10772) * k + 2);
    if (!shotPath.isEmpty()) {
        EXPECT_TRUE(QGuiApplication::primaryScreen()->grabWindow(0).save(QString::fromLocal8Bit(shotPath)));
    }
}

} // namespace tessaly::ui
