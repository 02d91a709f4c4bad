// The site register of the project manager: the moves of RS_SiteDetails and
// their event, the ten site buttons, the site list, the copy of the site's
// name into its address, the boxes' case rules and the site's folder.
#include "projects/frmClientSites.h"

#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/forms/DataBinding.h"
#include "core/runtime/Vb.h"
#include "projects/ProjectsModule.h"
#include "projects/TextCase.h"
#include "workspace/Application.h"

#include <functional>

namespace tessaly {

using projects::CaseRule;

namespace {

constexpr int DeleteSiteFlags = 292; // Yes and No, question icon, No the default
constexpr int RightButton = 2;       // the mouse button value of the right button
constexpr int FolderSettleMs = 500;  // pause after a site's folder is made
constexpr int NoIcon = 0;            // a message box with an OK button and no icon

// How each site box rewrites its text on losing the focus, by index.
const CaseRule SiteCaseRules[frmClientSites::SiteBoxCount] = {
    CaseRule::Proper, CaseRule::Proper,    CaseRule::Proper,    CaseRule::Proper,
    CaseRule::Upper,  CaseRule::Unchanged, CaseRule::Unchanged, CaseRule::Lower,
    CaseRule::Proper, CaseRule::Unchanged, CaseRule::Unchanged, CaseRule::Proper};

const QString EditTag = QStringLiteral("SD"); // the tag of the boxes that the edit buttons unlock

} // namespace

void frmClientSites::registerSiteHandlers() {
    on(RS_SiteDetails.name(), QStringLiteral("MoveComplete"),
       [this](Control&, EventArgs&) { RS_SiteDetails_MoveComplete(); });
    on(QStringLiteral("cmdSiteDetailButton"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { cmdSiteDetailButton_Click(c.index()); });
    on(QStringLiteral("txtSiteDetails"), QStringLiteral("LostFocus"),
       [this](Control& box, EventArgs&) { txtSiteDetails_LostFocus(box); });
    on(QStringLiteral("txtSiteDetails"), QStringLiteral("Change"),
       [this](Control& box, EventArgs&) { bound_[static_cast<size_t>(box.index())]->boxChanged(); });
    on(lstSiteList.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { lstSiteList_Click(); });
    on(lstSiteList.name(), QStringLiteral("MouseDown"),
       [this](Control&, EventArgs& a) { lstSiteList_MouseDown(vb::toInt32(a.value(0))); });
    on(cmdCopySite.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdCopySite_Click(); });
}

void frmClientSites::RS_SiteDetails_MoveComplete() {
    // Each statement runs on past an error; the last error is shown at the end.
    int number = 0;
    QString description;
    const auto step = [&](const std::function<void()>& statement) {
        try {
            statement();
        } catch (const RuntimeError& e) {
            number = e.number();
            description = e.description();
        }
    };
    db::Recordset& rs = sites().Recordset();
    bool onRow = false;
    step([&] { onRow = !rs.EOF_() && !rs.BOF(); });
    if (onRow) {
        // 1. A site on show; a new row being added leaves the earlier site's views as they are.
        if (!IsAddingSite) {
            step([&] {
                lblSiteDetailsInfo.setCaption(
                    QStringLiteral("Record: %1 of %2").arg(rs.AbsolutePosition()).arg(rs.RecordCount()));
            });
            step([&] { CurrentSiteID = vb::toInt32(rs.Fields(QStringLiteral("SiteID")).Value()); });
            const QString key = QString::number(CurrentSiteID);
            step([&] {
                drawings().setRecordSource(
                    QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.SiteID)=") + key +
                    QStringLiteral("));"));
            });
            step([&] { drawings().Refresh(); });
            step([&] {
                costs().setRecordSource(
                    QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=") + key +
                    QStringLiteral("));"));
            });
            step([&] { costs().Refresh(); });
            step([&] { SetSiteState(SiteState::View); });
        }
    } else {
        // 2. No site: before the first row, after the last, or none at all.
        step([&] { lblSiteDetailsInfo.setCaption(QStringLiteral("Record: 0 of %1").arg(rs.RecordCount())); });
        CurrentSiteID = 0;
        step([&] { SetSiteState(SiteState::NoSite); });
    }
    // 3. The cost total comes back only with the costs tab or a new cost line.
    step([&] { txtTotal.setText(QString()); });
    // 4.
    if (number != 0)
        app_.ui.msgBox(description + QString::number(number), NoIcon, AppTitle);
}

void frmClientSites::setBoxesEditable(bool editable) {
    for (const ControlPtr& c : controls())
        if (c->prop(QStringLiteral("Tag")).toString() == EditTag) {
            c->setBackColor(editable ? EditColour : LockedColour);
            c->setLocked(!editable);
        }
}

