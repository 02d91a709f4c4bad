#include "WmfReader.h"

#include "CodePage.h"
#include "Dib.h"
#include "PageMapping.h"
#include "RecordReading.h"
#include "WmfParser.h"

#include <unordered_map>

namespace tessaly::metafile::wmf {

namespace {

// Largest object table a file may ask for.
constexpr size_t MaxObjects = 65535;
// Size of a record's own header: its size in words (32 bits) and its function (16 bits).
constexpr qsizetype RecordHeaderSize = 6;
// The side of the square that SetPixel paints, in logical units.
constexpr double PixelSide = 2;

// Where a bitmap record draws and what part of its bitmap it takes.
struct Blit {
    QRect source;
    QRectF destination;
};

// The rectangles of META_STRETCHDIB, META_DIBSTRETCHBLT and META_DIBBITBLT,
// in the order they come; a record without a bitmap has one more word first.
Blit readBlit(ByteReader& r, uint16_t function, bool withBitmap) {
    if (function == meta::StretchDib) {
        r.u16(); // colour usage
        const int sh = r.i16(), sw = r.i16(), sy = r.i16(), sx = r.i16();
        const int dh = r.i16(), dw = r.i16(), dy = r.i16(), dx = r.i16();
        return {QRect(sx, sy, sw, sh), QRectF(dx, dy, dw, dh)};
    }
    if (function == meta::DibStretchBlt) {
        if (!withBitmap)
            r.u16();
        const int sh = r.i16(), sw = r.i16(), sy = r.i16(), sx = r.i16();
        const int dh = r.i16(), dw = r.i16(), dy = r.i16(), dx = r.i16();
        return {QRect(sx, sy, sw, sh), QRectF(dx, dy, dw, dh)};
    }
    const int sy = r.i16(), sx = r.i16();
    if (!withBitmap)
        r.u16();
    const int h = r.i16(), w = r.i16(), dy = r.i16(), dx = r.i16();
    return {QRect(sx, sy, w, h), QRectF(dx, dy, w, h)};
}

// Text of `length` single-byte characters, read past the pad byte that keeps
// records to whole words where the record has one.
QString readText(ByteReader& r, int16_t length) {
    if (length < 0)
        raiseInvalidPicture("text length");
    const QString text = cp1252::decode(r.bytes(length));
    if (length % 2 != 0 && r.remaining() > 0)
        r.skip(1);
    return text;
}

} // namespace

// --- walking the records ---------------------------------------------------

uint32_t WmfReader::run() {
    const WmfHeader header = readWmfHeader(bytes_);
    objects_.assign(header.objects, std::monostate{});
    ByteReader all(bytes_);
    qsizetype offset = header.metaOffset + header.headerWords * 2;
    uint32_t count = 0;
    if (sink_)
        flush();
    while (true) {
        if (offset + RecordHeaderSize > bytes_.size())
            raiseInvalidPicture("metafile ends without META_EOF");
        const uint32_t words = all.u32At(offset);
        const uint16_t function = all.u16At(offset + 4);
        if (words < 3 || words > static_cast<uint64_t>((bytes_.size() - offset) / 2))
            raiseInvalidPicture("metafile record size");
        ++count;
        if (function == meta::Eof)
            return count;
        ByteReader r = all.sub(offset, static_cast<qsizetype>(words) * 2);
        r.seek(RecordHeaderSize);
        if (const Handler handler = handlerFor(function))
            (this->*handler)(function, r);
        offset += static_cast<qsizetype>(words) * 2;
    }
}

WmfReader::Handler WmfReader::handlerFor(uint16_t function) {
    static const std::unordered_map<uint16_t, Handler> handlers = {
        // The window and the device context.
        {meta::SetWindowOrg, &WmfReader::setWindowOrg},
        {meta::SetWindowExt, &WmfReader::setWindowExt},
        {meta::SetMapMode, &WmfReader::setMapMode},
        {meta::SetBkColor, &WmfReader::setBkColour},
        {meta::SetTextColor, &WmfReader::setTextColour},
        {meta::SetBkMode, &WmfReader::setBkMode},
        {meta::SetTextAlign, &WmfReader::setTextAlign},
        {meta::SetPolyFillMode, &WmfReader::setPolyFillMode},
        {meta::SaveDc, &WmfReader::saveDc},
        {meta::RestoreDc, &WmfReader::restoreDc},
        // The object table.
        {meta::CreatePenIndirect, &WmfReader::createPen},
        {meta::CreateBrushIndirect, &WmfReader::createBrush},
        {meta::DibCreatePatternBrush, &WmfReader::createPatternBrush},
        {meta::CreateFontIndirect, &WmfReader::createFont},
        {meta::CreatePalette, &WmfReader::createPlaceholder},
        {meta::CreatePatternBrush, &WmfReader::createPlaceholder},
        {meta::CreateRegion, &WmfReader::createPlaceholder},
        {meta::SelectObject, &WmfReader::selectObject},
        {meta::DeleteObject, &WmfReader::deleteObject},
        // Lines, figures and pixels.
        {meta::MoveTo, &WmfReader::moveTo},
        {meta::LineTo, &WmfReader::lineTo},
        {meta::Polyline, &WmfReader::polyRecord},
        {meta::Polygon, &WmfReader::polyRecord},
        {meta::PolyPolygon, &WmfReader::polyPolygon},
        {meta::Rectangle, &WmfReader::boxRecord},
        {meta::Ellipse, &WmfReader::boxRecord},
        {meta::RoundRect, &WmfReader::roundRect},
        {meta::Arc, &WmfReader::arcRecord},
        {meta::Pie, &WmfReader::arcRecord},
        {meta::Chord, &WmfReader::arcRecord},
        {meta::SetPixel, &WmfReader::setPixel},
        // Text, clipping and bitmaps.
        {meta::TextOut, &WmfReader::textOut},
        {meta::ExtTextOut, &WmfReader::extTextOut},
        {meta::IntersectClipRect, &WmfReader::clipRect},
        {meta::ExcludeClipRect, &WmfReader::clipRect},
        {meta::SelectClipRegion, &WmfReader::selectClipRegion},
        {meta::StretchDib, &WmfReader::drawImage},
        {meta::DibStretchBlt, &WmfReader::drawImage},
        {meta::DibBitBlt, &WmfReader::drawImage},
    };
    const auto it = handlers.find(function);
    return it == handlers.end() ? nullptr : it->second;
}

QPointF WmfReader::readPoint(ByteReader& r) {
    const double y = r.i16();
    const double x = r.i16();
    return mapPoint(x, y);
}

QRectF WmfReader::readBox(ByteReader& r) {
    const double bottom = r.i16();
    const double right = r.i16();
    const double top = r.i16();
    const double left = r.i16();
    return QRectF(mapPoint(left, top), mapPoint(right, bottom));
}

QPolygonF WmfReader::readPoints(ByteReader& r, qsizetype count) {
    if (count < 0 || count > r.remaining() / 4)
        raiseInvalidPicture("point count larger than its record");
    QPolygonF points;
    points.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        const double x = r.i16();
        const double y = r.i16();
        points.append(mapPoint(x, y));
    }
    return points;
}

