#pragma once

#include "canvas/model/ShapeStyle.h"

#include <QBrush>
#include <QColor>

namespace tessaly::canvas {

// The colour of a 0x00BBGGRR value.
inline QColor qcolour(Colour c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                  static_cast<int>((c >> 16) & 0xFF));
}

// The brush of a hatch pattern in page millimetres: fore colour on back colour.
// The plan hatches (brick, concrete, insulation, earth) are tiles that scale
// with the page; the simple hatches are line patterns of the same tile size.
QBrush hatchBrush(int pattern, Colour fore, Colour back);

// The brush of a texture: the picture at its natural size in page millimetres.
QBrush textureBrush(const CanvasPicture& picture);

} // namespace tessaly::canvas
