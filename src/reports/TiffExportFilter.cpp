#include "TiffExportFilter.h"

#include "ColourProbe.h"
#include "ExportTarget.h"
#include "ReportPage.h"
#include "TiffWriter.h"
#include "Twips.h"

#include "core/runtime/RuntimeError.h"

#include <QIODevice>
#include <QImage>
#include <QPainter>
#include <cmath>

namespace tessaly::reports {

namespace {
// Inches in a metre, for an image's dots per metre.
constexpr double InchesPerMetre = 39.37007874015748;
} // namespace

QImage renderPage(const ReportPage& page, double dpi, bool smooth) {
    const QSize pixels(std::max(1, static_cast<int>(std::lround(page.size().width() / TwipsPerInch * dpi))),
                       std::max(1, static_cast<int>(std::lround(page.size().height() / TwipsPerInch * dpi))));
    QImage image(pixels, QImage::Format_RGB32);
    const int dotsPerMetre = static_cast<int>(std::lround(dpi * InchesPerMetre));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    painter.setRenderHint(QPainter::TextAntialiasing, smooth);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    page.paint(painter, QRectF(QPointF(0, 0), QSizeF(pixels)));
    painter.end();
    return image;
}

void TiffExportFilter::Export(const PageCollection& pages) {
    ExportTarget target(FileName);
    if (pages.count() == 0)
        raiseError(err::InvalidProcedureCall, QStringLiteral("The report has no pages to export"));
    TiffWriter writer(DocumentName);
    for (int i = 0; i < pages.count(); ++i) {
        // Black line work on white is drawn with hard edges and stored as
        // black and white; any other page is drawn smoothed and stored by
        // the colours it shows.
        const ReportPage& page = pages.page(i);
        if (pageIsBlackAndWhite(page)) {
            writer.addPage(renderPage(page, Resolution, false), PageColours::BlackAndWhite, Resolution, i,
                           pages.count());
            continue;
        }
        const QImage image = renderPage(page, Resolution, true);
        writer.addPage(image, classify(image), Resolution, i, pages.count());
    }
    const QByteArray bytes = writer.finish();
    target.write([&bytes](QIODevice& out) { out.write(bytes); });
}

} // namespace tessaly::reports
