#pragma once

namespace tessaly {

class Application;
namespace script {
class Registry;
}

// The output subsystem joins the program: the report export module
// (reached as modReportExport, with its routines ExportReportToPDF and
// ExportReportToTIFF), the two page layouts reached by name like forms
// (ExportOuputPortrate, ExportOuputLandscape; each instance created on first
// use), and the Export sub-menu's handlers on the main window.
void registerOutput(Application& app);

// The output's part of the script driver: `print reports`, the report layouts
// whose instances exist now.
void addOutputScriptCommands(script::Registry& registry);

} // namespace tessaly
