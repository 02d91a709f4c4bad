#include "ExportCommands.h"

#include "ExportLayouts.h"
#include "modReportExport.h"

#include "canvas/api/POLARDraw.h"
#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/frmMain.h"

namespace tessaly {

namespace {

// The save dialog's filters of the export entries.
const QString EmfFilter = QStringLiteral("Enhanced metafiles (*.emf)|*.emf|All Files (*.*)|*.*");
const QString PdfFilter = QStringLiteral("PDF (*.PDF)|*.PDF|All Files (*.*)|*.*");
const QString TiffFilter = QStringLiteral("TIFF (*.TIFF)|*.Tiff|All Files (*.*)|*.*");
const QString BmpFilter = QStringLiteral("Windows Bitmap (*.bmp)|*.bmp|All Files (*.*)|*.*");
const QString PngFilter = QStringLiteral("Portable Network Graphic (*.PNG)|*.png|All Files (*.*)|*.*");

enum class ReportKind { Pdf, Tiff };

// EMF, BMP and PNG: the dialog, and the canvas writes the file. Nothing is
// reported to the user and nothing of the drawing's file state changes.
void exportImage(frmMain& form, Application& app, const QString& filter, int format) {
    const QString path = common::ShowSaveDialog(app, filter);
    if (!path.isEmpty())
        late::call(form.canvas1(), "SaveFile", {fs::toHost(path), format});
}

// PDF and TIFF go through the report layout of the page's orientation.
void exportThroughReport(frmMain& form, Application& app, const QString& filter, ReportKind kind) {
    const QString path = common::ShowSaveDialog(app, filter);
    // The old scratch metafile goes before the path is tested: after a cancel too.
    const QString printTemp = app.home.appPath() + output::PrintTempName;
    if (common::FileExists(printTemp))
        fs::kill(printTemp);
    if (path.isEmpty())
        return;
    late::call(form.canvas1(), "SaveFile", {fs::toHost(printTemp), canvas::save_format::Emf});
    // The layout follows Page.Landscape alone, never the shape of the drawing.
    const bool landscape = vb::toBool(late::get(app.gPage, "Landscape"));
    output::modReportExport& module = output::reportExportModule(app);
    const reports::ReportPtr layout = module.layoutFor(landscape);
    if (kind == ReportKind::Pdf)
        module.ExportReportToPDF(*layout, path, true);
    else
        module.ExportReportToTIFF(*layout, path, true);
}

} // namespace

void registerExportCommands(frmMain& form, Application& app) {
    using commands::onClick;
    onClick(form, QStringLiteral("mnuFile_Export_EMF"),
            [&form, &app] { exportImage(form, app, EmfFilter, canvas::save_format::Emf); });
    onClick(form, QStringLiteral("mnuFile_Export_BMP"),
            [&form, &app] { exportImage(form, app, BmpFilter, canvas::save_format::Bmp); });
    onClick(form, QStringLiteral("mnuFile_Export_PNG"),
            [&form, &app] { exportImage(form, app, PngFilter, canvas::save_format::Png); });
    onClick(form, QStringLiteral("mnuFile_Export_PDF"),
            [&form, &app] { exportThroughReport(form, app, PdfFilter, ReportKind::Pdf); });
    onClick(form, QStringLiteral("mnuFile_Export_TIFF"),
            [&form, &app] { exportThroughReport(form, app, TiffFilter, ReportKind::Tiff); });
}

} // namespace tessaly
