#include "Geometry.h"

#include "ShapeTypes.h"

#include <QPainterPathStroker>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace tessaly::canvas::geometry {

namespace {

constexpr double RoundCornerShare = 0.15; // corner radius of a round rectangle, share of the shorter side
constexpr double OctagonCut = 0.2929;     // corner cut of a regular octagon in a unit box
constexpr double StarInnerRadius = 0.19;  // inner radius of the five-pointed star in a unit box
constexpr int StarPoints = 5;

QPainterPath unitPolygon(const QRectF& box, std::initializer_list<QPointF> unit) {
    QPolygonF poly;
    for (const QPointF& u : unit)
        poly << QPointF(box.left() + u.x() * box.width(), box.top() + u.y() * box.height());
    QPainterPath path;
    path.addPolygon(poly);
    path.closeSubpath();
    return path;
}

QPainterPath starPath(const QRectF& box) {
    QPolygonF poly;
    for (int i = 0; i < StarPoints * 2; ++i) {
        const double r = (i % 2 == 0) ? 0.5 : StarInnerRadius;
        const double a = -M_PI / 2 + i * M_PI / StarPoints;
        poly << QPointF(box.left() + (0.5 + r * std::cos(a)) * box.width(),
                        box.top() + (0.5 + r * std::sin(a)) * box.height());
    }
    QPainterPath path;
    path.addPolygon(poly);
    path.closeSubpath();
    return path;
}

// A smooth curve through the points (Catmull-Rom turned into cubic pieces).
QPainterPath smoothPath(const std::vector<QPointF>& p, bool closed) {
    QPainterPath path;
    if (p.empty())
        return path;
    path.moveTo(p[0]);
    const size_t n = p.size();
    if (n < 3) {
        for (size_t i = 1; i < n; ++i)
            path.lineTo(p[i]);
        return path;
    }
    const size_t segments = closed ? n : n - 1;
    for (size_t i = 0; i < segments; ++i) {
        const QPointF p0 = p[(i + n - 1) % n];
        const QPointF p1 = p[i];
        const QPointF p2 = p[(i + 1) % n];
        const QPointF p3 = p[(i + 2) % n];
        const QPointF q0 = (!closed && i == 0) ? p1 : p0;
        const QPointF q3 = (!closed && i + 2 >= n) ? p2 : p3;
        path.cubicTo(p1 + (p2 - q0) / 6.0, p2 - (q3 - p1) / 6.0, p2);
    }
    if (closed)
        path.closeSubpath();
    return path;
}

double margin(const ShapeData& shape) {
    const ShapeStyle& st = shape.st();
    double m = 0.5 + st.line.weight * LineUnitMm / 2.0;
    if (st.line.arrowStart != arrow::None || st.line.arrowEnd != arrow::None ||
        shape.type == shape_type::DimensionBar)
        m += std::max(1, st.line.arrowSize);
    return m;
}

} // namespace

QPointF lineStart(const ShapeData& s) {
    return {s.has(shape_flag::FlipX) ? s.right : s.left, s.has(shape_flag::FlipY) ? s.bottom : s.top};
}

QPointF lineEnd(const ShapeData& s) {
    return {s.has(shape_flag::FlipX) ? s.left : s.right, s.has(shape_flag::FlipY) ? s.top : s.bottom};
}

std::vector<QPointF> freeformPoints(const ShapeData& s) {
    std::vector<QPointF> out;
    if (!s.extra)
        return out;
    out.reserve(s.extra->points.size());
    const double w = s.right - s.left;
    const double h = s.bottom - s.top;
    for (const QPointF& u : s.extra->points)
        out.emplace_back(s.left + u.x() * w, s.top + u.y() * h);
    return out;
}

void setFreeformPoints(ShapeData& s, const std::vector<QPointF>& points) {
    ShapeExtra extra = s.extraCopy();
    extra.points.clear();
    if (points.empty()) {
        s.extra = std::make_shared<const ShapeExtra>(std::move(extra));
        return;
    }
    double l = points[0].x(), r = l, t = points[0].y(), b = t;
    for (const QPointF& p : points) {
        l = std::min(l, p.x());
        r = std::max(r, p.x());
        t = std::min(t, p.y());
        b = std::max(b, p.y());
    }
    s.left = l;
    s.top = t;
    s.right = r;
    s.bottom = b;
    const double w = r - l;
    const double h = b - t;
    extra.points.reserve(points.size());
    for (const QPointF& p : points)
        extra.points.emplace_back(w > 0 ? (p.x() - l) / w : 0.0, h > 0 ? (p.y() - t) / h : 0.0);
    s.extra = std::make_shared<const ShapeExtra>(std::move(extra));
}

