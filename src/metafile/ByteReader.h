#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace tessaly::metafile {

// Reads little-endian values from a window of a byte buffer. Every read is
// checked against the window's end: reading past it raises error 481
// (invalid picture), so a damaged file can never be read beyond its bytes.
class ByteReader {
public:
    ByteReader(const char* data, qsizetype size) : data_(data), size_(size < 0 ? 0 : size) {}
    explicit ByteReader(const QByteArray& bytes) : ByteReader(bytes.constData(), bytes.size()) {}

    qsizetype size() const { return size_; }
    qsizetype pos() const { return pos_; }
    qsizetype remaining() const { return size_ - pos_; }
    const char* data() const { return data_; }
    bool canRead(qsizetype count) const { return count >= 0 && count <= size_ - pos_; }

    void seek(qsizetype offset);
    void skip(qsizetype count);

    uint8_t u8();
    uint16_t u16();
    int16_t i16() { return static_cast<int16_t>(u16()); }
    uint32_t u32();
    int32_t i32() { return static_cast<int32_t>(u32()); }
    float f32();
    // `count` raw bytes from the current position.
    QByteArray bytes(qsizetype count);
    // `count` UTF-16LE code units.
    QString utf16(qsizetype count);

    // Values at an absolute offset of the window, without moving.
    uint16_t u16At(qsizetype offset) const;
    uint32_t u32At(qsizetype offset) const;
    int32_t i32At(qsizetype offset) const { return static_cast<int32_t>(u32At(offset)); }

    // A reader over `count` bytes starting at `offset` of this window.
    ByteReader sub(qsizetype offset, qsizetype count) const;

private:
    void require(qsizetype offset, qsizetype count) const;

    const char* data_;
    qsizetype size_;
    qsizetype pos_ = 0;
};

// Raises error 481 with a description of what is damaged.
[[noreturn]] void raiseInvalidPicture(const char* what);

} // namespace tessaly::metafile
