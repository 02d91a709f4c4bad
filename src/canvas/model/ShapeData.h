#pragma once

#include "ShapeStyle.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

namespace tessaly::canvas {

struct ShapeData;
using ShapePtr = std::shared_ptr<const ShapeData>;

// Flag bits of a shape.
namespace shape_flag {
constexpr uint16_t Filled = 1 << 0;
constexpr uint16_t Stroked = 1 << 1;
constexpr uint16_t LockA = 1 << 2;
constexpr uint16_t LockB = 1 << 3;
constexpr uint16_t FlipX = 1 << 4;  // a line runs from right to left
constexpr uint16_t FlipY = 1 << 5;  // a line runs from bottom to top
constexpr uint16_t Closed = 1 << 6; // a freeform is a closed polygon
constexpr uint16_t Smooth = 1 << 7; // a freeform is drawn as a smooth curve through its points
constexpr uint16_t Known = (1 << 8) - 1;
} // namespace shape_flag

// Where a link is attached: a shape and one of its connection points.
struct LinkEnd {
    int shapeId = 0;    // 0: not attached
    int pointIndex = 0; // 0 top, 1 right, 2 bottom, 3 left, 4 centre
    bool operator==(const LinkEnd& o) const = default;
};

// The rarer parts of a shape, kept apart so that a plain line or rectangle
// stays small: its own text, the points of a freeform, a picture, the
// members of a group, the ends of a link.
struct ShapeExtra {
    QString text;
    std::vector<QPointF> points; // freeform points, relative to the shape's box (0..1)
    PicturePtr picture;
    std::vector<ShapePtr> children; // members of a group, in page coordinates
    LinkEnd linkStart;
    LinkEnd linkEnd;
    bool operator==(const ShapeExtra& o) const;
};

using ExtraPtr = std::shared_ptr<const ShapeExtra>;

// One shape: an immutable value shared by every version of the drawing that
// holds it. Edits copy it, change the copy and put the copy in its place.
// Edges are page millimetres; right may be less than left after an edge write.
struct ShapeData {
    int32_t id = 0;
    int16_t type = 0;
    int16_t rotation = 0; // whole degrees, clockwise, 0..359
    uint16_t flags = shape_flag::Filled | shape_flag::Stroked;
    double left = 0, top = 0, right = 0, bottom = 0;
    QString name;
    StylePtr style;
    ExtraPtr extra;

    bool has(uint16_t flag) const { return (flags & flag) != 0; }
    void setFlag(uint16_t flag, bool on) { flags = on ? (flags | flag) : (flags & ~flag); }
    // The box with left <= right and top <= bottom.
    QRectF box() const;
    const ShapeStyle& st() const { return style ? *style : *defaultStyle(); }
    const QString& text() const;
    // A writable copy of the extra part (a fresh one when the shape has none).
    ShapeExtra extraCopy() const { return extra ? *extra : ShapeExtra{}; }
    bool sameAs(const ShapeData& o) const;
};

} // namespace tessaly::canvas
