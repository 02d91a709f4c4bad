#include "MimeMessage.h"

#include <QRegularExpression>
#include <QSysInfo>
// GLib names a member "signals", which Qt's keywords would replace.
#pragma push_macro("signals")
#undef signals
#include <gmime/gmime.h>
#pragma pop_macro("signals")
#include <memory>
#include <mutex>

namespace tessaly::mail {

namespace {

// The character set of every text Tessaly puts in a message.
constexpr const char* Charset = "utf-8";
// The media type of an attachment whose kind is not known from its name.
constexpr const char* OctetType = "application";
constexpr const char* OctetSubtype = "octet-stream";

void initialiseGMime() {
    static std::once_flag once;
    std::call_once(once, [] { g_mime_init(); });
}

// Owns a GObject reference.
struct Unref {
    void operator()(gpointer object) const {
        if (object)
            g_object_unref(object);
    }
};
template <class T> using Owned = std::unique_ptr<T, Unref>;

QByteArray utf8(const QString& text) {
    return text.toUtf8();
}

// The media type of an attachment by its file name.
std::pair<const char*, const char*> mediaType(const QString& fileName) {
    const QString lower = fileName.toLower();
    if (lower.endsWith(QLatin1String(".zip")))
        return {"application", "zip"};
    if (lower.endsWith(QLatin1String(".pdf")))
        return {"application", "pdf"};
    return {OctetType, OctetSubtype};
}

// The texts of one Recipients.Add: split at ";" as the mail program's address
// line is, then each read as a list of addresses.
QStringList recipientTexts(const QString& text) {
    QStringList parts;
    for (const QString& part : text.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        if (!part.trimmed().isEmpty())
            parts << part.trimmed();
    return parts;
}

// Adds one recipient text to a list: the addresses GMime reads from it, or,
// where it holds none that a server could take, the text itself, so that the
// stored message shows what was given and delivery can say why it failed.
void addRecipient(InternetAddressList* list, const QString& text) {
    Owned<InternetAddressList> parsed(internet_address_list_parse(nullptr, utf8(text).constData()));
    bool usable = parsed && internet_address_list_length(parsed.get()) > 0;
    for (int i = 0; usable && i < internet_address_list_length(parsed.get()); ++i) {
        InternetAddress* address = internet_address_list_get_address(parsed.get(), i);
        usable = INTERNET_ADDRESS_IS_MAILBOX(address) &&
                 isAddress(
                     QString::fromUtf8(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address))));
    }
    if (usable) {
        internet_address_list_append(list, parsed.get());
        return;
    }
    Owned<InternetAddress> raw(internet_address_mailbox_new(nullptr, utf8(text).constData()));
    internet_address_list_add(list, raw.get());
}

GMimeObject* textPart(const QString& body) {
    GMimeTextPart* part = g_mime_text_part_new_with_subtype("plain");
    g_mime_text_part_set_text(part, utf8(body).constData());
    return GMIME_OBJECT(part);
}

GMimeObject* attachmentPart(const MailAttachment& attachment) {
    const auto [type, subtype] = mediaType(attachment.fileName);
    GMimePart* part = g_mime_part_new_with_type(type, subtype);
    Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(attachment.data.constData(),
                                                                static_cast<size_t>(attachment.data.size())));
    Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, content.get());
    g_mime_part_set_content_encoding(part, GMIME_CONTENT_ENCODING_BASE64);
    g_mime_object_set_disposition(GMIME_OBJECT(part), GMIME_DISPOSITION_ATTACHMENT);
    g_mime_part_set_filename(part, utf8(attachment.fileName).constData());
    return GMIME_OBJECT(part);
}

// The domain of the Message-ID: the host's name, or "localhost".
QByteArray messageIdDomain() {
    QString host = QSysInfo::machineHostName().trimmed();
    if (host.isEmpty())
        host = QStringLiteral("localhost");
    return host.toUtf8();
}

QStringList mailboxes(InternetAddressList* list, QStringList& malformed) {
    QStringList out;
    if (!list)
        return out;
    for (int i = 0; i < internet_address_list_length(list); ++i) {
        InternetAddress* address = internet_address_list_get_address(list, i);
        if (INTERNET_ADDRESS_IS_GROUP(address)) {
            out << mailboxes(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), malformed);
            continue;
        }
        const QString addr =
            QString::fromUtf8(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address))).trimmed();
        if (isAddress(addr))
            out << addr;
        else
            malformed << addr;
    }
    return out;
}

