#include "QtUiPort.h"

#include "DialogMapping.h"
#include "FormView.h"
#include "ViewUnits.h"
#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "reports/ReportViewer.h"
#include "dialogs/SpellDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>

namespace tessaly::ui {

namespace {
// The screen size reported when Qt knows no screen at all.
constexpr QSize FallbackScreen{1024, 768};
// Mouse pointers of the platform beyond the default and the hourglass.
constexpr int PointerArrow = 1;
constexpr int PointerCross = 2;
constexpr int PointerIBeam = 3;
constexpr int PointerArrowHourglass = 13;
// Marks a window that has been placed on the screen once.
constexpr const char* PlacedProperty = "tessalyPlaced";

// A message box that, like the platform's, cannot be dismissed by Escape or
// the title bar when it has no button for that (a Yes/No question).
class PlatformMessageBox final : public QMessageBox {
public:
    PlatformMessageBox(bool dismissible, QWidget* parent) : QMessageBox(parent), dismissible_(dismissible) {}

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!dismissible_ && event->matches(QKeySequence::Cancel))
            return;
        QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override {
        if (!dismissible_) {
            event->ignore();
            return;
        }
        QMessageBox::closeEvent(event);
    }

private:
    bool dismissible_;
};

Qt::CursorShape cursorFor(int pointer) {
    switch (pointer) {
    case PointerArrow:
        return Qt::ArrowCursor;
    case PointerCross:
        return Qt::CrossCursor;
    case PointerIBeam:
        return Qt::IBeamCursor;
    case PointerArrowHourglass:
        return Qt::BusyCursor;
    default:
        return Qt::WaitCursor;
    }
}

QString titleOr(const QString& title) {
    return title.isEmpty() ? AppTitle : title;
}

QString hostDir(const QString& logicDir) {
    return logicDir.isEmpty() ? QString() : fs::toHost(logicDir);
}

void prepareFileDialog(QFileDialog& dialog, const FileDialogRequest& request) {
    if (!request.filter.isEmpty())
        dialog.setNameFilter(qtFileFilter(request.filter));
    dialog.setDefaultSuffix(defaultSuffix(request.defaultExt));
    if (!request.initialDir.isEmpty())
        dialog.setDirectory(hostDir(request.initialDir));
    if (!request.initialFile.isEmpty())
        dialog.selectFile(request.initialFile);
}

std::optional<QString> runFileDialog(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}
} // namespace

QtUiPort::QtUiPort() = default;

QtUiPort::~QtUiPort() {
    closeAll();
}

void QtUiPort::attach(ApplicationBase& app) {
    app.onFormCreated = [this](Form& form) { ensureView(form); };
}

FormView* QtUiPort::viewOf(const Form& form) const {
    const auto it = views_.find(&form);
    return it == views_.end() ? nullptr : it->second.data();
}

void QtUiPort::closeAll() {
    for (const QPointer<QWidget>& viewer : reportViewers_)
        delete viewer.data();
    reportViewers_.clear();
    for (auto& [form, view] : views_)
        if (view) {
            view->detach();
            delete view.data();
        }
    views_.clear();
}

FormView& QtUiPort::ensureView(Form& form) {
    if (FormView* view = viewOf(form))
        return *view;
    auto* view = new FormView(form);
    views_[&form] = view;
    return *view;
}

QWidget* QtUiPort::activeWindow() const {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return QApplication::activeWindow();
}

