#pragma once

#include "MimeMessage.h"
#include "core/runtime/AutoObject.h"

#include <QStringList>
#include <memory>

namespace tessaly::mail {

class MailService;

// The class name that CreateObject makes the mail program by.
inline const QString MailProgramProgId = QStringLiteral("Outlook.Application");
// CreateItem's item type of a mail item.
constexpr int MailItemType = 0;

// Tessaly's mail program as the logic reaches it late-bound, with the names
// of the mail program's object model: CreateItem(0) gives a mail item.
class MailApplication final : public AutoObject {
public:
    explicit MailApplication(std::shared_ptr<MailService> service);

    QString typeName() const override { return QStringLiteral("Application"); }
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    std::shared_ptr<MailService> service_;
};

// A mail item: Recipients with Add, Subject, Body, Attachments with Add, and
// Send. An attachment's file is read when it is added. Send writes the
// message as a MIME file into the outbox, reports a "mail" event, and starts
// the delivery; the item cannot be sent twice.
class MailItem final : public AutoObject {
public:
    explicit MailItem(std::shared_ptr<MailService> service);

    QString Subject;
    QString Body;
    QStringList recipients;      // the texts given to Recipients.Add
    QStringList attachmentPaths; // the paths given to Attachments.Add
    std::vector<MailAttachment> attachments;
    bool sent = false;

    void addRecipient(const QString& text);
    void addAttachment(const QString& path);
    void Send();

    QString typeName() const override { return QStringLiteral("MailItem"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    std::shared_ptr<MailService> service_;
};

} // namespace tessaly::mail
