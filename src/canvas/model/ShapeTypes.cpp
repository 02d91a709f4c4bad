#include "ShapeTypes.h"

#include <algorithm>

namespace tessaly::canvas::shape_type {

bool isKnown(int code) {
    return code == Picture || code == Group ||
           std::find(DrawableCodes.begin(), DrawableCodes.end(), code) != DrawableCodes.end();
}

bool isOpenStroke(int code) {
    return code == Line || code == Arc || code == Link || code == DimensionBar || code == Freeform;
}

bool isTextType(int code) {
    return code == PlainText || code == TextBox;
}

QString displayName(int code) {
    if (code == Picture)
        return QStringLiteral("Picture");
    if (code == Group)
        return QStringLiteral("Group");
    const auto it = std::find_if(ShapeTypeTable.begin(), ShapeTypeTable.end(),
                                 [code](const ShapeTypeEntry& e) { return e.code == code; });
    return it == ShapeTypeTable.end() ? QString() : QString::fromLatin1(it->name);
}

} // namespace tessaly::canvas::shape_type
