#include "output/frmEmail.h"

#include "core/common/CommonRoutines.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/files/FileSystem.h"
#include "core/forms/DataBinding.h"
#include "core/runtime/ResumeNext.h"
#include "core/runtime/Vb.h"
#include "output/Automation.h"
#include "output/mail/Packer.h"
#include "output/spell/VSSpell.h"
#include "workspace/Application.h"

#include <QVariantMap>

namespace tessaly {

namespace {

// The texts of the window.
const QString Caption = QStringLiteral("E-Mail Drawings To A Client");
const QString Heading = QStringLiteral("E-Mail Drawings To Clients");
const QString SubHeading =
    QStringLiteral("Create E-Mail and automatically add drawings as attachments then send "
                   "the email directly to your client");
const QString Hint = QStringLiteral("Select a client from the grid on the left, then tick each drawing you "
                                    "wish to attach to the email from the "
                                    "list on the right then click Email Details to write your email text.");
const QStringList TabCaptions{QStringLiteral("Attachment Options"), QStringLiteral("Email Details")};
const QString NoDrawings = QStringLiteral("No Drawings Available...");
const QString ColouredSuffix = QStringLiteral(" Coloured");
const QString SubjectStart = QStringLiteral("Site Plans For: ");
const QString SubjectContact = QStringLiteral(", FAO: ");
const QString EnterSubject = QStringLiteral("Please Enter A Subject");
const QString EnterText = QStringLiteral("Please Enter Text To Send");
const QString InOutbox = QStringLiteral(
    "The New Email To Be Sent Is Now In Your Outbox Ready To Send Next Time You Logon To Your ISP");
const QString NoMailProgram = QStringLiteral("Can't find Outlook.");
const QString NoMailProgramHint =
    QStringLiteral("To Use This Facility MS Outlook Must Be Installed On Your PC.");
const QString ErrorStart = QStringLiteral("Error: ");
const QString ErrorPlace = QStringLiteral(" in Sub cmdSend_Click");
// A line break, and the carriage return of the error message.
const QString NewLine = QStringLiteral("\r\n");
const QString CarriageReturn = QStringLiteral("\r");

// The data control's connection and its record source.
const QString ConnectionStart = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");
const QString ConnectionEnd = QStringLiteral(";Persist Security Info=False");
const QString SitesSource =
    QStringLiteral("SELECT Clients.Client, Clients.Contact, Clients.Email, Sites.Address, Clients.ClientID, "
                   "Sites.SiteID ") +
    QStringLiteral("FROM Clients INNER JOIN Sites ON Clients.ClientID = Sites.ClientID;");
// The grid's columns: each field of the join under its own name.
QList<db::GridColumn> gridColumns() {
    QList<db::GridColumn> columns;
    for (const char* field : {"Client", "Contact", "Email", "Address", "ClientID", "SiteID"})
        columns.append({QString::fromLatin1(field), QString::fromLatin1(field)});
    return columns;
}
const QString PlansQuery = QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.SiteID)=");
const QString QueryEnd = QStringLiteral("));");

// The mail program and the file system object, by class name.
const QString MailProgramClass = QStringLiteral("Outlook.Application");
const QString FileSystemClass = QStringLiteral("Scripting.FileSystemObject");
const QString ArchiveName = QStringLiteral("\\Drawings.zip");
const QString EveryFile = QStringLiteral("\\*.*");

// The waits of the load and of the send, in milliseconds.
constexpr int WaitAfterRefresh = 500;
constexpr int WaitAfterFolder = 500;
constexpr int WaitAfterCopies = 700;
constexpr int WaitForPacker = 900;
constexpr int WaitAfterSend = 500;
// CreateItem's type of a mail item.
constexpr int MailItem = 0;
// The list style with a tick box at each item.
constexpr int CheckBoxList = 1;

AutoPtr createObject(Application& app, const QString& className) {
    QVariantList args{className};
    return toObject(app.call(QStringLiteral("CreateObject"), args));
}

} // namespace

