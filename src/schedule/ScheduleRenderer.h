#pragma once

#include "ScheduleLayout.h"

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace tessaly::schedule {

// A bar as a gesture shows it before the gesture ends: where it would lie.
struct Preview {
    int row = 0;
    int bar = 0; // 0 for a bar being drawn
    double low = 0;
    double high = 0;
};

// The tip at the pointer: its text (lines split at line feeds) and where the
// pointer stands.
struct Tip {
    QString text;
    QPointF anchor;
};

// What the renderer adds over the chart.
struct Overlay {
    const Preview* preview = nullptr;
    const Tip* tip = nullptr;
    bool selection = true; // the selected bar's outline and grips
};

// Paints a chart through QPainter onto any device, in logical pixels: the row
// titles under the list title, the two tiers of the time scale, the grid with
// weekends and the range's ends, and the bars of the rows that the painted
// area shows, found through each row's index by time. Bars that overlap lie
// in lanes of their row; a bar with its end before its start is hatched; a
// bar of no length is a diamond; nothing outside the painted area is touched.
class ScheduleRenderer {
public:
    ScheduleRenderer(const ScheduleModel& model, const ScheduleDesign& design, const ScheduleLayout& layout);

    // Paints what lies in `area` (the whole view when empty).
    void paint(QPainter& painter, const QRectF& area, const Overlay& overlay, bool rowsShown = true) const;

    // The box of a tip in the view: beside its anchor, kept inside the view.
    QRectF tipRect(const Tip& tip) const;
    // The box of a bar in the view (a diamond's box for a bar of no length).
    QRectF barBox(int row, int bar) const;

    // The fonts, by pixel size so that a print scales them with the chart.
    static QFont barFont();
    static QFont scaleFont();
    static QFont titleFont();
    static QFont tipFont();

private:
    void paintChart(QPainter& p, const QRectF& area, const Overlay& overlay, bool rowsShown) const;
    void paintGrid(QPainter& p, const QRectF& area, int firstRow, int lastRow) const;
    void paintBars(QPainter& p, const QRectF& area, int firstRow, int lastRow, const Overlay& overlay) const;
    void paintBar(QPainter& p, const QRectF& clip, const Bar& bar, const QRectF& box, bool selected) const;
    void paintPreview(QPainter& p, const QRectF& area, const Preview& preview) const;
    void paintScale(QPainter& p, const QRectF& area) const;
    void paintTier(QPainter& p, TimeUnit unit, int hourStep, double top, bool upper) const;
    QString markText(TimeUnit unit, double start, double width, bool upper) const;
    void paintList(QPainter& p, const QRectF& area, bool rowsShown) const;
    void paintTip(QPainter& p, const Tip& tip) const;
    QRectF boxOf(int row, const Bar& bar, int lane, int lanes) const;

    const ScheduleModel& model_;
    const ScheduleDesign& design_;
    const ScheduleLayout& layout_;
};

} // namespace tessaly::schedule
