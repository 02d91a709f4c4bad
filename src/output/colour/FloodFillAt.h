#pragma once

#include <cstdint>
#include <optional>

namespace tessaly {

class ApplicationBase;
class Control;

namespace colour {

// FloodFillAt of the main module: floods the picture box's surface from the
// point (X, Y) in the box's scale with the fill colour, with the hourglass
// up meanwhile. With no border colour every joined pixel of the colour found
// at the point is filled (the surface mode); with one, the area up to that
// border. The box's FillStyle and FillColor are kept and given back. Error
// 438 for a control with no drawing surface.
void FloodFillAt(ApplicationBase& app, Control& picture, int32_t x, int32_t y, uint32_t fillColour,
                 std::optional<uint32_t> borderColour = std::nullopt);

} // namespace colour
} // namespace tessaly
