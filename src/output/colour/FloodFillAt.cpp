#include "FloodFillAt.h"

#include "PaintSurface.h"
#include "core/forms/ApplicationBase.h"
#include "core/forms/Control.h"

namespace tessaly::colour {

void FloodFillAt(ApplicationBase& app, Control& picture, int32_t x, int32_t y, uint32_t fillColour,
                 std::optional<uint32_t> borderColour) {
    PaintSurface* surface = PaintSurface::of(picture);
    if (!surface)
        raiseNoMember(picture.fullName(), QStringLiteral("hDC"));
    // Step 1.
    app.ui.setMousePointer(pointer::Hourglass);
    // Step 2.
    const int px = surface->toPixels(x);
    const int py = surface->toPixels(y);
    // Step 3.
    const int keptStyle = surface->fillStyle;
    const uint32_t keptColour = surface->fillColor;
    surface->fillStyle = PaintSurface::SolidFill;
    surface->fillColor = fillColour;
    // Step 4.
    if (!borderColour) {
        const int32_t here = surface->pixel(px, py);
        surface->ExtFloodFill(px, py, static_cast<uint32_t>(here), PaintSurface::SurfaceFill);
    } else {
        surface->ExtFloodFill(px, py, *borderColour, PaintSurface::BorderFill);
    }
    // Step 5.
    app.ui.doEvents();
    surface->fillStyle = keptStyle;
    surface->fillColor = keptColour;
    app.ui.setMousePointer(pointer::Default);
}

} // namespace tessaly::colour
