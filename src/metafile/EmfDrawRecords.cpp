// The records of an enhanced metafile that draw: lines, figures, paths, text
// and bitmaps.
#include "CodePage.h"
#include "Dib.h"
#include "EmfReader.h"
#include "RecordReading.h"
#include "RecordTypes.h"

#include <QLineF>

namespace tessaly::metafile::emf {

namespace {

// Bytes of one advance of a text record, and of an x and y pair (ETO_PDY).
constexpr qsizetype AdvanceSize = 4;
constexpr qsizetype AdvancePairSize = 8;
// Offset of the parameters that follow a record's bounds (RECTL).
constexpr qsizetype AfterBounds = 16;
// Offset of what a text or bitmap record gives after its bounds.
constexpr qsizetype AfterRecordBounds = 24;
// Bytes of the source's XFORM in a blit record.
constexpr qsizetype SourceTransformSize = 24;

// What one of the records of a single run of points draws.
struct PolyKind {
    bool small = false;   // 16-bit points
    bool polygon = false; // a closed, filled figure
    bool bezier = false;  // cubic Bezier segments
    bool to = false;      // from the current position, which moves to the last point
};

PolyKind polyKind(uint32_t type) {
    switch (type) {
    case emr::Polygon:
        return {.polygon = true};
    case emr::Polygon16:
        return {.small = true, .polygon = true};
    case emr::PolyBezier:
        return {.bezier = true};
    case emr::PolyBezier16:
        return {.small = true, .bezier = true};
    case emr::PolylineTo:
        return {.to = true};
    case emr::PolylineTo16:
        return {.small = true, .to = true};
    case emr::PolyBezierTo:
        return {.bezier = true, .to = true};
    case emr::PolyBezierTo16:
        return {.small = true, .bezier = true, .to = true};
    case emr::Polyline16:
        return {.small = true};
    default: // EMR_POLYLINE
        return {};
    }
}

// Where a blit record draws, what it takes, and where its bitmap is.
struct Blit {
    QRectF destination;
    QRect source;
    uint32_t rop = gdi::SrcCopy;
    uint32_t offBmi = 0;
    uint32_t cbBmi = 0;
    uint32_t offBits = 0;
    uint32_t cbBits = 0;
};

Blit readStretchDiBits(ByteReader& r) {
    Blit b;
    const int xDest = r.i32();
    const int yDest = r.i32();
    const int xSrc = r.i32();
    const int ySrc = r.i32();
    const int cxSrc = r.i32();
    const int cySrc = r.i32();
    b.offBmi = r.u32();
    b.cbBmi = r.u32();
    b.offBits = r.u32();
    b.cbBits = r.u32();
    r.u32(); // usage
    b.rop = r.u32();
    const int cxDest = r.i32();
    const int cyDest = r.i32();
    b.destination = QRectF(xDest, yDest, cxDest, cyDest);
    b.source = QRect(xSrc, ySrc, cxSrc, cySrc);
    return b;
}

// EMR_BITBLT and EMR_STRETCHBLT; only the second gives the source's own size.
Blit readBlt(ByteReader& r, bool stretch) {
    Blit b;
    const int xDest = r.i32();
    const int yDest = r.i32();
    const int cxDest = r.i32();
    const int cyDest = r.i32();
    b.rop = r.u32();
    const int xSrc = r.i32();
    const int ySrc = r.i32();
    r.skip(SourceTransformSize);
    r.u32(); // background colour
    r.u32(); // usage
    b.offBmi = r.u32();
    b.cbBmi = r.u32();
    b.offBits = r.u32();
    b.cbBits = r.u32();
    int cxSrc = cxDest;
    int cySrc = cyDest;
    if (stretch) {
        cxSrc = r.i32();
        cySrc = r.i32();
    }
    b.destination = QRectF(xDest, yDest, cxDest, cyDest);
    b.source = QRect(xSrc, ySrc, cxSrc, cySrc);
    return b;
}

} // namespace

// --- drawing in logical units ------------------------------------------------

void EmfReader::drawPolyline(const QPolygonF& logical) {
    if (logical.isEmpty())
        return;
    const QPolygonF device = toDevice().map(logical);
    if (inPath_) {
        path_.moveTo(device.first());
        for (qsizetype i = 1; i < device.size(); ++i)
            path_.lineTo(device[i]);
        return;
    }
    flushState();
    sink_->polyline(device);
}

void EmfReader::drawPolygons(const QList<QPolygonF>& logical) {
    QList<QPolygonF> device;
    const QTransform t = toDevice();
    for (const QPolygonF& p : logical)
        if (!p.isEmpty())
            device.append(t.map(p));
    if (device.isEmpty())
        return;
    if (inPath_) {
        for (const QPolygonF& p : device) {
            path_.addPolygon(p);
            path_.closeSubpath();
        }
        return;
    }
    flushState();
    sink_->polyPolygon(device);
}

void EmfReader::drawFigure(const QPainterPath& logicalPath, bool stroke, bool fill) {
    const QPainterPath device = toDevice().map(logicalPath);
    if (inPath_) {
        path_.addPath(device);
        return;
    }
    flushState();
    sink_->path(device, stroke, fill);
}

void EmfReader::drawBox(uint32_t type, const QRectF& box, const QSizeF& corner) {
    const QRectF normal = box.normalized();
    if (!axisAligned() || inPath_) {
        QPainterPath path;
        if (type == emr::Rectangle)
            path.addRect(normal);
        else if (type == emr::Ellipse)
            path.addEllipse(normal);
        else
            path.addRoundedRect(normal, corner.width() / 2, corner.height() / 2);
        drawFigure(path, true, true);
        return;
    }
    flushState();
    const QRectF device = toDevice().mapRect(normal);
    if (type == emr::Rectangle) {
        sink_->rectangle(device);
    } else if (type == emr::Ellipse) {
        sink_->ellipse(device);
    } else {
        const QTransform t = toDevice();
        sink_->roundRect(device,
                         QSizeF(std::abs(corner.width() * t.m11()), std::abs(corner.height() * t.m22())));
    }
}

// Lines from the current position through the points, which leave it on the last.
void EmfReader::drawPolyTo(const QPolygonF& points) {
    if (inPath_) {
        for (const QPointF& p : points)
            path_.lineTo(map(p));
    } else {
        QPolygonF line = points;
        line.prepend(dc_.current);
        drawPolyline(line);
    }
    dc_.current = points.last();
}

// Cubic Beziers through the points: from the first point, or from the
// current position (which then moves to the last end point).
void EmfReader::drawBeziers(const QPolygonF& points, bool to) {
    QPainterPath curve;
    qsizetype i = 0;
    if (to) {
        curve.moveTo(dc_.current);
    } else {
        curve.moveTo(points[0]);
        i = 1;
    }
    for (; i + 2 < points.size(); i += 3)
        curve.cubicTo(points[i], points[i + 1], points[i + 2]);
    if (to) {
        dc_.current = curve.currentPosition();
        if (inPath_) {
            const QPainterPath device = toDevice().map(curve);
            for (int e = 1; e + 2 < device.elementCount(); e += 3)
                path_.cubicTo(device.elementAt(e), device.elementAt(e + 1), device.elementAt(e + 2));
            return;
        }
    }
    drawFigure(curve, true, false);
}

// --- records of lines and figures --------------------------------------------

void EmfReader::moveTo(uint32_t, ByteReader& r) {
    dc_.current = readPointL(r);
    if (inPath_)
        path_.moveTo(map(dc_.current));
}

void EmfReader::lineTo(uint32_t, ByteReader& r) {
    const QPointF to = readPointL(r);
    if (inPath_)
        path_.lineTo(map(to));
    else
        drawPolyline(QPolygonF({dc_.current, to}));
    dc_.current = to;
}

void EmfReader::polyRecord(uint32_t type, ByteReader& r) {
    r.skip(AfterBounds);
    const uint32_t count = r.u32();
    const PolyKind kind = polyKind(type);
    const QPolygonF points = readPoints(r, count, kind.small);
    if (points.isEmpty())
        return;
    if (kind.polygon)
        drawPolygons({points});
    else if (kind.bezier)
        drawBeziers(points, kind.to);
    else if (kind.to)
        drawPolyTo(points);
    else
        drawPolyline(points);
}

void EmfReader::polyPolyRecord(uint32_t type, ByteReader& r) {
    r.skip(AfterBounds);
    const uint32_t polys = r.u32();
    const uint32_t total = r.u32();
    if (polys > static_cast<uint64_t>(r.remaining() / 4))
        raiseInvalidPicture("polygon count larger than its record");
    std::vector<uint32_t> counts(polys);
    uint64_t sum = 0;
    for (uint32_t& c : counts) {
        c = r.u32();
        sum += c;
    }
    if (sum != total)
        raiseInvalidPicture("polygon point counts");
    const bool small = type == emr::PolyPolyline16 || type == emr::PolyPolygon16;
    QPolygonF all = readPoints(r, total, small);
    QList<QPolygonF> parts;
    qsizetype at = 0;
    for (uint32_t c : counts) {
        parts.append(all.mid(at, c));
        at += c;
    }
    if (type == emr::PolyPolygon || type == emr::PolyPolygon16)
        drawPolygons(parts);
    else
        for (const QPolygonF& p : parts)
            drawPolyline(p);
}

void EmfReader::boxRecord(uint32_t type, ByteReader& r) {
    drawBox(type, readRect(r));
}

void EmfReader::roundRect(uint32_t type, ByteReader& r) {
    const QRectF box = readRect(r);
    const QSizeF corner = readSizeL(r);
    drawBox(type, box, corner);
}

void EmfReader::arcRecord(uint32_t type, ByteReader& r) {
    const QRectF box = readRect(r);
    const QPointF start = readPointL(r);
    const QPointF end = readPointL(r);
    const ArcKind kind = type == emr::Pie     ? ArcKind::Pie
                         : type == emr::Chord ? ArcKind::Chord
                                              : ArcKind::Open;
    QPainterPath arc = arcPath(box, start, end, kind);
    if (type == emr::ArcTo && !arc.isEmpty()) {
        QPainterPath joined;
        joined.moveTo(dc_.current);
        joined.connectPath(arc);
        arc = joined;
        dc_.current = arc.currentPosition();
    }
    drawFigure(arc, true, kind != ArcKind::Open);
}

// --- records of paths --------------------------------------------------------

void EmfReader::beginPath(uint32_t, ByteReader&) {
    inPath_ = true;
    path_ = QPainterPath();
    path_.moveTo(map(dc_.current));
}

void EmfReader::endPath(uint32_t, ByteReader&) {
    inPath_ = false;
    finishedPath_ = path_;
    finishedPath_.setFillRule(dc_.fillRule);
}

void EmfReader::abortPath(uint32_t, ByteReader&) {
    inPath_ = false;
    finishedPath_ = path_ = QPainterPath();
}

void EmfReader::closeFigure(uint32_t, ByteReader&) {
    if (inPath_)
        path_.closeSubpath();
}

// EMR_FILLPATH, EMR_STROKEPATH and EMR_STROKEANDFILLPATH: the closed path, once.
void EmfReader::paintPath(uint32_t type, ByteReader&) {
    if (inPath_ || finishedPath_.isEmpty())
        return;
    flushState();
    finishedPath_.setFillRule(dc_.fillRule);
    sink_->path(finishedPath_, type != emr::FillPath, type != emr::StrokePath);
    finishedPath_ = QPainterPath();
}

// --- records of text and bitmaps ---------------------------------------------

void EmfReader::drawText(uint32_t type, ByteReader& r) {
    const bool wide = type == emr::ExtTextOutW;
    r.seek(AfterRecordBounds);
    r.u32(); // graphics mode
    r.f32();
    r.f32();
    const double x = r.i32();
    const double y = r.i32();
    const uint32_t chars = r.u32();
    const uint32_t offString = r.u32();
    const uint32_t options = r.u32();
    const QRectF box = readRect(r);
    const uint32_t offDx = r.u32();
    const qsizetype unit = wide ? 2 : 1;
    if (chars > static_cast<uint64_t>(r.size() / unit))
        raiseInvalidPicture("text longer than its record");
    ByteReader s = r.sub(offString, static_cast<qsizetype>(chars) * unit);
    const QString text = wide ? s.utf16(chars) : cp1252::decode(s.bytes(chars));
    const std::vector<double> advances = readAdvances(r, chars, offDx, options);
    if (inPath_ || text.isEmpty())
        return;
    flushState();
    QPointF reference = map(QPointF(x, y));
    if (dc_.textAlign & gdi::TaUpdateCp) {
        reference = map(dc_.current);
        double total = 0;
        for (double a : advances)
            total += a;
        dc_.current = toDevice().inverted().map(reference + QPointF(total, 0));
    }
    const QRectF deviceBox =
        (options & (gdi::EtoOpaque | gdi::EtoClipped)) ? toDevice().mapRect(box.normalized()) : QRectF();
    sink_->text(reference, text, advances, options, deviceBox);
}

// The steps between the characters of a text record, in device units; none
// when the record gives none or gives too few.
std::vector<double> EmfReader::readAdvances(const ByteReader& r, uint32_t chars, uint32_t offDx,
                                            uint32_t options) const {
    std::vector<double> advances;
    const qsizetype perChar = (options & gdi::EtoPdy) ? AdvancePairSize : AdvanceSize;
    if (offDx == 0 || offDx >= static_cast<uint64_t>(r.size()) ||
        static_cast<qsizetype>(chars) * perChar > r.size() - offDx)
        return advances;
    ByteReader d = r.sub(offDx, static_cast<qsizetype>(chars) * perChar);
    const QTransform t = toDevice();
    const double sx = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).length();
    for (uint32_t i = 0; i < chars; ++i) {
        advances.push_back(d.i32() * sx);
        if (perChar == AdvancePairSize)
            d.i32();
    }
    return advances;
}

