#pragma once

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>

namespace tessaly::metafile {

// A picture loaded from a file: a bitmap (BMP, JPEG, GIF, PNG) or a metafile
// (EMF, WMF). Its size is given in 0.01 mm as the platform's picture object
// reports it, and its original bytes are kept for embedding in drawings.
class Picture {
public:
    enum class Kind { None, Bitmap, Emf, Wmf };

    Kind kind() const { return kind_; }
    bool isNull() const { return kind_ == Kind::None; }
    int widthHiMetric() const { return sizeHiMetric_.width(); }   // 0.01 mm
    int heightHiMetric() const { return sizeHiMetric_.height(); } // 0.01 mm
    QSize pixelSize() const { return pixelSize_; } // natural size in pixels at 96 dpi (bitmaps: their pixels)
    // The bitmap scaled, or the metafile played, into the target.
    void draw(QPainter& painter, const QRectF& target) const;
    QImage toImage(const QSize& size) const;
    const QImage& bitmap() const { return bitmap_; } // the decoded pixels of a bitmap; null for a metafile
    const QByteArray& data() const { return data_; } // the original file bytes

    // Error 481 when the bytes are not a picture that can be read.
    static Picture fromData(const QByteArray& bytes);

private:
    Kind kind_ = Kind::None;
    QByteArray data_;
    QImage bitmap_;
    QSize sizeHiMetric_;
    QSize pixelSize_;
};

// Loads a picture from a host path: error 53 for a missing file, 481 for a
// file that is not a picture.
Picture loadPicture(const QString& hostPath);

} // namespace tessaly::metafile
