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

TEST_F(SkinTest, ALabelAndAPanelShowTheirBackColourAndALabelItsForeColour) {
    testing::RecordingForm form(scripted.app, QStringLiteral("frmColours"));
    form.setSize(6000, 3000, 6000, 3000);
    Control& panel = form.add(ControlKind::PictureBox, QStringLiteral("picPanel"));
    panel.move(0, 0, 6000, 3000);
    panel.setBackColor(0xE0E0E0);
    Control& band = form.add(ControlKind::Label, QStringLiteral("lblBand"));
    band.setProp(QStringLiteral("Container"), QStringLiteral("picPanel"));
    band.move(0, 0, 6000, 450);
    band.setCaption(QStringLiteral("Title"));
    band.setBackColor(0x800000); // dark blue, red in the low byte
    band.setProp(QStringLiteral("ForeColor"), 0xFFFFFF);
    Control& swatch = form.add(ControlKind::Label, QStringLiteral("lblSwatch"));
    swatch.setProp(QStringLiteral("Container"), QStringLiteral("picPanel"));
    swatch.move(600, 1200, 1500, 450);
    swatch.setBackColor(0x0000FF); // red
    FormView view(form);
    view.resize(view.initialSize());
    view.show();
    testing::processPending();
    const QImage image = view.grab().toImage();
    auto* bandLabel = view.findChild<QLabel*>(QStringLiteral("lblBand"));
    auto* swatchLabel = view.findChild<QLabel*>(QStringLiteral("lblSwatch"));
    ASSERT_NE(bandLabel, nullptr);
    ASSERT_NE(swatchLabel, nullptr);
    const QPoint inBand = bandLabel->mapTo(&view, QPoint(bandLabel->width() - 4, 3));
    const QPoint inSwatch = swatchLabel->mapTo(&view, swatchLabel->rect().center());
    EXPECT_EQ(image.pixelColor(inBand).name(), QStringLiteral("#000080"));
    EXPECT_EQ(image.pixelColor(inSwatch).name(), QStringLiteral("#ff0000"));
    // A new colour shows at once.
    swatch.setBackColor(0xFFFFFF);
    testing::processPending();
    const QImage after = view.grab().toImage();
    EXPECT_EQ(after.pixelColor(inSwatch).name(), QStringLiteral("#ffffff"));
}

} // namespace
} // namespace tessaly::ui
