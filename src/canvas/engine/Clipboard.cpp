#include "Clipboard.h"

namespace tessaly::canvas {

ShapeClipboard& ShapeClipboard::instance() {
    static ShapeClipboard clipboard;
    return clipboard;
}

void ShapeClipboard::put(std::vector<ShapePtr> shapes, const void* source) {
    shapes_ = std::move(shapes);
    source_ = source;
    pastesIntoSource = 0;
}

} // namespace tessaly::canvas
