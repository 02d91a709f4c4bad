#include "FileSystem.h"

#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

namespace tessaly::fs {

namespace {

QString slashes(const QString& logicPath) {
    QString p = logicPath;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    // "a//b" from a folder with a trailing separator plus "\name" is one separator.
    static const QRegularExpression doubled(QStringLiteral("/{2,}"));
    p.replace(doubled, QStringLiteral("/"));
    return p;
}

// The entry of `dir` whose name equals `name` without regard to case.
QString matchEntry(const QDir& dir, const QString& name) {
    if (QFileInfo::exists(dir.filePath(name)))
        return name;
    const QStringList entries = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& e : entries)
        if (e.compare(name, Qt::CaseInsensitive) == 0)
            return e;
    return QString();
}

bool hasWildcard(const QString& s) {
    return s.contains(QLatin1Char('*')) || s.contains(QLatin1Char('?'));
}

} // namespace

QString toHost(const QString& logicPath) {
    const QString p = slashes(logicPath);
    if (p.isEmpty())
        return p;
    const bool absolute = p.startsWith(QLatin1Char('/'));
    const QStringList parts = p.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QString current = absolute ? QStringLiteral("/") : QString();
    bool matching = true;
    for (const QString& part : parts) {
        QString name = part;
        if (matching && part != QLatin1String(".") && part != QLatin1String("..")) {
            const QDir dir(current.isEmpty() ? QStringLiteral(".") : current);
            const QString found = matchEntry(dir, part);
            if (found.isEmpty())
                matching = false;
            else
                name = found;
        }
        if (current.isEmpty() || current.endsWith(QLatin1Char('/')))
            current += name;
        else
            current += QLatin1Char('/') + name;
    }
    return current;
}

bool fileExists(const QString& pattern) {
    if (pattern.trimmed().isEmpty())
        return false;
    const QString p = slashes(pattern);
    const int cut = p.lastIndexOf(QLatin1Char('/'));
    const QString last = cut >= 0 ? p.mid(cut + 1) : p;
    // Folders are no match, with or without a wildcard.
    if (!hasWildcard(last))
        return QFileInfo(toHost(p)).isFile() && !last.isEmpty();
    const QString folder = cut >= 0 ? toHost(p.left(cut).isEmpty() ? QStringLiteral("/") : p.left(cut))
                                    : QStringLiteral(".");
    if (hasWildcard(folder))
        return false;
    const QDir dir(folder);
    if (!dir.exists())
        return false;
    const QRegularExpression re(QRegularExpression::wildcardToRegularExpression(last),
                                QRegularExpression::CaseInsensitiveOption);
    const QStringList entries = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& e : entries)
        if (re.match(e).hasMatch())
            return true;
    return false;
}

bool folderExists(const QString& logicPath) {
    if (logicPath.trimmed().isEmpty())
        return false;
    return QFileInfo(toHost(logicPath)).isDir();
}

void kill(const QString& logicPath) {
    const QString host = toHost(logicPath);
    const QFileInfo info(host);
    if (!info.exists() || info.isDir())
        raiseError(err::FileNotFound);
    if (!QFile::remove(host))
        raiseError(err::PathFileAccess);
}

void mkDir(const QString& logicPath) {
    const QString host = toHost(logicPath);
    const QFileInfo info(host);
    if (info.exists())
        raiseError(err::PathFileAccess);
    if (!info.dir().exists())
        raiseError(err::PathNotFound);
    if (!QDir().mkdir(host))
        raiseError(err::PathFileAccess);
}

void copyFile(const QString& source, const QString& target, bool overwrite) {
    const QString from = toHost(source);
    QString to = toHost(target);
    if (!QFileInfo(from).isFile())
        raiseError(err::FileNotFound);
    if (slashes(target).endsWith(QLatin1Char('/')) || QFileInfo(to).isDir())
        to = QDir(to).filePath(QFileInfo(from).fileName());
    if (!QFileInfo(to).dir().exists())
        raiseError(err::PathNotFound);
    if (QFileInfo::exists(to)) {
        if (!overwrite)
            raiseError(err::FileAlreadyExists);
    }
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        raiseError(err::PermissionDenied);
    const QByteArray data = in.readAll();
    QSaveFile out(to);
    if (!out.open(QIODevice::WriteOnly) || out.write(data) != data.size() || !out.commit())
        raiseError(err::PermissionDenied);
}

void deleteFolder(const QString& logicPath) {
    const QString host = toHost(logicPath);
    if (!QFileInfo(host).isDir())
        raiseError(err::PathNotFound);
    if (!QDir(host).removeRecursively())
        raiseError(err::PermissionDenied);
}

QByteArray readAll(const QString& logicPath) {
    QFile f(toHost(logicPath));
    if (!f.exists())
        raiseError(err::FileNotFound);
    if (!f.open(QIODevice::ReadOnly))
        raiseError(err::PermissionDenied);
    return f.readAll();
}

void writeAtomically(const QString& logicPath, const QByteArray& data) {
    const QString host = toHost(logicPath);
    if (!QFileInfo(host).dir().exists())
        raiseError(err::PathNotFound);
    QSaveFile out(host);
    if (!out.open(QIODevice::WriteOnly))
        raiseError(err::PathFileAccess);
    if (out.write(data) != data.size()) {
        out.cancelWriting();
        raiseError(err::PathFileAccess);
    }
    if (!out.commit())
        raiseError(err::PathFileAccess);
}

void appendText(const QString& logicPath, const QString& text) {
    QFile f(toHost(logicPath));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append))
        raiseError(err::PathFileAccess);
    f.write(text.toLocal8Bit());
}

} // namespace tessaly::fs
