#include "PainterSink.h"

#include "RecordTypes.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <algorithm>
#include <cmath>

namespace tessaly::metafile {

namespace {

// Largest font height drawn, in device units; larger ones come from damage.
constexpr double MaxFontPixels = 10000;
// Text drawn with glyphs between these sizes on the target, in pixels;
// outside them it is drawn as outlines.
constexpr double MinGlyphPixels = 0.5;
constexpr double MaxGlyphPixels = 512;
// Largest number of dash entries taken from a pen.
constexpr size_t MaxDashes = 16;

Qt::BrushStyle hatchStyle(uint32_t hatch) {
    switch (hatch) {
    case gdi::HsHorizontal:
        return Qt::HorPattern;
    case gdi::HsVertical:
        return Qt::VerPattern;
    case gdi::HsFDiagonal:
        return Qt::FDiagPattern;
    case gdi::HsBDiagonal:
        return Qt::BDiagPattern;
    case gdi::HsCross:
        return Qt::CrossPattern;
    default:
        return Qt::DiagCrossPattern;
    }
}

} // namespace

PainterSink::PainterSink(QPainter& painter, const QTransform& deviceToTarget) : painter_(painter) {
    painter_.save();
    base_ = deviceToTarget * painter_.transform();
    painter_.setTransform(base_);
    painter_.setPen(QPen(Qt::black, 0));
    painter_.setBrush(Qt::white);
}

PainterSink::~PainterSink() {
    painter_.restore();
}

void PainterSink::setPen(const GdiPen& given) {
    if (given.null) {
        pen_ = QPen(Qt::NoPen);
        return;
    }
    // As on a GDI device, no pen is thinner than one pixel of the target:
    // widths up to one pixel are drawn as one-pixel (cosmetic) lines.
    const double onTarget = given.width * std::sqrt(std::abs(base_.determinant()));
    QPen pen(given.colour, onTarget <= 1.0 ? 0.0 : std::clamp(given.width, 0.0, 1e6));
    switch (given.style & gdi::PsStyleMask) {
    case gdi::PsDash:
        pen.setStyle(Qt::DashLine);
        break;
    case gdi::PsDot:
        pen.setStyle(Qt::DotLine);
        break;
    case gdi::PsDashDot:
        pen.setStyle(Qt::DashDotLine);
        break;
    case gdi::PsDashDotDot:
        pen.setStyle(Qt::DashDotDotLine);
        break;
    case gdi::PsUserStyle:
        if (!given.dashes.empty() && given.dashes.size() <= MaxDashes) {
            const double unit = given.width > 0 ? given.width : 1.0;
            QList<qreal> pattern;
            for (double d : given.dashes)
                pattern.append(std::max(0.01, d / unit));
            if (pattern.size() % 2 != 0)
                pattern.append(pattern.last());
            pen.setDashPattern(pattern);
        }
        break;
    default:
        break;
    }
    switch (given.style & gdi::PsEndcapMask) {
    case gdi::PsEndcapFlat:
        pen.setCapStyle(Qt::FlatCap);
        break;
    case gdi::PsEndcapSquare:
        pen.setCapStyle(Qt::SquareCap);
        break;
    default:
        pen.setCapStyle(Qt::RoundCap);
        break;
    }
    switch (given.style & gdi::PsJoinMask) {
    case gdi::PsJoinMiter:
        pen.setJoinStyle(Qt::MiterJoin);
        break;
    case gdi::PsJoinBevel:
        pen.setJoinStyle(Qt::BevelJoin);
        break;
    default:
        pen.setJoinStyle(Qt::RoundJoin);
        break;
    }
    pen_ = pen;
}

void PainterSink::setBrush(const GdiBrush& given) {
    hatched_ = false;
    switch (given.kind) {
    case GdiBrush::Kind::Null:
        brush_ = QBrush(Qt::NoBrush);
        break;
    case GdiBrush::Kind::Hatched:
        brush_ = QBrush(given.colour, hatchStyle(given.hatch));
        hatched_ = true;
        break;
    case GdiBrush::Kind::Pattern:
        brush_ = given.pattern.isNull() ? QBrush(given.colour) : QBrush(given.pattern);
        break;
    default:
        brush_ = QBrush(given.colour);
        break;
    }
}

void PainterSink::setFont(const GdiFont& given) {
    QFont font(given.face);
    double height = std::abs(given.height);
    if (!std::isfinite(height) || height < 1)
        height = 16; // GDI's default when the height is 0
    height = std::min(height, MaxFontPixels);
    if (given.height > 0) {
        // A cell height: the em height is the part of it above the descent.
        font.setPixelSize(100);
        const QFontMetricsF m(font);
        height *= 100.0 / std::max(1.0, m.ascent() + m.descent());
    }
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(height))));
    font.setWeight(static_cast<QFont::Weight>(std::clamp(given.weight == 0 ? 400 : given.weight, 1, 1000)));
    font.setItalic(given.italic);
    font.setUnderline(given.underline);
    font.setStrikeOut(given.strikeOut);
    font_ = font;
    fontEm_ = height;
    escapement_ = given.escapement;
}

