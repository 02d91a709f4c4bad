#include "ColourProbe.h"

#include "ReportPage.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/EmfParser.h"
#include "metafile/Picture.h"
#include "metafile/WmfParser.h"

#include <variant>

namespace tessaly::reports {

namespace {

// The record option of a text whose box is filled with the background colour.
constexpr uint32_t EtoOpaque = 0x0002;
// The largest side of a bitmap picture looked at pixel by pixel.
constexpr int ProbeSide = 1024;

bool isBlackOrWhite(const QColor& colour) {
    const QRgb rgb = colour.rgb() & 0xFFFFFFu;
    return rgb == 0 || rgb == 0xFFFFFFu;
}

bool imageIsBlackAndWhite(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x)
            if (!isBlackOrWhite(QColor::fromRgb(row[x])))
                return false;
    }
    return true;
}

bool pictureIsBlackAndWhite(const metafile::Picture& picture) {
    ColourProbe probe;
    try {
        switch (picture.kind()) {
        case metafile::Picture::Kind::Emf:
            metafile::parseEmf(picture.data(), probe);
            return probe.onlyBlackAndWhite();
        case metafile::Picture::Kind::Wmf:
            metafile::parseWmf(picture.data(), &probe);
            return probe.onlyBlackAndWhite();
        case metafile::Picture::Kind::Bitmap: {
            const QSize natural = picture.pixelSize();
            return imageIsBlackAndWhite(picture.toImage(
                natural.scaled(QSize(ProbeSide, ProbeSide), Qt::KeepAspectRatio).boundedTo(natural)));
        }
        default:
            return true;
        }
    } catch (const RuntimeError&) {
        return false; // a damaged picture shows only part of itself: no claim on its colours
    }
}

struct ItemProbe {
    bool operator()(const PageText& t) const { return isBlackOrWhite(t.colour); }
    bool operator()(const PageLine& l) const { return isBlackOrWhite(l.colour); }
    bool operator()(const PagePicture& p) const { return !p.picture || pictureIsBlackAndWhite(*p.picture); }
};

} // namespace

void ColourProbe::note(const QColor& colour) {
    if (!isBlackOrWhite(colour))
        blackAndWhite_ = false;
}

void ColourProbe::note(const QImage& image) {
    if (blackAndWhite_ && !imageIsBlackAndWhite(image))
        blackAndWhite_ = false;
}

void ColourProbe::stroke() {
    if (!pen_.null)
        note(pen_.colour);
}

void ColourProbe::fill() {
    switch (brush_.kind) {
    case metafile::GdiBrush::Kind::Null:
        break;
    case metafile::GdiBrush::Kind::Hatched:
        note(brush_.colour);
        if (opaque_)
            note(background_);
        break;
    case metafile::GdiBrush::Kind::Pattern:
        if (brush_.pattern.isNull())
            note(brush_.colour);
        else
            note(brush_.pattern);
        break;
    default:
        note(brush_.colour);
        break;
    }
}

void ColourProbe::path(const QPainterPath&, bool stroked, bool filled) {
    if (filled)
        fill();
    if (stroked)
        stroke();
}

void ColourProbe::text(const QPointF&, const QString&, const std::vector<double>&, uint32_t options,
                       const QRectF& box) {
    note(text_);
    if (opaque_ || ((options & EtoOpaque) && box.isValid()))
        note(background_);
}

bool pageIsBlackAndWhite(const ReportPage& page) {
    const ItemProbe probe;
    for (const PageItem& item : page.items())
        if (!std::visit(probe, item))
            return false;
    return true;
}

} // namespace tessaly::reports
