#pragma once

#include "canvas/model/ShapeStyle.h"

#include <QImage>

namespace tessaly::canvas {

// Applies a lens to what lies under a shape (`under`, ARGB32 premultiplied),
// in place. `fill` is the shape's fill colour, which the transparency lens
// lets show through.
//   9 transparency: the fill colour over the image, `percent` per cent transparent
//   0 brighten (percent > 0) or darken (percent < 0)
//   1 add the start colour, scaled by percent
//   2 limit each channel to the start colour, by percent
//   3 custom palette: brightness mapped from the start to the end colour
//   6 invert
//   8 tinted grayscale: brightness mapped from black to the start colour
//   5 heat map: brightness mapped from blue through green and yellow to red
void applyLens(QImage& under, const LensStyle& lens, Colour fill);

} // namespace tessaly::canvas
