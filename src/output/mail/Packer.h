#pragma once

#include <QString>
#include <QStringList>

namespace tessaly::mail {

// The packer of the e-mail window, built on libzip: packs every file of a
// folder whose name matches the pattern's last part ("*.*" is every file)
// into a zip archive, never the archive itself. An empty folder gives an
// empty archive. The archive is written to a temporary file renamed into
// place. Paths are the logic's; returns the entries in the order packed.
// Raises run-time error 76 for a missing folder and 75 for an archive that
// cannot be written.
QStringList packFiles(const QString& archive, const QString& pattern);

} // namespace tessaly::mail
