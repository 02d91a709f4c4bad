#pragma once

#include "ByteReader.h"
#include "GdiSink.h"
#include "RecordTypes.h"

#include <QByteArray>
#include <optional>
#include <variant>
#include <vector>

// The reader behind parseWmf and wmfFrame: it walks the records of an
// old-style metafile and plays them into a sink, in logical units.
namespace tessaly::metafile::wmf {

struct Placeholder {}; // palettes and regions: they hold a slot of the table

using WmfObject = std::variant<std::monostate, GdiPen, GdiBrush, GdiFont, Placeholder>;

// The device context: what SaveDC keeps and RestoreDC brings back.
struct WmfDc {
    GdiPen pen;
    GdiBrush brush;
    GdiFont font;
    QColor textColour = Qt::black;
    QColor bkColour = Qt::white;
    bool opaque = true;
    uint32_t textAlign = 0;
    Qt::FillRule fillRule = Qt::OddEvenFill;
    QPointF current;
    std::optional<QPainterPath> clip;
    uint32_t mapMode = gdi::MmText;
};

class WmfReader {
public:
    // `sink` may be null: the records are then only walked and checked.
    WmfReader(const QByteArray& bytes, GdiSink* sink) : bytes_(bytes), sink_(sink) {}

    // Walks every record; returns the number of records, META_EOF included.
    uint32_t run();
    // The window the records set, when they set one of some size.
    std::optional<QRectF> window() const {
        if (!windowSet_ || windowExt_.width() == 0 || windowExt_.height() == 0)
            return std::nullopt;
        return QRectF(windowOrg_, windowExt_);
    }

private:
    // A record's handler; `function` tells apart the records one handler reads.
    using Handler = void (WmfReader::*)(uint16_t function, ByteReader& r);
    // The handler of a record; null for records that do not draw.
    static Handler handlerFor(uint16_t function);

    QPointF mapPoint(double x, double y) const { return fixedMode() ? QPointF(x, -y) : QPointF(x, y); }
    bool fixedMode() const { return dc_.mapMode >= gdi::MmLoMetric && dc_.mapMode <= gdi::MmTwips; }
    QPointF readPoint(ByteReader& r); // y first, then x
    QRectF readBox(ByteReader& r);    // bottom, right, top, left
    QPolygonF readPoints(ByteReader& r, qsizetype count);
    void createObject(WmfObject object);
    // Tells the sink the whole state, if there is a sink.
    void flush();
    void fillWithoutSource(uint32_t rop, const QRectF& destination);

    // Records of the window and the device context.
    void setWindowOrg(uint16_t function, ByteReader& r);
    void setWindowExt(uint16_t function, ByteReader& r);
    void setMapMode(uint16_t function, ByteReader& r);
    void setBkColour(uint16_t function, ByteReader& r);
    void setTextColour(uint16_t function, ByteReader& r);
    void setBkMode(uint16_t function, ByteReader& r);
    void setTextAlign(uint16_t function, ByteReader& r);
    void setPolyFillMode(uint16_t function, ByteReader& r);
    void saveDc(uint16_t function, ByteReader& r);
    void restoreDc(uint16_t function, ByteReader& r);

    // Records of the object table.
    void createPen(uint16_t function, ByteReader& r);
    void createBrush(uint16_t function, ByteReader& r);
    void createPatternBrush(uint16_t function, ByteReader& r);
    void createFont(uint16_t function, ByteReader& r);
    void createPlaceholder(uint16_t function, ByteReader& r);
    void selectObject(uint16_t function, ByteReader& r);
    void deleteObject(uint16_t function, ByteReader& r);

    // Records that draw lines, figures and pixels.
    void moveTo(uint16_t function, ByteReader& r);
    void lineTo(uint16_t function, ByteReader& r);
    void polyRecord(uint16_t function, ByteReader& r);
    void polyPolygon(uint16_t function, ByteReader& r);
    void boxRecord(uint16_t function, ByteReader& r);
    void roundRect(uint16_t function, ByteReader& r);
    void arcRecord(uint16_t function, ByteReader& r);
    void setPixel(uint16_t function, ByteReader& r);

    // Records of text, clipping and bitmaps.
    void textOut(uint16_t function, ByteReader& r);
    void extTextOut(uint16_t function, ByteReader& r);
    void clipRect(uint16_t function, ByteReader& r);
    void selectClipRegion(uint16_t function, ByteReader& r);
    void drawImage(uint16_t function, ByteReader& r);

    const QByteArray& bytes_;
    GdiSink* sink_;
    WmfDc dc_;
    std::vector<WmfDc> saved_;
    std::vector<WmfObject> objects_;
    bool windowSet_ = false;
    QPointF windowOrg_;
    QSizeF windowExt_;
};

} // namespace tessaly::metafile::wmf
