// Tool selection: the tool strip, the draw menu, the wall width box and the
// wall colour button.
#include "frmMain.h"

#include "LateBound.h"
#include "core/runtime/ResumeNext.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

namespace {
// View.ToolMode values.
constexpr int32_t ToolSelect = 1;
constexpr int32_t ToolRotate = 2;
constexpr int32_t ToolEditPoints = 3;
constexpr int32_t ToolDraw = 4;
constexpr int32_t ToolUnavailable = -1; // no tool can be set now
constexpr int32_t Unchanged = -1;       // leaves the shape type or tool option as it is
// View.ToolOption values.
constexpr int32_t OptionCurve = 1;
constexpr int32_t OptionMultiPoint = 2;
constexpr int32_t OptionFreehand = 3;
// Shape type codes the tools draw.
constexpr int32_t TypeFreeform = 0;
constexpr int32_t TypeRectangle = 1;
constexpr int32_t TypeRoundRectangle = 2;
constexpr int32_t TypeEllipse = 3;
constexpr int32_t TypeArc = 19;
constexpr int32_t TypeLine = 20;
constexpr int32_t TypePlainText = 136;
constexpr int32_t TypeLink = 10000;
constexpr int32_t TypeDimensionBar = 10250;
// ShapeRange.Reorder steps.
constexpr int ReorderToBack = 0;
constexpr int ReorderBackOne = 1;
constexpr int ReorderForwardOne = 2;
constexpr int ReorderToFront = 3;
// DrawingMode values set by the tools.
constexpr int16_t ModeInternalWall = 0;
constexpr int16_t ModeFurniture = 1;
constexpr int16_t ModeDimensionBar = 2;
constexpr int16_t ModeExternalWall = 3;
constexpr int16_t ModeTextTool = 4;
} // namespace

void frmMain::SetDrawingTool(int32_t& tool, int32_t& shapeType, int32_t& toolOption) {
    const AutoPtr& view = app_.gView;
    if (late::get(view, "ToolMode").toInt() == ToolUnavailable)
        return;
    late::set(view, "ToolMode", tool);
    if (shapeType != Unchanged) {
        late::set(view, "ToolShapeType", shapeType);
        const bool linking = late::get(view, "ToolShapeType").toInt() == TypeLink;
        late::set(late::object(view, "Options"), "ShowConnectors", linking);
    }
    if (toolOption != Unchanged)
        late::set(view, "ToolOption", toolOption);
}

void frmMain::SyncDrawingMode() {
    const QString width = control(QStringLiteral("Combo1")).text();
    if (width == QLatin1String("External Wall Width"))
        DrawingMode = ModeExternalWall;
    else if (width == QLatin1String("Internal Wall Width"))
        DrawingMode = ModeInternalWall;
    else if (width == QLatin1String("Furniture Line Width"))
        DrawingMode = ModeFurniture;
}

bool frmMain::RequireSelection() {
    return commands::RequireSelection(app_);
}

unsigned frmMain::wallColour() const {
    return control(QStringLiteral("cmdLineCol")).backColor();
}

void frmMain::armShape(int shapeType, const QString& status) {
    // A synced draw tool: the wall box first, then the tool, then its text.
    SyncDrawingMode();
    int32_t tool = ToolDraw, type = shapeType, option = Unchanged;
    SetDrawingTool(tool, type, option);
    SB1.setPanelText(2, status);
}

void frmMain::drawMenuShape(int shapeType, const QString& status) {
    armShape(shapeType, status);
}

void frmMain::openWallInput(const QString& status) {
    late::call(app_.gSelection, "Clear");
    SB1.setPanelText(2, status);
    control(QStringLiteral("WallInputSh")).setVisible(true);
    control(QStringLiteral("WallInput")).setVisible(true);
    setFocus(&control(QStringLiteral("txtWallLen")));
}

