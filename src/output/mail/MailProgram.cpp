#include "MailProgram.h"

#include "MailService.h"
#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include <QDateTime>
#include <QFileInfo>

namespace tessaly::mail {

namespace {

bool is(const QString& a, const char* b) {
    return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}

// The error the mail program gives for an item that has been sent already.
constexpr int ItemMovedOrDeleted = -2147221238;

// Recipients or Attachments of a mail item: Add and Count.
class ItemCollection final : public AutoObject {
public:
    enum class Kind { Recipients, Attachments };
    ItemCollection(std::shared_ptr<MailItem> item, Kind kind) : item_(std::move(item)), kind_(kind) {}

    QString typeName() const override {
        return kind_ == Kind::Recipients ? QStringLiteral("Recipients") : QStringLiteral("Attachments");
    }
    QVariant get(const QString& name, const QVariantList& index) override {
        if (is(name, "Count"))
            return static_cast<int>(list().size());
        if (is(name, "Item")) {
            const int i = vb::toInt32(index.value(0));
            if (i < 1 || i > list().size())
                raiseError(err::InvalidProcedureCall, QStringLiteral("Array index out of bounds"));
            return list().at(i - 1);
        }
        return AutoObject::get(name, index);
    }
    QVariant call(const QString& name, QVariantList& args) override {
        if (is(name, "Add")) {
            const QString text = vb::toText(args.value(0));
            if (kind_ == Kind::Recipients)
                item_->addRecipient(text);
            else
                item_->addAttachment(text);
            return {};
        }
        if (is(name, "Item"))
            return get(name, args);
        return AutoObject::call(name, args);
    }
    QStringList memberNames() const override {
        return {QStringLiteral("Add"), QStringLiteral("Count"), QStringLiteral("Item")};
    }

private:
    const QStringList& list() const {
        return kind_ == Kind::Recipients ? item_->recipients : item_->attachmentPaths;
    }
    std::shared_ptr<MailItem> item_;
    Kind kind_;
};

} // namespace

MailApplication::MailApplication(std::shared_ptr<MailService> service) : service_(std::move(service)) {}

QVariant MailApplication::call(const QString& name, QVariantList& args) {
    if (is(name, "CreateItem")) {
        if (vb::toInt32(args.value(0)) != MailItemType)
            raiseError(err::InvalidProcedureCall, QStringLiteral("Only mail items can be created"));
        return toVariant(std::make_shared<MailItem>(service_));
    }
    return AutoObject::call(name, args);
}

QStringList MailApplication::memberNames() const {
    return {QStringLiteral("CreateItem")};
}

MailItem::MailItem(std::shared_ptr<MailService> service) : service_(std::move(service)) {}

void MailItem::addRecipient(const QString& text) {
    recipients << text;
}

void MailItem::addAttachment(const QString& path) {
    // The file is taken now, as the mail program copies it into the item.
    const QByteArray data = fs::readAll(path);
    attachmentPaths << path;
    attachments.push_back({QFileInfo(fs::toHost(path)).fileName(), data});
}

void MailItem::Send() {
    if (sent)
        raiseError(ItemMovedOrDeleted, QStringLiteral("The item has been moved or deleted."));
    MailMessage message;
    message.from = service_->sender();
    message.to = recipients;
    message.subject = Subject;
    message.body = Body;
    message.attachments = attachments;
    const QByteArray mime = buildMime(message, QDateTime::currentDateTime());
    service_->outbox().store(mime);
    sent = true;
    service_->app().ui.notify(QStringLiteral("mail"), {{QStringLiteral("to"), recipients},
                                                       {QStringLiteral("subject"), Subject},
                                                       {QStringLiteral("body"), Body},
                                                       {QStringLiteral("attachments"), attachmentPaths}});
    service_->deliver();
}

QVariant MailItem::get(const QString& name, const QVariantList& index) {
    const auto self = std::static_pointer_cast<MailItem>(shared_from_this());
    if (is(name, "Subject"))
        return Subject;
    if (is(name, "Body"))
        return Body;
    if (is(name, "Recipients"))
        return toVariant(std::make_shared<ItemCollection>(self, ItemCollection::Kind::Recipients));
    if (is(name, "Attachments"))
        return toVariant(std::make_shared<ItemCollection>(self, ItemCollection::Kind::Attachments));
    if (is(name, "Sent"))
        return sent;
    return AutoObject::get(name, index);
}

void MailItem::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "Subject"))
        return void(Subject = vb::toText(value));
    if (is(name, "Body"))
        return void(Body = vb::toText(value));
    AutoObject::set(name, value, index);
}

QVariant MailItem::call(const QString& name, QVariantList& args) {
    if (is(name, "Send")) {
        Send();
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList MailItem::memberNames() const {
    return {QStringLiteral("Subject"),     QStringLiteral("Body"), QStringLiteral("Recipients"),
            QStringLiteral("Attachments"), QStringLiteral("Send"), QStringLiteral("Sent")};
}

} // namespace tessaly::mail
