#pragma once

#include <QByteArray>

namespace tessaly::canvas {
class POLARDraw;
}

namespace tessaly::output {

// The page of a canvas as an SVG document, drawn by the canvas's one renderer
// onto the SVG paint device: the page at its true size in millimetres,
// shapes as shapes, text as text, hatches as patterns; no grid, guides or
// selection.
QByteArray drawingToSvg(const canvas::POLARDraw& canvas);

} // namespace tessaly::output
