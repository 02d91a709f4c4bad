#include "MailService.h"

#include "core/common/CommonRoutines.h"
#include "core/forms/ApplicationBase.h"

#include <QSysInfo>

namespace tessaly::mail {

MailService::MailService(ApplicationBase& app) : app_(app), outbox_(app.home.dir()) {
    delivery_ = std::make_unique<MailDelivery>(
        outbox_, [this](const QString& number, const QString& text, const QString& source) {
            // Called from the worker: one whole line at a time.
            const std::lock_guard lock(logMutex_);
            common::ReportError(app_, number, text, source);
        });
}

MailService::~MailService() {
    // The worker goes first: it writes to the log through this service.
    delivery_.reset();
}

bool MailService::present() const {
    return mailProgramChosen(app_.machineSettings) && outbox_.ensure();
}

MailAccount MailService::account() const {
    return readAccount(app_.machineSettings);
}

QString MailService::sender() const {
    const QString from = account().from;
    if (!from.isEmpty())
        return from;
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = QStringLiteral("tessaly");
    QString host = QSysInfo::machineHostName();
    if (host.isEmpty())
        host = QStringLiteral("localhost");
    return user + QLatin1Char('@') + host;
}

void MailService::deliver() {
    if (!mailProgramChosen(app_.machineSettings))
        return;
    delivery_->start(account());
}

} // namespace tessaly::mail
