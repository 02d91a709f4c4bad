// The plan register of the project manager: the plans of the site on show in
// TDBGrid1, a new plan from a page template, the opening, import and deletion
// of a plan, and the ending that hands a plan to the main window.
#include "projects/frmClientSites.h"

#include "canvas/api/CanvasCodes.h"
#include "core/common/CommonRoutines.h"
#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "drawing_files/ProjectSave.h"
#include "projects/ProjectDb.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/frmMain.h"

namespace tessaly {

namespace {

constexpr int TemplateSettleMs = 500; // pause after the page template is loaded
constexpr int BaseFileSettleMs = 900; // pause after the plan's drawing file is written
constexpr int DeleteSettleMs = 500;   // pause after a plan's row is deleted
constexpr int DeletePlanFlags = 292;  // Yes and No, question icon, No the default
constexpr int FileMissingFlags = 48;  // the exclamation icon

const QString PortraitTemplate = QStringLiteral("\\TemplatePortrate.pdr");
const QString LandscapeTemplate = QStringLiteral("\\TemplateLandscape.pdr");
const QString DisplayYes = QStringLiteral("Yes");
const QString DisplayNo = QStringLiteral("No");

// The stamps' boxes on the page, in millimetres: left, top, right, bottom.
struct StampBox {
    int left, top, right, bottom;
};
const StampBox PortraitAddress{110, 278, 200, 283};
const StampBox PortraitPlan{110, 283, 200, 288};
const StampBox LandscapeAddress{200, 190, 287, 195};
const StampBox LandscapePlan{200, 195, 287, 200};
// The copyright's box reaches to a width that depends on the other stamps.
constexpr int CopyrightLeft = 10;
constexpr int PortraitCopyrightTop = 283, PortraitCopyrightBottom = 288;
constexpr int LandscapeCopyrightTop = 195, LandscapeCopyrightBottom = 200;
constexpr int NarrowCopyright = 90;         // beside the address or plan stamp
constexpr int PortraitWideCopyright = 200;  // alone on a portrait page
constexpr int LandscapeWideCopyright = 250; // alone on a landscape page

constexpr int FolderNotFound = 76; // the error of a folder that cannot be reached

AutoPtr mainCanvasOf(Application& app) {
    auto* main = dynamic_cast<frmMain*>(app.loaded(QString::fromLatin1(frmMain::FormName)));
    if (!main)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return main->canvas1();
}

} // namespace

void frmClientSites::registerPlanHandlers() {
    on(RS_ProjectDrawings.name(), QStringLiteral("MoveComplete"),
       [this](Control&, EventArgs&) { RS_ProjectDrawings_MoveComplete(); });
    on(cmdNewDrawing.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdNewDrawing_Click(); });
    on(cmdOk.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdOk_Click(); });
    on(cmdCancel.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        NewPlanDialogShd.setVisible(false);
        NewPlanDialog.setVisible(false);
    });
    on(cmdLoadDrawing.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdLoadDrawing_Click(); });
    on(cmdImport.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdImport_Click(); });
    on(cmdImportCancel.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdImportCancel_Click(); });
    on(cmdImportOK.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdImportOK_Click(); });
    on(cmdDeleteDrawing.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdDeleteDrawing_Click(); });
}

void frmClientSites::RS_ProjectDrawings_MoveComplete() {
    db::Recordset& rs = drawings().Recordset();
    const bool onPlan = !rs.BOF() && !rs.EOF_();
    cmdLoadDrawing.setEnabled(onPlan);
    cmdDeleteDrawing.setEnabled(onPlan);
}

QString frmClientSites::planStem() const {
    return app_.gFileStore + QStringLiteral("\\") + app_.gPlanFileName;
}

QString frmClientSites::currentPlanName() const {
    const QVariant address = sites().Recordset().Fields(QStringLiteral("Address")).Value();
    const QVariant plan = drawings().Recordset().Fields(QStringLiteral("PlanDescription")).Value();
    return vb::toText(address) + QStringLiteral("\\") + vb::toText(plan);
}

// ----- a new plan -------------------------------------------------------------

void frmClientSites::cmdNewDrawing_Click() {
    NewPlanDialogShd.setVisible(true);
    NewPlanDialog.setVisible(true);
    setFocus(&txtPlanDesc);
}

void frmClientSites::cmdOk_Click() {
    NewPlanDialogShd.setVisible(false);
    NewPlanDialog.setVisible(false);
    CreateNewPlan();
}

void frmClientSites::addPlanRow(const QString& description) {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM SitePlans;"), projects::sharedConnection(app_), db::adOpenDynamic,
            db::adLockOptimistic, db::adCmdText);
    rs.AddNew();
    rs.Fields(QStringLiteral("SiteID")) = CurrentSiteID;
    app_.gOpenSiteID = vb::toInt32(rs.Fields(QStringLiteral("SiteID")).Value());
    rs.Fields(QStringLiteral("PlanDescription")) = description;
    rs.Update();
    rs.Close();
}

