#include "OptionsDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace tessaly::ui {

OptionsDialog::OptionsDialog(const QString& title, QWidget* parent) : QDialog(parent) {
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    form_ = new QFormLayout;
    layout->addLayout(form_);
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QPushButton* OptionsDialog::okButton() const {
    return buttons_->button(QDialogButtonBox::Ok);
}

QPushButton* OptionsDialog::cancelButton() const {
    return buttons_->button(QDialogButtonBox::Cancel);
}

void OptionsDialog::addWide(QWidget* widget) {
    form_->addRow(widget);
}

} // namespace tessaly::ui
