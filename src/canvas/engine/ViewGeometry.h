#pragma once

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSize>

namespace tessaly::canvas {

// Screen pixels per page millimetre at 100% zoom (96 dpi).
constexpr double PixelsPerMmAt100 = 96.0 / 25.4;
constexpr int MinZoom = 10;   // percent
constexpr int MaxZoom = 1000; // percent

// How the page lies in the canvas's window: zoom, scroll position (the page
// point at the window's top-left corner, mm), window size in pixels and the
// window's top-left corner on the screen.
struct ViewGeometry {
    int zoom = 100;
    QPointF scroll{-10.0, -10.0};
    QSize viewport{800, 600};
    QPoint screenOrigin{0, 0};

    double pixelsPerMm() const { return PixelsPerMmAt100 * zoom / 100.0; }
    QPointF pageToClient(const QPointF& mm) const { return (mm - scroll) * pixelsPerMm(); }
    QPointF clientToPage(const QPointF& px) const { return px / pixelsPerMm() + scroll; }
    QPointF pageToScreen(const QPointF& mm) const { return pageToClient(mm) + QPointF(screenOrigin); }
    QPointF screenToPage(const QPointF& px) const { return clientToPage(px - QPointF(screenOrigin)); }
    // The page area that the window shows.
    QRectF visiblePage() const {
        return {scroll, QSizeF(viewport.width() / pixelsPerMm(), viewport.height() / pixelsPerMm())};
    }
    // Changes the zoom keeping the page point at the window's centre in place.
    void setZoomKeepingCentre(int percent);
    // Scrolls so that `mm` stands at the centre of the window.
    void centreOn(const QPointF& mm);
    // The largest zoom at which `size` (mm) fits the window along the chosen axes.
    int zoomToFit(const QSizeF& size, bool width, bool height) const;
};

} // namespace tessaly::canvas
