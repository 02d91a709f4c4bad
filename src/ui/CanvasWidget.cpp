#include "CanvasWidget.h"

#include "CanvasTextEditor.h"
#include "ViewUnits.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/engine/ToolController.h"
#include "canvas/model/ShapeTypes.h"
#include "dialogs/QtCanvasDialogHost.h"

#include <QFontMetrics>
#include <QFrame>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace tessaly::ui {

namespace {

// Tool modes of View.ToolMode that choose the pointer.
constexpr int SelectMode = 1;
constexpr int RotateMode = 2;
constexpr int EditPointsMode = 3;
constexpr int DrawMode = 4;

// One notch of a mouse wheel, in eighths of a degree.
constexpr int WheelNotch = 120;
// Pixels the view scrolls for one notch without Ctrl.
constexpr int WheelScrollPixels = 48;
// How near (pixels) a double click must come to a text shape to edit it.
constexpr double TextReachPx = 6.0;
// Points per inch and millimetres per inch: font sizes of text shapes on screen.
constexpr double PointsPerInch = 72.0;
constexpr double MmPerInch = 25.4;

// The sizing pointer of the handles, in the order the canvas gives them:
// top-left, top, top-right, right, bottom-right, bottom, bottom-left, left.
Qt::CursorShape handleCursor(size_t index, size_t count) {
    if (count != 8)
        return Qt::SizeAllCursor; // the two ends of a line
    static constexpr Qt::CursorShape Shapes[8] = {
        Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor, Qt::SizeHorCursor,
        Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor, Qt::SizeHorCursor};
    return Shapes[index];
}

} // namespace

CanvasWidget::CanvasWidget(std::shared_ptr<canvas::POLARDraw> canvas, ViewSink* sink, QWidget* parent)
    : QAbstractScrollArea(parent), canvas_(std::move(canvas)), sink_(sink),
      dialogs_(std::make_unique<QtCanvasDialogHost>(this)) {
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // The drawing area takes the keys itself: the view of the form watches the
    // outer widget, and the canvas raises its own KeyDown.
    viewport()->setFocusProxy(nullptr);
    viewport()->setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(viewport());
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->installEventFilter(this);
    canvas_->setDialogHost(dialogs_.get());
    canvas_->setRepaintCallback([this] { canvasWantsRepaint(); });
    tellGeometry();
    syncWithCanvas();
}

CanvasWidget::~CanvasWidget() {
    canvas_->setRepaintCallback({});
    canvas_->setDialogHost(nullptr);
}

CanvasTextEditor* CanvasWidget::textEditor() const {
    return editor_;
}

void CanvasWidget::input(const std::function<void()>& step) {
    tellGeometry();
    if (sink_)
        sink_->userInput(step);
    else
        step();
}

void CanvasWidget::canvasWantsRepaint() {
    viewport()->update();
    syncWithCanvas();
}

void CanvasWidget::tellGeometry() {
    // The canvas's view starts where the window would show it unscrolled.
    canvas_->setScreenOrigin(viewport()->mapToGlobal(QPoint(0, 0)) - offset_);
}

QPointF CanvasWidget::screenPos(const QPointF& clientPos) const {
    return inView(clientPos) + QPointF(canvas_->viewGeometry().screenOrigin);
}

QPointF CanvasWidget::inView(const QPointF& clientPos) const {
    return clientPos + QPointF(offset_);
}

void CanvasWidget::setShowsWholePage(bool on) {
    wholePage_ = on;
    offset_ = {};
    tellViewportSize();
    syncWithCanvas();
}

QSize CanvasWidget::wholePageSize() const {
    const double k = canvas_->viewGeometry().pixelsPerMm();
    const canvas::PageSettings& page = canvas_->drawing().state().page;
    const QSize size(static_cast<int>(std::ceil((page.width + 2 * WholePageMarginMm) * k)),
                     static_cast<int>(std::ceil((page.height + 2 * WholePageMarginMm) * k)));
    return size.expandedTo(viewport()->size());
}

void CanvasWidget::tellViewportSize() {
    const QSize want = wholePage_ ? wholePageSize() : viewport()->size();
    if (canvas_->viewGeometry().viewport != want)
        canvas_->setViewportSize(want);
}

void CanvasWidget::syncWithCanvas() {
    // The canvas may ask for a repaint from inside a step that this sync started.
    if (inSync_)
        return;
    inSync_ = true;
    syncScrollBars();
    syncTextEditor();
    if (viewport()->underMouse())
        syncCursor(viewport()->mapFromGlobal(QCursor::pos()));
    inSync_ = false;
}

