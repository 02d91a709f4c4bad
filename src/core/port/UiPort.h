#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <memory>
#include <optional>

namespace tessaly {

class Form;
class ReportDocument;

// Message box flags and results, as the platform numbers them.
namespace mb {
constexpr int OkOnly = 0;        // an OK button alone
constexpr int YesNo = 4;         // Yes and No buttons
constexpr int Critical = 16;     // the critical (stop) icon
constexpr int Question = 32;     // the question icon
constexpr int Exclamation = 48;  // the exclamation icon
constexpr int Information = 64;  // the information icon
constexpr int DefaultButton2 = 256; // the second button is the default
constexpr int ResultOk = 1;      // OK was pressed
constexpr int ResultCancel = 2;  // Cancel was pressed
constexpr int ResultYes = 6;     // Yes was pressed
constexpr int ResultNo = 7;      // No was pressed
} // namespace mb

// Mouse pointer values of the screen object.
namespace pointer {
constexpr int Default = 0;   // the normal arrow
constexpr int Hourglass = 11; // busy
} // namespace pointer

// What a file or folder dialog is asked with.
struct FileDialogRequest {
    QString filter;      // "Caption|pattern|Caption|pattern"
    QString title;       // empty: the platform's own title
    QString defaultExt;  // without or with the dot, as the caller gives it
    QString initialFile; // file name the dialog starts with
    QString initialDir;  // folder the dialog starts in
};

// What the spelling dialog shows: a word the dictionary does not know, with
// its place in the text being checked, and the dictionary's suggestions.
struct SpellQuery {
    QString word;
    QStringList suggestions;
    QString text;     // the whole text being checked, as it stands now
    int position = 0; // where the word starts in it
};

// What the user chose in the spelling dialog.
struct SpellChoice {
    enum class Action { Replace, Ignore, Cancel };
    Action action = Action::Cancel;
    QString replacement; // the word put in its place, for Replace
};

// Everything Tessaly's logic asks of the desktop. The Qt implementation shows
// real dialogs; the scripted one answers from a queue and records each call.
class UiPort {
public:
    virtual ~UiPort() = default;

    // A message box: returns 1 OK, 2 Cancel, 6 Yes, 7 No.
    virtual int msgBox(const QString& text, int flags, const QString& title) = 0;
    // An input box: the typed text, or nothing when cancelled.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                            const QString& defaultText) = 0;
    // File and folder dialogs: the chosen path, or nothing when cancelled.
    virtual std::optional<QString> openDialog(const FileDialogRequest& request) = 0;
    virtual std::optional<QString> saveDialog(const FileDialogRequest& request) = 0;
    virtual std::optional<QString> folderDialog(const FileDialogRequest& request) = 0;
    // The colour dialog: the chosen colour (0x00BBGGRR), or nothing when cancelled.
    virtual std::optional<unsigned> colourDialog(unsigned initial) = 0;
    // One of the canvas's own dialogs by name ("LineDialog", "PageSetup", ...).
    // Returns true when the user confirmed it.
    virtual bool canvasDialog(const QString& name) = 0;
    // The screen's mouse pointer: 0 default, 11 hourglass.
    virtual void setMousePointer(int value) = 0;
    // Lets pending events run.
    virtual void doEvents() = 0;
    // The screen size in pixels.
    virtual QSize screenSize() = 0;
    // A form is shown or unloaded.
    virtual void showForm(Form& form, bool modal) = 0;
    virtual void unloadForm(Form& form) = 0;
    // Something went to the printer.
    virtual void printed(const QString& what) = 0;
    // The process has ended.
    virtual void processEnded() = 0;
    // The spelling dialog for one unknown word: replace it, ignore it, or
    // cancel the rest of the check. A port without the dialog cancels.
    virtual SpellChoice spellDialog(const SpellQuery& query) {
        (void)query;
        return {};
    }
    // Something the program did that a script follows (a message put in the
    // outbox, an archive packed): the scripted port reports it as an event
    // line with these fields; the desktop has nothing to show for it.
    virtual void notify(const QString& event, const QVariantMap& fields) {
        (void)event;
        (void)fields;
    }
    // A finished report is shown in the report viewer: its pages, zoom,
    // printing and export. Like a modal form, a modal report is shown as the
    // last step of the handler that shows it. A port without a viewer shows nothing.
    virtual void showReport(const std::shared_ptr<ReportDocument>& report, bool modal) {
        (void)report;
        (void)modal;
    }
};

} // namespace tessaly
