// The drawing scale with the values it brings, the guide lines it lays, and
// the dimension bars whose figures it measures.
#include "frmMain.h"

#include "LateBound.h"
#include "core/runtime/Vb.h"
#include "templates/ScaleTable.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {
using templates::ScaleRow;
using templates::ScaleTable;
constexpr int LandscapeGuidesDown = 210;   // guide limits of a landscape page, mm
constexpr int LandscapeGuidesAcross = 290; // five short of the page's 295, as laid always
constexpr int LabelSleep = 500;            // milliseconds the label step waits at its end
// Offsets of a dimension figure's text box from the press, page millimetres.
constexpr int HorizontalLeft = 0, HorizontalTop = -2, FigureRight = 20, FigureBottom = 7;
constexpr int VerticalLeft = 2, VerticalTop = 1;

// The whole number a read-out shows, without its sign.
int32_t unsignedReadOut(const QString& text) {
    return vb::toInt32(text.startsWith(QLatin1Char('-')) ? text.mid(1) : text);
}
} // namespace

void frmMain::applyScaleRow(int value, bool fromScaleBox) {
    const ScaleRow* row = templates::scaleRow(value);
    if (!row)
        return;
    ScaleValue = static_cast<int16_t>(row->value);
    app_.gGridStep = row->gridStep;
    ExternalWallWidth = row->externalWall;
    InternalWallWidth = row->internalWall;
    TextFontSize = fromScaleBox ? row->fontByBox : row->fontBySetScale;
}

void frmMain::layGuides(bool landscape) {
    late::set(app_.gView, "ShowGuides", false);
    late::call(app_.gHGuides, "Clear");
    late::call(app_.gVGuides, "Clear");
    const int down = landscape ? LandscapeGuidesDown : LandscapeGuidesAcross;
    const int across = landscape ? LandscapeGuidesAcross : LandscapeGuidesDown;
    const int step = app_.gGridStep;
    for (int y = 0; step > 0 && y <= down; y += step)
        late::call(app_.gHGuides, "Add", {y});
    for (int x = 0; step > 0 && x <= across; x += step)
        late::call(app_.gVGuides, "Add", {x});
    late::set(app_.gView, "ShowGuides", true);
}

void frmMain::SetScale(const QString& scale) {
    app_.ui.setMousePointer(pointer::Hourglass);
    control(QStringLiteral("cboScale")).setText(QStringLiteral("1:") + scale);
    for (const ScaleRow& row : ScaleTable)
        if (scale == QString::number(row.value))
            applyScaleRow(row.value, false);
    const int height = late::get(app_.gPage, "Height").toInt();
    const int width = late::get(app_.gPage, "Width").toInt();
    layGuides(height < width);
    app_.ui.setMousePointer(pointer::Default);
}

void frmMain::cboScale_Click() {
    app_.ui.setMousePointer(pointer::Hourglass);
    const QString text = control(QStringLiteral("cboScale")).text();
    for (const ScaleRow& row : ScaleTable)
        if (text == QStringLiteral("1:%1").arg(row.value)) {
            applyScaleRow(row.value, true);
            late::set(canvas1(), "DrawingTag", QString::number(row.value));
        }
    layGuides(PageIsLandscape);
    app_.ui.setMousePointer(pointer::Default);
}

void frmMain::dimensionLabelStep() {
    const int32_t h = unsignedReadOut(control(QStringLiteral("lblHLineLen")).caption());
    const int32_t v = unsignedReadOut(control(QStringLiteral("lblVLineLen")).caption());
    const bool horizontal = h > v;
    Control& store = control(QStringLiteral("RTF1"));
    auto figure = [&](int32_t measured) {
        if (!AskForDimensions) {
            store.setText(QString::number(measured));
            return;
        }
        const std::optional<QString> typed =
            app_.ui.inputBox(QStringLiteral("Please Enter The Dimension Value"),
                             QStringLiteral("Dimension Bar Value"), QString::number(measured));
        store.setText(typed.value_or(QString()));
    };
    if (horizontal) {
        figure(h);
        late::call(app_.gShapeList, "AddText",
                   {store.text(), ClickX + HorizontalLeft, ClickY + HorizontalTop, ClickX + FigureRight,
                    ClickY + FigureBottom});
    } else {
        RotateNextTextBox = true;
        figure(v);
        late::call(app_.gShapeList, "AddText",
                   {store.text(), ClickX + VerticalLeft, ClickY + VerticalTop, ClickX + FigureRight,
                    ClickY + FigureBottom});
    }
    app_.sleep(LabelSleep);
}

void frmMain::mnuEdit_AutoDimension_Click() {
    Control& entry = control(QStringLiteral("mnuEdit_AutoDimension"));
    if (entry.checked()) {
        entry.setChecked(false);
        AskForDimensions = false;
    } else {
        entry.setChecked(true);
        AskForDimensions = true;
    }
}

} // namespace tessaly
