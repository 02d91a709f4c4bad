#pragma once

#include <QByteArray>
#include <QImage>

namespace tessaly::output {

// A PNG file of an RGB32 image, made for large pages: a page of greys only
// (black line work smoothed on white) is stored as 8-bit grey, any other as
// 24-bit colour; rows are filtered against the row above and compressed
// with zlib's fastest level. The image's resolution goes into the file.
QByteArray encodePng(const QImage& image);

} // namespace tessaly::output
