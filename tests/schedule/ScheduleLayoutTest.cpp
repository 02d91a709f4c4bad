// Days and minutes to positions and back, the time scale's tiers at each
// zoom, and what lies under a point of the view.
#include "schedule/ScheduleLayout.h"
#include "ScheduleTestSupport.h"

namespace tessaly::schedule::testing {
namespace {

TEST(ScheduleLayoutMapTest, DaysAndRowsMapToPixelsAndBack) {
    ScheduleView v;
    v.viewport = QSizeF(800, 400);
    v.dayWidth = 28;
    v.originDay = 100;
    const ScheduleLayout l(v, 100, 159, 30);
    EXPECT_DOUBLE_EQ(l.xOf(100), DefaultListWidth);
    EXPECT_DOUBLE_EQ(l.xOf(101.5), DefaultListWidth + 42);
    EXPECT_DOUBLE_EQ(l.dayAt(DefaultListWidth + 14), 100.5);
    EXPECT_DOUBLE_EQ(l.rowTop(1), HeaderHeight);
    EXPECT_EQ(l.rowAt(HeaderHeight - 1), 0);
    EXPECT_EQ(l.rowAt(HeaderHeight), 1);
    EXPECT_EQ(l.rowAt(HeaderHeight + v.rowHeight * 2 + 1), 3);
    EXPECT_DOUBLE_EQ(l.contentWidth(), 60 * 28);
    EXPECT_DOUBLE_EQ(l.lastOriginDay(), 160 - (800 - DefaultListWidth) / 28);
    EXPECT_DOUBLE_EQ(l.lastScrollY(), 30 * v.rowHeight - (400 - HeaderHeight));
    const auto [first, last] = l.rowsIn(l.chartRect());
    EXPECT_EQ(first, 1);
    EXPECT_EQ(last, 18); // 360 pixels of rows of 20
}

TEST(ScheduleLayoutMapTest, LanesShareTheRowsHeight) {
    ScheduleView v;
    v.rowHeight = 40;
    const ScheduleLayout l(v, 0, 10, 2);
    const QRectF top = l.barRect(2, 1, 3, 0, 2);
    const QRectF under = l.barRect(2, 1, 3, 1, 2);
    EXPECT_DOUBLE_EQ(top.top(), l.rowTop(2) + BarPadding);
    EXPECT_DOUBLE_EQ(under.top(), top.top() + 17);
    EXPECT_LE(under.bottom(), l.rowTop(2) + 40 - BarPadding);
    EXPECT_FALSE(top.intersects(under));
}

TEST(ScheduleLayoutMapTest, TheScaleZoomsFromHoursToMonths) {
    EXPECT_EQ(timeScaleFor(MaxDayWidth).name(), "Hours");
    EXPECT_EQ(timeScaleFor(MaxDayWidth).hourStep, 1);
    EXPECT_EQ(timeScaleFor(200).hourStep, 6);
    EXPECT_EQ(timeScaleFor(DefaultDayWidth).name(), "Days");
    EXPECT_EQ(timeScaleFor(8).name(), "Weeks");
    EXPECT_EQ(timeScaleFor(MinDayWidth).name(), "Months");
    EXPECT_EQ(timeScaleFor(MinDayWidth).top, TimeUnit::Year);
}

TEST(ScheduleLayoutMapTest, MarksFollowTheCalendar) {
    std::vector<QDate> months;
    const double from = static_cast<double>(dayOfDate(QDate(2026, 8, 20)));
    const double to = static_cast<double>(dayOfDate(QDate(2026, 10, 5)));
    forEachMark(TimeUnit::Month, 1, from, to, [&](double start, double end) {
        months.push_back(dateOfDay(static_cast<int64_t>(start)));
        EXPECT_GT(end, start);
    });
    EXPECT_EQ(months, (std::vector<QDate>{QDate(2026, 8, 1), QDate(2026, 9, 1), QDate(2026, 10, 1)}));
    std::vector<int> weekdays;
    forEachMark(TimeUnit::Week, 1, from, from + 20, [&](double start, double) {
        weekdays.push_back(dateOfDay(static_cast<int64_t>(start)).dayOfWeek());
    });
    EXPECT_EQ(weekdays, (std::vector<int>{1, 1, 1, 1})); // Mondays
    int hours = 0;
    forEachMark(TimeUnit::Hour, 3, 10, 11 - 1e-9, [&](double, double) { ++hours; });
    EXPECT_EQ(hours, 8);
}

using ScheduleHitTest = ScheduleTest;

TEST_F(ScheduleHitTest, PointsFindRowsBarsAndTheirEnds) {
    s.addBar(2, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440}); // days 2 to 5 of the range, 112 pixels
    const double y = yOf(2);
    const Hit body = s.hitTest(xOf(d0 + 4), y);
    EXPECT_EQ(body.part, Hit::Part::BarBody);
    EXPECT_EQ(body.row, 2);
    EXPECT_EQ(body.bar, 1);
    EXPECT_EQ(s.hitTest(xOf(d0 + 2) + 2, y).part, Hit::Part::BarStart);
    EXPECT_EQ(s.hitTest(xOf(d0 + 6) - 2, y).part, Hit::Part::BarEnd);
    EXPECT_EQ(s.hitTest(xOf(d0 + 6) + 3, y).part, Hit::Part::BarEnd); // just outside: still its grip
    const Hit free = s.hitTest(xOf(d0 + 10), y);
    EXPECT_EQ(free.part, Hit::Part::Row);
    EXPECT_EQ(free.bar, 0);
    EXPECT_NEAR(free.day, d0 + 10, 1e-9);
    EXPECT_EQ(s.hitTest(xOf(d0 + 4), yOf(1)).part, Hit::Part::Row);
    EXPECT_EQ(s.hitTest(xOf(d0 + 4), yOf(4)).part, Hit::Part::None); // below the last row
    EXPECT_EQ(s.hitTest(xOf(d0 + 4), 10).part, Hit::Part::None);     // the time scale
    EXPECT_EQ(s.hitTest(50, y).part, Hit::Part::None);               // the row titles
    EXPECT_EQ(s.pointerAt(xOf(d0 + 4), y), Pointer::Move);
    EXPECT_EQ(s.pointerAt(xOf(d0 + 2) + 1, y), Pointer::Stretch);
    EXPECT_EQ(s.pointerAt(xOf(d0 + 10), y), Pointer::Draw);
    EXPECT_EQ(s.pointerAt(50, y), Pointer::Arrow);
}

TEST_F(ScheduleHitTest, StackedBarsAreFoundInTheirLanes) {
    s.addBar(1, DayTime{d0 + 1, 0}, DayTime{d0 + 6, 0});
    s.addBar(1, DayTime{d0 + 3, 0}, DayTime{d0 + 8, 0});
    const QRectF top = s.barBox(1, 1);
    const QRectF under = s.barBox(1, 2);
    EXPECT_LT(top.bottom(), under.top() + 1);
    EXPECT_EQ(s.hitTest(xOf(d0 + 4), top.center().y()).bar, 1);
    EXPECT_EQ(s.hitTest(xOf(d0 + 4), under.center().y()).bar, 2);
}

TEST_F(ScheduleHitTest, ABarOfNoLengthIsFoundAtItsDiamond) {
    s.addBar(3, DayTime{d0 + 7, 720}, DayTime{d0 + 7, 720});
    const Hit h = s.hitTest(xOf(d0 + 7.5) + 3, yOf(3));
    EXPECT_EQ(h.part, Hit::Part::BarBody);
    EXPECT_EQ(h.bar, 1);
}

TEST_F(ScheduleHitTest, TheViewScrollsAndZoomsWithinTheRange) {
    s.setOriginDay(d0 - 100);
    EXPECT_DOUBLE_EQ(s.originDay(), d0);
    s.setOriginDay(d0 + 1000);
    EXPECT_DOUBLE_EQ(s.originDay(), s.layout().lastOriginDay());
    s.setOriginDay(d0);
    const double x = xOf(d0 + 10);
    s.wheel(120, mouse::CtrlKey, x, yOf(1));
    EXPECT_DOUBLE_EQ(s.dayWidth(), DefaultDayWidth * 1.25);
    EXPECT_NEAR(s.layout().dayAt(x), d0 + 10, 1e-9); // the day under the pointer stays
    for (int i = 0; i < 40; ++i)
        s.wheel(120, mouse::CtrlKey, x, yOf(1));
    EXPECT_DOUBLE_EQ(s.dayWidth(), MaxDayWidth);
    EXPECT_EQ(s.timeScaleName(), "Hours");
    EXPECT_EQ(s.snapMinutes(), 15);
    for (int i = 0; i < 80; ++i)
        s.wheel(-120, mouse::CtrlKey, x, yOf(1));
    EXPECT_DOUBLE_EQ(s.dayWidth(), MinDayWidth);
    EXPECT_EQ(s.timeScaleName(), "Months");
    EXPECT_EQ(s.snapMinutes(), 1440);
}

} // namespace
} // namespace tessaly::schedule::testing
