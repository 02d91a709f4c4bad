// tessaly-libraries OUTDIR [--png]: writes every symbol library at every
// scale, the blank drawings and the page templates into OUTDIR. With --png it
// also renders each library at 1:50 and 1:100 (and each scale-free library)
// and the two page templates into OUTDIR/png for review.

#include "canvas/api/POLARDraw.h"
#include "core/runtime/RuntimeError.h"
#include "templates/library/BlankDrawings.h"
#include "templates/library/DrawingSet.h"
#include "templates/library/LibraryDrawing.h"

#include <QDir>
#include <QGuiApplication>
#include <array>
#include <cstdio>

namespace {

constexpr int ExitOk = 0;
constexpr int ExitUsage = 2;
constexpr int ExitFailed = 1;
constexpr std::array<int, 2> ReviewScales = {50, 100}; // the scales rendered for review

void renderLibraries(const QString& folder) {
    using namespace tessaly::templates;
    QDir().mkpath(folder);
    for (const Library& lib : builtInCatalogue().libraries) {
        if (!lib.scaled) {
            buildLibraryDrawing(lib, 0)->saveFile(
                QDir(folder).filePath(lib.fileName(0) + QStringLiteral(".png")),
                tessaly::canvas::save_format::Png);
            continue;
        }
        for (int scale : ReviewScales)
            buildLibraryDrawing(lib, scale)
                ->saveFile(QDir(folder).filePath(lib.fileName(scale) + QStringLiteral(".png")),
                           tessaly::canvas::save_format::Png);
    }
    buildPageTemplate(false)->saveFile(QDir(folder).filePath(PortraitTemplateFile + QStringLiteral(".png")),
                                       tessaly::canvas::save_format::Png);
    buildPageTemplate(true)->saveFile(QDir(folder).filePath(LandscapeTemplateFile + QStringLiteral(".png")),
                                      tessaly::canvas::save_format::Png);
}

} // namespace

int main(int argc, char** argv) {
    // The generator draws off screen: it needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication qt(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    const bool png = args.removeAll(QStringLiteral("--png")) > 0;
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: tessaly-libraries OUTDIR [--png]\n");
        return ExitUsage;
    }
    const QString out = args.front();
    try {
        if (!QDir().mkpath(out))
            tessaly::raiseError(tessaly::err::PathNotFound,
                                QStringLiteral("Cannot create the folder %1").arg(out));
        const QStringList written =
            tessaly::templates::writeDrawingFiles(tessaly::templates::builtInCatalogue(), out, out);
        std::printf("%lld files written to %s\n", static_cast<long long>(written.size()), qPrintable(out));
        if (png)
            renderLibraries(QDir(out).filePath(QStringLiteral("png")));
    } catch (const tessaly::RuntimeError& e) {
        std::fprintf(stderr, "tessaly-libraries: %d %s\n", e.number(), qPrintable(e.description()));
        return ExitFailed;
    }
    return ExitOk;
}
