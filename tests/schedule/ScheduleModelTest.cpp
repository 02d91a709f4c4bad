// The control's rows, bars, design values and members as the program reaches
// them by name, with the rounding of dates on their way into the chart.
#include "schedule/ScheduleModel.h"
#include "ScheduleTestSupport.h"
#include "core/runtime/RuntimeError.h"

#include <QDateTime>

namespace tessaly::schedule::testing {
namespace {

QVariant call(AutoObject& o, const char* name, QVariantList args) {
    return o.call(QString::fromLatin1(name), args);
}

int errorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST(ScheduleDesignTest, NamesMaskAndHoursAreTheDesigns) {
    const ScheduleDesign d;
    EXPECT_EQ(d.listTitle, "Project Element");
    EXPECT_EQ(d.monthName(9), "Sept");
    EXPECT_EQ(d.monthName(12), "Dec");
    EXPECT_EQ(d.dayName(7), "Sun");
    EXPECT_EQ(d.dayName(1), "Mon");
    EXPECT_EQ(d.formatDate(QDate(2026, 11, 23)), "Mon, Nov 23/2026");
    EXPECT_EQ(d.formatDate(QDate(2026, 9, 6)), "Sun, Sept 6/2026");
    EXPECT_EQ(d.hourText(0), "12a");
    EXPECT_EQ(d.hourText(9), "9a");
    EXPECT_EQ(d.hourText(12), "12p");
    EXPECT_EQ(d.hourText(23), "11p");
    EXPECT_EQ(d.printHeading, "Tessaly::Project Schedule");
    EXPECT_EQ(d.printFooter, "Report");
}

TEST(ScheduleDesignTest, DayNumbersAreDateSerials) {
    EXPECT_EQ(dateOfDay(0), QDate(1899, 12, 30));
    EXPECT_EQ(dayOfDate(QDate(1900, 1, 1)), 2);
    EXPECT_EQ(isoDay(dayOfDate(QDate(2026, 11, 23))), QString("2026-11-23"));
    EXPECT_FALSE(isoDay(5000000).has_value());
}

TEST(ScheduleDesignTest, EndsOnAMidnightBelongToTheDayBefore) {
    EXPECT_EQ(startAt(10 * 1440 + 90), (DayTime{10, 90}));
    EXPECT_EQ(endAt(11 * 1440), (DayTime{10, 1440}));
    EXPECT_EQ(endAt(11 * 1440 + 15), (DayTime{11, 15}));
    EXPECT_EQ(startAt(-30), (DayTime{-1, 1410}));
    EXPECT_EQ(shifted(DayTime{10, 1440}, 2 * 1440), (DayTime{12, 1440}));
    EXPECT_EQ(shifted(DayTime{10, 600}, -660), (DayTime{9, 1380}));
}

TEST(ScheduleModelTest, BarsAreNumberedWithinTheirRow) {
    ScheduleModel m;
    m.addRow("A");
    EXPECT_EQ(m.addBar(1, Bar{}), 1);
    EXPECT_EQ(m.addBar(1, Bar{}), 2);
    EXPECT_EQ(m.addBar(7, Bar{}), 1); // a row that does not exist keeps its bars
    EXPECT_EQ(m.barCount(1), 2);
    EXPECT_EQ(m.barCount(7), 1);
    EXPECT_EQ(m.totalBars(), 3);
    EXPECT_TRUE(m.hasBar(7, 1));
    EXPECT_FALSE(m.hasBar(1, 3));
    EXPECT_FALSE(m.hasBar(1, 0));
    m.removeLastBar(1);
    EXPECT_EQ(m.barCount(1), 1);
    m.clear();
    EXPECT_EQ(m.rowCount(), 0);
    EXPECT_EQ(m.totalBars(), 0);
}

TEST(ScheduleModelTest, OverlappingBarsStackInLanes) {
    ScheduleModel m;
    auto span = [](int from, int to) {
        Bar b;
        b.start = DayTime{from, 0};
        b.end = DayTime{to, 0};
        return b;
    };
    m.addBar(1, span(10, 20)); // lane 0
    m.addBar(1, span(12, 14)); // overlaps the first: lane 1
    m.addBar(1, span(13, 30)); // overlaps both: lane 2
    m.addBar(1, span(20, 25)); // starts where the first ends: lane 0 again
    m.addBar(1, span(15, 16)); // lane 1 is free again after day 14
    EXPECT_EQ(m.lanes(1), 3);
    EXPECT_EQ(m.laneOf(1, 1), 0);
    EXPECT_EQ(m.laneOf(1, 2), 1);
    EXPECT_EQ(m.laneOf(1, 3), 2);
    EXPECT_EQ(m.laneOf(1, 4), 0);
    EXPECT_EQ(m.laneOf(1, 5), 1);
    std::vector<int> found;
    m.barsBetween(1, 21, 22, [&](const ScheduleModel::Placed& p) { found.push_back(p.bar); });
    EXPECT_EQ(found, (std::vector<int>{3, 4}));
    found.clear();
    m.barsBetween(1, 31, 40, [&](const ScheduleModel::Placed& p) { found.push_back(p.bar); });
    EXPECT_TRUE(found.empty());
}

TEST(ScheduleModelTest, AReversedBarSpansFromItsEndToItsStart) {
    ScheduleModel m;
    Bar b;
    b.start = DayTime{20, 0};
    b.end = DayTime{10, 0};
    m.addBar(1, b);
    EXPECT_TRUE(m.bar(1, 1).reversed());
    std::vector<int> found;
    m.barsBetween(1, 15, 15, [&](const ScheduleModel::Placed& p) { found.push_back(p.bar); });
    EXPECT_EQ(found, std::vector<int>{1});
}

using ScheduleMembersTest = ScheduleTest;

TEST_F(ScheduleMembersTest, TheProgramBuildsRowsAndBarsByName) {
    AutoObject& c = form->ctSchedule1; // the control forwards to its engine
    call(c, "ClearAll", {});
    c.set("RowSetting", 15);
    c.set("FirstDay", d0 - 30);
    c.set("LastDay", d0 + 90);
    call(c, "AddRow", {"Footings"});
    call(c, "AddRow", {"Footings"}); // two time lines may bear the same text
    c.set("RowsReady", true);
    const QVariant bar = call(c, "AddBar", {2, 480, 1020, d0 + 3, d0 + 4});
    EXPECT_EQ(bar.toInt(), 1);
    c.set("BarText", "Pour", {2, 1});
    c.set("BarComment", "Ready-mix", {2, 1});
    c.set("BarTextAlign", 2, {2, 1});
    c.set("BarKey", 17, {2, 1});
    c.set("BarColour", 0x00FF00, {2, 1});
    c.set("Picture", QVariant());
    EXPECT_EQ(call(c, "AddPicture", {c.get("Picture")}).toInt(), 1);
    EXPECT_EQ(c.get("RowText", {2}).toString(), "Footings");
    EXPECT_EQ(c.get("BarStartTime", {2, 1}).toInt(), 480);
    EXPECT_EQ(c.get("BarEndTime", {2, 1}).toInt(), 1020);
    EXPECT_EQ(c.get("BarStartDate", {2, 1}).toInt(), d0 + 3);
    EXPECT_EQ(c.get("BarEndDate", {2, 1}).toInt(), d0 + 4);
    EXPECT_EQ(c.get("BarKey", {2, 1}).toString(), "17");
    EXPECT_EQ(c.get("BarText", {2, 1}).toString(), "Pour");
    EXPECT_EQ(c.get("BarStyle", {2, 1}).toInt(), DefaultBarStyle);
    EXPECT_EQ(c.get("FirstDay").toInt(), d0 - 30);
    EXPECT_EQ(c.get("LastDay").toInt(), d0 + 90);
    EXPECT_EQ(c.get("RowSetting").toInt(), 15);
    EXPECT_EQ(c.get("ListTitle").toString(), "Project Element");
    EXPECT_EQ(c.get("Rows").toStringList(), (QStringList{"Footings", "Footings"}));
    const QVariantList bars = c.get("Bars").toList();
    ASSERT_EQ(bars.size(), 1);
    const QVariantMap b = bars[0].toMap();
    EXPECT_EQ(b["row"].toInt(), 2);
    EXPECT_EQ(b["bar"].toInt(), 1);
    EXPECT_EQ(b["key"].toString(), "17");
    EXPECT_EQ(b["text"].toString(), "Pour");
    EXPECT_EQ(b["comment"].toString(), "Ready-mix");
    EXPECT_EQ(b["colour"].toInt(), 0x00FF00);
    EXPECT_EQ(b["align"].toInt(), 2);
    EXPECT_EQ(b["startDate"].toString(), "2026-11-05");
    EXPECT_EQ(b["endDate"].toString(), "2026-11-06");
    EXPECT_EQ(b["startTime"].toInt(), 480);
    EXPECT_EQ(b["endTime"].toInt(), 1020);
}

TEST_F(ScheduleMembersTest, DatesRoundToWholeDaysOnTheWayIn) {
    AutoObject& c = form->ctSchedule1;
    // A start past noon shows on the following day; halves go to the even day.
    call(c, "AddBar", {1, 0, 0, d0 + 0.6, d0 + 2.4});
    call(c, "AddBar", {1, 0, 0, 46349.5, 46350.5});
    call(c, "AddBar", {1, 0, 0, QDateTime(QDate(2026, 11, 23), QTime(14, 30)), QDate(2026, 11, 24)});
    EXPECT_EQ(c.get("BarStartDate", {1, 1}).toInt(), d0 + 1);
    EXPECT_EQ(c.get("BarEndDate", {1, 1}).toInt(), d0 + 2);
    EXPECT_EQ(c.get("BarStartDate", {1, 2}).toInt(), 46350);
    EXPECT_EQ(c.get("BarEndDate", {1, 2}).toInt(), 46350);
    EXPECT_EQ(c.get("BarStartDate", {1, 3}).toInt(), dayOfDate(QDate(2026, 11, 24)));
    EXPECT_EQ(c.get("BarEndDate", {1, 3}).toInt(), dayOfDate(QDate(2026, 11, 24)));
}

TEST_F(ScheduleMembersTest, BarsThatDoNotExistRaise381) {
    AutoObject& c = form->ctSchedule1;
    EXPECT_EQ(errorOf([&] { c.get("BarKey", {1, 1}); }), InvalidPropertyIndex);
    EXPECT_EQ(errorOf([&] { c.set("BarText", "x", {1, 1}); }), InvalidPropertyIndex);
    EXPECT_EQ(errorOf([&] { c.get("RowText", {4}); }), InvalidPropertyIndex);
    EXPECT_EQ(errorOf([&] { c.get("RowText", {0}); }), InvalidPropertyIndex);
    call(c, "AddBar", {1, 0, 0, d0, d0});
    EXPECT_EQ(errorOf([&] { c.set("BarColour", 0x1000000, {1, 1}); }), err::InvalidProcedureCall);
    EXPECT_EQ(errorOf([&] { c.set("RowSetting", 40000); }), err::Overflow);
    EXPECT_EQ(errorOf([&] { c.get("NoSuchMember"); }), err::NotSupported);
}

TEST_F(ScheduleMembersTest, ClearAllKeepsTheRangeAndEmptiesTheSelection) {
    s.drawBar(1, DayTime{d0, 0}, DayTime{d0, 1440});
    EXPECT_EQ(s.model().selectedRow(), 1);
    call(form->ctSchedule1, "ClearAll", {});
    EXPECT_EQ(s.model().rowCount(), 0);
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_EQ(form->ctSchedule1.get("SelectedRow").toInt(), 0);
    EXPECT_EQ(form->ctSchedule1.get("SelectedBar").toInt(), 0);
    EXPECT_EQ(s.firstDay(), d0);
    EXPECT_EQ(s.lastDay(), d0 + 59);
}

TEST_F(ScheduleMembersTest, TheTipsShowTheirTextOnlyOnAPointedBar) {
    s.addBar(1, DayTime{d0, 480}, DayTime{d0 + 1, 1020});
    form->ctTips1.set("TipText", "lonely");
    EXPECT_EQ(form->ctTips1.get("TipText").toString(), "lonely");
    EXPECT_FALSE(s.shownTip().has_value()); // no bar is pointed at
    EXPECT_FALSE(form->ctTips1.visible());
    s.pointBar(1, 1);
    ASSERT_TRUE(s.shownTip().has_value());
    EXPECT_EQ(s.shownTip()->text,
              " \r\nComments:  \n From - 02/11/2026  8:00 AM \n   To - 03/11/2026  5:00 PM ");
    EXPECT_EQ(form->events, QStringList{"BarPointed 1 1"});
}

} // namespace
} // namespace tessaly::schedule::testing
