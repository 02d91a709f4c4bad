#include "ColourOutput.h"

#include "FloodFillAt.h"
#include "core/app/PlanRoad.h"
#include "core/forms/Control.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "output/frmColourFill.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

namespace tessaly {

namespace {

// mnuEditColour: only with a project plan open; its .pdr, .emf and .wmf are
// saved first, with no trap, and the colouring window opens.
void mnuEditColour_Click(Application& app) {
    if (app.gPlanFileName.isEmpty())
        return;
    if (app.planRoad.saveProjectOutputs)
        app.planRoad.saveProjectOutputs(PlanSaveUse::Colour);
    app.show(app.form(QString::fromLatin1(frmColourFill::FormName)), true);
}

} // namespace

void registerColourOutput(Application& app) {
    app.registerForm(QString::fromLatin1(frmColourFill::FormName), [](ApplicationBase& a) {
        return std::make_shared<frmColourFill>(static_cast<Application&>(a));
    });
    // FloodFillAt(picture box, X, Y, fill colour[, border colour]).
    app.routine(QStringLiteral("FloodFillAt"), [&app](QVariantList& a) {
        auto* picture = dynamic_cast<Control*>(toObject(a.value(0)).get());
        if (!picture)
            raiseError(err::ObjectRequired, QStringLiteral("Object required"));
        std::optional<uint32_t> border;
        if (a.size() > 4 && a.value(4).isValid())
            border = static_cast<uint32_t>(vb::toDouble(a.value(4)));
        colour::FloodFillAt(app, *picture, vb::toInt32(a.value(1)), vb::toInt32(a.value(2)),
                            static_cast<uint32_t>(vb::toDouble(a.value(3))), border);
        return QVariant();
    });
    app.extendForm(QString::fromLatin1(frmMain::FormName), [&app](Form& main) {
        main.on(QStringLiteral("mnuEditColour"), QStringLiteral("Click"),
                [&app](Control&, EventArgs&) { mnuEditColour_Click(app); });
    });
}

} // namespace tessaly
