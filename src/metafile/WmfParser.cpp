#include "WmfParser.h"

#include "ByteReader.h"
#include "CodePage.h"
#include "Dib.h"
#include "PageMapping.h"
#include "RecordTypes.h"

#include <variant>

namespace tessaly::metafile {

namespace {

// Size of the placeable header in front of a WMF.
constexpr qsizetype PlaceableSize = 22;
// Size of META_HEADER in bytes, and in 16-bit words as its field gives it.
constexpr qsizetype MetaHeaderSize = 18;
constexpr uint16_t MetaHeaderWords = 9;
// The two kinds of WMF: in memory and on disk.
constexpr uint16_t MemoryMetafile = 1;
constexpr uint16_t DiskMetafile = 2;
// Largest object table a file may ask for.
constexpr size_t MaxObjects = 65535;
// Deepest SaveDC nesting that is kept.
constexpr size_t MaxSavedStates = 1024;
// Raster operations that fill the destination without a source.
constexpr uint32_t PatCopy = 0x00F00021;
constexpr uint32_t Blackness = 0x00000042;
constexpr uint32_t Whiteness = 0x00FF0062;

QColor fromColourRef(uint32_t ref) {
    return QColor(ref & 0xFF, (ref >> 8) & 0xFF, (ref >> 16) & 0xFF);
}

struct Placeholder {}; // palettes and regions: they hold a slot of the table

using WmfObject = std::variant<std::monostate, GdiPen, GdiBrush, GdiFont, Placeholder>;

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

class WmfReader {
public:
    WmfReader(const QByteArray& bytes, GdiSink* sink) : bytes_(bytes), sink_(sink) {}

    uint32_t run();
    std::optional<QRectF> window() const {
        if (!windowSet_ || windowExt_.width() == 0 || windowExt_.height() == 0)
            return std::nullopt;
        return QRectF(windowOrg_, windowExt_);
    }

private:
    void record(uint16_t function, ByteReader& r);
    QPointF mapPoint(double x, double y) const { return fixedMode() ? QPointF(x, -y) : QPointF(x, y); }
    bool fixedMode() const { return dc_.mapMode >= gdi::MmLoMetric && dc_.mapMode <= gdi::MmTwips; }
    QRectF readBox(ByteReader& r); // bottom, right, top, left
    QPolygonF readPoints(ByteReader& r, qsizetype count);
    void createObject(WmfObject object);
    void flush();
    void drawImage(ByteReader& r, uint16_t function);

