#include "ToolController.h"

#include "canvas/api/POLARDraw.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QLineF>
#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

namespace {
constexpr double HitTolerancePx = 4.0;    // how near the pointer must come to a shape or handle
constexpr double SnapTolerancePx = 8.0;   // how near a guide line pulls the pointer
constexpr double DragThresholdPx = 3.0;   // pointer travel before a press becomes a drag
constexpr double FreehandStepPx = 2.0;    // distance between recorded freehand points
constexpr int MaxGhosts = 1000;           // moved shapes drawn in full; beyond, only their box
constexpr double DefaultTextWidthMm = 40; // a free text placed by a click
constexpr double DefaultTextHeightMm = 10;
constexpr int DegreesPerTurn = 360;

bool locked(const ShapeData& s) {
    return s.has(shape_flag::LockA) && s.has(shape_flag::LockB);
}

bool lineLike(int type) {
    return type == shape_type::Line || type == shape_type::Link || type == shape_type::DimensionBar;
}

bool turned(const ShapeData& s) {
    return s.rotation != 0 && s.type != shape_type::Group;
}

// A turned shape turns about the centre of its box. An edit in the shape's
// own unturned frame that moves that centre would swing everything the edit
// left alone to a new place on the page; shifting the shape by that swing
// keeps it where it was.
void keepPlaceOnPage(ShapeData& s, const QPointF& oldCentre) {
    if (!turned(s))
        return;
    const QPointF moved = s.box().center() - oldCentre;
    const QPointF swing = moved - QTransform().rotate(s.rotation).map(moved);
    geometry::translate(s, -swing.x(), -swing.y());
}

// Sizes a turned shape with the handles of the selection's upright box: its
// centre follows the box, and each of its own sides stretches by the box's
// scales taken along that side's direction. A quarter or half turn thus
// follows the handles exactly, and no turn is lost.
void stretchTurned(ShapeData& s, const QRectF& old, const QRectF& now, double sx, double sy) {
    const double radians = s.rotation * M_PI / 180.0;
    const double cos2 = std::cos(radians) * std::cos(radians);
    const double sin2 = 1.0 - cos2;
    const QPointF c = s.box().center();
    const QPointF centre(now.left() + (c.x() - old.left()) * sx, now.top() + (c.y() - old.top()) * sy);
    const double halfWidth = (s.right - s.left) / 2 * (cos2 * sx + sin2 * sy);
    const double halfHeight = (s.bottom - s.top) / 2 * (sin2 * sx + cos2 * sy);
    geometry::setEdges(s, centre.x() - halfWidth, centre.y() - halfHeight, centre.x() + halfWidth,
                       centre.y() + halfHeight);
}

// A turn in whole degrees, brought into 0 to 359.
int16_t wrapDegrees(int degrees) {
    return static_cast<int16_t>((degrees % DegreesPerTurn + DegreesPerTurn) % DegreesPerTurn);
}

// The connection point of `s` nearest to `p` (the first of equally near ones).
int nearestConnectionPoint(const ShapeData& s, const QPointF& p) {
    int nearest = 0;
    double best = -1;
    for (int i = 0; i < geometry::ConnectionPointCount; ++i) {
        const double d = QLineF(geometry::connectionPoint(s, i), p).length();
        if (best < 0 || d < best) {
            best = d;
            nearest = i;
        }
    }
    return nearest;
}
} // namespace

void ToolController::setToolMode(int mode) {
    ViewSettings& v = canvas_.viewSettings();
    if (v.toolMode == mode)
        return;
    reset();
    v.toolMode = mode;
    canvas_.requestRepaint();
}

void ToolController::setToolShapeType(int type) {
    reset();
    canvas_.viewSettings().toolShapeType = type;
}

void ToolController::setToolOption(int option) {
    reset();
    canvas_.viewSettings().toolOption = option;
}

void ToolController::reset() {
    gesture_ = Gesture::None;
    points_.clear();
    feedback_ = {};
    handle_ = vertex_ = -1;
    pickedId_ = 0;
}

