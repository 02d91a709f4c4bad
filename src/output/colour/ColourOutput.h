#pragma once

namespace tessaly {

class Application;

// The colour output joins the program: the colouring window, the main
// window's mnuEditColour, and the main module's FloodFillAt.
void registerColourOutput(Application& app);

} // namespace tessaly
