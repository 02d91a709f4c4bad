#include "frmMain.h"

#include "CanvasEventSink.h"
#include "LateBound.h"
#include "MainMenus.h"
#include "PortDialogHost.h"
#include "canvas/api/CanvasCodes.h"
#include "canvas/api/POLARDraw.h"
#include "core/common/CommonRoutines.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/commands/Commands.h"

#include <functional>

namespace tessaly {

namespace {
constexpr int StatusPanels = 5;       // panels of the status bar SB1
constexpr int BackupInterval = 1000;  // milliseconds between ticks of the backup timer
constexpr int16_t ZoomFor800 = 45;    // page zoom on an 800 by 600 screen
constexpr int16_t ZoomFor1024 = 62;   // page zoom on a 1024 by 768 screen
constexpr int16_t ZoomOtherwise = 90; // page zoom on every other screen
// Layout offsets of the resize, in twips.
constexpr int CanvasGap = 20, CanvasTop = 495, CanvasHeightLess = 820;
constexpr int PaneLeft = 15, PaneTop = 705, PaneWidth = 2475, PaneHeightLess = 1240;
constexpr int TabAreaHeightLess = 1810; // the template canvas in the tab area: the tabs' height less this
constexpr int ListTop = 360, ListWidth = 2470;

const QString YesText = QStringLiteral("True");

constexpr int GuideColour = 0xE0E0E0;  // colour of the guide lines
constexpr int FirstGuidesBottom = 210; // the first horizontal guides run from 0 to here
constexpr int FirstGuidesRight = 290;  // the first vertical guides run from 0 to here
constexpr int HighlightRed = 255;      // highlight colours of the main canvas: pure red

} // namespace

frmMain::frmMain(Application& app)
    : Form(app, QString::fromLatin1(FormName)), SB1(add(ControlKind::StatusBar, QStringLiteral("SB1"))),
      Timer1(add(ControlKind::Timer, QStringLiteral("Timer1"))),
      SSActiveTabs1(add(ControlKind::TabStrip, QStringLiteral("SSActiveTabs1"))),
      POLARDraw1(add(ControlKind::Canvas, QStringLiteral("POLARDraw1"))),
      POLARDraw2(add(ControlKind::Canvas, QStringLiteral("POLARDraw2"))),
      lstShapeList(add(ControlKind::ListBox, QStringLiteral("lstShapeList"))),
      cboTemplates(add(ControlKind::ComboBox, QStringLiteral("cboTemplates"))), app_(app) {
    endsProcessOnUnload = true;
    POLARDraw1.inner = canvas::POLARDraw::create();
    POLARDraw2.inner = canvas::POLARDraw::create();
    buildControls();
    registerMembers();
    registerWorkspaceHandlers();
    registerWorkspaceRoutines();
    attachCanvases();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Activate"), [this](EventArgs&) { Form_Activate(); });
    onForm(QStringLiteral("Resize"), [this](EventArgs&) { Form_Resize(); });
    onForm(QStringLiteral("Unload"), [this](EventArgs&) { Form_Unload(); });
    on(QStringLiteral("mnuView_GenSoftwareSettings"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { app_.show(app_.form(QStringLiteral("frmSettings")), true); });
    on(QStringLiteral("mnuEdit_CreateGuide"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuEdit_CreateGuide_Click(); });
    on(QStringLiteral("mnuHelp_Help"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuHelp_Help_Click(); });
    registerViewCommands(*this, app_);
    app_.planRoad.takePlan = [this] { TakePlan(); };
}

frmMain::~frmMain() {
    app_.planRoad.takePlan = nullptr;
}

void frmMain::RestartBackupTimer() {
    if (control(QStringLiteral("mnuFileAutoBackup")).checked()) {
        Timer1.setEnabled(true);
        app_.gBackupTicks = 0;
    }
}

void frmMain::TakePlan() {
    RestartBackupTimer();
    setCaption(QStringLiteral("Tessaly - ") + app_.gPlanFileName);
}

void frmMain::buildControls() {
    setCaption(QStringLiteral("Tessaly - Untitled Drawing"));
    addMainMenus(*this);
    SB1.setPanelCount(StatusPanels);
    Timer1.setProp(QStringLiteral("Interval"), BackupInterval);
    SSActiveTabs1.move(0, 0, SideBarWide, 0);
    buildWorkspaceControls();
    SSActiveTabs1.setProp(QStringLiteral("Tabs"),
                          QStringList{QStringLiteral("Drawing Objects"), QStringLiteral("Template Objects"),
                                      QStringLiteral("Shape List")});
    SSActiveTabs1.setProp(QStringLiteral("Tab"), 0);
    cboTemplates.setToolTipText(QStringLiteral("Click To Change The Object Template"));
    // The screen size of a window not yet shown: the view sets the real one.
    const QSize screen = app_.ui.screenSize();
    setSize(screen.width() * 15, screen.height() * 15, screen.width() * 15, (screen.height() - 60) * 15);
    Form_Resize();
}

void frmMain::registerMembers() {
    auto i16 = [this](const char* name, int16_t& v) {
        member(
            QString::fromLatin1(name), [&v] { return QVariant(static_cast<int>(v)); },
            [&v](const QVariant& x) { v = vb::toInt16(x); });
    };
    auto i32 = [this](const char* name, int32_t& v) {
        member(
            QString::fromLatin1(name), [&v] { return QVariant(v); },
            [&v](const QVariant& x) { v = vb::toInt32(x); });
    };
    auto boolean = [this](const char* name, bool& v) {
        member(
            QString::fromLatin1(name), [&v] { return QVariant(v); },
            [&v](const QVariant& x) { v = vb::toBool(x); });
    };
    i16("DrawingMode", DrawingMode);
    i16("ScaleValue", ScaleValue);
    boolean("AskForDimensions", AskForDimensions);
    boolean("CreateGuidePerClick", CreateGuidePerClick);
    boolean("PageIsLandscape", PageIsLandscape);
    i16("ExternalWallWidth", ExternalWallWidth);
    i16("InternalWallWidth", InternalWallWidth);
    i16("TextFontSize", TextFontSize);
    i32("ClickX", ClickX);
    i32("ClickY", ClickY);
    boolean("MouseIsDown", MouseIsDown);
    boolean("ShapeIsSelected", ShapeIsSelected);
    i32("SelLeft", SelLeft);
    i32("SelTop", SelTop);
    i32("SelRight", SelRight);
    i32("SelBottom", SelBottom);
    i32("SelWidth", SelWidth);
    i32("SelHeight", SelHeight);
    i32("SelectedShapeIndex", SelectedShapeIndex);
    boolean("RotateNextTextBox", RotateNextTextBox);
    boolean("TemplateInserted", TemplateInserted);
    auto step = [this](const char* name, void (frmMain::*fn)()) {
        routine(QString::fromLatin1(name), [this, fn](QVariantList&) {
            (this->*fn)();
            return QVariant();
        });
    };
    step("BuildShapeTypeTables", &frmMain::BuildShapeTypeTables);
    step("BindCanvasObjects", &frmMain::BindCanvasObjects);
    step("InitCanvas", &frmMain::InitCanvas);
    step("ReleaseCanvasObjects", &frmMain::ReleaseCanvasObjects);
}

void frmMain::registerWorkspaceRoutines() {
    on(QStringLiteral("WallInputButton"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { WallInputButton_Click(c.index()); });
    on(QStringLiteral("txtWallLen"), QStringLiteral("GotFocus"),
       [this](Control&, EventArgs&) { common::SelectAllText(*this); });
    on(QStringLiteral("cboScale"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cboScale_Click(); });
    on(QStringLiteral("mnuEdit_AutoDimension"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuEdit_AutoDimension_Click(); });
    on(QStringLiteral("cboTemplates"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cboTemplates_Click(); });
    on(QStringLiteral("TemplateZoom1"), QStringLiteral("Change"),
       [this](Control& c, EventArgs&) { late::set(canvas2(), "Zoom", c.value()); });
    on(QStringLiteral("mnuView_Shapes"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuView_Shapes_Click(); });
    on(QStringLiteral("cdmShapeData"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuView_Shapes_Click(); });

    routine(QStringLiteral("SetScale"), [this](QVariantList& a) {
        SetScale(vb::toText(a.value(0)));
        return QVariant();
    });
    routine(QStringLiteral("SetDrawingTool"), [this](QVariantList& a) {
        while (a.size() < 3)
            a << -1;
        int32_t tool = vb::toInt32(a[0]), type = vb::toInt32(a[1]), option = vb::toInt32(a[2]);
        SetDrawingTool(tool, type, option);
        a = {tool, type, option};
        return QVariant();
    });
    routine(QStringLiteral("SyncDrawingMode"), [this](QVariantList&) {
        SyncDrawingMode();
        return QVariant();
    });
    routine(QStringLiteral("RequireSelection"),
            [this](QVariantList&) { return QVariant(RequireSelection()); });
    routine(QStringLiteral("ShapeTypeName"),
            [this](QVariantList& a) { return QVariant(ShapeTypeName(vb::toInt32(a.value(0)))); });
    member(QStringLiteral("PopupMenuCount"), [this] { return QVariant(PopupMenuCount); });
}

void frmMain::Form_Load() {
    try {
        // 1. The screen size, as "1024 X 768".
        const QSize screen = app_.ui.screenSize();
        SB1.setPanelText(4, QStringLiteral("%1 X %2").arg(screen.width()).arg(screen.height()));
        // 2. The page zoom follows the screen, whatever the stored value says.
        const QString size = SB1.panelText(4);
        if (size == QLatin1String("800 X 600"))
            app_.gDefaultPageZoom = ZoomFor800;
        else if (size == QLatin1String("1024 X 768"))
            app_.gDefaultPageZoom = ZoomFor1024;
        else
            app_.gDefaultPageZoom = ZoomOtherwise;
        // 3. The 1:50 defaults.
        ScaleValue = 50;
        app_.gGridStep = 20;
        TextFontSize = 12;
        ExternalWallWidth = 3;
        InternalWallWidth = 2;
        // 4.
        BuildShapeTypeTables();
        BindCanvasObjects();
        InitCanvas();
        // 5.
        PageIsLandscape = true;
        DrawingMode = 3;
        // 6.
        late::set(canvas1(), "HighlightEnabled", true);
        late::set(canvas1(), "HighlightColour", HighlightRed);
        late::set(canvas1(), "HighlightAltColour", HighlightRed);
        // 7. The guide-per-click option, from the per-user store.
        CreateGuidePerClick = app_.userSettings.read(UserSection, QStringLiteral("CreateGuide"),
                                                     QStringLiteral("False")) == YesText;
        control(QStringLiteral("mnuEdit_CreateGuide")).setChecked(CreateGuidePerClick);
        // 8. The template libraries, and the doors at the drawing's scale.
        fillTemplateList();
        loadFirstTemplates();
        // 9.
        SB1.setPanelText(3, QStringLiteral("Standard Doors"));
        // 10. The template pane's zoom, on the canvas and on the slider.
        late::set(canvas2(), "Zoom", static_cast<int>(app_.gTemplateZoom));
        control(QStringLiteral("TemplateZoom1")).setValue(app_.gTemplateZoom);
        // 11.
        cboTemplates.setText(QStringLiteral("Please Select>>"));
        // 12.
        late::set(canvas1(), "Modified", false);
        // 13.
        AskForDimensions = true;
        // 14.
        RestartBackupTimer();
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("An Error Occured In The Form Load Process In Main Screen: %1 - %2")
                           .arg(e.number())
                           .arg(e.description()),
                       mb::Critical, AppTitle);
    }
}

void frmMain::Form_Activate() {
    // A change made just before the user switched away counts as unmodified.
    if (app_.gViewList)
        late::call(app_.gViewList, "CenterPage");
    late::set(canvas1(), "Modified", false);
}

void frmMain::BuildShapeTypeTables() {
    for (size_t i = 0; i < canvas::ShapeTypeTable.size(); ++i) {
        app_.gShapeTypeCodes[i] = canvas::ShapeTypeTable[i].code;
        app_.gShapeTypeNames[i] = QString::fromLatin1(canvas::ShapeTypeTable[i].name);
    }
}

void frmMain::BindCanvasObjects() {
    app_.gPage = late::object(canvas1(), "Page");
    app_.gViewList = late::object(canvas1(), "Views");
    app_.gView = late::object(app_.gViewList, "Item");
    app_.gShapeList = late::object(app_.gPage, "Shapes");
    app_.gSelection = late::object(app_.gPage, "Selection");
}

void frmMain::InitCanvas() {
    const AutoPtr& view = app_.gView;
    late::set(view, "ToolMode", canvas::tool_mode::Select);
    late::set(view, "DefaultToolMode", canvas::tool_mode::Select);
    for (const char* flag : {"ShowFlagA", "ShowFlagB", "ShowFlagC", "ShowFlagD"})
        late::set(view, flag, true);
    late::set(view, "ShowGrid", false);
    late::set(view, "ShowGuides", true);
    late::set(view, "SnapToGrid", false);
    late::set(view, "SnapToGuides", false);
    late::set(view, "Zoom", static_cast<int>(app_.gDefaultPageZoom));
    late::call(app_.gViewList, "CenterPage");
    const AutoPtr options = late::object(view, "Options");
    late::set(options, "MeasurementUnits", 1);
    late::set(options, "AllowErrorReporting", true);
    app_.gHGuides = late::object(app_.gPage, "HorizontalGuides");
    app_.gVGuides = late::object(app_.gPage, "VerticalGuides");
    late::set(app_.gPage, "GuideColour", GuideColour);
    // The first guide lines, every grid step within the landscape page.
    const int step = app_.gGridStep;
    for (int y = 0; step > 0 && y <= FirstGuidesBottom; y += step)
        late::call(app_.gHGuides, "Add", {y});
    for (int x = 0; step > 0 && x <= FirstGuidesRight; x += step)
        late::call(app_.gVGuides, "Add", {x});
    late::set(app_.gPage, "Landscape", true);
    BuildShapeTypeTables();
}

void frmMain::ReleaseCanvasObjects() {
    app_.gPage.reset();
    app_.gViewList.reset();
    app_.gView.reset();
    app_.gShapeList.reset();
    app_.gSelection.reset();
    app_.gHGuides.reset();
    app_.gVGuides.reset();
}

void frmMain::Form_Resize() {
    // Each move in turn; a failed move is passed over.
    // The side bar is laid out first, as an aligned control is before the
    // window's resize handler runs; its tab area's layout comes with it.
    layoutSideBar();
    resumeNext([&] { moveMainCanvas(); });
    resumeNext([&] { POLARDraw2.move(PaneLeft, PaneTop, PaneWidth, scaleHeight() - PaneHeightLess); });
    resumeNext([&] { lstShapeList.move(PaneLeft, ListTop, ListWidth, scaleHeight() - PaneHeightLess); });
    resumeNext([&] { centreTemplatePage(); });
}

void frmMain::moveMainCanvas() {
    const int left = SSActiveTabs1.geometry().width() + CanvasGap;
    POLARDraw1.move(left, CanvasTop, scaleWidth() - left, scaleHeight() - CanvasHeightLess);
}

void frmMain::SSActiveTabs1_Layout() {
    // A tab area too small for the canvas is passed over, as a failed move is.
    resumeNext([&] {
        POLARDraw2.move(PaneLeft, PaneTop, PaneWidth, SSActiveTabs1.geometry().height() - TabAreaHeightLess);
    });
    centreTemplatePage();
}

void frmMain::Form_Unload() {
    if (!app_.gPlanFileName.isEmpty()) {
        // A project plan is saved with all its outputs without a question.
        if (app_.planRoad.saveProjectOutputs)
            app_.planRoad.saveProjectOutputs(PlanSaveUse::Unload);
    } else if (late::get(canvas1(), "Modified").toBool()) {
        // A changed free drawing: Yes saves it under a name, No loses the changes.
        const int answer =
            app_.ui.msgBox(QStringLiteral("Your Drawings Has Changed, Do You Wish To Save Your Changes?"),
                           mb::YesNo | mb::Question, AppTitle);
        if (answer == mb::ResultYes)
            raiseEvent(control(QStringLiteral("mnuFile_SaveAs")), QStringLiteral("Click"));
    }
    ReleaseCanvasObjects();
    app_.CloseDatabase();
}

void frmMain::mnuEdit_CreateGuide_Click() {
    Control& entry = control(QStringLiteral("mnuEdit_CreateGuide"));
    if (entry.checked()) {
        entry.setChecked(false);
        CreateGuidePerClick = false;
        app_.userSettings.write(UserSection, QStringLiteral("CreateGuide"), QStringLiteral("False"));
    } else {
        entry.setChecked(true);
        CreateGuidePerClick = true;
        app_.userSettings.write(UserSection, QStringLiteral("CreateGuide"), QStringLiteral("True"));
    }
}

void frmMain::mnuHelp_Help_Click() {
    app_.ui.msgBox(QStringLiteral("Please consult the supplied PDF documentation"), mb::Information,
                   AppTitle);
}

} // namespace tessaly
