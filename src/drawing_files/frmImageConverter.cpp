#include "frmImageConverter.h"

#include "canvas/model/CanvasPicture.h"
#include "core/files/FileSystem.h"
#include "core/forms/PictureBox.h"
#include "core/runtime/Vb.h"
#include "workspace/Application.h"

#include <array>
#include <charconv>

namespace tessaly {

namespace {
const QString LoadTitle = QStringLiteral("Select An Image To Convert....");
const QString LoadFilter = QStringLiteral("All Picture Files (*.bmp)|*.bmp");
const QString PickPrompt =
    QStringLiteral("Single left click the colour on the picture you want to be set as transparent.");
const QString RowText = QStringLiteral("Pic Point On Height: ");
const QString Description =
    QStringLiteral("Image Converter will allow you to load an image from file set a transparent colour and "
                   "write the rest of the image to the main canvas as a vector...");
constexpr int TitleFontSize = 12; // points, the title's font
constexpr int SingleBorder = 1;   // a label's BorderStyle with a single border

// The walk's counters are 16 bits: a step past 32767 overflows (error 6).
int16_t nextStep(int16_t counter) {
    return vb::checkInt16(static_cast<long long>(counter) + 1);
}

// "x y" for Label3, made with one allocation: the walk writes it at every
// pixel that shows.
QString coordinatesText(int16_t x, int16_t y) {
    constexpr int Widest = 6;    // "-32768"
    std::array<char, 16> text{}; // room for two 16-bit numbers and a blank
    char* end = std::to_chars(text.data(), text.data() + Widest, x).ptr;
    *end = ' ';
    end = std::to_chars(end + 1, text.data() + text.size(), y).ptr;
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(end - text.data()));
}

} // namespace

frmImageConverter::frmImageConverter(Application& app)
    : Form(app, QString::fromLatin1(FormName)), Label1(add(ControlKind::Label, QStringLiteral("Label1"))),
      Label4(add(ControlKind::Label, QStringLiteral("Label4"))),
      Picture1(add(ControlKind::PictureBox, QStringLiteral("Picture1"))),
      cmdLoad(add(ControlKind::CommandButton, QStringLiteral("cmdLoad"))),
      cmdTransp(add(ControlKind::CommandButton, QStringLiteral("cmdTransp"))),
      cmdStart(add(ControlKind::CommandButton, QStringLiteral("cmdStart"))),
      cmdClear(add(ControlKind::CommandButton, QStringLiteral("cmdClear"))),
      lblColIndecator(add(ControlKind::Label, QStringLiteral("lblColIndecator"))),
      Label3(add(ControlKind::Label, QStringLiteral("Label3"))),
      Label2(add(ControlKind::Label, QStringLiteral("Label2"))), app_(app),
      picture_(PictureBox::attach(Picture1)) {
    buildLayout();
    registerMembers();
    on(cmdLoad.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdLoad_Click(); });
    on(cmdClear.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdClear_Click(); });
    on(cmdTransp.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdTransp_Click(); });
    on(cmdStart.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdStart_Click(); });
    on(Picture1.name(), QStringLiteral("MouseUp"), [this](Control&, EventArgs& a) {
        Picture1_MouseUp(a.value(0).toInt(), a.value(1).toInt(), a.value(2).toFloat(), a.value(3).toFloat());
    });
}

void frmImageConverter::buildLayout() {
    setCaption(QStringLiteral("Image Converter"));
    setSize(9720, 7680, 9600, 7200);
    Label1.setCaption(QStringLiteral("Image/Picture Converter"));
    Label1.move(120, 120, 9360, 360);
    Label1.setProp(QStringLiteral("FontSize"), TitleFontSize);
    Label1.setProp(QStringLiteral("FontBold"), true);
    Label4.setCaption(Description);
    Label4.move(120, 540, 9360, 540);
    const auto button = [](Control& b, const char* caption, int top) {
        b.setCaption(QString::fromLatin1(caption));
        b.move(120, top, 1500, 375);
    };
    button(cmdLoad, "Load Image", 1320);
    button(cmdTransp, "Set Transp", 1800);
    button(cmdStart, "Start", 2280);
    button(cmdClear, "Clear", 2760);
    // Nothing to work on until a picture is loaded.
    enablePictureButtons(false);
    lblColIndecator.move(120, 3300, 1500, 375);
    lblColIndecator.setProp(QStringLiteral("BorderStyle"), SingleBorder);
    Label3.move(120, 6720, 3000, 300);
    Label2.move(3240, 6720, 6240, 300);
    // The picture at its own size, measured in pixels.
    Picture1.move(1800, 1320, 7680, 5280);
    picture_.setScaleMode(PictureBox::PixelScale);
    picture_.setAutoSize(true);
}

void frmImageConverter::registerMembers() {
    member(
        QStringLiteral("PickingColour"), [this] { return QVariant(PickingColour); },
        [this](const QVariant& v) { PickingColour = vb::toBool(v); });
    member(
        QStringLiteral("TransparentColour"), [this] { return QVariant(TransparentColour); },
        [this](const QVariant& v) { TransparentColour = vb::toInt32(v); });
    member(
        QStringLiteral("CurrentColour"), [this] { return QVariant(CurrentColour); },
        [this](const QVariant& v) { CurrentColour = vb::toInt32(v); });
}

void frmImageConverter::enablePictureButtons(bool on) {
    cmdClear.setEnabled(on);
    cmdTransp.setEnabled(on);
    cmdStart.setEnabled(on);
}

void frmImageConverter::cmdLoad_Click() {
    // 1.
    FileDialogRequest request;
    request.title = LoadTitle;
    request.filter = LoadFilter;
    const QString fileName = app_.ui.openDialog(request).value_or(QString());
    if (!fileName.isEmpty()) {
        // 2. A file that is no picture stops here with the loader's error.
        picture_.setPicture(canvas::CanvasPicture::fromFile(fs::toHost(fileName))->image());
        enablePictureButtons(true);
    } else {
        // 3.
        enablePictureButtons(false);
    }
}

void frmImageConverter::cmdClear_Click() {
    picture_.clear();
    enablePictureButtons(false);
}

void frmImageConverter::cmdTransp_Click() {
    PickingColour = true;
    app_.ui.msgBox(PickPrompt, mb::Information, AppTitle);
}

void frmImageConverter::Picture1_MouseUp(int, int, float x, float y) {
    if (!PickingColour)
        return;
    TransparentColour = picture_.point(x, y);
    lblColIndecator.setBackColor(static_cast<unsigned>(TransparentColour));
    PickingColour = false;
}

void frmImageConverter::cmdStart_Click() {
    // 1. The rows; their bound is read once.
    const int16_t lastRow = vb::toInt16(picture_.scaleHeight() - 1);
    for (int16_t y = 0; y <= lastRow; y = nextStep(y)) {
        // a. Each row reads its own bound: the picture may change during the walk.
        const int16_t lastColumn = vb::toInt16(picture_.scaleWidth() - 1);
        // b. Each pixel is read from the picture box; every one that is not
        //    transparent is shown and lets pending events run.
        for (int16_t x = 0; x <= lastColumn; x = nextStep(x)) {
            CurrentColour = picture_.point(x, y);
            if (CurrentColour != TransparentColour && CurrentColour != PictureBox::OutsidePicture) {
                Label3.setCaption(coordinatesText(x, y));
                app_.ui.doEvents();
            }
        }
        // c.
        Label2.setCaption(RowText + QString::number(y));
        app_.ui.doEvents();
    }
}

} // namespace tessaly
