#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace tessaly::test {

// A real SMTP server on a free loopback port (aiosmtpd, tests/output/
// smtp_server.py), started by the test and stopped with it. Its mode is
// accept, refuse, drop or silent.
class SmtpTestServer {
public:
    explicit SmtpTestServer(const QString& mode = QStringLiteral("accept"));
    ~SmtpTestServer();

    bool running() const { return port_ > 0; }
    int port() const { return port_; }
    QString url() const;
    // The folder the server writes each message into.
    QString folder() const { return dir_.path(); }
    // How many messages it has taken; the bytes and the envelope of the nth (from 1).
    int count() const;
    QByteArray message(int n) const;
    QJsonObject envelope(int n) const;

private:
    QTemporaryDir dir_;
    QProcess process_;
    int port_ = 0;
};

// What Python's e-mail package reads in a message (tests/output/
// mail_inspect.py): headers, body and attachments, saved into `outDir`.
QJsonObject inspectMail(const QByteArray& mime, const QString& outDir);

// Sets an environment variable for the life of the object.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const QByteArray& value);
    ~ScopedEnvironment();

private:
    const char* name_;
    QByteArray old_;
    bool had_;
};

} // namespace tessaly::test
