#include "projects/frmNew.h"

#include "core/common/CommonRoutines.h"
#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "core/runtime/Vb.h"
#include "projects/ProjectDb.h"
#include "projects/ProjectsModule.h"
#include "projects/TextCase.h"
#include "workspace/Application.h"

namespace tessaly {

using projects::CaseRule;

namespace {

constexpr int SaveSettleMs = 500; // pause after a client is written, before the window goes
constexpr int DeleteFlags = 308;  // Yes and No, exclamation icon, No the default
constexpr int AddClientMode = -1; // gIsNewClient while a client is added
constexpr int EditClientMode = 0; // gIsNewClient while a client is edited

// A box of the window: its label, the field of Clients it shows, and how it
// rewrites its text on losing the focus.
struct ClientBox {
    const char* label;
    const char* field;
    CaseRule rule;
};

const ClientBox Boxes[frmNew::BoxCount] = {
    {"Client:", "Client", CaseRule::Proper},    {"Address:", "Address", CaseRule::Proper},
    {"Area:", "Area", CaseRule::Proper},        {"Town:", "Town", CaseRule::Proper},
    {"County:", "County", CaseRule::Proper},    {"Post Code:", "PostCode", CaseRule::Upper},
    {"Email:", "Email", CaseRule::Lower},       {"Tel No:", "Tel", CaseRule::Unchanged},
    {"Contact:", "Contact", CaseRule::Proper},  {nullptr, "ClientID", CaseRule::Unchanged},
    {"Comments", nullptr, CaseRule::Unchanged},
};

// The fields that a save writes, from boxes 0 to 8.
constexpr int WrittenBoxes = 9;

// Layout, in twips.
constexpr int Margin = 120;
constexpr int LabelWidth = 1200;
constexpr int BoxLeft = 1440;
constexpr int BoxWidth = 5160;
constexpr int RowTop = 1080;
constexpr int RowStep = 390;
constexpr int BoxHeight = 315;
constexpr int CommentsHeight = 900;
constexpr int ButtonWidth = 1200;
constexpr int ButtonHeight = 375;
constexpr int ButtonGap = 120;
constexpr int InnerWidth = 6840;
constexpr int InnerHeight = 6240;
constexpr int FrameExtra = 400; // the window's frame around its inside

} // namespace

frmNew::frmNew(Application& app, ProjectsModule& module)
    : Form(app, QString::fromLatin1(FormName)),
      cmdSaveClient(add(ControlKind::CommandButton, QStringLiteral("cmdSaveClient"))),
      cmdDelateClient(add(ControlKind::CommandButton, QStringLiteral("cmdDelateClient"))),
      cmdClose(add(ControlKind::CommandButton, QStringLiteral("cmdClose"))), app_(app), module_(module) {
    buildLayout();
    registerHandlers();
    registerRoutines();
}

void frmNew::buildLayout() {
    setCaption(QStringLiteral("Client"));
    setSize(InnerWidth + FrameExtra, InnerHeight + FrameExtra, InnerWidth, InnerHeight);
    Control& title = add(ControlKind::Label, QStringLiteral("lblTitle"));
    title.setCaption(QStringLiteral("Client Details"));
    title.setProp(QStringLiteral("FontBold"), true);
    title.setProp(QStringLiteral("FontSize"), 12);
    title.move(Margin, Margin, InnerWidth - 2 * Margin, 360);
    Control& line = add(ControlKind::Label, QStringLiteral("lblTitleInfo"));
    line.setCaption(
        QStringLiteral("Add or edit the details for your clients, Make your alterations and click the "
                       "save button or delete as required"));
    line.move(Margin, 480, InnerWidth - 2 * Margin, 480);

    for (int i = 0; i < BoxCount; ++i) {
        const ClientBox& b = Boxes[i];
        // The comments take the row of the hidden key box.
        const int top = RowTop + (i == CommentsBox ? IdBox : i) * RowStep;
        if (b.label) {
            Control& label = add(ControlKind::Label, QStringLiteral("lblClient"), i);
            label.setCaption(QString::fromLatin1(b.label));
            label.move(Margin, top + 45, LabelWidth, BoxHeight);
        }
        Control& box = add(ControlKind::TextBox, QStringLiteral("txtClient"), i);
        txtClient_[static_cast<size_t>(i)] = &box;
        box.move(BoxLeft, top, BoxWidth, i == CommentsBox ? CommentsHeight : BoxHeight);
    }
    // The key the update uses: never shown, never typed.
    Control& id = txtClient(IdBox);
    id.setText(QStringLiteral("0"));
    id.setVisible(false);
    id.setEnabled(false);
    id.setToolTipText(QStringLiteral("Client ID"));
    txtClient(CommentsBox).setProp(QStringLiteral("MultiLine"), true);

    const int buttonTop = txtClient(CommentsBox).geometry().bottom() + 1 + 180;
    struct Button {
        Control* c;
        const char* caption;
        const char* tip;
        int left;
    };
    const Button buttons[] = {
        {&cmdSaveClient, "Save", "Save changes", BoxLeft},
        {&cmdDelateClient, "Delete", "Delete selected Client", BoxLeft + ButtonWidth + ButtonGap},
        {&cmdClose, "Close", "Close Client Details", BoxLeft + BoxWidth - ButtonWidth},
    };
    for (const Button& b : buttons) {
        b.c->setCaption(QString::fromLatin1(b.caption));
        b.c->setToolTipText(QString::fromLatin1(b.tip));
        b.c->move(b.left, buttonTop, ButtonWidth, ButtonHeight);
    }
}

void frmNew::registerHandlers() {
    onForm(QStringLiteral("Load"), [this](EventArgs&) { Form_Load(); });
    on(QStringLiteral("txtClient"), QStringLiteral("GotFocus"),
       [this](Control&, EventArgs&) { common::SelectAllText(*this); });
    on(QStringLiteral("txtClient"), QStringLiteral("LostFocus"),
       [this](Control& box, EventArgs&) { txtClient_LostFocus(box); });
    on(cmdSaveClient.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdSaveClient_Click(); });
    on(cmdDelateClient.name(), QStringLiteral("Click"),
       [this](Control&, EventArgs&) { cmdDelateClient_Click(); });
    on(cmdClose.name(), QStringLiteral("Click"), [this](Control&, EventArgs&) { app_.unload(*this); });
}

