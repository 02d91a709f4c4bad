#pragma once

#include "ControlWidget.h"

#include <QAbstractScrollArea>
#include <functional>
#include <memory>

class QPrinter;

namespace tessaly::schedule {
class ScheduleControl;
}

namespace tessaly::ui {

// The window of a schedule control. It paints the control's chart (only the
// part the desktop asks for), hands it the mouse, wheel and keys in view
// pixels, keeps it told of its size, moves the scroll bars over the range of
// days and the rows, shows the pointer each place of the chart takes, and
// prints the chart through the desktop's print dialog. Ctrl with the wheel
// zooms the time scale around the pointer.
//
// Every input reaches the control as a step of the view sink, so that a modal
// window above the form keeps it away and an error goes to the dispatcher.
class ScheduleWidget final : public QAbstractScrollArea {
    Q_OBJECT
public:
    // `sink` may be null: the steps then run at once (a schedule shown alone).
    ScheduleWidget(std::shared_ptr<schedule::ScheduleControl> engine, ViewSink* sink,
                   QWidget* parent = nullptr);
    ~ScheduleWidget() override;

    schedule::ScheduleControl& engine() const { return *engine_; }
    // The printer of the chart: A4 turned across, with margins of 10 mm.
    QPrinter& printer();
    // Prints the chart, with the print dialog first when `showDialog`.
    void print(bool showDialog);
    // Brings the scroll bars up to date with the control's view.
    void syncScrollBars();
    // The same once the events pending now have run: a rebuild of the chart
    // changes its extents many times over and syncs them once.
    void queueSync();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void input(const std::function<void()>& step);
    // One mouse event handed to the control: its step, the button or buttons, the shift keys, the place.
    using MouseStep = void (schedule::ScheduleControl::*)(int, int, double, double);
    void mouse(QMouseEvent* event, MouseStep step, int buttons);
    void syncCursor(const QPointF& at);
    // Pixels of content one step of the horizontal scroll bar stands for.
    double horizontalUnit() const;

    std::shared_ptr<schedule::ScheduleControl> engine_;
    ViewSink* sink_;
    std::unique_ptr<QPrinter> printer_;
    bool syncing_ = false;
    bool syncQueued_ = false;
};

// The widget of a schedule control: a ScheduleWidget on the control's engine,
// or a plain panel for a schedule control that has none.
ControlWidget makeSchedule(Control& control, QWidget* parent, ViewSink& sink);

} // namespace tessaly::ui
