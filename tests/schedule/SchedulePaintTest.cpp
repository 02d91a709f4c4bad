// What the chart paints: bars in their colours, overlapping bars one under the
// other, the odd bars (no row, far outside the range, no length, end before
// start, a row that never comes) without a crash, the tip, and only the area
// asked for.
#include "ScheduleTestSupport.h"

#include <QImage>
#include <QPainter>

namespace tessaly::schedule::testing {
namespace {

// Colours of the test bars (0x00BBGGRR) and as the image holds them.
constexpr Colour Red = 0x0000D0;
constexpr Colour Blue = 0xD00000;
constexpr Colour Green = 0x00B000;
constexpr Colour Unique = 0x7F1F9F; // a colour nothing else in the chart has
// The colour an image starts with, which the chart paints over.
const QColor Untouched(255, 0, 255);
// The hatching of a bar whose end precedes its start.
const QColor Hatch(176, 48, 48);
// The tip's background.
const QColor TipBack(255, 255, 225);

QColor rgb(Colour c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                  static_cast<int>((c >> 16) & 0xFF));
}

class SchedulePaintTest : public ScheduleTest {
protected:
    QImage paint(const QRectF& area = {}) {
        QImage image(800, 400, QImage::Format_RGB32);
        image.fill(Untouched);
        QPainter p(&image);
        s.paint(p, area);
        p.end();
        return image;
    }
    int bar(int row, DayTime start, DayTime end, Colour colour) {
        const int b = s.addBar(row, start, end);
        s.editBar(row, b).colour = colour;
        return b;
    }
    static int count(const QImage& image, const QRect& box, const QColor& colour) {
        int n = 0;
        const QRect r = box.intersected(image.rect());
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x)
                if (image.pixelColor(x, y) == colour)
                    ++n;
        return n;
    }
};

TEST_F(SchedulePaintTest, BarsShowInTheirColoursOnTheirRows) {
    bar(1, DayTime{d0 + 1, 0}, DayTime{d0 + 4, 1440}, Red);
    bar(2, DayTime{d0 + 3, 0}, DayTime{d0 + 9, 1440}, Blue);
    const QImage image = paint();
    const QRectF red = s.barBox(1, 1), blue = s.barBox(2, 1);
    EXPECT_EQ(image.pixelColor(QPointF(red.right() - 4, red.center().y()).toPoint()), rgb(Red));
    EXPECT_EQ(image.pixelColor(QPointF(blue.right() - 4, blue.center().y()).toPoint()), rgb(Blue));
    EXPECT_EQ(count(image, QRect(0, 0, 800, 400), Untouched), 0); // the whole view is painted
    EXPECT_EQ(count(image, blue.toAlignedRect(), rgb(Red)), 0);
}

TEST_F(SchedulePaintTest, OverlappingBarsStayVisibleOneUnderTheOther) {
    s.setRowSetting(30);
    bar(2, DayTime{d0 + 1, 0}, DayTime{d0 + 8, 0}, Red);
    bar(2, DayTime{d0 + 4, 0}, DayTime{d0 + 12, 0}, Blue);
    bar(2, DayTime{d0 + 5, 0}, DayTime{d0 + 6, 0}, Green);
    const QImage image = paint();
    // Over day 5, all three show in one column of the row.
    const QRect column(static_cast<int>(xOf(d0 + 5.5)), static_cast<int>(s.layout().rowTop(2)), 1,
                       static_cast<int>(s.layout().rowHeight(2)));
    EXPECT_GT(count(image, column, rgb(Red)), 3);
    EXPECT_GT(count(image, column, rgb(Blue)), 3);
    EXPECT_GT(count(image, column, rgb(Green)), 3);
}

