#include "CanvasPicture.h"

#include "core/runtime/RuntimeError.h"

#include <QFile>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "metafile/Picture.h"

namespace tessaly::canvas {

namespace {
// The raster form of a metafile is played at the picture's natural size, but
// within this many pixels: beyond, it is scaled down in proportion, so that a
// metafile claiming a vast frame never takes the memory of its full raster.
// Its vectors are still drawn as vectors at any size.
constexpr double MaxVectorRasterPixels = 16.0 * 1024 * 1024;

QSize vectorRasterSize(const QSize& natural) {
    const QSize size = natural.expandedTo(QSize(1, 1));
    const double pixels = static_cast<double>(size.width()) * size.height();
    if (pixels <= MaxVectorRasterPixels)
        return size;
    const double k = std::sqrt(MaxVectorRasterPixels / pixels);
    return QSize(std::max(1, static_cast<int>(size.width() * k)),
                 std::max(1, static_cast<int>(size.height() * k)));
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
        picture->image_ = meta->bitmap(); // decoded once, shared
    } else {
        picture->image_ = meta->toImage(vectorRasterSize(meta->pixelSize()));
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
