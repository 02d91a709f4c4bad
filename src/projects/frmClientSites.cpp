#include "projects/frmClientSites.h"

#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/forms/DataBinding.h"
#include "core/forms/TabStrip.h"
#include "core/runtime/Vb.h"
#include "projects/ProjectDb.h"
#include "projects/ProjectsModule.h"
#include "projects/frmNew.h"
#include "schedule/ScheduleControl.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {

constexpr int16_t AddClientMode = -1; // gIsNewClient for a new client
constexpr int16_t EditClientMode = 0; // gIsNewClient for the chosen client

// The start and end of the data controls' connection string around the database's location.
const QString ControlConnectionStart = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");
const QString ControlConnectionEnd = QStringLiteral(";Persist Security Info=False");

// The fields of Sites that the twelve boxes show, by index.
const char* const SiteFields[frmClientSites::SiteBoxCount] = {"Address",  "Area",      "Town",      "County",
                                                              "PostCode", "TelNumber", "FAXNumber", "Email",
                                                              "Contact",  "DateAdded", "Comments",  "Site"};

} // namespace

frmClientSites::frmClientSites(Application& app, ProjectsModule& module)
    : Form(app, QString::fromLatin1(FormName)),
      cboCilent(add(ControlKind::ComboBox, QStringLiteral("cboCilent"))),
      cmdViewClient(add(ControlKind::CommandButton, QStringLiteral("cmdViewClient"))),
      cmdNewClient(add(ControlKind::CommandButton, QStringLiteral("cmdNewClient"))),
      cmdClose(add(ControlKind::CommandButton, QStringLiteral("cmdClose"))),
      Tabs1(add(ControlKind::TabStrip, QStringLiteral("Tabs1"))),
      lblSiteDetailsInfo(add(ControlKind::Label, QStringLiteral("lblSiteDetailsInfo"))),
      lstSiteList(add(ControlKind::ListBox, QStringLiteral("lstSiteList"))),
      cmdCopySite(add(ControlKind::CommandButton, QStringLiteral("cmdCopySite"))),
      RS_SiteDetails(add(ControlKind::DataControl, QStringLiteral("RS_SiteDetails"))),
      RS_ProjectDrawings(add(ControlKind::DataControl, QStringLiteral("RS_ProjectDrawings"))),
      RS_ProjectCosts(add(ControlKind::DataControl, QStringLiteral("RS_ProjectCosts"))),
      TDBGrid1(add(ControlKind::Grid, QStringLiteral("TDBGrid1"))),
      cmdNewDrawing(add(ControlKind::CommandButton, QStringLiteral("cmdNewDrawing"))),
      cmdLoadDrawing(add(ControlKind::CommandButton, QStringLiteral("cmdLoadDrawing"))),
      cmdDeleteDrawing(add(ControlKind::CommandButton, QStringLiteral("cmdDeleteDrawing"))),
      cmdImport(add(ControlKind::CommandButton, QStringLiteral("cmdImport"))),
      lblInfo(add(ControlKind::Label, QStringLiteral("lblInfo"))),
      RTF1(add(ControlKind::RichText, QStringLiteral("RTF1"))),
      NewPlanDialogShd(add(ControlKind::PictureBox, QStringLiteral("NewPlanDialogShd"))),
      NewPlanDialog(add(ControlKind::PictureBox, QStringLiteral("NewPlanDialog"))),
      txtPlanDesc(add(ControlKind::TextBox, QStringLiteral("txtPlanDesc"))),
      cmdOk(add(ControlKind::CommandButton, QStringLiteral("cmdOk"))),
      cmdCancel(add(ControlKind::CommandButton, QStringLiteral("cmdCancel"))),
      ImportPlanDialogShadow(add(ControlKind::PictureBox, QStringLiteral("ImportPlanDialogShadow"))),
      ImportPlanDialog(add(ControlKind::PictureBox, QStringLiteral("ImportPlanDialog"))),
      txtImportFile(add(ControlKind::TextBox, QStringLiteral("txtImportFile"))),
      txtImportName(add(ControlKind::TextBox, QStringLiteral("txtImportName"))),
      cmdImportOK(add(ControlKind::CommandButton, QStringLiteral("cmdImportOK"))),
      cmdImportCancel(add(ControlKind::CommandButton, QStringLiteral("cmdImportCancel"))),
      ctSchedule1(add(ControlKind::Schedule, QStringLiteral("ctSchedule1"))),
      ctTips1(add(ControlKind::PictureBox, QStringLiteral("ctTips1"))),
      cmdNewTimeLineElement(add(ControlKind::CommandButton, QStringLiteral("cmdNewTimeLineElement"))),
      cmdDeleteTimeBar(add(ControlKind::CommandButton, QStringLiteral("cmdDeleteTimeBar"))),
      cmdRefreshSchedule(add(ControlKind::CommandButton, QStringLiteral("cmdRefreshSchedule"))),
      cmdSchedBack(add(ControlKind::CommandButton, QStringLiteral("cmdSchedBack"))),
      cmdSchedForward(add(ControlKind::CommandButton, QStringLiteral("cmdSchedForward"))),
      cmdPrintSchedule(add(ControlKind::CommandButton, QStringLiteral("cmdPrintSchedule"))),
      picTimeLineShad(add(ControlKind::PictureBox, QStringLiteral("picTimeLineShad"))),
      picTimeLine(add(ControlKind::PictureBox, QStringLiteral("picTimeLine"))),
      txtTimeLineDesc(add(ControlKind::TextBox, QStringLiteral("txtTimeLineDesc"))),
      cmdAddTimeLine(add(ControlKind::CommandButton, QStringLiteral("cmdAddTimeLine"))),
      cmdCancelTimeLine(add(ControlKind::CommandButton, QStringLiteral("cmdCancelTimeLine"))),
      ScheduleItemSch(add(ControlKind::PictureBox, QStringLiteral("ScheduleItemSch"))),
      ScheduleItem(add(ControlKind::PictureBox, QStringLiteral("ScheduleItem"))),
      DTP1(add(ControlKind::DatePicker, QStringLiteral("DTP1"))),
      STime(add(ControlKind::TimeEdit, QStringLiteral("STime"))),
      DTP2(add(ControlKind::DatePicker, QStringLiteral("DTP2"))),
      ETime(add(ControlKind::TimeEdit, QStringLiteral("ETime"))),
      txtBarText(add(ControlKind::TextBox, QStringLiteral("txtBarText"))),
      lblBarColour(add(ControlKind::Label, QStringLiteral("lblBarColour"))),
      cmdColourPick(add(ControlKind::CommandButton, QStringLiteral("cmdColourPick"))),
      txtBarComments(add(ControlKind::TextBox, QStringLiteral("txtBarComments"))),
      cmdSaveSchedule(add(ControlKind::CommandButton, QStringLiteral("cmdSaveSchedule"))),
      cmdCancelSchedule(add(ControlKind::CommandButton, QStringLiteral("cmdCancelSchedule"))),
      TDBGrid2(add(ControlKind::Grid, QStringLiteral("TDBGrid2"))),
      cboProjectItem(add(ControlKind::ComboBox, QStringLiteral("cboProjectItem"))),
      cboTimeLine(add(ControlKind::ComboBox, QStringLiteral("cboTimeLine"))),
      txtCost(add(ControlKind::TextBox, QStringLiteral("txtCost"))),
      txtTotal(add(ControlKind::TextBox, QStringLiteral("txtTotal"))),
      cmdAddProjectCost(add(ControlKind::CommandButton, QStringLiteral("cmdAddProjectCost"))),
      cmdDeleteItem(add(ControlKind::CommandButton, QStringLiteral("cmdDeleteItem"))),
      cmdPrintCosts(add(ControlKind::CommandButton, QStringLiteral("cmdPrintCosts"))), app_(app),
      module_(module) {
    buildFrame();
    buildSiteTab();
    buildDrawingsTab();
    buildPlannerTab();
    buildCostsTab();
    bindData();
    registerHandlers();
    registerSiteHandlers();
    registerPlanHandlers();
    registerPlannerHandlers();
    registerCostHandlers();
    registerMembers();
    registerPlannerMembers();
}

