// The client window frmNew: its texts, the case rules of its boxes, adding,
// editing and deleting a client, and the comments that are never stored.
#include "ProjectsFixture.h"
#include "core/forms/ControlEvents.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"

namespace tessaly::projects::test {
namespace {

class ClientRecords : public ProjectsTest {
protected:
    // The client window opened by the project manager's New Client button.
    frmNew& newClient() {
        click(openManager().cmdNewClient);
        return clientWindow();
    }
    // The client window opened for the client at `index` of the combo.
    frmNew& viewClient(int index) {
        frmClientSites& m = isLoaded("frmClientSites") ? manager() : openManager();
        choose(m.cboCilent, index);
        click(m.cmdViewClient);
        return clientWindow();
    }
    QString field(int client, const char* name) {
        const QList<QVariantMap> r =
            rows(QStringLiteral("SELECT * FROM Clients WHERE ClientID = %1").arg(client));
        return r.isEmpty() ? QStringLiteral("<none>") : r[0].value(QString::fromLatin1(name)).toString();
    }
};

TEST_P(ClientRecords, TheWindowShowsItsTextsAndDesignValues) {
    frmNew& w = newClient();
    EXPECT_EQ(w.caption(), QStringLiteral("Client"));
    EXPECT_EQ(w.control(QStringLiteral("lblTitle")).caption(), QStringLiteral("Client Details"));
    EXPECT_EQ(
        w.control(QStringLiteral("lblTitleInfo")).caption(),
        QStringLiteral("Add or edit the details for your clients, Make your alterations and click the save "
                       "button or delete as required"));
    const char* labels[] = {
        "Client:", "Address:", "Area:", "Town:", "County:", "Post Code:", "Email:", "Tel No:", "Contact:"};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(w.control(QStringLiteral("lblClient"), i).caption(), QString::fromLatin1(labels[i]));
    EXPECT_EQ(w.control(QStringLiteral("lblClient"), 10).caption(), QStringLiteral("Comments"));
    EXPECT_EQ(w.find(QStringLiteral("lblClient"), 9), nullptr);
    Control& id = w.txtClient(frmNew::IdBox);
    EXPECT_EQ(id.text(), QStringLiteral("0"));
    EXPECT_FALSE(id.visible());
    EXPECT_FALSE(id.enabled());
    EXPECT_EQ(id.toolTipText(), QStringLiteral("Client ID"));
    EXPECT_TRUE(w.txtClient(frmNew::CommentsBox).prop(QStringLiteral("MultiLine")).toBool());
    EXPECT_EQ(w.cmdSaveClient.toolTipText(), QStringLiteral("Save changes"));
    EXPECT_EQ(w.cmdDelateClient.toolTipText(), QStringLiteral("Delete selected Client"));
    EXPECT_EQ(w.cmdClose.toolTipText(), QStringLiteral("Close Client Details"));
    for (int i = 0; i < frmNew::BoxCount; ++i) {
        if (i != frmNew::IdBox) {
            EXPECT_EQ(w.txtClient(i).text(), QString()) << i;
        }
    }
    // Opened modally over the project manager.
    ASSERT_EQ(app->modalStack().size(), 2u);
    EXPECT_EQ(app->modalStack().back(), &w);
    EXPECT_EQ(app->get(QStringLiteral("gIsNewClient")).toInt(), -1);
}

TEST_P(ClientRecords, EachBoxRewritesItsTextOnLosingTheFocusByItsRule) {
    frmNew& w = newClient();
    const struct {
        int box;
        const char* typed;
        const char* shown;
    } cases[] = {
        {0, "mary mcDONALD-smith", "Mary Mcdonald-smith"},
        {1, "12 QUAY street", "12 Quay Street"},
        {2, "st  IVES", "St  Ives"},
        {3, "o'neil\tTOWN", "O'neil\tTown"},
        {4, "cornwall", "Cornwall"},
        {5, "tr1 2ab", "TR1 2AB"},
        {6, "Mary@Example.COM", "mary@example.com"},
        {7, "01872 ABC", "01872 ABC"},
        {8, "jenna pascoe", "Jenna Pascoe"},
        {10, "some COMMENTS", "some COMMENTS"},
    };
    for (const auto& c : cases) {
        type(w.txtClient(c.box), QString::fromLatin1(c.typed));
        EXPECT_EQ(w.txtClient(c.box).text(), QString::fromLatin1(c.typed))
            << "no change before the focus leaves";
        blur(w.txtClient(c.box));
        EXPECT_EQ(w.txtClient(c.box).text(), QString::fromLatin1(c.shown)) << c.box;
    }
}

TEST_P(ClientRecords, SavingANewClientWritesTrimmedBoxesWaitsAndCloses) {
    frmNew& w = newClient();
    type(w.txtClient(0), QStringLiteral("  harbour homes  "));
    blur(w.txtClient(0));
    type(w.txtClient(10), QStringLiteral("never stored"));
    // The last box typed into keeps the focus through the click.
    type(w.txtClient(5), QStringLiteral(" tr1 2ab "));
    takeWaits();
    click(w.cmdSaveClient);
    EXPECT_EQ(takeWaits(), std::vector<int>{500});
    EXPECT_FALSE(isLoaded("frmNew"));
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM Clients"));
    ASSERT_EQ(r.size(), 1);
    EXPECT_EQ(r[0].value(QStringLiteral("Client")).toString(), QStringLiteral("Harbour Homes"));
    // Post Code lost no focus before the click: it keeps its case, not its blanks.
    EXPECT_EQ(r[0].value(QStringLiteral("PostCode")).toString(), QStringLiteral("tr1 2ab"));
    // The manager is active again and lists the client.
    EXPECT_EQ(manager().cboCilent.listCount(), 1);
    EXPECT_EQ(manager().cboCilent.listItem(0), QStringLiteral("Harbour Homes, , tr1 2ab"));
}

TEST_P(ClientRecords, AllBoxesEmptySendsARowOfEmptyStrings) {
    frmNew& w = newClient();
    click(w.cmdSaveClient);
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM Clients"));
    ASSERT_EQ(r.size(), 1);
    for (const char* f :
         {"Client", "Address", "Area", "Town", "County", "PostCode", "Email", "Tel", "Contact"}) {
        const QVariant v = r[0].value(QString::fromLatin1(f));
        EXPECT_FALSE(v.isNull()) << f;
        EXPECT_EQ(v.toString(), QString()) << f;
    }
}

TEST_P(ClientRecords, EditingLoadsTheClientAndANullLeavesTheBoxAsItIs) {
    const int first = addClient(QStringLiteral("Harbour Homes"), QStringLiteral("12 Quay Street"));
    // A client whose other fields are Null.
    const int second = addClient(QStringLiteral("Morgan"), QString(), QString());
    rows(QStringLiteral("SELECT 1")); // the rows are there for both engines
    frmNew& w = viewClient(1);
    EXPECT_EQ(app->get(QStringLiteral("gIsNewClient")).toInt(), 0);
    EXPECT_EQ(app->get(QStringLiteral("gCurrentClientID")).toInt(), second);
    EXPECT_EQ(w.txtClient(0).text(), QStringLiteral("Morgan"));
    EXPECT_EQ(w.txtClient(2).text(), QString()); // Null
    EXPECT_EQ(w.txtClient(frmNew::IdBox).text(), QString::number(second));
    type(w.txtClient(2), QStringLiteral("  Penryn "));
    click(w.cmdSaveClient);
    EXPECT_EQ(field(second, "Area"), QStringLiteral("Penryn"));
    // A Null field is saved as an empty string.
    const QList<QVariantMap> r =
        rows(QStringLiteral("SELECT * FROM Clients WHERE ClientID = %1").arg(second));
    EXPECT_FALSE(r[0].value(QStringLiteral("Town")).isNull());
    EXPECT_EQ(field(first, "Area"), QString()); // the other client is as it was
    EXPECT_TRUE(rows(QStringLiteral("SELECT * FROM Clients WHERE ClientID = %1").arg(first))[0]
                    .value(QStringLiteral("Area"))
                    .isNull());
}

TEST_P(ClientRecords, TheUpdateUsesTheKeyOfTheHiddenBox) {
    const int first = addClient(QStringLiteral("Harbour Homes"));
    const int second = addClient(QStringLiteral("Morgan"));
    frmNew& w = viewClient(0);
    app->dispatch([&] { w.txtClient(frmNew::IdBox).setText(QString::number(second)); });
    type(w.txtClient(0), QStringLiteral("Renamed"));
    click(w.cmdSaveClient);
    EXPECT_EQ(field(first, "Client"), QStringLiteral("Harbour Homes"));
    EXPECT_EQ(field(second, "Client"), QStringLiteral("Renamed"));
    // A key no row has: nothing is written.
    frmNew& again = viewClient(0);
    app->dispatch([&] { again.txtClient(frmNew::IdBox).setText(QStringLiteral("999")); });
    type(again.txtClient(0), QStringLiteral("Lost"));
    click(again.cmdSaveClient);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients WHERE Client = 'Lost'")).size(), 0);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 2);
}

TEST_P(ClientRecords, DeleteAsksAndRemovesTheChosenClientOnlyLeavingItsSites) {
    const int first = addClient(QStringLiteral("Harbour Homes"));
    addClient(QStringLiteral("Morgan"));
    addSite(first, QStringLiteral("Barn"), QStringLiteral("Old Barn"));
    frmNew& w = viewClient(0);
    takeBoxes();
    port.queueMsgBox(mb::ResultNo);
    click(w.cmdDelateClient);
    EXPECT_EQ(takeBoxes(),
              QStringList{QStringLiteral("Are you sure you wish to delete this client...|308|Tessaly")});
    EXPECT_TRUE(isLoaded("frmNew"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 2);
    port.queueMsgBox(mb::ResultYes);
    click(w.cmdDelateClient);
    EXPECT_FALSE(isLoaded("frmNew"));
    const QList<QVariantMap> left = rows(QStringLiteral("SELECT Client FROM Clients"));
    ASSERT_EQ(left.size(), 1);
    EXPECT_EQ(left[0].value(QStringLiteral("Client")).toString(), QStringLiteral("Morgan"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites WHERE ClientID = %1").arg(first)).size(), 1);
}

TEST_P(ClientRecords, DeleteInAddModeDeletesTheClientStillChosen) {
    addClient(QStringLiteral("Harbour Homes"));
    const int second = addClient(QStringLiteral("Morgan"));
    frmClientSites& m = openManager();
    choose(m.cboCilent, 1);
    click(m.cmdNewClient);
    frmNew& w = clientWindow();
    EXPECT_TRUE(w.cmdDelateClient.enabled());
    port.queueMsgBox(mb::ResultYes);
    click(w.cmdDelateClient);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients WHERE ClientID = %1").arg(second)).size(), 0);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 1);
}

TEST_P(ClientRecords, DeleteWithNoClientChosenMatchesNoRow) {
    addClient(QStringLiteral("Harbour Homes"));
    frmNew& w = newClient();
    EXPECT_EQ(app->get(QStringLiteral("gCurrentClientID")).toInt(), 0);
    port.queueMsgBox(mb::ResultYes);
    click(w.cmdDelateClient);
    EXPECT_FALSE(isLoaded("frmNew"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 1);
    EXPECT_TRUE(takeBoxes().filter(QStringLiteral("Run-time error")).isEmpty());
}

TEST_P(ClientRecords, TheCommentsAreNeverStored) {
    addClient(QStringLiteral("Harbour Homes"));
    frmNew& w = viewClient(0);
    type(w.txtClient(frmNew::CommentsBox), QStringLiteral("Prefers e-mail"));
    click(w.cmdSaveClient);
    frmNew& again = viewClient(0);
    EXPECT_EQ(again.txtClient(frmNew::CommentsBox).text(), QString());
    for (const QVariantMap& row : rows(QStringLiteral("SELECT * FROM Clients")))
        for (const QVariant& v : row)
            EXPECT_NE(v.toString(), QStringLiteral("Prefers e-mail"));
}

TEST_P(ClientRecords, CloseSavesNothing) {
    frmNew& w = newClient();
    type(w.txtClient(0), QStringLiteral("Harbour Homes"));
    click(w.cmdClose);
    EXPECT_FALSE(isLoaded("frmNew"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Clients")).size(), 0);
}

TEST_P(ClientRecords, GettingTheFocusSelectsTheWholeText) {
    addClient(QStringLiteral("Harbour Homes"));
    frmNew& w = viewClient(0);
    app->dispatch([&] { w.setFocus(&w.txtClient(0)); });
    EXPECT_EQ(w.txtClient(0).prop(QStringLiteral("SelStart")).toInt(), 0);
    EXPECT_EQ(w.txtClient(0).prop(QStringLiteral("SelLength")).toInt(), 13);
}

TESSALY_DB_ENGINES(ClientRecords);

} // namespace
} // namespace tessaly::projects::test
