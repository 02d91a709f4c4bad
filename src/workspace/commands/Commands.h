#pragma once

namespace tessaly {

class Application;
class frmMain;

// The page, view and shape commands of the main window's menus, pop-up menu
// and tool strip: grid and guides, page and zoom, shape editing, formatting
// and printing. Registers their handlers on the main window.
void registerViewCommands(frmMain& form, Application& app);

// Registers the windows those commands open.
void registerCommandForms(Application& app);

} // namespace tessaly
