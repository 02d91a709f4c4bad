// The controls of the main window's workspace: the tool strip, the side bar
// with its three tabs, the read-outs, the scale and wall boxes, the wall input
// panel and the hidden text store, laid out in twips.
#include "frmMain.h"

#include "LateBound.h"
#include "ToolStrip.h"
#include "core/forms/Control.h"

#include <QStringList>
#include <utility>

namespace tessaly {

namespace {
// Geometry in twips (15 to the pixel).
constexpr int StripHeight = 495;     // the tool strip along the top, as high as the canvas's top
constexpr int StripButton = 390;     // a tool strip button, square
constexpr int StripPitch = 420;      // from one strip button to the next
constexpr int StripGap = 90;         // between two groups of strip buttons
constexpr int StripButtonTop = 45;   // strip buttons from the strip's top
constexpr int StatusBarHeight = 325; // what the canvas leaves below itself for the status bar
constexpr int TabHeader = 435;       // the tabs of the side bar above their panels
constexpr int PanelLeft = 15;        // left margin inside a side bar panel
constexpr int PanelWidth = 2475;     // the width of a side bar panel's content
constexpr int SideButton = 450;      // a drawing tool button of the side bar, square
constexpr int SidePitch = 495;       // from one side bar button to the next
constexpr int SideButtonsPerRow = 5; // drawing tool buttons in one row
constexpr int RowHeight = 315;       // a combo box or a read-out line
constexpr int ReadOutCaption = 1350; // width of a read-out's caption
constexpr int ReadOutValue = 1095;   // width of a read-out's value
constexpr int WallPanelLeft = 4400;  // the wall input panel over the canvas, near its top left
constexpr int WallPanelTop = 1200;
constexpr int ShadowOffset = 90; // the panel's shadow lies this far down and right
constexpr int KeyWidth = 810;    // a key of the wall input keypad
constexpr int KeyHeight = 480;
constexpr int KeyPitchX = 870;
constexpr int KeyPitchY = 540;
constexpr int KeyMargin = 120; // between the panel's edges and its keys
constexpr int KeypadTop = 600; // the first row of keys, below the length box
constexpr int KeypadRows = 5;  // 7 8 9 / 4 5 6 / 1 2 3 / 0 Clear / Cancel OK
constexpr int KeypadColumns = 3;
// The panel holds the keypad with a margin all round, so no key is cut off.
constexpr int WallPanelWidth = 2 * KeyMargin + (KeypadColumns - 1) * KeyPitchX + KeyWidth;
constexpr int WallPanelHeight = KeypadTop + (KeypadRows - 1) * KeyPitchY + KeyHeight + KeyMargin;
constexpr unsigned ShadowColour = 0x404040; // dark grey shadow of the wall input panel
constexpr unsigned PanelColour = 0xF0E8E0;  // light blue-grey face of the wall input panel
constexpr int SliderMin = 10;               // template zoom slider: 10 to 200 percent
constexpr int SliderMax = 200;
constexpr int SliderStep = 5;   // small and large change
constexpr int SliderTicks = 10; // a tick every 10 percent
constexpr int SliderDesignValue = 100;

const QString StripName = QStringLiteral("picToolStrip");

// Keys of the tool strip's buttons: Copy, Cut, Paste, Undo, Redo (as Ctrl+Y
// and as Ctrl+Shift+Z) and Delete.
constexpr std::pair<int, const char*> StripShortcuts[] = {
    {0, "Ctrl+C"}, {1, "Ctrl+X"}, {2, "Ctrl+V"}, {3, "Ctrl+Z"}, {4, "Ctrl+Y; Ctrl+Shift+Z"}, {33, "Del"}};

void place(Control& c, const QString& container, int left, int top, int width, int height) {
    c.setProp(QStringLiteral("Container"), container);
    c.move(left, top, width, height);
}

QString iconPath(const char* icon) {
    return QStringLiteral(":/icons/%1.svg").arg(QString::fromLatin1(icon));
}
} // namespace

void frmMain::buildWorkspaceControls() {
    buildToolStrip();
    buildSideBar();
    buildWallInput();
    // The hidden store of a dimension figure between the two steps of a bar.
    Control& rtf = add(ControlKind::RichText, QStringLiteral("RTF1"));
    rtf.setVisible(false);
}

void frmMain::buildToolStrip() {
    Control& strip = add(ControlKind::PictureBox, StripName);
    strip.move(SideBarWide, 0, 0, StripHeight);
    for (const ToolButtonEntry& button : ToolButtons) {
        Control& b = add(ControlKind::CommandButton, QStringLiteral("cmdToolBarButton"), button.index);
        b.setToolTipText(QString::fromLatin1(button.toolTip));
        b.setProp(QStringLiteral("Picture"), iconPath(button.icon));
    }
    // The usual keys of the clipboard, undo and delete press these buttons
    // wherever the focus is in the window.
    for (const auto& [index, keys] : StripShortcuts)
        control(QStringLiteral("cmdToolBarButton"), index)
            .setProp(QStringLiteral("Shortcut"), QString::fromLatin1(keys));
    int left = StripGap;
    for (int index : TopStripOrder) {
        if (index < 0) {
            left += StripGap;
            continue;
        }
        place(control(QStringLiteral("cmdToolBarButton"), index), StripName, left, StripButtonTop,
              StripButton, StripButton);
        left += StripPitch;
    }
}

void frmMain::buildSideBar() {
    const QStringList tabs{QStringLiteral("Drawing Objects"), QStringLiteral("Template Objects"),
                           QStringLiteral("Shape List")};
    for (int tab = 0; tab < 3; ++tab) {
        Control& panel = add(ControlKind::PictureBox, QStringLiteral("SSActiveTabPanel%1").arg(tab + 1));
        panel.setProp(QStringLiteral("Container"), SSActiveTabs1.name());
        panel.setProp(QStringLiteral("ContainerTab"), tab);
    }
    const QString drawing = QStringLiteral("SSActiveTabPanel1");
    const QString templates = QStringLiteral("SSActiveTabPanel2");
    const QString shapes = QStringLiteral("SSActiveTabPanel3");

    // Drawing Objects: the drawing tools, the wall box and colour, the scale, the read-outs.
    int n = 0;
    for (int index : SideToolOrder) {
        place(control(QStringLiteral("cmdToolBarButton"), index), drawing,
              PanelLeft + (n % SideButtonsPerRow) * SidePitch,
              PanelLeft + (n / SideButtonsPerRow) * SidePitch, SideButton, SideButton);
        ++n;
    }
    int top = PanelLeft + ((n + SideButtonsPerRow - 1) / SideButtonsPerRow) * SidePitch + RowHeight / 3;
    Control& walls = add(ControlKind::ComboBox, QStringLiteral("Combo1"));
    for (const char* item : {"External Wall Width", "Internal Wall Width", "Furniture Line Width"})
        walls.addItem(QString::fromLatin1(item));
    walls.setProp(QStringLiteral("Text"), QStringLiteral("External Wall Width"));
    walls.setProp(QStringLiteral("ListIndex"), 0);
    walls.setToolTipText(QStringLiteral("External Wall Width"));
    place(walls, drawing, PanelLeft, top, PanelWidth, RowHeight);
    top += RowHeight + RowHeight / 3;
    Control& colourLabel = add(ControlKind::Label, QStringLiteral("lblWallColour"));
    colourLabel.setCaption(QStringLiteral("Wall Colour:"));
    place(colourLabel, drawing, PanelLeft, top + 45, ReadOutCaption, RowHeight);
    Control& colour = add(ControlKind::CommandButton, QStringLiteral("cmdLineCol"));
    colour.setCaption(QStringLiteral("..."));
    colour.setToolTipText(QStringLiteral("Click To Set The Line Colour"));
    colour.setBackColor(0);
    place(colour, drawing, PanelLeft + ReadOutCaption, top, ReadOutValue, RowHeight + 30);
    top += RowHeight + RowHeight / 2;
    Control& scaleLabel = add(ControlKind::Label, QStringLiteral("lblCurrentScale"));
    scaleLabel.setCaption(QStringLiteral("Current Scale:"));
    place(scaleLabel, drawing, PanelLeft, top + 45, ReadOutCaption, RowHeight);
    Control& scale = add(ControlKind::ComboBox, QStringLiteral("cboScale"));
    for (const char* item : {"1:1", "1:10", "1:50", "1:100", "1:200", "1:300"})
        scale.addItem(QString::fromLatin1(item));
    scale.setProp(QStringLiteral("Text"), QStringLiteral("1:50"));
    scale.setProp(QStringLiteral("ListIndex"), 2);
    place(scale, drawing, PanelLeft + ReadOutCaption, top, ReadOutValue, RowHeight);
    top += RowHeight + RowHeight / 2;
    const std::pair<const char*, const char*> readOuts[] = {
        {"lblHPos", "H Position:"},        {"lblVPos", "V Position:"},
        {"lblHLineLen", "H Line Length:"}, {"lblVLineLen", "V Line Length:"},
        {"lblObjectLen", "Object Width:"}, {"lblObjectHeight", "Object Height:"}};
    for (const auto& [name, caption] : readOuts) {
        Control& c = add(ControlKind::Label, QString::fromLatin1(name) + QStringLiteral("Caption"));
        c.setCaption(QString::fromLatin1(caption));
        place(c, drawing, PanelLeft, top, ReadOutCaption, RowHeight);
        Control& v = add(ControlKind::Label, QString::fromLatin1(name));
        v.setCaption(QStringLiteral("000000"));
        v.setProp(QStringLiteral("Alignment"), 1); // right-aligned figures
        place(v, drawing, PanelLeft + ReadOutCaption, top, ReadOutValue, RowHeight);
        top += RowHeight;
    }

    // Template Objects: the library box, the zoom slider, the template canvas.
    cboTemplates.setProp(QStringLiteral("Container"), templates);
    cboTemplates.move(PanelLeft, PanelLeft, PanelWidth, RowHeight);
    Control& zoom = add(ControlKind::Slider, QStringLiteral("TemplateZoom1"));
    zoom.setToolTipText(QStringLiteral("Silde left or right to zoom the template window in and out"));
    zoom.setProp(QStringLiteral("Min"), SliderMin);
    zoom.setProp(QStringLiteral("Max"), SliderMax);
    zoom.setProp(QStringLiteral("SmallChange"), SliderStep);
    zoom.setProp(QStringLiteral("LargeChange"), SliderStep);
    zoom.setProp(QStringLiteral("TickFrequency"), SliderTicks);
    zoom.setProp(QStringLiteral("Value"), SliderDesignValue);
    place(zoom, templates, PanelLeft, PanelLeft + RowHeight + 15, PanelWidth, RowHeight);
    POLARDraw2.setProp(QStringLiteral("Container"), templates);
    // The pane shows a library whole, from its first symbol, and scrolls both ways.
    POLARDraw2.setProp(QStringLiteral("ShowsWholePage"), true);

    // Shape List: the button above the list.
    Control& load = add(ControlKind::CommandButton, QStringLiteral("cdmShapeData"));
    load.setCaption(QStringLiteral("Load Shape Data"));
    place(load, shapes, PanelLeft, 15, PanelWidth, RowHeight);
    lstShapeList.setProp(QStringLiteral("Container"), shapes);
}

void frmMain::buildWallInput() {
    Control& shadow = add(ControlKind::PictureBox, QStringLiteral("WallInputSh"));
    shadow.move(WallPanelLeft + ShadowOffset, WallPanelTop + ShadowOffset, WallPanelWidth, WallPanelHeight);
    shadow.setBackColor(ShadowColour);
    shadow.setVisible(false);
    Control& panel = add(ControlKind::PictureBox, QStringLiteral("WallInput"));
    panel.move(WallPanelLeft, WallPanelTop, WallPanelWidth, WallPanelHeight);
    panel.setBackColor(PanelColour);
    panel.setVisible(false);
    const QString in = panel.name();
    Control& caption = add(ControlKind::Label, QStringLiteral("Label3"), 0);
    caption.setCaption(QStringLiteral("Wall Length:"));
    place(caption, in, 120, 165, 1050, RowHeight);
    Control& length = add(ControlKind::TextBox, QStringLiteral("txtWallLen"));
    length.setProp(QStringLiteral("Text"), QStringLiteral("2000"));
    place(length, in, 1140, 120, 990, RowHeight + 30);
    Control& unit = add(ControlKind::Label, QStringLiteral("Label3"), 1);
    unit.setCaption(QStringLiteral("mm"));
    place(unit, in, 2190, 165, 420, RowHeight);
    // The keypad: 7 8 9 / 4 5 6 / 1 2 3 / 0 Clear, then Cancel and OK.
    const int keyTop = KeypadTop;
    auto key = [&](int index, const QString& text, int column, int row) {
        Control& b = add(ControlKind::CommandButton, QStringLiteral("WallInputButton"), index);
        b.setCaption(text);
        place(b, in, KeyMargin + column * KeyPitchX, keyTop + row * KeyPitchY, KeyWidth, KeyHeight);
    };
    for (int digit = 0; digit <= 9; ++digit) {
        const int column = digit == 0 ? 0 : (digit - 1) % 3;
        const int row = digit == 0 ? 3 : 2 - (digit - 1) / 3;
        key(digit, QString::number(digit), column, row);
    }
    key(10, QStringLiteral("Cancel"), 0, 4);
    key(11, QStringLiteral("Clear"), 1, 3);
    key(12, QStringLiteral("OK"), 2, 4);
    // Clear stands beside 0; OK under 3, Cancel under 0.
    control(QStringLiteral("WallInputButton"), 11)
        .move(KeyMargin + KeyPitchX, keyTop + 3 * KeyPitchY, 2 * KeyPitchX - 60, KeyHeight);
    control(QStringLiteral("WallInputButton"), 10)
        .move(KeyMargin, keyTop + 4 * KeyPitchY, KeyWidth + KeyPitchX - 60, KeyHeight);
    control(QStringLiteral("WallInputButton"), 12)
        .move(KeyMargin + 2 * KeyPitchX, keyTop + 4 * KeyPitchY, KeyWidth, KeyHeight);
    // Enter presses OK and Escape presses Cancel while the focus is on the panel.
    control(QStringLiteral("WallInputButton"), 12).setProp(QStringLiteral("Default"), true);
    control(QStringLiteral("WallInputButton"), 10).setProp(QStringLiteral("Cancel"), true);
}

void frmMain::layoutSideBar() {
    // The side bar runs from the top to the status bar; the tool strip takes
    // the top of the rest; each tab's panel lies below the tabs.
    const int width = SSActiveTabs1.geometry().width();
    const int height = std::max(0, scaleHeight() - StatusBarHeight);
    SSActiveTabs1.move(0, 0, width, height);
    for (int tab = 1; tab <= 3; ++tab)
        control(QStringLiteral("SSActiveTabPanel%1").arg(tab))
            .move(0, TabHeader, width, std::max(0, height - TabHeader));
    control(StripName).move(width, 0, std::max(0, scaleWidth() - width), StripHeight);
    SSActiveTabs1_Layout();
}

void frmMain::centreTemplatePage() {
    // The template canvas shows its page in the middle of the tab area.
    late::call(late::object(canvas2(), "Views"), "CenterPage");
}

} // namespace tessaly
