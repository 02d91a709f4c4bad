#include "Renderer.h"

#include "Lens.h"
#include "Patterns.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QLineF>
#include <QPaintDevice>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

namespace {

constexpr double PointsPerInch = 72.0;
constexpr double MmPerInch = 25.4;
constexpr double TextReferencePx = 100.0; // text is laid out at this size and scaled to its real size
constexpr double PaperShadowPx = 5.0;     // offset of the sheet's shadow on screen
constexpr double MinGridStepPx = 4.0;     // finer grids are not drawn
constexpr double HandlePx = 6.0;          // side of a selection handle
constexpr int MaxFramedShapes = 1000;     // selected shapes framed one by one; beyond, one frame
constexpr int MaxConnectorShapes = 5000;  // shapes whose connection points are shown
constexpr int MaxLensPixels = 2048;       // side of the image a lens works on
constexpr int MaxLensDepth = 2;           // lenses seen through lenses
constexpr double TickShare = 0.8;         // dimension bar end ticks, as a share of the arrow size

constexpr size_t CrowdedView = 2000; // a view with more shapes than this is painted without smoothing
constexpr double TinyPx = 1.5;       // shapes smaller than this on the device are drawn as a dot

// The pen and fill colour of the last plain shape drawn, so that a run of
// shapes sharing a style sets the painter's pen only once.
struct PlainCache {
    const ShapeStyle* style = nullptr;
    uint16_t flags = 0;
    QPen pen;
    QColor line;
    QColor fill;
};

struct Context {
    const Drawing* drawing = nullptr;
    int lensDepth = 0;
    double pxPerMm = 0; // device pixels per millimetre (0: unknown, no shortcuts)
    PlainCache cache;
};

void drawShapeIn(QPainter& p, const ShapeData& s, Context& ctx, int position);

QPen penFor(const ShapeData& s) {
    if (!s.has(shape_flag::Stroked))
        return Qt::NoPen;
    const LineStyle& l = s.st().line;
    QPen pen(qcolour(l.colour));
    pen.setWidthF(l.weight <= 0 ? 0.0 : l.weight * LineUnitMm);
    pen.setCosmetic(l.weight <= 0);
    static const Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                          Qt::DashDotDotLine};
    pen.setStyle(styles[std::clamp(l.style, 0, line_style::Count - 1)]);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

QBrush brushFor(const ShapeData& s, const QRectF& box) {
    const FillStyle& f = s.st().fill;
    switch (f.type) {
    case fill_type::Shade: {
        if (f.shade == shade::Radial) {
            QRadialGradient g(box.center(), std::max(box.width(), box.height()) / 2);
            g.setColorAt(0, qcolour(f.colour));
            g.setColorAt(1, qcolour(f.backColour));
            return g;
        }
        QLinearGradient g(box.topLeft(), f.shade == shade::Vertical ? box.bottomLeft() : box.topRight());
        g.setColorAt(0, qcolour(f.colour));
        g.setColorAt(1, qcolour(f.backColour));
        return g;
    }
    case fill_type::Pattern:
        return hatchBrush(f.hatch, f.colour, f.backColour);
    case fill_type::Texture:
        if (f.texture)
            return textureBrush(*f.texture);
        return qcolour(f.colour);
    default:
        return qcolour(f.colour);
    }
}

bool isArea(const ShapeData& s) {
    return !shape_type::isOpenStroke(s.type) || (s.type == shape_type::Freeform && s.has(shape_flag::Closed));
}

// An arrow head at `tip`, pointing away from `from`.
void drawArrow(QPainter& p, int kind, const QPointF& from, const QPointF& tip, double size, const QPen& pen) {
    if (kind == arrow::None || QLineF(from, tip).length() <= 0)
        return;
    const QLineF dir(tip, from);
    const QPointF u = (dir.p2() - dir.p1()) / dir.length();
    const QPointF n(-u.y(), u.x());
    const QPointF back = tip + u * size;
    QPen solid = pen;
    solid.setStyle(Qt::SolidLine);
    p.setPen(solid);
    switch (kind) {
    case arrow::Triangle: {
        p.setBrush(pen.color());
        const QPointF tri[] = {tip, back + n * size / 2.5, back - n * size / 2.5};
        p.drawPolygon(tri, 3);
        break;
    }
    case arrow::Open:
        p.drawLine(tip, back + n * size / 2.5);
        p.drawLine(tip, back - n * size / 2.5);
        break;
    case arrow::Tick:
        p.drawLine(tip + n * size * TickShare, tip - n * size * TickShare);
        break;
    case arrow::Dot:
        p.setBrush(pen.color());
        p.drawEllipse(tip, size / 4, size / 4);
        break;
    default:
        break;
    }
}

void drawLineEnds(QPainter& p, const ShapeData& s, const QPen& pen) {
    const LineStyle& l = s.st().line;
    QPointF a, b, aFrom, bFrom;
    if (s.type == shape_type::Freeform) {
        const std::vector<QPointF> pts = geometry::freeformPoints(s);
        if (pts.size() < 2)
            return;
        a = pts.front();
        aFrom = pts[1];
        b = pts.back();
        bFrom = pts[pts.size() - 2];
    } else {
        a = geometry::lineStart(s);
        b = geometry::lineEnd(s);
        aFrom = b;
        bFrom = a;
    }
    const double size = std::max(1, l.arrowSize);
    if (s.type == shape_type::DimensionBar) {
        // a measuring line: ticks across both ends and arrows pointing at them
        const int startKind = l.arrowStart == arrow::None ? arrow::Open : l.arrowStart;
        const int endKind = l.arrowEnd == arrow::None ? arrow::Open : l.arrowEnd;
        drawArrow(p, arrow::Tick, aFrom, a, size, pen);
        drawArrow(p, arrow::Tick, bFrom, b, size, pen);
        drawArrow(p, startKind, aFrom, a, size, pen);
        drawArrow(p, endKind, bFrom, b, size, pen);
        return;
    }
    drawArrow(p, l.arrowStart, aFrom, a, size, pen);
    drawArrow(p, l.arrowEnd, bFrom, b, size, pen);
}

void drawText(QPainter& p, const ShapeData& s) {
    const QString& text = s.text();
    if (text.isEmpty())
        return;
    const FontStyle& f = s.st().font;
    const double emMm = f.size * MmPerInch / PointsPerInch;
    const double k = emMm / TextReferencePx;
    QFont font(f.name);
    font.setPixelSize(static_cast<int>(TextReferencePx));
    font.setBold(f.bold);
    font.setItalic(f.italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    p.save();
    p.setFont(font);
    p.setPen(qcolour(s.st().line.colour));
    const QRectF box = s.box();
    p.translate(box.topLeft());
    p.scale(k, k);
    p.drawText(QRectF(0, 0, box.width() / k, box.height() / k), Qt::AlignCenter | Qt::TextWordWrap, text);
    p.restore();
}

void drawLens(QPainter& p, const ShapeData& s, const Context& ctx, int position) {
    const QPainterPath outline = geometry::pageOutline(s);
    QRectF dr = p.transform().mapRect(outline.boundingRect());
    if (p.device())
        dr = dr.intersected(QRectF(0, 0, p.device()->width(), p.device()->height()));
    if (dr.width() < 1 || dr.height() < 1)
        return;
    const double f = std::min(1.0, MaxLensPixels / std::max(dr.width(), dr.height()));
    QImage under(std::max(1, static_cast<int>(std::ceil(dr.width() * f))),
                 std::max(1, static_cast<int>(std::ceil(dr.height() * f))),
                 QImage::Format_ARGB32_Premultiplied);
    const PageSettings& page = ctx.drawing->state().page;
    under.fill(page.showPaper ? qcolour(page.paperColour) : QColor(Qt::white));
    {
        QPainter ip(&under);
        ip.setRenderHints(p.renderHints());
        ip.setTransform(p.transform() * QTransform::fromTranslate(-dr.x(), -dr.y()) *
                        QTransform::fromScale(f, f));
        Context inner{ctx.drawing, ctx.lensDepth + 1, 0, {}};
        for (int pos : ctx.drawing->positionsIn(geometry::visualBounds(s))) {
            if (pos >= position)
                break;
            drawShapeIn(ip, *ctx.drawing->at(pos), inner, pos);
        }
    }
    applyLens(under, s.st().lens, s.st().fill.colour);
    p.save();
    p.setClipPath(outline, Qt::IntersectClip);
    p.resetTransform();
    p.drawImage(dr, under);
    p.restore();
}

void drawShadow(QPainter& p, const ShapeData& s) {
    const ShadowStyle& sh = s.st().shadow;
    // the shadow falls the same way whatever the shape's rotation
    QPainterPath path = geometry::pageOutline(s).translated(sh.offsetX, sh.offsetY);
    if (isArea(s)) {
        p.fillPath(path, qcolour(sh.colour));
    } else {
        QPen pen = penFor(s);
        pen.setColor(qcolour(sh.colour));
        p.strokePath(path, pen);
    }
}

// Whether the shape is a plain rectangle or hairline: solid colours, solid
// line, no rotation, shadow, lens, arrows or text. Most shapes of a plan are.
bool isPlain(const ShapeData& s) {
    const ShapeStyle& st = s.st();
    if (s.rotation != 0 || st.shadow.visible || st.lens.active || st.line.style != line_style::Solid ||
        (s.extra && !s.extra->text.isEmpty()))
        return false;
    if (s.type == shape_type::Rectangle)
        return st.fill.type == fill_type::Solid;
    return s.type == shape_type::Line && st.line.weight == 0 && st.line.arrowStart == arrow::None &&
           st.line.arrowEnd == arrow::None;
}

// Draws a plain shape with the painter's fastest calls: a framed rectangle as
// two filled rectangles, a hairline as a cosmetic line, a dot when tiny.
void drawPlain(QPainter& p, const ShapeData& s, Context& ctx) {
    PlainCache& c = ctx.cache;
    const ShapeStyle& st = s.st();
    if (c.style != &st || c.flags != s.flags) {
        c.style = &st;
        c.flags = s.flags;
        c.pen = penFor(s);
        c.line = qcolour(st.line.colour);
        c.fill = qcolour(st.fill.colour);
        p.setPen(c.pen);
        p.setBrush(Qt::NoBrush);
    }
    const bool stroked = s.has(shape_flag::Stroked);
    const QRectF box = s.box();
    if (box.width() * ctx.pxPerMm < TinyPx && box.height() * ctx.pxPerMm < TinyPx) {
        if (stroked || s.has(shape_flag::Filled))
            p.fillRect(box, stroked ? c.line : c.fill);
        return;
    }
    if (s.type == shape_type::Line) {
        if (stroked)
            p.drawLine(geometry::lineStart(s), geometry::lineEnd(s));
        return;
    }
    const double w = st.line.weight * LineUnitMm;
    if (s.has(shape_flag::Filled)) {
        if (stroked && w > 0) {
            p.fillRect(box.adjusted(-w / 2, -w / 2, w / 2, w / 2), c.line);
            const QRectF inner = box.adjusted(w / 2, w / 2, -w / 2, -w / 2);
            if (inner.width() > 0 && inner.height() > 0)
                p.fillRect(inner, c.fill);
            return;
        }
        p.fillRect(box, c.fill);
    }
    if (!stroked)
        return;
    if (w > 0) {
        const double h = w / 2;
        p.fillRect(QRectF(box.left() - h, box.top() - h, box.width() + w, w), c.line);
        p.fillRect(QRectF(box.left() - h, box.bottom() - h, box.width() + w, w), c.line);
        p.fillRect(QRectF(box.left() - h, box.top() + h, w, box.height() - w), c.line);
        p.fillRect(QRectF(box.right() - h, box.top() + h, w, box.height() - w), c.line);
    } else {
        p.drawRect(box);
    }
}

void drawShapeIn(QPainter& p, const ShapeData& s, Context& ctx, int position) {
    using namespace shape_type;
    if (ctx.pxPerMm > 0 && isPlain(s)) {
        drawPlain(p, s, ctx);
        return;
    }
    ctx.cache.style = nullptr; // the general path changes the painter's pen and brush
    if (s.type == Group) {
        if (s.extra)
            for (const ShapePtr& c : s.extra->children)
                drawShapeIn(p, *c, ctx, position);
        return;
    }
    const bool rotated = s.rotation != 0;
    const ShapeStyle& st = s.st();
    const bool area = isArea(s);
    const bool lensOn = st.lens.active && ctx.drawing && ctx.lensDepth < MaxLensDepth && area;
    if (st.shadow.visible)
        drawShadow(p, s);
    if (lensOn)
        drawLens(p, s, ctx, position);
    if (rotated) {
        p.save();
        p.setTransform(geometry::rotation(s), true);
    }
    const QRectF box = s.box();
    const QPen pen = penFor(s);
    p.setPen(pen);
    const bool fill = area && s.has(shape_flag::Filled) && !lensOn && s.type != Picture;
    p.setBrush(fill ? brushFor(s, box) : QBrush(Qt::NoBrush));
    if (s.type == Picture && s.extra && s.extra->picture)
        s.extra->picture->draw(p, box);
    switch (s.type) {
    case Rectangle:
    case PlainText:
    case TextBox:
    case Picture:
        if (fill || pen.style() != Qt::NoPen)
            p.drawRect(box);
        break;
    case Line:
    case Link:
    case DimensionBar:
        p.drawLine(geometry::lineStart(s), geometry::lineEnd(s));
        break;
    case Ellipse:
        p.drawEllipse(box);
        break;
    default:
        p.drawPath(geometry::outline(s));
        break;
    }
    if (!area && pen.style() != Qt::NoPen)
        drawLineEnds(p, s, pen);
    drawText(p, s);
    if (rotated)
        p.restore();
}

void drawGrid(QPainter& p, const PageSettings& page, const QRectF& area, double pxPerMmX, double pxPerMmY) {
    if (page.gridSpacingX <= 0 || page.gridSpacingY <= 0 || page.gridSpacingX * pxPerMmX < MinGridStepPx ||
        page.gridSpacingY * pxPerMmY < MinGridStepPx)
        return;
    QPen pen(qcolour(page.gridColour), 0, Qt::DotLine);
    pen.setCosmetic(true);
    p.setPen(pen);
    const bool smooth = p.testRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::Antialiasing, false); // crisp one-pixel lines
    const QRectF r = area.intersected(QRectF(0, 0, page.width, page.height));
    for (double x = std::ceil(r.left() / page.gridSpacingX) * page.gridSpacingX; x <= r.right();
         x += page.gridSpacingX)
        p.drawLine(QPointF(x, r.top()), QPointF(x, r.bottom()));
    for (double y = std::ceil(r.top() / page.gridSpacingY) * page.gridSpacingY; y <= r.bottom();
         y += page.gridSpacingY)
        p.drawLine(QPointF(r.left(), y), QPointF(r.right(), y));
    p.setRenderHint(QPainter::Antialiasing, smooth);
}

void drawGuides(QPainter& p, const PageState& st, const QRectF& area) {
    QPen pen(qcolour(st.page.guideColour), 0);
    pen.setCosmetic(true);
    p.setPen(pen);
    const bool smooth = p.testRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::Antialiasing, false); // crisp one-pixel lines
    for (int y : st.horizontalGuides)
        if (y >= area.top() && y <= area.bottom())
            p.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    for (int x : st.verticalGuides)
        if (x >= area.left() && x <= area.right())
            p.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    p.setRenderHint(QPainter::Antialiasing, smooth);
}

