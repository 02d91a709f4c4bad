// The template pane of the side bar (the symbol libraries by family and
// scale) and the shape list.
#include "frmMain.h"

#include "LateBound.h"
#include "canvas/api/POLARDraw.h"
#include "core/files/FileSystem.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "templates/library/DrawingSet.h"
#include "workspace/Application.h"

#include <cmath>

namespace tessaly {

namespace {
constexpr int LibraryCount = 13;
// The symbol libraries in the order of the box: the item text (also the
// status text) and the file name; "%1" stands for the scale's denominator.
struct Library {
    const char* text;
    const char* file;
};
constexpr Library Libraries[LibraryCount] = {
    {"Standard Doors", "Doors_%1.pdr"},
    {"Alt Standard Doors", "Doors_%1_2.pdr"},
    {"Bi-Fold and Sliding Doors", "BiFold_%1.pdr"},
    {"Misc Doors", "DoorsMisc_%1.pdr"},
    {"Windows", "Windows_%1.pdr"},
    {"Stairs", "Stairs_%1.pdr"},
    {"General Fixtures", "Fixtures_%1.pdr"},
    {"Kitchen Units", "KitchenUnits.pdr"},
    {"Kitchen Fixtures", "KitchenFixtures.pdr"},
    {"Fire Equipment", "Fire.pdr"},
    {"Security Equipment", "AccessControl.pdr"},
    {"Electrical Symbols", "Electrical.pdr"},
    {"User Items", "User.pdr"},
};
constexpr int MissingTemplate = 30001; // the canvas's error for a library file that is not there
constexpr double SymbolReachPx = 4.0;  // how near the pointer must come to a symbol for its tip

// The real size of a symbol: the catalogue's, for a symbol of the installed
// libraries; else its size on the page times the library's scale.
QSizeF realSize(const canvas::ShapeData& symbol, int scale) {
    for (const templates::Library& library : templates::builtInCatalogue().libraries)
        for (const templates::Symbol& s : library.symbols)
            if (s.name == symbol.name)
                return s.extent().size();
    return symbol.box().size() * scale;
}

// The zoom offset of a library at a scale, percent from the template zoom.
// Symbols of the coarser scales are shown larger.
int zoomOffset(int item, int scale) {
    const bool coarse = scale == 200 || scale == 300;
    switch (item) {
    case 0:
        return scale == 50 ? 5 : scale == 100 ? 10 : coarse ? 40 : -20;
    case 1:
        return scale == 50 ? 5 : scale == 100 ? 25 : coarse ? 80 : -20;
    case 2:
        return scale == 100 ? 0 : coarse ? 40 : -25;
    case 4:
        return scale >= 100 ? 0 : -10;
    case 5:
        return coarse ? 60 : 0;
    default:
        return 0;
    }
}
} // namespace

void frmMain::fillTemplateList() {
    for (const Library& library : Libraries)
        cboTemplates.addItem(QString::fromLatin1(library.text));
}

void frmMain::loadFirstTemplates() {
    const QString path = app_.gTemplateFolder + QStringLiteral("Doors_") + QString::number(ScaleValue) +
                         QStringLiteral(".pdr");
    late::call(canvas2(), "LoadFile", {fs::toHost(path)});
}

void frmMain::cboTemplates_Click() {
    // Every step runs; the last error seen decides the message at the end.
    int lastError = 0;
    auto attempt = [&lastError](const std::function<void()>& step) {
        if (const int number = resumeNext(step))
            lastError = number;
    };
    const int item = cboTemplates.listIndex();
    const bool known = item >= 0 && item < LibraryCount;
    if (known) {
        const Library& library = Libraries[item];
        attempt([&] {
            const QString file = QString::fromLatin1(library.file);
            const QString name = file.contains(QLatin1String("%1")) ? file.arg(ScaleValue) : file;
            late::call(canvas2(), "LoadFile", {fs::toHost(app_.gTemplateFolder + name)});
        });
        attempt([&] { SB1.setPanelText(3, QString::fromLatin1(library.text)); });
        attempt([&] {
            const int16_t zoom =
                vb::checkInt16(static_cast<long long>(app_.gTemplateZoom) + zoomOffset(item, ScaleValue));
            late::set(canvas2(), "Zoom", static_cast<int>(zoom));
        });
    }
    attempt([&] { late::call(late::object(canvas2(), "Views"), "CenterPage"); });
    if (lastError == MissingTemplate)
        app_.ui.msgBox(QStringLiteral("The Object Template You Wish To Use Is Missing, Please Re-Install The "
                                      "Template\r\nError Number:%1")
                           .arg(lastError),
                       mb::Exclamation, AppTitle);
}

void frmMain::POLARDraw2_SelectionChanged(int) {
    // A click on a symbol: the select tool, then the symbol copied across.
    raiseEvent(control(QStringLiteral("cmdToolBarButton"), 5), QStringLiteral("Click"));
    TemplateInserted = true;
    late::call(canvas2(), "Copy");
    late::call(canvas1(), "Paste");
    int32_t tool = 1, type = -1, option = -1;
    SetDrawingTool(tool, type, option);
}

void frmMain::POLARDraw2_MouseMove(float x, float y) {
    auto* engine = dynamic_cast<canvas::POLARDraw*>(canvas2().get());
    if (!engine)
        return;
    const canvas::ViewGeometry& view = engine->viewGeometry();
    const int pos =
        engine->drawing().topmostAt(view.screenToPage(QPointF(x, y)), SymbolReachPx / view.pixelsPerMm());
    QString tip;
    if (pos >= 0) {
        const canvas::ShapeData& symbol = *engine->drawing().at(pos);
        bool tagged = false;
        const int tag = engine->drawingTag().toInt(&tagged);
        const QSizeF size = realSize(symbol, tagged && tag > 0 ? tag : ScaleValue);
        tip = QStringLiteral("%1, %2 x %3 mm")
                  .arg(symbol.name)
                  .arg(std::lround(size.width()))
                  .arg(std::lround(size.height()));
    }
    if (POLARDraw2.toolTipText() != tip)
        POLARDraw2.setToolTipText(tip);
}

void frmMain::mnuView_Shapes_Click() {
    lstShapeList.clear();
    const int16_t count = vb::toInt16(late::get(app_.gShapeList, "Count"));
    for (int position = 1; position <= count; ++position) {
        const AutoPtr shape = late::object(app_.gShapeList, "Item", {position});
        lstShapeList.addItem(vb::toText(late::get(shape, "Id")) + QStringLiteral(" - ") +
                             vb::toText(late::get(shape, "Name")) + QStringLiteral(" - ") +
                             vb::toText(late::get(shape, "Type")));
    }
}

} // namespace tessaly