TEST_F(SchedulePaintTest, OddBarsDrawWithoutACrash) {
    bar(0, DayTime{d0 + 1, 0}, DayTime{d0 + 5, 0}, Unique);           // row 0
    bar(-3, DayTime{d0 + 1, 0}, DayTime{d0 + 5, 0}, Unique);          // a negative row
    bar(99, DayTime{d0 + 1, 0}, DayTime{d0 + 5, 0}, Unique);          // a row that does not exist
    bar(1, DayTime{d0 + 100000, 0}, DayTime{d0 + 100001, 0}, Unique); // far after the range
    bar(1, DayTime{d0 - 100000, 0}, DayTime{d0 - 99999, 0}, Unique);  // far before it
    bar(2, DayTime{d0 - 2000000, 0}, DayTime{d0 + 2000000, 0}, Red);  // across everything
    const int diamond = bar(3, DayTime{d0 + 6, 720}, DayTime{d0 + 6, 720}, Blue);
    const int reversed = bar(3, DayTime{d0 + 15, 0}, DayTime{d0 + 10, 0}, Green);
    s.editBar(3, reversed).text = "Ends before it starts";
    const QImage image = paint();
    EXPECT_EQ(count(image, image.rect(), rgb(Unique)), 0);
    // The bar across everything fills its row over the whole chart.
    const QRectF chart = s.layout().chartRect();
    const int across = count(image,
                             QRect(static_cast<int>(chart.left()) + 5, static_cast<int>(yOf(2)),
                                   static_cast<int>(chart.width()) - 10, 1),
                             rgb(Red));
    EXPECT_EQ(across, static_cast<int>(chart.width()) - 10);
    // A bar of no length is a diamond at its instant.
    const QRectF box = s.barBox(3, diamond);
    EXPECT_NEAR(box.center().x(), xOf(d0 + 6.5), 1e-9);
    EXPECT_EQ(image.pixelColor(box.center().toPoint()), rgb(Blue));
    // A bar whose end precedes its start spans between them, hatched.
    const QRectF hatched = s.barBox(3, reversed);
    EXPECT_NEAR(hatched.left(), xOf(d0 + 10), 1e-9);
    EXPECT_NEAR(hatched.right(), xOf(d0 + 15), 1e-9);
    EXPECT_GT(count(image, hatched.toAlignedRect(), Hatch), 20);
    EXPECT_GT(count(image, hatched.toAlignedRect(), rgb(Green)), 20);
}

TEST_F(SchedulePaintTest, BarsOnARowThatComesLaterShowOnceItExists) {
    bar(4, DayTime{d0 + 1, 0}, DayTime{d0 + 5, 0}, Unique);
    EXPECT_EQ(count(paint(), QRect(0, 0, 800, 400), rgb(Unique)), 0);
    s.addRow("Roof");
    EXPECT_GT(count(paint(), QRect(0, 0, 800, 400), rgb(Unique)), 50);
}

TEST_F(SchedulePaintTest, OnlyTheAreaAskedForIsPainted) {
    bar(2, DayTime{d0 + 1, 0}, DayTime{d0 + 9, 0}, Red);
    const QRectF band(0, s.layout().rowTop(2), 800, s.view().rowHeight);
    const QImage image = paint(band);
    EXPECT_EQ(count(image, band.toRect(), Untouched), 0);
    EXPECT_EQ(count(image, QRect(0, 0, 800, static_cast<int>(band.top())), Untouched),
              800 * static_cast<int>(band.top()));
    EXPECT_GT(count(image, band.toRect(), rgb(Red)), 100);
}

TEST_F(SchedulePaintTest, RowsNotReadyShowNoBars) {
    bar(1, DayTime{d0 + 1, 0}, DayTime{d0 + 9, 0}, Red);
    s.setRowsReady(false);
    EXPECT_EQ(count(paint(), QRect(0, 0, 800, 400), rgb(Red)), 0);
    s.setRowsReady(true);
    EXPECT_GT(count(paint(), QRect(0, 0, 800, 400), rgb(Red)), 100);
}

TEST_F(SchedulePaintTest, ThePointedBarsTipIsPainted) {
    bar(1, DayTime{d0 + 1, 0}, DayTime{d0 + 9, 0}, Red);
    s.mouseMove(0, 0, xOf(d0 + 3), yOf(1));
    ASSERT_TRUE(s.shownTip().has_value());
    const QRectF tip = ScheduleRenderer(s.model(), s.design(), s.layout()).tipRect(*s.shownTip());
    EXPECT_GT(tip.height(), 40); // three lines
    const QImage image = paint();
    EXPECT_GT(count(image, tip.toRect(), TipBack), static_cast<int>(tip.width() * tip.height() / 3));
}

} // namespace
} // namespace tessaly::schedule::testing
