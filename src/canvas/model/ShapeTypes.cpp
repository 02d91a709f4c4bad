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
    switch (code) {
    case Arc:
        return QStringLiteral("Arc");
    case Diamond:
        return QStringLiteral("Diamond");
    case DimensionBar:
        return QStringLiteral("Dimension Bar");
    case Ellipse:
        return QStringLiteral("Ellipse");
    case Freeform:
        return QStringLiteral("Freeform");
    case Hexagon:
        return QStringLiteral("Hexagon");
    case IsoscelesTriangle:
        return QStringLiteral("Isosceles Triangle");
    case LeftArrow:
        return QStringLiteral("Left Arrow");
    case Line:
        return QStringLiteral("Line");
    case Link:
        return QStringLiteral("Link");
    case Octagon:
        return QStringLiteral("Octagon");
    case Parallelogram:
        return QStringLiteral("Parallelogram");
    case Pentagon:
        return QStringLiteral("Pentagon");
    case PlainText:
        return QStringLiteral("Plain Text");
    case PlusSign:
        return QStringLiteral("Plus Sign");
    case Rectangle:
        return QStringLiteral("Rectangle");
    case RightTriangle:
        return QStringLiteral("Right Triangle");
    case RoundRectangle:
        return QStringLiteral("Round Rectangle");
    case Star:
        return QStringLiteral("Star");
    case TextBox:
        return QStringLiteral("Text Box");
    case Trapezoid:
        return QStringLiteral("Trapezoid");
    case Picture:
        return QStringLiteral("Picture");
    case Group:
        return QStringLiteral("Group");
    default:
        return {};
    }
}

} // namespace tessaly::canvas::shape_type
