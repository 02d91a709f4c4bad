#pragma once

#include "core/app/PlanRoad.h"
#include "core/runtime/AutoObject.h"

#include <QString>

namespace tessaly {

namespace script {
class Registry;
}

class Application;

// Saving a plan into its project: SaveProjectOutputs with its six uses, and
// the File menu's three project commands (mnuFile_OpenProject, mnuFile_Save,
// mnuFile_SaveToProjectAs).

// Writes the open plan's family of files, gFileStore + "\" + gPlanFileName +
// .pdr, .emf, .wmf, the scratch PrintTemp.emf in the application folder, .pdf
// and .tiff, as `use` asks: the unload and the colour command keep the old
// .emf until the canvas overwrites it, the colour command stops after the
// .wmf. For the three File menu commands a failed step is logged through
// ReportError and the next step runs; for the other uses the first failure
// goes to the caller. Does nothing while no plan is open.
void SaveProjectOutputs(Application& app, PlanSaveUse use);

// The File menu's project commands on frmMain.
void mnuFile_OpenProject_Click(Application& app);
void mnuFile_Save_Click(Application& app);
void mnuFile_SaveToProjectAs_Click(Application& app);

// Writes the drawing of a canvas to a file of the project store as
// POLARDraw.SaveFile does, with the path of the logic ("\" separators). A
// folder that is not there is run-time error 76 and a name longer than the
// file system holds is error 52, raised before the canvas is asked, so that
// the project routines trap them as they trap their other steps.
void SavePlanFile(const AutoPtr& canvas, const QString& logicPath, int format);

// Joins the project save to the program: the plan road's save, the routine
// SaveProjectOutputs (callable by name with an optional use: "Save",
// "OpenProject", "SaveToProjectAs", "Email", "Unload" or "Colour", by default
// the whole sequence with no trap), and the three menu commands of frmMain.
void registerProjectSave(Application& app);

// The script driver's `print errorlog` (the lines of ErrorLog.Log without
// their times), `print exists "PATH"` (whether FileExists finds the file) and
// `print samefile "A" "B"` (whether two files hold the same bytes).
void addProjectSaveScriptCommands(script::Registry& registry);

} // namespace tessaly
