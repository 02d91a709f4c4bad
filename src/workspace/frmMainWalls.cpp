// Section walls typed in by length through the wall input panel.
#include "frmMain.h"

#include "LateBound.h"
#include "canvas/api/CanvasCodes.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {
constexpr int KeypadCancel = 10; // WallInputButton indices beyond the digits
constexpr int KeypadClear = 11;
constexpr int KeypadOk = 12;
constexpr int WallType = canvas::shape_type::Rectangle; // a section wall is a rectangle
constexpr int WallOrigin = 5; // every section wall starts 5 mm in from the page's top left corner
} // namespace

void frmMain::WallInputButton_Click(int index) {
    Control& length = control(QStringLiteral("txtWallLen"));
    if (index >= 0 && index <= 9) {
        length.setText(length.text() + QString::number(index));
    } else if (index == KeypadCancel) {
        control(QStringLiteral("WallInput")).setVisible(false);
        control(QStringLiteral("WallInputSh")).setVisible(false);
    } else if (index == KeypadClear) {
        length.setText(QString());
    } else if (index == KeypadOk) {
        createSectionWall();
    }
}

void frmMain::createSectionWall() {
    const bool horizontal = toolText() == QLatin1String("Horizontal Wall");
    const QString typed = control(QStringLiteral("txtWallLen")).text();
    int32_t pageLength = 0;
    if (vb::isNumeric(typed))
        pageLength = vb::toInt32(static_cast<double>(vb::toInt32(typed)) / ScaleValue);
    int32_t thickness = -1;
    if (pageLength >= 1) {
        const QString width = control(QStringLiteral("Combo1")).text();
        if (width == QLatin1String("External Wall Width"))
            thickness = ExternalWallWidth;
        else if (width == QLatin1String("Internal Wall Width"))
            thickness = InternalWallWidth;
    }
    if (thickness >= 0) {
        const int32_t along = vb::checkInt32(static_cast<long long>(pageLength) + WallOrigin);
        const int32_t across = thickness + WallOrigin;
        if (horizontal)
            late::call(app_.gShapeList, "AddShape", {WallType, WallOrigin, WallOrigin, along, across});
        else
            late::call(app_.gShapeList, "AddShape", {WallType, WallOrigin, WallOrigin, across, along});
    }
    // The panel closes whether a wall was made or not.
    control(QStringLiteral("WallInput")).setVisible(false);
    control(QStringLiteral("WallInputSh")).setVisible(false);
}

} // namespace tessaly
