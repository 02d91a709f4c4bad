#pragma once

#include "canvas/engine/CanvasDialogHost.h"

#include <QPointer>
#include <memory>

class QPrinter;
class QWidget;

namespace tessaly::ui {

// The canvas's own dialogs on the desktop: line, arrows, shade, pattern,
// texture, shadow and font options as Qt dialogs, the printer's page setup
// and print dialogs on a printer kept for the canvas, and file errors in a
// message box. Each canvas widget owns one, so the printer settings of a
// canvas last as long as its window.
class QtCanvasDialogHost final : public canvas::CanvasDialogHost {
public:
    explicit QtCanvasDialogHost(QWidget* parent);
    ~QtCanvasDialogHost() override;

    bool editLine(canvas::LineOptions& options) override;
    bool editArrows(canvas::ArrowOptions& options) override;
    bool editShade(canvas::ShadeOptions& options) override;
    bool editPattern(canvas::PatternOptions& options) override;
    bool editTexture(canvas::TextureOptions& options) override;
    bool editShadow(canvas::ShadowOptions& options) override;
    bool editFont(canvas::FontOptions& options) override;
    void pageSetup(canvas::POLARDraw& canvas) override;
    void print(canvas::POLARDraw& canvas, bool& showDialog) override;
    void fileError(const QString& text, int code) override;

    // The printer of this canvas, made on first use for the canvas's page:
    // A4 turned to the page's orientation, the page's corner at the paper's corner.
    QPrinter& printer(const canvas::POLARDraw& canvas);
    // The printer, when one has been made.
    QPrinter* printerIfMade() const { return printer_.get(); }

private:
    // Turns the paper to the page's orientation.
    void matchOrientation(const canvas::POLARDraw& canvas);

    QPointer<QWidget> parent_;
    std::unique_ptr<QPrinter> printer_;
};

} // namespace tessaly::ui
