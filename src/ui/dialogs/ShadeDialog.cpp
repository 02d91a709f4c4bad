#include "ShadeDialog.h"

#include "ColourButton.h"
#include "FillPreview.h"

#include <QComboBox>
#include <QFormLayout>

namespace tessaly::ui {

ShadeDialog::ShadeDialog(const canvas::ShadeOptions& options, QWidget* parent)
    : OptionsDialog(tr("Shade"), parent) {
    from_ = new ColourButton(options.from, this);
    to_ = new ColourButton(options.to, this);
    direction_ = new QComboBox(this);
    // In the order of the direction codes.
    direction_->addItems({tr("Horizontal"), tr("Vertical"), tr("Radial")});
    direction_->setCurrentIndex(std::clamp(options.direction, 0, canvas::shade::Count - 1));
    preview_ = new FillPreview(this);
    form()->addRow(tr("From colour:"), from_);
    form()->addRow(tr("To colour:"), to_);
    form()->addRow(tr("Direction:"), direction_);
    addWide(preview_);
    connect(from_, &ColourButton::colourChanged, this, &ShadeDialog::showPreview);
    connect(to_, &ColourButton::colourChanged, this, &ShadeDialog::showPreview);
    connect(direction_, &QComboBox::currentIndexChanged, this, &ShadeDialog::showPreview);
    showPreview();
}

canvas::ShadeOptions ShadeDialog::options() const {
    return {from_->colour(), to_->colour(), direction_->currentIndex()};
}

void ShadeDialog::showPreview() {
    canvas::FillStyle fill;
    fill.type = canvas::fill_type::Shade;
    fill.colour = from_->colour();
    fill.backColour = to_->colour();
    fill.shade = direction_->currentIndex();
    preview_->setFill(fill);
}

} // namespace tessaly::ui
