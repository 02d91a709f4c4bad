#pragma once

#include <QString>

namespace tessaly::reports {

class PageCollection;

// Writes the pages of a run as a PDF document: one PDF page for each page,
// at the paper size and orientation of the report, the drawing as vectors and
// its text as real text with the fonts embedded.
class PdfExportFilter {
public:
    QString FileName; // the target, a path of the logic
    QString Title;    // the document's title in its properties; empty: none

    // Run-time error 7001 when the file cannot be written (see ExportTarget);
    // error 5 for a collection with no pages.
    void Export(const PageCollection& pages);
};

} // namespace tessaly::reports
