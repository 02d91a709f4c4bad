#pragma once

#include <QByteArray>
#include <QRect>
#include <QSize>
#include <cstdint>

namespace tessaly {

// The 22-byte placeable header written in front of a plan's .wmf file.
struct AldusFileHeader {
    uint32_t Key = 0;      // 0x9AC6CDD7
    uint16_t Handle = 0;   // always 0
    int16_t Left = 0;      // always 0
    int16_t Top = 0;       // always 0
    int16_t Right = 0;     // width of the source's bounds
    int16_t Bottom = 0;    // height of the source's bounds
    int16_t Inch = 0;      // metafile units per inch (APM_Inch)
    uint32_t Reserved = 0; // always 0 once a conversion went through
    uint16_t Checksum = 0; // exclusive-or of the ten words before it

    // The 22 bytes as they stand in the file, little-endian.
    QByteArray toBytes() const;
};

// The part of an enhanced metafile's header that the conversion copies.
struct EnhMetaHeaderCopy {
    QRect rclBounds;      // device units, inclusive
    QRect rclFrame;       // 0.01 mm, inclusive
    QSize szlDevice;      // reference device in device units
    QSize szlMillimeters; // reference device in millimetres
};

} // namespace tessaly
