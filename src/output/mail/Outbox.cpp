#include "Outbox.h"

#include "core/runtime/RuntimeError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>

#include <algorithm>

namespace tessaly::mail {

namespace {

const QString OutboxFolder = QStringLiteral("Outbox");
const QString SentFolder = QStringLiteral("Sent");
// The file name pattern of a stored message.
const QString MessageSuffix = QStringLiteral(".eml");
// The time stamp a message's name starts with, so that names sort by sending.
const QString StampFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");
// The digits of the number that orders messages stored in one millisecond.
constexpr int SequenceDigits = 4;
// The hexadecimal digits of a name's random tail.
constexpr int RandomDigits = 6;

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

// The name of the next message: the present's stamp and a number one past
// that of any stored message with the same stamp, so that two messages of
// one millisecond still sort in the order they were stored; a random tail
// keeps names apart between two programs writing at once.
QString Outbox::nextName() const {
    const QString stamp = QDateTime::currentDateTime().toString(StampFormat);
    const QString prefix = stamp + QLatin1Char('-');
    int sequence = 0;
    for (const QStringList& names : {messagesIn(outboxDir()), messagesIn(sentDir())})
        for (const QString& name : names)
            if (name.startsWith(prefix)) {
                bool ok = false;
                const int used = name.mid(prefix.size(), SequenceDigits).toInt(&ok);
                if (ok)
                    sequence = std::max(sequence, used + 1);
            }
    return prefix + QString::number(sequence).rightJustified(SequenceDigits, QLatin1Char('0')) +
           QLatin1Char('-') +
           QString::number(QRandomGenerator::global()->generate() & 0xFFFFFF, 16)
               .rightJustified(RandomDigits, QLatin1Char('0')) +
           MessageSuffix;
}

QString Outbox::store(const QByteArray& mime) const {
    if (!ensure())
        raiseError(err::PathFileAccess, QStringLiteral("The outbox %1 cannot be written").arg(outboxDir()));
    QString name;
    do {
        name = nextName();
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