double ToolController::tolerance() const {
    return HitTolerancePx / canvas_.viewGeometry().pixelsPerMm();
}

QPointF ToolController::snap(const QPointF& p) const {
    const ViewSettings& v = canvas_.viewSettings();
    const PageState& st = canvas_.drawing().state();
    QPointF out = p;
    if (v.snapToGrid) {
        if (st.page.gridSpacingX > 0)
            out.setX(std::round(out.x() / st.page.gridSpacingX) * st.page.gridSpacingX);
        if (st.page.gridSpacingY > 0)
            out.setY(std::round(out.y() / st.page.gridSpacingY) * st.page.gridSpacingY);
    }
    if (v.snapToGuides) {
        const double reach = SnapTolerancePx / canvas_.viewGeometry().pixelsPerMm();
        double bestX = reach, bestY = reach;
        for (int g : st.verticalGuides)
            if (std::fabs(g - p.x()) <= bestX) {
                bestX = std::fabs(g - p.x());
                out.setX(g);
            }
        for (int g : st.horizontalGuides)
            if (std::fabs(g - p.y()) <= bestY) {
                bestY = std::fabs(g - p.y());
                out.setY(g);
            }
    }
    return out;
}

bool ToolController::isPointsTool() const {
    const ViewSettings& v = canvas_.viewSettings();
    return v.toolShapeType == shape_type::Freeform && v.toolOption != tool_option::Freehand;
}

bool ToolController::isFreehandTool() const {
    const ViewSettings& v = canvas_.viewSettings();
    return v.toolShapeType == shape_type::Freeform && v.toolOption == tool_option::Freehand;
}

std::vector<QPointF> ToolController::handles() const {
    const std::vector<int>& sel = canvas_.selectedIds();
    if (sel.empty())
        return {};
    if (sel.size() == 1) {
        const ShapePtr s = canvas_.drawing().find(sel[0]);
        if (s && lineLike(s->type)) {
            const QTransform t = geometry::rotation(*s);
            return {t.map(geometry::lineStart(*s)), t.map(geometry::lineEnd(*s))};
        }
    }
    const QRectF b = canvas_.boundsOf(sel);
    const QPointF c = b.center();
    const double g = HandleGapPx / canvas_.viewGeometry().pixelsPerMm();
    return {QPointF(b.left() - g, b.top() - g),     QPointF(c.x(), b.top() - g),
            QPointF(b.right() + g, b.top() - g),    QPointF(b.right() + g, c.y()),
            QPointF(b.right() + g, b.bottom() + g), QPointF(c.x(), b.bottom() + g),
            QPointF(b.left() - g, b.bottom() + g),  QPointF(b.left() - g, c.y())};
}

QPointF ToolController::handleAnchor(int index) const {
    const std::vector<int>& sel = canvas_.selectedIds();
    const std::vector<QPointF> h = handles();
    if (index < 0 || index >= static_cast<int>(h.size()))
        return {};
    if (h.size() != 8)
        return h[static_cast<size_t>(index)]; // a line's end is its own handle
    const QRectF b = canvas_.boundsOf(sel);
    const QPointF c = b.center();
    const QPointF anchors[8] = {
        b.topLeft(),     QPointF(c.x(), b.top()),    b.topRight(),   QPointF(b.right(), c.y()),
        b.bottomRight(), QPointF(c.x(), b.bottom()), b.bottomLeft(), QPointF(b.left(), c.y())};
    return anchors[index];
}

int ToolController::handleAt(const QPointF& p) const {
    const std::vector<QPointF> h = handles();
    const double reach = HandleReachPx / canvas_.viewGeometry().pixelsPerMm();
    for (size_t i = 0; i < h.size(); ++i)
        if (std::fabs(h[i].x() - p.x()) <= reach && std::fabs(h[i].y() - p.y()) <= reach)
            return static_cast<int>(i);
    return -1;
}

std::vector<int> ToolController::movableSelection() const {
    std::vector<int> out;
    for (int id : canvas_.selectedIds())
        if (ShapePtr s = canvas_.drawing().find(id); s && !locked(*s))
            out.push_back(id);
    return out;
}

