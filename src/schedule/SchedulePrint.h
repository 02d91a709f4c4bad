#pragma once

#include <QSizeF>
#include <vector>

class QPainter;

namespace tessaly::schedule {

class ScheduleControl;

// How a chart's range and rows are cut into pages: each page repeats the row
// titles and the time scale, with the print heading and title above and the
// footer below. Sizes in logical pixels (96 an inch).
struct PrintPlan {
    QSizeF page;         // the printable area of a page
    double dayWidth = 0; // the zoom on paper
    double listWidth = 0;
    double chartTop = 0;    // where the chart starts below the heading
    double chartHeight = 0; // the room for the time scale and rows
    double daysPerPage = 0;
    // The first row of each band of rows that one page holds; a row higher
    // than a page has a page of its own.
    std::vector<int> bands{1};
    int across = 1; // pages side by side for the range
    int down() const { return static_cast<int>(bands.size()); }
    int pages() const { return across * down(); }
};

// The plan of a print of `control` on pages of `page` (logical pixels).
PrintPlan planPrint(const ScheduleControl& control, const QSizeF& page);
// The printable area of an A4 page turned across, less a margin of 10 mm.
QSizeF defaultPrintPage();
// Paints page `index` (from 0) of the plan; the painter's units are logical pixels.
void printPage(QPainter& painter, const ScheduleControl& control, const PrintPlan& plan, int index);

} // namespace tessaly::schedule
