// The mail program's settings as the install step leaves them.
#include "core/forms/ApplicationBase.h"
#include "core/settings/SettingsStore.h"
#include "output/mail/Mail.h"
#include "output/mail/MailAccount.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(InstallMail, TheMailProgramIsTheOutboxAndNoServerIsSet) {
    QTemporaryDir dir;
    const AppHome home(dir.path());
    installMail(home);
    const SettingsStore machine(home.machineSettingsPath());
    EXPECT_EQ(machine.read(MachineKey, mail::MailProgramSetting), QStringLiteral("Outbox"));
    EXPECT_TRUE(machine.contains(MachineKey, mail::MailServerSetting));
    EXPECT_EQ(machine.read(MachineKey, mail::MailServerSetting), QString());
    EXPECT_EQ(machine.read(MachineKey, mail::MailTimeoutSetting), QStringLiteral("60"));
    EXPECT_TRUE(mail::mailProgramChosen(machine));
    EXPECT_FALSE(mail::readAccount(machine).configured());
}

TEST(InstallMail, WhatTheUserSetIsLeftAlone) {
    QTemporaryDir dir;
    const AppHome home(dir.path());
    SettingsStore machine(home.machineSettingsPath());
    machine.write(MachineKey, mail::MailProgramSetting, mail::NoMailProgram);
    machine.write(MachineKey, mail::MailServerSetting, QStringLiteral("smtps://mail.example.test"));
    installMail(home);
    EXPECT_EQ(machine.read(MachineKey, mail::MailProgramSetting), QStringLiteral("None"));
    EXPECT_FALSE(mail::mailProgramChosen(machine));
    EXPECT_EQ(mail::readAccount(machine).server, QStringLiteral("smtps://mail.example.test"));
}

TEST(InstallMail, ThePasswordComesFromTheEnvironmentOnly) {
    QTemporaryDir dir;
    SettingsStore machine(AppHome(dir.path()).machineSettingsPath());
    machine.write(MachineKey, QStringLiteral("MailPassword"), QStringLiteral("in a file"));
    qputenv(mail::PasswordVariable, "from the environment");
    EXPECT_EQ(mail::readAccount(machine).password, QStringLiteral("from the environment"));
    qunsetenv(mail::PasswordVariable);
    EXPECT_EQ(mail::readAccount(machine).password, QString());
}

} // namespace
} // namespace tessaly