// --- painting and geometry -------------------------------------------------------

void CanvasWidget::paintEvent(QPaintEvent*) {
    // A window's place on the screen can change with no move event of its own
    // (the frame of a new top-level window); each paint brings it up to date.
    tellGeometry();
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Mid));
    painter.translate(-offset_);
    canvas_->renderView(painter);
}

void CanvasWidget::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    tellGeometry();
    tellViewportSize();
}

void CanvasWidget::moveEvent(QMoveEvent* event) {
    QAbstractScrollArea::moveEvent(event);
    tellGeometry();
}

void CanvasWidget::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    // The window's own dialogs; a host set by the logic for scripted runs gives way to them.
    canvas_->setDialogHost(dialogs_.get());
    tellGeometry();
    tellViewportSize();
}

void CanvasWidget::syncScrollBars() {
    if (wholePage_) {
        syncWholePageBars();
        return;
    }
    // The scroll bars cover the page and a margin around it, in pixels of the
    // current zoom; the value is the page point at the window's top-left.
    const canvas::ViewGeometry& view = canvas_->viewGeometry();
    const double k = view.pixelsPerMm();
    const QSizeF page(canvas_->drawing().state().page.width, canvas_->drawing().state().page.height);
    const QSize window = viewport()->size();
    auto setBar = [&](QScrollBar* bar, double scrollMm, double pageMm, int windowPx) {
        const int value = static_cast<int>(std::lround(scrollMm * k));
        const int low = std::min(static_cast<int>(std::floor(-ScrollMarginMm * k)), value);
        const int high =
            std::max(static_cast<int>(std::ceil((pageMm + ScrollMarginMm) * k)) - windowPx, value);
        bar->setRange(low, std::max(low, high));
        bar->setPageStep(windowPx);
        bar->setSingleStep(std::max(1, windowPx / 20));
        bar->setValue(value);
    };
    syncingScrollBars_ = true;
    setBar(horizontalScrollBar(), view.scroll.x(), page.width(), window.width());
    setBar(verticalScrollBar(), view.scroll.y(), page.height(), window.height());
    syncingScrollBars_ = false;
}

void CanvasWidget::syncWholePageBars() {
    // The canvas sees the whole page with its margin; the bars move the
    // window over that view, from its top-left corner.
    tellViewportSize();
    const QSize all = canvas_->viewGeometry().viewport;
    const QSize window = viewport()->size();
    syncingScrollBars_ = true;
    auto setBar = [](QScrollBar* bar, int total, int shown, int& at) {
        const int high = std::max(0, total - shown);
        at = std::clamp(at, 0, high);
        bar->setRange(0, high);
        bar->setPageStep(shown);
        bar->setSingleStep(std::max(1, shown / 20));
        bar->setValue(at);
    };
    int x = offset_.x(), y = offset_.y();
    setBar(horizontalScrollBar(), all.width(), window.width(), x);
    setBar(verticalScrollBar(), all.height(), window.height(), y);
    syncingScrollBars_ = false;
    if (QPoint(x, y) != offset_) {
        offset_ = QPoint(x, y);
        tellGeometry();
    }
}

void CanvasWidget::scrollContentsBy(int, int) {
    if (syncingScrollBars_)
        return;
    if (wholePage_) {
        offset_ = QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
        tellGeometry();
        viewport()->update();
        return;
    }
    const double k = canvas_->viewGeometry().pixelsPerMm();
    const QPointF now = canvas_->viewGeometry().scroll;
    // Only the bar that moved changes its axis: the other keeps the canvas's fraction of a pixel.
    QPointF want = now;
    if (horizontalScrollBar()->value() != std::lround(now.x() * k))
        want.setX(horizontalScrollBar()->value() / k);
    if (verticalScrollBar()->value() != std::lround(now.y() * k))
        want.setY(verticalScrollBar()->value() / k);
    if (want != now)
        canvas_->setScroll(want);
}

// --- pointer -------------------------------------------------------------------

