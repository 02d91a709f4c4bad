#include "CanvasChild.h"

#include "core/runtime/RuntimeError.h"

namespace tessaly::canvas {

POLARDraw& CanvasChild::canvas() const {
    std::shared_ptr<POLARDraw> c = canvas_.lock();
    if (!c)
        raiseError(err::ObjectRequired, QStringLiteral("Object required: the canvas has been released"));
    return *c; // the owner of the canvas keeps it alive for the duration of the call
}

QVariant PictureObject::get(const QString& name, const QVariantList& index) {
    if (name.compare(QLatin1String("Width"), Qt::CaseInsensitive) == 0)
        return picture_->widthHiMetric();
    if (name.compare(QLatin1String("Height"), Qt::CaseInsensitive) == 0)
        return picture_->heightHiMetric();
    if (name.compare(QLatin1String("Data"), Qt::CaseInsensitive) == 0)
        return picture_->data();
    return AutoObject::get(name, index);
}

QStringList PictureObject::memberNames() const {
    return {QStringLiteral("Width"), QStringLiteral("Height"), QStringLiteral("Data")};
}

} // namespace tessaly::canvas
