// The plan register on tab 2 of frmClientSites: the grid and its buttons, a
// new plan from a page template with its stamps and files, opening, importing
// and deleting a plan, the common ending and the boxes of its failures.
#include "ProjectsFixture.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "core/db/Ado.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/forms/DataBinding.h"
#include "core/forms/TabStrip.h"
#include "projects/frmClientSites.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace tessaly::projects::test {
namespace {

class PlanRegister : public ProjectsTest {
protected:
    int client = 0;
    int site = 0;
    int otherSite = 0;

    // A client with two sites; the manager open on the first site.
    frmClientSites& ready() {
        client = addClient(QStringLiteral("Harbour Homes"));
        site = addSite(client, QStringLiteral("Barn"), QStringLiteral("Old Barn"));
        otherSite = addSite(client, QStringLiteral("Kitchen"), QStringLiteral("4 Fore Street"));
        frmClientSites& m = openManager();
        choose(m.cboCilent, 0);
        app->dispatch([&] { tabs::select(m.Tabs1, frmClientSites::DrawingsTab); });
        return m;
    }
    canvas::POLARDraw& canvas() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main().canvas1()); }
    // A new plan through the panel.
    void newPlan(frmClientSites& m, const QString& description, bool portrait) {
        click(m.cmdNewDrawing);
        type(m.txtPlanDesc, description);
        click(m.Option1(portrait ? 0 : 1));
        click(m.cmdOk);
    }
    // The stamps on the page, in z-order: text and box.
    QStringList stamps() {
        QStringList out;
        for (const QVariant& v : canvas().describeShapes()) {
            const QVariantMap s = v.toMap();
            const QString text = s.value(QStringLiteral("text")).toString();
            if (text.startsWith(QLatin1String("Site Address: ")) ||
                text.startsWith(QLatin1String("Plan Description: ")) ||
                (!app->gCopyrightText.isEmpty() && text == app->gCopyrightText))
                out << QStringLiteral("%1 %2,%3,%4,%5")
                           .arg(text)
                           .arg(s.value(QStringLiteral("left")).toInt())
                           .arg(s.value(QStringLiteral("top")).toInt())
                           .arg(s.value(QStringLiteral("right")).toInt())
                           .arg(s.value(QStringLiteral("bottom")).toInt());
        }
        return out;
    }
    bool exists(const QString& relative) { return QFileInfo::exists(storePath(relative)); }
    QByteArray bytes(const QString& relative) {
        QFile f(storePath(relative));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};

