#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QCheckBox;
class QFontComboBox;
class QSpinBox;

namespace tessaly::ui {

// Font of the selected text shape: name, size in points, bold and italic.
class FontOptionsDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit FontOptionsDialog(const canvas::FontOptions& options, QWidget* parent = nullptr);

    canvas::FontOptions options() const;

    QFontComboBox* nameBox() const { return name_; }
    QSpinBox* sizeBox() const { return size_; }
    QCheckBox* boldBox() const { return bold_; }
    QCheckBox* italicBox() const { return italic_; }

    // Sizes the dialog offers, in points.
    static constexpr int MinSize = 1;
    static constexpr int MaxSize = 500;

private:
    QFontComboBox* name_;
    QSpinBox* size_;
    QCheckBox* bold_;
    QCheckBox* italic_;
    QString initialName_;
};

} // namespace tessaly::ui
