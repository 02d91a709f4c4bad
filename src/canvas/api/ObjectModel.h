#pragma once

#include <QString>
#include <QStringList>
#include <map>

namespace tessaly::canvas {

// The late-bound members of every class of the canvas's object model
// ("POLARDraw", "Page", "View", "Shape", ...), by class name, each list as
// the class's member table holds it. Tests check the names that Tessaly's
// logic passes to the canvas against these lists.
std::map<QString, QStringList> memberNamesByClass();

} // namespace tessaly::canvas
