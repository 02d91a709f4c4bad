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
// Bytes of a colour table entry: RGBQUAD, and the RGBTRIPLE of the oldest header form.
constexpr int RgbQuadSize = 4;
constexpr int RgbTripleSize = 3;

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

// The fields of a BITMAPINFOHEADER, or of the older BITMAPCOREHEADER, that decoding uses.
struct InfoHeader {
    uint32_t size = 0; // of the header, where its colour table starts
    int32_t width = 0;
    int32_t height = 0; // negative: the rows run top-down
    uint16_t bitCount = 0;
    uint32_t compression = gdi::BiRgb;
    uint32_t coloursUsed = 0;
    int paletteEntrySize = RgbQuadSize;
};

InfoHeader readCoreHeader(ByteReader& h) {
    InfoHeader info;
    info.size = CoreHeaderSize;
    info.width = h.u16();
    info.height = h.i16();
    h.u16(); // planes
    info.bitCount = h.u16();
    info.paletteEntrySize = RgbTripleSize;
    return info;
}

InfoHeader readInfoHeader(ByteReader& h, qsizetype headerSize) {
    const uint32_t size = h.u32();
    InfoHeader info;
    if (size == CoreHeaderSize) {
        info = readCoreHeader(h);
    } else {
        if (size < InfoHeaderSize || size > static_cast<uint32_t>(headerSize))
            raiseInvalidPicture("bitmap header size");
        info.size = size;
        info.width = h.i32();
        info.height = h.i32();
        h.u16(); // planes
        info.bitCount = h.u16();
        info.compression = h.u32();
        h.u32(); // image size
        h.i32(); // pixels per metre
        h.i32();
        info.coloursUsed = h.u32();
        h.u32(); // colours important
    }
    const uint16_t b = info.bitCount;
    if (b != 1 && b != 4 && b != 8 && b != 16 && b != 24 && b != 32)
        raiseInvalidPicture("bitmap bit count");
    return info;
}

// The number of rows, once the bitmap's size is known to be one Tessaly reads.
int checkedRows(const InfoHeader& info) {
    const int32_t height = info.height;
    const int rows = height < 0 ? (height == INT32_MIN ? MaxSide + 1 : -height) : height;
    if (info.width <= 0 || rows <= 0 || info.width > MaxSide || rows > MaxSide ||
        static_cast<qint64>(info.width) * rows > MaxPixels)
        raiseInvalidPicture("bitmap size");
    return rows;
}

// What turns the pixels' values into colours: the palette of a bitmap of up
// to 8 bits per pixel, or the masks of the red, green and blue bits.
struct ColourTable {
    uint32_t masks[3] = {0x7C00, 0x03E0, 0x001F}; // 5 bits each, as 16-bit BI_RGB has them
    QVector<QRgb> palette;
};

// The palette of an indexed bitmap, always of 2^bitCount entries: a short
// one leaves the remaining entries black.
QVector<QRgb> readPalette(ByteReader& h, const InfoHeader& info) {
    const uint32_t maxColours = 1U << info.bitCount;
    const uint32_t count =
        info.coloursUsed == 0 || info.coloursUsed > maxColours ? maxColours : info.coloursUsed;
    QVector<QRgb> palette;
    palette.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        if (!h.canRead(info.paletteEntrySize))
            break;
        const uint8_t b = h.u8();
        const uint8_t g = h.u8();
        const uint8_t r = h.u8();
        if (info.paletteEntrySize == RgbQuadSize)
            h.u8();
        palette.append(qRgb(r, g, b));
    }
    while (palette.size() < static_cast<qsizetype>(maxColours))
        palette.append(qRgb(0, 0, 0));
    return palette;
}

// The colour table (or the three masks of BI_BITFIELDS) that follows the header.
ColourTable readColourTable(ByteReader& h, const InfoHeader& info) {
    ColourTable table;
    if (info.bitCount == 32)
        table.masks[0] = 0xFF0000, table.masks[1] = 0xFF00, table.masks[2] = 0xFF;
    h.seek(info.size);
    if (info.compression == gdi::BiBitfields) {
        h.seek(InfoHeaderSize); // the masks follow the 40 bytes, inside larger header forms too
        for (uint32_t& m : table.masks)
            m = h.u32();
    } else if (info.bitCount <= 8) {
        table.palette = readPalette(h, info);
    }
    return table;
}

QRgb masked(uint32_t value, const ColourTable& table) {
    return qRgb(maskScale(value, table.masks[0]), maskScale(value, table.masks[1]),
                maskScale(value, table.masks[2]));
}

// One row of pixels of the bitmap's depth into 32-bit colours.
void decodeRow(const unsigned char* src, QRgb* dst, const InfoHeader& info, const ColourTable& table) {
    const int width = info.width;
    const QVector<QRgb>& palette = table.palette;
    switch (info.bitCount) {
    case 1:
        for (int x = 0; x < width; ++x)
            dst[x] = palette[(src[x / 8] >> (7 - x % 8)) & 1];
        break;
    case 4:
        for (int x = 0; x < width; ++x)
            dst[x] = palette[(src[x / 2] >> (x % 2 == 0 ? 4 : 0)) & 0x0F];
        break;
    case 8:
        for (int x = 0; x < width; ++x)
            dst[x] = palette[src[x]];
        break;
    case 16:
        for (int x = 0; x < width; ++x)
            dst[x] = masked(src[2 * x] | (src[2 * x + 1] << 8), table);
        break;
    case 24:
        for (int x = 0; x < width; ++x)
            dst[x] = qRgb(src[3 * x + 2], src[3 * x + 1], src[3 * x]);
        break;
    default:
        for (int x = 0; x < width; ++x)
            dst[x] = masked(src[4 * x] | (src[4 * x + 1] << 8) | (src[4 * x + 2] << 16) |
                                (static_cast<uint32_t>(src[4 * x + 3]) << 24),
                            table);
        break;
    }
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
    const InfoHeader info = readInfoHeader(h, headerSize);
    if (info.compression == BiJpeg || info.compression == BiPng)
        return QImage::fromData(QByteArray::fromRawData(bits, bitsSize));
    const int rows = checkedRows(info);
    if (info.compression != gdi::BiRgb &&
        !(info.compression == gdi::BiBitfields && (info.bitCount == 16 || info.bitCount == 32)))
        return QImage();
    const ColourTable table = readColourTable(h, info);
    const qsizetype stride = rowStride(info.width, info.bitCount);
    if (stride * rows > bitsSize)
        raiseInvalidPicture("bitmap bits shorter than their header");
    QImage image(info.width, rows, QImage::Format_RGB32);
    if (image.isNull())
        raiseInvalidPicture("bitmap too large");
    const bool bottomUp = info.height > 0;
    for (int row = 0; row < rows; ++row) {
        const auto* src = reinterpret_cast<const unsigned char*>(bits + stride * row);
        auto* dst = reinterpret_cast<QRgb*>(image.scanLine(bottomUp ? rows - 1 - row : row));
        decodeRow(src, dst, info, table);
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
