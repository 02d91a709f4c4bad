#pragma once

#include <functional>

namespace tessaly {

// The uses of the project save. They differ in whether the plan's old
// enhanced metafile is deleted first and whether the PDF and TIFF exports
// follow, and in how a failed step is handled.
enum class PlanSaveUse {
    Save,            // the File menu's save into the project
    OpenProject,     // before the project manager opens
    SaveToProjectAs, // after a new plan row is added for the drawing
    Email,           // before the e-mail window opens
    Unload,          // when the main window closes
    Colour,          // before the colouring window opens
};

// Where the main window and the project subsystems meet over a plan. It lies
// below all of them, so that none includes another in a circle: each side
// installs its half when it is created, and the other calls it.
struct PlanRoad {
    // Writes the open plan and its derived files (.pdr, .emf, .wmf, the
    // scratch PrintTemp.emf, .pdf, .tiff) as the use requires. The drawing
    // files subsystem provides it; the main window's unload and the e-mail and
    // colour commands call it. Empty while no such subsystem is joined.
    std::function<void(PlanSaveUse)> saveProjectOutputs;
    // The main window takes over a plan that the project manager has put on
    // its canvas: the backup timer starts again and the caption names the
    // plan. The main window provides it while it is loaded.
    std::function<void()> takePlan;
};

} // namespace tessaly
