// The image converter: its controls and texts, loading and clearing a
// picture, picking the transparent colour with the mouse, and the walk over
// the pixels with its yields, its bounds and its 16-bit counters.
#include "DrawingFilesFixture.h"
#include "core/forms/PictureBox.h"
#include "drawing_files/frmImageConverter.h"

namespace tessaly::testing {
namespace {

constexpr QRgb White = 0xFFFFFFFF;
constexpr QRgb Black = 0xFF000000;
constexpr int WhiteColour = 0xFFFFFF;

class ImageConverter : public DrawingFilesFixture {
protected:
    frmImageConverter& form = openConverter();

    // The menu entry starts disabled: the program's code enables it here.
    frmImageConverter& openConverter() {
        Control& entry = main.control(QStringLiteral("mnuFile_Convert"));
        entry.setEnabled(true);
        main.raiseEvent(entry, QStringLiteral("Click"));
        return app->form<frmImageConverter>();
    }
    using DrawingFilesFixture::click;
    void click(Control& button) { form.raiseEvent(button, QStringLiteral("Click")); }
    void mouseUp(float x, float y, int button = 1) {
        EventArgs args{button, 0, x, y};
        form.raiseEvent(form.Picture1, QStringLiteral("MouseUp"), args);
    }
    // A picture of `width` by `height` in one colour, with the given pixels set.
    void show(int width, int height, QRgb fill, const std::vector<std::pair<QPoint, QRgb>>& pixels = {}) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(fill);
        for (const auto& [at, colour] : pixels)
            image.setPixel(at, colour);
        form.picture().setPicture(image);
    }
};

TEST_F(ImageConverter, TheMenuEntryStartsDisabledAndOpensTheWindowModally) {
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_Convert")).caption(),
              QStringLiteral("&Convert Image And Import"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_Import")).caption(),
              QStringLiteral("&Import Picture From File"));
    auto fresh = program::makeApplication(port, waiter, home);
    fresh->gTemplateFolder = app->gTemplateFolder;
    EXPECT_FALSE(fresh->form<frmMain>().control(QStringLiteral("mnuFile_Convert")).enabled());
    ASSERT_EQ(app->modalStack().size(), 1u);
    EXPECT_EQ(app->modalStack().back(), &form);
}

TEST_F(ImageConverter, EveryControlHasItsText) {
    EXPECT_EQ(form.caption(), QStringLiteral("Image Converter"));
    EXPECT_EQ(form.Label1.caption(), QStringLiteral("Image/Picture Converter"));
    EXPECT_EQ(
        form.Label4.caption(),
        QStringLiteral("Image Converter will allow you to load an image from file set a transparent colour "
                       "and write the rest of the image to the main canvas as a vector..."));
    EXPECT_EQ(form.cmdLoad.caption(), QStringLiteral("Load Image"));
    EXPECT_EQ(form.cmdTransp.caption(), QStringLiteral("Set Transp"));
    EXPECT_EQ(form.cmdStart.caption(), QStringLiteral("Start"));
    EXPECT_EQ(form.cmdClear.caption(), QStringLiteral("Clear"));
    EXPECT_EQ(form.Picture1.kind(), ControlKind::PictureBox);
    EXPECT_EQ(form.picture().scaleMode(), PictureBox::PixelScale);
    EXPECT_EQ(form.TransparentColour, 0);
    EXPECT_FALSE(form.PickingColour);
    EXPECT_TRUE(form.cmdLoad.enabled());
    EXPECT_FALSE(form.cmdClear.enabled());
    EXPECT_FALSE(form.cmdTransp.enabled());
    EXPECT_FALSE(form.cmdStart.enabled());
}

TEST_F(ImageConverter, LoadAsksForABitmapAndEnablesTheThreeButtons) {
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(QColor(10, 20, 30));
    ASSERT_TRUE(image.save(dir.filePath(QStringLiteral("room.bmp")), "BMP"));
    port.queueOpen(dir.filePath(QStringLiteral("room.bmp")));
    events.clear();
    click(form.cmdLoad);
    EXPECT_EQ(events, QStringList{QStringLiteral(
                          "open:Select An Image To Convert....|All Picture Files (*.bmp)|*.bmp")});
    EXPECT_TRUE(form.cmdClear.enabled());
    EXPECT_TRUE(form.cmdTransp.enabled());
    EXPECT_TRUE(form.cmdStart.enabled());
    EXPECT_DOUBLE_EQ(form.picture().scaleWidth(), 30);
    EXPECT_DOUBLE_EQ(form.picture().scaleHeight(), 20);
    EXPECT_EQ(form.picture().point(29, 19), 10 | (20 << 8) | (30 << 16));
    // A cancelled dialog disables them again and keeps the picture.
    port.queueOpen(std::nullopt);
    click(form.cmdLoad);
    EXPECT_FALSE(form.cmdStart.enabled());
    EXPECT_TRUE(form.picture().hasPicture());
}

TEST_F(ImageConverter, AFileThatIsNoPictureStopsTheLoadWithTheRunTimeError) {
    QFile text(dir.filePath(QStringLiteral("notes.bmp")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not a bitmap");
    text.close();
    port.queueOpen(text.fileName());
    events.clear();
    click(form.cmdLoad);
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events[1], QStringLiteral("msgbox:Run-time error '481':\n\nInvalid picture"));
    EXPECT_FALSE(form.cmdStart.enabled());
    EXPECT_FALSE(form.picture().hasPicture());
}

TEST_F(ImageConverter, ClearEmptiesThePictureAndDisablesTheButtons) {
    show(5, 5, White);
    form.cmdStart.setEnabled(true);
    click(form.cmdClear);
    EXPECT_FALSE(form.picture().hasPicture());
    EXPECT_EQ(form.picture().point(0, 0), -1);
    EXPECT_FALSE(form.cmdClear.enabled());
    EXPECT_FALSE(form.cmdTransp.enabled());
    EXPECT_FALSE(form.cmdStart.enabled());
}

TEST_F(ImageConverter, SetTranspAsksForAClickAndTheReleasePicksTheColour) {
    show(10, 10, White, {{QPoint(3, 4), qRgb(255, 128, 0)}});
    events.clear();
    click(form.cmdTransp);
    EXPECT_EQ(events,
              QStringList{QStringLiteral("msgbox:Single left click the colour on the picture you want to be "
                                         "set as transparent.")});
    EXPECT_TRUE(form.PickingColour);
    mouseUp(3, 4);
    EXPECT_EQ(form.TransparentColour, 0x0080FF);
    EXPECT_EQ(form.lblColIndecator.backColor(), 0x0080FFu);
    EXPECT_FALSE(form.PickingColour);
    // A release without Set Transp picks nothing.
    mouseUp(0, 0);
    EXPECT_EQ(form.TransparentColour, 0x0080FF);
}

TEST_F(ImageConverter, WithNoColourPickedBlackIsTransparentAndEachOtherPixelYields) {
    show(4, 3, White, {{QPoint(1, 0), Black}, {QPoint(2, 2), Black}, {QPoint(3, 2), Black}});
    click(form.cmdStart);
    // 12 pixels, 3 black: 9 yields for pixels and 3 for rows.
    EXPECT_EQ(ports.yields, 12);
    EXPECT_EQ(form.Label3.caption(), QStringLiteral("1 2"));
    EXPECT_EQ(form.Label2.caption(), QStringLiteral("Pic Point On Height: 2"));
    EXPECT_EQ(form.CurrentColour, 0);
}

TEST_F(ImageConverter, APickedColourIsSkippedAndBlackIsThenShown) {
    show(4, 3, White, {{QPoint(1, 0), Black}});
    click(form.cmdTransp);
    mouseUp(0, 0);
    ASSERT_EQ(form.TransparentColour, WhiteColour);
    ports.yields = 0;
    click(form.cmdStart);
    EXPECT_EQ(ports.yields, 1 + 3);
    EXPECT_EQ(form.Label3.caption(), QStringLiteral("1 0"));
    EXPECT_EQ(form.CurrentColour, WhiteColour);
}

TEST_F(ImageConverter, TheWalkWritesNothingToTheCanvas) {
    engine().setModified(false);
    const QVariantList before = engine().describeShapes();
    show(6, 6, White);
    click(form.cmdStart);
    EXPECT_EQ(engine().describeShapes(), before);
    EXPECT_FALSE(engine().modified());
}

TEST_F(ImageConverter, ClearDuringTheWalkMakesTheRemainingReadsMinusOne) {
    show(4, 3, White);
    ports.onYield = [this] {
        if (ports.yields == 2)
            click(form.cmdClear);
    };
    click(form.cmdStart);
    // Two pixels of row 0, then only the three rows' own yields.
    EXPECT_EQ(ports.yields, 2 + 3);
    EXPECT_EQ(form.Label3.caption(), QStringLiteral("1 0"));
    EXPECT_EQ(form.Label2.caption(), QStringLiteral("Pic Point On Height: 2"));
    EXPECT_EQ(form.CurrentColour, -1);
}

TEST_F(ImageConverter, TheRowsBoundIsReadOnceAndTheColumnsBoundEachRow) {
    show(4, 3, White);
    // At the end of row 0 the box shrinks to 2 by 1 pixels.
    ports.onYield = [this] {
        if (form.Label2.caption() == QLatin1String("Pic Point On Height: 0") && ports.yields == 5)
            form.Picture1.move(form.Picture1.geometry().left(), form.Picture1.geometry().top(), 30, 15);
    };
    click(form.cmdStart);
    EXPECT_EQ(ports.yields, 4 + 1 + 2 + 1 + 2 + 1);
    EXPECT_EQ(form.Label3.caption(), QStringLiteral("1 2"));
    EXPECT_EQ(form.Label2.caption(), QStringLiteral("Pic Point On Height: 2"));
}

TEST_F(ImageConverter, ARowOf32768PixelsOverflowsTheSixteenBitCounter) {
    show(32768, 1, White);
    events.clear();
    click(form.cmdStart);
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0], QStringLiteral("msgbox:Run-time error '6':\n\nOverflow"));
    EXPECT_EQ(form.Label3.caption(), QStringLiteral("32767 0"));
    EXPECT_EQ(form.Label2.caption(), QString());
    EXPECT_EQ(ports.yields, 32768);
}

TEST_F(ImageConverter, APictureTallerThan32767PixelsOverflowsBeforeTheFirstRead) {
    show(1, 40000, White);
    events.clear();
    click(form.cmdStart);
    EXPECT_EQ(events, QStringList{QStringLiteral("msgbox:Run-time error '6':\n\nOverflow")});
    EXPECT_EQ(ports.yields, 0);
}

TEST_F(ImageConverter, ClosingTheConverterActivatesTheMainWindow) {
    engine().setModified(true);
    app->unload(form);
    EXPECT_FALSE(engine().modified());
    EXPECT_TRUE(app->modalStack().empty());
}

} // namespace
} // namespace tessaly::testing
