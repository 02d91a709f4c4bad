#include "MakeCorpus.h"
#include "CanvasSupport.h"

#include "canvas/model/ShapeTypes.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

constexpr double Dpi = 127.0; // 5 pixels a millimetre
constexpr double K = Dpi / 25.4;

struct Render : ::testing::Test {
    std::shared_ptr<POLARDraw> c = makeCanvas();
    AutoPtr add(int type, int l, int t, int r, int b) {
        call(c->shapes(), "AddShape", {type, l, t, r, b});
        return obj(c->shapes(), "Item", {c->drawing().count()});
    }
    QColor at(const QImage& img, double xMm, double yMm) const {
        return img.pixelColor(static_cast<int>(xMm * K), static_cast<int>(yMm * K));
    }
    static bool close(const QColor& a, const QColor& b, int tolerance = 3) {
        return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
               std::abs(a.blue() - b.blue()) <= tolerance;
    }
    // A lens shape over a left half of black and a right half of white.
    QImage lensOver(int type, int percent, Colour start = 0, Colour end = 0, Colour fill = 0xFFFFFF) {
        AutoPtr black = add(1, 0, 0, 50, 100);
        obj(black, "Fill")->set("Colour", 0);
        AutoPtr lens = add(1, 20, 20, 80, 80);
        lens->set("Stroked", false);
        obj(lens, "Fill")->set("Colour", static_cast<int>(fill));
        AutoPtr l = obj(obj(lens, "Effect"), "Lens");
        l->set("Type", type);
        l->set("Percent", percent);
        l->set("StartColour", static_cast<int>(start));
        l->set("EndColour", static_cast<int>(end));
        obj(lens, "Effect")->set("LensActive", true);
        return c->renderImage(Dpi);
    }
};

} // namespace

TEST_F(Render, AFilledRedRectangleIsRedOnWhitePaper) {
    AutoPtr s = add(1, 20, 30, 60, 50);
    obj(s, "Fill")->set("Colour", 255);
    const QImage img = c->renderImage(Dpi);
    EXPECT_EQ(at(img, 40, 40), QColor(255, 0, 0));
    EXPECT_EQ(at(img, 10, 40), QColor(255, 255, 255));
    EXPECT_EQ(at(img, 40, 20.5), QColor(255, 255, 255));
    // the outline is a black hairline
    const QColor edge = img.pixelColor(static_cast<int>(40 * K), static_cast<int>(30 * K));
    EXPECT_LE(edge.red(), 128);
    EXPECT_EQ(edge.green(), 0);
}

TEST_F(Render, PaperColourOutlineFillShadowAndRotation) {
    c->page()->set("PaperColour", 0x00FFFF); // yellow paper
    AutoPtr bar = add(1, 50, 10, 54, 90);    // a tall thin bar ...
    obj(bar, "Fill")->set("Colour", 0xFF0000);
    bar->set("Stroked", false);
    call(c->selection(), "Clear");
    c->setSelection({get(bar, "Id").toInt()});
    call(c->selection()->range(), "Rotate", {90}); // ... turned to lie across
    const QImage img = c->renderImage(Dpi);
    EXPECT_EQ(at(img, 5, 5), QColor(255, 255, 0));
    EXPECT_EQ(at(img, 20, 50), QColor(0, 0, 255));
    EXPECT_EQ(at(img, 52, 20), QColor(255, 255, 0));
    c->page()->set("ShowPaper", false);
    EXPECT_EQ(at(c->renderImage(Dpi), 5, 5), QColor(255, 255, 255));
    c->applyShadow(true, 0x00FF00, 3, 3);
    c->applyShade(0x0000FF, 0xFF0000, 1);
    const QImage shaded = c->renderImage(Dpi);
    EXPECT_EQ(at(shaded, 93, 53.5), QColor(0, 255, 0)); // the shadow beside the turned bar
    const QColor left = at(shaded, 20, 50.2), right = at(shaded, 80, 51.8);
    EXPECT_TRUE(left != right); // a vertical shade across the turned bar is not one colour
}

