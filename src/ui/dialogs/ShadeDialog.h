#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QComboBox;

namespace tessaly::ui {

class ColourButton;
class FillPreview;

// Shade fill of the selected shapes: from one colour to another, across,
// down or from the centre.
class ShadeDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit ShadeDialog(const canvas::ShadeOptions& options, QWidget* parent = nullptr);

    canvas::ShadeOptions options() const;

    ColourButton* fromButton() const { return from_; }
    ColourButton* toButton() const { return to_; }
    QComboBox* directionBox() const { return direction_; }
    FillPreview* preview() const { return preview_; }

private:
    void showPreview();

    ColourButton* from_;
    ColourButton* to_;
    QComboBox* direction_;
    FillPreview* preview_;
};

} // namespace tessaly::ui
