#pragma once

#include <QString>
#include <functional>

class QIODevice;

namespace tessaly::reports {

// The file an export filter writes. Before anything is written it checks that
// the target can be opened for writing: its folder exists and may be written,
// and a file already there is not read-only and not held by another program
// (a program holding a lock on it, as viewers and office programs do). The
// bytes go to a temporary file beside the target that replaces it only when
// all of them are written, so a failure never leaves a half-written file
// there and leaves an old file as it was. Every failure is run-time error
// 7001, with a description that names the file and the reason.
class ExportTarget {
public:
    // `path`: a path of the logic. Raises 7001 when the target cannot be opened for writing.
    explicit ExportTarget(const QString& path);

    const QString& hostPath() const { return hostPath_; }

    // Writes the file with `produce`, which writes every byte to the device.
    // A RuntimeError raised by `produce` leaves the target as it was and goes on.
    void write(const std::function<void(QIODevice&)>& produce);

private:
    [[noreturn]] void fail(const QString& reason) const;

    QString hostPath_;
};

} // namespace tessaly::reports
