#include "MailAccount.h"

#include "core/forms/ApplicationBase.h"
#include "core/settings/SettingsStore.h"

namespace tessaly::mail {

MailAccount readAccount(const SettingsStore& machine) {
    MailAccount account;
    account.server = machine.read(MachineKey, MailServerSetting).trimmed();
    account.from = machine.read(MachineKey, MailFromSetting).trimmed();
    account.user = machine.read(MachineKey, MailUserSetting).trimmed();
    account.password = qEnvironmentVariable(PasswordVariable);
    bool ok = false;
    const int seconds = machine.read(MachineKey, MailTimeoutSetting).trimmed().toInt(&ok);
    account.timeoutSeconds = ok && seconds > 0 ? seconds : DefaultTimeoutSeconds;
    return account;
}

bool mailProgramChosen(const SettingsStore& machine) {
    return machine.read(MachineKey, MailProgramSetting)
               .trimmed()
               .compare(OutboxProgram, Qt::CaseInsensitive) == 0;
}

} // namespace tessaly::mail
