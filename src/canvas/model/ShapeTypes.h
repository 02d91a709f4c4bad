#pragma once

#include "canvas/api/CanvasCodes.h"

#include <QString>

// What the canvas knows of its shape type codes; the codes themselves and
// the names Tessaly shows for them are in CanvasCodes.h.
namespace tessaly::canvas::shape_type {

// Whether `code` is one of the drawable codes, a picture or a group.
bool isKnown(int code);
// Whether the shape is drawn as an open stroke (no fill by default).
bool isOpenStroke(int code);
// Whether the type carries its own text by default (free text, text box).
bool isTextType(int code);
// The display name of a type ("Rectangle", "Dimension Bar", ...); "Picture", "Group" for those two.
QString displayName(int code);

} // namespace tessaly::canvas::shape_type
