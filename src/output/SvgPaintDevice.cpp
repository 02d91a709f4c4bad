#include "SvgPaintDevice.h"

#include "SvgPaintEngine.h"

#include "metafile/VectorMetrics.h"

#include <cmath>

namespace tessaly::output {

namespace {
constexpr double MmPerInch = 25.4;

QByteArray number(double value) {
    QByteArray text = QByteArray::number(value, 'f', 3);
    while (text.endsWith('0'))
        text.chop(1);
    if (text.endsWith('.'))
        text.chop(1);
    return text;
}
} // namespace

SvgPaintDevice::SvgPaintDevice(QSizeF sizeMm, int dotsPerInch, QString title)
    : sizeMm_(sizeMm), dotsPerInch_(dotsPerInch < 1 ? 1 : dotsPerInch), title_(std::move(title)),
      engine_(std::make_unique<SvgPaintEngine>()) {}

SvgPaintDevice::~SvgPaintDevice() = default;

QPaintEngine* SvgPaintDevice::paintEngine() const {
    return engine_.get();
}

QByteArray SvgPaintDevice::document() const {
    const double k = dotsPerInch_ / MmPerInch;
    QByteArray doc = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                     "version=\"1.1\" width=\"" +
                     number(sizeMm_.width()) + "mm\" height=\"" + number(sizeMm_.height()) +
                     "mm\" viewBox=\"0 0 " + number(sizeMm_.width() * k) + ' ' +
                     number(sizeMm_.height() * k) + "\">\n";
    if (!title_.isEmpty())
        doc += "<title>" + title_.toHtmlEscaped().toUtf8() + "</title>\n";
    if (!engine_->definitions().isEmpty())
        doc += "<defs>\n" + engine_->definitions() + "</defs>\n";
    doc += engine_->body();
    doc += "</svg>\n";
    return doc;
}

int SvgPaintDevice::metric(PaintDeviceMetric metric) const {
    const double k = dotsPerInch_ / MmPerInch;
    const QSize deviceSize(static_cast<int>(std::ceil(sizeMm_.width() * k)),
                           static_cast<int>(std::ceil(sizeMm_.height() * k)));
    // Only the metrics a vector device does not set go to the base class.
    if (const std::optional<int> value = metafile::vectorMetric(metric, deviceSize, sizeMm_, dotsPerInch_))
        return *value;
    return QPaintDevice::metric(metric);
}

} // namespace tessaly::output
