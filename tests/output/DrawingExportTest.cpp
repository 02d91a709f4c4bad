// The drawing exports of the headless converter: each format by its
// extension, through the File menu's code, read back by independent tools;
// the SVG writer against librsvg.
#include "OutputFixture.h"

#include "ExportTools.h"
#include "MetafileTools.h"
#include "output/DrawingExport.h"
#include "output/SvgWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

using namespace tessaly;
using namespace tessaly::test;
using output::DrawingFormat;

namespace {

class DrawingExports : public OutputFixture {
protected:
    std::shared_ptr<canvas::POLARDraw> canvas = canvas::POLARDraw::create();

    void plan() {
        canvas->addShapeMm(canvas::shape_type::Rectangle, QRectF(5, 5, 285, 200), {}, false);
        canvas->addShapeMm(canvas::shape_type::TextBox, QRectF(100, 90, 95, 20), QStringLiteral("Kitchen"),
                           false);
        const int hatched =
            canvas->addShapeMm(canvas::shape_type::Rectangle, QRectF(20, 20, 60, 40), {}, false);
        canvas->editStyles({hatched}, [](canvas::ShapeStyle& s) {
            s.fill.type = canvas::fill_type::Pattern;
            s.fill.hatch = canvas::hatch::Brick;
            s.fill.colour = 0;
            s.fill.backColour = 0xFFFFFF;
        });
    }
    void write(const QString& name, const output::DrawingExportOptions& options = {}) {
        output::exportDrawing(*app, *canvas, path(name), *output::formatOfPath(name), options);
    }
};

} // namespace

TEST(DrawingFormats, TheExtensionChoosesTheFormatInAnyCase) {
    EXPECT_EQ(output::formatOfPath(QStringLiteral("a/b.PDF")), DrawingFormat::Pdf);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.tif")), DrawingFormat::Tiff);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.Tiff")), DrawingFormat::Tiff);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.png")), DrawingFormat::Png);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.bmp")), DrawingFormat::Bmp);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.emf")), DrawingFormat::Emf);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.wmf")), DrawingFormat::Wmf);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.svg")), DrawingFormat::Svg);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("b.jpg")), std::nullopt);
    EXPECT_EQ(output::formatOfPath(QStringLiteral("pdf")), std::nullopt);
}

