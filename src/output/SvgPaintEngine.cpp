#include "SvgPaintEngine.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFontInfo>
#include <QGradient>
#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <QTextItem>
#include <cmath>

namespace tessaly::output {

namespace {

// Everything QPainter can hand over, so that nothing is rasterised on the
// way; only perspective transforms are left to QPainter.
constexpr QPaintEngine::PaintEngineFeatures EngineFeatures =
    QPaintEngine::PaintEngineFeatures(QPaintEngine::AllFeatures & ~QPaintEngine::PerspectiveTransform);
// Digits after the point of coordinates: a hundredth of a device pixel.
constexpr double Precision = 100;
// Side of the tile of Qt's own hatch and dense patterns, in device pixels.
constexpr int QtPatternSide = 8;
// Points per inch, for font sizes.
constexpr double PointsPerInch = 72.0;

QByteArray num(double value) {
    if (!std::isfinite(value))
        return "0";
    const double r = std::round(value * Precision) / Precision;
    if (r == std::floor(r) && std::abs(r) < 1e15)
        return QByteArray::number(static_cast<qint64>(r));
    QByteArray text = QByteArray::number(r, 'f', 2);
    while (text.endsWith('0'))
        text.chop(1);
    return text;
}

QByteArray colour(const QColor& c) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", c.red(), c.green(), c.blue());
    return QByteArray(text, 7);
}

QByteArray matrix(const QTransform& t) {
    return "matrix(" + num(t.m11()) + ' ' + num(t.m12()) + ' ' + num(t.m21()) + ' ' + num(t.m22()) + ' ' +
           num(t.dx()) + ' ' + num(t.dy()) + ')';
}

QByteArray escaped(const QString& text) {
    return text.toHtmlEscaped().toUtf8();
}

bool axisAligned(const QTransform& t) {
    return t.m12() == 0 && t.m21() == 0 && t.m11() > 0 && t.m22() > 0;
}

// A path's outline as SVG path data; a figure that ends where it began is closed.
QByteArray pathData(const QPainterPath& path) {
    QByteArray d;
    d.reserve(path.elementCount() * 14);
    QPointF start;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            if (i > 0 && path.elementAt(i - 1).x == start.x() && path.elementAt(i - 1).y == start.y() &&
                i > 1)
                d += 'Z';
            start = QPointF(e.x, e.y);
            d += 'M' + num(e.x) + ' ' + num(e.y);
            break;
        case QPainterPath::LineToElement:
            d += 'L' + num(e.x) + ' ' + num(e.y);
            break;
        case QPainterPath::CurveToElement:
            d += 'C' + num(e.x) + ' ' + num(e.y);
            break;
        case QPainterPath::CurveToDataElement:
            d += ' ' + num(e.x) + ' ' + num(e.y);
            break;
        }
    }
    const int last = path.elementCount() - 1;
    if (last > 0 && path.elementAt(last).x == start.x() && path.elementAt(last).y == start.y())
        d += 'Z';
    return d;
}

QByteArray points(const QPointF* p, int count, const QTransform& t) {
    QByteArray out;
    out.reserve(count * 14);
    for (int i = 0; i < count; ++i) {
        const QPointF d = t.map(p[i]);
        if (i > 0)
            out += ' ';
        out += num(d.x()) + ',' + num(d.y());
    }
    return out;
}

QByteArray capOf(Qt::PenCapStyle cap) {
    switch (cap) {
    case Qt::RoundCap:
        return "round";
    case Qt::SquareCap:
        return "square";
    default:
        return "butt";
    }
}

QByteArray joinOf(Qt::PenJoinStyle join) {
    switch (join) {
    case Qt::RoundJoin:
        return "round";
    case Qt::BevelJoin:
        return "bevel";
    default:
        return "miter";
    }
}

} // namespace

SvgPaintEngine::SvgPaintEngine() : QPaintEngine(EngineFeatures) {}

bool SvgPaintEngine::begin(QPaintDevice*) {
    body_.clear();
    defs_.clear();
    defined_.clear();
    tileDigests_.clear();
    groupStyle_.clear();
    transform_ = QTransform();
    pen_ = QPen();
    brush_ = QBrush();
    setActive(true);
    return true;
}

bool SvgPaintEngine::end() {
    closeGroup();
    setActive(false);
    return true;
}

