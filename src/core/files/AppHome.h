#pragma once

#include <QString>

namespace tessaly {

// The application home: where the original kept its own folder's files
// (ErrorLog.Log, PrintTemp.emf, Temp\, the page templates), plus the two
// settings stores and the default project database.
//
// It is $TESSALY_HOME, else $XDG_DATA_HOME/tessaly, else
// ~/.local/share/tessaly. Tests and the script driver set it explicitly.
class AppHome {
public:
    explicit AppHome(QString dir);
    static AppHome fromEnvironment();

    const QString& dir() const { return dir_; }

    QString machineSettingsPath() const; // the machine-wide store (the registry key)
    QString userSettingsPath() const;    // the per-user store, section "Data"
    QString databasePath() const;        // KORV.mdb
    QString tempDir() const;             // Temp, for backups
    QString fileStoreDir() const;        // project drawing files
    QString tempFileStoreDir() const;    // scratch folder of the e-mail window
    QString templateDir() const;         // symbol libraries and template drawings
    QString lockPath() const;            // held while a run of the program is alive

    // The application's folder as the logic sees it; the logic appends
    // "\\name" to it and the file facade maps the separators.
    QString appPath() const;

private:
    QString dir_;
};

} // namespace tessaly
