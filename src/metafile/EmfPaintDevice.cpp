#include "EmfPaintDevice.h"

#include "EmfPaintEngine.h"
#include "EmfRecorder.h"
#include "VectorMetrics.h"

#include "core/runtime/RuntimeError.h"

#include <QSaveFile>

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
    // Only the metrics a vector device does not set go to the base class.
    if (const std::optional<int> value =
            vectorMetric(metric, recorder_->deviceSize(), frameMm_, dotsPerInch_))
        return *value;
    return QPaintDevice::metric(metric);
}

} // namespace tessaly::metafile
