#pragma once

#include "canvas/api/CanvasCodes.h"
#include "core/app/CoreApplication.h"
#include "core/runtime/AutoObject.h"
#include "metafile/PrintMod.h"

#include <array>
#include <memory>

namespace tessaly {

// The whole of Tessaly's module-level state: the core's, plus what the
// drawing workspace shares. It registers every window of the program.
class PortDialogHost;

class Application final : public CoreApplication {
public:
    Application(UiPort& ui, Waiter& waiter, AppHome home);
    ~Application() override;

    // The canvas objects of frmMain.POLARDraw1, fetched once when the main
    // window loads and kept to the end of the run (they follow every LoadFile).
    AutoPtr gPage;
    AutoPtr gViewList;
    AutoPtr gView;
    AutoPtr gShapeList;
    AutoPtr gSelection;
    AutoPtr gHGuides;
    AutoPtr gVGuides;
    // The last background picture shape added by the canvas settings; kept, never read.
    AutoPtr gBackgroundPicture;

    // The canvas's shape type codes and their names, indices 0 to 20.
    static constexpr int ShapeTypeCount = static_cast<int>(canvas::ShapeTypeCount);
    std::array<int, ShapeTypeCount> gShapeTypeCodes{};
    std::array<QString, ShapeTypeCount> gShapeTypeNames{};

    // The canvases' own dialogs, prints and file errors, through the UI port.
    // Every canvas of the program uses it unless the desktop view installs its own.
    std::unique_ptr<PortDialogHost> canvasDialogs;

    // The output module's metafile routines, with its module-level header
    // records, shared by every conversion of the run.
    PrintMod printMod;

private:
    void registerForms();
    void registerCanvasNames();
};

} // namespace tessaly
