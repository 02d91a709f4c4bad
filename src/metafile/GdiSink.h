#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessaly::metafile {

// A pen as a metafile describes it, with lengths in device units.
struct GdiPen {
    bool null = false;
    QColor colour = Qt::black;
    double width = 0;           // 0: one device unit whatever the scale
    uint32_t style = 0;         // PS_* style with its end cap and join bits
    std::vector<double> dashes; // PS_USERSTYLE lengths
    bool operator==(const GdiPen&) const = default;
};

// A brush: nothing, a colour, a hatch in a colour, or a bitmap pattern.
struct GdiBrush {
    enum class Kind { Null, Solid, Hatched, Pattern };
    Kind kind = Kind::Solid;
    QColor colour = Qt::white;
    uint32_t hatch = 0; // HS_* for Kind::Hatched
    QImage pattern;     // for Kind::Pattern
    bool operator==(const GdiBrush& o) const {
        return kind == o.kind && colour == o.colour && hatch == o.hatch &&
               pattern.cacheKey() == o.pattern.cacheKey();
    }
};

// A font, with its height in device units (negative: the em height;
// positive: the cell height, as LOGFONT has it).
struct GdiFont {
    QString face = QStringLiteral("Arial");
    double height = -16;
    double width = 0;
    int escapement = 0; // tenths of a degree, counter-clockwise
    int weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    uint8_t charset = 0;
    bool operator==(const GdiFont&) const = default;
};

// What a metafile reader hands on: drawing operations in device units, with
// the state they are drawn in. The painter sink draws them; the WMF writer
// turns them into old-style records; a bounds sink measures them.
class GdiSink {
public:
    virtual ~GdiSink() = default;

    virtual void setPen(const GdiPen& pen) = 0;
    virtual void setBrush(const GdiBrush& brush) = 0;
    virtual void setFont(const GdiFont& font) = 0;
    virtual void setTextColour(const QColor& colour) = 0;
    virtual void setBackground(const QColor& colour, bool opaque) = 0;
    virtual void setTextAlign(uint32_t align) = 0;
    virtual void setFillRule(Qt::FillRule rule) = 0;
    // The clip in device units; nothing means no clip.
    virtual void setClip(const std::optional<QPainterPath>& clip) = 0;

    virtual void polyline(const QPolygonF& points) = 0;
    // Filled with the brush and outlined with the pen.
    virtual void polyPolygon(const QList<QPolygonF>& polygons) = 0;
    virtual void rectangle(const QRectF& box) = 0;
    virtual void roundRect(const QRectF& box, const QSizeF& corner) = 0;
    virtual void ellipse(const QRectF& box) = 0;
    // A general figure (Beziers, arcs, pies, turned ellipses).
    virtual void path(const QPainterPath& path, bool stroke, bool fill) = 0;
    // Text at a reference point; `advances` are the steps between characters
    // (empty: the font's own). `box` is the opaque or clipping box of the
    // options ETO_OPAQUE / ETO_CLIPPED, when given.
    virtual void text(const QPointF& reference, const QString& text, const std::vector<double>& advances,
                      uint32_t options, const QRectF& box) = 0;
    // A bitmap into a destination; `transform` maps the destination rectangle
    // onto the device (identity for most records).
    virtual void image(const QRectF& destination, const QImage& image, const QTransform& transform) = 0;
};

} // namespace tessaly::metafile
