#include "QtCanvasDialogHost.h"

#include "ArrowsDialog.h"
#include "FontOptionsDialog.h"
#include "LineDialog.h"
#include "PatternDialog.h"
#include "ShadeDialog.h"
#include "ShadowDialog.h"
#include "TextureDialog.h"
#include "canvas/api/POLARDraw.h"

#include <QApplication>
#include <QMessageBox>
#include <QPageLayout>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>

namespace tessaly::ui {

namespace {
// Shows `dialog` modally; on OK copies its values into `options`.
template <class Dialog, class Options> bool run(Dialog& dialog, Options& options) {
    if (dialog.exec() != QDialog::Accepted)
        return false;
    options = dialog.options();
    return true;
}
} // namespace

QtCanvasDialogHost::QtCanvasDialogHost(QWidget* parent) : parent_(parent) {}

QtCanvasDialogHost::~QtCanvasDialogHost() = default;

bool QtCanvasDialogHost::editLine(canvas::LineOptions& options) {
    LineDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editArrows(canvas::ArrowOptions& options) {
    ArrowsDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editShade(canvas::ShadeOptions& options) {
    ShadeDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editPattern(canvas::PatternOptions& options) {
    PatternDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editTexture(canvas::TextureOptions& options) {
    TextureDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editShadow(canvas::ShadowOptions& options) {
    ShadowDialog dialog(options, parent_);
    return run(dialog, options);
}

bool QtCanvasDialogHost::editFont(canvas::FontOptions& options) {
    FontOptionsDialog dialog(options, parent_);
    return run(dialog, options);
}

QPrinter& QtCanvasDialogHost::printer(const canvas::POLARDraw& canvas) {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setPageSize(QPageSize(QPageSize::A4));
        // Page millimetres are paper millimetres from the paper's corner.
        printer_->setFullPage(true);
        printer_->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
        matchOrientation(canvas);
    }
    return *printer_;
}

void QtCanvasDialogHost::matchOrientation(const canvas::POLARDraw& canvas) {
    const canvas::PageSettings& page = canvas.drawing().state().page;
    printer_->setPageOrientation(page.width > page.height ? QPageLayout::Landscape : QPageLayout::Portrait);
}

void QtCanvasDialogHost::pageSetup(canvas::POLARDraw& canvas) {
    QPrinter& paper = printer(canvas);
    // The page may have been turned since the last setup.
    matchOrientation(canvas);
    QPageSetupDialog dialog(&paper, parent_);
    dialog.exec();
}

void QtCanvasDialogHost::print(canvas::POLARDraw& canvas, bool& showDialog) {
    QPrinter& paper = printer(canvas);
    if (showDialog) {
        QPrintDialog dialog(&paper, parent_);
        if (dialog.exec() != QDialog::Accepted)
            return;
    }
    canvas.printTo(paper);
}

void QtCanvasDialogHost::fileError(const QString& text, int) {
    QMessageBox::critical(parent_, QApplication::applicationDisplayName(), text);
}

} // namespace tessaly::ui
