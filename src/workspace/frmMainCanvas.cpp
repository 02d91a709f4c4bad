// The handlers of the main canvas's events: the pointer read-outs, the
// styling of new shapes and strokes, the selection read-outs, the keyboard
// nudges and the file error boxes.
#include "frmMain.h"

#include "CanvasEventSink.h"
#include "LateBound.h"
#include "PortDialogHost.h"
#include "canvas/api/CanvasCodes.h"
#include "canvas/api/POLARDraw.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"

namespace tessaly {

namespace {
constexpr int LeftButton = 1;
constexpr int RightButton = 2;
constexpr int ShiftCtrl = 2; // shift value of the Ctrl key
constexpr int ShiftAlt = 4;  // shift value of the Alt key
constexpr int KeyLeft = 37;
constexpr int KeyUp = 38;
constexpr int KeyRight = 39;
constexpr int KeyDown = 40;
constexpr int16_t ModeInternalWall = 0;
constexpr int16_t ModeFurniture = 1;
constexpr int16_t ModeDimensionBar = 2;
constexpr int16_t ModeExternalWall = 3;
constexpr int16_t ModeTextTool = 4;
constexpr int16_t ModeTextPlaced = 5;
constexpr int TextTurn = 90; // degrees a dimension figure of a vertical bar is turned

const QString TextFontName = QStringLiteral("Arial");

int32_t times(int32_t a, int32_t b) {
    return vb::checkInt32(static_cast<long long>(a) * b);
}
int32_t minus(int32_t a, int32_t b) {
    return vb::checkInt32(static_cast<long long>(a) - b);
}
int32_t plus(int32_t a, int32_t b) {
    return vb::checkInt32(static_cast<long long>(a) + b);
}
} // namespace

void frmMain::pointerToPage(float x, float y, int32_t& px, int32_t& py) {
    px = vb::toInt32(static_cast<double>(x));
    py = vb::toInt32(static_cast<double>(y));
    const QVariant saved = late::get(canvas1(), "CoordinateMode");
    late::set(canvas1(), "CoordinateMode", canvas::coordinate_mode::Pixels);
    QVariantList point{px, py};
    late::call(app_.gViewList, "ScreenToClient", point);
    late::set(canvas1(), "CoordinateMode", saved);
    late::call(app_.gViewList, "ClientToPage", point);
    px = vb::toInt32(point.value(0));
    py = vb::toInt32(point.value(1));
}

QString frmMain::ShapeTypeName(int32_t id) {
    const AutoPtr shape = late::object(app_.gShapeList, "ItemById", {id});
    const int type = late::get(shape, "Type").toInt();
    // Index 0 (the arc) is passed over: an arc has no type name.
    for (int i = 1; i < Application::ShapeTypeCount; ++i)
        if (app_.gShapeTypeCodes[static_cast<size_t>(i)] == type)
            return app_.gShapeTypeNames[static_cast<size_t>(i)];
    return QString();
}

void frmMain::POLARDraw1_MouseDown(int& button, int&, float& x, float& y) {
    if (button != LeftButton)
        return;
    if (toolText() == QLatin1String("Dimension Bar"))
        late::call(app_.gSelection, "Clear");
    pointerToPage(x, y, ClickX, ClickY);
    MouseIsDown = true;
    if (toolText() == QLatin1String("Multi Point Wall") && CreateGuidePerClick) {
        late::call(app_.gHGuides, "Add", {ClickY});
        late::call(app_.gVGuides, "Add", {ClickX});
    }
}

void frmMain::POLARDraw1_MouseMove(int&, int&, float& x, float& y) {
    try {
        int32_t px = 0, py = 0;
        pointerToPage(x, y, px, py);
        auto show = [this](const char* label, int32_t value) {
            control(QString::fromLatin1(label)).setCaption(QString::number(value));
        };
        show("lblHPos", times(minus(px, app_.gGuideOriginX), ScaleValue));
        show("lblVPos", times(minus(py, app_.gGuideOriginY), ScaleValue));
        show("lblHLineLen", times(minus(px, ClickX), ScaleValue));
        show("lblVLineLen", times(minus(py, ClickY), ScaleValue));
        if (ShapeIsSelected && MouseIsDown) {
            // The selected shape is being dragged out.
            SelWidth = minus(SelRight, SelLeft);
            SelHeight = minus(SelBottom, SelTop);
            show("lblObjectHeight", plus(times(minus(py, ClickY), ScaleValue), times(SelHeight, ScaleValue)));
            show("lblObjectLen", plus(times(minus(px, ClickX), ScaleValue), times(SelWidth, ScaleValue)));
        }
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("Error: %1 %2").arg(e.number()).arg(e.description()), mb::Critical,
                       AppTitle);
    }
}

