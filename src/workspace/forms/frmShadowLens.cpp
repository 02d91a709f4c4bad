#include "workspace/forms/frmShadowLens.h"

#include "canvas/api/CanvasCodes.h"
#include "core/common/CommonRoutines.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

using namespace commands;

namespace {
namespace lens = canvas::lens;

constexpr int NoLens = -1; // the code of "Nothing": the lens is switched off

// Which controls each lens code uses: the percentage slider, the start
// colour, the end colour.
struct LensEntry {
    const char* name;
    int code;
    bool percentage;
    bool startColour;
    bool endColour;
};
constexpr LensEntry LensTable[frmShadowLens::LensCount] = {
    {"Transparency", lens::Transparency, true, false, false},
    {"Brighten/Darken", lens::BrightenDarken, true, false, false},
    {"Add Color", lens::AddColour, true, true, false},
    {"Limit Color", lens::LimitColour, true, true, false},
    {"Custom Palette", lens::CustomPalette, false, true, true},
    {"Invert", lens::Invert, false, false, false},
    {"Tinted Grayscale", lens::TintedGrayscale, false, true, false},
    {"Heatmap Palette", lens::Heatmap, false, false, false},
    {"Nothing", NoLens, false, false, false},
};

const QString PercentageText = QStringLiteral("Effect percentage: ");
} // namespace

