#include "PortDialogHost.h"

#include "canvas/api/POLARDraw.h"
#include "core/forms/ApplicationBase.h"
#include "core/port/UiPort.h"

namespace tessaly {

bool PortDialogHost::editLine(canvas::LineOptions&) {
    return ui_.canvasDialog(QStringLiteral("LineDialog"));
}

bool PortDialogHost::editArrows(canvas::ArrowOptions&) {
    return ui_.canvasDialog(QStringLiteral("ArrowsDialog"));
}

bool PortDialogHost::editShade(canvas::ShadeOptions&) {
    return ui_.canvasDialog(QStringLiteral("ShadeDialog"));
}

bool PortDialogHost::editPattern(canvas::PatternOptions&) {
    return ui_.canvasDialog(QStringLiteral("PatternDialog"));
}

bool PortDialogHost::editTexture(canvas::TextureOptions&) {
    return ui_.canvasDialog(QStringLiteral("TextureDialog"));
}

bool PortDialogHost::editShadow(canvas::ShadowOptions&) {
    return ui_.canvasDialog(QStringLiteral("ShadowDialog"));
}

bool PortDialogHost::editFont(canvas::FontOptions&) {
    return ui_.canvasDialog(QStringLiteral("FontDialog"));
}

void PortDialogHost::pageSetup(canvas::POLARDraw&) {
    ui_.canvasDialog(QStringLiteral("PageSetup"));
}

void PortDialogHost::print(canvas::POLARDraw& canvas, bool& showDialog) {
    // With no printer behind the port, the page goes to the port's record of
    // prints; the print dialog, when asked for, is recorded before it.
    if (showDialog)
        ui_.canvasDialog(QStringLiteral("PrintDialog"));
    const canvas::Drawing& drawing = canvas.drawing();
    const canvas::PageSettings& page = drawing.state().page;
    ui_.printed(QStringLiteral("drawing of %1 shapes on a page of %2 by %3 mm")
                    .arg(drawing.count())
                    .arg(page.width)
                    .arg(page.height));
}

void PortDialogHost::fileError(const QString& text, int) {
    ui_.msgBox(text, mb::Critical, AppTitle);
}

} // namespace tessaly
