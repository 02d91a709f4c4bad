#include "core/script/SetupCommands.h"

#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "core/runtime/RuntimeError.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "core/settings/SettingsStore.h"

#include <QDir>
#include <QJsonObject>

namespace tessaly::script {

namespace {

QString inHome(Runner& run, const QString& path) {
    if (QDir::isRelativePath(fs::toHost(path)))
        return run.homeDir() + QLatin1Char('/') + path;
    return path;
}

// setting STORE KEY VALUE: STORE is machine (the machine-wide key) or user
// (the per-user section "Data").
void setting(Runner& run, const Tokens& t) {
    if (t.size() != 4)
        throw LineError(QStringLiteral("setting needs a store (machine or user), a key and a value"));
    const AppHome home = run.home();
    QDir().mkpath(home.dir());
    if (t[1].is("machine")) {
        SettingsStore store(home.machineSettingsPath());
        if (!store.write(MachineKey, t[2].text, t[3].text))
            throw LineError(QStringLiteral("the machine settings cannot be written"));
    } else if (t[1].is("user")) {
        SettingsStore store(home.userSettingsPath());
        if (!store.write(UserSection, t[2].text, t[3].text))
            throw LineError(QStringLiteral("the user settings cannot be written"));
    } else {
        throw LineError(QStringLiteral("unknown settings store '%1': machine or user").arg(t[1].text));
    }
}

// sql "STATEMENT": one statement that changes rows; prints nothing.
void sql(Runner& run, const Tokens& t) {
    if (t.size() != 2)
        throw LineError(QStringLiteral("sql needs one statement"));
    try {
        db::Connection connection;
        connection.Open(projectDatabaseConnection(run));
        db::Recordset rs;
        rs.Open(t[1].text, connection, db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
        if (rs.State() == db::adStateOpen)
            throw LineError(QStringLiteral("sql runs statements that change rows; use print sql to read"));
    } catch (const RuntimeError& e) {
        throw LineError(QStringLiteral("sql failed: %1").arg(e.description()));
    }
}

void mkdir(Runner& run, const Tokens& t) {
    if (t.size() != 2)
        throw LineError(QStringLiteral("mkdir needs a path"));
    if (!QDir().mkpath(fs::toHost(inHome(run, t[1].text))))
        throw LineError(QStringLiteral("cannot make the folder '%1'").arg(t[1].text));
}

} // namespace

QString projectDatabaseConnection(Runner& run) {
    SettingsStore machine(run.home().machineSettingsPath());
    const QString location = machine.read(MachineKey, QStringLiteral("DB_Location"));
    return location.contains(QLatin1String("Data Source="), Qt::CaseInsensitive)
               ? location
               : QStringLiteral("Data Source=") + location;
}

void addSetupCommands(Registry& registry) {
    registry.command(QStringLiteral("setting"), setting);
    registry.command(QStringLiteral("sql"), sql);
    registry.command(QStringLiteral("mkdir"), mkdir);
}

} // namespace tessaly::script
