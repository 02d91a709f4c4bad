#pragma once

#include "CanvasChild.h"
#include "Members.h"

namespace tessaly::canvas {

// What Shape, ShapeRange and the format objects act on: shapes of one canvas,
// by id. A read takes the first shape; a write goes to all of them.
class ShapeTarget : public CanvasChild {
public:
    ShapeTarget(std::weak_ptr<POLARDraw> canvas, std::vector<int> ids)
        : CanvasChild(std::move(canvas)), ids_(std::move(ids)) {}
    const std::vector<int>& ids() const { return ids_; }
    // The first shape; error 5 when it is no longer on the page.
    ShapePtr first() const;
    std::weak_ptr<POLARDraw> weakCanvas() const;

private:
    std::vector<int> ids_;
};

// Shape: one shape of the page.
class Shape : public ShapeTarget {
public:
    Shape(std::weak_ptr<POLARDraw> canvas, int id) : ShapeTarget(std::move(canvas), {id}) {}
    QString typeName() const override { return QStringLiteral("Shape"); }
    TESSALY_AUTO_MEMBERS(Shape)
};

// ShapeRange: the selected shapes as one object (taken when it was fetched).
// It has every member of Shape and the range members (Count, Item, Move, ...).
class ShapeRange : public ShapeTarget {
public:
    using ShapeTarget::ShapeTarget;
    QString typeName() const override { return QStringLiteral("ShapeRange"); }
    TESSALY_AUTO_MEMBERS(ShapeRange)
    // The joint bounding box in units of the coordinate mode.
    void getBounds(int& left, int& top, int& right, int& bottom) const;
};

// ShapeList: all shapes of the page in z-order.
class ShapeList : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("ShapeList"); }
    TESSALY_AUTO_MEMBERS(ShapeList)
    // The shape at z position `position` (from 1); error 5 outside 1..Count.
    std::shared_ptr<Shape> item(int position) const;
    // The shape with `id`; error 5 with a clear text when there is none.
    std::shared_ptr<Shape> itemById(int id) const;
};

// Selection: its default member Range is the ShapeRange of the selected
// shapes, or Nothing (a null object) when no shape is selected.
class Selection : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("Selection"); }
    TESSALY_AUTO_MEMBERS(Selection)
    std::shared_ptr<ShapeRange> range() const;
};

} // namespace tessaly::canvas
