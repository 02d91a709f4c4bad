#include "CodePage.h"

namespace tessaly::metafile::cp1252 {

namespace {

// Unicode of the bytes 0x80..0x9F of windows-1252; 0 where the byte is unused.
constexpr char16_t High[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                               0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
// First byte of the range that differs from Latin-1.
constexpr int HighStart = 0x80;
constexpr int HighEnd = 0xA0;

} // namespace

QByteArray encode(const QString& text) {
    QByteArray out;
    out.reserve(text.size());
    for (QChar c : text) {
        const char16_t u = c.unicode();
        if (u < HighStart || (u >= HighEnd && u <= 0xFF)) {
            out.append(static_cast<char>(u));
            continue;
        }
        char byte = '?';
        for (int i = 0; i < HighEnd - HighStart; ++i)
            if (High[i] != 0 && High[i] == u)
                byte = static_cast<char>(HighStart + i);
        out.append(byte);
    }
    return out;
}

QString decode(const QByteArray& bytes) {
    QString out;
    out.reserve(bytes.size());
    for (char b : bytes) {
        const auto u = static_cast<unsigned char>(b);
        if (u >= HighStart && u < HighEnd && High[u - HighStart] != 0)
            out.append(QChar(High[u - HighStart]));
        else
            out.append(QChar(u));
    }
    return out;
}

} // namespace tessaly::metafile::cp1252
