#include "ByteReader.h"

#include "core/runtime/RuntimeError.h"

#include <cstring>

namespace tessaly::metafile {

void raiseInvalidPicture(const char* what) {
    raiseError(err::InvalidPicture, QString(),
               QStringLiteral("Tessaly metafile reader: %1").arg(QLatin1String(what)));
}

void ByteReader::require(qsizetype offset, qsizetype count) const {
    if (offset < 0 || count < 0 || offset > size_ || count > size_ - offset)
        raiseInvalidPicture("read past the end of a record");
}

void ByteReader::seek(qsizetype offset) {
    require(offset, 0);
    pos_ = offset;
}

void ByteReader::skip(qsizetype count) {
    require(pos_, count);
    pos_ += count;
}

uint8_t ByteReader::u8() {
    require(pos_, 1);
    return static_cast<uint8_t>(data_[pos_++]);
}

uint16_t ByteReader::u16() {
    const uint16_t value = u16At(pos_);
    pos_ += 2;
    return value;
}

uint32_t ByteReader::u32() {
    const uint32_t value = u32At(pos_);
    pos_ += 4;
    return value;
}

float ByteReader::f32() {
    const uint32_t bits = u32();
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

QByteArray ByteReader::bytes(qsizetype count) {
    require(pos_, count);
    QByteArray result(data_ + pos_, count);
    pos_ += count;
    return result;
}

QString ByteReader::utf16(qsizetype count) {
    if (count < 0 || count > remaining() / 2)
        raiseInvalidPicture("text longer than its record");
    QString text;
    text.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        text.append(QChar(u16()));
    return text;
}

uint16_t ByteReader::u16At(qsizetype offset) const {
    require(offset, 2);
    const auto* p = reinterpret_cast<const unsigned char*>(data_ + offset);
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

uint32_t ByteReader::u32At(qsizetype offset) const {
    require(offset, 4);
    const auto* p = reinterpret_cast<const unsigned char*>(data_ + offset);
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

ByteReader ByteReader::sub(qsizetype offset, qsizetype count) const {
    require(offset, count);
    return ByteReader(data_ + offset, count);
}

} // namespace tessaly::metafile
