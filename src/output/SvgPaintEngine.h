#pragma once

#include "metafile/DeviceClip.h"

#include <QBrush>
#include <QByteArray>
#include <QHash>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

namespace tessaly::output {

// The engine behind SvgPaintDevice. It applies the painter's transform
// itself, so the document holds device coordinates, and it gathers elements
// of one style into one group, so that a plan of many shapes stays compact.
class SvgPaintEngine final : public QPaintEngine {
public:
    SvgPaintEngine();

    bool begin(QPaintDevice* device) override;
    bool end() override;
    void updateState(const QPaintEngineState& state) override;

    void drawLines(const QLineF* lines, int lineCount) override;
    void drawRects(const QRectF* rects, int rectCount) override;
    void drawPath(const QPainterPath& path) override;
    void drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override;
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags = Qt::AutoColor) override;
    void drawTextItem(const QPointF& position, const QTextItem& textItem) override;

    Type type() const override { return static_cast<Type>(User + 2); }

    // The elements drawn and the definitions they use, for the device.
    const QByteArray& body() const { return body_; }
    const QByteArray& definitions() const { return defs_; }

private:
    // The style attributes of what is drawn now: stroke and fill.
    QByteArray styleFor(bool stroke, bool fill, Qt::FillRule rule);
    QByteArray strokeStyle();
    QByteArray fillStyle(Qt::FillRule rule);
    QByteArray paintServer(const QBrush& brush);
    QByteArray patternFor(const QImage& tile, const QTransform& tileToDevice);
    QByteArray gradientFor(const QBrush& brush);
    QByteArray imageData(const QImage& image);
    // Opens a group of the style and clip, unless the open group has them.
    void useGroup(const QByteArray& style);
    void closeGroup();
    void shape(const QByteArray& element, bool stroke, bool fill, Qt::FillRule rule = Qt::OddEvenFill);
    double penWidth() const;

    QByteArray body_;
    QByteArray defs_;
    QTransform transform_;
    QPen pen_;
    QBrush brush_;
    QBrush background_;
    bool opaqueBackground_ = false;
    double opacity_ = 1;
    metafile::DeviceClip clip_;
    QByteArray clipId_;
    QByteArray groupStyle_; // the open group's attributes; empty: none open
    int nextId_ = 0;
    QHash<QByteArray, QByteArray> defined_; // a definition's key -> its id
    QHash<qint64, QByteArray> tileDigests_; // a tile image's key -> the digest of its pixels
};

} // namespace tessaly::output
