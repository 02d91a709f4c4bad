#pragma once

#include "UiTestSupport.h"
#include "core/install/Installer.h"
#include "templates/Drawings.h"
#include "ui/FormView.h"
#include "workspace/Application.h"

namespace tessaly::ui::testing {

// TemplateZoom as the install step writes it.
constexpr int16_t InstalledTemplateZoom = 100;

// The main window on a home laid out by the install step (libraries
// included), loaded with the template folder and zoom its settings name, and
// its window.
class MainWindowFixture : public ::testing::Test {
protected:
    TempHome home;
    bool installed = (install(home.home()), installDrawings(home.home()), true);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    Application app{port, waiter, home.home()};
    Form& main = loadMain();
    FormView view{main};

    Form& loadMain() {
        app.gTemplateFolder = home.home().templateDir() + QLatin1Char('/');
        app.gTemplateZoom = InstalledTemplateZoom;
        return app.form(QStringLiteral("frmMain"));
    }
};

} // namespace tessaly::ui::testing
