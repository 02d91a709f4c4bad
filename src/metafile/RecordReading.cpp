#include "RecordReading.h"

#include "Dib.h"
#include "RecordTypes.h"

namespace tessaly::metafile {

namespace {

// Offsets in a DIB header: its size, and the height (negative for top-down
// rows) of the forms newer than BITMAPCOREHEADER.
constexpr qsizetype DibHeaderSizeOffset = 0;
constexpr qsizetype DibHeightOffset = 8;

} // namespace

QColor fromColourRef(uint32_t ref) {
    return QColor(ref & 0xFF, (ref >> 8) & 0xFF, (ref >> 16) & 0xFF);
}

GdiBrush logicalBrush(uint32_t style, const QColor& colour, uint32_t hatch) {
    GdiBrush brush;
    brush.colour = colour;
    brush.hatch = hatch;
    brush.kind = style == gdi::BsNull      ? GdiBrush::Kind::Null
                 : style == gdi::BsHatched ? GdiBrush::Kind::Hatched
                                           : GdiBrush::Kind::Solid;
    return brush;
}

GdiBrush patternBrush(const QImage& pattern) {
    GdiBrush brush;
    brush.pattern = pattern;
    brush.kind = brush.pattern.isNull() ? GdiBrush::Kind::Solid : GdiBrush::Kind::Pattern;
    brush.colour = Qt::gray;
    return brush;
}

GdiPen nullPen() {
    GdiPen none;
    none.null = true;
    return none;
}

std::optional<size_t> restoreTarget(qsizetype relative, size_t depth) {
    const qsizetype saved = static_cast<qsizetype>(depth);
    const qsizetype target = relative < 0 ? saved + relative : relative - 1;
    if (target < 0 || target >= saved)
        return std::nullopt;
    return static_cast<size_t>(target);
}

bool fillsWithoutSource(uint32_t rop) {
    return rop == gdi::PatCopy || rop == gdi::Blackness || rop == gdi::Whiteness;
}

std::optional<GdiBrush> blitFill(uint32_t rop) {
    if (rop == gdi::PatCopy)
        return std::nullopt;
    return GdiBrush{GdiBrush::Kind::Solid, rop == gdi::Blackness ? Qt::black : Qt::white, 0, {}};
}

std::optional<QImage> blitSource(QImage image, const ByteReader& header, const QRect& source,
                                 const QRectF& destination) {
    const bool bottomUp =
        header.i32At(DibHeightOffset) > 0 && header.u32At(DibHeaderSizeOffset) != dib::CoreHeaderSize;
    QRect src = source.normalized();
    if (bottomUp)
        src.moveTop(image.height() - src.top() - src.height());
    src = src.intersected(image.rect());
    if (src.isEmpty())
        return std::nullopt;
    if (src != image.rect())
        image = image.copy(src);
    const bool flipX = destination.width() < 0;
    const bool flipY = destination.height() < 0;
    if (flipX || flipY)
        image = image.mirrored(flipX, flipY);
    return image;
}

} // namespace tessaly::metafile
