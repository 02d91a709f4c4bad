#pragma once

namespace tessaly::script {

class Registry;

// The driver's own vocabulary: install, start, answer (message box, input,
// file, folder and colour dialogs), input to controls (click, dblclick, type,
// focus, blur, select, slide, key, tab, tick, close), set, call, print and
// expect with the print forms forms, caption, file and sql, and the events of
// the UI port.
void addCoreCommands(Registry& registry);

} // namespace tessaly::script
