#include "AldusHeader.h"

#include "metafile/ByteWriter.h"

namespace tessaly {

QByteArray AldusFileHeader::toBytes() const {
    QByteArray bytes;
    metafile::ByteWriter w(bytes);
    w.u32(Key);
    w.u16(Handle);
    w.i16(Left);
    w.i16(Top);
    w.i16(Right);
    w.i16(Bottom);
    w.i16(Inch);
    w.u32(Reserved);
    w.u16(Checksum);
    return bytes;
}

} // namespace tessaly
