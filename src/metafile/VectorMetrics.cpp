#include "VectorMetrics.h"

#include <cmath>

namespace tessaly::metafile {

namespace {
constexpr int TrueColour = 0x7FFFFFFF; // the number of colours of a true-colour device
constexpr int Depth = 32;              // bits a pixel
} // namespace

std::optional<int> vectorMetric(QPaintDevice::PaintDeviceMetric metric, QSize deviceSize, QSizeF sizeMm,
                                int dotsPerInch) {
    switch (metric) {
    case QPaintDevice::PdmWidth:
        return deviceSize.width();
    case QPaintDevice::PdmHeight:
        return deviceSize.height();
    case QPaintDevice::PdmWidthMM:
        return static_cast<int>(std::lround(sizeMm.width()));
    case QPaintDevice::PdmHeightMM:
        return static_cast<int>(std::lround(sizeMm.height()));
    case QPaintDevice::PdmNumColors:
        return TrueColour;
    case QPaintDevice::PdmDepth:
        return Depth;
    case QPaintDevice::PdmDpiX:
    case QPaintDevice::PdmDpiY:
    case QPaintDevice::PdmPhysicalDpiX:
    case QPaintDevice::PdmPhysicalDpiY:
        return dotsPerInch;
    case QPaintDevice::PdmDevicePixelRatio:
        return 1;
    case QPaintDevice::PdmDevicePixelRatioScaled:
        return static_cast<int>(QPaintDevice::devicePixelRatioFScale());
    default:
        return std::nullopt;
    }
}

} // namespace tessaly::metafile