// --- press ---------------------------------------------------------------

void ToolController::press(int button, int shift, const QPointF& mm) {
    if (canvas_.textEditor().open)
        canvas_.commitTextEditor(canvas_.textEditor().text);
    if (button != 1)
        return;
    current_ = mm;
    switch (canvas_.viewSettings().toolMode) {
    case tool_mode::Select:
        pressSelect(shift, mm);
        break;
    case tool_mode::Rotate:
        pressRotate(mm);
        break;
    case tool_mode::EditPoints:
        pressEditPoints(mm);
        break;
    case tool_mode::Draw:
        pressDraw(snap(mm));
        break;
    default:
        break;
    }
}

void ToolController::pressSelect(int shift, const QPointF& p) {
    start_ = p;
    handle_ = handleAt(p);
    if (handle_ >= 0 && !movableSelection().empty()) {
        grab_ = p - handleAnchor(handle_);
        gesture_ = Gesture::Resize;
        return;
    }
    const int pos = canvas_.drawing().topmostAt(p, tolerance());
    if (pos < 0) {
        if (!(shift & shift_state::Shift))
            canvas_.clearSelection();
        gesture_ = Gesture::RubberBand;
        return;
    }
    const ShapePtr hit = canvas_.drawing().at(pos);
    std::vector<int> sel = canvas_.selectedIds();
    const bool selected = std::find(sel.begin(), sel.end(), hit->id) != sel.end();
    if (shift & shift_state::Shift) {
        if (selected)
            sel.erase(std::find(sel.begin(), sel.end(), hit->id));
        else
            sel.push_back(hit->id);
        canvas_.setSelection(sel);
    } else if (!selected) {
        canvas_.setSelection({hit->id});
    }
    gesture_ = locked(*hit) ? Gesture::RubberBand : Gesture::Pending;
}

void ToolController::pressRotate(const QPointF& p) {
    const int pos = canvas_.drawing().topmostAt(p, tolerance());
    if (pos < 0)
        return;
    const ShapePtr hit = canvas_.drawing().at(pos);
    const std::vector<int>& sel = canvas_.selectedIds();
    if (std::find(sel.begin(), sel.end(), hit->id) == sel.end())
        canvas_.setSelection({hit->id});
    if (movableSelection().empty())
        return;
    start_ = p;
    gesture_ = Gesture::Rotate;
}

void ToolController::pressEditPoints(const QPointF& p) {
    const std::vector<int>& sel = canvas_.selectedIds();
    if (sel.size() != 1)
        return;
    const ShapePtr s = canvas_.drawing().find(sel[0]);
    if (!s || s->type != shape_type::Freeform || locked(*s))
        return;
    const QTransform t = geometry::rotation(*s);
    const std::vector<QPointF> pts = geometry::freeformPoints(*s);
    for (size_t i = 0; i < pts.size(); ++i)
        if (QLineF(t.map(pts[i]), p).length() <= tolerance() * 1.5) {
            vertex_ = static_cast<int>(i);
            pickedId_ = s->id;
            gesture_ = Gesture::EditPoint;
            start_ = p;
            return;
        }
}

void ToolController::pressDraw(const QPointF& p) {
    const int type = canvas_.viewSettings().toolShapeType;
    if (isPointsTool()) {
        if (gesture_ != Gesture::Points) {
            gesture_ = Gesture::Points;
            points_ = {p, p};
        } else {
            points_.back() = p;
            points_.push_back(p);
        }
        updateFeedback(p);
        return;
    }
    start_ = p;
    if (isFreehandTool()) {
        gesture_ = Gesture::Freehand;
        points_ = {p};
        return;
    }
    if (type == shape_type::Link) {
        pressLink(p);
        return;
    }
    gesture_ = Gesture::Drag;
}

