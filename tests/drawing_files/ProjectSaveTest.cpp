// Saving a plan into its project: SaveProjectOutputs with the differences of
// its six uses, the File menu's Open Project, Save and Save To Project As,
// and the trap that logs each failed step and goes on. The exports of the
// .pdf and .tiff belong to the output subsystem: where it is not joined the
// two steps fail as run-time error 438 and are logged like any failed step;
// a recording routine in their place shows what they are given.
#include "drawing_files/ProjectSave.h"
#include "MetafileTools.h"
#include "ProjectsFixture.h"
#include "TestErrors.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "projects/frmClientSites.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace tessaly::projects::test {
namespace {

const QString NoProject = QStringLiteral(
    "You have No Projects Open.\r\nIf you want add this drawing to a project, First save the drawing "
    "to your Hard Drive then go to the project/site In the project manager and import the drawing "
    "to the project.|64|Tessaly");

class ProjectSave : public ProjectsTest {
protected:
    int client = 0;
    int site = 0;
    QStringList exports; // what the recording exports were given

    // A project plan on the canvas: its site, its folder, one shape.
    void openPlan(const QString& description = QStringLiteral("Ground Floor")) {
        client = addClient(QStringLiteral("Harbour Homes"));
        site = addSite(client, QStringLiteral("Barn"), QStringLiteral("Old Barn"));
        addPlan(site, description);
        QDir().mkpath(storePath(QStringLiteral("Old Barn")));
        app->gPlanFileName = QStringLiteral("Old Barn\\") + description;
        app->gOpenSiteID = site;
        QVariantList box{1, 20, 20, 120, 80};
        app->gShapeList->call(QStringLiteral("AddShape"), box);
    }
    canvas::POLARDraw& canvas() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main().canvas1()); }
    // Routines in place of the output subsystem's exports: each notes its
    // arguments, and whether PrintTemp.emf is then the plan's .emf.
    void recordExports() {
        for (const char* name : {"ExportReportToPDF", "ExportReportToTIFF"}) {
            const QString kind = QString::fromLatin1(name).mid(14);
            app->routine(QString::fromLatin1(name), [this, kind](QVariantList& a) {
                const QString stem = storePath(QStringLiteral("Old Barn/Ground Floor"));
                const bool scratch = bytes(home.dir() + QStringLiteral("/PrintTemp.emf")) ==
                                     bytes(stem + QStringLiteral(".emf"));
                exports << QStringLiteral("%1 %2 %3 %4 %5")
                               .arg(kind, a.value(0).toString(), a.value(1).toString(),
                                    a.value(2).toBool() ? QStringLiteral("True") : QStringLiteral("False"),
                                    scratch ? QStringLiteral("scratch") : QStringLiteral("no-scratch"));
                return QVariant();
            });
        }
    }
    static QByteArray bytes(const QString& hostPath) {
        QFile f(hostPath);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QStringList planFiles() {
        return QDir(storePath(QStringLiteral("Old Barn"))).entryList(QDir::Files, QDir::Name);
    }
    QString logic(const char* relative) {
        return app->gFileStore + QStringLiteral("\\") + QLatin1String(relative);
    }
    // "number-message: description" of each log line, without its time.
    QStringList logged() {
        QStringList out;
        static const QRegularExpression stamp(QStringLiteral("^\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d-"));
        for (const QString& line : logLines()) {
            EXPECT_TRUE(stamp.match(line).hasMatch()) << line.toStdString();
            out << QString(line).remove(stamp);
        }
        return out;
    }
};

const QString MissingPdf =
    QStringLiteral("438-Error Generated In %1_Click Event: Object doesn't support this property or method: "
                   "Application.ExportReportToPDF-Tessaly");
const QString MissingTiff =
    QStringLiteral("438-Error Generated In %1_Click Event: Object doesn't support this property or method: "
                   "Application.ExportReportToTIFF-Tessaly");

