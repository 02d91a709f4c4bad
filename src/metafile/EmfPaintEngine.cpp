#include "EmfPaintEngine.h"

#include "Dib.h"
#include "RecordTypes.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <QRegion>
#include <QTextItem>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaly::metafile {

namespace {

// Everything QPainter can hand over, so that nothing is rasterised on the
// way; only perspective transforms are left to QPainter.
constexpr QPaintEngine::PaintEngineFeatures EngineFeatures =
    QPaintEngine::PaintEngineFeatures(QPaintEngine::AllFeatures & ~QPaintEngine::PerspectiveTransform);
// Size of LOGFONTW's face name field, in UTF-16 code units.
constexpr int FaceNameLength = 32;
// Graphics mode GM_COMPATIBLE of EMR_EXTTEXTOUTW.
constexpr uint32_t GmCompatible = 1;
// Offset of the text within EMR_EXTTEXTOUTW (header, bounds, mode, scales, EMRTEXT).
constexpr uint32_t ExtTextOutStringOffset = 76;
// Side of the bitmap that carries one of Qt's dense fill patterns.
constexpr int PatternSide = 8;
// Points per inch, for font sizes.
constexpr double PointsPerInch = 72.0;
// Pattern brushes kept in the handle table for reuse: a plan hatches with a few.
constexpr size_t KeptPatterns = 16;

uint32_t colourRef(const QColor& colour) {
    const QRgb rgb = colour.rgb();
    return static_cast<uint32_t>(qRed(rgb)) | (static_cast<uint32_t>(qGreen(rgb)) << 8) |
           (static_cast<uint32_t>(qBlue(rgb)) << 16);
}

int roundToInt(double value) {
    constexpr double Limit = 2147483000.0; // keep clear of the 32-bit limits
    return static_cast<int>(std::lround(std::clamp(value, -Limit, Limit)));
}

bool fits16(const QPolygon& points) {
    for (const QPoint& p : points)
        if (p.x() < std::numeric_limits<int16_t>::min() || p.x() > std::numeric_limits<int16_t>::max() ||
            p.y() < std::numeric_limits<int16_t>::min() || p.y() > std::numeric_limits<int16_t>::max())
            return false;
    return true;
}

void writeRect(ByteWriter& w, const QRect& r) {
    w.i32(r.left());
    w.i32(r.top());
    w.i32(r.right());
    w.i32(r.bottom());
}

QColor brushColour(const QBrush& brush) {
    if (const QGradient* gradient = brush.gradient(); gradient && !gradient->stops().isEmpty())
        return gradient->stops().first().second;
    return brush.color();
}

uint32_t hatchOf(Qt::BrushStyle style) {
    switch (style) {
    case Qt::HorPattern:
        return gdi::HsHorizontal;
    case Qt::VerPattern:
        return gdi::HsVertical;
    case Qt::CrossPattern:
        return gdi::HsCross;
    case Qt::BDiagPattern:
        return gdi::HsBDiagonal;
    case Qt::FDiagPattern:
        return gdi::HsFDiagonal;
    default:
        return gdi::HsDiagCross;
    }
}

uint32_t dashStyleOf(Qt::PenStyle style) {
    switch (style) {
    case Qt::DashLine:
        return gdi::PsDash;
    case Qt::DotLine:
        return gdi::PsDot;
    case Qt::DashDotLine:
        return gdi::PsDashDot;
    case Qt::DashDotDotLine:
        return gdi::PsDashDotDot;
    case Qt::CustomDashLine:
        return gdi::PsUserStyle;
    default:
        return gdi::PsSolid;
    }
}

uint32_t capOf(Qt::PenCapStyle cap) {
    switch (cap) {
    case Qt::FlatCap:
        return gdi::PsEndcapFlat;
    case Qt::SquareCap:
        return gdi::PsEndcapSquare;
    default:
        return gdi::PsEndcapRound;
    }
}

uint32_t joinOf(Qt::PenJoinStyle join) {
    switch (join) {
    case Qt::MiterJoin:
    case Qt::SvgMiterJoin:
        return gdi::PsJoinMiter;
    case Qt::BevelJoin:
        return gdi::PsJoinBevel;
    default:
        return gdi::PsJoinRound;
    }
}

} // namespace

