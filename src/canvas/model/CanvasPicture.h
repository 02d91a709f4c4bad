#pragma once

#include <QByteArray>
#include <QImage>
#include <QRectF>
#include <functional>
#include <memory>

class QPainter;

namespace tessaly::canvas {

// A picture held by the drawing: the bytes of the original file (kept so that
// the .pdr embeds it unchanged) and their decoded raster form. Picture shapes
// and texture fills share one instance between versions and canvases.
class CanvasPicture {
public:
    // Decodes `bytes`; raises run-time error 481 when they are no picture the canvas can take.
    static std::shared_ptr<const CanvasPicture> fromData(const QByteArray& bytes);
    // Reads a picture file (host path); 53 when missing, 481 when not a picture.
    static std::shared_ptr<const CanvasPicture> fromFile(const QString& hostPath);

    const QByteArray& data() const { return data_; }
    const QImage& image() const { return image_; }
    // Natural size in 0.01 mm units, as the platform's picture objects report it.
    int widthHiMetric() const { return widthHiMetric_; }
    int heightHiMetric() const { return heightHiMetric_; }

    // Draws the picture stretched into `target` (device units of the painter).
    void draw(QPainter& painter, const QRectF& target) const;

private:
    QByteArray data_;
    QImage image_; // the raster form (metafiles played at their natural size), for textures
    std::function<void(QPainter&, const QRectF&)> drawer_; // draws vector pictures as vectors
    int widthHiMetric_ = 0;
    int heightHiMetric_ = 0;
};

using PicturePtr = std::shared_ptr<const CanvasPicture>;

} // namespace tessaly::canvas
