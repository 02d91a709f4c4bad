#include "workspace/forms/frmGuidelines.h"

#include "core/common/CommonRoutines.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

using namespace commands;

frmGuidelines::frmGuidelines(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      chckGuidelines(add(ControlKind::CheckBox, QStringLiteral("chckGuidelines"))),
      chckSnapToGuidelines(add(ControlKind::CheckBox, QStringLiteral("chckSnapToGuidelines"))),
      Frame1(add(ControlKind::Frame, QStringLiteral("Frame1"))),
      lblHorizontal(add(ControlKind::Label, QStringLiteral("lblHorizontal"))),
      txtHSG(add(ControlKind::TextBox, QStringLiteral("txtHSG"))),
      lblVertical(add(ControlKind::Label, QStringLiteral("lblVertical"))),
      txtVSG(add(ControlKind::TextBox, QStringLiteral("txtVSG"))),
      cmdChooseColor(add(ControlKind::CommandButton, QStringLiteral("cmdChooseColor"))),
      cmdOk(add(ControlKind::CommandButton, QStringLiteral("cmdOk"))),
      cmdCancel(add(ControlKind::CommandButton, QStringLiteral("cmdCancel"))), app_(app) {
    buildLayout();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onClick(*this, QStringLiteral("chckGuidelines"),
            [this] { put(app_.gView, "ShowGuides", ticked(chckGuidelines.value())); });
    onClick(*this, QStringLiteral("chckSnapToGuidelines"),
            [this] { put(app_.gView, "SnapToGuides", ticked(chckSnapToGuidelines.value())); });
    onClick(*this, QStringLiteral("cmdChooseColor"), [this] { cmdChooseColor_Click(); });
    onClick(*this, QStringLiteral("cmdOk"), [this] { cmdOk_Click(); });
    onClick(*this, QStringLiteral("cmdCancel"), [this] { cmdCancel_Click(); });
}

void frmGuidelines::buildLayout() {
    setCaption(QStringLiteral("Guidelines Settings"));
    setSize(4500, 3330, 4380, 2850);
    chckGuidelines.setCaption(QStringLiteral("Show guidelines"));
    chckGuidelines.move(240, 180, 3900, 300);
    chckSnapToGuidelines.setCaption(QStringLiteral("Align shapes to guidelines"));
    chckSnapToGuidelines.move(240, 540, 3900, 300);
    Frame1.setCaption(QStringLiteral("Start Point Guide Lines"));
    Frame1.move(240, 960, 3900, 1080);
    for (Control* c : {&lblHorizontal, &txtHSG, &lblVertical, &txtVSG})
        c->setProp(QStringLiteral("Container"), QStringLiteral("Frame1"));
    lblHorizontal.setCaption(QStringLiteral("Horizontal:"));
    lblHorizontal.move(180, 330, 1020, 255);
    txtHSG.move(1260, 300, 600, 315);
    txtHSG.setText(QStringLiteral("0"));
    lblVertical.setCaption(QStringLiteral("Vertical:"));
    lblVertical.move(2040, 330, 840, 255);
    txtVSG.move(2940, 300, 600, 315);
    txtVSG.setText(QStringLiteral("0"));
    cmdChooseColor.setCaption(QStringLiteral("Ch&oose color..."));
    cmdChooseColor.move(240, 2220, 1740, 375);
    cmdOk.setCaption(QStringLiteral("&OK"));
    cmdOk.setProp(QStringLiteral("Default"), true);
    cmdOk.move(2460, 2220, 780, 375);
    cmdCancel.setCaption(QStringLiteral("&Cancel"));
    cmdCancel.setProp(QStringLiteral("Cancel"), true);
    cmdCancel.move(3360, 2220, 780, 375);
}

void frmGuidelines::registerMembers() {
    member(QStringLiteral("OldGuideColour"),
           [this] { return QVariant(static_cast<qint64>(OldGuideColour)); });
    member(QStringLiteral("OldShowGuides"), [this] { return QVariant(OldShowGuides); });
    member(QStringLiteral("OldSnapToGuides"), [this] { return QVariant(OldSnapToGuides); });
}

void frmGuidelines::Form_Load() {
    OldGuideColour = commands::get(app_.gPage, "GuideColour").toUInt();
    OldShowGuides = vb::toBool(commands::get(app_.gView, "ShowGuides"));
    OldSnapToGuides = vb::toBool(commands::get(app_.gView, "SnapToGuides"));
    chckGuidelines.setValue(checkValueOf(OldShowGuides));
    chckSnapToGuidelines.setValue(checkValueOf(OldSnapToGuides));
}

void frmGuidelines::cmdChooseColor_Click() {
    uint32_t colour = commands::get(app_.gPage, "GuideColour").toUInt();
    put(app_.gPage, "GuideColour", static_cast<qint64>(common::ShowColourDialog(app_, colour)));
}

void frmGuidelines::cmdOk_Click() {
    OldGuideColour = commands::get(app_.gPage, "GuideColour").toUInt();
    OldShowGuides = vb::toBool(commands::get(app_.gView, "ShowGuides"));
    OldSnapToGuides = vb::toBool(commands::get(app_.gView, "SnapToGuides"));
    // No trap: a box left empty is a type mismatch that reaches the user as
    // a run-time error, and the window stays open.
    if (vb::toDouble(txtHSG.text()) > 0) {
        const int32_t y = vb::toInt32(txtHSG.text());
        invoke(app_.gHGuides, "Add", {y});
        app_.gGuideOriginY = y;
    }
    if (vb::toDouble(txtVSG.text()) > 0) {
        invoke(app_.gVGuides, "Add", {vb::toInt32(txtVSG.text())});
        // The horizontal box feeds the readout's x origin too.
        app_.gGuideOriginX = vb::toInt32(txtHSG.text());
    }
    app_.unload(*this);
}

void frmGuidelines::cmdCancel_Click() {
    put(app_.gPage, "GuideColour", static_cast<qint64>(OldGuideColour));
    put(app_.gView, "ShowGuides", OldShowGuides);
    put(app_.gView, "SnapToGuides", OldSnapToGuides);
    app_.unload(*this);
}

} // namespace tessaly
