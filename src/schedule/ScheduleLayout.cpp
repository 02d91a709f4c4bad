#include "ScheduleLayout.h"

#include <algorithm>
#include <cmath>

namespace tessaly::schedule {

namespace {
constexpr int HoursPerDay = 24;
constexpr int DaysPerWeek = 7;
// The least room (pixels) between two hour marks of the lower tier.
constexpr double MinHourMarkGap = 34;
// The hour steps of the lower tier, finest first.
constexpr int HourSteps[] = {1, 2, 3, 6, 12};
// The zoom (day width, pixels) from which the lower tier shows hours, days and weeks.
constexpr double HoursFrom = 72;
constexpr double DaysFrom = 16;
constexpr double WeeksFrom = 4;
// Marks further apart than this many days are not made: the range is only so long.
constexpr double MaxMarkSpanDays = 4.0e6;
// How far inside an area's bottom and right edges their last row and day are looked for.
constexpr double EdgeInset = 1e-6;
} // namespace

QString TimeScale::name() const {
    switch (bottom) {
    case TimeUnit::Hour:
        return QStringLiteral("Hours");
    case TimeUnit::Day:
        return QStringLiteral("Days");
    case TimeUnit::Week:
        return QStringLiteral("Weeks");
    case TimeUnit::Month:
    case TimeUnit::Year:
        break;
    }
    return QStringLiteral("Months");
}

TimeScale timeScaleFor(double dayWidth) {
    if (dayWidth >= HoursFrom) {
        int step = HourSteps[std::size(HourSteps) - 1];
        for (const int s : HourSteps)
            if (s * dayWidth / HoursPerDay >= MinHourMarkGap) {
                step = s;
                break;
            }
        return TimeScale{TimeUnit::Day, TimeUnit::Hour, step};
    }
    if (dayWidth >= DaysFrom)
        return TimeScale{TimeUnit::Month, TimeUnit::Day};
    if (dayWidth >= WeeksFrom)
        return TimeScale{TimeUnit::Month, TimeUnit::Week};
    return TimeScale{TimeUnit::Year, TimeUnit::Month};
}

void forEachMark(TimeUnit unit, int hourStep, double from, double to,
                 const std::function<void(double, double)>& visit) {
    if (!(to >= from) || to - from > MaxMarkSpanDays)
        return;
    switch (unit) {
    case TimeUnit::Hour: {
        const double span = static_cast<double>(hourStep) / HoursPerDay;
        for (double m = std::floor(from / span) * span; m <= to; m += span)
            visit(m, m + span);
        return;
    }
    case TimeUnit::Day:
        for (double d = std::floor(from); d <= to; d += 1)
            visit(d, d + 1);
        return;
    case TimeUnit::Week: {
        // Weeks start on Monday.
        const double first = std::floor(from);
        const int dow = dateOfDay(static_cast<int64_t>(first)).dayOfWeek();
        for (double d = first - (dow - 1); d <= to; d += DaysPerWeek)
            visit(d, d + DaysPerWeek);
        return;
    }
    case TimeUnit::Month:
    case TimeUnit::Year: {
        const QDate at = dateOfDay(static_cast<int64_t>(std::floor(from)));
        if (!at.isValid())
            return;
        QDate mark = unit == TimeUnit::Month ? QDate(at.year(), at.month(), 1) : QDate(at.year(), 1, 1);
        while (mark.isValid()) {
            const QDate next = unit == TimeUnit::Month ? mark.addMonths(1) : mark.addYears(1);
            const double start = static_cast<double>(dayOfDate(mark));
            if (start > to || !next.isValid())
                return;
            visit(start, static_cast<double>(dayOfDate(next)));
            mark = next;
        }
        return;
    }
    }
}

double rowHeightFor(int lanes, double rowHeight) {
    const int grown = std::clamp(lanes, 1, MaxGrowingLanes) - 1;
    return rowHeight + grown * std::max(1.0, rowHeight - 2 * BarPadding);
}

std::shared_ptr<const RowGeometry> rowGeometry(const ScheduleModel& model, double rowHeight) {
    auto rows = std::make_shared<RowGeometry>();
    rows->tops.reserve(static_cast<size_t>(model.rowCount()) + 1);
    double top = 0;
    for (int row = 1; row <= model.rowCount(); ++row) {
        top += rowHeightFor(model.lanes(row), rowHeight);
        rows->tops.push_back(top);
    }
    return rows;
}

std::shared_ptr<const RowGeometry> uniformRows(int rowCount, double rowHeight) {
    auto rows = std::make_shared<RowGeometry>();
    for (int row = 1; row <= rowCount; ++row)
        rows->tops.push_back(row * rowHeight);
    return rows;
}

ScheduleLayout::ScheduleLayout(const ScheduleView& view, int firstDay, int lastDay,
                               std::shared_ptr<const RowGeometry> rows)
    : view_(view), firstDay_(firstDay),
      rangeEnd_(std::max<double>(firstDay, static_cast<double>(lastDay) + 1)), rows_(std::move(rows)) {}

ScheduleLayout::ScheduleLayout(const ScheduleView& view, int firstDay, int lastDay, int rowCount)
    : ScheduleLayout(view, firstDay, lastDay, uniformRows(rowCount, view.rowHeight)) {}

double ScheduleLayout::rowOffset(int row) const {
    const std::vector<double>& tops = rows_->tops;
    const int count = rows_->rowCount();
    if (row < 1)
        return (row - 1) * view_.rowHeight;
    if (row <= count + 1)
        return tops[static_cast<size_t>(row - 1)];
    return tops.back() + (row - 1 - count) * view_.rowHeight;
}

double ScheduleLayout::rowHeight(int row) const {
    if (row < 1 || row > rows_->rowCount())
        return view_.rowHeight;
    return rows_->tops[static_cast<size_t>(row)] - rows_->tops[static_cast<size_t>(row - 1)];
}

QRectF ScheduleLayout::chartRect() const {
    return QRectF(view_.listWidth, HeaderHeight, std::max(0.0, view_.viewport.width() - view_.listWidth),
                  std::max(0.0, view_.viewport.height() - HeaderHeight));
}

QRectF ScheduleLayout::headerRect() const {
    return QRectF(view_.listWidth, 0, std::max(0.0, view_.viewport.width() - view_.listWidth), HeaderHeight);
}

QRectF ScheduleLayout::listRect() const {
    return QRectF(0, HeaderHeight, view_.listWidth, std::max(0.0, view_.viewport.height() - HeaderHeight));
}

QRectF ScheduleLayout::cornerRect() const {
    return QRectF(0, 0, view_.listWidth, HeaderHeight);
}

int ScheduleLayout::rowAt(double y) const {
    if (y < HeaderHeight)
        return 0;
    const double offset = y - HeaderHeight + view_.scrollY;
    const std::vector<double>& tops = rows_->tops;
    if (offset >= tops.back())
        return rows_->rowCount() + 1 + static_cast<int>(std::floor((offset - tops.back()) / view_.rowHeight));
    return static_cast<int>(std::upper_bound(tops.begin(), tops.end(), offset) - tops.begin());
}

std::pair<int, int> ScheduleLayout::rowsIn(const QRectF& area) const {
    const int first = std::max(1, rowAt(std::max(area.top(), HeaderHeight)));
    // The edges of an area belong to it only from inside.
    const int last = std::min(rowCount(), rowAt(area.bottom() - EdgeInset));
    return {first, last};
}

std::pair<double, double> ScheduleLayout::daysIn(const QRectF& area) const {
    return {dayAt(std::max(area.left(), view_.listWidth)), dayAt(area.right() - EdgeInset)};
}

QRectF ScheduleLayout::barRect(int row, double low, double high, int lane, int lanes) const {
    const double room = std::max(1.0, rowHeight(row) - 2 * BarPadding);
    const double laneHeight = room / std::max(1, lanes);
    const double gap = lanes > 1 && laneHeight > 3 ? 1 : 0;
    const double top = rowTop(row) + BarPadding + lane * laneHeight;
    return QRectF(QPointF(xOf(low), top), QPointF(xOf(high), top + std::max(1.0, laneHeight - gap)));
}

double ScheduleLayout::lastOriginDay() const {
    const double shown = chartRect().width() / view_.dayWidth;
    return std::max(firstDay_, rangeEnd_ - shown);
}

double ScheduleLayout::lastScrollY() const {
    return std::max(0.0, contentHeight() - chartRect().height());
}

} // namespace tessaly::schedule