void frmMain::POLARDraw1_MouseUp(int& button, int&, float&, float&) {
    if (button == RightButton) {
        ++PopupMenuCount;
        if (onPopupMenu)
            onPopupMenu(QStringLiteral("mnuPopup"));
    } else if (toolText() == QLatin1String("Dimension Bar")) {
        dimensionLabelStep();
    }
    MouseIsDown = false;
}

void frmMain::POLARDraw1_ShapeAdded(int, int id) {
    const AutoPtr canvas = canvas1();
    auto shape = [this, id] { return late::object(app_.gShapeList, "ItemById", {id}); };
    if (DrawingMode == ModeFurniture) {
        late::set(canvas, "AutoRedraw", false);
        late::set(shape(), "Stroked", false);
    }
    const QString typeName = ShapeTypeName(id);
    if (typeName == QLatin1String("Rectangle")) {
        const QString status = toolText();
        if (status == QLatin1String("Horizontal Wall") || status == QLatin1String("Vertical Wall")) {
            late::set(canvas, "AutoRedraw", false);
            const AutoPtr s = shape();
            late::set(s, "Filled", true);
            late::set(s, "Stroked", false);
            late::set(late::object(s, "Line"), "Colour", wallColour());
            late::set(late::object(s, "Fill"), "Colour", wallColour());
            late::set(s, "Name", status + QString::number(id));
        } else {
            late::set(canvas, "AutoRedraw", false);
            late::set(shape(), "Name", QStringLiteral("Rectangle") + QString::number(id));
        }
    }
    if (typeName == QLatin1String("Plain Text")) {
        late::set(canvas, "AutoRedraw", false);
        const AutoPtr s = shape();
        late::set(s, "Filled", true);
        late::set(s, "Stroked", false);
        const AutoPtr font = late::object(late::object(s, "Text"), "Font");
        late::set(font, "Name", TextFontName);
        late::set(font, "Size", static_cast<int>(TextFontSize));
        late::set(font, "Bold", false);
        DrawingMode = ModeTextPlaced;
    }
    if (typeName == QLatin1String("Text Box")) {
        late::set(canvas, "AutoRedraw", false);
        const AutoPtr s = shape();
        late::set(s, "Filled", false);
        late::set(s, "Stroked", false);
        const AutoPtr font = late::object(late::object(s, "Text"), "Font");
        late::set(font, "Name", TextFontName);
        late::set(font, "Size", static_cast<int>(TextFontSize));
        late::set(font, "Bold", true);
        late::set(s, "Name", QStringLiteral("Textbox"));
        if (RotateNextTextBox)
            late::set(s, "Rotation", late::get(s, "Rotation").toInt() + TextTurn);
        RotateNextTextBox = false;
        DrawingMode = ModeTextPlaced;
    }
}

void frmMain::POLARDraw1_ShapeFinished(int, int id) {
    const AutoPtr canvas = canvas1();
    if (toolText() == QLatin1String("Dimension Bar"))
        DrawingMode = ModeDimensionBar;
    late::set(canvas, "AutoRedraw", false);
    auto styleStroke = [this](int weight) {
        const AutoPtr range = late::object(app_.gSelection, "Range");
        if (!range || late::get(range, "Count").toInt() < 1)
            return;
        const AutoPtr line = late::object(range, "Line");
        late::set(line, "Style", canvas::line_style::Solid);
        late::set(line, "Colour", wallColour());
        late::set(line, "Weight", weight);
        late::set(range, "Stroked", true);
    };
    switch (DrawingMode) {
    case ModeInternalWall:
        styleStroke(InternalWallWidth);
        break;
    case ModeFurniture:
    case ModeDimensionBar:
    case ModeTextTool:
        styleStroke(0);
        break;
    case ModeExternalWall:
        styleStroke(ExternalWallWidth);
        break;
    case ModeTextPlaced:
        late::set(late::object(app_.gShapeList, "ItemById", {id}), "Stroked", false);
        break;
    default:
        late::set(canvas, "AutoRedraw", true);
        late::call(canvas, "Redraw");
        DrawingMode = ModeInternalWall;
        break;
    }
    late::set(canvas, "AutoRedraw", true);
    late::call(canvas, "Redraw");
}

