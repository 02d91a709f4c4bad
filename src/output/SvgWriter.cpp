#include "SvgWriter.h"

#include "canvas/api/POLARDraw.h"

#include <QBuffer>
#include <QPainter>
#include <QSvgGenerator>
#include <cmath>

namespace tessaly::output {

namespace {
// User units of the document per inch: the CSS pixel, so that its sizes in
// millimetres come out exact and its text sizes as on screen.
constexpr int SvgDpi = 96;
constexpr double MmPerInch = 25.4;
const QString SvgTitle = QStringLiteral("Tessaly drawing");
} // namespace

QByteArray drawingToSvg(const canvas::POLARDraw& canvas) {
    const canvas::PageSettings& page = canvas.drawing().state().page;
    const double k = SvgDpi / MmPerInch;
    const QSizeF user(page.width * k, page.height * k);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setResolution(SvgDpi);
    svg.setSize(
        QSize(static_cast<int>(std::lround(user.width())), static_cast<int>(std::lround(user.height()))));
    svg.setViewBox(QRectF(QPointF(0, 0), user));
    svg.setTitle(SvgTitle);
    {
        QPainter painter(&svg);
        painter.fillRect(QRectF(QPointF(0, 0), user), Qt::white);
        canvas.render(painter, QRectF(QPointF(0, 0), user), QRectF(),
                      canvas::RenderOptions{false, false, false});
    }
    return buffer.data();
}

} // namespace tessaly::output
