// What the install step costs: every library at every scale, the blank
// drawings and the page templates, made from the catalogue and saved. Every
// test script of the program runs the install step on a fresh home.

#include "core/files/AppHome.h"
#include "templates/Drawings.h"
#include "templates/library/CatalogueParser.h"
#include "templates/library/DrawingSet.h"
#include "templates/library/LibraryDrawing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tessaly;
using namespace tessaly::templates;

namespace {

// The install step's drawings on a fresh home, every iteration on an empty template folder.
void BM_InstallDrawingsFreshHome(benchmark::State& state) {
    builtInCatalogue(); // read once per process, as in the program
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir tmp;
        const AppHome home(tmp.path());
        QDir().mkpath(home.templateDir());
        state.ResumeTiming();
        installDrawings(home);
        state.PauseTiming();
        tmp.remove();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_InstallDrawingsFreshHome)->Unit(benchmark::kMillisecond);

// The first install of a process: the catalogue is read and parsed as well.
void BM_ParseCatalogue(benchmark::State& state) {
    QFile f(QStringLiteral(":/symbols/1-doors.sym"));
    f.open(QIODevice::ReadOnly);
    const QString text = QString::fromUtf8(f.readAll());
    for (auto _ : state)
        benchmark::DoNotOptimize(parseCatalogue(text));
}
BENCHMARK(BM_ParseCatalogue)->Unit(benchmark::kMicrosecond);

// One library drawing in memory, without the file.
void BM_BuildDoors50(benchmark::State& state) {
    const Library* doors = builtInCatalogue().find(QStringLiteral("Standard Doors"));
    for (auto _ : state)
        benchmark::DoNotOptimize(buildLibraryDrawing(*doors, 50));
}
BENCHMARK(BM_BuildDoors50)->Unit(benchmark::kMicrosecond);

} // namespace
