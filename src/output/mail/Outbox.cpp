#include "Outbox.h"

#include "core/runtime/RuntimeError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>

namespace tessaly::mail {

namespace {

const QString OutboxFolder = QStringLiteral("Outbox");
const QString SentFolder = QStringLiteral("Sent");
// The file name pattern of a stored message.
const QString MessageSuffix = QStringLiteral(".eml");
// The time stamp a message's name starts with, so that names sort by sending.
const QString StampFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");

QStringList messagesIn(const QString& dir) {
    return QDir(dir).entryList({QStringLiteral("*") + MessageSuffix}, QDir::Files, QDir::Name);
}

} // namespace

Outbox::Outbox(QString homeDir) : home_(std::move(homeDir)) {}

QString Outbox::outboxDir() const {
    return home_ + QLatin1Char('/') + OutboxFolder;
}

QString Outbox::sentDir() const {
    return home_ + QLatin1Char('/') + SentFolder;
}

bool Outbox::ensure() const {
    for (const QString& dir : {outboxDir(), sentDir()}) {
        const QFileInfo info(dir);
        if (info.exists() && !info.isDir())
            return false;
        if (!info.exists() && !QDir().mkpath(dir))
            return false;
        if (!QFileInfo(dir).isWritable())
            return false;
    }
    return true;
}

QString Outbox::store(const QByteArray& mime) const {
    if (!ensure())
        raiseError(err::PathFileAccess, QStringLiteral("The outbox %1 cannot be written").arg(outboxDir()));
    QString name;
    do {
        name = QDateTime::currentDateTime().toString(StampFormat) + QLatin1Char('-') +
               QString::number(QRandomGenerator::global()->generate() & 0xFFFFFF, 16)
                   .rightJustified(6, QLatin1Char('0')) +
               MessageSuffix;
    } while (QFileInfo::exists(outboxDir() + QLatin1Char('/') + name) ||
             QFileInfo::exists(sentDir() + QLatin1Char('/') + name));
    QSaveFile file(outboxDir() + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(mime) != mime.size() || !file.commit())
        raiseError(err::PathFileAccess, QStringLiteral("The message cannot be written to the outbox"));
    return name;
}

QStringList Outbox::waiting() const {
    return messagesIn(outboxDir());
}

QStringList Outbox::sent() const {
    return messagesIn(sentDir());
}

QByteArray Outbox::read(const QString& name) const {
    QFile file(outboxDir() + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

bool Outbox::markSent(const QString& name) const {
    if (!QDir().mkpath(sentDir()))
        return false;
    return QFile::rename(outboxDir() + QLatin1Char('/') + name, sentDir() + QLatin1Char('/') + name);
}

} // namespace tessaly::mail
