#pragma once

#include "canvas/model/ShapeData.h"

#include <vector>

namespace tessaly::canvas {

// The shape clipboard shared by every canvas of the process: Copy on one
// canvas and Paste on another carries the shapes across. Shapes are
// immutable values, so the clipboard holds them without copying.
class ShapeClipboard {
public:
    static ShapeClipboard& instance();

    void put(std::vector<ShapePtr> shapes, const void* source);
    const std::vector<ShapePtr>& shapes() const { return shapes_; }
    bool empty() const { return shapes_.empty(); }
    const void* source() const { return source_; }
    // How often the current contents were pasted into their own source canvas.
    int pastesIntoSource = 0;

private:
    std::vector<ShapePtr> shapes_;
    const void* source_ = nullptr;
};

} // namespace tessaly::canvas
