#include "Dib.h"

#include "ByteReader.h"
#include "ByteWriter.h"
#include "RecordTypes.h"

#include <QPainter>

namespace tessaly::metafile::dib {

namespace {

// Largest side of a bitmap read from a file; bigger ones are taken as damage.
constexpr int MaxSide = 32768;
// Largest number of pixels read from a file (a 256-megapixel bitmap).
constexpr qint64 MaxPixels = 256LL * 1024 * 1024;
// Compression codes of a BITMAPINFOHEADER that embed a whole JPEG or PNG file.
constexpr uint32_t BiJpeg = 4;
constexpr uint32_t BiPng = 5;
// Size of the oldest header form, BITMAPCOREHEADER.
constexpr uint32_t CoreHeaderSize = 12;

qsizetype rowStride(int width, int bitCount) {
    return ((static_cast<qsizetype>(width) * bitCount + 31) / 32) * 4;
}

QImage flattenOnWhite(const QImage& image) {
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    QImage flat(image.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, image);
    painter.end();
    return flat;
}

int maskShift(uint32_t mask) {
    int shift = 0;
    while (mask != 0 && (mask & 1U) == 0) {
        mask >>= 1;
        ++shift;
    }
    return shift;
}

int maskScale(uint32_t value, uint32_t mask) {
    if (mask == 0)
        return 0;
    const int shift = maskShift(mask);
    const uint32_t max = mask >> shift;
    return static_cast<int>(((value & mask) >> shift) * 255 / max);
}

} // namespace

QByteArray infoHeader24(const QImage& image) {
    QByteArray header;
    ByteWriter w(header);
    w.u32(InfoHeaderSize);
    w.i32(image.width());
    w.i32(image.height()); // positive: rows bottom-up
    w.u16(1);              // planes
    w.u16(24);             // bits per pixel
    w.u32(gdi::BiRgb);
    w.u32(static_cast<uint32_t>(rowStride(image.width(), 24) * image.height()));
    w.i32(0); // pixels per metre: not given
    w.i32(0);
    w.u32(0); // colours used
    w.u32(0); // colours important
    return header;
}

QByteArray bits24(const QImage& image) {
    const QImage flat = flattenOnWhite(image);
    const qsizetype stride = rowStride(flat.width(), 24);
    QByteArray bits(stride * flat.height(), '\0');
    for (int y = 0; y < flat.height(); ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(flat.constScanLine(y));
        char* dst = bits.data() + stride * (flat.height() - 1 - y);
        for (int x = 0; x < flat.width(); ++x) {
            dst[3 * x] = static_cast<char>(qBlue(src[x]));
            dst[3 * x + 1] = static_cast<char>(qGreen(src[x]));
            dst[3 * x + 2] = static_cast<char>(qRed(src[x]));
        }
    }
    return bits;
}

QImage decode(const char* header, qsizetype headerSize, const char* bits, qsizetype bitsSize) {
    ByteReader h(header, headerSize);
    const uint32_t size = h.u32();
    int32_t width = 0;
    int32_t height = 0;
    uint16_t bitCount = 0;
    uint32_t compression = gdi::BiRgb;
    uint32_t coloursUsed = 0;
    int paletteEntrySize = 4;
    if (size == CoreHeaderSize) {
        width = h.u16();
        height = h.i16();
        h.u16();
        bitCount = h.u16();
        paletteEntrySize = 3;
    } else {
        if (size < InfoHeaderSize || size > static_cast<uint32_t>(headerSize))
            raiseInvalidPicture("bitmap header size");
        width = h.i32();
        height = h.i32();
        h.u16();
        bitCount = h.u16();
        compression = h.u32();
        h.u32(); // image size
        h.i32();
        h.i32();
        coloursUsed = h.u32();
        h.u32();
    }
    if (bitCount != 1 && bitCount != 4 && bitCount != 8 && bitCount != 16 && bitCount != 24 && bitCount != 32)
        raiseInvalidPicture("bitmap bit count");
    if (compression == BiJpeg || compression == BiPng)
        return QImage::fromData(QByteArray::fromRawData(bits, bitsSize));
    const bool bottomUp = height > 0;
    const int absHeight = height < 0 ? (height == INT32_MIN ? MaxSide + 1 : -height) : height;
    if (width <= 0 || absHeight <= 0 || width > MaxSide || absHeight > MaxSide ||
        static_cast<qint64>(width) * absHeight > MaxPixels)
        raiseInvalidPicture("bitmap size");
    if (compression != gdi::BiRgb && !(compression == gdi::BiBitfields && (bitCount == 16 || bitCount == 32)))
        return QImage();

    // Colour table (or the three masks of BI_BITFIELDS) follows the header.
    uint32_t masks[3] = {0x7C00, 0x03E0, 0x001F};
    if (bitCount == 32)
        masks[0] = 0xFF0000, masks[1] = 0xFF00, masks[2] = 0xFF;
    QVector<QRgb> palette;
    h.seek(size);
    if (compression == gdi::BiBitfields) {
        h.seek(InfoHeaderSize); // the masks follow the 40 bytes, inside larger header forms too
        for (uint32_t& m : masks)
            m = h.u32();
    } else if (bitCount <= 8) {
        const uint32_t maxColours = 1U << bitCount;
        const uint32_t count = coloursUsed == 0 || coloursUsed > maxColours ? maxColours : coloursUsed;
        palette.reserve(count);
        for (uint32_t i = 0; i < count; ++i) {
            if (!h.canRead(paletteEntrySize))
                break; // a short palette leaves the remaining entries black
            const uint8_t b = h.u8();
            const uint8_t g = h.u8();
            const uint8_t r = h.u8();
            if (paletteEntrySize == 4)
                h.u8();
            palette.append(qRgb(r, g, b));
        }
        while (palette.size() < static_cast<qsizetype>(maxColours))
            palette.append(qRgb(0, 0, 0));
    }

    const qsizetype stride = rowStride(width, bitCount);
    if (stride * absHeight > bitsSize)
        raiseInvalidPicture("bitmap bits shorter than their header");

    QImage image(width, absHeight, QImage::Format_RGB32);
    if (image.isNull())
        raiseInvalidPicture("bitmap too large");
    for (int row = 0; row < absHeight; ++row) {
        const auto* src = reinterpret_cast<const unsigned char*>(bits + stride * row);
        auto* dst = reinterpret_cast<QRgb*>(image.scanLine(bottomUp ? absHeight - 1 - row : row));
        for (int x = 0; x < width; ++x) {
            switch (bitCount) {
            case 1:
                dst[x] = palette[(src[x / 8] >> (7 - x % 8)) & 1];
                break;
            case 4:
                dst[x] = palette[(src[x / 2] >> (x % 2 == 0 ? 4 : 0)) & 0x0F];
                break;
            case 8:
                dst[x] = palette[src[x]];
                break;
            case 16: {
                const uint32_t v = src[2 * x] | (src[2 * x + 1] << 8);
                dst[x] = qRgb(maskScale(v, masks[0]), maskScale(v, masks[1]), maskScale(v, masks[2]));
                break;
            }
            case 24:
                dst[x] = qRgb(src[3 * x + 2], src[3 * x + 1], src[3 * x]);
                break;
            default: {
                const uint32_t v = src[4 * x] | (src[4 * x + 1] << 8) | (src[4 * x + 2] << 16) |
                                   (static_cast<uint32_t>(src[4 * x + 3]) << 24);
                dst[x] = qRgb(maskScale(v, masks[0]), maskScale(v, masks[1]), maskScale(v, masks[2]));
                break;
            }
            }
        }
    }
    return image;
}

QImage decodePacked(const char* data, qsizetype size) {
    ByteReader r(data, size);
    const uint32_t headerSize = r.u32At(0);
    qsizetype tableBytes = 0;
    if (headerSize == CoreHeaderSize) {
        const uint16_t bitCount = r.u16At(10);
        tableBytes = bitCount <= 8 ? 3 * (qsizetype(1) << bitCount) : 0;
    } else {
        if (headerSize < InfoHeaderSize || headerSize > static_cast<uint64_t>(size))
            raiseInvalidPicture("bitmap header size");
        const uint16_t bitCount = r.u16At(14);
        const uint32_t compression = r.u32At(16);
        const uint32_t used = r.u32At(32);
        if (bitCount <= 8)
            tableBytes =
                4 * static_cast<qsizetype>(used != 0 && used < (1U << bitCount) ? used : (1U << bitCount));
        if (compression == gdi::BiBitfields && headerSize == InfoHeaderSize)
            tableBytes = 12;
    }
    const qsizetype bitsOffset = headerSize + tableBytes;
    if (bitsOffset > size)
        raiseInvalidPicture("bitmap colour table");
    return decode(data, bitsOffset, data + bitsOffset, size - bitsOffset);
}

QByteArray packed24(const QImage& image) {
    return infoHeader24(image) + bits24(image);
}

} // namespace tessaly::metafile::dib
