#pragma once

#include "core/port/UiPort.h"

#include <QTextStream>

namespace tessaly::exporter {

// The converter's UI port: no one is there to answer, so every message goes to
// standard error, a message box returns its default button and every dialog
// is cancelled.
class ConsoleUiPort final : public UiPort {
public:
    explicit ConsoleUiPort(QTextStream& err) : err_(err) {}

    int msgBox(const QString& text, int flags, const QString& title) override;
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<QString> openDialog(const FileDialogRequest&) override { return {}; }
    std::optional<QString> saveDialog(const FileDialogRequest&) override { return {}; }
    std::optional<QString> folderDialog(const FileDialogRequest&) override { return {}; }
    std::optional<unsigned> colourDialog(unsigned) override { return {}; }
    bool canvasDialog(const QString&) override { return false; }
    void setMousePointer(int) override {}
    void doEvents() override {}
    QSize screenSize() override;
    void showForm(Form&, bool) override {}
    void unloadForm(Form&) override {}
    void printed(const QString&) override {}
    void processEnded() override {}

private:
    QTextStream& err_;
};

} // namespace tessaly::exporter