int QtUiPort::msgBox(const QString& text, int flags, const QString& title) {
    const MessageBoxLayout layout = messageBoxLayout(flags);
    PlatformMessageBox box(layout.escapeButton != QMessageBox::NoButton, activeWindow());
    box.setWindowTitle(titleOr(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setIcon(layout.icon);
    for (const QMessageBox::StandardButton button : layout.buttons)
        box.addButton(button);
    box.setDefaultButton(layout.defaultButton);
    if (layout.escapeButton != QMessageBox::NoButton)
        box.setEscapeButton(layout.escapeButton);
    box.exec();
    return messageBoxResult(box.standardButton(box.clickedButton()));
}

std::optional<QString> QtUiPort::inputBox(const QString& prompt, const QString& title,
                                          const QString& defaultText) {
    QInputDialog dialog(activeWindow());
    dialog.setWindowTitle(titleOr(title));
    dialog.setLabelText(prompt);
    dialog.setTextValue(defaultText);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

std::optional<QString> QtUiPort::openDialog(const FileDialogRequest& request) {
    QFileDialog dialog(activeWindow(), request.title);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    prepareFileDialog(dialog, request);
    return runFileDialog(dialog);
}

std::optional<QString> QtUiPort::saveDialog(const FileDialogRequest& request) {
    QFileDialog dialog(activeWindow(), request.title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // The logic decides what an existing file means; the dialog does not ask.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    prepareFileDialog(dialog, request);
    return runFileDialog(dialog);
}

std::optional<QString> QtUiPort::folderDialog(const FileDialogRequest& request) {
    const QString chosen =
        QFileDialog::getExistingDirectory(activeWindow(), request.title, hostDir(request.initialDir));
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

std::optional<unsigned> QtUiPort::colourDialog(unsigned initial) {
    const QColor chosen = QColorDialog::getColor(toQColor(initial), activeWindow());
    if (!chosen.isValid())
        return std::nullopt;
    return fromQColor(chosen);
}

bool QtUiPort::canvasDialog(const QString&) {
    // The drawing canvas brings its own dialogs; until it does, none is confirmed.
    return false;
}

void QtUiPort::setMousePointer(int value) {
    if (value == pointer::Default) {
        if (waitCursor_)
            QApplication::restoreOverrideCursor();
        waitCursor_ = false;
        return;
    }
    const QCursor cursor(cursorFor(value));
    if (waitCursor_)
        QApplication::changeOverrideCursor(cursor);
    else
        QApplication::setOverrideCursor(cursor);
    waitCursor_ = true;
}

void QtUiPort::doEvents() {
    QCoreApplication::processEvents();
}

QSize QtUiPort::screenSize() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->size() : FallbackScreen;
}

void QtUiPort::placeOnScreen(FormView& view) {
    if (view.property(PlacedProperty).toBool())
        return;
    view.setProperty(PlacedProperty, true);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect room = screen ? screen->availableGeometry() : QRect(QPoint(0, 0), FallbackScreen);
    const QSize size = view.initialSize();
    // A form as large as the screen fills it; others come up in its middle.
    if (size.width() >= room.width() || size.height() >= room.height()) {
        view.setGeometry(room);
        view.setWindowState(view.windowState() | Qt::WindowMaximized);
        return;
    }
    view.resize(size);
    view.move(room.center() - QRect(QPoint(0, 0), size).center());
}

void QtUiPort::showForm(Form& form, bool modal) {
    FormView& view = ensureView(form);
    const Qt::WindowModality modality = modal ? Qt::ApplicationModal : Qt::NonModal;
    if (view.windowModality() != modality) {
        // Qt takes a new modality only while the window is hidden.
        view.hide();
        view.setWindowModality(modality);
    }
    placeOnScreen(view);
    view.show();
    view.raise();
    view.activateWindow();
    view.syncFocus();
}

void QtUiPort::unloadForm(Form& form) {
    const auto it = views_.find(&form);
    if (it == views_.end())
        return;
    if (FormView* view = it->second.data()) {
        view->detach();
        view->hide();
        // The window may be in the middle of the signal that unloaded it.
        view->deleteLater();
    }
    views_.erase(it);
}

void QtUiPort::showReport(const std::shared_ptr<ReportDocument>& report, bool modal) {
    if (!report)
        return;
    auto* viewer = new ReportViewer(report);
    viewer->setAttribute(Qt::WA_DeleteOnClose);
    viewer->setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    reportViewers_.removeAll(nullptr);
    reportViewers_.append(viewer);
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
}

QList<QWidget*> QtUiPort::reportViewers() const {
    QList<QWidget*> open;
    for (const QPointer<QWidget>& viewer : reportViewers_)
        if (viewer)
            open.append(viewer.data());
    return open;
}

void QtUiPort::printed(const QString&) {
    // The print dialog and the printer's queue tell the user; nothing more to show.
}

void QtUiPort::processEnded() {
    // Queued, so that the end also holds when the event loop has not started yet.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

SpellChoice QtUiPort::spellDialog(const SpellQuery& query) {
    SpellDialog dialog(query, activeWindow());
    dialog.exec();
    return dialog.choice();
}

} // namespace tessaly::ui
