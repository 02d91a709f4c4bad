#include "ScheduleControl.h"

#include "ScheduleEvents.h"
#include "core/forms/ApplicationBase.h"
#include "core/forms/Control.h"
#include "core/forms/Form.h"
#include "core/runtime/Clock.h"
#include "core/runtime/RuntimeError.h"

#include <QDate>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tessaly::schedule {

namespace {
// The range a new control shows: from today (the present the program reads), this many days.
constexpr int DesignRangeDays = 30;
// Least and most points of a row's height.
constexpr int MinRowSetting = 1;
} // namespace

ScheduleControl::ScheduleControl()
    : firstDay_(static_cast<int>(dayOfDate(clock::today()))), lastDay_(firstDay_ + DesignRangeDays),
      rowSetting_(DefaultRowSetting) {
    view_.originDay = firstDay_;
}

ScheduleControl::~ScheduleControl() = default;

std::shared_ptr<ScheduleControl> ScheduleControl::create() {
    return std::shared_ptr<ScheduleControl>(new ScheduleControl());
}

std::shared_ptr<ScheduleControl> ScheduleControl::attach(Control& control) {
    auto engine = create();
    engine->control_ = control.weak_from_this();
    control.inner = engine;
    return engine;
}

// --- rows, bars and range -------------------------------------------------------