void frmMain::POLARDraw1_SelectionChanged(int id) {
    const AutoPtr range = late::object(app_.gSelection, "Range");
    if (!range || late::get(range, "Count").toInt() < 1)
        return;
    SB1.setPanelText(1, QStringLiteral("Selected Object: ") + ShapeTypeName(id));
    SelectedShapeIndex = id;
    QVariantList bounds{SelLeft, SelTop, SelRight, SelBottom};
    late::call(range, "GetBounds", bounds);
    SelLeft = vb::toInt32(bounds.value(0));
    SelTop = vb::toInt32(bounds.value(1));
    SelRight = vb::toInt32(bounds.value(2));
    SelBottom = vb::toInt32(bounds.value(3));
    SelWidth = minus(SelRight, SelLeft);
    SelHeight = minus(SelBottom, SelTop);
    ShapeIsSelected = true;
    control(QStringLiteral("lblObjectHeight")).setCaption(QString::number(times(ScaleValue, SelHeight)));
    control(QStringLiteral("lblObjectLen")).setCaption(QString::number(times(ScaleValue, SelWidth)));
}

void frmMain::POLARDraw1_ShapeChanged() {
    // Each step in turn; a failed step leaves the values it would have changed.
    resumeNext([&] {
        const AutoPtr range = late::object(app_.gSelection, "Range");
        if (!range)
            raiseError(err::ObjectRequired, QStringLiteral("Object required"));
        QVariantList bounds{SelLeft, SelTop, SelRight, SelBottom};
        late::call(range, "GetBounds", bounds);
        SelLeft = vb::toInt32(bounds.value(0));
        SelTop = vb::toInt32(bounds.value(1));
        SelRight = vb::toInt32(bounds.value(2));
        SelBottom = vb::toInt32(bounds.value(3));
    });
    resumeNext([&] { SelWidth = minus(SelRight, SelLeft); });
    resumeNext([&] { SelHeight = minus(SelBottom, SelTop); });
    resumeNext([&] { ShapeIsSelected = true; });
    resumeNext([&] {
        control(QStringLiteral("lblObjectHeight")).setCaption(QString::number(times(ScaleValue, SelHeight)));
    });
    resumeNext([&] {
        control(QStringLiteral("lblObjectLen")).setCaption(QString::number(times(ScaleValue, SelWidth)));
    });
}

void frmMain::POLARDraw1_KeyDown(int& keyCode, int& shift) {
    const AutoPtr canvas = canvas1();
    if (shift == ShiftCtrl) {
        late::set(canvas, "CoordinateMode", canvas::coordinate_mode::Pixels);
        auto nudge = [this](int dx, int dy) {
            if (RequireSelection())
                late::call(late::object(app_.gSelection, "Range"), "Move", {dx, dy});
        };
        switch (keyCode) {
        case KeyLeft:
            nudge(-1, 0);
            break;
        case KeyUp:
            nudge(0, -1);
            break;
        case KeyRight:
            nudge(1, 0);
            break;
        case KeyDown:
            nudge(0, 1);
            break;
        default:
            break;
        }
        late::set(canvas, "CoordinateMode", canvas::coordinate_mode::Page);
    } else if (shift == ShiftAlt) {
        late::set(canvas, "CoordinateMode", canvas::coordinate_mode::Pixels);
        auto resize = [this](const char* edge, int by) {
            if (!RequireSelection())
                return;
            const AutoPtr range = late::object(app_.gSelection, "Range");
            late::set(range, edge, plus(vb::toInt32(late::get(range, edge)), by));
        };
        switch (keyCode) {
        case KeyLeft:
            resize("Right", -1);
            break;
        case KeyUp:
            resize("Bottom", -1);
            break;
        case KeyRight:
            resize("Right", 1);
            break;
        case KeyDown:
            resize("Bottom", 1);
            break;
        default:
            break;
        }
        late::set(canvas, "CoordinateMode", canvas::coordinate_mode::Page);
        POLARDraw1_ShapeChanged();
    }
}

