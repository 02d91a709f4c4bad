#pragma once

#include <QImage>
#include <cstddef>
#include <cstdint>

namespace tessaly::colour {

// What a flood did: the pixels it painted and the most segments its stack
// held at once (the whole of its working memory, apart from the picture).
struct FloodStats {
    int64_t filled = 0;
    size_t peakSegments = 0;
};

// The two modes of the platform's flood fill.
enum class FloodMode {
    Border,  // fills outwards until the border colour
    Surface, // fills every connected pixel of the start pixel's colour
};

// Fills from (x, y) on a 32-bit picture (QImage::Format_RGB32) with `fill`:
// in surface mode every pixel of the colour `colour` that is joined to the
// start by its four neighbours; in border mode every joined pixel that is
// neither `colour` (the border) nor already `fill`. A scanline fill with an
// explicit stack of row segments, so that any picture size is flooded
// without recursion; nothing is done when the start lies outside the
// picture, or, in surface mode, when the start is not of `colour` or the
// colour is the fill colour already. Colours are 0xAARRGGBB as the picture holds them.
FloodStats floodFill(QImage& image, int x, int y, QRgb colour, QRgb fill, FloodMode mode);

} // namespace tessaly::colour
