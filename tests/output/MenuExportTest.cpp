// The File menu's Export sub-menu on the main window: the image exports
// straight from the canvas, the PDF and TIFF through the report layout of the
// page's orientation, each file read back by independent tools.
#include "OutputFixture.h"

#include "ExportTools.h"
#include "MetafileTools.h"
#include "output/ExportLayouts.h"

#include <QDir>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace tessaly;
using namespace tessaly::test;

namespace {

const Shown PdfDone{output::PdfCompleted, mb::Information, AppTitle};
const Shown TiffDone{output::TiffCompleted, mb::Information, AppTitle};
const Shown PdfInUse{output::PdfInUseMessage, mb::Information, AppTitle};
constexpr double TwipsPerPixelAt72Dpi = 20;
constexpr double TwipsPerPixelAt300Dpi = 4.8;

// Where a page of w by h mm lies on the paper (twips), worked out from the
// layouts' numbers: the ImgEMF box within the margins, the picture as large
// as fits with its proportions, in the middle.
QRectF expectedPicture(bool landscape, double w, double h) {
    const QRectF box =
        landscape ? QRectF(360 + 510, 0 + 567, 15818, 10772) : QRectF(0 + 425, 0 + 472, 11150, 15780);
    const QRectF printable =
        landscape ? QRectF(360, 0, 15840 - 720, 12240 - 360) : QRectF(0, 0, 12240, 15840);
    const QRectF area = box.intersected(printable);
    const double s = std::min(area.width() / w, area.height() / h);
    return {area.center() - QPointF(w * s / 2, h * s / 2), QSizeF(w * s, h * s)};
}

// The frame of OutputFixture::framedPlan, 5 mm inside a page of w by h mm, on the paper, in pixels.
QRectF expectedFrame(bool landscape, double w, double h, double twipsPerPixel) {
    const QRectF picture = expectedPicture(landscape, w, h);
    const double inset = 5 * picture.width() / w;
    const QRectF frame = picture.adjusted(inset, inset, -inset, -inset);
    return {frame.topLeft() / twipsPerPixel, frame.size() / twipsPerPixel};
}

void expectAt(const QRect& ink, const QRectF& expected, double tolerance) {
    EXPECT_NEAR(ink.left(), expected.left(), tolerance);
    EXPECT_NEAR(ink.top(), expected.top(), tolerance);
    EXPECT_NEAR(ink.right() + 1, expected.right(), tolerance);
    EXPECT_NEAR(ink.bottom() + 1, expected.bottom(), tolerance);
}

constexpr QFileDevice::Permissions ReadOnly =
    QFileDevice::ReadOwner | QFileDevice::ReadUser | QFileDevice::ReadGroup | QFileDevice::ReadOther;

class MenuExports : public OutputFixture {};

} // namespace

TEST_F(MenuExports, TheSubMenuHasItsCaptionsAndHtmlStaysHidden) {
    const std::pair<const char*, const char*> entries[] = {
        {"mnuFile_Export", "&Export"},
        {"mnuFile_Export_EMF", "Export To An EMF Image"},
        {"mnuFile_Export_PDF", "Export To PDF Document"},
        {"mnuFile_Export_TIFF", "Export To A TIFF"},
        {"mnuFile_Export_BMP", "Export To A BMP File"},
        {"mnuFile_Export_PNG", "Export To A PNG File"},
        {"mnuFile_Export_HTML", "Export To HTML File"},
    };
    for (const auto& [name, caption] : entries)
        EXPECT_EQ(main.control(QString::fromLatin1(name)).caption(), QString::fromLatin1(caption)) << name;
    EXPECT_FALSE(main.control(QStringLiteral("mnuFile_Export_HTML")).visible());
    EXPECT_FALSE(main.hasHandler(QStringLiteral("mnuFile_Export_HTML"), QStringLiteral("Click")));
    for (const char* name : {"mnuFile_Export_EMF", "mnuFile_Export_PDF", "mnuFile_Export_TIFF",
                             "mnuFile_Export_BMP", "mnuFile_Export_PNG"})
        EXPECT_TRUE(main.hasHandler(QString::fromLatin1(name), QStringLiteral("Click"))) << name;
}

