// The site register of frmClientSites: the frame, the client combo, the site
// event and its four states, the ten buttons with the moves that are not to
// be mended, the site list, the copy of the site name and the site's folder.
#include "ProjectsFixture.h"
#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/forms/TabStrip.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"

#include <QDir>
#include <QFileInfo>

namespace tessaly::projects::test {
namespace {

using State = frmClientSites::SiteState;

class SiteRegister : public ProjectsTest {
protected:
    int client = 0;
    std::vector<int> sites;

    // A client with three sites and a client with none.
    void seed() {
        client = addClient(QStringLiteral("Harbour Homes"), QStringLiteral("12 Quay Street"),
                           QStringLiteral("TR1 2AB"));
        addClient(QStringLiteral("Morgan"), QStringLiteral("3 Chapel Hill"), QStringLiteral("TR18 4DW"));
        sites = {
            addSite(client, QStringLiteral("Barn"), QStringLiteral("Old Barn"), QStringLiteral("TR3 6QB")),
            addSite(client, QStringLiteral("Kitchen"), QStringLiteral("4 Fore Street"),
                    QStringLiteral("TR1 1HD")),
            addSite(client, QStringLiteral("Studio"), QStringLiteral("9 Park Row"),
                    QStringLiteral("TR2 5JN"))};
    }
    frmClientSites& withClient(int index = 0) {
        frmClientSites& m = openManager();
        choose(m.cboCilent, index);
        return m;
    }
    db::Recordset& siteRows() { return manager().sites().Recordset(); }
    QString counter() { return manager().lblSiteDetailsInfo.caption(); }
    void press(int button) { click(manager().cmdSiteDetailButton(button)); }
    // Buttons 0 to 9 as enabled (1) or not (0).
    QString buttons() {
        QString out;
        for (int i = 0; i < frmClientSites::SiteButtonCount; ++i)
            out += manager().cmdSiteDetailButton(i).enabled() ? QLatin1Char('1') : QLatin1Char('0');
        return out;
    }
    QString tabsEnabled() {
        QString out;
        for (int t = 1; t <= 4; ++t)
            out += tabs::enabled(manager().Tabs1, t) ? QLatin1Char('1') : QLatin1Char('0');
        return out;
    }
};

TEST_P(SiteRegister, TheFrameShowsItsTextsAndDesignState) {
    frmClientSites& m = openManager();
    EXPECT_EQ(m.caption(), QStringLiteral("Clients And Site Details"));
    EXPECT_EQ(m.control(QStringLiteral("lblTitle")).caption(),
              QStringLiteral("Client And Site Details Page"));
    EXPECT_EQ(m.control(QStringLiteral("lblTitleInfo")).caption(),
              QStringLiteral(
                  "Add and Amend Client And Site Details and Add New Drawings To Projects, Manage Project "
                  "Times/Schedule and Costs"));
    EXPECT_EQ(m.control(QStringLiteral("lblClient")).caption(), QStringLiteral("Client:"));
    EXPECT_EQ(
        m.cboCilent.toolTipText(),
        QStringLiteral("Click the triangle button to select a client or click New Client button to create a "
                       "new client"));
    EXPECT_EQ(m.cmdViewClient.caption(), QStringLiteral("Client Details"));
    EXPECT_EQ(m.cmdNewClient.caption(), QStringLiteral("New Client"));
    EXPECT_EQ(m.cmdNewClient.toolTipText(), QStringLiteral("Add a new Client to the list."));
    EXPECT_EQ(m.cmdClose.toolTipText(), QStringLiteral("Close Client and Site Details Page"));
    const char* captions[] = {"Site Details", "Project Drawings", "Project Planner",
                              "Project Costs and Estimations"};
    ASSERT_EQ(tabs::count(m.Tabs1), 4);
    for (int t = 1; t <= 4; ++t)
        EXPECT_EQ(tabs::caption(m.Tabs1, t), QString::fromLatin1(captions[t - 1]));
    const char* labels[] = {"Address:",      "Area:",       "Town:",       "County:",
                            "Post Code:",    "Tel Number:", "FAX Number:", "eMail Address",
                            "Site Contact:", "Date Added:", "Comments",    "Site:"};
    const char* fields[] = {"Address",   "Area",  "Town",    "County",    "PostCode", "TelNumber",
                            "FAXNumber", "Email", "Contact", "DateAdded", "Comments", "Site"};
    for (int i = 0; i < frmClientSites::SiteBoxCount; ++i) {
        Control& box = m.txtSiteDetails(i);
        EXPECT_EQ(m.control(QStringLiteral("lblSiteDetails"), i).caption(), QString::fromLatin1(labels[i]));
        EXPECT_EQ(box.prop(QStringLiteral("Tag")).toString(), QStringLiteral("SD"));
        EXPECT_EQ(box.prop(QStringLiteral("DataField")).toString(), QString::fromLatin1(fields[i]));
        EXPECT_EQ(box.prop(QStringLiteral("DataSource")).toString(), QStringLiteral("RS_SiteDetails"));
        EXPECT_TRUE(box.locked());
        EXPECT_EQ(box.backColor(), frmClientSites::LockedColour);
        EXPECT_EQ(box.enabled(), i != frmClientSites::DateAddedBox);
    }
    EXPECT_TRUE(m.txtSiteDetails(frmClientSites::CommentsBox).prop(QStringLiteral("MultiLine")).toBool());
    const char* tips[] = {"Move to the first site for the selected client",
                          "Move to the previous site for the selected client",
                          "Add a new site to the selected client",
                          "Edit Record",
                          "Save changes",
                          "Undo changes",
                          "Delete selected Site with all asociated drawings time line's and costs",
                          "Move to the next site for the selected client",
                          "Move to the last site for the selected client",
                          "Clic to view site list for the selected client"};
    for (int i = 0; i < frmClientSites::SiteButtonCount; ++i)
        EXPECT_EQ(m.cmdSiteDetailButton(i).toolTipText(), QString::fromLatin1(tips[i]));
    // Button 9 stands apart at the right end; the others in index order.
    for (int i = 1; i < 9; ++i)
        EXPECT_GT(m.cmdSiteDetailButton(i).geometry().left(), m.cmdSiteDetailButton(i - 1).geometry().left());
    EXPECT_GT(m.cmdSiteDetailButton(9).geometry().left(), m.cmdSiteDetailButton(8).geometry().right() + 600);
    EXPECT_FALSE(m.lstSiteList.visible());
    EXPECT_EQ(m.CurrentSiteID, 0);
    EXPECT_FALSE(m.IsAddingSite);
}

TEST_P(SiteRegister, LoadGivesTheDataControlsTheirConnectionAndTheNoClientState) {
    frmClientSites& m = openManager();
    const QString expected = QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") +
                             app->gDatabaseLocation + QStringLiteral(";Persist Security Info=False");
    for (db::DataControl* d : {&m.sites(), &m.drawings(), &m.costs()}) {
        EXPECT_EQ(d->ConnectionString(), expected);
        EXPECT_EQ(d->CursorLocation(), db::adUseClient);
        EXPECT_EQ(d->CursorType(), db::adOpenDynamic);
        EXPECT_EQ(d->LockType(), db::adLockOptimistic);
        EXPECT_EQ(d->CommandType(), db::adCmdText);
        EXPECT_EQ(d->Mode(), db::adModeShareDenyNone);
        EXPECT_EQ(d->ConnectionTimeout(), 15);
        EXPECT_EQ(d->CommandTimeout(), 30);
        EXPECT_EQ(d->CacheSize(), 50);
    }
    EXPECT_EQ(m.siteState(), State::NoClient);
    EXPECT_EQ(buttons(), QStringLiteral("0000000000"));
    EXPECT_EQ(tabsEnabled(), QStringLiteral("0000"));
}

TEST_P(SiteRegister, TheComboListsEveryClientOnEachActivation) {
    seed();
    execute(QStringLiteral("UPDATE Clients SET PostCode = NULL WHERE Client = 'Morgan'"));
    frmClientSites& m = openManager();
    ASSERT_EQ(m.cboCilent.listCount(), 2);
    EXPECT_EQ(m.cboCilent.listItem(0), QStringLiteral("Harbour Homes, 12 Quay Street, TR1 2AB"));
    EXPECT_EQ(m.cboCilent.listItem(1), QStringLiteral("Morgan, 3 Chapel Hill, "));
    EXPECT_EQ(m.cboCilent.itemData(0).toInt(), client);
    // A client added elsewhere shows when the window is active again.
    addClient(QStringLiteral("Treloar"));
    EXPECT_EQ(m.cboCilent.listCount(), 2);
    click(m.cmdNewClient);
    click(clientWindow().cmdClose);
    EXPECT_EQ(m.cboCilent.listCount(), 3);
    EXPECT_EQ(m.cboCilent.listIndex(), -1);
}

TEST_P(SiteRegister, WithNoClientsTheClientButtonStaysDisabled) {
    frmClientSites& m = openManager();
    EXPECT_FALSE(m.cmdViewClient.enabled());
    click(m.cmdNewClient);
    type(clientWindow().txtClient(0), QStringLiteral("Harbour Homes"));
    click(clientWindow().cmdSaveClient);
    EXPECT_EQ(m.cboCilent.listCount(), 1);
    EXPECT_FALSE(m.cmdViewClient.enabled());
}

TEST_P(SiteRegister, ChoosingAClientShowsItsFirstSite) {
    seed();
    frmClientSites& m = openManager();
    app->dispatch([&] { tabs::select(m.Tabs1, 1); });
    choose(m.cboCilent, 0);
    EXPECT_EQ(app->get(QStringLiteral("gCurrentClientID")).toInt(), client);
    EXPECT_EQ(m.sites().RecordSource(),
              QStringLiteral("SELECT * FROM Sites WHERE (((Sites.ClientID)=%1));").arg(client));
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
    EXPECT_EQ(m.CurrentSiteID, sites[0]);
    EXPECT_EQ(m.txtSiteDetails(11).text(), QStringLiteral("Barn"));
    EXPECT_EQ(m.txtSiteDetails(0).text(), QStringLiteral("Old Barn"));
    EXPECT_EQ(m.drawings().RecordSource(),
              QStringLiteral("SELECT * FROM SitePlans WHERE (((SitePlans.SiteID)=%1));").arg(sites[0]));
    EXPECT_EQ(m.costs().RecordSource(),
              QStringLiteral("SELECT * FROM ProjectCosts WHERE (((ProjectCosts.SiteID)=%1));").arg(sites[0]));
    EXPECT_EQ(m.siteState(), State::View);
    EXPECT_EQ(buttons(), QStringLiteral("1111001111"));
    EXPECT_EQ(tabsEnabled(), QStringLiteral("1111"));
    EXPECT_TRUE(tabs::selected(m.Tabs1, 1));
    // A client with no sites: the empty state.
    choose(m.cboCilent, 1);
    EXPECT_EQ(counter(), QStringLiteral("Record: 0 of 0"));
    EXPECT_EQ(m.CurrentSiteID, 0);
    EXPECT_EQ(m.siteState(), State::NoSite);
    EXPECT_EQ(buttons(), QStringLiteral("0010000000"));
    EXPECT_EQ(tabsEnabled(), QStringLiteral("1000"));
    EXPECT_EQ(m.txtSiteDetails(0).text(), QString());
}

TEST_P(SiteRegister, TheMovesWalkTheSitesAndStopBeyondTheEnds) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::NextSite);
    EXPECT_EQ(counter(), QStringLiteral("Record: 2 of 3"));
    EXPECT_EQ(m.CurrentSiteID, sites[1]);
    press(frmClientSites::LastSite);
    EXPECT_EQ(counter(), QStringLiteral("Record: 3 of 3"));
    press(frmClientSites::FirstSite);
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
    // Previous on the first site: before the first row, no site, only New left.
    press(frmClientSites::PreviousSite);
    EXPECT_TRUE(siteRows().BOF());
    EXPECT_EQ(counter(), QStringLiteral("Record: 0 of 3"));
    EXPECT_EQ(m.CurrentSiteID, 0);
    EXPECT_EQ(m.siteState(), State::NoSite);
    EXPECT_EQ(buttons(), QStringLiteral("0010000000"));
    // Next on the last site alike.
    press(frmClientSites::NewSite);
    press(frmClientSites::UndoSite);
    press(frmClientSites::LastSite);
    press(frmClientSites::NextSite);
    EXPECT_TRUE(siteRows().EOF_());
    EXPECT_EQ(counter(), QStringLiteral("Record: 0 of 3"));
    EXPECT_EQ(buttons(), QStringLiteral("0010000000"));
}

