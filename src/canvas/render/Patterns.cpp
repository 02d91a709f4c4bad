#include "Patterns.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <cmath>
#include <map>
#include <mutex>
#include <tuple>

namespace tessaly::canvas {

namespace {

constexpr int TilePx = 64;             // pixels of a hatch tile
constexpr double TileMm = 8.0;         // page millimetres that a tile covers
constexpr double LinePx = 2.0;         // stroke of hatch lines in tile pixels
constexpr quint32 ConcreteSeed = 1234; // the concrete speckle is the same on every run
constexpr size_t MaxCachedTiles = 256; // tiles kept for reuse; a plan uses a few

QImage tile(Colour back) {
    QImage img(TilePx, TilePx, QImage::Format_ARGB32_Premultiplied);
    img.fill(qcolour(back));
    return img;
}

void drawSimple(QPainter& p, int pattern) {
    const int h = TilePx / 4;
    for (int i = 0; i < 4; ++i) {
        const double o = i * h + h / 2.0;
        if (pattern == hatch::Horizontal || pattern == hatch::Cross)
            p.drawLine(QPointF(0, o), QPointF(TilePx, o));
        if (pattern == hatch::Vertical || pattern == hatch::Cross)
            p.drawLine(QPointF(o, 0), QPointF(o, TilePx));
    }
    for (int i = -4; i <= 4; ++i) {
        const double o = i * h;
        if (pattern == hatch::ForwardDiagonal || pattern == hatch::DiagonalCross)
            p.drawLine(QPointF(o, TilePx), QPointF(o + TilePx, 0));
        if (pattern == hatch::BackwardDiagonal || pattern == hatch::DiagonalCross)
            p.drawLine(QPointF(o, 0), QPointF(o + TilePx, TilePx));
    }
}

void drawBrick(QPainter& p) {
    const int row = TilePx / 4;
    for (int r = 0; r < 4; ++r) {
        p.drawLine(QPointF(0, r * row), QPointF(TilePx, r * row));
        const double off = (r % 2) ? TilePx / 4.0 : 0.0;
        for (int c = 0; c < 2; ++c) {
            const double x = off + c * TilePx / 2.0;
            p.drawLine(QPointF(x, r * row), QPointF(x, (r + 1) * row));
        }
    }
}

void drawConcrete(QPainter& p) {
    QRandomGenerator rng(ConcreteSeed);
    for (int i = 0; i < 40; ++i)
        p.drawPoint(QPointF(rng.bounded(TilePx), rng.bounded(TilePx)));
    for (int i = 0; i < 5; ++i) {
        const QPointF c(rng.bounded(TilePx - 10) + 5, rng.bounded(TilePx - 10) + 5);
        QPolygonF tri;
        tri << c + QPointF(0, -4) << c + QPointF(4, 3) << c + QPointF(-4, 3) << c + QPointF(0, -4);
        p.drawPolyline(tri);
    }
}

void drawInsulation(QPainter& p) {
    QPainterPath path;
    const double amp = TilePx / 4.0;
    path.moveTo(0, TilePx / 2.0);
    for (int i = 0; i < 4; ++i) {
        const double x = i * TilePx / 4.0;
        path.cubicTo(x + TilePx / 16.0, TilePx / 2.0 - amp * ((i % 2) ? -1 : 1), x + 3 * TilePx / 16.0,
                     TilePx / 2.0 - amp * ((i % 2) ? -1 : 1), x + TilePx / 4.0, TilePx / 2.0);
    }
    p.drawPath(path);
}

void drawEarth(QPainter& p) {
    for (int i = 0; i < 3; ++i) {
        const double y = (i + 0.5) * TilePx / 3.0;
        p.drawLine(QPointF(TilePx * 0.1, y), QPointF(TilePx * 0.4, y));
        p.drawLine(QPointF(TilePx * 0.6, y - 6), QPointF(TilePx * 0.9, y - 6));
    }
    for (int i = -2; i <= 2; ++i)
        p.drawLine(QPointF(i * TilePx / 2.0, TilePx), QPointF(i * TilePx / 2.0 + TilePx, 0));
}

QImage hatchTile(int pattern, Colour fore, Colour back) {
    QImage img = tile(back);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(qcolour(fore), LinePx));
    switch (pattern) {
    case hatch::Brick:
        drawBrick(p);
        break;
    case hatch::Concrete:
        drawConcrete(p);
        break;
    case hatch::Insulation:
        drawInsulation(p);
        break;
    case hatch::Earth:
        drawEarth(p);
        break;
    default:
        drawSimple(p, pattern);
        break;
    }
    return img;
}

} // namespace

QBrush hatchBrush(int pattern, Colour fore, Colour back) {
    // The tiles drawn so far, by pattern and colours: a plan repeats few of
    // them over many shapes, and one shared image lets every output see that
    // two shapes hatch alike.
    static std::mutex lock;
    static std::map<std::tuple<int, Colour, Colour>, QImage> tiles;
    QImage img;
    {
        const std::lock_guard<std::mutex> guard(lock);
        const std::tuple<int, Colour, Colour> key{pattern, fore, back};
        auto it = tiles.find(key);
        if (it == tiles.end()) {
            if (tiles.size() >= MaxCachedTiles)
                tiles.clear();
            it = tiles.emplace(key, hatchTile(pattern, fore, back)).first;
        }
        img = it->second;
    }
    QBrush brush(img);
    brush.setTransform(QTransform::fromScale(TileMm / TilePx, TileMm / TilePx));
    return brush;
}

QBrush textureBrush(const CanvasPicture& picture) {
    QBrush brush(picture.image());
    const double w = picture.image().width();
    const double h = picture.image().height();
    if (w > 0 && h > 0)
        brush.setTransform(
            QTransform::fromScale(picture.widthHiMetric() / 100.0 / w, picture.heightHiMetric() / 100.0 / h));
    return brush;
}

} // namespace tessaly::canvas