TEST_F(DrawingExports, PdfAndTiffGoThroughTheLayoutOfTheOrientation) {
    plan();
    write(QStringLiteral("plan.pdf"));
    write(QStringLiteral("plan.tif"));
    EXPECT_EQ(pdfInfo(path(QStringLiteral("plan.pdf"))).value(QStringLiteral("Page size")),
              QStringLiteral("792 x 612 pts (letter)"));
    EXPECT_TRUE(pdfText(path(QStringLiteral("plan.pdf"))).contains(QStringLiteral("Kitchen")));
    EXPECT_TRUE(tiffInfo(path(QStringLiteral("plan.tif")))
                    .contains(QStringLiteral("Image Width: 3300 Image Length: 2550")));
    // As from the menu: the scratch metafile in the home, the layout unloaded, nothing said.
    EXPECT_TRUE(QFile::exists(printTemp()));
    EXPECT_EQ(module().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(DrawingExports, ImagesAtTheMenusResolutionOrAGivenOne) {
    plan();
    write(QStringLiteral("plan.png"));
    write(QStringLiteral("plan.bmp"));
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.png"))), QStringLiteral("1742x1240"));
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.bmp"))), QStringLiteral("1742x1240"));
    write(QStringLiteral("fine.png"), {300});
    write(QStringLiteral("fine.bmp"), {300});
    EXPECT_EQ(identifySize(path(QStringLiteral("fine.png"))), QStringLiteral("3484x2480"));
    EXPECT_EQ(identifySize(path(QStringLiteral("fine.bmp"))), QStringLiteral("3484x2480"));
    // The two resolutions show the same drawing in the same place.
    const QRect coarse = darkBounds(QImage(path(QStringLiteral("plan.png"))));
    const QRect fine = darkBounds(QImage(path(QStringLiteral("fine.png"))));
    EXPECT_NEAR(fine.left(), coarse.left() * 2, 3);
    EXPECT_NEAR(fine.right(), coarse.right() * 2, 3);
}

TEST_F(DrawingExports, EmfIsTheCanvasOwnAndWmfHasItsPlaceableHeader) {
    plan();
    write(QStringLiteral("plan.emf"));
    write(QStringLiteral("plan.wmf"));
    canvas->saveFile(path(QStringLiteral("own.emf")), canvas::save_format::Emf);
    EXPECT_EQ(readFile(path(QStringLiteral("plan.emf"))), readFile(path(QStringLiteral("own.emf"))));
    EXPECT_TRUE(emfToSvg(readFile(path(QStringLiteral("plan.emf"))), QStringLiteral("drawing-export"))
                    .contains("Kitchen"));
    const QByteArray wmf = readFile(path(QStringLiteral("plan.wmf")));
    ASSERT_GE(wmf.size(), 24);
    EXPECT_EQ(u32(wmf, 0), 0x9AC6CDD7u);
    EXPECT_FALSE(wmfToSvg(wmf, QStringLiteral("drawing-export")).isEmpty());
}

TEST_F(DrawingExports, SvgIsReadByLibrsvgAtTheTrueSize) {
    plan();
    write(QStringLiteral("plan.svg"));
    const QByteArray svg = readFile(path(QStringLiteral("plan.svg")));
    EXPECT_TRUE(svg.contains("width=\"295mm\" height=\"210mm\""));
    EXPECT_TRUE(
        QString::fromUtf8(svg).contains(QRegularExpression(QStringLiteral("<text [^>]*>Kitchen</text>"))));
    EXPECT_TRUE(svg.contains("<pattern id="));
    // librsvg draws it at 96 dpi: 295 by 210 mm.
    const QImage image = svgImage(path(QStringLiteral("plan.svg")));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(1115, 794));
    // The frame lies where the canvas's own PNG has it.
    write(QStringLiteral("plan96.png"), {96});
    const QRect own = darkBounds(QImage(path(QStringLiteral("plan96.png"))));
    const QRect read = darkBounds(image);
    EXPECT_NEAR(read.left(), own.left(), 1);
    EXPECT_NEAR(read.top(), own.top(), 1);
    EXPECT_NEAR(read.right(), own.right(), 1);
    EXPECT_NEAR(read.bottom(), own.bottom(), 1);
    // The brick hatch is drawn: the hatched box holds dark pixels inside it.
    const double k = 96 / 25.4;
    const QRect inner(QPoint(int(25 * k), int(25 * k)), QPoint(int(75 * k), int(55 * k)));
    EXPECT_FALSE(darkBounds(image.copy(inner)).isEmpty());
}

TEST_F(DrawingExports, AnUnwritableTargetIsAClearErrorAndLeavesTheOldFile) {
    plan();
    QFile old(path(QStringLiteral("plan.svg")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    ASSERT_TRUE(QFile::setPermissions(path(QStringLiteral("plan.svg")), QFileDevice::ReadOwner));
    for (const char* name : {"plan.svg", "missing/plan.png", "missing/plan.pdf", "missing/plan.emf"}) {
        try {
            write(QString::fromLatin1(name));
            ADD_FAILURE() << name << " was written";
        } catch (const RuntimeError& e) {
            EXPECT_TRUE(e.description().contains(QStringLiteral("cannot be written")))
                << e.description().toStdString();
        }
    }
    EXPECT_EQ(readFile(path(QStringLiteral("plan.svg"))), QByteArray("old"));
    EXPECT_FALSE(QDir(path(QStringLiteral("missing"))).exists());
}

TEST_F(DrawingExports, HatchesKeepTheirSizeInTheMetafile) {
    plan();
    write(QStringLiteral("hatch.emf"));
    // The brick tile covers 8 page mm: 30 units of the metafile's 96-dpi
    // device, as on screen, so the PDF and TIFF made from it hatch alike.
    const QByteArray emf = readFile(path(QStringLiteral("hatch.emf")));
    int patterns = 0;
    for (const EmfRecord& r : emfRecords(emf)) {
        constexpr uint32_t CreateDibPatternBrushPt = 94;
        if (r.type != CreateDibPatternBrushPt)
            continue;
        ++patterns;
        const uint32_t bmi = u32(emf, r.offset + 16);
        EXPECT_NEAR(i32(emf, r.offset + bmi + 4), 8 * 96 / 25.4, 1);
        EXPECT_NEAR(i32(emf, r.offset + bmi + 8), 8 * 96 / 25.4, 1);
    }
    EXPECT_EQ(patterns, 1);
}