void drawSelection(QPainter& p, const RenderScene& scene) {
    const Drawing& d = *scene.drawing;
    const QTransform toDevice = p.transform();
    p.save();
    p.resetTransform();
    QPen frame(QColor(0, 90, 220), 0, Qt::DashLine);
    frame.setCosmetic(true);
    p.setPen(frame);
    p.setBrush(Qt::NoBrush);
    if (scene.selection->size() <= static_cast<size_t>(MaxFramedShapes))
        for (int id : *scene.selection)
            if (ShapePtr s = d.find(id)) {
                const QPolygonF box = geometry::rotation(*s).map(QPolygonF(s->box()));
                p.drawPolygon(toDevice.map(box));
            }
    p.setPen(QPen(QColor(0, 90, 220), 1));
    p.setBrush(Qt::white);
    for (const QPointF& h : scene.handles) {
        const QPointF c = toDevice.map(h);
        p.drawRect(QRectF(c.x() - HandlePx / 2, c.y() - HandlePx / 2, HandlePx, HandlePx));
    }
    p.restore();
}

void drawConnectors(QPainter& p, const Drawing& d, const std::vector<int>& visible) {
    if (visible.size() > static_cast<size_t>(MaxConnectorShapes))
        return;
    const QTransform toDevice = p.transform();
    p.save();
    p.resetTransform();
    p.setPen(QPen(QColor(0, 0, 255), 1));
    for (int pos : visible) {
        const ShapeData& s = *d.at(pos);
        if (s.type == shape_type::Link)
            continue;
        for (int i = 0; i < geometry::ConnectionPointCount - 1; ++i) {
            const QPointF c = toDevice.map(geometry::connectionPoint(s, i));
            p.drawLine(c + QPointF(-3, -3), c + QPointF(3, 3));
            p.drawLine(c + QPointF(-3, 3), c + QPointF(3, -3));
        }
    }
    p.restore();
}

