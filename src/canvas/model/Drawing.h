#pragma once

#include "ShapeData.h"
#include "SpatialIndex.h"

#include <QString>
#include <functional>
#include <vector>

namespace tessaly::canvas {

// The sheet: size in whole millimetres, orientation flag, colours and switches, grid.
struct PageSettings {
    int width = 295;
    int height = 210;
    bool landscape = true;
    Colour paperColour = White;
    Colour outlineColour = Black;
    Colour shadowColour = 0x808080;
    bool showPaper = true;
    bool showOutline = true;
    bool showShadow = true;
    Colour gridColour = 0xC0C0C0;
    Colour guideColour = 0xE0E0E0;
    int gridSpacingX = 10; // millimetres
    int gridSpacingY = 10;
    bool operator==(const PageSettings& o) const = default;
};

// Everything of a drawing but its shapes: the page, both guide lists and the tag.
struct PageState {
    PageSettings page;
    std::vector<int> horizontalGuides; // Y positions, mm
    std::vector<int> verticalGuides;   // X positions, mm
    QString drawingTag;
    bool operator==(const PageState& o) const = default;
};

// Ids are positive and below this bound, so that an id finds its shape by a
// direct table look-up.
constexpr int MaxShapeId = 1 << 26;

// The drawing: page state and shapes in z-order (back to front), with an id
// table and a spatial index kept in step with every change.
class Drawing {
public:
    Drawing();

    const PageState& state() const { return state_; }
    void setState(PageState state);

    int count() const { return static_cast<int>(shapes_.size()); }
    const ShapePtr& at(int position) const { return shapes_[static_cast<size_t>(position)]; }
    const std::vector<ShapePtr>& shapes() const { return shapes_; }
    // The z position of shape `id`, or -1.
    int positionOf(int id) const;
    ShapePtr find(int id) const;
    bool contains(int id) const { return positionOf(id) >= 0; }

    void insert(int position, ShapePtr shape);
    ShapePtr removeAt(int position);
    void replaceAt(int position, ShapePtr shape);
    // Replaces everything (file load).
    void assign(std::vector<ShapePtr> shapes, PageState state);

    // A fresh id, higher than every id in use.
    int takeId();
    int peekNextId() const { return nextId_; }

    // The z positions (ascending) of the shapes whose bounds may meet `area`.
    std::vector<int> positionsIn(const QRectF& area) const;
    // The front-most shape at `p` for which `accept` holds, or -1.
    int topmostAt(const QPointF& p, double tolerance,
                  const std::function<bool(const ShapeData&)>& accept = {}) const;
    // Ids of the link shapes (few; scanned when a shape moves).
    const std::vector<int>& linkIds() const { return linkIds_; }

    const SpatialIndex& index() const { return index_; }

private:
    void noteId(int id, int position);
    void rebuildPositions() const;
    void rebuildIndex();
    QRectF indexArea() const;

    PageState state_;
    std::vector<ShapePtr> shapes_;
    mutable std::vector<int32_t> positionById_;
    mutable bool positionsDirty_ = false;
    int nextId_ = 1;
    SpatialIndex index_;
    size_t indexBuiltFor_ = 0; // shapes when the grid was last laid out
    std::vector<int> linkIds_;
};

} // namespace tessaly::canvas
