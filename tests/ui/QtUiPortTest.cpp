// The desktop UI port: windows for forms, modality, unload, the wait cursor
// and the screen.
#include "ui/QtUiPort.h"
#include "UiTestSupport.h"
#include "ui/FormView.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

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

namespace tessaly::ui {
namespace {

// Answers the next dialog of its kind from inside its own event loop, once it
// is up. Should none be there, whatever modal window is up is closed, so that
// the test fails instead of waiting for ever.
template <class Dialog> void whenShown(std::function<void(Dialog&)> answer) {
    QTimer::singleShot(0, [answer] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<Dialog*>(w); dialog && dialog->isVisible()) {
                answer(*dialog);
                return;
            }
        ADD_FAILURE() << "no dialog of the expected kind is up";
        if (QWidget* modal = QApplication::activeModalWidget())
            modal->close();
    });
}

TEST_F(QtUiPortTest, MessageBoxShowsTextIconAndButtonsAndReturnsThePlatformCode) {
    QString text, title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QAbstractButton* defaultButton = nullptr;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        text = box.text();
        title = box.windowTitle();
        icon = box.icon();
        buttons = box.standardButtons();
        defaultButton = box.defaultButton();
        box.button(QMessageBox::No)->click();
    });
    const int result = port.msgBox(
        QStringLiteral("Your Drawings Has Changed, Do You Wish To Save Your Changes?"), 292, AppTitle);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(text, QStringLiteral("Your Drawings Has Changed, Do You Wish To Save Your Changes?"));
    EXPECT_EQ(title, QStringLiteral("Tessaly"));
    EXPECT_EQ(icon, QMessageBox::Question);
    EXPECT_EQ(buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_NE(defaultButton, nullptr);
}

TEST_F(QtUiPortTest, YesNoBoxIgnoresEscape) {
    whenShown<QMessageBox>([](QMessageBox& box) {
        QTest::keyClick(&box, Qt::Key_Escape);
        // Still up: only its buttons answer it.
        EXPECT_TRUE(box.isVisible());
        box.button(QMessageBox::Yes)->click();
    });
    EXPECT_EQ(port.msgBox(QStringLiteral("Delete?"), 4 + 48, QString()), 6);
}

TEST_F(QtUiPortTest, OkBoxAnswersEscapeWithOkAndTakesTheAmpersandLiterally) {
    QString text;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        text = box.text();
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    EXPECT_EQ(port.msgBox(QStringLiteral("Save & Exit <now>"), 16, QString()), 1);
    EXPECT_EQ(text, QStringLiteral("Save & Exit <now>"));
}

TEST_F(QtUiPortTest, InputBoxGivesTheTextOrNothingOnCancel) {
    whenShown<QInputDialog>([](QInputDialog& dialog) {
        EXPECT_EQ(dialog.labelText(), QStringLiteral("Enter the wall length"));
        EXPECT_EQ(dialog.textValue(), QStringLiteral("100"));
        dialog.setTextValue(QStringLiteral("2500"));
        dialog.accept();
    });
    EXPECT_EQ(port.inputBox(QStringLiteral("Enter the wall length"), QString(), QStringLiteral("100")),
              std::optional<QString>(QStringLiteral("2500")));
    whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(port.inputBox(QStringLiteral("Enter the wall length"), QString(), QString()), std::nullopt);
}

TEST_F(QtUiPortTest, OpenDialogTakesFilterFolderAndFileOfTheRequest) {
    QStringList filters;
    QString folder, defaultSuffixSeen;
    whenShown<QFileDialog>([&](QFileDialog& dialog) {
        filters = dialog.nameFilters();
        folder = dialog.directory().absolutePath();
        defaultSuffixSeen = dialog.defaultSuffix();
        dialog.reject();
    });
    FileDialogRequest request;
    request.filter = QStringLiteral("Tessaly Database (*.mdb)|*.mdb");
    request.defaultExt = QStringLiteral(".mdb");
    request.initialDir = home.home().dir();
    request.initialFile = QStringLiteral("KORV.mdb");
    EXPECT_EQ(port.openDialog(request), std::nullopt);
    EXPECT_EQ(filters, QStringList{QStringLiteral("Tessaly Database (*.mdb)")});
    EXPECT_EQ(folder, home.home().dir());
    EXPECT_EQ(defaultSuffixSeen, QStringLiteral("mdb"));
}

TEST_F(QtUiPortTest, ColourDialogReturnsTheColourWithRedInTheLowByte) {
    whenShown<QColorDialog>([](QColorDialog& dialog) {
        EXPECT_EQ(dialog.currentColor(), QColor(0x20, 0x40, 0x80));
        dialog.setCurrentColor(QColor(255, 0, 0));
        dialog.accept();
    });
    EXPECT_EQ(port.colourDialog(0x804020u), std::optional<unsigned>(0x0000FFu));
}

} // namespace
} // namespace tessaly::ui
