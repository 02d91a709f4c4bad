#pragma once

#include <QString>
#include <array>

// The shape type codes of the canvas, as Shape.Type reports them.
namespace tessaly::canvas::shape_type {

constexpr int Freeform = 0; // open polyline, curve, scribble, or closed polygon
constexpr int Rectangle = 1;
constexpr int RoundRectangle = 2;
constexpr int Ellipse = 3;
constexpr int Diamond = 4;
constexpr int IsoscelesTriangle = 5;
constexpr int RightTriangle = 6;
constexpr int Parallelogram = 7;
constexpr int Trapezoid = 8;
constexpr int Hexagon = 9;
constexpr int Octagon = 10;
constexpr int PlusSign = 11;
constexpr int Star = 12;
constexpr int Arc = 19;
constexpr int Line = 20;
constexpr int Pentagon = 56;
constexpr int LeftArrow = 66;
constexpr int PlainText = 136;
constexpr int TextBox = 202;
constexpr int Link = 10000;
constexpr int DimensionBar = 10250;
constexpr int Picture = 10100; // a picture shape (AddPicture, background pictures)
constexpr int Group = 10200;   // a group of shapes (ShapeRange.Group)

// The 21 drawable codes, in the order of the program's name table.
constexpr std::array<int, 21> DrawableCodes = {
    Arc,       Diamond,   DimensionBar,  Ellipse,        Freeform,      Hexagon,  IsoscelesTriangle,
    LeftArrow, Line,      Link,          Octagon,        Parallelogram, Pentagon, PlainText,
    PlusSign,  Rectangle, RightTriangle, RoundRectangle, Star,          TextBox,  Trapezoid};

// Whether `code` is one of the drawable codes, a picture or a group.
bool isKnown(int code);
// Whether the shape is drawn as an open stroke (no fill by default).
bool isOpenStroke(int code);
// Whether the type carries its own text by default (free text, text box).
bool isTextType(int code);
// The display name of a type ("Rectangle", "Dimension Bar", ...); "Picture", "Group" for those two.
QString displayName(int code);

} // namespace tessaly::canvas::shape_type