void PainterSink::setBackground(const QColor& colour, bool opaque) {
    bkColour_ = colour;
    opaque_ = opaque;
}

void PainterSink::setClip(const std::optional<QPainterPath>& clip) {
    if (clip)
        painter_.setClipPath(*clip);
    else
        painter_.setClipping(false);
}

void PainterSink::apply(const QPen& pen, const QBrush& brush) {
    if (applied_ && appliedPen_ == pen && appliedBrush_ == brush)
        return;
    painter_.setPen(pen);
    painter_.setBrush(brush);
    appliedPen_ = pen;
    appliedBrush_ = brush;
    applied_ = true;
}

void PainterSink::fillAndStroke(const QPainterPath& figure, bool stroke, bool fill) {
    if (fill && hatched_ && opaque_) {
        apply(QPen(Qt::NoPen), QBrush(bkColour_));
        painter_.drawPath(figure);
    }
    apply(stroke ? pen_ : QPen(Qt::NoPen), fill ? brush_ : QBrush(Qt::NoBrush));
    painter_.drawPath(figure);
}

void PainterSink::polyline(const QPolygonF& points) {
    apply(pen_, QBrush(Qt::NoBrush));
    if (points.size() == 2)
        painter_.drawLine(points[0], points[1]);
    else
        painter_.drawPolyline(points);
}

void PainterSink::polyPolygon(const QList<QPolygonF>& polygons) {
    QPainterPath figure;
    figure.setFillRule(fillRule_);
    for (const QPolygonF& p : polygons) {
        figure.addPolygon(p);
        figure.closeSubpath();
    }
    fillAndStroke(figure, true, true);
}

void PainterSink::rectangle(const QRectF& box) {
    QPainterPath figure;
    figure.addRect(QRectF(box.topLeft(), box.size() - QSizeF(1, 1)));
    fillAndStroke(figure, true, true);
}

void PainterSink::roundRect(const QRectF& box, const QSizeF& corner) {
    QPainterPath figure;
    figure.addRoundedRect(QRectF(box.topLeft(), box.size() - QSizeF(1, 1)), corner.width() / 2,
                          corner.height() / 2);
    fillAndStroke(figure, true, true);
}

void PainterSink::ellipse(const QRectF& box) {
    QPainterPath figure;
    figure.addEllipse(QRectF(box.topLeft(), box.size() - QSizeF(1, 1)));
    fillAndStroke(figure, true, true);
}

void PainterSink::path(const QPainterPath& figure, bool stroke, bool fill) {
    fillAndStroke(figure, stroke, fill);
}

