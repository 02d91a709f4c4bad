#include "Drawing.h"

#include "Geometry.h"
#include "ShapeTypes.h"

#include <algorithm>

namespace tessaly::canvas {

namespace {
constexpr size_t IndexSlack = 64; // shapes added before the first re-layout of the grid

// The highest id of a shape and of the members of its groups.
int deepMaxId(const ShapeData& s) {
    int m = s.id;
    if (s.extra)
        for (const ShapePtr& c : s.extra->children)
            m = std::max(m, deepMaxId(*c));
    return m;
}
} // namespace

Drawing::Drawing() {
    rebuildIndex();
}

void Drawing::setState(PageState state) {
    const bool resized = state.page.width != state_.page.width || state.page.height != state_.page.height;
    state_ = std::move(state);
    if (resized)
        rebuildIndex();
}

int Drawing::positionOf(int id) const {
    if (id <= 0 || static_cast<size_t>(id) >= positionById_.size())
        return -1;
    if (positionsDirty_)
        rebuildPositions();
    return positionById_[static_cast<size_t>(id)];
}

ShapePtr Drawing::find(int id) const {
    const int pos = positionOf(id);
    return pos < 0 ? nullptr : shapes_[static_cast<size_t>(pos)];
}

void Drawing::noteId(int id, int position) {
    if (static_cast<size_t>(id) >= positionById_.size())
        positionById_.resize(std::max<size_t>(static_cast<size_t>(id) + 1, positionById_.size() * 2), -1);
    if (!positionsDirty_)
        positionById_[static_cast<size_t>(id)] = position;
    nextId_ = std::max(nextId_, deepMaxId(*shapes_[static_cast<size_t>(position)]) + 1);
}

void Drawing::rebuildPositions() const {
    std::fill(positionById_.begin(), positionById_.end(), -1);
    for (size_t i = 0; i < shapes_.size(); ++i)
        positionById_[static_cast<size_t>(shapes_[i]->id)] = static_cast<int32_t>(i);
    positionsDirty_ = false;
}

void Drawing::insert(int position, ShapePtr shape) {
    const int id = shape->id;
    const bool atEnd = position == count();
    if (shape->type == shape_type::Link)
        linkIds_.push_back(id);
    index_.insert(id, geometry::visualBounds(*shape));
    shapes_.insert(shapes_.begin() + position, std::move(shape));
    if (!atEnd)
        positionsDirty_ = true;
    noteId(id, position);
    // the grid's cells are sized for the number of shapes: lay it out again as the drawing grows
    if (index_.wantsRebuild(shapes_.size()) || shapes_.size() > 2 * indexBuiltFor_ + IndexSlack)
        rebuildIndex();
}

ShapePtr Drawing::removeAt(int position) {
    ShapePtr shape = shapes_[static_cast<size_t>(position)];
    index_.remove(shape->id, geometry::visualBounds(*shape));
    if (shape->type == shape_type::Link)
        linkIds_.erase(std::remove(linkIds_.begin(), linkIds_.end(), shape->id), linkIds_.end());
    shapes_.erase(shapes_.begin() + position);
    if (position != count())
        positionsDirty_ = true;
    positionById_[static_cast<size_t>(shape->id)] = -1;
    return shape;
}

void Drawing::replaceAt(int position, ShapePtr shape) {
    ShapePtr& slot = shapes_[static_cast<size_t>(position)];
    const QRectF oldBounds = geometry::visualBounds(*slot);
    const QRectF newBounds = geometry::visualBounds(*shape);
    if (oldBounds != newBounds || slot->id != shape->id) {
        index_.remove(slot->id, oldBounds);
        index_.insert(shape->id, newBounds);
    }
    slot = std::move(shape);
    if (index_.wantsRebuild(shapes_.size()))
        rebuildIndex();
}

void Drawing::assign(std::vector<ShapePtr> shapes, PageState state) {
    shapes_ = std::move(shapes);
    state_ = std::move(state);
    positionById_.clear();
    linkIds_.clear();
    nextId_ = 1;
    int maxId = 0;
    int deepMax = 0;
    for (const ShapePtr& s : shapes_) {
        maxId = std::max(maxId, s->id);
        deepMax = std::max(deepMax, deepMaxId(*s));
    }
    positionById_.assign(static_cast<size_t>(maxId) + 1, -1);
    for (size_t i = 0; i < shapes_.size(); ++i) {
        positionById_[static_cast<size_t>(shapes_[i]->id)] = static_cast<int32_t>(i);
        if (shapes_[i]->type == shape_type::Link)
            linkIds_.push_back(shapes_[i]->id);
    }
    positionsDirty_ = false;
    nextId_ = deepMax + 1;
    rebuildIndex();
}

int Drawing::takeId() {
    return nextId_++;
}

QRectF Drawing::indexArea() const {
    return QRectF(0, 0, std::max(1, state_.page.width), std::max(1, state_.page.height));
}

void Drawing::rebuildIndex() {
    std::vector<std::pair<int32_t, QRectF>> entries;
    entries.reserve(shapes_.size());
    for (const ShapePtr& s : shapes_)
        entries.emplace_back(s->id, geometry::visualBounds(*s));
    index_.rebuild(entries, indexArea());
    indexBuiltFor_ = shapes_.size();
}

std::vector<int> Drawing::positionsIn(const QRectF& area) const {
    std::vector<int> out;
    if (positionsDirty_)
        rebuildPositions();
    index_.query(area, [&](int32_t id) {
        const int pos = positionById_[static_cast<size_t>(id)];
        if (pos >= 0)
            out.push_back(pos);
    });
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

int Drawing::topmostAt(const QPointF& p, double tolerance,
                       const std::function<bool(const ShapeData&)>& accept) const {
    const QRectF probe(p.x() - tolerance, p.y() - tolerance, 2 * tolerance, 2 * tolerance);
    const std::vector<int> candidates = positionsIn(probe);
    for (auto it = candidates.rbegin(); it != candidates.rend(); ++it) {
        const ShapeData& s = *shapes_[static_cast<size_t>(*it)];
        if (accept && !accept(s))
            continue;
        if (geometry::hits(s, p, tolerance))
            return *it;
    }
    return -1;
}

} // namespace tessaly::canvas