void frmClientSites::AddPlanRow() {
    addPlanRow(txtPlanDesc.text());
}

void frmClientSites::AddImportedPlanRow() {
    addPlanRow(txtImportName.text());
}

void frmClientSites::addStamp(const QString& text, int left, int top, int right, int bottom) {
    // The text goes through the rich text box on its way to the canvas.
    RTF1.setText(text);
    late::call(app_.gShapeList, "AddText", {RTF1.text(), left, top, right, bottom});
}

void frmClientSites::addStamps(bool portrait) {
    const bool address = app_.gDisplayAddress == DisplayYes;
    const bool plan = app_.gDisplayPlanData == DisplayYes;
    const bool copyright = !app_.gCopyrightText.isEmpty();
    // Any display setting other than "No" keeps room for the other stamps.
    const bool narrow = app_.gDisplayPlanData != DisplayNo || app_.gDisplayAddress != DisplayNo;
    const int width = narrow ? NarrowCopyright : (portrait ? PortraitWideCopyright : LandscapeWideCopyright);
    const QString addressText = QStringLiteral("Site Address: ") + txtSiteDetails(AddressBox).text();
    const QString planText = QStringLiteral("Plan Description: ") + txtPlanDesc.text();
    auto stamp = [this](const QString& text, const StampBox& b) {
        addStamp(text, b.left, b.top, b.right, b.bottom);
    };
    if (portrait) {
        if (address)
            stamp(addressText, PortraitAddress);
        if (plan)
            stamp(planText, PortraitPlan);
        if (copyright)
            addStamp(app_.gCopyrightText, CopyrightLeft, PortraitCopyrightTop, width,
                     PortraitCopyrightBottom);
    } else {
        if (copyright)
            addStamp(app_.gCopyrightText, CopyrightLeft, LandscapeCopyrightTop, width,
                     LandscapeCopyrightBottom);
        if (address)
            stamp(addressText, LandscapeAddress);
        if (plan)
            stamp(planText, LandscapePlan);
    }
}

void frmClientSites::CreateNewPlan() {
    try {
        // 1. and 2.
        MakeSiteFolder();
        AddPlanRow();
        // 3. The address as the box holds it, untrimmed.
        app_.gPlanFileName = txtSiteDetails(AddressBox).text() + QStringLiteral("\\") + txtPlanDesc.text();
        // 4.
        late::call(app_.gHGuides, "Clear");
        late::call(app_.gVGuides, "Clear");
        // 5. The empty page of the chosen orientation.
        const bool portrait = Option1(0).value() != 0;
        const AutoPtr canvas = mainCanvasOf(app_);
        const QString page = app_.home.appPath() + (portrait ? PortraitTemplate : LandscapeTemplate);
        late::call(canvas, "LoadFile", {fs::toHost(page)});
        app_.sleep(TemplateSettleMs);
        // 6.
        addStamps(portrait);
        // 7. The plan's drawing, then its metafiles.
        if (!app_.gPlanFileName.isEmpty()) {
            const QString pdr = planStem() + QStringLiteral(".pdr");
            SavePlanFile(canvas, pdr, canvas::save_format::Pdr);
            app_.sleep(BaseFileSettleMs);
            if (!common::FileExists(pdr)) {
                app_.ui.msgBox(QStringLiteral("Error Creating Base File!"), mb::Critical, AppTitle);
                return;
            }
            const QString emf = planStem() + QStringLiteral(".emf");
            if (common::FileExists(emf))
                fs::kill(emf);
            SavePlanFile(canvas, emf, canvas::save_format::Emf);
            const QString wmf = planStem() + QStringLiteral(".wmf");
            if (common::FileExists(wmf))
                fs::kill(wmf);
            app_.printMod.ConvertEMFtoWMF(emf, wmf);
        }
        // 8.
        handOverPlan();
    } catch (const RuntimeError& e) {
        if (e.number() == FolderNotFound)
            app_.ui.msgBox(
                QStringLiteral("The project folder appeart to be missing or it may have been moved. It "
                               "may be on a network server where that is not currently connected to "
                               "the network."),
                mb::Critical, QStringLiteral("The Folder Was Not Found"));
        // any other error ends the routine without a word
    }
}

void frmClientSites::handOverPlan() {
    // The main window's half: the backup timer starts again and its caption names the plan.
    if (app_.planRoad.takePlan)
        app_.planRoad.takePlan();
    app_.unload(*this);
}

void frmClientSites::applyDrawingScale() {
    const QString tag = vb::toText(late::get(mainCanvasOf(app_), "DrawingTag"));
    if (!tag.isEmpty()) {
        QVariantList args{tag};
        app_.call(QStringLiteral("SetScale"), args); // which puts the pointer back
    } else {
        app_.ui.setMousePointer(pointer::Default);
    }
}

// ----- opening a plan ----------------------------------------------------------

