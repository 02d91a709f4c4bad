#include "CanvasPicture.h"

#include "core/runtime/RuntimeError.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>

#include "metafile/Picture.h"

namespace tessaly::canvas {

namespace {
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
