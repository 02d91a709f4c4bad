#pragma once

#include "CanvasChild.h"
#include "Members.h"

namespace tessaly::canvas {

// Page: the drawing's sheet, its shapes, selection and guide lines.
class Page : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("Page"); }
    TESSALY_AUTO_MEMBERS(Page)
};

// GuideList: guide lines at Y (horizontal) or X (vertical) positions in mm.
// Printed, it gives its positions as a list.
class GuideList : public CanvasChild {
public:
    GuideList(std::weak_ptr<POLARDraw> canvas, bool horizontal)
        : CanvasChild(std::move(canvas)), horizontal_(horizontal) {}
    QString typeName() const override { return QStringLiteral("GuideList"); }
    TESSALY_AUTO_MEMBERS(GuideList)
    std::optional<QVariant> printValue() override;

    std::vector<int> positions() const;
    void add(int positionMm);
    void clear();

private:
    bool horizontal_;
};

} // namespace tessaly::canvas
