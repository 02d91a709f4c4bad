#include "LineDialog.h"

#include "ColourButton.h"

#include <QComboBox>
#include <QFormLayout>
#include <QSpinBox>

namespace tessaly::ui {

LineDialog::LineDialog(const canvas::LineOptions& options, QWidget* parent)
    : OptionsDialog(tr("Line"), parent) {
    style_ = new QComboBox(this);
    // In the order of the style codes.
    style_->addItems({tr("Solid"), tr("Dash"), tr("Dot"), tr("Dash Dot"), tr("Dash Dot Dot")});
    style_->setCurrentIndex(std::clamp(options.style, 0, canvas::line_style::Count - 1));
    colour_ = new ColourButton(options.colour, this);
    weight_ = new QSpinBox(this);
    weight_->setRange(0, MaxWeight);
    weight_->setSpecialValueText(tr("Hairline"));
    weight_->setSuffix(tr(" mm"));
    weight_->setValue(options.weight);
    form()->addRow(tr("Style:"), style_);
    form()->addRow(tr("Colour:"), colour_);
    form()->addRow(tr("Weight:"), weight_);
}

canvas::LineOptions LineDialog::options() const {
    return {style_->currentIndex(), colour_->colour(), weight_->value()};
}

} // namespace tessaly::ui
