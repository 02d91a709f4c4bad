#pragma once

namespace tessaly::script {
class Registry;
}

namespace tessaly {

class Application;

// The drawing files subsystem: the File menu's drawing commands on the main
// window (New Blank Drawing, Open Drawing, Save As, Exit), the automatic
// backup by the main window's timer, picture import and the image converter.
void registerDrawingFiles(Application& app);

} // namespace tessaly
