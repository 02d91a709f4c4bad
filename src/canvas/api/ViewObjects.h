#pragma once

#include "CanvasChild.h"
#include "Members.h"

namespace tessaly::canvas {

// ViewList: commands on the view; its default member Item is the View.
class ViewList : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("ViewList"); }
    TESSALY_AUTO_MEMBERS(ViewList)

    // Screen pixels to client pixels (subtracts the window's screen origin).
    void screenToClient(int& x, int& y) const;
    // Client pixels to units of the coordinate mode: whole mm in mode 1, page pixels in mode 3.
    void clientToPage(int& x, int& y) const;
};

// View: tool, zoom, display and snap switches.
class View : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("View"); }
    TESSALY_AUTO_MEMBERS(View)
};

// ViewOptions: MeasurementUnits, AllowErrorReporting, ShowConnectors.
class ViewOptions : public CanvasChild {
public:
    using CanvasChild::CanvasChild;
    QString typeName() const override { return QStringLiteral("ViewOptions"); }
    TESSALY_AUTO_MEMBERS(ViewOptions)
};

} // namespace tessaly::canvas
