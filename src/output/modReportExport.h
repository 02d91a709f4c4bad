#pragma once

#include "reports/ActiveReport.h"
#include "reports/PdfExportFilter.h"
#include "reports/TiffExportFilter.h"

#include "core/runtime/AutoObject.h"

#include <map>
#include <memory>

namespace tessaly {
class ApplicationBase;
}

namespace tessaly::output {

// The name the module is reached by from the logic and from scripts.
inline const QString ReportExportModuleName = QStringLiteral("modReportExport");

// The texts of the report exports.
inline const QString PdfCompleted = QStringLiteral("Your PDF Export Has Now Been Compeleted");
inline const QString TiffCompleted = QStringLiteral("Your TIFF Export Has Now Been Compeleted");
inline const QString PdfInUseMessage = QStringLiteral(
    "Tessaly is trying to save changes to the current projects PDF output, However it is in use "
    "and cannot be overwritten.");

// The report export module: the PDF and TIFF exports of a report layout, the
// filters it holds while it exports, and the instances of the two page
// layouts, each created on first use and gone when an export unloads it.
//
// One module belongs to each run of the program; it is reached by name as
// "modReportExport" (see reportExportModule), and its two routines as
// ExportReportToPDF and ExportReportToTIFF.
class modReportExport final : public AutoObject {
public:
    explicit modReportExport(ApplicationBase& app);
    ~modReportExport() override;

    // The instance of a layout by its name, created on first use.
    reports::ReportPtr layout(const QString& name);
    // The layout for a page: ExportOuputLandscape when `landscape`, else ExportOuputPortrate.
    reports::ReportPtr layoutFor(bool landscape);
    // The instance of a layout if one exists, without creating it.
    reports::ReportPtr loadedLayout(const QString& name) const;

    // Runs the layout and writes its pages as a PDF to `path`. Error 7001
    // (the file is held, read-only or in a folder that cannot be written)
    // shows the in-use message and the routine goes on with its next step, so
    // that the completion message still follows; any other error ends it
    // silently. With `notify` the completion message ends it.
    void ExportReportToPDF(reports::ActiveReport& report, const QString& path, bool notify);
    // The same as a TIFF, with no error trap: every error goes to the caller.
    void ExportReportToTIFF(reports::ActiveReport& report, const QString& path, bool notify);

    // Runs the layout and writes its pages with the PDF or the TIFF filter
    // and unloads it, as the two routines do, but with no message and every
    // error going to the caller: the headless converter's way.
    void writeReport(reports::ActiveReport& report, const QString& path, bool pdf);

    // The filters while an export holds them.
    const reports::PdfExportFilter* pdfFilter() const { return pdfFilter_.get(); }
    const reports::TiffExportFilter* tiffFilter() const { return tiffFilter_.get(); }

    QString typeName() const override { return ReportExportModuleName; }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

    // The routines' arguments from the logic or a script: the layout (the
    // object, or its name), the path and notify.
    void callExport(bool pdf, QVariantList& args);

private:
    ApplicationBase& app_;
    std::map<QString, reports::ReportPtr> layouts_;
    std::unique_ptr<reports::PdfExportFilter> pdfFilter_;
    std::unique_ptr<reports::TiffExportFilter> tiffFilter_;
};

// The module of a run of the program; error 438 when the output subsystem is not joined.
modReportExport& reportExportModule(ApplicationBase& app);

} // namespace tessaly::output
