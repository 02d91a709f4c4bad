#include "EmfReader.h"

#include "Dib.h"
#include "EmfParser.h"
#include "RecordReading.h"
#include "RecordTypes.h"

#include <QLineF>
#include <QRegion>

namespace tessaly::metafile::emf {

namespace {

// Size of LOGFONTW: 28 bytes of numbers and a 32-character face name.
constexpr qsizetype LogFontSize = 92;
// Offset of a record's parameters, after its type and size.
constexpr qsizetype RecordParameters = 8;

// The records after which the mapping from logical to device units is made anew.
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

} // namespace

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

// --- walking the records ---------------------------------------------------

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

EmfReader::Handler EmfReader::handlerFor(uint32_t type) {
    static const std::unordered_map<uint32_t, Handler> handlers = {
        // The device context.
        {emr::SetWindowExtEx, &EmfReader::setWindowExt},
        {emr::SetWindowOrgEx, &EmfReader::setWindowOrg},
        {emr::SetViewportExtEx, &EmfReader::setViewportExt},
        {emr::SetViewportOrgEx, &EmfReader::setViewportOrg},
        {emr::SetMapMode, &EmfReader::setMapMode},
        {emr::SetBkMode, &EmfReader::setBkMode},
        {emr::SetPolyFillMode, &EmfReader::setPolyFillMode},
        {emr::SetTextAlign, &EmfReader::setTextAlign},
        {emr::SetTextColor, &EmfReader::setTextColour},
        {emr::SetBkColor, &EmfReader::setBkColour},
        {emr::SaveDc, &EmfReader::saveDc},
        {emr::RestoreDc, &EmfReader::restoreDc},
        {emr::SetWorldTransform, &EmfReader::worldTransform},
        {emr::ModifyWorldTransform, &EmfReader::worldTransform},
        // The object table.
        {emr::CreatePen, &EmfReader::createPen},
        {emr::ExtCreatePen, &EmfReader::extCreatePen},
        {emr::CreateBrushIndirect, &EmfReader::createBrush},
        {emr::CreateDibPatternBrushPt, &EmfReader::createPatternBrush},
        {emr::CreateMonoBrush, &EmfReader::createPatternBrush},
        {emr::ExtCreateFontIndirectW, &EmfReader::createFont},
        {emr::SelectObject, &EmfReader::selectObjectRecord},
        {emr::DeleteObject, &EmfReader::deleteObject},
        // Lines and figures.
        {emr::MoveToEx, &EmfReader::moveTo},
        {emr::LineTo, &EmfReader::lineTo},
        {emr::Polyline, &EmfReader::polyRecord},
        {emr::Polyline16, &EmfReader::polyRecord},
        {emr::Polygon, &EmfReader::polyRecord},
        {emr::Polygon16, &EmfReader::polyRecord},
        {emr::PolyBezier, &EmfReader::polyRecord},
        {emr::PolyBezier16, &EmfReader::polyRecord},
        {emr::PolylineTo, &EmfReader::polyRecord},
        {emr::PolylineTo16, &EmfReader::polyRecord},
        {emr::PolyBezierTo, &EmfReader::polyRecord},
        {emr::PolyBezierTo16, &EmfReader::polyRecord},
        {emr::PolyPolyline, &EmfReader::polyPolyRecord},
        {emr::PolyPolygon, &EmfReader::polyPolyRecord},
        {emr::PolyPolyline16, &EmfReader::polyPolyRecord},
        {emr::PolyPolygon16, &EmfReader::polyPolyRecord},
        {emr::Rectangle, &EmfReader::boxRecord},
        {emr::Ellipse, &EmfReader::boxRecord},
        {emr::RoundRect, &EmfReader::roundRect},
        {emr::Arc, &EmfReader::arcRecord},
        {emr::ArcTo, &EmfReader::arcRecord},
        {emr::Chord, &EmfReader::arcRecord},
        {emr::Pie, &EmfReader::arcRecord},
        // Paths.
        {emr::BeginPath, &EmfReader::beginPath},
        {emr::EndPath, &EmfReader::endPath},
        {emr::AbortPath, &EmfReader::abortPath},
        {emr::CloseFigure, &EmfReader::closeFigure},
        {emr::FillPath, &EmfReader::paintPath},
        {emr::StrokePath, &EmfReader::paintPath},
        {emr::StrokeAndFillPath, &EmfReader::paintPath},
        // Clipping.
        {emr::SelectClipPath, &EmfReader::selectClipPath},
        {emr::ExtSelectClipRgn, &EmfReader::selectClipRegion},
        {emr::IntersectClipRect, &EmfReader::clipRect},
        {emr::ExcludeClipRect, &EmfReader::clipRect},
        // Text and bitmaps.
        {emr::ExtTextOutW, &EmfReader::drawText},
        {emr::ExtTextOutA, &EmfReader::drawText},
        {emr::StretchDiBits, &EmfReader::drawBitmap},
        {emr::BitBlt, &EmfReader::drawBitmap},
        {emr::StretchBlt, &EmfReader::drawBitmap},
    };
    const auto it = handlers.find(type);
    return it == handlers.end() ? nullptr : it->second;
}

void EmfReader::record(uint32_t type, ByteReader& r) {
    r.seek(RecordParameters);
    if (changesMapping(type))
        toDevice_.reset();
    if (const Handler handler = handlerFor(type))
        (this->*handler)(type, r);
    if (changesMapping(type))
        toDevice_.reset();
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

QPointF EmfReader::readPointL(ByteReader& r) {
    const double x = r.i32();
    const double y = r.i32();
    return {x, y};
}

QSizeF EmfReader::readSizeL(ByteReader& r) {
    const double cx = r.i32();
    const double cy = r.i32();
    return {cx, cy};
}

QRectF EmfReader::readRect(ByteReader& r) {
    const double left = r.i32();
    const double top = r.i32();
    const double right = r.i32();
    const double bottom = r.i32();
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

// --- the state the sink is told ----------------------------------------------

void EmfReader::flushState() {
    if (!stateDirty_)
        return;
    stateDirty_ = false;
    flushPen();
    flushBrush();
    flushFont();
    sink_->setTextColour(dc_.textColour);
    sink_->setBackground(dc_.bkColour, dc_.opaque);
    sink_->setTextAlign(dc_.textAlign);
    sink_->setFillRule(dc_.fillRule);
}

void EmfReader::flushPen() {
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
}

void EmfReader::flushBrush() {
    GdiBrush brush;
    if (const auto* b = dc_.brush ? std::get_if<GdiBrush>(&*dc_.brush) : nullptr)
        brush = *b;
    if (!sentBrush_ || !(brush == *sentBrush_)) {
        sink_->setBrush(brush);
        sentBrush_ = brush;
    }
}

void EmfReader::flushFont() {
    GdiFont font;
    if (const auto* f = dc_.font ? std::get_if<LogicalFont>(&*dc_.font) : nullptr) {
        font = f->font;
        const QTransform t = toDevice();
        const double sy = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(0, 1))).length();
        const double sx = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).length();
        font.height *= sy;
        font.width *= sx;
        const double turn = QLineF(t.map(QPointF(0, 0)), t.map(QPointF(1, 0))).angle();
        font.escapement = (font.escapement + static_cast<int>(std::lround(turn * 10))) % TenthsPerTurn;
    }
    if (font != sentFont_) {
        sink_->setFont(font);
        sentFont_ = font;
    }
}

