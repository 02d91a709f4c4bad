#pragma once

#include "POLARDraw.h"

namespace tessaly::canvas {

// An object of the canvas's object model: it reaches its canvas weakly, so
// that objects kept by the program (gPage, gView, ...) never keep a canvas
// alive, and always describe the canvas's current drawing.
class CanvasChild : public AutoObject {
public:
    explicit CanvasChild(std::weak_ptr<POLARDraw> canvas) : canvas_(std::move(canvas)) {}
    // The canvas; error 424 when it is gone.
    POLARDraw& canvas() const;

private:
    std::weak_ptr<POLARDraw> canvas_;
};

// A picture object as the program's picture loader hands it to
// ShapeList.AddPicture: natural size in 0.01 mm, and the file's bytes.
class PictureObject : public AutoObject {
public:
    explicit PictureObject(PicturePtr picture) : picture_(std::move(picture)) {}
    const PicturePtr& picture() const { return picture_; }
    QString typeName() const override { return QStringLiteral("Picture"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    QStringList memberNames() const override;

private:
    PicturePtr picture_;
};

} // namespace tessaly::canvas
