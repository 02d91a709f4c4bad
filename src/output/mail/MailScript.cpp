#include "Mail.h"

#include "MimeMessage.h"
#include "Outbox.h"
#include "core/app/CoreApplication.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace tessaly {

namespace {

// The subjects of the messages in one of the mail program's folders.
QJsonArray subjects(const QStringList& names, const QString& dir) {
    QJsonArray out;
    for (const QString& name : names) {
        QFile file(dir + QLatin1Char('/') + name);
        out << (file.open(QIODevice::ReadOnly) ? mail::readEnvelope(file.readAll()).subject : QString());
    }
    return out;
}

} // namespace

void addMailScriptCommands(script::Registry& registry) {
    registry.event(QStringLiteral("mail"), {QStringLiteral("to"), QStringLiteral("subject"),
                                            QStringLiteral("body"), QStringLiteral("attachments")});
    registry.event(QStringLiteral("zip"),
                   {QStringLiteral("archive"), QStringLiteral("pattern"), QStringLiteral("entries")});
    registry.event(QStringLiteral("spell"),
                   {QStringLiteral("word"), QStringLiteral("suggestions"), QStringLiteral("result")});
    // answer spell VALUE: a replacement word, ignore or cancel.
    registry.answer(QStringLiteral("spell"), [](script::Runner& run, const script::Token& value) {
        run.ui().queueAnswer(QStringLiteral("spell"), value.is("cancel") && !value.quoted
                                                          ? std::optional<QVariant>()
                                                          : std::optional<QVariant>(value.text));
    });
    // print delivery: waits for the delivery run and gives each message's
    // subject and whether it was delivered (the reasons go to the error log).
    registry.printForm(QStringLiteral("delivery"), 0, [](script::Runner& run, const script::Tokens&) {
        QVariantList none;
        QJsonArray out;
        for (const QVariant& outcome : run.app().call(QStringLiteral("WaitForDelivery"), none).toList()) {
            const QVariantMap map = outcome.toMap();
            out << QJsonObject{
                {QStringLiteral("subject"), map.value(QStringLiteral("subject")).toString()},
                {QStringLiteral("delivered"), map.value(QStringLiteral("delivered")).toBool()}};
        }
        return QJsonValue(out);
    });
    // print outbox: the subjects of the messages waiting and of those sent.
    registry.printForm(QStringLiteral("outbox"), 0, [](script::Runner& run, const script::Tokens&) {
        const mail::Outbox box(run.homeDir());
        return QJsonValue(QJsonObject{{QStringLiteral("waiting"), subjects(box.waiting(), box.outboxDir())},
                                      {QStringLiteral("sent"), subjects(box.sent(), box.sentDir())}});
    });
}

} // namespace tessaly
