#pragma once

#include "core/files/AppHome.h"

#include <QStringList>

namespace tessaly {

// The install step: creates what is missing in the application home and
// never overwrites what is there. It lays out the folders, fills every value
// of the two settings stores that is absent, and creates the project
// database with its tables and seed rows. Returns what it created; raises a
// run-time error (75) when the home cannot be written.
QStringList install(const AppHome& home);

} // namespace tessaly
