#include "MailDelivery.h"

#include "MimeMessage.h"
#include "SmtpDelivery.h"

namespace tessaly::mail {

namespace {
// The source that the error log names for a failed delivery.
const QString LogSource = QStringLiteral("Outbox");
} // namespace

MailDelivery::MailDelivery(Outbox outbox, Log log) : outbox_(std::move(outbox)), log_(std::move(log)) {
    initialiseSmtp();
}

MailDelivery::~MailDelivery() {
    stop_ = true;
    std::unique_lock lock(mutex_);
    again_ = false;
    lock.unlock();
    if (thread_.joinable())
        thread_.join();
}

bool MailDelivery::running() const {
    const std::lock_guard lock(mutex_);
    return running_;
}

void MailDelivery::start(const MailAccount& account) {
    if (!account.configured())
        return;
    std::unique_lock lock(mutex_);
    if (running_) {
        again_ = true;
        nextAccount_ = account;
        return;
    }
    running_ = true;
    lock.unlock();
    if (thread_.joinable())
        thread_.join();
    thread_ = std::thread([this, account] { run(account); });
}

std::vector<DeliveryOutcome> MailDelivery::wait() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return !running_; });
    std::vector<DeliveryOutcome> out;
    out.swap(outcomes_);
    return out;
}

void MailDelivery::run(MailAccount account) {
    for (;;) {
        for (const QString& name : outbox_.waiting()) {
            if (stop_)
                break;
            DeliveryOutcome outcome = deliverOne(account, name);
            const std::lock_guard lock(mutex_);
            outcomes_.push_back(std::move(outcome));
        }
        std::unique_lock lock(mutex_);
        if (!again_ || stop_) {
            running_ = false;
            lock.unlock();
            idle_.notify_all();
            return;
        }
        again_ = false;
        account = nextAccount_;
    }
}

DeliveryOutcome MailDelivery::deliverOne(const MailAccount& account, const QString& name) {
    DeliveryOutcome outcome;
    outcome.file = name;
    const QByteArray mime = outbox_.read(name);
    const Envelope envelope = readEnvelope(mime);
    outcome.subject = envelope.subject;
    DeliveryResult result;
    if (mime.isEmpty())
        result.reason = QStringLiteral("The message cannot be read");
    else
        result = deliverSmtp(account, envelope, mime, stop_);
    if (result.delivered && !outbox_.markSent(name)) {
        result.delivered = false;
        result.reason = QStringLiteral("The message was delivered but cannot be moved to Sent");
    }
    outcome.delivered = result.delivered;
    outcome.reason = result.reason;
    // A delivery broken off as the program closes is no failure: the message
    // simply waits for the next start.
    if (!result.delivered && !result.stopped && log_)
        log_(QString::number(result.code),
             QStringLiteral("The message \"%1\" (%2) stays in the outbox: %3")
                 .arg(envelope.subject, name, result.reason),
             LogSource);
    return outcome;
}

} // namespace tessaly::mail
