// The skin keeps what the form models say about fonts and colours.
#include "ui/Skin.h"
#include "UiTestSupport.h"
#include "ui/FormView.h"

#include <QApplication>
#include <QLabel>

namespace tessaly::ui {
namespace {

class SkinTest : public ::testing::Test {
protected:
    void SetUp() override { qApp->setStyleSheet(QString::fromLatin1(skinStyleSheet())); }
    void TearDown() override { qApp->setStyleSheet(QString()); }
    testing::ScriptedApp scripted;
};

TEST_F(SkinTest, SplashTitleKeepsItsFontSizeAndIsCentred) {
    testing::RecordingForm splash(scripted.app, QStringLiteral("frmSplash"));
    Control& title = splash.add(ControlKind::Label, QStringLiteral("lblTitle"));
    title.setCaption(QStringLiteral("Tessaly"));
    title.setProp(QStringLiteral("FontSize"), 36);
    title.move(300, 600, 5700, 900);
    FormView view(splash);
    view.show();
    auto* label = view.findChild<QLabel*>(QStringLiteral("lblTitle"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->font().pointSizeF(), 36.0);
    EXPECT_TRUE(label->alignment().testFlag(Qt::AlignHCenter));
    EXPECT_TRUE(view.windowFlags().testFlag(Qt::FramelessWindowHint));
}

} // namespace
} // namespace tessaly::ui