void frmClientSites::cmdLoadDrawing_Click() {
    // 1.
    lblInfo.setVisible(true);
    app_.ui.doEvents();
    app_.ui.setMousePointer(pointer::Hourglass);
    const AutoPtr canvas = mainCanvasOf(app_);
    // 2. The plan on the canvas is written back first, without a question.
    if (!app_.gPlanFileName.isEmpty()) {
        late::call(canvas, "SaveFile",
                   {fs::toHost(planStem() + QStringLiteral(".pdr")), canvas::save_format::Pdr});
        late::call(canvas, "SaveFile",
                   {fs::toHost(planStem() + QStringLiteral(".emf")), canvas::save_format::Emf});
    }
    // 3.
    app_.gPlanFileName = currentPlanName();
    app_.gOpenSiteID = vb::toInt32(drawings().Recordset().Fields(QStringLiteral("SiteID")).Value());
    // 4. and 5.
    const QString pdr = planStem() + QStringLiteral(".pdr");
    if (common::FileExists(pdr)) {
        late::call(canvas, "LoadFile", {fs::toHost(pdr)});
        applyDrawingScale();
        handOverPlan();
        return;
    }
    // The drawing stays on the canvas under the missing plan's name, lblInfo stays up.
    app_.ui.setMousePointer(pointer::Default);
    app_.ui.msgBox(
        QStringLiteral("The Drawing File You Selecetd Has Been Deleted, Courrupted or Manually Moved."),
        FileMissingFlags, QStringLiteral("File Missing"));
}

// ----- importing a plan ----------------------------------------------------------

void frmClientSites::cmdImport_Click() {
    FileDialogRequest request;
    request.title = QStringLiteral("Please Select The Tessaly Drawing To Import");
    request.filter = QStringLiteral("Tessaly File (*.pdr)|*.pdr");
    request.defaultExt = QStringLiteral("pdr"); // the dialog shows no read-only box
    const std::optional<QString> chosen = app_.ui.openDialog(request);
    // The dialog raises its cancel error, and nothing here traps it.
    if (!chosen)
        raiseError(err::DialogCancelled, QStringLiteral("Cancel was selected."),
                   QStringLiteral("CommonDialog"));
    ImportSourcePath = *chosen;
    if (!ImportSourcePath.isEmpty()) {
        txtImportFile.setText(ImportSourcePath);
        ImportPlanDialogShadow.setVisible(true);
        ImportPlanDialog.setVisible(true);
    }
}

void frmClientSites::cmdImportCancel_Click() {
    ImportPlanDialogShadow.setVisible(false);
    ImportPlanDialog.setVisible(false);
    ImportSourcePath.clear();
    txtImportFile.setText(QString());
    txtImportName.setText(QString());
}

void frmClientSites::cmdImportOK_Click() {
    if (txtImportName.text().isEmpty())
        return;
    // 1. to 3.
    MakeSiteFolder();
    AddImportedPlanRow();
    app_.gPlanFileName = txtSiteDetails(AddressBox).text() + QStringLiteral("\\") + txtImportName.text();
    // 4. The file is copied over whatever has the plan's name.
    const QString pdr = planStem() + QStringLiteral(".pdr");
    fs::copyFile(ImportSourcePath, pdr, true);
    // 5.
    app_.ui.doEvents();
    cmdImportCancel_Click();
    drawings().Refresh();
    // 6. and 7.
    late::call(mainCanvasOf(app_), "LoadFile", {fs::toHost(pdr)});
    applyDrawingScale();
    handOverPlan();
}

// ----- deleting a plan ------------------------------------------------------------

void frmClientSites::cmdDeleteDrawing_Click() {
    if (app_.ui.msgBox(QStringLiteral("Are You Sure You Wish To Delete The Selected Plan"), DeletePlanFlags,
                       QStringLiteral("Confirm Plan Deletion")) != mb::ResultYes)
        return;
    // Each step is tried whatever became of the one before.
    resumeNext([&] { app_.gPlanFileName = currentPlanName(); });
    resumeNext([&] { fs::kill(planStem() + QStringLiteral(".pdr")); });
    resumeNext([&] { fs::kill(planStem() + QStringLiteral(".EMF")); });
    // The plan on the canvas, whichever it is, leaves the project.
    resumeNext([&] { app_.gPlanFileName.clear(); });
    resumeNext([&] {
        const QString key = vb::toText(drawings().Recordset().Fields(QStringLiteral("PlanID")).Value());
        db::Recordset command;
        command.Open(QStringLiteral("DELETE * FROM SitePlans WHERE (((SitePlans.PlanID)=") + key +
                         QStringLiteral("));"),
                     projects::sharedConnection(app_), db::adOpenDynamic, db::adLockOptimistic,
                     db::adCmdText);
    });
    resumeNext([&] { app_.sleep(DeleteSettleMs); });
    resumeNext([&] { drawings().Refresh(); });
}

} // namespace tessaly
