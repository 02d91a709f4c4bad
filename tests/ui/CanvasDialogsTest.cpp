// The canvas's own dialogs: each shows the values it is given, and OK gives
// back what the user set; the host runs them modally and copies the result.
#include "UiTestSupport.h"
#include "canvas/model/CanvasPicture.h"
#include "ui/dialogs/ArrowsDialog.h"
#include "ui/dialogs/ColourButton.h"
#include "ui/dialogs/FillPreview.h"
#include "ui/dialogs/FontOptionsDialog.h"
#include "ui/dialogs/LineDialog.h"
#include "ui/dialogs/PatternDialog.h"
#include "ui/dialogs/QtCanvasDialogHost.h"
#include "ui/dialogs/ShadeDialog.h"
#include "ui/dialogs/ShadowDialog.h"
#include "ui/dialogs/TextureDialog.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>

namespace tessaly::ui {
namespace {

using namespace tessaly::canvas;

constexpr Colour Red = 0x0000FF;   // red in the low byte
constexpr Colour Green = 0x00FF00; //
constexpr Colour Blue = 0xFF0000;  //
constexpr Colour Olive = 0x008080; // red 128, green 128

// Presses OK the way the user does.
template <class D> void pressOk(D& dialog) {
    dialog.okButton()->click();
}

TEST(LineDialogTest, ShowsTheLineAndGivesBackWhatIsSet) {
    LineDialog dialog(LineOptions{line_style::Dot, Olive, 3});
    EXPECT_EQ(dialog.styleBox()->currentIndex(), line_style::Dot);
    EXPECT_EQ(dialog.styleBox()->count(), line_style::Count);
    EXPECT_EQ(dialog.colourButton()->colour(), Olive);
    EXPECT_EQ(dialog.weightBox()->value(), 3);
    dialog.styleBox()->setCurrentIndex(line_style::DashDot);
    dialog.colourButton()->setColour(Blue);
    dialog.weightBox()->setValue(0);
    pressOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    const LineOptions o = dialog.options();
    EXPECT_EQ(o.style, line_style::DashDot);
    EXPECT_EQ(o.colour, Blue);
    EXPECT_EQ(o.weight, 0);
    EXPECT_EQ(dialog.weightBox()->text(), QStringLiteral("Hairline")); // weight 0 is a hairline
}

TEST(ArrowsDialogTest, ShowsTheHeadsAndGivesBackWhatIsSet) {
    ArrowsDialog dialog(ArrowOptions{arrow::Tick, arrow::None, 4});
    EXPECT_EQ(dialog.startBox()->currentIndex(), arrow::Tick);
    EXPECT_EQ(dialog.endBox()->currentIndex(), arrow::None);
    EXPECT_EQ(dialog.sizeBox()->value(), 4);
    EXPECT_EQ(dialog.endBox()->itemText(arrow::Triangle), QStringLiteral("Triangle"));
    dialog.startBox()->setCurrentIndex(arrow::Dot);
    dialog.endBox()->setCurrentIndex(arrow::Triangle);
    dialog.sizeBox()->setValue(9);
    pressOk(dialog);
    const ArrowOptions o = dialog.options();
    EXPECT_EQ(o.start, arrow::Dot);
    EXPECT_EQ(o.end, arrow::Triangle);
    EXPECT_EQ(o.size, 9);
}

TEST(ShadeDialogTest, ShowsTheShadeAndGivesBackWhatIsSet) {
    ShadeDialog dialog(ShadeOptions{Red, Green, shade::Vertical});
    EXPECT_EQ(dialog.fromButton()->colour(), Red);
    EXPECT_EQ(dialog.toButton()->colour(), Green);
    EXPECT_EQ(dialog.directionBox()->currentIndex(), shade::Vertical);
    dialog.fromButton()->setColour(Blue);
    dialog.directionBox()->setCurrentIndex(shade::Radial);
    // The sample follows the choice.
    EXPECT_EQ(dialog.preview()->fill().type, fill_type::Shade);
    EXPECT_EQ(dialog.preview()->fill().colour, Blue);
    EXPECT_EQ(dialog.preview()->fill().shade, shade::Radial);
    pressOk(dialog);
    const ShadeOptions o = dialog.options();
    EXPECT_EQ(o.from, Blue);
    EXPECT_EQ(o.to, Green);
    EXPECT_EQ(o.direction, shade::Radial);
}

TEST(PatternDialogTest, ListsEveryHatchWithTheTilesOfThePlanHatches) {
    PatternDialog dialog(PatternOptions{hatch::Brick, Red, White});
    QListWidget* list = dialog.hatchList();
    ASSERT_EQ(list->count(), hatch::Count);
    EXPECT_EQ(list->item(hatch::Brick)->text(), QStringLiteral("Brick"));
    EXPECT_EQ(list->item(hatch::Concrete)->text(), QStringLiteral("Concrete"));
    EXPECT_EQ(list->item(hatch::Insulation)->text(), QStringLiteral("Insulation"));
    EXPECT_EQ(list->item(hatch::Earth)->text(), QStringLiteral("Earth"));
    EXPECT_EQ(list->currentRow(), hatch::Brick);
    // Each sample is drawn in the fore colour on the back colour: both show.
    for (int i = 0; i < list->count(); ++i) {
        const QImage sample = list->item(i)->icon().pixmap(48, 48).toImage();
        int red = 0, white = 0;
        for (int y = 2; y < sample.height() - 2; ++y)
            for (int x = 2; x < sample.width() - 2; ++x) {
                const QColor c = sample.pixelColor(x, y);
                red += c.red() > 200 && c.green() < 60 && c.blue() < 60;
                white += c.red() > 240 && c.green() > 240 && c.blue() > 240;
            }
        EXPECT_GT(red, 20) << "hatch " << i;
        EXPECT_GT(white, 20) << "hatch " << i;
    }
}

TEST(PatternDialogTest, GivesBackTheChosenHatchAndColours) {
    PatternDialog dialog(PatternOptions{hatch::Horizontal, Black, White});
    dialog.hatchList()->setCurrentRow(hatch::Insulation);
    dialog.foreButton()->setColour(Blue);
    dialog.backButton()->setColour(Olive);
    EXPECT_EQ(dialog.preview()->fill().hatch, hatch::Insulation);
    EXPECT_EQ(dialog.preview()->fill().backColour, Olive);
    pressOk(dialog);
    const PatternOptions o = dialog.options();
    EXPECT_EQ(o.hatch, hatch::Insulation);
    EXPECT_EQ(o.fore, Blue);
    EXPECT_EQ(o.back, Olive);
}

TEST(ShadowDialogTest, ShowsTheShadowAndGivesBackWhatIsSet) {
    ShadowDialog dialog(ShadowOptions{false, 0x808080, 2, 2});
    EXPECT_FALSE(dialog.visibleBox()->isChecked());
    EXPECT_EQ(dialog.colourButton()->colour(), 0x808080u);
    dialog.visibleBox()->setChecked(true);
    dialog.colourButton()->setColour(Green);
    dialog.offsetXBox()->setValue(-3);
    dialog.offsetYBox()->setValue(5);
    pressOk(dialog);
    const ShadowOptions o = dialog.options();
    EXPECT_TRUE(o.visible);
    EXPECT_EQ(o.colour, Green);
    EXPECT_EQ(o.offsetX, -3);
    EXPECT_EQ(o.offsetY, 5);
}

TEST(FontOptionsDialogTest, ShowsTheFontAndGivesBackWhatIsSet) {
    FontOptionsDialog dialog(FontOptions{QStringLiteral("Arial"), 12, true, false});
    EXPECT_EQ(dialog.nameBox()->currentText(), QStringLiteral("Arial"));
    EXPECT_EQ(dialog.sizeBox()->value(), 12);
    EXPECT_TRUE(dialog.boldBox()->isChecked());
    EXPECT_FALSE(dialog.italicBox()->isChecked());
    dialog.nameBox()->setEditText(QStringLiteral("Liberation Serif"));
    dialog.sizeBox()->setValue(28);
    dialog.boldBox()->setChecked(false);
    dialog.italicBox()->setChecked(true);
    pressOk(dialog);
    const FontOptions o = dialog.options();
    EXPECT_EQ(o.name, QStringLiteral("Liberation Serif"));
    EXPECT_EQ(o.size, 28);
    EXPECT_FALSE(o.bold);
    EXPECT_TRUE(o.italic);
}

TEST(TextureDialogTest, ReadsThePictureFileOnOk) {
    QTemporaryDir dir;
    QImage tile(16, 8, QImage::Format_RGB32);
    tile.fill(QColor(10, 200, 30));
    const QString path = dir.filePath(QStringLiteral("tile.png"));
    ASSERT_TRUE(tile.save(path));
    TextureDialog dialog(TextureOptions{});
    dialog.pathEdit()->setText(path);
    pressOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    const PicturePtr picture = dialog.options().picture;
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->image().size(), QSize(16, 8));
    EXPECT_EQ(picture->image().pixelColor(3, 3), QColor(10, 200, 30));
    EXPECT_EQ(dialog.preview()->fill().texture, picture);
}

TEST(TextureDialogTest, AFileThatIsNoPictureKeepsTheDialogOpen) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("notes.png"));
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("not a picture at all");
    }
    TextureDialog dialog(TextureOptions{});
    dialog.setModal(true);
    dialog.show();
    dialog.pathEdit()->setText(path);
    QString told;
    QTimer::singleShot(0, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            told = box->text();
            box->accept();
        }
    });
    pressOk(dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(told.isEmpty());
    EXPECT_EQ(told, dialog.problem());
    EXPECT_EQ(dialog.options().picture, nullptr);
    dialog.reject();
}

