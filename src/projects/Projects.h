#pragma once

namespace tessaly {

class Application;

namespace script {
class Registry;
}

// Joins the project manager to the program: the client window frmNew, the
// project manager frmClientSites, the cost report ProjectCostReport, and the
// module state gIsNewClient, gCurrentClientID and the booking state of the
// schedule (gBarRow ... gBarStyle).
void registerProjects(Application& app);

// The project manager's part of the script driver: `today DATE [TIME]`, the
// present date and time that the program reads from then on (the planner's
// range, the date of the cost report).
void addProjectsScriptCommands(script::Registry& registry);

} // namespace tessaly
