#include "SvgWriter.h"

#include "SvgPaintDevice.h"

#include "canvas/api/POLARDraw.h"

#include <QPainter>

namespace tessaly::output {

namespace {
// Device units of the document per inch: the CSS pixel, so that line widths
// and text sizes come out as on screen.
constexpr int SvgDpi = 96;
constexpr double MmPerInch = 25.4;
const QString SvgTitle = QStringLiteral("Tessaly drawing");
} // namespace

QByteArray drawingToSvg(const canvas::POLARDraw& canvas) {
    const canvas::PageSettings& page = canvas.drawing().state().page;
    const double k = SvgDpi / MmPerInch;
    const QRectF paper(0, 0, page.width * k, page.height * k);
    SvgPaintDevice svg(QSizeF(page.width, page.height), SvgDpi, SvgTitle);
    {
        QPainter painter(&svg);
        painter.fillRect(paper, Qt::white);
        canvas.render(painter, paper, QRectF(), canvas::RenderOptions{false, false, false});
    }
    return svg.document();
}

} // namespace tessaly::output
