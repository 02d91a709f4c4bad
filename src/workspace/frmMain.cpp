#include "frmMain.h"

#include "MainMenus.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"

#include <functional>

namespace tessaly {

namespace {
constexpr int StatusPanels = 5;          // panels of the status bar SB1
constexpr int BackupInterval = 1000;     // milliseconds between ticks of the backup timer
constexpr int16_t ZoomFor800 = 45;       // page zoom on an 800 by 600 screen
constexpr int16_t ZoomFor1024 = 62;      // page zoom on a 1024 by 768 screen
constexpr int16_t ZoomOtherwise = 90;    // page zoom on every other screen
// Layout offsets of the resize, in twips.
constexpr int CanvasGap = 20, CanvasTop = 495, CanvasHeightLess = 820;
constexpr int PaneLeft = 15, PaneTop = 705, PaneWidth = 2475, PaneHeightLess = 1240;
constexpr int ListTop = 360, ListWidth = 2470;

const QString YesText = QStringLiteral("True");
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
    buildControls();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Activate"), [this](EventArgs&) { Form_Activate(); });
    onForm(QStringLiteral("Resize"), [this](EventArgs&) { Form_Resize(); });
    onForm(QStringLiteral("Unload"), [this](EventArgs&) { Form_Unload(); });
    on(QStringLiteral("mnuFile_Exit"), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
    on(QStringLiteral("mnuView_GenSoftwareSettings"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { app_.show(app_.form(QStringLiteral("frmSettings")), true); });
    on(QStringLiteral("mnuEdit_CreateGuide"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { mnuEdit_CreateGuide_Click(); });
    on(QStringLiteral("mnuHelp_Help"), QStringLiteral("Click"), [this](Control&, EventArgs&) { mnuHelp_Help_Click(); });
}

void frmMain::buildControls() {
    setCaption(QStringLiteral("Tessaly - Untitled Drawing"));
    addMainMenus(*this);
    SB1.setPanelCount(StatusPanels);
    Timer1.setProp(QStringLiteral("Interval"), BackupInterval);
    SSActiveTabs1.move(0, 0, SideBarWide, 0);
    SSActiveTabs1.setProp(QStringLiteral("Tabs"),
                          QStringList{QStringLiteral("Drawing Objects"), QStringLiteral("Template Objects"),
                                      QStringLiteral("Shape List")});
    SSActiveTabs1.setProp(QStringLiteral("Tab"), 0);
    cboTemplates.setToolTipText(QStringLiteral("Click To Change The Object Template"));
    // The screen size of a window not yet shown: the view sets the real one.
    const QSize screen = app_.ui.screenSize();
    setSize(screen.width() * 15, screen.height() * 15, screen.width() * 15, (screen.height() - 60) * 15);
}

void frmMain::registerMembers() {
    auto i16 = [this](const char* name, int16_t& v) {
        member(QString::fromLatin1(name), [&v] { return QVariant(static_cast<int>(v)); },
               [&v](const QVariant& x) { v = vb::toInt16(x); });
    };
    auto i32 = [this](const char* name, int32_t& v) {
        member(QString::fromLatin1(name), [&v] { return QVariant(v); }, [&v](const QVariant& x) { v = vb::toInt32(x); });
    };
    auto boolean = [this](const char* name, bool& v) {
        member(QString::fromLatin1(name), [&v] { return QVariant(v); }, [&v](const QVariant& x) { v = vb::toBool(x); });
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
        // 4. to 6. The shape type tables, the canvas objects, the canvas
        // defaults, the orientation and the highlight: they come with the
        // drawing canvas.
        PageIsLandscape = true;
        DrawingMode = 3;
        // 7. The guide-per-click option, from the per-user store.
        CreateGuidePerClick =
            app_.userSettings.read(UserSection, QStringLiteral("CreateGuide"), QStringLiteral("False")) == YesText;
        control(QStringLiteral("mnuEdit_CreateGuide")).setChecked(CreateGuidePerClick);
        // 8. The template libraries and the first library file come with the template pane.
        // 9.
        SB1.setPanelText(3, QStringLiteral("Standard Doors"));
        // 10. The template pane's zoom comes with the template pane.
        // 11.
        cboTemplates.setText(QStringLiteral("Please Select>>"));
        // 12. The canvas's modified flag is cleared by the drawing canvas.
        // 13.
        AskForDimensions = true;
        // 14.
        if (control(QStringLiteral("mnuFileAutoBackup")).checked()) {
            Timer1.setEnabled(true);
            app_.gBackupTicks = 0;
        }
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("An Error Occured In The Form Load Process In Main Screen: %1 - %2")
                           .arg(e.number())
                           .arg(e.description()),
                       mb::Critical, AppTitle);
    }
}

void frmMain::Form_Activate() {
    // Centring the page and clearing the modified flag come with the drawing canvas.
}

void frmMain::Form_Resize() {
    // Each move in turn; a failed move is passed over.
    auto attempt = [](const std::function<void()>& step) {
        try {
            step();
        } catch (const RuntimeError&) {
        }
    };
    const int left = SSActiveTabs1.geometry().width() + CanvasGap;
    attempt([&] { POLARDraw1.move(left, CanvasTop, scaleWidth() - left, scaleHeight() - CanvasHeightLess); });
    attempt([&] { POLARDraw2.move(PaneLeft, PaneTop, PaneWidth, scaleHeight() - PaneHeightLess); });
    attempt([&] { lstShapeList.move(PaneLeft, ListTop, ListWidth, scaleHeight() - PaneHeightLess); });
}

void frmMain::Form_Unload() {
    // A project plan is saved without a question, and a changed free drawing
    // asks first; both come with the drawing canvas and the project save.
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
    app_.ui.msgBox(QStringLiteral("Please consult the supplied PDF documentation"), mb::Information, AppTitle);
}

} // namespace tessaly
