#include "EmfParser.h"

#include "ByteReader.h"
#include "EmfReader.h"
#include "RecordTypes.h"

namespace tessaly::metafile {

namespace {

// Smallest header a reader accepts (the original 88-byte form).
constexpr uint32_t MinHeaderSize = 88;
// Offset of the signature in the header.
constexpr qsizetype SignatureOffset = 40;

} // namespace

QSizeF EmfHeader::devicePerMm() const {
    if (deviceSize.width() > 0 && deviceSize.height() > 0 && millimetres.width() > 0 &&
        millimetres.height() > 0)
        return QSizeF(double(deviceSize.width()) / millimetres.width(),
                      double(deviceSize.height()) / millimetres.height());
    return QSizeF(96 / 25.4, 96 / 25.4);
}

QRectF EmfHeader::frameInDevice() const {
    const QSizeF perMm = devicePerMm();
    return QRectF(QPointF(frame.left() / 100.0 * perMm.width(), frame.top() / 100.0 * perMm.height()),
                  QPointF(frame.right() / 100.0 * perMm.width(), frame.bottom() / 100.0 * perMm.height()));
}

bool looksLikeEmf(const QByteArray& bytes) {
    if (bytes.size() < static_cast<qsizetype>(MinHeaderSize))
        return false;
    ByteReader r(bytes);
    return r.u32At(0) == emr::Header && r.u32At(SignatureOffset) == EmfSignature;
}

EmfHeader readEmfHeader(const QByteArray& bytes) {
    if (!looksLikeEmf(bytes))
        raiseInvalidPicture("not an enhanced metafile");
    ByteReader r(bytes);
    EmfHeader h;
    h.headerSize = r.u32At(4);
    if (h.headerSize < MinHeaderSize || h.headerSize % 4 != 0 ||
        h.headerSize > static_cast<uint64_t>(bytes.size()))
        raiseInvalidPicture("enhanced metafile header size");
    r.seek(8);
    const int bl = r.i32(), bt = r.i32(), br = r.i32(), bb = r.i32();
    h.bounds = QRect(QPoint(bl, bt), QPoint(br, bb));
    const int fl = r.i32(), ft = r.i32(), fr = r.i32(), fb = r.i32();
    h.frame = QRect(QPoint(fl, ft), QPoint(fr, fb));
    r.seek(48);
    h.bytes = r.u32();
    h.records = r.u32();
    h.handles = r.u16();
    r.u16();
    const uint32_t descriptionChars = r.u32();
    const uint32_t descriptionOffset = r.u32();
    r.u32();
    const int dw = r.i32(), dh = r.i32();
    const int mw = r.i32(), mh = r.i32();
    h.deviceSize = QSize(dw, dh);
    h.millimetres = QSize(mw, mh);
    if (h.bytes < h.headerSize)
        raiseInvalidPicture("enhanced metafile size");
    if (h.bytes > static_cast<uint64_t>(bytes.size()))
        raiseInvalidPicture("enhanced metafile truncated");
    if (descriptionChars > 0 && descriptionOffset >= MinHeaderSize &&
        descriptionChars <= static_cast<uint64_t>(h.headerSize) / 2 &&
        descriptionOffset + 2ULL * descriptionChars <= h.headerSize) {
        ByteReader d = r.sub(descriptionOffset, 2 * static_cast<qsizetype>(descriptionChars));
        h.description = d.utf16(descriptionChars);
    }
    return h;
}

uint32_t checkEmfRecords(const QByteArray& bytes) {
    emf::EmfReader reader(bytes, nullptr);
    return reader.run();
}

void parseEmf(const QByteArray& bytes, GdiSink& sink) {
    emf::EmfReader reader(bytes, &sink);
    reader.run();
}

} // namespace tessaly::metafile
