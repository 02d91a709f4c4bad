#include "Lens.h"

#include <algorithm>
#include <cmath>

namespace tessaly::canvas {

namespace {

struct Rgb {
    int r, g, b;
};

Rgb rgbOf(Colour c) {
    return {static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
            static_cast<int>((c >> 16) & 0xFF)};
}

int clamp8(double v) {
    return std::clamp(static_cast<int>(std::lround(v)), 0, 255);
}

int luminance(int r, int g, int b) {
    return (r * 299 + g * 587 + b * 114) / 1000;
}

Rgb mix(const Rgb& a, const Rgb& b, double t) {
    return {clamp8(a.r + (b.r - a.r) * t), clamp8(a.g + (b.g - a.g) * t), clamp8(a.b + (b.b - a.b) * t)};
}

Rgb heat(int level) {
    // blue, cyan, green, yellow, red at equal steps of brightness
    static const Rgb stops[] = {{0, 0, 255}, {0, 255, 255}, {0, 255, 0}, {255, 255, 0}, {255, 0, 0}};
    constexpr int Steps = 4;
    const double x = level / 255.0 * Steps;
    const int i = std::min(Steps - 1, static_cast<int>(x));
    return mix(stops[i], stops[i + 1], x - i);
}

Rgb filter(const Rgb& c, const LensStyle& lens, const Rgb& fill) {
    const double p = lens.percent / 100.0;
    const double amount = std::fabs(p);
    const Rgb start = rgbOf(lens.startColour);
    const Rgb end = rgbOf(lens.endColour);
    switch (lens.type) {
    case lens::Transparency:
        return mix(fill, c, amount);
    case lens::BrightenDarken:
        return p >= 0 ? mix(c, {255, 255, 255}, p) : mix(c, {0, 0, 0}, -p);
    case lens::AddColour:
        return {clamp8(c.r + start.r * amount), clamp8(c.g + start.g * amount),
                clamp8(c.b + start.b * amount)};
    case lens::LimitColour:
        return mix(c, {std::min(c.r, start.r), std::min(c.g, start.g), std::min(c.b, start.b)}, amount);
    case lens::CustomPalette:
        return mix(start, end, luminance(c.r, c.g, c.b) / 255.0);
    case lens::Invert:
        return {255 - c.r, 255 - c.g, 255 - c.b};
    case lens::TintedGrayscale:
        return mix({0, 0, 0}, start, luminance(c.r, c.g, c.b) / 255.0);
    case lens::Heatmap:
        return heat(luminance(c.r, c.g, c.b));
    default:
        return c;
    }
}

} // namespace

void applyLens(QImage& under, const LensStyle& lens, Colour fill) {
    if (under.format() != QImage::Format_ARGB32_Premultiplied)
        under = under.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const Rgb fillRgb = rgbOf(fill);
    for (int y = 0; y < under.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(under.scanLine(y));
        for (int x = 0; x < under.width(); ++x) {
            const QRgb px = qUnpremultiply(line[x]);
            const Rgb out = filter({qRed(px), qGreen(px), qBlue(px)}, lens, fillRgb);
            line[x] = qPremultiply(qRgba(out.r, out.g, out.b, qAlpha(px)));
        }
    }
}

} // namespace tessaly::canvas
