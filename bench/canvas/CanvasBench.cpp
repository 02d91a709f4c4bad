// A plan of 1,000,000 lines and rectangles: opening, saving, painting a view
// and the whole page, hit tests and moving a shape with its undo step.
#include "canvas/api/POLARDraw.h"
#include "canvas/io/PdrFormat.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace tessaly::canvas;

namespace {

constexpr int ShapeCount = 1000000;
constexpr int PageMm = 4000;         // a square plan sheet of 4 m by 4 m
constexpr int ViewPx = 800;          // the window: 800 by 800 pixels
constexpr double OnePercentMm = 400; // a view of 400 by 400 mm is 1% of the sheet
constexpr quint32 Seed = 42;

struct Plan {
    QTemporaryDir dir;
    QString path;
    std::shared_ptr<POLARDraw> canvas;

    Plan() {
        path = dir.filePath("plan.pdr");
        {
            QRandomGenerator rng(Seed);
            auto lineStyle = std::make_shared<const ShapeStyle>();
            ShapeStyle wall;
            wall.fill.colour = 0xC0C0C0;
            wall.line.weight = 1;
            auto wallStyle = std::make_shared<const ShapeStyle>(wall);
            std::vector<ShapePtr> shapes;
            shapes.reserve(ShapeCount);
            for (int i = 0; i < ShapeCount; ++i) {
                ShapeData s;
                s.id = i + 1;
                const double x = rng.bounded(PageMm - 10.0), y = rng.bounded(PageMm - 10.0);
                const double w = 1 + rng.bounded(8.0), h = 1 + rng.bounded(8.0);
                if (i % 2 == 0) {
                    s.type = shape_type::Line;
                    s.style = lineStyle;
                    s.setFlag(shape_flag::Filled, false);
                    geometry::setLineEnds(s, QPointF(x, y), QPointF(x + w, y + h));
                } else {
                    s.type = shape_type::Rectangle;
                    s.style = wallStyle;
                    s.left = x;
                    s.top = y;
                    s.right = x + w;
                    s.bottom = y + h;
                }
                shapes.push_back(std::make_shared<const ShapeData>(std::move(s)));
            }
            PageState state;
            state.page.width = PageMm;
            state.page.height = PageMm;
            state.drawingTag = "50";
            pdr::writeFile(path, shapes, state);
        }
        canvas = POLARDraw::create();
        canvas->setViewportSize(QSize(ViewPx, ViewPx));
        canvas->loadFile(path);
    }
};

Plan& plan() {
    static Plan p;
    return p;
}

void BM_LoadFile(benchmark::State& state) {
    Plan& p = plan();
    for (auto _ : state)
        p.canvas->loadFile(p.path);
    state.counters["shapes"] = p.canvas->drawing().count();
}
BENCHMARK(BM_LoadFile)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SaveFile(benchmark::State& state) {
    Plan& p = plan();
    const QString out = p.dir.filePath("saved.pdr");
    for (auto _ : state)
        p.canvas->saveFile(out, 1);
    state.counters["bytes"] = static_cast<double>(QFileInfo(out).size());
}
BENCHMARK(BM_SaveFile)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_PaintOnePercentView(benchmark::State& state) {
    Plan& p = plan();
    POLARDraw& c = *p.canvas;
    // 400 mm across 800 pixels
    c.setZoom(static_cast<int>(ViewPx / OnePercentMm / PixelsPerMmAt100 * 100));
    c.setScroll(QPointF(1800, 1800));
    QImage image(ViewPx, ViewPx, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::gray);
        QPainter painter(&image);
        c.renderView(painter);
    }
    const size_t visible = c.drawing().positionsIn(c.viewGeometry().visiblePage()).size();
    state.counters["visible"] = static_cast<double>(visible);
    state.counters["zoom"] = c.zoom();
}
BENCHMARK(BM_PaintOnePercentView)->Unit(benchmark::kMillisecond);

void BM_PaintWholePage(benchmark::State& state) {
    Plan& p = plan();
    QImage image(2000, 2000, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        p.canvas->render(painter, QRectF(0, 0, 2000, 2000), QRectF(), RenderOptions{false, false, false});
    }
}
BENCHMARK(BM_PaintWholePage)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_HitTest(benchmark::State& state) {
    Plan& p = plan();
    QRandomGenerator rng(Seed + 1);
    const double tolerance = 4.0 / p.canvas->viewGeometry().pixelsPerMm();
    int hits = 0;
    for (auto _ : state) {
        const QPointF at(rng.bounded(double(PageMm)), rng.bounded(double(PageMm)));
        hits += p.canvas->drawing().topmostAt(at, tolerance) >= 0;
    }
    state.counters["hit share"] = static_cast<double>(hits) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_HitTest)->Unit(benchmark::kMicrosecond);

void BM_MoveOneShapeWithUndoStep(benchmark::State& state) {
    Plan& p = plan();
    QRandomGenerator rng(Seed + 2);
    for (auto _ : state) {
        const int id = 1 + static_cast<int>(rng.bounded(ShapeCount));
        p.canvas->moveShapes({id}, 0.5, -0.5); // one undo step of its own
    }
    state.counters["undo steps"] = static_cast<double>(p.canvas->document().undoCount());
}
BENCHMARK(BM_MoveOneShapeWithUndoStep)->Unit(benchmark::kMicrosecond);

} // namespace
