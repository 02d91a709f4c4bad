#pragma once

#include "UiTestSupport.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

namespace tessaly::ui::testing {

// Tessaly with every subsystem on a freshly installed home, its main window
// loaded, answered by the scripted port: for the views of windows that need
// the whole program.
class ProgramWindows : public ::testing::Test {
protected:
    TempHome home;
    bool installed = (program::installHome(home.home()), true);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, home.home());
    frmMain& main = loadMain();

private:
    frmMain& loadMain() {
        app->gTemplateFolder = home.home().templateDir() + QLatin1Char('/');
        return app->form<frmMain>();
    }
};

} // namespace tessaly::ui::testing