// The recipients of one address header. A header that GMime cannot read
// whole is read part by part, so that each text that is no address is named.
void recipientsOf(const char* header, Envelope& envelope) {
    const QString text = QString::fromUtf8(header).trimmed();
    if (text.isEmpty())
        return;
    Owned<InternetAddressList> whole(internet_address_list_parse(nullptr, header));
    QStringList bad;
    const QStringList good = mailboxes(whole.get(), bad);
    if (whole && internet_address_list_length(whole.get()) > 0 && bad.isEmpty()) {
        envelope.recipients << good;
        return;
    }
    static const QRegularExpression separators(QStringLiteral("[,;]"));
    for (const QString& part : text.split(separators, Qt::SkipEmptyParts)) {
        const QString trimmed = part.trimmed();
        if (trimmed.isEmpty())
            continue;
        Owned<InternetAddressList> one(internet_address_list_parse(nullptr, trimmed.toUtf8().constData()));
        QStringList oneBad;
        const QStringList oneGood = mailboxes(one.get(), oneBad);
        if (!one || oneGood.isEmpty() || !oneBad.isEmpty())
            envelope.malformed << trimmed;
        else
            envelope.recipients << oneGood;
    }
}

} // namespace

bool isAddress(const QString& text) {
    static const QRegularExpression plain(QStringLiteral(R"(^[^\s@<>()\[\],;:"\\]+@[^\s@<>()\[\],;:"\\]+$)"));
    return plain.match(text).hasMatch() && !text.endsWith(QLatin1Char('.'));
}

QByteArray buildMime(const MailMessage& message, const QDateTime& date) {
    initialiseGMime();
    Owned<GMimeMessage> mime(g_mime_message_new(TRUE));
    GMimeObject* object = GMIME_OBJECT(mime.get());

    Owned<InternetAddressList> from(internet_address_list_parse(nullptr, utf8(message.from).constData()));
    if (from && internet_address_list_length(from.get()) > 0)
        internet_address_list_append(g_mime_message_get_from(mime.get()), from.get());
    InternetAddressList* to = g_mime_message_get_addresses(mime.get(), GMIME_ADDRESS_TYPE_TO);
    for (const QString& text : message.to)
        for (const QString& part : recipientTexts(text))
            addRecipient(to, part);
    g_mime_message_set_subject(mime.get(), utf8(message.subject).constData(), Charset);

    GDateTime* when = g_date_time_new_from_unix_utc(date.toSecsSinceEpoch());
    GDateTime* local = g_date_time_to_local(when);
    g_mime_message_set_date(mime.get(), local);
    g_date_time_unref(local);
    g_date_time_unref(when);
    char* id = g_mime_utils_generate_message_id(messageIdDomain().constData());
    g_mime_message_set_message_id(mime.get(), id);
    g_free(id);
    g_mime_object_set_header(object, "MIME-Version", "1.0", nullptr);

    if (message.attachments.empty()) {
        Owned<GMimeObject> body(textPart(message.body));
        g_mime_message_set_mime_part(mime.get(), body.get());
    } else {
        Owned<GMimeMultipart> mixed(g_mime_multipart_new_with_subtype("mixed"));
        Owned<GMimeObject> body(textPart(message.body));
        g_mime_multipart_add(mixed.get(), body.get());
        for (const MailAttachment& attachment : message.attachments) {
            Owned<GMimeObject> part(attachmentPart(attachment));
            g_mime_multipart_add(mixed.get(), part.get());
        }
        g_mime_message_set_mime_part(mime.get(), GMIME_OBJECT(mixed.get()));
    }
    g_mime_object_encode(object, GMIME_ENCODING_CONSTRAINT_7BIT);

    GMimeFormatOptions* format = g_mime_format_options_new();
    g_mime_format_options_set_newline_format(format, GMIME_NEWLINE_FORMAT_DOS);
    g_mime_format_options_set_param_encoding_method(format, GMIME_PARAM_ENCODING_METHOD_RFC2231);
    Owned<GMimeStream> out(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(object, format, out.get());
    g_mime_format_options_free(format);
    GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(out.get()));
    QByteArray result(reinterpret_cast<const char*>(bytes->data), static_cast<qsizetype>(bytes->len));
    if (!result.endsWith("\r\n"))
        result.append("\r\n");
    return result;
}

Envelope readEnvelope(const QByteArray& mime) {
    initialiseGMime();
    Envelope envelope;
    Owned<GMimeStream> stream(
        g_mime_stream_mem_new_with_buffer(mime.constData(), static_cast<size_t>(mime.size())));
    Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    Owned<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
    if (!message)
        return envelope;
    QStringList badSenders;
    const QStringList senders = mailboxes(g_mime_message_get_from(message.get()), badSenders);
    envelope.from = senders.value(0);
    for (const char* header : {"To", "Cc", "Bcc"})
        recipientsOf(g_mime_object_get_header(GMIME_OBJECT(message.get()), header), envelope);
    if (const char* subject = g_mime_message_get_subject(message.get()))
        envelope.subject = QString::fromUtf8(subject);
    return envelope;
}

} // namespace tessaly::mail
