#pragma once

#include <QByteArray>
#include <QImage>

namespace tessaly::metafile {

// Device-independent bitmaps, as metafile records carry them: a
// BITMAPINFOHEADER (with its colour table) followed by the pixel rows.
namespace dib {

// Size of a BITMAPINFOHEADER.
constexpr int InfoHeaderSize = 40;
// Size of the oldest header form, BITMAPCOREHEADER, whose rows always run bottom-up.
constexpr uint32_t CoreHeaderSize = 12;

// The 40-byte header of a 24-bit bottom-up bitmap of the image's size.
QByteArray infoHeader24(const QImage& image);
// The pixel rows of the image as a 24-bit bottom-up DIB (rows padded to 4
// bytes). Transparent pixels are laid over white, as a DIB has no alpha.
QByteArray bits24(const QImage& image);

// Decodes a DIB from its header (with colour table) and its bits. Returns a
// null image for a compression it does not read; raises 481 for a header
// that is damaged or bits shorter than the header promises.
QImage decode(const char* header, qsizetype headerSize, const char* bits, qsizetype bitsSize);

// Decodes a packed DIB (header, colour table and bits in one block), as
// old-style metafile records carry it.
QImage decodePacked(const char* data, qsizetype size);
// A packed 24-bit DIB of the image.
QByteArray packed24(const QImage& image);

} // namespace dib
} // namespace tessaly::metafile