EmfPaintEngine::EmfPaintEngine(EmfRecorder& recorder) : QPaintEngine(EngineFeatures), rec_(recorder) {}

bool EmfPaintEngine::begin(QPaintDevice* device) {
    Q_UNUSED(device);
    if (rec_.finished())
        return false;
    transform_ = QTransform();
    pen_ = QPen();
    brush_ = QBrush();
    penDirty_ = brushDirty_ = true;
    rec_.simpleRecord(emr::SetBkMode, {gdi::Transparent});
    rec_.simpleRecord(emr::SetTextAlign, {gdi::TaBaseline});
    fillMode_ = gdi::Alternate;
    rec_.simpleRecord(emr::SetPolyFillMode, {fillMode_});
    setActive(true);
    return true;
}

bool EmfPaintEngine::end() {
    // Leave stock objects selected and free the handle table, so that a
    // player ends with nothing allocated.
    if (penHandle_ != 0)
        selectStock(penHandle_, gdi::BlackPen);
    if (brushHandle_ != 0)
        selectStockBrush(gdi::WhiteBrush);
    for (const auto& [key, handle] : patterns_)
        deleteObject(handle);
    patterns_.clear();
    if (fontHandle_ != 0)
        selectStock(fontHandle_, gdi::SystemFont);
    fontKey_.clear();
    if (clip_.active()) {
        clip_.reset();
        writeClip();
    }
    setActive(false);
    return true;
}

void EmfPaintEngine::updateState(const QPaintEngineState& state) {
    const DirtyFlags flags = state.state();
    if (flags & DirtyTransform) {
        transform_ = state.transform();
        penDirty_ = true;
        // A texture's size in device units follows the transform.
        brushDirty_ = brushDirty_ || brush_.style() == Qt::TexturePattern;
    }
    if (flags & DirtyPen) {
        pen_ = state.pen();
        penDirty_ = true;
    }
    if (flags & DirtyBrush) {
        brush_ = state.brush();
        brushDirty_ = true;
    }
    if (flags & DirtyBackgroundMode)
        rec_.simpleRecord(emr::SetBkMode,
                          {state.backgroundMode() == Qt::OpaqueMode ? gdi::Opaque : gdi::Transparent});
    if (flags & DirtyBackground)
        rec_.simpleRecord(emr::SetBkColor, {colourRef(state.backgroundBrush().color())});

    if (clip_.update(state, transform_))
        writeClip();
}

bool EmfPaintEngine::axisAligned() const {
    return qFuzzyIsNull(transform_.m12()) && qFuzzyIsNull(transform_.m21());
}

double EmfPaintEngine::lengthScale() const {
    return std::sqrt(std::abs(transform_.determinant()));
}

bool EmfPaintEngine::hasPen() const {
    return pen_.style() != Qt::NoPen && pen_.color().alpha() != 0;
}

bool EmfPaintEngine::hasBrush() const {
    return brush_.style() != Qt::NoBrush &&
           (brush_.style() == Qt::TexturePattern || brushColour(brush_).alpha() != 0);
}

QPoint EmfPaintEngine::toDevice(const QPointF& point) const {
    const QPointF mapped = transform_.map(point);
    return {roundToInt(mapped.x()), roundToInt(mapped.y())};
}

void EmfPaintEngine::deleteObject(uint32_t handle) {
    rec_.simpleRecord(emr::DeleteObject, {handle});
    rec_.releaseObject(handle);
}

void EmfPaintEngine::selectNew(uint32_t& current, uint32_t created) {
    rec_.simpleRecord(emr::SelectObject, {created});
    if (current != 0)
        deleteObject(current);
    current = created;
}

void EmfPaintEngine::selectStock(uint32_t& current, uint32_t stock) {
    rec_.simpleRecord(emr::SelectObject, {gdi::StockFlag | stock});
    if (current != 0)
        deleteObject(current);
    current = 0;
}

