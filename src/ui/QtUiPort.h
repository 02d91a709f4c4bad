#pragma once

#include "core/port/UiPort.h"

#include <QList>
#include <QPointer>
#include <map>

class QWidget;

namespace tessaly {
class ApplicationBase;
}

namespace tessaly::ui {

class FormView;

// The desktop's UI port: real message boxes and dialogs, the wait cursor, and
// a window for each form that is shown. A modal form's window is application
// modal; showing it does not block, since a modal Show is the last step of
// its handler.
class QtUiPort final : public UiPort {
public:
    QtUiPort();
    ~QtUiPort() override;

    // Makes the window of each form as it is created, so that its timers run
    // and the logic's changes reach it before it shows.
    void attach(ApplicationBase& app);
    // The window of a form, if it has one.
    FormView* viewOf(const Form& form) const;
    // Detaches and closes every window: the forms are about to go.
    void closeAll();

    int msgBox(const QString& text, int flags, const QString& title) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText) override;
    std::optional<QString> openDialog(const FileDialogRequest& request) override;
    std::optional<QString> saveDialog(const FileDialogRequest& request) override;
    std::optional<QString> folderDialog(const FileDialogRequest& request) override;
    std::optional<unsigned> colourDialog(unsigned initial) override;
    bool canvasDialog(const QString& name) override;
    void setMousePointer(int value) override;
    void doEvents() override;
    QSize screenSize() override;
    void showForm(Form& form, bool modal) override;
    void unloadForm(Form& form) override;
    void printed(const QString& what) override;
    void processEnded() override;
    void showReport(const std::shared_ptr<ReportDocument>& report, bool modal) override;
    // The report viewers that are open.
    QList<QWidget*> reportViewers() const;
    SpellChoice spellDialog(const SpellQuery& query) override;

private:
    FormView& ensureView(Form& form);
    void placeOnScreen(FormView& view);
    QWidget* activeWindow() const;

    std::map<const Form*, QPointer<FormView>> views_;
    QList<QPointer<QWidget>> reportViewers_;
    bool waitCursor_ = false;
};

} // namespace tessaly::ui
