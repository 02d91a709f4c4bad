#pragma once

#include "GdiSink.h"

#include <QFont>
#include <QPainter>
#include <QRawFont>
#include <QTransform>

namespace tessaly::metafile {

// Draws what a metafile reader hands on with a QPainter. Coordinates are
// device units of the metafile; `deviceToTarget` places them on the painter.
class PainterSink final : public GdiSink {
public:
    PainterSink(QPainter& painter, const QTransform& deviceToTarget);
    ~PainterSink() override;
    PainterSink(const PainterSink&) = delete;
    PainterSink& operator=(const PainterSink&) = delete;

    void setPen(const GdiPen& pen) override;
    void setBrush(const GdiBrush& brush) override;
    void setFont(const GdiFont& font) override;
    void setTextColour(const QColor& colour) override { textColour_ = colour; }
    void setBackground(const QColor& colour, bool opaque) override;
    void setTextAlign(uint32_t align) override { textAlign_ = align; }
    void setFillRule(Qt::FillRule rule) override { fillRule_ = rule; }
    void setClip(const std::optional<QPainterPath>& clip) override;

    void polyline(const QPolygonF& points) override;
    void polyPolygon(const QList<QPolygonF>& polygons) override;
    void rectangle(const QRectF& box) override;
    void roundRect(const QRectF& box, const QSizeF& corner) override;
    void ellipse(const QRectF& box) override;
    void path(const QPainterPath& path, bool stroke, bool fill) override;
    void text(const QPointF& reference, const QString& text, const std::vector<double>& advances,
              uint32_t options, const QRectF& box) override;
    void image(const QRectF& destination, const QImage& image, const QTransform& transform) override;

private:
    // Fills and outlines a figure, laying the background under a hatch when
    // the background mode is opaque.
    void fillAndStroke(const QPainterPath& figure, bool stroke, bool fill);

    // Draws a string's glyphs at the places its advances give; false when
    // the font lacks one of them.
    bool drawGlyphs(const QPointF& origin, const QString& text, const std::vector<double>& advances);

    // Sets the painter's pen and brush only when they differ from what it has.
    void apply(const QPen& pen, const QBrush& brush);

    QPainter& painter_;
    bool applied_ = false;
    QPen appliedPen_;
    QBrush appliedBrush_;
    QTransform base_;
    QPen pen_;
    QBrush brush_;
    bool hatched_ = false;
    QFont font_;
    QRawFont rawFont_; // the font's glyphs, for strings drawn in one run
    QString rawFontKey_;
    bool rawFontSet_ = false;
    double fontEm_ = 16;
    int escapement_ = 0;
    QColor textColour_ = Qt::black;
    QColor bkColour_ = Qt::white;
    bool opaque_ = true;
    uint32_t textAlign_ = 0;
    Qt::FillRule fillRule_ = Qt::OddEvenFill;
};

} // namespace tessaly::metafile
