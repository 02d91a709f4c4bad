#include "UiTestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QWidget>

namespace tessaly::ui::testing {

RecordingForm::RecordingForm(ApplicationBase& app, const QString& name) : Form(app, name) {}

void RecordingForm::record(const QString& control, const QString& event) {
    on(control, event,
       [this, event](Control& c, EventArgs&) { events << c.fullName() + QLatin1Char('.') + event; });
}

void RecordingForm::recordForm(const QString& event) {
    onForm(event, [this, event](EventArgs&) { events << QStringLiteral("Form.") + event; });
}

void processPending() {
    QCoreApplication::processEvents();
}

bool saveShot(QWidget& window, const char* variable, const QString& fileName) {
    const QString folder = qEnvironmentVariable(variable);
    if (folder.isEmpty())
        return true;
    QDir().mkpath(folder);
    processPending();
    return window.grab().save(QDir(folder).filePath(fileName));
}

} // namespace tessaly::ui::testing
