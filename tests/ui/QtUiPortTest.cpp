// The desktop UI port: windows for forms, modality, unload, the wait cursor
// and the screen.
#include "ui/QtUiPort.h"
#include "UiTestSupport.h"
#include "ui/FormView.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>

namespace tessaly::ui {
namespace {

using testing::RecordingForm;

class QtUiPortTest : public ::testing::Test {
protected:
    testing::TempHome home;
    QtUiPort port;
    RecordingWaiter waiter;
    ApplicationBase app{port, waiter, home.home()};

    void SetUp() override {
        port.attach(app);
        for (const char* name : {"frmOne", "frmTwo"})
            app.registerForm(QString::fromLatin1(name), [name](ApplicationBase& a) {
                auto form = std::make_shared<RecordingForm>(a, QString::fromLatin1(name));
                form->setCaption(QString::fromLatin1(name));
                form->setSize(6000, 4500, 5880, 4000);
                form->add(ControlKind::CommandButton, QStringLiteral("cmdClose")).move(120, 120, 1200, 400);
                form->on(QStringLiteral("cmdClose"), QStringLiteral("Click"),
                         [&a, form = form.get()](Control&, EventArgs&) { a.unload(*form); });
                form->recordForm(QStringLiteral("Unload"));
                return form;
            });
    }
    void TearDown() override { port.closeAll(); }
};

TEST_F(QtUiPortTest, FormGetsItsWindowWhenCreatedAndShowsOnShow) {
    Form& one = app.form(QStringLiteral("frmOne"));
    FormView* view = port.viewOf(one);
    ASSERT_NE(view, nullptr);
    EXPECT_FALSE(view->isVisible());
    app.show(one, false);
    EXPECT_TRUE(view->isVisible());
    EXPECT_EQ(view->windowModality(), Qt::NonModal);
    EXPECT_EQ(view->windowTitle(), QStringLiteral("frmOne"));
    // The window's inner area is the form's inner size.
    EXPECT_EQ(view->surface()->size(), QSize(5880 / 15, 4000 / 15));
}

TEST_F(QtUiPortTest, ModalFormIsApplicationModalAndShowDoesNotBlock) {
    Form& one = app.form(QStringLiteral("frmOne"));
    app.show(one, false);
    Form& two = app.form(QStringLiteral("frmTwo"));
    app.show(two, true);
    EXPECT_EQ(port.viewOf(two)->windowModality(), Qt::ApplicationModal);
    EXPECT_TRUE(port.viewOf(two)->isVisible());
    EXPECT_FALSE(app.acceptsInput(one));
}

TEST_F(QtUiPortTest, UnloadClosesAndDeletesTheWindow) {
    Form& one = app.form(QStringLiteral("frmOne"));
    app.show(one, false);
    QPointer<FormView> view = port.viewOf(one);
    auto* button = view->findChild<QPushButton*>(QStringLiteral("cmdClose"));
    ASSERT_NE(button, nullptr);
    button->click();
    EXPECT_EQ(app.loaded(QStringLiteral("frmOne")), nullptr);
    ASSERT_FALSE(view.isNull());
    EXPECT_FALSE(view->isVisible());
    EXPECT_EQ(view->form(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(view.isNull());
}

TEST_F(QtUiPortTest, ClosingByTheTitleBarUnloadsTheForm) {
    Form& one = app.form(QStringLiteral("frmOne"));
    app.show(one, false);
    bool unloaded = false;
    one.onForm(QStringLiteral("Unload"), [&](EventArgs&) { unloaded = true; });
    port.viewOf(one)->close();
    EXPECT_TRUE(unloaded);
    EXPECT_EQ(app.loaded(QStringLiteral("frmOne")), nullptr);
}

TEST_F(QtUiPortTest, UnloadCancelledKeepsTheWindow) {
    Form& one = app.form(QStringLiteral("frmOne"));
    one.onForm(QStringLiteral("QueryUnload"), [](EventArgs& args) { args[0] = 1; });
    app.show(one, false);
    port.viewOf(one)->close();
    ASSERT_NE(app.loaded(QStringLiteral("frmOne")), nullptr);
    EXPECT_TRUE(port.viewOf(one)->isVisible());
}

TEST_F(QtUiPortTest, HourglassOverridesTheCursorUntilReset) {
    port.setMousePointer(pointer::Hourglass);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    port.setMousePointer(pointer::Hourglass);
    port.setMousePointer(pointer::Default);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(QtUiPortTest, ScreenSizeIsThePrimaryScreensPixels) {
    EXPECT_EQ(port.screenSize(), QGuiApplication::primaryScreen()->size());
}

TEST_F(QtUiPortTest, CanvasDialogsAreNotConfirmedYet) {
    EXPECT_FALSE(port.canvasDialog(QStringLiteral("LineDialog")));
}

} // namespace
} // namespace tessaly::ui
