// The PDF and TIFF filters, read back by independent tools: pdfinfo, qpdf,
// pdftotext and pdfimages for the PDF, tiffinfo and ImageMagick for the TIFF.
#include "reports/ActiveReport.h"
#include "reports/Controls.h"
#include "reports/PdfExportFilter.h"
#include "reports/TiffExportFilter.h"

#include "ExportTools.h"
#include "TestErrors.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::reports;
using namespace tessaly::test;
using tessaly::db::test::errorOf;

namespace {

// Pure red as the report's colours store it.
constexpr unsigned Red = 0x0000FF;
// A mid grey.
constexpr unsigned Grey = 0x808080;

void label(Section& section, const QString& text, unsigned colour = 0) {
    auto& l = section.add(std::make_shared<Label>(QStringLiteral("lbl") + text, text));
    l.Left = 500;
    l.Top = 500;
    l.Width = 6000;
    l.Height = 600;
    l.FontSize = 24;
    l.ForeColor = colour;
}

// Three pages: a report header, a detail and a report footer each too tall to share a page.
std::shared_ptr<ActiveReport> threePages(int orientation = orientation::Portrait) {
    auto report = std::make_shared<ActiveReport>(QStringLiteral("rptThree"), nullptr);
    report->pageSettings().Orientation = orientation;
    report->pageSettings().setMargins(720, 720, 720, 720);
    label(report->addSection(SectionType::ReportHeader, QStringLiteral("ReportHeader"), 9000),
          QStringLiteral("Alpha"));
    label(report->addSection(SectionType::Detail, QStringLiteral("Detail"), 9000), QStringLiteral("Beta"));
    label(report->addSection(SectionType::ReportFooter, QStringLiteral("ReportFooter"), 9000),
          QStringLiteral("Gamma"));
    report->Run(false);
    return report;
}

std::shared_ptr<ActiveReport> onePage(unsigned colour) {
    auto report = std::make_shared<ActiveReport>(QStringLiteral("rptOne"), nullptr);
    label(report->addSection(SectionType::Detail, QStringLiteral("Detail"), 2000), QStringLiteral("Colour"),
          colour);
    report->Run(false);
    return report;
}

class ExportFilters : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const QString& name) const { return dir.filePath(name); }

    QString pdf(const ActiveReport& report, const QString& name) const {
        PdfExportFilter filter;
        filter.FileName = path(name);
        filter.Title = QStringLiteral("Three Pages");
        filter.Export(report.Pages());
        return filter.FileName;
    }
    QString tiff(const ActiveReport& report, const QString& name) const {
        TiffExportFilter filter;
        filter.FileName = path(name);
        filter.Export(report.Pages());
        return filter.FileName;
    }
};

} // namespace

TEST_F(ExportFilters, PdfHasEveryPageAtLetterSizeWithRealText) {
    const auto report = threePages();
    ASSERT_EQ(report->Pages().count(), 3);
    const QString file = pdf(*report, QStringLiteral("three.pdf"));
    const auto info = pdfInfo(file);
    EXPECT_EQ(info.value(QStringLiteral("Pages")), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("Page size")), QStringLiteral("612 x 792 pts (letter)"));
    EXPECT_EQ(info.value(QStringLiteral("Title")), QStringLiteral("Three Pages"));
    EXPECT_EQ(info.value(QStringLiteral("Creator")), QStringLiteral("Tessaly"));
    QString check;
    EXPECT_TRUE(qpdfCheck(file, &check)) << check.toStdString();
    const QString text = pdfText(file);
    EXPECT_TRUE(text.contains(QStringLiteral("Alpha")));
    EXPECT_TRUE(text.contains(QStringLiteral("Beta")));
    EXPECT_TRUE(text.contains(QStringLiteral("Gamma")));
    EXPECT_EQ(pdfImageCount(file), 0);
}

TEST_F(ExportFilters, LandscapePagesLieOnTheirSide) {
    const QString file = pdf(*threePages(orientation::Landscape), QStringLiteral("wide.pdf"));
    EXPECT_EQ(pdfInfo(file).value(QStringLiteral("Page size")), QStringLiteral("792 x 612 pts (letter)"));
    EXPECT_EQ(pdfInfo(file).value(QStringLiteral("Page rot")), QStringLiteral("0"));
}

