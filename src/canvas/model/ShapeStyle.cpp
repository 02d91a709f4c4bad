#include "ShapeStyle.h"

namespace tessaly::canvas {

bool lens::isKnown(int code) {
    switch (code) {
    case BrightenDarken:
    case AddColour:
    case LimitColour:
    case CustomPalette:
    case Heatmap:
    case Invert:
    case TintedGrayscale:
    case Transparency:
        return true;
    default:
        return false;
    }
}

bool FillStyle::operator==(const FillStyle& o) const {
    const bool sameTexture =
        texture == o.texture || (texture && o.texture && texture->data() == o.texture->data());
    return type == o.type && colour == o.colour && backColour == o.backColour && shade == o.shade &&
           hatch == o.hatch && sameTexture;
}

const StylePtr& defaultStyle() {
    static const StylePtr style = std::make_shared<const ShapeStyle>();
    return style;
}

} // namespace tessaly::canvas
