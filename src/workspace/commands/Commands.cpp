#include "workspace/commands/Commands.h"

#include "workspace/forms/frmMyTemplates.h"
#include "workspace/Application.h"
#include "workspace/commands/Registration.h"
#include "workspace/forms/frmGrid.h"
#include "workspace/forms/frmGuidelines.h"
#include "workspace/forms/frmPaper.h"
#include "workspace/forms/frmShadowLens.h"
#include "workspace/frmMain.h"

namespace tessaly {

namespace {
template <class F> void registerWindow(Application& app) {
    app.registerForm(QString::fromLatin1(F::FormName),
                     [](ApplicationBase& a) { return std::make_shared<F>(static_cast<Application&>(a)); });
}
} // namespace

void registerViewCommands(frmMain& form, Application& app) {
    registerGridGuideCommands(form, app);
    registerPageZoomCommands(form, app);
    registerShapeEditCommands(form, app);
    registerFormatCommands(form, app);
    registerPrintCommands(form, app);
    registerMyTemplatesCommand(form, app);
}

void registerCommandForms(Application& app) {
    registerWindow<frmGrid>(app);
    registerWindow<frmGuidelines>(app);
    registerWindow<frmPaper>(app);
    registerWindow<frmShadowLens>(app);
    registerWindow<frmMyTemplates>(app);
    app.variable(QStringLiteral("gBackgroundPicture"),
                 [&app] { return app.gBackgroundPicture ? toVariant(app.gBackgroundPicture) : QVariant(); });
}

} // namespace tessaly
