#pragma once

#include "core/forms/Form.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tessaly {

class Application;
class CanvasEventSink;
class PortDialogHost;

// The main window: the drawing workspace. It lives from the splash's timer
// until the process ends; when it unloads, the process ends with it.
class frmMain final : public Form {
public:
    static constexpr const char* FormName = "frmMain";
    explicit frmMain(Application& app);
    ~frmMain() override;

    // State of the main window, named as Tessaly names it.
    int16_t DrawingMode = 3;
    int16_t ScaleValue = 50;
    bool AskForDimensions = true;
    bool CreateGuidePerClick = false;
    bool PageIsLandscape = true;
    int16_t ExternalWallWidth = 3;
    int16_t InternalWallWidth = 2;
    int16_t TextFontSize = 12;
    int32_t ClickX = 0, ClickY = 0;
    bool MouseIsDown = false;
    bool ShapeIsSelected = false;
    int32_t SelLeft = 0, SelTop = 0, SelRight = 0, SelBottom = 0;
    int32_t SelWidth = 0, SelHeight = 0;
    int32_t SelectedShapeIndex = 0;
    bool RotateNextTextBox = false;
    bool TemplateInserted = false;

    Control& SB1;
    Control& Timer1;
    Control& SSActiveTabs1;
    Control& POLARDraw1;
    Control& POLARDraw2;
    Control& lstShapeList;
    Control& cboTemplates;

    // The side bar's two widths, in twips.
    static constexpr int SideBarNarrow = 460;
    static constexpr int SideBarWide = 3180;

    // Lays the canvases and the shape list out for the window's inner size.
    void Form_Resize();

    // The canvas objects of POLARDraw1 and its defaults.
    void BuildShapeTypeTables();
    void BindCanvasObjects();
    void InitCanvas();
    void ReleaseCanvasObjects();
    // The engine objects behind the two canvases of the window.
    AutoPtr canvas1() const { return POLARDraw1.inner; }
    AutoPtr canvas2() const { return POLARDraw2.inner; }

    // Applies a drawing scale given as its denominator ("50"): the scale box,
    // the table's values and the guide lines. The one public method.
    void SetScale(const QString& scale);
    // Arms the canvas: tool, shape type and tool option (-1 leaves one as it is).
    void SetDrawingTool(int32_t& tool, int32_t& shapeType, int32_t& toolOption);
    // DrawingMode from the wall width box.
    void SyncDrawingMode();
    // True when something is selected; otherwise "Nothing selected!" and false.
    bool RequireSelection();
    // The name of a shape's type code, by the two tables; "" for index 0 and unknown codes.
    QString ShapeTypeName(int32_t id);
    // The wall colour: the background of the colour button.
    unsigned wallColour() const;
    // With backups on, the backup timer runs and counts from 0 again.
    void RestartBackupTimer();
    // Takes over a plan that the project manager has put on the canvas: the
    // backup timer starts again when backups are on, and the caption names the plan.
    void TakePlan();
    // The tool text of status panel 2.
    QString toolText() const { return SB1.panelText(2); }

    // How many times the context menu was asked for (the headless record of it).
    int PopupMenuCount = 0;
    // The colour that the colour dialog of cmdLineCol holds between two uses.
    unsigned LineColourDialogValue = 0;

    // Canvas event handlers of the main canvas, named after their events.
    void POLARDraw1_MouseDown(int& button, int& shift, float& x, float& y);
    void POLARDraw1_MouseMove(int& button, int& shift, float& x, float& y);
    void POLARDraw1_MouseUp(int& button, int& shift, float& x, float& y);
    void POLARDraw1_KeyDown(int& keyCode, int& shift);
    void POLARDraw1_ShapeAdded(int a, int id);
    void POLARDraw1_ShapeFinished(int a, int id);
    void POLARDraw1_SelectionChanged(int id);
    void POLARDraw1_SelectionCleared();
    void POLARDraw1_ShapeChanged();
    void POLARDraw1_FileError(const QString& text, bool& handled);
    // The template canvas: a click on a symbol copies it to the main canvas.
    void POLARDraw2_SelectionChanged(int id);
    // The tip over a symbol of the template pane: its name and real size.
    void POLARDraw2_MouseMove(float x, float y);

private:
    void buildControls();
    void registerMembers();
    void Form_Load();
    void Form_Activate();
    void Form_Unload();
    void mnuEdit_CreateGuide_Click();
    void mnuHelp_Help_Click();

    // Controls of the workspace (frmMainControls.cpp).
    void buildWorkspaceControls();
    void buildToolStrip();
    void buildSideBar();
    void buildWallInput();
    void layoutSideBar();
    void centreTemplatePage();
    // The tab area's own layout: the template canvas fills it.
    void SSActiveTabs1_Layout();
    // Step 1 of the resize: the main canvas beside the side bar.
    void moveMainCanvas();
    void registerWorkspaceHandlers();
    void registerWorkspaceRoutines();
    void attachCanvases();
    void registerCanvasHandlers();

    // Tools (frmMainTools.cpp).
    void cmdToolBarButton_Click(int index);
    void armShape(int shapeType, const QString& status);
    void drawMenuShape(int shapeType, const QString& status);
    void setSideBarWidth(int width);
    void openWallInput(const QString& status);
    void cmdLineCol_Click();

    // Canvas helpers (frmMainCanvas.cpp).
    void pointerToPage(float x, float y, int32_t& px, int32_t& py);

    // Walls, scale and dimension bars (frmMainWalls.cpp, frmMainScale.cpp).
    void WallInputButton_Click(int index);
    void createSectionWall();
    void applyScaleRow(int value, bool fromScaleBox);
    void cboScale_Click();
    void layGuides(bool landscape);
    void dimensionLabelStep();
    void mnuEdit_AutoDimension_Click();

    // Template pane and shape list (frmMainTemplates.cpp).
    void fillTemplateList();
    void loadFirstTemplates();
    void cboTemplates_Click();
    void mnuView_Shapes_Click();

    Application& app_;
    std::unique_ptr<CanvasEventSink> canvas1Events_;
    std::unique_ptr<CanvasEventSink> canvas2Events_;
};

} // namespace tessaly
