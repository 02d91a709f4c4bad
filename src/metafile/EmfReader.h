#pragma once

#include "ByteReader.h"
#include "GdiSink.h"
#include "PageMapping.h"

#include <QByteArray>
#include <QTransform>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <variant>
#include <vector>

// The reader behind parseEmf and checkEmfRecords: it walks the records of an
// enhanced metafile and plays them into a sink, keeping the device context
// the records change.
namespace tessaly::metafile::emf {

// A pen as the file describes it, with lengths in logical units.
struct LogicalPen {
    uint32_t style = gdi::PsSolid;
    double width = 0;
    bool geometric = false;
    QColor colour = Qt::black;
    std::vector<double> dashes;
};

struct LogicalFont {
    GdiFont font; // height and width still in logical units
};

using GdiObject = std::variant<LogicalPen, GdiBrush, LogicalFont>;

// The device context: what SaveDC keeps and RestoreDC brings back.
struct DcState {
    PageMapping page;
    QTransform world;
    std::optional<GdiObject> pen;
    std::optional<GdiObject> brush;
    std::optional<GdiObject> font;
    QColor textColour = Qt::black;
    QColor bkColour = Qt::white;
    bool opaque = true;
    uint32_t textAlign = 0;
    Qt::FillRule fillRule = Qt::OddEvenFill;
    QPointF current;
    std::optional<QPainterPath> clip;
};

// The stock object of an index (without the stock flag).
GdiObject stockObject(uint32_t index);

class EmfReader {
public:
    EmfReader(const QByteArray& bytes, GdiSink* sink) : bytes_(bytes), sink_(sink) {}

    // Walks every record, playing each into the sink when there is one;
    // returns the number of records, the header and EMR_EOF included.
    uint32_t run();

private:
    // A record's handler; `type` tells apart the records one handler reads.
    using Handler = void (EmfReader::*)(uint32_t type, ByteReader& r);
    // The handler of a record type; null for records that do not draw
    // (comments, palettes, ICM, ...).
    static Handler handlerFor(uint32_t type);
    void record(uint32_t type, ByteReader& r);

    // The mapping from logical to device units, kept until a record changes it.
    const QTransform& toDevice() const {
        if (!toDevice_)
            toDevice_ = dc_.world * dc_.page.transform(devicePerMm_);
        return *toDevice_;
    }
    QPointF map(const QPointF& p) const { return toDevice().map(p); }
    double lengthScale() const { return std::sqrt(std::abs(toDevice().determinant())); }
    bool axisAligned() const {
        const QTransform t = toDevice();
        return qFuzzyIsNull(t.m12()) && qFuzzyIsNull(t.m21());
    }

    static QPolygonF readPoints(ByteReader& r, uint32_t count, bool small);
    static QRectF readRect(ByteReader& r); // RECTL as two corners
    // A POINTL or SIZEL: x first, then y (read in that order).
    static QPointF readPointL(ByteReader& r);
    static QSizeF readSizeL(ByteReader& r);
    std::vector<double> readAdvances(const ByteReader& r, uint32_t chars, uint32_t offDx,
                                     uint32_t options) const;

    // Telling the sink the state the next drawing needs.
    void flushState();
    void flushPen();
    void flushBrush();
    void flushFont();

    // Drawing in logical units, into the open path or onto the sink.
    void drawPolyline(const QPolygonF& logical);
    void drawPolygons(const QList<QPolygonF>& logical);
    void drawFigure(const QPainterPath& logicalPath, bool stroke, bool fill);
    void drawBox(uint32_t type, const QRectF& box, const QSizeF& corner = {});
    void drawPolyTo(const QPolygonF& points);
    void drawBeziers(const QPolygonF& points, bool to);
    void fillWithoutSource(uint32_t rop, const QRectF& destination);

    void createObject(uint32_t index, GdiObject object);
    void selectObject(uint32_t index);
    void setClip(std::optional<QPainterPath> clip);
    void combineClip(const QPainterPath& region, uint32_t mode);

    // Records of the device context: mapping, modes, colours, saved states.
    void setWindowExt(uint32_t type, ByteReader& r);
    void setWindowOrg(uint32_t type, ByteReader& r);
    void setViewportExt(uint32_t type, ByteReader& r);
    void setViewportOrg(uint32_t type, ByteReader& r);
    void setMapMode(uint32_t type, ByteReader& r);
    void setBkMode(uint32_t type, ByteReader& r);
    void setPolyFillMode(uint32_t type, ByteReader& r);
    void setTextAlign(uint32_t type, ByteReader& r);
    void setTextColour(uint32_t type, ByteReader& r);
    void setBkColour(uint32_t type, ByteReader& r);
    void saveDc(uint32_t type, ByteReader& r);
    void restoreDc(uint32_t type, ByteReader& r);
    void worldTransform(uint32_t type, ByteReader& r);

    // Records of the object table.
    void createPen(uint32_t type, ByteReader& r);
    void extCreatePen(uint32_t type, ByteReader& r);
    void createBrush(uint32_t type, ByteReader& r);
    void createPatternBrush(uint32_t type, ByteReader& r);
    void createFont(uint32_t type, ByteReader& r);
    void selectObjectRecord(uint32_t type, ByteReader& r);
    void deleteObject(uint32_t type, ByteReader& r);

    // Records that clip.
    void selectClipPath(uint32_t type, ByteReader& r);
    void selectClipRegion(uint32_t type, ByteReader& r);
    void clipRect(uint32_t type, ByteReader& r);

    // Records that draw lines and figures.
    void moveTo(uint32_t type, ByteReader& r);
    void lineTo(uint32_t type, ByteReader& r);
    void polyRecord(uint32_t type, ByteReader& r);
    void polyPolyRecord(uint32_t type, ByteReader& r);
    void boxRecord(uint32_t type, ByteReader& r);
    void roundRect(uint32_t type, ByteReader& r);
    void arcRecord(uint32_t type, ByteReader& r);

    // Records of paths.
    void beginPath(uint32_t type, ByteReader& r);
    void endPath(uint32_t type, ByteReader& r);
    void abortPath(uint32_t type, ByteReader& r);
    void closeFigure(uint32_t type, ByteReader& r);
    void paintPath(uint32_t type, ByteReader& r);

    // Records of text and bitmaps.
    void drawText(uint32_t type, ByteReader& r);
    void drawBitmap(uint32_t type, ByteReader& r);

    const QByteArray& bytes_;
    GdiSink* sink_; // null: structure check only
    QSizeF devicePerMm_{96 / 25.4, 96 / 25.4};
    DcState dc_;
    std::vector<DcState> saved_;
    std::unordered_map<uint32_t, GdiObject> objects_;
    bool inPath_ = false;
    QPainterPath path_;         // the path being built, in device units
    QPainterPath finishedPath_; // the last path closed by EMR_ENDPATH
    // What the sink was last told, to tell only changes.
    std::optional<GdiPen> sentPen_;
    std::optional<GdiBrush> sentBrush_;
    std::optional<GdiFont> sentFont_;
    bool stateDirty_ = true;
    mutable std::optional<QTransform> toDevice_;
};

} // namespace tessaly::metafile::emf
