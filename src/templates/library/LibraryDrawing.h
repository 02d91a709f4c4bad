#pragma once

#include "templates/library/Catalogue.h"

#include <QRect>
#include <memory>

namespace tessaly::canvas {
class POLARDraw;
}

namespace tessaly::templates {

// Page layout of a library file, in page millimetres.
namespace library_page {
constexpr int Margin = 15;    // from the page's edge to the first row and column
constexpr int Gap = 10;       // between neighbouring cells of the grid
constexpr int MinCell = 12;   // a cell is at least this wide and high, so tiny symbols stay apart
constexpr int MinWidth = 295; // the page is never smaller than A4 landscape
constexpr int MinHeight = 210;
constexpr int ArrowSize = 2; // length of arrow heads (direction of travel, sliding leaves)
// How far (page mm) a mask reaches past each face of the wall, so that the
// smoothed edge of the wall does not show as a faint line across the opening.
constexpr double MaskBleed = 0.5;
} // namespace library_page

// Real millimetres to page millimetres at `scale`: divided, then rounded to
// the nearest whole millimetre with halves to even.
int toPage(double realMm, int scale);

// Where each symbol of a library lands on its page.
struct LibraryLayout {
    int pageWidth = library_page::MinWidth;
    int pageHeight = library_page::MinHeight;
    std::vector<QPoint> origins; // per symbol: page position of its top-left corner
};
LibraryLayout layoutLibrary(const Library& library, int scale);

// The drawing of one library file at `scale` (scale-free libraries are drawn
// at their own draw scale and carry no DrawingTag). Each symbol is one shape:
// a group named after the symbol when it has several parts, else the part
// itself under that name.
std::shared_ptr<canvas::POLARDraw> buildLibraryDrawing(const Library& library, int scale);

} // namespace tessaly::templates
