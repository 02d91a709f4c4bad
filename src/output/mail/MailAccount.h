#pragma once

#include <QString>

namespace tessaly {
class SettingsStore;
}

namespace tessaly::mail {

// The machine settings of the mail program, under the machine-wide key.
inline const QString MailProgramSetting = QStringLiteral("MailProgram"); // "Outbox" or "None"
inline const QString MailServerSetting = QStringLiteral("MailServer");   // smtp:// or smtps:// URL
inline const QString MailFromSetting = QStringLiteral("MailFrom");       // the sender's address
inline const QString MailUserSetting = QStringLiteral("MailUser");       // the SMTP login, if any
inline const QString MailTimeoutSetting = QStringLiteral("MailTimeout"); // seconds a server may keep silent

// The value of MailProgram that makes Tessaly's own mail program present,
// and the one that makes it absent.
inline const QString OutboxProgram = QStringLiteral("Outbox");
inline const QString NoMailProgram = QStringLiteral("None");

// The environment variable that holds the SMTP password. The password is
// never kept in a settings file.
inline const char* const PasswordVariable = "TESSALY_SMTP_PASSWORD";

// Seconds a server may keep silent when MailTimeout holds no positive number.
constexpr int DefaultTimeoutSeconds = 60;

// The SMTP account the outbox is delivered through.
struct MailAccount {
    QString server;   // smtp://host[:port] (STARTTLS where offered, required with a password) or smtps://
    QString from;     // the envelope sender and the From of new messages
    QString user;     // empty: no login
    QString password; // from the environment; empty when unset
    int timeoutSeconds = DefaultTimeoutSeconds;

    // Whether messages can be delivered at all: a server is named.
    bool configured() const { return !server.trimmed().isEmpty(); }
};

// Reads the account from the machine settings and the password from the environment.
MailAccount readAccount(const SettingsStore& machine);

// Whether the machine settings make the mail program present.
bool mailProgramChosen(const SettingsStore& machine);

} // namespace tessaly::mail
