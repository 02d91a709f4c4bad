#include "templates/library/Catalogue.h"

#include "templates/ScaleTable.h"

#include <algorithm>
#include <cmath>

namespace tessaly::templates {

namespace {

constexpr double ArcStepDeg = 3.0; // an arc is drawn with a corner at most every 3 degrees
constexpr double DegToRad = M_PI / 180.0;

QRectF boundsOf(const std::vector<QPointF>& points) {
    if (points.empty())
        return {};
    double l = points[0].x(), r = l, t = points[0].y(), b = t;
    for (const QPointF& p : points) {
        l = std::min(l, p.x());
        r = std::max(r, p.x());
        t = std::min(t, p.y());
        b = std::max(b, p.y());
    }
    return QRectF(QPointF(l, t), QPointF(r, b));
}

QRectF unite(const QRectF& a, const QRectF& b) {
    return QRectF(QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
                  QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom())));
}

} // namespace

std::vector<QPointF> Part::arcPoints(const QPointF& c, double r) const {
    const int steps = std::max(2, static_cast<int>(std::ceil(std::abs(sweepDeg) / ArcStepDeg)));
    std::vector<QPointF> out;
    out.reserve(static_cast<size_t>(steps) + 1);
    for (int i = 0; i <= steps; ++i) {
        const double a = (startDeg + sweepDeg * i / steps) * DegToRad;
        out.emplace_back(c.x() + r * std::cos(a), c.y() + r * std::sin(a));
    }
    return out;
}

QRectF Part::extent() const {
    switch (kind) {
    case Kind::Rect:
    case Kind::Ellipse:
    case Kind::Text:
    case Kind::Mask:
        return box.normalized();
    case Kind::Arc:
        return boundsOf(arcPoints(centre, radius));
    default:
        return boundsOf(points);
    }
}

QRectF Part::extentAt(int scale) const {
    QRectF e = extent();
    if (kind == Kind::Mask)
        e.setHeight(std::max(e.height(), static_cast<double>(widestWall(scale)) * scale));
    return e;
}

Part Part::mirrored(double axis) const {
    Part m = *this;
    for (QPointF& p : m.points)
        p.setX(2 * axis - p.x());
    if (kind == Kind::Rect || kind == Kind::Ellipse || kind == Kind::Text || kind == Kind::Mask) {
        const QRectF b = box.normalized();
        m.box = QRectF(QPointF(2 * axis - b.right(), b.top()), QPointF(2 * axis - b.left(), b.bottom()));
    }
    if (kind == Kind::Arc) {
        m.centre.setX(2 * axis - centre.x());
        m.startDeg = 180.0 - startDeg;
        m.sweepDeg = -sweepDeg;
    }
    return m;
}

QRectF Symbol::extent() const {
    QRectF r;
    bool first = true;
    for (const Part& p : parts) {
        if (p.kind == Part::Kind::Mask)
            continue;
        r = first ? p.extent() : unite(r, p.extent());
        first = false;
    }
    return r;
}

QRectF Symbol::extentAt(int scale) const {
    QRectF r = extent();
    for (const Part& p : parts)
        if (p.kind == Part::Kind::Mask)
            r = r.isNull() ? p.extentAt(scale) : unite(r, p.extentAt(scale));
    return r;
}

QString Library::fileName(int scale) const {
    QString name = filePattern;
    return name.replace(QStringLiteral("{scale}"), QString::number(scale));
}

const Library* Catalogue::find(const QString& title) const {
    for (const Library& l : libraries)
        if (l.title == title)
            return &l;
    return nullptr;
}

} // namespace tessaly::templates
