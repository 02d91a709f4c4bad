#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QComboBox;
class QSpinBox;

namespace tessaly::ui {

class ColourButton;

// Line options of the selected shapes: style, colour and weight.
class LineDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit LineDialog(const canvas::LineOptions& options, QWidget* parent = nullptr);

    canvas::LineOptions options() const;

    QComboBox* styleBox() const { return style_; }
    ColourButton* colourButton() const { return colour_; }
    QSpinBox* weightBox() const { return weight_; }

    // The heaviest line the dialog offers, in line units (page millimetres).
    static constexpr int MaxWeight = 50;

private:
    QComboBox* style_;
    ColourButton* colour_;
    QSpinBox* weight_;
};

} // namespace tessaly::ui
