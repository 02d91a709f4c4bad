#include "workspace/forms/frmGrid.h"

#include "core/common/CommonRoutines.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/frmMain.h"

namespace tessaly {

using namespace commands;

frmGrid::frmGrid(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      chckShowGrid(add(ControlKind::CheckBox, QStringLiteral("chckShowGrid"))),
      chckSnapToGrid(add(ControlKind::CheckBox, QStringLiteral("chckSnapToGrid"))),
      Frame1(add(ControlKind::Frame, QStringLiteral("Frame1"))),
      lblWidth(add(ControlKind::Label, QStringLiteral("lblWidth"))),
      txtHGrid(add(ControlKind::TextBox, QStringLiteral("txtHGrid"))),
      lblHeight(add(ControlKind::Label, QStringLiteral("lblHeight"))),
      txtVGrid(add(ControlKind::TextBox, QStringLiteral("txtVGrid"))),
      btnGridColor(add(ControlKind::CommandButton, QStringLiteral("btnGridColor"))),
      btnOK(add(ControlKind::CommandButton, QStringLiteral("btnOK"))),
      btnCancel(add(ControlKind::CommandButton, QStringLiteral("btnCancel"))), app_(app) {
    buildLayout();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onClick(*this, QStringLiteral("chckShowGrid"), [this] { chckShowGrid_Click(); });
    onClick(*this, QStringLiteral("chckSnapToGrid"),
            [this] { put(app_.gView, "SnapToGrid", ticked(chckSnapToGrid.value())); });
    // A spacing that is not a number is passed over without a word.
    on(QStringLiteral("txtHGrid"), QStringLiteral("LostFocus"), [this](Control&, EventArgs&) {
        if (vb::isNumeric(txtHGrid.text()))
            put(app_.gPage, "GridSpacingX", txtHGrid.text());
    });
    on(QStringLiteral("txtVGrid"), QStringLiteral("LostFocus"), [this](Control&, EventArgs&) {
        if (vb::isNumeric(txtVGrid.text()))
            put(app_.gPage, "GridSpacingY", txtVGrid.text());
    });
    onClick(*this, QStringLiteral("btnGridColor"), [this] { btnGridColor_Click(); });
    onClick(*this, QStringLiteral("btnOK"), [this] { app_.unload(*this); });
    onClick(*this, QStringLiteral("btnCancel"), [this] { btnCancel_Click(); });
}

void frmGrid::buildLayout() {
    setCaption(QStringLiteral("Grid Settings"));
    setSize(4500, 3210, 4380, 2730);
    chckShowGrid.setCaption(QStringLiteral("Show grid"));
    chckShowGrid.move(240, 180, 3900, 300);
    chckSnapToGrid.setCaption(QStringLiteral("Align shapes to grid"));
    chckSnapToGrid.move(240, 540, 3900, 300);
    Frame1.setCaption(QStringLiteral("Grid Units: milimeters"));
    Frame1.move(240, 960, 3900, 1080);
    for (Control* c : {&lblWidth, &txtHGrid, &lblHeight, &txtVGrid})
        c->setProp(QStringLiteral("Container"), QStringLiteral("Frame1"));
    lblWidth.setCaption(QStringLiteral("&Width:"));
    lblWidth.move(180, 330, 720, 255);
    txtHGrid.move(960, 300, 900, 315);
    lblHeight.setCaption(QStringLiteral("&Height:"));
    lblHeight.move(1980, 330, 720, 255);
    txtVGrid.move(2760, 300, 900, 315);
    btnGridColor.setCaption(QStringLiteral("Choose Grid Colour..."));
    btnGridColor.move(240, 2160, 2100, 375);
    btnOK.setCaption(QStringLiteral("OK"));
    btnOK.setProp(QStringLiteral("Default"), true);
    btnOK.move(2460, 2160, 780, 375);
    btnCancel.setCaption(QStringLiteral("Cancel"));
    btnCancel.setProp(QStringLiteral("Cancel"), true);
    btnCancel.move(3360, 2160, 780, 375);
}

void frmGrid::registerMembers() {
    member(QStringLiteral("OldShowGrid"), [this] { return QVariant(OldShowGrid); });
    member(QStringLiteral("OldSnapToGrid"), [this] { return QVariant(OldSnapToGrid); });
    member(QStringLiteral("OldSpacingY"), [this] { return QVariant(OldSpacingY); });
    member(QStringLiteral("OldSpacingX"), [this] { return QVariant(OldSpacingX); });
    member(QStringLiteral("OldGridColour"), [this] { return QVariant(static_cast<qint64>(OldGridColour)); });
}

void frmGrid::Form_Load() {
    OldShowGrid = vb::toBool(commands::get(app_.gView, "ShowGrid"));
    OldSnapToGrid = vb::toBool(commands::get(app_.gView, "SnapToGrid"));
    OldSpacingY = vb::toInt32(commands::get(app_.gPage, "GridSpacingY"));
    OldSpacingX = vb::toInt32(commands::get(app_.gPage, "GridSpacingX"));
    OldGridColour = commands::get(app_.gPage, "GridColour").toUInt();
    // Showing the values ticks the boxes as a click would.
    chckShowGrid.setValue(checkValueOf(OldShowGrid));
    chckSnapToGrid.setValue(checkValueOf(OldSnapToGrid));
    txtVGrid.setText(QString::number(OldSpacingY));
    txtHGrid.setText(QString::number(OldSpacingX));
    enableSettings(OldShowGrid);
}

void frmGrid::chckShowGrid_Click() {
    const bool on = ticked(chckShowGrid.value());
    put(app_.gView, "ShowGrid", on);
    put(app_.form<frmMain>().canvas1(), "GridVisible", on);
    enableSettings(on);
}

void frmGrid::enableSettings(bool on) {
    for (Control* c : {&txtHGrid, &txtVGrid, &btnGridColor, &chckSnapToGrid})
        c->setEnabled(on);
}

void frmGrid::btnGridColor_Click() {
    uint32_t colour = commands::get(app_.gPage, "GridColour").toUInt();
    put(app_.gPage, "GridColour", static_cast<qint64>(common::ShowColourDialog(app_, colour)));
}

void frmGrid::btnCancel_Click() {
    // POLARDraw.GridVisible keeps whatever the dialog made of it.
    put(app_.gView, "ShowGrid", OldShowGrid);
    put(app_.gView, "SnapToGrid", OldSnapToGrid);
    put(app_.gPage, "GridSpacingY", OldSpacingY);
    put(app_.gPage, "GridSpacingX", OldSpacingX);
    put(app_.gPage, "GridColour", static_cast<qint64>(OldGridColour));
    app_.unload(*this);
}

} // namespace tessaly
