#pragma once

#include "canvas/model/ShapeStyle.h"

#include <QString>

namespace tessaly::canvas {

class POLARDraw;

// What the canvas's own dialogs edit. The canvas fills each with the values of
// the first selected shape, the host shows its dialog, and on OK the canvas
// applies the result to the selection as one undo step (POLARDraw::apply...).
struct LineOptions {
    int style = line_style::Solid;
    Colour colour = Black;
    int weight = 0;
};
struct ArrowOptions {
    int start = arrow::None;
    int end = arrow::None;
    int size = 3;
};
struct ShadeOptions {
    Colour from = White;
    Colour to = Black;
    int direction = shade::Horizontal;
};
struct PatternOptions {
    int hatch = hatch::Horizontal;
    Colour fore = Black;
    Colour back = White;
};
struct TextureOptions {
    PicturePtr picture; // the chosen texture; null leaves the fill as it is
};
struct ShadowOptions {
    bool visible = false;
    Colour colour = 0x808080;
    int offsetX = 2;
    int offsetY = 2;
};
struct FontOptions {
    QString name;
    int size = 10;
    bool bold = false;
    bool italic = false;
};

// The desktop side of the canvas's dialogs and of printing, injected into
// each canvas (the Qt dialogs live in the UI layer). Each edit method returns
// true when the user confirmed.
class CanvasDialogHost {
public:
    virtual ~CanvasDialogHost() = default;

    virtual bool editLine(LineOptions& options) = 0;
    virtual bool editArrows(ArrowOptions& options) = 0;
    virtual bool editShade(ShadeOptions& options) = 0;
    virtual bool editPattern(PatternOptions& options) = 0;
    virtual bool editTexture(TextureOptions& options) = 0;
    virtual bool editShadow(ShadowOptions& options) = 0;
    virtual bool editFont(FontOptions& options) = 0;
    // The printer's page setup dialog.
    virtual void pageSetup(POLARDraw& canvas) = 0;
    // Prints: shows the printer dialog when `showDialog` is true, then calls
    // canvas.printTo() on the printer.
    virtual void print(POLARDraw& canvas, bool& showDialog) = 0;
    // A file error that no event handler dealt with.
    virtual void fileError(const QString& text, int code) = 0;
};

} // namespace tessaly::canvas
