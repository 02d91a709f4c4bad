// The mouse, wheel and keys of the schedule control: hit tests, the gestures
// that draw, move and stretch bars with their preview, and the pointing that
// brings up the tip.
#include "ScheduleControl.h"

#include <algorithm>
#include <cmath>

namespace tessaly::schedule {

namespace {
// How far (pixels) the pointer must move with the button down before a press becomes a drag.
constexpr double DragThreshold = 4;
// How near (pixels) to a bar's end the pointer stretches it.
constexpr double GripReach = 5;
// The largest box (pixels) of a bar of no length.
constexpr double MilestoneReach = 12;
// One notch of a mouse wheel, in eighths of a degree.
constexpr double WheelNotch = 120;
// The zoom of one notch with Ctrl.
constexpr double WheelZoomFactor = 1.25;
// Rows a notch scrolls, and the part of the chart's width a notch with Shift scrolls.
constexpr double WheelRows = 3;
constexpr double WheelWidthShare = 0.1;

long long floorTo(long long minutes, long long step) {
    long long q = minutes / step;
    if (minutes % step != 0 && minutes < 0)
        --q;
    return q * step;
}

long long ceilTo(long long minutes, long long step) {
    return -floorTo(-minutes, step);
}

long long roundTo(long long minutes, long long step) {
    return static_cast<long long>(std::llround(static_cast<double>(minutes) / static_cast<double>(step))) *
           step;
}

long long minutesOf(DayTime p) {
    return static_cast<long long>(p.date) * MinutesPerDay + p.minutes;
}
} // namespace

Hit ScheduleControl::hitTest(double x, double y) const {
    Hit h;
    const ScheduleLayout l = layout();
    if (!rowsReady_ || !l.chartRect().contains(QPointF(x, y)))
        return h;
    h.day = l.dayAt(x);
    const int row = l.rowAt(y);
    if (!model_.hasRow(row))
        return h;
    h.row = row;
    h.part = Hit::Part::Row;
    const ScheduleRenderer renderer(model_, design_, l);
    const double reach = (MilestoneReach + GripReach) / view_.dayWidth;
    const QPointF at(x, y);
    // The last bar found lies on top.
    model_.barsBetween(row, h.day - reach, h.day + reach, [&](const ScheduleModel::Placed& placed) {
        const QRectF box = renderer.barBox(row, placed.bar);
        if (!box.adjusted(-GripReach, 0, GripReach, 0).contains(at))
            return;
        const Bar& b = model_.bar(row, placed.bar);
        h.bar = placed.bar;
        h.part = Hit::Part::BarBody;
        if (b.zeroLength())
            return;
        const double toStart = std::fabs(x - l.xOf(b.start.instant()));
        const double toEnd = std::fabs(x - l.xOf(b.end.instant()));
        const bool roomy = box.width() >= 3 * GripReach;
        const bool outside = x < box.left() || x > box.right();
        if (std::min(toStart, toEnd) <= GripReach && (roomy || outside))
            h.part = toStart <= toEnd ? Hit::Part::BarStart : Hit::Part::BarEnd;
        else if (outside)
            h.part = Hit::Part::BarBody;
    });
    return h;
}

Pointer ScheduleControl::pointerAt(double x, double y) const {
    if (gesture_) {
        switch (gesture_->kind) {
        case Gesture::Kind::Draw:
            return Pointer::Draw;
        case Gesture::Kind::Move:
            return Pointer::Move;
        case Gesture::Kind::StretchStart:
        case Gesture::Kind::StretchEnd:
            return Pointer::Stretch;
        }
    }
    switch (hitTest(x, y).part) {
    case Hit::Part::Row:
        return Pointer::Draw;
    case Hit::Part::BarBody:
        return Pointer::Move;
    case Hit::Part::BarStart:
    case Hit::Part::BarEnd:
        return Pointer::Stretch;
    case Hit::Part::None:
        break;
    }
    return Pointer::Arrow;
}

ScheduleControl::Outcome ScheduleControl::outcome(const Gesture& g, double x) const {
    const long long step = snapMinutes();
    const long long pressed = minutesOf(g.pressedDay);
    const long long now = minutesOf(layout().dayAt(x));
    Outcome o;
    if (g.kind == Gesture::Kind::Draw) {
        const long long low = floorTo(std::min(pressed, now), step);
        long long high = ceilTo(std::max(pressed, now), step);
        if (high <= low)
            high = low + step;
        o.start = startAt(low);
        o.end = endAt(high);
        o.changed = true;
        return o;
    }
    const Bar& b = model_.bar(g.row, g.bar);
    o.start = b.start;
    o.end = b.end;
    const long long start = minutesOf(b.start), end = minutesOf(b.end);
    switch (g.kind) {
    case Gesture::Kind::Move: {
        const long long shift = roundTo(now - pressed, step);
        o.start = shifted(b.start, shift);
        o.end = shifted(b.end, shift);
        o.changed = shift != 0;
        break;
    }
    case Gesture::Kind::StretchStart: {
        long long at = roundTo(now, step);
        if (!b.reversed())
            at = std::min(at, end - step);
        o.start = startAt(at);
        o.changed = at != start;
        break;
    }
    case Gesture::Kind::StretchEnd: {
        long long at = roundTo(now, step);
        if (!b.reversed())
            at = std::max(at, start + step);
        o.end = endAt(at);
        o.changed = at != end;
        break;
    }
    case Gesture::Kind::Draw:
        break;
    }
    return o;
}

void ScheduleControl::updatePreview(double x) {
    const Gesture& g = *gesture_;
    if (g.kind != Gesture::Kind::Draw && !model_.hasBar(g.row, g.bar)) {
        gesture_.reset();
        preview_.reset();
        repaintAll();
        return;
    }
    const Outcome o = outcome(g, x);
    const double a = o.start.instant(), b = o.end.instant();
    const Preview next{g.row, g.kind == Gesture::Kind::Draw ? 0 : g.bar, std::min(a, b), std::max(a, b)};
    if (preview_ && preview_->low == next.low && preview_->high == next.high)
        return;
    preview_ = next;
    repaintArea(rowBand(g.row));
}

void ScheduleControl::finishGesture(const Gesture& g, double x) {
    if (g.kind != Gesture::Kind::Draw && !model_.hasBar(g.row, g.bar))
        return;
    const Outcome o = outcome(g, x);
    if (!o.changed)
        return;
    if (g.kind == Gesture::Kind::Draw)
        drawBar(g.row, o.start, o.end);
    else
        changeBar(g.row, g.bar, o.start, o.end);
}

void ScheduleControl::mousePress(int button, int, double x, double y) {
    const AutoPtr keep = shared_from_this();
    pointer_ = QPointF(x, y);
    if (button != mouse::Left)
        return;
    hideTip();
    const Hit h = hitTest(x, y);
    if (h.part == Hit::Part::None)
        return;
    Gesture g;
    g.row = h.row;
    g.bar = h.bar;
    g.pressedAt = QPointF(x, y);
    g.pressedDay = h.day;
    if (h.part == Hit::Part::Row) {
        g.kind = Gesture::Kind::Draw;
        gesture_ = g;
        return;
    }
    g.kind = h.part == Hit::Part::BarStart ? Gesture::Kind::StretchStart
             : h.part == Hit::Part::BarEnd ? Gesture::Kind::StretchEnd
                                           : Gesture::Kind::Move;
    selectBar(h.row, h.bar);
    // The selection's handler may have rebuilt the chart.
    if (model_.hasBar(h.row, h.bar))
        gesture_ = g;
}

void ScheduleControl::mouseMove(int buttons, int, double x, double y) {
    const AutoPtr keep = shared_from_this();
    pointer_ = QPointF(x, y);
    if (gesture_ && (buttons & mouse::Left)) {
        if (!gesture_->dragging) {
            const QPointF moved = QPointF(x, y) - gesture_->pressedAt;
            if (std::fabs(moved.x()) + std::fabs(moved.y()) < DragThreshold)
                return;
            gesture_->dragging = true;
        }
        updatePreview(x);
        return;
    }
    if (gesture_)
        return;
    const Hit h = hitTest(x, y);
    if (h.bar != 0 && (h.row != pointedRow_ || h.bar != pointedBar_)) {
        pointBar(h.row, h.bar);
    } else if (h.bar == 0 && pointedBar_ != 0) {
        pointedRow_ = pointedBar_ = 0;
        hideTip();
    }
}

void ScheduleControl::mouseRelease(int button, int, double x, double y) {
    const AutoPtr keep = shared_from_this();
    pointer_ = QPointF(x, y);
    if (button != mouse::Left || !gesture_)
        return;
    const Gesture g = *gesture_;
    gesture_.reset();
    if (preview_) {
        preview_.reset();
        repaintArea(rowBand(g.row));
    }
    if (!g.dragging) {
        // A click on a row's free space clears the selection.
        if (g.kind == Gesture::Kind::Draw)
            selectBar(0, 0);
        return;
    }
    finishGesture(g, x);
}

void ScheduleControl::mouseDoubleClick(int button, int, double x, double y) {
    const AutoPtr keep = shared_from_this();
    pointer_ = QPointF(x, y);
    if (button != mouse::Left)
        return;
    gesture_.reset();
    preview_.reset();
    const Hit h = hitTest(x, y);
    if (h.bar != 0)
        activateBar(h.row, h.bar);
}

void ScheduleControl::mouseLeave() {
    pointer_.reset();
    pointedRow_ = pointedBar_ = 0;
    hideTip();
}

void ScheduleControl::keyPress(int keyCode, int) {
    if (keyCode != EscapeKey || !gesture_)
        return;
    const int row = gesture_->row;
    gesture_.reset();
    preview_.reset();
    repaintArea(rowBand(row));
}

void ScheduleControl::wheel(int delta, int shift, double x, double) {
    const double notches = delta / WheelNotch;
    if (shift & mouse::CtrlKey) {
        zoomAt(std::pow(WheelZoomFactor, notches), x);
        return;
    }
    if (shift & mouse::ShiftKey)
        setOriginDay(view_.originDay -
                     notches * layout().chartRect().width() * WheelWidthShare / view_.dayWidth);
    else
        setScrollY(view_.scrollY - notches * WheelRows * view_.rowHeight);
    viewChanged();
}

} // namespace tessaly::schedule
