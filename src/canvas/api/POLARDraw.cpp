#include "POLARDraw.h"

#include "PageObjects.h"
#include "ShapeObjects.h"
#include "ViewObjects.h"
#include "canvas/engine/ToolController.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "core/runtime/RuntimeError.h"

#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

POLARDraw::POLARDraw() : tools_(std::make_unique<ToolController>(*this)) {}

POLARDraw::~POLARDraw() = default;

std::shared_ptr<POLARDraw> POLARDraw::create() {
    return std::shared_ptr<POLARDraw>(new POLARDraw());
}

// --- the objects below the control, made once and kept ---------------------

namespace {
template <class T, class... Args>
std::shared_ptr<T>& made(std::shared_ptr<T>& slot, POLARDraw& c, Args... args) {
    if (!slot)
        slot = std::make_shared<T>(std::static_pointer_cast<POLARDraw>(c.shared_from_this()), args...);
    return slot;
}
} // namespace

std::shared_ptr<Page> POLARDraw::page() {
    return made(page_, *this);
}
std::shared_ptr<ViewList> POLARDraw::views() {
    return made(views_, *this);
}
std::shared_ptr<View> POLARDraw::view() {
    return made(viewObject_, *this);
}
std::shared_ptr<ViewOptions> POLARDraw::viewOptions() {
    return made(viewOptions_, *this);
}
std::shared_ptr<ShapeList> POLARDraw::shapes() {
    return made(shapeList_, *this);
}
std::shared_ptr<Selection> POLARDraw::selection() {
    return made(selectionObject_, *this);
}
std::shared_ptr<GuideList> POLARDraw::horizontalGuides() {
    return made(hGuides_, *this, true);
}
std::shared_ptr<GuideList> POLARDraw::verticalGuides() {
    return made(vGuides_, *this, false);
}

// --- calls, undo steps and repaints -----------------------------------------

POLARDraw::Scope::Scope(POLARDraw& canvas) : canvas_(canvas) {
    canvas_.enter();
}

POLARDraw::Scope::~Scope() {
    canvas_.leave();
}

void POLARDraw::enter() {
    if (depth_ == 0)
        shapeAddedInCall_ = false;
    ++depth_;
    doc_.begin();
}

void POLARDraw::leave() {
    --depth_;
    if (doc_.end())
        modified_ = true;
    if (depth_ > 0)
        return;
    if (shapeAddedInCall_ && !autoRedraw_) {
        autoRedraw_ = true; // a ShapeAdded handler left painting off: the canvas turns it on again
        repaintPending_ = true;
    }
    shapeAddedInCall_ = false;
    if (repaintPending_ && autoRedraw_) {
        repaintPending_ = false;
        ++repaintCount_;
        if (repaintCallback_)
            repaintCallback_();
    }
}

void POLARDraw::requestRepaint() {
    repaintPending_ = true;
    if (depth_ == 0 && autoRedraw_) {
        repaintPending_ = false;
        ++repaintCount_;
        if (repaintCallback_)
            repaintCallback_();
    }
}

// --- properties -------------------------------------------------------------

void POLARDraw::setZoom(int percent) {
    view_.setZoomKeepingCentre(percent);
    requestRepaint();
}

void POLARDraw::setGridVisible(bool on) {
    gridVisible_ = on;
    requestRepaint();
}

void POLARDraw::setCoordinateMode(int mode) {
    if (mode != coordinate_mode::Page && mode != coordinate_mode::Pixels)
        raiseError(err::InvalidProcedureCall,
                   QStringLiteral("Coordinate mode %1 is not supported").arg(mode));
    coordinateMode_ = mode;
}

void POLARDraw::setDrawingTag(const QString& tag) {
    editPage([&](PageState& s) { s.drawingTag = tag; });
}

void POLARDraw::setAutoRedraw(bool on) {
    autoRedraw_ = on;
    if (on && repaintPending_)
        requestRepaint();
}

void POLARDraw::refreshScreen() {
    requestRepaint();
}

void POLARDraw::redraw() {
    requestRepaint();
}

// --- units ----------------------------------------------------------------

double POLARDraw::toUnits(double mm) const {
    return coordinateMode_ == coordinate_mode::Pixels ? mm * view_.pixelsPerMm() : mm;
}

double POLARDraw::fromUnits(double units) const {
    return coordinateMode_ == coordinate_mode::Pixels ? units / view_.pixelsPerMm() : units;
}

int POLARDraw::toUnitsInt(double mm) const {
    const double v = std::nearbyint(toUnits(mm));
    return static_cast<int>(std::clamp(v, -2147483648.0, 2147483647.0));
}

// --- view -------------------------------------------------------------------

void POLARDraw::setViewportSize(const QSize& size) {
    view_.viewport = size.expandedTo(QSize(1, 1));
    requestRepaint();
}

void POLARDraw::centerPage() {
    const PageSettings& p = drawing().state().page;
    view_.centreOn(QPointF(p.width / 2.0, p.height / 2.0));
    requestRepaint();
}

void POLARDraw::setScroll(const QPointF& pageTopLeftMm) {
    view_.scroll = pageTopLeftMm;
    requestRepaint();
}

void POLARDraw::fitTo(int mode) {
    const PageSettings& p = drawing().state().page;
    QRectF area(0, 0, p.width, p.height);
    bool byWidth = true, byHeight = true;
    switch (mode) {
    case fit_mode::Page:
        break;
    case fit_mode::Selection:
        if (selection_.empty())
            return;
        area = boundsOf(selection_);
        break;
    case fit_mode::Width:
        byHeight = false;
        break;
    case fit_mode::Height:
        byWidth = false;
        break;
    default:
        raiseError(err::InvalidProcedureCall, QStringLiteral("Fit mode %1 is not supported").arg(mode));
    }
    view_.zoom = view_.zoomToFit(area.size(), byWidth, byHeight);
    view_.centreOn(area.center());
    requestRepaint();
}

