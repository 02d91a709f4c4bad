#include "SettingsStore.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QSettings>

namespace tessaly {

namespace {
// QSettings reads "\" and "/" in a group path as separators; a registry key
// path is one group, so its separators are kept as a plain character.
QString groupOf(const QString& key) {
    QString g = key;
    g.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return g;
}
} // namespace

SettingsStore::SettingsStore(QString iniPath) : path_(std::move(iniPath)) {}

QString SettingsStore::read(const QString& key, const QString& name) const {
    return read(key, name, QString());
}

QString SettingsStore::read(const QString& key, const QString& name, const QString& defaultValue) const {
    if (!QFileInfo::exists(path_))
        return defaultValue;
    QSettings s(path_, QSettings::IniFormat);
    s.beginGroup(groupOf(key));
    const QVariant v = s.value(name);
    if (!v.isValid())
        return defaultValue;
    return v.toString();
}

bool SettingsStore::contains(const QString& key, const QString& name) const {
    if (!QFileInfo::exists(path_))
        return false;
    QSettings s(path_, QSettings::IniFormat);
    s.beginGroup(groupOf(key));
    return s.contains(name);
}

bool SettingsStore::write(const QString& key, const QString& name, const QString& value) {
    // A store whose file is marked read-only refuses writes, for every user,
    // as the registry key refused them to a user without write access.
    const QFileInfo info(path_);
    // The mode bits alone: the "user" bits say what this process may do,
    // and that is everything for the superuser.
    const auto writeBits = QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (info.exists() && !(info.permissions() & writeBits))
        return false;
    QSettings s(path_, QSettings::IniFormat);
    if (!s.isWritable())
        return false;
    s.beginGroup(groupOf(key));
    s.setValue(name, value);
    s.endGroup();
    s.sync();
    return s.status() == QSettings::NoError;
}

} // namespace tessaly