void SvgPaintEngine::updateState(const QPaintEngineState& state) {
    const DirtyFlags flags = state.state();
    if (flags & DirtyTransform)
        transform_ = state.transform();
    if (flags & DirtyPen)
        pen_ = state.pen();
    if (flags & DirtyBrush)
        brush_ = state.brush();
    if (flags & DirtyBackground)
        background_ = state.backgroundBrush();
    if (flags & DirtyBackgroundMode)
        opaqueBackground_ = state.backgroundMode() == Qt::OpaqueMode;
    if (flags & DirtyOpacity)
        opacity_ = state.opacity();
    if (clip_.update(state, transform_)) {
        clipId_.clear();
        if (clip_.active()) {
            const QByteArray d = pathData(clip_.path());
            const QByteArray key = "clip" + QCryptographicHash::hash(d, QCryptographicHash::Md5);
            clipId_ = defined_.value(key);
            if (clipId_.isEmpty()) {
                clipId_ = "c" + QByteArray::number(++nextId_);
                defined_.insert(key, clipId_);
                defs_ += "<clipPath id=\"" + clipId_ + "\"><path d=\"" + d + "\"/></clipPath>\n";
            }
        }
    }
}

double SvgPaintEngine::penWidth() const {
    if (pen_.isCosmetic())
        return std::max(1.0, pen_.widthF());
    return pen_.widthF() * std::sqrt(std::abs(transform_.determinant()));
}

QByteArray SvgPaintEngine::strokeStyle() {
    if (pen_.style() == Qt::NoPen || pen_.brush().style() == Qt::NoBrush)
        return " stroke=\"none\"";
    const QColor c = pen_.color();
    const double width = penWidth();
    QByteArray s = " stroke=\"" + colour(c) + "\" stroke-width=\"" + num(width) + "\" stroke-linecap=\"" +
                   capOf(pen_.capStyle()) + "\" stroke-linejoin=\"" + joinOf(pen_.joinStyle()) + '"';
    if (pen_.joinStyle() == Qt::MiterJoin || pen_.joinStyle() == Qt::SvgMiterJoin)
        s += " stroke-miterlimit=\"" + num(pen_.miterLimit()) + '"';
    if (c.alphaF() * opacity_ < 1)
        s += " stroke-opacity=\"" + num(c.alphaF() * opacity_) + '"';
    if (pen_.style() != Qt::SolidLine) {
        QByteArray dashes;
        for (qreal d : pen_.dashPattern())
            dashes += (dashes.isEmpty() ? "" : ",") + num(d * width);
        if (!dashes.isEmpty())
            s += " stroke-dasharray=\"" + dashes + '"';
    }
    return s;
}

QByteArray SvgPaintEngine::imageData(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return "data:image/png;base64," + buffer.data().toBase64();
}

QByteArray SvgPaintEngine::patternFor(const QImage& tile, const QTransform& tileToDevice) {
    // Tiles are told apart by their pixels; a tile seen before is known by
    // its image's key without reading them again.
    QByteArray& digest = tileDigests_[tile.cacheKey()];
    if (digest.isEmpty())
        digest = QCryptographicHash::hash(
            QByteArray::fromRawData(reinterpret_cast<const char*>(tile.constBits()), tile.sizeInBytes()),
            QCryptographicHash::Md5);
    const QByteArray key = "pattern" + digest + matrix(tileToDevice);
    QByteArray id = defined_.value(key);
    if (!id.isEmpty())
        return id;
    id = "p" + QByteArray::number(++nextId_);
    defined_.insert(key, id);
    const QByteArray w = num(tile.width()), h = num(tile.height());
    defs_ += "<pattern id=\"" + id + "\" patternUnits=\"userSpaceOnUse\" width=\"" + w + "\" height=\"" + h +
             "\" patternTransform=\"" + matrix(tileToDevice) + "\"><image width=\"" + w + "\" height=\"" + h +
             "\" xlink:href=\"" + imageData(tile) + "\"/></pattern>\n";
    return id;
}

