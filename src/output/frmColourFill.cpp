#include "output/frmColourFill.h"

#include "core/common/CommonRoutines.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "metafile/Picture.h"
#include "output/colour/FloodFillAt.h"
#include "output/colour/PaintSurface.h"
#include "workspace/Application.h"

#include <QBuffer>
#include <algorithm>

namespace tessaly {

using colour::PaintSurface;

namespace {

// The names of the coloured outputs beside the plan.
const QString SourceExtension = QStringLiteral(".emf");
const QString ColouredBitmap = QStringLiteral(" Coloured.bmp");
const QString ColouredEmf = QStringLiteral(" Coloured.emf");
const QString ColouredWmf = QStringLiteral(" Coloured.wmf");
// The metafile written from the picture: anisotropic mapping, and its description.
constexpr int32_t AnisotropicMapMode = 8;
const QString EmfDescription = QStringLiteral("Tessaly EMF Output");
// The wait after the metafile is written, in milliseconds.
constexpr int WaitAfterMetafile = 400;
// The left mouse button.
constexpr int LeftButton = 1;
// The gaps the resize keeps: right of the picture, and below it, in twips.
constexpr int RightGap = 25;
constexpr int BottomGap = 20;
// The fill colour the window starts with (0x00BBGGRR): a pale blue.
constexpr uint32_t StartColour = 0xFFCC99;
// The background of the picture.
constexpr uint32_t PictureBack = 0xFFFFFF;

const QString MarkQuery =
    QStringLiteral(
        "SELECT Sites.SiteID, Sites.Address, SitePlans.PlanDescription, SitePlans.ColourOutputCreated ") +
    QStringLiteral("FROM Sites INNER JOIN SitePlans ON Sites.SiteID = SitePlans.SiteID ") +
    QStringLiteral("WHERE (((Sites.Address)='");
const QString MarkQueryDescription = QStringLiteral("') AND ((SitePlans.PlanDescription)='");
const QString MarkQueryEnd = QStringLiteral("'));");

int32_t wholeOf(float value) {
    return vb::toInt32(static_cast<double>(value));
}

} // namespace

frmColourFill::frmColourFill(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      Picture1(add(ControlKind::PictureBox, QStringLiteral("Picture1"))),
      Option1(add(ControlKind::OptionButton, QStringLiteral("Option1"))),
      Option2(add(ControlKind::OptionButton, QStringLiteral("Option2"))),
      cmdChoseColour(add(ControlKind::CommandButton, QStringLiteral("cmdChoseColour"))),
      lblcolour(add(ControlKind::Label, QStringLiteral("lblcolour"))),
      cmdSave(add(ControlKind::CommandButton, QStringLiteral("cmdSave"))),
      cmdCancel(add(ControlKind::CommandButton, QStringLiteral("cmdCancel"))), ChosenColour(StartColour),
      ColourDialogValue(StartColour), app_(app) {
    buildLayout();
    PaintSurface::attach(Picture1);
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Resize"), [this](EventArgs&) { Form_Resize(); });
    on(Option1.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        AreaMode = vb::TrueValue;
        PointMode = vb::FalseValue;
    });
    on(Option2.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) {
        PointMode = vb::TrueValue;
        AreaMode = vb::FalseValue;
    });
    on(cmdChoseColour.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdChoseColour_Click(); });
    const auto mouse = [this](void (frmColourFill::*handler)(int, float, float)) {
        return [this, handler](Control&, EventArgs& a) {
            (this->*handler)(vb::toInt32(a.value(0)), a.value(2).toFloat(), a.value(3).toFloat());
        };
    };
    on(Picture1.name(), QStringLiteral("MouseDown"), mouse(&frmColourFill::Picture1_MouseDown));
    on(Picture1.name(), QStringLiteral("MouseMove"), mouse(&frmColourFill::Picture1_MouseMove));
    on(Picture1.name(), QStringLiteral("MouseUp"), mouse(&frmColourFill::Picture1_MouseUp));
    on(cmdSave.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdSave_Click(); });
    on(cmdCancel.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
}

void frmColourFill::buildLayout() {
    setCaption(QStringLiteral("Colour Fill"));
    constexpr int InnerWidth = 19200;
    constexpr int InnerHeight = 12600;
    setSize(InnerWidth + 120, InnerHeight + 480, InnerWidth, InnerHeight);
    Option1.setCaption(QStringLiteral("Colour An Area"));
    Option1.setProp(QStringLiteral("Value"), 1);
    Option1.move(120, 240, 2640, 300);
    Option2.setCaption(QStringLiteral("Colour A Single Point"));
    Option2.move(120, 600, 2640, 300);
    cmdChoseColour.setCaption(QStringLiteral("Select Colour"));
    cmdChoseColour.move(120, 1080, 2640, 420);
    lblcolour.setCaption(QStringLiteral("Selected Fill Colour"));
    lblcolour.setProp(QStringLiteral("Alignment"), 2);
    lblcolour.setBackColor(StartColour);
    lblcolour.move(120, 1620, 2640, 480);
    cmdSave.setCaption(QStringLiteral("Save And Close Window"));
    cmdSave.move(120, 2400, 2640, 480);
    cmdCancel.setCaption(QStringLiteral("Cancel And Close"));
    cmdCancel.move(120, 3000, 2640, 480);
    Picture1.setBackColor(PictureBack);
    constexpr int PictureLeft = 2880;
    Picture1.move(PictureLeft, 0, InnerWidth - (PictureLeft + RightGap), InnerHeight - BottomGap);
}

