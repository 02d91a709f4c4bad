#pragma once

#include "core/forms/Form.h"

#include <array>
#include <memory>
#include <vector>

namespace tessaly {

class Application;
class BoundText;
struct ProjectsModule;

namespace db {
class DataControl;
class Recordset;
} // namespace db

namespace schedule {
class ScheduleControl;
}

// The project manager: the client choice, the client's sites on tab 1 "Site
// Details", the site's plans on tab 2 "Project Drawings", its time lines and
// schedule of bookings on tab 3 "Project Planner" and its cost lines on tab 4
// "Project Costs and Estimations". Three data controls follow the chosen
// client and site: RS_SiteDetails (the client's sites), RS_ProjectDrawings
// (the site's plans) and RS_ProjectCosts (the site's cost lines).
class frmClientSites final : public Form {
public:
    static constexpr const char* FormName = "frmClientSites";
    frmClientSites(Application& app, ProjectsModule& module);
    ~frmClientSites() override;

    // The tabs, numbered from 1.
    static constexpr int SiteTab = 1;
    static constexpr int DrawingsTab = 2;
    static constexpr int PlannerTab = 3;
    static constexpr int CostsTab = 4;

    // The site boxes and buttons, by index.
    static constexpr int SiteBoxCount = 12;
    static constexpr int AddressBox = 0;
    static constexpr int DateAddedBox = 9;
    static constexpr int CommentsBox = 10;
    static constexpr int SiteBox = 11;
    static constexpr int SiteButtonCount = 10;
    enum SiteButton {
        FirstSite = 0,
        PreviousSite = 1,
        NewSite = 2,
        EditSite = 3,
        SaveSite = 4,
        UndoSite = 5,
        DeleteSite = 6,
        NextSite = 7,
        LastSite = 8,
        SiteList = 9,
    };

    // The states of the site area.
    enum class SiteState { NoClient, NoSite, View, Edit };

    // The background of a box being edited, and of one that is locked (the
    // system's window colour).
    static constexpr unsigned EditColour = 0xC0FFC0;
    static constexpr unsigned LockedColour = 0x80000005;

    Control& cboCilent;
    Control& cmdViewClient;
    Control& cmdNewClient;
    Control& cmdClose;
    Control& Tabs1;
    Control& lblSiteDetailsInfo;
    Control& lstSiteList;
    Control& cmdCopySite;
    Control& RS_SiteDetails;
    Control& RS_ProjectDrawings;
    Control& RS_ProjectCosts;
    Control& TDBGrid1;
    Control& cmdNewDrawing;
    Control& cmdLoadDrawing;
    Control& cmdDeleteDrawing;
    Control& cmdImport;
    Control& lblInfo;
    Control& RTF1;
    Control& NewPlanDialogShd;
    Control& NewPlanDialog;
    Control& txtPlanDesc;
    Control& cmdOk;
    Control& cmdCancel;
    Control& ImportPlanDialogShadow;
    Control& ImportPlanDialog;
    Control& txtImportFile;
    Control& txtImportName;
    Control& cmdImportOK;
    Control& cmdImportCancel;
    // Tab 3: the schedule, its tips and buttons, the time line panel and the booking dialog.
    Control& ctSchedule1;
    Control& ctTips1;
    Control& cmdNewTimeLineElement;
    Control& cmdDeleteTimeBar;
    Control& cmdRefreshSchedule;
    Control& cmdSchedBack;
    Control& cmdSchedForward;
    Control& cmdPrintSchedule;
    Control& picTimeLineShad;
    Control& picTimeLine;
    Control& txtTimeLineDesc;
    Control& cmdAddTimeLine;
    Control& cmdCancelTimeLine;
    Control& ScheduleItemSch;
    Control& ScheduleItem;
    Control& DTP1;
    Control& STime;
    Control& DTP2;
    Control& ETime;
    Control& txtBarText;
    Control& lblBarColour;
    Control& cmdColourPick;
    Control& txtBarComments;
    Control& cmdSaveSchedule;
    Control& cmdCancelSchedule;
    // Tab 4: the cost lines and their inputs.
    Control& TDBGrid2;
    Control& cboProjectItem;
    Control& cboTimeLine;
    Control& txtCost;
    Control& txtTotal;
    Control& cmdAddProjectCost;
    Control& cmdDeleteItem;
    Control& cmdPrintCosts;
    Control& txtSiteDetails(int index) const { return *txtSiteDetails_[static_cast<size_t>(index)]; }
    Control& cmdSiteDetailButton(int index) const {
        return *cmdSiteDetailButton_[static_cast<size_t>(index)];
    }
    Control& Option1(int index) const { return *Option1_[static_cast<size_t>(index)]; }

    // Members of the window.
    int32_t CurrentSiteID = 0;
    bool IsAddingSite = false;
    // The colour of the common dialog CD1: kept from one opening to the next.
    uint32_t CD1Color = 0;
    QString ImportSourcePath;
    SiteState siteState() const { return state_; }

    db::DataControl& sites() const;
    db::DataControl& drawings() const;
    db::DataControl& costs() const;

