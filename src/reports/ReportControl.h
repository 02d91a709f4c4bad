#pragma once

#include "EngineObject.h"

#include <QPointF>
#include <QRectF>

namespace tessaly::reports {

class ReportPage;

// Where a section is being laid onto a page: the page, the section's top-left
// corner on the paper and the printable area, all in twips.
struct Placement {
    ReportPage& page;
    QPointF origin;
    QRectF printable;
};

// A control of a report section: a name, a box in twips from the section's
// top-left corner, and whether it prints. Each kind lays its own items onto
// the page.
class ReportControl : public EngineObject {
public:
    explicit ReportControl(QString name);

    const QString& name() const { return name_; }
    QString typeName() const override { return name_; }

    double Left = 0;   // twips from the section's left edge
    double Top = 0;    // twips from the section's top edge
    double Width = 0;  // twips
    double Height = 0; // twips
    bool Visible = true;

    // The control's box on the paper for a section at `origin`.
    QRectF boxAt(const QPointF& origin) const { return {origin.x() + Left, origin.y() + Top, Width, Height}; }
    // Lays what the control shows onto the page; called only when it is visible.
    virtual void place(const Placement& where) const = 0;

protected:
    // Enters Left, Top, Width and Height; a line control keeps its own.
    void boxProperties();

private:
    QString name_;
};

using ControlPtr = std::shared_ptr<ReportControl>;

} // namespace tessaly::reports
