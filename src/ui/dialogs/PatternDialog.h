#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QListWidget;

namespace tessaly::ui {

class ColourButton;
class FillPreview;

// Pattern fill of the selected shapes: a hatch from the list, drawn in the
// fore colour on the back colour. The list shows each hatch as a sample,
// the plan hatches (brick, concrete, insulation, earth) among them.
class PatternDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit PatternDialog(const canvas::PatternOptions& options, QWidget* parent = nullptr);

    canvas::PatternOptions options() const;

    QListWidget* hatchList() const { return hatches_; }
    ColourButton* foreButton() const { return fore_; }
    ColourButton* backButton() const { return back_; }
    FillPreview* preview() const { return preview_; }

    // The names of the hatches, by code.
    static QStringList hatchNames();

private:
    void showSamples();

    QListWidget* hatches_;
    ColourButton* fore_;
    ColourButton* back_;
    FillPreview* preview_;
};

} // namespace tessaly::ui
