#pragma once

#include <QPaintDevice>
#include <QSize>
#include <QSizeF>
#include <optional>

namespace tessaly::metafile {

// The metrics of a vector paint device (a metafile, an SVG document): its
// size in device units of a reference device at `dotsPerInch`, its size in
// millimetres, true colour. Nothing for a metric it does not set.
std::optional<int> vectorMetric(QPaintDevice::PaintDeviceMetric metric, QSize deviceSize, QSizeF sizeMm,
                                int dotsPerInch);

} // namespace tessaly::metafile
