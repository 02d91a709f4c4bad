#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tessaly::mail {

// The mail program's two folders in the application home: Outbox, where a
// sent message waits as a standard MIME file (.eml) until it is delivered,
// and Sent, where it moves once the server has taken it. Names sort in the
// order the messages were sent. A message is never removed: it is written
// whole (a temporary file renamed into place) and moved by a rename.
class Outbox {
public:
    explicit Outbox(QString homeDir);

    QString outboxDir() const; // host paths
    QString sentDir() const;

    // Makes both folders where missing; false when they cannot be made.
    bool ensure() const;
    // Stores a message under a new name and returns the name.
    QString store(const QByteArray& mime) const;
    // The messages waiting, oldest first, and those delivered.
    QStringList waiting() const;
    QStringList sent() const;
    QByteArray read(const QString& name) const;
    // Moves a delivered message from the outbox to Sent.
    bool markSent(const QString& name) const;

private:
    QString nextName() const;

    QString home_;
};

} // namespace tessaly::mail