void WmfReader::flush() {
    if (!sink_)
        return;
    sink_->setPen(dc_.pen);
    sink_->setBrush(dc_.brush);
    sink_->setFont(dc_.font);
    sink_->setTextColour(dc_.textColour);
    sink_->setBackground(dc_.bkColour, dc_.opaque);
    sink_->setTextAlign(dc_.textAlign);
    sink_->setFillRule(dc_.fillRule);
}

// --- records of the window and the device context ----------------------------

void WmfReader::setWindowOrg(uint16_t, ByteReader& r) {
    windowOrg_ = readPoint(r);
    windowSet_ = true;
}

void WmfReader::setWindowExt(uint16_t, ByteReader& r) {
    const double y = r.i16();
    const double x = r.i16();
    windowExt_ = fixedMode() ? QSizeF(x, -y) : QSizeF(x, y);
    windowSet_ = true;
}

void WmfReader::setMapMode(uint16_t, ByteReader& r) {
    dc_.mapMode = r.u16();
}

void WmfReader::setBkColour(uint16_t, ByteReader& r) {
    dc_.bkColour = fromColourRef(r.u32());
    flush();
}

void WmfReader::setTextColour(uint16_t, ByteReader& r) {
    dc_.textColour = fromColourRef(r.u32());
    flush();
}

void WmfReader::setBkMode(uint16_t, ByteReader& r) {
    dc_.opaque = r.u16() == gdi::Opaque;
    flush();
}

void WmfReader::setTextAlign(uint16_t, ByteReader& r) {
    dc_.textAlign = r.u16();
    flush();
}

void WmfReader::setPolyFillMode(uint16_t, ByteReader& r) {
    dc_.fillRule = r.u16() == gdi::Winding ? Qt::WindingFill : Qt::OddEvenFill;
    flush();
}

void WmfReader::saveDc(uint16_t, ByteReader&) {
    if (saved_.size() < MaxSavedStates)
        saved_.push_back(dc_);
}

void WmfReader::restoreDc(uint16_t, ByteReader& r) {
    const std::optional<size_t> target = restoreTarget(r.i16(), saved_.size());
    if (!target)
        return;
    dc_ = saved_[*target];
    saved_.resize(*target);
    flush();
    if (sink_)
        sink_->setClip(dc_.clip);
}

