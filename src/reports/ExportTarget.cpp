#include "ExportTarget.h"

#include "core/files/FileSystem.h"
#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tessaly::reports {

namespace {

// Write permission for anyone: a file or folder without any of these bits is
// read-only for every user, whatever the rights of the user running Tessaly.
constexpr QFileDevice::Permissions WriteBits =
    QFileDevice::WriteOwner | QFileDevice::WriteUser | QFileDevice::WriteGroup | QFileDevice::WriteOther;

// Whether another program holds a lock on the open file: a whole-file lock
// (flock) or a record lock (fcntl), either of which a viewer may take.
bool heldByAnother(int fd) {
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK;
    ::flock(fd, LOCK_UN);
    struct flock probe {};
    probe.l_type = F_WRLCK;
    probe.l_whence = SEEK_SET;
    probe.l_start = 0;
    probe.l_len = 0; // the whole file
    if (::fcntl(fd, F_GETLK, &probe) != 0)
        return false;
    return probe.l_type != F_UNLCK;
}

} // namespace

ExportTarget::ExportTarget(const QString& path) {
    if (path.trimmed().isEmpty()) {
        hostPath_ = path;
        fail(QStringLiteral("no file name was given"));
    }
    hostPath_ = fs::toHost(path);
    const QFileInfo target(hostPath_);
    const QFileInfo folder(target.absolutePath());
    if (!folder.isDir())
        fail(QStringLiteral("the folder %1 does not exist").arg(QDir::toNativeSeparators(folder.filePath())));
    if (!(folder.permissions() & WriteBits) || !folder.isWritable())
        fail(QStringLiteral("the folder %1 cannot be written")
                 .arg(QDir::toNativeSeparators(folder.filePath())));
    if (!target.exists())
        return;
    if (target.isDir())
        fail(QStringLiteral("it is a folder"));
    if (!(target.permissions() & WriteBits))
        fail(QStringLiteral("the file is read-only"));
    // Opened for appending, so that the check itself changes nothing.
    QFile existing(hostPath_);
    if (!existing.open(QIODevice::WriteOnly | QIODevice::Append))
        fail(existing.errorString());
    if (heldByAnother(existing.handle()))
        fail(QStringLiteral("the file is in use by another program"));
}

void ExportTarget::fail(const QString& reason) const {
    raiseError(err::PdfInUse,
               QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(hostPath_), reason));
}

void ExportTarget::write(const std::function<void(QIODevice&)>& produce) {
    QSaveFile file(hostPath_);
    if (!file.open(QIODevice::WriteOnly))
        fail(file.errorString());
    try {
        produce(file);
    } catch (...) {
        file.cancelWriting();
        throw;
    }
    if (file.error() != QFileDevice::NoError) {
        const QString why = file.errorString();
        file.cancelWriting();
        fail(why);
    }
    if (!file.commit())
        fail(file.errorString());
}

} // namespace tessaly::reports
