#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <cstring>

namespace tessaly::metafile {

// Appends little-endian integers and raw bytes to a growing buffer, and patches
// values already written (record sizes, header counts).
class ByteWriter {
public:
    explicit ByteWriter(QByteArray& target) : out_(target) {}

    qsizetype size() const { return out_.size(); }

    void u8(uint8_t value) { out_.append(static_cast<char>(value)); }
    void u16(uint16_t value) { appendLe(value); }
    void i16(int16_t value) { appendLe(static_cast<uint16_t>(value)); }
    void u32(uint32_t value) { appendLe(value); }
    void i32(int32_t value) { appendLe(static_cast<uint32_t>(value)); }
    void f32(float value) {
        uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        appendLe(bits);
    }
    void bytes(const char* data, qsizetype count) { out_.append(data, count); }
    void bytes(const QByteArray& data) { out_.append(data); }
    void zeros(qsizetype count) { out_.append(count, '\0'); }
    // UTF-16LE code units of a text, without terminator.
    void utf16(const QString& text) {
        for (QChar c : text)
            u16(c.unicode());
    }
    // Pads with zero bytes up to a multiple of `alignment`, counted from `start`.
    void padTo(qsizetype start, int alignment) {
        while ((out_.size() - start) % alignment != 0)
            out_.append('\0');
    }

    void patchU32(qsizetype offset, uint32_t value) { patchLe(offset, value); }
    void patchU16(qsizetype offset, uint16_t value) { patchLe(offset, value); }

private:
    template <typename T> void appendLe(T value) {
        char buffer[sizeof(T)];
        for (size_t i = 0; i < sizeof(T); ++i)
            buffer[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
        out_.append(buffer, sizeof(T));
    }
    template <typename T> void patchLe(qsizetype offset, T value) {
        for (size_t i = 0; i < sizeof(T); ++i)
            out_[offset + static_cast<qsizetype>(i)] = static_cast<char>((value >> (8 * i)) & 0xFF);
    }

    QByteArray& out_;
};

} // namespace tessaly::metafile
