#pragma once

#include <QString>

namespace tessaly {

// One INI file of settings, read and written as strings. An absent value
// reads as empty; a store that cannot be written fails silently, as the
// platform's registry did for a user without write access.
class SettingsStore {
public:
    explicit SettingsStore(QString iniPath);

    const QString& path() const { return path_; }

    // The value `name` under `key` ("Software\Morvane Works\KORV" or "Data").
    QString read(const QString& key, const QString& name) const;
    // Same, with a default for an absent value.
    QString read(const QString& key, const QString& name, const QString& defaultValue) const;
    bool contains(const QString& key, const QString& name) const;
    // Writes a string; returns false when the store could not be written.
    bool write(const QString& key, const QString& name, const QString& value);

private:
    QString path_;
};

} // namespace tessaly