void frmMain::POLARDraw1_FileError(const QString& text, bool& handled) {
    app_.ui.msgBox(text, mb::Critical, AppTitle);
    handled = true;
}

void frmMain::registerCanvasHandlers() {
    const QString canvas = POLARDraw1.name();
    auto mouse = [this, canvas](const char* event, void (frmMain::*handler)(int&, int&, float&, float&)) {
        on(canvas, QString::fromLatin1(event), [this, handler](Control&, EventArgs& a) {
            int button = a.value(0).toInt(), shift = a.value(1).toInt();
            float x = a.value(2).toFloat(), y = a.value(3).toFloat();
            (this->*handler)(button, shift, x, y);
            a = {button, shift, x, y};
        });
    };
    mouse("MouseDown", &frmMain::POLARDraw1_MouseDown);
    mouse("MouseMove", &frmMain::POLARDraw1_MouseMove);
    mouse("MouseUp", &frmMain::POLARDraw1_MouseUp);
    on(canvas, QStringLiteral("KeyDown"), [this](Control&, EventArgs& a) {
        int key = a.value(0).toInt(), shift = a.value(1).toInt();
        POLARDraw1_KeyDown(key, shift);
        a = {key, shift};
    });
    on(canvas, QStringLiteral("ShapeAdded"),
       [this](Control&, EventArgs& a) { POLARDraw1_ShapeAdded(a.value(0).toInt(), a.value(1).toInt()); });
    on(canvas, QStringLiteral("ShapeFinished"),
       [this](Control&, EventArgs& a) { POLARDraw1_ShapeFinished(a.value(0).toInt(), a.value(1).toInt()); });
    on(canvas, QStringLiteral("SelectionChanged"),
       [this](Control&, EventArgs& a) { POLARDraw1_SelectionChanged(a.value(0).toInt()); });
    on(canvas, QStringLiteral("SelectionCleared"), [this](Control&, EventArgs&) { ShapeIsSelected = false; });
    on(canvas, QStringLiteral("ShapeChanged"), [this](Control&, EventArgs&) { POLARDraw1_ShapeChanged(); });
    on(canvas, QStringLiteral("ShapeMoved"), [this](Control&, EventArgs&) { POLARDraw1_ShapeChanged(); });
    on(canvas, QStringLiteral("DrawingCancelled"),
       [this](Control&, EventArgs&) { late::call(app_.gSelection, "Clear"); });
    for (const char* event : {"FileReadError", "FileWriteError"})
        on(canvas, QString::fromLatin1(event), [this](Control&, EventArgs& a) {
            bool handled = a.value(2).toBool();
            POLARDraw1_FileError(vb::toText(a.value(0)), handled);
            while (a.size() < 3)
                a << false;
            a[2] = handled;
        });
    on(POLARDraw2.name(), QStringLiteral("SelectionChanged"),
       [this](Control&, EventArgs& a) { POLARDraw2_SelectionChanged(a.value(0).toInt()); });
    on(POLARDraw2.name(), QStringLiteral("MouseMove"),
       [this](Control&, EventArgs& a) { POLARDraw2_MouseMove(a.value(2).toFloat(), a.value(3).toFloat()); });
}

void frmMain::attachCanvases() {
    canvas1Events_ = std::make_unique<CanvasEventSink>(POLARDraw1);
    canvas2Events_ = std::make_unique<CanvasEventSink>(POLARDraw2);
    for (const AutoPtr& c : {canvas1(), canvas2()})
        if (auto* engine = dynamic_cast<canvas::POLARDraw*>(c.get()))
            engine->setDialogHost(app_.canvasDialogs.get());
}

} // namespace tessaly
