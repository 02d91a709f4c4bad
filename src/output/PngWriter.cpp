#include "PngWriter.h"

#include "core/runtime/RuntimeError.h"

#include <array>
#include <cstring>
#include <vector>
#include <zlib.h>

namespace tessaly::output {

namespace {

constexpr std::array<unsigned char, 8> Signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr uint8_t BitDepth = 8;
constexpr uint8_t GreyType = 0;      // colour type: grey
constexpr uint8_t RgbType = 2;       // colour type: red, green, blue
constexpr uint8_t FilterNone = 0;    // the first row
constexpr uint8_t FilterUp = 2;      // each byte less the one above it
constexpr uint8_t PerMetre = 1;      // pHYs unit
constexpr int OutputChunk = 1 << 20; // bytes of compressed data per IDAT chunk

void putU32(QByteArray& out, uint32_t v) {
    const char bytes[4] = {static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                           static_cast<char>(v)};
    out.append(bytes, 4);
}

void chunk(QByteArray& out, const char type[4], const QByteArray& data) {
    putU32(out, static_cast<uint32_t>(data.size()));
    const qsizetype start = out.size();
    out.append(type, 4);
    out.append(data);
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(out.constData() + start),
                           static_cast<uInt>(out.size() - start));
    putU32(out, static_cast<uint32_t>(crc));
}

bool onlyGreys(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = row[x];
            if (((p >> 16) & 0xFF) != ((p >> 8) & 0xFF) || ((p >> 8) & 0xFF) != (p & 0xFF))
                return false;
        }
    }
    return true;
}

// One row as the PNG stores it, before filtering.
void rowBytes(const QRgb* pixels, int width, bool grey, unsigned char* out) {
    if (grey) {
        for (int x = 0; x < width; ++x)
            out[x] = static_cast<unsigned char>(pixels[x] & 0xFF);
        return;
    }
    for (int x = 0; x < width; ++x) {
        out[3 * x] = static_cast<unsigned char>(qRed(pixels[x]));
        out[3 * x + 1] = static_cast<unsigned char>(qGreen(pixels[x]));
        out[3 * x + 2] = static_cast<unsigned char>(qBlue(pixels[x]));
    }
}

} // namespace

QByteArray encodePng(const QImage& source) {
    const QImage image =
        source.format() == QImage::Format_RGB32 ? source : source.convertToFormat(QImage::Format_RGB32);
    const bool grey = onlyGreys(image);
    const int width = image.width();
    const size_t stride = static_cast<size_t>(width) * (grey ? 1 : 3);

    QByteArray out(reinterpret_cast<const char*>(Signature.data()), Signature.size());
    QByteArray header;
    putU32(header, static_cast<uint32_t>(width));
    putU32(header, static_cast<uint32_t>(image.height()));
    header.append(static_cast<char>(BitDepth));
    header.append(static_cast<char>(grey ? GreyType : RgbType));
    header.append(3, '\0'); // deflate, adaptive filtering, no interlace
    chunk(out, "IHDR", header);
    if (image.dotsPerMeterX() > 0 && image.dotsPerMeterY() > 0) {
        QByteArray phys;
        putU32(phys, static_cast<uint32_t>(image.dotsPerMeterX()));
        putU32(phys, static_cast<uint32_t>(image.dotsPerMeterY()));
        phys.append(static_cast<char>(PerMetre));
        chunk(out, "pHYs", phys);
    }

    z_stream z{};
    if (deflateInit(&z, Z_BEST_SPEED) != Z_OK)
        raiseError(err::InvalidProcedureCall, QStringLiteral("The PNG compressor cannot start"));
    std::vector<unsigned char> previous(stride, 0), current(stride), filtered(stride + 1);
    std::vector<unsigned char> compressed(OutputChunk);
    const auto flushOut = [&](bool all) {
        if (z.avail_out == 0 || (all && z.avail_out < OutputChunk)) {
            chunk(out, "IDAT",
                  QByteArray(reinterpret_cast<const char*>(compressed.data()),
                             static_cast<qsizetype>(OutputChunk - z.avail_out)));
            z.next_out = compressed.data();
            z.avail_out = OutputChunk;
        }
    };
    z.next_out = compressed.data();
    z.avail_out = OutputChunk;
    for (int y = 0; y < image.height(); ++y) {
        rowBytes(reinterpret_cast<const QRgb*>(image.constScanLine(y)), width, grey, current.data());
        filtered[0] = y == 0 ? FilterNone : FilterUp;
        for (size_t i = 0; i < stride; ++i)
            filtered[i + 1] = static_cast<unsigned char>(current[i] - (y == 0 ? 0 : previous[i]));
        std::swap(previous, current);
        z.next_in = filtered.data();
        z.avail_in = static_cast<uInt>(filtered.size());
        while (z.avail_in > 0) {
            deflate(&z, Z_NO_FLUSH);
            flushOut(false);
        }
    }
    int status = Z_OK;
    while (status != Z_STREAM_END) {
        status = deflate(&z, Z_FINISH);
        flushOut(true);
    }
    deflateEnd(&z);
    chunk(out, "IEND", QByteArray());
    return out;
}

} // namespace tessaly::output