TEST_P(PlanRegister, TheTabShowsItsControlsAndTheGridOfTheSitesPlans) {
    frmClientSites& m = ready();
    EXPECT_EQ(m.TDBGrid1.prop(QStringLiteral("Caption")).toString(), QStringLiteral("Project Drawings"));
    EXPECT_EQ(m.cmdNewDrawing.toolTipText(), QStringLiteral("Add a new drawing to the loaded site"));
    EXPECT_EQ(m.cmdLoadDrawing.toolTipText(),
              QStringLiteral("Load the selected drawing into the drwaing canvas"));
    EXPECT_EQ(m.cmdDeleteDrawing.toolTipText(), QStringLiteral("Delete the currently selected drawing"));
    EXPECT_EQ(m.cmdImport.toolTipText(), QStringLiteral("Import a drawing to the current project"));
    EXPECT_EQ(m.lblInfo.caption(), QStringLiteral("Please Wait, Loading..."));
    EXPECT_FALSE(m.lblInfo.visible());
    EXPECT_FALSE(m.RTF1.visible());
    EXPECT_FALSE(m.NewPlanDialog.visible());
    EXPECT_FALSE(m.NewPlanDialogShd.visible());
    EXPECT_EQ(m.control(QStringLiteral("lblPlanDesc")).caption(), QStringLiteral("Plan Description"));
    EXPECT_EQ(m.txtPlanDesc.backColor(), 0xC0FFC0u);
    EXPECT_EQ(m.Option1(0).caption(), QStringLiteral("Set Drawing As Portrate"));
    EXPECT_EQ(m.Option1(1).caption(), QStringLiteral("Set Drawing As Landscape"));
    EXPECT_EQ(m.Option1(0).value(), 0);
    EXPECT_EQ(m.Option1(1).value(), 1);
    EXPECT_EQ(m.cmdOk.caption(), QStringLiteral("OK"));
    EXPECT_EQ(m.cmdCancel.caption(), QStringLiteral("Cancel"));
    EXPECT_EQ(m.control(QStringLiteral("lblImportName")).caption(),
              QStringLiteral("Imported Drawing Plan Description"));
    EXPECT_EQ(m.cmdImportCancel.caption(), QStringLiteral("Cancel"));
    // No plans: opening and deleting are disabled, new and import are not.
    EXPECT_FALSE(m.cmdLoadDrawing.enabled());
    EXPECT_FALSE(m.cmdDeleteDrawing.enabled());
    EXPECT_TRUE(m.cmdNewDrawing.enabled());
    EXPECT_TRUE(m.cmdImport.enabled());
    EXPECT_EQ(m.TDBGrid1.get(QStringLiteral("Rows")).toList().size(), 0);

    addPlan(site, QStringLiteral("Ground Floor"));
    addPlan(site, QStringLiteral("First Floor"));
    addPlan(otherSite, QStringLiteral("Elsewhere"));
    app->dispatch([&] { m.drawings().Refresh(); });
    const QVariantList shown = m.TDBGrid1.get(QStringLiteral("Rows")).toList();
    ASSERT_EQ(shown.size(), 2);
    const QVariantMap first = shown[0].toMap();
    EXPECT_EQ(first.keys(), (QStringList{QStringLiteral("Date Created"), QStringLiteral("Drawing"),
                                         QStringLiteral("SiteID")}));
    EXPECT_EQ(first.value(QStringLiteral("Drawing")).toString(), QStringLiteral("Ground Floor"));
    EXPECT_EQ(first.value(QStringLiteral("SiteID")).toString(), QString::number(site));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d\\d/\\d\\d/\\d{4}"))
                    .match(first.value(QStringLiteral("Date Created")).toString())
                    .hasMatch());
    EXPECT_TRUE(m.cmdLoadDrawing.enabled());
    EXPECT_TRUE(m.cmdDeleteDrawing.enabled());
    app->dispatch([&] { gridOf(m.TDBGrid1)->selectRow(1); });
    EXPECT_EQ(m.drawings().Recordset().AbsolutePosition(), 2);
    // The second site's plans follow the site cursor.
    click(m.cmdSiteDetailButton(frmClientSites::NextSite));
    ASSERT_EQ(m.TDBGrid1.get(QStringLiteral("Rows")).toList().size(), 1);
    EXPECT_EQ(m.TDBGrid1.get(QStringLiteral("Rows"))
                  .toList()[0]
                  .toMap()
                  .value(QStringLiteral("Drawing"))
                  .toString(),
              QStringLiteral("Elsewhere"));
}

TEST_P(PlanRegister, ANewLandscapePlanMakesItsRowFilesAndStampsAndGoesToTheMainWindow) {
    frmClientSites& m = ready();
    main().Timer1.setEnabled(false);
    app->gBackupTicks = 99;
    takeWaits();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    EXPECT_FALSE(isLoaded("frmClientSites"));
    EXPECT_TRUE(QFileInfo(storePath(QStringLiteral("Old Barn"))).isDir());
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Ground Floor"));
    EXPECT_EQ(app->gOpenSiteID, site);
    EXPECT_EQ(main().caption(), QStringLiteral("Tessaly - Old Barn\\Ground Floor"));
    EXPECT_TRUE(main().Timer1.enabled());
    EXPECT_EQ(app->gBackupTicks, 0);
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM SitePlans"));
    ASSERT_EQ(r.size(), 1);
    EXPECT_EQ(r[0].value(QStringLiteral("SiteID")).toInt(), site);
    EXPECT_EQ(r[0].value(QStringLiteral("PlanDescription")).toString(), QStringLiteral("Ground Floor"));
    EXPECT_FALSE(r[0].value(QStringLiteral("DateCreated")).isNull());
    EXPECT_EQ(r[0].value(QStringLiteral("ColourOutputCreated")).toInt(), 0);
    // The files, on disk ("\" became the host's separator).
    const QStringList files = QDir(storePath(QStringLiteral("Old Barn"))).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(files, (QStringList{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdr"),
                                  QStringLiteral("Ground Floor.wmf")}));
    EXPECT_TRUE(canvas().page()->get(QStringLiteral("Landscape")).toBool());
    // The waits: the folder, the template, the base file, then the metafile conversion's own.
    const std::vector<int> waits = takeWaits();
    ASSERT_GE(waits.size(), 3u);
    EXPECT_EQ((std::vector<int>(waits.begin(), waits.begin() + 3)), (std::vector<int>{500, 500, 900}));
    // Landscape: copyright, address, plan; the copyright narrow beside the others.
    EXPECT_EQ(stamps(), (QStringList{QStringLiteral("Drawn with Tessaly 10,195,90,200"),
                                     QStringLiteral("Site Address: Old Barn 200,190,287,195"),
                                     QStringLiteral("Plan Description: Ground Floor 200,195,287,200")}));
}

