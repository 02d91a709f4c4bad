#include "CanvasPicture.h"

#include "core/runtime/RuntimeError.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>

namespace tessaly::canvas {

namespace {
constexpr double HiMetricPerMetre = 100000.0; // 0.01 mm units in one metre
constexpr int DefaultDotsPerMetre = 3780;     // 96 dpi, for images that state no resolution

int hiMetric(int pixels, int dotsPerMetre) {
    const int dpm = dotsPerMetre > 0 ? dotsPerMetre : DefaultDotsPerMetre;
    return static_cast<int>(pixels * HiMetricPerMetre / dpm + 0.5);
}
} // namespace

std::shared_ptr<const CanvasPicture> CanvasPicture::fromData(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
    auto picture = std::make_shared<CanvasPicture>();
    picture->data_ = bytes;
    picture->widthHiMetric_ = hiMetric(image.width(), image.dotsPerMeterX());
    picture->heightHiMetric_ = hiMetric(image.height(), image.dotsPerMeterY());
    picture->image_ = std::move(image);
    return picture;
}

std::shared_ptr<const CanvasPicture> CanvasPicture::fromFile(const QString& hostPath) {
    QFile file(hostPath);
    if (!file.exists())
        raiseError(err::FileNotFound, QStringLiteral("File not found"));
    if (!file.open(QIODevice::ReadOnly))
        raiseError(err::PathFileAccess, QStringLiteral("Path/File access error"));
    return fromData(file.readAll());
}

void CanvasPicture::draw(QPainter& painter, const QRectF& target) const {
    if (image_.isNull() || target.isEmpty())
        return;
    painter.drawImage(target, image_);
}

} // namespace tessaly::canvas