TEST_P(SiteRegister, PreviousFromBeforeTheFirstWrapsToTheLast) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::PreviousSite);
    ASSERT_TRUE(siteRows().BOF());
    // The button is disabled in this state; its handler wraps when it runs.
    app->dispatch(
        [&] { m.raiseEvent(m.cmdSiteDetailButton(frmClientSites::PreviousSite), QStringLiteral("Click")); });
    EXPECT_EQ(counter(), QStringLiteral("Record: 3 of 3"));
    press(frmClientSites::NextSite);
    ASSERT_TRUE(siteRows().EOF_());
    app->dispatch(
        [&] { m.raiseEvent(m.cmdSiteDetailButton(frmClientSites::NextSite), QStringLiteral("Click")); });
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
}

TEST_P(SiteRegister, ANewSiteKeepsTheEarlierSitesViewsUntilSavedAndSavingShowsTheFirstSite) {
    seed();
    const int plan = addPlan(sites[1], QStringLiteral("Ground Floor"));
    (void)plan;
    frmClientSites& m = withClient();
    press(frmClientSites::NextSite);
    ASSERT_EQ(m.CurrentSiteID, sites[1]);
    press(frmClientSites::NewSite);
    EXPECT_TRUE(m.IsAddingSite);
    EXPECT_EQ(m.siteState(), State::Edit);
    EXPECT_EQ(buttons(), QStringLiteral("0000110000"));
    EXPECT_EQ(tabsEnabled(), QStringLiteral("1000"));
    for (int i = 0; i < frmClientSites::SiteBoxCount; ++i) {
        EXPECT_FALSE(m.txtSiteDetails(i).locked());
        EXPECT_EQ(m.txtSiteDetails(i).backColor(), frmClientSites::EditColour);
        EXPECT_EQ(m.txtSiteDetails(i).text(), QString());
    }
    // The counter, the current site and the plans stay those of the earlier site.
    EXPECT_EQ(counter(), QStringLiteral("Record: 2 of 3"));
    EXPECT_EQ(m.CurrentSiteID, sites[1]);
    EXPECT_EQ(m.drawings().Recordset().RecordCount(), 1);
    EXPECT_EQ(siteRows().Fields(QStringLiteral("ClientID")).Value().toInt(), client);
    type(m.txtSiteDetails(11), QStringLiteral("new studio"));
    blur(m.txtSiteDetails(11));
    type(m.txtSiteDetails(4), QStringLiteral("tr4 9zz"));
    blur(m.txtSiteDetails(4));
    type(m.txtSiteDetails(7), QStringLiteral("Site@Example.COM"));
    blur(m.txtSiteDetails(7));
    press(frmClientSites::SaveSite);
    EXPECT_FALSE(m.IsAddingSite);
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM Sites WHERE Site = 'New Studio'"));
    ASSERT_EQ(r.size(), 1);
    EXPECT_EQ(r[0].value(QStringLiteral("ClientID")).toInt(), client);
    EXPECT_EQ(r[0].value(QStringLiteral("PostCode")).toString(), QStringLiteral("TR4 9ZZ"));
    EXPECT_EQ(r[0].value(QStringLiteral("Email")).toString(), QStringLiteral("site@example.com"));
    EXPECT_FALSE(r[0].value(QStringLiteral("DateAdded")).isNull()); // the database's default
    // Back on the first site of the client, locked again.
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 4"));
    EXPECT_EQ(m.CurrentSiteID, sites[0]);
    EXPECT_EQ(m.siteState(), State::View);
    EXPECT_TRUE(m.txtSiteDetails(0).locked());
    EXPECT_EQ(m.txtSiteDetails(0).backColor(), frmClientSites::LockedColour);
    // No folder is made for a new site.
    EXPECT_EQ(QDir(home.fileStoreDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
}

TEST_P(SiteRegister, EditingWritesTheTypedBoxesOnSave) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::NextSite);
    press(frmClientSites::EditSite);
    EXPECT_FALSE(m.IsAddingSite);
    EXPECT_EQ(m.siteState(), State::Edit);
    EXPECT_EQ(siteRows().EditMode(), db::adEditNone); // no recordset call
    type(m.txtSiteDetails(2), QStringLiteral("penryn"));
    EXPECT_EQ(siteRows().EditMode(), db::adEditInProgress);
    blur(m.txtSiteDetails(2));
    type(m.txtSiteDetails(10), QStringLiteral("Gate code 1234\r\nRing first"));
    press(frmClientSites::SaveSite);
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM Sites WHERE SiteID = %1").arg(sites[1]));
    EXPECT_EQ(r[0].value(QStringLiteral("Town")).toString(), QStringLiteral("Penryn"));
    EXPECT_EQ(r[0].value(QStringLiteral("Comments")).toString(),
              QStringLiteral("Gate code 1234\r\nRing first"));
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
}