// A link starts at the connection point of the shape under the pointer
// nearest to it, or where the pointer is when no shape is under it.
void ToolController::pressLink(const QPointF& p) {
    linkStart_ = {};
    const int pos = canvas_.drawing().topmostAt(
        p, tolerance(), [](const ShapeData& s) { return s.type != shape_type::Link; });
    if (pos >= 0) {
        const ShapeData& s = *canvas_.drawing().at(pos);
        linkStart_ = {s.id, nearestConnectionPoint(s, p)};
        start_ = geometry::connectionPoint(s, linkStart_.pointIndex);
    }
    gesture_ = Gesture::Link;
}

// --- move ----------------------------------------------------------------

void ToolController::move(int, int, const QPointF& mm) {
    if (gesture_ == Gesture::None)
        return;
    QPointF p = mm;
    if (gesture_ == Gesture::Pending) {
        if (QLineF(start_, mm).length() * canvas_.viewGeometry().pixelsPerMm() < DragThresholdPx)
            return;
        gesture_ = movableSelection().empty() ? Gesture::RubberBand : Gesture::Move;
    }
    if (gesture_ == Gesture::Freehand) {
        if (QLineF(points_.back(), mm).length() * canvas_.viewGeometry().pixelsPerMm() >= FreehandStepPx)
            points_.push_back(mm);
    } else if (gesture_ == Gesture::Points) {
        p = snap(mm);
        points_.back() = p;
    } else if (snapsPointer(gesture_)) {
        p = snap(mm);
    }
    current_ = p;
    updateFeedback(p);
}

void ToolController::updateFeedback(const QPointF& p) {
    feedback_ = {};
    switch (gesture_) {
    case Gesture::RubberBand:
        feedback_.rubberBand = QRectF(start_, p).normalized();
        break;
    case Gesture::Move:
        moveFeedback(p);
        break;
    case Gesture::Rotate:
        rotateFeedback(p);
        break;
    case Gesture::Resize:
        resizeFeedback(p);
        break;
    case Gesture::EditPoint:
        // shown by the release's result; draw the outline of the pointer's box
        feedback_.rubberBand = QRectF(start_, p).normalized();
        break;
    case Gesture::Drag:
    case Gesture::Link:
        feedback_.ghosts.push_back(dragShape(p));
        break;
    case Gesture::Points:
    case Gesture::Freehand:
        if (points_.size() >= 2)
            feedback_.ghosts.push_back(pointsShape(points_));
        break;
    default:
        break;
    }
    canvas_.requestRepaint();
}

// The moved shapes where the release will put them; a large selection shows its box.
void ToolController::moveFeedback(const QPointF& p) {
    const std::vector<int> ids = movableSelection();
    const QPointF off = moveOffset(ids, p);
    if (ids.size() > static_cast<size_t>(MaxGhosts)) {
        feedback_.movingBounds = canvas_.boundsOf(ids).translated(off);
        return;
    }
    for (int id : ids) {
        ShapeData g = *canvas_.drawing().find(id);
        geometry::translate(g, off.x(), off.y());
        feedback_.ghosts.push_back(std::move(g));
    }
}

// Each shape turned about its own centre by the pointer's turn.
void ToolController::rotateFeedback(const QPointF& p) {
    for (int id : movableSelection()) {
        ShapeData g = *canvas_.drawing().find(id);
        const QPointF c = g.box().center();
        const double a = QLineF(c, p).angleTo(QLineF(c, start_));
        g.rotation = wrapDegrees(static_cast<int>(std::lround(g.rotation + a)));
        feedback_.ghosts.push_back(std::move(g));
    }
}

// The shapes as the release will size them; a large selection shows the pointer's box.
void ToolController::resizeFeedback(const QPointF& p) {
    const std::vector<int> ids = movableSelection();
    const std::function<void(ShapeData&)> edit = resizeEdit(ids, p);
    if (ids.size() > static_cast<size_t>(MaxGhosts)) {
        feedback_.rubberBand = QRectF(start_, p).normalized();
        return;
    }
    for (int id : ids) {
        ShapeData g = *canvas_.drawing().find(id);
        edit(g);
        feedback_.ghosts.push_back(std::move(g));
    }
}

