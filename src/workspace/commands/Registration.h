#pragma once

namespace tessaly {

class Application;
class frmMain;

// The groups of main window commands, each registering its menu handlers.
void registerGridGuideCommands(frmMain& form, Application& app);
void registerPageZoomCommands(frmMain& form, Application& app);
void registerShapeEditCommands(frmMain& form, Application& app);
void registerFormatCommands(frmMain& form, Application& app);
void registerPrintCommands(frmMain& form, Application& app);

} // namespace tessaly
