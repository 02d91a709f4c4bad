#include "PageMapping.h"

#include <QPainterPath>
#include <QPolygonF>
#include <QtMath>
#include <cmath>

namespace tessaly::metafile {

namespace {

// Length of one logical unit of each fixed map mode, in millimetres.
constexpr double LoMetricMm = 0.1;
constexpr double HiMetricMm = 0.01;
constexpr double LoEnglishMm = 0.254;
constexpr double HiEnglishMm = 0.0254;
constexpr double TwipMm = 25.4 / 1440.0;

double safeRatio(double num, double den) {
    if (den == 0 || !std::isfinite(num) || !std::isfinite(den))
        return 1.0;
    const double r = num / den;
    return std::isfinite(r) ? r : 1.0;
}

} // namespace

QTransform PageMapping::transform(QSizeF devicePerMm) const {
    double sx = 1;
    double sy = 1;
    switch (mapMode) {
    case gdi::MmLoMetric:
        sx = LoMetricMm * devicePerMm.width(), sy = -LoMetricMm * devicePerMm.height();
        break;
    case gdi::MmHiMetric:
        sx = HiMetricMm * devicePerMm.width(), sy = -HiMetricMm * devicePerMm.height();
        break;
    case gdi::MmLoEnglish:
        sx = LoEnglishMm * devicePerMm.width(), sy = -LoEnglishMm * devicePerMm.height();
        break;
    case gdi::MmHiEnglish:
        sx = HiEnglishMm * devicePerMm.width(), sy = -HiEnglishMm * devicePerMm.height();
        break;
    case gdi::MmTwips:
        sx = TwipMm * devicePerMm.width(), sy = -TwipMm * devicePerMm.height();
        break;
    case gdi::MmIsotropic: {
        sx = safeRatio(viewportExt.width(), windowExt.width());
        sy = safeRatio(viewportExt.height(), windowExt.height());
        const double m = std::min(std::abs(sx), std::abs(sy));
        sx = sx < 0 ? -m : m;
        sy = sy < 0 ? -m : m;
        break;
    }
    case gdi::MmAnisotropic:
        sx = safeRatio(viewportExt.width(), windowExt.width());
        sy = safeRatio(viewportExt.height(), windowExt.height());
        break;
    default:
        break;
    }
    return QTransform(sx, 0, 0, sy, viewportOrg.x() - windowOrg.x() * sx,
                      viewportOrg.y() - windowOrg.y() * sy);
}

QPainterPath arcPath(const QRectF& box, const QPointF& start, const QPointF& end, ArcKind kind) {
    const QRectF r = box.normalized();
    QPainterPath path;
    if (r.width() <= 0 || r.height() <= 0)
        return path;
    const QPointF c = r.center();
    auto angleOf = [&](const QPointF& p) {
        return qRadiansToDegrees(
            std::atan2(-(p.y() - c.y()) / (r.height() / 2), (p.x() - c.x()) / (r.width() / 2)));
    };
    const double a0 = angleOf(start);
    double sweep = angleOf(end) - a0;
    while (sweep <= 0)
        sweep += 360;
    while (sweep > 360)
        sweep -= 360;
    if (kind == ArcKind::Pie) {
        path.moveTo(c);
        path.arcTo(r, a0, sweep);
        path.closeSubpath();
    } else {
        path.arcMoveTo(r, a0);
        path.arcTo(r, a0, sweep);
        if (kind == ArcKind::Chord)
            path.closeSubpath();
    }
    return path;
}

QPolygonF mappedRect(const QTransform& transform, const QRectF& rect) {
    QPolygonF polygon;
    polygon << rect.topLeft() << rect.topRight() << rect.bottomRight() << rect.bottomLeft() << rect.topLeft();
    return transform.map(polygon);
}

} // namespace tessaly::metafile