void EmfPaintEngine::realizePen() {
    if (!penDirty_)
        return;
    penDirty_ = false;
    if (!hasPen()) {
        selectStock(penHandle_, gdi::NullPen);
        return;
    }
    const double deviceWidth = pen_.isCosmetic() ? pen_.widthF() : pen_.widthF() * lengthScale();
    const uint32_t width = static_cast<uint32_t>(std::max(1, roundToInt(deviceWidth)));
    const uint32_t dash = dashStyleOf(pen_.style());
    std::vector<uint32_t> entries;
    if (dash == gdi::PsUserStyle)
        for (qreal d : pen_.dashPattern())
            entries.push_back(static_cast<uint32_t>(std::max(1, roundToInt(d * width))));
    const uint32_t index = rec_.allocateObject();
    ByteWriter& w = rec_.beginRecord(emr::ExtCreatePen);
    w.u32(index);
    w.u32(0); // no bitmap: offBmi, cbBmi, offBits, cbBits
    w.u32(0);
    w.u32(0);
    w.u32(0);
    w.u32(gdi::PsGeometric | dash | capOf(pen_.capStyle()) | joinOf(pen_.joinStyle()));
    w.u32(width);
    w.u32(gdi::BsSolid);
    w.u32(colourRef(pen_.color()));
    w.u32(0); // hatch
    w.u32(static_cast<uint32_t>(entries.size()));
    for (uint32_t e : entries)
        w.u32(e);
    rec_.endRecord();
    selectNew(penHandle_, index);
}

bool EmfPaintEngine::isKeptPattern(uint32_t handle) const {
    for (const auto& [key, kept] : patterns_)
        if (kept == handle)
            return true;
    return false;
}

void EmfPaintEngine::selectBrush(uint32_t created) {
    rec_.simpleRecord(emr::SelectObject, {created});
    if (brushHandle_ != 0 && brushHandle_ != created && !isKeptPattern(brushHandle_))
        deleteObject(brushHandle_);
    brushHandle_ = created;
}

void EmfPaintEngine::selectStockBrush(uint32_t stock) {
    rec_.simpleRecord(emr::SelectObject, {gdi::StockFlag | stock});
    if (brushHandle_ != 0 && !isKeptPattern(brushHandle_))
        deleteObject(brushHandle_);
    brushHandle_ = 0;
}

