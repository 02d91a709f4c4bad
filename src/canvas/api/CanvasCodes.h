#pragma once

#include <array>
#include <cstddef>

// The codes that Tessaly's logic and the canvas exchange through the canvas's
// object model: coordinate units, file formats, fit modes, tools, z-order
// steps, fill and line kinds, lens codes, and the shape type codes with the
// names Tessaly shows for them. This header depends on nothing, so the
// canvas's own parts and every subsystem above it take their codes from here.
namespace tessaly::canvas {

// Units of POLARDraw.CoordinateMode.
namespace coordinate_mode {
constexpr int Page = 1;   // page millimetres
constexpr int Pixels = 3; // screen pixels of the current zoom, from the page's top-left corner
} // namespace coordinate_mode

// POLARDraw.SaveFile formats.
namespace save_format {
constexpr int Pdr = 1; // the canvas's own drawing file
constexpr int Emf = 2; // enhanced metafile
constexpr int Bmp = 3; // bitmap
constexpr int Png = 4; // PNG image
} // namespace save_format

// Modes of ViewList.FitTo.
namespace fit_mode {
constexpr int Page = 0;      // the whole page
constexpr int Selection = 1; // the selected shapes
constexpr int Width = 2;     // the page's width
constexpr int Height = 3;    // the page's height
} // namespace fit_mode

// Tool modes of View.ToolMode.
namespace tool_mode {
constexpr int Unavailable = -1; // no tool can be set now
constexpr int Select = 1;       // select shapes
constexpr int Rotate = 2;       // rotate a shape
constexpr int EditPoints = 3;   // edit the points of a shape
constexpr int Draw = 4;         // draw a shape of View.ToolShapeType
} // namespace tool_mode

// Variants of the draw tool (View.ToolOption).
namespace tool_option {
constexpr int Curve = 1;      // with shape type 0: a smooth curve, a click per point
constexpr int MultiPoint = 2; // with type 0: a click per point; with type 20: one straight line
constexpr int Freehand = 3;   // with type 0: a freehand stroke
} // namespace tool_option

// Steps of ShapeRange.Reorder, the z-order of the selected shapes.
namespace reorder_step {
constexpr int ToBack = 0;     // behind every other shape
constexpr int BackOne = 1;    // one level back
constexpr int ForwardOne = 2; // one level forward
constexpr int ToFront = 3;    // in front of every other shape
} // namespace reorder_step

// Fill kinds of FillFormat.Type.
namespace fill_type {
constexpr int Solid = 0;   // one colour
constexpr int Shade = 1;   // gradient from the fill colour to the back colour
constexpr int Pattern = 2; // hatch of the fill colour on the back colour
constexpr int Texture = 3; // a picture tiled over the shape
} // namespace fill_type

// Line styles of LineFormat.Style.
namespace line_style {
constexpr int Solid = 0;      // a plain solid line
constexpr int Dash = 1;       // dashes
constexpr int Dot = 2;        // dots
constexpr int DashDot = 3;    // dash, dot
constexpr int DashDotDot = 4; // dash, dot, dot
constexpr int Count = 5;      // number of styles
} // namespace line_style

// Lens codes of LensFormat.Type.
namespace lens {
constexpr int BrightenDarken = 0;  // lightens or darkens what lies below
constexpr int AddColour = 1;       // adds the start colour
constexpr int LimitColour = 2;     // lets only the start colour through
constexpr int CustomPalette = 3;   // maps brightness onto start to end colour
constexpr int Heatmap = 5;         // a heat map palette
constexpr int Invert = 6;          // inverts the colours
constexpr int TintedGrayscale = 8; // greys tinted with the start colour
constexpr int Transparency = 9;    // what lies below shows through
} // namespace lens

// The shape type codes of the canvas, as Shape.Type reports them and
// View.ToolShapeType takes them.
namespace shape_type {
constexpr int Freeform = 0;          // open polyline, curve, scribble, or closed polygon
constexpr int Rectangle = 1;         // rectangle or square; also a section wall
constexpr int RoundRectangle = 2;    // rectangle with rounded corners
constexpr int Ellipse = 3;           // ellipse or circle
constexpr int Diamond = 4;           // four-sided, standing on a corner
constexpr int IsoscelesTriangle = 5; // triangle with two equal sides
constexpr int RightTriangle = 6;     // triangle with a right angle
constexpr int Parallelogram = 7;     // four-sided, opposite sides parallel
constexpr int Trapezoid = 8;         // four-sided, one pair of sides parallel
constexpr int Hexagon = 9;           // six-sided
constexpr int Octagon = 10;          // eight-sided
constexpr int PlusSign = 11;         // a cross
constexpr int Star = 12;             // five-pointed star
constexpr int Arc = 19;              // part of an ellipse's outline
constexpr int Line = 20;             // one straight line
constexpr int Pentagon = 56;         // five-sided
constexpr int LeftArrow = 66;        // block arrow pointing left
constexpr int PlainText = 136;       // free text
constexpr int TextBox = 202;         // a text in a frame: dimension figures, title blocks
constexpr int Link = 10000;          // a connector that links two shapes
constexpr int Picture = 10100;       // a picture shape (AddPicture, background pictures)
constexpr int Group = 10200;         // a group of shapes (ShapeRange.Group)
constexpr int DimensionBar = 10250;  // a measured line with ticks at both ends
} // namespace shape_type

// A drawable shape type code and the name Tessaly shows for it.
struct ShapeTypeEntry {
    int code;
    const char* name;
};

// Number of drawable shape types.
constexpr std::size_t ShapeTypeCount = 21;

// The drawable shape types with the names Tessaly shows for them, in the order
// of the main window's two name tables (gShapeTypeCodes, gShapeTypeNames).
inline constexpr std::array<ShapeTypeEntry, ShapeTypeCount> ShapeTypeTable = {{
    {shape_type::Arc, "Arc"},
    {shape_type::Diamond, "Diamond"},
    {shape_type::DimensionBar, "Dimension Bar"},
    {shape_type::Ellipse, "Ellipse"},
    {shape_type::Freeform, "Freeform"},
    {shape_type::Hexagon, "Hexagon"},
    {shape_type::IsoscelesTriangle, "Isosceles Triangle"},
    {shape_type::LeftArrow, "Left Arrow"},
    {shape_type::Line, "Line"},
    {shape_type::Link, "Link"},
    {shape_type::Octagon, "Octagon"},
    {shape_type::Parallelogram, "Parallelogram"},
    {shape_type::Pentagon, "Pentagon"},
    {shape_type::PlainText, "Plain Text"},
    {shape_type::PlusSign, "Plus Sign"},
    {shape_type::Rectangle, "Rectangle"},
    {shape_type::RightTriangle, "Right Triangle"},
    {shape_type::RoundRectangle, "Round Rectangle"},
    {shape_type::Star, "Star"},
    {shape_type::TextBox, "Text Box"},
    {shape_type::Trapezoid, "Trapezoid"},
}};

namespace shape_type {
// The drawable codes alone, in the order of ShapeTypeTable.
inline constexpr std::array<int, ShapeTypeCount> DrawableCodes = [] {
    std::array<int, ShapeTypeCount> codes{};
    for (std::size_t i = 0; i < ShapeTypeCount; ++i)
        codes[i] = ShapeTypeTable[i].code;
    return codes;
}();
} // namespace shape_type

} // namespace tessaly::canvas
