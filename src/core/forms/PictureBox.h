#pragma once

#include "core/runtime/AutoObject.h"

#include <QImage>
#include <cstdint>

namespace tessaly {

class Control;

// The drawing surface of a picture box control: the picture it shows, its
// scale and the colour at a point. A form gives a picture box this surface
// when its logic puts pictures into it; the control then answers Point,
// ScaleWidth, ScaleHeight, ScaleMode and AutoSize by name, and the view
// paints the picture and reports the mouse in the box's scale units.
class PictureBox final : public AutoObject {
public:
    static constexpr int TwipsScale = 1;          // ScaleMode: twips
    static constexpr int PixelScale = 3;          // ScaleMode: pixels
    static constexpr int TwipsPerPixel = 15;      // twips to a pixel at the standard density
    static constexpr int32_t OutsidePicture = -1; // Point where the box shows no picture

    explicit PictureBox(Control& control);

    // Gives `control` a surface, kept as its inner object, and returns it.
    static PictureBox& attach(Control& control);
    // The surface of a control, or null when it has none.
    static PictureBox* of(const Control& control);

    const QImage& picture() const { return picture_; }
    bool hasPicture() const { return !picture_.isNull(); }
    // Shows a picture from the box's top-left corner, one picture pixel to a
    // screen pixel. With AutoSize the box takes the picture's size.
    void setPicture(const QImage& image);
    // Removes the picture.
    void clear();

    int scaleMode() const { return scaleMode_; }
    void setScaleMode(int mode);
    bool autoSize() const { return autoSize_; }
    void setAutoSize(bool on);
    // The box's inner size in its scale units.
    double scaleWidth() const;
    double scaleHeight() const;
    // Scale units to screen pixels, and back.
    double unitsPerPixel() const;

    // The colour (0x00BBGGRR) of the picture at a point in scale units, or
    // OutsidePicture where the box shows none.
    int32_t point(double x, double y) const;

    QString typeName() const override { return QStringLiteral("PictureBox"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    void changed();

    Control& control_;
    QImage picture_;
    int scaleMode_ = TwipsScale;
    bool autoSize_ = false;
};

} // namespace tessaly
