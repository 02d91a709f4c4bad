#pragma once

#include "metafile/GdiSink.h"

namespace tessaly::reports {

class ReportPage;

// Follows a metafile's drawing and notes whether anything it draws has a
// colour other than black or white: pens, brushes (a hatch with its opaque
// background), text with its background, and bitmaps.
class ColourProbe final : public metafile::GdiSink {
public:
    bool onlyBlackAndWhite() const { return blackAndWhite_; }

    void setPen(const metafile::GdiPen& pen) override { pen_ = pen; }
    void setBrush(const metafile::GdiBrush& brush) override { brush_ = brush; }
    void setFont(const metafile::GdiFont&) override {}
    void setTextColour(const QColor& colour) override { text_ = colour; }
    void setBackground(const QColor& colour, bool opaque) override {
        background_ = colour;
        opaque_ = opaque;
    }
    void setTextAlign(uint32_t) override {}
    void setFillRule(Qt::FillRule) override {}
    void setClip(const std::optional<QPainterPath>&) override {}

    void polyline(const QPolygonF&) override { stroke(); }
    void polyPolygon(const QList<QPolygonF>&) override { fillAndStroke(); }
    void rectangle(const QRectF&) override { fillAndStroke(); }
    void roundRect(const QRectF&, const QSizeF&) override { fillAndStroke(); }
    void ellipse(const QRectF&) override { fillAndStroke(); }
    void path(const QPainterPath&, bool stroked, bool filled) override;
    void text(const QPointF&, const QString&, const std::vector<double>&, uint32_t options,
              const QRectF& box) override;
    void image(const QRectF&, const QImage& image, const QTransform&) override { note(image); }

private:
    void stroke();
    void fill();
    void fillAndStroke() {
        fill();
        stroke();
    }
    void note(const QColor& colour);
    void note(const QImage& image);

    bool blackAndWhite_ = true;
    metafile::GdiPen pen_;
    metafile::GdiBrush brush_;
    QColor text_ = Qt::black;
    QColor background_ = Qt::white;
    bool opaque_ = true;
};

// Whether everything that lies on the page is black or white: its texts and
// lines, and its pictures (metafiles by what they draw, bitmaps by their pixels).
bool pageIsBlackAndWhite(const ReportPage& page);

} // namespace tessaly::reports
