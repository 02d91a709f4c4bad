#include "EmfParser.h"

#include "ByteReader.h"
#include "CodePage.h"
#include "Dib.h"
#include "PageMapping.h"
#include "RecordTypes.h"

#include <QLineF>
#include <QRegion>
#include <QtMath>
#include <cmath>
#include <unordered_map>
#include <variant>

namespace tessaly::metafile {

namespace {

// Smallest header a reader accepts (the original 88-byte form).
constexpr uint32_t MinHeaderSize = 88;
// Offset of the signature in the header.
constexpr qsizetype SignatureOffset = 40;
// Deepest SaveDC nesting that is kept; deeper saves are ignored.
constexpr size_t MaxSavedStates = 1024;
// Size of LOGFONTW: 28 bytes of numbers and a 32-character face name.
constexpr qsizetype LogFontSize = 92;
// ETO_PDY: the advances come as x and y pairs.
constexpr uint32_t EtoPdy = 0x2000;
// Raster operations that fill the destination without a source.
constexpr uint32_t PatCopy = 0x00F00021;
constexpr uint32_t Blackness = 0x00000042;
constexpr uint32_t Whiteness = 0x00FF0062;

QColor fromColourRef(uint32_t ref) {
    return QColor(ref & 0xFF, (ref >> 8) & 0xFF, (ref >> 16) & 0xFF);
}

// A POINTL or SIZEL: x first, then y (read in that order).
QPointF readPointL(ByteReader& r) {
    const double x = r.i32();
    const double y = r.i32();
    return {x, y};
}
QSizeF readSizeL(ByteReader& r) {
    const double cx = r.i32();
    const double cy = r.i32();
    return {cx, cy};
}

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

GdiObject stockObject(uint32_t index) {
    switch (index) {
    case gdi::WhiteBrush:
        return GdiBrush{GdiBrush::Kind::Solid, Qt::white, 0, {}};
    case gdi::LtGrayBrush:
        return GdiBrush{GdiBrush::Kind::Solid, QColor(0xC0, 0xC0, 0xC0), 0, {}};
    case gdi::GrayBrush:
        return GdiBrush{GdiBrush::Kind::Solid, QColor(0x80, 0x80, 0x80), 0, {}};
    case gdi::DkGrayBrush:
        return GdiBrush{GdiBrush::Kind::Solid, QColor(0x40, 0x40, 0x40), 0, {}};
    case gdi::BlackBrush:
        return GdiBrush{GdiBrush::Kind::Solid, Qt::black, 0, {}};
    case gdi::NullBrush:
        return GdiBrush{GdiBrush::Kind::Null, Qt::white, 0, {}};
    case gdi::WhitePen:
        return LogicalPen{gdi::PsSolid, 0, false, Qt::white, {}};
    case gdi::BlackPen:
        return LogicalPen{gdi::PsSolid, 0, false, Qt::black, {}};
    case gdi::NullPen:
        return LogicalPen{gdi::PsNull, 0, false, Qt::black, {}};
    default:
        return LogicalFont{}; // the stock fonts
    }
}

class EmfReader {
public:
    EmfReader(const QByteArray& bytes, GdiSink* sink) : bytes_(bytes), sink_(sink) {}

    uint32_t run();

private:
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