TEST_P(PlanRegister, APortraitPlanTakesThePortraitTemplateAndItsStampOrder) {
    frmClientSites& m = ready();
    newPlan(m, QStringLiteral("Section"), true);
    EXPECT_FALSE(canvas().page()->get(QStringLiteral("Landscape")).toBool());
    EXPECT_EQ(stamps(), (QStringList{QStringLiteral("Site Address: Old Barn 110,278,200,283"),
                                     QStringLiteral("Plan Description: Section 110,283,200,288"),
                                     QStringLiteral("Drawn with Tessaly 10,283,90,288")}));
}

TEST_P(PlanRegister, TheCopyrightAloneGetsTheLongBox) {
    frmClientSites& m = ready();
    app->gDisplayAddress = QStringLiteral("No");
    app->gDisplayPlanData = QStringLiteral("No");
    newPlan(m, QStringLiteral("Portrait"), true);
    EXPECT_EQ(stamps(), QStringList{QStringLiteral("Drawn with Tessaly 10,283,200,288")});
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    newPlan(again, QStringLiteral("Landscape"), false);
    EXPECT_EQ(stamps(), QStringList{QStringLiteral("Drawn with Tessaly 10,195,250,200")});
}

TEST_P(PlanRegister, ADisplaySettingThatIsNeitherYesNorNoAddsNoStampButNarrowsTheCopyright) {
    frmClientSites& m = ready();
    app->gDisplayAddress = QString();
    app->gDisplayPlanData = QStringLiteral("No");
    newPlan(m, QStringLiteral("Plan"), true);
    EXPECT_EQ(stamps(), QStringList{QStringLiteral("Drawn with Tessaly 10,283,90,288")});
    // No copyright text, no copyright stamp.
    app->gCopyrightText.clear();
    app->gDisplayAddress = QStringLiteral("Yes");
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    newPlan(again, QStringLiteral("Plan 2"), true);
    EXPECT_EQ(stamps(), QStringList{QStringLiteral("Site Address: Old Barn 110,278,200,283")});
}

TEST_P(PlanRegister, CancelHidesThePanelAndTheDescriptionStaysForTheNextUse) {
    frmClientSites& m = ready();
    click(m.cmdNewDrawing);
    EXPECT_TRUE(m.NewPlanDialog.visible());
    EXPECT_TRUE(m.NewPlanDialogShd.visible());
    EXPECT_EQ(m.focused(), &m.txtPlanDesc);
    type(m.txtPlanDesc, QStringLiteral("Roof"));
    click(m.cmdCancel);
    EXPECT_FALSE(m.NewPlanDialog.visible());
    EXPECT_FALSE(m.NewPlanDialogShd.visible());
    click(m.cmdNewDrawing);
    EXPECT_EQ(m.txtPlanDesc.text(), QStringLiteral("Roof"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 0);
}

TEST_P(PlanRegister, AnEmptyDescriptionMakesTheFileDotPdrAndARowWithNoName) {
    frmClientSites& m = ready();
    newPlan(m, QString(), false);
    EXPECT_TRUE(exists(QStringLiteral("Old Barn/.pdr")));
    EXPECT_TRUE(exists(QStringLiteral("Old Barn/.emf")));
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM SitePlans"));
    ASSERT_EQ(r.size(), 1);
    EXPECT_EQ(r[0].value(QStringLiteral("PlanDescription")).toString(), QString());
}

TEST_P(PlanRegister, ReusingANameAddsASecondRowAndOverwritesTheFiles) {
    frmClientSites& m = ready();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    const QByteArray landscape = bytes(QStringLiteral("Old Barn/Ground Floor.pdr"));
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    newPlan(again, QStringLiteral("Ground Floor"), true);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans WHERE PlanDescription = 'Ground Floor'")).size(),
              2);
    EXPECT_NE(bytes(QStringLiteral("Old Barn/Ground Floor.pdr")), landscape);
}

