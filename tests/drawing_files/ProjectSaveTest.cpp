// Saving a plan into its project: SaveProjectOutputs with the differences of
// its six uses, the File menu's Open Project, Save and Save To Project As,
// and the trap that logs each failed step and goes on. A saved plan's folder
// holds the .pdr, .emf, .wmf, .pdf and .tiff: the metafiles are read by
// libemf2svg and libwmf, the PDF by pdfinfo and qpdf, the TIFF by tiffinfo.
#include "drawing_files/ProjectSave.h"
#include "ExportTools.h"
#include "MetafileTools.h"
#include "ProjectsFixture.h"
#include "TestErrors.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "output/modReportExport.h"
#include "projects/frmClientSites.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tessaly::projects::test {
namespace {

using tessaly::test::darkBounds;
using tessaly::test::pdfInfo;
using tessaly::test::pdfPage;
using tessaly::test::qpdfCheck;
using tessaly::test::tiffInfo;
using tessaly::test::tiffPageCount;

const QString NoProject = QStringLiteral(
    "You have No Projects Open.\r\nIf you want add this drawing to a project, First save the drawing "
    "to your Hard Drive then go to the project/site In the project manager and import the drawing "
    "to the project.|64|Tessaly");
const QString PdfInUse = output::PdfInUseMessage + QStringLiteral("|64|Tessaly");

// A US Letter page as pdfinfo names it, lying as each layout lays it.
const QString LandscapeLetter = QStringLiteral("792 x 612 pts (letter)");
const QString PortraitLetter = QStringLiteral("612 x 792 pts (letter)");
// The same page at the TIFF's 300 dots to the inch, as tiffinfo names it.
const QString LandscapeTiff = QStringLiteral("Image Width: 3300 Image Length: 2550");
const QString PortraitTiff = QStringLiteral("Image Width: 2550 Image Length: 3300");
// The plan's one shape, a rectangle of 100 by 60 mm.
constexpr double ShapeAspect = 100.0 / 60.0;
constexpr int RenderDpi = 72; // pdftoppm's resolution for the ink check

const QStringList FiveFiles{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdf"),
                            QStringLiteral("Ground Floor.pdr"), QStringLiteral("Ground Floor.tiff"),
                            QStringLiteral("Ground Floor.wmf")};
const QStringList ThreeFiles{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.pdr"),
                             QStringLiteral("Ground Floor.wmf")};

class ProjectSave : public ProjectsTest {
protected:
    int client = 0;
    int site = 0;

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
    static QByteArray bytes(const QString& hostPath) {
        QFile f(hostPath);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // The files of the site's folder, in the order of their names' bytes.
    QStringList planFiles() {
        QStringList names = QDir(storePath(QStringLiteral("Old Barn"))).entryList(QDir::Files);
        names.sort(Qt::CaseSensitive);
        return names;
    }
    QString stem() const { return storePath(QStringLiteral("Old Barn/Ground Floor")); }
    QString printTemp() const { return home.dir() + QStringLiteral("/PrintTemp.emf"); }
    // "number-message: description-source" of each log line, without its time.
    QStringList logged() {
        QStringList out;
        static const QRegularExpression stamp(QStringLiteral("^\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d-"));
        for (const QString& line : logLines()) {
            EXPECT_TRUE(stamp.match(line).hasMatch()) << line.toStdString();
            out << QString(line).remove(stamp);
        }
        return out;
    }
    // The lines a save logs for a plan whose site folder is gone: the .pdr
    // and the .emf cannot be written, and the TIFF export passes its 7001
    // on; the PDF export shows its own message for the 7001 and goes on.
    QStringList missingFolderLines(const QString& command) const {
        const QString message = QStringLiteral("Error Generated In %1 Event: ").arg(command);
        const QString missing = QStringLiteral("76-") + message + QStringLiteral("Path not found-Tessaly");
        return {missing, missing,
                QStringLiteral("7001-") + message +
                    QStringLiteral("%1.tiff cannot be written: the folder %2 does not exist-Tessaly")
                        .arg(stem(), storePath(QStringLiteral("Old Barn")))};
    }
    // The boxes a save shows for a plan whose site folder is gone: the
    // conversion's own failure, then the PDF's in-use message; the scratch
    // copy in the home is written all the same.
    void expectMissingFolderBoxes() {
        const QStringList shown = takeBoxes();
        ASSERT_EQ(shown.size(), 2);
        EXPECT_TRUE(shown[0].startsWith(QLatin1String("Error in ConvertEMFtoWMF Process- ")))
            << shown[0].toStdString();
        EXPECT_EQ(shown[1], PdfInUse);
        EXPECT_TRUE(QFileInfo::exists(printTemp()));
    }
    // One page of US Letter as the layout lays it, sound by qpdf, showing
    // the plan's rectangle in its proportions.
    void expectPdf(const QString& file, const QString& pageSize) {
        SCOPED_TRACE(file.toStdString());
        const QMap<QString, QString> info = pdfInfo(file);
        EXPECT_EQ(info.value(QStringLiteral("Pages")), QStringLiteral("1"));
        EXPECT_EQ(info.value(QStringLiteral("Page size")), pageSize);
        QString report;
        EXPECT_TRUE(qpdfCheck(file, &report)) << report.toStdString();
        const QRect ink = darkBounds(pdfPage(file, RenderDpi));
        ASSERT_FALSE(ink.isEmpty());
        EXPECT_NEAR(static_cast<double>(ink.width()) / ink.height(), ShapeAspect, 0.05);
    }
    void expectTiff(const QString& file, const QString& size) {
        SCOPED_TRACE(file.toStdString());
        EXPECT_EQ(tiffPageCount(file), 1);
        const QString info = tiffInfo(file);
        EXPECT_TRUE(info.contains(size)) << info.toStdString();
    }
    // The outputs of a whole save of a landscape plan, and the scratch copy.
    void expectSavedPlan(const QString& planStem) {
        expectPdf(planStem + QStringLiteral(".pdf"), LandscapeLetter);
        expectTiff(planStem + QStringLiteral(".tiff"), LandscapeTiff);
        EXPECT_EQ(bytes(printTemp()), bytes(planStem + QStringLiteral(".emf")));
    }
    output::modReportExport& exports() { return output::reportExportModule(*app); }
};

TEST_P(ProjectSave, SaveWithNoPlanShowsTheTwoLineMessageAndWritesNothing) {
    menu("mnuFile_Save");
    EXPECT_EQ(takeBoxes(), QStringList{NoProject});
    EXPECT_EQ(QDir(home.fileStoreDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    EXPECT_FALSE(QFileInfo::exists(printTemp()));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, SaveWritesThePlansFiveFilesAndTheScratchCopy) {
    openPlan();
    menu("mnuFile_Save");
    EXPECT_EQ(takeBoxes(), QStringList());
    EXPECT_EQ(planFiles(), FiveFiles);
    EXPECT_TRUE(logLines().isEmpty());
    // The scratch metafile is a second copy of the plan's; the .wmf came after the .emf.
    EXPECT_EQ(bytes(printTemp()), bytes(stem() + QStringLiteral(".emf")));
    EXPECT_GE(QFileInfo(stem() + QStringLiteral(".wmf")).lastModified(),
              QFileInfo(stem() + QStringLiteral(".emf")).lastModified());
    // Independent readers take the metafiles.
    EXPECT_FALSE(tessaly::test::emfToSvg(bytes(stem() + QStringLiteral(".emf")), QStringLiteral("save.emf"))
                     .isEmpty());
    EXPECT_FALSE(tessaly::test::wmfToSvg(bytes(stem() + QStringLiteral(".wmf")), QStringLiteral("save.wmf"))
                     .isEmpty());
    // The page went through the landscape layout into a one-page PDF and TIFF.
    expectPdf(stem() + QStringLiteral(".pdf"), LandscapeLetter);
    expectTiff(stem() + QStringLiteral(".tiff"), LandscapeTiff);
    // Each export unloaded its layout.
    EXPECT_EQ(exports().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);
    EXPECT_EQ(exports().loadedLayout(QStringLiteral("ExportOuputPortrate")), nullptr);
    // The drawing reads back whole.
    auto reread = canvas::POLARDraw::create();
    reread->loadFile(stem() + QStringLiteral(".pdr"));
    EXPECT_EQ(reread->drawing().shapes().size(), canvas().drawing().shapes().size());
}

TEST_P(ProjectSave, TheExportsTakeTheLayoutOfThePagesOrientation) {
    openPlan();
    menu("mnuFile_Save");
    expectPdf(stem() + QStringLiteral(".pdf"), LandscapeLetter);
    expectTiff(stem() + QStringLiteral(".tiff"), LandscapeTiff);
    // The flag alone chooses: the page keeps its landscape size and still
    // goes through the portrait layout.
    canvas().page()->set(QStringLiteral("Landscape"), false);
    menu("mnuFile_Save");
    expectPdf(stem() + QStringLiteral(".pdf"), PortraitLetter);
    expectTiff(stem() + QStringLiteral(".tiff"), PortraitTiff);
    EXPECT_EQ(bytes(printTemp()), bytes(stem() + QStringLiteral(".emf")));
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_EQ(takeBoxes(), QStringList());
}

// The table of the uses: whether the old .emf is deleted before the canvas
// writes it, whether the scratch copy, the PDF and the TIFF follow, and
// whether a failed step is logged with the command's message or goes to the
// caller.
struct Use {
    PlanSaveUse use;
    const char* name;
    const char* trappedBy; // the command whose message the log carries; null: no trap
    bool deletesEmf;
    bool exportsReports;
};
const Use Uses[] = {
    {PlanSaveUse::Save, "Save", "mnuFile_Save_Click", true, true},
    {PlanSaveUse::OpenProject, "OpenProject", "mnuFile_OpenProject_Click", true, true},
    {PlanSaveUse::SaveToProjectAs, "SaveToProjectAs", "mnuFile_SaveToProjectAs_Click", true, true},
    {PlanSaveUse::Email, "Email", nullptr, true, true},
    {PlanSaveUse::Unload, "Unload", nullptr, false, true},
    {PlanSaveUse::Colour, "Colour", nullptr, false, false},
};

TEST_P(ProjectSave, EachUseDiffersAsItsRowSays) {
    openPlan();
    for (const Use& u : Uses) {
        SCOPED_TRACE(u.name);
        QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
        ASSERT_TRUE(QDir().mkpath(storePath(QStringLiteral("Old Barn"))));
        QFile::remove(printTemp());
        QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
        // A stale metafile whose name differs in case: deleting it first
        // leaves the name the canvas writes; overwriting keeps the old name.
        QFile stale(storePath(QStringLiteral("Old Barn/Ground Floor.EMF")));
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
        stale.write("stale");
        stale.close();
        app->dispatch([&] { app->planRoad.saveProjectOutputs(u.use); });
        EXPECT_EQ(takeBoxes(), QStringList());
        EXPECT_TRUE(logLines().isEmpty());
        const QString emfName =
            u.deletesEmf ? QStringLiteral("Ground Floor.emf") : QStringLiteral("Ground Floor.EMF");
        QStringList expected = u.exportsReports ? FiveFiles : ThreeFiles;
        expected.replace(0, emfName);
        expected.sort(Qt::CaseSensitive);
        EXPECT_EQ(planFiles(), expected);
        const QByteArray emf = bytes(storePath(QStringLiteral("Old Barn/") + emfName));
        EXPECT_NE(emf, QByteArray("stale"));
        EXPECT_FALSE(tessaly::test::emfToSvg(emf, QStringLiteral("use.emf")).isEmpty());
        if (u.exportsReports) {
            EXPECT_EQ(bytes(printTemp()), emf);
            expectPdf(stem() + QStringLiteral(".pdf"), LandscapeLetter);
            expectTiff(stem() + QStringLiteral(".tiff"), LandscapeTiff);
        } else {
            EXPECT_FALSE(QFileInfo::exists(printTemp()));
        }

        // With the site folder gone, the first step fails.
        QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
        QFile::remove(printTemp());
        if (u.trappedBy) {
            // Each failure is logged and the next step runs.
            EXPECT_NO_THROW(app->planRoad.saveProjectOutputs(u.use));
            EXPECT_EQ(logged(), missingFolderLines(QString::fromLatin1(u.trappedBy)));
            expectMissingFolderBoxes();
        } else {
            // The failure ends the save and goes to the caller: nothing is logged, nothing follows.
            const RuntimeError e = db::test::errorOf([&] { app->planRoad.saveProjectOutputs(u.use); });
            EXPECT_EQ(e.number(), 76);
            EXPECT_TRUE(logLines().isEmpty());
            EXPECT_EQ(takeBoxes(), QStringList());
            EXPECT_FALSE(QFileInfo::exists(printTemp()));
        }
        EXPECT_FALSE(QFileInfo::exists(storePath(QStringLiteral("Old Barn"))));
    }
}

TEST_P(ProjectSave, TheRoutineByNameRunsTheUseItIsGiven) {
    openPlan();
    QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
    // With no use named, the whole sequence with no trap.
    QVariantList none;
    EXPECT_EQ(db::test::errorOf([&] { app->call(QStringLiteral("SaveProjectOutputs"), none); }).number(), 76);
    EXPECT_TRUE(logLines().isEmpty());
    QVariantList save{QStringLiteral("Save")};
    app->call(QStringLiteral("SaveProjectOutputs"), save);
    EXPECT_EQ(logged(), missingFolderLines(QStringLiteral("mnuFile_Save_Click")));
    QVariantList unknown{QStringLiteral("Print")};
    EXPECT_EQ(db::test::errorOf([&] { app->call(QStringLiteral("SaveProjectOutputs"), unknown); }).number(),
              5);
    // With the folder back, the named use writes the plan's five files.
    ASSERT_TRUE(QDir().mkpath(storePath(QStringLiteral("Old Barn"))));
    QVariantList email{QStringLiteral("Email")};
    app->call(QStringLiteral("SaveProjectOutputs"), email);
    EXPECT_EQ(planFiles(), FiveFiles);
    expectSavedPlan(stem());
}

TEST_P(ProjectSave, ClosingTheMainWindowSavesTheProjectPlanWithoutAQuestion) {
    openPlan();
    app->dispatch([&] { app->unload(main()); });
    EXPECT_TRUE(app->ended());
    EXPECT_EQ(takeBoxes(), QStringList());
    EXPECT_EQ(planFiles(), FiveFiles);
    expectSavedPlan(stem());
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, ClosingWithTheSiteFolderGoneShowsTheRunTimeErrorAndEnds) {
    openPlan();
    QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
    app->dispatch([&] { app->unload(main()); });
    // The unload's save has no trap: its first failure is the default error box.
    EXPECT_EQ(takeBoxes(), QStringList{QStringLiteral("Run-time error '76':\n\nPath not found|16|Tessaly")});
    EXPECT_TRUE(app->ended());
    EXPECT_FALSE(isLoaded("frmMain"));
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(printTemp()));
    EXPECT_FALSE(QFileInfo::exists(storePath(QStringLiteral("Old Barn"))));
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
    EXPECT_EQ(planFiles(), FiveFiles);
    expectSavedPlan(stem());
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_EQ(takeBoxes(), QStringList());
}

TEST_P(ProjectSave, OpenProjectWithTheSiteFolderGoneLogsAndStillShowsTheManager) {
    openPlan();
    QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
    menu("mnuFile_OpenProject");
    EXPECT_EQ(logged(), missingFolderLines(QStringLiteral("mnuFile_OpenProject_Click")));
    EXPECT_TRUE(isLoaded("frmClientSites"));
    EXPECT_EQ(app->modalStack().back()->name(), QStringLiteral("frmClientSites"));
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
    const QByteArray oldPdf = bytes(storePath(QStringLiteral("Old Barn/Ground Floor.pdf")));
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
    QStringList both = FiveFiles;
    for (const QString& name : FiveFiles)
        both << QString(name).replace(QStringLiteral("Ground Floor"), QStringLiteral("Ground Floor Copy"));
    both.sort(Qt::CaseSensitive);
    EXPECT_EQ(planFiles(), both);
    // A copy: the old plan's files stay as they were, beside the new ones.
    EXPECT_EQ(bytes(storePath(QStringLiteral("Old Barn/Ground Floor.pdr"))), oldPdr);
    EXPECT_EQ(bytes(storePath(QStringLiteral("Old Barn/Ground Floor.pdf"))), oldPdf);
    EXPECT_EQ(bytes(storePath(QStringLiteral("Old Barn/Ground Floor Copy.pdr"))), oldPdr);
    expectSavedPlan(storePath(QStringLiteral("Old Barn/Ground Floor Copy")));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_P(ProjectSave, ARepeatedDescriptionAddsARowAndOverwritesTheFiles) {
    openPlan();
    port.queueInput(QStringLiteral("Ground Floor"));
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans WHERE PlanDescription = 'Ground Floor'")).size(),
              2);
    EXPECT_EQ(planFiles(), FiveFiles);
    expectSavedPlan(stem());
}

TEST_P(ProjectSave, ASiteThatHasGoneLeavesTheNameAsItWas) {
    openPlan();
    execute(QStringLiteral("DELETE FROM Sites WHERE SiteID = %1").arg(site));
    port.queueInput(QStringLiteral("Orphan"));
    menu("mnuFile_SaveToProjectAs");
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Old Barn\\Ground Floor"));
    // The old plan's files are written again under the old name.
    EXPECT_EQ(planFiles(), FiveFiles);
}

TEST_P(ProjectSave, ARemovedSiteFolderLogsEachFailedStep) {
    openPlan();
    QDir(storePath(QStringLiteral("Old Barn"))).removeRecursively();
    menu("mnuFile_Save");
    // The .pdr and the .emf fail with error 76 and are logged; the
    // conversion reports its own failure; the scratch copy in the home is
    // written; the PDF export meets error 7001, shows its message and goes
    // on; the TIFF export passes its 7001 to the trap, which logs it.
    EXPECT_EQ(logged(), missingFolderLines(QStringLiteral("mnuFile_Save_Click")));
    expectMissingFolderBoxes();
    EXPECT_FALSE(QFileInfo::exists(storePath(QStringLiteral("Old Barn"))));
    // The TIFF export ended at its fault, before it unloaded its layout.
    EXPECT_NE(exports().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);

    // With the folder back, the next save shows the drawing as it is now:
    // the layout left loaded loads the new scratch copy when it runs.
    ASSERT_TRUE(QDir().mkpath(storePath(QStringLiteral("Old Barn"))));
    QVariantList wider{1, 20, 20, 220, 80};
    app->gShapeList->call(QStringLiteral("AddShape"), wider);
    QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
    menu("mnuFile_Save");
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_EQ(takeBoxes(), QStringList());
    EXPECT_EQ(planFiles(), FiveFiles);
    const QString pdf = stem() + QStringLiteral(".pdf");
    EXPECT_EQ(pdfInfo(pdf).value(QStringLiteral("Page size")), LandscapeLetter);
    const QRect ink = darkBounds(pdfPage(pdf, RenderDpi));
    ASSERT_FALSE(ink.isEmpty());
    EXPECT_NEAR(static_cast<double>(ink.width()) / ink.height(), 200.0 / 60.0, 0.1);
    EXPECT_EQ(exports().loadedLayout(QStringLiteral("ExportOuputLandscape")), nullptr);
}

TEST_P(ProjectSave, APdfHeldByAViewerCostsOneMessageAndTheSaveGoesOn) {
    openPlan();
    menu("mnuFile_Save");
    const QString pdf = stem() + QStringLiteral(".pdf");
    const QByteArray shown = bytes(pdf);
    ASSERT_FALSE(shown.isEmpty());
    QFile::remove(stem() + QStringLiteral(".tiff"));
    const int fd = ::open(QFile::encodeName(pdf).constData(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_SH), 0);
    QVariantList more{1, 150, 100, 250, 180};
    app->gShapeList->call(QStringLiteral("AddShape"), more);
    menu("mnuFile_Save");
    ::close(fd);
    EXPECT_EQ(takeBoxes(), QStringList{PdfInUse});
    EXPECT_TRUE(logLines().isEmpty());
    // The held PDF is as it was; the TIFF after it is written.
    EXPECT_EQ(bytes(pdf), shown);
    expectTiff(stem() + QStringLiteral(".tiff"), LandscapeTiff);
    EXPECT_EQ(bytes(printTemp()), bytes(stem() + QStringLiteral(".emf")));
}

TEST_P(ProjectSave, NamesThatAFileCannotHoldFailInTheSaveStepsAndKeepEarlierFiles) {
    openPlan();
    menu("mnuFile_Save");
    const QStringList before = planFiles();
    QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
    // A slash: a folder that is not there.
    port.queueInput(QStringLiteral("Upper/Lower"));
    menu("mnuFile_SaveToProjectAs");
    const QString message = QStringLiteral("Error Generated In mnuFile_SaveToProjectAs_Click Event: ");
    const QString missing = QStringLiteral("76-") + message + QStringLiteral("Path not found-Tessaly");
    EXPECT_EQ(logged(), (QStringList{missing, missing,
                                     QStringLiteral("7001-") + message +
                                         QStringLiteral("%1.tiff cannot be written: the folder %2 does not "
                                                        "exist-Tessaly")
                                             .arg(storePath(QStringLiteral("Old Barn/Upper/Lower")),
                                                  storePath(QStringLiteral("Old Barn/Upper")))}));
    EXPECT_EQ(rows(QStringLiteral("SELECT * FROM SitePlans WHERE PlanDescription = 'Upper/Lower'")).size(),
              1);
    // 300 characters: longer than a file name may be.
    QFile::remove(home.dir() + QStringLiteral("/ErrorLog.Log"));
    takeBoxes();
    const QString tooLong(300, QLatin1Char('p'));
    port.queueInput(tooLong);
    menu("mnuFile_SaveToProjectAs");
    const QStringList lines = logged();
    const QString bad = QStringLiteral("52-") + message + QStringLiteral("Bad file name or number-Tessaly");
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], bad);
    EXPECT_EQ(lines[1], bad);
    EXPECT_TRUE(
        lines[2].startsWith(QStringLiteral("7001-") + message +
                            storePath(QStringLiteral("Old Barn/") + tooLong + QStringLiteral(".tiff")) +
                            QStringLiteral(" cannot be written: ")))
        << lines[2].toStdString();
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
    EXPECT_TRUE(planFiles().contains(QStringLiteral("Mary's Room'); DELETE FROM SitePlans; --.pdf")));
}

TESSALY_DB_ENGINES(ProjectSave);

} // namespace
} // namespace tessaly::projects::test
