#pragma once

#include "GdiSink.h"

#include <QByteArray>
#include <QRect>
#include <QSize>
#include <QString>

namespace tessaly::metafile {

// The fields of an enhanced metafile header that Tessaly uses.
struct EmfHeader {
    QRect bounds;      // rclBounds, device units, inclusive
    QRect frame;       // rclFrame, 0.01 mm, inclusive
    QSize deviceSize;  // szlDevice
    QSize millimetres; // szlMillimeters
    uint32_t headerSize = 0;
    uint32_t bytes = 0;
    uint32_t records = 0;
    uint16_t handles = 0;
    QString description;

    // Device units per millimetre of the reference device.
    QSizeF devicePerMm() const;
    // The frame in device units.
    QRectF frameInDevice() const;
};

// True when the bytes start like an enhanced metafile.
bool looksLikeEmf(const QByteArray& bytes);
// Reads the header; error 481 when the bytes are not an enhanced metafile.
EmfHeader readEmfHeader(const QByteArray& bytes);
// Walks every record, checking sizes, without drawing; error 481 for a
// damaged or truncated file. Returns the number of records.
uint32_t checkEmfRecords(const QByteArray& bytes);
// Plays every record into the sink, in device units. Error 481 when a
// record is damaged; the records before it have been played.
void parseEmf(const QByteArray& bytes, GdiSink& sink);

} // namespace tessaly::metafile