TEST_F(MenuExports, ImagesGoStraightFromTheCanvasWithNothingReported) {
    framedPlan();
    engine().setModified(true);
    exportVia("mnuFile_Export_EMF", path(QStringLiteral("plan.emf")));
    exportVia("mnuFile_Export_BMP", path(QStringLiteral("plan.bmp")));
    exportVia("mnuFile_Export_PNG", path(QStringLiteral("plan.png")));
    EXPECT_EQ(saveFilters, (QStringList{"Enhanced metafiles (*.emf)|*.emf|All Files (*.*)|*.*",
                                        "Windows Bitmap (*.bmp)|*.bmp|All Files (*.*)|*.*",
                                        "Portable Network Graphic (*.PNG)|*.png|All Files (*.*)|*.*"}));
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(engine().modified());
    // The page at the stated 150 dpi: 295 by 210 mm.
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.bmp"))), QStringLiteral("1742x1240"));
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.png"))), QStringLiteral("1742x1240"));
    const QByteArray svg = emfToSvg(readFile(path(QStringLiteral("plan.emf"))), QStringLiteral("menu-plan"));
    EXPECT_TRUE(svg.contains("Kitchen"));
    // The EMF is the canvas's own.
    engine().saveFile(path(QStringLiteral("own.emf")), canvas::save_format::Emf);
    EXPECT_EQ(readFile(path(QStringLiteral("plan.emf"))), readFile(path(QStringLiteral("own.emf"))));
}

