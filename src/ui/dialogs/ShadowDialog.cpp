#include "ShadowDialog.h"

#include "ColourButton.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QSpinBox>

namespace tessaly::ui {

namespace {
QSpinBox* offsetBox(int value, QWidget* parent) {
    auto* box = new QSpinBox(parent);
    box->setRange(-ShadowDialog::MaxOffset, ShadowDialog::MaxOffset);
    box->setSuffix(ShadowDialog::tr(" mm"));
    box->setValue(value);
    return box;
}
} // namespace

ShadowDialog::ShadowDialog(const canvas::ShadowOptions& options, QWidget* parent)
    : OptionsDialog(tr("Shadow"), parent) {
    visible_ = new QCheckBox(tr("Show shadow"), this);
    visible_->setChecked(options.visible);
    colour_ = new ColourButton(options.colour, this);
    offsetX_ = offsetBox(options.offsetX, this);
    offsetY_ = offsetBox(options.offsetY, this);
    form()->addRow(visible_);
    form()->addRow(tr("Colour:"), colour_);
    form()->addRow(tr("Offset right:"), offsetX_);
    form()->addRow(tr("Offset down:"), offsetY_);
}

canvas::ShadowOptions ShadowDialog::options() const {
    return {visible_->isChecked(), colour_->colour(), offsetX_->value(), offsetY_->value()};
}

} // namespace tessaly::ui