    const QByteArray& bytes_;
    GdiSink* sink_;
    WmfDc dc_;
    std::vector<WmfDc> saved_;
    std::vector<WmfObject> objects_;
    bool windowSet_ = false;
    QPointF windowOrg_;
    QSizeF windowExt_;
};

uint32_t WmfReader::run() {
    const WmfHeader header = readWmfHeader(bytes_);
    objects_.assign(header.objects, std::monostate{});
    ByteReader all(bytes_);
    qsizetype offset = header.metaOffset + header.headerWords * 2;
    uint32_t count = 0;
    if (sink_)
        flush();
    while (true) {
        if (offset + 6 > bytes_.size())
            raiseInvalidPicture("metafile ends without META_EOF");
        const uint32_t words = all.u32At(offset);
        const uint16_t function = all.u16At(offset + 4);
        if (words < 3 || words > static_cast<uint64_t>((bytes_.size() - offset) / 2))
            raiseInvalidPicture("metafile record size");
        ++count;
        if (function == meta::Eof)
            return count;
        ByteReader r = all.sub(offset, static_cast<qsizetype>(words) * 2);
        r.seek(6);
        record(function, r);
        offset += static_cast<qsizetype>(words) * 2;
    }
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

void WmfReader::drawImage(ByteReader& r, uint16_t function) {
    const uint32_t rop = r.u32();
    const bool withBitmap = r.size() / 2 != (function >> 8) + 3;
    QRect source;
    QRectF destination;
    if (function == meta::StretchDib) {
        r.u16(); // colour usage
        const int sh = r.i16(), sw = r.i16(), sy = r.i16(), sx = r.i16();
        const int dh = r.i16(), dw = r.i16(), dy = r.i16(), dx = r.i16();
        source = QRect(sx, sy, sw, sh);
        destination = QRectF(dx, dy, dw, dh);
    } else if (function == meta::DibStretchBlt) {
        if (!withBitmap)
            r.u16();
        const int sh = r.i16(), sw = r.i16(), sy = r.i16(), sx = r.i16();
        const int dh = r.i16(), dw = r.i16(), dy = r.i16(), dx = r.i16();
        source = QRect(sx, sy, sw, sh);
        destination = QRectF(dx, dy, dw, dh);
    } else {
        const int sy = r.i16(), sx = r.i16();
        if (!withBitmap)
            r.u16();
        const int h = r.i16(), w = r.i16(), dy = r.i16(), dx = r.i16();
        source = QRect(sx, sy, w, h);
        destination = QRectF(dx, dy, w, h);
    }
    destination = QRectF(mapPoint(destination.left(), destination.top()),
                         mapPoint(destination.right(), destination.bottom()));
    if (!sink_)
        return;
    if (!withBitmap) {
        if (rop != PatCopy && rop != Blackness && rop != Whiteness)
            return;
        GdiPen none;
        none.null = true;
        sink_->setPen(none);
        if (rop != PatCopy)
            sink_->setBrush(GdiBrush{GdiBrush::Kind::Solid, rop == Blackness ? Qt::black : Qt::white, 0, {}});
        sink_->polyPolygon({mappedRect(QTransform(), destination.normalized())});
        flush();
        return;
    }
    QImage image = dib::decodePacked(r.data() + r.pos(), r.remaining());
    if (image.isNull())
        return;
    const bool bottomUp = static_cast<int32_t>(r.u32At(r.pos() + 8)) > 0 && r.u32At(r.pos()) != 12;
    QRect src = source.normalized();
    if (bottomUp)
        src.moveTop(image.height() - src.top() - src.height());
    src = src.intersected(image.rect());
    if (src.isEmpty())
        return;
    if (src != image.rect())
        image = image.copy(src);
    const bool flipX = destination.width() < 0;
    const bool flipY = destination.height() < 0;
    if (flipX || flipY)
        image = image.mirrored(flipX, flipY);
    sink_->image(destination.normalized(), image, QTransform());
}

void WmfReader::record(uint16_t function, ByteReader& r) {
    switch (function) {
    case meta::SetWindowOrg: {
        const double y = r.i16();
        windowOrg_ = mapPoint(r.i16(), y);
        windowSet_ = true;
        return;
    }
    case meta::SetWindowExt: {
        const double y = r.i16();
        const double x = r.i16();
        windowExt_ = fixedMode() ? QSizeF(x, -y) : QSizeF(x, y);
        windowSet_ = true;
        return;
    }
    case meta::SetMapMode:
        dc_.mapMode = r.u16();
        return;
    case meta::CreatePenIndirect: {
        GdiPen pen;
        pen.style = r.u16();
        pen.width = r.i16();
        r.i16();
        pen.colour = fromColourRef(r.u32());
        pen.null = (pen.style & gdi::PsStyleMask) == gdi::PsNull;
        if (pen.width < 0)
            pen.width = 0;
        createObject(pen);
        return;
    }
    case meta::CreateBrushIndirect: {
        GdiBrush brush;
        const uint16_t style = r.u16();
        brush.colour = fromColourRef(r.u32());
        brush.hatch = r.u16();
        brush.kind = style == gdi::BsNull      ? GdiBrush::Kind::Null
                     : style == gdi::BsHatched ? GdiBrush::Kind::Hatched
                                               : GdiBrush::Kind::Solid;
        createObject(brush);
        return;
    }
    case meta::DibCreatePatternBrush: {
        r.u16(); // style
        r.u16(); // colour usage
        GdiBrush brush;
        brush.pattern = dib::decodePacked(r.data() + r.pos(), r.remaining());
        brush.kind = brush.pattern.isNull() ? GdiBrush::Kind::Solid : GdiBrush::Kind::Pattern;
        brush.colour = Qt::gray;
        createObject(brush);
        return;
    }
    case meta::CreateFontIndirect: {
        GdiFont font;
        font.height = r.i16();
        font.width = r.i16();
        font.escapement = r.i16() % 3600;
        r.i16(); // orientation
        font.weight = r.i16();
        font.italic = r.u8() != 0;
        font.underline = r.u8() != 0;
        font.strikeOut = r.u8() != 0;
        font.charset = r.u8();
        r.skip(4);
        QByteArray face = r.bytes(std::min<qsizetype>(32, r.remaining()));
        if (const qsizetype nul = face.indexOf('\0'); nul >= 0)
            face.truncate(nul);
        font.face = cp1252::decode(face);
        createObject(font);
        return;
    }
    case meta::CreatePalette:
    case meta::CreatePatternBrush:
    case meta::CreateRegion:
        createObject(Placeholder{});
        return;
    case meta::SelectObject: {
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
        return;
    }
    case meta::DeleteObject: {
        const uint16_t index = r.u16();
        if (index < objects_.size())
            objects_[index] = std::monostate{};
        return;
    }
    case meta::SetBkColor:
        dc_.bkColour = fromColourRef(r.u32());
        flush();
        return;
    case meta::SetTextColor:
        dc_.textColour = fromColourRef(r.u32());
        flush();
        return;
    case meta::SetBkMode:
        dc_.opaque = r.u16() == gdi::Opaque;
        flush();
        return;
    case meta::SetTextAlign:
        dc_.textAlign = r.u16();
        flush();
        return;
    case meta::SetPolyFillMode:
        dc_.fillRule = r.u16() == gdi::Winding ? Qt::WindingFill : Qt::OddEvenFill;
        flush();
        return;
    case meta::SaveDc:
        if (saved_.size() < MaxSavedStates)
            saved_.push_back(dc_);
        return;
    case meta::RestoreDc: {
        const int16_t relative = r.i16();
        const qsizetype target = relative < 0 ? static_cast<qsizetype>(saved_.size()) + relative
                                              : static_cast<qsizetype>(relative) - 1;
        if (target < 0 || target >= static_cast<qsizetype>(saved_.size()))
            return;
        dc_ = saved_[static_cast<size_t>(target)];
        saved_.resize(static_cast<size_t>(target));
        flush();
        if (sink_)
            sink_->setClip(dc_.clip);
        return;
    }
    case meta::MoveTo: {
        const double y = r.i16();
        dc_.current = mapPoint(r.i16(), y);
        return;
    }
    case meta::LineTo: {
        const double y = r.i16();
        const QPointF to = mapPoint(r.i16(), y);
        if (sink_)
            sink_->polyline(QPolygonF({dc_.current, to}));
        dc_.current = to;
        return;
    }
    case meta::Polyline:
    case meta::Polygon: {
        const QPolygonF points = readPoints(r, r.i16());
        if (!sink_ || points.isEmpty())
            return;
        if (function == meta::Polyline)
            sink_->polyline(points);
        else
            sink_->polyPolygon({points});
        return;
    }
    case meta::PolyPolygon: {
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
        return;
    }
    case meta::Rectangle:
    case meta::Ellipse: {
        const QRectF box = readBox(r).normalized();
        if (sink_ && function == meta::Rectangle)
            sink_->rectangle(box);
        else if (sink_)
            sink_->ellipse(box);
        return;
    }
    case meta::RoundRect: {
        const double h = r.i16();
        const double w = r.i16();
        const QRectF box = readBox(r).normalized();
        if (sink_)
            sink_->roundRect(box, QSizeF(std::abs(w), std::abs(h)));
        return;
    }
    case meta::Arc:
    case meta::Pie:
    case meta::Chord: {
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
        return;
    }
    case meta::SetPixel: {
        const QColor colour = fromColourRef(r.u32());
        const double y = r.i16();
        const QPointF at = mapPoint(r.i16(), y);
        if (!sink_)
            return;
        GdiPen none;
        none.null = true;
        sink_->setPen(none);
        sink_->setBrush(GdiBrush{GdiBrush::Kind::Solid, colour, 0, {}});
        sink_->rectangle(QRectF(at, QSizeF(2, 2)));
        flush();
        return;
    }
    case meta::TextOut: {
        const int16_t length = r.i16();
        if (length < 0)
            raiseInvalidPicture("text length");
        const QString text = cp1252::decode(r.bytes(length));
        if (length % 2 != 0)
            r.skip(1);
        const double y = r.i16();
        const QPointF at = mapPoint(r.i16(), y);
        if (sink_)
            sink_->text(at, text, {}, 0, QRectF());
        return;
    }
    case meta::ExtTextOut: {
        const double y = r.i16();
        const QPointF at = mapPoint(r.i16(), y);
        const int16_t length = r.i16();
        const uint16_t options = r.u16();
        QRectF box;
        if (options & (gdi::EtoOpaque | gdi::EtoClipped)) {
            const double left = r.i16(), top = r.i16(), right = r.i16(), bottom = r.i16();
            box = QRectF(mapPoint(left, top), mapPoint(right, bottom)).normalized();
        }
        if (length < 0)
            raiseInvalidPicture("text length");
        const QString text = cp1252::decode(r.bytes(length));
        if (length % 2 != 0 && r.remaining() > 0)
            r.skip(1);
        std::vector<double> advances;
        if (r.remaining() >= 2 * static_cast<qsizetype>(length))
            for (int16_t i = 0; i < length; ++i)
                advances.push_back(r.i16());
        if (sink_ && !text.isEmpty())
            sink_->text(at, text, advances, options, box);
        return;
    }
    case meta::IntersectClipRect:
    case meta::ExcludeClipRect: {
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
        return;
    }
    case meta::SelectClipRegion:
        dc_.clip.reset();
        if (sink_)
            sink_->setClip(dc_.clip);
        return;
    case meta::StretchDib:
    case meta::DibStretchBlt:
    case meta::DibBitBlt:
        drawImage(r, function);
        return;
    default:
        return; // records that do not draw
    }
}

} // namespace

bool looksLikeWmf(const QByteArray& bytes) {
    if (bytes.size() < MetaHeaderSize)
        return false;
    ByteReader r(bytes);
    if (r.u32At(0) == PlaceableKey)
        return bytes.size() >= PlaceableSize + MetaHeaderSize;
    const uint16_t type = r.u16At(0);
    return (type == MemoryMetafile || type == DiskMetafile) && r.u16At(2) == MetaHeaderWords;
}

WmfHeader readWmfHeader(const QByteArray& bytes) {
    if (!looksLikeWmf(bytes))
        raiseInvalidPicture("not a Windows metafile");
    ByteReader r(bytes);
    WmfHeader h;
    if (r.u32At(0) == PlaceableKey) {
        h.placeable = true;
        r.seek(6);
        const int left = r.i16(), top = r.i16(), right = r.i16(), bottom = r.i16();
        h.placeableBox = QRect(QPoint(left, top), QPoint(right, bottom));
        h.unitsPerInch = r.u16();
        r.u32();
        h.checksum = r.u16();
        h.metaOffset = PlaceableSize;
    }
    r.seek(h.metaOffset);
    h.type = r.u16();
    h.headerWords = r.u16();
    h.version = r.u16();
    h.sizeWords = r.u32();
    h.objects = r.u16();
    h.maxRecordWords = r.u32();
    if ((h.type != MemoryMetafile && h.type != DiskMetafile) || h.headerWords != MetaHeaderWords)
        raiseInvalidPicture("metafile header");
    return h;
}

uint32_t parseWmf(const QByteArray& bytes, GdiSink* sink) {
    WmfReader reader(bytes, sink);
    return reader.run();
}

QRectF wmfFrame(const QByteArray& bytes) {
    const WmfHeader header = readWmfHeader(bytes);
    BoundsSink bounds;
    WmfReader reader(bytes, &bounds);
    reader.run();
    if (const auto window = reader.window())
        return *window;
    if (header.placeable && header.placeableBox.width() > 1 && header.placeableBox.height() > 1)
        return QRectF(header.placeableBox.left(), header.placeableBox.top(), header.placeableBox.width() - 1,
                      header.placeableBox.height() - 1);
    return bounds.bounds;
}

} // namespace tessaly::metafile
