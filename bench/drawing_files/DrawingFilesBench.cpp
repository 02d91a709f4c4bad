// The drawing files as the user waits for them, through the main window's
// commands with a scripted UI port answering the dialogs: Open and Save As of
// a plan of 1,000,000 shapes, one backup of a plan of 100,000 shapes, the
// import of a 6000 by 4000 JPEG, and the image converter's walk over a 1000 by
// 1000 picture whose every pixel shows (the yields are the port's no-ops).
#include "canvas/api/POLARDraw.h"
#include "canvas/io/PdrFormat.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "core/forms/PictureBox.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "drawing_files/frmImageConverter.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tessaly;

namespace {

constexpr int LargePlanShapes = 1000000; // the plan opened and saved
constexpr int BackupPlanShapes = 100000; // the plan backed up
constexpr int PageMm = 4000;             // a square plan sheet of 4 m by 4 m
constexpr quint32 Seed = 42;
constexpr int BackupPeriod = 300;  // ticks between two backups
const QSize PhotoSize(6000, 4000); // the imported JPEG
constexpr int WalkSide = 1000;     // the converter's picture, pixels a side

// A plan of `count` lines and rectangles written as a drawing file.
void writePlan(const QString& path, int count) {
    QRandomGenerator rng(Seed);
    auto style = std::make_shared<const canvas::ShapeStyle>();
    std::vector<canvas::ShapePtr> shapes;
    shapes.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        canvas::ShapeData s;
        s.id = i + 1;
        s.style = style;
        const double x = rng.bounded(PageMm - 10.0), y = rng.bounded(PageMm - 10.0);
        const double w = 1 + rng.bounded(8.0), h = 1 + rng.bounded(8.0);
        if (i % 2 == 0) {
            s.type = canvas::shape_type::Line;
            canvas::geometry::setLineEnds(s, QPointF(x, y), QPointF(x + w, y + h));
        } else {
            s.type = canvas::shape_type::Rectangle;
            s.left = x;
            s.top = y;
            s.right = x + w;
            s.bottom = y + h;
        }
        shapes.push_back(std::make_shared<const canvas::ShapeData>(std::move(s)));
    }
    canvas::PageState state;
    state.page.width = PageMm;
    state.page.height = PageMm;
    state.drawingTag = QStringLiteral("50");
    if (!canvas::pdr::writeFile(path, shapes, state).isEmpty())
        qFatal("the plan cannot be written");
}

// Tessaly with its main window on an installed home.
struct Session {
    QTemporaryDir dir;
    AppHome home{dir.path()};
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;
    frmMain* main = nullptr;

    Session() {
        program::installHome(home);
        app = program::makeApplication(port, waiter, home);
        app->gTemplateFolder = home.templateDir() + QLatin1Char('/');
        main = &app->form<frmMain>();
    }
    void click(const char* menu) {
        main->raiseEvent(main->control(QString::fromLatin1(menu)), QStringLiteral("Click"));
    }
    int shapes() const { return app->gShapeList->get(QStringLiteral("Count")).toInt(); }
    void open(const QString& path) {
        port.queueOpen(path);
        click("mnuFile_Open");
    }
};

Session& session() {
    static Session s;
    return s;
}

const QString& largePlan() {
    static const QString path = [] {
        const QString p = session().dir.filePath(QStringLiteral("Large.pdr"));
        writePlan(p, LargePlanShapes);
        return p;
    }();
    return path;
}

void BM_OpenCommand(benchmark::State& state) {
    Session& s = session();
    const QString path = largePlan();
    for (auto _ : state)
        s.open(path);
    state.counters["shapes"] = s.shapes();
}
BENCHMARK(BM_OpenCommand)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SaveAsCommand(benchmark::State& state) {
    Session& s = session();
    s.open(largePlan());
    const QString out = s.dir.filePath(QStringLiteral("Saved.pdr"));
    for (auto _ : state) {
        s.port.queueSave(out);
        s.click("mnuFile_SaveAs");
    }
    state.counters["shapes"] = s.shapes();
    state.counters["bytes"] = static_cast<double>(QFileInfo(out).size());
}
BENCHMARK(BM_SaveAsCommand)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_OneBackup(benchmark::State& state) {
    Session& s = session();
    const QString plan = s.dir.filePath(QStringLiteral("Backup.pdr"));
    writePlan(plan, BackupPlanShapes);
    s.open(plan);
    for (auto _ : state) {
        s.app->gBackupTicks = BackupPeriod - 1;
        s.main->raiseEvent(s.main->Timer1, QStringLiteral("Timer"));
    }
    state.counters["shapes"] = s.shapes();
    state.counters["backups"] =
        static_cast<double>(QDir(s.dir.filePath(QStringLiteral("Temp"))).entryList(QDir::Files).size());
}
BENCHMARK(BM_OneBackup)->Unit(benchmark::kMillisecond);

void BM_ImportJpeg(benchmark::State& state) {
    Session& s = session();
    const QString photo = s.dir.filePath(QStringLiteral("Photo.jpg"));
    {
        QImage image(PhotoSize, QImage::Format_RGB32);
        QRandomGenerator rng(Seed);
        for (int y = 0; y < image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x)
                line[x] =
                    qRgb((x / 7) & 0xFF, (y / 5) & 0xFF, static_cast<int>(rng.bounded(64)) + (x ^ y) % 128);
        }
        image.save(photo, "JPEG", 85);
    }
    for (auto _ : state) {
        state.PauseTiming();
        s.click("mnuFile_New"); // a blank drawing, and no picture kept by the history
        s.port.queueOpen(photo);
        state.ResumeTiming();
        s.click("mnuFile_Import");
    }
    state.counters["shapes"] = s.shapes();
    state.counters["file MB"] = static_cast<double>(QFileInfo(photo).size()) / (1024.0 * 1024.0);
}
BENCHMARK(BM_ImportJpeg)->Unit(benchmark::kMillisecond);

void BM_ConverterWalk(benchmark::State& state) {
    Session& s = session();
    s.main->control(QStringLiteral("mnuFile_Convert")).setEnabled(true);
    s.click("mnuFile_Convert");
    auto& converter = s.app->form<frmImageConverter>();
    QImage picture(WalkSide, WalkSide, QImage::Format_RGB32);
    picture.fill(Qt::white); // nothing transparent: every pixel shows and yields
    converter.picture().setPicture(picture);
    for (auto _ : state)
        converter.raiseEvent(converter.cmdStart, QStringLiteral("Click"));
    state.counters["pixels"] = WalkSide * WalkSide;
    state.SetLabel(converter.Label3.caption().toStdString());
}
BENCHMARK(BM_ConverterWalk)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication qt(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
