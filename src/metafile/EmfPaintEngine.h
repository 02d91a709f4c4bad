#pragma once

#include "DeviceClip.h"
#include "EmfRecorder.h"

#include <QBrush>
#include <QFont>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QTransform>
#include <utility>
#include <vector>

namespace tessaly::metafile {

// The paint engine behind EmfPaintDevice: every QPainter call becomes EMF
// records in device units. The engine applies the painter's transform itself,
// so coordinates are exact device units and pen widths and font heights are
// scaled; only bitmaps under a rotation carry a world transform record.
class EmfPaintEngine final : public QPaintEngine {
public:
    explicit EmfPaintEngine(EmfRecorder& recorder);

    bool begin(QPaintDevice* device) override;
    bool end() override;
    void updateState(const QPaintEngineState& state) override;

    void drawLines(const QLineF* lines, int lineCount) override;
    void drawRects(const QRectF* rects, int rectCount) override;
    void drawEllipse(const QRectF& rect) override;
    void drawPath(const QPainterPath& path) override;
    void drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override;
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags = Qt::AutoColor) override;
    void drawTextItem(const QPointF& position, const QTextItem& textItem) override;

    Type type() const override { return static_cast<Type>(User + 1); }

private:
    bool axisAligned() const;
    double lengthScale() const;
    bool hasPen() const;
    bool hasBrush() const;
    // Makes the EMF's selected objects match the painter's pen, brush and font.
    void realizePen();
    void realizeBrush();
    void realizeFont(const QFont& font, double pixelHeight, int escapement);
    void realizeFillMode(Qt::FillRule rule);
    void realizeTextColour();
    // Deletes an object of the handle table and frees its index.
    void deleteObject(uint32_t handle);
    void selectNew(uint32_t& current, uint32_t created);
    void selectStock(uint32_t& current, uint32_t stock);
    // Brushes: a kept pattern stays in the handle table when another brush is selected.
    void selectBrush(uint32_t created);
    void selectStockBrush(uint32_t stock);
    bool isKeptPattern(uint32_t handle) const;
    void writeClip();

    // Records for shapes already in device units.
    void polyRecord(uint32_t type16, uint32_t type32, const QPolygon& points, bool grow = true);
    void rectangleRecord(uint32_t type, const QRect& box);
    void pathRecords(const QPainterPath& devicePath);
    QRect strokeBounds(const QRectF& deviceRect) const;
    QPoint toDevice(const QPointF& point) const;

    EmfRecorder& rec_;
    QTransform transform_;
    QPen pen_;
    QBrush brush_;
    bool penDirty_ = true;
    bool brushDirty_ = true;
    uint32_t penHandle_ = 0;   // 0: a stock pen is selected
    uint32_t brushHandle_ = 0; // 0: a stock brush is selected
    uint32_t fontHandle_ = 0;
    // The last pattern brushes, kept for reuse: what each was made from, and its handle; oldest first.
    std::vector<std::pair<QByteArray, uint32_t>> patterns_;
    QString fontKey_;
    uint32_t fillMode_ = 0;
    uint32_t textColour_ = 0xFFFFFFFF;
    DeviceClip clip_;
};

} // namespace tessaly::metafile
