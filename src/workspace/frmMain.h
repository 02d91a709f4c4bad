#pragma once

#include "core/forms/Form.h"

#include <cstdint>

namespace tessaly {

class Application;

// The main window: the drawing workspace. It lives from the splash's timer
// until the process ends; when it unloads, the process ends with it.
class frmMain final : public Form {
public:
    static constexpr const char* FormName = "frmMain";
    explicit frmMain(Application& app);

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

private:
    void buildControls();
    void registerMembers();
    void Form_Load();
    void Form_Activate();
    void Form_Unload();
    void mnuEdit_CreateGuide_Click();
    void mnuHelp_Help_Click();

    Application& app_;
};

} // namespace tessaly