TEST_P(PlanRegister, AFolderThatCannotBeMadeGivesTheFolderBoxAndNoRow) {
    frmClientSites& m = ready();
    app->gFileStore = home.dir() + QStringLiteral("/Offline/Store");
    takeBoxes();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral(
                               "The project folder appeart to be missing or it may have been moved. It may "
                               "be on a network server where that is not currently connected to the "
                               "network.|16|The Folder Was Not Found")});
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 0);
    EXPECT_EQ(app->gPlanFileName, QString());
}

TEST_P(PlanRegister, AnAddressWithOuterBlanksNamesAFolderThatTheFilesMiss) {
    frmClientSites& m = ready();
    // The folder is made from the trimmed address, the plan's name keeps the blanks.
    click(m.cmdSiteDetailButton(frmClientSites::EditSite));
    type(m.txtSiteDetails(frmClientSites::AddressBox), QStringLiteral(" Mill House "));
    takeBoxes();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    EXPECT_TRUE(QFileInfo(storePath(QStringLiteral("Mill House"))).isDir());
    EXPECT_EQ(app->gPlanFileName, QStringLiteral(" Mill House \\Ground Floor"));
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral(
                               "The project folder appeart to be missing or it may have been moved. It may "
                               "be on a network server where that is not currently connected to the "
                               "network.|16|The Folder Was Not Found")});
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 1);
    EXPECT_EQ(QDir(storePath(QStringLiteral("Mill House"))).entryList(QDir::Files), QStringList());
}

TEST_P(PlanRegister, ABaseFileThatIsNotWrittenKeepsTheRowAndTheManagerOpen) {
    frmClientSites& m = ready();
    // A folder stands where the drawing file would go.
    ASSERT_TRUE(QDir().mkpath(storePath(QStringLiteral("Old Barn/Ground Floor.pdr"))));
    takeBoxes();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    const QStringList shown = takeBoxes();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[0].endsWith(QLatin1String("|16|Tessaly"))); // the canvas's own report
    EXPECT_EQ(shown[1], QStringLiteral("Error Creating Base File!|16|Tessaly"));
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 1);
    EXPECT_FALSE(exists(QStringLiteral("Old Barn/Ground Floor.emf")));
}

TEST_P(PlanRegister, OpeningAPlanWritesBackTheOpenOneAndAppliesTheScale) {
    frmClientSites& m = ready();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    // Another plan of the site, drawn at 1:100.
    QDir().mkpath(storePath(QStringLiteral("Old Barn")));
    canvas().setDrawingTag(QStringLiteral("100"));
    canvas().saveFile(storePath(QStringLiteral("Old Barn/First Floor.pdr")), 1);
    canvas().setDrawingTag(QStringLiteral("50"));
    addPlan(site, QStringLiteral("First Floor"));
    // Opening the manager saves the open plan with all its files.
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    const QByteArray wmfBefore = bytes(QStringLiteral("Old Barn/Ground Floor.wmf"));
    // A change to the open plan, written back without a question.
    QVariantList box{1, 20, 20, 60, 40};
    app->gShapeList->call(QStringLiteral("AddShape"), box);
    const int shapes = static_cast<int>(canvas().drawing().shapes().size());
    app->dispatch([&] { gridOf(again.TDBGrid1)->selectRow(1); });
    takeBoxes();
    events.clear();
    click(again.cmdLoadDrawing);
    EXPECT_TRUE(takeBoxes().isEmpty());
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\First Floor"));
    EXPECT_EQ(app->gOpenSiteID, site);
    EXPECT_EQ(main().caption(), QStringLiteral("Tessaly - Old Barn\\First Floor"));
    EXPECT_FALSE(isLoaded("frmClientSites"));
    EXPECT_EQ(main().ScaleValue, 100);
    EXPECT_EQ(canvas().drawingTag(), QStringLiteral("100"));
    // The earlier plan's .pdr holds the change; its .wmf is as it was.
    canvas::POLARDraw::create()->loadFile(storePath(QStringLiteral("Old Barn/Ground Floor.pdr")));
    auto reread = canvas::POLARDraw::create();
    reread->loadFile(storePath(QStringLiteral("Old Barn/Ground Floor.pdr")));
    EXPECT_EQ(static_cast<int>(reread->drawing().shapes().size()), shapes);
    EXPECT_EQ(bytes(QStringLiteral("Old Barn/Ground Floor.wmf")), wmfBefore);
    EXPECT_TRUE(exists(QStringLiteral("Old Barn/Ground Floor.emf")));
    QStringList pointers;
    for (const QJsonObject& e : events)
        if (e[QStringLiteral("event")].toString() == QLatin1String("pointer"))
            pointers << QString::number(e[QStringLiteral("value")].toInt());
    ASSERT_FALSE(pointers.isEmpty());
    EXPECT_EQ(pointers.first(), QStringLiteral("11"));
    EXPECT_EQ(pointers.last(), QStringLiteral("0"));
}