void frmMain::setSideBarWidth(int width) {
    SSActiveTabs1.move(0, 0, width, SSActiveTabs1.geometry().height());
    layoutSideBar();
    // The main canvas moves as the resize's first step does; the template
    // canvas keeps the height the tab area's layout gave it.
    resumeNext([&] { moveMainCanvas(); });
    late::call(app_.gViewList, "CenterPage");
    late::call(app_.gViewList, "FitTo", {0});
}

void frmMain::cmdToolBarButton_Click(int index) {
    auto tool = [this](int32_t mode, int32_t type, int32_t option) { SetDrawingTool(mode, type, option); };
    auto onSelection = [this](const std::function<void(const AutoPtr&)>& action) {
        if (RequireSelection())
            action(late::object(app_.gSelection, "Range"));
    };
    switch (index) {
    case 0:
        late::call(canvas1(), "Copy");
        break;
    case 1:
        late::call(canvas1(), "Cut");
        break;
    case 2:
        late::call(canvas1(), "Paste");
        break;
    case 3:
        late::call(canvas1(), "Undo");
        break;
    case 4:
        late::call(canvas1(), "Redo");
        break;
    case 5:
        tool(ToolSelect, Unchanged, Unchanged);
        SB1.setPanelText(2, QStringLiteral("Select Tool"));
        break;
    case 6:
        tool(ToolRotate, Unchanged, Unchanged);
        break;
    case 7:
        tool(ToolEditPoints, Unchanged, Unchanged);
        break;
    case 8:
        onSelection([](const AutoPtr& r) { late::call(r, "Group"); });
        break;
    case 9:
        onSelection([](const AutoPtr& r) { late::call(r, "Ungroup", {false}); });
        break;
    case 10:
        onSelection([](const AutoPtr& r) { late::call(r, "ConvertToPolygon"); });
        break;
    case 11:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {ReorderToBack}); });
        break;
    case 12:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {ReorderToFront}); });
        break;
    case 13:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {ReorderBackOne}); });
        break;
    case 14:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {ReorderForwardOne}); });
        break;
    case 15:
        late::call(app_.gViewList, "CenterPage");
        break;
    case 16:
        tool(ToolDraw, TypeLink, Unchanged);
        break;
    case 17:
        SB1.setPanelText(1, QStringLiteral("STATUS: Default Plan Type 1 Selected"));
        break;
    case 18:
        SB1.setPanelText(1, QStringLiteral("STATUS: Default Plan Type 2 Selected"));
        break;
    case 20:
        openWallInput(QStringLiteral("Horizontal Wall"));
        break;
    case 21:
        armShape(TypeRectangle, QStringLiteral("Square / Rectangle"));
        break;
    case 22:
        armShape(TypeEllipse, QStringLiteral("Circle"));
        break;
    case 23:
        armShape(TypeArc, QStringLiteral("Curve"));
        break;
    case 24:
        SyncDrawingMode();
        tool(ToolDraw, TypeFreeform, OptionMultiPoint);
        SB1.setPanelText(2, QStringLiteral("Multi Point Wall"));
        break;
    case 25:
        SyncDrawingMode();
        tool(ToolDraw, TypeLine, OptionMultiPoint);
        SB1.setPanelText(2, QStringLiteral("Wall"));
        break;
    case 26:
        SyncDrawingMode();
        tool(ToolDraw, TypeFreeform, OptionFreehand);
        SB1.setPanelText(2, QStringLiteral("Scribble"));
        break;
    case 27:
    case 28:
        // The page orientation belongs to the page commands, which register it.
        {
            QVariantList landscape{index == 28};
            call(QStringLiteral("ChangePageOrientation"), landscape);
        }
        break;
    case 29:
        openWallInput(QStringLiteral("Vertical Wall"));
        break;
    case 30:
        raiseEvent(control(QStringLiteral("mnuView_MyTemplates")), QStringLiteral("Click"));
        break;
    case 31:
        setSideBarWidth(SideBarNarrow);
        break;
    case 32:
        setSideBarWidth(SideBarWide);
        break;
    case 33:
        if (RequireSelection())
            late::call(app_.gSelection, "Delete");
        break;
    case 36:
        tool(ToolDraw, TypeDimensionBar, Unchanged);
        SB1.setPanelText(2, QStringLiteral("Dimension Bar"));
        DrawingMode = ModeDimensionBar;
        break;
    case 37:
        tool(ToolDraw, TypePlainText, Unchanged);
        SB1.setPanelText(2, QStringLiteral("Text Box"));
        DrawingMode = ModeTextTool;
        break;
    case 38:
        onSelection([](const AutoPtr& r) { late::call(late::object(r, "Text"), "Edit"); });
        break;
    default:
        // 19 and any other index: nothing at all.
        break;
    }
}

