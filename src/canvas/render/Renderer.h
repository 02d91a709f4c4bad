#pragma once

#include "canvas/engine/ToolController.h"
#include "canvas/model/Drawing.h"

#include <QPainter>
#include <vector>

namespace tessaly::canvas {

// What one rendering of a page shows.
struct RenderScene {
    const Drawing* drawing = nullptr;
    bool paperDecoration = true; // outline and shadow of the sheet
    bool showGrid = false;
    bool showGuides = false;
    bool showConnectors = false;
    const std::vector<int>* selection = nullptr; // selection frames and handles (screen only)
    std::vector<QPointF> handles;                // mm
    const ToolFeedback* feedback = nullptr;
};

// The one renderer of the canvas: screen, images, printer, PDF and EMF all
// draw through it, so every output shows the same picture.
class Renderer {
public:
    // Draws the page so that page mm (0,0)-(Width,Height) lands on
    // `pageRectInDevice` (in the painter's current coordinates). Only shapes
    // whose bounds meet `visibleArea` (mm) are drawn; an empty area draws all.
    static void render(QPainter& painter, const RenderScene& scene, const QRectF& pageRectInDevice,
                       const QRectF& visibleArea);
    // Draws one shape in page millimetres (the painter maps mm to the device).
    static void drawShape(QPainter& painter, const ShapeData& shape);
};

} // namespace tessaly::canvas
