#include "PaintSurface.h"

#include "FloodFill.h"
#include "core/forms/Control.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "metafile/Picture.h"

#include <QPainter>
#include <cmath>
#include <cstdlib>

namespace tessaly::colour {

namespace {

bool is(const QString& a, const char* b) {
    return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}

// 0.01 mm to an inch, and pixels to an inch at the standard density.
constexpr double HiMetricPerInch = 2540.0;
constexpr double PixelsPerInch = 96.0;
// Error 380: a property set to a value it cannot take.
constexpr int InvalidPropertyValue = 380;

} // namespace

QRgb toRgb(uint32_t colour) {
    return qRgb(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                static_cast<int>((colour >> 16) & 0xFF));
}

uint32_t toPlatform(QRgb rgb) {
    return static_cast<uint32_t>(qRed(rgb)) | (static_cast<uint32_t>(qGreen(rgb)) << 8) |
           (static_cast<uint32_t>(qBlue(rgb)) << 16);
}

PaintSurface::PaintSurface(Control& control) : control_(control) {}

PaintSurface& PaintSurface::attach(Control& control) {
    auto surface = std::make_shared<PaintSurface>(control);
    control.inner = surface;
    surface->fitToBox();
    return *surface;
}

PaintSurface* PaintSurface::of(const Control& control) {
    return dynamic_cast<PaintSurface*>(control.inner.get());
}

QSize PaintSurface::boxPixels() const {
    const QRect box = control_.geometry();
    return QSize(std::max(box.width() / TwipsPerPixel, 0), std::max(box.height() / TwipsPerPixel, 0));
}

void PaintSurface::fitToBox() {
    const QSize box = boxPixels();
    const QSize want(std::max(box.width(), image_.width()), std::max(box.height(), image_.height()));
    if (want == image_.size() || want.isEmpty())
        return;
    QImage grown(want, QImage::Format_RGB32);
    grown.fill(toRgb(control_.hasProp(QStringLiteral("BackColor")) ? control_.backColor() : White));
    if (!image_.isNull()) {
        QPainter painter(&grown);
        painter.drawImage(0, 0, image_);
    }
    image_ = grown;
    changed();
}

void PaintSurface::setPicture(const metafile::Picture& picture) {
    pictureSize_ = picture.isNull() ? QSize() : picture.pixelSize();
    hasPicture_ = !picture.isNull();
    const QSize box = boxPixels();
    image_ = QImage(
        QSize(std::max(box.width(), pictureSize_.width()), std::max(box.height(), pictureSize_.height())),
        QImage::Format_RGB32);
    if (image_.isNull())
        return;
    image_.fill(toRgb(control_.hasProp(QStringLiteral("BackColor")) ? control_.backColor() : White));
    if (hasPicture_) {
        QPainter painter(&image_);
        picture.draw(painter, QRectF(QPointF(0, 0), QSizeF(pictureSize_)));
    }
    changed();
}

void PaintSurface::makeImageThePicture() {
    pictureSize_ = image_.size();
    hasPicture_ = !image_.isNull();
}

QSize PaintSurface::pictureHiMetric() const {
    return QSize(static_cast<int>(std::lround(pictureSize_.width() * HiMetricPerInch / PixelsPerInch)),
                 static_cast<int>(std::lround(pictureSize_.height() * HiMetricPerInch / PixelsPerInch)));
}

void PaintSurface::setScaleMode(int mode) {
    if (mode != TwipsScale && mode != PixelScale)
        raiseError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
    scaleMode_ = mode;
}

double PaintSurface::scaleWidth() const {
    return toUnits(boxPixels().width());
}

double PaintSurface::scaleHeight() const {
    return toUnits(boxPixels().height());
}

int PaintSurface::toPixels(double units) const {
    const double pixels = scaleMode_ == PixelScale ? units : units / TwipsPerPixel;
    if (!std::isfinite(pixels) || std::fabs(pixels) > 1e9)
        raiseError(err::Overflow);
    return static_cast<int>(vb::roundHalfEven(pixels));
}

double PaintSurface::toUnits(int pixels) const {
    return scaleMode_ == PixelScale ? pixels : static_cast<double>(pixels) * TwipsPerPixel;
}

int32_t PaintSurface::pixel(int px, int py) const {
    if (px < 0 || py < 0 || px >= image_.width() || py >= image_.height())
        return NoColour;
    return static_cast<int32_t>(toPlatform(image_.pixel(px, py)));
}

int32_t PaintSurface::Point(double x, double y) const {
    return pixel(toPixels(x), toPixels(y));
}

void PaintSurface::Line(double x1, double y1, double x2, double y2, uint32_t colour) {
    fitToBox();
    const QRgb rgb = toRgb(colour);
    int ax = toPixels(x1), ay = toPixels(y1);
    const int bx = toPixels(x2), by = toPixels(y2);
    if (drawWidth > 1) {
        QPainter painter(&image_);
        QPen pen(QColor::fromRgb(rgb), drawWidth, Qt::SolidLine, Qt::RoundCap);
        painter.setPen(pen);
        painter.drawLine(ax, ay, bx, by);
        changed();
        return;
    }
    // Bresenham's line, the last point left out.
    const int dx = std::abs(bx - ax), dy = -std::abs(by - ay);
    const int sx = ax < bx ? 1 : -1, sy = ay < by ? 1 : -1;
    int error = dx + dy;
    while (ax != bx || ay != by) {
        if (ax >= 0 && ay >= 0 && ax < image_.width() && ay < image_.height())
            reinterpret_cast<QRgb*>(image_.scanLine(ay))[ax] = rgb;
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            ax += sx;
        }
        if (twice <= dx) {
            error += dx;
            ay += sy;
        }
    }
    changed();
}

