// The scanline flood fill and the paint surface of the colouring window.
#include "output/colour/FloodFill.h"
#include "core/forms/ApplicationBase.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "output/colour/PaintSurface.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <deque>
#include <gtest/gtest.h>

namespace tessaly::colour {
namespace {

const QRgb White = qRgb(255, 255, 255);
const QRgb Black = qRgb(0, 0, 0);
const QRgb Blue = qRgb(0, 0, 255);

QImage blank(int w, int h, QRgb colour = White) {
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// The same area found the slow, plain way: a breadth-first walk.
int64_t reference(QImage& image, int x, int y, QRgb fill) {
    const QRgb target = image.pixel(x, y);
    if (target == fill)
        return 0;
    std::deque<QPoint> queue{QPoint(x, y)};
    image.setPixel(x, y, fill);
    int64_t count = 0;
    while (!queue.empty()) {
        const QPoint p = queue.front();
        queue.pop_front();
        ++count;
        for (const QPoint d : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
            const QPoint q = p + d;
            if (q.x() >= 0 && q.y() >= 0 && q.x() < image.width() && q.y() < image.height() &&
                image.pixel(q) == target) {
                image.setPixel(q, fill);
                queue.push_back(q);
            }
        }
    }
    return count;
}

TEST(FloodFill, FillsTheInsideOfAnOutlineAndNothingBeyond) {
    QImage image = blank(100, 80);
    {
        QPainter p(&image);
        p.setPen(QPen(QColor::fromRgb(Black), 1));
        p.drawRect(10, 10, 50, 40); // pixels 10..60 by 10..50
    }
    const FloodStats stats = floodFill(image, 30, 30, White, Blue, FloodMode::Surface);
    EXPECT_EQ(stats.filled, 49 * 39);
    EXPECT_EQ(image.pixel(11, 11), Blue);
    EXPECT_EQ(image.pixel(59, 49), Blue);
    EXPECT_EQ(image.pixel(10, 10), Black);
    EXPECT_EQ(image.pixel(5, 5), White);
    EXPECT_EQ(image.pixel(70, 70), White);
}

TEST(FloodFill, AgreesWithAPlainWalkOnRandomPictures) {
    QRandomGenerator random(17);
    for (int round = 0; round < 100; ++round) {
        const int density = 20 + round % 50;
        QImage a = blank(64, 48);
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                if (random.bounded(100) < density)
                    a.setPixel(x, y, Black);
        QImage b = a.copy();
        const int x = random.bounded(64), y = random.bounded(48);
        const QRgb target = a.pixel(x, y);
        const FloodStats stats = floodFill(a, x, y, target, Blue, FloodMode::Surface);
        const int64_t expected = reference(b, x, y, Blue);
        EXPECT_EQ(stats.filled, expected) << "round " << round;
        EXPECT_EQ(a, b) << "round " << round;
    }
}

TEST(FloodFill, OnThePixelOfTheFillColourNothingChanges) {
    QImage image = blank(20, 20, Blue);
    const QImage before = image.copy();
    EXPECT_EQ(floodFill(image, 5, 5, Blue, Blue, FloodMode::Surface).filled, 0);
    EXPECT_EQ(image, before);
}

TEST(FloodFill, OutsideThePictureNothingChanges) {
    QImage image = blank(20, 20);
    const QImage before = image.copy();
    EXPECT_EQ(floodFill(image, -1, 5, White, Blue, FloodMode::Surface).filled, 0);
    EXPECT_EQ(floodFill(image, 5, 20, White, Blue, FloodMode::Surface).filled, 0);
    EXPECT_EQ(image, before);
}

TEST(FloodFill, TheBorderModeStopsAtTheBorderColourOnly) {
    QImage image = blank(40, 40);
    {
        QPainter p(&image);
        p.fillRect(5, 5, 10, 10, QColor(Qt::red)); // another colour inside: flooded over
        p.setPen(QColor::fromRgb(Black));
        p.drawRect(0, 0, 30, 30);
    }
    const FloodStats stats = floodFill(image, 20, 20, Black, Blue, FloodMode::Border);
    EXPECT_EQ(stats.filled, 29 * 29);
    EXPECT_EQ(image.pixel(7, 7), Blue);
    EXPECT_EQ(image.pixel(35, 35), White);
}

// A comb of one-pixel walls: the area winds through every column of a
// 10,000 by 10,000 picture, the hardest shape for a scanline fill's stack.
TEST(FloodFill, AHugeWindingAreaIsFilledWithBoundedWorkingMemory) {
    constexpr int Size = 10000;
    QImage image = blank(Size, Size);
    ASSERT_FALSE(image.isNull());
    for (int x = 1; x < Size; x += 2) {
        const bool fromTop = (x / 2) % 2 == 0;
        QRgb* bits = reinterpret_cast<QRgb*>(image.bits());
        const qsizetype stride = image.bytesPerLine() / 4;
        for (int y = fromTop ? 0 : 1; y < (fromTop ? Size - 1 : Size); ++y)
            bits[y * stride + x] = Black;
    }
    const FloodStats stats = floodFill(image, 0, 0, White, Blue, FloodMode::Surface);
    const int64_t walls = static_cast<int64_t>(Size / 2) * (Size - 1);
    EXPECT_EQ(stats.filled, static_cast<int64_t>(Size) * Size - walls);
    EXPECT_EQ(image.pixel(Size - 2, Size - 1), Blue);
    // The stack holds a few segments at a time, not one per row or pixel.
    EXPECT_LT(stats.peakSegments, 64u);
}

TEST(FloodFill, AHugeOpenPictureIsFilledWhole) {
    constexpr int Size = 10000;
    QImage image = blank(Size, Size);
    ASSERT_FALSE(image.isNull());
    const FloodStats stats = floodFill(image, Size / 2, Size / 2, White, Blue, FloodMode::Surface);
    EXPECT_EQ(stats.filled, static_cast<int64_t>(Size) * Size);
    EXPECT_LT(stats.peakSegments, 64u);
}

} // namespace
} // namespace tessaly::colour