TEST_P(PlanRegister, AMissingPlanFileSaysSoAndKeepsItsName) {
    frmClientSites& m = ready();
    addPlan(site, QStringLiteral("Lost Plan"));
    app->dispatch([&] { m.drawings().Refresh(); });
    takeBoxes();
    click(m.cmdLoadDrawing);
    EXPECT_EQ(takeBoxes(),
              QStringList{QStringLiteral("The Drawing File You Selecetd Has Been Deleted, Courrupted or "
                                         "Manually Moved.|48|File Missing")});
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_TRUE(m.lblInfo.visible());
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Lost Plan"));
    EXPECT_EQ(port.mousePointer(), 0);
}

TEST_P(PlanRegister, ImportingCopiesTheFileAndMakesNoMetafiles) {
    frmClientSites& m = ready();
    const QString source = home.dir() + QStringLiteral("/Elsewhere.pdr");
    canvas().setDrawingTag(QStringLiteral("200"));
    QVariantList box{1, 10, 10, 50, 50};
    app->gShapeList->call(QStringLiteral("AddShape"), box);
    canvas().saveFile(source, 1);
    port.queueOpen(source);
    events.clear();
    click(m.cmdImport);
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0][QStringLiteral("event")].toString(), QStringLiteral("open"));
    EXPECT_EQ(events[0][QStringLiteral("title")].toString(),
              QStringLiteral("Please Select The Tessaly Drawing To Import"));
    EXPECT_EQ(events[0][QStringLiteral("filter")].toString(), QStringLiteral("Tessaly File (*.pdr)|*.pdr"));
    EXPECT_EQ(m.ImportSourcePath, source);
    EXPECT_EQ(m.txtImportFile.text(), source);
    EXPECT_TRUE(m.ImportPlanDialog.visible());
    EXPECT_TRUE(m.ImportPlanDialogShadow.visible());
    // No name: nothing happens.
    click(m.cmdImportOK);
    EXPECT_TRUE(m.ImportPlanDialog.visible());
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 0);
    type(m.txtImportName, QStringLiteral("Survey"));
    app->gOpenSiteID = 0;
    click(m.cmdImportOK);
    EXPECT_FALSE(isLoaded("frmClientSites"));
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Survey"));
    EXPECT_EQ(app->gOpenSiteID, site);
    EXPECT_EQ(main().caption(), QStringLiteral("Tessaly - Old Barn\\Survey"));
    EXPECT_EQ(main().ScaleValue, 200);
    QFile original(source);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    EXPECT_EQ(bytes(QStringLiteral("Old Barn/Survey.pdr")), original.readAll());
    EXPECT_EQ(QDir(storePath(QStringLiteral("Old Barn"))).entryList(QDir::Files),
              QStringList{QStringLiteral("Survey.pdr")});
    EXPECT_EQ(rows(QStringLiteral("SELECT PlanDescription FROM SitePlans"))[0].value(
                  QStringLiteral("PlanDescription")),
              QStringLiteral("Survey"));
}

