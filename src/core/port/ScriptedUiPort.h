#pragma once

#include "UiPort.h"

#include <QJsonObject>
#include <deque>
#include <functional>
#include <map>
#include <optional>

namespace tessaly {

// The UI port of the script driver and of the tests: every call is reported
// as one JSON object (the "event" lines of tessaly-script), and dialogs are
// answered from queues. With nothing queued a message box returns its default
// button by its flags, and every other dialog is cancelled.
class ScriptedUiPort final : public UiPort {
public:
    // Receives one JSON object per call of the port.
    std::function<void(const QJsonObject&)> onEvent;

    void queueMsgBox(int result) { msgBoxAnswers_.push_back(result); }
    void queueInput(std::optional<QString> text) { inputAnswers_.push_back(std::move(text)); }
    void queueOpen(std::optional<QString> path) { openAnswers_.push_back(std::move(path)); }
    void queueSave(std::optional<QString> path) { saveAnswers_.push_back(std::move(path)); }
    void queueFolder(std::optional<QString> path) { folderAnswers_.push_back(std::move(path)); }
    void queueColour(std::optional<unsigned> colour) { colourAnswers_.push_back(colour); }
    // Answers of the dialogs that subsystems add, by kind ("spell", ...):
    // an empty answer is a cancel. `takeAnswer` is false when none is queued.
    void queueAnswer(const QString& kind, std::optional<QVariant> answer) {
        answers_[kind.toLower()].push_back(std::move(answer));
    }
    bool takeAnswer(const QString& kind, std::optional<QVariant>& answer);
    void setScreenSize(QSize size) { screen_ = size; }
    int mousePointer() const { return pointer_; }

    // The button a message box returns when nothing is queued.
    static int defaultResult(int flags);

    int msgBox(const QString& text, int flags, const QString& title) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& defaultText) override;
    std::optional<QString> openDialog(const FileDialogRequest& request) override;
    std::optional<QString> saveDialog(const FileDialogRequest& request) override;
    std::optional<QString> folderDialog(const FileDialogRequest& request) override;
    std::optional<unsigned> colourDialog(unsigned initial) override;
    bool canvasDialog(const QString& name) override;
    void setMousePointer(int value) override;
    void doEvents() override {}
    QSize screenSize() override { return screen_; }
    void showForm(Form& form, bool modal) override;
    void unloadForm(Form& form) override;
    void printed(const QString& what) override;
    void processEnded() override;
    void notify(const QString& event, const QVariantMap& fields) override;
    void showReport(const std::shared_ptr<ReportDocument>& report, bool modal) override;
    // Answered from the "spell" queue: a replacement word, "ignore" or
    // "cancel"; with nothing queued the check is cancelled. Reported as a
    // "spell" event with the word, its suggestions and the result.
    SpellChoice spellDialog(const SpellQuery& query) override;

private:
    void emitEvent(const QJsonObject& o) const {
        if (onEvent)
            onEvent(o);
    }
    std::optional<QString> fileDialog(const char* kind, std::deque<std::optional<QString>>& answers,
                                      const FileDialogRequest& request);

    std::deque<int> msgBoxAnswers_;
    std::deque<std::optional<QString>> inputAnswers_;
    std::deque<std::optional<QString>> openAnswers_;
    std::deque<std::optional<QString>> saveAnswers_;
    std::deque<std::optional<QString>> folderAnswers_;
    std::deque<std::optional<unsigned>> colourAnswers_;
    std::map<QString, std::deque<std::optional<QVariant>>> answers_;
    QSize screen_{1024, 768};
    int pointer_ = 0;
};

} // namespace tessaly
