#pragma once

#include "canvas/model/ShapeStyle.h"

#include <QPushButton>

namespace tessaly::ui {

// A button that shows a colour and lets the user pick another in the colour dialog.
class ColourButton final : public QPushButton {
    Q_OBJECT
public:
    explicit ColourButton(canvas::Colour colour, QWidget* parent = nullptr);

    canvas::Colour colour() const { return colour_; }
    void setColour(canvas::Colour colour);

signals:
    void colourChanged(canvas::Colour colour);

private:
    void choose();

    canvas::Colour colour_;
};

} // namespace tessaly::ui
