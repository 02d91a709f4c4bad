#pragma once

#include "ByteWriter.h"
#include "GdiSink.h"

#include <QByteArray>
#include <QRect>
#include <optional>
#include <vector>

namespace tessaly::metafile {

// Writes what a metafile reader hands on as old-style WMF records: a
// META_HEADER of type 1, MM_ANISOTROPIC with the window on the picture's
// bounds, and its own pens, brushes and fonts created, selected and deleted
// in the WMF object table (no stock objects). Coordinates are 16-bit: a value
// outside -32768..32767 raises error 6 (overflow).
class WmfWriter final : public GdiSink {
public:
    // `bounds`: the picture's bounds in device units, inclusive. With
    // `scaleToFit`, a picture whose bounds exceed the 16-bit range is scaled
    // down into it (as GDI's own conversion does); otherwise such
    // coordinates raise error 6.
    explicit WmfWriter(const QRect& bounds, bool scaleToFit = false);

    // Ends the file with META_EOF and completes the header.
    QByteArray finish();

    void setPen(const GdiPen& pen) override { pen_.wanted = pen; }
    void setBrush(const GdiBrush& brush) override { brush_.wanted = brush; }
    void setFont(const GdiFont& font) override { font_.wanted = font; }
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
    template <typename Object> struct Slot {
        std::optional<Object> wanted;  // what the reader asked for last
        std::optional<Object> created; // what the live object holds
        int live = -1;                 // object index holding `created`
        int selected = -1;             // object index selected in the DC
    };
    // The attributes the file has set, as far as the writer knows them.
    struct Attributes {
        std::optional<QColor> textColour;
        std::optional<QColor> bkColour;
        std::optional<bool> opaque;
        std::optional<uint32_t> textAlign;
        std::optional<Qt::FillRule> fillRule;
    };

    ByteWriter& begin(uint16_t function);
    void end();
    int16_t coordinate(double value) const; // a device length or position, scaled
    static int16_t checked(double value);   // a value outside the scaling (counts, sizes of bitmaps)
    void point(const QPointF& p);           // x, y
    void box(const QRectF& r);              // bottom, right, top, left
    void unscaledBox(const QRect& r);       // the same, already in WMF units (right and bottom exclusive)
    int allocate();
    void release(int index);
    void selectSlot(int& selected, int live);
    void realizePen(bool forFill = false);
    void realizeBrush();
    void realizeFont();
    void realizeAttributes(bool forText);
    void drawPolygons(const QList<QPolygonF>& polygons);

    QByteArray out_;
    ByteWriter w_;
    double scale_ = 1.0; // device units to WMF units
    qsizetype recordStart_ = -1;
    uint32_t maxRecordWords_ = 0;
    std::vector<bool> table_;
    size_t tableSize_ = 0;
    Slot<GdiPen> pen_;
    Slot<GdiBrush> brush_;
    Slot<GdiFont> font_;
    QColor textColour_ = Qt::black;
    QColor bkColour_ = Qt::white;
    bool opaque_ = true;
    uint32_t textAlign_ = 0;
    Qt::FillRule fillRule_ = Qt::OddEvenFill;
    Attributes written_;
    // A clip is set between SAVEDC and RESTOREDC; what was selected and set
    // at the save comes back at the restore, and objects selected then are
    // only deleted after it.
    bool clipSaved_ = false;
    int savedPen_ = -1;
    int savedBrush_ = -1;
    int savedFont_ = -1;
    Attributes savedAttributes_;
    std::vector<int> deferred_;
};

// Converts an enhanced metafile to an old-style one (without the placeable
// header). Error 481 for a damaged source; error 6 for coordinates beyond
// 16 bits unless `scaleToFit`.
QByteArray convertEmfToWmf(const QByteArray& emf, bool scaleToFit = false);

} // namespace tessaly::metafile
