#pragma once

#include <QString>

namespace tessaly::script {

class Registry;
class Runner;

// The connection string of the project database that the home's machine
// settings name, for the driver's own connections.
QString projectDatabaseConnection(Runner& run);

// Commands that prepare what a script runs on, as a user would outside the
// program: `setting STORE KEY VALUE` writes one value of a settings store on
// disk, `sql "STATEMENT"` runs one INSERT, UPDATE or DELETE on the project
// database through a connection of the driver's own, and `mkdir PATH` makes a
// folder with its parents. A relative path lies in the home.
void addSetupCommands(Registry& registry);

} // namespace tessaly::script