void frmMain::cmdLineCol_Click() {
    // The dialog's value is taken however the dialog ended: a cancel leaves
    // the value it held from before.
    if (const std::optional<unsigned> chosen = app_.ui.colourDialog(LineColourDialogValue))
        LineColourDialogValue = *chosen;
    control(QStringLiteral("cmdLineCol")).setBackColor(LineColourDialogValue);
}

void frmMain::registerWorkspaceHandlers() {
    on(QStringLiteral("cmdToolBarButton"), QStringLiteral("Click"),
       [this](Control& c, EventArgs&) { cmdToolBarButton_Click(c.index()); });
    on(QStringLiteral("Combo1"), QStringLiteral("Change"),
       [this](Control&, EventArgs&) { SyncDrawingMode(); });
    on(QStringLiteral("cmdLineCol"), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdLineCol_Click(); });
    auto press = [this](const char* menu, int button) {
        on(QString::fromLatin1(menu), QStringLiteral("Click"), [this, button](Control&, EventArgs&) {
            raiseEvent(control(QStringLiteral("cmdToolBarButton"), button), QStringLiteral("Click"));
        });
    };
    press("mnuDraw_HorizontalWall", 20);
    press("mnuDraw_VerticalWall", 29);
    press("mnuDraw_MultiPointWall", 24);
    press("mnuDraw_FreehandWallSection", 25);
    press("mnuDraw_Square", 21);
    press("mnuDraw_Arc", 23);
    press("mnuDraw_Circle", 22);
    press("mnuDraw_FreehandScribble", 26);
    auto shape = [this](const char* menu, int type, const char* status) {
        on(QString::fromLatin1(menu), QStringLiteral("Click"),
           [this, type, status](Control&, EventArgs&) { drawMenuShape(type, QString::fromLatin1(status)); });
    };
    shape("mnuDrawRoundedSquare", TypeRoundRectangle, "Square / Rectangle");
    shape("mnuDraw_Diamond", 4, "Diamond");
    shape("mnuDraw_Triangle", 5, "Triangle");
    shape("mnuDraw_RightTriangle", 6, "Right Triangle");
    shape("mnuDraw_Parallelogram", 7, "Parallelogram");
    shape("mnuDraw_Trapezoid", 8, "Trapezoid");
    shape("mnuDraw_Hexagon", 9, "Hexagon");
    shape("mnuDraw_Octagon", 10, "Octagon");
    shape("mnuDraw_Pentagon", 56, "Pentagon");
    shape("mnuDraw_Plus", 11, "Plus Sign");
    shape("mnuDraw_Star", 12, "Star");
    shape("mnuDraw_LeftArrow", 66, "LeftArrow ");
    on(QStringLiteral("mnuDraw_Curve"), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        SyncDrawingMode();
        int32_t tool = ToolDraw, type = TypeFreeform, option = OptionCurve;
        SetDrawingTool(tool, type, option);
        SB1.setPanelText(2, QStringLiteral("Curve"));
    });
    on(QStringLiteral("mnuDraw_Link"), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        if (RequireSelection()) {
            int32_t tool = ToolDraw, type = TypeLink, option = Unchanged;
            SetDrawingTool(tool, type, option);
        }
    });
    registerCanvasHandlers();
}

} // namespace tessaly
