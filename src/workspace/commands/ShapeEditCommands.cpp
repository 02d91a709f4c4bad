#include "canvas/api/CanvasCodes.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/commands/Registration.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

namespace {
constexpr int StatusToolPanel = 2; // the status bar panel that records the tool

constexpr int RotateAngles[] = {45, 90, 180, 225, 270, 315};

// The four alignments. Each takes the first selected shape's edge as R and
// walks the selection, the first shape included, in 16-bit arithmetic.
enum class Align { Left, Right, Top, Bottom };

void alignShapes(Application& app, Align how) {
    const AutoPtr range = selectedRange(app);
    const char* edge = how == Align::Left    ? "Left"
                       : how == Align::Right ? "Right"
                       : how == Align::Top   ? "Top"
                                             : "Bottom";
    const bool across = how == Align::Left || how == Align::Right;
    const int16_t r = vb::toInt16(get(toObject(get(range, "Item", {1})), edge));
    const int16_t count = vb::toInt16(get(range, "Count"));
    for (int16_t i = 1; i <= count; ++i) {
        const AutoPtr shape = toObject(get(range, "Item", {static_cast<int>(i)}));
        const int16_t size = vb::toInt16(get(shape, across ? "Width" : "Height"));
        put(shape, edge, r);
        switch (how) {
        case Align::Left:
            put(shape, "Right", vb::checkInt16(size + r));
            break;
        case Align::Top:
            put(shape, "Bottom", vb::checkInt16(size + r));
            break;
        // Right and bottom subtract the edge from the size: the shape ends
        // up with the negative of the edge that would keep its size.
        case Align::Right:
            put(shape, "Left", vb::checkInt16(size - r));
            break;
        case Align::Bottom:
            put(shape, "Top", vb::checkInt16(size - r));
            break;
        }
    }
}

// A command on the selected shapes that asks RequireSelection first.
void guarded(frmMain& form, Application& app, const QString& menu,
             std::function<void(const AutoPtr&)> action) {
    onClick(form, menu, [&app, action = std::move(action)] {
        if (RequireSelection(app))
            action(selectedRange(app));
    });
}
} // namespace

void registerShapeEditCommands(frmMain& form, Application& app) {
    onClick(form, QStringLiteral("mnuPopup_Copy"), [&form] { invoke(form.canvas1(), "Copy"); });
    onClick(form, QStringLiteral("mnuPopup_Cut"), [&form] { invoke(form.canvas1(), "Cut"); });
    onClick(form, QStringLiteral("mnuPopup_Paste"), [&form] { invoke(form.canvas1(), "Paste"); });
    onClick(form, QStringLiteral("mnuPopup_SelectTool"), [&form, &app] {
        // As the select button of the tool strip: the tool, then the status text.
        if (vb::toInt32(get(app.gView, "ToolMode")) != canvas::tool_mode::Unavailable)
            put(app.gView, "ToolMode", canvas::tool_mode::Select);
        form.SB1.setPanelText(StatusToolPanel, QStringLiteral("Select Tool"));
    });
    onClick(form, QStringLiteral("mnuEdit_SelectAll"), [&app] { invoke(app.gShapeList, "SelectAll"); });
    guarded(form, app, QStringLiteral("mnuPopup_Delete"),
            [&app](const AutoPtr&) { invoke(app.gSelection, "Delete"); });
    guarded(form, app, QStringLiteral("mnuPopup_SendToBack"),
            [](const AutoPtr& range) { invoke(range, "Reorder", {canvas::reorder_step::ToBack}); });
    guarded(form, app, QStringLiteral("mnuPopup_BringToFront"),
            [](const AutoPtr& range) { invoke(range, "Reorder", {canvas::reorder_step::ToFront}); });
    for (int angle : RotateAngles)
        guarded(form, app, QStringLiteral("mnuPopup_Rotate%1").arg(angle),
                [angle](const AutoPtr& range) { invoke(range, "Rotate", {angle}); });
    guarded(form, app, QStringLiteral("mnuPopup_AlignShapesLeft"),
            [&app](const AutoPtr&) { alignShapes(app, Align::Left); });
    guarded(form, app, QStringLiteral("mnuPopup_AlignShapesRight"),
            [&app](const AutoPtr&) { alignShapes(app, Align::Right); });
    guarded(form, app, QStringLiteral("mnuPopup_AlignShapesTop"),
            [&app](const AutoPtr&) { alignShapes(app, Align::Top); });
    guarded(form, app, QStringLiteral("mnuPopup_AlignShapesBottom"),
            [&app](const AutoPtr&) { alignShapes(app, Align::Bottom); });
    guarded(form, app, QStringLiteral("mnuPopup_Text_Content"), [](const AutoPtr& range) {
        // Whatever the editor raises is cleared, and the command goes on.
        try {
            invoke(object(range, "Text"), "Edit");
        } catch (const RuntimeError&) {
        }
    });
    // "Duplicate" stays hidden and does nothing.
    onClick(form, QStringLiteral("mnuPopup_Duplicate"), [] {});
}

} // namespace tessaly
