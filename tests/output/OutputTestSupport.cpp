#include "OutputTestSupport.h"

#include "MetafileTools.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

namespace tessaly::test {

namespace {
// The Python of the system, where Debian's aiosmtpd is installed.
const QString SystemPython = QStringLiteral("/usr/bin/python3");
// How long the server may take to come up, and to go.
constexpr int StartMilliseconds = 20000;
constexpr int StopMilliseconds = 5000;
} // namespace

SmtpTestServer::SmtpTestServer(const QString& mode) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(SystemPython, {QStringLiteral(TESSALY_SMTP_SERVER), QStringLiteral("--dir"), dir_.path(),
                                  QStringLiteral("--mode"), mode});
    if (!process_.waitForStarted(StartMilliseconds))
        return;
    while (!process_.canReadLine() && process_.waitForReadyRead(StartMilliseconds)) {
    }
    const QByteArray line = process_.readLine().trimmed();
    if (line.startsWith("PORT "))
        port_ = line.mid(5).toInt();
}

SmtpTestServer::~SmtpTestServer() {
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.closeWriteChannel();
    if (!process_.waitForFinished(StopMilliseconds)) {
        process_.terminate();
        process_.waitForFinished(StopMilliseconds);
    }
}

QString SmtpTestServer::url() const {
    return QStringLiteral("smtp://127.0.0.1:%1").arg(port_);
}

int SmtpTestServer::count() const {
    return static_cast<int>(QDir(dir_.path()).entryList({QStringLiteral("*.eml")}, QDir::Files).size());
}

QByteArray SmtpTestServer::message(int n) const {
    return readFile(dir_.filePath(QStringLiteral("%1.eml").arg(n)));
}

QJsonObject SmtpTestServer::envelope(int n) const {
    QFile f(dir_.filePath(QStringLiteral("%1.json").arg(n)));
    return f.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(f.readAll()).object() : QJsonObject();
}

QJsonObject inspectMail(const QByteArray& mime, const QString& outDir) {
    QDir().mkpath(outDir);
    const QString path = outDir + QStringLiteral("/message.eml");
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(mime) != mime.size())
        return {};
    f.close();
    QProcess process;
    process.start(SystemPython,
                  {QStringLiteral(TESSALY_MAIL_INSPECT), path, outDir + QStringLiteral("/parts")});
    if (!process.waitForFinished(StartMilliseconds) || process.exitCode() != 0)
        return {};
    return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
}

ScopedEnvironment::ScopedEnvironment(const char* name, const QByteArray& value)
    : name_(name), old_(qgetenv(name)), had_(qEnvironmentVariableIsSet(name)) {
    qputenv(name, value);
}

ScopedEnvironment::~ScopedEnvironment() {
    if (had_)
        qputenv(name_, old_);
    else
        qunsetenv(name_);
}

} // namespace tessaly::test