TEST_P(SiteRegister, UndoDropsTheEditAndLocksTheBoxes) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::EditSite);
    type(m.txtSiteDetails(0), QStringLiteral("Elsewhere"));
    press(frmClientSites::UndoSite);
    EXPECT_EQ(m.txtSiteDetails(0).text(), QStringLiteral("Old Barn"));
    EXPECT_TRUE(m.txtSiteDetails(0).locked());
    EXPECT_EQ(m.siteState(), State::View);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites WHERE Address = 'Elsewhere'")).size(), 0);
}

TEST_P(SiteRegister, UndoOfANewSiteOfAClientWithoutSitesLeavesTheViewState) {
    seed();
    frmClientSites& m = withClient(1);
    press(frmClientSites::NewSite);
    press(frmClientSites::UndoSite);
    EXPECT_EQ(siteRows().RecordCount(), 0);
    EXPECT_EQ(counter(), QStringLiteral("Record: 0 of 0"));
    EXPECT_EQ(m.siteState(), State::View);
    EXPECT_EQ(buttons(), QStringLiteral("1111001111"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites")).size(), 3);
}

TEST_P(SiteRegister, DeletingASiteAsksAndRemovesItsRowOnly) {
    seed();
    QDir().mkpath(storePath(QStringLiteral("4 Fore Street")));
    frmClientSites& m = withClient();
    press(frmClientSites::NextSite);
    takeBoxes();
    port.queueMsgBox(mb::ResultNo);
    press(frmClientSites::DeleteSite);
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral(
                               "Are You Sure You Wish To Delete This Site|292|Confirm Plan Deletion")});
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites")).size(), 3);
    port.queueMsgBox(mb::ResultYes);
    press(frmClientSites::DeleteSite);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites WHERE SiteID = %1").arg(sites[1])).size(), 0);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites")).size(), 2);
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 2"));
    EXPECT_EQ(m.CurrentSiteID, sites[0]);
    EXPECT_TRUE(QFileInfo(storePath(QStringLiteral("4 Fore Street"))).isDir());
}