TEST(TextureDialogTest, WithNoFileTheTextureStays) {
    QImage tile(4, 4, QImage::Format_RGB32);
    tile.fill(Qt::blue);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    tile.save(&buffer, "PNG");
    const PicturePtr present = CanvasPicture::fromData(png);
    TextureDialog dialog(TextureOptions{present});
    pressOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.options().picture, present);
}

// --- the host runs them modally ---------------------------------------------------------

// Answers the next modal dialog of type D: `fill` sets its fields, then OK or Cancel.
template <class D> void answerNext(const std::function<void(D&)>& fill, bool ok, bool* seen) {
    QTimer::singleShot(0, [fill, ok, seen] {
        auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        *seen = true;
        fill(*dialog);
        (ok ? dialog->okButton() : dialog->cancelButton())->click();
    });
}

TEST(QtCanvasDialogHostTest, OkCopiesTheDialogsValuesOut) {
    QtCanvasDialogHost host(nullptr);
    bool seen = false;
    ArrowOptions arrows{arrow::None, arrow::None, 3};
    answerNext<ArrowsDialog>([](ArrowsDialog& d) { d.endBox()->setCurrentIndex(arrow::Open); }, true, &seen);
    EXPECT_TRUE(host.editArrows(arrows));
    EXPECT_TRUE(seen);
    EXPECT_EQ(arrows.end, arrow::Open);
    EXPECT_EQ(arrows.size, 3);

    seen = false;
    PatternOptions pattern{hatch::Horizontal, Black, White};
    answerNext<PatternDialog>([](PatternDialog& d) { d.hatchList()->setCurrentRow(hatch::Earth); }, true,
                              &seen);
    EXPECT_TRUE(host.editPattern(pattern));
    EXPECT_TRUE(seen);
    EXPECT_EQ(pattern.hatch, hatch::Earth);

    seen = false;
    FontOptions font{QStringLiteral("Arial"), 10, false, false};
    answerNext<FontOptionsDialog>([](FontOptionsDialog& d) { d.sizeBox()->setValue(14); }, true, &seen);
    EXPECT_TRUE(host.editFont(font));
    EXPECT_TRUE(seen);
    EXPECT_EQ(font.size, 14);
    EXPECT_EQ(font.name, QStringLiteral("Arial"));
}

