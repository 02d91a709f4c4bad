#include "workspace/forms/frmPaper.h"

#include "canvas/api/CanvasChild.h"
#include "canvas/model/CanvasPicture.h"
#include "core/common/CommonRoutines.h"
#include "core/files/FileSystem.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"
#include "workspace/commands/CommandSupport.h"

namespace tessaly {

using namespace commands;

namespace {
// The pictures a background can be made of.
const QString BackgroundFilter = QStringLiteral(
    "Pictures (*.bmp;*.jpg;*.gif;*.png;*.wmf;*.emf)|*.bmp;*.jpg;*.gif;*.png;*.wmf;*.emf|All Files (*.*)|*.*");
const QString BackgroundTitle = QStringLiteral("Choose A Background");
} // namespace

frmPaper::frmPaper(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      lblHeading(add(ControlKind::Label, QStringLiteral("lblHeading"))),
      lblSubHeading(add(ControlKind::Label, QStringLiteral("lblSubHeading"))),
      fraDimensions(add(ControlKind::Frame, QStringLiteral("fraDimensions"))),
      lblPageWidth(add(ControlKind::Label, QStringLiteral("lblPageWidth"))),
      txtPageWidth(add(ControlKind::TextBox, QStringLiteral("txtPageWidth"))),
      lblPageHeight(add(ControlKind::Label, QStringLiteral("lblPageHeight"))),
      txtPageHeight(add(ControlKind::TextBox, QStringLiteral("txtPageHeight"))),
      fraGeneral(add(ControlKind::Frame, QStringLiteral("fraGeneral"))),
      chckShowPaper(add(ControlKind::CheckBox, QStringLiteral("chckShowPaper"))),
      cmdPaperColor(add(ControlKind::CommandButton, QStringLiteral("cmdPaperColor"))),
      fraOutline(add(ControlKind::Frame, QStringLiteral("fraOutline"))),
      chckPaperOutline(add(ControlKind::CheckBox, QStringLiteral("chckPaperOutline"))),
      cmdPaperOutlineColor(add(ControlKind::CommandButton, QStringLiteral("cmdPaperOutlineColor"))),
      fraShadow(add(ControlKind::Frame, QStringLiteral("fraShadow"))),
      chckPaperShadow(add(ControlKind::CheckBox, QStringLiteral("chckPaperShadow"))),
      cmdPaperShadowColor(add(ControlKind::CommandButton, QStringLiteral("cmdPaperShadowColor"))),
      fraBackground(add(ControlKind::Frame, QStringLiteral("fraBackground"))),
      cmdBackground(add(ControlKind::CommandButton, QStringLiteral("cmdBackground"))),
      cmdOk(add(ControlKind::CommandButton, QStringLiteral("cmdOk"))), app_(app) {
    buildLayout();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onClick(*this, QStringLiteral("chckShowPaper"),
            [this] { put(app_.gPage, "ShowPaper", ticked(chckShowPaper.value())); });
    onClick(*this, QStringLiteral("chckPaperOutline"),
            [this] { put(app_.gPage, "ShowOutline", ticked(chckPaperOutline.value())); });
    onClick(*this, QStringLiteral("chckPaperShadow"),
            [this] { put(app_.gPage, "ShowShadow", ticked(chckPaperShadow.value())); });
    onClick(*this, QStringLiteral("cmdPaperColor"), [this] { colourButton("PaperColour"); });
    onClick(*this, QStringLiteral("cmdPaperOutlineColor"), [this] { colourButton("OutlineColour"); });
    onClick(*this, QStringLiteral("cmdPaperShadowColor"), [this] { colourButton("ShadowColour"); });
    // The box labelled height writes the page's width, and the other way
    // round; text that is not a number is passed over.
    on(QStringLiteral("txtPageHeight"), QStringLiteral("LostFocus"), [this](Control&, EventArgs&) {
        if (vb::isNumeric(txtPageHeight.text()))
            put(app_.gPage, "Width", txtPageHeight.text());
    });
    on(QStringLiteral("txtPageWidth"), QStringLiteral("LostFocus"), [this](Control&, EventArgs&) {
        if (vb::isNumeric(txtPageWidth.text()))
            put(app_.gPage, "Height", txtPageWidth.text());
    });
    onClick(*this, QStringLiteral("cmdBackground"), [this] { cmdBackground_Click(); });
    onClick(*this, QStringLiteral("cmdOk"), [this] { app_.unload(*this); });
}

void frmPaper::buildLayout() {
    setCaption(QStringLiteral("Canvas Settings"));
    setSize(5400, 6570, 5280, 6090);
    lblHeading.setCaption(QStringLiteral("Canvas Options"));
    lblHeading.setProp(QStringLiteral("FontBold"), true);
    lblHeading.move(240, 120, 4800, 300);
    lblSubHeading.setCaption(QStringLiteral(
        "Change the appearance of the default page, colour, size, outline, shadow and add a background"));
    lblSubHeading.move(240, 450, 4800, 480);

    fraDimensions.setCaption(QStringLiteral("Canvas Dimensions"));
    fraDimensions.move(240, 1020, 4800, 1020);
    for (Control* c : {&lblPageWidth, &txtPageWidth, &lblPageHeight, &txtPageHeight})
        c->setProp(QStringLiteral("Container"), QStringLiteral("fraDimensions"));
    lblPageWidth.setCaption(QStringLiteral("Canvas Width:"));
    lblPageWidth.move(180, 300, 1380, 255);
    txtPageWidth.move(1560, 270, 780, 315);
    lblPageHeight.setCaption(QStringLiteral("Canvas Height:"));
    lblPageHeight.move(180, 660, 1380, 255);
    txtPageHeight.move(1560, 630, 780, 315);

    auto optionFrame = [](Control& frame, const QString& caption, int top, Control& box,
                          const QString& boxCaption, Control& button) {
        frame.setCaption(caption);
        frame.move(240, top, 4800, 660);
        box.setProp(QStringLiteral("Container"), frame.name());
        box.setCaption(boxCaption);
        box.move(180, 270, 2520, 300);
        button.setProp(QStringLiteral("Container"), frame.name());
        button.setCaption(QStringLiteral("Choose Colour..."));
        button.move(2880, 225, 1740, 360);
    };
    optionFrame(fraGeneral, QStringLiteral("Genaral Canvas Options"), 2130, chckShowPaper,
                QStringLiteral("Show Canvas"), cmdPaperColor);
    optionFrame(fraOutline, QStringLiteral("Paper outline"), 2880, chckPaperOutline,
                QStringLiteral("Show Canvas Outline"), cmdPaperOutlineColor);
    optionFrame(fraShadow, QStringLiteral("Canvas Shadow"), 3630, chckPaperShadow,
                QStringLiteral("Show Canvas Shadow"), cmdPaperShadowColor);

    fraBackground.setCaption(QStringLiteral("Canvas Background"));
    fraBackground.move(240, 4380, 4800, 660);
    cmdBackground.setProp(QStringLiteral("Container"), QStringLiteral("fraBackground"));
    cmdBackground.setCaption(QStringLiteral("Choose A Background"));
    cmdBackground.move(180, 225, 2520, 360);

    cmdOk.setCaption(QStringLiteral("&OK"));
    cmdOk.setProp(QStringLiteral("Default"), true);
    cmdOk.move(3900, 5400, 1140, 420);
}

void frmPaper::registerMembers() {
    member(QStringLiteral("PaperLandscape"), [this] { return QVariant(PaperLandscape); });
    member(QStringLiteral("ShownWidth"), [this] { return QVariant(ShownWidth); });
    member(QStringLiteral("ShownHeight"), [this] { return QVariant(ShownHeight); });
}

void frmPaper::Form_Load() {
    chckShowPaper.setValue(checkValueOf(vb::toBool(commands::get(app_.gPage, "ShowPaper"))));
    chckPaperOutline.setValue(checkValueOf(vb::toBool(commands::get(app_.gPage, "ShowOutline"))));
    chckPaperShadow.setValue(checkValueOf(vb::toBool(commands::get(app_.gPage, "ShowShadow"))));
    PaperLandscape = vb::toBool(commands::get(app_.gPage, "Landscape"));
    const int32_t width = vb::toInt32(commands::get(app_.gPage, "Width"));
    const int32_t height = vb::toInt32(commands::get(app_.gPage, "Height"));
    // The two boxes cross over in portrait: the width box shows the height.
    ShownHeight = PaperLandscape ? height : width;
    ShownWidth = PaperLandscape ? width : height;
    txtPageHeight.setText(QString::number(ShownHeight));
    txtPageWidth.setText(QString::number(ShownWidth));
}

void frmPaper::colourButton(const char* property) {
    uint32_t colour = commands::get(app_.gPage, property).toUInt();
    put(app_.gPage, property, static_cast<qint64>(common::ShowColourDialog(app_, colour)));
}

void frmPaper::cmdBackground_Click() {
    FileDialogRequest request;
    request.filter = BackgroundFilter;
    request.title = BackgroundTitle;
    // A cancelled dialog leaves an empty name, which the picture loader refuses.
    const QString fileName = app_.ui.openDialog(request).value_or(QString());
    app_.gShapeList = object(app_.gPage, "Shapes");
    if (fileName.isEmpty())
        raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
    const AutoPtr picture =
        std::make_shared<canvas::PictureObject>(canvas::CanvasPicture::fromFile(fs::toHost(fileName)));
    app_.gBackgroundPicture =
        toObject(invoke(app_.gShapeList, "AddPicture", {toVariant(picture), 0, 0, ShownWidth, ShownHeight}));
    const AutoPtr locks = object(app_.gBackgroundPicture, "Locks");
    put(locks, "LockB", true);
    put(locks, "LockA", true);
}

} // namespace tessaly
