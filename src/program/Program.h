#pragma once

#include "core/files/AppHome.h"
#include "core/script/ScriptRunner.h"

#include <memory>

namespace tessaly {

class Application;
class UiPort;
class Waiter;

// Tessaly as one program: the application with the windows, routines and
// script commands of every subsystem, and the install step of its home. The
// desktop program, the script driver and the tests start Tessaly through here,
// so each subsystem is joined in one place.
namespace program {

// The install step: folders, settings, project database, symbol libraries,
// blank drawings and page templates. Raises run-time error 75 when the home
// cannot be written.
void installHome(const AppHome& home);

// A new run of Tessaly with every subsystem installed.
std::unique_ptr<Application> makeApplication(UiPort& ui, Waiter& waiter, AppHome home);

// The whole vocabulary of the script driver.
void addScriptCommands(script::Registry& registry);

// What the script driver runs.
script::Program scriptProgram();

} // namespace program
} // namespace tessaly