QPainterPath outline(const ShapeData& s) {
    using namespace shape_type;
    const QRectF box = s.box();
    QPainterPath path;
    switch (s.type) {
    case Line:
    case Link:
    case DimensionBar:
        path.moveTo(lineStart(s));
        path.lineTo(lineEnd(s));
        return path;
    case Freeform: {
        const std::vector<QPointF> pts = freeformPoints(s);
        const bool closed = s.has(shape_flag::Closed);
        if (s.has(shape_flag::Smooth))
            return smoothPath(pts, closed);
        if (pts.empty())
            return path;
        path.moveTo(pts[0]);
        for (size_t i = 1; i < pts.size(); ++i)
            path.lineTo(pts[i]);
        if (closed)
            path.closeSubpath();
        return path;
    }
    case Ellipse:
        path.addEllipse(box);
        return path;
    case RoundRectangle: {
        const double r = std::min(box.width(), box.height()) * RoundCornerShare;
        path.addRoundedRect(box, r, r);
        return path;
    }
    case Arc: {
        // A quarter ellipse centred on the box's bottom-left corner, from the top-left to the bottom-right.
        const QRectF ellipse(box.left() - box.width(), box.top(), 2 * box.width(), 2 * box.height());
        path.arcMoveTo(ellipse, 90);
        path.arcTo(ellipse, 90, -90);
        return path;
    }
    case Diamond:
        return unitPolygon(box, {{0.5, 0}, {1, 0.5}, {0.5, 1}, {0, 0.5}});
    case IsoscelesTriangle:
        return unitPolygon(box, {{0.5, 0}, {1, 1}, {0, 1}});
    case RightTriangle:
        return unitPolygon(box, {{0, 0}, {1, 1}, {0, 1}});
    case Parallelogram:
        return unitPolygon(box, {{0.25, 0}, {1, 0}, {0.75, 1}, {0, 1}});
    case Trapezoid:
        return unitPolygon(box, {{0.25, 0}, {0.75, 0}, {1, 1}, {0, 1}});
    case Hexagon:
        return unitPolygon(box, {{0.25, 0}, {0.75, 0}, {1, 0.5}, {0.75, 1}, {0.25, 1}, {0, 0.5}});
    case Octagon: {
        const double k = OctagonCut;
        return unitPolygon(box,
                           {{k, 0}, {1 - k, 0}, {1, k}, {1, 1 - k}, {1 - k, 1}, {k, 1}, {0, 1 - k}, {0, k}});
    }
    case Pentagon:
        return unitPolygon(box, {{0.5, 0}, {1, 0.38}, {0.81, 1}, {0.19, 1}, {0, 0.38}});
    case PlusSign: {
        const double a = 1.0 / 3, b = 2.0 / 3;
        return unitPolygon(
            box,
            {{a, 0}, {b, 0}, {b, a}, {1, a}, {1, b}, {b, b}, {b, 1}, {a, 1}, {a, b}, {0, b}, {0, a}, {a, a}});
    }
    case Star:
        return starPath(box);
    case LeftArrow:
        return unitPolygon(box,
                           {{0, 0.5}, {0.4, 0}, {0.4, 0.25}, {1, 0.25}, {1, 0.75}, {0.4, 0.75}, {0.4, 1}});
    case Group:
        if (s.extra)
            for (const ShapePtr& c : s.extra->children)
                path.addPath(pageOutline(*c));
        return path;
    default: // rectangle, text shapes, pictures, unknown codes
        path.addRect(box);
        return path;
    }
}

QTransform rotation(const ShapeData& s) {
    if (s.rotation == 0 || s.type == shape_type::Group)
        return {};
    const QPointF c = s.box().center();
    QTransform t;
    t.translate(c.x(), c.y());
    t.rotate(s.rotation);
    t.translate(-c.x(), -c.y());
    return t;
}

QPainterPath pageOutline(const ShapeData& s) {
    if (s.rotation == 0 || s.type == shape_type::Group)
        return outline(s);
    return rotation(s).map(outline(s));
}

