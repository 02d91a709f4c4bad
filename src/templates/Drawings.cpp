#include "templates/Drawings.h"

#include "core/files/AppHome.h"
#include "templates/library/DrawingSet.h"

namespace tessaly {

void installDrawings(const AppHome& home) {
    templates::writeDrawingFiles(templates::builtInCatalogue(), home.templateDir(), home.dir());
}

} // namespace tessaly
