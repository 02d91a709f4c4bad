// The view of a picture box with a drawing surface: it shows the picture at
// its top-left corner and reports the mouse in the box's scale units with the
// platform's button and shift values.
#include "UiTestSupport.h"
#include "core/forms/PictureBox.h"
#include "ui/FormView.h"
#include "ui/PictureBoxWidget.h"

#include <QTest>

namespace tessaly::ui {
namespace {

using testing::RecordingForm;

class PictureBoxView : public ::testing::Test {
protected:
    testing::ScriptedApp scripted;
    std::shared_ptr<RecordingForm> form =
        std::make_shared<RecordingForm>(scripted.app, QStringLiteral("frmTest"));
    Control& box = addBox();
    PictureBox& surface = PictureBox::attach(box);
    QStringList mouse; // "Event button shift x y"

    Control& addBox() {
        Control& c = form->add(ControlKind::PictureBox, QStringLiteral("Picture1"));
        c.move(150, 150, 1500, 1200);
        return c;
    }
    void recordMouse() {
        for (const char* event : {"MouseDown", "MouseMove", "MouseUp"})
            form->on(QStringLiteral("Picture1"), QString::fromLatin1(event),
                     [this, event](Control&, EventArgs& a) {
                         mouse << QStringLiteral("%1 %2 %3 %4 %5")
                                      .arg(QString::fromLatin1(event))
                                      .arg(a.value(0).toInt())
                                      .arg(a.value(1).toInt())
                                      .arg(a.value(2).toDouble())
                                      .arg(a.value(3).toDouble());
                     });
    }
    // A shown view whose box records the mouse, in the given scale.
    std::unique_ptr<FormView> mouseView(int scaleMode) {
        surface.setScaleMode(scaleMode);
        recordMouse();
        auto view = std::make_unique<FormView>(*form);
        view->show();
        return view;
    }
    static QImage sample() {
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(QColor(200, 30, 30));
        return image;
    }
};

TEST_F(PictureBoxView, ThePictureIsPaintedFromTheTopLeftCorner) {
    FormView view(*form);
    view.resize(300, 200);
    view.show();
    auto* widget = dynamic_cast<PictureBoxWidget*>(view.widgetFor(box));
    ASSERT_NE(widget, nullptr);
    EXPECT_EQ(widget->geometry().size(), QSize(100, 80));
    surface.setPicture(sample());
    QImage shown = widget->grab().toImage();
    EXPECT_EQ(shown.pixelColor(0, 0), QColor(200, 30, 30));
    EXPECT_EQ(shown.pixelColor(39, 29), QColor(200, 30, 30));
    EXPECT_NE(shown.pixelColor(60, 50), QColor(200, 30, 30));
    surface.clear();
    shown = widget->grab().toImage();
    EXPECT_NE(shown.pixelColor(0, 0), QColor(200, 30, 30));
}

TEST_F(PictureBoxView, AutoSizeMovesTheWidgetToThePicturesSize) {
    surface.setAutoSize(true);
    FormView view(*form);
    view.show();
    surface.setPicture(sample());
    EXPECT_EQ(view.widgetFor(box)->geometry(), QRect(10, 10, 40, 30));
}

TEST_F(PictureBoxView, TheMouseIsReportedInPixelsForAPixelScale) {
    const auto view = mouseView(PictureBox::PixelScale);
    QWidget* widget = view->widgetFor(box);
    QTest::mousePress(widget, Qt::LeftButton, Qt::ShiftModifier, QPoint(12, 7));
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::ShiftModifier, QPoint(13, 8));
    QTest::mousePress(widget, Qt::RightButton, Qt::ControlModifier, QPoint(3, 4));
    ASSERT_GE(mouse.size(), 3);
    EXPECT_EQ(mouse[0], QStringLiteral("MouseDown 1 1 12 7"));
    EXPECT_EQ(mouse[1], QStringLiteral("MouseUp 1 1 13 8"));
    EXPECT_EQ(mouse[2], QStringLiteral("MouseDown 2 2 3 4"));
}

TEST_F(PictureBoxView, TheMouseIsReportedInTwipsForATwipsScale) {
    const auto view = mouseView(PictureBox::TwipsScale);
    QTest::mouseRelease(view->widgetFor(box), Qt::LeftButton, {}, QPoint(2, 3));
    ASSERT_EQ(mouse.size(), 1);
    EXPECT_EQ(mouse[0], QStringLiteral("MouseUp 1 0 30 45"));
}

TEST_F(PictureBoxView, AMoveWithAButtonHeldReportsTheButtons) {
    const auto view = mouseView(PictureBox::PixelScale);
    QWidget* widget = view->widgetFor(box);
    QMouseEvent move(QEvent::MouseMove, QPointF(20, 10), widget->mapToGlobal(QPointF(20, 10)), Qt::NoButton,
                     Qt::LeftButton | Qt::RightButton, Qt::AltModifier);
    QApplication::sendEvent(widget, &move);
    ASSERT_EQ(mouse.size(), 1);
    EXPECT_EQ(mouse[0], QStringLiteral("MouseMove 3 4 20 10"));
}

TEST_F(PictureBoxView, ABoxUnderAModalWindowTakesNoMouse) {
    const auto view = mouseView(PictureBox::PixelScale);
    auto modal = std::make_shared<RecordingForm>(scripted.app, QStringLiteral("frmModal"));
    scripted.app.registerForm(QStringLiteral("frmModal"), [modal](ApplicationBase&) { return modal; });
    scripted.app.show(scripted.app.form(QStringLiteral("frmModal")), true);
    QTest::mousePress(view->widgetFor(box), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_TRUE(mouse.isEmpty());
}

} // namespace
} // namespace tessaly::ui
