#include "SmtpDelivery.h"

#include <algorithm>
#include <cstring>
#include <curl/curl.h>
#include <mutex>
#include <string>

namespace tessaly::mail {

namespace {

// The two URL schemes of an SMTP server.
const QString SmtpScheme = QStringLiteral("smtp://");
const QString SmtpsScheme = QStringLiteral("smtps://");

// Feeds the message to libcurl.
struct Upload {
    const QByteArray* data = nullptr;
    qsizetype offset = 0;
};

size_t readMessage(char* buffer, size_t size, size_t count, void* user) {
    auto* upload = static_cast<Upload*>(user);
    const qsizetype left = upload->data->size() - upload->offset;
    const qsizetype chunk = std::min<qsizetype>(left, static_cast<qsizetype>(size * count));
    if (chunk <= 0)
        return 0;
    std::memcpy(buffer, upload->data->constData() + upload->offset, static_cast<size_t>(chunk));
    upload->offset += chunk;
    return static_cast<size_t>(chunk);
}

// Breaks the transfer off when the program is closing.
int progress(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<const std::atomic<bool>*>(user)->load() ? 1 : 0;
}

// Keeps the server's last reply line, for the error log.
int debug(CURL*, curl_infotype type, char* data, size_t size, void* user) {
    if (type == CURLINFO_HEADER_IN) {
        auto* last = static_cast<std::string*>(user);
        last->assign(data, size);
        while (!last->empty() && (last->back() == '\n' || last->back() == '\r'))
            last->pop_back();
    }
    return 0;
}

DeliveryResult failed(const QString& reason) {
    DeliveryResult result;
    result.reason = reason;
    return result;
}

// Owns a libcurl handle and its recipient list.
struct Transfer {
    CURL* curl = curl_easy_init();
    curl_slist* recipients = nullptr;
    ~Transfer() {
        curl_slist_free_all(recipients);
        if (curl)
            curl_easy_cleanup(curl);
    }
};

} // namespace

void initialiseSmtp() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

DeliveryResult deliverSmtp(const MailAccount& account, const Envelope& envelope, const QByteArray& mime,
                           const std::atomic<bool>& stop) {
    const QString server = account.server.trimmed();
    const bool implicitTls = server.startsWith(SmtpsScheme, Qt::CaseInsensitive);
    if (!implicitTls && !server.startsWith(SmtpScheme, Qt::CaseInsensitive))
        return failed(QStringLiteral("The mail server '%1' is no smtp:// or smtps:// address").arg(server));
    if (!envelope.malformed.isEmpty())
        return failed(
            QStringLiteral("The recipient '%1' is no e-mail address").arg(envelope.malformed.first()));
    if (envelope.recipients.isEmpty())
        return failed(QStringLiteral("The message has no recipient"));
    const QString from = envelope.from.isEmpty() ? account.from : envelope.from;
    if (!isAddress(from))
        return failed(QStringLiteral("The sender '%1' is no e-mail address").arg(from));

    initialiseSmtp();
    Transfer transfer;
    if (!transfer.curl)
        return failed(QStringLiteral("The mail library cannot start a transfer"));
    CURL* curl = transfer.curl;
    const QByteArray url = server.toUtf8();
    const QByteArray sender = ('<' + from + '>').toUtf8();
    for (const QString& recipient : envelope.recipients)
        transfer.recipients =
            curl_slist_append(transfer.recipients, ('<' + recipient + '>').toUtf8().constData());
    const QByteArray user = account.user.toUtf8();
    const QByteArray password = account.password.toUtf8();
    Upload upload{&mime, 0};
    std::string lastReply;
    char errors[CURL_ERROR_SIZE] = {};
    const long timeout = account.timeoutSeconds;

    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_MAIL_FROM, sender.constData());
    curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, transfer.recipients);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, readMessage);
    curl_easy_setopt(curl, CURLOPT_READDATA, &upload);
    curl_easy_setopt(curl, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(mime.size()));
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, timeout);
    curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, timeout);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, timeout);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, progress);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &stop);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, errors);
    curl_easy_setopt(curl, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(curl, CURLOPT_DEBUGFUNCTION, debug);
    curl_easy_setopt(curl, CURLOPT_DEBUGDATA, &lastReply);
    if (!implicitTls)
        curl_easy_setopt(curl, CURLOPT_USE_SSL, password.isEmpty() ? CURLUSESSL_TRY : CURLUSESSL_ALL);
    if (!user.isEmpty()) {
        curl_easy_setopt(curl, CURLOPT_USERNAME, user.constData());
        curl_easy_setopt(curl, CURLOPT_PASSWORD, password.constData());
    }

    const CURLcode code = curl_easy_perform(curl);
    DeliveryResult result;
    result.code = static_cast<int>(code);
    if (code == CURLE_OK) {
        result.delivered = true;
        return result;
    }
    result.stopped = code == CURLE_ABORTED_BY_CALLBACK && stop.load();
    QString reason = QString::fromUtf8(errors[0] ? errors : curl_easy_strerror(code)).trimmed();
    if (!lastReply.empty())
        reason += QStringLiteral(" (server: %1)").arg(QString::fromUtf8(lastReply.c_str()));
    result.reason = reason;
    return result;
}

} // namespace tessaly::mail
