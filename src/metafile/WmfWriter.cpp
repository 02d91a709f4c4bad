#include "WmfWriter.h"

#include "CodePage.h"
#include "Dib.h"
#include "EmfParser.h"
#include "RecordTypes.h"

#include "core/runtime/RuntimeError.h"

#include <QRegion>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaly::metafile {

namespace {

// META_HEADER: type 1 (memory), 9 words, version 3.0.
constexpr uint16_t MemoryMetafile = 1;
constexpr uint16_t HeaderWords = 9;
constexpr uint16_t Version300 = 0x0300;
// Offsets of the header fields that are filled in at the end.
constexpr qsizetype SizeOffset = 6;
constexpr qsizetype ObjectsOffset = 10;
constexpr qsizetype MaxRecordOffset = 12;
// Longest face name of a WMF font, NUL included.
constexpr int FaceNameBytes = 32;
// A clip of more pieces than this is kept as its bounding box.
constexpr qsizetype MaxClipPieces = 256;
// Largest coordinate of a picture scaled to fit the 16-bit range, leaving
// room for pen widths and text beyond the bounds.
constexpr double FitLimit = 32000.0;
// Curves are flattened to lines within this many device units.
constexpr double FlatnessScale = 1.0;

uint32_t colourRef(const QColor& colour) {
    return static_cast<uint32_t>(colour.red()) | (static_cast<uint32_t>(colour.green()) << 8) |
           (static_cast<uint32_t>(colour.blue()) << 16);
}

uint16_t penStyle(const GdiPen& pen) {
    if (pen.null)
        return gdi::PsNull;
    uint32_t style = pen.style & (gdi::PsStyleMask | gdi::PsEndcapMask | gdi::PsJoinMask);
    if ((style & gdi::PsStyleMask) == gdi::PsUserStyle || (style & gdi::PsStyleMask) > gdi::PsInsideFrame)
        style = (style & ~gdi::PsStyleMask) | gdi::PsDash; // WMF pens have no dash list of their own
    return static_cast<uint16_t>(style);
}

} // namespace

WmfWriter::WmfWriter(const QRect& bounds, bool scaleToFit) : w_(out_) {
    if (scaleToFit && bounds.isValid()) {
        const double extent =
            std::max({std::abs(double(bounds.left())), std::abs(double(bounds.top())),
                      std::abs(double(bounds.right()) + 1), std::abs(double(bounds.bottom()) + 1),
                      double(bounds.width()), double(bounds.height())});
        if (extent > FitLimit)
            scale_ = FitLimit / extent;
    }
    w_.u16(MemoryMetafile);
    w_.u16(HeaderWords);
    w_.u16(Version300);
    w_.u32(0); // size in words
    w_.u16(0); // objects
    w_.u32(0); // largest record
    w_.u16(0); // parameters: unused
    const QRect b = bounds.isValid() ? bounds : QRect(0, 0, 1, 1);
    begin(meta::SetMapMode).u16(gdi::MmAnisotropic);
    end();
    ByteWriter& org = begin(meta::SetWindowOrg);
    org.i16(coordinate(b.top()));
    org.i16(coordinate(b.left()));
    end();
    ByteWriter& ext = begin(meta::SetWindowExt);
    ext.i16(coordinate(b.height()));
    ext.i16(coordinate(b.width()));
    end();
}

ByteWriter& WmfWriter::begin(uint16_t function) {
    recordStart_ = out_.size();
    w_.u32(0);
    w_.u16(function);
    return w_;
}

void WmfWriter::end() {
    w_.padTo(recordStart_, 2);
    const auto words = static_cast<uint32_t>((out_.size() - recordStart_) / 2);
    w_.patchU32(recordStart_, words);
    maxRecordWords_ = std::max(maxRecordWords_, words);
    recordStart_ = -1;
}

int16_t WmfWriter::coordinate(double value) const {
    return checked(value * scale_);
}

int16_t WmfWriter::checked(double value) {
    const double rounded = std::round(value);
    if (!(rounded >= std::numeric_limits<int16_t>::min() && rounded <= std::numeric_limits<int16_t>::max()))
        raiseError(err::Overflow, QString(), QStringLiteral("ConvertEMFtoWMF"));
    return static_cast<int16_t>(rounded);
}

void WmfWriter::point(const QPointF& p) {
    w_.i16(coordinate(p.x()));
    w_.i16(coordinate(p.y()));
}

void WmfWriter::box(const QRectF& r) {
    w_.i16(coordinate(r.bottom()));
    w_.i16(coordinate(r.right()));
    w_.i16(coordinate(r.top()));
    w_.i16(coordinate(r.left()));
}

