#include "templates/Drawings.h"

#include "core/files/AppHome.h"

namespace tessaly {

void installDrawings(const AppHome& /*home*/) {}

} // namespace tessaly