// How far the selection `ids` moves when the pointer is at `p`: its top left
// corner follows the pointer and snaps.
QPointF ToolController::moveOffset(const std::vector<int>& ids, const QPointF& p) const {
    const QPointF topLeft = canvas_.boundsOf(ids).topLeft();
    return snap(topLeft + (p - start_)) - topLeft;
}

bool ToolController::snapsPointer(Gesture g) {
    return g == Gesture::Drag || g == Gesture::Link || g == Gesture::EditPoint;
}

// --- sizing by the handles ------------------------------------------------

std::function<void(ShapeData&)> ToolController::resizeEdit(const std::vector<int>& ids,
                                                           const QPointF& pointer) const {
    // The held point of the outline follows the pointer at the distance it
    // was grabbed from, and snaps.
    const QPointF p = snap(pointer - grab_);
    const Drawing& d = canvas_.drawing();
    const int handle = handle_;
    if (ids.size() == 1 && lineLike(d.find(ids[0])->type) && handle < 2) {
        // An end of a single line goes to the pointer; the other end stays.
        return [handle, p](ShapeData& s) {
            const QPointF local = geometry::rotation(s).inverted().map(p);
            const QPointF centre = s.box().center();
            if (handle == 0)
                geometry::setLineEnds(s, local, geometry::lineEnd(s));
            else
                geometry::setLineEnds(s, geometry::lineStart(s), local);
            keepPlaceOnPage(s, centre);
        };
    }
    // The dragged side or corner of the selection's box goes to the pointer;
    // every shape in it is scaled along.
    const QRectF old = canvas_.boundsOf(ids);
    double l = old.left(), t = old.top(), r = old.right(), b = old.bottom();
    if (handle == 0 || handle == 6 || handle == 7)
        l = p.x();
    if (handle == 2 || handle == 3 || handle == 4)
        r = p.x();
    if (handle == 0 || handle == 1 || handle == 2)
        t = p.y();
    if (handle == 4 || handle == 5 || handle == 6)
        b = p.y();
    const double sx = old.width() != 0 ? (r - l) / old.width() : 1;
    const double sy = old.height() != 0 ? (b - t) / old.height() : 1;
    const QRectF now(QPointF(l, t), QPointF(r, b));
    return [old, now, sx, sy](ShapeData& s) {
        if (turned(s)) {
            stretchTurned(s, old, now, sx, sy);
            return;
        }
        geometry::setEdges(s, now.left() + (s.left - old.left()) * sx, now.top() + (s.top - old.top()) * sy,
                           now.left() + (s.right - old.left()) * sx, now.top() + (s.bottom - old.top()) * sy);
    };
}

// --- release -------------------------------------------------------------

void ToolController::release(int button, int, const QPointF& mm) {
    if (button != 1 || gesture_ == Gesture::None || gesture_ == Gesture::Points)
        return;
    const Gesture g = gesture_;
    const QPointF p = snapsPointer(g) ? snap(mm) : mm;
    gesture_ = Gesture::None;
    feedback_ = {};
    // What the gesture showed (the rubber band, ghosts) goes from the screen,
    // also when the release changes nothing else.
    canvas_.requestRepaint();
    switch (g) {
    case Gesture::RubberBand:
        finishSelect(p);
        break;
    case Gesture::Move:
        finishMove(p);
        break;
    case Gesture::Resize:
        finishResize(p);
        break;
    case Gesture::Rotate:
        finishRotate(p);
        break;
    case Gesture::EditPoint:
        finishEditPoint(p);
        break;
    case Gesture::Freehand:
        finishFreehand(mm);
        break;
    case Gesture::Drag:
    case Gesture::Link:
        finishDrag(p);
        break;
    default:
        break; // a press that never became a drag
    }
}

void ToolController::finishMove(const QPointF& p) {
    const std::vector<int> ids = movableSelection();
    const QPointF off = moveOffset(ids, p);
    if (off.isNull())
        return;
    canvas_.moveShapes(ids, off.x(), off.y());
    canvas_.raiseShapeMoved(canvas_.toUnitsInt(off.x()), canvas_.toUnitsInt(off.y()));
    canvas_.raiseShapeChanged();
}

