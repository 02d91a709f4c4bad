#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

namespace tessaly::mail {

// A file carried by a message, under the name the recipient sees.
struct MailAttachment {
    QString fileName;
    QByteArray data;
};

// A message as the mail item holds it before it is sent.
struct MailMessage {
    QString from;   // an address, or "Name <address>"
    QStringList to; // the texts given to Recipients.Add; each may hold several addresses split by ";" or ","
    QString subject;
    QString body; // plain text
    std::vector<MailAttachment> attachments;
};

// Builds the standard MIME form of a message with GMime, as it is stored in
// the outbox and sent: Date, Message-ID, MIME-Version, From, To and Subject
// headers (non-ASCII words encoded by RFC 2047), a plain text part, and each
// attachment in base64 with its file name (non-ASCII names encoded by RFC
// 2231). Lines end with CR LF, and only 7-bit characters are used.
QByteArray buildMime(const MailMessage& message, const QDateTime& date);

// What delivery needs of a stored message: the sender, the recipients and
// the texts among the recipients that are no address at all.
struct Envelope {
    QString from;
    QStringList recipients;
    QStringList malformed;
    QString subject; // decoded
};

// Reads the envelope of a stored message with GMime. A text that cannot be
// read as a message gives an empty envelope.
Envelope readEnvelope(const QByteArray& mime);

// Whether a text is a plain address "local@domain" that a server can be given.
bool isAddress(const QString& text);

} // namespace tessaly::mail
