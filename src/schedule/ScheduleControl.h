#pragma once

#include "ScheduleDesign.h"
#include "ScheduleLayout.h"
#include "ScheduleModel.h"
#include "ScheduleRenderer.h"
#include "core/runtime/AutoObject.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QPainter;
class QPagedPaintDevice;

namespace tessaly {
class Control;
}

namespace tessaly::schedule {

// Error raised for a row or bar that the control does not hold.
constexpr int InvalidPropertyIndex = 381;

// Mouse buttons and shift keys as the platform counts them.
namespace mouse {
constexpr int Left = 1;
constexpr int Right = 2;
constexpr int ShiftKey = 1;
constexpr int CtrlKey = 2;
} // namespace mouse

// The key code of Escape.
constexpr int EscapeKey = 27;

// The pointer's shape over a place of the chart.
enum class Pointer { Arrow, Draw, Move, Stretch };

// What lies under a point of the view.
struct Hit {
    enum class Part { None, Row, BarBody, BarStart, BarEnd };
    Part part = Part::None;
    int row = 0; // a row that exists, or 0
    int bar = 0; // a bar of that row, or 0
    double day = 0;
};

// The schedule control ctSchedule: a Gantt chart of rows (the elements of a
// project) and bars (bookings over dates and times), with the design range of
// days, a selection, a time scale that zooms from hours to months, the tip at
// the pointer and the print of the chart.
//
// Headless: a view tells it its size and hands it the mouse, wheel and keys in
// view pixels; it paints through QPainter when asked through the repaint
// callback. The mouse changes nothing by itself: each gesture raises its event
// on the control's form (BarDrawn, BarChanged, BarActivated, BarPointed,
// BarSelected), and the bar shows where the gesture left it until the program
// rebuilds the chart. The program reaches its members by name as the inner
// object of a Schedule control.
class ScheduleControl : public AutoObject {
public:
    static std::shared_ptr<ScheduleControl> create();
    // Makes the engine of a Schedule control: sets the control's inner object
    // and raises the engine's events on the control's form.
    static std::shared_ptr<ScheduleControl> attach(Control& control);
    ~ScheduleControl() override;

    // --- rows, bars and range ----------------------------------------------
    const ScheduleModel& model() const { return model_; }
    ScheduleDesign& design() { return design_; }
    const ScheduleDesign& design() const { return design_; }
    int firstDay() const { return firstDay_; }
    int lastDay() const { return lastDay_; }
    // Setting the first day shows the chart from it.
    void setFirstDay(int day);
    void setLastDay(int day);
    void clearAll();
    void addRow(const QString& text);
    int addBar(int row, DayTime start, DayTime end);
    // A bar to change by the program's members (text, colour, key, ...).
    Bar& editBar(int row, int bar);         // error 381 when there is none
    const Bar& bar(int row, int bar) const; // error 381 when there is none
    const QString& rowText(int row) const;  // error 381 when there is none
    int rowSetting() const { return rowSetting_; }
    void setRowSetting(int points);
    bool rowsReady() const { return rowsReady_; }
    void setRowsReady(bool ready);
    QString printTitle;
    QVariant picture;
    // The pictures given by AddPicture, in order.
    std::vector<QVariant> pictures;

    // --- what the user does (the mouse, and the script driver) --------------
    // A new bar on a row that exists: added, selected, then BarDrawn(row, bar,
    // True, Cancel); a handler that sets Cancel takes it away again.
    int drawBar(int row, DayTime start, DayTime end);
    // A bar moved or stretched to new ends, then BarChanged with its new values.
    void changeBar(int row, int bar, DayTime start, DayTime end);
    void activateBar(int row, int bar); // selects it, then BarActivated
    void pointBar(int row, int bar);    // BarPointed; the tip follows the pointer
    void selectBar(int row, int bar);   // 0, 0 clears; BarSelected when it changes

    // --- the view -------------------------------------------------------------
    const ScheduleView& view() const { return view_; }
    ScheduleLayout layout() const;
    // Where the rows lie, each as high as its lanes need.
    std::shared_ptr<const RowGeometry> rowGeometry() const;
    void setViewportSize(const QSizeF& size);
    double dayWidth() const { return view_.dayWidth; }
    void setDayWidth(double pixels);
    // Zooms by `factor`, keeping the day under the view's `x` in place.
    void zoomAt(double factor, double x);
    double originDay() const { return view_.originDay; }
    void setOriginDay(double day);
    double scrollY() const { return view_.scrollY; }
    void setScrollY(double y);
    QString timeScaleName() const { return timeScaleFor(view_.dayWidth).name(); }
    // The snap of the gestures at this zoom, in minutes.
    int snapMinutes() const;