// --- records of the object table ---------------------------------------------

void WmfReader::createObject(WmfObject object) {
    for (WmfObject& slot : objects_) {
        if (std::holds_alternative<std::monostate>(slot)) {
            slot = std::move(object);
            return;
        }
    }
    if (objects_.size() < MaxObjects)
        objects_.push_back(std::move(object)); // a table too small: kept all the same
}

void WmfReader::createPen(uint16_t, ByteReader& r) {
    GdiPen pen;
    pen.style = r.u16();
    pen.width = r.i16();
    r.i16();
    pen.colour = fromColourRef(r.u32());
    pen.null = (pen.style & gdi::PsStyleMask) == gdi::PsNull;
    if (pen.width < 0)
        pen.width = 0;
    createObject(pen);
}

void WmfReader::createBrush(uint16_t, ByteReader& r) {
    const uint16_t style = r.u16();
    const QColor colour = fromColourRef(r.u32());
    const uint16_t hatch = r.u16();
    createObject(logicalBrush(style, colour, hatch));
}

void WmfReader::createPatternBrush(uint16_t, ByteReader& r) {
    r.u16(); // style
    r.u16(); // colour usage
    createObject(patternBrush(dib::decodePacked(r.data() + r.pos(), r.remaining())));
}

void WmfReader::createFont(uint16_t, ByteReader& r) {
    GdiFont font;
    font.height = r.i16();
    font.width = r.i16();
    font.escapement = r.i16() % TenthsPerTurn;
    r.i16(); // orientation
    font.weight = r.i16();
    font.italic = r.u8() != 0;
    font.underline = r.u8() != 0;
    font.strikeOut = r.u8() != 0;
    font.charset = r.u8();
    r.skip(4);
    QByteArray face = r.bytes(std::min<qsizetype>(FaceNameChars, r.remaining()));
    if (const qsizetype nul = face.indexOf('\0'); nul >= 0)
        face.truncate(nul);
    font.face = cp1252::decode(face);
    createObject(font);
}

void WmfReader::createPlaceholder(uint16_t, ByteReader&) {
    createObject(Placeholder{});
}

void WmfReader::selectObject(uint16_t, ByteReader& r) {
    const uint16_t index = r.u16();
    if (index >= objects_.size())
        return;
    const WmfObject& object = objects_[index];
    if (const auto* pen = std::get_if<GdiPen>(&object))
        dc_.pen = *pen;
    else if (const auto* brush = std::get_if<GdiBrush>(&object))
        dc_.brush = *brush;
    else if (const auto* font = std::get_if<GdiFont>(&object))
        dc_.font = *font;
    flush();
}

void WmfReader::deleteObject(uint16_t, ByteReader& r) {
    const uint16_t index = r.u16();
    if (index < objects_.size())
        objects_[index] = std::monostate{};
}

// --- records of lines, figures and pixels ------------------------------------

void WmfReader::moveTo(uint16_t, ByteReader& r) {
    dc_.current = readPoint(r);
}

void WmfReader::lineTo(uint16_t, ByteReader& r) {
    const QPointF to = readPoint(r);
    if (sink_)
        sink_->polyline(QPolygonF({dc_.current, to}));
    dc_.current = to;
}

void WmfReader::polyRecord(uint16_t function, ByteReader& r) {
    const QPolygonF points = readPoints(r, r.i16());
    if (!sink_ || points.isEmpty())
        return;
    if (function == meta::Polyline)
        sink_->polyline(points);
    else
        sink_->polyPolygon({points});
}

void WmfReader::polyPolygon(uint16_t, ByteReader& r) {
    const int16_t polys = r.i16();
    if (polys < 0 || polys > r.remaining() / 2)
        raiseInvalidPicture("polygon count larger than its record");
    std::vector<int16_t> counts(static_cast<size_t>(polys));
    for (int16_t& c : counts)
        c = r.i16();
    QList<QPolygonF> parts;
    for (int16_t c : counts)
        parts.append(readPoints(r, c));
    if (sink_ && !parts.isEmpty())
        sink_->polyPolygon(parts);
}

void WmfReader::boxRecord(uint16_t function, ByteReader& r) {
    const QRectF box = readBox(r).normalized();
    if (sink_ && function == meta::Rectangle)
        sink_->rectangle(box);
    else if (sink_)
        sink_->ellipse(box);
}

void WmfReader::roundRect(uint16_t, ByteReader& r) {
    const double h = r.i16();
    const double w = r.i16();
    const QRectF box = readBox(r).normalized();
    if (sink_)
        sink_->roundRect(box, QSizeF(std::abs(w), std::abs(h)));
}

