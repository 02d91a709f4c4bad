#include "drawing_files/ProjectSave.h"

#include "canvas/api/CanvasCodes.h"
#include "core/common/CommonRoutines.h"
#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "output/ExportLayouts.h"
#include "output/modReportExport.h"
#include "reports/ActiveReport.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFileInfo>

namespace tessaly {

namespace {

constexpr int NameMaxBytes = 255;   // the longest file name the host's file systems hold
constexpr int SaveAsSettleMs = 500; // pause between adding the plan row and reading the site back
const QString NewLine = QStringLiteral("\r\n");

const QString NoProjectText =
    QStringLiteral("You have No Projects Open.") + NewLine +
    QStringLiteral(
        "If you want add this drawing to a project, First save the drawing to your Hard Drive then go "
        "to the project/site In the project manager and import the drawing to the project.");

// How a failure in the project save is met: the three File menu commands log
// it and go on with the next step; the other uses have no trap, so the first
// failure ends the save and goes to whoever called it.
class Trap {
public:
    Trap(Application& app, QString message, bool logs)
        : app_(app), message_(std::move(message)), logs_(logs) {}

    // One statement of the routine.
    template <class Step> void step(Step&& run) {
        if (!logs_) {
            run();
            return;
        }
        try {
            run();
        } catch (const RuntimeError& e) {
            // ReportError's own failures are not trapped.
            common::ReportError(app_, QString::number(e.number()), message_ + e.description(),
                                e.source().isEmpty() ? AppTitle : e.source());
        }
    }

private:
    Application& app_;
    QString message_;
    bool logs_;
};

QString commandMessage(const char* command) {
    return QStringLiteral("Error Generated In %1 Event: ").arg(QString::fromLatin1(command));
}

Trap trapFor(Application& app, PlanSaveUse use) {
    switch (use) {
    case PlanSaveUse::Save:
        return Trap(app, commandMessage("mnuFile_Save_Click"), true);
    case PlanSaveUse::OpenProject:
        return Trap(app, commandMessage("mnuFile_OpenProject_Click"), true);
    case PlanSaveUse::SaveToProjectAs:
        return Trap(app, commandMessage("mnuFile_SaveToProjectAs_Click"), true);
    case PlanSaveUse::Email:
    case PlanSaveUse::Unload:
    case PlanSaveUse::Colour:
        break;
    }
    return Trap(app, QString(), false);
}

// The unload and the colour command leave a stale .emf for the canvas to overwrite.
bool deletesOldEmf(PlanSaveUse use) {
    return use != PlanSaveUse::Unload && use != PlanSaveUse::Colour;
}

// The colour command stops after the .wmf.
bool exportsReports(PlanSaveUse use) {
    return use != PlanSaveUse::Colour;
}

// The main canvas; Nothing when the main window is not loaded.
AutoPtr mainCanvas(Application& app) {
    auto* main = dynamic_cast<frmMain*>(app.loaded(QString::fromLatin1(frmMain::FormName)));
    return main ? main->canvas1() : AutoPtr();
}

std::optional<PlanSaveUse> useNamed(const QString& name) {
    static const std::pair<const char*, PlanSaveUse> uses[] = {
        {"Save", PlanSaveUse::Save},
        {"OpenProject", PlanSaveUse::OpenProject},
        {"SaveToProjectAs", PlanSaveUse::SaveToProjectAs},
        {"Email", PlanSaveUse::Email},
        {"Unload", PlanSaveUse::Unload},
        {"Colour", PlanSaveUse::Colour}};
    for (const auto& [text, use] : uses)
        if (name.compare(QLatin1String(text), Qt::CaseInsensitive) == 0)
            return use;
    return std::nullopt;
}

// The sequence itself, each statement under the trap.
void saveSequence(Application& app, PlanSaveUse use, Trap& trap) {
    const AutoPtr canvas = mainCanvas(app);
    const QString stem = app.gFileStore + QStringLiteral("\\") + app.gPlanFileName;
    // 1. The drawing.
    const QString pdr = stem + QStringLiteral(".pdr");
    trap.step([&] {
        if (!pdr.isEmpty())
            SavePlanFile(canvas, pdr, canvas::save_format::Pdr);
    });
    // 2. The enhanced metafile, the old one deleted first where the use says so.
    const QString emf = stem + QStringLiteral(".emf");
    if (deletesOldEmf(use))
        trap.step([&] {
            if (common::FileExists(emf))
                fs::kill(emf);
        });
    trap.step([&] {
        if (!emf.isEmpty())
            SavePlanFile(canvas, emf, canvas::save_format::Emf);
    });
    // 3. and 4. The placeable metafile made from it.
    const QString wmf = stem + QStringLiteral(".wmf");
    trap.step([&] {
        if (common::FileExists(wmf))
            fs::kill(wmf);
    });
    trap.step([&] {
        if (!emf.isEmpty())
            app.printMod.ConvertEMFtoWMF(emf, wmf);
    });
    // 5. The reports follow only where the use asks for them.
    if (emf.isEmpty() || !exportsReports(use))
        return;
    // 6. and 7. The scratch metafile that the report layouts load.
    const QString printTemp = app.home.appPath() + QStringLiteral("\\PrintTemp.emf");
    trap.step([&] {
        if (common::FileExists(printTemp))
            fs::kill(printTemp);
    });
    trap.step([&] { SavePlanFile(canvas, printTemp, canvas::save_format::Emf); });
    // 8. The layout of the page's orientation.
    QString layout;
    trap.step([&] {
        const bool landscape = vb::toBool(late::get(late::object(canvas, "Page"), "Landscape"));
        layout = landscape ? output::LandscapeLayout : output::PortraitLayout;
    });
    // 9. The PDF, then the TIFF, with no completion message: each export
    // unloads its layout, so the next comes up afresh and loads PrintTemp.emf again.
    trap.step([&] {
        output::modReportExport& exports = output::reportExportModule(app);
        exports.ExportReportToPDF(*exports.layout(layout), stem + QStringLiteral(".pdf"), false);
    });
    trap.step([&] {
        output::modReportExport& exports = output::reportExportModule(app);
        exports.ExportReportToTIFF(*exports.layout(layout), stem + QStringLiteral(".tiff"), false);
    });
}

// The shared recordset, made new for one use.
db::Recordset& newRecordset(Application& app) {
    app.gRecordset = std::make_shared<db::Recordset>();
    return *app.gRecordset;
}

db::Recordset& currentRecordset(Application& app) {
    if (!app.gRecordset)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return *app.gRecordset;
}

db::Connection& connectionOf(Application& app) {
    if (!app.gConnection)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return *app.gConnection;
}

} // namespace

void SavePlanFile(const AutoPtr& canvas, const QString& logicPath, int format) {
    const QString host = fs::toHost(logicPath);
    const QFileInfo target(host);
    if (!target.dir().exists())
        raiseError(err::PathNotFound, RuntimeError::standardDescription(err::PathNotFound));
    if (target.fileName().toUtf8().size() > NameMaxBytes)
        raiseError(err::BadFileName, RuntimeError::standardDescription(err::BadFileName));
    late::call(canvas, "SaveFile", {host, format});
}

void SaveProjectOutputs(Application& app, PlanSaveUse use) {
    if (app.gPlanFileName.isEmpty())
        return;
    Trap trap = trapFor(app, use);
    saveSequence(app, use, trap);
}

void mnuFile_Save_Click(Application& app) {
    if (!app.gPlanFileName.isEmpty()) {
        SaveProjectOutputs(app, PlanSaveUse::Save);
        return;
    }
    Trap trap = trapFor(app, PlanSaveUse::Save);
    trap.step([&] { app.ui.msgBox(NoProjectText, mb::Information, AppTitle); });
}

void mnuFile_OpenProject_Click(Application& app) {
    // The open plan is stored first, without a question.
    if (!app.gPlanFileName.isEmpty())
        SaveProjectOutputs(app, PlanSaveUse::OpenProject);
    Trap trap = trapFor(app, PlanSaveUse::OpenProject);
    trap.step([&] { app.show(app.form(QStringLiteral("frmClientSites")), true); });
}

void mnuFile_SaveToProjectAs_Click(Application& app) {
    Trap trap = trapFor(app, PlanSaveUse::SaveToProjectAs);
    // 1. A free drawing belongs to no site.
    if (app.gOpenSiteID == 0) {
        trap.step([&] { app.ui.msgBox(NoProjectText, mb::Information, AppTitle); });
        return;
    }
    // 2. The new plan's description; an empty answer or Cancel ends the command.
    const QString description =
        app.ui
            .inputBox(QStringLiteral("Please Enter A Discription For The Plan"),
                      QStringLiteral("Saving Drawing To Existing Project"), QStringLiteral("New Plan"))
            .value_or(QString());
    if (description.isEmpty())
        return;
    // 3. and 4. A new row of the site; every other field keeps the table's default.
    trap.step([&] {
        newRecordset(app).Open(QStringLiteral("SELECT * FROM SitePlans;"), connectionOf(app),
                               db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    });
    trap.step([&] { currentRecordset(app).AddNew(); });
    trap.step([&] { currentRecordset(app).Fields(QStringLiteral("SiteID")) = app.gOpenSiteID; });
    trap.step([&] { currentRecordset(app).Fields(QStringLiteral("PlanDescription")) = description; });
    trap.step([&] { currentRecordset(app).Update(); });
    trap.step([&] { currentRecordset(app).Close(); });
    // 5.
    trap.step([&] { app.sleep(SaveAsSettleMs); });
    // 6. and 7. The site's address names the new plan's folder; a site that
    // has gone leaves gPlanFileName as it was.
    trap.step([&] {
        currentRecordset(app).Open(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.SiteID)=") +
                                       QString::number(app.gOpenSiteID) + QStringLiteral("));"),
                                   connectionOf(app), db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
    });
    trap.step([&] {
        db::Recordset& rs = currentRecordset(app);
        if (!rs.BOF() && !rs.EOF_())
            app.gPlanFileName =
                vb::toText(rs.Fields(QStringLiteral("Address")).Value()) + QStringLiteral("\\") + description;
    });
    // 8.
    trap.step([&] { currentRecordset(app).Close(); });
    app.gRecordset.reset();
    // 9.
    trap.step([&] {
        if (!app.gPlanFileName.isEmpty())
            SaveProjectOutputs(app, PlanSaveUse::SaveToProjectAs);
    });
}

void registerProjectSave(Application& app) {
    app.planRoad.saveProjectOutputs = [&app](PlanSaveUse use) { SaveProjectOutputs(app, use); };
    app.routine(QStringLiteral("SaveProjectOutputs"), [&app](QVariantList& args) {
        if (app.gPlanFileName.isEmpty())
            return QVariant();
        const QString named = args.isEmpty() ? QString() : vb::toText(args.value(0));
        const std::optional<PlanSaveUse> use = named.isEmpty() ? PlanSaveUse::Email : useNamed(named);
        if (!use)
            raiseError(err::InvalidProcedureCall,
                       QStringLiteral("No use of the project save named %1").arg(named));
        SaveProjectOutputs(app, *use);
        return QVariant();
    });
    app.extendForm(QString::fromLatin1(frmMain::FormName), [&app](Form& main) {
        main.on(QStringLiteral("mnuFile_OpenProject"), QStringLiteral("Click"),
                [&app](Control&, EventArgs&) { mnuFile_OpenProject_Click(app); });
        main.on(QStringLiteral("mnuFile_Save"), QStringLiteral("Click"),
                [&app](Control&, EventArgs&) { mnuFile_Save_Click(app); });
        main.on(QStringLiteral("mnuFile_SaveToProjectAs"), QStringLiteral("Click"),
                [&app](Control&, EventArgs&) { mnuFile_SaveToProjectAs_Click(app); });
    });
}

} // namespace tessaly