frmShadowLens::frmShadowLens(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      lblLensType(add(ControlKind::Label, QStringLiteral("lblLensType"))),
      cmbLensType(add(ControlKind::ComboBox, QStringLiteral("cmbLensType"))),
      lblPercentage(add(ControlKind::Label, QStringLiteral("lblPercentage"))),
      sldPercentage(add(ControlKind::Slider, QStringLiteral("sldPercentage"))),
      cmdStartColor(add(ControlKind::CommandButton, QStringLiteral("cmdStartColor"))),
      cmdEndColor(add(ControlKind::CommandButton, QStringLiteral("cmdEndColor"))),
      cmdOk(add(ControlKind::CommandButton, QStringLiteral("cmdOk"))),
      cmdCancel(add(ControlKind::CommandButton, QStringLiteral("cmdCancel"))), app_(app) {
    buildLayout();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Unload"), [this](EventArgs&) { Form_Unload(); });
    onClick(*this, QStringLiteral("cmbLensType"), [this] { cmbLensType_Click(); });
    on(QStringLiteral("sldPercentage"), QStringLiteral("Change"),
       [this](Control&, EventArgs&) { sldPercentage_Change(); });
    on(QStringLiteral("sldPercentage"), QStringLiteral("Scroll"),
       [this](Control&, EventArgs&) { sldPercentage_Change(); });
    onClick(*this, QStringLiteral("cmdStartColor"), [this] { colourButton("StartColour"); });
    onClick(*this, QStringLiteral("cmdEndColor"), [this] { colourButton("EndColour"); });
    onClick(*this, QStringLiteral("cmdOk"), [this] { app_.unload(*this); });
    onClick(*this, QStringLiteral("cmdCancel"), [this] { cmdCancel_Click(); });
}

void frmShadowLens::buildLayout() {
    setCaption(QStringLiteral("Shadow lens settings"));
    setSize(4620, 3090, 4500, 2610);
    lblLensType.setCaption(QStringLiteral("Select lens type:"));
    lblLensType.move(240, 240, 1560, 255);
    cmbLensType.setProp(QStringLiteral("Style"), 2); // a drop-down list: no typing
    cmbLensType.move(1860, 195, 2400, 315);
    lblPercentage.setCaption(QStringLiteral("Effect percentage:"));
    lblPercentage.move(240, 720, 4020, 255);
    sldPercentage.setProp(QStringLiteral("Min"), -100);
    sldPercentage.setProp(QStringLiteral("Max"), 100);
    sldPercentage.setProp(QStringLiteral("SmallChange"), 1);
    sldPercentage.setProp(QStringLiteral("LargeChange"), 10);
    sldPercentage.setProp(QStringLiteral("TickFrequency"), 10);
    sldPercentage.setProp(QStringLiteral("Value"), 0);
    sldPercentage.move(240, 1020, 4020, 450);
    cmdStartColor.setCaption(QStringLiteral("&Start Color"));
    cmdStartColor.move(240, 1620, 1260, 375);
    cmdEndColor.setCaption(QStringLiteral("&End Color"));
    cmdEndColor.move(1560, 1620, 1260, 375);
    cmdOk.setCaption(QStringLiteral("&OK"));
    cmdOk.setProp(QStringLiteral("Default"), true);
    cmdOk.move(2340, 2100, 900, 375);
    cmdCancel.setCaption(QStringLiteral("&Cancel"));
    cmdCancel.setProp(QStringLiteral("Cancel"), true);
    cmdCancel.move(3360, 2100, 900, 375);
}

void frmShadowLens::registerMembers() {
    member(QStringLiteral("OldType"), [this] { return QVariant(OldType); });
    member(QStringLiteral("OldPercent"), [this] { return QVariant(OldPercent); });
    member(QStringLiteral("OldEndColour"), [this] { return QVariant(static_cast<qint64>(OldEndColour)); });
    member(QStringLiteral("OldStartColour"),
           [this] { return QVariant(static_cast<qint64>(OldStartColour)); });
    member(QStringLiteral("OldLensActive"), [this] { return QVariant(OldLensActive); });
    member(QStringLiteral("Lens"), [this] { return Lens ? toVariant(Lens) : QVariant(); });
}

AutoPtr frmShadowLens::effect() const {
    return object(selectedRange(app_), "Effect");
}

void frmShadowLens::Form_Load() {
    // 1. The lens of the selection, the values for Cancel, the list.
    Lens = object(effect(), "Lens");
    OldType = vb::toInt32(commands::get(Lens, "Type"));
    OldPercent = vb::toInt32(commands::get(Lens, "Percent"));
    OldEndColour = commands::get(Lens, "EndColour").toUInt();
    OldStartColour = commands::get(Lens, "StartColour").toUInt();
    OldLensActive = vb::toBool(commands::get(effect(), "LensActive"));
    for (int i = 0; i < LensCount; ++i) {
        LensNames[static_cast<size_t>(i)] = QString::fromLatin1(LensTable[i].name);
        LensCodes[static_cast<size_t>(i)] = LensTable[i].code;
    }
    cmbLensType.clear();
    for (int i = 0; i < LensCount; ++i) {
        cmbLensType.addItem(LensNames[static_cast<size_t>(i)]);
        cmbLensType.setItemData(cmbLensType.newIndex(), LensCodes[static_cast<size_t>(i)]);
    }
    // 2. The item of the present lens; "Nothing" when the lens is off.
    if (!vb::toBool(commands::get(effect(), "LensActive"))) {
        cmbLensType.setListIndex(cmbLensType.listCount() - 1);
    } else {
        const int type = vb::toInt32(commands::get(Lens, "Type"));
        int i = 0;
        // The canvas reports only the codes of the table; any other code
        // runs past the list.
        while (i < cmbLensType.listCount() && cmbLensType.itemData(i).toInt() != type)
            ++i;
        if (i == cmbLensType.listCount())
            raiseError(err::InvalidProcedureCall, QStringLiteral("Invalid property array index"));
        cmbLensType.setListIndex(i);
    }
    // 3.
    enableFor(cmbLensType.itemData(cmbLensType.listIndex()).toInt());
    showPercentage(sldPercentage.value());
}

void frmShadowLens::cmbLensType_Click() {
    const int code = cmbLensType.itemData(cmbLensType.listIndex()).toInt();
    if (code != NoLens) {
        put(effect(), "LensActive", true);
        put(Lens, "Type", code);
        enableFor(vb::toInt32(commands::get(Lens, "Type")));
    } else {
        // The lens goes off; the controls stay as they were.
        put(effect(), "LensActive", false);
    }
}

void frmShadowLens::sldPercentage_Change() {
    put(Lens, "Percent", sldPercentage.value());
    showPercentage(vb::toInt32(commands::get(Lens, "Percent")));
}

void frmShadowLens::showPercentage(int figure) {
    lblPercentage.setCaption(PercentageText + QString::number(figure) + QStringLiteral("%"));
}

void frmShadowLens::colourButton(const char* property) {
    uint32_t colour = commands::get(Lens, property).toUInt();
    put(Lens, property, static_cast<qint64>(common::ShowColourDialog(app_, colour)));
}

void frmShadowLens::enableFor(int code) {
    for (const LensEntry& e : LensTable)
        if (e.code == code) {
            sldPercentage.setEnabled(e.percentage);
            cmdStartColor.setEnabled(e.startColour);
            cmdEndColor.setEnabled(e.endColour);
            return;
        }
}

void frmShadowLens::cmdCancel_Click() {
    put(Lens, "Type", OldType);
    put(Lens, "Percent", OldPercent);
    put(Lens, "EndColour", static_cast<qint64>(OldEndColour));
    put(Lens, "StartColour", static_cast<qint64>(OldStartColour));
    put(effect(), "LensActive", OldLensActive);
    app_.unload(*this);
}

void frmShadowLens::Form_Unload() {
    Lens.reset();
}

} // namespace tessaly
