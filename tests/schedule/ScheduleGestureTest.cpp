// What the mouse does on the chart and the events it raises on the form, with
// their arguments: drawing a bar, moving it, stretching either end, double
// clicks, pointing with the tip, the selection and the keys that cancel.
#include "ScheduleTestSupport.h"

namespace tessaly::schedule::testing {
namespace {

using mouse::Left;

class ScheduleGestureTest : public ScheduleTest {
protected:
    void drag(double x1, double y1, double x2, double y2) {
        s.mousePress(Left, 0, x1, y1);
        s.mouseMove(Left, 0, (x1 + x2) / 2, (y1 + y2) / 2);
        s.mouseMove(Left, 0, x2, y2);
        s.mouseRelease(Left, 0, x2, y2);
    }
    void click(double x, double y) {
        s.mousePress(Left, 0, x, y);
        s.mouseRelease(Left, 0, x, y);
    }
};

TEST_F(ScheduleGestureTest, DraggingOverFreeDaysDrawsABarOverWholeDays) {
    drag(xOf(d0 + 2.2), yOf(2), xOf(d0 + 4.7), yOf(2));
    ASSERT_EQ(s.model().barCount(2), 1);
    const Bar& b = s.model().bar(2, 1);
    EXPECT_EQ(b.start, (DayTime{d0 + 2, 0}));
    EXPECT_EQ(b.end, (DayTime{d0 + 4, 1440}));
    EXPECT_EQ(form->events, QStringList{"BarDrawn 2 1 True False"});
    EXPECT_EQ(s.model().selectedRow(), 2);
    EXPECT_EQ(s.model().selectedBar(), 1);
    EXPECT_FALSE(s.preview().has_value());
}

TEST_F(ScheduleGestureTest, DrawingRightToLeftGivesTheSameBar) {
    drag(xOf(d0 + 4.7), yOf(1), xOf(d0 + 2.2), yOf(1));
    ASSERT_EQ(s.model().barCount(1), 1);
    EXPECT_EQ(s.model().bar(1, 1).start, (DayTime{d0 + 2, 0}));
    EXPECT_EQ(s.model().bar(1, 1).end, (DayTime{d0 + 4, 1440}));
}

TEST_F(ScheduleGestureTest, AtTheHourScaleBarsSnapToQuarterHours) {
    s.setDayWidth(MaxDayWidth);        // 120 pixels an hour
    s.setOriginDay(d0 + 3 + 8.5 / 24); // the view starts at 8:30
    drag(xOf(d0 + 3 + 9.1 / 24), yOf(1), xOf(d0 + 3 + 11.55 / 24), yOf(1));
    ASSERT_EQ(s.model().barCount(1), 1);
    EXPECT_EQ(s.model().bar(1, 1).start, (DayTime{d0 + 3, 9 * 60}));
    EXPECT_EQ(s.model().bar(1, 1).end, (DayTime{d0 + 3, 11 * 60 + 45}));
}

TEST_F(ScheduleGestureTest, APreviewFollowsTheDragUntilRelease) {
    s.mousePress(Left, 0, xOf(d0 + 1.5), yOf(3));
    s.mouseMove(Left, 0, xOf(d0 + 1.5) + 2, yOf(3));
    EXPECT_FALSE(s.preview().has_value()); // not yet a drag
    s.mouseMove(Left, 0, xOf(d0 + 3.5), yOf(3));
    ASSERT_TRUE(s.preview().has_value());
    EXPECT_EQ(s.preview()->row, 3);
    EXPECT_EQ(s.preview()->bar, 0);
    EXPECT_DOUBLE_EQ(s.preview()->low, d0 + 1);
    EXPECT_DOUBLE_EQ(s.preview()->high, d0 + 4);
    EXPECT_EQ(s.model().totalBars(), 0); // nothing until the button is released
    EXPECT_TRUE(form->events.isEmpty());
    s.keyPress(EscapeKey, 0);
    EXPECT_FALSE(s.preview().has_value());
    s.mouseRelease(Left, 0, xOf(d0 + 3.5), yOf(3));
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_TRUE(form->events.isEmpty());
}

TEST_F(ScheduleGestureTest, AHandlerThatCancelsTakesTheDrawnBarAway) {
    form->cancelDrawing = true;
    drag(xOf(d0 + 2.2), yOf(2), xOf(d0 + 4.7), yOf(2));
    EXPECT_EQ(form->events, QStringList{"BarDrawn 2 1 True False"});
    EXPECT_EQ(s.model().barCount(2), 0);
    EXPECT_EQ(s.model().selectedBar(), 0);
}

TEST_F(ScheduleGestureTest, MovingABarRaisesBarChangedWithItsNewValues) {
    const int bar = s.addBar(1, DayTime{d0 + 2, 480}, DayTime{d0 + 3, 1020});
    s.editBar(1, bar).text = "Pour slab";
    drag(xOf(d0 + 3), yOf(1), xOf(d0 + 5.2), yOf(1)); // two days later
    EXPECT_EQ(form->events,
              (QStringList{"BarSelected 1 1", "BarChanged 1 1 Pour slab 480 1020 " + QString::number(d0 + 4) +
                                                  " " + QString::number(d0 + 5)}));
    EXPECT_EQ(s.model().bar(1, 1).start, (DayTime{d0 + 4, 480}));
    EXPECT_EQ(s.model().bar(1, 1).end, (DayTime{d0 + 5, 1020}));
}

TEST_F(ScheduleGestureTest, StretchingEitherEndMovesOnlyThatEnd) {
    s.addBar(2, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440});
    drag(xOf(d0 + 6) - 2, yOf(2), xOf(d0 + 8) + 3, yOf(2));
    EXPECT_EQ(s.model().bar(2, 1).start, (DayTime{d0 + 2, 0}));
    EXPECT_EQ(s.model().bar(2, 1).end, (DayTime{d0 + 7, 1440}));
    EXPECT_EQ(form->events.last(), QStringLiteral("BarChanged 2 1  0 1440 %1 %2").arg(d0 + 2).arg(d0 + 7));
    drag(xOf(d0 + 2) + 2, yOf(2), xOf(d0 + 1) - 3, yOf(2));
    EXPECT_EQ(s.model().bar(2, 1).start, (DayTime{d0 + 1, 0}));
    EXPECT_EQ(s.model().bar(2, 1).end, (DayTime{d0 + 7, 1440}));
    // The start cannot pass the end: it stops a day before it.
    drag(xOf(d0 + 1) + 2, yOf(2), xOf(d0 + 20), yOf(2));
    EXPECT_EQ(s.model().bar(2, 1).start, (DayTime{d0 + 7, 0}));
}

TEST_F(ScheduleGestureTest, AClickSelectsAndAClickOnFreeSpaceClears) {
    s.addBar(3, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440});
    click(xOf(d0 + 4), yOf(3));
    EXPECT_EQ(s.model().selectedRow(), 3);
    EXPECT_EQ(s.model().selectedBar(), 1);
    EXPECT_EQ(s.model().totalBars(), 1);
    click(xOf(d0 + 4), yOf(3)); // the same again: no event
    click(xOf(d0 + 20), yOf(3));
    EXPECT_EQ(s.model().selectedRow(), 0);
    EXPECT_EQ(s.model().selectedBar(), 0);
    EXPECT_EQ(form->events, (QStringList{"BarSelected 3 1", "BarSelected 0 0"}));
    EXPECT_EQ(s.model().totalBars(), 1); // a click draws nothing
}