    QPolygonF readPoints(ByteReader& r, uint32_t count, bool small);
    QRectF readRect(ByteReader& r); // RECTL as two corners
    void flushState();
    void drawPolyline(const QPolygonF& logical);
    void drawPolygons(const QList<QPolygonF>& logical);
    void drawFigure(const QPainterPath& logicalPath, bool stroke, bool fill);
    void drawBox(uint32_t type, const QRectF& box, const QSizeF& corner = {});
    void drawText(ByteReader& r, bool wide);
    void drawBitmap(ByteReader& r, uint32_t type);
    void createObject(uint32_t index, GdiObject object);
    void selectObject(uint32_t index);
    void setClip(std::optional<QPainterPath> clip);
    void combineClip(const QPainterPath& region, uint32_t mode);

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

uint32_t EmfReader::run() {
    const EmfHeader header = readEmfHeader(bytes_);
    devicePerMm_ = header.devicePerMm();
    dc_.pen = stockObject(gdi::BlackPen);
    dc_.brush = stockObject(gdi::WhiteBrush);
    dc_.font = stockObject(gdi::SystemFont);
    const qsizetype end = std::min<qsizetype>(bytes_.size(), header.bytes);
    ByteReader all(bytes_.constData(), end);
    qsizetype offset = header.headerSize;
    uint32_t count = 1;
    while (true) {
        if (offset + 8 > end)
            raiseInvalidPicture("enhanced metafile ends without EMR_EOF");
        const uint32_t type = all.u32At(offset);
        const uint32_t size = all.u32At(offset + 4);
        if (size < 8 || size % 4 != 0 || size > static_cast<uint64_t>(end - offset))
            raiseInvalidPicture("enhanced metafile record size");
        ++count;
        if (type == emr::Eof)
            return count;
        ByteReader r = all.sub(offset, size);
        if (sink_)
            record(type, r);
        offset += size;
    }
}

QPolygonF EmfReader::readPoints(ByteReader& r, uint32_t count, bool small) {
    const qsizetype pointSize = small ? 4 : 8;
    if (count > static_cast<uint64_t>(r.remaining() / pointSize))
        raiseInvalidPicture("point count larger than its record");
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(count));
    for (uint32_t i = 0; i < count; ++i) {
        const double x = small ? r.i16() : r.i32();
        const double y = small ? r.i16() : r.i32();
        points.append(QPointF(x, y));
    }
    return points;
}

QRectF EmfReader::readRect(ByteReader& r) {
    const double left = r.i32();
    const double top = r.i32();
    const double right = r.i32();
    const double bottom = r.i32();
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

void EmfReader::flushState() {
    if (!stateDirty_)
        return;
    stateDirty_ = false;
    GdiPen pen;
    if (const auto* p = dc_.pen ? std::get_if<LogicalPen>(&*dc_.pen) : nullptr) {
        pen.null = (p->style & gdi::PsStyleMask) == gdi::PsNull;
        pen.colour = p->colour;
        pen.style = p->style;
        const double scale = lengthScale();
        pen.width = p->width > 1 || p->geometric ? p->width * scale : 0;
        for (double d : p->dashes)
            pen.dashes.push_back(d * scale);
    }
    if (pen != sentPen_) {
        sink_->setPen(pen);
        sentPen_ = pen;
    }
    GdiBrush brush;
    if (const auto* b = dc_.brush ? std::get_if<GdiBrush>(&*dc_.brush) : nullptr)
        brush = *b;
    if (!sentBrush_ || !(brush == *sentBrush_)) {
        sink_->setBrush(brush);
        sentBrush_ = brush;
    }
    GdiFont font;
    if (const auto* f = dc_.font ? std::get_if<LogicalFont>(&*dc_.font) : nullptr) {
        font = f->font;
        const QTransform t = toDevice();
        const double sy = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(0, 1))).length();
        const double sx = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).length();
        font.height *= sy;
        font.width *= sx;
        const double turn = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).angle();
        font.escapement = (font.escapement + static_cast<int>(std::lround(turn * 10))) % 3600;
    }
    if (font != sentFont_) {
        sink_->setFont(font);
        sentFont_ = font;
    }
    sink_->setTextColour(dc_.textColour);
    sink_->setBackground(dc_.bkColour, dc_.opaque);
    sink_->setTextAlign(dc_.textAlign);
    sink_->setFillRule(dc_.fillRule);
}

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

void EmfReader::drawText(ByteReader& r, bool wide) {
    r.seek(24);
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
    std::vector<double> advances;
    const qsizetype perChar = (options & EtoPdy) ? 8 : 4;
    if (offDx != 0 && offDx < static_cast<uint64_t>(r.size()) &&
        static_cast<qsizetype>(chars) * perChar <= r.size() - offDx) {
        ByteReader d = r.sub(offDx, static_cast<qsizetype>(chars) * perChar);
        const QTransform t = toDevice();
        const double sx = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).length();
        for (uint32_t i = 0; i < chars; ++i) {
            advances.push_back(d.i32() * sx);
            if (perChar == 8)
                d.i32();
        }
    }
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

