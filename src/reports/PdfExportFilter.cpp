#include "PdfExportFilter.h"

#include "ExportTarget.h"
#include "ReportPage.h"
#include "Twips.h"

#include "core/runtime/RuntimeError.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace tessaly::reports {

namespace {

// Device units of the PDF painter per inch. The PDF holds real numbers, so
// this sets no precision; it keeps text of plans below the size at which the
// metafile player draws glyphs as outlines.
constexpr int PdfResolution = 300;
// Points in a twip; the PDF's page sizes are in points.
constexpr double PointsPerTwip = 1.0 / TwipsPerPoint;
const QString Creator = QStringLiteral("Tessaly");

// The page layout of a page of `twips` as it lies, margins nil.
QPageLayout layoutFor(const QSizeF& twips) {
    const bool landscape = twips.width() > twips.height();
    const QSizeF portraitPoints = landscape ? QSizeF(twips.height(), twips.width()) * PointsPerTwip
                                            : QSizeF(twips.width(), twips.height()) * PointsPerTwip;
    const QPageSize size(portraitPoints, QPageSize::Point, QString(), QPageSize::FuzzyMatch);
    return QPageLayout(size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(),
                       QPageLayout::Point);
}

QRectF pageRect(const QSizeF& twips) {
    return {0, 0, twips.width() / TwipsPerInch * PdfResolution,
            twips.height() / TwipsPerInch * PdfResolution};
}

} // namespace

void PdfExportFilter::Export(const PageCollection& pages) {
    ExportTarget target(FileName);
    if (pages.count() == 0)
        raiseError(err::InvalidProcedureCall, QStringLiteral("The report has no pages to export"));
    target.write([&](QIODevice& out) {
        QPdfWriter writer(&out);
        writer.setCreator(Creator);
        writer.setTitle(Title);
        writer.setResolution(PdfResolution);
        writer.setPageLayout(layoutFor(pages.page(0).size()));
        QPainter painter;
        if (!painter.begin(&writer))
            raiseError(err::PdfInUse, QStringLiteral("The PDF document cannot be started"));
        for (int i = 0; i < pages.count(); ++i) {
            const ReportPage& page = pages.page(i);
            if (i > 0) {
                writer.setPageLayout(layoutFor(page.size()));
                writer.newPage();
            }
            page.paint(painter, pageRect(page.size()));
        }
        painter.end();
    });
}

} // namespace tessaly::reports
