#pragma once

#include "core/port/UiPort.h"

#include <QString>
#include <vector>

namespace tessaly::test {

// A UI port that records every message box and answers OK.
class FakeUiPort final : public UiPort {
public:
    struct Message {
        QString text;
        int flags;
        QString title;
    };
    std::vector<Message> messages;

    int msgBox(const QString& text, int flags, const QString& title) override {
        messages.push_back({text, flags, title});
        return mb::ResultOk;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<QString> openDialog(const FileDialogRequest&) override { return {}; }
    std::optional<QString> saveDialog(const FileDialogRequest&) override { return {}; }
    std::optional<QString> folderDialog(const FileDialogRequest&) override { return {}; }
    std::optional<unsigned> colourDialog(unsigned) override { return {}; }
    bool canvasDialog(const QString&) override { return false; }
    void setMousePointer(int) override {}
    void doEvents() override {}
    QSize screenSize() override { return {1920, 1080}; }
    void showForm(Form&, bool) override {}
    void unloadForm(Form&) override {}
    void printed(const QString&) override {}
    void processEnded() override {}
};

} // namespace tessaly::test