void EmfReader::drawBitmap(ByteReader& r, uint32_t type) {
    QRectF destination;
    QRect source;
    uint32_t rop = gdi::SrcCopy;
    uint32_t offBmi = 0;
    uint32_t cbBmi = 0;
    uint32_t offBits = 0;
    uint32_t cbBits = 0;
    r.seek(24);
    if (type == emr::StretchDiBits) {
        const int xDest = r.i32();
        const int yDest = r.i32();
        const int xSrc = r.i32();
        const int ySrc = r.i32();
        const int cxSrc = r.i32();
        const int cySrc = r.i32();
        offBmi = r.u32();
        cbBmi = r.u32();
        offBits = r.u32();
        cbBits = r.u32();
        r.u32(); // usage
        rop = r.u32();
        const int cxDest = r.i32();
        const int cyDest = r.i32();
        destination = QRectF(xDest, yDest, cxDest, cyDest);
        source = QRect(xSrc, ySrc, cxSrc, cySrc);
    } else {
        const int xDest = r.i32();
        const int yDest = r.i32();
        const int cxDest = r.i32();
        const int cyDest = r.i32();
        rop = r.u32();
        const int xSrc = r.i32();
        const int ySrc = r.i32();
        r.skip(24); // source transform
        r.u32();    // background colour
        r.u32();    // usage
        offBmi = r.u32();
        cbBmi = r.u32();
        offBits = r.u32();
        cbBits = r.u32();
        int cxSrc = cxDest;
        int cySrc = cyDest;
        if (type == emr::StretchBlt) {
            cxSrc = r.i32();
            cySrc = r.i32();
        }
        destination = QRectF(xDest, yDest, cxDest, cyDest);
        source = QRect(xSrc, ySrc, cxSrc, cySrc);
    }
    if (inPath_)
        return;
    if (cbBmi == 0) {
        // A blit without a source fills the destination.
        if (rop != PatCopy && rop != Blackness && rop != Whiteness)
            return;
        flushState();
        if (rop != PatCopy) {
            GdiBrush fill{GdiBrush::Kind::Solid, rop == Blackness ? Qt::black : Qt::white, 0, {}};
            sink_->setBrush(fill);
            sentBrush_ = fill;
        }
        GdiPen none;
        none.null = true;
        sink_->setPen(none);
        sentPen_ = none;
        stateDirty_ = true;
        sink_->polyPolygon({mappedRect(toDevice(), destination.normalized())});
        return;
    }
    const ByteReader header = r.sub(offBmi, cbBmi);
    const ByteReader bits = r.sub(offBits, cbBits);
    QImage image = dib::decode(header.data(), header.size(), bits.data(), bits.size());
    if (image.isNull())
        return;
    // A bottom-up DIB counts the source rectangle from its last row.
    const bool bottomUp = static_cast<int32_t>(header.u32At(8)) > 0 && header.u32At(0) != 12;
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
    flushState();
    sink_->image(destination.normalized(), image, toDevice());
}

void EmfReader::createObject(uint32_t index, GdiObject object) {
    if (index == 0 || (index & gdi::StockFlag) != 0)
        raiseInvalidPicture("object index");
    objects_[index] = std::move(object);
}

void EmfReader::selectObject(uint32_t index) {
    const GdiObject* object = nullptr;
    GdiObject stock;
    if (index & gdi::StockFlag) {
        stock = stockObject(index & ~gdi::StockFlag);
        object = &stock;
    } else if (auto it = objects_.find(index); it != objects_.end()) {
        object = &it->second;
    }
    if (!object)
        return; // an object that was never created: the selection stays
    if (std::holds_alternative<LogicalPen>(*object))
        dc_.pen = *object;
    else if (std::holds_alternative<GdiBrush>(*object))
        dc_.brush = *object;
    else
        dc_.font = *object;
    stateDirty_ = true;
}

void EmfReader::setClip(std::optional<QPainterPath> clip) {
    dc_.clip = std::move(clip);
    if (sink_)
        sink_->setClip(dc_.clip);
}

