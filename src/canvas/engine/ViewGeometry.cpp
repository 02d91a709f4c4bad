#include "ViewGeometry.h"

#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

namespace {
constexpr double FitMargin = 0.95; // share of the window that a fitted area fills
}

void ViewGeometry::setZoomKeepingCentre(int percent) {
    const QPointF centre = clientToPage(QPointF(viewport.width() / 2.0, viewport.height() / 2.0));
    zoom = std::clamp(percent, MinZoom, MaxZoom);
    centreOn(centre);
}

void ViewGeometry::centreOn(const QPointF& mm) {
    scroll = mm - QPointF(viewport.width() / 2.0, viewport.height() / 2.0) / pixelsPerMm();
}

int ViewGeometry::zoomToFit(const QSizeF& size, bool width, bool height) const {
    double best = MaxZoom;
    if (width && size.width() > 0)
        best = std::min(best, viewport.width() * FitMargin / (size.width() * PixelsPerMmAt100) * 100.0);
    if (height && size.height() > 0)
        best = std::min(best, viewport.height() * FitMargin / (size.height() * PixelsPerMmAt100) * 100.0);
    return std::clamp(static_cast<int>(std::floor(best)), MinZoom, MaxZoom);
}

} // namespace tessaly::canvas