frmClientSites::~frmClientSites() = default;

db::DataControl& frmClientSites::sites() const {
    return dataControlOf(RS_SiteDetails);
}

db::DataControl& frmClientSites::drawings() const {
    return dataControlOf(RS_ProjectDrawings);
}

db::DataControl& frmClientSites::costs() const {
    return dataControlOf(RS_ProjectCosts);
}

void frmClientSites::bindData() {
    for (int i = 0; i < SiteBoxCount; ++i)
        bound_.push_back(
            std::make_unique<BoundText>(txtSiteDetails(i), sites(), QString::fromLatin1(SiteFields[i])));
}

void frmClientSites::registerHandlers() {
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Activate"), [this](EventArgs&) { Form_Activate(); });
    on(cboCilent.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cboCilent_Click(); });
    on(cmdViewClient.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdViewClient_Click(); });
    on(cmdNewClient.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdNewClient_Click(); });
    on(Tabs1.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { Tabs1_Click(); });
    on(cmdClose.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
}

void frmClientSites::registerMembers() {
    member(
        QStringLiteral("CurrentSiteID"), [this] { return QVariant(CurrentSiteID); },
        [this](const QVariant& v) { CurrentSiteID = vb::toInt32(v); });
    member(
        QStringLiteral("IsAddingSite"), [this] { return QVariant(IsAddingSite); },
        [this](const QVariant& v) { IsAddingSite = vb::toBool(v); });
    member(
        QStringLiteral("ImportSourcePath"), [this] { return QVariant(ImportSourcePath); },
        [this](const QVariant& v) { ImportSourcePath = vb::toText(v); });
    member(QStringLiteral("SiteState"), [this] {
        switch (state_) {
        case SiteState::NoClient:
            return QVariant(QStringLiteral("No client"));
        case SiteState::NoSite:
            return QVariant(QStringLiteral("No site"));
        case SiteState::View:
            return QVariant(QStringLiteral("View"));
        case SiteState::Edit:
            break;
        }
        return QVariant(QStringLiteral("Edit"));
    });
    auto step = [this](const char* name, void (frmClientSites::*fn)()) {
        routine(QString::fromLatin1(name), [this, fn](QVariantList&) {
            (this->*fn)();
            return QVariant();
        });
    };
    step("FillClientCombo", &frmClientSites::FillClientCombo);
    step("QuerySitesOfClient", &frmClientSites::QuerySitesOfClient);
    step("MakeSiteFolder", &frmClientSites::MakeSiteFolder);
    step("CreateNewPlan", &frmClientSites::CreateNewPlan);
    step("AddPlanRow", &frmClientSites::AddPlanRow);
    step("AddImportedPlanRow", &frmClientSites::AddImportedPlanRow);
    routine(QStringLiteral("FolderExists"),
            [](QVariantList& a) { return QVariant(FolderExists(vb::toText(a.value(0)))); });
}

