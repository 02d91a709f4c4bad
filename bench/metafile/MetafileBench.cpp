// What users wait for in metafile output: writing a large plan's EMF,
// converting it to the placeable WMF, and playing it back.
#include "core/port/UiPort.h"
#include "core/runtime/Waiter.h"
#include "core/settings/SettingsStore.h"
#include "metafile/EmfPaintDevice.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/PrintMod.h"
#include "metafile/WmfWriter.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

// The drawing: this many lines over a page of this many device units, each
// line reaching this far right and down from its start.
constexpr int LineCount = 100000;
constexpr int PageWidth = 2000;
constexpr int PageHeight = 1400;
constexpr int LineDx = 150;
constexpr int LineDy = 80;

// The i-th line, kept inside the page.
QLine lineAt(int i) {
    const int x = (i * 37) % (PageWidth - LineDx);
    const int y = (i * 91) % (PageHeight - LineDy);
    return {x, y, x + LineDx, y + LineDy};
}
constexpr double MmPerInch = 25.4;
constexpr int Dpi = 96;

void ensureApplication() {
    static int argc = 1;
    static char name[] = "metafile_bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(argc, argv);
}

QByteArray linesEmf() {
    tessaly::metafile::EmfPaintDevice device(
        QSizeF(PageWidth * MmPerInch / Dpi, PageHeight * MmPerInch / Dpi), Dpi);
    QPainter painter(&device);
    painter.setPen(QPen(Qt::black, 1));
    for (int i = 0; i < LineCount; ++i)
        painter.drawLine(lineAt(i));
    painter.end();
    return device.toBytes();
}

// A UI port for the conversion: it answers every message with OK.
class SilentUi final : public tessaly::UiPort {
public:
    int msgBox(const QString&, int, const QString&) override { return tessaly::mb::ResultOk; }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<QString> openDialog(const tessaly::FileDialogRequest&) override { return {}; }
    std::optional<QString> saveDialog(const tessaly::FileDialogRequest&) override { return {}; }
    std::optional<QString> folderDialog(const tessaly::FileDialogRequest&) override { return {}; }
    std::optional<unsigned> colourDialog(unsigned) override { return {}; }
    bool canvasDialog(const QString&) override { return false; }
    void setMousePointer(int) override {}
    void doEvents() override {}
    QSize screenSize() override { return {1920, 1080}; }
    void showForm(tessaly::Form&, bool) override {}
    void unloadForm(tessaly::Form&) override {}
    void printed(const QString&) override {}
    void processEnded() override {}
};

void BM_WriteEmf100kLines(benchmark::State& state) {
    ensureApplication();
    qsizetype bytes = 0;
    for (auto _ : state) {
        const QByteArray emf = linesEmf();
        bytes = emf.size();
        benchmark::DoNotOptimize(emf.constData());
    }
    state.counters["emf_bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_WriteEmf100kLines)->Unit(benchmark::kMillisecond);

void BM_ConvertEmfToWmf100kLines(benchmark::State& state) {
    ensureApplication();
    const QByteArray emf = linesEmf();
    for (auto _ : state) {
        const QByteArray wmf = tessaly::metafile::convertEmfToWmf(emf, true);
        benchmark::DoNotOptimize(wmf.constData());
    }
}
BENCHMARK(BM_ConvertEmfToWmf100kLines)->Unit(benchmark::kMillisecond);

// The whole ConvertEMFtoWMF routine with its files; the waits are recorded, not slept.
void BM_ConvertEMFtoWMFRoutine100kLines(benchmark::State& state) {
    ensureApplication();
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("plan.emf"));
    QFile file(source);
    file.open(QIODevice::WriteOnly);
    file.write(linesEmf());
    file.close();
    SilentUi ui;
    tessaly::RecordingWaiter waiter;
    tessaly::SettingsStore settings(dir.filePath(QStringLiteral("user.ini")));
    tessaly::PrintMod module(ui, waiter, settings);
    for (auto _ : state)
        module.ConvertEMFtoWMF(source, dir.filePath(QStringLiteral("plan.wmf")));
}
BENCHMARK(BM_ConvertEMFtoWMFRoutine100kLines)->Unit(benchmark::kMillisecond);

void BM_PlayEmf100kLinesOnto2000x1400(benchmark::State& state) {
    ensureApplication();
    const QByteArray emf = linesEmf();
    QImage image(PageWidth, PageHeight, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        tessaly::metafile::playEmf(painter, emf, QRectF(0, 0, PageWidth, PageHeight));
    }
}
BENCHMARK(BM_PlayEmf100kLinesOnto2000x1400)->Unit(benchmark::kMillisecond);

// The same lines drawn straight with QPainter: what the rasteriser itself costs.
void BM_QPainterDirect100kLinesOnto2000x1400(benchmark::State& state) {
    ensureApplication();
    QImage image(PageWidth, PageHeight, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setPen(QPen(Qt::black, 0));
        for (int i = 0; i < LineCount; ++i)
            painter.drawLine(lineAt(i));
    }
}
BENCHMARK(BM_QPainterDirect100kLinesOnto2000x1400)->Unit(benchmark::kMillisecond);

} // namespace
