#pragma once

namespace tessaly {

class Application;
class frmMain;

// The File menu's Export sub-menu on the main window: EMF, BMP and PNG
// straight from the canvas, PDF and TIFF through the report layouts.
// `mnuFile_Export_HTML` stays hidden and has no handler.
void registerExportCommands(frmMain& form, Application& app);

} // namespace tessaly
