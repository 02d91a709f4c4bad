#include "MetafileTools.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/ByteWriter.h"
#include "metafile/Picture.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfWriter.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <cmath>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::metafile;
using namespace tessaly::test;

namespace {

// The smallest GIF: one white pixel (Qt reads GIF but does not write it).
const QByteArray OnePixelGif = QByteArray::fromHex(
    "47494638396101000100800000ffffff00000021f90401000000002c00000000010001000002024401003b");

QByteArray encode(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

QImage sampleImage(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 40));
    return image;
}

int loadError(const QString& path) {
    try {
        loadPicture(path);
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

int dataError(const QByteArray& bytes) {
    try {
        Picture::fromData(bytes);
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(PictureLoader, BitmapAt96DpiIs2540HiMetricPer96Pixels) {
    QImage image = sampleImage(96, 48);
    image.setDotsPerMeterX(3780); // 96 dpi
    image.setDotsPerMeterY(3780);
    const QByteArray bmp = encode(image, "BMP");
    addToCorpus(QStringLiteral("picture"), QStringLiteral("sample.bmp"), bmp);
    const Picture picture = loadPicture(writeScratch(QStringLiteral("sample.bmp"), bmp));
    EXPECT_EQ(picture.kind(), Picture::Kind::Bitmap);
    EXPECT_FALSE(picture.isNull());
    EXPECT_EQ(picture.widthHiMetric(), 2540);
    EXPECT_EQ(picture.heightHiMetric(), 1270);
    EXPECT_EQ(picture.pixelSize(), QSize(96, 48));
    EXPECT_EQ(picture.data(), bmp);
    EXPECT_EQ(picture.toImage(QSize(10, 10)).pixelColor(5, 5), QColor(200, 30, 40));
}

TEST(PictureLoader, BitmapUsesItsStoredResolution) {
    QImage image = sampleImage(96, 96);
    image.setDotsPerMeterX(11811); // 300 dpi
    image.setDotsPerMeterY(11811);
    const QByteArray png = encode(image, "PNG");
    addToCorpus(QStringLiteral("picture"), QStringLiteral("sample.png"), png);
    const Picture picture = Picture::fromData(png);
    EXPECT_EQ(picture.widthHiMetric(),
              static_cast<int>(std::lround(96 * 2540 / (11811 / 39.37007874015748))));
    EXPECT_EQ(picture.widthHiMetric(), 813);
    EXPECT_EQ(picture.pixelSize(), QSize(96, 96));
}

TEST(PictureLoader, JpegAndGifLoad) {
    const QByteArray jpeg = encode(sampleImage(40, 20), "JPEG");
    addToCorpus(QStringLiteral("picture"), QStringLiteral("sample.jpg"), jpeg);
    const Picture j = Picture::fromData(jpeg);
    EXPECT_EQ(j.kind(), Picture::Kind::Bitmap);
    EXPECT_EQ(j.pixelSize(), QSize(40, 20));
    addToCorpus(QStringLiteral("picture"), QStringLiteral("pixel.gif"), OnePixelGif);
    const Picture g = Picture::fromData(OnePixelGif);
    EXPECT_EQ(g.kind(), Picture::Kind::Bitmap);
    EXPECT_EQ(g.pixelSize(), QSize(1, 1));
    EXPECT_EQ(g.widthHiMetric(), 26); // one pixel at 96 dpi
}

TEST(PictureLoader, EmfSizeIsItsFrame) {
    const QByteArray emf = recordEmf(QSizeF(210, 297), [](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 0, 255));
        p.drawRect(0, 0, 794, 1123);
    });
    addToCorpus(QStringLiteral("picture"), QStringLiteral("page.emf"), emf);
    const Picture picture = loadPicture(writeScratch(QStringLiteral("page.emf"), emf));
    EXPECT_EQ(picture.kind(), Picture::Kind::Emf);
    EXPECT_EQ(picture.widthHiMetric(), 21000);
    EXPECT_EQ(picture.heightHiMetric(), 29700);
    EXPECT_EQ(picture.pixelSize(), QSize(794, 1123));
    EXPECT_EQ(picture.toImage(QSize(21, 30)).pixelColor(10, 15), QColor(0, 0, 255));
}

TEST(PictureLoader, PlaceableWmfSizeComesFromItsHeader) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setBrush(Qt::red);
        p.drawRect(0, 0, 1000, 700);
    });
    QByteArray wmf;
    ByteWriter w(wmf);
    w.u32(PlaceableKey);
    w.u16(0);
    for (int v : {0, 0, 1001, 701, 96})
        w.i16(static_cast<int16_t>(v));
    w.u32(0);
    w.u16(0);
    wmf += convertEmfToWmf(emf) + QByteArray(2, '\0');
    addToCorpus(QStringLiteral("picture"), QStringLiteral("plan.wmf"), wmf);
    EXPECT_TRUE(wmfToSvg(wmf, QStringLiteral("picture-plan")).contains("<svg"));
    const Picture picture = loadPicture(writeScratch(QStringLiteral("plan.wmf"), wmf));
    EXPECT_EQ(picture.kind(), Picture::Kind::Wmf);
    EXPECT_EQ(picture.widthHiMetric(), static_cast<int>(std::lround(1001 * 2540 / 96.0)));
    EXPECT_EQ(picture.heightHiMetric(), static_cast<int>(std::lround(701 * 2540 / 96.0)));
    EXPECT_EQ(picture.pixelSize(), QSize(1001, 701));
    EXPECT_EQ(picture.toImage(QSize(100, 70)).pixelColor(50, 35), QColor(255, 0, 0));
    // Without the placeable header its units count as pixels of its window.
    const Picture plain = Picture::fromData(wmf.mid(22));
    EXPECT_EQ(plain.kind(), Picture::Kind::Wmf);
    EXPECT_EQ(plain.pixelSize(), QSize(1001, 701));
}

TEST(PictureLoader, MissingFileIs53AndNonPicturesAre481) {
    EXPECT_EQ(loadError(scratchDir() + QStringLiteral("/nothing-here.bmp")), 53);
    EXPECT_EQ(loadError(writeScratch(QStringLiteral("notes.txt"), "just some text\n")), 481);
    EXPECT_EQ(dataError(QByteArray()), 481);
    EXPECT_EQ(dataError(QByteArray(5000, '\x55')), 481);
    // Formats outside the loader's list are not pictures to it.
    EXPECT_EQ(dataError(encode(sampleImage(4, 4), "PPM")), 481);
}

TEST(PictureLoader, TruncatedAndDamagedFilesAre481) {
    const QByteArray png = encode(sampleImage(64, 64), "PNG");
    EXPECT_EQ(dataError(png.left(30)), 481);
    const QByteArray bmp = encode(sampleImage(64, 64), "BMP");
    EXPECT_EQ(dataError(bmp.left(40)), 481);
    const QByteArray emf = recordEmf(QSizeF(50, 50), paintShapes);
    EXPECT_EQ(dataError(emf.left(emf.size() / 2)), 481);
    QByteArray badSize = emf;
    badSize[48] = static_cast<char>(0x7F); // nBytes beyond the file
    EXPECT_EQ(dataError(badSize), 481);
    const QByteArray wmf = convertEmfToWmf(emf);
    EXPECT_EQ(dataError(wmf.left(wmf.size() - 8)), 481);
    EXPECT_EQ(dataError(OnePixelGif.left(12)), 481);
}