TEST_F(MenuExports, ACancelledImageDialogWritesNothing) {
    exportVia("mnuFile_Export_PNG", std::nullopt);
    exportVia("mnuFile_Export_BMP", QString());
    EXPECT_TRUE(QDir(out.path()).isEmpty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(MenuExports, LandscapePdfIsOneLetterPageWithTheDrawingAsVectorsAndText) {
    orientation(true);
    framedPlan();
    const QString file = path(QStringLiteral("landscape.pdf"));
    exportVia("mnuFile_Export_PDF", file);
    EXPECT_EQ(saveFilters, QStringList{QStringLiteral("PDF (*.PDF)|*.PDF|All Files (*.*)|*.*")});
    EXPECT_EQ(boxes, std::vector<Shown>{PdfDone});
    const auto info = pdfInfo(file);
    EXPECT_EQ(info.value(QStringLiteral("Pages")), QStringLiteral("1"));
    EXPECT_EQ(info.value(QStringLiteral("Page size")), QStringLiteral("792 x 612 pts (letter)"));
    QString check;
    EXPECT_TRUE(qpdfCheck(file, &check)) << check.toStdString();
    EXPECT_TRUE(pdfText(file).contains(QStringLiteral("Kitchen")));
    EXPECT_EQ(pdfImageCount(file), 0);
    const QRect ink = darkBounds(pdfPage(file, 72));
    expectAt(ink, expectedFrame(true, 295, 210, TwipsPerPixelAt72Dpi), 1.5);
    // Within the ImgEMF box, its proportions kept.
    EXPECT_GE(ink.left(), (360 + 510) / TwipsPerPixelAt72Dpi);
    EXPECT_GE(ink.top(), 567 / TwipsPerPixelAt72Dpi);
    EXPECT_LE(ink.bottom(), (567 + 10772) / TwipsPerPixelAt72Dpi);
    EXPECT_NEAR(double(ink.width()) / ink.height(), 285.0 / 200.0, 0.01);
    // The scratch metafile stays, and the layout has been unloaded.
    EXPECT_TRUE(QFile::exists(printTemp()));
    EXPECT_EQ(module().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);
}

TEST_F(MenuExports, PortraitPdfLiesOnAPortraitPage) {
    orientation(false);
    framedPlan();
    const QString file = path(QStringLiteral("portrait.pdf"));
    exportVia("mnuFile_Export_PDF", file);
    EXPECT_EQ(boxes, std::vector<Shown>{PdfDone});
    EXPECT_EQ(pdfInfo(file).value(QStringLiteral("Page size")), QStringLiteral("612 x 792 pts (letter)"));
    EXPECT_TRUE(qpdfCheck(file));
    const QRect ink = darkBounds(pdfPage(file, 72));
    expectAt(ink, expectedFrame(false, 210, 295, TwipsPerPixelAt72Dpi), 1.5);
    EXPECT_NEAR(double(ink.width()) / ink.height(), 200.0 / 285.0, 0.01);
}

TEST_F(MenuExports, TheLayoutFollowsPageLandscapeNotTheShapeOfTheDrawing) {
    // A landscape page whose drawing is tall and narrow still goes on a landscape page.
    orientation(true);
    addShape(canvas::shape_type::Rectangle, QRectF(140, 5, 10, 200));
    const QString file = path(QStringLiteral("tall.pdf"));
    exportVia("mnuFile_Export_PDF", file);
    EXPECT_EQ(pdfInfo(file).value(QStringLiteral("Page size")), QStringLiteral("792 x 612 pts (letter)"));
}

TEST_F(MenuExports, TiffIsOnePageAt300DpiWithSharpLineWork) {
    orientation(true);
    framedPlan();
    const QString file = path(QStringLiteral("plan.tiff"));
    exportVia("mnuFile_Export_TIFF", file);
    EXPECT_EQ(saveFilters, QStringList{QStringLiteral("TIFF (*.TIFF)|*.Tiff|All Files (*.*)|*.*")});
    EXPECT_EQ(boxes, std::vector<Shown>{TiffDone});
    EXPECT_EQ(tiffPageCount(file), 1);
    const QString info = tiffInfo(file);
    EXPECT_TRUE(info.contains(QStringLiteral("Image Width: 3300 Image Length: 2550"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QStringLiteral("Resolution: 300, 300 pixels/inch")));
    EXPECT_TRUE(info.contains(QStringLiteral("Compression Scheme: CCITT Group 4")));
    const QImage page = tiffPage(file);
    ASSERT_FALSE(page.isNull());
    const QRect ink = darkBounds(page);
    expectAt(ink, expectedFrame(true, 295, 210, TwipsPerPixelAt300Dpi), 4);
    // The frame's top edge is drawn at the printer's resolution, black on
    // white with no grey smear: as thick as the metafile's one-unit pen of a
    // 96-dpi reference device, about 3 dots at 300 dpi.
    const int x = ink.center().x();
    int thickness = 0;
    for (int y = ink.top() - 2; y < ink.top() + 10; ++y) {
        const int grey = qGray(page.pixel(x, y));
        EXPECT_TRUE(grey == 0 || grey == 255) << y;
        thickness += grey == 0 ? 1 : 0;
    }
    EXPECT_GE(thickness, 2);
    EXPECT_LE(thickness, 4);
}

TEST_F(MenuExports, AColouredDrawingMakesADeflatedColourTiff) {
    orientation(false);
    const int id = addShape(canvas::shape_type::Rectangle, QRectF(20, 20, 100, 60));
    engine().editStyles({id}, [](canvas::ShapeStyle& s) { s.fill.colour = 0x0000FF; });
    const QString file = path(QStringLiteral("colour.tiff"));
    exportVia("mnuFile_Export_TIFF", file);
    const QString info = tiffInfo(file);
    EXPECT_TRUE(info.contains(QStringLiteral("Image Width: 2550 Image Length: 3300"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QStringLiteral("Compression Scheme: AdobeDeflate")));
    EXPECT_TRUE(info.contains(QStringLiteral("Photometric Interpretation: RGB color")));
    const QImage page = tiffPage(file);
    const QRectF picture = expectedPicture(false, 210, 295);
    const double mm = picture.width() / 210 / TwipsPerPixelAt300Dpi; // pixels per page mm
    const QPoint inside((picture.left() / TwipsPerPixelAt300Dpi) + 70 * mm,
                        (picture.top() / TwipsPerPixelAt300Dpi) + 50 * mm);
    EXPECT_EQ(page.pixelColor(inside), QColor(255, 0, 0));
}

TEST_F(MenuExports, CancellingTheReportDialogStillRemovesPrintTemp) {
    for (const char* menu : {"mnuFile_Export_PDF", "mnuFile_Export_TIFF"}) {
        QFile old(printTemp());
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("an old scratch metafile");
        old.close();
        exportVia(menu, std::nullopt);
        EXPECT_FALSE(QFile::exists(printTemp())) << menu;
    }
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(QDir(out.path()).isEmpty());
}

TEST_F(MenuExports, AnEmptyPageIsAReportPageWithAnEmptyPicture) {
    const QString pdf = path(QStringLiteral("empty.pdf"));
    const QString tiff = path(QStringLiteral("empty.tiff"));
    exportVia("mnuFile_Export_PDF", pdf);
    exportVia("mnuFile_Export_TIFF", tiff);
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfDone, TiffDone}));
    EXPECT_EQ(pdfInfo(pdf).value(QStringLiteral("Pages")), QStringLiteral("1"));
    EXPECT_TRUE(pdfText(pdf).trimmed().isEmpty());
    EXPECT_TRUE(darkBounds(pdfPage(pdf, 36)).isEmpty());
    EXPECT_EQ(tiffPageCount(tiff), 1);
    EXPECT_TRUE(darkBounds(tiffPage(tiff)).isEmpty());
}

TEST_F(MenuExports, TwoExportsInARowEachLoadTheDrawingAfresh) {
    framedPlan(QStringLiteral("Alpha"));
    const QString first = path(QStringLiteral("first.pdf"));
    exportVia("mnuFile_Export_PDF", first);
    addShape(canvas::shape_type::TextBox, QRectF(20, 20, 60, 15), QStringLiteral("Beta"));
    const QString second = path(QStringLiteral("second.pdf"));
    exportVia("mnuFile_Export_PDF", second);
    EXPECT_FALSE(pdfText(first).contains(QStringLiteral("Beta")));
    EXPECT_TRUE(pdfText(second).contains(QStringLiteral("Alpha")));
    EXPECT_TRUE(pdfText(second).contains(QStringLiteral("Beta")));
    const QString tiff = path(QStringLiteral("third.tiff"));
    exportVia("mnuFile_Export_TIFF", tiff);
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfDone, PdfDone, TiffDone}));
}