QByteArray SvgPaintEngine::gradientFor(const QBrush& brush) {
    const QGradient* g = brush.gradient();
    QByteArray stops;
    for (const QGradientStop& stop : g->stops()) {
        stops += "<stop offset=\"" + num(stop.first) + "\" stop-color=\"" + colour(stop.second) + '"';
        if (stop.second.alphaF() < 1)
            stops += " stop-opacity=\"" + num(stop.second.alphaF()) + '"';
        stops += "/>";
    }
    QByteArray head;
    const QByteArray transform = matrix(brush.transform() * transform_);
    if (g->type() == QGradient::RadialGradient) {
        const auto* r = static_cast<const QRadialGradient*>(g);
        head = "<radialGradient gradientUnits=\"userSpaceOnUse\" cx=\"" + num(r->center().x()) + "\" cy=\"" +
               num(r->center().y()) + "\" r=\"" + num(r->radius()) + "\" fx=\"" + num(r->focalPoint().x()) +
               "\" fy=\"" + num(r->focalPoint().y()) + "\" gradientTransform=\"" + transform + '"';
    } else {
        const auto* l = static_cast<const QLinearGradient*>(g);
        head = "<linearGradient gradientUnits=\"userSpaceOnUse\" x1=\"" + num(l->start().x()) + "\" y1=\"" +
               num(l->start().y()) + "\" x2=\"" + num(l->finalStop().x()) + "\" y2=\"" +
               num(l->finalStop().y()) + "\" gradientTransform=\"" + transform + '"';
    }
    const QByteArray key = "gradient" + head + stops;
    QByteArray id = defined_.value(key);
    if (!id.isEmpty())
        return id;
    id = "g" + QByteArray::number(++nextId_);
    defined_.insert(key, id);
    const QByteArray tag = g->type() == QGradient::RadialGradient ? "radialGradient" : "linearGradient";
    defs_ += head.insert(tag.size() + 1, " id=\"" + id + '"') + '>' + stops + "</" + tag + ">\n";
    return id;
}

QByteArray SvgPaintEngine::paintServer(const QBrush& brush) {
    switch (brush.style()) {
    case Qt::SolidPattern:
        return colour(brush.color());
    case Qt::LinearGradientPattern:
    case Qt::RadialGradientPattern:
        return "url(#" + gradientFor(brush) + ')';
    case Qt::TexturePattern:
        return "url(#" + patternFor(brush.textureImage(), brush.transform() * transform_) + ')';
    case Qt::ConicalGradientPattern:
        return colour(brush.gradient()->stops().value(0).second);
    default: {
        // Qt's own hatch and dense patterns: a tile of device pixels.
        QImage tile(QtPatternSide, QtPatternSide, QImage::Format_ARGB32);
        tile.fill(opaqueBackground_ ? background_.color() : QColor(Qt::transparent));
        QPainter p(&tile);
        p.fillRect(tile.rect(), brush);
        p.end();
        return "url(#" + patternFor(tile, QTransform::fromTranslate(transform_.dx(), transform_.dy())) + ')';
    }
    }
}

QByteArray SvgPaintEngine::fillStyle(Qt::FillRule rule) {
    if (brush_.style() == Qt::NoBrush)
        return " fill=\"none\"";
    QByteArray s = " fill=\"" + paintServer(brush_) + '"';
    const double alpha = (brush_.style() == Qt::SolidPattern ? brush_.color().alphaF() : 1.0) * opacity_;
    if (alpha < 1)
        s += " fill-opacity=\"" + num(alpha) + '"';
    if (rule == Qt::OddEvenFill)
        s += " fill-rule=\"evenodd\"";
    return s;
}

QByteArray SvgPaintEngine::styleFor(bool stroke, bool fill, Qt::FillRule rule) {
    return (stroke ? strokeStyle() : QByteArray(" stroke=\"none\"")) +
           (fill ? fillStyle(rule) : QByteArray(" fill=\"none\""));
}

void SvgPaintEngine::useGroup(const QByteArray& style) {
    const QByteArray attributes = clipId_.isEmpty() ? style : style + " clip-path=\"url(#" + clipId_ + ")\"";
    if (attributes == groupStyle_)
        return;
    closeGroup();
    body_ += "<g" + attributes + ">\n";
    groupStyle_ = attributes;
}

void SvgPaintEngine::closeGroup() {
    if (groupStyle_.isEmpty())
        return;
    body_ += "</g>\n";
    groupStyle_.clear();
}

void SvgPaintEngine::shape(const QByteArray& element, bool stroke, bool fill, Qt::FillRule rule) {
    const bool stroked = stroke && pen_.style() != Qt::NoPen;
    const bool filled = fill && brush_.style() != Qt::NoBrush;
    if (!stroked && !filled)
        return;
    useGroup(styleFor(stroked, filled, rule));
    body_ += element;
    body_ += '\n';
}

