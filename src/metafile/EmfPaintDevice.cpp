#include "EmfPaintDevice.h"

#include "EmfPaintEngine.h"
#include "EmfRecorder.h"

#include "core/runtime/RuntimeError.h"

#include <QSaveFile>
#include <cmath>

namespace tessaly::metafile {

EmfPaintDevice::EmfPaintDevice(QSizeF frameMm, int dotsPerInch, QString description)
    : frameMm_(frameMm), dotsPerInch_(dotsPerInch < 1 ? 1 : dotsPerInch),
      recorder_(std::make_unique<EmfRecorder>(frameMm, dotsPerInch_, std::move(description))),
      engine_(std::make_unique<EmfPaintEngine>(*recorder_)) {}

EmfPaintDevice::~EmfPaintDevice() = default;

QPaintEngine* EmfPaintDevice::paintEngine() const {
    return engine_.get();
}

QByteArray EmfPaintDevice::toBytes() {
    return recorder_->finish();
}

void EmfPaintDevice::save(const QString& hostPath) {
    const QByteArray bytes = toBytes();
    QSaveFile file(hostPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        raiseError(err::PathFileAccess, QString(), QStringLiteral("EmfPaintDevice"));
}

int EmfPaintDevice::metric(PaintDeviceMetric metric) const {
    const QSize size = recorder_->deviceSize();
    switch (metric) {
    case PdmWidth:
        return size.width();
    case PdmHeight:
        return size.height();
    case PdmWidthMM:
        return static_cast<int>(std::lround(frameMm_.width()));
    case PdmHeightMM:
        return static_cast<int>(std::lround(frameMm_.height()));
    case PdmNumColors:
        return 0x7FFFFFFF; // true colour
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return dotsPerInch_;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(QPaintDevice::devicePixelRatioFScale());
    default:
        return QPaintDevice::metric(metric);
    }
}

} // namespace tessaly::metafile
