#include "PictureBox.h"

#include "Control.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include <cmath>

namespace tessaly {

namespace {

using member::is;

// A colour of the picture as the logic counts colours: red in the low byte.
int32_t platformColour(QRgb rgb) {
    return static_cast<int32_t>(static_cast<uint32_t>(qRed(rgb)) | (static_cast<uint32_t>(qGreen(rgb)) << 8) |
                                (static_cast<uint32_t>(qBlue(rgb)) << 16));
}

} // namespace

PictureBox::PictureBox(Control& control) : control_(control) {}

PictureBox& PictureBox::attach(Control& control) {
    auto surface = std::make_shared<PictureBox>(control);
    control.inner = surface;
    return *surface;
}

PictureBox* PictureBox::of(const Control& control) {
    return dynamic_cast<PictureBox*>(control.inner.get());
}

void PictureBox::setPicture(const QImage& image) {
    picture_ = image;
    if (autoSize_ && !picture_.isNull()) {
        const QRect box = control_.geometry();
        control_.move(box.left(), box.top(), picture_.width() * TwipsPerPixel,
                      picture_.height() * TwipsPerPixel);
    }
    changed();
}

void PictureBox::clear() {
    picture_ = QImage();
    changed();
}

void PictureBox::setScaleMode(int mode) {
    if (mode != TwipsScale && mode != PixelScale)
        raiseError(380, QStringLiteral("Invalid property value"));
    scaleMode_ = mode;
}

void PictureBox::setAutoSize(bool on) {
    autoSize_ = on;
    if (on && hasPicture())
        setPicture(picture_);
}

double PictureBox::unitsPerPixel() const {
    return scaleMode_ == PixelScale ? 1.0 : static_cast<double>(TwipsPerPixel);
}

double PictureBox::scaleWidth() const {
    const double twips = control_.geometry().width();
    return scaleMode_ == PixelScale ? twips / TwipsPerPixel : twips;
}

double PictureBox::scaleHeight() const {
    const double twips = control_.geometry().height();
    return scaleMode_ == PixelScale ? twips / TwipsPerPixel : twips;
}

int32_t PictureBox::point(double x, double y) const {
    if (picture_.isNull() || !std::isfinite(x) || !std::isfinite(y))
        return OutsidePicture;
    const double px = std::floor(x / unitsPerPixel());
    const double py = std::floor(y / unitsPerPixel());
    if (px < 0 || py < 0 || px >= picture_.width() || py >= picture_.height())
        return OutsidePicture;
    return platformColour(picture_.pixel(static_cast<int>(px), static_cast<int>(py)));
}

void PictureBox::changed() {
    if (control_.onChanged)
        control_.onChanged(QStringLiteral("Picture"));
}

QVariant PictureBox::get(const QString& name, const QVariantList& index) {
    if (is(name, "Point")) {
        if (index.size() != 2)
            raiseError(err::InvalidProcedureCall, QStringLiteral("Point takes X and Y"));
        return point(vb::toDouble(index[0]), vb::toDouble(index[1]));
    }
    if (is(name, "ScaleWidth"))
        return scaleWidth();
    if (is(name, "ScaleHeight"))
        return scaleHeight();
    if (is(name, "ScaleMode"))
        return scaleMode_;
    if (is(name, "AutoSize"))
        return autoSize_;
    return AutoObject::get(name, index);
}

void PictureBox::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "ScaleMode"))
        return setScaleMode(vb::toInt32(value));
    if (is(name, "AutoSize"))
        return setAutoSize(vb::toBool(value));
    AutoObject::set(name, value, index);
}

QVariant PictureBox::call(const QString& name, QVariantList& args) {
    if (is(name, "Point"))
        return get(name, args);
    return AutoObject::call(name, args);
}

QStringList PictureBox::memberNames() const {
    return {QStringLiteral("Point"), QStringLiteral("ScaleWidth"), QStringLiteral("ScaleHeight"),
            QStringLiteral("ScaleMode"), QStringLiteral("AutoSize")};
}

} // namespace tessaly