void frmClientSites::Form_Load() {
    // Each data control holds a connection of its own.
    const QString connection = ControlConnectionStart + app_.gDatabaseLocation + ControlConnectionEnd;
    for (Control* data : {&RS_SiteDetails, &RS_ProjectDrawings, &RS_ProjectCosts})
        dataControlOf(*data).setConnectionString(connection);
    // Tabs 1 to 4 are disabled.
    SetSiteState(SiteState::NoClient);
    // The schedule's range as designed, widened: 30 days earlier, 90 days later.
    constexpr int EarlierDays = 30;
    constexpr int LaterDays = 90;
    schedule_->setFirstDay(schedule_->firstDay() - EarlierDays);
    schedule_->setLastDay(schedule_->lastDay() + LaterDays);
}

void frmClientSites::Form_Activate() {
    FillClientCombo();
}

void frmClientSites::FillClientCombo() {
    cboCilent.clear();
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), projects::sharedConnection(app_), db::adOpenDynamic,
            db::adLockReadOnly, db::adCmdText);
    if (rs.BOF() && rs.EOF_()) {
        cmdViewClient.setEnabled(false);
    } else {
        const int client = rs.FieldOrdinal(QStringLiteral("Client"));
        const int address = rs.FieldOrdinal(QStringLiteral("Address"));
        const int postCode = rs.FieldOrdinal(QStringLiteral("PostCode"));
        const int id = rs.FieldOrdinal(QStringLiteral("ClientID"));
        const QLatin1String separator(", ");
        while (!rs.EOF_()) {
            const QString name = vb::toText(rs.value(client));
            const QString street = vb::toText(rs.value(address));
            const QString code = vb::toText(rs.value(postCode));
            QString line;
            line.reserve(name.size() + street.size() + code.size() + 2 * separator.size());
            line.append(name).append(separator).append(street).append(separator).append(code);
            cboCilent.addItem(line);
            cboCilent.setItemData(cboCilent.newIndex(), rs.value(id));
            rs.MoveNext();
        }
    }
    rs.Close();
}