void frmColourFill::registerMembers() {
    member(QStringLiteral("AreaMode"), [this] { return QVariant(AreaMode); });
    member(QStringLiteral("PointMode"), [this] { return QVariant(PointMode); });
    member(QStringLiteral("ChosenColour"), [this] { return QVariant(static_cast<qint64>(ChosenColour)); });
    member(QStringLiteral("LastX"), [this] { return QVariant(LastX); });
    member(QStringLiteral("LastY"), [this] { return QVariant(LastY); });
    member(QStringLiteral("OutputEMF"), [this] { return QVariant(OutputEMF); });
    member(QStringLiteral("OutputWMF"), [this] { return QVariant(OutputWMF); });
}

QString frmColourFill::planPath() const {
    return app_.gFileStore + QLatin1Char('\\') + app_.gPlanFileName;
}

void frmColourFill::Form_Load() {
    // Errors are ignored: a missing .emf leaves an empty picture.
    PaintSurface& surface = *PaintSurface::of(Picture1);
    resumeNext([&] { surface.setPicture(metafile::loadPicture(fs::toHost(planPath() + SourceExtension))); });
    resumeNext([&] { OutputEMF = planPath() + ColouredEmf; });
    resumeNext([&] { OutputWMF = planPath() + ColouredWmf; });
    AreaMode = vb::TrueValue;
    PointMode = vb::FalseValue;
}

void frmColourFill::Form_Resize() {
    const QRect box = Picture1.geometry();
    Picture1.move(box.left(), box.top(), std::max(0, scaleWidth() - (box.left() + RightGap)),
                  std::max(0, scaleHeight() - BottomGap));
    PaintSurface::of(Picture1)->fitToBox();
}

void frmColourFill::cmdChoseColour_Click() {
    // The dialog keeps its colour when it is cancelled.
    if (const std::optional<unsigned> chosen = app_.ui.colourDialog(ColourDialogValue))
        ColourDialogValue = *chosen;
    ChosenColour = ColourDialogValue;
    lblcolour.setBackColor(ChosenColour);
}

void frmColourFill::Picture1_MouseDown(int button, float x, float y) {
    if (button != LeftButton)
        return;
    LastX = wholeOf(x);
    LastY = wholeOf(y);
}

void frmColourFill::Picture1_MouseMove(int button, float x, float y) {
    if (button != LeftButton || PointMode == vb::FalseValue)
        return;
    PaintSurface& surface = *PaintSurface::of(Picture1);
    surface.drawWidth = 1;
    surface.Line(LastX, LastY, x, y, lblcolour.backColor());
    LastX = wholeOf(x);
    LastY = wholeOf(y);
    app_.ui.doEvents();
}

void frmColourFill::Picture1_MouseUp(int button, float x, float y) {
    if (button != LeftButton || AreaMode == vb::FalseValue)
        return;
    colour::FloodFillAt(app_, Picture1, wholeOf(x), wholeOf(y), lblcolour.backColor());
    PaintSurface::of(Picture1)->Refresh();
}

void frmColourFill::cmdSave_Click() {
    PaintSurface& surface = *PaintSurface::of(Picture1);
    // Step 1.
    app_.ui.setMousePointer(pointer::Hourglass);
    // Step 2.
    surface.Refresh();
    surface.makeImageThePicture();
    // Step 3.
    QByteArray bitmap;
    QBuffer buffer(&bitmap);
    buffer.open(QIODevice::WriteOnly);
    if (!surface.image().save(&buffer, "BMP"))
        raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
    fs::writeAtomically(planPath() + ColouredBitmap, bitmap);
    // Step 4: the first part is taken as the address, the second as the description.
    const QStringList parts = app_.gPlanFileName.split(QLatin1Char('\\'));
    if (parts.size() < 2)
        raiseError(9, QStringLiteral("Subscript out of range"));
    const QString address = parts.at(0);
    const QString description = parts.at(1);
    // Step 5.
    PictureControlState state;
    state.image = surface.image();
    state.Left = Picture1.geometry().left();
    state.Top = Picture1.geometry().top();
    state.pictureWidthHiMetric = surface.pictureHiMetric().width();
    state.pictureHeightHiMetric = surface.pictureHiMetric().height();
    state.ScaleMode = surface.scaleMode();
    app_.printMod.PictureToEMF(state, OutputEMF, AnisotropicMapMode, EmfDescription);
    surface.setScaleMode(state.ScaleMode);
    // Step 6.
    app_.sleep(WaitAfterMetafile);
    // Step 7.
    if (common::FileExists(OutputWMF))
        fs::kill(OutputWMF);
    if (!OutputEMF.isEmpty())
        app_.printMod.ConvertEMFtoWMF(OutputEMF, OutputWMF);
    // Step 8: the address and description go into the text as they are.
    app_.gRecordset = std::make_shared<db::Recordset>();
    db::Recordset& rs = *app_.gRecordset;
    if (!app_.gConnection)
        raiseError(3709, QStringLiteral("The connection cannot be used to perform this operation"));
    rs.Open(MarkQuery + address + MarkQueryDescription + description + MarkQueryEnd, *app_.gConnection,
            db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    // Step 9: the first row found is marked.
    if (!rs.EOF_()) {
        rs.setValue(QStringLiteral("ColourOutputCreated"), vb::TrueValue);
        rs.Update();
    }
    // Step 10.
    rs.Close();
    app_.gRecordset.reset();
    // Step 11.
    app_.ui.setMousePointer(pointer::Default);
    app_.unload(*this);
}

} // namespace tessaly
