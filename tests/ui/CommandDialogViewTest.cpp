// The dialogs of the page, view and shape commands, built as windows by the
// view layer: each shows its captions, and with TESSALY_SHOT_DIR set each is
// saved as a picture for a look.
#include "UiTestSupport.h"
#include "core/install/Installer.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "ui/FormView.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

class DialogViews : public ::testing::Test {
protected:
    QTemporaryDir dir;
    AppHome home{dir.path()};
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;

    void SetUp() override {
        install(home);
        app = std::make_unique<Application>(port, waiter, home);
        ASSERT_TRUE(app->Main());
        app->form<frmMain>();
        QVariantList box{1, 20, 20, 80, 60};
        app->gShapeList->call(QStringLiteral("AddShape"), box);
        QVariantList none;
        app->gShapeList->call(QStringLiteral("SelectAll"), none);
    }

    // Every caption the window shows, labels and buttons alike.
    static QStringList shownTexts(const QWidget& window) {
        QStringList texts;
        for (const QLabel* l : window.findChildren<QLabel*>())
            texts << l->text();
        for (const QAbstractButton* b : window.findChildren<QAbstractButton*>())
            texts << b->text();
        return texts;
    }

    QStringList showAndShoot(const char* formName) {
        Form& form = app->form(QString::fromLatin1(formName));
        ui::FormView view(form);
        view.resize(view.initialSize());
        view.show();
        QApplication::processEvents();
        ui::testing::saveShot(view, "TESSALY_SHOT_DIR",
                              QStringLiteral("dialog-%1.png").arg(QString::fromLatin1(formName)));
        EXPECT_GT(view.width(), 100);
        EXPECT_GT(view.height(), 100);
        return shownTexts(view);
    }
};

TEST_F(DialogViews, GridSettings) {
    const QStringList texts = showAndShoot("frmGrid");
    EXPECT_TRUE(texts.contains(QStringLiteral("Choose Grid Colour...")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Show grid")));
}

TEST_F(DialogViews, GuidelinesSettings) {
    const QStringList texts = showAndShoot("frmGuidelines");
    EXPECT_TRUE(texts.contains(QStringLiteral("Horizontal:")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Align shapes to guidelines")));
}

TEST_F(DialogViews, CanvasSettings) {
    const QStringList texts = showAndShoot("frmPaper");
    EXPECT_TRUE(texts.contains(QStringLiteral("Canvas Options")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Show Canvas Shadow")));
}

TEST_F(DialogViews, ShadowLensSettings) {
    const QStringList texts = showAndShoot("frmShadowLens");
    EXPECT_TRUE(texts.contains(QStringLiteral("Select lens type:")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Effect percentage: 0%")));
}

TEST_F(DialogViews, MyTemplates) {
    const QStringList texts = showAndShoot("frmMyTemplates");
    EXPECT_TRUE(texts.contains(QStringLiteral("Select a Template File")));
}

} // namespace
} // namespace tessaly