TEST_P(ProjectSave, SaveWithNoPlanShowsTheTwoLineMessageAndWritesNothing) {
    menu("mnuFile_Save");
    EXPECT_EQ(takeBoxes(), QStringList{NoProject});
    EXPECT_EQ(QDir(home.fileStoreDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    EXPECT_FALSE(QFileInfo::exists(home.dir() + QStringLiteral("/PrintTemp.emf")));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, SaveWritesThePlansFilesAndLogsEachFailedStep) {
    openPlan();
    menu("mnuFile_Save");
    EXPECT_EQ(takeBoxes(), QStringList());
    EXPECT_EQ(planFiles(),
              (QStringList{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdr"),
                           QStringLiteral("Ground Floor.wmf")}));
    const QString stem = storePath(QStringLiteral("Old Barn/Ground Floor"));
    // The scratch metafile is a second copy of the plan's; the .wmf came after the .emf.
    EXPECT_EQ(bytes(home.dir() + QStringLiteral("/PrintTemp.emf")), bytes(stem + QStringLiteral(".emf")));
    EXPECT_GE(QFileInfo(stem + QStringLiteral(".wmf")).lastModified(),
              QFileInfo(stem + QStringLiteral(".emf")).lastModified());
    // Independent readers take the metafiles.
    EXPECT_FALSE(
        tessaly::test::emfToSvg(bytes(stem + QStringLiteral(".emf")), QStringLiteral("save.emf")).isEmpty());
    EXPECT_FALSE(
        tessaly::test::wmfToSvg(bytes(stem + QStringLiteral(".wmf")), QStringLiteral("save.wmf")).isEmpty());
    // The drawing reads back whole.
    auto reread = canvas::POLARDraw::create();
    reread->loadFile(stem + QStringLiteral(".pdr"));
    EXPECT_EQ(reread->drawing().shapes().size(), canvas().drawing().shapes().size());
    // Without the output subsystem the two exports fail: one line each, then the command goes on.
    EXPECT_EQ(logged(), (QStringList{MissingPdf.arg(QStringLiteral("mnuFile_Save")),
                                     MissingTiff.arg(QStringLiteral("mnuFile_Save"))}));
    EXPECT_FALSE(QFileInfo::exists(stem + QStringLiteral(".pdf")));
}

TEST_P(ProjectSave, TheExportsTakeTheLayoutOfThePagesOrientation) {
    openPlan();
    recordExports();
    const QString stem = logic("Old Barn\\Ground Floor");
    menu("mnuFile_Save");
    EXPECT_EQ(exports,
              (QStringList{QStringLiteral("PDF ExportOuputLandscape %1.pdf False scratch").arg(stem),
                           QStringLiteral("TIFF ExportOuputLandscape %1.tiff False scratch").arg(stem)}));
    exports.clear();
    canvas().page()->set(QStringLiteral("Landscape"), false);
    menu("mnuFile_Save");
    EXPECT_EQ(exports,
              (QStringList{QStringLiteral("PDF ExportOuputPortrate %1.pdf False scratch").arg(stem),
                           QStringLiteral("TIFF ExportOuputPortrate %1.tiff False scratch").arg(stem)}));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, TheUnloadAndTheColourCommandKeepAStaleMetafileForTheCanvasToOverwrite) {
    openPlan();
    recordExports();
    // A stale metafile whose name differs in case: deleting first leaves the
    // name the canvas writes; overwriting keeps the old name.
    QFile stale(storePath(QStringLiteral("Old Barn/Ground Floor.EMF")));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("stale");
    stale.close();
    app->dispatch([&] { app->planRoad.saveProjectOutputs(PlanSaveUse::Unload); });
    EXPECT_TRUE(planFiles().contains(QStringLiteral("Ground Floor.EMF")));
    EXPECT_FALSE(planFiles().contains(QStringLiteral("Ground Floor.emf")));
    EXPECT_NE(bytes(storePath(QStringLiteral("Old Barn/Ground Floor.EMF"))), QByteArray("stale"));
    EXPECT_EQ(exports.size(), 2);
    app->dispatch([&] { app->planRoad.saveProjectOutputs(PlanSaveUse::Save); });
    EXPECT_TRUE(planFiles().contains(QStringLiteral("Ground Floor.emf")));
    EXPECT_FALSE(planFiles().contains(QStringLiteral("Ground Floor.EMF")));
}

TEST_P(ProjectSave, TheColourCommandsSaveStopsAfterTheWmf) {
    openPlan();
    recordExports();
    app->dispatch([&] { app->planRoad.saveProjectOutputs(PlanSaveUse::Colour); });
    EXPECT_EQ(planFiles(),
              (QStringList{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdr"),
                           QStringLiteral("Ground Floor.wmf")}));
    EXPECT_FALSE(QFileInfo::exists(home.dir() + QStringLiteral("/PrintTemp.emf")));
    EXPECT_TRUE(exports.isEmpty());
}

TEST_P(ProjectSave, TheEmailAndUnloadUsesHaveNoTrap) {
    openPlan();
    // The first failure ends the save and reaches the caller: nothing is logged.
    const RuntimeError e = db::test::errorOf([&] { app->planRoad.saveProjectOutputs(PlanSaveUse::Email); });
    EXPECT_EQ(e.number(), 438);
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_TRUE(QFileInfo::exists(home.dir() + QStringLiteral("/PrintTemp.emf")));
    // The routine by name with no use runs the whole sequence with no trap too.
    QVariantList none;
    EXPECT_EQ(db::test::errorOf([&] { app->call(QStringLiteral("SaveProjectOutputs"), none); }).number(),
              438);
    QVariantList save{QStringLiteral("Save")};
    app->call(QStringLiteral("SaveProjectOutputs"), save);
    EXPECT_EQ(logLines().size(), 2);
    QVariantList unknown{QStringLiteral("Print")};
    EXPECT_EQ(db::test::errorOf([&] { app->call(QStringLiteral("SaveProjectOutputs"), unknown); }).number(),
              5);
}

TEST_P(ProjectSave, ClosingTheMainWindowSavesTheProjectPlanWithoutAQuestion) {
    openPlan();
    recordExports();
    app->dispatch([&] { app->unload(main()); });
    EXPECT_TRUE(app->ended());
    EXPECT_EQ(takeBoxes(), QStringList());
    EXPECT_EQ(planFiles(),
              (QStringList{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdr"),
                           QStringLiteral("Ground Floor.wmf")}));
    EXPECT_EQ(exports.size(), 2);
}

TEST_P(ProjectSave, OpenProjectSavesTheOpenPlanFirstThenShowsTheManager) {
    menu("mnuFile_OpenProject");
    ASSERT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(app->modalStack().back()->name(), QStringLiteral("frmClientSites"));
    EXPECT_EQ(QDir(home.fileStoreDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    click(manager().cmdClose);
    openPlan();
    menu("mnuFile_OpenProject");
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(planFiles().size(), 3);
    EXPECT_EQ(logged(), (QStringList{MissingPdf.arg(QStringLiteral("mnuFile_OpenProject")),
                                     MissingTiff.arg(QStringLiteral("mnuFile_OpenProject"))}));
    EXPECT_EQ(takeBoxes(), QStringList());
}

TEST_P(ProjectSave, SaveToProjectAsWithAFreeDrawingAsksNothing) {
    events.clear();
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(takeBoxes(), QStringList{NoProject});
    for (const QJsonObject& e : events)
        EXPECT_NE(e[QStringLiteral("event")].toString(), QStringLiteral("inputbox"));
}

TEST_P(ProjectSave, CancellingTheDescriptionChangesNothing) {
    openPlan();
    port.queueInput(std::nullopt);
    menu("mnuFile_SaveToProjectAs");
    port.queueInput(QString());
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 1);
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Ground Floor"));
    EXPECT_EQ(planFiles(), QStringList());
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, SaveToProjectAsFilesACopyAsANewPlanOfTheSite) {
    openPlan();
    menu("mnuFile_Save");
    const QByteArray oldPdr = bytes(storePath(QStringLiteral("Old Barn/Ground Floor.pdr")));
    const QString caption = main().caption();
    takeWaits();
    events.clear();
    port.queueInput(QStringLiteral("Ground Floor Copy"));
    menu("mnuFile_SaveToProjectAs");
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0][QStringLiteral("event")].toString(), QStringLiteral("inputbox"));
    EXPECT_EQ(events[0][QStringLiteral("prompt")].toString(),
              QStringLiteral("Please Enter A Discription For The Plan"));
    EXPECT_EQ(events[0][QStringLiteral("title")].toString(),
              QStringLiteral("Saving Drawing To Existing Project"));
    EXPECT_EQ(events[0][QStringLiteral("default")].toString(), QStringLiteral("New Plan"));
    const std::vector<int> waits = takeWaits();
    ASSERT_FALSE(waits.empty());
    EXPECT_EQ(waits.front(), 500);
    const QList<QVariantMap> r = rows(QStringLiteral("SELECT * FROM SitePlans ORDER BY PlanID"));
    ASSERT_EQ(r.size(), 2);
    EXPECT_EQ(r[1].value(QStringLiteral("SiteID")).toInt(), site);
    EXPECT_EQ(r[1].value(QStringLiteral("PlanDescription")).toString(), QStringLiteral("Ground Floor Copy"));
    EXPECT_EQ(r[1].value(QStringLiteral("ColourOutputCreated")).toInt(), 0);
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Ground Floor Copy"));
    EXPECT_EQ(main().caption(), caption);
    EXPECT_EQ(planFiles(),
              (QStringList{QStringLiteral("Ground Floor Copy.emf"), QStringLiteral("Ground Floor Copy.pdr"),
                           QStringLiteral("Ground Floor Copy.wmf"), QStringLiteral("Ground Floor.emf"),
                           QStringLiteral("Ground Floor.pdr"), QStringLiteral("Ground Floor.wmf")}));
    EXPECT_EQ(bytes(storePath(QStringLiteral("Old Barn/Ground Floor.pdr"))), oldPdr);
    EXPECT_EQ(bytes(storePath(QStringLiteral("Old Barn/Ground Floor Copy.pdr"))), oldPdr);
    EXPECT_EQ(logged().filter(QStringLiteral("mnuFile_SaveToProjectAs_Click")).size(), 2);
}

TEST_P(ProjectSave, ARepeatedDescriptionAddsARowAndOverwritesTheFiles) {
    openPlan();
    port.queueInput(QStringLiteral("Ground Floor"));
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans WHERE PlanDescription = 'Ground Floor'")).size(),
              2);
    EXPECT_EQ(planFiles().size(), 3);
}

