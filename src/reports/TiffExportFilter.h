#pragma once

#include <QString>

class QImage;

namespace tessaly::reports {

class PageCollection;
class ReportPage;

// Writes the pages of a run as one TIFF file with libtiff, a page of the file
// for each page of the report, rendered at `Resolution` dots per inch. A page
// that draws in black and white only (line work) is drawn with hard edges and
// stored as 1 bit a pixel with CCITT Group 4 compression; any other is drawn
// smoothed and stored as 8-bit grey when it shows only shades of grey, else
// as 24-bit colour, both Deflate-compressed.
class TiffExportFilter {
public:
    QString FileName;        // the target, a path of the logic
    double Resolution = 300; // dots per inch
    QString DocumentName;    // the name the file gives its pages; empty: none

    // Run-time error 7001 when the file cannot be written (see ExportTarget);
    // error 5 for a collection with no pages.
    void Export(const PageCollection& pages);
};

// A report page as a picture at `dpi`: white paper, what lies on the page,
// with or without smoothed edges. An RGB32 image.
QImage renderPage(const ReportPage& page, double dpi, bool smooth);

} // namespace tessaly::reports
