#include "WmfParser.h"

#include "BoundsSink.h"
#include "ByteReader.h"
#include "RecordTypes.h"
#include "WmfReader.h"

namespace tessaly::metafile {

namespace {

// Size of the placeable header in front of a WMF.
constexpr qsizetype PlaceableSize = 22;
// Size of META_HEADER in bytes, and in 16-bit words as its field gives it.
constexpr qsizetype MetaHeaderSize = 18;
constexpr uint16_t MetaHeaderWords = 9;
// The two kinds of WMF: in memory and on disk.
constexpr uint16_t MemoryMetafile = 1;
constexpr uint16_t DiskMetafile = 2;

} // namespace

bool looksLikeWmf(const QByteArray& bytes) {
    if (bytes.size() < MetaHeaderSize)
        return false;
    ByteReader r(bytes);
    if (r.u32At(0) == PlaceableKey)
        return bytes.size() >= PlaceableSize + MetaHeaderSize;
    const uint16_t type = r.u16At(0);
    return (type == MemoryMetafile || type == DiskMetafile) && r.u16At(2) == MetaHeaderWords;
}

WmfHeader readWmfHeader(const QByteArray& bytes) {
    if (!looksLikeWmf(bytes))
        raiseInvalidPicture("not a Windows metafile");
    ByteReader r(bytes);
    WmfHeader h;
    if (r.u32At(0) == PlaceableKey) {
        h.placeable = true;
        r.seek(6);
        const int left = r.i16(), top = r.i16(), right = r.i16(), bottom = r.i16();
        h.placeableBox = QRect(QPoint(left, top), QPoint(right, bottom));
        h.unitsPerInch = r.u16();
        r.u32();
        h.checksum = r.u16();
        h.metaOffset = PlaceableSize;
    }
    r.seek(h.metaOffset);
    h.type = r.u16();
    h.headerWords = r.u16();
    h.version = r.u16();
    h.sizeWords = r.u32();
    h.objects = r.u16();
    h.maxRecordWords = r.u32();
    if ((h.type != MemoryMetafile && h.type != DiskMetafile) || h.headerWords != MetaHeaderWords)
        raiseInvalidPicture("metafile header");
    return h;
}

uint32_t parseWmf(const QByteArray& bytes, GdiSink* sink) {
    wmf::WmfReader reader(bytes, sink);
    return reader.run();
}

QRectF wmfFrame(const QByteArray& bytes) {
    const WmfHeader header = readWmfHeader(bytes);
    BoundsSink bounds;
    wmf::WmfReader reader(bytes, &bounds);
    reader.run();
    if (const auto window = reader.window())
        return *window;
    if (header.placeable && header.placeableBox.width() > 1 && header.placeableBox.height() > 1)
        return QRectF(header.placeableBox.left(), header.placeableBox.top(), header.placeableBox.width() - 1,
                      header.placeableBox.height() - 1);
    return bounds.bounds;
}

} // namespace tessaly::metafile
