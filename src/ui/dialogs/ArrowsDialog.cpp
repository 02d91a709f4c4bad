#include "ArrowsDialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QSpinBox>

namespace tessaly::ui {

namespace {
QComboBox* headBox(int head, QWidget* parent) {
    auto* box = new QComboBox(parent);
    // In the order of the arrow codes.
    box->addItems({ArrowsDialog::tr("None"), ArrowsDialog::tr("Triangle"), ArrowsDialog::tr("Open"),
                   ArrowsDialog::tr("Tick"), ArrowsDialog::tr("Dot")});
    box->setCurrentIndex(std::clamp(head, 0, canvas::arrow::Count - 1));
    return box;
}
} // namespace

ArrowsDialog::ArrowsDialog(const canvas::ArrowOptions& options, QWidget* parent)
    : OptionsDialog(tr("Arrows"), parent) {
    start_ = headBox(options.start, this);
    end_ = headBox(options.end, this);
    size_ = new QSpinBox(this);
    size_->setRange(MinSize, MaxSize);
    size_->setSuffix(tr(" mm"));
    size_->setValue(options.size);
    form()->addRow(tr("Start:"), start_);
    form()->addRow(tr("End:"), end_);
    form()->addRow(tr("Size:"), size_);
}

canvas::ArrowOptions ArrowsDialog::options() const {
    return {start_->currentIndex(), end_->currentIndex(), size_->value()};
}

} // namespace tessaly::ui
