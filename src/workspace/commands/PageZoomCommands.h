#pragma once

namespace tessaly {

class Application;
class frmMain;

// Turns the page to landscape (295 by 210) or portrait (210 by 295): new size,
// guide lines laid again for the orientation, zoom, flag, the printer's page
// setup, and a fit to the whole page. The two orientation buttons of the tool
// strip run it; pressing the one in force repeats every step.
void ChangePageOrientation(frmMain& form, Application& app, bool landscape);

} // namespace tessaly