void WmfReader::arcRecord(uint16_t function, ByteReader& r) {
    const double ey = r.i16(), ex = r.i16(), sy = r.i16(), sx = r.i16();
    const QRectF box = readBox(r);
    const ArcKind kind = function == meta::Pie     ? ArcKind::Pie
                         : function == meta::Chord ? ArcKind::Chord
                                                   : ArcKind::Open;
    QPointF start = mapPoint(sx, sy);
    QPointF end = mapPoint(ex, ey);
    if (fixedMode())
        std::swap(start, end); // counter-clockwise in a y-up space is clockwise on the device
    if (sink_)
        sink_->path(arcPath(box, start, end, kind), true, kind != ArcKind::Open);
}

void WmfReader::setPixel(uint16_t, ByteReader& r) {
    const QColor colour = fromColourRef(r.u32());
    const QPointF at = readPoint(r);
    if (!sink_)
        return;
    sink_->setPen(nullPen());
    sink_->setBrush(GdiBrush{GdiBrush::Kind::Solid, colour, 0, {}});
    sink_->rectangle(QRectF(at, QSizeF(PixelSide, PixelSide)));
    flush();
}

// --- records of text ---------------------------------------------------------

void WmfReader::textOut(uint16_t, ByteReader& r) {
    const int16_t length = r.i16();
    if (length < 0)
        raiseInvalidPicture("text length");
    const QString text = cp1252::decode(r.bytes(length));
    if (length % 2 != 0)
        r.skip(1);
    const QPointF at = readPoint(r);
    if (sink_)
        sink_->text(at, text, {}, 0, QRectF());
}

void WmfReader::extTextOut(uint16_t, ByteReader& r) {
    const QPointF at = readPoint(r);
    const int16_t length = r.i16();
    const uint16_t options = r.u16();
    QRectF box;
    if (options & (gdi::EtoOpaque | gdi::EtoClipped)) {
        const double left = r.i16(), top = r.i16(), right = r.i16(), bottom = r.i16();
        box = QRectF(mapPoint(left, top), mapPoint(right, bottom)).normalized();
    }
    const QString text = readText(r, length);
    std::vector<double> advances;
    if (r.remaining() >= 2 * static_cast<qsizetype>(length))
        for (int16_t i = 0; i < length; ++i)
            advances.push_back(r.i16());
    if (sink_ && !text.isEmpty())
        sink_->text(at, text, advances, options, box);
}

// --- records that clip -------------------------------------------------------

void WmfReader::clipRect(uint16_t function, ByteReader& r) {
    QPainterPath rect;
    rect.addRect(readBox(r).normalized());
    if (function == meta::IntersectClipRect)
        dc_.clip = dc_.clip ? dc_.clip->intersected(rect) : rect;
    else if (dc_.clip)
        dc_.clip = dc_.clip->subtracted(rect);
    else
        return; // excluding from an unclipped device: left to the device
    if (sink_)
        sink_->setClip(dc_.clip);
}

void WmfReader::selectClipRegion(uint16_t, ByteReader&) {
    dc_.clip.reset();
    if (sink_)
        sink_->setClip(dc_.clip);
}

// --- records of bitmaps ------------------------------------------------------

void WmfReader::drawImage(uint16_t function, ByteReader& r) {
    const uint32_t rop = r.u32();
    // A record without a bitmap has exactly the words of its parameters.
    const bool withBitmap = r.size() / 2 != (function >> 8) + 3;
    Blit blit = readBlit(r, function, withBitmap);
    blit.destination = QRectF(mapPoint(blit.destination.left(), blit.destination.top()),
                              mapPoint(blit.destination.right(), blit.destination.bottom()));
    if (!sink_)
        return;
    if (!withBitmap) {
        fillWithoutSource(rop, blit.destination);
        return;
    }
    const ByteReader packed = r.sub(r.pos(), r.remaining());
    const QImage image = dib::decodePacked(packed.data(), packed.size());
    if (image.isNull())
        return;
    if (const std::optional<QImage> part = blitSource(image, packed, blit.source, blit.destination))
        sink_->image(blit.destination.normalized(), *part, QTransform());
}

// A blit without a source bitmap: its raster operation fills the destination,
// without an outline, or draws nothing.
void WmfReader::fillWithoutSource(uint32_t rop, const QRectF& destination) {
    if (!fillsWithoutSource(rop))
        return;
    sink_->setPen(nullPen());
    if (const std::optional<GdiBrush> fill = blitFill(rop))
        sink_->setBrush(*fill);
    sink_->polyPolygon({mappedRect(QTransform(), destination.normalized())});
    flush();
}

} // namespace tessaly::metafile::wmf