TEST_F(ScheduleGestureTest, ADoubleClickActivatesTheBar) {
    s.addBar(1, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440});
    const double x = xOf(d0 + 4), y = yOf(1);
    s.mousePress(Left, 0, x, y);
    s.mouseRelease(Left, 0, x, y);
    s.mouseDoubleClick(Left, 0, x, y);
    s.mouseRelease(Left, 0, x, y);
    EXPECT_EQ(form->events, (QStringList{"BarSelected 1 1", "BarActivated 1 1"}));
    EXPECT_EQ(s.model().bar(1, 1).start, (DayTime{d0 + 2, 0})); // unchanged
}

TEST_F(ScheduleGestureTest, PointingAtABarShowsItsTipAtThePointer) {
    const int bar = s.addBar(2, DayTime{d0 + 2, 510}, DayTime{d0 + 5, 1020});
    s.editBar(2, bar).text = "Footings";
    s.editBar(2, bar).comment = "Dig by hand";
    const double x = xOf(d0 + 4), y = yOf(2);
    s.mouseMove(0, 0, x, y);
    s.mouseMove(0, 0, x + 5, y); // the same bar: pointed once
    EXPECT_EQ(form->events, QStringList{"BarPointed 2 1"});
    ASSERT_TRUE(s.shownTip().has_value());
    EXPECT_EQ(
        s.shownTip()->text,
        " Footings\r\nComments: Dig by hand \n From - 04/11/2026  8:30 AM \n   To - 07/11/2026  5:00 PM ");
    EXPECT_EQ(s.shownTip()->anchor, QPointF(x, y));
    s.mouseMove(0, 0, xOf(d0 + 30), y);
    EXPECT_FALSE(s.shownTip().has_value());
    s.mouseMove(0, 0, x, y);
    EXPECT_EQ(form->events.size(), 2);
    s.mouseLeave();
    EXPECT_FALSE(s.shownTip().has_value());
}

TEST_F(ScheduleGestureTest, NoRowsMeansNoBarCanBeDrawn) {
    s.clearAll();
    drag(xOf(d0 + 2), HeaderHeight + 5, xOf(d0 + 5), HeaderHeight + 5);
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_TRUE(form->events.isEmpty());
}

TEST_F(ScheduleGestureTest, AHandlerThatRebuildsTheChartDuringAGestureLeavesNoStaleBar) {
    s.addBar(1, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440});
    form->on("ctSchedule1", "BarSelected", [this](Control&, EventArgs&) { s.clearAll(); });
    drag(xOf(d0 + 4), yOf(1), xOf(d0 + 8), yOf(1));
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_FALSE(s.preview().has_value());
}

TEST_F(ScheduleGestureTest, HandlersErrorsGoToTheDispatcherAndTheControlGoesOn) {
    s.addBar(1, DayTime{d0 + 2, 0}, DayTime{d0 + 5, 1440});
    form->on("ctSchedule1", "BarActivated",
             [](Control&, EventArgs&) { raiseError(94, QStringLiteral("Invalid use of Null")); });
    s.mouseDoubleClick(Left, 0, xOf(d0 + 4), yOf(1));
    ASSERT_FALSE(portEvents.empty());
    EXPECT_EQ(portEvents.back().value("event").toString(), "msgbox");
    EXPECT_TRUE(portEvents.back().value("text").toString().startsWith("Run-time error '94':"));
    drag(xOf(d0 + 10), yOf(1), xOf(d0 + 12), yOf(1));
    EXPECT_EQ(s.model().barCount(1), 2);
}

TEST_F(ScheduleGestureTest, TheRightButtonDoesNothing) {
    s.mousePress(mouse::Right, 0, xOf(d0 + 2), yOf(1));
    s.mouseMove(mouse::Right, 0, xOf(d0 + 6), yOf(1));
    s.mouseRelease(mouse::Right, 0, xOf(d0 + 6), yOf(1));
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_TRUE(form->events.isEmpty());
}

} // namespace
} // namespace tessaly::schedule::testing
