#pragma once

#include "OptionsDialog.h"
#include "canvas/engine/CanvasDialogHost.h"

class QLabel;
class QLineEdit;

namespace tessaly::ui {

class FillPreview;

// Texture fill of the selected shapes: a picture file, tiled over the shape
// at its natural size. The picture is read when the user confirms; a file
// that is no picture keeps the dialog open with a message.
class TextureDialog final : public OptionsDialog {
    Q_OBJECT
public:
    explicit TextureDialog(const canvas::TextureOptions& options, QWidget* parent = nullptr);

    canvas::TextureOptions options() const { return options_; }

    QLineEdit* pathEdit() const { return path_; }
    FillPreview* preview() const { return preview_; }
    // Why the last file could not be taken, or empty.
    QString problem() const { return problem_; }

    // The file dialog's filter of the pictures the canvas reads.
    static QString pictureFilter();

    void accept() override;

private:
    void browse();
    // Reads the picture of the path box; false (with problem()) when it cannot.
    bool readPicture();

    canvas::TextureOptions options_;
    QLineEdit* path_;
    QLabel* status_;
    FillPreview* preview_;
    QString problem_;
};

} // namespace tessaly::ui
