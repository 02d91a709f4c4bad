// The e-mail window on the project database of both engines, with the mail
// program, the packer and a real SMTP server.
#include "MetafileTools.h"
#include "OutputTestSupport.h"
#include "WindowFixture.h"
#include "core/db/DataControl.h"
#include "core/forms/DataBinding.h"
#include "core/settings/SettingsStore.h"
#include "output/frmEmail.h"
#include "output/mail/MailAccount.h"
#include "output/mail/Outbox.h"

#include <QPainter>
#include <QPdfWriter>

namespace tessaly::test {
namespace {

const QString ConnectionStart = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=");
const QString InOutbox = QStringLiteral(
    "The New Email To Be Sent Is Now In Your Outbox Ready To Send Next Time You Logon To Your ISP");

class EmailWindow : public WindowTest {
protected:
    frmEmail* window = nullptr;
    int client = 0;
    int site = 0;

    void SetUp() override {
        WindowTest::SetUp();
        if (HasFatalFailure())
            return;
        client = addClient(QStringLiteral("Hartley Homes"), QStringLiteral("Ann Hartley"),
                           QStringLiteral("ann@hartley.test"));
        site = addSite(client, QStringLiteral("12 Mill Lane"));
    }

    frmEmail& open() {
        click(*main, "mnuFile_email");
        window = static_cast<frmEmail*>(app->loaded(QString::fromLatin1(frmEmail::FormName)));
        EXPECT_NE(window, nullptr);
        return *window;
    }
    // The user picks the grid's row: the data control moves there.
    void pickRow(int row) { window->G1.set(QStringLiteral("Row"), row); }
    db::Recordset& sites() { return dataControlOf(window->RS1).Recordset(); }
    void setMachine(const QString& name, const QString& value) {
        app->machineSettings.write(MachineKey, name, value);
    }
    QStringList items() const {
        QStringList out;
        for (int i = 0; i < window->List1.listCount(); ++i)
            out << window->List1.listItem(i);
        return out;
    }
    void writeText(const QString& subject, const QString& body) {
        window->txtSubject.setText(subject);
        window->txtToSend.setText(body);
    }
    QString tempStore() const { return fs::toHost(app->gTempFileStore); }
    mail::Outbox outbox() const { return mail::Outbox(home()); }
};

TEST_P(EmailWindow, TheLoadBindsTheDataControlAndSetsTheFlagAfterItsWait) {
    addPlan(site, QStringLiteral("Ground Floor"));
    frmEmail& w = open();
    EXPECT_EQ(w.caption(), QStringLiteral("E-Mail Drawings To A Client"));
    EXPECT_EQ(w.RS1.get(QStringLiteral("ConnectionString")).toString(),
              ConnectionStart + app->gDatabaseLocation + QStringLiteral(";Persist Security Info=False"));
    EXPECT_EQ(
        w.RS1.get(QStringLiteral("RecordSource")).toString(),
        QStringLiteral("SELECT Clients.Client, Clients.Contact, Clients.Email, Sites.Address, "
                       "Clients.ClientID, Sites.SiteID FROM Clients INNER JOIN Sites ON Clients.ClientID = "
                       "Sites.ClientID;"));
    EXPECT_EQ(waiter.waits, std::vector<int>{500});
    EXPECT_TRUE(w.Loaded);
    // The data control's first move came before the flag: the list stays empty.
    EXPECT_EQ(w.List1.listCount(), 0);
    EXPECT_TRUE(w.txtSubject.text().isEmpty());
    EXPECT_EQ(app->modalStack().back(), window);
    // The activation sized each column of the grid, from the first to the last.
    EXPECT_EQ(w.G1.prop(QStringLiteral("AutoSized")).toList(), (QVariantList{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(w.lblHeading.caption(), QStringLiteral("E-Mail Drawings To Clients"));
    EXPECT_EQ(w.SSActiveTabs1.prop(QStringLiteral("Tabs")).toStringList(),
              (QStringList{QStringLiteral("Attachment Options"), QStringLiteral("Email Details")}));
}

TEST_P(EmailWindow, AMoveListsThePlansWithTheirIdsAndTheColouredCopies) {
    const int ground = addPlan(site, QStringLiteral("Ground Floor"), true);
    const int first = addPlan(site, QStringLiteral("First Floor"));
    open();
    pickRow(0);
    EXPECT_EQ(items(), (QStringList{QStringLiteral("Ground Floor"), QStringLiteral("Ground Floor Coloured"),
                                    QStringLiteral("First Floor")}));
    EXPECT_EQ(window->List1.itemData(0).toInt(), ground);
    EXPECT_EQ(window->List1.itemData(1).toInt(), 0);
    EXPECT_EQ(window->List1.itemData(2).toInt(), first);
    EXPECT_EQ(window->txtRecipients.text(), QStringLiteral("ann@hartley.test"));
    EXPECT_EQ(window->txtSubject.text(), QStringLiteral("Site Plans For: 12 Mill Lane, FAO: Ann Hartley"));
    // The list's recordset stays open until its next use.
    ASSERT_TRUE(app->gRecordset);
    EXPECT_EQ(app->gRecordset->State(), db::adStateOpen);
}

TEST_P(EmailWindow, ASiteWithoutPlansShowsTheOneItem) {
    open();
    pickRow(0);
    EXPECT_EQ(items(), QStringList{QStringLiteral("No Drawings Available...")});
}

TEST_P(EmailWindow, MovingToAnotherSiteClearsEveryTick) {
    addPlan(site, QStringLiteral("Ground Floor"));
    const int other = addSite(client, QStringLiteral("3 Kiln Road"));
    addPlan(other, QStringLiteral("Roof"));
    open();
    pickRow(0);
    window->List1.set(QStringLiteral("Selected"), true, {0});
    EXPECT_TRUE(window->List1.selected(0));
    pickRow(1);
    EXPECT_EQ(items(), QStringList{QStringLiteral("Roof")});
    EXPECT_FALSE(window->List1.selected(0));
    EXPECT_EQ(window->txtSubject.text(), QStringLiteral("Site Plans For: 3 Kiln Road, FAO: Ann Hartley"));
}

TEST_P(EmailWindow, AClientWithAnEmptyEmailLeavesTheRecipientsEmpty) {
    const int nobody = addClient(QStringLiteral("Nobody Ltd"), QStringLiteral("Bo"), QString());
    addSite(nobody, QStringLiteral("1 Empty Street"));
    open();
    pickRow(0);
    EXPECT_EQ(window->txtRecipients.text(), QStringLiteral("ann@hartley.test"));
    pickRow(1);
    EXPECT_EQ(window->txtRecipients.text(), QString());
}

TEST_P(EmailWindow, AnEmptyRecordsetDisablesSendForGood) {
    sql(QStringLiteral("DELETE * FROM Sites WHERE (((Sites.SiteID)=%1));").arg(site));
    open();
    EXPECT_FALSE(window->cmdSend.enabled());
    late::call(window->RS1.inner, "Refresh");
    EXPECT_FALSE(window->cmdSend.enabled());
}

TEST_P(EmailWindow, ExactlyOneOptionIsChecked) {
    open();
    EXPECT_TRUE(window->mnuOptions_Both.checked());
    const std::vector<Control*> all{&window->mnuOptions_Both, &window->mnuOptions_EMF,
                                    &window->mnuOptions_WMF, &window->mnuOptions_PDF};
    for (Control* chosen : all) {
        chosen->form().raiseEvent(*chosen, QStringLiteral("Click"));
        for (Control* other : all)
            EXPECT_EQ(other->checked(), other == chosen) << other->name().toStdString();
    }
    EXPECT_EQ(window->mnuOptions_Both.caption(), QStringLiteral("Email All Files Types"));
    EXPECT_EQ(window->mnuOptions_PDF.caption(), QStringLiteral("Email PDF Files Only"));
}

TEST_P(EmailWindow, ASubjectAndATextAreNeeded) {
    open();
    pickRow(0);
    writeText(QString(), QStringLiteral("Text"));
    click(*window, "cmdSend");
    writeText(QStringLiteral("Subject"), QString());
    click(*window, "cmdSend");
    EXPECT_EQ(messageBoxes(), (QStringList{QStringLiteral("Please Enter A Subject"),
                                           QStringLiteral("Please Enter Text To Send")}));
    const QList<QJsonObject> boxes = eventsOf(QStringLiteral("msgbox"));
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_EQ(boxes[0][QStringLiteral("flags")].toInt(), 48);
    EXPECT_EQ(boxes[0][QStringLiteral("title")].toString(), QStringLiteral("Tessaly"));
    EXPECT_FALSE(QFileInfo::exists(tempStore()));
    EXPECT_TRUE(outbox().waiting().isEmpty());
}

TEST_P(EmailWindow, WithoutTheMailProgramTheTwoLineMessageAndNoTemporaryFolder) {
    setMachine(mail::MailProgramSetting, mail::NoMailProgram);
    open();
    pickRow(0);
    writeText(QStringLiteral("Subject"), QStringLiteral("Text"));
    click(*window, "cmdSend");
    EXPECT_EQ(messageBoxes(),
              QStringList{QStringLiteral("Can't find Outlook.\r\nTo Use This Facility MS Outlook "
                                         "Must Be Installed On Your PC.")});
    EXPECT_EQ(eventsOf(QStringLiteral("msgbox"))[0][QStringLiteral("flags")].toInt(), 64);
    EXPECT_TRUE(events.contains(QStringLiteral("pointer:0")));
    EXPECT_FALSE(QFileInfo::exists(tempStore()));
    // The window stays.
    EXPECT_NE(app->loaded(QString::fromLatin1(frmEmail::FormName)), nullptr);
}

TEST_P(EmailWindow, AnOutboxThatCannotBeMadeIsAMissingMailProgram) {
    QFile blocker(home() + QStringLiteral("/Outbox"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    open();
    pickRow(0);
    writeText(QStringLiteral("Subject"), QStringLiteral("Text"));
    click(*window, "cmdSend");
    ASSERT_EQ(messageBoxes().size(), 1);
    EXPECT_TRUE(messageBoxes()[0].startsWith(QStringLiteral("Can't find Outlook.")));
}

// The whole send: the files of the ticked plan copied, packed, attached and
// put in the outbox, in the steps' order, with their waits.
TEST_P(EmailWindow, TheSendPacksTheChosenFilesIntoOneArchiveInTheOutbox) {
    addPlan(site, QStringLiteral("Ground Floor"), true);
    addPlan(site, QStringLiteral("First Floor"));
    const QString s = savePlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    // The PDF is on disk in small letters; the window asks for ".PDF".
    {
        QPdfWriter pdf(fs::toHost(s) + QStringLiteral(".pdf"));
        QPainter painter(&pdf);
        painter.drawText(100, 100, QStringLiteral("Ground Floor"));
    }
    QFile coloured(fs::toHost(s) + QStringLiteral(" Coloured.emf"));
    ASSERT_TRUE(coloured.open(QIODevice::WriteOnly));
    coloured.write(read(s + QStringLiteral(".emf")));
    coloured.close();
    savePlan(QStringLiteral("12 Mill Lane"), QStringLiteral("First Floor"));
    open();
    pickRow(0);
    window->List1.set(QStringLiteral("Selected"), true, {0}); // Ground Floor
    window->List1.set(QStringLiteral("Selected"), true, {1}); // Ground Floor Coloured
    writeText(QStringLiteral("Site Plans For: 12 Mill Lane, FAO: Ann Hartley"), QStringLiteral("The plans."));
    waiter.waits.clear();
    events.clear();
    raw.clear();
    click(*window, "cmdSend");

    EXPECT_EQ(waiter.waits, (std::vector<int>{500, 700, 900, 500}));
    const QList<QJsonObject> zips = eventsOf(QStringLiteral("zip"));
    ASSERT_EQ(zips.size(), 1);
    EXPECT_EQ(zips[0][QStringLiteral("archive")].toString(),
              app->gTempFileStore + QStringLiteral("\\Drawings.zip"));
    EXPECT_EQ(zips[0][QStringLiteral("pattern")].toString(), app->gTempFileStore + QStringLiteral("\\*.*"));
    EXPECT_EQ(zips[0][QStringLiteral("entries")].toArray(),
              (QJsonArray{QStringLiteral("Ground Floor Coloured.emf"), QStringLiteral("Ground Floor.emf"),
                          QStringLiteral("Ground Floor.pdf"), QStringLiteral("Ground Floor.wmf")}));
    const QList<QJsonObject> mails = eventsOf(QStringLiteral("mail"));
    ASSERT_EQ(mails.size(), 1);
    EXPECT_EQ(mails[0][QStringLiteral("to")].toArray(), QJsonArray{QStringLiteral("ann@hartley.test")});
    EXPECT_EQ(mails[0][QStringLiteral("subject")].toString(),
              QStringLiteral("Site Plans For: 12 Mill Lane, FAO: Ann Hartley"));
    EXPECT_EQ(mails[0][QStringLiteral("body")].toString(), QStringLiteral("The plans."));
    EXPECT_EQ(mails[0][QStringLiteral("attachments")].toArray(),
              QJsonArray{app->gTempFileStore + QStringLiteral("\\Drawings.zip")});
    EXPECT_EQ(messageBoxes(), QStringList{InOutbox});
    EXPECT_EQ(eventsOf(QStringLiteral("msgbox"))[0][QStringLiteral("flags")].toInt(), 64);
    // The order: zip, mail, the message, then the window goes.
    const QStringList order = [&] {
        QStringList kinds;
        for (const QJsonObject& e : raw)
            kinds << e[QStringLiteral("event")].toString();
        return kinds;
    }();
    EXPECT_LT(order.indexOf(QStringLiteral("zip")), order.indexOf(QStringLiteral("mail")));
    EXPECT_LT(order.indexOf(QStringLiteral("mail")), order.indexOf(QStringLiteral("msgbox")));
    EXPECT_LT(order.indexOf(QStringLiteral("msgbox")), order.indexOf(QStringLiteral("unload")));
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmEmail::FormName)), nullptr);
    EXPECT_FALSE(QFileInfo::exists(tempStore()));

    // The outbox holds the message; its attachment extracts to the plan's files.
    ASSERT_EQ(outbox().waiting().size(), 1);
    QTemporaryDir dir;
    const QJsonObject seen = inspectMail(outbox().read(outbox().waiting()[0]), dir.path());
    const QJsonArray attachments = seen[QStringLiteral("attachments")].toArray();
    ASSERT_EQ(attachments.size(), 1);
    EXPECT_EQ(attachments[0].toObject()[QStringLiteral("filename")].toString(),
              QStringLiteral("Drawings.zip"));
    const QString zip = attachments[0].toObject()[QStringLiteral("saved")].toString();
    ASSERT_EQ(runTool(QStringLiteral("unzip"),
                      {QStringLiteral("-q"), zip, QStringLiteral("-d"), dir.path() + "/x"}),
              0);
    for (const QString& name :
         {QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.wmf"),
          QStringLiteral("Ground Floor.pdf"), QStringLiteral("Ground Floor Coloured.emf")}) {
        QFile extracted(dir.path() + QStringLiteral("/x/") + name);
        ASSERT_TRUE(extracted.open(QIODevice::ReadOnly)) << name.toStdString();
        EXPECT_EQ(extracted.readAll(), read(app->gFileStore + QStringLiteral("\\12 Mill Lane\\") + name))
            << name.toStdString();
    }
}

TEST_P(EmailWindow, AnOptionChoosesTheKindOfFile) {
    addPlan(site, QStringLiteral("Ground Floor"));
    savePlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    open();
    click(*window, "mnuOptions_WMF");
    pickRow(0);
    window->List1.set(QStringLiteral("Selected"), true, {0});
    writeText(QStringLiteral("S"), QStringLiteral("T"));
    click(*window, "cmdSend");
    const QList<QJsonObject> zips = eventsOf(QStringLiteral("zip"));
    ASSERT_EQ(zips.size(), 1);
    EXPECT_EQ(zips[0][QStringLiteral("entries")].toArray(), QJsonArray{QStringLiteral("Ground Floor.wmf")});
}

TEST_P(EmailWindow, TickedNoDrawingsAndGoneFilesGiveAnEmptyArchiveWithoutAWord) {
    open();
    pickRow(0);
    window->List1.set(QStringLiteral("Selected"), true, {0}); // "No Drawings Available..."
    writeText(QStringLiteral("S"), QStringLiteral("T"));
    click(*window, "cmdSend");
    const QList<QJsonObject> zips = eventsOf(QStringLiteral("zip"));
    ASSERT_EQ(zips.size(), 1);
    EXPECT_TRUE(zips[0][QStringLiteral("entries")].toArray().isEmpty());
    EXPECT_EQ(messageBoxes(), QStringList{InOutbox});
    ASSERT_EQ(outbox().waiting().size(), 1);
}

// The temporary folder left from an earlier failure: step 7 fails, the trap
// shows it and the send goes on; what the folder held is packed too.
TEST_P(EmailWindow, ALeftoverTemporaryFolderIsReportedAndTheSendGoesOn) {
    ASSERT_TRUE(QDir().mkpath(tempStore()));
    QFile old(tempStore() + QStringLiteral("/Old Plan.emf"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    open();
    pickRow(0);
    writeText(QStringLiteral("S"), QStringLiteral("T"));
    click(*window, "cmdSend");
    EXPECT_EQ(
        messageBoxes(),
        (QStringList{QStringLiteral("Error: 75 in Sub cmdSend_Click\rPath/File access error"), InOutbox}));
    EXPECT_EQ(eventsOf(QStringLiteral("msgbox"))[0][QStringLiteral("flags")].toInt(), 0);
    EXPECT_EQ(eventsOf(QStringLiteral("zip"))[0][QStringLiteral("entries")].toArray(),
              QJsonArray{QStringLiteral("Old Plan.emf")});
    EXPECT_FALSE(QFileInfo::exists(tempStore()));
    EXPECT_EQ(outbox().waiting().size(), 1);
}

TEST_P(EmailWindow, ThePlanWithACharacterNoFileNameHoldsIsSkipped) {
    addPlan(site, QStringLiteral("Plan: \"A\" / B"));
    open();
    pickRow(0);
    window->List1.set(QStringLiteral("Selected"), true, {0});
    writeText(QStringLiteral("S"), QStringLiteral("T"));
    click(*window, "cmdSend");
    EXPECT_EQ(messageBoxes(), QStringList{InOutbox});
    EXPECT_TRUE(eventsOf(QStringLiteral("zip"))[0][QStringLiteral("entries")].toArray().isEmpty());
}

TEST_P(EmailWindow, SpellCheckPutsTheCheckedTextBack) {
    open();
    window->txtToSend.setText(QStringLiteral("Plese find the plans."));
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("Please")));
    click(*window, "cmdSpellCheck");
    EXPECT_EQ(window->txtToSend.text(), QStringLiteral("Please find the plans."));
    EXPECT_EQ(eventsOf(QStringLiteral("spell")).size(), 1);
    EXPECT_EQ(window->cmdSpellCheck.caption(), QStringLiteral("&Spell Check"));
}

TEST_P(EmailWindow, CancelUnloadsTheWindow) {
    open();
    click(*window, "Command1");
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmEmail::FormName)), nullptr);
    EXPECT_TRUE(app->modalStack().empty());
}

TEST_P(EmailWindow, ThePlanIsSavedFirstWhenOneIsOpen) {
    std::vector<PlanSaveUse> uses;
    app->planRoad.saveProjectOutputs = [&](PlanSaveUse use) { uses.push_back(use); };
    click(*main, "mnuFile_email");
    EXPECT_TRUE(uses.empty());
    click(*app->loaded(QString::fromLatin1(frmEmail::FormName)), "Command1");
    app->gPlanFileName = QStringLiteral("12 Mill Lane\\Ground Floor");
    click(*main, "mnuFile_email");
    EXPECT_EQ(uses, std::vector<PlanSaveUse>{PlanSaveUse::Email});
    EXPECT_NE(app->loaded(QString::fromLatin1(frmEmail::FormName)), nullptr);
}

// With an SMTP account the send delivers at once, in the worker; a refused
// delivery leaves the message and writes the reason into the error log.
TEST_P(EmailWindow, TheSendDeliversAndAFailureGoesToTheErrorLog) {
    SmtpTestServer server;
    ASSERT_TRUE(server.running());
    setMachine(mail::MailServerSetting, server.url());
    setMachine(mail::MailFromSetting, QStringLiteral("office@tessaly.test"));
    open();
    pickRow(0);
    writeText(QStringLiteral("Plans"), QStringLiteral("T"));
    click(*main->app().loaded(QString::fromLatin1(frmEmail::FormName)), "cmdSend");
    QVariantList none;
    const QVariantList outcomes = app->call(QStringLiteral("WaitForDelivery"), none).toList();
    ASSERT_EQ(outcomes.size(), 1);
    EXPECT_TRUE(outcomes[0].toMap()[QStringLiteral("delivered")].toBool());
    EXPECT_EQ(server.count(), 1);
    EXPECT_EQ(outbox().sent().size(), 1);

    SmtpTestServer refusing(QStringLiteral("refuse"));
    setMachine(mail::MailServerSetting, refusing.url());
    open();
    pickRow(0);
    writeText(QStringLiteral("Refused"), QStringLiteral("T"));
    click(*window, "cmdSend");
    const QVariantList failed = app->call(QStringLiteral("WaitForDelivery"), none).toList();
    ASSERT_EQ(failed.size(), 1);
    EXPECT_FALSE(failed[0].toMap()[QStringLiteral("delivered")].toBool());
    EXPECT_EQ(outbox().waiting().size(), 1);
    const QString log = QString::fromLocal8Bit(read(home() + QStringLiteral("/ErrorLog.Log")));
    EXPECT_TRUE(log.contains(QStringLiteral("-Outbox\n"))) << log.toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("\"Refused\""))) << log.toStdString();
    EXPECT_TRUE(log.contains(QStringLiteral("550"))) << log.toStdString();
}

// The data control RS1 opens its own connection from the Jet connection
// string around gDatabaseLocation, as every data control of the program does;
// that string names the database file, so the window runs on SQLite. (The
// colouring window, on the shared connection, runs on both engines.)
INSTANTIATE_TEST_SUITE_P(Engines, EmailWindow, ::testing::Values(db::test::Engine::Sqlite),
                         db::test::engineName);

} // namespace
} // namespace tessaly::test
