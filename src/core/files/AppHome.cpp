#include "AppHome.h"

#include <QDir>
#include <QStandardPaths>

namespace tessaly {

AppHome::AppHome(QString dir) : dir_(QDir::cleanPath(QDir(dir).absolutePath())) {}

AppHome AppHome::fromEnvironment() {
    const QString explicitHome = qEnvironmentVariable("TESSALY_HOME");
    if (!explicitHome.isEmpty())
        return AppHome(explicitHome);
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    return AppHome(data + QStringLiteral("/tessaly"));
}

QString AppHome::machineSettingsPath() const { return dir_ + QStringLiteral("/MachineSettings.ini"); }
QString AppHome::userSettingsPath() const { return dir_ + QStringLiteral("/UserSettings.ini"); }
QString AppHome::databasePath() const { return dir_ + QStringLiteral("/KORV.mdb"); }
QString AppHome::tempDir() const { return dir_ + QStringLiteral("/Temp"); }
QString AppHome::fileStoreDir() const { return dir_ + QStringLiteral("/FileStore"); }
QString AppHome::tempFileStoreDir() const { return dir_ + QStringLiteral("/TempFileStore"); }
QString AppHome::templateDir() const { return dir_ + QStringLiteral("/Templates"); }
QString AppHome::lockPath() const { return dir_ + QStringLiteral("/.tessaly.lock"); }

QString AppHome::appPath() const { return dir_; }

} // namespace tessaly