TEST_F(ExportFilters, PdfTextLiesWhereTheLayoutPutIt) {
    const QString file = pdf(*onePage(0), QStringLiteral("where.pdf"));
    // 72 dpi: a twip is a twentieth of a pixel. The label's box starts 500
    // twips into the section, which starts at the margins of 1440 twips.
    const QRect ink = darkBounds(pdfPage(file, 72));
    ASSERT_FALSE(ink.isEmpty());
    EXPECT_NEAR(ink.left(), (1440 + 500) / 20, 2);
    EXPECT_NEAR(ink.top(), (1440 + 500) / 20, 6);
}

TEST_F(ExportFilters, TiffHasAPageForEachPageAt300DpiInGroup4) {
    const QString file = tiff(*threePages(), QStringLiteral("three.tiff"));
    EXPECT_EQ(tiffPageCount(file), 3);
    const QString info = tiffInfo(file);
    EXPECT_EQ(info.count(QStringLiteral("Resolution: 300, 300 pixels/inch")), 3);
    EXPECT_EQ(info.count(QStringLiteral("Compression Scheme: CCITT Group 4")), 3);
    EXPECT_EQ(info.count(QStringLiteral("Image Width: 2550 Image Length: 3300")), 3);
    EXPECT_TRUE(info.contains(QStringLiteral("Page Number: 0-3")));
    EXPECT_TRUE(info.contains(QStringLiteral("Page Number: 2-3")));
    EXPECT_EQ(identifySize(file + QStringLiteral("[2]")), QStringLiteral("2550x3300"));
    const QImage third = tiffPage(file, 2);
    ASSERT_FALSE(third.isNull());
    EXPECT_FALSE(darkBounds(third).isEmpty());
}

TEST_F(ExportFilters, ColourPagesAreDeflatedColourAndGreyPagesGrey) {
    const QString red = tiff(*onePage(Red), QStringLiteral("red.tiff"));
    const QString redInfo = tiffInfo(red);
    EXPECT_TRUE(redInfo.contains(QStringLiteral("Compression Scheme: AdobeDeflate")))
        << redInfo.toStdString();
    EXPECT_TRUE(redInfo.contains(QStringLiteral("Photometric Interpretation: RGB color")));
    EXPECT_TRUE(redInfo.contains(QStringLiteral("Samples/Pixel: 3")));
    const QString grey = tiff(*onePage(Grey), QStringLiteral("grey.tiff"));
    const QString greyInfo = tiffInfo(grey);
    EXPECT_TRUE(greyInfo.contains(QStringLiteral("Compression Scheme: AdobeDeflate")));
    EXPECT_TRUE(greyInfo.contains(QStringLiteral("Photometric Interpretation: min-is-black")));
    EXPECT_TRUE(greyInfo.contains(QStringLiteral("Bits/Sample: 8")));
}

TEST_F(ExportFilters, LineWorkIsSharpAtPrinterResolution) {
    auto report = std::make_shared<ActiveReport>(QStringLiteral("rptLine"), nullptr);
    auto& line = report->addSection(SectionType::Detail, QStringLiteral("Detail"), 3000)
                     .add(std::make_shared<LineControl>(QStringLiteral("Line1")));
    line.X1 = 0;
    line.Y1 = 1000;
    line.X2 = 5000;
    line.Y2 = 1000;
    report->Run(false);
    const QImage page = tiffPage(tiff(*report, QStringLiteral("line.tiff")));
    ASSERT_FALSE(page.isNull());
    // The thinnest line is one dot of the 300-dpi page: black, never a grey smear.
    const QRect ink = darkBounds(page);
    EXPECT_EQ(ink.height(), 1);
    EXPECT_NEAR(ink.width(), 5000 * 300 / 1440, 2);
    EXPECT_EQ(qGray(page.pixel(ink.center())), 0);
    EXPECT_EQ(qGray(page.pixel(ink.center().x(), ink.top() - 1)), 255);
}

TEST_F(ExportFilters, NoPagesIsAnError) {
    ActiveReport report(QStringLiteral("rptNone"), nullptr);
    EXPECT_EQ(errorOf([&] { pdf(report, QStringLiteral("none.pdf")); }).number(), err::InvalidProcedureCall);
    EXPECT_EQ(errorOf([&] { tiff(report, QStringLiteral("none.tiff")); }).number(),
              err::InvalidProcedureCall);
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("none.pdf"))));
}

TEST_F(ExportFilters, AnUnwritableTargetIs7001ForBoth) {
    const auto report = threePages();
    EXPECT_EQ(errorOf([&] { pdf(*report, QStringLiteral("gone/x.pdf")); }).number(), err::PdfInUse);
    EXPECT_EQ(errorOf([&] { tiff(*report, QStringLiteral("gone/x.tiff")); }).number(), err::PdfInUse);
}