void EmfReader::drawBitmap(uint32_t type, ByteReader& r) {
    r.seek(AfterRecordBounds);
    const Blit blit = type == emr::StretchDiBits ? readStretchDiBits(r) : readBlt(r, type == emr::StretchBlt);
    if (inPath_)
        return;
    if (blit.cbBmi == 0) {
        fillWithoutSource(blit.rop, blit.destination);
        return;
    }
    const ByteReader header = r.sub(blit.offBmi, blit.cbBmi);
    const ByteReader bits = r.sub(blit.offBits, blit.cbBits);
    const QImage image = dib::decode(header.data(), header.size(), bits.data(), bits.size());
    if (image.isNull())
        return;
    const std::optional<QImage> part = blitSource(image, header, blit.source, blit.destination);
    if (!part)
        return;
    flushState();
    sink_->image(blit.destination.normalized(), *part, toDevice());
}

// A blit without a source bitmap: its raster operation fills the destination,
// without an outline, or draws nothing.
void EmfReader::fillWithoutSource(uint32_t rop, const QRectF& destination) {
    if (!fillsWithoutSource(rop))
        return;
    flushState();
    if (const std::optional<GdiBrush> fill = blitFill(rop)) {
        sink_->setBrush(*fill);
        sentBrush_ = *fill;
    }
    const GdiPen none = nullPen();
    sink_->setPen(none);
    sentPen_ = none;
    stateDirty_ = true;
    sink_->polyPolygon({mappedRect(toDevice(), destination.normalized())});
}

} // namespace tessaly::metafile::emf
