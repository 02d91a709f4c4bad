#pragma once

#include "MailAccount.h"
#include "MailDelivery.h"
#include "Outbox.h"

#include <memory>
#include <mutex>

namespace tessaly {
class ApplicationBase;
}

namespace tessaly::mail {

// Tessaly's mail program for one run: the outbox in the application home,
// the account of the machine settings and the delivery worker. Its log lines
// go to the error log as ReportError writes them.
class MailService {
public:
    explicit MailService(ApplicationBase& app);
    ~MailService();

    ApplicationBase& app() const { return app_; }
    const Outbox& outbox() const { return outbox_; }
    MailDelivery& delivery() { return *delivery_; }

    // Present when the machine settings choose it and its folders can be made.
    bool present() const;
    MailAccount account() const;
    // The From of a new message: MailFrom, else the user at this machine.
    QString sender() const;
    // Starts delivering the outbox when an SMTP server is set.
    void deliver();

private:
    ApplicationBase& app_;
    Outbox outbox_;
    std::mutex logMutex_;
    std::unique_ptr<MailDelivery> delivery_;
};

} // namespace tessaly::mail
