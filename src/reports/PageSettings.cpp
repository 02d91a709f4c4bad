#include "PageSettings.h"

#include "core/runtime/Vb.h"

namespace tessaly::reports {

PageSettings::PageSettings() {
    const auto length = [this](const char* name, double& member) {
        property(
            QString::fromLatin1(name), [&member] { return member; },
            [&member](const QVariant& v) { member = vb::toDouble(v); });
    };
    length("PaperWidth", PaperWidth);
    length("PaperHeight", PaperHeight);
    length("LeftMargin", LeftMargin);
    length("RightMargin", RightMargin);
    length("TopMargin", TopMargin);
    length("BottomMargin", BottomMargin);
    property(
        QStringLiteral("Orientation"), [this] { return Orientation; },
        [this](const QVariant& v) { Orientation = vb::toInt32(v); });
}

void PageSettings::setMargins(double left, double right, double top, double bottom) {
    LeftMargin = left;
    RightMargin = right;
    TopMargin = top;
    BottomMargin = bottom;
}

QSizeF PageSettings::paper() const {
    return Orientation == orientation::Landscape ? QSizeF(PaperHeight, PaperWidth)
                                                 : QSizeF(PaperWidth, PaperHeight);
}

QRectF PageSettings::printableArea() const {
    const QSizeF p = paper();
    return {LeftMargin, TopMargin, std::max(0.0, p.width() - LeftMargin - RightMargin),
            std::max(0.0, p.height() - TopMargin - BottomMargin)};
}

} // namespace tessaly::reports
