#pragma once

class QApplication;

namespace tessaly::ui {

// The desktop look of Tessaly: the Fusion style, Liberation Sans (metrically
// the same as Arial, which the window layouts in twips were made for) when it
// is installed, and the style sheet of the windows that carry artwork.
void applySkin(QApplication& app);

// The style sheet alone, for tests and tools.
const char* skinStyleSheet();

} // namespace tessaly::ui