TEST_F(Render, HatchesAndTexturesFillWithTheirPattern) {
    AutoPtr s = add(1, 10, 10, 90, 90);
    c->setSelection({1});
    c->applyPattern(hatch::Brick, 0x0000FF, 0xFFFFFF);
    QImage img = c->renderImage(Dpi);
    int red = 0, white = 0;
    for (int y = 20; y < 80; ++y)
        for (int x = 20; x < 80; ++x) {
            const QColor p = at(img, x, y);
            red += close(p, QColor(255, 0, 0), 60);
            white += close(p, QColor(255, 255, 255), 10);
        }
    EXPECT_GT(red, 200);
    EXPECT_GT(white, 1000);
    c->applyTexture(CanvasPicture::fromData(pngBytes(4, 4, qRgb(0, 128, 255))));
    img = c->renderImage(Dpi);
    EXPECT_TRUE(close(at(img, 50, 50), QColor(0, 128, 255)));
}

TEST_F(Render, LensInvert) {
    const QImage img = lensOver(lens::Invert, 0);
    EXPECT_TRUE(close(at(img, 30, 50), QColor(255, 255, 255)));
    EXPECT_TRUE(close(at(img, 70, 50), QColor(0, 0, 0)));
    EXPECT_TRUE(close(at(img, 10, 50), QColor(0, 0, 0))); // outside the lens nothing changes
}

TEST_F(Render, LensTransparencyShowsTheFillOverWhatLiesUnder) {
    const QImage img = lensOver(lens::Transparency, 50, 0, 0, 0x0000FF);
    EXPECT_TRUE(close(at(img, 70, 50), QColor(255, 128, 128), 3)) << at(img, 70, 50).name().toStdString();
    EXPECT_TRUE(close(at(img, 30, 50), QColor(128, 0, 0), 3));
}

TEST_F(Render, LensBrightenAndDarken) {
    QImage img = lensOver(lens::BrightenDarken, 50);
    EXPECT_TRUE(close(at(img, 30, 50), QColor(128, 128, 128)));
    EXPECT_TRUE(close(at(img, 70, 50), QColor(255, 255, 255)));
    c = makeCanvas();
    img = lensOver(lens::BrightenDarken, -50);
    EXPECT_TRUE(close(at(img, 70, 50), QColor(128, 128, 128)));
}

TEST_F(Render, LensAddLimitPaletteTintAndHeat) {
    QImage img = lensOver(lens::AddColour, 100, 0x0000FF);
    EXPECT_TRUE(close(at(img, 30, 50), QColor(255, 0, 0)));
    c = makeCanvas();
    img = lensOver(lens::LimitColour, 100, 0x00FF00);
    EXPECT_TRUE(close(at(img, 70, 50), QColor(0, 255, 0)));
    c = makeCanvas();
    img = lensOver(lens::CustomPalette, 0, 0x0000FF, 0xFF0000);
    EXPECT_TRUE(close(at(img, 30, 50), QColor(255, 0, 0)));
    EXPECT_TRUE(close(at(img, 70, 50), QColor(0, 0, 255)));
    c = makeCanvas();
    img = lensOver(lens::TintedGrayscale, 0, 0x00FF00);
    EXPECT_TRUE(close(at(img, 70, 50), QColor(0, 255, 0)));
    EXPECT_TRUE(close(at(img, 30, 50), QColor(0, 0, 0)));
    c = makeCanvas();
    img = lensOver(lens::Heatmap, 0);
    EXPECT_TRUE(close(at(img, 70, 50), QColor(255, 0, 0)));
    EXPECT_TRUE(close(at(img, 30, 50), QColor(0, 0, 255)));
}

