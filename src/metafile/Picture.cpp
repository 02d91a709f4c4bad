#include "Picture.h"

#include "ByteReader.h"
#include "EmfParser.h"
#include "MetafilePlayer.h"
#include "WmfParser.h"

#include "core/runtime/RuntimeError.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <cmath>

namespace tessaly::metafile {

namespace {

// 0.01 mm per inch.
constexpr double HiMetricPerInch = 2540.0;
// The resolution of a bitmap that does not give its own.
constexpr double DefaultDpi = 96.0;
// Metres per inch, for a bitmap's dots per metre.
constexpr double InchesPerMetre = 39.37007874015748;
// Largest picture side accepted from a file, in pixels.
constexpr int MaxSide = 32768;
// The bitmap formats the loader reads.
const QList<QByteArray> BitmapFormats = {"bmp", "jpeg", "jpg", "gif", "png"};

int toInt(double value) {
    return static_cast<int>(std::lround(value));
}

QImage readBitmap(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // A photograph stands as its camera says it was held.
    reader.setAutoTransform(true);
    if (!BitmapFormats.contains(reader.format()))
        return QImage();
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > MaxSide || size.height() > MaxSide))
        return QImage();
    QImage image;
    if (!reader.read(&image))
        return QImage();
    return image;
}

} // namespace

Picture Picture::fromData(const QByteArray& bytes) {
    Picture picture;
    picture.data_ = bytes;
    if (looksLikeEmf(bytes)) {
        const EmfHeader header = readEmfHeader(bytes);
        checkEmfRecords(bytes);
        picture.kind_ = Kind::Emf;
        picture.sizeHiMetric_ =
            QSize(header.frame.right() - header.frame.left(), header.frame.bottom() - header.frame.top());
        picture.pixelSize_ = QSize(toInt(picture.sizeHiMetric_.width() * DefaultDpi / HiMetricPerInch),
                                   toInt(picture.sizeHiMetric_.height() * DefaultDpi / HiMetricPerInch));
        return picture;
    }
    if (looksLikeWmf(bytes)) {
        const WmfHeader header = readWmfHeader(bytes);
        const QRectF frame = wmfFrame(bytes); // walks every record: damage shows here
        picture.kind_ = Kind::Wmf;
        if (header.placeable && header.unitsPerInch > 0) {
            const double w = header.placeableBox.right() - header.placeableBox.left();
            const double h = header.placeableBox.bottom() - header.placeableBox.top();
            picture.sizeHiMetric_ = QSize(toInt(std::abs(w) * HiMetricPerInch / header.unitsPerInch),
                                          toInt(std::abs(h) * HiMetricPerInch / header.unitsPerInch));
        } else {
            // A plain WMF gives no physical size: its units are taken as pixels.
            picture.sizeHiMetric_ = QSize(toInt(std::abs(frame.width()) * HiMetricPerInch / DefaultDpi),
                                          toInt(std::abs(frame.height()) * HiMetricPerInch / DefaultDpi));
        }
        picture.pixelSize_ = QSize(toInt(picture.sizeHiMetric_.width() * DefaultDpi / HiMetricPerInch),
                                   toInt(picture.sizeHiMetric_.height() * DefaultDpi / HiMetricPerInch));
        return picture;
    }
    const QImage image = readBitmap(bytes);
    if (image.isNull())
        raiseInvalidPicture("not a picture");
    picture.kind_ = Kind::Bitmap;
    picture.bitmap_ = image;
    const double dpiX = image.dotsPerMeterX() > 0 ? image.dotsPerMeterX() / InchesPerMetre : DefaultDpi;
    const double dpiY = image.dotsPerMeterY() > 0 ? image.dotsPerMeterY() / InchesPerMetre : DefaultDpi;
    picture.sizeHiMetric_ =
        QSize(toInt(image.width() * HiMetricPerInch / dpiX), toInt(image.height() * HiMetricPerInch / dpiY));
    picture.pixelSize_ = image.size();
    return picture;
}

void Picture::draw(QPainter& painter, const QRectF& target) const {
    try {
        switch (kind_) {
        case Kind::Bitmap:
            painter.drawImage(target, bitmap_);
            break;
        case Kind::Emf:
            playEmf(painter, data_, target);
            break;
        case Kind::Wmf:
            playWmf(painter, data_, target);
            break;
        default:
            break;
        }
    } catch (const RuntimeError&) {
        // The file was checked when loaded; a picture drawn during a paint
        // shows what it could draw and never stops the paint.
    }
}

QImage Picture::toImage(const QSize& size) const {
    if (isNull() || size.isEmpty())
        return QImage();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    draw(painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return image;
}

Picture loadPicture(const QString& hostPath) {
    QFile file(hostPath);
    if (!QFileInfo(hostPath).isFile())
        raiseError(err::FileNotFound, QString(), QStringLiteral("LoadPicture"));
    if (!file.open(QIODevice::ReadOnly))
        raiseError(err::PathFileAccess, QString(), QStringLiteral("LoadPicture"));
    return Picture::fromData(file.readAll());
}

} // namespace tessaly::metafile
