// The drawing surface of a picture box: its picture, its scale, the colour
// at a point, and these by name as the script driver reaches them.
#include "core/forms/PictureBox.h"
#include "core/forms/ApplicationBase.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Waiter.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;

namespace {

class PictureBoxSurface : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    ApplicationBase app{ui, waiter, AppHome(dir.path())};
    Form form{app, QStringLiteral("frmTest")};
    Control& box = form.add(ControlKind::PictureBox, QStringLiteral("Picture1"));
    PictureBox& surface = PictureBox::attach(box);

    // A 4 by 3 picture: red at (0,0), green at (3,2), blue elsewhere.
    static QImage sample() {
        QImage image(4, 3, QImage::Format_RGB32);
        image.fill(QColor(0, 0, 255));
        image.setPixelColor(0, 0, QColor(255, 0, 0));
        image.setPixelColor(3, 2, QColor(0, 255, 0));
        return image;
    }
};

TEST_F(PictureBoxSurface, PointGivesTheColourWithRedInTheLowByte) {
    surface.setScaleMode(PictureBox::PixelScale);
    surface.setPicture(sample());
    EXPECT_EQ(surface.point(0, 0), 0x0000FF);
    EXPECT_EQ(surface.point(3, 2), 0x00FF00);
    EXPECT_EQ(surface.point(1, 1), 0xFF0000);
    EXPECT_EQ(surface.point(0.9, 0.5), 0x0000FF); // within the first pixel
}

TEST_F(PictureBoxSurface, PointOutsideThePictureOrWithoutOneIsMinusOne) {
    surface.setScaleMode(PictureBox::PixelScale);
    EXPECT_EQ(surface.point(0, 0), -1);
    surface.setPicture(sample());
    EXPECT_EQ(surface.point(4, 0), -1);
    EXPECT_EQ(surface.point(0, 3), -1);
    EXPECT_EQ(surface.point(-1, 0), -1);
    EXPECT_EQ(surface.point(-0.5, 0), -1);
    surface.clear();
    EXPECT_FALSE(surface.hasPicture());
    EXPECT_EQ(surface.point(0, 0), -1);
}

TEST_F(PictureBoxSurface, TwipsScaleCountsFifteenToAPixel) {
    box.move(0, 0, 600, 450);
    surface.setPicture(sample());
    EXPECT_EQ(surface.scaleMode(), PictureBox::TwipsScale);
    EXPECT_DOUBLE_EQ(surface.scaleWidth(), 600);
    EXPECT_EQ(surface.point(45, 30), 0x00FF00); // pixel (3,2)
    EXPECT_EQ(surface.point(44, 30), 0xFF0000); // pixel (2,2)
    surface.setScaleMode(PictureBox::PixelScale);
    EXPECT_DOUBLE_EQ(surface.scaleWidth(), 40);
    EXPECT_DOUBLE_EQ(surface.scaleHeight(), 30);
}

TEST_F(PictureBoxSurface, AutoSizeGivesTheBoxThePicturesSizeAndClearingKeepsIt) {
    box.move(300, 150, 9000, 9000);
    surface.setScaleMode(PictureBox::PixelScale);
    surface.setAutoSize(true);
    surface.setPicture(sample());
    EXPECT_EQ(box.geometry(), QRect(300, 150, 60, 45));
    EXPECT_DOUBLE_EQ(surface.scaleWidth(), 4);
    EXPECT_DOUBLE_EQ(surface.scaleHeight(), 3);
    surface.clear();
    EXPECT_DOUBLE_EQ(surface.scaleWidth(), 4);
}

TEST_F(PictureBoxSurface, TheViewIsToldOfEveryNewPicture) {
    QStringList told;
    box.onChanged = [&](const QString& p) { told << p; };
    surface.setPicture(sample());
    surface.clear();
    EXPECT_EQ(told, (QStringList{QStringLiteral("Picture"), QStringLiteral("Picture")}));
}

TEST_F(PictureBoxSurface, TheControlAnswersPointAndItsScaleByName) {
    box.set(QStringLiteral("ScaleMode"), 3);
    surface.setPicture(sample());
    box.move(0, 0, 60, 45);
    EXPECT_EQ(box.get(QStringLiteral("Point"), {3, 2}).toInt(), 0x00FF00);
    EXPECT_EQ(box.get(QStringLiteral("point"), {9, 9}).toInt(), -1);
    EXPECT_DOUBLE_EQ(box.get(QStringLiteral("ScaleWidth")).toDouble(), 4);
    EXPECT_DOUBLE_EQ(box.get(QStringLiteral("ScaleHeight")).toDouble(), 3);
    EXPECT_EQ(box.get(QStringLiteral("ScaleMode")).toInt(), 3);
    QVariantList at{0, 0};
    EXPECT_EQ(box.call(QStringLiteral("Point"), at).toInt(), 0x0000FF);
    EXPECT_EQ(PictureBox::of(box), &surface);
}

TEST_F(PictureBoxSurface, OnlyTwipsAndPixelsAreScales) {
    try {
        surface.setScaleMode(2);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 380);
    }
    EXPECT_EQ(surface.scaleMode(), PictureBox::TwipsScale);
}

TEST_F(PictureBoxSurface, ABoxWithoutASurfaceHasNoPoint) {
    Control& plain = form.add(ControlKind::PictureBox, QStringLiteral("Picture2"));
    EXPECT_EQ(PictureBox::of(plain), nullptr);
    try {
        plain.get(QStringLiteral("Point"), {0, 0});
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::NotSupported);
    }
}

} // namespace
