#include "ColourButton.h"

#include "canvas/render/Patterns.h"

#include <QColorDialog>
#include <QPainter>
#include <QPixmap>

namespace tessaly::ui {

namespace {
// Size of the swatch on the button, in pixels.
constexpr int SwatchWidth = 40;
constexpr int SwatchHeight = 14;
// Colours of the canvas carry 24 bits: red in the low byte.
constexpr canvas::Colour ColourMask = 0xFFFFFF;
} // namespace

ColourButton::ColourButton(canvas::Colour colour, QWidget* parent) : QPushButton(parent), colour_(colour) {
    setColour(colour);
    connect(this, &QPushButton::clicked, this, &ColourButton::choose);
}

void ColourButton::setColour(canvas::Colour colour) {
    colour_ = colour & ColourMask;
    QPixmap swatch(SwatchWidth, SwatchHeight);
    swatch.fill(canvas::qcolour(colour_));
    QPainter p(&swatch);
    p.setPen(Qt::black);
    p.drawRect(0, 0, SwatchWidth - 1, SwatchHeight - 1);
    p.end();
    setIcon(QIcon(swatch));
    setIconSize(swatch.size());
    const QColor c = canvas::qcolour(colour_);
    setText(QStringLiteral("%1, %2, %3").arg(c.red()).arg(c.green()).arg(c.blue()));
    emit colourChanged(colour_);
}

void ColourButton::choose() {
    const QColor chosen = QColorDialog::getColor(canvas::qcolour(colour_), this);
    if (!chosen.isValid())
        return;
    setColour(static_cast<canvas::Colour>(chosen.red()) | static_cast<canvas::Colour>(chosen.green()) << 8 |
              static_cast<canvas::Colour>(chosen.blue()) << 16);
}

} // namespace tessaly::ui
