#include "ScheduleWidget.h"

#include "ViewUnits.h"
#include "schedule/ScheduleControl.h"

#include <QFrame>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <climits>
#include <cmath>

namespace tessaly::ui {

namespace {

using schedule::Pointer;

// The most steps a scroll bar is given: a longer range scrolls in coarser steps.
constexpr double MaxScrollSteps = 1.0e6;
// Rows a click in a vertical scroll bar's arrow moves.
constexpr int RowsAStep = 1;
// The printer's paper margin, millimetres.
constexpr double PrintMarginMm = 10;

Qt::CursorShape cursorFor(Pointer p) {
    switch (p) {
    case Pointer::Draw:
        return Qt::CrossCursor;
    case Pointer::Move:
        return Qt::SizeAllCursor;
    case Pointer::Stretch:
        return Qt::SizeHorCursor;
    case Pointer::Arrow:
        break;
    }
    return Qt::ArrowCursor;
}

} // namespace

ScheduleWidget::ScheduleWidget(std::shared_ptr<schedule::ScheduleControl> engine, ViewSink* sink,
                               QWidget* parent)
    : QAbstractScrollArea(parent), engine_(std::move(engine)), sink_(sink) {
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    engine_->setRepaintCallback([this](const QRectF& area) {
        if (area.isEmpty())
            viewport()->update();
        else
            viewport()->update(area.toAlignedRect());
    });
    engine_->setViewCallback([this] { queueSync(); });
    engine_->setPrintHost([this](schedule::ScheduleControl&) { print(true); });
    engine_->setViewportSize(viewport()->size());
    syncScrollBars();
}

ScheduleWidget::~ScheduleWidget() {
    engine_->setRepaintCallback({});
    engine_->setViewCallback({});
    engine_->setPrintHost({});
}

void ScheduleWidget::input(const std::function<void()>& step) {
    if (sink_)
        sink_->userInput(step);
    else
        step();
}

double ScheduleWidget::horizontalUnit() const {
    return std::max(1.0, engine_->layout().contentWidth() / MaxScrollSteps);
}

void ScheduleWidget::queueSync() {
    if (syncQueued_)
        return;
    syncQueued_ = true;
    QMetaObject::invokeMethod(
        this, [this] { syncScrollBars(); }, Qt::QueuedConnection);
}

void ScheduleWidget::syncScrollBars() {
    syncQueued_ = false;
    if (syncing_)
        return;
    syncing_ = true;
    const schedule::ScheduleLayout l = engine_->layout();
    const double unit = horizontalUnit();
    const double dayWidth = engine_->dayWidth();
    QScrollBar* h = horizontalScrollBar();
    h->setRange(0, static_cast<int>(std::ceil((l.lastOriginDay() - l.rangeStart()) * dayWidth / unit)));
    h->setPageStep(std::max(1, static_cast<int>(l.chartRect().width() / unit)));
    h->setSingleStep(std::max(1, static_cast<int>(dayWidth / unit)));
    h->setValue(static_cast<int>(std::lround((engine_->originDay() - l.rangeStart()) * dayWidth / unit)));
    QScrollBar* v = verticalScrollBar();
    const double rowHeight = engine_->view().rowHeight;
    v->setRange(0, static_cast<int>(std::min<double>(INT_MAX, std::ceil(l.lastScrollY()))));
    v->setPageStep(std::max(1, static_cast<int>(l.chartRect().height())));
    v->setSingleStep(std::max(1, static_cast<int>(rowHeight * RowsAStep)));
    v->setValue(static_cast<int>(std::lround(engine_->scrollY())));
    syncing_ = false;
}

void ScheduleWidget::scrollContentsBy(int, int) {
    if (syncing_)
        return;
    const schedule::ScheduleLayout l = engine_->layout();
    engine_->setOriginDay(l.rangeStart() +
                          horizontalScrollBar()->value() * horizontalUnit() / engine_->dayWidth());
    engine_->setScrollY(verticalScrollBar()->value());
}

void ScheduleWidget::paintEvent(QPaintEvent* event) {
    QPainter p(viewport());
    engine_->paint(p, QRectF(event->rect()));
}

void ScheduleWidget::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    engine_->setViewportSize(viewport()->size());
    syncScrollBars();
}

void ScheduleWidget::syncCursor(const QPointF& at) {
    viewport()->setCursor(cursorFor(engine_->pointerAt(at.x(), at.y())));
}

void ScheduleWidget::mouse(QMouseEvent* event, MouseStep step, int buttons) {
    const QPointF at = event->position();
    const int shift = platformShiftMask(event->modifiers());
    input([&] { (engine_.get()->*step)(buttons, shift, at.x(), at.y()); });
    syncCursor(at);
}

void ScheduleWidget::mousePressEvent(QMouseEvent* event) {
    mouse(event, &schedule::ScheduleControl::mousePress, platformButton(event->button()));
}

void ScheduleWidget::mouseMoveEvent(QMouseEvent* event) {
    mouse(event, &schedule::ScheduleControl::mouseMove, platformButtons(event->buttons()));
}

void ScheduleWidget::mouseReleaseEvent(QMouseEvent* event) {
    mouse(event, &schedule::ScheduleControl::mouseRelease, platformButton(event->button()));
}

void ScheduleWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    mouse(event, &schedule::ScheduleControl::mouseDoubleClick, platformButton(event->button()));
}

void ScheduleWidget::wheelEvent(QWheelEvent* event) {
    const QPointF at = event->position();
    const int delta = event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    const int shift = platformShiftMask(event->modifiers());
    engine_->wheel(delta, shift, at.x(), at.y());
    event->accept();
}

void ScheduleWidget::keyPressEvent(QKeyEvent* event) {
    const int code = platformKeyCode(event->key());
    if (code != schedule::EscapeKey) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    const int shift = platformShiftMask(event->modifiers());
    input([&] { engine_->keyPress(code, shift); });
}

void ScheduleWidget::leaveEvent(QEvent* event) {
    engine_->mouseLeave();
    QAbstractScrollArea::leaveEvent(event);
}

QPrinter& ScheduleWidget::printer() {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setPageLayout(QPageLayout(
            QPageSize(QPageSize::A4), QPageLayout::Landscape,
            QMarginsF(PrintMarginMm, PrintMarginMm, PrintMarginMm, PrintMarginMm), QPageLayout::Millimeter));
    }
    return *printer_;
}

void ScheduleWidget::print(bool showDialog) {
    QPrinter& paper = printer();
    paper.setDocName(engine_->printTitle.isEmpty() ? engine_->design().printHeading : engine_->printTitle);
    if (showDialog) {
        QPrintDialog dialog(&paper, this);
        if (dialog.exec() != QDialog::Accepted)
            return;
    }
    engine_->printTo(paper);
}

// --- the control's widget ------------------------------------------------------------

ControlWidget makeSchedule(Control& control, QWidget* parent, ViewSink& sink) {
    return makeEngineView<schedule::ScheduleControl, ScheduleWidget>(control, parent, sink);
}

} // namespace tessaly::ui