void frmClientSites::cboCilent_Click() {
    const QVariant key = cboCilent.itemData(cboCilent.listIndex());
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=") + vb::toText(key) +
                QStringLiteral("));"),
            projects::sharedConnection(app_), db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        const QVariant id = rs.Fields(QStringLiteral("ClientID")).Value();
        if (!id.isNull())
            module_.gCurrentClientID = vb::toInt32(id);
    }
    rs.Close();
    clearSchedule();
    tabs::select(Tabs1, SiteTab);
    QuerySitesOfClient();
}

void frmClientSites::QuerySitesOfClient() {
    db::DataControl& data = sites();
    data.setRecordSource(QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=") +
                         QString::number(module_.gCurrentClientID) + QStringLiteral("));"));
    data.Refresh();
}

void frmClientSites::clearSchedule() {
    QVariantList none;
    ctSchedule1.call(QStringLiteral("ClearAll"), none);
}

void frmClientSites::Tabs1_Click() {
    // Tab 3: the schedule of the site on show is built.
    if (tabs::selected(Tabs1, PlannerTab))
        rebuildSchedule();
    // Tab 4: the lists of the cost inputs and the total.
    if (tabs::selected(Tabs1, CostsTab))
        enterCostsTab();
}

void frmClientSites::cmdViewClient_Click() {
    module_.gIsNewClient = EditClientMode;
    app_.show(app_.form(QString::fromLatin1(frmNew::FormName)), true);
}

void frmClientSites::cmdNewClient_Click() {
    clearSchedule();
    module_.gIsNewClient = AddClientMode;
    app_.show(app_.form(QString::fromLatin1(frmNew::FormName)), true);
}

void frmClientSites::SetSiteState(SiteState state) {
    state_ = state;
    const bool moves = state == SiteState::View;
    const bool adding = state == SiteState::NoSite || state == SiteState::View;
    const bool editing = state == SiteState::Edit;
    for (int i : {FirstSite, PreviousSite, EditSite, DeleteSite, NextSite, LastSite, SiteList})
        cmdSiteDetailButton(i).setEnabled(moves);
    cmdSiteDetailButton(NewSite).setEnabled(adding);
    cmdSiteDetailButton(SaveSite).setEnabled(editing);
    cmdSiteDetailButton(UndoSite).setEnabled(editing);
    tabs::setEnabled(Tabs1, SiteTab, state != SiteState::NoClient);
    for (int tab : {DrawingsTab, PlannerTab, CostsTab})
        tabs::setEnabled(Tabs1, tab, state == SiteState::View);
}

} // namespace tessaly
