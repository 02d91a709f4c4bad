#include "ShapeData.h"

namespace tessaly::canvas {

bool ShapeExtra::operator==(const ShapeExtra& o) const {
    if (text != o.text || points != o.points || linkStart != o.linkStart || linkEnd != o.linkEnd)
        return false;
    const bool samePicture =
        picture == o.picture || (picture && o.picture && picture->data() == o.picture->data());
    if (!samePicture || children.size() != o.children.size())
        return false;
    for (size_t i = 0; i < children.size(); ++i)
        if (!children[i]->sameAs(*o.children[i]))
            return false;
    return true;
}

QRectF ShapeData::box() const {
    return QRectF(QPointF(left, top), QPointF(right, bottom)).normalized();
}

const QString& ShapeData::text() const {
    static const QString empty;
    return extra ? extra->text : empty;
}

bool ShapeData::sameAs(const ShapeData& o) const {
    if (id != o.id || type != o.type || rotation != o.rotation || flags != o.flags || left != o.left ||
        top != o.top || right != o.right || bottom != o.bottom || name != o.name)
        return false;
    if (!(st() == o.st()))
        return false;
    const ShapeExtra none;
    return (extra ? *extra : none) == (o.extra ? *o.extra : none);
}

} // namespace tessaly::canvas
