#include "UiTestSupport.h"

#include <QApplication>

namespace tessaly::ui::testing {

namespace {
// One QApplication for the whole run, on the offscreen platform that the
// test registration sets.
class QtEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        static int argc = 1;
        static char name[] = "ui_tests";
        static char* argv[] = {name, nullptr};
        app_ = std::make_unique<QApplication>(argc, argv);
    }
    void TearDown() override { app_.reset(); }

private:
    std::unique_ptr<QApplication> app_;
};

[[maybe_unused]] ::testing::Environment* const qtEnvironment =
    ::testing::AddGlobalTestEnvironment(new QtEnvironment);
} // namespace

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
