#pragma once

#include "GdiSink.h"

#include <QByteArray>
#include <QRect>

namespace tessaly::metafile {

// The headers of an old-style metafile, with or without the placeable header.
struct WmfHeader {
    bool placeable = false;
    QRect placeableBox;   // left, top, right, bottom of the placeable header
    int unitsPerInch = 0; // Inch of the placeable header
    uint16_t checksum = 0;
    qsizetype metaOffset = 0; // where META_HEADER starts (0 or 22)
    uint16_t type = 0;
    uint16_t headerWords = 0;
    uint16_t version = 0;
    uint32_t sizeWords = 0;
    uint16_t objects = 0;
    uint32_t maxRecordWords = 0;
};

// True when the bytes start like a WMF (placeable or not).
bool looksLikeWmf(const QByteArray& bytes);
// Reads the headers; error 481 when the bytes are not a WMF.
WmfHeader readWmfHeader(const QByteArray& bytes);
// Plays every record into the sink, in logical units; error 481 for a
// damaged or truncated file. Returns the number of records, META_EOF included.
uint32_t parseWmf(const QByteArray& bytes, GdiSink* sink);
// The logical rectangle the picture occupies: the window set by its
// records, else the placeable box, else the extent of what it draws. The
// size may be negative where the window is flipped.
QRectF wmfFrame(const QByteArray& bytes);

} // namespace tessaly::metafile
