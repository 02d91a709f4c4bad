#pragma once

#include <QRectF>
#include <cstdint>
#include <vector>

namespace tessaly::canvas {

// A uniform grid over the drawing that finds the shapes near a point or in a
// rectangle. Each cell holds the ids of the shapes whose bounds touch it.
// Shapes that cover many cells, or lie outside the grid, go to one loose
// list that every query scans. Queries may report an id more than once.
class SpatialIndex {
public:
    // Builds the grid for `bounds` (one entry per shape, with its id) covering at least `area`.
    void rebuild(const std::vector<std::pair<int32_t, QRectF>>& entries, const QRectF& area);
    void insert(int32_t id, const QRectF& bounds);
    void remove(int32_t id, const QRectF& bounds);
    void clear();

    // Calls `visit(id)` for every shape whose cell touches `area`.
    template <class Visit> void query(const QRectF& area, Visit&& visit) const {
        for (int32_t id : loose_)
            visit(id);
        if (cells_.empty())
            return;
        int c0, r0, c1, r1;
        if (!cellRange(area, c0, r0, c1, r1, true))
            return;
        for (int r = r0; r <= r1; ++r)
            for (int c = c0; c <= c1; ++c)
                for (int32_t id : cells_[static_cast<size_t>(r) * cols_ + c])
                    visit(id);
    }

    // Whether the loose list has grown so much that a rebuild pays off.
    bool wantsRebuild(size_t shapeCount) const;
    size_t looseCount() const { return loose_.size(); }
    double cellSize() const { return cell_; }

private:
    // The cells touched by `r`; false when none. With `clip`, parts outside the grid are cut off.
    bool cellRange(const QRectF& r, int& c0, int& r0, int& c1, int& r1, bool clip) const;
    bool placeInCells(const QRectF& bounds, int& c0, int& r0, int& c1, int& r1) const;

    QRectF area_;
    double cell_ = 10.0;
    int cols_ = 0;
    int rows_ = 0;
    std::vector<std::vector<int32_t>> cells_;
    std::vector<int32_t> loose_;
};

} // namespace tessaly::canvas
