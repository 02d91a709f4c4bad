// Which window becomes active when a window closes: the modal form under a
// closed modal one, or else the main window, which then runs its activation.
#include "core/forms/ApplicationBase.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;

namespace {

class Windows : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    ApplicationBase app{ui, waiter, AppHome(dir.path())};
    QStringList activations; // the form of each Activate, in order

    void SetUp() override {
        for (const char* name : {"frmMain", "frmFirst", "frmSecond", "frmPanel"})
            app.registerForm(QString::fromLatin1(name), [this, name](ApplicationBase& a) {
                auto f = std::make_shared<Form>(a, QString::fromLatin1(name));
                f->endsProcessOnUnload = QLatin1String(name) == QLatin1String("frmMain");
                f->onForm(QStringLiteral("Activate"),
                          [this, name](EventArgs&) { activations << QString::fromLatin1(name); });
                return f;
            });
        app.show(app.form(QStringLiteral("frmMain")), false);
        activations.clear();
    }
    Form& open(const char* name, bool modal) {
        Form& f = app.form(QString::fromLatin1(name));
        app.show(f, modal);
        return f;
    }
};

TEST_F(Windows, ClosingAModalWindowActivatesTheMainWindow) {
    Form& first = open("frmFirst", true);
    activations.clear();
    ASSERT_TRUE(app.unload(first));
    EXPECT_EQ(activations, QStringList{QStringLiteral("frmMain")});
    EXPECT_EQ(app.mainForm(), app.loaded(QStringLiteral("frmMain")));
}

TEST_F(Windows, ClosingAModalWindowOverAnotherActivatesTheOneUnderneathOnly) {
    Form& first = open("frmFirst", true);
    Form& second = open("frmSecond", true);
    activations.clear();
    ASSERT_TRUE(app.unload(second));
    EXPECT_EQ(activations, QStringList{QStringLiteral("frmFirst")});
    ASSERT_TRUE(app.unload(first));
    EXPECT_EQ(activations, (QStringList{QStringLiteral("frmFirst"), QStringLiteral("frmMain")}));
}

TEST_F(Windows, ClosingAModelessWindowActivatesNothing) {
    Form& panel = open("frmPanel", false);
    activations.clear();
    ASSERT_TRUE(app.unload(panel));
    EXPECT_TRUE(activations.isEmpty());
}

TEST_F(Windows, AModalWindowClosedAfterTheMainWindowActivatesNothing) {
    Form& first = open("frmFirst", true);
    ASSERT_TRUE(app.unload(*app.loaded(QStringLiteral("frmMain"))));
    EXPECT_TRUE(app.ended());
    activations.clear();
    ASSERT_TRUE(app.unload(first));
    EXPECT_TRUE(activations.isEmpty());
    EXPECT_EQ(app.mainForm(), nullptr);
}

} // namespace
