// The controls of the project manager and where they sit, in twips.
#include "projects/frmClientSites.h"

#include "core/forms/DataBinding.h"
#include "projects/frmClientSitesLayout.h"

namespace tessaly {

namespace {

using namespace layout;

// Tab 1: two columns of boxes, their buttons below.
constexpr int LabelWidth = 1260;
constexpr int LeftBoxLeft = 1500;
constexpr int RightLabelLeft = 5700;
constexpr int RightBoxLeft = 7080;
constexpr int BoxWidth = 3900;
constexpr int CopyButtonWidth = 420;
constexpr int CommentsRow = 6;
constexpr int CommentsHeight = 1260;
constexpr int SiteButtonTop = 4620;
constexpr int SiteButtonWidth = 780;
constexpr int SiteButtonStep = 840;
constexpr int SiteButtonHeight = 420;
constexpr int ListButtonLeft = 10080;

// Tab 2: the grid, its buttons at the right.
constexpr int GridWidth = 9000;
constexpr int GridHeight = 5160;
constexpr int PlanButtonLeft = 9300;
constexpr int PlanButtonWidth = 1680;
constexpr int PlanButtonStep = 540;

// The two small dialogs over the grid, each with a shadow behind it.
constexpr int DialogLeft = 2400;
constexpr int DialogTop = 1320;
constexpr int DialogWidth = 4800;
constexpr int DialogHeight = 2460;

// Where each site box sits: column (0 left, 1 right) and row, with its label.
struct SiteBoxPlace {
    const char* label;
    int column;
    int row;
};
const SiteBoxPlace SiteBoxes[frmClientSites::SiteBoxCount] = {
    {"Address:", 0, 1},
    {"Area:", 0, 2},
    {"Town:", 0, 3},
    {"County:", 0, 4},
    {"Post Code:", 0, 5},
    {"Tel Number:", 1, 0},
    {"FAX Number:", 1, 1},
    {"eMail Address", 1, 2},
    {"Site Contact:", 1, 3},
    {"Date Added:", 1, 4},
    {"Comments", 0, CommentsRow},
    {"Site:", 0, 0},
};

const char* const SiteButtonTips[frmClientSites::SiteButtonCount] = {
    "Move to the first site for the selected client",
    "Move to the previous site for the selected client",
    "Add a new site to the selected client",
    "Edit Record",
    "Save changes",
    "Undo changes",
    "Delete selected Site with all asociated drawings time line's and costs",
    "Move to the next site for the selected client",
    "Move to the last site for the selected client",
    "Clic to view site list for the selected client",
};
// What each button shows in place of its picture.
const char* const SiteButtonCaptions[frmClientSites::SiteButtonCount] = {
    "|<", "<", "New", "Edit", "Save", "Undo", "Delete", ">", ">|", "Sites"};

} // namespace

void frmClientSites::placeOnTab(Control& control, int tab) {
    control.setProp(QStringLiteral("Container"), Tabs1.name());
    control.setProp(QStringLiteral("ContainerTab"), tab - 1);
}

void frmClientSites::buildFrame() {
    setCaption(QStringLiteral("Clients And Site Details"));
    setSize(InnerWidth + FrameExtra, InnerHeight + FrameExtra, InnerWidth, InnerHeight);
    Control& title = add(ControlKind::Label, QStringLiteral("lblTitle"));
    title.setCaption(QStringLiteral("Client And Site Details Page"));
    title.setProp(QStringLiteral("FontBold"), true);
    title.setProp(QStringLiteral("FontSize"), 12);
    title.move(Margin, Margin, InnerWidth - 2 * Margin, 360);
    Control& line = add(ControlKind::Label, QStringLiteral("lblTitleInfo"));
    line.setCaption(
        QStringLiteral("Add and Amend Client And Site Details and Add New Drawings To Projects, Manage "
                       "Project Times/Schedule and Costs"));
    line.move(Margin, 480, InnerWidth - 2 * Margin, 300);

    Control& clientLabel = add(ControlKind::Label, QStringLiteral("lblClient"));
    clientLabel.setCaption(QStringLiteral("Client:"));
    clientLabel.move(Margin, ClientRowTop + 45, 700, 300);
    cboCilent.setProp(QStringLiteral("Style"), 2); // a list to choose from, no typing
    cboCilent.move(840, ClientRowTop + 30, 5400, BoxHeight);
    cboCilent.setToolTipText(QStringLiteral(
        "Click the triangle button to select a client or click New Client button to create a new client"));
    cmdViewClient.setCaption(QStringLiteral("Client Details"));
    cmdViewClient.move(6420, ClientRowTop, 1500, ButtonHeight);
    cmdNewClient.setCaption(QStringLiteral("New Client"));
    cmdNewClient.setToolTipText(QStringLiteral("Add a new Client to the list."));
    cmdNewClient.move(8040, ClientRowTop, 1500, ButtonHeight);
    cmdClose.setCaption(QStringLiteral("Close"));
    cmdClose.setToolTipText(QStringLiteral("Close Client and Site Details Page"));
    cmdClose.move(InnerWidth - Margin - 1200, ClientRowTop, 1200, ButtonHeight);

    Tabs1.setProp(QStringLiteral("Tabs"),
                  QStringList{QStringLiteral("Site Details"), QStringLiteral("Project Drawings"),
                              QStringLiteral("Project Planner"),
                              QStringLiteral("Project Costs and Estimations")});
    Tabs1.setProp(QStringLiteral("Tab"), SiteTab - 1);
    Tabs1.move(Margin, TabsTop, TabsWidth, TabsHeight);

    for (Control* data : {&RS_SiteDetails, &RS_ProjectDrawings, &RS_ProjectCosts}) {
        makeDataControl(*data);
        data->setVisible(false);
    }
}

void frmClientSites::buildSiteTab() {
    for (int i = 0; i < SiteBoxCount; ++i) {
        const SiteBoxPlace& place = SiteBoxes[i];
        const int top = TabContentTop + place.row * RowStep;
        const int labelLeft = place.column == 0 ? Margin : RightLabelLeft;
        const int boxLeft = place.column == 0 ? LeftBoxLeft : RightBoxLeft;
        Control& label = add(ControlKind::Label, QStringLiteral("lblSiteDetails"), i);
        label.setCaption(QString::fromLatin1(place.label));
        label.move(labelLeft, top + 45, LabelWidth, BoxHeight);
        placeOnTab(label, SiteTab);
        Control& box = add(ControlKind::TextBox, QStringLiteral("txtSiteDetails"), i);
        txtSiteDetails_[static_cast<size_t>(i)] = &box;
        const int width = i == CommentsBox ? RightBoxLeft + BoxWidth - LeftBoxLeft
                                           : (i == SiteBox ? BoxWidth - CopyButtonWidth - 60 : BoxWidth);
        box.move(boxLeft, top, width, i == CommentsBox ? CommentsHeight : BoxHeight);
        box.setProp(QStringLiteral("Tag"), QStringLiteral("SD"));
        box.setProp(QStringLiteral("DataSource"), RS_SiteDetails.name());
        box.setLocked(true);
        box.setBackColor(LockedColour);
        placeOnTab(box, SiteTab);
    }
    txtSiteDetails(CommentsBox).setProp(QStringLiteral("MultiLine"), true);
    // The date comes from the database: it is never typed.
    txtSiteDetails(DateAddedBox).setEnabled(false);

    const QRect site = txtSiteDetails(SiteBox).geometry();
    cmdCopySite.setCaption(QStringLiteral(">"));
    cmdCopySite.setToolTipText(QStringLiteral("Copy the site name into the address"));
    cmdCopySite.move(site.right() + 1 + 60, site.top(), CopyButtonWidth, BoxHeight);
    placeOnTab(cmdCopySite, SiteTab);

    for (int i = 0; i < SiteButtonCount; ++i) {
        Control& button = add(ControlKind::CommandButton, QStringLiteral("cmdSiteDetailButton"), i);
        cmdSiteDetailButton_[static_cast<size_t>(i)] = &button;
        button.setCaption(QString::fromLatin1(SiteButtonCaptions[i]));
        button.setToolTipText(QString::fromLatin1(SiteButtonTips[i]));
        const int left = i == SiteList ? ListButtonLeft : Margin + i * SiteButtonStep;
        button.move(left, SiteButtonTop, SiteButtonWidth, SiteButtonHeight);
        button.setEnabled(false);
        placeOnTab(button, SiteTab);
    }
    lblSiteDetailsInfo.move(Margin, SiteButtonTop + SiteButtonHeight + 120, 4000, 300);
    placeOnTab(lblSiteDetailsInfo, SiteTab);
    lstSiteList.move(LeftBoxLeft, TabContentTop, BoxWidth + 1500, 3600);
    lstSiteList.setVisible(false);
    placeOnTab(lstSiteList, SiteTab);
}

void frmClientSites::buildDrawingsTab() {
    makeDataGrid(
        TDBGrid1, RS_ProjectDrawings.name(),
        {{QStringLiteral("Drawing"), QStringLiteral("PlanDescription"), db::GridColumn::Format::General},
         {QStringLiteral("Date Created"), QStringLiteral("DateCreated"), db::GridColumn::Format::Date},
         {QStringLiteral("SiteID"), QStringLiteral("SiteID"), db::GridColumn::Format::General}});
    TDBGrid1.setProp(QStringLiteral("Caption"), QStringLiteral("Project Drawings"));
    TDBGrid1.move(Margin, TabContentTop, GridWidth, GridHeight);
    placeOnTab(TDBGrid1, DrawingsTab);
    struct Button {
        Control* c;
        const char* caption;
        const char* tip;
    };
    const Button buttons[] = {
        {&cmdNewDrawing, "New Drawing", "Add a new drawing to the loaded site"},
        {&cmdLoadDrawing, "Load Drawing", "Load the selected drawing into the drwaing canvas"},
        {&cmdDeleteDrawing, "Delete Drawing", "Delete the currently selected drawing"},
        {&cmdImport, "Import Drawing", "Import a drawing to the current project"},
    };
    int top = TabContentTop;
    for (const Button& b : buttons) {
        b.c->setCaption(QString::fromLatin1(b.caption));
        b.c->setToolTipText(QString::fromLatin1(b.tip));
        b.c->move(PlanButtonLeft, top, PlanButtonWidth, SiteButtonHeight);
        placeOnTab(*b.c, DrawingsTab);
        top += PlanButtonStep;
    }
    lblInfo.setCaption(QStringLiteral("Please Wait, Loading..."));
    lblInfo.setProp(QStringLiteral("FontBold"), true);
    lblInfo.move(Margin, TabContentTop + GridHeight + 120, 4000, 300);
    lblInfo.setVisible(false);
    placeOnTab(lblInfo, DrawingsTab);
    RTF1.setVisible(false);
    RTF1.move(PlanButtonLeft, TabContentTop + 4 * PlanButtonStep, PlanButtonWidth, 300);
    placeOnTab(RTF1, DrawingsTab);
    buildPlanDialogs();
}

void frmClientSites::placePanel(Control& shadow, Control& dialog, const QRect& box, int tab) {
    shadow.move(box.left() + ShadowOffset, box.top() + ShadowOffset, box.width(), box.height());
    shadow.setBackColor(ShadowColour);
    dialog.move(box.left(), box.top(), box.width(), box.height());
    dialog.setBackColor(PanelColour);
    for (Control* c : {&shadow, &dialog}) {
        c->setVisible(false);
        placeOnTab(*c, tab);
    }
}

void frmClientSites::placeInside(Control& child, Control& dialog, int left, int top, int width, int height) {
    child.setProp(QStringLiteral("Container"), dialog.name());
    child.move(left, top, width, height);
}

void frmClientSites::placeOkCancel(Control& ok, Control& cancel, Control& dialog, int width, int height) {
    const int top = height - ButtonHeight - ButtonsBottomGap;
    ok.setCaption(QStringLiteral("OK"));
    placeInside(ok, dialog, width - 2 * (SmallButton + Margin), top, SmallButton, ButtonHeight);
    cancel.setCaption(QStringLiteral("Cancel"));
    placeInside(cancel, dialog, width - SmallButton - Margin, top, SmallButton, ButtonHeight);
}

void frmClientSites::buildPlanDialogs() {
    const QRect box(DialogLeft, DialogTop, DialogWidth, DialogHeight);
    const auto panel = [this, &box](Control& shadow, Control& dialog) {
        placePanel(shadow, dialog, box, DrawingsTab);
    };
    const auto inside = placeInside;
    constexpr int Inner = DialogWidth - 2 * Margin;

    panel(NewPlanDialogShd, NewPlanDialog);
    Control& planLabel = add(ControlKind::Label, QStringLiteral("lblPlanDesc"));
    planLabel.setCaption(QStringLiteral("Plan Description"));
    inside(planLabel, NewPlanDialog, Margin, 180, Inner, 300);
    inside(txtPlanDesc, NewPlanDialog, Margin, 480, Inner, BoxHeight);
    txtPlanDesc.setBackColor(EditColour);
    for (int i = 0; i < 2; ++i) {
        Control& option = add(ControlKind::OptionButton, QStringLiteral("Option1"), i);
        Option1_[static_cast<size_t>(i)] = &option;
        option.setCaption(i == 0 ? QStringLiteral("Set Drawing As Portrate")
                                 : QStringLiteral("Set Drawing As Landscape"));
        inside(option, NewPlanDialog, Margin, 930 + i * 360, Inner, 300);
    }
    Option1(1).setProp(QStringLiteral("Value"), 1); // landscape is chosen at design time
    placeOkCancel(cmdOk, cmdCancel, NewPlanDialog, DialogWidth, DialogHeight);

    panel(ImportPlanDialogShadow, ImportPlanDialog);
    inside(txtImportFile, ImportPlanDialog, Margin, 180, Inner, BoxHeight);
    Control& importLabel = add(ControlKind::Label, QStringLiteral("lblImportName"));
    importLabel.setCaption(QStringLiteral("Imported Drawing Plan Description"));
    inside(importLabel, ImportPlanDialog, Margin, 660, Inner, 300);
    inside(txtImportName, ImportPlanDialog, Margin, 960, Inner, BoxHeight);
    placeOkCancel(cmdImportOK, cmdImportCancel, ImportPlanDialog, DialogWidth, DialogHeight);
}

} // namespace tessaly
