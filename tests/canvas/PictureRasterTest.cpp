// The raster form of a picture held by the drawing: a bitmap's own pixels, a
// metafile played at its natural size, and a metafile that claims a vast
// frame played within a bounded raster instead of taking gigabytes.
#include "canvas/model/CanvasPicture.h"
#include "metafile/EmfPaintDevice.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace tessaly::canvas {
namespace {

constexpr double MmPerInch = 25.4;
constexpr long long MaxRasterPixels = 16LL * 1024 * 1024; // the bound of a vector picture's raster

// An EMF of `pixels` by `pixels` at 96 dpi with a red square in its middle.
QByteArray emfOfSide(int pixels) {
    const double mm = pixels * MmPerInch / 96.0;
    metafile::EmfPaintDevice device(QSizeF(mm, mm), 96);
    {
        QPainter p(&device);
        p.fillRect(QRectF(pixels / 4.0, pixels / 4.0, pixels / 2.0, pixels / 2.0), Qt::red);
    }
    return device.toBytes();
}

TEST(PictureRaster, AMetafileIsPlayedAtItsNaturalSize) {
    const auto picture = CanvasPicture::fromData(emfOfSide(200));
    EXPECT_NEAR(picture->image().width(), 200, 1);
    EXPECT_NEAR(picture->image().height(), 200, 1);
    EXPECT_EQ(picture->image().pixelColor(100, 100), QColor(Qt::red));
    EXPECT_NEAR(picture->widthHiMetric(), 200 * 2540 / 96, 2);
}

TEST(PictureRaster, AMetafileWithAVastFrameGetsABoundedRasterAndKeepsItsSize) {
    const auto picture = CanvasPicture::fromData(emfOfSide(40000));
    const long long pixels = static_cast<long long>(picture->image().width()) * picture->image().height();
    EXPECT_LE(pixels, MaxRasterPixels);
    EXPECT_GT(pixels, MaxRasterPixels / 2);
    EXPECT_EQ(picture->image().width(), picture->image().height());
    // Scaled in proportion: the middle is still red, a corner still white.
    EXPECT_EQ(picture->image().pixelColor(picture->image().width() / 2, picture->image().height() / 2),
              QColor(Qt::red));
    EXPECT_EQ(picture->image().pixelColor(2, 2), QColor(Qt::white));
    // Its natural size in 0.01 mm is what the file says.
    EXPECT_NEAR(picture->widthHiMetric(), 40000LL * 2540 / 96, 30);
}

} // namespace
} // namespace tessaly::canvas