void EmfReader::combineClip(const QPainterPath& region, uint32_t mode) {
    switch (mode) {
    case gdi::RgnAnd:
        setClip(dc_.clip ? dc_.clip->intersected(region) : region);
        break;
    case gdi::RgnOr:
        setClip(dc_.clip ? std::optional<QPainterPath>(dc_.clip->united(region)) : std::nullopt);
        break;
    case gdi::RgnDiff:
        if (dc_.clip)
            setClip(dc_.clip->subtracted(region));
        break;
    case gdi::RgnXor:
        if (dc_.clip)
            setClip(dc_.clip->united(region).subtracted(dc_.clip->intersected(region)));
        break;
    default:
        setClip(region);
        break;
    }
}

bool changesMapping(uint32_t type) {
    switch (type) {
    case emr::SetWindowExtEx:
    case emr::SetWindowOrgEx:
    case emr::SetViewportExtEx:
    case emr::SetViewportOrgEx:
    case emr::SetMapMode:
    case emr::RestoreDc:
    case emr::SetWorldTransform:
    case emr::ModifyWorldTransform:
        return true;
    default:
        return false;
    }
}

void EmfReader::record(uint32_t type, ByteReader& r) {
    r.seek(8);
    if (changesMapping(type))
        toDevice_.reset();
    switch (type) {
    case emr::SetWindowExtEx:
        dc_.page.windowExt = readSizeL(r);
        stateDirty_ = true;
        break;
    case emr::SetWindowOrgEx:
        dc_.page.windowOrg = readPointL(r);
        break;
    case emr::SetViewportExtEx:
        dc_.page.viewportExt = readSizeL(r);
        stateDirty_ = true;
        break;
    case emr::SetViewportOrgEx:
        dc_.page.viewportOrg = readPointL(r);
        break;
    case emr::SetMapMode:
        dc_.page.mapMode = r.u32();
        stateDirty_ = true;
        break;
    case emr::SetBkMode:
        dc_.opaque = r.u32() == gdi::Opaque;
        stateDirty_ = true;
        break;
    case emr::SetPolyFillMode:
        dc_.fillRule = r.u32() == gdi::Winding ? Qt::WindingFill : Qt::OddEvenFill;
        stateDirty_ = true;
        break;
    case emr::SetTextAlign:
        dc_.textAlign = r.u32();
        stateDirty_ = true;
        break;
    case emr::SetTextColor:
        dc_.textColour = fromColourRef(r.u32());
        stateDirty_ = true;
        break;
    case emr::SetBkColor:
        dc_.bkColour = fromColourRef(r.u32());
        stateDirty_ = true;
        break;
    case emr::SaveDc:
        if (saved_.size() < MaxSavedStates)
            saved_.push_back(dc_);
        break;
    case emr::RestoreDc: {
        const int32_t relative = r.i32();
        qsizetype target = relative < 0 ? static_cast<qsizetype>(saved_.size()) + relative : relative - 1;
        if (target < 0 || target >= static_cast<qsizetype>(saved_.size()))
            break;
        dc_ = saved_[static_cast<size_t>(target)];
        saved_.resize(static_cast<size_t>(target));
        stateDirty_ = true;
        sink_->setClip(dc_.clip);
        break;
    }
    case emr::SetWorldTransform:
    case emr::ModifyWorldTransform: {
        const float m11 = r.f32(), m12 = r.f32(), m21 = r.f32(), m22 = r.f32(), dx = r.f32(), dy = r.f32();
        const QTransform x(m11, m12, m21, m22, dx, dy);
        const bool finite = std::isfinite(m11) && std::isfinite(m12) && std::isfinite(m21) &&
                            std::isfinite(m22) && std::isfinite(dx) && std::isfinite(dy);
        if (type == emr::SetWorldTransform) {
            if (finite)
                dc_.world = x;
        } else {
            const uint32_t mode = r.u32();
            if (mode == gdi::MwtIdentity)
                dc_.world = QTransform();
            else if (finite && mode == gdi::MwtLeftMultiply)
                dc_.world = x * dc_.world;
            else if (finite && mode == gdi::MwtRightMultiply)
                dc_.world = dc_.world * x;
            else if (finite && mode == gdi::MwtSet)
                dc_.world = x;
        }
        stateDirty_ = true;
        break;
    }
    case emr::CreatePen: {
        const uint32_t index = r.u32();
        LogicalPen pen;
        pen.style = r.u32();
        pen.width = r.i32();
        r.i32();
        pen.colour = fromColourRef(r.u32());
        createObject(index, pen);
        break;
    }
    case emr::ExtCreatePen: {
        const uint32_t index = r.u32();
        r.skip(16); // the bitmap of a pattern pen is not used
        LogicalPen pen;
        pen.style = r.u32();
        pen.geometric = (pen.style & gdi::PsGeometric) != 0;
        pen.width = r.u32();
        const uint32_t brushStyle = r.u32();
        pen.colour = fromColourRef(r.u32());
        r.u32(); // hatch
        const uint32_t entries = r.u32();
        if ((pen.style & gdi::PsStyleMask) == gdi::PsUserStyle &&
            entries <= static_cast<uint64_t>(r.remaining() / 4))
            for (uint32_t i = 0; i < entries; ++i)
                pen.dashes.push_back(r.u32());
        if (brushStyle == gdi::BsNull)
            pen.style = (pen.style & ~gdi::PsStyleMask) | gdi::PsNull;
        createObject(index, pen);
        break;
    }
    case emr::CreateBrushIndirect: {
        const uint32_t index = r.u32();
        const uint32_t style = r.u32();
        GdiBrush brush;
        brush.colour = fromColourRef(r.u32());
        brush.hatch = r.u32();
        brush.kind = style == gdi::BsNull      ? GdiBrush::Kind::Null
                     : style == gdi::BsHatched ? GdiBrush::Kind::Hatched
                                               : GdiBrush::Kind::Solid;
        createObject(index, brush);
        break;
    }
    case emr::CreateDibPatternBrushPt:
    case emr::CreateMonoBrush: {
        const uint32_t index = r.u32();
        r.u32(); // usage
        const uint32_t offBmi = r.u32();
        const uint32_t cbBmi = r.u32();
        const uint32_t offBits = r.u32();
        const uint32_t cbBits = r.u32();
        const ByteReader header = r.sub(offBmi, cbBmi);
        const ByteReader bits = r.sub(offBits, cbBits);
        GdiBrush brush;
        brush.pattern = dib::decode(header.data(), header.size(), bits.data(), bits.size());
        brush.kind = brush.pattern.isNull() ? GdiBrush::Kind::Solid : GdiBrush::Kind::Pattern;
        brush.colour = Qt::gray;
        createObject(index, brush);
        break;
    }
    case emr::ExtCreateFontIndirectW: {
        const uint32_t index = r.u32();
        if (r.remaining() < LogFontSize)
            raiseInvalidPicture("font record too short");
        LogicalFont logical;
        logical.font.height = r.i32();
        logical.font.width = r.i32();
        logical.font.escapement = r.i32() % 3600;
        r.i32(); // orientation
        logical.font.weight = r.i32();
        logical.font.italic = r.u8() != 0;
        logical.font.underline = r.u8() != 0;
        logical.font.strikeOut = r.u8() != 0;
        logical.font.charset = r.u8();
        r.skip(4);
        QString face = r.utf16(32);
        face.truncate(face.indexOf(QChar(0)) < 0 ? face.size() : face.indexOf(QChar(0)));
        logical.font.face = face;
        createObject(index, logical);
        break;
    }
    case emr::SelectObject:
        selectObject(r.u32());
        break;
    case emr::DeleteObject:
        objects_.erase(r.u32());
        break;
    case emr::MoveToEx: {
        dc_.current = readPointL(r);
        if (inPath_)
            path_.moveTo(map(dc_.current));
        break;
    }
    case emr::LineTo: {
        const QPointF to = readPointL(r);
        if (inPath_)
            path_.lineTo(map(to));
        else
            drawPolyline(QPolygonF({dc_.current, to}));
        dc_.current = to;
        break;
    }
    case emr::Polyline:
    case emr::Polyline16:
    case emr::Polygon:
    case emr::Polygon16:
    case emr::PolyBezier:
    case emr::PolyBezier16:
    case emr::PolylineTo:
    case emr::PolylineTo16:
    case emr::PolyBezierTo:
    case emr::PolyBezierTo16: {
        r.skip(16);
        const uint32_t count = r.u32();
        const bool small = type == emr::Polyline16 || type == emr::Polygon16 || type == emr::PolyBezier16 ||
                           type == emr::PolylineTo16 || type == emr::PolyBezierTo16;
        const QPolygonF points = readPoints(r, count, small);
        if (points.isEmpty())
            break;
        const bool to = type == emr::PolylineTo || type == emr::PolylineTo16 || type == emr::PolyBezierTo ||
                        type == emr::PolyBezierTo16;
        const bool bezier = type == emr::PolyBezier || type == emr::PolyBezier16 ||
                            type == emr::PolyBezierTo || type == emr::PolyBezierTo16;
        if (type == emr::Polygon || type == emr::Polygon16) {
            drawPolygons({points});
        } else if (!bezier) {
            QPolygonF line = points;
            if (to)
                line.prepend(dc_.current);
            if (to && inPath_) {
                for (qsizetype i = 1; i < line.size(); ++i)
                    path_.lineTo(map(line[i]));
            } else {
                drawPolyline(line);
            }
            if (to)
                dc_.current = points.last();
        } else {
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
                    break;
                }
            }
            drawFigure(curve, true, false);
        }
        break;
    }
    case emr::PolyPolyline:
    case emr::PolyPolygon:
    case emr::PolyPolyline16:
    case emr::PolyPolygon16: {
        r.skip(16);
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
        break;
    }
    case emr::Rectangle:
    case emr::Ellipse:
        drawBox(type, readRect(r));
        break;
    case emr::RoundRect: {
        const QRectF box = readRect(r);
        const QSizeF corner = readSizeL(r);
        drawBox(type, box, corner);
        break;
    }
    case emr::Arc:
    case emr::ArcTo:
    case emr::Chord:
    case emr::Pie: {
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
        break;
    }
    case emr::BeginPath:
        inPath_ = true;
        path_ = QPainterPath();
        path_.moveTo(map(dc_.current));
        break;
    case emr::EndPath:
        inPath_ = false;
        finishedPath_ = path_;
        finishedPath_.setFillRule(dc_.fillRule);
        break;
    case emr::AbortPath:
        inPath_ = false;
        finishedPath_ = path_ = QPainterPath();
        break;
    case emr::CloseFigure:
        if (inPath_)
            path_.closeSubpath();
        break;
    case emr::FillPath:
    case emr::StrokePath:
    case emr::StrokeAndFillPath:
        if (!inPath_ && !finishedPath_.isEmpty()) {
            flushState();
            finishedPath_.setFillRule(dc_.fillRule);
            sink_->path(finishedPath_, type != emr::FillPath, type != emr::StrokePath);
            finishedPath_ = QPainterPath();
        }
        break;
    case emr::SelectClipPath:
        if (!inPath_) {
            combineClip(finishedPath_, r.u32());
            finishedPath_ = QPainterPath();
        }
        break;
    case emr::ExtSelectClipRgn: {
        const uint32_t cb = r.u32();
        const uint32_t mode = r.u32();
        if (cb == 0) {
            if (mode == gdi::RgnCopy)
                setClip(std::nullopt);
            break;
        }
        ByteReader data = r.sub(16, cb);
        data.seek(8);
        const uint32_t count = data.u32();
        data.seek(32);
        if (count > static_cast<uint64_t>(data.remaining() / 16))
            raiseInvalidPicture("region rectangles");
        QRegion region;
        std::vector<QRect> rects;
        rects.reserve(count);
        for (uint32_t i = 0; i < count; ++i) {
            const int l = data.i32(), t = data.i32(), rr = data.i32(), b = data.i32();
            if (rr > l && b > t)
                rects.emplace_back(QPoint(l, t), QPoint(rr - 1, b - 1));
        }
        region.setRects(rects.data(), static_cast<int>(rects.size()));
        QPainterPath path;
        path.addRegion(region);
        combineClip(path, mode);
        break;
    }
    case emr::IntersectClipRect:
    case emr::ExcludeClipRect: {
        QPainterPath rect;
        rect.addPolygon(mappedRect(toDevice(), readRect(r)));
        combineClip(rect, type == emr::IntersectClipRect ? gdi::RgnAnd : gdi::RgnDiff);
        break;
    }
    case emr::ExtTextOutW:
    case emr::ExtTextOutA:
        drawText(r, type == emr::ExtTextOutW);
        break;
    case emr::StretchDiBits:
    case emr::BitBlt:
    case emr::StretchBlt:
        drawBitmap(r, type);
        break;
    default:
        break; // records that do not draw (comments, palettes, ICM, ...)
    }
    if (changesMapping(type))
        toDevice_.reset();
}

} // namespace

