#pragma once

#include "canvas/api/CanvasCodes.h"
#include "canvas/model/ShapeData.h"

#include <QPointF>
#include <QRectF>
#include <functional>
#include <vector>

namespace tessaly::canvas {

class POLARDraw;

// Key codes the canvas handles itself.
namespace key_code {
constexpr int Enter = 13;
constexpr int Escape = 27;
constexpr int Delete = 46;
constexpr int C = 67;
constexpr int V = 86;
constexpr int X = 88;
constexpr int Y = 89;
constexpr int Z = 90;
} // namespace key_code

namespace shift_state {
constexpr int Shift = 1;
constexpr int Ctrl = 2;
constexpr int Alt = 4;
} // namespace shift_state

// What a tool shows while it works: shapes being drawn, moved or sized, and the rubber band.
struct ToolFeedback {
    std::vector<ShapeData> ghosts;
    QRectF rubberBand;   // mm; empty when there is none
    QRectF movingBounds; // mm; outline of a large moved selection
};

// The tools of the canvas as state machines. Input arrives as page
// millimetres (the canvas converts screen pixels); the outcome goes through
// the canvas's edit and event functions.
class ToolController {
public:
    // Screen pixels between the outline of the selection and the centre of a
    // side or corner handle: the handles stand outside the outline, so that a
    // press on any line of the selected shapes moves them, however small.
    static constexpr double HandleGapPx = 6.0;
    // How near (screen pixels, each way) a press must come to a handle's centre to take it.
    static constexpr double HandleReachPx = 4.0;

    explicit ToolController(POLARDraw& canvas) : canvas_(canvas) {}

    void setToolMode(int mode);
    void setToolShapeType(int type);
    void setToolOption(int option);

    void press(int button, int shift, const QPointF& mm);
    void move(int button, int shift, const QPointF& mm);
    void release(int button, int shift, const QPointF& mm);
    void doubleClick(int button, int shift, const QPointF& mm);
    // The canvas's own keys; true when the key did something.
    bool key(int keyCode, int shift);
    // Abandons what the tool was doing (no events).
    void reset();

    bool busy() const { return gesture_ != Gesture::None; }
    const ToolFeedback& feedback() const { return feedback_; }
    // Handle positions (mm) of the selection: 8 around the box, outside it,
    // or the two ends of a line.
    std::vector<QPointF> handles() const;

private:
    enum class Gesture {
        None,
        Pending,
        RubberBand,
        Move,
        Resize,
        Rotate,
        EditPoint,
        Drag,
        Points,
        Freehand,
        Link
    };

    void pressSelect(int shift, const QPointF& p);
    void pressRotate(const QPointF& p);
    void pressEditPoints(const QPointF& p);
    void pressDraw(const QPointF& p);
    void pressLink(const QPointF& p);
    // What releasing the button ends, by gesture.
    void finishSelect(const QPointF& p);
    void finishMove(const QPointF& p);
    void finishResize(const QPointF& p);
    void finishRotate(const QPointF& p);
    void finishEditPoint(const QPointF& p);
    void finishFreehand(const QPointF& mm);
    void finishDrag(const QPointF& p);
    void finishPoints();
    void finishStroke(ShapeData shape, bool openEditor = false);
    void cancelDrawing();
    void updateFeedback(const QPointF& p);
    void moveFeedback(const QPointF& p);
    void rotateFeedback(const QPointF& p);
    void resizeFeedback(const QPointF& p);
    QPointF moveOffset(const std::vector<int>& ids, const QPointF& p) const;
    // True for the gestures whose pointer snaps to the grid and guides.
    static bool snapsPointer(Gesture g);
    bool ctrlKey(int keyCode, int shift);
    bool escapeKey();
    ShapeData dragShape(const QPointF& p) const;
    ShapeData pointsShape(const std::vector<QPointF>& points) const;
    // The point of the selection's outline (or line end) that handle `index` sizes.
    QPointF handleAnchor(int index) const;
    // What dragging the held handle to `p` does to each of the shapes `ids`.
    std::function<void(ShapeData&)> resizeEdit(const std::vector<int>& ids, const QPointF& p) const;
    QPointF snap(const QPointF& p) const;
    double tolerance() const;
    int handleAt(const QPointF& p) const;
    std::vector<int> movableSelection() const;
    bool isPointsTool() const;
    bool isFreehandTool() const;

    POLARDraw& canvas_;
    Gesture gesture_ = Gesture::None;
    QPointF start_;
    QPointF current_;
    int handle_ = -1;
    QPointF grab_; // from the held handle's point on the outline to the press
    int vertex_ = -1;
    int pickedId_ = 0;
    std::vector<QPointF> points_;
    LinkEnd linkStart_;
    ToolFeedback feedback_;
};

} // namespace tessaly::canvas