void WmfWriter::unscaledBox(const QRect& r) {
    w_.i16(checked(r.top() + r.height()));
    w_.i16(checked(r.left() + r.width()));
    w_.i16(checked(r.top()));
    w_.i16(checked(r.left()));
}

int WmfWriter::allocate() {
    auto free = std::find(table_.begin(), table_.end(), false);
    const int index = static_cast<int>(free - table_.begin());
    if (free == table_.end())
        table_.push_back(true);
    else
        *free = true;
    tableSize_ = std::max(tableSize_, table_.size());
    return index;
}

void WmfWriter::release(int index) {
    const bool pinned = clipSaved_ && (index == savedPen_ || index == savedBrush_ || index == savedFont_);
    if (pinned) {
        deferred_.push_back(index);
        return;
    }
    begin(meta::DeleteObject).u16(static_cast<uint16_t>(index));
    end();
    table_[static_cast<size_t>(index)] = false;
}

void WmfWriter::selectSlot(int& selected, int live) {
    if (live < 0 || selected == live)
        return;
    begin(meta::SelectObject).u16(static_cast<uint16_t>(live));
    end();
    selected = live;
}

void WmfWriter::realizePen(bool forFill) {
    GdiPen wanted = pen_.wanted.value_or(GdiPen{});
    if (forFill)
        wanted.null = true;
    if (pen_.created != wanted) {
        const int index = allocate();
        ByteWriter& w = begin(meta::CreatePenIndirect);
        w.u16(penStyle(wanted));
        w.i16(coordinate(wanted.null ? 0 : wanted.width));
        w.i16(0);
        w.u32(colourRef(wanted.colour));
        end();
        const int old = pen_.live;
        pen_.live = index;
        pen_.created = wanted;
        selectSlot(pen_.selected, index);
        if (old >= 0)
            release(old);
    }
    selectSlot(pen_.selected, pen_.live);
}

void WmfWriter::realizeBrush() {
    const GdiBrush wanted = brush_.wanted.value_or(GdiBrush{});
    if (!brush_.created || !(*brush_.created == wanted)) {
        const int index = allocate();
        if (wanted.kind == GdiBrush::Kind::Pattern && !wanted.pattern.isNull()) {
            ByteWriter& w = begin(meta::DibCreatePatternBrush);
            w.u16(static_cast<uint16_t>(gdi::BsDibPattern));
            w.u16(static_cast<uint16_t>(gdi::DibRgbColors));
            w.bytes(dib::packed24(wanted.pattern));
            end();
        } else {
            ByteWriter& w = begin(meta::CreateBrushIndirect);
            const uint32_t style = wanted.kind == GdiBrush::Kind::Null      ? gdi::BsNull
                                   : wanted.kind == GdiBrush::Kind::Hatched ? gdi::BsHatched
                                                                            : gdi::BsSolid;
            w.u16(static_cast<uint16_t>(style));
            w.u32(colourRef(wanted.colour));
            w.u16(static_cast<uint16_t>(wanted.kind == GdiBrush::Kind::Hatched ? wanted.hatch : 0));
            end();
        }
        const int old = brush_.live;
        brush_.live = index;
        brush_.created = wanted;
        selectSlot(brush_.selected, index);
        if (old >= 0)
            release(old);
    }
    selectSlot(brush_.selected, brush_.live);
}

void WmfWriter::realizeFont() {
    const GdiFont wanted = font_.wanted.value_or(GdiFont{});
    if (font_.created != wanted) {
        const int index = allocate();
        ByteWriter& w = begin(meta::CreateFontIndirect);
        w.i16(coordinate(wanted.height));
        w.i16(coordinate(wanted.width));
        w.i16(static_cast<int16_t>(wanted.escapement));
        w.i16(static_cast<int16_t>(wanted.escapement));
        w.i16(static_cast<int16_t>(std::clamp(wanted.weight, 0, 1000)));
        w.u8(wanted.italic ? 1 : 0);
        w.u8(wanted.underline ? 1 : 0);
        w.u8(wanted.strikeOut ? 1 : 0);
        w.u8(static_cast<uint8_t>(gdi::AnsiCharset));
        w.u8(0); // out precision
        w.u8(0); // clip precision
        w.u8(0); // quality
        w.u8(0); // pitch and family
        QByteArray face = cp1252::encode(wanted.face).left(FaceNameBytes - 1);
        face.append('\0');
        w.bytes(face);
        end();
        const int old = font_.live;
        font_.live = index;
        font_.created = wanted;
        selectSlot(font_.selected, index);
        if (old >= 0)
            release(old);
    }
    selectSlot(font_.selected, font_.live);
}

