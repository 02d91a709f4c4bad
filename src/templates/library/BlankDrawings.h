#pragma once

#include <QString>
#include <memory>

namespace tessaly::canvas {
class POLARDraw;
}

namespace tessaly::templates {

// The page of a new drawing and of the page templates, in whole millimetres.
namespace blank_page {
constexpr int LongSide = 295; // A4 as the canvas lays it out
constexpr int ShortSide = 210;
constexpr int BorderInset = 5;         // the drawing border runs this far inside the page's edge
constexpr int LandscapeStripTop = 187; // the title strip's upper line: above the stamps at 190
constexpr int PortraitStripTop = 275;  // the same in portrait: above the stamps at 278
const QString NewDrawingScale = QStringLiteral("50"); // a new drawing and a new plan start at 1:50
} // namespace blank_page

// The empty A4 landscape drawing, with `drawingTag` (empty: none).
std::shared_ptr<canvas::POLARDraw> buildBlankDrawing(const QString& drawingTag);

// The page template of one orientation: the empty A4 page at 1:50 with a
// drawing border and a title strip along the bottom. The address, plan and
// copyright stamps of a new plan land inside the strip and over no line.
std::shared_ptr<canvas::POLARDraw> buildPageTemplate(bool landscape);

} // namespace tessaly::templates
