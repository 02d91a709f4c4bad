#include "FontOptionsDialog.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QSpinBox>

namespace tessaly::ui {

FontOptionsDialog::FontOptionsDialog(const canvas::FontOptions& options, QWidget* parent)
    : OptionsDialog(tr("Font"), parent), initialName_(options.name) {
    name_ = new QFontComboBox(this);
    name_->setEditable(true);
    name_->setCurrentFont(QFont(options.name));
    // A family that this desktop lacks keeps its name: the drawing asks for it, not for a substitute.
    name_->setEditText(options.name);
    size_ = new QSpinBox(this);
    size_->setRange(MinSize, MaxSize);
    size_->setSuffix(tr(" pt"));
    size_->setValue(options.size);
    bold_ = new QCheckBox(tr("Bold"), this);
    bold_->setChecked(options.bold);
    italic_ = new QCheckBox(tr("Italic"), this);
    italic_->setChecked(options.italic);
    form()->addRow(tr("Font:"), name_);
    form()->addRow(tr("Size:"), size_);
    form()->addRow(bold_);
    form()->addRow(italic_);
}

canvas::FontOptions FontOptionsDialog::options() const {
    const QString typed = name_->currentText().trimmed();
    return {typed.isEmpty() ? initialName_ : typed, size_->value(), bold_->isChecked(), italic_->isChecked()};
}

} // namespace tessaly::ui
