#include "TextureDialog.h"

#include "FillPreview.h"
#include "canvas/model/CanvasPicture.h"
#include "core/runtime/RuntimeError.h"

#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace tessaly::ui {

QString TextureDialog::pictureFilter() {
    return tr("Pictures (*.bmp *.png *.jpg *.jpeg *.gif *.tif *.tiff *.emf *.wmf);;All files (*)");
}

TextureDialog::TextureDialog(const canvas::TextureOptions& options, QWidget* parent)
    : OptionsDialog(tr("Texture"), parent), options_(options) {
    path_ = new QLineEdit(this);
    auto* browse = new QPushButton(tr("Browse..."), this);
    auto* row = new QHBoxLayout;
    row->addWidget(path_, 1);
    row->addWidget(browse);
    status_ = new QLabel(this);
    preview_ = new FillPreview(this);
    form()->addRow(tr("Picture:"), row);
    form()->addRow(status_);
    addWide(preview_);
    connect(browse, &QPushButton::clicked, this, &TextureDialog::browse);
    connect(path_, &QLineEdit::editingFinished, this, [this] {
        if (!path_->text().isEmpty())
            readPicture();
    });
    canvas::FillStyle fill;
    fill.type = canvas::fill_type::Texture;
    fill.texture = options_.picture;
    preview_->setFill(fill);
    if (options_.picture)
        status_->setText(tr("The present texture: %1 x %2 pixels")
                             .arg(options_.picture->image().width())
                             .arg(options_.picture->image().height()));
}

void TextureDialog::browse() {
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Texture"), path_->text(), pictureFilter());
    if (chosen.isEmpty())
        return;
    path_->setText(chosen);
    readPicture();
}

bool TextureDialog::readPicture() {
    try {
        canvas::PicturePtr picture = canvas::CanvasPicture::fromFile(path_->text());
        problem_.clear();
        options_.picture = std::move(picture);
        status_->setText(tr("%1 x %2 pixels")
                             .arg(options_.picture->image().width())
                             .arg(options_.picture->image().height()));
        canvas::FillStyle fill;
        fill.type = canvas::fill_type::Texture;
        fill.texture = options_.picture;
        preview_->setFill(fill);
        return true;
    } catch (const RuntimeError& e) {
        problem_ = e.description();
        status_->setText(problem_);
        return false;
    }
}

void TextureDialog::accept() {
    // With no file named the present texture stays.
    if (!path_->text().isEmpty() && !readPicture()) {
        QMessageBox::warning(this, windowTitle(), problem_);
        return;
    }
    OptionsDialog::accept();
}

} // namespace tessaly::ui