frmEmail::frmEmail(Application& app)
    : Form(app, QString::fromLatin1(FormName)),
      lblHeading(add(ControlKind::Label, QStringLiteral("lblHeading"))),
      lblSubHeading(add(ControlKind::Label, QStringLiteral("lblSubHeading"))),
      SSActiveTabs1(add(ControlKind::TabStrip, QStringLiteral("SSActiveTabs1"))),
      RS1(add(ControlKind::DataControl, QStringLiteral("RS1"))),
      G1(add(ControlKind::Grid, QStringLiteral("G1"))),
      List1(add(ControlKind::ListBox, QStringLiteral("List1"))),
      lblHint(add(ControlKind::Label, QStringLiteral("lblHint"))),
      lblRecipients(add(ControlKind::Label, QStringLiteral("lblRecipients"))),
      txtRecipients(add(ControlKind::TextBox, QStringLiteral("txtRecipients"))),
      lblSubject(add(ControlKind::Label, QStringLiteral("lblSubject"))),
      txtSubject(add(ControlKind::TextBox, QStringLiteral("txtSubject"))),
      lblToSend(add(ControlKind::Label, QStringLiteral("lblToSend"))),
      txtToSend(add(ControlKind::RichText, QStringLiteral("txtToSend"))),
      cmdSend(add(ControlKind::CommandButton, QStringLiteral("cmdSend"))),
      cmdSpellCheck(add(ControlKind::CommandButton, QStringLiteral("cmdSpellCheck"))),
      Command1(add(ControlKind::CommandButton, QStringLiteral("Command1"))),
      mnuOptions(add(ControlKind::Menu, QStringLiteral("mnuOptions"))),
      mnuOptions_Both(add(ControlKind::Menu, QStringLiteral("mnuOptions_Both"))),
      mnuOptions_EMF(add(ControlKind::Menu, QStringLiteral("mnuOptions_EMF"))),
      mnuOptions_WMF(add(ControlKind::Menu, QStringLiteral("mnuOptions_WMF"))),
      mnuOptions_PDF(add(ControlKind::Menu, QStringLiteral("mnuOptions_PDF"))),
      VSSpell1(std::make_shared<spell::VSSpell>(app.ui)), app_(app) {
    makeDataControl(RS1);
    makeDataGrid(G1, RS1.name(), gridColumns());
    buildLayout();
    buildMenu();
    registerMembers();
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    onForm(QStringLiteral("Activate"), [this](EventArgs&) { Form_Activate(); });
    on(RS1.name(), QStringLiteral("MoveComplete"), [this](Control&, EventArgs&) { RS1_MoveComplete(); });
    for (Control* entry : {&mnuOptions_Both, &mnuOptions_EMF, &mnuOptions_WMF, &mnuOptions_PDF})
        on(entry->name(), QStringLiteral("Click"), [this](Control& c, EventArgs&) { mnuOptions_Click(c); });
    on(cmdSend.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { cmdSend_Click(); });
    on(cmdSpellCheck.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdSpellCheck_Click(); });
    on(Command1.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
}

void frmEmail::buildLayout() {
    setCaption(Caption);
    setSize(11040, 8520, 10920, 7740);
    lblHeading.setCaption(Heading);
    lblHeading.setProp(QStringLiteral("FontBold"), true);
    lblHeading.setProp(QStringLiteral("FontSize"), 12);
    lblHeading.move(240, 120, 10440, 360);
    lblSubHeading.setCaption(SubHeading);
    lblSubHeading.move(240, 510, 10440, 300);
    SSActiveTabs1.setProp(QStringLiteral("Tabs"), TabCaptions);
    SSActiveTabs1.setProp(QStringLiteral("Tab"), 0);
    SSActiveTabs1.move(120, 900, 10680, 6720);
    RS1.setVisible(false);

    auto onTab = [](Control& c, int tab) {
        c.setProp(QStringLiteral("Container"), QStringLiteral("SSActiveTabs1"));
        c.setProp(QStringLiteral("ContainerTab"), tab);
    };
    for (Control* c : {&G1, &List1, &lblHint})
        onTab(*c, 0);
    G1.move(120, 480, 6720, 4920);
    List1.setProp(QStringLiteral("Style"), CheckBoxList);
    List1.move(6960, 480, 3600, 4920);
    lblHint.setCaption(Hint);
    lblHint.move(120, 5580, 10440, 780);

    for (Control* c : {&lblRecipients, &txtRecipients, &lblSubject, &txtSubject, &lblToSend, &txtToSend,
                       &cmdSend, &cmdSpellCheck, &Command1})
        onTab(*c, 1);
    lblRecipients.setCaption(QStringLiteral("Email To:"));
    lblRecipients.move(120, 540, 1680, 300);
    txtRecipients.move(1800, 480, 8760, 360);
    lblSubject.setCaption(QStringLiteral("Email Subject:"));
    lblSubject.move(120, 1020, 1680, 300);
    txtSubject.move(1800, 960, 8760, 360);
    lblToSend.setCaption(QStringLiteral("Email Body Text:"));
    lblToSend.move(120, 1500, 3000, 300);
    txtToSend.move(120, 1800, 10440, 3960);
    cmdSend.setCaption(QStringLiteral("&Send"));
    cmdSend.move(5640, 5940, 1560, 450);
    cmdSpellCheck.setCaption(QStringLiteral("&Spell Check"));
    cmdSpellCheck.move(7320, 5940, 1560, 450);
    Command1.setCaption(QStringLiteral("&Cancel"));
    Command1.move(9000, 5940, 1560, 450);
}