// --- records of the device context -------------------------------------------

void EmfReader::setWindowExt(uint32_t, ByteReader& r) {
    dc_.page.windowExt = readSizeL(r);
    stateDirty_ = true;
}

void EmfReader::setWindowOrg(uint32_t, ByteReader& r) {
    dc_.page.windowOrg = readPointL(r);
}

void EmfReader::setViewportExt(uint32_t, ByteReader& r) {
    dc_.page.viewportExt = readSizeL(r);
    stateDirty_ = true;
}

void EmfReader::setViewportOrg(uint32_t, ByteReader& r) {
    dc_.page.viewportOrg = readPointL(r);
}

void EmfReader::setMapMode(uint32_t, ByteReader& r) {
    dc_.page.mapMode = r.u32();
    stateDirty_ = true;
}

void EmfReader::setBkMode(uint32_t, ByteReader& r) {
    dc_.opaque = r.u32() == gdi::Opaque;
    stateDirty_ = true;
}

void EmfReader::setPolyFillMode(uint32_t, ByteReader& r) {
    dc_.fillRule = r.u32() == gdi::Winding ? Qt::WindingFill : Qt::OddEvenFill;
    stateDirty_ = true;
}

void EmfReader::setTextAlign(uint32_t, ByteReader& r) {
    dc_.textAlign = r.u32();
    stateDirty_ = true;
}

