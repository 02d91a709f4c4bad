#pragma once

#include "canvas/model/Drawing.h"

#include <QByteArray>
#include <QString>
#include <vector>

// The .pdr drawing file: a versioned binary format of Tessaly's own,
// described in docs/pdr-format.md.
namespace tessaly::canvas::pdr {

constexpr int VersionMajor = 1; // readers refuse files of a higher major version
constexpr int VersionMinor = 0;

struct Contents {
    std::vector<ShapePtr> shapes;
    PageState state;
};

// Encodes a drawing (shapes in z-order, page state).
QByteArray encode(const std::vector<ShapePtr>& shapes, const PageState& state);

// Decodes a file's bytes. Every field is checked; a damaged, truncated or
// foreign file raises run-time error 30001 with a text that says what is wrong.
Contents decode(const QByteArray& bytes);

// Reads and decodes a file (host path); 30001 when missing or unreadable.
Contents readFile(const QString& hostPath);
// Encodes and writes atomically (temporary file renamed over the target).
// Returns an empty string on success, else the reason it failed.
QString writeFile(const QString& hostPath, const std::vector<ShapePtr>& shapes, const PageState& state);

// CRC-32 (IEEE 802.3) of a byte range, as stored at the end of a file.
uint32_t crc32(const char* data, size_t size);

} // namespace tessaly::canvas::pdr
