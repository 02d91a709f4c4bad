// Message box flags, file filters and colours as the desktop shows them.
#include "ui/DialogMapping.h"
#include "ui/ViewUnits.h"

#include <gtest/gtest.h>

namespace tessaly::ui {
namespace {

using SB = QMessageBox::StandardButton;

TEST(MessageBoxLayoutTest, CriticalOkOnly) {
    const MessageBoxLayout l = messageBoxLayout(16);
    EXPECT_EQ(l.icon, QMessageBox::Critical);
    EXPECT_EQ(l.buttons, std::vector<SB>{SB::Ok});
    EXPECT_EQ(l.defaultButton, SB::Ok);
    EXPECT_EQ(l.escapeButton, SB::Ok);
}

TEST(MessageBoxLayoutTest, YesNoQuestionWithNoAsDefaultCannotBeEscaped) {
    const MessageBoxLayout l = messageBoxLayout(292); // 4 + 32 + 256
    EXPECT_EQ(l.icon, QMessageBox::Question);
    EXPECT_EQ(l.buttons, (std::vector<SB>{SB::Yes, SB::No}));
    EXPECT_EQ(l.defaultButton, SB::No);
    EXPECT_EQ(l.escapeButton, SB::NoButton);
}

TEST(MessageBoxLayoutTest, YesNoExclamation) {
    const MessageBoxLayout l = messageBoxLayout(308); // 4 + 48 + 256
    EXPECT_EQ(l.icon, QMessageBox::Warning);
    EXPECT_EQ(l.defaultButton, SB::No);
}

TEST(MessageBoxLayoutTest, InformationAndOtherButtonGroups) {
    EXPECT_EQ(messageBoxLayout(64).icon, QMessageBox::Information);
    EXPECT_EQ(messageBoxLayout(0).icon, QMessageBox::NoIcon);
    EXPECT_EQ(messageBoxLayout(1).buttons, (std::vector<SB>{SB::Ok, SB::Cancel}));
    EXPECT_EQ(messageBoxLayout(1).escapeButton, SB::Cancel);
    EXPECT_EQ(messageBoxLayout(2).buttons, (std::vector<SB>{SB::Abort, SB::Retry, SB::Ignore}));
    EXPECT_EQ(messageBoxLayout(3 + 512).defaultButton, SB::Cancel);
    EXPECT_EQ(messageBoxLayout(5).buttons, (std::vector<SB>{SB::Retry, SB::Cancel}));
    // A default button beyond those there are falls back to the first.
    EXPECT_EQ(messageBoxLayout(512).defaultButton, SB::Ok);
}

TEST(MessageBoxResultTest, PlatformResultCodes) {
    EXPECT_EQ(messageBoxResult(SB::Ok), 1);
    EXPECT_EQ(messageBoxResult(SB::Cancel), 2);
    EXPECT_EQ(messageBoxResult(SB::Abort), 3);
    EXPECT_EQ(messageBoxResult(SB::Retry), 4);
    EXPECT_EQ(messageBoxResult(SB::Ignore), 5);
    EXPECT_EQ(messageBoxResult(SB::Yes), 6);
    EXPECT_EQ(messageBoxResult(SB::No), 7);
}

TEST(FileFilterTest, CaptionWithItsPatternKeepsItsText) {
    EXPECT_EQ(qtFileFilter(QStringLiteral("Site Plan Database (*.mdb)|*.mdb")),
              QStringLiteral("Site Plan Database (*.mdb)"));
}

TEST(FileFilterTest, PairsBecomeQtEntriesAndSemicolonsSeparatePatterns) {
    EXPECT_EQ(qtFileFilter(QStringLiteral("Drawings|*.pdr|Pictures (*.bmp;*.jpg)|*.bmp;*.jpg")),
              QStringLiteral("Drawings (*.pdr);;Pictures (*.bmp *.jpg)"));
    EXPECT_EQ(qtFileFilter(QString()), QString());
}

TEST(FileFilterTest, DefaultSuffixWithoutStarOrDot) {
    EXPECT_EQ(defaultSuffix(QStringLiteral("*.pdr")), QStringLiteral("pdr"));
    EXPECT_EQ(defaultSuffix(QStringLiteral(".mdb")), QStringLiteral("mdb"));
    EXPECT_EQ(defaultSuffix(QStringLiteral("emf")), QStringLiteral("emf"));
}

TEST(ViewUnitsTest, ColoursHaveRedInTheLowByte) {
    EXPECT_EQ(toQColor(0x0000FFu), QColor(255, 0, 0));
    EXPECT_EQ(toQColor(0xE0E0E0u), QColor(224, 224, 224));
    EXPECT_EQ(toQColor(0x804020u), QColor(0x20, 0x40, 0x80));
    EXPECT_EQ(fromQColor(QColor(0x20, 0x40, 0x80)), 0x804020u);
    EXPECT_FALSE(isPlainColour(0x8000000Fu));
    EXPECT_TRUE(isPlainColour(255u));
}

TEST(ViewUnitsTest, TwipsAndAccessKeys) {
    EXPECT_EQ(toPixels(QRect(1830, 6135, 3885, 2280)), QRect(122, 409, 259, 152));
    EXPECT_EQ(toTwips(33), 495);
    EXPECT_EQ(withoutAccessKeys(QStringLiteral("&File")), QStringLiteral("File"));
    EXPECT_EQ(withoutAccessKeys(QStringLiteral("Save && E&xit")), QStringLiteral("Save & Exit"));
}

TEST(ViewUnitsTest, KeyCodes) {
    EXPECT_EQ(platformKeyCode(Qt::Key_Return), 13);
    EXPECT_EQ(platformKeyCode(Qt::Key_Enter), 13);
    EXPECT_EQ(platformKeyCode(Qt::Key_Escape), 27);
    EXPECT_EQ(platformKeyCode(Qt::Key_A), 65);
    EXPECT_EQ(platformKeyCode(Qt::Key_7), 55);
    EXPECT_EQ(platformKeyCode(Qt::Key_Down), 40);
    EXPECT_EQ(platformKeyCode(Qt::Key_F1), 112);
    EXPECT_EQ(platformKeyCode(Qt::Key_Delete), 46);
    EXPECT_EQ(platformShiftMask(Qt::ShiftModifier | Qt::AltModifier), 5);
}

} // namespace
} // namespace tessaly::ui
