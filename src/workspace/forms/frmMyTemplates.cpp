#include "workspace/forms/frmMyTemplates.h"

#include "canvas/api/CanvasCodes.h"
#include "canvas/api/POLARDraw.h"
#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "workspace/Application.h"
#include "workspace/PortDialogHost.h"
#include "workspace/commands/CommandSupport.h"
#include "workspace/frmMain.h"

#include <QRegularExpression>

namespace tessaly {

using namespace commands;

namespace {
const QString DefaultTemplate = QStringLiteral("Default Template"); // the name shown before a choice
const QString TemplateQuery = QStringLiteral("SELECT * FROM TemplateFiles;");
const QString SystemBlank = QStringLiteral("System.pdr"); // the blank new templates start from
const QString PdrExtension = QStringLiteral(".pdr");
constexpr int SettleMs = 500;         // pause between saving one template and loading the next
constexpr int ExtensionLength = 4;    // ".pdr", cut from an imported file's title
constexpr int CanvasWidthLess = 100;  // PD1 is this much narrower than the window's inside (twips)
constexpr int CanvasHeightLess = 950; // and this much lower
constexpr int CanvasLeft = 50, CanvasTop = 900;
} // namespace

frmMyTemplates::frmMyTemplates(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      lblTemplate(add(ControlKind::Label, QStringLiteral("lblTemplate"))),
      cboTemplate(add(ControlKind::ComboBox, QStringLiteral("cboTemplate"))),
      cmdNewTemplateFile(add(ControlKind::CommandButton, QStringLiteral("cmdNewTemplateFile"))),
      cmdImport(add(ControlKind::CommandButton, QStringLiteral("cmdImport"))),
      cmdSave(add(ControlKind::CommandButton, QStringLiteral("cmdSave"))),
      cmdClose(add(ControlKind::CommandButton, QStringLiteral("cmdClose"))),
      cmdCopy(add(ControlKind::CommandButton, QStringLiteral("cmdCopy"))),
      cmdCut(add(ControlKind::CommandButton, QStringLiteral("cmdCut"))),
      cmdPaste(add(ControlKind::CommandButton, QStringLiteral("cmdPaste"))),
      cmdPasteBack(add(ControlKind::CommandButton, QStringLiteral("cmdPasteBack"))),
      PD1(add(ControlKind::Canvas, QStringLiteral("PD1"))), app_(app) {
    auto engine = canvas::POLARDraw::create();
    engine->addEventSink(this);
    // The canvas's own dialogs go through the UI port until the desktop view
    // gives the canvas its own.
    engine->setDialogHost(app.canvasDialogs.get());
    PD1.inner = engine;
    buildLayout();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Resize"), [this](EventArgs&) { Form_Resize(); });
    onForm(QStringLiteral("Unload"), [this](EventArgs&) { cmdSave_Click(); });
    onClick(*this, QStringLiteral("cboTemplate"), [this] {
        app_.ui.doEvents();
        LoadTemplateFile();
    });
    onClick(*this, QStringLiteral("cmdNewTemplateFile"), [this] { cmdNewTemplateFile_Click(); });
    onClick(*this, QStringLiteral("cmdImport"), [this] { cmdImport_Click(); });
    onClick(*this, QStringLiteral("cmdSave"), [this] { cmdSave_Click(); });
    onClick(*this, QStringLiteral("cmdClose"), [this] { app_.unload(*this); });
    onClick(*this, QStringLiteral("cmdCopy"), [this] { invoke(PD1.inner, "Copy"); });
    onClick(*this, QStringLiteral("cmdCut"), [this] { invoke(PD1.inner, "Cut"); });
    onClick(*this, QStringLiteral("cmdPaste"), [this] { invoke(PD1.inner, "Paste"); });
    onClick(*this, QStringLiteral("cmdPasteBack"), [this] { cmdPasteBack_Click(); });
}

frmMyTemplates::~frmMyTemplates() {
    if (auto engine = std::dynamic_pointer_cast<canvas::POLARDraw>(PD1.inner))
        engine->removeEventSink(this);
}

void frmMyTemplates::buildLayout() {
    setCaption(QStringLiteral("My Templates"));
    setSize(9600, 8400, 9480, 7920);
    lblTemplate.setCaption(QStringLiteral("Select a Template File"));
    lblTemplate.move(120, 120, 2400, 255);
    cboTemplate.move(120, 420, 2700, 315);
    cboTemplate.setText(DefaultTemplate);
    cboTemplate.setToolTipText(QStringLiteral("Select a Template File"));
    struct Button {
        Control* c;
        const char* caption;
        const char* tip;
    };
    const Button buttons[] = {
        {&cmdNewTemplateFile, "New", "Click To Create A New Template File"},
        {&cmdImport, "Import", "Import A Template"},
        {&cmdSave, "Save", "Save Changes To The Template"},
        {&cmdCopy, "Copy", nullptr},
        {&cmdCut, "Cut", nullptr},
        {&cmdPaste, "Paste", "Paste an object or drawing on to this template"},
        {&cmdPasteBack, "Paste Back",
         "Paste a selected object or drawing from this template and paste it on the main page"},
        {&cmdClose, "Close", "Close Templates"},
    };
    int left = 2940;
    for (const Button& b : buttons) {
        b.c->setCaption(QString::fromLatin1(b.caption));
        if (b.tip)
            b.c->setToolTipText(QString::fromLatin1(b.tip));
        const int width = b.c == &cmdPasteBack ? 1020 : 660;
        b.c->move(left, 390, width, 375);
        left += width + 60;
    }
    PD1.move(CanvasLeft, CanvasTop, scaleWidth() - CanvasWidthLess, scaleHeight() - CanvasHeightLess);
}

void frmMyTemplates::registerMembers() {
    member(
        QStringLiteral("CurrentTemplate"), [this] { return QVariant(CurrentTemplate); },
        [this](const QVariant& v) { CurrentTemplate = v.toString(); });
    auto step = [this](const char* name, void (frmMyTemplates::*fn)()) {
        routine(QString::fromLatin1(name), [this, fn](QVariantList&) {
            (this->*fn)();
            return QVariant();
        });
    };
    step("RefreshTemplateList", &frmMyTemplates::RefreshTemplateList);
    step("LoadTemplateFile", &frmMyTemplates::LoadTemplateFile);
    routine(QStringLiteral("AddTemplateRecord"), [this](QVariantList& a) {
        AddTemplateRecord(a.value(0).toString());
        return QVariant();
    });
}

QString frmMyTemplates::templatePath(const QString& name) const {
    return app_.gTemplateFolder + name + PdrExtension;
}

void frmMyTemplates::Form_Load() {
    CurrentTemplate = cboTemplate.text();
    RefreshTemplateList();
}

void frmMyTemplates::Form_Resize() {
    try {
        PD1.move(PD1.geometry().left(), PD1.geometry().top(), scaleWidth() - CanvasWidthLess,
                 scaleHeight() - CanvasHeightLess);
        invoke(object(PD1.inner, "Views"), "CenterPage");
    } catch (const RuntimeError&) {
        // a window too small for the canvas keeps the canvas as it was
    }
}

namespace {
void requireConnection(const Application& app) {
    if (!app.gConnection)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
}
} // namespace

void frmMyTemplates::RefreshTemplateList() {
    cboTemplate.clear();
    cboTemplate.setText(DefaultTemplate);
    requireConnection(app_);
    if (!app_.gRecordset)
        app_.gRecordset = std::make_shared<db::Recordset>();
    db::Recordset& rs = *app_.gRecordset;
    rs.Open(TemplateQuery, *app_.gConnection, db::adOpenDynamic, db::adLockReadOnly);
    if (!(rs.BOF() && rs.EOF_())) {
        while (!rs.EOF_()) {
            cboTemplate.addItem(rs.Fields(QStringLiteral("TemplateName")).Value().toString());
            cboTemplate.setItemData(cboTemplate.newIndex(), rs.Fields(QStringLiteral("ID")).Value());
            rs.MoveNext();
        }
    }
    rs.Close();
}

void frmMyTemplates::AddTemplateRecord(const QString& name) {
    requireConnection(app_);
    if (!app_.gRecordset)
        app_.gRecordset = std::make_shared<db::Recordset>();
    db::Recordset& rs = *app_.gRecordset;
    rs.Open(TemplateQuery, *app_.gConnection, db::adOpenDynamic, db::adLockOptimistic);
    rs.AddNew();
    rs.Fields(QStringLiteral("TemplateName")) = name;
    rs.Update();
    rs.Close();
    RefreshTemplateList();
}

void frmMyTemplates::loadIntoCanvas(const QString& logicPath) {
    invoke(PD1.inner, "LoadFile", {fs::toHost(logicPath)});
}

void frmMyTemplates::showLoadedTemplate() {
    const AutoPtr views = object(PD1.inner, "Views");
    const AutoPtr view = object(views, "Item");
    put(view, "ShowGrid", false);
    put(view, "ShowGuides", false);
    invoke(views, "CenterPage");
    invoke(PD1.inner, "Redraw");
}

void frmMyTemplates::LoadTemplateFile() {
    try {
        // The template in view is saved without asking.
        const QString current = templatePath(CurrentTemplate);
        if (!current.isEmpty())
            invoke(PD1.inner, "SaveFile", {fs::toHost(current), canvas::save_format::Pdr});
        app_.sleep(SettleMs);
        loadIntoCanvas(templatePath(cboTemplate.text()));
        showLoadedTemplate();
        CurrentTemplate = cboTemplate.text();
        app_.ui.setMousePointer(pointer::Default);
        app_.ui.doEvents();
    } catch (const RuntimeError& e) {
        app_.ui.msgBox(QStringLiteral("Error: %1-%2").arg(e.number()).arg(e.description()), mb::Critical,
                       AppTitle);
        app_.ui.setMousePointer(pointer::Default);
    }
}

void frmMyTemplates::cmdSave_Click() {
    invoke(PD1.inner, "SaveFile", {fs::toHost(templatePath(CurrentTemplate)), canvas::save_format::Pdr});
}

void frmMyTemplates::cmdNewTemplateFile_Click() {
    cmdSave_Click();
    app_.ui.doEvents();
    const QString name =
        app_.ui.inputBox(QStringLiteral("Please Enter A Name For The New Template"), AppTitle, QString())
            .value_or(QString());
    if (name.isEmpty()) {
        app_.ui.msgBox(QStringLiteral("New Template Was Not Created"), mb::Information, AppTitle);
        return;
    }
    loadIntoCanvas(app_.gTemplateFolder + SystemBlank);
    invoke(PD1.inner, "Redraw");
    app_.ui.doEvents();
    invoke(PD1.inner, "SaveFile", {fs::toHost(templatePath(name)), canvas::save_format::Pdr});
    AddTemplateRecord(name);
    cboTemplate.setText(name);
    CurrentTemplate = name;
    loadIntoCanvas(templatePath(name));
    showLoadedTemplate();
}

void frmMyTemplates::cmdImport_Click() {
    try {
        cmdSave_Click();
        app_.ui.doEvents();
        FileDialogRequest request;
        request.title = QStringLiteral("Select A Tessaly Template To Import....");
        request.filter = QStringLiteral("Tessaly File (*.pdr)|*.pdr");
        request.defaultExt = QStringLiteral("pdr");
        const std::optional<QString> chosen = app_.ui.openDialog(request);
        if (!chosen)
            raiseError(err::DialogCancelled, QStringLiteral("Cancel was selected."));
        const QString fileName = *chosen;
        QString title = fileName.mid(fileName.lastIndexOf(QRegularExpression(QStringLiteral("[\\\\/]"))) + 1);
        // The last four characters are the extension, whatever the title holds.
        if (title.size() < ExtensionLength)
            raiseError(err::InvalidProcedureCall, QStringLiteral("Invalid procedure call or argument"));
        const QString name = title.left(title.size() - ExtensionLength);
        if (name.isEmpty()) {
            app_.ui.msgBox(QStringLiteral("Template Was Not Imported"), mb::Information, AppTitle);
            return;
        }
        app_.ui.setMousePointer(pointer::Hourglass);
        fs::copyFile(fileName, templatePath(name), true);
        AddTemplateRecord(name);
        cboTemplate.setText(name);
        CurrentTemplate = name;
        loadIntoCanvas(templatePath(name));
        showLoadedTemplate();
        app_.ui.setMousePointer(pointer::Default);
    } catch (const RuntimeError& e) {
        if (e.number() == err::DialogCancelled)
            app_.ui.msgBox(QStringLiteral("Import Template Canceled..."), mb::Information, AppTitle);
        else
            app_.ui.msgBox(
                QStringLiteral("Import Template Error: %1 - %2").arg(e.number()).arg(e.description()),
                mb::Critical, AppTitle);
        app_.ui.setMousePointer(pointer::Default);
    }
}

void frmMyTemplates::cmdPasteBack_Click() {
    invoke(PD1.inner, "Copy");
    invoke(app_.form<frmMain>().canvas1(), "Paste");
}

void frmMyTemplates::FileReadError(const QString& text, int code, bool& handled) {
    app_.ui.msgBox(QStringLiteral("%1 - %2").arg(text).arg(code), mb::Critical,
                   QStringLiteral("Error Reading File"));
    handled = true;
}

void frmMyTemplates::FileWriteError(const QString& text, int code, bool& handled) {
    app_.ui.msgBox(QStringLiteral("%1 - %2").arg(text).arg(code), mb::Critical,
                   QStringLiteral("Error Writing File"));
    handled = true;
}

void registerMyTemplatesCommand(frmMain& form, Application& app) {
    onClick(form, QStringLiteral("mnuView_MyTemplates"),
            [&app] { app.show(app.form<frmMyTemplates>(), false); });
}

} // namespace tessaly
