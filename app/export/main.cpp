// tessaly-export: converts drawings by the output's extension, through the
// same code as the File menu's exports, with the same page layouts for PDF
// and TIFF.
//
//   tessaly-export [--home DIR] [--dpi N] INPUT.pdr OUTPUT [INPUT.pdr OUTPUT ...]
//   tessaly-export [--home DIR] [--dpi N] --to EXT [--out DIR] INPUT.pdr [INPUT.pdr ...]
//
// OUTPUT ends in .pdf, .tiff (or .tif), .png, .bmp, .emf, .wmf or .svg. With
// --to every input is written beside itself (or into --out DIR) with that
// extension. --dpi sets the resolution of PNG and BMP (default: as the File
// menu writes them). Exit status: 0 when every file was written, 1 when one
// could not be (each is named on standard error; the others are still
// written), 2 for a wrong command line.
#include "ConsoleUiPort.h"

#include "canvas/api/POLARDraw.h"
#include "core/files/AppHome.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Waiter.h"
#include "output/DrawingExport.h"
#include "program/Program.h"
#include "workspace/Application.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTextStream>
#include <utility>
#include <vector>

namespace {

constexpr int ExitOk = 0;     // every file was written
constexpr int ExitFailed = 1; // at least one file could not be written
constexpr int ExitUsage = 2;  // the command line is wrong

const char* const Usage =
    "usage: tessaly-export [--home DIR] [--dpi N] INPUT.pdr OUTPUT [INPUT.pdr OUTPUT ...]\n"
    "       tessaly-export [--home DIR] [--dpi N] --to EXT [--out DIR] INPUT.pdr ...\n"
    "OUTPUT ends in .pdf, .tiff, .tif, .png, .bmp, .emf, .wmf or .svg\n";

struct CommandLine {
    QString home;
    double dpi = 0;
    QString to;
    QString outDir;
    std::vector<std::pair<QString, QString>> jobs; // input, output
};

int usage(QTextStream& err, const QString& why) {
    err << "tessaly-export: " << why << '\n' << Usage;
    err.flush();
    return ExitUsage;
}

// The command line taken apart; an error text when it is wrong.
QString parse(const QStringList& args, CommandLine& line) {
    QStringList files;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--home") && hasValue) {
            line.home = args[++i];
        } else if (a == QLatin1String("--dpi") && hasValue) {
            bool ok = false;
            line.dpi = args[++i].toDouble(&ok);
            if (!ok || line.dpi <= 0)
                return QStringLiteral("--dpi takes a number greater than 0");
        } else if (a == QLatin1String("--to") && hasValue) {
            line.to = args[++i];
            if (line.to.startsWith(QLatin1Char('.')))
                line.to.remove(0, 1);
        } else if (a == QLatin1String("--out") && hasValue) {
            line.outDir = args[++i];
        } else if (a.startsWith(QLatin1String("--"))) {
            return QStringLiteral("unknown option '%1'").arg(a);
        } else {
            files << a;
        }
    }
    if (files.isEmpty())
        return QStringLiteral("no drawing given");
    if (!line.to.isEmpty()) {
        for (const QString& input : files) {
            const QFileInfo in(input);
            const QString folder = line.outDir.isEmpty() ? in.path() : line.outDir;
            line.jobs.emplace_back(input,
                                   QDir(folder).filePath(in.completeBaseName() + QLatin1Char('.') + line.to));
        }
        return QString();
    }
    if (!line.outDir.isEmpty())
        return QStringLiteral("--out goes with --to");
    if (files.size() % 2 != 0)
        return QStringLiteral("each drawing needs an output file");
    for (qsizetype i = 0; i < files.size(); i += 2)
        line.jobs.emplace_back(files[i], files[i + 1]);
    return QString();
}

// Converts one drawing; false, with the reason on standard error, when it could not be written.
bool convert(tessaly::Application& app, tessaly::canvas::POLARDraw& canvas, const QString& input,
             const QString& output, const tessaly::output::DrawingExportOptions& options, QTextStream& err) {
    const auto fail = [&](const QString& file, const QString& why) {
        err << "tessaly-export: " << QDir::toNativeSeparators(file) << ": " << why << '\n';
        err.flush();
        return false;
    };
    const std::optional<tessaly::output::DrawingFormat> format = tessaly::output::formatOfPath(output);
    if (!format)
        return fail(output, QStringLiteral("unknown output type '.%1'").arg(QFileInfo(output).suffix()));
    try {
        canvas.loadFile(QFileInfo(input).absoluteFilePath());
    } catch (const tessaly::RuntimeError& e) {
        return fail(input, QStringLiteral("cannot read the drawing: %1").arg(e.description()));
    }
    try {
        tessaly::output::exportDrawing(app, canvas, QFileInfo(output).absoluteFilePath(), *format, options);
    } catch (const tessaly::RuntimeError& e) {
        return fail(output, e.description());
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    // The drawing is rendered through Qt Gui; no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication qapp(argc, argv);
    QTextStream err(stderr);

    CommandLine line;
    if (const QString wrong = parse(qapp.arguments(), line); !wrong.isEmpty())
        return usage(err, wrong);
    const tessaly::AppHome home =
        line.home.isEmpty() ? tessaly::AppHome::fromEnvironment() : tessaly::AppHome(line.home);
    if (!QDir().mkpath(home.dir()))
        return usage(err, QStringLiteral("the home %1 cannot be made").arg(home.dir()));

    // A batch does not wait: the pauses of the metafile conversion are for
    // the desktop's file system and are recorded only.
    tessaly::RecordingWaiter waiter;
    tessaly::exporter::ConsoleUiPort ui(err);
    const auto app = tessaly::program::makeApplication(ui, waiter, home);
    const auto canvas = tessaly::canvas::POLARDraw::create();
    tessaly::output::DrawingExportOptions options;
    options.dpi = line.dpi;

    int status = ExitOk;
    for (const auto& [input, output] : line.jobs)
        if (!convert(*app, *canvas, input, output, options, err))
            status = ExitFailed;
    return status;
}