void EmfPaintEngine::realizeBrush() {
    if (!brushDirty_)
        return;
    brushDirty_ = false;
    if (!hasBrush()) {
        selectStockBrush(gdi::NullBrush);
        return;
    }
    const Qt::BrushStyle style = brush_.style();
    const bool hatched = style >= Qt::HorPattern && style <= Qt::DiagCrossPattern;
    const bool pattern =
        (style >= Qt::Dense1Pattern && style <= Qt::Dense7Pattern) || style == Qt::TexturePattern;
    if (pattern) {
        // A metafile lays its pattern out in device units: a texture goes in
        // at the size that its brush and the painter give it.
        QImage image = style == Qt::TexturePattern ? brush_.textureImage() : QImage();
        QSize size;
        if (style == Qt::TexturePattern) {
            const QTransform toDevice = brush_.transform() * transform_;
            size =
                QSize(std::max(1, roundToInt(image.width() * std::hypot(toDevice.m11(), toDevice.m12()))),
                      std::max(1, roundToInt(image.height() * std::hypot(toDevice.m21(), toDevice.m22()))));
        }
        // The last patterns are kept in the handle table while other brushes
        // come and go, so that shapes filled alike share one pattern record.
        const QByteArray key = QByteArray::number(style) + ' ' + QByteArray::number(brush_.color().rgba()) +
                               ' ' + QByteArray::number(image.cacheKey()) + ' ' +
                               QByteArray::number(size.width()) + 'x' + QByteArray::number(size.height());
        for (const auto& [kept, handle] : patterns_)
            if (kept == key) {
                if (brushHandle_ != handle)
                    selectBrush(handle);
                return;
            }
        if (style == Qt::TexturePattern) {
            if (!image.isNull() && size != image.size())
                image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        } else {
            image = QImage(PatternSide, PatternSide, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter p(&image);
            p.fillRect(image.rect(), QBrush(brush_.color(), style));
        }
        if (image.isNull()) {
            image = QImage(1, 1, QImage::Format_RGB32);
            image.fill(brush_.color());
        }
        const uint32_t index = rec_.allocateObject();
        const QByteArray info = dib::infoHeader24(image);
        const QByteArray bits = dib::bits24(image);
        constexpr uint32_t FixedSize = 32; // record fields before the bitmap header
        ByteWriter& w = rec_.beginRecord(emr::CreateDibPatternBrushPt);
        w.u32(index);
        w.u32(gdi::DibRgbColors);
        w.u32(FixedSize);
        w.u32(static_cast<uint32_t>(info.size()));
        w.u32(FixedSize + static_cast<uint32_t>(info.size()));
        w.u32(static_cast<uint32_t>(bits.size()));
        w.bytes(info);
        w.bytes(bits);
        rec_.endRecord();
        selectBrush(index);
        if (patterns_.size() >= KeptPatterns) {
            // The oldest goes; it is not the one selected now.
            deleteObject(patterns_.front().second);
            patterns_.erase(patterns_.begin());
        }
        patterns_.emplace_back(key, index);
        return;
    }
    const uint32_t index = rec_.allocateObject();
    ByteWriter& w = rec_.beginRecord(emr::CreateBrushIndirect);
    w.u32(index);
    w.u32(hatched ? gdi::BsHatched : gdi::BsSolid);
    w.u32(colourRef(brushColour(brush_)));
    w.u32(hatched ? hatchOf(style) : 0);
    rec_.endRecord();
    selectBrush(index);
}

void EmfPaintEngine::realizeFillMode(Qt::FillRule rule) {
    const uint32_t mode = rule == Qt::WindingFill ? gdi::Winding : gdi::Alternate;
    if (mode == fillMode_)
        return;
    fillMode_ = mode;
    rec_.simpleRecord(emr::SetPolyFillMode, {mode});
}

void EmfPaintEngine::realizeTextColour() {
    const uint32_t colour = colourRef(pen_.color());
    if (colour == textColour_)
        return;
    textColour_ = colour;
    rec_.simpleRecord(emr::SetTextColor, {colour});
}

void EmfPaintEngine::realizeFont(const QFont& font, double pixelHeight, int escapement) {
    const int height = -std::max(1, roundToInt(pixelHeight));
    const QString face = font.family().left(FaceNameLength - 1);
    const QString key = QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
                            .arg(face)
                            .arg(height)
                            .arg(font.weight())
                            .arg(font.italic())
                            .arg(font.underline())
                            .arg(font.strikeOut())
                            .arg(escapement);
    if (key == fontKey_)
        return;
    fontKey_ = key;
    const uint32_t index = rec_.allocateObject();
    ByteWriter& w = rec_.beginRecord(emr::ExtCreateFontIndirectW);
    w.u32(index);
    w.i32(height);
    w.i32(0); // width: the font's own
    w.i32(escapement);
    w.i32(escapement); // orientation follows the escapement
    w.i32(font.weight());
    w.u8(font.italic() ? 1 : 0);
    w.u8(font.underline() ? 1 : 0);
    w.u8(font.strikeOut() ? 1 : 0);
    w.u8(static_cast<uint8_t>(gdi::DefaultCharset));
    w.u8(0); // out precision
    w.u8(0); // clip precision
    w.u8(0); // quality
    w.u8(0); // pitch and family
    w.utf16(face);
    w.zeros(2 * (FaceNameLength - face.size()));
    rec_.endRecord();
    selectNew(fontHandle_, index);
}

void EmfPaintEngine::writeClip() {
    ByteWriter& w = rec_.beginRecord(emr::ExtSelectClipRgn);
    if (!clip_.active()) {
        w.u32(0);
        w.u32(gdi::RgnCopy);
        rec_.endRecord();
        return;
    }
    QRegion region(clip_.path().toFillPolygon().toPolygon(), clip_.path().fillRule());
    QList<QRect> rects(region.begin(), region.end());
    if (rects.isEmpty())
        rects.append(QRect(0, 0, 0, 0)); // everything clipped away
    constexpr uint32_t RgnHeaderSize = 32;
    constexpr uint32_t RectanglesType = 1;
    const auto count = static_cast<uint32_t>(rects.size());
    w.u32(RgnHeaderSize + 16 * count);
    w.u32(gdi::RgnCopy);
    w.u32(RgnHeaderSize);
    w.u32(RectanglesType);
    w.u32(count);
    w.u32(16 * count);
    const QRect box = region.boundingRect();
    w.i32(box.left());
    w.i32(box.top());
    w.i32(box.left() + box.width());
    w.i32(box.top() + box.height());
    for (const QRect& r : rects) {
        w.i32(r.left());
        w.i32(r.top());
        w.i32(r.left() + r.width());
        w.i32(r.top() + r.height());
    }
    rec_.endRecord();
}

QRect EmfPaintEngine::strokeBounds(const QRectF& deviceRect) const {
    int grow = 0;
    if (hasPen()) {
        const double deviceWidth = pen_.isCosmetic() ? pen_.widthF() : pen_.widthF() * lengthScale();
        grow = std::max(0, roundToInt(deviceWidth)) / 2;
    }
    return QRect(QPoint(roundToInt(deviceRect.left()) - grow, roundToInt(deviceRect.top()) - grow),
                 QPoint(roundToInt(deviceRect.right()) + grow, roundToInt(deviceRect.bottom()) + grow));
}

void EmfPaintEngine::polyRecord(uint32_t type16, uint32_t type32, const QPolygon& points, bool grow) {
    const bool small = fits16(points);
    const QRect box = points.boundingRect();
    ByteWriter& w = rec_.beginRecord(small ? type16 : type32);
    writeRect(w, box);
    w.u32(static_cast<uint32_t>(points.size()));
    for (const QPoint& p : points) {
        if (small) {
            w.i16(static_cast<int16_t>(p.x()));
            w.i16(static_cast<int16_t>(p.y()));
        } else {
            w.i32(p.x());
            w.i32(p.y());
        }
    }
    rec_.endRecord();
    if (grow)
        rec_.includeBounds(strokeBounds(QRectF(box.topLeft(), box.bottomRight())));
}

void EmfPaintEngine::rectangleRecord(uint32_t type, const QRect& box) {
    ByteWriter& w = rec_.beginRecord(type);
    w.i32(box.left());
    w.i32(box.top());
    w.i32(box.left() + box.width());
    w.i32(box.top() + box.height());
    rec_.endRecord();
}

void EmfPaintEngine::drawLines(const QLineF* lines, int lineCount) {
    if (!hasPen())
        return;
    realizePen();
    QPolygon points(2);
    for (int i = 0; i < lineCount; ++i) {
        points[0] = toDevice(lines[i].p1());
        points[1] = toDevice(lines[i].p2());
        polyRecord(emr::Polyline16, emr::Polyline, points);
    }
}

void EmfPaintEngine::drawRects(const QRectF* rects, int rectCount) {
    for (int i = 0; i < rectCount; ++i) {
        if (!axisAligned()) {
            const QPointF corners[4] = {rects[i].topLeft(), rects[i].topRight(), rects[i].bottomRight(),
                                        rects[i].bottomLeft()};
            drawPolygon(corners, 4, OddEvenMode);
            continue;
        }
        realizePen();
        realizeBrush();
        const QRectF mapped = transform_.mapRect(rects[i]);
        // GDI leaves out the right and bottom edge of the box, so the box
        // reaches one unit further than the rectangle Qt draws.
        const int extra = 1;
        const QPoint topLeft(roundToInt(mapped.left()), roundToInt(mapped.top()));
        const QPoint bottomRight(roundToInt(mapped.right()) + extra, roundToInt(mapped.bottom()) + extra);
        rectangleRecord(emr::Rectangle, QRect(topLeft, bottomRight - QPoint(1, 1)));
        rec_.includeBounds(strokeBounds(mapped));
    }
}

void EmfPaintEngine::drawEllipse(const QRectF& rect) {
    if (!axisAligned()) {
        QPainterPath path;
        path.addEllipse(rect);
        drawPath(path);
        return;
    }
    realizePen();
    realizeBrush();
    const QRectF mapped = transform_.mapRect(rect);
    const int extra = 1; // GDI leaves out the right and bottom edge of the box
    const QPoint topLeft(roundToInt(mapped.left()), roundToInt(mapped.top()));
    const QPoint bottomRight(roundToInt(mapped.right()) + extra, roundToInt(mapped.bottom()) + extra);
    rectangleRecord(emr::Ellipse, QRect(topLeft, bottomRight - QPoint(1, 1)));
    rec_.includeBounds(strokeBounds(mapped));
}

void EmfPaintEngine::drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) {
    if (pointCount <= 0)
        return;
    QPolygon device(pointCount);
    for (int i = 0; i < pointCount; ++i)
        device[i] = toDevice(points[i]);
    if (mode == PolylineMode) {
        if (!hasPen())
            return;
        realizePen();
        polyRecord(emr::Polyline16, emr::Polyline, device);
        return;
    }
    realizePen();
    realizeBrush();
    realizeFillMode(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
    polyRecord(emr::Polygon16, emr::Polygon, device);
}

void EmfPaintEngine::pathRecords(const QPainterPath& devicePath) {
    rec_.simpleRecord(emr::BeginPath, {});
    QPolygon pending;
    uint32_t pendingType = 0; // emr::PolylineTo16 or emr::PolyBezierTo16
    QPoint start;
    QPoint last;
    auto flush = [&] {
        if (pending.isEmpty())
            return;
        const bool bezier = pendingType == emr::PolyBezierTo16;
        polyRecord(bezier ? emr::PolyBezierTo16 : emr::PolylineTo16,
                   bezier ? emr::PolyBezierTo : emr::PolylineTo, pending, false);
        pending.clear();
    };
    auto closeIfReturned = [&](bool figureOpen) {
        if (figureOpen && last == start) {
            flush();
            rec_.simpleRecord(emr::CloseFigure, {});
        }
    };
    bool figureOpen = false;
    const int count = devicePath.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element e = devicePath.elementAt(i);
        const QPoint p(roundToInt(e.x), roundToInt(e.y));
        if (e.isMoveTo()) {
            closeIfReturned(figureOpen);
            flush();
            ByteWriter& w = rec_.beginRecord(emr::MoveToEx);
            w.i32(p.x());
            w.i32(p.y());
            rec_.endRecord();
            start = last = p;
            figureOpen = false;
        } else if (e.isLineTo()) {
            if (pendingType != emr::PolylineTo16)
                flush();
            pendingType = emr::PolylineTo16;
            pending.append(p);
            last = p;
            figureOpen = true;
        } else if (e.isCurveTo() && i + 2 < count) {
            if (pendingType != emr::PolyBezierTo16)
                flush();
            pendingType = emr::PolyBezierTo16;
            const QPainterPath::Element c2 = devicePath.elementAt(i + 1);
            const QPainterPath::Element end = devicePath.elementAt(i + 2);
            last = QPoint(roundToInt(end.x), roundToInt(end.y));
            pending << p << QPoint(roundToInt(c2.x), roundToInt(c2.y)) << last;
            i += 2;
            figureOpen = true;
        }
    }
    closeIfReturned(figureOpen);
    flush();
    rec_.simpleRecord(emr::EndPath, {});
}

