#pragma once

#include <QSizeF>
#include <QString>

class QPainter;
class QRectF;

namespace tessaly {

// A finished report as the desktop shows it: the viewer window pages through
// it, zooms, prints it through the print dialog and exports it. The report
// engine's reports implement it, so that the UI port needs nothing of the
// engine.
class ReportDocument {
public:
    virtual ~ReportDocument() = default;

    // The viewer window's caption and the name of the print job.
    virtual QString caption() const = 0;
    virtual QString documentName() const = 0;

    virtual int pageCount() const = 0;
    // The paper of page `index` (0-based) in twips, 1440 to the inch, as it
    // lies: a landscape page is wider than tall.
    virtual QSizeF pageSize(int index) const = 0;
    // Paints page `index` so that its paper fills `target`, in the painter's
    // coordinates. The paper itself is not filled.
    virtual void paintPage(int index, QPainter& painter, const QRectF& target) const = 0;

    // Writes every page to a PDF document or a multi-page TIFF (paths of the
    // logic). Run-time error 7001 when the file cannot be written.
    virtual void exportPdf(const QString& path) = 0;
    virtual void exportTiff(const QString& path) = 0;
};

} // namespace tessaly
