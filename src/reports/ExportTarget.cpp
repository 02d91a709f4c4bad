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
// The mode bits alone: the "user" bits say what this process may do, and
// that is everything for the superuser.
constexpr QFileDevice::Permissions WriteBits =
    QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;

// Passes writes on to the file and notes the first one that the file took
// only in part (a full disk, a file size limit): the file device itself
// reports such a short write as a success.
class CheckedDevice final : public QIODevice {
public:
    explicit CheckedDevice(QFileDevice& file) : file_(file) {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    bool failed() const { return failed_; }
    qint64 written() const { return written_; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (failed_)
            return -1;
        if (file_.write(data, size) != size) {
            failed_ = true;
            return -1;
        }
        written_ += size;
        return size;
    }

private:
    QFileDevice& file_;
    bool failed_ = false;
    qint64 written_ = 0;
};

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
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    CheckedDevice out(file);
    try {
        produce(out);
    } catch (...) {
        file.cancelWriting();
        throw;
    }
    if (out.failed() || file.error() != QFileDevice::NoError || file.size() != out.written()) {
        const QString why = file.error() != QFileDevice::NoError
                                ? file.errorString()
                                : QStringLiteral("the disk is full or the file has grown too large");
        file.cancelWriting();
        fail(why);
    }
    if (!file.commit())
        fail(file.errorString());
}

} // namespace tessaly::reports
