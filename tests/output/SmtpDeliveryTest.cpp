// Delivery of the outbox to a real SMTP server on loopback.
#include "OutputTestSupport.h"
#include "output/mail/MailDelivery.h"
#include "output/mail/MimeMessage.h"
#include "output/mail/Outbox.h"

#include <QDateTime>
#include <QJsonArray>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <mutex>

namespace tessaly::mail {
namespace {

using test::SmtpTestServer;

struct LogLine {
    QString number, text, source;
};

class Delivery : public ::testing::Test {
protected:
    QTemporaryDir home;
    Outbox outbox{home.path()};
    std::mutex mutex;
    std::vector<LogLine> log;
    MailDelivery delivery{outbox, [this](const QString& n, const QString& t, const QString& s) {
                              const std::lock_guard lock(mutex);
                              log.push_back({n, t, s});
                          }};

    QString store(const QStringList& to, const QString& subject = QStringLiteral("Site Plans")) {
        MailMessage m;
        m.from = QStringLiteral("office@tessaly.test");
        m.to = to;
        m.subject = subject;
        m.body = QStringLiteral("The plans.\r\n");
        m.attachments.push_back(
            {QStringLiteral("Drawings.zip"), QByteArray("PK\x05\x06", 4) + QByteArray(18, 0)});
        return outbox.store(buildMime(m, QDateTime::currentDateTime()));
    }
    static MailAccount account(const QString& server, int timeout = 10) {
        MailAccount a;
        a.server = server;
        a.from = QStringLiteral("office@tessaly.test");
        a.timeoutSeconds = timeout;
        return a;
    }
    std::vector<DeliveryOutcome> run(const MailAccount& a) {
        delivery.start(a);
        return delivery.wait();
    }
};

TEST_F(Delivery, AMessageIsDeliveredByteForByteAndMovesToSent) {
    SmtpTestServer server;
    ASSERT_TRUE(server.running());
    const QString name = store({QStringLiteral("ann@hartley.test")});
    const QByteArray stored = outbox.read(name);
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_TRUE(outcomes[0].delivered) << outcomes[0].reason.toStdString();
    EXPECT_EQ(outcomes[0].subject, QStringLiteral("Site Plans"));
    ASSERT_EQ(server.count(), 1);
    EXPECT_EQ(server.message(1), stored);
    EXPECT_EQ(server.envelope(1)[QStringLiteral("from")].toString(), QStringLiteral("office@tessaly.test"));
    EXPECT_EQ(server.envelope(1)[QStringLiteral("to")].toArray(),
              QJsonArray{QStringLiteral("ann@hartley.test")});
    EXPECT_TRUE(outbox.waiting().isEmpty());
    EXPECT_EQ(outbox.sent(), QStringList{name});
    EXPECT_TRUE(log.empty());
}

TEST_F(Delivery, EveryRecipientOfEveryMessageIsGivenToTheServerOldestFirst) {
    SmtpTestServer server;
    ASSERT_TRUE(server.running());
    store({QStringLiteral("ann@hartley.test; bob@smith.test")}, QStringLiteral("first"));
    store({QStringLiteral("carl@x.test")}, QStringLiteral("second"));
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 2u);
    EXPECT_EQ(outcomes[0].subject, QStringLiteral("first"));
    EXPECT_EQ(outcomes[1].subject, QStringLiteral("second"));
    EXPECT_EQ(server.envelope(1)[QStringLiteral("to")].toArray(),
              (QJsonArray{QStringLiteral("ann@hartley.test"), QStringLiteral("bob@smith.test")}));
    EXPECT_EQ(server.envelope(2)[QStringLiteral("to")].toArray(), QJsonArray{QStringLiteral("carl@x.test")});
    EXPECT_EQ(outbox.sent().size(), 2);
}

// Messages stored within one millisecond keep the order they were stored in,
// in the outbox and after delivery in Sent.
TEST_F(Delivery, MessagesStoredInOneMillisecondKeepTheirOrder) {
    QStringList stored;
    for (int i = 0; i < 40; ++i)
        stored << outbox.store(QByteArray("Subject: ") + QByteArray::number(i) + "\r\n\r\n.\r\n");
    EXPECT_EQ(outbox.waiting(), stored);
    for (const QString& name : stored)
        ASSERT_TRUE(outbox.markSent(name)) << name.toStdString();
    EXPECT_EQ(outbox.sent(), stored);
    // The stored bytes are the message given.
    const QString next = outbox.store(QByteArrayLiteral("Subject: last\r\n"));
    EXPECT_EQ(outbox.read(next), QByteArrayLiteral("Subject: last\r\n"));
    EXPECT_EQ(outbox.waiting(), QStringList{next});
}

TEST_F(Delivery, ARefusedRecipientLeavesTheMessageAndLogsTheServersReply) {
    SmtpTestServer server(QStringLiteral("refuse"));
    ASSERT_TRUE(server.running());
    const QString name = store({QStringLiteral("nobody@hartley.test")});
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_EQ(outbox.waiting(), QStringList{name});
    EXPECT_TRUE(outbox.sent().isEmpty());
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].source, QStringLiteral("Outbox"));
    EXPECT_TRUE(log[0].text.contains(QStringLiteral("550"))) << log[0].text.toStdString();
    EXPECT_TRUE(log[0].text.contains(name));
    EXPECT_EQ(server.count(), 0);
}