void EmfReader::setTextColour(uint32_t, ByteReader& r) {
    dc_.textColour = fromColourRef(r.u32());
    stateDirty_ = true;
}

void EmfReader::setBkColour(uint32_t, ByteReader& r) {
    dc_.bkColour = fromColourRef(r.u32());
    stateDirty_ = true;
}

void EmfReader::saveDc(uint32_t, ByteReader&) {
    if (saved_.size() < MaxSavedStates)
        saved_.push_back(dc_);
}

void EmfReader::restoreDc(uint32_t, ByteReader& r) {
    const std::optional<size_t> target = restoreTarget(r.i32(), saved_.size());
    if (!target)
        return;
    dc_ = saved_[*target];
    saved_.resize(*target);
    stateDirty_ = true;
    sink_->setClip(dc_.clip);
}

void EmfReader::worldTransform(uint32_t type, ByteReader& r) {
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
}

// --- records of the object table ---------------------------------------------

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

void EmfReader::createPen(uint32_t, ByteReader& r) {
    const uint32_t index = r.u32();
    LogicalPen pen;
    pen.style = r.u32();
    pen.width = r.i32();
    r.i32();
    pen.colour = fromColourRef(r.u32());
    createObject(index, pen);
}

void EmfReader::extCreatePen(uint32_t, ByteReader& r) {
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
}

void EmfReader::createBrush(uint32_t, ByteReader& r) {
    const uint32_t index = r.u32();
    const uint32_t style = r.u32();
    const QColor colour = fromColourRef(r.u32());
    const uint32_t hatch = r.u32();
    createObject(index, logicalBrush(style, colour, hatch));
}

void EmfReader::createPatternBrush(uint32_t, ByteReader& r) {
    const uint32_t index = r.u32();
    r.u32(); // usage
    const uint32_t offBmi = r.u32();
    const uint32_t cbBmi = r.u32();
    const uint32_t offBits = r.u32();
    const uint32_t cbBits = r.u32();
    const ByteReader header = r.sub(offBmi, cbBmi);
    const ByteReader bits = r.sub(offBits, cbBits);
    createObject(index, patternBrush(dib::decode(header.data(), header.size(), bits.data(), bits.size())));
}

void EmfReader::createFont(uint32_t, ByteReader& r) {
    const uint32_t index = r.u32();
    if (r.remaining() < LogFontSize)
        raiseInvalidPicture("font record too short");
    LogicalFont logical;
    logical.font.height = r.i32();
    logical.font.width = r.i32();
    logical.font.escapement = r.i32() % TenthsPerTurn;
    r.i32(); // orientation
    logical.font.weight = r.i32();
    logical.font.italic = r.u8() != 0;
    logical.font.underline = r.u8() != 0;
    logical.font.strikeOut = r.u8() != 0;
    logical.font.charset = r.u8();
    r.skip(4);
    QString face = r.utf16(FaceNameChars);
    face.truncate(face.indexOf(QChar(0)) < 0 ? face.size() : face.indexOf(QChar(0)));
    logical.font.face = face;
    createObject(index, logical);
}

void EmfReader::selectObjectRecord(uint32_t, ByteReader& r) {
    selectObject(r.u32());
}

void EmfReader::deleteObject(uint32_t, ByteReader& r) {
    objects_.erase(r.u32());
}

// --- records that clip -------------------------------------------------------

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

void EmfReader::selectClipPath(uint32_t, ByteReader& r) {
    if (inPath_)
        return;
    combineClip(finishedPath_, r.u32());
    finishedPath_ = QPainterPath();
}

void EmfReader::selectClipRegion(uint32_t, ByteReader& r) {
    const uint32_t cb = r.u32();
    const uint32_t mode = r.u32();
    if (cb == 0) {
        if (mode == gdi::RgnCopy)
            setClip(std::nullopt);
        return;
    }
    // RGNDATA: its header of 32 bytes (the count of rectangles at 8), then the rectangles.
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
}

void EmfReader::clipRect(uint32_t type, ByteReader& r) {
    QPainterPath rect;
    rect.addPolygon(mappedRect(toDevice(), readRect(r)));
    combineClip(rect, type == emr::IntersectClipRect ? gdi::RgnAnd : gdi::RgnDiff);
}

} // namespace tessaly::metafile::emf
