#include "Packer.h"

#include "core/files/FileSystem.h"
#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <zip.h>

namespace tessaly::mail {

namespace {

// The end record of a zip archive without entries: its signature and 18 zero bytes.
const QByteArray EmptyArchive = QByteArray("PK\x05\x06", 4) + QByteArray(18, '\0');
// The deflate level: quick, as the files are small line drawings and the
// user waits for the mail.
constexpr zip_uint32_t DeflateLevel = 1;
// Files that are compressed already are stored as they are.
const QStringList StoredSuffixes{QStringLiteral("zip"), QStringLiteral("png"), QStringLiteral("jpg"),
                                 QStringLiteral("jpeg"), QStringLiteral("gif")};

// Whether a file name matches a pattern as the platform's file commands
// match: no regard to case, "*.*" for every name, and "name.*" also for
// "name" with no extension.
bool matches(const QString& pattern, const QString& name) {
    if (pattern == QLatin1String("*.*") || pattern == QLatin1String("*"))
        return true;
    const auto wildcard = [](const QString& p) {
        return QRegularExpression(QRegularExpression::wildcardToRegularExpression(p),
                                  QRegularExpression::CaseInsensitiveOption);
    };
    if (wildcard(pattern).match(name).hasMatch())
        return true;
    return pattern.endsWith(QLatin1String(".*")) && wildcard(pattern.chopped(2)).match(name).hasMatch();
}

struct Archive {
    zip_t* zip = nullptr;
    ~Archive() {
        if (zip)
            zip_discard(zip);
    }
};

} // namespace

QStringList packFiles(const QString& archive, const QString& pattern) {
    QString logicPattern = pattern;
    logicPattern.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const int cut = logicPattern.lastIndexOf(QLatin1Char('/'));
    const QString folder = fs::toHost(cut >= 0 ? logicPattern.left(cut) : QStringLiteral("."));
    const QString filePattern = cut >= 0 ? logicPattern.mid(cut + 1) : logicPattern;
    if (!QFileInfo(folder).isDir())
        raiseError(err::PathNotFound, QStringLiteral("Path not found"), QStringLiteral("Packer"));
    const QString target = fs::toHost(archive);
    const QString targetCanonical = QFileInfo(target).absoluteFilePath();

    QStringList names;
    const QFileInfoList files =
        QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
    QFileInfoList chosen;
    for (const QFileInfo& file : files)
        if (file.absoluteFilePath() != targetCanonical && matches(filePattern, file.fileName()))
            chosen << file;

    if (chosen.isEmpty()) {
        fs::writeAtomically(archive, EmptyArchive);
        return names;
    }
    int error = 0;
    Archive out;
    out.zip = zip_open(target.toLocal8Bit().constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!out.zip)
        raiseError(err::PathFileAccess, QStringLiteral("The archive %1 cannot be made").arg(archive),
                   QStringLiteral("Packer"));
    for (const QFileInfo& file : chosen) {
        zip_source_t* source =
            zip_source_file(out.zip, file.absoluteFilePath().toLocal8Bit().constData(), 0, -1);
        if (!source)
            raiseError(err::PermissionDenied, QStringLiteral("%1 cannot be read").arg(file.fileName()),
                       QStringLiteral("Packer"));
        const zip_int64_t index = zip_file_add(out.zip, file.fileName().toUtf8().constData(), source,
                                               ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
        if (index < 0) {
            zip_source_free(source);
            raiseError(err::PathFileAccess, QString::fromUtf8(zip_strerror(out.zip)),
                       QStringLiteral("Packer"));
        }
        const bool stored = StoredSuffixes.contains(file.suffix(), Qt::CaseInsensitive);
        zip_set_file_compression(out.zip, static_cast<zip_uint64_t>(index),
                                 stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, stored ? 0 : DeflateLevel);
        names << file.fileName();
    }
    if (zip_close(out.zip) != 0)
        raiseError(err::PathFileAccess, QString::fromUtf8(zip_strerror(out.zip)), QStringLiteral("Packer"));
    out.zip = nullptr;
    return names;
}

} // namespace tessaly::mail
