// Tool selection: the tool strip, the draw menu, the wall width box and the
// wall colour button.
#include "frmMain.h"

#include "LateBound.h"
#include "canvas/api/CanvasCodes.h"
#include "core/runtime/ResumeNext.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

namespace {
namespace tool_mode = canvas::tool_mode;
namespace tool_option = canvas::tool_option;
namespace shape_type = canvas::shape_type;
namespace reorder_step = canvas::reorder_step;

constexpr int32_t Unchanged = -1; // leaves the shape type or tool option as it is

// DrawingMode values set by the tools.
constexpr int16_t ModeInternalWall = 0;
constexpr int16_t ModeFurniture = 1;
constexpr int16_t ModeDimensionBar = 2;
constexpr int16_t ModeExternalWall = 3;
constexpr int16_t ModeTextTool = 4;
} // namespace

void frmMain::SetDrawingTool(int32_t& tool, int32_t& shapeType, int32_t& toolOption) {
    const AutoPtr& view = app_.gView;
    if (late::get(view, "ToolMode").toInt() == tool_mode::Unavailable)
        return;
    late::set(view, "ToolMode", tool);
    if (shapeType != Unchanged) {
        late::set(view, "ToolShapeType", shapeType);
        const bool linking = late::get(view, "ToolShapeType").toInt() == shape_type::Link;
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
    int32_t tool = tool_mode::Draw, type = shapeType, option = Unchanged;
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
    late::call(app_.gViewList, "FitTo", {canvas::fit_mode::Page});
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
        tool(tool_mode::Select, Unchanged, Unchanged);
        SB1.setPanelText(2, QStringLiteral("Select Tool"));
        break;
    case 6:
        tool(tool_mode::Rotate, Unchanged, Unchanged);
        break;
    case 7:
        tool(tool_mode::EditPoints, Unchanged, Unchanged);
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
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {reorder_step::ToBack}); });
        break;
    case 12:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {reorder_step::ToFront}); });
        break;
    case 13:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {reorder_step::BackOne}); });
        break;
    case 14:
        onSelection([](const AutoPtr& r) { late::call(r, "Reorder", {reorder_step::ForwardOne}); });
        break;
    case 15:
        late::call(app_.gViewList, "CenterPage");
        break;
    case 16:
        tool(tool_mode::Draw, shape_type::Link, Unchanged);
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
        armShape(shape_type::Rectangle, QStringLiteral("Square / Rectangle"));
        break;
    case 22:
        armShape(shape_type::Ellipse, QStringLiteral("Circle"));
        break;
    case 23:
        armShape(shape_type::Arc, QStringLiteral("Curve"));
        break;
    case 24:
        SyncDrawingMode();
        tool(tool_mode::Draw, shape_type::Freeform, tool_option::MultiPoint);
        SB1.setPanelText(2, QStringLiteral("Multi Point Wall"));
        break;
    case 25:
        SyncDrawingMode();
        tool(tool_mode::Draw, shape_type::Line, tool_option::MultiPoint);
        SB1.setPanelText(2, QStringLiteral("Wall"));
        break;
    case 26:
        SyncDrawingMode();
        tool(tool_mode::Draw, shape_type::Freeform, tool_option::Freehand);
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
        tool(tool_mode::Draw, shape_type::DimensionBar, Unchanged);
        SB1.setPanelText(2, QStringLiteral("Dimension Bar"));
        DrawingMode = ModeDimensionBar;
        break;
    case 37:
        tool(tool_mode::Draw, shape_type::PlainText, Unchanged);
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
    shape("mnuDrawRoundedSquare", shape_type::RoundRectangle, "Square / Rectangle");
    shape("mnuDraw_Diamond", shape_type::Diamond, "Diamond");
    shape("mnuDraw_Triangle", shape_type::IsoscelesTriangle, "Triangle");
    shape("mnuDraw_RightTriangle", shape_type::RightTriangle, "Right Triangle");
    shape("mnuDraw_Parallelogram", shape_type::Parallelogram, "Parallelogram");
    shape("mnuDraw_Trapezoid", shape_type::Trapezoid, "Trapezoid");
    shape("mnuDraw_Hexagon", shape_type::Hexagon, "Hexagon");
    shape("mnuDraw_Octagon", shape_type::Octagon, "Octagon");
    shape("mnuDraw_Pentagon", shape_type::Pentagon, "Pentagon");
    shape("mnuDraw_Plus", shape_type::PlusSign, "Plus Sign");
    shape("mnuDraw_Star", shape_type::Star, "Star");
    shape("mnuDraw_LeftArrow", shape_type::LeftArrow, "LeftArrow ");
    on(QStringLiteral("mnuDraw_Curve"), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        SyncDrawingMode();
        int32_t tool = tool_mode::Draw, type = shape_type::Freeform, option = tool_option::Curve;
        SetDrawingTool(tool, type, option);
        SB1.setPanelText(2, QStringLiteral("Curve"));
    });
    on(QStringLiteral("mnuDraw_Link"), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        if (RequireSelection()) {
            int32_t tool = tool_mode::Draw, type = shape_type::Link, option = Unchanged;
            SetDrawingTool(tool, type, option);
        }
    });
    registerCanvasHandlers();
}

} // namespace tessaly