void WmfWriter::setBackground(const QColor& colour, bool opaque) {
    bkColour_ = colour;
    opaque_ = opaque;
}

void WmfWriter::realizeAttributes(bool forText) {
    if (written_.fillRule != fillRule_) {
        begin(meta::SetPolyFillMode).u16(fillRule_ == Qt::WindingFill ? gdi::Winding : gdi::Alternate);
        end();
        written_.fillRule = fillRule_;
    }
    if (written_.opaque != opaque_) {
        begin(meta::SetBkMode).u16(opaque_ ? gdi::Opaque : gdi::Transparent);
        end();
        written_.opaque = opaque_;
    }
    if (written_.bkColour != bkColour_) {
        begin(meta::SetBkColor).u32(colourRef(bkColour_));
        end();
        written_.bkColour = bkColour_;
    }
    if (!forText)
        return;
    if (written_.textColour != textColour_) {
        begin(meta::SetTextColor).u32(colourRef(textColour_));
        end();
        written_.textColour = textColour_;
    }
    if (written_.textAlign != textAlign_) {
        begin(meta::SetTextAlign).u16(static_cast<uint16_t>(textAlign_));
        end();
        written_.textAlign = textAlign_;
    }
}

void WmfWriter::setClip(const std::optional<QPainterPath>& clip) {
    if (clipSaved_) {
        begin(meta::RestoreDc).i16(-1);
        end();
        clipSaved_ = false;
        written_ = savedAttributes_;
        pen_.selected = savedPen_;
        brush_.selected = savedBrush_;
        font_.selected = savedFont_;
        // Select what is live again, so that nothing still to be deleted is selected.
        selectSlot(pen_.selected, pen_.live);
        selectSlot(brush_.selected, brush_.live);
        selectSlot(font_.selected, font_.live);
        const std::vector<int> waiting = std::move(deferred_);
        deferred_.clear();
        for (int index : waiting)
            release(index);
    }
    if (!clip)
        return;
    begin(meta::SaveDc);
    end();
    clipSaved_ = true;
    savedPen_ = pen_.selected;
    savedBrush_ = brush_.selected;
    savedFont_ = font_.selected;
    savedAttributes_ = written_;
    // The region is worked out in WMF units, whose range is 16 bits: a clip
    // beyond it cannot be written (error 6) and is never rasterised.
    const QPainterPath scaled = QTransform::fromScale(scale_, scale_).map(*clip);
    const QRectF extent = scaled.boundingRect();
    checked(extent.left());
    checked(extent.top());
    checked(extent.right());
    checked(extent.bottom());
    const QRegion region(scaled.toFillPolygon().toPolygon(), clip->fillRule());
    const QRect bounding = region.boundingRect();
    begin(meta::IntersectClipRect);
    unscaledBox(bounding);
    end();
    const QRegion outside = QRegion(bounding) - region;
    if (outside.rectCount() > MaxClipPieces)
        return;
    for (const QRect& r : outside) {
        begin(meta::ExcludeClipRect);
        unscaledBox(r);
        end();
    }
}

void WmfWriter::polyline(const QPolygonF& points) {
    if (points.size() < 2)
        return;
    realizePen();
    realizeAttributes(false);
    ByteWriter& w = begin(meta::Polyline);
    w.i16(checked(static_cast<double>(points.size())));
    for (const QPointF& p : points)
        point(p);
    end();
}

void WmfWriter::drawPolygons(const QList<QPolygonF>& polygons) {
    realizeBrush();
    realizeAttributes(false);
    if (polygons.size() == 1) {
        ByteWriter& w = begin(meta::Polygon);
        w.i16(checked(static_cast<double>(polygons.first().size())));
        for (const QPointF& p : polygons.first())
            point(p);
        end();
        return;
    }
    ByteWriter& w = begin(meta::PolyPolygon);
    w.i16(checked(static_cast<double>(polygons.size())));
    for (const QPolygonF& p : polygons)
        w.i16(checked(static_cast<double>(p.size())));
    for (const QPolygonF& p : polygons)
        for (const QPointF& q : p)
            point(q);
    end();
}

void WmfWriter::polyPolygon(const QList<QPolygonF>& polygons) {
    realizePen();
    drawPolygons(polygons);
}

void WmfWriter::rectangle(const QRectF& r) {
    realizePen();
    realizeBrush();
    realizeAttributes(false);
    begin(meta::Rectangle);
    box(r);
    end();
}