void EmfPaintEngine::drawPath(const QPainterPath& path) {
    if (path.isEmpty())
        return;
    const bool pen = hasPen();
    const bool brush = hasBrush();
    if (!pen && !brush)
        return;
    realizePen();
    realizeBrush();
    realizeFillMode(path.fillRule());
    const QPainterPath devicePath = transform_.map(path);
    pathRecords(devicePath);
    // The bounds of the curve itself; its control points may lie far outside.
    const QRect box = strokeBounds(devicePath.boundingRect());
    const uint32_t operation =
        pen && brush ? emr::StrokeAndFillPath : (brush ? emr::FillPath : emr::StrokePath);
    ByteWriter& w = rec_.beginRecord(operation);
    writeRect(w, box);
    rec_.endRecord();
    rec_.includeBounds(box);
}

void EmfPaintEngine::drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) {
    drawImage(target, pixmap.toImage(), source);
}

void EmfPaintEngine::drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                               Qt::ImageConversionFlags flags) {
    Q_UNUSED(flags);
    if (image.isNull() || target.isEmpty())
        return;
    const QRect sourceRect = source.toAlignedRect().intersected(image.rect());
    if (sourceRect.isEmpty())
        return;
    const QImage part = sourceRect == image.rect() ? image : image.copy(sourceRect);
    const QRect deviceBounds = transform_.mapRect(target).toAlignedRect().adjusted(0, 0, -1, -1);
    if (axisAligned()) {
        const QRectF mapped = transform_.mapRect(target);
        const QPoint topLeft(roundToInt(mapped.left()), roundToInt(mapped.top()));
        const QPoint bottomRight(roundToInt(mapped.right()), roundToInt(mapped.bottom()));
        rec_.stretchDiBits(part, QRect(topLeft, bottomRight - QPoint(1, 1)), deviceBounds);
        return;
    }
    // A rotated or sheared bitmap: the record is placed in the painter's
    // own coordinates under a world transform, which is reset afterwards.
    ByteWriter& w = rec_.beginRecord(emr::SetWorldTransform);
    w.f32(static_cast<float>(transform_.m11()));
    w.f32(static_cast<float>(transform_.m12()));
    w.f32(static_cast<float>(transform_.m21()));
    w.f32(static_cast<float>(transform_.m22()));
    w.f32(static_cast<float>(transform_.dx()));
    w.f32(static_cast<float>(transform_.dy()));
    rec_.endRecord();
    const QRect logical(QPoint(roundToInt(target.left()), roundToInt(target.top())),
                        QPoint(roundToInt(target.right()) - 1, roundToInt(target.bottom()) - 1));
    rec_.stretchDiBits(part, logical, deviceBounds);
    ByteWriter& reset = rec_.beginRecord(emr::ModifyWorldTransform);
    for (float v : {1.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f})
        reset.f32(v);
    reset.u32(gdi::MwtIdentity);
    rec_.endRecord();
}

