#pragma once

#include "MailAccount.h"
#include "MimeMessage.h"

#include <QByteArray>
#include <QString>
#include <atomic>

namespace tessaly::mail {

// What became of one delivery.
struct DeliveryResult {
    bool delivered = false;
    bool stopped = false; // broken off because the program was closing
    int code = 0;         // libcurl's result code; 0 when the message never left
    QString reason;       // why it failed, with the server's last reply where there was one
};

// Prepares libcurl for use in any thread; the first caller pays, from the
// user interface thread.
void initialiseSmtp();

// Uploads the exact bytes of a stored message to the account's SMTP server
// with libcurl, to the envelope's recipients: with TLS from the start for
// smtps://, and for smtp:// with STARTTLS where the server offers it (and
// required when a password is to be sent). A server that keeps silent for the
// account's timeout, refuses a recipient or drops the connection fails the
// delivery. Setting `stop` breaks a delivery off.
DeliveryResult deliverSmtp(const MailAccount& account, const Envelope& envelope, const QByteArray& mime,
                           const std::atomic<bool>& stop);

} // namespace tessaly::mail
