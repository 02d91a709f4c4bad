#pragma once

#include "core/app/PlanRoad.h"
#include "core/forms/ApplicationBase.h"

#include <QLockFile>
#include <cstdint>
#include <memory>

namespace tessaly {

namespace db {
class Connection;
class Recordset;
} // namespace db

// The module-level state of Tessaly's main module that needs no canvas, the
// entry routine `Main`, and the shared routines. The workspace layer derives
// the full Application from it with the canvas objects.
class CoreApplication : public ApplicationBase {
public:
    CoreApplication(UiPort& ui, Waiter& waiter, AppHome home);
    ~CoreApplication() override;

    // Module-level state, named as Tessaly names it.
    QString gDatabaseLocation;
    QString gConnectionString;
    std::shared_ptr<db::Connection> gConnection;
    std::shared_ptr<db::Recordset> gRecordset;
    QString gFileStore;
    QString gTempFileStore;
    QString gCopyrightText;
    QString gDisplayAddress;
    QString gDisplayPlanData;
    QString gTemplateFolder;
    int16_t gDefaultPageZoom = 0;
    int16_t gTemplateZoom = 0;
    int16_t gGridStep = 0;
    QString gPlanFileName;
    int32_t gOpenSiteID = 0;
    int32_t gBackupTicks = 0;
    int32_t gGuideOriginX = 0;
    int32_t gGuideOriginY = 0;

    // The meeting point of the main window and the project subsystems.
    PlanRoad planRoad;

    // The entry routine. Returns false when it ended at once (a second instance).
    bool Main();
    // Closes gConnection and releases it.
    void CloseDatabase();
    // Opens gConnection from gConnectionString.
    void OpenConnection();

    // The application's version, "major.minor.revision".
    static QString versionText();

    // Whether this run holds the single-instance lock of its home.
    bool holdsInstanceLock() const { return lock_ && lock_->isLocked(); }
    void releaseInstanceLock();
    // The end of the process also gives up the single-instance lock.
    void endProcess() override;

private:
    void registerNames();

    std::unique_ptr<QLockFile> lock_;
    bool connectionOpen_ = false;
};

} // namespace tessaly
