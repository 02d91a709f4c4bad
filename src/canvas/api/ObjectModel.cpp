#include "ObjectModel.h"

#include "FormatObjects.h"
#include "POLARDraw.h"
#include "PageObjects.h"
#include "ShapeObjects.h"
#include "ViewObjects.h"

namespace tessaly::canvas {

namespace {
template <class Class> std::pair<QString, QStringList> entry(const char* name) {
    return {QString::fromLatin1(name), Class::members().names()};
}
} // namespace

std::map<QString, QStringList> memberNamesByClass() {
    return {
        {QStringLiteral("POLARDraw"), POLARDraw::classMemberNames()},
        entry<Page>("Page"),
        entry<GuideList>("GuideList"),
        entry<ViewList>("ViewList"),
        entry<View>("View"),
        entry<ViewOptions>("ViewOptions"),
        entry<ShapeList>("ShapeList"),
        entry<Selection>("Selection"),
        entry<ShapeRange>("ShapeRange"),
        entry<Shape>("Shape"),
        entry<FillFormat>("FillFormat"),
        entry<LineFormat>("LineFormat"),
        entry<TextFrame>("TextFrame"),
        entry<TextFont>("TextFont"),
        entry<EffectFormat>("EffectFormat"),
        entry<LensFormat>("LensFormat"),
        entry<ShapeLocks>("ShapeLocks"),
        {QStringLiteral("Picture"), PictureObject(nullptr).memberNames()},
    };
}

} // namespace tessaly::canvas