void CanvasWidget::syncCursor(const QPointF& clientPos) {
    const canvas::ViewSettings& tool = canvas_->viewSettings();
    Qt::CursorShape shape = Qt::ArrowCursor;
    switch (tool.toolMode) {
    case DrawMode:
        shape = Qt::CrossCursor;
        break;
    case RotateMode:
        shape = Qt::PointingHandCursor;
        break;
    case EditPointsMode:
        shape = Qt::UpArrowCursor;
        break;
    case SelectMode: {
        if (canvas_->tools().busy())
            break;
        const std::vector<QPointF> handles = canvas_->tools().handles();
        const canvas::ViewGeometry& view = canvas_->viewGeometry();
        for (size_t i = 0; i < handles.size(); ++i) {
            const QPointF at = view.pageToClient(handles[i]) - QPointF(offset_);
            if (std::fabs(at.x() - clientPos.x()) <= canvas::ToolController::HandleReachPx &&
                std::fabs(at.y() - clientPos.y()) <= canvas::ToolController::HandleReachPx) {
                shape = handleCursor(i, handles.size());
                break;
            }
        }
        break;
    }
    default:
        break;
    }
    if (viewport()->cursor().shape() != shape)
        viewport()->setCursor(shape);
}

void CanvasWidget::mousePressEvent(QMouseEvent* event) {
    const int button = platformButton(event->button());
    if (button == 0)
        return;
    viewport()->setFocus(Qt::MouseFocusReason);
    // The middle button pans the page by hand; the canvas still hears the press.
    if (button == MiddleButtonCode) {
        panFrom_ = event->position();
        panning_ = true;
        viewport()->setCursor(Qt::ClosedHandCursor);
    }
    const int shift = platformShiftMask(event->modifiers());
    const QPointF at = event->position();
    input([&] {
        const QPointF s = screenPos(at);
        canvas_->mousePress(button, shift, s.x(), s.y());
    });
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event) {
    if (panning_ && (event->buttons() & Qt::MiddleButton)) {
        // The page point under the pointer stays under it.
        const double k = canvas_->viewGeometry().pixelsPerMm();
        const QPointF moved = event->position() - panFrom_;
        panFrom_ = event->position();
        if (wholePage_) {
            horizontalScrollBar()->setValue(horizontalScrollBar()->value() -
                                            static_cast<int>(std::lround(moved.x())));
            verticalScrollBar()->setValue(verticalScrollBar()->value() -
                                          static_cast<int>(std::lround(moved.y())));
        } else {
            canvas_->setScroll(canvas_->viewGeometry().scroll - moved / k);
        }
    }
    const int buttons = platformButtons(event->buttons());
    const int shift = platformShiftMask(event->modifiers());
    const QPointF at = event->position();
    input([&] {
        const QPointF s = screenPos(at);
        canvas_->mouseMove(buttons, shift, s.x(), s.y());
    });
    if (!panning_)
        syncCursor(at);
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event) {
    const int button = platformButton(event->button());
    if (button == 0)
        return;
    if (button == MiddleButtonCode && panning_) {
        panning_ = false;
        viewport()->unsetCursor();
        syncCursor(event->position());
    }
    const int shift = platformShiftMask(event->modifiers());
    const QPointF at = event->position();
    input([&] {
        const QPointF s = screenPos(at);
        canvas_->mouseRelease(button, shift, s.x(), s.y());
    });
}

void CanvasWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    const int button = platformButton(event->button());
    if (button == 0)
        return;
    const int shift = platformShiftMask(event->modifiers());
    const QPointF at = event->position();
    input([&] {
        const QPointF s = screenPos(at);
        canvas_->mouseDoubleClick(button, shift, s.x(), s.y());
        // A double click on a text shape with the select tool edits its text in place.
        if (button != LeftButtonCode || canvas_->viewSettings().toolMode != SelectMode ||
            canvas_->textEditor().open)
            return;
        const canvas::ViewGeometry& view = canvas_->viewGeometry();
        const QPointF mm = view.clientToPage(inView(at));
        const int pos = canvas_->drawing().topmostAt(mm, TextReachPx / view.pixelsPerMm());
        if (pos < 0)
            return;
        const canvas::ShapeData& shape = *canvas_->drawing().at(pos);
        if (canvas::shape_type::isTextType(shape.type))
            canvas_->openTextEditor(shape.id);
    });
}

void CanvasWidget::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    if (event->modifiers() & Qt::ControlModifier) {
        const int notches = delta.y() / WheelNotch;
        if (notches != 0)
            zoomAround(canvas_->zoom() + notches * WheelZoomStep, event->position());
        event->accept();
        return;
    }
    // Shift turns the wheel into a sideways scroll, as most drawing programs do.
    const bool sideways = (event->modifiers() & Qt::ShiftModifier) || delta.x() != 0;
    QScrollBar* bar = sideways ? horizontalScrollBar() : verticalScrollBar();
    const int amount = sideways && delta.x() != 0 ? delta.x() : delta.y();
    bar->setValue(bar->value() - amount * WheelScrollPixels / WheelNotch);
    event->accept();
}

