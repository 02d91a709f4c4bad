#pragma once

#include "core/runtime/AutoObject.h"

#include <QImage>
#include <QSize>
#include <cstdint>

namespace tessaly {

class Control;

namespace metafile {
class Picture;
}

namespace colour {

// The drawing surface of a picture box that is painted on (Picture1 of the
// colouring window): its picture, its persistent image (what is drawn stays,
// as with AutoRedraw on) and the drawing operations the logic uses: read a
// pixel, draw a line, flood a surface of one colour, make the image the
// picture. Coordinates are in the box's scale (ScaleMode 1 twips, 3 pixels);
// colours are the platform's 0x00BBGGRR.
//
// The image covers the larger of the box's inner area and the loaded
// picture, and it never shrinks: a smaller window never crops a plan that
// was loaded or coloured.
class PaintSurface final : public AutoObject {
public:
    static constexpr int TwipsScale = 1;      // ScaleMode: twips
    static constexpr int PixelScale = 3;      // ScaleMode: pixels
    static constexpr int TwipsPerPixel = 15;  // twips to a pixel at the standard density
    static constexpr int SolidFill = 0;       // FillStyle: solid
    static constexpr int TransparentFill = 1; // FillStyle: none, the box's start
    static constexpr int BorderFill = 0;      // ExtFloodFill: up to a border colour
    static constexpr int SurfaceFill = 1;     // ExtFloodFill: the surface of one colour
    static constexpr uint32_t White = 0xFFFFFF;
    static constexpr int32_t NoColour = -1; // Point outside the image

    explicit PaintSurface(Control& control);

    // Gives `control` a surface, kept as its inner object, and returns it.
    static PaintSurface& attach(Control& control);
    // The surface of a control, or null when it has none.
    static PaintSurface* of(const Control& control);

    // Picture = LoadPicture(...): the picture shown from the top-left corner
    // at its natural size; what was drawn before is gone.
    void setPicture(const metafile::Picture& picture);
    // Picture = Image: the drawn image becomes the box's picture.
    void makeImageThePicture();
    bool hasPicture() const { return hasPicture_; }
    // The picture's size in 0.01 mm, as the platform's picture object gives it.
    QSize pictureHiMetric() const;

    const QImage& image() const { return image_; }
    QImage& image() { return image_; }
    // Grows the image to the box's inner area where the box has grown.
    void fitToBox();

    int scaleMode() const { return scaleMode_; }
    void setScaleMode(int mode);
    double scaleWidth() const;
    double scaleHeight() const;
    // A position in the box's scale, in whole pixels.
    int toPixels(double units) const;
    double toUnits(int pixels) const;

    int drawWidth = 1;
    int fillStyle = TransparentFill;
    uint32_t fillColor = 0;

    // The colour of a point (scale units), or NoColour outside the image.
    int32_t Point(double x, double y) const;
    int32_t pixel(int px, int py) const;
    // A line of DrawWidth pixels from one point to the other (scale units);
    // as the platform draws lines, the last point is left out.
    void Line(double x1, double y1, double x2, double y2, uint32_t colour);
    // The platform's flood on the surface's device context, at a pixel
    // position, with FillColor when FillStyle is solid; `type` 1 fills the
    // surface of `colour`, 0 fills up to the border `colour`. False when
    // nothing could be filled.
    bool ExtFloodFill(int px, int py, uint32_t colour, int type);
    // Shows what was drawn.
    void Refresh();

    QString typeName() const override { return QStringLiteral("PictureBox"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    QSize boxPixels() const;
    void changed();

    Control& control_;
    QImage image_;
    bool hasPicture_ = false;
    QSize pictureSize_; // pixels
    int scaleMode_ = TwipsScale;
};

// The platform's colour 0x00BBGGRR as a picture's 0xFFRRGGBB, and back.
QRgb toRgb(uint32_t colour);
uint32_t toPlatform(QRgb rgb);

} // namespace colour
} // namespace tessaly
