#include "canvas/api/CanvasCodes.h"
#include "core/common/CommonRoutines.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/commands/Registration.h"
#include "workspace/forms/frmShadowLens.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

namespace {
const QString TextureFilter =
    QStringLiteral("Bitmap files (*.bmp)|*.bmp|JPEG files (*.jpg)|*.jpg|GIF files "
                   "(*.gif)|*.gif|Metafiles (*.wmf;*.emf)|*.wmf;*.emf|All Files (*.*)|*.*");
const QString FontRefusal = QStringLiteral("You can change font only to text shapes, not text boxes!");
const QString FontRefusalTitle = QStringLiteral("Invalid selection");

void canvasCall(frmMain& form, const char* menu, const char* method) {
    onClick(form, QString::fromLatin1(menu), [&form, method] { invoke(form.canvas1(), method); });
}

void guardedCanvasCall(frmMain& form, Application& app, const char* menu, const char* method) {
    onClick(form, QString::fromLatin1(menu), [&form, &app, method] {
        if (RequireSelection(app))
            invoke(form.canvas1(), method);
    });
}

void fillColour(Application& app) {
    const AutoPtr range = selectedRange(app);
    const AutoPtr fill = object(range, "Fill");
    put(fill, "Type", canvas::fill_type::Solid);
    // A cancelled colour dialog writes the old colour back, and the shape is
    // filled all the same.
    uint32_t colour = get(fill, "Colour").toUInt();
    put(fill, "Colour", static_cast<qint64>(common::ShowColourDialog(app, colour)));
    put(range, "Filled", true);
}

void textureFromFile(frmMain& form, Application& app) {
    const QString path = common::ShowOpenDialog(app, TextureFilter);
    if (path.isEmpty())
        return;
    put(form.canvas1(), "AutoRedraw", false);
    invoke(object(selectedRange(app), "Fill"), "LoadTexture", {path});
    put(form.canvas1(), "AutoRedraw", true);
    invoke(form.canvas1(), "Redraw");
}

void textFont(frmMain& form, Application& app) {
    const QString text = get(object(selectedRange(app), "Text"), "Value").toString();
    if (text.isEmpty()) {
        app.ui.msgBox(FontRefusal, mb::Information, FontRefusalTitle);
        return;
    }
    invoke(form.canvas1(), "ShowFontDialog");
}
} // namespace

void registerFormatCommands(frmMain& form, Application& app) {
    onClick(form, QStringLiteral("mnuPopup_Line_Options"), [&form] {
        // The line dialog's complaint about the selection is cleared and ignored.
        try {
            invoke(form.canvas1(), "ShowLineDialog");
        } catch (const RuntimeError&) {
        }
    });
    canvasCall(form, "mnuPopup_Line_Arrows", "ShowArrowsDialog");
    onClick(form, QStringLiteral("mnuPopup_Fill_Colour"), [&app] {
        if (RequireSelection(app))
            fillColour(app);
    });
    guardedCanvasCall(form, app, "mnuPopup_Fill_Shade", "ShowShadeDialog");
    guardedCanvasCall(form, app, "mnuPopup_Fill_Pattern", "ShowPatternDialog");
    guardedCanvasCall(form, app, "mnuPopup_Fill_Texture", "ShowTextureDialog");
    onClick(form, QStringLiteral("mnuPopup_Fill_TextureFile"), [&form, &app] { textureFromFile(form, app); });
    canvasCall(form, "mnuPopup_Shadow_Options", "ShowShadowDialog");
    onClick(form, QStringLiteral("mnuPopup_Shadow_Lens_Efects"), [&app] {
        if (RequireSelection(app))
            app.show(app.form<frmShadowLens>(), true);
    });
    onClick(form, QStringLiteral("mnuPopup_Text_Font"), [&form, &app] {
        if (RequireSelection(app))
            textFont(form, app);
    });
}

} // namespace tessaly