void frmNew::registerRoutines() {
    auto step = [this](const char* name, void (frmNew::*fn)()) {
        routine(QString::fromLatin1(name), [this, fn](QVariantList&) {
            (this->*fn)();
            return QVariant();
        });
    };
    step("LoadClient", &frmNew::LoadClient);
    step("AddClient", &frmNew::AddClient);
    step("UpdateClient", &frmNew::UpdateClient);
}

void frmNew::Form_Load() {
    if (module_.gIsNewClient == EditClientMode)
        LoadClient();
}

void frmNew::txtClient_LostFocus(Control& box) {
    const int i = box.index();
    if (i < 0 || i >= BoxCount || Boxes[i].rule == CaseRule::Unchanged)
        return;
    box.setText(projects::applyCase(Boxes[i].rule, box.text()));
}

void frmNew::LoadClient() {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=") +
                QString::number(module_.gCurrentClientID) + QStringLiteral("));"),
            projects::sharedConnection(app_), db::adOpenDynamic, db::adLockReadOnly, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        // Client to Contact, then the key; a Null leaves the box as it is.
        for (int i = 0; i <= IdBox; ++i) {
            const QVariant value = rs.Fields(QString::fromLatin1(Boxes[i].field)).Value();
            if (!value.isNull())
                txtClient(i).setText(vb::toText(value));
        }
    }
    rs.Close();
}

void frmNew::writeClientFields() {
    db::Recordset& rs = projects::sharedRecordset(app_);
    for (int i = 0; i < WrittenBoxes; ++i)
        rs.Fields(QString::fromLatin1(Boxes[i].field)) = projects::trimSpaces(txtClient(i).text());
}

void frmNew::AddClient() {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM Clients;"), projects::sharedConnection(app_), db::adOpenDynamic,
            db::adLockOptimistic, db::adCmdText);
    rs.AddNew();
    writeClientFields();
    rs.Update();
    rs.Close();
}

void frmNew::UpdateClient() {
    db::Recordset& rs = projects::newSharedRecordset(app_);
    rs.Open(QStringLiteral("SELECT * FROM Clients WHERE (((Clients.ClientID)=") + txtClient(IdBox).text() +
                QStringLiteral("));"),
            projects::sharedConnection(app_), db::adOpenDynamic, db::adLockOptimistic, db::adCmdText);
    if (!rs.BOF() && !rs.EOF_()) {
        writeClientFields();
        rs.Update();
    }
    rs.Close();
}

void frmNew::cmdSaveClient_Click() {
    if (module_.gIsNewClient == AddClientMode)
        AddClient();
    else
        UpdateClient();
    app_.sleep(SaveSettleMs);
    app_.unload(*this);
}

void frmNew::cmdDelateClient_Click() {
    const int answer = app_.ui.msgBox(QStringLiteral("Are you sure you wish to delete this client..."),
                                      DeleteFlags, AppTitle);
    if (answer != mb::ResultYes)
        return;
    // The client still chosen in the project manager, whatever the mode.
    projects::runCommand(app_, QStringLiteral("DELETE * FROM Clients WHERE (((Clients.ClientID)=") +
                                   QString::number(module_.gCurrentClientID) + QStringLiteral("));"));
    app_.unload(*this);
}

} // namespace tessaly