void frmEmail::buildMenu() {
    mnuOptions.setCaption(QStringLiteral("Options"));
    const std::pair<Control*, const char*> entries[] = {{&mnuOptions_Both, "Email All Files Types"},
                                                        {&mnuOptions_EMF, "Email EMF Files Only"},
                                                        {&mnuOptions_WMF, "Email WMF Files Only"},
                                                        {&mnuOptions_PDF, "Email PDF Files Only"}};
    for (const auto& [entry, caption] : entries) {
        entry->setCaption(QString::fromLatin1(caption));
        entry->setParentMenu(&mnuOptions);
    }
    mnuOptions_Both.setChecked(true);
}

void frmEmail::registerMembers() {
    member(QStringLiteral("Loaded"), [this] { return QVariant(Loaded); });
    member(QStringLiteral("VSSpell1"), [this] { return toVariant(VSSpell1); });
}

void frmEmail::Form_Load() {
    AutoPtr data = RS1.inner;
    automation::set(data, "ConnectionString", ConnectionStart + app_.gDatabaseLocation + ConnectionEnd);
    automation::set(data, "RecordSource", SitesSource);
    automation::call(data, "Refresh");
    app_.sleep(WaitAfterRefresh);
    Loaded = true;
}

void frmEmail::Form_Activate() {
    const int columns = vb::toInt32(automation::get(G1.inner, "ColumnCount"));
    for (int i = 0; i < columns; ++i)
        automation::call(G1.inner, "AutoSize", {i});
}

void frmEmail::RS1_MoveComplete() {
    db::Recordset& rs = dataControlOf(RS1).Recordset();
    // Errors are ignored here: each step goes on after a failed one.
    bool atMarker = false;
    resumeNext([&] { atMarker = rs.BOF() || rs.EOF_(); });
    if (atMarker) {
        resumeNext([&] { cmdSend.setEnabled(false); });
        return;
    }
    if (!Loaded)
        return;
    resumeNext([&] { FillList(); });
    resumeNext([&] { txtRecipients.setText(vb::toText(rs.value(QStringLiteral("Email")))); });
    resumeNext([&] {
        txtSubject.setText(SubjectStart + vb::toText(rs.value(QStringLiteral("Address"))) + SubjectContact +
                           vb::toText(rs.value(QStringLiteral("Contact"))));
    });
}

void frmEmail::FillList() {
    List1.clear();
    app_.gRecordset = std::make_shared<db::Recordset>();
    const QString siteId = vb::toText(dataControlOf(RS1).Recordset().value(QStringLiteral("SiteID")));
    db::Recordset& plans = *app_.gRecordset;
    if (!app_.gConnection)
        raiseError(3709, QStringLiteral("The connection cannot be used to perform this operation"));
    plans.Open(PlansQuery + siteId + QueryEnd, *app_.gConnection, db::adOpenDynamic, db::adLockReadOnly,
               db::adCmdText);
    if (plans.BOF() || plans.EOF_()) {
        List1.addItem(NoDrawings);
        return;
    }
    while (!plans.EOF_()) {
        const QString description = vb::toText(plans.value(QStringLiteral("PlanDescription")));
        List1.addItem(description);
        List1.setItemData(List1.newIndex(), plans.value(QStringLiteral("PlanID")));
        const QVariant coloured = plans.value(QStringLiteral("ColourOutputCreated"));
        if (!coloured.isNull() && vb::toBool(coloured))
            List1.addItem(description + ColouredSuffix);
        plans.MoveNext();
    }
    // The recordset stays open: it is replaced at its next use.
}

void frmEmail::mnuOptions_Click(Control& entry) {
    for (Control* other : {&mnuOptions_Both, &mnuOptions_EMF, &mnuOptions_WMF, &mnuOptions_PDF})
        other->setChecked(false);
    entry.setChecked(true);
}