void EmfPaintEngine::drawTextItem(const QPointF& position, const QTextItem& textItem) {
    const QString text = textItem.text();
    if (text.isEmpty() || pen_.style() == Qt::NoPen)
        return;
    const QFont font = textItem.font();
    const QFontMetricsF metrics(font, paintDevice());
    const double pixelSize =
        font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * rec_.dotsPerInch() / PointsPerInch;
    const QPointF origin = transform_.map(QPointF(0, 0));
    const double scaleX = QLineF(origin, transform_.map(QPointF(1, 0))).length();
    const double scaleY = QLineF(origin, transform_.map(QPointF(0, 1))).length();
    const double angle = QLineF(origin, transform_.map(QPointF(1, 0))).angle();
    const int escapement = roundToInt(angle * 10) % 3600;
    realizeFont(font, pixelSize * scaleY, escapement);
    realizeTextColour();

    // Advances of each UTF-16 unit, rounded from the running sum so that the
    // total does not drift.
    std::vector<int32_t> advances;
    advances.reserve(static_cast<size_t>(text.size()));
    double running = 0;
    int placed = 0;
    for (QChar c : text) {
        running += metrics.horizontalAdvance(c) * scaleX;
        const int next = roundToInt(running);
        advances.push_back(next - placed);
        placed = next;
    }
    const double width = running / std::max(scaleX, 1e-9);
    const QRectF logicalBox(position.x(), position.y() - metrics.ascent(), width,
                            metrics.ascent() + metrics.descent());
    const QRectF mapped = transform_.mapRect(logicalBox);
    const QRect box(QPoint(roundToInt(mapped.left()), roundToInt(mapped.top())),
                    QPoint(roundToInt(mapped.right()), roundToInt(mapped.bottom())));
    const QPoint reference = toDevice(position);
    const auto chars = static_cast<uint32_t>(text.size());
    const uint32_t dxOffset = ExtTextOutStringOffset + ((2 * chars + 3) / 4) * 4;

    ByteWriter& w = rec_.beginRecord(emr::ExtTextOutW);
    writeRect(w, box);
    w.u32(GmCompatible);
    w.f32(0.0f);
    w.f32(0.0f);
    w.i32(reference.x());
    w.i32(reference.y());
    w.u32(chars);
    w.u32(ExtTextOutStringOffset);
    w.u32(0); // options
    w.i32(0); // rcl: no clipping or opaque box
    w.i32(0);
    w.i32(-1);
    w.i32(-1);
    w.u32(dxOffset);
    w.utf16(text);
    if (chars % 2 != 0)
        w.u16(0);
    for (int32_t a : advances)
        w.i32(a);
    rec_.endRecord();
    rec_.includeBounds(box);
}

} // namespace tessaly::metafile