void ToolController::finishResize(const QPointF& p) {
    const std::vector<int> ids = movableSelection();
    canvas_.editShapes(ids, resizeEdit(ids, p));
    canvas_.raiseShapeChanged();
}

// The selection turns about the centre of its box, by whole degrees.
void ToolController::finishRotate(const QPointF& p) {
    const std::vector<int> ids = movableSelection();
    if (ids.empty())
        return;
    const QPointF c = canvas_.boundsOf(ids).center();
    const int degrees = static_cast<int>(std::lround(QLineF(c, p).angleTo(QLineF(c, start_))));
    if (degrees % DegreesPerTurn == 0)
        return;
    canvas_.editShapes(ids, [&](ShapeData& s) { s.rotation = wrapDegrees(s.rotation + degrees); });
    canvas_.raiseShapeChanged();
}

// The held vertex of the free form goes to the pointer.
void ToolController::finishEditPoint(const QPointF& p) {
    canvas_.editShapes({pickedId_}, [&](ShapeData& s) {
        std::vector<QPointF> pts = geometry::freeformPoints(s);
        if (vertex_ < 0 || vertex_ >= static_cast<int>(pts.size()))
            return;
        pts[static_cast<size_t>(vertex_)] = geometry::rotation(s).inverted().map(p);
        const QPointF centre = s.box().center();
        geometry::setFreeformPoints(s, pts);
        keepPlaceOnPage(s, centre);
    });
    canvas_.raiseShapeChanged();
}

void ToolController::finishFreehand(const QPointF& mm) {
    points_.push_back(mm);
    if (points_.size() >= 2)
        finishStroke(pointsShape(points_));
    else
        cancelDrawing();
    points_.clear();
}

// A drag of the draw tool makes its shape; a mere click makes a text box of
// the default size, or nothing for the other shapes.
void ToolController::finishDrag(const QPointF& p) {
    ShapeData s = dragShape(p);
    const int type = canvas_.viewSettings().toolShapeType;
    const bool tiny = QLineF(start_, p).length() * canvas_.viewGeometry().pixelsPerMm() < DragThresholdPx;
    if (tiny && type == shape_type::PlainText) {
        s.left = start_.x();
        s.top = start_.y();
        s.right = start_.x() + DefaultTextWidthMm;
        s.bottom = start_.y() + DefaultTextHeightMm;
    } else if (tiny) {
        cancelDrawing();
        return;
    }
    finishStroke(std::move(s), type == shape_type::PlainText);
}

void ToolController::finishSelect(const QPointF& p) {
    const QRectF band = QRectF(start_, p).normalized();
    if (band.width() * canvas_.viewGeometry().pixelsPerMm() < DragThresholdPx &&
        band.height() * canvas_.viewGeometry().pixelsPerMm() < DragThresholdPx)
        return;
    std::vector<int> sel = canvas_.selectedIds();
    const Drawing& d = canvas_.drawing();
    for (int pos : d.positionsIn(band)) {
        const ShapeData& s = *d.at(pos);
        if (geometry::insideRect(s, band) && std::find(sel.begin(), sel.end(), s.id) == sel.end())
            sel.push_back(s.id);
    }
    canvas_.setSelection(sel);
}

void ToolController::doubleClick(int button, int, const QPointF&) {
    if (button == 1 && gesture_ == Gesture::Points)
        finishPoints();
}

void ToolController::finishPoints() {
    std::vector<QPointF> pts = points_;
    if (!pts.empty())
        pts.pop_back(); // the point following the pointer
    pts.erase(std::unique(pts.begin(), pts.end()), pts.end());
    gesture_ = Gesture::None;
    feedback_ = {};
    points_.clear();
    if (pts.size() < 2) {
        cancelDrawing();
        return;
    }
    finishStroke(pointsShape(pts));
}

void ToolController::cancelDrawing() {
    gesture_ = Gesture::None;
    feedback_ = {};
    points_.clear();
    canvas_.requestRepaint();
    canvas_.raiseDrawingCancelled();
}

