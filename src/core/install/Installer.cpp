#include "Installer.h"

#include "core/db/ProjectDatabase.h"
#include "core/forms/ApplicationBase.h"
#include "core/runtime/RuntimeError.h"
#include "core/settings/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

namespace tessaly {

namespace {

// Values a fresh installation starts with, beside the paths into the home.
const QString DefaultCopyright = QStringLiteral("Drawn with Tessaly"); // text on project output
const QString DefaultDisplay = QStringLiteral("Yes");                 // address and plan data go on output
const QString DefaultPageZoom = QStringLiteral("90");                 // stored page zoom, percent
const QString DefaultTemplateZoom = QStringLiteral("100");            // template pane zoom, percent
const QString DefaultCreateGuide = QStringLiteral("False");           // no guide lines per wall click
const QString DefaultApmInch = QStringLiteral("96");                  // metafile units per inch

void makeDir(const QString& path, QStringList& created) {
    if (QFileInfo(path).isDir())
        return;
    if (!QDir().mkpath(path))
        raiseError(err::PathFileAccess, QStringLiteral("Cannot create the folder %1").arg(path));
    created << path;
}

void fill(SettingsStore& store, const QString& key, const QString& name, const QString& value, QStringList& created) {
    if (store.contains(key, name))
        return;
    if (!store.write(key, name, value))
        raiseError(err::PathFileAccess, QStringLiteral("Cannot write the settings file %1").arg(store.path()));
    created << QStringLiteral("%1: %2").arg(QFileInfo(store.path()).fileName(), name);
}

} // namespace

QStringList install(const AppHome& home) {
    QStringList created;
    makeDir(home.dir(), created);
    makeDir(home.tempDir(), created);
    makeDir(home.fileStoreDir(), created);
    makeDir(home.templateDir(), created);

    SettingsStore machine(home.machineSettingsPath());
    fill(machine, MachineKey, QStringLiteral("DB_Location"), home.databasePath(), created);
    fill(machine, MachineKey, QStringLiteral("FileStore"), home.fileStoreDir(), created);
    fill(machine, MachineKey, QStringLiteral("TempFileStore"), home.tempFileStoreDir(), created);
    fill(machine, MachineKey, QStringLiteral("CopyrightText"), DefaultCopyright, created);
    fill(machine, MachineKey, QStringLiteral("DisplayAddress"), DefaultDisplay, created);
    fill(machine, MachineKey, QStringLiteral("DisplayPlanData"), DefaultDisplay, created);
    fill(machine, MachineKey, QStringLiteral("DefaultPageZoom"), DefaultPageZoom, created);
    fill(machine, MachineKey, QStringLiteral("TemplateFolder"), home.templateDir() + QLatin1Char('/'), created);
    fill(machine, MachineKey, QStringLiteral("TemplateZoom"), DefaultTemplateZoom, created);

    SettingsStore user(home.userSettingsPath());
    fill(user, UserSection, QStringLiteral("CreateGuide"), DefaultCreateGuide, created);
    fill(user, UserSection, QStringLiteral("APM_Inch"), DefaultApmInch, created);

    if (!QFileInfo::exists(home.databasePath())) {
        db::createProjectDatabase(home.databasePath());
        created << home.databasePath();
    }
    return created;
}

} // namespace tessaly
