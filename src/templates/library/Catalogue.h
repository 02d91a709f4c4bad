#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <optional>
#include <vector>

namespace tessaly::templates {

// How one part of a symbol is drawn.
struct PartStyle {
    std::optional<QColor> fill; // closed parts: the fill colour; none leaves them hollow
    bool dashed = false;        // hidden or overhead edges
    int weight = 0;             // line units of the canvas; 0 is a hairline
    bool arrow = false;         // an arrow head at the end of a line or polyline
    int fontSize = 8;           // points, for text
    bool bold = false;          // text
};

// One part of a symbol, in real-world millimetres, x to the right and y down.
struct Part {
    // A Mask is the opening of a door or window through its wall: filled with
    // the page colour, without outline, under the symbol's lines, as deep as
    // its box or as the widest wall of the drawing scale, whichever is more.
    enum class Kind { Line, Rect, Ellipse, Arc, Polygon, Polyline, Text, Mask };
    Kind kind = Kind::Line;
    std::vector<QPointF> points; // Line: two ends; Polygon and Polyline: the corners
    QRectF box;                  // Rect, Ellipse, Text, Mask (its least depth)
    QPointF centre;              // Arc
    double radius = 0;           // Arc
    double startDeg = 0;         // Arc: start angle, clockwise from east (y runs down)
    double sweepDeg = 0;         // Arc: swept angle, clockwise when positive
    QString text;                // Text
    PartStyle style;

    // The corners of an arc drawn as a polyline through points on its circle.
    std::vector<QPointF> arcPoints(const QPointF& centre, double radius) const;
    // The part's extent in real millimetres (line weights ignored; a mask at its least depth).
    QRectF extent() const;
    // The same at a drawing scale: a mask as deep as it is drawn there.
    QRectF extentAt(int scale) const;
    // The part reflected about the vertical line x = axis.
    Part mirrored(double axis) const;
};

// A symbol: what one click in the template pane copies.
struct Symbol {
    QString name; // also the name of its shape (a group when it has several parts)
    std::vector<Part> parts;
    // The symbol's real size: the union of its drawn parts' extents, masks left out.
    QRectF extent() const;
    // What the symbol covers at a drawing scale, its masks included.
    QRectF extentAt(int scale) const;
};

// A library file: its symbols, laid out on a page.
struct Library {
    QString title;       // the item text of the template pane ("Standard Doors")
    QString filePattern; // file name, with "{scale}" where the scale figure goes
    bool scaled = false; // one file per drawing scale; else one scale-free file
    int drawScale = 50;  // scale-free files: the scale their real sizes are drawn at
    int columns = 4;     // symbols per row of the grid
    std::vector<Symbol> symbols;

    // The file name at `scale` (scale-free libraries ignore it).
    QString fileName(int scale) const;
};

// Every library of the installation, read from the catalogue.
struct Catalogue {
    std::vector<Library> libraries;
    const Library* find(const QString& title) const;
};

} // namespace tessaly::templates
