#pragma once

#include "canvas/engine/CanvasDialogHost.h"

namespace tessaly {

class UiPort;

// The canvas's own dialogs, printing and file errors, answered through the UI
// port. It serves every canvas of the program when no desktop dialogs are
// plugged in: each dialog is asked for by name ("LineDialog", "PageSetup",
// ...) and its answer is whether the user confirmed; the options are left as
// the canvas filled them. The desktop view installs its real dialogs instead.
class PortDialogHost final : public canvas::CanvasDialogHost {
public:
    explicit PortDialogHost(UiPort& ui) : ui_(ui) {}

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

private:
    UiPort& ui_;
};

} // namespace tessaly