TEST_P(ProjectSave, ASiteThatHasGoneLeavesTheNameAsItWas) {
    openPlan();
    execute(QStringLiteral("DELETE FROM Sites WHERE SiteID = %1").arg(site));
    port.queueInput(QStringLiteral("Orphan"));
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Ground Floor"));
    // The old plan's files are written again under the old name.
    EXPECT_TRUE(planFiles().contains(QStringLiteral("Ground Floor.pdr")));
    EXPECT_FALSE(planFiles().contains(QStringLiteral("Orphan.pdr")));
}

TEST_P(ProjectSave, ARemovedSiteFolderLogsEachFailedStep) {
    openPlan();
    QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
    menu("mnuFile_Save");
    const QString missing =
        QStringLiteral("76-Error Generated In mnuFile_Save_Click Event: Path not found-Tessaly");
    EXPECT_EQ(logged(), (QStringList{missing, missing, MissingPdf.arg(QStringLiteral("mnuFile_Save")),
                                     MissingTiff.arg(QStringLiteral("mnuFile_Save"))}));
    // The metafile conversion reports its own failure.
    const QStringList shown = takeBoxes();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_TRUE(shown[0].startsWith(QLatin1String("Error in ConvertEMFtoWMF Process- ")))
        << shown[0].toStdString();
    EXPECT_FALSE(QFileInfo::exists(storePath(QStringLiteral("Old Barn"))));
}