TEST_F(Delivery, AServerThatDropsTheConnectionLeavesTheMessage) {
    SmtpTestServer server(QStringLiteral("drop"));
    ASSERT_TRUE(server.running());
    const QString name = store({QStringLiteral("ann@hartley.test")});
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_EQ(outbox.waiting(), QStringList{name});
    ASSERT_EQ(log.size(), 1u);
    EXPECT_FALSE(log[0].text.isEmpty());
}

TEST_F(Delivery, AServerThatKeepsSilentTimesOut) {
    SmtpTestServer server(QStringLiteral("silent"));
    ASSERT_TRUE(server.running());
    const QString name = store({QStringLiteral("ann@hartley.test")});
    const auto outcomes = run(account(server.url(), 1));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_EQ(outbox.waiting(), QStringList{name});
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].number, QStringLiteral("28")) << log[0].text.toStdString(); // CURLE_OPERATION_TIMEDOUT
}

TEST_F(Delivery, ANoServerAtThePortFails) {
    int port = 0;
    {
        SmtpTestServer gone;
        port = gone.port();
    }
    store({QStringLiteral("ann@hartley.test")});
    const auto outcomes = run(account(QStringLiteral("smtp://127.0.0.1:%1").arg(port)));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_EQ(outbox.waiting().size(), 1);
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].number, QStringLiteral("7")); // CURLE_COULDNT_CONNECT
}

TEST_F(Delivery, AMalformedOrEmptyRecipientNeverReachesTheServer) {
    SmtpTestServer server;
    ASSERT_TRUE(server.running());
    store({QStringLiteral("not an address")}, QStringLiteral("malformed"));
    store({QString()}, QStringLiteral("empty"));
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 2u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_FALSE(outcomes[1].delivered);
    ASSERT_EQ(log.size(), 2u);
    EXPECT_TRUE(log[0].text.contains(QStringLiteral("is no e-mail address"))) << log[0].text.toStdString();
    EXPECT_TRUE(log[1].text.contains(QStringLiteral("has no recipient"))) << log[1].text.toStdString();
    EXPECT_EQ(outbox.waiting().size(), 2);
    EXPECT_EQ(server.count(), 0);
}

TEST_F(Delivery, APasswordIsNeverSentWithoutTls) {
    SmtpTestServer server;
    ASSERT_TRUE(server.running());
    store({QStringLiteral("ann@hartley.test")});
    MailAccount a = account(server.url());
    a.user = QStringLiteral("office");
    a.password = QStringLiteral("secret");
    const auto outcomes = run(a);
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    EXPECT_EQ(server.count(), 0);
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].number, QStringLiteral("64")); // CURLE_USE_SSL_FAILED: the server offers no STARTTLS
}

TEST_F(Delivery, AServerAddressThatIsNoSmtpUrlFails) {
    store({QStringLiteral("ann@hartley.test")});
    const auto outcomes = run(account(QStringLiteral("http://127.0.0.1:1")));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_FALSE(outcomes[0].delivered);
    ASSERT_EQ(log.size(), 1u);
    EXPECT_TRUE(log[0].text.contains(QStringLiteral("no smtp:// or smtps://")));
}

TEST_F(Delivery, WithoutAServerNothingRuns) {
    store({QStringLiteral("ann@hartley.test")});
    delivery.start(account(QString()));
    EXPECT_TRUE(delivery.wait().empty());
    EXPECT_EQ(outbox.waiting().size(), 1);
}

TEST_F(Delivery, AFailedMessageIsTriedAgainAtTheNextRun) {
    const QString name = store({QStringLiteral("ann@hartley.test")});
    {
        SmtpTestServer refusing(QStringLiteral("refuse"));
        run(account(refusing.url()));
    }
    EXPECT_EQ(outbox.waiting(), QStringList{name});
    SmtpTestServer server;
    const auto outcomes = run(account(server.url()));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_TRUE(outcomes[0].delivered);
    EXPECT_EQ(outbox.sent(), QStringList{name});
}

} // namespace
} // namespace tessaly::mail
