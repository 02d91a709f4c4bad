#include "SpatialIndex.h"

#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

namespace {
constexpr double MinCellMm = 1.0;       // finest cell side
constexpr double CellFactor = 2.0;      // cell side as a multiple of the mean spacing of shapes
constexpr size_t MaxCells = 1u << 21;   // upper bound of grid cells (memory)
constexpr int MaxCellsPerShape = 64;    // a shape covering more cells goes to the loose list
constexpr double AreaGrowth = 8.0;      // how far beyond the page the grid may reach, in page sizes
constexpr size_t LooseSlack = 4096;     // loose entries tolerated before a rebuild
constexpr size_t LooseShareDivisor = 8; // ... plus this share of the shapes

void eraseOne(std::vector<int32_t>& v, int32_t id) {
    auto it = std::find(v.begin(), v.end(), id);
    if (it != v.end()) {
        *it = v.back();
        v.pop_back();
    }
}
} // namespace

void SpatialIndex::clear() {
    cells_.clear();
    loose_.clear();
    cols_ = rows_ = 0;
}

void SpatialIndex::rebuild(const std::vector<std::pair<int32_t, QRectF>>& entries, const QRectF& area) {
    clear();
    QRectF all = area;
    for (const auto& e : entries)
        if (std::isfinite(e.second.left()) && std::isfinite(e.second.right()) &&
            std::isfinite(e.second.top()) && std::isfinite(e.second.bottom()))
            all = all.united(e.second);
    const QRectF limit = area.adjusted(-AreaGrowth * area.width() - 100, -AreaGrowth * area.height() - 100,
                                       AreaGrowth * area.width() + 100, AreaGrowth * area.height() + 100);
    area_ = all.intersected(limit);
    if (area_.isEmpty())
        area_ = area.isEmpty() ? QRectF(0, 0, 100, 100) : area;
    const double n = std::max<double>(1.0, static_cast<double>(entries.size()));
    cell_ = std::max(MinCellMm, std::sqrt(area_.width() * area_.height() / n) * CellFactor);
    while ((std::ceil(area_.width() / cell_) + 1) * (std::ceil(area_.height() / cell_) + 1) >
           static_cast<double>(MaxCells))
        cell_ *= 1.5;
    cols_ = static_cast<int>(std::ceil(area_.width() / cell_)) + 1;
    rows_ = static_cast<int>(std::ceil(area_.height() / cell_)) + 1;
    cells_.assign(static_cast<size_t>(cols_) * rows_, {});
    for (const auto& e : entries)
        insert(e.first, e.second);
}

bool SpatialIndex::cellRange(const QRectF& r, int& c0, int& r0, int& c1, int& r1, bool clip) const {
    if (!(std::isfinite(r.left()) && std::isfinite(r.right()) && std::isfinite(r.top()) &&
          std::isfinite(r.bottom())))
        return false;
    double x0 = std::floor((r.left() - area_.left()) / cell_);
    double y0 = std::floor((r.top() - area_.top()) / cell_);
    double x1 = std::floor((r.right() - area_.left()) / cell_);
    double y1 = std::floor((r.bottom() - area_.top()) / cell_);
    if (x1 < 0 || y1 < 0 || x0 >= cols_ || y0 >= rows_)
        return false;
    if (!clip && (x0 < 0 || y0 < 0 || x1 >= cols_ || y1 >= rows_))
        return false;
    c0 = static_cast<int>(std::max(0.0, x0));
    r0 = static_cast<int>(std::max(0.0, y0));
    c1 = static_cast<int>(std::min<double>(cols_ - 1, x1));
    r1 = static_cast<int>(std::min<double>(rows_ - 1, y1));
    return true;
}

bool SpatialIndex::placeInCells(const QRectF& b, int& c0, int& r0, int& c1, int& r1) const {
    if (cells_.empty() || !cellRange(b, c0, r0, c1, r1, false))
        return false;
    return static_cast<long long>(c1 - c0 + 1) * (r1 - r0 + 1) <= MaxCellsPerShape;
}

void SpatialIndex::insert(int32_t id, const QRectF& bounds) {
    int c0, r0, c1, r1;
    if (!placeInCells(bounds, c0, r0, c1, r1)) {
        loose_.push_back(id);
        return;
    }
    for (int r = r0; r <= r1; ++r)
        for (int c = c0; c <= c1; ++c)
            cells_[static_cast<size_t>(r) * cols_ + c].push_back(id);
}

void SpatialIndex::remove(int32_t id, const QRectF& bounds) {
    int c0, r0, c1, r1;
    if (!placeInCells(bounds, c0, r0, c1, r1)) {
        eraseOne(loose_, id);
        return;
    }
    for (int r = r0; r <= r1; ++r)
        for (int c = c0; c <= c1; ++c)
            eraseOne(cells_[static_cast<size_t>(r) * cols_ + c], id);
}

bool SpatialIndex::wantsRebuild(size_t shapeCount) const {
    return loose_.size() > LooseSlack + shapeCount / LooseShareDivisor;
}

} // namespace tessaly::canvas
