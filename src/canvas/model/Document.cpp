#include "Document.h"

#include "Geometry.h"
#include "ShapeTypes.h"

namespace tessaly::canvas {

bool Document::end() {
    if (depth_ > 0)
        --depth_;
    if (depth_ > 0 || open_.ops.empty())
        return false;
    undo_.push_back(std::move(open_));
    open_ = {};
    if (undo_.size() > MaxUndoSteps)
        undo_.pop_front();
    redo_.clear();
    return true;
}

void Document::record(EditOp op) {
    open_.ops.push_back(std::move(op));
    if (depth_ == 0) { // a change outside any transaction is a step of its own
        ++depth_;
        end();
    }
}

void Document::insertShape(int position, ShapePtr shape) {
    EditOp op{EditOp::Kind::Insert, position, nullptr, shape, nullptr, nullptr};
    drawing_.insert(position, std::move(shape));
    record(std::move(op));
}

void Document::removeShape(int position) {
    ShapePtr removed = drawing_.removeAt(position);
    record({EditOp::Kind::Remove, position, std::move(removed), nullptr, nullptr, nullptr});
}

void Document::replaceShape(ShapePtr shape) {
    const int position = drawing_.positionOf(shape->id);
    if (position < 0)
        return;
    ShapePtr before = drawing_.at(position);
    if (before == shape)
        return;
    drawing_.replaceAt(position, shape);
    record({EditOp::Kind::Replace, position, std::move(before), shape, nullptr, nullptr});
    if (shape->type != shape_type::Link && !drawing_.linkIds().empty())
        followLinks(*shape);
}

void Document::followLinks(const ShapeData& moved) {
    const std::vector<int> links = drawing_.linkIds();
    for (int linkId : links) {
        ShapePtr link = drawing_.find(linkId);
        if (!link || !link->extra)
            continue;
        const LinkEnd& a = link->extra->linkStart;
        const LinkEnd& b = link->extra->linkEnd;
        if (a.shapeId != moved.id && b.shapeId != moved.id)
            continue;
        QPointF start = geometry::lineStart(*link);
        QPointF end = geometry::lineEnd(*link);
        if (ShapePtr s = drawing_.find(a.shapeId))
            start = geometry::connectionPoint(*s, a.pointIndex);
        if (ShapePtr s = drawing_.find(b.shapeId))
            end = geometry::connectionPoint(*s, b.pointIndex);
        ShapeData updated = *link;
        geometry::setLineEnds(updated, start, end);
        replaceShape(std::make_shared<const ShapeData>(std::move(updated)));
    }
}

void Document::moveShape(int from, int to) {
    if (from == to)
        return;
    ShapePtr shape = drawing_.at(from);
    removeShape(from);
    insertShape(to, std::move(shape));
}

void Document::setState(PageState state) {
    if (state == drawing_.state())
        return;
    auto before = std::make_shared<const PageState>(drawing_.state());
    auto after = std::make_shared<const PageState>(std::move(state));
    drawing_.setState(*after);
    record({EditOp::Kind::State, 0, nullptr, nullptr, std::move(before), std::move(after)});
}

void Document::apply(const EditOp& op, bool forward) {
    using K = EditOp::Kind;
    switch (op.kind) {
    case K::Insert:
        if (forward)
            drawing_.insert(op.position, op.after);
        else
            drawing_.removeAt(op.position);
        break;
    case K::Remove:
        if (forward)
            drawing_.removeAt(op.position);
        else
            drawing_.insert(op.position, op.before);
        break;
    case K::Replace:
        drawing_.replaceAt(op.position, forward ? op.after : op.before);
        break;
    case K::State:
        drawing_.setState(forward ? *op.stateAfter : *op.stateBefore);
        break;
    }
}

bool Document::undo() {
    if (undo_.empty() || !open_.ops.empty())
        return false;
    EditStep step = std::move(undo_.back());
    undo_.pop_back();
    for (auto it = step.ops.rbegin(); it != step.ops.rend(); ++it)
        apply(*it, false);
    redo_.push_back(std::move(step));
    return true;
}

bool Document::redo() {
    if (redo_.empty() || !open_.ops.empty())
        return false;
    EditStep step = std::move(redo_.back());
    redo_.pop_back();
    for (const EditOp& op : step.ops)
        apply(op, true);
    undo_.push_back(std::move(step));
    return true;
}

void Document::load(std::vector<ShapePtr> shapes, PageState state) {
    drawing_.assign(std::move(shapes), std::move(state));
    undo_.clear();
    redo_.clear();
    open_ = {};
}

} // namespace tessaly::canvas
