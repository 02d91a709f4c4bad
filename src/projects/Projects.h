#pragma once

namespace tessaly {

class Application;

// Joins the project manager to the program: the client window frmNew, the
// project manager frmClientSites, and the module state gIsNewClient and
// gCurrentClientID.
void registerProjects(Application& app);

} // namespace tessaly
