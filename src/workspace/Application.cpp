#include "Application.h"

#include "core/settings/frmSettings.h"
#include "core/startup/frmSplash.h"
#include "core/runtime/Vb.h"
#include "workspace/PortDialogHost.h"
#include "workspace/commands/Commands.h"
#include "workspace/frmMain.h"

namespace tessaly {

Application::Application(UiPort& uiPort, Waiter& w, AppHome appHome)
    : CoreApplication(uiPort, w, std::move(appHome)),
      canvasDialogs(std::make_unique<PortDialogHost>(uiPort)), printMod(uiPort, w, userSettings) {
    registerForms();
    registerCanvasNames();
}

void Application::registerCanvasNames() {
    auto object = [this](const char* name, AutoPtr& v) {
        variable(QString::fromLatin1(name), [&v] { return v ? toVariant(v) : QVariant(); });
    };
    object("gPage", gPage);
    object("gViewList", gViewList);
    object("gView", gView);
    object("gShapeList", gShapeList);
    object("gSelection", gSelection);
    object("gHGuides", gHGuides);
    object("gVGuides", gVGuides);
    // The shared routines of the main window, by their bare names.
    for (const char* name :
         {"SetScale", "SetDrawingTool", "RequireSelection", "ShapeTypeName", "SyncDrawingMode"})
        routine(QString::fromLatin1(name), [this, name](QVariantList& a) {
            return form(QString::fromLatin1(frmMain::FormName)).call(QString::fromLatin1(name), a);
        });
    routine(QStringLiteral("ConvertEMFtoWMF"), [this](QVariantList& a) {
        printMod.ConvertEMFtoWMF(vb::toText(a.value(0)), vb::toText(a.value(1)));
        return QVariant();
    });
    variable(QStringLiteral("gShapeTypeCodes"), [this] {
        QVariantList list;
        for (int code : gShapeTypeCodes)
            list.append(code);
        return QVariant(list);
    });
    variable(QStringLiteral("gShapeTypeNames"), [this] {
        QVariantList list;
        for (const QString& name : gShapeTypeNames)
            list.append(name);
        return QVariant(list);
    });
}

Application::~Application() = default;

void Application::registerForms() {
    registerForm(QString::fromLatin1(frmSplash::FormName), [](ApplicationBase& a) {
        return std::make_shared<frmSplash>(static_cast<Application&>(a));
    });
    registerForm(QString::fromLatin1(frmSettings::FormName), [](ApplicationBase& a) {
        return std::make_shared<frmSettings>(static_cast<Application&>(a));
    });
    registerForm(QString::fromLatin1(frmMain::FormName),
                 [](ApplicationBase& a) { return std::make_shared<frmMain>(static_cast<Application&>(a)); });
    registerCommandForms(*this);
}

} // namespace tessaly