QRectF visualBounds(const ShapeData& s) {
    if (s.type == shape_type::Group) {
        QRectF r;
        if (s.extra)
            for (const ShapePtr& c : s.extra->children)
                r = r.isNull() ? visualBounds(*c) : r.united(visualBounds(*c));
        return r.isNull() ? s.box() : r;
    }
    QRectF box = s.box();
    if (s.rotation != 0)
        box = rotation(s).mapRect(box);
    const double m = margin(s);
    box.adjust(-m, -m, m, m);
    const ShadowStyle& sh = s.st().shadow;
    if (sh.visible)
        box = box.united(box.translated(sh.offsetX, sh.offsetY));
    return box;
}

bool hits(const ShapeData& s, const QPointF& p, double tolerance) {
    if (s.type == shape_type::Group) {
        if (!s.extra)
            return false;
        return std::any_of(s.extra->children.begin(), s.extra->children.end(),
                           [&](const ShapePtr& c) { return hits(*c, p, tolerance); });
    }
    QPointF local = p;
    if (s.rotation != 0)
        local = rotation(s).inverted().map(p);
    QRectF box = s.box().adjusted(-tolerance, -tolerance, tolerance, tolerance);
    if (!box.contains(local))
        return false;
    using namespace shape_type;
    const bool area = !isOpenStroke(s.type) || (s.type == Freeform && s.has(shape_flag::Closed));
    if (s.type == Rectangle || s.type == Picture || isTextType(s.type))
        return true;
    const QPainterPath path = outline(s);
    if (area && s.has(shape_flag::Filled) && path.contains(local))
        return true;
    QPainterPathStroker stroker;
    stroker.setWidth(2 * tolerance + s.st().line.weight * LineUnitMm);
    return stroker.createStroke(path).contains(local);
}

bool insideRect(const ShapeData& s, const QRectF& area) {
    QRectF b = s.box();
    if (s.rotation != 0)
        b = rotation(s).mapRect(b);
    return area.contains(b);
}

QPointF connectionPoint(const ShapeData& s, int index) {
    const QRectF b = s.box();
    QPointF p;
    switch (index) {
    case 0:
        p = {b.center().x(), b.top()};
        break;
    case 1:
        p = {b.right(), b.center().y()};
        break;
    case 2:
        p = {b.center().x(), b.bottom()};
        break;
    case 3:
        p = {b.left(), b.center().y()};
        break;
    default:
        p = b.center();
        break;
    }
    return rotation(s).map(p);
}

void translate(ShapeData& s, double dx, double dy) {
    s.left += dx;
    s.right += dx;
    s.top += dy;
    s.bottom += dy;
    if (s.type == shape_type::Group && s.extra) {
        ShapeExtra extra = *s.extra;
        for (ShapePtr& c : extra.children) {
            ShapeData moved = *c;
            translate(moved, dx, dy);
            c = std::make_shared<const ShapeData>(std::move(moved));
        }
        s.extra = std::make_shared<const ShapeExtra>(std::move(extra));
    }
}

void setEdges(ShapeData& s, double left, double top, double right, double bottom) {
    if (s.type == shape_type::Group && s.extra) {
        const double ow = s.right - s.left;
        const double oh = s.bottom - s.top;
        const double sx = ow != 0 ? (right - left) / ow : 1.0;
        const double sy = oh != 0 ? (bottom - top) / oh : 1.0;
        const double ol = s.left, ot = s.top;
        ShapeExtra extra = *s.extra;
        for (ShapePtr& c : extra.children) {
            ShapeData m = *c;
            setEdges(m, left + (m.left - ol) * sx, top + (m.top - ot) * sy, left + (m.right - ol) * sx,
                     top + (m.bottom - ot) * sy);
            c = std::make_shared<const ShapeData>(std::move(m));
        }
        s.extra = std::make_shared<const ShapeExtra>(std::move(extra));
    }
    s.left = left;
    s.top = top;
    s.right = right;
    s.bottom = bottom;
}

void setLineEnds(ShapeData& s, const QPointF& start, const QPointF& end) {
    s.left = std::min(start.x(), end.x());
    s.right = std::max(start.x(), end.x());
    s.top = std::min(start.y(), end.y());
    s.bottom = std::max(start.y(), end.y());
    s.setFlag(shape_flag::FlipX, start.x() > end.x());
    s.setFlag(shape_flag::FlipY, start.y() > end.y());
}

} // namespace tessaly::canvas::geometry