TEST_P(SiteRegister, TheSiteListWalksTheRowsAndAClickShowsTheChosenSite) {
    seed();
    frmClientSites& m = withClient();
    int refreshes = 0;
    const int listener = m.drawings().Recordset().addListener([&](const db::RecordsetEvent& e) {
        if (e.kind == db::RecordsetEvent::Kind::MoveComplete && e.reason == db::adRsnMove)
            ++refreshes;
    });
    std::vector<QJsonObject> before = events;
    press(frmClientSites::SiteList);
    m.drawings().Recordset().removeListener(listener);
    // The event refreshed the plans for each row of the walk and for the move back to the first.
    EXPECT_EQ(refreshes, 4);
    ASSERT_TRUE(m.lstSiteList.visible());
    ASSERT_EQ(m.lstSiteList.listCount(), 3);
    EXPECT_EQ(m.lstSiteList.listItem(1), QStringLiteral("Kitchen, TR1 1HD"));
    EXPECT_EQ(m.lstSiteList.itemData(2).toInt(), sites[2]);
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
    QStringList pointers;
    for (size_t i = before.size(); i < events.size(); ++i)
        if (events[i][QStringLiteral("event")].toString() == QLatin1String("pointer"))
            pointers << QString::number(events[i][QStringLiteral("value")].toInt());
    EXPECT_EQ(pointers, (QStringList{QStringLiteral("11"), QStringLiteral("0")}));

    choose(m.lstSiteList, 2);
    EXPECT_FALSE(m.lstSiteList.visible());
    EXPECT_EQ(counter(), QStringLiteral("Record: 3 of 3"));
    EXPECT_EQ(m.CurrentSiteID, sites[2]);
    // Button 9 again hides a shown list.
    press(frmClientSites::SiteList);
    ASSERT_TRUE(m.lstSiteList.visible());
    press(frmClientSites::SiteList);
    EXPECT_FALSE(m.lstSiteList.visible());
    // The right mouse button hides it; the left one does not.
    press(frmClientSites::SiteList);
    EventArgs left{1, 0, 100, 100};
    app->dispatch([&] { m.raiseEvent(m.lstSiteList, QStringLiteral("MouseDown"), left); });
    EXPECT_TRUE(m.lstSiteList.visible());
    EventArgs right{2, 0, 100, 100};
    app->dispatch([&] { m.raiseEvent(m.lstSiteList, QStringLiteral("MouseDown"), right); });
    EXPECT_FALSE(m.lstSiteList.visible());
}

