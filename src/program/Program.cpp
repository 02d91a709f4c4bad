#include "program/Program.h"

#include "core/install/Installer.h"
#include "core/script/CoreCommands.h"
#include "core/script/ScriptRegistry.h"
#include "drawing_files/DrawingFiles.h"
#include "drawing_files/ProjectSave.h"
#include "output/Output.h"
#include "output/colour/ColourOutput.h"
#include "output/mail/Mail.h"
#include "projects/Projects.h"
#include "schedule/ScheduleScript.h"
#include "templates/Drawings.h"
#include "workspace/Application.h"
#include "workspace/WorkspaceScript.h"

namespace tessaly::program {

void installHome(const AppHome& home) {
    install(home);
    installDrawings(home);
    installMail(home);
}

std::unique_ptr<Application> makeApplication(UiPort& ui, Waiter& waiter, AppHome home) {
    auto app = std::make_unique<Application>(ui, waiter, std::move(home));
    registerOutput(*app);
    registerMail(*app);
    registerColourOutput(*app);
    registerDrawingFiles(*app);
    registerProjectSave(*app);
    registerProjects(*app);
    return app;
}

void addScriptCommands(script::Registry& registry) {
    script::addCoreCommands(registry);
    addWorkspaceScriptCommands(registry);
    schedule::addScheduleScriptCommands(registry);
    addOutputScriptCommands(registry);
    addMailScriptCommands(registry);
    addProjectSaveScriptCommands(registry);
    addProjectsScriptCommands(registry);
}

script::Program scriptProgram() {
    return script::Program{[](UiPort& ui, Waiter& waiter, AppHome home) -> std::unique_ptr<CoreApplication> {
                               return makeApplication(ui, waiter, std::move(home));
                           },
                           installHome};
}

} // namespace tessaly::program
