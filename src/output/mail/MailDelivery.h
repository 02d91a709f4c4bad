#pragma once

#include "MailAccount.h"
#include "Outbox.h"

#include <QString>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tessaly::mail {

// What became of one message of a delivery run.
struct DeliveryOutcome {
    QString file;    // its name in the outbox
    QString subject; // decoded
    bool delivered = false;
    QString reason; // why it stayed in the outbox
};

// Delivers the outbox by SMTP in a worker thread, so that the window never
// waits for a server. A run takes every message waiting, oldest first: a
// delivered one moves to Sent, a failed one stays and the reason goes to the
// error log; the run goes on with the next. A start while a run goes on makes
// that run look at the outbox once more before it ends. The destructor breaks
// a transfer off and waits for the thread; the message stays for next time.
class MailDelivery {
public:
    // `log` writes one failure to the error log: number, text and source.
    using Log = std::function<void(const QString& number, const QString& text, const QString& source)>;

    MailDelivery(Outbox outbox, Log log);
    ~MailDelivery();
    MailDelivery(const MailDelivery&) = delete;
    MailDelivery& operator=(const MailDelivery&) = delete;

    // Starts a run with this account; nothing when it names no server.
    void start(const MailAccount& account);
    // Waits until no run goes on, and hands over the outcomes since the last call.
    std::vector<DeliveryOutcome> wait();
    bool running() const;

private:
    void run(MailAccount account);
    DeliveryOutcome deliverOne(const MailAccount& account, const QString& name);

    Outbox outbox_;
    Log log_;
    mutable std::mutex mutex_;
    std::condition_variable idle_;
    std::thread thread_;
    bool running_ = false;
    bool again_ = false;
    MailAccount nextAccount_;
    std::atomic<bool> stop_{false};
    std::vector<DeliveryOutcome> outcomes_;
};

} // namespace tessaly::mail