TEST_P(SiteRegister, AListLineWhoseSiteHasGoneLeavesTheCursorAtTheEnd) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::SiteList);
    app->dispatch([&] { m.lstSiteList.setItemData(1, 99999); });
    choose(m.lstSiteList, 1);
    EXPECT_FALSE(m.lstSiteList.visible());
    EXPECT_TRUE(siteRows().EOF_());
    EXPECT_EQ(counter(), QStringLiteral("Record: 0 of 3"));
    EXPECT_EQ(port.mousePointer(), 0);
}

TEST_P(SiteRegister, CopySitePutsTheSiteNameIntoTheAddressWithoutItsCaseRule) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::EditSite);
    type(m.txtSiteDetails(11), QStringLiteral("the OLD mill"));
    click(m.cmdCopySite);
    EXPECT_EQ(m.txtSiteDetails(0).text(), QStringLiteral("the OLD mill"));
    EXPECT_EQ(siteRows().Fields(QStringLiteral("Address")).Value().toString(),
              QStringLiteral("the OLD mill"));
    app->dispatch([&] { m.setFocus(&m.txtSiteDetails(0)); });
    blur(m.txtSiteDetails(0));
    EXPECT_EQ(m.txtSiteDetails(0).text(), QStringLiteral("The Old Mill"));
}