// --- events -----------------------------------------------------------------

void POLARDraw::addEventSink(CanvasEvents* sink) {
    if (sink && std::find(sinks_.begin(), sinks_.end(), sink) == sinks_.end())
        sinks_.push_back(sink);
}

void POLARDraw::removeEventSink(CanvasEvents* sink) {
    sinks_.erase(std::remove(sinks_.begin(), sinks_.end(), sink), sinks_.end());
}

#define TESSALY_RAISE(call)                                                                                  \
    do {                                                                                                     \
        const std::vector<CanvasEvents*> sinks = sinks_;                                                     \
        for (CanvasEvents * sink : sinks)                                                                    \
            sink->call;                                                                                      \
    } while (false)

void POLARDraw::raiseMouseDown(int& b, int& s, float& x, float& y) {
    TESSALY_RAISE(MouseDown(b, s, x, y));
}
void POLARDraw::raiseMouseMove(int& b, int& s, float& x, float& y) {
    TESSALY_RAISE(MouseMove(b, s, x, y));
}
void POLARDraw::raiseMouseUp(int& b, int& s, float& x, float& y) {
    TESSALY_RAISE(MouseUp(b, s, x, y));
}
void POLARDraw::raiseKeyDown(int& k, int& s) {
    TESSALY_RAISE(KeyDown(k, s));
}
void POLARDraw::raiseSelectionChanged(int id) {
    TESSALY_RAISE(SelectionChanged(id));
}
void POLARDraw::raiseSelectionCleared() {
    TESSALY_RAISE(SelectionCleared());
}
void POLARDraw::raiseShapeChanged() {
    TESSALY_RAISE(ShapeChanged());
}
void POLARDraw::raiseShapeMoved(int a, int b) {
    TESSALY_RAISE(ShapeMoved(a, b));
}
void POLARDraw::raiseDrawingCancelled() {
    TESSALY_RAISE(DrawingCancelled());
}

bool POLARDraw::raiseFileReadError(const QString& text, int code) {
    bool handled = false;
    TESSALY_RAISE(FileReadError(text, code, handled));
    return handled;
}

bool POLARDraw::raiseFileWriteError(const QString& text, int code) {
    bool handled = false;
    TESSALY_RAISE(FileWriteError(text, code, handled));
    return handled;
}

#undef TESSALY_RAISE

void POLARDraw::announceShapeAdded(int id) {
    shapeAddedInCall_ = true;
    const int pos = drawing().positionOf(id);
    const std::vector<CanvasEvents*> sinks = sinks_;
    for (CanvasEvents* sink : sinks)
        sink->ShapeAdded(pos + 1, id);
}

void POLARDraw::announceShapeFinished(int id) {
    const int pos = drawing().positionOf(id);
    const std::vector<CanvasEvents*> sinks = sinks_;
    for (CanvasEvents* sink : sinks)
        sink->ShapeFinished(pos + 1, id);
}

// --- input ------------------------------------------------------------------

void POLARDraw::mousePress(int button, int shift, double x, double y) {
    Scope scope(*this);
    float fx = static_cast<float>(x), fy = static_cast<float>(y);
    raiseMouseDown(button, shift, fx, fy);
    tools_->press(button, shift, view_.screenToPage(QPointF(fx, fy)));
}

void POLARDraw::mouseMove(int button, int shift, double x, double y) {
    Scope scope(*this);
    float fx = static_cast<float>(x), fy = static_cast<float>(y);
    raiseMouseMove(button, shift, fx, fy);
    tools_->move(button, shift, view_.screenToPage(QPointF(fx, fy)));
}

void POLARDraw::mouseRelease(int button, int shift, double x, double y) {
    Scope scope(*this);
    float fx = static_cast<float>(x), fy = static_cast<float>(y);
    const QPointF page = view_.screenToPage(QPointF(fx, fy));
    tools_->release(button, shift, page);
    raiseMouseUp(button, shift, fx, fy);
}

void POLARDraw::mouseDoubleClick(int button, int shift, double x, double y) {
    Scope scope(*this);
    tools_->doubleClick(button, shift, view_.screenToPage(QPointF(x, y)));
}

void POLARDraw::keyPress(int keyCode, int shift) {
    Scope scope(*this);
    raiseKeyDown(keyCode, shift);
    if (keyCode != 0)
        tools_->key(keyCode, shift);
}

// --- text editor --------------------------------------------------------------

void POLARDraw::openTextEditor(int shapeId) {
    const ShapePtr s = shapeOrRaise(shapeId);
    editor_ = {true, shapeId, s->text()};
    requestRepaint();
}

void POLARDraw::commitTextEditor(const QString& text) {
    if (!editor_.open)
        return;
    const int id = editor_.shapeId;
    editor_ = {};
    if (!drawing().contains(id))
        return;
    Scope scope(*this);
    editShapes({id}, [&](ShapeData& s) {
        ShapeExtra e = s.extraCopy();
        e.text = text;
        s.extra = std::make_shared<const ShapeExtra>(std::move(e));
    });
    raiseShapeChanged();
}

void POLARDraw::cancelTextEditor() {
    editor_ = {};
    requestRepaint();
}

} // namespace tessaly::canvas
