#include "MainMenus.h"

#include "core/forms/Form.h"

#include <utility>
#include <vector>

namespace tessaly {

namespace {

// One menu entry: its control name, caption, the name of the menu that holds
// it (empty for the menu bar), and its starting state.
struct MenuEntry {
    const char* name;
    const char* caption;
    const char* parent;
    bool checked = false;
    bool visible = true;
    bool enabled = true;
};

constexpr bool Checked = true;
constexpr bool Hidden = false;

// Separators are named after the menu that holds them, with a running number.
std::vector<MenuEntry> entries() {
    return {
        {"mnuFile", "&File", ""},
        {"mnuFile_NonProject", "Non Project", "mnuFile"},
        {"mnuFile_New", "&New Blank Drawing", "mnuFile_NonProject"},
        {"mnuFile_Open", "&Open Drawing", "mnuFile_NonProject"},
        {"mnuFile_SaveAs", "Sa&ve As", "mnuFile_NonProject"},
        {"mnuFiile_Projects", "Project Files", "mnuFile"},
        {"mnuFile_OpenProject", "Project &Database and Client Details", "mnuFiile_Projects"},
        {"mnuFile_Save", "&Save Plan To Project File", "mnuFiile_Projects"},
        {"mnuFile_SaveToProjectAs", "Save Plan To Project As...", "mnuFiile_Projects"},
        {"mnuFile_email", "Email EMF Files To &Client", "mnuFiile_Projects"},
        {"mnuFile_Sep1", "-", "mnuFile"},
        {"mnuFile_Export", "&Export", "mnuFile"},
        {"mnuFile_Export_EMF", "Export To An EMF Image", "mnuFile_Export"},
        {"mnuFile_Export_PDF", "Export To PDF Document", "mnuFile_Export"},
        {"mnuFile_Export_TIFF", "Export To A TIFF", "mnuFile_Export"},
        {"mnuFile_Export_BMP", "Export To A BMP File", "mnuFile_Export"},
        {"mnuFile_Export_PNG", "Export To A PNG File", "mnuFile_Export"},
        {"mnuFile_Export_HTML", "Export To HTML File", "mnuFile_Export", false, Hidden},
        {"mnuFile_Import", "&Import Picture From File", "mnuFile"},
        {"mnuFile_Convert", "&Convert Image And Import", "mnuFile", false, true, false},
        {"mnuFile_Sep2", "-", "mnuFile"},
        {"mnuFileAutoBackup", "Auto Backup", "mnuFile", Checked},
        {"mnuFile_Sep3", "-", "mnuFile"},
        {"mnuFile_PageSetup", "Pa&ge Setup", "mnuFile"},
        {"mnuFile_Print", "&Print", "mnuFile"},
        {"mnuFile_Sep4", "-", "mnuFile"},
        {"mnuFile_Exit", "E&xit", "mnuFile"},

        {"mnuEdit", "&Edit", ""},
        {"mnuEdit_Copy", "Copy", "mnuEdit"},
        {"mnuEdit_Cut", "Cut", "mnuEdit"},
        {"mnuEdit_Paste", "Paste", "mnuEdit"},
        {"mnuEdit_SelectAll", "Select All", "mnuEdit"},
        {"mnuEdit_Sep1", "-", "mnuEdit"},
        {"mnuEditColour", "Colour In The Plan...", "mnuEdit"},
        {"mnuEdit_Sep2", "-", "mnuEdit"},
        {"mnuEdit_Undo", "Undo", "mnuEdit"},
        {"mnuEdit_Redo", "Re-Do", "mnuEdit"},
        {"mnuEdit_Sep3", "-", "mnuEdit"},
        {"mnuEdit_AutoDimension", "Ask For Dimensions When Dimension Bars Are Created", "mnuEdit", Checked},
        {"mnuEdit_CreateGuide", "Create Guide Line For Each Click On Multi Wall", "mnuEdit"},

        {"mnuView", "&View", ""},
        {"mnuView_Page", "Page", "mnuView"},
        {"mnuView_Page_FitToPage", "Fit To Page", "mnuView_Page"},
        {"mnuView_Page_FitToScreenWidth", "Fit To Screen Width", "mnuView_Page"},
        {"mnuView_Page_FitToScreenHeight", "Fit To Screen Height", "mnuView_Page"},
        {"mnuView_Page_FitToSelection", "Fit To Selection", "mnuView_Page"},
        {"mnuView_Page_Sep1", "-", "mnuView_Page"},
        {"mnuView_Page_ZoomIn", "Zoom In", "mnuView_Page"},
        {"mnuView_Page_ZoomOut", "Zoom Out", "mnuView_Page"},
        {"mnuView_Page_ZoomTo", "Zoom To", "mnuView_Page"},
        {"mnuView_Page_ZoomTo10", "Zoom To 10%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo20", "Zoom To 20%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo30", "Zoom To 30%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo40", "Zoom To 40%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo50", "Zoom To 50%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo60", "Zoom To 60%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo70", "Zoom To 70%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo80", "Zoom To 80%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo90", "Zoom To 90%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo100", "Zoom To 100%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo200", "Zoom To 200%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo300", "Zoom To 300%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo400", "Zoom to 400%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_ZoomTo500", "Zoom To 500%", "mnuView_Page_ZoomTo"},
        {"mnuView_Page_Sep2", "-", "mnuView_Page"},
        {"mnuView_Page_Settings", "Settings", "mnuView_Page"},
        {"mnuView_Page_GridSettings", "Grid Settings", "mnuView"},
        {"mnuView_Page_GuideLineSettings", "Guide Line Settings", "mnuView"},
        {"mnuView_Shapes", "Shapes List", "mnuView"},
        {"mnuView_Sep1", "-", "mnuView"},
        {"mnuView_MyTemplates", "My Templates...", "mnuView"},
        {"mnuView_Sep2", "-", "mnuView"},
        {"mnuView_GenSoftwareSettings", "Software Settings...", "mnuView"},

        {"mnuDraw", "&Draw", ""},
        {"mnuDraw_HorizontalWall", "Horizontal Wall Section", "mnuDraw"},
        {"mnuDraw_VerticalWall", "Vertical Wall Section", "mnuDraw"},
        {"mnuDraw_MultiPointWall", "Munti Point Wall", "mnuDraw"},
        {"mnuDraw_FreehandWallSection", "Freehand Wall Section", "mnuDraw"},
        {"mnuDraw_Square", "Square or Rectangle", "mnuDraw"},
        {"mnuDrawRoundedSquare", "Rounded Square or Rectangle", "mnuDraw"},
        {"mnuDraw_Curve", "Curve", "mnuDraw"},
        {"mnuDraw_Arc", "Arc", "mnuDraw"},
        {"mnuDraw_Circle", "Circle or Oval", "mnuDraw"},
        {"mnuDraw_FreehandScribble", "Freehand Scribble", "mnuDraw"},
        {"mnuDraw_Link", "Link", "mnuDraw"},
        {"mnuDraw_OtherShapes", "Other Useful Shapes", "mnuDraw"},
        {"mnuDraw_Diamond", "Dimond Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Triangle", "Triangle Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_RightTriangle", "Right Triangle Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Parallelogram", "Parallelogram Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Trapezoid", "Trapezoid Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Hexagon", "Hexagon Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Octagon", "Octagon Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Pentagon", "Pentagon Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Plus", "Plus Sign (Cross) Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_Star", "Star Shape", "mnuDraw_OtherShapes"},
        {"mnuDraw_LeftArrow", "Left Arrow Shape", "mnuDraw_OtherShapes"},

        {"mnuHelp", "&Help", ""},
        {"mnuHelp_Help", "Help Topics", "mnuHelp"},

        {"mnuPopup", "Popup", "", false, Hidden},
        {"mnuPopup_Center", "Center Page On Screen", "mnuPopup"},
        {"mnuPopou_Page_FitToSelection", "Zoom To Selection", "mnuPopup"},
        {"mnuPopou_Page_FitToPage", "Zoom To Full Screen", "mnuPopup"},
        {"mnuPopup_Refresh", "Refresh Screen", "mnuPopup"},
        {"mnuPopup_ShowGrid", "Show Grid", "mnuPopup"},
        {"mnuEdit_SnapToGrid", "Snap To Grid", "mnuPopup"},
        {"mnuPopup_ShowGuideLines", "Show Guide Lines", "mnuPopup", Checked},
        {"mnuPopup_SnapToGuideLines", "Snap To Guide Lines", "mnuPopup"},
        {"mnuPopup_Alignment", "Object Alignment ", "mnuPopup"},
        {"mnuPopup_AlignShapesLeft", "Align Objects Left", "mnuPopup_Alignment"},
        {"mnuPopup_AlignShapesRight", "Align Objects Right", "mnuPopup_Alignment"},
        {"mnuPopup_AlignShapesTop", "Align Objects Top", "mnuPopup_Alignment"},
        {"mnuPopup_AlignShapesBottom", "Align Objects Bottom", "mnuPopup_Alignment"},
        {"mnuPopup_Sep1", "-", "mnuPopup"},
        {"mnuPopup_SelectTool", "Select Shape Tool", "mnuPopup"},
        {"mnuPopup_Rotate", "Rotate Shape...", "mnuPopup"},
        {"mnuPopup_Rotate45", "45 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Rotate90", "90 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Rotate180", "180 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Rotate225", "225 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Rotate270", "270 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Rotate315", "315 Degrees", "mnuPopup_Rotate"},
        {"mnuPopup_Sep2", "-", "mnuPopup"},
        {"mnuPopup_SendToBack", "Send To Back", "mnuPopup"},
        {"mnuPopup_BringToFront", "Bring To Front", "mnuPopup"},
        {"mnuPopup_Sep3", "-", "mnuPopup"},
        {"mnuPopup_Copy", "Copy", "mnuPopup"},
        {"mnuPopup_Cut", "Cut", "mnuPopup"},
        {"mnuPopup_Paste", "Paste", "mnuPopup"},
        {"mnuPopup_Duplicate", "Duplicate", "mnuPopup", false, Hidden},
        {"mnuPopup_Delete", "Delete", "mnuPopup"},
        {"mnuPopup_Sep4", "-", "mnuPopup"},
        {"mnuPopup_Line", "Line...", "mnuPopup"},
        {"mnuPopup_Line_Options", "Options", "mnuPopup_Line"},
        {"mnuPopup_Line_Arrows", "Arrows", "mnuPopup_Line"},
        {"mnuPopup_Fill", "Fill...", "mnuPopup"},
        {"mnuPopup_Fill_Colour", "Colour...", "mnuPopup_Fill"},
        {"mnuPopup_Fill_Shade", "Shade...", "mnuPopup_Fill"},
        {"mnuPopup_Fill_Pattern", "Pattern...", "mnuPopup_Fill"},
        {"mnuPopup_Fill_Texture", "Texture...", "mnuPopup_Fill"},
        {"mnuPopup_Fill_TextureFile", "Texture From File", "mnuPopup_Fill"},
        {"mnuPopup_Shadow", "Shadow...", "mnuPopup"},
        {"mnuPopup_Shadow_Options", "Options...", "mnuPopup_Shadow"},
        {"mnuPopup_Shadow_Lens_Efects", "Lens Efects", "mnuPopup_Shadow"},
        {"mnuPopup_Text", "Text...", "mnuPopup"},
        {"mnuPopup_Text_Font", "Font...", "mnuPopup_Text"},
        {"mnuPopup_Text_Content", "Content...", "mnuPopup_Text"},
    };
}

} // namespace

void addMainMenus(Form& form) {
    for (const MenuEntry& e : entries()) {
        Control& m = form.add(ControlKind::Menu, QString::fromLatin1(e.name));
        m.setCaption(QString::fromLatin1(e.caption));
        m.setChecked(e.checked);
        m.setVisible(e.visible);
        m.setEnabled(e.enabled);
        if (*e.parent)
            m.setParentMenu(form.find(QString::fromLatin1(e.parent)));
    }
    // The usual desktop keys of the file commands, shown beside their captions.
    const std::pair<const char*, const char*> shortcuts[] = {{"mnuFile_New", "Ctrl+N"},
                                                             {"mnuFile_Open", "Ctrl+O"},
                                                             {"mnuFile_Save", "Ctrl+S"},
                                                             {"mnuFile_SaveAs", "Ctrl+Shift+S"},
                                                             {"mnuFile_Print", "Ctrl+P"}};
    for (const auto& [name, keys] : shortcuts)
        form.find(QString::fromLatin1(name))->setProp(QStringLiteral("Shortcut"), QString::fromLatin1(keys));
}

} // namespace tessaly
