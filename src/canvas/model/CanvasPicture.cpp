#include "CanvasPicture.h"

#include "core/runtime/RuntimeError.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>

#ifdef TESSALY_HAVE_METAFILE
#include "output/metafile/Picture.h"
#endif

namespace tessaly::canvas {

namespace {
#ifndef TESSALY_HAVE_METAFILE
constexpr double HiMetricPerMetre = 100000.0; // 0.01 mm units in one metre
constexpr int DefaultDotsPerMetre = 3780;     // 96 dpi, for images that state no resolution

int hiMetric(int pixels, int dotsPerMetre) {
    const int dpm = dotsPerMetre > 0 ? dotsPerMetre : DefaultDotsPerMetre;
    return static_cast<int>(pixels * HiMetricPerMetre / dpm + 0.5);
}
#endif

QImage readRaster(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    return reader.read();
}
} // namespace

std::shared_ptr<const CanvasPicture> CanvasPicture::fromData(const QByteArray& bytes) {
    auto picture = std::make_shared<CanvasPicture>();
    picture->data_ = bytes;
#ifdef TESSALY_HAVE_METAFILE
    auto meta =
        std::make_shared<const metafile::Picture>(metafile::Picture::fromData(bytes)); // 481 when unreadable
    picture->widthHiMetric_ = meta->widthHiMetric();
    picture->heightHiMetric_ = meta->heightHiMetric();
    if (meta->kind() == metafile::Picture::Kind::Bitmap) {
        picture->image_ = readRaster(bytes);
    } else {
        picture->image_ = meta->toImage(meta->pixelSize().expandedTo(QSize(1, 1)));
        picture->drawer_ = [meta](QPainter& p, const QRectF& target) { meta->draw(p, target); };
    }
    if (picture->image_.isNull())
        raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
#else
    QImage image = readRaster(bytes);
    if (image.isNull())
        raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
    picture->widthHiMetric_ = hiMetric(image.width(), image.dotsPerMeterX());
    picture->heightHiMetric_ = hiMetric(image.height(), image.dotsPerMeterY());
    picture->image_ = std::move(image);
#endif
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
    if (target.isEmpty())
        return;
    if (drawer_) {
        drawer_(painter, target);
        return;
    }
    if (!image_.isNull())
        painter.drawImage(target, image_);
}

} // namespace tessaly::canvas
