#pragma once

#include "templates/library/Catalogue.h"

#include <QHash>
#include <QString>

namespace tessaly::templates {

// Reads the symbol catalogue: a small line-based language in real-world
// millimetres (x to the right, y down). One command a line, '#' starts a
// comment, tokens are separated by blanks, numbers may be expressions without
// blanks ("W/2+40", "cos(30)*p") over the names in scope.
//
//   macro NAME P1 P2 ...      a reusable drawing with parameters, up to "end"
//   library "Title" "File{scale}.pdr" scaled|fixed=DRAWSCALE [columns=N]
//   symbol "Name" [mirror] use MACRO ARGS...    a symbol made of one macro
//   symbol "Name" [mirror]    a symbol with its own parts, up to "end"
//
// Parts and commands inside a macro or a symbol:
//   line X1 Y1 X2 Y2 | rect X Y W H | circle CX CY R | ellipse CX CY RX RY
//   arc CX CY R START SWEEP (degrees clockwise from east) | polygon X Y ... |
//   polyline X Y ... | text X Y W H "text" | mask X Y W D | set NAME EXPR |
//   use MACRO ARGS... |
//   repeat NAME FROM TO ... end (inclusive, step 1)
// Options after a part: fill (white) or fill=#RRGGBB, dash, weight=N, arrow,
// size=N (points), bold.
//
// "mask" is the opening of a door or window through its wall, from (X, Y)
// W wide and down (y grows) as deep as D or as the widest wall of the drawing
// scale, whichever is more: the symbol's library draws it filled with the
// page colour and without outline, under every other part, so the wall
// does not show through the opening. It takes no options.
// "mirror" reflects the symbol left to right (the other hand of a door).
// A fault raises run-time error 5 naming the line.
Catalogue parseCatalogue(const QString& text, const QString& sourceName = QStringLiteral("catalogue"));

// Evaluates one expression over `names` (for tests of the catalogue language).
double evaluateExpression(const QString& expression, const QHash<QString, double>& names);

} // namespace tessaly::templates
