// What users wait for when a large plan leaves Tessaly: the exports of a plan
// of 100,000 shapes, each through the same code as the File menu (PDF and
// TIFF through PrintTemp.emf and the report layout), as tessaly-export runs
// them. The plan is the one bench/export/make_plan.py writes: 100,000 lines,
// rectangles, texts and hatched rectangles on an A1 sheet.
#include "canvas/api/POLARDraw.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "output/DrawingExport.h"
#include "program/Program.h"
#include "workspace/Application.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

using tessaly::output::DrawingFormat;

constexpr int ShapeCount = 100000;
constexpr double PageWidth = 841;  // the plan's A1 sheet, landscape, mm
constexpr double PngPixels = 8192; // the long side of the PNG
constexpr double MmPerInch = 25.4;

struct Bench {
    QTemporaryDir dir;
    tessaly::ScriptedUiPort ui; // no one answers: every message box takes its default
    tessaly::RecordingWaiter waiter;
    std::unique_ptr<tessaly::Application> app;
    std::shared_ptr<tessaly::canvas::POLARDraw> canvas;

    Bench() {
        app = tessaly::program::makeApplication(ui, waiter, tessaly::AppHome(dir.filePath("home")));
        QDir().mkpath(dir.filePath("home"));
        // The plan of bench/export/make_plan.py, as the comparison with other programs uses it.
        QProcess make;
        make.start(QStringLiteral("python3"),
                   {QStringLiteral(TESSALY_SOURCE_DIR "/bench/export/make_plan.py"),
                    QStringLiteral("--shapes"), QString::number(ShapeCount), dir.filePath("plan")});
        if (!make.waitForFinished(120000) || make.exitCode() != 0)
            qFatal("make_plan.py failed: %s", make.readAllStandardError().constData());
        canvas = tessaly::canvas::POLARDraw::create();
        canvas->loadFile(dir.filePath("plan/plan.pdr"));
    }
};

Bench& bench() {
    static Bench b;
    return b;
}

void run(benchmark::State& state, DrawingFormat format, const char* name, double dpi = 0) {
    Bench& b = bench();
    const QString path = b.dir.filePath(QString::fromLatin1(name));
    for (auto _ : state)
        tessaly::output::exportDrawing(*b.app, *b.canvas, path, format, {dpi});
    state.counters["shapes"] = b.canvas->drawing().count();
    state.counters["bytes"] = static_cast<double>(QFileInfo(path).size());
}

void BM_Pdf(benchmark::State& state) {
    run(state, DrawingFormat::Pdf, "plan.pdf");
}
BENCHMARK(BM_Pdf)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Tiff300Dpi(benchmark::State& state) {
    run(state, DrawingFormat::Tiff, "plan.tiff");
}
BENCHMARK(BM_Tiff300Dpi)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Png8192Pixels(benchmark::State& state) {
    run(state, DrawingFormat::Png, "plan.png", PngPixels / (PageWidth / MmPerInch));
}
BENCHMARK(BM_Png8192Pixels)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Emf(benchmark::State& state) {
    run(state, DrawingFormat::Emf, "plan.emf");
}
BENCHMARK(BM_Emf)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Svg(benchmark::State& state) {
    run(state, DrawingFormat::Svg, "plan.svg");
}
BENCHMARK(BM_Svg)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Wmf(benchmark::State& state) {
    run(state, DrawingFormat::Wmf, "plan.wmf");
}
BENCHMARK(BM_Wmf)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