TEST_F(MenuExports, AReadOnlyPdfCostsOneMessageAndTheCompletionStillFollows) {
    framedPlan();
    const QString file = path(QStringLiteral("held.pdf"));
    QFile held(file);
    ASSERT_TRUE(held.open(QIODevice::WriteOnly));
    held.write("the PDF a viewer shows");
    held.close();
    ASSERT_TRUE(QFile::setPermissions(file, ReadOnly));
    exportVia("mnuFile_Export_PDF", file);
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfInUse, PdfDone}));
    EXPECT_EQ(readFile(file), QByteArray("the PDF a viewer shows"));
    // The steps after the failed one ran: the layout was unloaded, the filter released.
    EXPECT_EQ(module().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);
    EXPECT_EQ(module().pdfFilter(), nullptr);
}

TEST_F(MenuExports, APdfHeldOpenByAViewerCostsOneMessage) {
    framedPlan();
    const QString file = path(QStringLiteral("viewed.pdf"));
    QFile viewed(file);
    ASSERT_TRUE(viewed.open(QIODevice::WriteOnly));
    viewed.write("shown in a viewer");
    viewed.close();
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_SH), 0);
    exportVia("mnuFile_Export_PDF", file);
    ::close(fd);
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfInUse, PdfDone}));
    EXPECT_EQ(readFile(file), QByteArray("shown in a viewer"));
}