TEST_P(PlanRegister, ImportCancelEmptiesThePanelAndTheDialogsCancelIsARunTimeError) {
    frmClientSites& m = ready();
    port.queueOpen(home.dir() + QStringLiteral("/x.pdr"));
    click(m.cmdImport);
    type(m.txtImportName, QStringLiteral("Survey"));
    click(m.cmdImportCancel);
    EXPECT_FALSE(m.ImportPlanDialog.visible());
    EXPECT_EQ(m.ImportSourcePath, QString());
    EXPECT_EQ(m.txtImportFile.text(), QString());
    EXPECT_EQ(m.txtImportName.text(), QString());
    takeBoxes();
    click(m.cmdImport); // nothing queued: the dialog is cancelled
    EXPECT_EQ(takeBoxes(),
              QStringList{QStringLiteral("Run-time error '32755':\n\nCancel was selected.|16|Tessaly")});
    EXPECT_TRUE(isLoaded("frmClientSites"));
}

TEST_P(PlanRegister, DeletingAPlanRemovesItsDrawingAndEnhancedMetafileAndItsRowOnly) {
    frmClientSites& m = ready();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    const QString folder = QStringLiteral("Old Barn/");
    // The .emf was written in upper case by another program; .pdf and .tiff are there too.
    QFile::rename(storePath(folder + QStringLiteral("Ground Floor.emf")),
                  storePath(folder + QStringLiteral("Ground Floor.EMF")));
    for (const char* ending : {".pdf", ".tiff", " Coloured.bmp"}) {
        QFile f(storePath(folder + QStringLiteral("Ground Floor") + QLatin1String(ending)));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    addPlan(site, QStringLiteral("First Floor"));
    const int openSite = app->gOpenSiteID;
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    takeBoxes();
    port.queueMsgBox(mb::ResultNo);
    click(again.cmdDeleteDrawing);
    EXPECT_EQ(takeBoxes(),
              QStringList{QStringLiteral(
                  "Are You Sure You Wish To Delete The Selected Plan|292|Confirm Plan Deletion")});
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 2);
    takeWaits();
    port.queueMsgBox(mb::ResultYes);
    click(again.cmdDeleteDrawing);
    EXPECT_EQ(takeWaits(), std::vector<int>{500});
    EXPECT_FALSE(exists(folder + QStringLiteral("Ground Floor.pdr")));
    EXPECT_FALSE(exists(folder + QStringLiteral("Ground Floor.EMF")));
    for (const char* kept : {".wmf", ".pdf", ".tiff", " Coloured.bmp"})
        EXPECT_TRUE(exists(folder + QStringLiteral("Ground Floor") + QLatin1String(kept))) << kept;
    const QList<QVariantMap> left = rows(QStringLiteral("SELECT PlanDescription FROM SitePlans"));
    ASSERT_EQ(left.size(), 1);
    EXPECT_EQ(left[0].value(QStringLiteral("PlanDescription")).toString(), QStringLiteral("First Floor"));
    // The drawing on the canvas is no project plan now; the site stays.
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_EQ(app->gOpenSiteID, openSite);
    ASSERT_EQ(again.TDBGrid1.get(QStringLiteral("Rows")).toList().size(), 1);
    EXPECT_TRUE(isLoaded("frmClientSites"));
}

TEST_P(PlanRegister, DeletingAnotherPlanStillUnlinksTheOpenOne) {
    frmClientSites& m = ready();
    newPlan(m, QStringLiteral("Ground Floor"), false);
    addPlan(site, QStringLiteral("Unused"));
    frmClientSites& again = openManager();
    choose(again.cboCilent, 0);
    app->dispatch([&] { gridOf(again.TDBGrid1)->selectRow(1); });
    port.queueMsgBox(mb::ResultYes);
    takeBoxes();
    click(again.cmdDeleteDrawing);
    // The missing files of "Unused" are passed over without a word.
    EXPECT_EQ(takeBoxes(),
              QStringList{QStringLiteral(
                  "Are You Sure You Wish To Delete The Selected Plan|292|Confirm Plan Deletion")});
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_TRUE(exists(QStringLiteral("Old Barn/Ground Floor.pdr")));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 1);
}

TESSALY_DB_ENGINES(PlanRegister);

} // namespace
} // namespace tessaly::projects::test
