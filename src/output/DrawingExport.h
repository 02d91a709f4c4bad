#pragma once

#include <QString>
#include <optional>

namespace tessaly {
class Application;
namespace canvas {
class POLARDraw;
}
} // namespace tessaly

namespace tessaly::output {

// What a drawing can be written as.
enum class DrawingFormat { Pdf, Tiff, Png, Bmp, Emf, Wmf, Svg };

// The format a file name asks for by its extension (.pdf, .tif or .tiff,
// .png, .bmp, .emf, .wmf, .svg, in any case); nothing for any other.
std::optional<DrawingFormat> formatOfPath(const QString& path);

struct DrawingExportOptions {
    // PNG and BMP: dots per inch of the page; 0 keeps the File menu's resolution.
    double dpi = 0;
};

// Writes the drawing of `canvas` to `path` (a host path) as the File menu's
// exports write it: PDF and TIFF through the application folder's
// PrintTemp.emf and the report layout of Page.Landscape, EMF, BMP and PNG by
// the canvas (PNG and BMP at `options.dpi` when given), WMF by
// ConvertEMFtoWMF from the canvas's EMF, SVG by the SVG writer on the
// canvas's renderer. A RuntimeError naming the file and the reason when it
// cannot be written; a file at the target is then left as it was.
void exportDrawing(Application& app, canvas::POLARDraw& canvas, const QString& path, DrawingFormat format,
                   const DrawingExportOptions& options = {});

} // namespace tessaly::output
