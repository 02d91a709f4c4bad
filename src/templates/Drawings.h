#pragma once

namespace tessaly {

class AppHome;

// Writes the symbol libraries, the blank drawings and the page templates into
// the application home, as the install step lays it out.
void installDrawings(const AppHome& home);

} // namespace tessaly
