// The controls of the project manager's tab 3 "Project Planner" (the
// schedule, its buttons, the time line panel and the booking dialog) and of
// tab 4 "Project Costs and Estimations", and where they sit, in twips.
#include "projects/frmClientSites.h"

#include "core/db/DataGridModel.h"
#include "core/forms/DataBinding.h"
#include "projects/frmClientSitesLayout.h"
#include "schedule/ScheduleControl.h"
#include "schedule/ScheduleTips.h"

namespace tessaly {

namespace {

using namespace layout;

// Tab 3: a row of buttons over the schedule.
constexpr int PlannerButtonGap = 60;
constexpr int ScheduleTop = TabContentTop + ButtonHeight + 90;

// The time line panel over the schedule.
const QRect TimeLinePanel(3000, 1800, 4800, 1860);

// The booking dialog over the schedule: a title band, then label and value columns.
constexpr int BookingWidth = 6240;
constexpr int BookingHeight = 4560;
// It stands at the right, below the buttons, so that the row titles and the first days stay in sight.
const QRect BookingPanel(TabsWidth - BookingWidth - 2 * Margin, ScheduleTop + 480, BookingWidth,
                         BookingHeight);
constexpr int TitleBandHeight = 330;
constexpr unsigned TitleBandColour = 0x800000; // dark blue, as a window's title
constexpr unsigned TitleTextColour = 0xFFFFFF;
constexpr int BookingLabelWidth = 1260;
constexpr int BookingValueLeft = Margin + BookingLabelWidth + 60;
constexpr int BookingValueWidth = BookingWidth - BookingValueLeft - Margin;
constexpr int DateWidth = 2040;
constexpr int TimeWidth = 1500;
constexpr int ColourWidth = 1800;
constexpr int ColourPickWidth = 420;
constexpr int CommentsHeight = 1500;
constexpr unsigned NewBarColour = 0xFFFFFF; // the label's colour before any bar is shown
constexpr int SingleBorder = 1;             // a label's BorderStyle with a single border

// Tab 4: the grid over the inputs, the buttons at the right.
constexpr int CostGridHeight = 3300;
constexpr int CostInputsTop = TabContentTop + CostGridHeight + 180;
constexpr int CostLabelWidth = 3900;
constexpr int CostBoxLeft = Margin + CostLabelWidth + 60;
constexpr int CostComboWidth = 4200;
constexpr int CostBoxWidth = 1800;
constexpr int CostButtonLeft = CostBoxLeft + CostComboWidth + 360;
constexpr int CostButtonWidth = 1680;
constexpr int TotalTop = CostInputsTop + 3 * RowStep + 120;
// The grid's columns, widths in pixels where they are narrower than their content.
constexpr int SiteIdColumn = 0;

// A button of a tab with its caption, tool tip and width.
struct TabButton {
    Control* c;
    const char* caption;
    const char* tip;
    int width;
    // Gives the button its caption and tool tip.
    void name() const {
        c->setCaption(QString::fromLatin1(caption));
        c->setToolTipText(QString::fromLatin1(tip));
    }
};

} // namespace

void frmClientSites::buildPlannerTab() {
    // The schedule, as designed: its texts, and its tips.
    schedule_ = schedule::ScheduleControl::attach(ctSchedule1);
    schedule::ScheduleDesign& design = schedule_->design();
    design.listTitle = QStringLiteral("Project Element");
    design.dayNames = QStringLiteral("Sun;Mon;Tue;Wed;Thu;Fri;Sat");
    design.monthNames = QStringLiteral("Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sept,Oct,Nov,Dec");
    design.dateMask = QStringLiteral("D, M n/Y");
    design.amMark = QStringLiteral("a");
    design.pmMark = QStringLiteral("p");
    design.printHeading = QStringLiteral("Tessaly::Project Schedule");
    design.printFooter = QStringLiteral("Report");
    schedule::ScheduleTips::attach(ctTips1, schedule_);
    ctSchedule1.move(Margin, ScheduleTop, TabsWidth - 2 * Margin, TabContentBottom - ScheduleTop);
    placeOnTab(ctSchedule1, PlannerTab);
    placeOnTab(ctTips1, PlannerTab);

    const TabButton buttons[] = {
        {&cmdNewTimeLineElement, "New Time Line", "Add a new project time line", 1560},
        {&cmdDeleteTimeBar, "Delete Booking", "Delete Selected Time Line Item", 1560},
        {&cmdRefreshSchedule, "Refresh", "Refresh Schedule", 1080},
        {&cmdSchedBack, "<<", "Move the schedule to the previous month", 600},
        {&cmdSchedForward, ">>", "Move the schedule to the next month", 600},
        {&cmdPrintSchedule, "Print", "Print Schedule", 1080},
    };
    int left = Margin;
    for (const TabButton& b : buttons) {
        b.name();
        b.c->move(left, TabContentTop, b.width, ButtonHeight);
        placeOnTab(*b.c, PlannerTab);
        left += b.width + PlannerButtonGap;
    }
    buildTimeLinePanel();
    buildBookingPanel();
}

void frmClientSites::buildTimeLinePanel() {
    placePanel(picTimeLineShad, picTimeLine, TimeLinePanel, PlannerTab);
    const int inner = TimeLinePanel.width() - 2 * Margin;
    Control& label = add(ControlKind::Label, QStringLiteral("lblTimeLineDesc"));
    label.setCaption(QStringLiteral("Time Line Description"));
    placeInside(label, picTimeLine, Margin, 180, inner, 300);
    placeInside(txtTimeLineDesc, picTimeLine, Margin, 480, inner, BoxHeight);
    txtTimeLineDesc.setBackColor(EditColour);
    placeOkCancel(cmdAddTimeLine, cmdCancelTimeLine, picTimeLine, TimeLinePanel.width(),
                  TimeLinePanel.height());
}

void frmClientSites::buildBookingPanel() {
    placePanel(ScheduleItemSch, ScheduleItem, BookingPanel, PlannerTab);
    Control& title = add(ControlKind::Label, QStringLiteral("lblScheduleItem"));
    title.setCaption(QStringLiteral("Project Planner - Schedule Item"));
    title.setProp(QStringLiteral("FontBold"), true);
    title.setBackColor(TitleBandColour);
    title.setProp(QStringLiteral("ForeColor"), TitleTextColour);
    placeInside(title, ScheduleItem, 0, 0, BookingWidth, TitleBandHeight);

    const auto label = [this](const char* name, const char* caption, int top) {
        Control& l = add(ControlKind::Label, QString::fromLatin1(name));
        l.setCaption(QString::fromLatin1(caption));
        placeInside(l, ScheduleItem, Margin, top + 45, BookingLabelWidth, BoxHeight);
    };
    int top = TitleBandHeight + 180;
    label("lblStart", "Start:", top);
    placeInside(DTP1, ScheduleItem, BookingValueLeft, top, DateWidth, BoxHeight);
    placeInside(STime, ScheduleItem, BookingValueLeft + DateWidth + 120, top, TimeWidth, BoxHeight);
    top += RowStep;
    placeInside(DTP2, ScheduleItem, BookingValueLeft, top, DateWidth, BoxHeight);
    placeInside(ETime, ScheduleItem, BookingValueLeft + DateWidth + 120, top, TimeWidth, BoxHeight);
    top += RowStep + 120;
    label("lblBarText", "Bar Text:", top);
    placeInside(txtBarText, ScheduleItem, BookingValueLeft, top, BookingValueWidth, BoxHeight);
    top += RowStep;
    label("lblColour", "Bar Colour:", top);
    lblBarColour.setBackColor(NewBarColour);
    lblBarColour.setProp(QStringLiteral("BorderStyle"), SingleBorder);
    placeInside(lblBarColour, ScheduleItem, BookingValueLeft, top, ColourWidth, BoxHeight);
    cmdColourPick.setCaption(QStringLiteral("..."));
    placeInside(cmdColourPick, ScheduleItem, BookingValueLeft + ColourWidth + 60, top, ColourPickWidth,
                BoxHeight);
    top += RowStep;
    label("lblComments", "Comments:", top);
    txtBarComments.setProp(QStringLiteral("MultiLine"), true);
    placeInside(txtBarComments, ScheduleItem, BookingValueLeft, top, BookingValueWidth, CommentsHeight);
    placeOkCancel(cmdSaveSchedule, cmdCancelSchedule, ScheduleItem, BookingWidth, BookingHeight);
}

void frmClientSites::buildCostsTab() {
    using Format = db::GridColumn::Format;
    makeDataGrid(
        TDBGrid2, RS_ProjectCosts.name(),
        {{QStringLiteral("SiteID"), QStringLiteral("SiteID"), Format::General, false},
         {QStringLiteral("Project Item"), QStringLiteral("ProjectItem"), Format::General, true},
         {QStringLiteral("Project Time Line"), QStringLiteral("ProjectTimeLine"), Format::General, true},
         {QStringLiteral("Cost"), QStringLiteral("Cost"), Format::Currency, true},
         {QStringLiteral("Actual Cost"), QStringLiteral("ActualCost"), Format::Currency, true}});
    TDBGrid2.move(Margin, TabContentTop, TabsWidth - 2 * Margin, CostGridHeight);
    // The site's key is bound but of no use to read: its column is as narrow as its content.
    QVariantList none{SiteIdColumn};
    TDBGrid2.call(QStringLiteral("AutoSize"), none);
    placeOnTab(TDBGrid2, CostsTab);

    struct Input {
        Control* c;
        const char* labelName;
        const char* label;
        int top;
        int width;
    };
    const Input inputs[] = {
        {&cboProjectItem, "lblProjectItem", "Project Item:", CostInputsTop, CostComboWidth},
        {&cboTimeLine, "lblTimeLine", "Associated With Project Time Line:", CostInputsTop + RowStep,
         CostComboWidth},
        {&txtCost, "lblCost", "Estimated Cost:", CostInputsTop + 2 * RowStep, CostBoxWidth},
        {&txtTotal, "lblTotal", "Estimate Total:", TotalTop, CostBoxWidth},
    };
    for (const Input& in : inputs) {
        Control& l = add(ControlKind::Label, QString::fromLatin1(in.labelName));
        l.setCaption(QString::fromLatin1(in.label));
        l.move(Margin, in.top + 45, CostLabelWidth, BoxHeight);
        placeOnTab(l, CostsTab);
        in.c->move(CostBoxLeft, in.top, in.width, BoxHeight);
        placeOnTab(*in.c, CostsTab);
    }
    // Both combos take free text besides their lists.
    cboProjectItem.setProp(QStringLiteral("Style"), 0);
    cboTimeLine.setProp(QStringLiteral("Style"), 0);
    // The total is shown, not typed.
    txtTotal.setLocked(true);
    txtTotal.setProp(QStringLiteral("FontBold"), true);

    const TabButton buttons[] = {
        {&cmdAddProjectCost, "Add Cost", "Add project cost element to the list", CostButtonWidth},
        {&cmdDeleteItem, "Delete Cost", "Delete Item From The List", CostButtonWidth},
        {&cmdPrintCosts, "Print Costs", "Print Project Costs and Estimations report", CostButtonWidth},
    };
    int top = CostInputsTop;
    for (const TabButton& b : buttons) {
        b.name();
        b.c->move(CostButtonLeft, top, b.width, ButtonHeight);
        placeOnTab(*b.c, CostsTab);
        top += RowStep;
    }
}

} // namespace tessaly
