#pragma once

#include "CanvasPicture.h"
#include "canvas/api/CanvasCodes.h"

#include <QString>
#include <cstdint>
#include <memory>

namespace tessaly::canvas {

// Colours are 24-bit values with red in the low byte (0x00BBGGRR).
using Colour = uint32_t;

constexpr Colour White = 0xFFFFFF;
constexpr Colour Black = 0x000000;

// Hatch patterns of a pattern fill; the last four are the plan hatches.
namespace hatch {
constexpr int Horizontal = 0;
constexpr int Vertical = 1;
constexpr int ForwardDiagonal = 2;
constexpr int BackwardDiagonal = 3;
constexpr int Cross = 4;
constexpr int DiagonalCross = 5;
constexpr int Brick = 6;
constexpr int Concrete = 7;
constexpr int Insulation = 8;
constexpr int Earth = 9;
constexpr int Count = 10;
} // namespace hatch

// Gradient directions of a shade fill.
namespace shade {
constexpr int Horizontal = 0; // colour changes from left to right
constexpr int Vertical = 1;   // from top to bottom
constexpr int Radial = 2;     // from the centre outwards
constexpr int Count = 3;
} // namespace shade

// Arrow heads at either end of a line.
namespace arrow {
constexpr int None = 0;
constexpr int Triangle = 1; // filled triangle
constexpr int Open = 2;     // two strokes
constexpr int Tick = 3;     // a short stroke across the line (dimension bars)
constexpr int Dot = 4;      // a filled circle
constexpr int Count = 5;
} // namespace arrow

// Whether `code` is one of the lens codes of CanvasCodes.h.
namespace lens {
bool isKnown(int code);
} // namespace lens

// One line unit of LineFormat.Weight is one page millimetre, so that a wall
// drawn as a line of weight 3 is as thick as a section wall 3 mm wide. Weight
// 0 is a hairline: one device pixel on any output.
constexpr double LineUnitMm = 1.0;

struct FillStyle {
    int type = fill_type::Solid;
    Colour colour = White;     // the solid colour; start of a shade; foreground of a hatch
    Colour backColour = White; // end of a shade; background of a hatch
    int shade = shade::Horizontal;
    int hatch = hatch::Horizontal;
    PicturePtr texture; // the texture picture, embedded in the drawing
    bool operator==(const FillStyle& o) const;
};

struct LineStyle {
    int style = line_style::Solid;
    Colour colour = Black;
    int weight = 0; // line units; 0 a hairline
    int arrowStart = arrow::None;
    int arrowEnd = arrow::None;
    int arrowSize = 3; // length of an arrow head in page millimetres
    bool operator==(const LineStyle& o) const = default;
};

struct ShadowStyle {
    bool visible = false;
    Colour colour = 0x808080;
    int offsetX = 2; // page millimetres to the right
    int offsetY = 2; // page millimetres down
    bool operator==(const ShadowStyle& o) const = default;
};

struct FontStyle {
    QString name = QStringLiteral("Arial");
    int size = 10; // points
    bool bold = false;
    bool italic = false;
    bool operator==(const FontStyle& o) const = default;
};

struct LensStyle {
    bool active = false;
    int type = lens::Transparency;
    int percent = 50; // -100 .. 100
    Colour startColour = White;
    Colour endColour = Black;
    bool operator==(const LensStyle& o) const = default;
};

// The formats of a shape. Immutable once shared: many shapes point at one
// style, and an edit makes a new style for the shapes it touches.
struct ShapeStyle {
    FillStyle fill;
    LineStyle line;
    ShadowStyle shadow;
    FontStyle font;
    LensStyle lens;
    bool operator==(const ShapeStyle& o) const = default;
};

using StylePtr = std::shared_ptr<const ShapeStyle>;

// The style every new shape starts with (shared, never changed).
const StylePtr& defaultStyle();

} // namespace tessaly::canvas