TEST_P(SiteRegister, TheClientCanChangeWhileASiteIsEdited) {
    seed();
    const int other = rows(QStringLiteral("SELECT ClientID FROM Clients WHERE Client = 'Morgan'"))[0]
                          .value(QStringLiteral("ClientID"))
                          .toInt();
    addSite(other, QStringLiteral("Chapel"), QStringLiteral("Chapel Hill"));
    frmClientSites& m = withClient();
    press(frmClientSites::NewSite);
    choose(m.cboCilent, 1);
    // The event still finds a site being added: the earlier site's views stay.
    EXPECT_TRUE(m.IsAddingSite);
    EXPECT_EQ(m.siteState(), State::Edit);
    EXPECT_EQ(m.CurrentSiteID, sites[0]);
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 3"));
    EXPECT_EQ(siteRows().RecordCount(), 1);
    // Saving then writes nothing (the new row went with the old list) and shows the client's first site.
    press(frmClientSites::SaveSite);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites")).size(), 4);
    EXPECT_EQ(m.siteState(), State::View);
    EXPECT_EQ(counter(), QStringLiteral("Record: 1 of 1"));
}

TEST_P(SiteRegister, AFailureInTheSiteEventShowsItsDescriptionAndNumber) {
    seed();
    frmClientSites& m = withClient();
    // The plan control can no longer reach its database.
    m.drawings().setConnectionString(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") +
                                     home.dir() + QStringLiteral("/Gone.mdb;Persist Security Info=False"));
    takeBoxes();
    press(frmClientSites::NextSite);
    const QStringList shown = takeBoxes();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0],
              QStringLiteral("Could not find file '%1/Gone.mdb'.-2147467259|0|Tessaly").arg(home.dir()));
    // The steps after the failed one ran.
    EXPECT_EQ(counter(), QStringLiteral("Record: 2 of 3"));
    EXPECT_EQ(m.siteState(), State::View);
}

