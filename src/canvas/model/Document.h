#pragma once

#include "Drawing.h"

#include <deque>
#include <memory>

namespace tessaly::canvas {

// One change of the drawing, kept so that it can be taken back.
struct EditOp {
    enum class Kind : uint8_t { Insert, Remove, Replace, State };
    Kind kind = Kind::Replace;
    int position = 0;
    ShapePtr before; // Remove, Replace
    ShapePtr after;  // Insert, Replace
    std::shared_ptr<const PageState> stateBefore;
    std::shared_ptr<const PageState> stateAfter;
};

// One undo step: every change of one gesture or one command. Steps share the
// shapes they did not change with every other version of the drawing.
struct EditStep {
    std::vector<EditOp> ops;
};

// The drawing with its edit history. Changes are made inside a transaction
// (begin/end, nested); the outermost end closes one undo step.
class Document {
public:
    // Steps kept for Undo; older ones are dropped.
    static constexpr size_t MaxUndoSteps = 1000;

    const Drawing& drawing() const { return drawing_; }

    void begin() { ++depth_; }
    // Closes a transaction; true when the outermost one recorded changes.
    bool end();
    int depth() const { return depth_; }

    void insertShape(int position, ShapePtr shape);
    void appendShape(ShapePtr shape) { insertShape(drawing_.count(), std::move(shape)); }
    void removeShape(int position);
    // Puts `shape` in the place of the shape with the same id; links attached to it follow.
    void replaceShape(ShapePtr shape);
    void moveShape(int from, int to);
    void setState(PageState state);
    int takeId() { return drawing_.takeId(); }

    bool undo();
    bool redo();
    size_t undoCount() const { return undo_.size(); }
    size_t redoCount() const { return redo_.size(); }

    // Replaces the whole drawing (a file load) and forgets the history.
    void load(std::vector<ShapePtr> shapes, PageState state);

private:
    void record(EditOp op);
    void apply(const EditOp& op, bool forward);
    void followLinks(const ShapeData& moved);

    Drawing drawing_;
    std::deque<EditStep> undo_;
    std::vector<EditStep> redo_;
    EditStep open_;
    int depth_ = 0;
    bool replaying_ = false;
};

} // namespace tessaly::canvas
