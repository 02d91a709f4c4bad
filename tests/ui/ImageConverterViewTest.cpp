// The image converter as the desktop shows it: its buttons and texts, a
// picture loaded by the Load Image button, and a colour picked by Set Transp
// and a click on the picture, shown as the indicator's background. With
// TESSALY_FILES_SCREENSHOT_DIR set to a folder (scripts/screenshot.sh
// runs it so under a virtual display) it also saves the window as
// files-converter.png there.
#include "ProgramWindows.h"
#include "core/forms/PictureBox.h"
#include "drawing_files/frmImageConverter.h"
#include "ui/FormView.h"
#include "ui/PictureBoxWidget.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTest>

namespace tessaly::ui {
namespace {

const QColor Wall(40, 40, 40);
const QColor Floor(250, 246, 232);
const QColor Water(70, 130, 200); // the colour picked
constexpr QPoint OnTheWater(70, 130);

// A small floor plan as a bitmap: walls, a floor, a pool.
QImage planPicture() {
    QImage image(360, 240, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    p.fillRect(QRect(20, 20, 320, 200), Wall);
    p.fillRect(QRect(30, 30, 300, 180), Floor);
    p.fillRect(QRect(180, 30, 8, 120), Wall);
    p.fillRect(QRect(40, 100, 120, 90), Water);
    p.setPen(QPen(Wall, 3));
    p.drawArc(QRect(188, 120, 60, 60), 90 * 16, 90 * 16);
    return image;
}

class ImageConverterView : public testing::ProgramWindows {
protected:
    frmImageConverter& form = openConverter();
    FormView view{form};

    // The menu entry starts disabled: the program's code enables it here.
    frmImageConverter& openConverter() {
        Control& entry = main.control(QStringLiteral("mnuFile_Convert"));
        entry.setEnabled(true);
        main.raiseEvent(entry, QStringLiteral("Click"));
        return app->form<frmImageConverter>();
    }
    template <class W> W* widget(Control& c) { return dynamic_cast<W*>(view.widgetFor(c)); }
};

TEST_F(ImageConverterView, ALoadedPictureAndAPickedColourAreShown) {
    const QString file = QDir(home.home().dir()).filePath(QStringLiteral("plan.bmp"));
    ASSERT_TRUE(planPicture().save(file, "BMP"));
    view.resize(view.initialSize());
    view.setWindowTitle(form.caption());
    view.show();
    testing::processPending();
    auto* load = widget<QPushButton>(form.cmdLoad);
    auto* start = widget<QPushButton>(form.cmdStart);
    ASSERT_NE(load, nullptr);
    EXPECT_EQ(load->text(), QStringLiteral("Load Image"));
    EXPECT_EQ(widget<QPushButton>(form.cmdTransp)->text(), QStringLiteral("Set Transp"));
    EXPECT_EQ(widget<QLabel>(form.Label1)->text(), QStringLiteral("Image/Picture Converter"));
    EXPECT_FALSE(start->isEnabled());

    port.queueOpen(file);
    QTest::mouseClick(load, Qt::LeftButton);
    EXPECT_TRUE(start->isEnabled());
    auto* picture = widget<PictureBoxWidget>(form.Picture1);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), QSize(360, 240));
    testing::processPending();
    EXPECT_EQ(picture->grab().toImage().pixelColor(OnTheWater), Water);

    QTest::mouseClick(widget<QPushButton>(form.cmdTransp), Qt::LeftButton);
    ASSERT_TRUE(form.PickingColour);
    QTest::mousePress(picture, Qt::LeftButton, {}, OnTheWater);
    QTest::mouseRelease(picture, Qt::LeftButton, {}, OnTheWater);
    EXPECT_FALSE(form.PickingColour);
    EXPECT_EQ(form.TransparentColour, Water.red() | (Water.green() << 8) | (Water.blue() << 16));
    auto* indicator = widget<QLabel>(form.lblColIndecator);
    EXPECT_EQ(indicator->palette().color(QPalette::Window), Water);

    QTest::mouseClick(start, Qt::LeftButton);
    EXPECT_EQ(widget<QLabel>(form.Label2)->text(), QStringLiteral("Pic Point On Height: 239"));
    EXPECT_EQ(widget<QLabel>(form.Label3)->text(), QStringLiteral("359 239"));

    ASSERT_TRUE(
        testing::saveShot(view, "TESSALY_FILES_SCREENSHOT_DIR", QStringLiteral("files-converter.png")));
}

} // namespace
} // namespace tessaly::ui