QSizeF EmfHeader::devicePerMm() const {
    if (deviceSize.width() > 0 && deviceSize.height() > 0 && millimetres.width() > 0 &&
        millimetres.height() > 0)
        return QSizeF(double(deviceSize.width()) / millimetres.width(),
                      double(deviceSize.height()) / millimetres.height());
    return QSizeF(96 / 25.4, 96 / 25.4);
}

QRectF EmfHeader::frameInDevice() const {
    const QSizeF perMm = devicePerMm();
    return QRectF(QPointF(frame.left() / 100.0 * perMm.width(), frame.top() / 100.0 * perMm.height()),
                  QPointF(frame.right() / 100.0 * perMm.width(), frame.bottom() / 100.0 * perMm.height()));
}

bool looksLikeEmf(const QByteArray& bytes) {
    if (bytes.size() < static_cast<qsizetype>(MinHeaderSize))
        return false;
    ByteReader r(bytes);
    return r.u32At(0) == emr::Header && r.u32At(SignatureOffset) == EmfSignature;
}

EmfHeader readEmfHeader(const QByteArray& bytes) {
    if (!looksLikeEmf(bytes))
        raiseInvalidPicture("not an enhanced metafile");
    ByteReader r(bytes);
    EmfHeader h;
    h.headerSize = r.u32At(4);
    if (h.headerSize < MinHeaderSize || h.headerSize % 4 != 0 ||
        h.headerSize > static_cast<uint64_t>(bytes.size()))
        raiseInvalidPicture("enhanced metafile header size");
    r.seek(8);
    const int bl = r.i32(), bt = r.i32(), br = r.i32(), bb = r.i32();
    h.bounds = QRect(QPoint(bl, bt), QPoint(br, bb));
    const int fl = r.i32(), ft = r.i32(), fr = r.i32(), fb = r.i32();
    h.frame = QRect(QPoint(fl, ft), QPoint(fr, fb));
    r.seek(48);
    h.bytes = r.u32();
    h.records = r.u32();
    h.handles = r.u16();
    r.u16();
    const uint32_t descriptionChars = r.u32();
    const uint32_t descriptionOffset = r.u32();
    r.u32();
    const int dw = r.i32(), dh = r.i32();
    const int mw = r.i32(), mh = r.i32();
    h.deviceSize = QSize(dw, dh);
    h.millimetres = QSize(mw, mh);
    if (h.bytes < h.headerSize)
        raiseInvalidPicture("enhanced metafile size");
    if (h.bytes > static_cast<uint64_t>(bytes.size()))
        raiseInvalidPicture("enhanced metafile truncated");
    if (descriptionChars > 0 && descriptionOffset >= MinHeaderSize &&
        descriptionChars <= static_cast<uint64_t>(h.headerSize) / 2 &&
        descriptionOffset + 2ULL * descriptionChars <= h.headerSize) {
        ByteReader d = r.sub(descriptionOffset, 2 * static_cast<qsizetype>(descriptionChars));
        h.description = d.utf16(descriptionChars);
    }
    return h;
}

uint32_t checkEmfRecords(const QByteArray& bytes) {
    EmfReader reader(bytes, nullptr);
    return reader.run();
}

void parseEmf(const QByteArray& bytes, GdiSink& sink) {
    EmfReader reader(bytes, &sink);
    reader.run();
}

} // namespace tessaly::metafile
