#pragma once

namespace tessaly {

class Form;

// Adds the menu bar of the main window and its hidden pop-up menu, every
// entry with its caption, check mark, enabled state and visibility, in order,
// and the desktop's usual keys of the file commands ("Shortcut").
void addMainMenus(Form& form);

} // namespace tessaly