TEST_P(ProjectSave, NamesThatAFileCannotHoldFailInTheSaveStepsAndKeepEarlierFiles) {
    openPlan();
    menu("mnuFile_Save");
    const QStringList before = planFiles();
    QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
    // A slash: a folder that is not there.
    port.queueInput(QStringLiteral("Upper/Lower"));
    menu("mnuFile_SaveToProjectAs");
    QStringList lines = logged();
    EXPECT_EQ(
        lines
            .filter(QStringLiteral("76-Error Generated In mnuFile_SaveToProjectAs_Click Event: Path not "
                                   "found"))
            .size(),
        2);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans WHERE PlanDescription = 'Upper/Lower'")).size(),
              1);
    // 300 characters: longer than a file name may be.
    QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
    takeBoxes();
    port.queueInput(QString(300, QLatin1Char('p')));
    menu("mnuFile_SaveToProjectAs");
    lines = logged();
    EXPECT_EQ(
        lines
            .filter(QStringLiteral("52-Error Generated In mnuFile_SaveToProjectAs_Click Event: Bad file name "
                                   "or number"))
            .size(),
        2);
    EXPECT_EQ(planFiles(), before);
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans")).size(), 3);
}

TEST_P(ProjectSave, AQuoteInADescriptionIsStoredAsTyped) {
    openPlan();
    port.queueInput(QStringLiteral("Mary's Room'); DELETE FROM SitePlans; --"));
    menu("mnuFile_SaveToProjectAs");
    const QList<QVariantMap> r =
        rows(QStringLiteral("SELECT PlanDescription FROM SitePlans ORDER BY PlanID"));
    ASSERT_EQ(r.size(), 2);
    EXPECT_EQ(r[1].value(QStringLiteral("PlanDescription")).toString(),
              QStringLiteral("Mary's Room'); DELETE FROM SitePlans; --"));
    EXPECT_TRUE(planFiles().contains(QStringLiteral("Mary's Room'); DELETE FROM SitePlans; --.pdr")));
}

TESSALY_DB_ENGINES(ProjectSave);

} // namespace
} // namespace tessaly::projects::test
