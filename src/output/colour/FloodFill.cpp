#include "FloodFill.h"

#include <vector>

namespace tessaly::colour {

namespace {

// A run of a row, [left, right], filled already, whose neighbours on the row
// `y + dy` are still to be looked at.
struct Segment {
    int y;
    int left;
    int right;
    int dy;
};

// The rows and the test of one flood.
class Flood {
public:
    Flood(QImage& image, QRgb colour, QRgb fill, FloodMode mode)
        : bits_(image.bits()), stride_(image.bytesPerLine()), width_(image.width()), height_(image.height()),
          colour_(colour), fill_(fill), surface_(mode == FloodMode::Surface) {}

    bool inside(const QRgb* line, int x) const {
        const QRgb p = line[x];
        return surface_ ? p == colour_ : (p != colour_ && p != fill_);
    }
    bool inside(int x, int y) const { return inside(row(y), x); }

    FloodStats run(int x, int y) {
        push(y, x, x, 1);
        push(y + 1, x, x, -1);
        while (!stack_.empty()) {
            const Segment s = stack_.back();
            stack_.pop_back();
            scan(s);
        }
        return stats_;
    }

private:
    QRgb* row(int y) const { return reinterpret_cast<QRgb*>(bits_ + static_cast<qsizetype>(y) * stride_); }

    void push(int y, int left, int right, int dy) {
        const int next = y + dy;
        if (next < 0 || next >= height_)
            return;
        stack_.push_back({y, left, right, dy});
        if (stack_.size() > stats_.peakSegments)
            stats_.peakSegments = stack_.size();
    }

    // The neighbours on row s.y + s.dy of the filled run s: each run of them
    // inside the area is filled and its own neighbours are pushed, and where
    // a run reaches past s, the row s.y is looked at again beyond it.
    void scan(const Segment& s) {
        const int y = s.y + s.dy;
        QRgb* line = row(y);
        int x = s.left;
        while (x >= 0 && inside(line, x)) {
            line[x] = fill_;
            ++stats_.filled;
            --x;
        }
        int left = x + 1;
        // The run that reaches left from s.left, if any, goes on to the right
        // below; otherwise the first run inside s is looked for.
        bool inRun = x < s.left;
        if (inRun) {
            if (left < s.left)
                push(y, left, s.left - 1, -s.dy);
            x = s.left + 1;
        } else {
            x = skip(line, x + 1, s.right);
            left = x;
            inRun = x <= s.right;
        }
        while (inRun) {
            while (x < width_ && inside(line, x)) {
                line[x] = fill_;
                ++stats_.filled;
                ++x;
            }
            push(y, left, x - 1, s.dy);
            if (x > s.right + 1)
                push(y, s.right + 1, x - 1, -s.dy);
            x = skip(line, x + 1, s.right);
            left = x;
            inRun = x <= s.right;
        }
    }

    // The first x from `x` up to `right` that lies inside the area, or right + 1.
    int skip(const QRgb* line, int x, int right) const {
        while (x <= right && !inside(line, x))
            ++x;
        return x;
    }

    uchar* bits_;
    qsizetype stride_;
    int width_;
    int height_;
    QRgb colour_;
    QRgb fill_;
    bool surface_;
    std::vector<Segment> stack_;
    FloodStats stats_;
};

} // namespace

FloodStats floodFill(QImage& image, int x, int y, QRgb colour, QRgb fill, FloodMode mode) {
    if (image.isNull() || x < 0 || y < 0 || x >= image.width() || y >= image.height())
        return {};
    if (image.format() != QImage::Format_RGB32)
        image = image.convertToFormat(QImage::Format_RGB32);
    colour |= 0xFF000000u;
    fill |= 0xFF000000u;
    if (mode == FloodMode::Surface && colour == fill)
        return {};
    Flood flood(image, colour, fill, mode);
    if (!flood.inside(x, y))
        return {};
    return flood.run(x, y);
}

} // namespace tessaly::colour