void drawFeedback(QPainter& p, const ToolFeedback& fb) {
    Context none;
    p.save();
    p.setOpacity(0.6);
    for (const ShapeData& g : fb.ghosts)
        drawShapeIn(p, g, none, 0);
    p.restore();
    QPen band(QColor(0, 90, 220), 0, Qt::DashLine);
    band.setCosmetic(true);
    p.setPen(band);
    p.setBrush(Qt::NoBrush);
    if (!fb.rubberBand.isNull())
        p.drawRect(fb.rubberBand);
    if (!fb.movingBounds.isNull())
        p.drawRect(fb.movingBounds);
}

} // namespace

void Renderer::drawShape(QPainter& painter, const ShapeData& shape) {
    Context none;
    drawShapeIn(painter, shape, none, 0);
}

void Renderer::render(QPainter& p, const RenderScene& scene, const QRectF& pageRect,
                      const QRectF& visibleArea) {
    const Drawing& d = *scene.drawing;
    const PageState& st = d.state();
    const PageSettings& page = st.page;
    p.save();
    const double sx = pageRect.width() / std::max(1, page.width);
    const double sy = pageRect.height() / std::max(1, page.height);
    QTransform t;
    t.translate(pageRect.x(), pageRect.y());
    t.scale(sx, sy);
    p.setTransform(t, true);
    const QRectF sheet(0, 0, page.width, page.height);
    const QRectF area = visibleArea.isEmpty() ? QRectF() : visibleArea;
    const double pxX = std::hypot(p.transform().m11(), p.transform().m12());
    const double pxY = std::hypot(p.transform().m21(), p.transform().m22());
    if (scene.paperDecoration && page.showShadow)
        p.fillRect(sheet.translated(PaperShadowPx / pxX, PaperShadowPx / pxY), qcolour(page.shadowColour));
    if (page.showPaper)
        p.fillRect(sheet, qcolour(page.paperColour));
    const QRectF drawArea = area.isNull() ? sheet : area;
    if (scene.showGrid)
        drawGrid(p, page, drawArea, pxX, pxY);

    Context ctx{&d, 0, 0, {}};
    // the shortcuts for plain shapes hold where the page is not turned on the device
    if (std::fabs(p.transform().m12()) < 1e-12 && std::fabs(p.transform().m21()) < 1e-12)
        ctx.pxPerMm = std::min(pxX, pxY);
    std::vector<int> visible;
    if (area.isNull()) {
        for (int i = 0; i < d.count(); ++i)
            drawShapeIn(p, *d.at(i), ctx, i);
    } else {
        visible = d.positionsIn(area);
        // a crowded window is painted without smoothing, which halves the time; exports keep it
        const bool smooth = p.testRenderHint(QPainter::Antialiasing);
        if (visible.size() > CrowdedView)
            p.setRenderHint(QPainter::Antialiasing, false);
        for (int pos : visible)
            drawShapeIn(p, *d.at(pos), ctx, pos);
        p.setRenderHint(QPainter::Antialiasing, smooth);
    }
    if (scene.showGuides)
        drawGuides(p, st, area.isNull() ? sheet : area);
    if (scene.paperDecoration && page.showOutline) {
        QPen outline(qcolour(page.outlineColour), 0);
        outline.setCosmetic(true);
        p.setPen(outline);
        p.setBrush(Qt::NoBrush);
        p.drawRect(sheet);
    }
    if (scene.showConnectors) {
        if (area.isNull())
            for (int i = 0; i < d.count(); ++i)
                visible.push_back(i);
        drawConnectors(p, d, visible);
    }
    if (scene.selection && !scene.selection->empty())
        drawSelection(p, scene);
    if (scene.feedback)
        drawFeedback(p, *scene.feedback);
    p.restore();
}

} // namespace tessaly::canvas
