#pragma once

#include <QByteArray>
#include <QString>

namespace tessaly::metafile {

// Text of old-style metafile records is 8-bit, in the Western code page
// (windows-1252), which is what Tessaly's fonts are created for.
namespace cp1252 {
// Characters outside the code page become "?".
QByteArray encode(const QString& text);
QString decode(const QByteArray& bytes);
} // namespace cp1252

} // namespace tessaly::metafile