void ScheduleControl::setFirstDay(int day) {
    firstDay_ = day;
    view_.originDay = day;
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::setLastDay(int day) {
    lastDay_ = day;
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::clearAll() {
    model_.clear();
    rowsChanged();
    pictures.clear();
    gesture_.reset();
    preview_.reset();
    pointedRow_ = pointedBar_ = 0;
    tipShown_ = false;
    view_.scrollY = 0;
    viewChanged();
    repaintAll();
}

void ScheduleControl::addRow(const QString& text) {
    model_.addRow(text);
    rowsChanged();
    viewChanged();
    repaintAll();
}

int ScheduleControl::addBar(int row, DayTime start, DayTime end) {
    Bar b;
    b.start = start;
    b.end = end;
    const int n = model_.addBar(row, b);
    rowsChanged();
    viewChanged();
    repaintAll();
    return n;
}

void ScheduleControl::requireBar(int row, int bar) const {
    if (!model_.hasBar(row, bar))
        raiseError(
            InvalidPropertyIndex,
            QStringLiteral("Invalid property array index: there is no bar %1 on row %2").arg(bar).arg(row));
}

Bar& ScheduleControl::editBar(int row, int bar) {
    requireBar(row, bar);
    rowsChanged();
    repaintAll();
    return model_.editBar(row, bar);
}

const Bar& ScheduleControl::bar(int row, int bar) const {
    requireBar(row, bar);
    return model_.bar(row, bar);
}

const QString& ScheduleControl::rowText(int row) const {
    if (!model_.hasRow(row))
        raiseError(InvalidPropertyIndex,
                   QStringLiteral("Invalid property array index: there is no row %1").arg(row));
    return model_.rowText(row);
}

void ScheduleControl::setRowSetting(int points) {
    rowSetting_ = points;
    view_.rowHeight = std::max(MinRowHeight, std::max(MinRowSetting, points) * PixelsPerPoint);
    rowsChanged();
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::setRowsReady(bool ready) {
    rowsReady_ = ready;
    if (ready) {
        clampView();
        viewChanged();
    }
    repaintAll();
}

QStringList ScheduleControl::rowTexts() const {
    QStringList out;
    for (const QString& t : model_.rows())
        out << t;
    return out;
}

namespace {
QVariant dayValue(int32_t day) {
    if (const std::optional<QString> iso = isoDay(day))
        return *iso;
    return day;
}
} // namespace

QVariantList ScheduleControl::barList() const {
    QVariantList out;
    model_.forEachRow([&](int row, const std::vector<Bar>& bars) {
        for (size_t i = 0; i < bars.size(); ++i) {
            const Bar& b = bars[i];
            out << QVariantMap{{QStringLiteral("row"), row},
                               {QStringLiteral("bar"), static_cast<int>(i) + 1},
                               {QStringLiteral("key"), b.key},
                               {QStringLiteral("text"), b.text},
                               {QStringLiteral("comment"), b.comment},
                               {QStringLiteral("colour"), static_cast<int>(b.colour)},
                               {QStringLiteral("align"), b.align},
                               {QStringLiteral("startDate"), dayValue(b.start.date)},
                               {QStringLiteral("endDate"), dayValue(b.end.date)},
                               {QStringLiteral("startTime"), b.start.minutes},
                               {QStringLiteral("endTime"), b.end.minutes}};
        }
    });
    return out;
}

// --- events ---------------------------------------------------------------------------

bool ScheduleControl::raise(const QString& event, QVariantList& args) {
    const AutoPtr owner = control_.lock();
    if (!owner)
        return false;
    auto& control = static_cast<Control&>(*owner);
    control.form().raiseEvent(control, event, args);
    return true;
}

int ScheduleControl::drawBar(int row, DayTime start, DayTime end) {
    const AutoPtr keep = shared_from_this();
    const int bar = addBar(row, start, end);
    model_.select(row, bar);
    QVariantList args{row, bar, true, false};
    raise(event::BarDrawn, args);
    // A handler that cancels takes the bar away, if the chart still holds it.
    if (args.value(3).toBool() && model_.barCount(row) == bar) {
        model_.removeLastBar(row);
        rowsChanged();
        viewChanged();
        repaintAll();
    }
    return bar;
}

void ScheduleControl::changeBar(int row, int bar, DayTime start, DayTime end) {
    const AutoPtr keep = shared_from_this();
    Bar& b = editBar(row, bar);
    b.start = start;
    b.end = end;
    viewChanged();
    QVariantList args{row, bar, b.text, start.minutes, end.minutes, start.date, end.date};
    raise(event::BarChanged, args);
}

void ScheduleControl::activateBar(int row, int bar) {
    const AutoPtr keep = shared_from_this();
    selectBar(row, bar);
    if (!model_.hasBar(row, bar))
        return; // the selection's handler rebuilt the chart
    QVariantList args{row, bar};
    raise(event::BarActivated, args);
}

void ScheduleControl::pointBar(int row, int bar) {
    const AutoPtr keep = shared_from_this();
    pointedRow_ = row;
    pointedBar_ = bar;
    hideTip();
    QVariantList args{row, bar};
    raise(event::BarPointed, args);
}

void ScheduleControl::selectBar(int row, int bar) {
    const AutoPtr keep = shared_from_this();
    if (model_.selectedRow() == row && model_.selectedBar() == bar)
        return;
    const QRectF before = rowBand(model_.selectedRow());
    model_.select(row, bar);
    repaintArea(before);
    repaintArea(rowBand(row));
    QVariantList args{row, bar};
    raise(event::BarSelected, args);
}

// --- the tip ---------------------------------------------------------------------------

void ScheduleControl::setTipText(const QString& text) {
    if (const auto old = shownTip())
        repaintArea(ScheduleRenderer(model_, design_, layout()).tipRect(*old));
    tipText_ = text;
    tipShown_ = !text.isEmpty() && model_.hasBar(pointedRow_, pointedBar_);
    // At the pointer when it is over the view, else at the bar's end.
    if (pointer_) {
        tipAnchor_ = *pointer_;
    } else if (tipShown_) {
        const QRectF box = barBox(pointedRow_, pointedBar_);
        tipAnchor_ = QPointF(
            std::clamp(box.right(), view_.listWidth, std::max(view_.listWidth, view_.viewport.width())),
            box.top());
    }
    if (const auto now = shownTip())
        repaintArea(ScheduleRenderer(model_, design_, layout()).tipRect(*now));
}

void ScheduleControl::hideTip() {
    if (!tipShown_)
        return;
    if (const auto old = shownTip())
        repaintArea(ScheduleRenderer(model_, design_, layout()).tipRect(*old));
    tipShown_ = false;
}

std::optional<Tip> ScheduleControl::shownTip() const {
    if (!tipShown_ || tipText_.isEmpty() || !model_.hasBar(pointedRow_, pointedBar_))
        return std::nullopt;
    return Tip{tipText_, tipAnchor_};
}

// --- the view --------------------------------------------------------------------------

ScheduleLayout ScheduleControl::layout() const {
    return ScheduleLayout(view_, firstDay_, lastDay_, rowGeometry());
}

std::shared_ptr<const RowGeometry> ScheduleControl::rowGeometry() const {
    if (!rowGeometry_)
        rowGeometry_ = schedule::rowGeometry(model_, view_.rowHeight);
    return rowGeometry_;
}

void ScheduleControl::rowsChanged() {
    rowGeometry_.reset();
}

void ScheduleControl::setViewportSize(const QSizeF& size) {
    if (size == view_.viewport)
        return;
    view_.viewport = size;
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::setDayWidth(double pixels) {
    view_.dayWidth = std::clamp(pixels, MinDayWidth, MaxDayWidth);
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::zoomAt(double factor, double x) {
    const ScheduleLayout before = layout();
    const double anchorX = std::clamp(x, before.chartRect().left(), before.chartRect().right());
    const double day = before.dayAt(anchorX);
    view_.dayWidth = std::clamp(view_.dayWidth * factor, MinDayWidth, MaxDayWidth);
    view_.originDay = day - (anchorX - view_.listWidth) / view_.dayWidth;
    clampView();
    viewChanged();
    repaintAll();
}

void ScheduleControl::setOriginDay(double day) {
    view_.originDay = day;
    clampView();
    repaintAll();
}

void ScheduleControl::setScrollY(double y) {
    view_.scrollY = y;
    clampView();
    repaintAll();
}

void ScheduleControl::clampView() {
    const ScheduleLayout l = layout();
    view_.originDay = std::clamp(view_.originDay, l.rangeStart(), l.lastOriginDay());
    view_.scrollY = std::clamp(view_.scrollY, 0.0, l.lastScrollY());
}

int ScheduleControl::snapMinutes() const {
    // The finest step that is still this many pixels wide.
    constexpr double MinSnapPixels = 16;
    constexpr int Steps[] = {15, 30, 60, 180, 360, 720, MinutesPerDay};
    for (const int s : Steps)
        if (s * view_.dayWidth / MinutesPerDay >= MinSnapPixels)
            return s;
    return MinutesPerDay;
}

QRectF ScheduleControl::rowBand(int row) const {
    if (row < 1)
        return QRectF();
    const ScheduleLayout l = layout();
    return QRectF(0, l.rowTop(row) - 2, view_.viewport.width(), l.rowHeight(row) + 4);
}

void ScheduleControl::repaintAll() {
    if (repaint_)
        repaint_(QRectF());
}

void ScheduleControl::repaintArea(const QRectF& area) {
    if (repaint_ && !area.isEmpty())
        repaint_(area);
}

void ScheduleControl::viewChanged() {
    if (viewChanged_)
        viewChanged_();
}

// --- painting ----------------------------------------------------------------------------

void ScheduleControl::refresh() {
    viewChanged();
    repaintAll();
}

void ScheduleControl::paint(QPainter& painter, const QRectF& area) const {
    const ScheduleLayout l = layout();
    const ScheduleRenderer renderer(model_, design_, l);
    const std::optional<Tip> tip = shownTip();
    Overlay overlay;
    overlay.preview = preview_ ? &*preview_ : nullptr;
    overlay.tip = tip ? &*tip : nullptr;
    renderer.paint(painter, area, overlay, rowsReady_);
}

QRectF ScheduleControl::barBox(int row, int bar) const {
    const ScheduleLayout l = layout();
    return ScheduleRenderer(model_, design_, l).barBox(row, bar);
}

} // namespace tessaly::schedule