void CanvasWidget::zoomAround(int percent, const QPointF& clientPos) {
    const int zoom = std::clamp(percent, canvas::MinZoom, canvas::MaxZoom);
    if (zoom == canvas_->zoom())
        return;
    if (wholePage_) {
        canvas_->setZoom(zoom); // the page keeps its margin at the view's top-left
        return;
    }
    // The page point under the pointer stays under it.
    const QPointF before = canvas_->viewGeometry().clientToPage(clientPos);
    canvas_->setZoom(zoom);
    const QPointF after = canvas_->viewGeometry().clientToPage(clientPos);
    canvas_->setScroll(canvas_->viewGeometry().scroll + before - after);
}

// --- keys ------------------------------------------------------------------------

bool CanvasWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched == viewport()) {
        if (event->type() == QEvent::KeyPress)
            return keyPressed(static_cast<QKeyEvent*>(event));
        // The frame's width may change with the style, moving the drawing area inside the widget.
        if (event->type() == QEvent::Move)
            tellGeometry();
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

bool CanvasWidget::keyPressed(QKeyEvent* event) {
    // Tab keeps moving the focus between the controls of the form.
    if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab)
        return false;
    const int code = platformKeyCode(event->key());
    // Keys the canvas has no code for stop here too, so that no one else reports them as its keys.
    if (code == 0)
        return true;
    const int shift = platformShiftMask(event->modifiers());
    input([&] { canvas_->keyPress(code, shift); });
    return true;
}

// --- in-place text editor -------------------------------------------------------------

void CanvasWidget::syncTextEditor() {
    const canvas::TextEditorState& state = canvas_->textEditor();
    if (!state.open || (editor_ && editorShapeId_ != state.shapeId)) {
        if (editor_) {
            editor_->dismiss();
            editor_->hide();
            editor_->deleteLater();
            editor_ = nullptr;
            editorShapeId_ = 0;
            viewport()->setFocus(Qt::OtherFocusReason);
        }
        if (!state.open)
            return;
    }
    const canvas::ShapePtr shape = canvas_->drawing().find(state.shapeId);
    if (!shape)
        return;
    const canvas::ViewGeometry& view = canvas_->viewGeometry();
    const QRectF box =
        QRectF(QPointF(shape->left, shape->top), QPointF(shape->right, shape->bottom)).normalized();
    QRect onScreen = QRectF(view.pageToClient(box.topLeft()), view.pageToClient(box.bottomRight()))
                         .toAlignedRect()
                         .adjusted(-2, -2, 2, 2)
                         .translated(-offset_);
    const canvas::FontStyle& font = shape->st().font;
    QFont shown(font.name);
    shown.setBold(font.bold);
    shown.setItalic(font.italic);
    shown.setPixelSize(std::max(
        6, static_cast<int>(std::lround(font.size / PointsPerInch * MmPerInch * view.pixelsPerMm()))));
    // Room for at least a line of text and a few characters.
    const int lineHeight = QFontMetrics(shown).lineSpacing() + 8;
    onScreen.setHeight(std::max(onScreen.height(), lineHeight));
    onScreen.setWidth(std::max(onScreen.width(), lineHeight * 4));
    if (!editor_) {
        editor_ = new CanvasTextEditor(viewport());
        editorShapeId_ = state.shapeId;
        editor_->setPlainText(state.text);
        connect(editor_, &CanvasTextEditor::committed, this,
                [this](const QString& text) { input([&] { canvas_->commitTextEditor(text); }); });
        connect(editor_, &CanvasTextEditor::cancelled, this,
                [this] { input([&] { canvas_->cancelTextEditor(); }); });
        editor_->setFont(shown);
        editor_->setGeometry(onScreen);
        editor_->show();
        editor_->selectAll();
        editor_->setFocus(Qt::OtherFocusReason);
        return;
    }
    editor_->setFont(shown);
    editor_->setGeometry(onScreen);
}

// --- the control's widget ------------------------------------------------------------

ControlWidget makeCanvas(Control& control, QWidget* parent, ViewSink& sink) {
    ControlWidget made = makeEngineView<canvas::POLARDraw, CanvasWidget>(control, parent, sink);
    if (auto* canvasWidget = qobject_cast<CanvasWidget*>(made.widget))
        canvasWidget->setShowsWholePage(control.prop(QStringLiteral("ShowsWholePage")).toBool());
    return made;
}

} // namespace tessaly::ui
