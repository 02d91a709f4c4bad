#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QCheckBox;
class QSpinBox;

namespace tessaly::ui {

class ColourButton;

// Shadow of the selected shapes: shown or not, its colour, and how far it
// falls to the right and down.
class ShadowDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit ShadowDialog(const canvas::ShadowOptions& options, QWidget* parent = nullptr);

    canvas::ShadowOptions options() const;

    QCheckBox* visibleBox() const { return visible_; }
    ColourButton* colourButton() const { return colour_; }
    QSpinBox* offsetXBox() const { return offsetX_; }
    QSpinBox* offsetYBox() const { return offsetY_; }

    // The farthest a shadow may fall, in page millimetres either way.
    static constexpr int MaxOffset = 100;

private:
    QCheckBox* visible_;
    ColourButton* colour_;
    QSpinBox* offsetX_;
    QSpinBox* offsetY_;
};

} // namespace tessaly::ui
