#pragma once

#include "ScheduleModel.h"

#include <QDate>
#include <QRectF>
#include <QSizeF>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tessaly::schedule {

// Sizes of the chart, in logical pixels (pixels of a 96 dpi screen; a print
// scales them to the paper).
constexpr double DefaultListWidth = 180; // the column of row titles
constexpr double TierHeight = 20;        // each of the time scale's two tiers
constexpr double HeaderHeight = 2 * TierHeight;
constexpr double BarPadding = 3; // space above and below the bars of a row
constexpr double MinRowHeight = 12;
// The time scale's width of one day: from months (a year in about 440 pixels)
// to hours (120 pixels an hour).
constexpr double MinDayWidth = 1.2;
constexpr double MaxDayWidth = 2880;
constexpr double DefaultDayWidth = 28;
// Row heights are set in points; logical pixels a point.
constexpr double PixelsPerPoint = 96.0 / 72.0;
// The row height the control starts with, in points.
constexpr int DefaultRowSetting = 15;

// The units of the time scale's tiers.
enum class TimeUnit { Hour, Day, Week, Month, Year };

// The two tiers of the time scale at one zoom: the upper tier's unit, the
// lower tier's unit and, for hours, how many hours a mark of it spans.
struct TimeScale {
    TimeUnit top;
    TimeUnit bottom;
    int hourStep = 1;
    // "Hours", "Days", "Weeks" or "Months": the lower tier's unit.
    QString name() const;
};
TimeScale timeScaleFor(double dayWidth);

// Calls `visit` for every mark of `unit` (every `hourStep` hours for hours)
// that overlaps [from, to] (days): its start and end (days).
void forEachMark(TimeUnit unit, int hourStep, double from, double to,
                 const std::function<void(double start, double end)>& visit);

// A row grows by one bar's height for each lane of bars after its first, up
// to this many lanes; beyond them its lanes share the height.
constexpr int MaxGrowingLanes = 8;

// Where the rows lie: a row is as high as the view's row height while its bars
// fit one lane, and grows for each further lane, so that bars that overlap in
// time stay as readable as the others.
struct RowGeometry {
    // tops[i] is where row i + 1 starts below the first row; tops[rowCount] is
    // the height of all rows.
    std::vector<double> tops{0.0};
    int rowCount() const { return static_cast<int>(tops.size()) - 1; }
};
// The height of a row of `lanes` lanes, for a view's row height.
double rowHeightFor(int lanes, double rowHeight);
// The rows of a model, each as high as its lanes need.
std::shared_ptr<const RowGeometry> rowGeometry(const ScheduleModel& model, double rowHeight);
// Rows all of one height.
std::shared_ptr<const RowGeometry> uniformRows(int rowCount, double rowHeight);

// What the view shows: its size, the column of row titles, the height of a row of one lane,
// the zoom as the width of a day, the day at the chart's left edge and how far
// the rows are scrolled up.
struct ScheduleView {
    QSizeF viewport{800, 400};
    double listWidth = DefaultListWidth;
    double rowHeight = DefaultRowSetting * PixelsPerPoint;
    double dayWidth = DefaultDayWidth;
    double originDay = 0;
    double scrollY = 0;
};

// Maps days and minutes to positions and back, for one view of a chart with
// a range of days and a number of rows. The chart area lies right of the row
// titles and below the time scale; the range spans from the start of its first
// day to the end of its last.
class ScheduleLayout {
public:
    ScheduleLayout(const ScheduleView& view, int firstDay, int lastDay,
                   std::shared_ptr<const RowGeometry> rows);
    // Rows all of the view's row height.
    ScheduleLayout(const ScheduleView& view, int firstDay, int lastDay, int rowCount);

    const ScheduleView& view() const { return view_; }
    QRectF chartRect() const;  // bars
    QRectF headerRect() const; // the time scale over the chart
    QRectF listRect() const;   // the row titles under the list title
    QRectF cornerRect() const; // the list title

    double xOf(double day) const { return view_.listWidth + (day - view_.originDay) * view_.dayWidth; }
    double dayAt(double x) const { return view_.originDay + (x - view_.listWidth) / view_.dayWidth; }
    // Where a row starts in the view, and its height; rows that do not exist
    // lie before the first and after the last at the view's row height.
    double rowTop(int row) const { return HeaderHeight + rowOffset(row) - view_.scrollY; }
    double rowHeight(int row) const;
    // Where a row starts below the first row's top.
    double rowOffset(int row) const;
    // The row under a height of the view, counted from 1; 0 above the first
    // row, rowCount + 1 and more below the last.
    int rowAt(double y) const;

    // The rows (clamped to those that exist) and the days that `area` shows.
    std::pair<int, int> rowsIn(const QRectF& area) const;
    std::pair<double, double> daysIn(const QRectF& area) const;

    // A bar's box in its row and lane, before any clipping.
    QRectF barRect(int row, double low, double high, int lane, int lanes) const;

    // The range and the extents that the view scrolls over.
    double rangeStart() const { return firstDay_; }
    double rangeEnd() const { return rangeEnd_; }
    double contentWidth() const { return (rangeEnd_ - firstDay_) * view_.dayWidth; }
    double contentHeight() const { return rows_->tops.back(); }
    // The furthest origin and scroll that still fill the view.
    double lastOriginDay() const;
    double lastScrollY() const;
    int rowCount() const { return rows_->rowCount(); }
    const RowGeometry& rows() const { return *rows_; }

private:
    ScheduleView view_;
    double firstDay_;
    double rangeEnd_;
    std::shared_ptr<const RowGeometry> rows_;
};

} // namespace tessaly::schedule
