#pragma once

#include "EngineObject.h"

#include <QRectF>
#include <QSizeF>

namespace tessaly::reports {

// Orientation codes of a report's paper.
namespace orientation {
constexpr int Portrait = 1;
constexpr int Landscape = 2;
} // namespace orientation

// A report's paper: its stored size (width and height as for portrait), the
// orientation, and the four margins, all in twips.
class PageSettings final : public EngineObject {
public:
    PageSettings();

    double PaperWidth = 12240;  // US Letter, 8.5 inches
    double PaperHeight = 15840; // 11 inches
    int Orientation = orientation::Portrait;
    double LeftMargin = 1440;
    double RightMargin = 1440;
    double TopMargin = 1440;
    double BottomMargin = 1440;

    // Sets the margins in the order layouts store them: left, right, top, bottom.
    void setMargins(double left, double right, double top, double bottom);
    // The paper as it lies: landscape swaps the stored width and height.
    QSizeF paper() const;
    // The paper within the margins.
    QRectF printableArea() const;

    QString typeName() const override { return QStringLiteral("PageSettings"); }
};

} // namespace tessaly::reports