void SvgPaintEngine::drawLines(const QLineF* lines, int lineCount) {
    for (int i = 0; i < lineCount; ++i) {
        const QPointF a = transform_.map(lines[i].p1()), b = transform_.map(lines[i].p2());
        shape("<line x1=\"" + num(a.x()) + "\" y1=\"" + num(a.y()) + "\" x2=\"" + num(b.x()) + "\" y2=\"" +
                  num(b.y()) + "\"/>",
              true, false);
    }
}

void SvgPaintEngine::drawRects(const QRectF* rects, int rectCount) {
    for (int i = 0; i < rectCount; ++i) {
        if (!axisAligned(transform_)) {
            const QPointF corners[4] = {rects[i].topLeft(), rects[i].topRight(), rects[i].bottomRight(),
                                        rects[i].bottomLeft()};
            drawPolygon(corners, 4, OddEvenMode);
            continue;
        }
        const QRectF r = transform_.mapRect(rects[i]).normalized();
        shape("<rect x=\"" + num(r.x()) + "\" y=\"" + num(r.y()) + "\" width=\"" + num(r.width()) +
                  "\" height=\"" + num(r.height()) + "\"/>",
              true, true);
    }
}

void SvgPaintEngine::drawPath(const QPainterPath& path) {
    shape("<path d=\"" + pathData(transform_.map(path)) + "\"/>", true, true, path.fillRule());
}

void SvgPaintEngine::drawPolygon(const QPointF* p, int pointCount, PolygonDrawMode mode) {
    if (pointCount < 2)
        return;
    if (mode == PolylineMode) {
        shape("<polyline points=\"" + points(p, pointCount, transform_) + "\"/>", true, false);
        return;
    }
    shape("<polygon points=\"" + points(p, pointCount, transform_) + "\"/>", true, true,
          mode == OddEvenMode ? Qt::OddEvenFill : Qt::WindingFill);
}

void SvgPaintEngine::drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) {
    drawImage(target, pixmap.toImage(), source);
}

void SvgPaintEngine::drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                               Qt::ImageConversionFlags) {
    if (image.isNull() || target.isEmpty())
        return;
    const QImage part = source == QRectF(image.rect()) ? image : image.copy(source.toAlignedRect());
    closeGroup();
    if (!clipId_.isEmpty()) {
        body_ += "<g clip-path=\"url(#" + clipId_ + ")\">";
    }
    body_ += "<image x=\"" + num(target.x()) + "\" y=\"" + num(target.y()) + "\" width=\"" +
             num(target.width()) + "\" height=\"" + num(target.height()) +
             "\" preserveAspectRatio=\"none\" transform=\"" + matrix(transform_) + "\"";
    if (opacity_ < 1)
        body_ += " opacity=\"" + num(opacity_) + '"';
    body_ += " xlink:href=\"" + imageData(part) + "\"/>";
    if (!clipId_.isEmpty())
        body_ += "</g>";
    body_ += '\n';
}

void SvgPaintEngine::drawTextItem(const QPointF& position, const QTextItem& textItem) {
    const QString text = textItem.text();
    if (text.isEmpty() || pen_.style() == Qt::NoPen)
        return;
    const QFont font = textItem.font();
    double size = font.pixelSize() > 0 ? font.pixelSize()
                                       : font.pointSizeF() * paintDevice()->logicalDpiY() / PointsPerInch;
    QByteArray style = " stroke=\"none\" fill=\"" + colour(pen_.color()) + "\" font-family=\"" +
                       escaped(QFontInfo(font).family()) + '"';
    if (font.weight() >= QFont::DemiBold)
        style += " font-weight=\"bold\"";
    if (font.italic())
        style += " font-style=\"italic\"";
    if (pen_.color().alphaF() * opacity_ < 1)
        style += " fill-opacity=\"" + num(pen_.color().alphaF() * opacity_) + '"';
    QByteArray place;
    if (axisAligned(transform_) && transform_.m11() == transform_.m22()) {
        const QPointF at = transform_.map(position);
        size *= transform_.m11();
        place = "x=\"" + num(at.x()) + "\" y=\"" + num(at.y()) + '"';
    } else {
        place = "x=\"" + num(position.x()) + "\" y=\"" + num(position.y()) + "\" transform=\"" +
                matrix(transform_) + '"';
    }
    useGroup(style + " font-size=\"" + num(size) + "\" xml:space=\"preserve\"");
    body_ += "<text " + place + '>' + escaped(text) + "</text>\n";
}

} // namespace tessaly::output
