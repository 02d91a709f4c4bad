#include "Application.h"

#include "core/settings/frmSettings.h"
#include "core/startup/frmSplash.h"
#include "workspace/frmMain.h"

namespace tessaly {

Application::Application(UiPort& uiPort, Waiter& w, AppHome appHome)
    : CoreApplication(uiPort, w, std::move(appHome)) {
    registerForms();
}

Application::~Application() = default;

void Application::registerForms() {
    registerForm(QString::fromLatin1(frmSplash::FormName),
                 [](ApplicationBase& a) { return std::make_shared<frmSplash>(static_cast<Application&>(a)); });
    registerForm(QString::fromLatin1(frmSettings::FormName),
                 [](ApplicationBase& a) { return std::make_shared<frmSettings>(static_cast<Application&>(a)); });
    registerForm(QString::fromLatin1(frmMain::FormName),
                 [](ApplicationBase& a) { return std::make_shared<frmMain>(static_cast<Application&>(a)); });
}

} // namespace tessaly
