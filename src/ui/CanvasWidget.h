#pragma once

#include "ControlWidget.h"

#include <QAbstractScrollArea>
#include <functional>
#include <memory>

namespace tessaly::canvas {
class POLARDraw;
}

namespace tessaly::ui {

class CanvasTextEditor;
class QtCanvasDialogHost;

// The window of a drawing canvas. It paints the canvas's view, hands the
// mouse, wheel and keys to the canvas in screen pixels and platform codes,
// keeps the canvas told of its size and screen position, shows the in-place
// text editor while the canvas has one open, and gives the canvas its Qt
// dialogs. Scroll bars move over the page with a margin around it; a drag
// with the middle button pans it, the wheel scrolls and Ctrl with the wheel
// zooms about the pointer.
//
// Every input reaches the canvas as a step of the view sink, so that a modal
// window above the form keeps it away and an error goes to the dispatcher.
class CanvasWidget final : public QAbstractScrollArea {
    Q_OBJECT
public:
    // `sink` may be null: the steps then run at once (a canvas shown alone).
    CanvasWidget(std::shared_ptr<canvas::POLARDraw> canvas, ViewSink* sink, QWidget* parent = nullptr);
    ~CanvasWidget() override;

    canvas::POLARDraw& canvas() const { return *canvas_; }
    QtCanvasDialogHost& dialogHost() const { return *dialogs_; }
    // The in-place text editor, or nullptr while none is shown.
    CanvasTextEditor* textEditor() const;

    // Zoom steps of the wheel with Ctrl: percent a notch, inside the canvas's range.
    static constexpr int WheelZoomStep = 10;
    // Page margin (mm) that the scroll bars reach beyond each edge of the page.
    static constexpr double ScrollMarginMm = 20.0;

    // Brings the view up to date with the canvas: scroll bars, text editor, cursor.
    void syncWithCanvas();

    // Whole-page mode (the template pane): the canvas's view holds its whole
    // page at the zoom with a margin round it, so that centring the page
    // shows it from its top-left corner, and the window's bars scroll over
    // that view. Set by the control's "ShowsWholePage".
    void setShowsWholePage(bool on);
    bool showsWholePage() const { return wholePage_; }
    // The margin (page mm) round the page in whole-page mode.
    static constexpr double WholePageMarginMm = 5.0;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    // Runs one input step through the sink (or at once without one).
    void input(const std::function<void()>& step);
    bool keyPressed(QKeyEvent* event);
    void canvasWantsRepaint();
    void tellGeometry();
    void syncScrollBars();
    void syncWholePageBars();
    void tellViewportSize();
    QSize wholePageSize() const;
    // A point of the window in the canvas's view (they differ in whole-page mode).
    QPointF inView(const QPointF& clientPos) const;
    void syncTextEditor();
    void syncCursor(const QPointF& clientPos);
    void commitEditor();
    void cancelEditor();
    void zoomAround(int percent, const QPointF& clientPos);
    QPointF screenPos(const QPointF& clientPos) const;

    std::shared_ptr<canvas::POLARDraw> canvas_;
    ViewSink* sink_;
    std::unique_ptr<QtCanvasDialogHost> dialogs_;
    CanvasTextEditor* editor_ = nullptr;
    int editorShapeId_ = 0;
    bool syncingScrollBars_ = false;
    bool wholePage_ = false;
    QPoint offset_;        // whole-page mode: the window's top-left in the canvas's view, pixels
    bool panning_ = false; // the middle button is down: the page follows the pointer
    QPointF panFrom_;      // where the pointer was at the last step of the pan
    bool inSync_ = false;
};

// The widget of a canvas control: a CanvasWidget on the control's canvas, or a
// plain panel for a canvas control that has none.
ControlWidget makeCanvas(Control& control, QWidget* parent, ViewSink& sink);

} // namespace tessaly::ui
