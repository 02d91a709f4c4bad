#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QComboBox;
class QSpinBox;

namespace tessaly::ui {

// Arrow heads of the selected lines: the head at each end and its length.
class ArrowsDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit ArrowsDialog(const canvas::ArrowOptions& options, QWidget* parent = nullptr);

    canvas::ArrowOptions options() const;

    QComboBox* startBox() const { return start_; }
    QComboBox* endBox() const { return end_; }
    QSpinBox* sizeBox() const { return size_; }

    // Lengths of an arrow head the dialog offers, in page millimetres.
    static constexpr int MinSize = 1;
    static constexpr int MaxSize = 50;

private:
    QComboBox* start_;
    QComboBox* end_;
    QSpinBox* size_;
};

} // namespace tessaly::ui