void PainterSink::text(const QPointF& reference, const QString& text, const std::vector<double>& advances,
                       uint32_t options, const QRectF& box) {
    if (options & gdi::EtoOpaque && box.isValid())
        painter_.fillRect(box, bkColour_);
    painter_.save();
    applied_ = false;
    if (options & gdi::EtoClipped && box.isValid())
        painter_.setClipRect(box, Qt::IntersectClip);
    painter_.setFont(font_);
    const QFontMetricsF metrics(font_);
    double width = 0;
    if (advances.size() == static_cast<size_t>(text.size()))
        for (double a : advances)
            width += a;
    else
        width = metrics.horizontalAdvance(text);
    painter_.translate(reference);
    if (escapement_ != 0)
        painter_.rotate(-escapement_ / 10.0);
    double x = 0;
    switch (textAlign_ & gdi::TaHorizontalMask) {
    case gdi::TaRight:
        x = -width;
        break;
    case gdi::TaCenter:
        x = -width / 2;
        break;
    default:
        break;
    }
    double y = 0;
    switch (textAlign_ & gdi::TaVerticalMask) {
    case gdi::TaBaseline:
        break;
    case gdi::TaBottom:
        y = -metrics.descent();
        break;
    default:
        y = metrics.ascent();
        break;
    }
    if (opaque_)
        painter_.fillRect(QRectF(x, y - metrics.ascent(), width, metrics.ascent() + metrics.descent()),
                          bkColour_);
    // Glyphs far larger or smaller than a screen's are drawn as outlines:
    // the font engine's glyph cache is not made for them.
    const QTransform& t = painter_.transform();
    const double scaleX = std::hypot(t.m11(), t.m12());
    const double scaleY = std::hypot(t.m21(), t.m22());
    const double largest = fontEm_ * std::max(scaleX, scaleY);
    const double smallest = fontEm_ * std::min(scaleX, scaleY);
    const bool asOutline = !(smallest >= MinGlyphPixels && largest <= MaxGlyphPixels);
    if (!std::isfinite(largest)) {
        painter_.restore();
        return;
    }
    auto draw = [&](const QPointF& at, const QString& piece) {
        if (!asOutline) {
            painter_.drawText(at, piece);
            return;
        }
        QPainterPath outline;
        outline.addText(at, font_, piece);
        painter_.fillPath(outline, textColour_);
    };
    painter_.setPen(textColour_);
    applied_ = false; // the restore below brings back the pen, but not into the record of what was applied
    if (!asOutline && drawGlyphs(QPointF(x, y), text, advances)) {
        painter_.restore();
        return;
    }
    if (advances.size() == static_cast<size_t>(text.size())) {
        for (qsizetype i = 0; i < text.size(); ++i) {
            draw(QPointF(x, y), QString(text[i]));
            x += advances[static_cast<size_t>(i)];
        }
    } else {
        draw(QPointF(x, y), text);
    }
    painter_.restore();
}

bool PainterSink::drawGlyphs(const QPointF& origin, const QString& text,
                             const std::vector<double>& advances) {
    // The glyphs of the string at the places its advances give, drawn in
    // one run: as exact as drawing each character on its own, and far less
    // work for the device (a PDF gets one text object instead of one a letter).
    if (advances.size() != static_cast<size_t>(text.size()) || text.isEmpty())
        return false;
    if (rawFontKey_ != font_.key() || !rawFontSet_) {
        rawFont_ = QRawFont::fromFont(font_);
        rawFontKey_ = font_.key();
        rawFontSet_ = true;
    }
    if (!rawFont_.isValid())
        return false;
    const QList<quint32> glyphs = rawFont_.glyphIndexesForString(text);
    if (glyphs.size() != text.size() || glyphs.contains(0u))
        return false; // a letter the font lacks: drawn one by one, with the font's fallbacks
    QList<QPointF> positions;
    positions.reserve(glyphs.size());
    double at = origin.x();
    for (double advance : advances) {
        positions.append(QPointF(at, origin.y()));
        at += advance;
    }
    QGlyphRun run;
    run.setRawFont(rawFont_);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    run.setUnderline(font_.underline());
    run.setStrikeOut(font_.strikeOut());
    painter_.drawGlyphRun(QPointF(0, 0), run);
    return true;
}

void PainterSink::image(const QRectF& destination, const QImage& picture, const QTransform& transform) {
    painter_.save();
    painter_.setTransform(transform * base_);
    painter_.drawImage(destination, picture);
    painter_.restore();
}

} // namespace tessaly::metafile
