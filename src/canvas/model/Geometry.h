#pragma once

#include "ShapeData.h"

#include <QPainterPath>
#include <QTransform>

// Shape geometry in page millimetres: outlines by type, rotation, bounds,
// hit tests, connection points and the edits that move or resize a shape.
namespace tessaly::canvas::geometry {

// The outline of the shape before rotation: closed for areas, open for strokes.
QPainterPath outline(const ShapeData& shape);
// The rotation of the shape about the centre of its box (identity when 0).
QTransform rotation(const ShapeData& shape);
// The outline with the rotation applied.
QPainterPath pageOutline(const ShapeData& shape);
// Start and end of a line-like shape (line, link, dimension bar), unrotated.
QPointF lineStart(const ShapeData& shape);
QPointF lineEnd(const ShapeData& shape);
// A box that holds everything the shape paints: rotation, line width, arrow
// heads and shadow included. Deterministic for a given shape value.
QRectF visualBounds(const ShapeData& shape);
// Whether page point `p` touches the shape; `tolerance` in millimetres widens strokes.
bool hits(const ShapeData& shape, const QPointF& p, double tolerance);
// Whether the shape's visual bounds lie within `area`.
bool insideRect(const ShapeData& shape, const QRectF& area);
// Connection point `index` (0 top, 1 right, 2 bottom, 3 left, 4 centre) in page coordinates.
QPointF connectionPoint(const ShapeData& shape, int index);
constexpr int ConnectionPointCount = 5;

// Moves the shape (and the members of a group) by dx, dy millimetres.
void translate(ShapeData& shape, double dx, double dy);
// Gives the shape the edges of `box` (may be inverted); group members are scaled along.
void setEdges(ShapeData& shape, double left, double top, double right, double bottom);
// Sets the line-like shape's ends; the box and flip flags follow.
void setLineEnds(ShapeData& shape, const QPointF& start, const QPointF& end);
// Points of a freeform in page coordinates (unrotated).
std::vector<QPointF> freeformPoints(const ShapeData& shape);
// Sets the shape's box to the bounds of `points` and stores them relative to it.
void setFreeformPoints(ShapeData& shape, const std::vector<QPointF>& points);

} // namespace tessaly::canvas::geometry