void frmClientSites::cmdSiteDetailButton_Click(int index) {
    db::Recordset& rs = sites().Recordset();
    switch (index) {
    case FirstSite:
        if (rs.RecordCount() >= 1)
            rs.MoveFirst();
        break;
    case PreviousSite:
        // The wrap to the last site happens only when the cursor already stands before the first.
        if (!rs.BOF())
            rs.MovePrevious();
        else if (rs.RecordCount() >= 1)
            rs.MoveLast();
        break;
    case NextSite:
        if (!rs.EOF_())
            rs.MoveNext();
        else if (rs.RecordCount() >= 1)
            rs.MoveFirst();
        break;
    case LastSite:
        if (rs.RecordCount() >= 1)
            rs.MoveLast();
        break;
    case NewSite:
        setBoxesEditable(true);
        IsAddingSite = true;
        rs.AddNew();
        rs.Fields(QStringLiteral("ClientID")) = module_.gCurrentClientID;
        SetSiteState(SiteState::Edit);
        break;
    case EditSite:
        // The bound boxes put the row into edit as they are typed into.
        setBoxesEditable(true);
        IsAddingSite = false;
        SetSiteState(SiteState::Edit);
        break;
    case SaveSite:
        setBoxesEditable(false);
        IsAddingSite = false;
        rs.Update();
        // The client is chosen again: the list is read anew and its first site shows.
        cboCilent_Click();
        SetSiteState(SiteState::View);
        break;
    case UndoSite:
        setBoxesEditable(false);
        IsAddingSite = false;
        if (rs.RecordCount() >= 1)
            rs.CancelUpdate();
        SetSiteState(SiteState::View);
        break;
    case DeleteSite:
        if (app_.ui.msgBox(QStringLiteral("Are You Sure You Wish To Delete This Site"), DeleteSiteFlags,
                           QStringLiteral("Confirm Plan Deletion")) == mb::ResultYes) {
            IsAddingSite = false;
            rs.Delete(db::adAffectCurrent);
            sites().Refresh();
        }
        break;
    case SiteList:
        toggleSiteList();
        break;
    default:
        break;
    }
}

void frmClientSites::toggleSiteList() {
    app_.ui.setMousePointer(pointer::Hourglass);
    if (lstSiteList.visible()) {
        lstSiteList.setVisible(false);
    } else {
        lstSiteList.clear();
        db::Recordset& rs = sites().Recordset();
        // Walking the rows moves the cursor: the site event runs for each.
        if (rs.RecordCount() >= 1) {
            rs.MoveFirst();
            while (!rs.EOF_()) {
                lstSiteList.addItem(vb::toText(rs.Fields(QStringLiteral("Site")).Value()) +
                                    QStringLiteral(", ") +
                                    vb::toText(rs.Fields(QStringLiteral("PostCode")).Value()));
                lstSiteList.setItemData(lstSiteList.newIndex(), rs.Fields(QStringLiteral("SiteID")).Value());
                rs.MoveNext();
            }
        }
        rs.MoveFirst();
        QVariantList front{0};
        lstSiteList.call(QStringLiteral("ZOrder"), front);
        lstSiteList.setVisible(true);
    }
    app_.ui.setMousePointer(pointer::Default);
}

void frmClientSites::lstSiteList_Click() {
    app_.ui.setMousePointer(pointer::Hourglass);
    db::Recordset& rs = sites().Recordset();
    const QVariant chosen = lstSiteList.itemData(lstSiteList.listIndex());
    if (rs.RecordCount() >= 1)
        rs.MoveFirst();
    while (!rs.EOF_()) {
        if (vb::toInt32(rs.Fields(QStringLiteral("SiteID")).Value()) == vb::toInt32(chosen)) {
            app_.ui.setMousePointer(pointer::Default);
            lstSiteList.setVisible(false);
            return;
        }
        rs.MoveNext();
    }
    lstSiteList.setVisible(false);
    app_.ui.setMousePointer(pointer::Default);
}

void frmClientSites::lstSiteList_MouseDown(int button) {
    if (button == RightButton)
        lstSiteList.setVisible(false);
}

void frmClientSites::cmdCopySite_Click() {
    txtSiteDetails(AddressBox).setText(txtSiteDetails(SiteBox).text());
}

void frmClientSites::txtSiteDetails_LostFocus(Control& box) {
    const int i = box.index();
    if (i < 0 || i >= SiteBoxCount || SiteCaseRules[i] == CaseRule::Unchanged)
        return;
    box.setText(projects::applyCase(SiteCaseRules[i], box.text()));
}

bool frmClientSites::FolderExists(const QString& path) {
    // The null device "nul" answers inside every folder that exists, so the
    // entry of path + "\nul" is there exactly when the folder is.
    return fs::folderExists(path);
}

void frmClientSites::MakeSiteFolder() {
    const QString folder =
        app_.gFileStore + QStringLiteral("\\") + projects::trimSpaces(txtSiteDetails(AddressBox).text());
    if (!FolderExists(folder))
        fs::mkDir(folder); // one folder: its parents are not made
    app_.sleep(FolderSettleMs);
}

} // namespace tessaly