    // --- input in view pixels ---------------------------------------------------
    void mousePress(int button, int shift, double x, double y);
    void mouseMove(int buttons, int shift, double x, double y);
    void mouseRelease(int button, int shift, double x, double y);
    void mouseDoubleClick(int button, int shift, double x, double y);
    void mouseLeave();
    void keyPress(int keyCode, int shift);
    // A wheel turn in eighths of a degree: scrolls the rows, with Shift the
    // days, with Ctrl zooms around the pointer.
    void wheel(int delta, int shift, double x, double y);
    Hit hitTest(double x, double y) const;
    Pointer pointerAt(double x, double y) const;
    // The gesture under way, if any, as it would leave its bar.
    const std::optional<Preview>& preview() const { return preview_; }

    // --- the tip ---------------------------------------------------------------
    // The text of ctTips: shown at the pointer while it stands on a bar.
    void setTipText(const QString& text);
    const QString& tipText() const { return tipText_; }
    // The tip as shown now, if it is.
    std::optional<Tip> shownTip() const;

    // --- painting and printing ---------------------------------------------------
    // Paints the whole view again (after a change of the design values).
    void refresh();
    // Paints the view's `area` (everything when empty).
    void paint(QPainter& painter, const QRectF& area = {}) const;
    // The box of a bar in the view.
    QRectF barBox(int row, int bar) const;
    // Called with the part of the view to paint again (empty: all of it).
    void setRepaintCallback(std::function<void(const QRectF&)> callback) { repaint_ = std::move(callback); }
    // Called when the scroll extents or positions change.
    void setViewCallback(std::function<void()> callback) { viewChanged_ = std::move(callback); }
    // PrintChart's printer: the desktop shows its print dialog and prints with
    // printTo. Without one the print goes to the UI port's record of prints.
    void setPrintHost(std::function<void(ScheduleControl&)> host) { printHost_ = std::move(host); }
    void printChart();
    // Prints the whole range, tiled over as many pages as it needs; returns the
    // number of pages.
    int printTo(QPagedPaintDevice& device) const;

    // --- late-bound members --------------------------------------------------------
    QString typeName() const override { return QStringLiteral("ctSchedule"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

    // The rows' titles, and every bar as the script driver prints it.
    QStringList rowTexts() const;
    QVariantList barList() const;

private:
    ScheduleControl();

    struct Gesture {
        enum class Kind { Draw, Move, StretchStart, StretchEnd };
        Kind kind = Kind::Draw;
        int row = 0;
        int bar = 0;
        QPointF pressedAt;
        double pressedDay = 0;
        bool dragging = false; // past the threshold
    };

    // Raises an event on the control's form; false when the control is gone.
    bool raise(const QString& event, QVariantList& args);
    void repaintAll();
    void repaintArea(const QRectF& area); // nothing for an empty area
    void viewChanged();
    void clampView();
    // The rows or their bars changed: their heights are worked out again when next needed.
    void rowsChanged();
    QRectF rowBand(int row) const;
    // Where the gesture under way would leave its bar with the pointer at `x`.
    struct Outcome {
        DayTime start;
        DayTime end;
        bool changed = false;
    };
    Outcome outcome(const Gesture& gesture, double x) const;
    void updatePreview(double x);
    void finishGesture(const Gesture& gesture, double x);
    void hideTip();
    void requireBar(int row, int bar) const;

    ScheduleModel model_;
    ScheduleDesign design_;
    ScheduleView view_;
    int firstDay_;
    int lastDay_;
    int rowSetting_;
    bool rowsReady_ = true;
    mutable std::shared_ptr<const RowGeometry> rowGeometry_;

    std::weak_ptr<AutoObject> control_;
    std::optional<Gesture> gesture_;
    std::optional<Preview> preview_;
    // The bar under the pointer, and where the pointer stands.
    int pointedRow_ = 0;
    int pointedBar_ = 0;
    std::optional<QPointF> pointer_;
    QString tipText_;
    QPointF tipAnchor_;
    bool tipShown_ = false;

    std::function<void(const QRectF&)> repaint_;
    std::function<void()> viewChanged_;
    std::function<void(ScheduleControl&)> printHost_;
};

} // namespace tessaly::schedule