bool ToolController::key(int keyCode, int shift) {
    if (shift & shift_state::Ctrl)
        return ctrlKey(keyCode, shift);
    switch (keyCode) {
    case key_code::Escape:
        return escapeKey();
    case key_code::Enter:
        if (gesture_ == Gesture::Points) {
            finishPoints();
            return true;
        }
        return false;
    case key_code::Delete:
        if (gesture_ != Gesture::None || canvas_.textEditor().open || canvas_.selectedIds().empty())
            return false;
        canvas_.deleteShapes(canvas_.selectedIds());
        return true;
    default:
        return false;
    }
}

// Ctrl with a key: undo, redo and the clipboard. Ctrl+Shift+Z is redo, as Ctrl+Y.
bool ToolController::ctrlKey(int keyCode, int shift) {
    switch (keyCode) {
    case key_code::Z:
        if (shift & shift_state::Shift)
            canvas_.redo();
        else
            canvas_.undo();
        return true;
    case key_code::Y:
        canvas_.redo();
        return true;
    case key_code::C:
        canvas_.copy();
        return true;
    case key_code::X:
        canvas_.cut();
        return true;
    case key_code::V:
        canvas_.paste();
        return true;
    default:
        return false;
    }
}

// Escape closes the text editor, else cancels the drawing, else abandons the gesture.
bool ToolController::escapeKey() {
    if (canvas_.textEditor().open) {
        canvas_.cancelTextEditor();
        return true;
    }
    if (gesture_ == Gesture::Points || gesture_ == Gesture::Freehand || gesture_ == Gesture::Drag ||
        gesture_ == Gesture::Link) {
        cancelDrawing();
        return true;
    }
    if (gesture_ != Gesture::None) {
        reset();
        canvas_.requestRepaint();
        return true;
    }
    return false;
}

// --- shapes of the draw tool ---------------------------------------------

ShapeData ToolController::dragShape(const QPointF& p) const {
    const int type = canvas_.viewSettings().toolShapeType;
    ShapeData s;
    s.type = static_cast<int16_t>(type);
    s.style = defaultStyle();
    s.setFlag(shape_flag::Filled, !shape_type::isOpenStroke(type));
    if (lineLike(type)) {
        QPointF end = p;
        if (type == shape_type::Link) {
            const int pos = canvas_.drawing().topmostAt(p, tolerance(), [&](const ShapeData& c) {
                return c.type != shape_type::Link && c.id != linkStart_.shapeId;
            });
            ShapeExtra e;
            e.linkStart = linkStart_;
            if (pos >= 0) {
                const ShapeData& target = *canvas_.drawing().at(pos);
                const int nearest = nearestConnectionPoint(target, p);
                e.linkEnd = {target.id, nearest};
                end = geometry::connectionPoint(target, nearest);
            }
            s.extra = std::make_shared<const ShapeExtra>(std::move(e));
        }
        geometry::setLineEnds(s, start_, end);
        return s;
    }
    const QRectF r = QRectF(start_, p).normalized();
    s.left = r.left();
    s.top = r.top();
    s.right = r.right();
    s.bottom = r.bottom();
    return s;
}

ShapeData ToolController::pointsShape(const std::vector<QPointF>& points) const {
    ShapeData s;
    s.type = shape_type::Freeform;
    s.style = defaultStyle();
    s.setFlag(shape_flag::Filled, false);
    s.setFlag(shape_flag::Smooth, canvas_.viewSettings().toolOption == tool_option::Curve);
    geometry::setFreeformPoints(s, points);
    return s;
}

void ToolController::finishStroke(ShapeData shape, bool openEditor) {
    const int id = canvas_.insertNewShape(std::move(shape));
    canvas_.setSelection({id});
    canvas_.announceShapeAdded(id);
    canvas_.announceShapeFinished(id);
    if (openEditor && canvas_.drawing().contains(id))
        canvas_.openTextEditor(id);
}

} // namespace tessaly::canvas
