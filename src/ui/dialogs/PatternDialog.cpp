#include "PatternDialog.h"

#include "ColourButton.h"
#include "FillPreview.h"
#include "canvas/engine/ViewGeometry.h"

#include <QFormLayout>
#include <QListWidget>
#include <QPainter>

namespace tessaly::ui {

namespace {
// Size of a sample in the list, in pixels.
constexpr int SampleSize = 48;
// Samples in the list are drawn at twice the page's scale at 100%, so that a
// hatch shows several of its strokes.
constexpr double SampleScale = 2.0;
} // namespace

QStringList PatternDialog::hatchNames() {
    return {
        tr("Horizontal"),     tr("Vertical"), tr("Forward Diagonal"), tr("Backward Diagonal"), tr("Cross"),
        tr("Diagonal Cross"), tr("Brick"),    tr("Concrete"),         tr("Insulation"),        tr("Earth")};
}

PatternDialog::PatternDialog(const canvas::PatternOptions& options, QWidget* parent)
    : OptionsDialog(tr("Pattern"), parent) {
    hatches_ = new QListWidget(this);
    hatches_->setViewMode(QListView::IconMode);
    hatches_->setIconSize(QSize(SampleSize, SampleSize));
    hatches_->setMovement(QListView::Static);
    hatches_->setResizeMode(QListView::Adjust);
    hatches_->setGridSize(QSize(SampleSize + 84, SampleSize + 30));
    hatches_->setMinimumSize(5 * (SampleSize + 88), 2 * (SampleSize + 36));
    for (const QString& name : hatchNames())
        hatches_->addItem(new QListWidgetItem(name));
    hatches_->setCurrentRow(std::clamp(options.hatch, 0, canvas::hatch::Count - 1));
    fore_ = new ColourButton(options.fore, this);
    back_ = new ColourButton(options.back, this);
    preview_ = new FillPreview(this);
    form()->addRow(tr("Pattern:"), hatches_);
    form()->addRow(tr("Foreground:"), fore_);
    form()->addRow(tr("Background:"), back_);
    addWide(preview_);
    connect(hatches_, &QListWidget::currentRowChanged, this, &PatternDialog::showSamples);
    connect(fore_, &ColourButton::colourChanged, this, &PatternDialog::showSamples);
    connect(back_, &ColourButton::colourChanged, this, &PatternDialog::showSamples);
    showSamples();
}

canvas::PatternOptions PatternDialog::options() const {
    return {std::max(0, hatches_->currentRow()), fore_->colour(), back_->colour()};
}

void PatternDialog::showSamples() {
    canvas::FillStyle fill;
    fill.type = canvas::fill_type::Pattern;
    fill.colour = fore_->colour();
    fill.backColour = back_->colour();
    for (int i = 0; i < hatches_->count(); ++i) {
        fill.hatch = i;
        QPixmap sample(SampleSize, SampleSize);
        QPainter p(&sample);
        paintFill(p, QRectF(0, 0, SampleSize, SampleSize), fill, canvas::PixelsPerMmAt100 * SampleScale);
        p.setPen(Qt::darkGray);
        p.drawRect(0, 0, SampleSize - 1, SampleSize - 1);
        p.end();
        hatches_->item(i)->setIcon(QIcon(sample));
    }
    fill.hatch = std::max(0, hatches_->currentRow());
    preview_->setFill(fill);
}

} // namespace tessaly::ui
