// The MIME form of a message, read back by Python's e-mail package.
#include "output/mail/MimeMessage.h"
#include "OutputTestSupport.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace tessaly::mail {
namespace {

MailMessage sample() {
    MailMessage m;
    m.from = QStringLiteral("office@tessaly.test");
    m.to = {QStringLiteral("ann@hartley.test")};
    m.subject = QStringLiteral("Site Plans For: 3 Rue Émile Zola, FAO: Zoë Müller");
    m.body = QStringLiteral("Dear Zoë,\nThe plans are attached.\n. A line with a dot.\n");
    QByteArray zip("PK\x03\x04 not really a zip but bytes \x00\x01\x02\xff", 40);
    m.attachments.push_back({QStringLiteral("Pläne für Zoë.zip"), zip});
    return m;
}

TEST(MimeMessage, HeadersBodyAndAttachmentAsAMailReaderSeesThem) {
    const MailMessage m = sample();
    const QByteArray mime = buildMime(m, QDateTime(QDate(2024, 3, 5), QTime(14, 30, 0), QTimeZone::utc()));
    QTemporaryDir dir;
    const QJsonObject seen = test::inspectMail(mime, dir.path());
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_TRUE(seen[QStringLiteral("crlf")].toBool());
    EXPECT_TRUE(seen[QStringLiteral("seven_bit")].toBool());
    EXPECT_EQ(seen[QStringLiteral("mime_version")].toString(), QStringLiteral("1.0"));
    EXPECT_TRUE(seen[QStringLiteral("message_id")].toString().startsWith(QLatin1Char('<')));
    EXPECT_TRUE(seen[QStringLiteral("message_id")].toString().endsWith(QLatin1Char('>')));
    EXPECT_TRUE(seen[QStringLiteral("date")].toString().contains(QStringLiteral("5 Mar 2024")));
    EXPECT_EQ(seen[QStringLiteral("subject")].toString(), m.subject);
    // The non-ASCII words of the subject are encoded words of RFC 2047.
    EXPECT_TRUE(seen[QStringLiteral("raw_subject")].toString().contains(QStringLiteral("=?utf-8?"),
                                                                        Qt::CaseInsensitive));
    EXPECT_EQ(seen[QStringLiteral("from")].toString(), m.from);
    EXPECT_EQ(seen[QStringLiteral("to")].toString(), QStringLiteral("ann@hartley.test"));
    QString body = seen[QStringLiteral("body")].toString();
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    EXPECT_EQ(body, m.body);
    const QJsonArray attachments = seen[QStringLiteral("attachments")].toArray();
    ASSERT_EQ(attachments.size(), 1);
    const QJsonObject a = attachments[0].toObject();
    EXPECT_EQ(a[QStringLiteral("filename")].toString(), m.attachments[0].fileName);
    EXPECT_EQ(a[QStringLiteral("content_type")].toString(), QStringLiteral("application/zip"));
    // The file name is a parameter of RFC 2231: filename*=utf-8''...
    EXPECT_TRUE(a[QStringLiteral("raw_disposition")].toString().contains(QStringLiteral("filename*"),
                                                                         Qt::CaseInsensitive));
    QFile saved(a[QStringLiteral("saved")].toString());
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), m.attachments[0].data);
}

TEST(MimeMessage, TwoMessagesHaveTwoMessageIds) {
    const QDateTime now = QDateTime::currentDateTime();
    const QByteArray a = buildMime(sample(), now);
    const QByteArray b = buildMime(sample(), now);
    auto id = [](const QByteArray& mime) {
        for (const QByteArray& line : mime.split('\n'))
            if (line.toLower().startsWith("message-id:"))
                return line.trimmed();
        return QByteArray();
    };
    ASSERT_FALSE(id(a).isEmpty());
    EXPECT_NE(id(a), id(b));
}

TEST(MimeMessage, WithoutAttachmentsTheMessageIsOnePlainText) {
    MailMessage m = sample();
    m.attachments.clear();
    const QByteArray mime = buildMime(m, QDateTime::currentDateTime());
    EXPECT_FALSE(mime.contains("multipart"));
    EXPECT_TRUE(mime.contains("Content-Type: text/plain"));
}

TEST(MimeMessage, TheEnvelopeNamesSenderRecipientsAndSubject) {
    MailMessage m = sample();
    m.to = {QStringLiteral("ann@hartley.test; Bob Smith <bob@smith.test>"), QStringLiteral("carl@x.test")};
    const Envelope e = readEnvelope(buildMime(m, QDateTime::currentDateTime()));
    EXPECT_EQ(e.from, QStringLiteral("office@tessaly.test"));
    EXPECT_EQ(e.recipients, (QStringList{QStringLiteral("ann@hartley.test"), QStringLiteral("bob@smith.test"),
                                         QStringLiteral("carl@x.test")}));
    EXPECT_TRUE(e.malformed.isEmpty());
    EXPECT_EQ(e.subject, m.subject);
}

TEST(MimeMessage, AMalformedOrEmptyRecipientIsKeptAndNamedByTheEnvelope) {
    MailMessage m = sample();
    m.to = {QStringLiteral("not an address")};
    Envelope e = readEnvelope(buildMime(m, QDateTime::currentDateTime()));
    EXPECT_TRUE(e.recipients.isEmpty());
    ASSERT_EQ(e.malformed.size(), 1);
    EXPECT_TRUE(e.malformed[0].contains(QStringLiteral("not")));

    m.to = {QString()};
    e = readEnvelope(buildMime(m, QDateTime::currentDateTime()));
    EXPECT_TRUE(e.recipients.isEmpty());
    EXPECT_TRUE(e.malformed.isEmpty());
}

TEST(MimeMessage, AddressesAreLocalAtDomain) {
    EXPECT_TRUE(isAddress(QStringLiteral("ann@hartley.test")));
    EXPECT_TRUE(isAddress(QStringLiteral("o'brien@site.co.uk")));
    EXPECT_FALSE(isAddress(QStringLiteral("ann")));
    EXPECT_FALSE(isAddress(QStringLiteral("ann@")));
    EXPECT_FALSE(isAddress(QStringLiteral("ann smith@x.test")));
    EXPECT_FALSE(isAddress(QStringLiteral("a@b@c")));
    EXPECT_FALSE(isAddress(QString()));
}

TEST(MimeMessage, TextThatIsNoMessageGivesAnEmptyEnvelope) {
    const Envelope e = readEnvelope(QByteArray());
    EXPECT_TRUE(e.recipients.isEmpty());
    EXPECT_TRUE(e.from.isEmpty());
}

} // namespace
} // namespace tessaly::mail
