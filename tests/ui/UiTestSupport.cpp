#include "UiTestSupport.h"

#include <QCoreApplication>

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

} // namespace tessaly::ui::testing
