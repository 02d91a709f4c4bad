#include "DrawingExport.h"

#include "ExportLayouts.h"
#include "PngWriter.h"
#include "SvgWriter.h"
#include "modReportExport.h"

#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "reports/ExportTarget.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QTemporaryDir>

namespace tessaly::output {

namespace {

// Takes the canvas's file errors while a write runs, so that they reach the
// caller as run-time errors instead of a message box.
class WriteErrors final : public canvas::CanvasEvents {
public:
    explicit WriteErrors(canvas::POLARDraw& canvas) : canvas_(canvas) { canvas_.addEventSink(this); }
    ~WriteErrors() override { canvas_.removeEventSink(this); }
    WriteErrors(const WriteErrors&) = delete;
    WriteErrors& operator=(const WriteErrors&) = delete;

    void FileWriteError(const QString& text, int code, bool& handled) override {
        if (text_.isEmpty()) {
            text_ = text;
            code_ = code;
        }
        handled = true;
    }
    void raiseIfFailed() const {
        if (!text_.isEmpty())
            raiseError(code_, text_);
    }

private:
    canvas::POLARDraw& canvas_;
    QString text_;
    int code_ = 0;
};

void saveFromCanvas(canvas::POLARDraw& canvas, const QString& hostPath, int format) {
    WriteErrors errors(canvas);
    canvas.saveFile(hostPath, format);
    errors.raiseIfFailed();
}

// The page as an image file at `dpi`: a PNG by the writer for large pages, a BMP by Qt's.
QByteArray encodeImage(canvas::POLARDraw& canvas, double dpi, const char* format) {
    const QImage image = canvas.renderImage(dpi);
    if (qstrcmp(format, "PNG") == 0)
        return encodePng(image);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (!writer.write(image))
        raiseError(err::PathFileAccess,
                   QStringLiteral("The image cannot be encoded: %1").arg(writer.errorString()));
    return buffer.data();
}

void writeBytes(reports::ExportTarget& target, const QByteArray& bytes) {
    target.write([&bytes](QIODevice& out) { out.write(bytes); });
}

void exportThroughReport(Application& app, canvas::POLARDraw& canvas, const QString& path, bool pdf) {
    const QString printTemp = app.home.appPath() + PrintTempName;
    if (common::FileExists(printTemp))
        fs::kill(printTemp);
    saveFromCanvas(canvas, fs::toHost(printTemp), canvas::save_format::Emf);
    const bool landscape = vb::toBool(late::get(AutoPtr(canvas.page()), "Landscape"));
    modReportExport& module = reportExportModule(app);
    module.writeReport(*module.layoutFor(landscape), path, pdf);
}

void exportWmf(Application& app, canvas::POLARDraw& canvas, reports::ExportTarget& target) {
    QTemporaryDir scratch;
    if (!scratch.isValid())
        raiseError(err::PathFileAccess,
                   QStringLiteral("No scratch folder for the metafile: %1").arg(scratch.errorString()));
    const QString emf = scratch.filePath(QStringLiteral("drawing.emf"));
    const QString wmf = scratch.filePath(QStringLiteral("drawing.wmf"));
    saveFromCanvas(canvas, emf, canvas::save_format::Emf);
    app.printMod.ConvertEMFtoWMF(emf, wmf);
    QFile made(wmf);
    if (!made.open(QIODevice::ReadOnly))
        raiseError(err::PathFileAccess, QStringLiteral("The WMF was not made from the drawing's metafile"));
    writeBytes(target, made.readAll());
}

} // namespace

std::optional<DrawingFormat> formatOfPath(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("pdf"))
        return DrawingFormat::Pdf;
    if (suffix == QLatin1String("tif") || suffix == QLatin1String("tiff"))
        return DrawingFormat::Tiff;
    if (suffix == QLatin1String("png"))
        return DrawingFormat::Png;
    if (suffix == QLatin1String("bmp"))
        return DrawingFormat::Bmp;
    if (suffix == QLatin1String("emf"))
        return DrawingFormat::Emf;
    if (suffix == QLatin1String("wmf"))
        return DrawingFormat::Wmf;
    if (suffix == QLatin1String("svg"))
        return DrawingFormat::Svg;
    return std::nullopt;
}

void exportDrawing(Application& app, canvas::POLARDraw& canvas, const QString& path, DrawingFormat format,
                   const DrawingExportOptions& options) {
    reports::ExportTarget target(path);
    switch (format) {
    case DrawingFormat::Pdf:
        return exportThroughReport(app, canvas, path, true);
    case DrawingFormat::Tiff:
        return exportThroughReport(app, canvas, path, false);
    case DrawingFormat::Emf:
        return saveFromCanvas(canvas, target.hostPath(), canvas::save_format::Emf);
    case DrawingFormat::Png:
        if (options.dpi <= 0)
            return saveFromCanvas(canvas, target.hostPath(), canvas::save_format::Png);
        return writeBytes(target, encodeImage(canvas, options.dpi, "PNG"));
    case DrawingFormat::Bmp:
        if (options.dpi <= 0)
            return saveFromCanvas(canvas, target.hostPath(), canvas::save_format::Bmp);
        return writeBytes(target, encodeImage(canvas, options.dpi, "BMP"));
    case DrawingFormat::Wmf:
        return exportWmf(app, canvas, target);
    case DrawingFormat::Svg:
        return writeBytes(target, drawingToSvg(canvas));
    }
}

} // namespace tessaly::output