TEST_P(SiteRegister, TheFolderOfASiteIsMadeOnceAndOnlyOneLevelDeep) {
    seed();
    frmClientSites& m = withClient();
    EXPECT_FALSE(frmClientSites::FolderExists(app->gFileStore + QStringLiteral("\\Old Barn")));
    takeWaits();
    app->dispatch([&] { m.MakeSiteFolder(); });
    EXPECT_TRUE(QFileInfo(storePath(QStringLiteral("Old Barn"))).isDir());
    EXPECT_TRUE(frmClientSites::FolderExists(app->gFileStore + QStringLiteral("\\OLD BARN")));
    app->dispatch([&] { m.MakeSiteFolder(); });
    EXPECT_EQ(takeWaits(), (std::vector<int>{500, 500}));
    // An address that names a folder inside a missing one fails at MkDir.
    press(frmClientSites::EditSite);
    type(m.txtSiteDetails(0), QStringLiteral("Flat 2/3 High Street"));
    takeBoxes();
    app->dispatch([&] { m.MakeSiteFolder(); });
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral("Run-time error '76':\n\nPath not found|16|Tessaly")});
    EXPECT_FALSE(QFileInfo(storePath(QStringLiteral("Flat 2"))).exists());
}

TEST_P(SiteRegister, CloseLeavesASiteBeingEditedUnsaved) {
    seed();
    frmClientSites& m = withClient();
    press(frmClientSites::EditSite);
    type(m.txtSiteDetails(0), QStringLiteral("Elsewhere"));
    click(m.cmdClose);
    EXPECT_FALSE(isLoaded("frmClientSites"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM Sites WHERE Address = 'Elsewhere'")).size(), 0);
}

TESSALY_DB_ENGINES(SiteRegister);

} // namespace
} // namespace tessaly::projects::test
