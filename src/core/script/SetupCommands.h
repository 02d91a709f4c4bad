#pragma once

namespace tessaly::script {

class Registry;

// Commands that prepare what a script runs on, as a user would outside the
// program: `setting STORE KEY VALUE` writes one value of a settings store on
// disk, `sql "STATEMENT"` runs one INSERT, UPDATE or DELETE on the project
// database through a connection of the driver's own, and `mkdir PATH` makes a
// folder with its parents. A relative path lies in the home.
void addSetupCommands(Registry& registry);

} // namespace tessaly::script