void frmEmail::cmdSend_Click() {
    AutoPtr fileSystem;
    AutoPtr mailProgram;
    AutoPtr mailItem;
    bool leave = false;
    // The trap: 429 ends the command with its message; any other error is
    // shown and the command resumes at the next statement.
    auto step = [&](const std::function<void()>& statement) {
        if (leave)
            return;
        try {
            statement();
        } catch (const RuntimeError& e) {
            app_.ui.setMousePointer(pointer::Default);
            if (e.number() == err::CannotCreateObject) {
                app_.ui.msgBox(NoMailProgram + NewLine + NoMailProgramHint, mb::Information, AppTitle);
                leave = true;
                return;
            }
            app_.ui.msgBox(ErrorStart + QString::number(e.number()) + ErrorPlace + CarriageReturn +
                               e.description(),
                           mb::OkOnly, AppTitle);
        }
    };
    // Step 1.
    step([&] { fileSystem = createObject(app_, FileSystemClass); });
    // Steps 2 and 3.
    if (txtSubject.text().isEmpty()) {
        app_.ui.msgBox(EnterSubject, mb::Exclamation, AppTitle);
        return;
    }
    if (txtToSend.text().isEmpty()) {
        app_.ui.msgBox(EnterText, mb::Exclamation, AppTitle);
        return;
    }
    // Step 4: the step that fails when the mail program is missing.
    step([&] { mailProgram = createObject(app_, MailProgramClass); });
    step([&] { mailItem = toObject(automation::call(mailProgram, "CreateItem", {MailItem})); });
    // Steps 5 and 6.
    step(
        [&] { automation::call(automation::object(mailItem, "Recipients"), "Add", {txtRecipients.text()}); });
    step([&] { automation::set(mailItem, "Subject", txtSubject.text()); });
    step([&] { automation::set(mailItem, "Body", txtToSend.text()); });
    // Step 7.
    step([&] { fs::mkDir(app_.gTempFileStore); });
    step([&] { app_.sleep(WaitAfterFolder); });
    // Step 8: every ticked item, against the address of RS1's current row.
    const auto copyIfFound = [&](int item, const char* extension) {
        QString path;
        step([&] {
            path = app_.gFileStore + QLatin1Char('\\') +
                   vb::toText(dataControlOf(RS1).Recordset().value(QStringLiteral("Address"))) +
                   QLatin1Char('\\') + List1.listItem(item) + QString::fromLatin1(extension);
        });
        step([&] {
            if (common::FileExists(path))
                automation::call(fileSystem, "CopyFile",
                                 {path, app_.gTempFileStore + QLatin1Char('\\'), true});
        });
    };
    for (int i = 0; i < List1.listCount() && !leave; ++i) {
        if (!List1.selected(i))
            continue;
        if (mnuOptions_EMF.checked() || mnuOptions_Both.checked())
            copyIfFound(i, ".emf");
        if (mnuOptions_WMF.checked() || mnuOptions_Both.checked())
            copyIfFound(i, ".wmf");
        if (mnuOptions_PDF.checked() || mnuOptions_Both.checked())
            copyIfFound(i, ".PDF");
    }
    step([&] { app_.sleep(WaitAfterCopies); });
    // Step 10: the packer, as a program of its own: its failure is no error of this window.
    step([&] {
        const QString archive = app_.gTempFileStore + ArchiveName;
        const QString pattern = app_.gTempFileStore + EveryFile;
        QStringList entries;
        QString failure;
        try {
            entries = mail::packFiles(archive, pattern);
        } catch (const RuntimeError& e) {
            failure = e.description();
        }
        QVariantMap fields{{QStringLiteral("archive"), archive},
                           {QStringLiteral("pattern"), pattern},
                           {QStringLiteral("entries"), entries}};
        if (!failure.isEmpty())
            fields.insert(QStringLiteral("failure"), failure);
        app_.ui.notify(QStringLiteral("zip"), fields);
    });
    // Step 11: the only time the packer gets.
    step([&] { app_.sleep(WaitForPacker); });
    // Step 12.
    step([&] {
        automation::call(automation::object(mailItem, "Attachments"), "Add",
                         {app_.gTempFileStore + ArchiveName});
    });
    // Step 13.
    step([&] { automation::call(mailItem, "Send"); });
    step([&] { mailItem.reset(); });
    step([&] { app_.sleep(WaitAfterSend); });
    step([&] { mailProgram.reset(); });
    // Step 14.
    step([&] { app_.ui.msgBox(InOutbox, mb::Information, AppTitle); });
    // Step 15.
    step([&] { automation::call(fileSystem, "DeleteFolder", {app_.gTempFileStore, false}); });
    step([&] { fileSystem.reset(); });
    step([&] { app_.unload(*this); });
}

void frmEmail::cmdSpellCheck_Click() {
    VSSpell1->Text = txtToSend.text();
    VSSpell1->CheckSpelling();
    if (VSSpell1->ErrorCount >= 1)
        txtToSend.setText(VSSpell1->Text);
}

} // namespace tessaly
