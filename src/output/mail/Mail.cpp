#include "Mail.h"

#include "MailAccount.h"
#include "MailProgram.h"
#include "MailService.h"
#include "core/app/PlanRoad.h"
#include "core/files/AppHome.h"
#include "core/files/FileSystemObject.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "core/settings/SettingsStore.h"
#include "output/frmEmail.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QVariantMap>

namespace tessaly {

namespace {

// The values the install step gives the mail program's settings.
const QString InstalledTimeout = QStringLiteral("60");

bool sameClass(const QString& a, const QString& b) {
    return a.trimmed().compare(b, Qt::CaseInsensitive) == 0;
}

// CreateObject: the objects Tessaly can make by class name. Any other class,
// and the mail program where it is absent, is error 429.
QVariant createObject(const std::shared_ptr<mail::MailService>& service, const QString& className) {
    if (sameClass(className, mail::MailProgramProgId)) {
        if (!service->present())
            raiseError(err::CannotCreateObject);
        return toVariant(std::make_shared<mail::MailApplication>(service));
    }
    if (sameClass(className, QString::fromLatin1(FileSystemObject::ProgId)))
        return toVariant(std::make_shared<FileSystemObject>());
    raiseError(err::CannotCreateObject);
}

QVariant outcomesOf(const std::vector<mail::DeliveryOutcome>& outcomes) {
    QVariantList list;
    for (const mail::DeliveryOutcome& o : outcomes)
        list << QVariantMap{{QStringLiteral("subject"), o.subject},
                            {QStringLiteral("delivered"), o.delivered},
                            {QStringLiteral("reason"), o.reason}};
    return list;
}

// mnuFile_email: the open plan's files are saved first, with no trap, and
// the e-mail window opens with or without a plan.
void mnuFile_email_Click(Application& app) {
    if (!app.gPlanFileName.isEmpty() && app.planRoad.saveProjectOutputs)
        app.planRoad.saveProjectOutputs(PlanSaveUse::Email);
    app.show(app.form(QString::fromLatin1(frmEmail::FormName)), true);
}

} // namespace

void registerMail(Application& app) {
    auto service = std::make_shared<mail::MailService>(app);
    app.routine(QStringLiteral("CreateObject"),
                [service](QVariantList& a) { return createObject(service, vb::toText(a.value(0))); });
    // The outbox is delivered now, as at the send; and a script waits for the run.
    app.routine(QStringLiteral("DeliverOutbox"), [service](QVariantList&) {
        service->deliver();
        return QVariant();
    });
    app.routine(QStringLiteral("WaitForDelivery"),
                [service](QVariantList&) { return outcomesOf(service->delivery().wait()); });
    app.registerForm(QString::fromLatin1(frmEmail::FormName), [](ApplicationBase& a) {
        return std::make_shared<frmEmail>(static_cast<Application&>(a));
    });
    app.extendForm(QString::fromLatin1(frmMain::FormName), [&app, service](Form& main) {
        main.on(QStringLiteral("mnuFile_email"), QStringLiteral("Click"),
                [&app](Control&, EventArgs&) { mnuFile_email_Click(app); });
        // The main window comes up at each start of the program: the
        // messages left in the outbox are delivered now.
        service->deliver();
    });
}

void installMail(const AppHome& home) {
    SettingsStore machine(home.machineSettingsPath());
    const std::pair<QString, QString> values[] = {{mail::MailProgramSetting, mail::OutboxProgram},
                                                  {mail::MailServerSetting, QString()},
                                                  {mail::MailFromSetting, QString()},
                                                  {mail::MailUserSetting, QString()},
                                                  {mail::MailTimeoutSetting, InstalledTimeout}};
    for (const auto& [name, value] : values)
        if (!machine.contains(MachineKey, name) && !machine.write(MachineKey, name, value))
            raiseError(err::PathFileAccess,
                       QStringLiteral("Cannot write the settings file %1").arg(machine.path()));
}

} // namespace tessaly