TEST_F(Render, TheScreenShowsGridGuidesAndHandlesTheExportDoesNot) {
    c->page()->set("GridColour", 0x00FF00);
    c->page()->set("GridSpacingX", 10);
    c->page()->set("GridSpacingY", 10);
    c->page()->set("GuideColour", 0xFF0000);
    call(c->horizontalGuides(), "Add", {55});
    c->view()->set("ShowGrid", true);
    c->view()->set("ShowGuides", true);
    AutoPtr s = add(1, 100, 100, 120, 120);
    c->setSelection({1});
    c->view()->set("Zoom", 200);
    c->setScroll(QPointF(0, 0));
    QImage screen(800, 600, QImage::Format_RGB32);
    screen.fill(Qt::gray);
    {
        QPainter p(&screen);
        c->renderView(p);
    }
    const double z = 2 * 96 / 25.4;
    EXPECT_EQ(screen.pixelColor(static_cast<int>(37 * z), static_cast<int>(55 * z)),
              QColor(0, 0, 255)); // guide
    int green = 0;
    for (int x = 0; x < 400; ++x)
        green += screen.pixelColor(x, static_cast<int>(10 * z)) == QColor(0, 255, 0);
    EXPECT_GT(green, 20); // a dotted grid line
    const QImage exported = c->renderImage(Dpi);
    EXPECT_EQ(at(exported, 37, 55), QColor(255, 255, 255));
    EXPECT_EQ(at(exported, 99.4, 99.4), QColor(255, 255, 255)); // no handle
    EXPECT_NE(screen.pixelColor(static_cast<int>(99.4 * z), static_cast<int>(99.4 * z)),
              QColor(255, 255, 255));
}

TEST_F(Render, OnlyShapesInTheVisibleAreaAreConsidered) {
    for (int i = 0; i < 100; ++i)
        for (int j = 0; j < 100; ++j)
            add(1, i * 3, j * 2, i * 3 + 2, j * 2 + 1);
    const std::vector<int> near = c->drawing().positionsIn(QRectF(30, 30, 10, 10));
    EXPECT_LT(near.size(), 200u);
    EXPECT_GE(near.size(), 20u); // the 4 x 5 shapes that lie inside
    EXPECT_TRUE(std::is_sorted(near.begin(), near.end()));
    EXPECT_EQ(c->drawing().topmostAt(QPointF(31, 31), 0.1), 10 * 100 + 15);
}

TEST(Print, APrintedHundredMillimetreLineMeasuresOneHundredMillimetres) {
    QTemporaryDir dir;
    auto c = makeCanvas();
    call(c->shapes(), "AddShape", {20, 10, 100, 110, 100});
    obj(obj(c->shapes(), "Item", {1}), "Line")->set("Weight", 1);
    const QString pdf = dir.filePath("print.pdf");
    {
        QPdfWriter writer(pdf);
        writer.setPageSize(QPageSize(QSizeF(297, 210), QPageSize::Millimeter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(600);
        c->printTo(writer);
    }
    constexpr int Ppm = 10; // pixels a millimetre at 254 dpi
    QProcess pdftoppm;
    pdftoppm.start("pdftoppm", {"-r", "254", "-gray", "-singlefile", pdf, dir.filePath("page")});
    ASSERT_TRUE(pdftoppm.waitForFinished(30000));
    const QImage page(dir.filePath("page.pgm"));
    ASSERT_FALSE(page.isNull());
    const int row = 100 * Ppm;
    int first = -1, last = -1;
    for (int x = 0; x < page.width(); ++x)
        if (qGray(page.pixel(x, row)) < 128) {
            if (first < 0)
                first = x;
            last = x;
        }
    EXPECT_NEAR(last - first + 1, 100 * Ppm, 2); // 100 mm
    EXPECT_NEAR(first, 10 * Ppm, 2);             // from 10 mm
    int thick = 0;
    for (int y = row - 20; y < row + 20; ++y)
        thick += qGray(page.pixel(50 * Ppm, y)) < 128;
    EXPECT_NEAR(thick, 1 * Ppm, 2); // weight 1 is one millimetre
}