bool PaintSurface::ExtFloodFill(int px, int py, uint32_t colour, int type) {
    fitToBox();
    if (px < 0 || py < 0 || px >= image_.width() || py >= image_.height())
        return false;
    if (fillStyle != SolidFill)
        return true;
    const FloodMode mode = type == SurfaceFill ? FloodMode::Surface : FloodMode::Border;
    if (type != SurfaceFill && type != BorderFill)
        return false;
    const FloodStats stats = floodFill(image_, px, py, toRgb(colour), toRgb(fillColor), mode);
    if (stats.filled > 0)
        changed();
    return stats.filled > 0;
}

void PaintSurface::Refresh() {
    changed();
}

void PaintSurface::changed() {
    if (control_.onChanged)
        control_.onChanged(QStringLiteral("Picture"));
}

QVariant PaintSurface::get(const QString& name, const QVariantList& index) {
    if (is(name, "Point")) {
        if (index.size() != 2)
            raiseError(err::InvalidProcedureCall, QStringLiteral("Point takes X and Y"));
        return Point(vb::toDouble(index[0]), vb::toDouble(index[1]));
    }
    if (is(name, "ScaleMode"))
        return scaleMode_;
    if (is(name, "ScaleWidth"))
        return scaleWidth();
    if (is(name, "ScaleHeight"))
        return scaleHeight();
    if (is(name, "DrawWidth"))
        return drawWidth;
    if (is(name, "FillStyle"))
        return fillStyle;
    if (is(name, "FillColor"))
        return static_cast<qint64>(fillColor);
    if (is(name, "HasPicture"))
        return hasPicture_;
    if (is(name, "ImageWidth"))
        return image_.width();
    if (is(name, "ImageHeight"))
        return image_.height();
    return AutoObject::get(name, index);
}

void PaintSurface::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "ScaleMode"))
        return setScaleMode(vb::toInt32(value));
    if (is(name, "DrawWidth")) {
        const int width = vb::toInt32(value);
        if (width < 1)
            raiseError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
        drawWidth = width;
        return;
    }
    if (is(name, "FillStyle"))
        return void(fillStyle = vb::toInt32(value));
    if (is(name, "FillColor"))
        return void(fillColor = static_cast<uint32_t>(vb::toDouble(value)));
    AutoObject::set(name, value, index);
}

QVariant PaintSurface::call(const QString& name, QVariantList& args) {
    if (is(name, "Point"))
        return get(name, args);
    if (is(name, "Line")) {
        if (args.size() != 5)
            raiseError(err::InvalidProcedureCall, QStringLiteral("Line takes two points and a colour"));
        Line(vb::toDouble(args[0]), vb::toDouble(args[1]), vb::toDouble(args[2]), vb::toDouble(args[3]),
             static_cast<uint32_t>(vb::toDouble(args[4])));
        return {};
    }
    if (is(name, "Refresh")) {
        Refresh();
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList PaintSurface::memberNames() const {
    return {QStringLiteral("Point"),       QStringLiteral("ScaleMode"),  QStringLiteral("ScaleWidth"),
            QStringLiteral("ScaleHeight"), QStringLiteral("DrawWidth"),  QStringLiteral("FillStyle"),
            QStringLiteral("FillColor"),   QStringLiteral("HasPicture"), QStringLiteral("ImageWidth"),
            QStringLiteral("ImageHeight"), QStringLiteral("Line"),       QStringLiteral("Refresh")};
}

} // namespace tessaly::colour
