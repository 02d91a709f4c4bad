#pragma once

#include "GdiSink.h"

namespace tessaly::metafile {

// Measures what a file draws, for files that say nothing of their size.
class BoundsSink final : public GdiSink {
public:
    QRectF bounds;
    void setPen(const GdiPen&) override {}
    void setBrush(const GdiBrush&) override {}
    void setFont(const GdiFont&) override {}
    void setTextColour(const QColor&) override {}
    void setBackground(const QColor&, bool) override {}
    void setTextAlign(uint32_t) override {}
    void setFillRule(Qt::FillRule) override {}
    void setClip(const std::optional<QPainterPath>&) override {}
    void polyline(const QPolygonF& points) override { add(points.boundingRect()); }
    void polyPolygon(const QList<QPolygonF>& polygons) override {
        for (const QPolygonF& p : polygons)
            add(p.boundingRect());
    }
    void rectangle(const QRectF& box) override { add(box); }
    void roundRect(const QRectF& box, const QSizeF&) override { add(box); }
    void ellipse(const QRectF& box) override { add(box); }
    void path(const QPainterPath& path, bool, bool) override { add(path.controlPointRect()); }
    void text(const QPointF& reference, const QString&, const std::vector<double>&, uint32_t,
              const QRectF&) override {
        add(QRectF(reference, QSizeF(1, 1)));
    }
    void image(const QRectF& destination, const QImage&, const QTransform& transform) override {
        add(transform.mapRect(destination));
    }

private:
    void add(const QRectF& r) { bounds = bounds.isNull() ? r : bounds.united(r); }
};

} // namespace tessaly::metafile