TEST(QtCanvasDialogHostTest, CancelLeavesTheValuesAsTheyWere) {
    QtCanvasDialogHost host(nullptr);
    bool seen = false;
    ShadowOptions shadow{false, 0x808080, 2, 2};
    answerNext<ShadowDialog>([](ShadowDialog& d) { d.visibleBox()->setChecked(true); }, false, &seen);
    EXPECT_FALSE(host.editShadow(shadow));
    EXPECT_TRUE(seen);
    EXPECT_FALSE(shadow.visible);

    seen = false;
    LineOptions line{line_style::Solid, Black, 1};
    answerNext<LineDialog>([](LineDialog& d) { d.weightBox()->setValue(9); }, false, &seen);
    EXPECT_FALSE(host.editLine(line));
    EXPECT_TRUE(seen);
    EXPECT_EQ(line.weight, 1);
}

TEST(QtCanvasDialogHostTest, FileErrorsShowTheirTextInACriticalBox) {
    QtCanvasDialogHost host(nullptr);
    QString told;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QTimer::singleShot(0, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            told = box->text();
            icon = box->icon();
            box->accept();
        }
    });
    host.fileError(QStringLiteral("The file C:\\Plans\\a.pdr is damaged"), 30001);
    EXPECT_EQ(told, QStringLiteral("The file C:\\Plans\\a.pdr is damaged"));
    EXPECT_EQ(icon, QMessageBox::Critical);
}

} // namespace
} // namespace tessaly::ui
