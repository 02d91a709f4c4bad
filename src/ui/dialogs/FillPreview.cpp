#include "FillPreview.h"

#include "canvas/engine/ViewGeometry.h"
#include "canvas/render/Patterns.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace tessaly::ui {

namespace {
// Size of the sample in pixels.
constexpr int SampleWidth = 220;
constexpr int SampleHeight = 90;
} // namespace

void paintFill(QPainter& painter, const QRectF& area, const canvas::FillStyle& fill, double pixelsPerMm) {
    painter.save();
    painter.setPen(Qt::NoPen);
    switch (fill.type) {
    case canvas::fill_type::Shade: {
        const QColor from = canvas::qcolour(fill.colour), to = canvas::qcolour(fill.backColour);
        if (fill.shade == canvas::shade::Radial) {
            QRadialGradient g(area.center(), std::max(area.width(), area.height()) / 2);
            g.setColorAt(0, from);
            g.setColorAt(1, to);
            painter.setBrush(g);
        } else {
            const bool across = fill.shade == canvas::shade::Horizontal;
            QLinearGradient g(area.topLeft(), across ? area.topRight() : area.bottomLeft());
            g.setColorAt(0, from);
            g.setColorAt(1, to);
            painter.setBrush(g);
        }
        painter.drawRect(area);
        break;
    }
    case canvas::fill_type::Pattern:
    case canvas::fill_type::Texture: {
        // Brushes of patterns and textures are made in page millimetres.
        painter.translate(area.topLeft());
        painter.scale(pixelsPerMm, pixelsPerMm);
        if (fill.type == canvas::fill_type::Pattern)
            painter.setBrush(canvas::hatchBrush(fill.hatch, fill.colour, fill.backColour));
        else if (fill.texture)
            painter.setBrush(canvas::textureBrush(*fill.texture));
        else
            painter.setBrush(canvas::qcolour(fill.colour));
        painter.drawRect(QRectF(0, 0, area.width() / pixelsPerMm, area.height() / pixelsPerMm));
        break;
    }
    default:
        painter.fillRect(area, canvas::qcolour(fill.colour));
        break;
    }
    painter.restore();
}

FillPreview::FillPreview(QWidget* parent) : QWidget(parent) {
    setMinimumSize(SampleWidth / 2, SampleHeight / 2);
}

void FillPreview::setFill(const canvas::FillStyle& fill) {
    fill_ = fill;
    update();
}

QSize FillPreview::sizeHint() const {
    return {SampleWidth, SampleHeight};
}

void FillPreview::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    paintFill(p, area, fill_, canvas::PixelsPerMmAt100);
    p.setPen(Qt::black);
    p.setBrush(Qt::NoBrush);
    p.drawRect(area);
}

} // namespace tessaly::ui