void WmfWriter::roundRect(const QRectF& r, const QSizeF& corner) {
    realizePen();
    realizeBrush();
    realizeAttributes(false);
    ByteWriter& w = begin(meta::RoundRect);
    w.i16(coordinate(corner.height()));
    w.i16(coordinate(corner.width()));
    box(r);
    end();
}

void WmfWriter::ellipse(const QRectF& r) {
    realizePen();
    realizeBrush();
    realizeAttributes(false);
    begin(meta::Ellipse);
    box(r);
    end();
}

void WmfWriter::path(const QPainterPath& figure, bool stroke, bool fill) {
    // WMF has no curves: the figure is flattened into polygons and lines.
    const QList<QPolygonF> parts =
        figure.toSubpathPolygons(QTransform::fromScale(FlatnessScale, FlatnessScale));
    if (parts.isEmpty())
        return;
    setFillRule(figure.fillRule());
    bool allClosed = true;
    for (const QPolygonF& p : parts)
        allClosed = allClosed && p.size() > 2 && p.isClosed();
    if (fill && (allClosed || !stroke)) {
        realizePen(!stroke);
        drawPolygons(parts);
        return;
    }
    if (fill) {
        realizePen(true);
        drawPolygons(parts);
    }
    for (const QPolygonF& p : parts)
        polyline(p);
}

void WmfWriter::text(const QPointF& reference, const QString& text, const std::vector<double>& advances,
                     uint32_t options, const QRectF& r) {
    realizeFont();
    realizeAttributes(true);
    const QByteArray bytes = cp1252::encode(text);
    const uint16_t wmfOptions = static_cast<uint16_t>(options & (gdi::EtoOpaque | gdi::EtoClipped));
    const bool withBox = wmfOptions != 0 && r.isValid();
    ByteWriter& w = begin(meta::ExtTextOut);
    w.i16(coordinate(reference.y()));
    w.i16(coordinate(reference.x()));
    w.i16(checked(static_cast<double>(bytes.size())));
    w.u16(withBox ? wmfOptions : 0);
    if (withBox) {
        w.i16(coordinate(r.left()));
        w.i16(coordinate(r.top()));
        w.i16(coordinate(r.right()));
        w.i16(coordinate(r.bottom()));
    }
    w.bytes(bytes);
    if (bytes.size() % 2 != 0)
        w.u8(0);
    if (advances.size() == static_cast<size_t>(bytes.size())) {
        // Rounded from the running sum, so the line keeps its length.
        double running = 0;
        double placed = 0;
        for (double a : advances) {
            running += a * scale_;
            const double next = std::round(running);
            w.i16(checked(next - placed));
            placed = next;
        }
    }
    end();
}

void WmfWriter::image(const QRectF& destination, const QImage& picture, const QTransform& transform) {
    realizeAttributes(false);
    const QRectF device = transform.mapRect(destination);
    ByteWriter& w = begin(meta::StretchDib);
    w.u32(gdi::SrcCopy);
    w.u16(static_cast<uint16_t>(gdi::DibRgbColors));
    w.i16(checked(picture.height()));
    w.i16(checked(picture.width()));
    w.i16(0);
    w.i16(0);
    w.i16(checked(std::round(device.bottom() * scale_) - std::round(device.top() * scale_)));
    w.i16(checked(std::round(device.right() * scale_) - std::round(device.left() * scale_)));
    w.i16(coordinate(device.top()));
    w.i16(coordinate(device.left()));
    w.bytes(dib::packed24(picture));
    end();
}

QByteArray WmfWriter::finish() {
    if (clipSaved_)
        setClip(std::nullopt);
    // Nothing stays allocated: the last objects go too.
    if (pen_.live >= 0) {
        begin(meta::DeleteObject).u16(static_cast<uint16_t>(pen_.live));
        end();
    }
    if (brush_.live >= 0) {
        begin(meta::DeleteObject).u16(static_cast<uint16_t>(brush_.live));
        end();
    }
    if (font_.live >= 0) {
        begin(meta::DeleteObject).u16(static_cast<uint16_t>(font_.live));
        end();
    }
    begin(meta::Eof);
    end();
    w_.patchU32(SizeOffset, static_cast<uint32_t>(out_.size() / 2));
    w_.patchU16(ObjectsOffset, static_cast<uint16_t>(tableSize_));
    w_.patchU32(MaxRecordOffset, maxRecordWords_);
    return out_;
}

QByteArray convertEmfToWmf(const QByteArray& emf, bool scaleToFit) {
    const EmfHeader header = readEmfHeader(emf);
    WmfWriter writer(header.bounds, scaleToFit);
    parseEmf(emf, writer);
    return writer.finish();
}

} // namespace tessaly::metafile