    // Routines of the window.
    void FillClientCombo();
    void QuerySitesOfClient();
    // Whether a folder is there, by asking for the entry "nul" inside it.
    static bool FolderExists(const QString& path);
    // The site's folder made when missing, with the wait after it.
    void MakeSiteFolder();
    void CreateNewPlan();
    void AddPlanRow();
    void AddImportedPlanRow();
    void SetSiteState(SiteState state);
    // Time lines (frmClientSitesPlanner.cpp).
    void AddTimeLineRow();
    void ResetScheduleRows();
    void FillTimeLineList();
    // The schedule's bookings.
    void LoadScheduleBars(int32_t site);
    void LoadBooking(int32_t id);
    void SaveBooking(int16_t isNew, int32_t site);
    void DeleteBooking(int32_t key);
    // The cost lines (frmClientSitesCosts.cpp).
    void FillProjectItemList();
    schedule::ScheduleControl& schedule() const { return *schedule_; }

private:
    // Layout (frmClientSitesLayout.cpp).
    void buildFrame();
    void buildSiteTab();
    void buildDrawingsTab();
    void buildPlanDialogs();
    void placeOnTab(Control& control, int tab);
    // A panel over a tab with its shadow behind it, both hidden; a control inside a panel.
    void placePanel(Control& shadow, Control& dialog, const QRect& box, int tab);
    static void placeInside(Control& child, Control& dialog, int left, int top, int width, int height);
    // An "OK" and a "Cancel" button side by side at the bottom right of a panel `width` by `height`.
    static void placeOkCancel(Control& ok, Control& cancel, Control& dialog, int width, int height);
    // Layout of tabs 3 and 4 (frmClientSitesPlannerLayout.cpp).
    void buildPlannerTab();
    void buildTimeLinePanel();
    void buildBookingPanel();
    void buildCostsTab();

    // Frame and client choice (frmClientSites.cpp).
    void bindData();
    void registerHandlers();
    void registerMembers();
    void Form_Load();
    void Form_Activate();
    void cboCilent_Click();
    void cmdViewClient_Click();
    void cmdNewClient_Click();
    void Tabs1_Click();
    void clearSchedule();

    // Site register (frmClientSitesSites.cpp).
    void registerSiteHandlers();
    void RS_SiteDetails_MoveComplete();
    void siteMoveSteps();
    void cmdSiteDetailButton_Click(int index);
    void setBoxesEditable(bool editable);
    void toggleSiteList();
    void lstSiteList_Click();
    void lstSiteList_MouseDown(int button);
    void cmdCopySite_Click();
    void txtSiteDetails_LostFocus(Control& box);

    // Plan register (frmClientSitesPlans.cpp).
    void registerPlanHandlers();
    void RS_ProjectDrawings_MoveComplete();
    void cmdNewDrawing_Click();
    void cmdOk_Click();
    void cmdLoadDrawing_Click();
    void cmdImport_Click();
    void cmdImportCancel_Click();
    void cmdImportOK_Click();
    void cmdDeleteDrawing_Click();
    // A SitePlans row of the site on show; gOpenSiteID takes its SiteID back.
    void addPlanRow(const QString& description);
    void addStamps(bool portrait);
    void addStamp(const QString& text, int left, int top, int right, int bottom);
    void applyDrawingScale();
    void handOverPlan();
    QString planStem() const;
    QString currentPlanName() const;

    // Planner (frmClientSitesPlanner.cpp).
    void registerPlannerHandlers();
    void registerPlannerMembers();
    // ResetScheduleRows, then LoadScheduleBars of the site on show.
    void rebuildSchedule();
    void cmdNewTimeLineElement_Click();
    void cmdAddTimeLine_Click();
    void cmdCancelTimeLine_Click();
    void ctSchedule1_BarDrawn(EventArgs& args);
    void ctSchedule1_BarChanged(EventArgs& args);
    void ctSchedule1_BarActivated(EventArgs& args);
    void ctSchedule1_BarPointed(EventArgs& args);
    void cmdColourPick_Click();
    void cmdSaveSchedule_Click();
    void cmdCancelSchedule_Click();
    void cmdDeleteTimeBar_Click();
    void cmdSchedBack_Click();
    void cmdSchedForward_Click();
    void cmdPrintSchedule_Click();
    void showBookingDialog(bool shown);
    // A bar of the chart from a row of Schedule: AddBar with the row's row,
    // times and dates; returns the row and the bar's number.
    std::pair<int, int> addBarOf(db::Recordset& rs);

    // Costs (frmClientSitesCosts.cpp).
    void registerCostHandlers();
    void enterCostsTab();
    void cmdAddProjectCost_Click();
    void cmdDeleteItem_Click();
    void cmdPrintCosts_Click();
    // From the first cost line to the last, Cost added up as currency; txtTotal
    // shows the sum. The cursor ends on EOF.
    void showCostTotal();

    Application& app_;
    ProjectsModule& module_;
    std::array<Control*, SiteBoxCount> txtSiteDetails_{};
    std::array<Control*, SiteButtonCount> cmdSiteDetailButton_{};
    std::array<Control*, 2> Option1_{};
    std::vector<std::unique_ptr<BoundText>> bound_;
    std::shared_ptr<schedule::ScheduleControl> schedule_;
    SiteState state_ = SiteState::NoClient;
};

} // namespace tessaly