TEST_F(MenuExports, APdfInAMissingFolderCostsOneMessageAndLeavesNothing) {
    framedPlan();
    exportVia("mnuFile_Export_PDF", path(QStringLiteral("no such folder/plan.pdf")));
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfInUse, PdfDone}));
    EXPECT_TRUE(QDir(out.path()).isEmpty());
}

TEST_F(MenuExports, ATiffFaultGoesToTheDefaultErrorBox) {
    framedPlan();
    exportVia("mnuFile_Export_TIFF", path(QStringLiteral("no such folder/plan.tiff")));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_TRUE(boxes[0].text.startsWith(QStringLiteral("Run-time error '7001':\n\n")))
        << boxes[0].text.toStdString();
    EXPECT_TRUE(boxes[0].text.contains(QStringLiteral("does not exist")));
    EXPECT_EQ(boxes[0].flags, mb::Critical);
    EXPECT_TRUE(QDir(out.path()).isEmpty());
}

TEST_F(MenuExports, PathsWithBlanksAndLettersBeyondAscii) {
    framedPlan(QStringLiteral("Küche"));
    ASSERT_TRUE(QDir(out.path()).mkdir(QStringLiteral("Pläne für Zoë")));
    const QString pdf = path(QStringLiteral("Pläne für Zoë/Erdgeschoß 1.pdf"));
    const QString tiff = path(QStringLiteral("Pläne für Zoë/Erdgeschoß 1.tiff"));
    exportVia("mnuFile_Export_PDF", pdf);
    exportVia("mnuFile_Export_TIFF", tiff);
    EXPECT_EQ(boxes, (std::vector<Shown>{PdfDone, TiffDone}));
    EXPECT_TRUE(pdfText(pdf).contains(QStringLiteral("Küche")));
    EXPECT_EQ(tiffPageCount(tiff), 1);
}

TEST_F(MenuExports, ALargePlanStaysASmallVectorPdf) {
    // 10,000 lines.
    for (int i = 0; i < 10000; ++i) {
        const double x = 10 + (i % 100) * 2.7, y = 10 + (i / 100) * 1.9;
        addShape(canvas::shape_type::Line, QRectF(x, y, 2.2, 1.2));
    }
    addShape(canvas::shape_type::TextBox, QRectF(100, 195, 90, 12), QStringLiteral("Site plan"));
    const QString file = path(QStringLiteral("large.pdf"));
    exportVia("mnuFile_Export_PDF", file);
    EXPECT_TRUE(qpdfCheck(file));
    EXPECT_EQ(pdfImageCount(file), 0);
    EXPECT_TRUE(pdfText(file).contains(QStringLiteral("Site plan")));
    RecordProperty("bytes", static_cast<int>(QFileInfo(file).size()));
    EXPECT_LT(QFileInfo(file).size(), 400 * 1024);
}

TEST_F(MenuExports, TheRoutinesCanBeCalledByNameWithoutMessages) {
    framedPlan();
    engine().saveFile(printTemp(), canvas::save_format::Emf);
    QVariantList pdf{QStringLiteral("ExportOuputLandscape"), path(QStringLiteral("called.pdf")), false};
    app->call(QStringLiteral("ExportReportToPDF"), pdf);
    QVariantList tiff{app->get(QStringLiteral("ExportOuputPortrate")), path(QStringLiteral("called.tiff")),
                      0};
    app->call(QStringLiteral("ExportReportToTIFF"), tiff);
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(pdfInfo(path(QStringLiteral("called.pdf"))).value(QStringLiteral("Page size")),
              QStringLiteral("792 x 612 pts (letter)"));
    EXPECT_TRUE(tiffInfo(path(QStringLiteral("called.tiff"))).contains(QStringLiteral("Image Width: 2550")));
    // An empty path does nothing at all.
    QVariantList none{QStringLiteral("ExportOuputLandscape"), QString(), true};
    app->call(QStringLiteral("ExportReportToPDF"), none);
    EXPECT_TRUE(boxes.empty());
}
