// New, Open, Save As and Exit on the main window: their steps and texts, the
// title, the plan state and the modified flag, and what a damaged file or a
// failing disk does to the drawing on screen and to the file on disk.
#include "drawing_files/FileCommands.h"
#include "DrawingFilesFixture.h"
#include "drawing_files/AutoBackup.h"

#include <QFileInfo>
#include <csignal>
#include <sys/resource.h>

namespace tessaly::testing {
namespace {

const QString CanvasError = QStringLiteral("msgbox:Run-time error '30001':");
const QString ExitQuestion = QStringLiteral("Your Drawings Has Changed, Do You Wish To Save Your Changes?");

class FileCommands : public DrawingFilesFixture {
protected:
    // A drawing of `shapes` rectangles with the scale tag `tag`, saved at `name`.
    QString savedDrawing(const QString& name, int shapes, const QString& tag) {
        click("mnuFile_New");
        for (int i = 0; i < shapes; ++i)
            addRectangle(10 + i % 100, 10 + i % 50, 20 + i % 100, 20 + i % 50);
        engine().setDrawingTag(tag);
        engine().saveFile(path(name), drawing_files::PdrFormat);
        return path(name);
    }
    bool sawEventStartingWith(const QString& start) const {
        for (const QString& e : events)
            if (e.startsWith(start))
                return true;
        return false;
    }
};

TEST_F(FileCommands, TheMenuEntriesHaveTheirCaptions) {
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_NonProject")).caption(), QStringLiteral("Non Project"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_New")).caption(), QStringLiteral("&New Blank Drawing"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_Open")).caption(), QStringLiteral("&Open Drawing"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_SaveAs")).caption(), QStringLiteral("Sa&ve As"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFiile_Projects")).caption(), QStringLiteral("Project Files"));
    EXPECT_EQ(main.control(QStringLiteral("mnuFile_Exit")).caption(), QStringLiteral("E&xit"));
    for (const char* entry : {"mnuFile_New", "mnuFile_Open", "mnuFile_SaveAs"})
        EXPECT_EQ(main.control(QString::fromLatin1(entry)).parentMenu(),
                  main.find(QStringLiteral("mnuFile_NonProject")));
}

TEST_F(FileCommands, NewReplacesAChangedDrawingWithoutAQuestion) {
    addRectangle(10, 10, 30, 30);
    app->gPlanFileName = QStringLiteral("12 High Street\\Ground Floor");
    app->gOpenSiteID = 12;
    app->gBackupTicks = 120;
    main.setCaption(QStringLiteral("Tessaly - 12 High Street\\Ground Floor"));
    ASSERT_TRUE(engine().modified());
    events.clear();
    click("mnuFile_New");
    EXPECT_EQ(shapeCount(), 0);
    EXPECT_TRUE(events.isEmpty()) << events.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_EQ(app->gOpenSiteID, 0);
    EXPECT_EQ(app->gBackupTicks, 0);
    EXPECT_TRUE(main.Timer1.enabled());
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - Untitled Drawing"));
}

TEST_F(FileCommands, NewDoesNotReadTheScaleOfTheBlankDrawing) {
    main.SetScale(QStringLiteral("200"));
    ASSERT_EQ(main.ScaleValue, 200);
    click("mnuFile_New");
    EXPECT_EQ(main.ScaleValue, 200);
}

TEST_F(FileCommands, WithBackupsOffNewAndOpenLeaveTheTimerAlone) {
    click("mnuFileAutoBackup");
    ASSERT_FALSE(main.Timer1.enabled());
    app->gBackupTicks = 42;
    click("mnuFile_New");
    port.queueOpen(std::nullopt);
    click("mnuFile_Open");
    EXPECT_FALSE(main.Timer1.enabled());
    EXPECT_EQ(app->gBackupTicks, 42);
    EXPECT_EQ(main.SB1.panelText(drawing_files::BackupPanel), QStringLiteral("OFF"));
}

TEST_F(FileCommands, AMissingBlankDrawingFailsAsTheCanvasFails) {
    QFile::remove(path(QStringLiteral("Templates/Default.pdr")));
    main.setCaption(QStringLiteral("Tessaly - Before.pdr"));
    app->gPlanFileName = QStringLiteral("Site\\Plan");
    addRectangle(10, 10, 30, 30);
    events.clear();
    click("mnuFile_New");
    // The canvas's own box, then the dispatcher's: the steps after the load did not run.
    ASSERT_EQ(events.size(), 2);
    EXPECT_TRUE(events[0].startsWith(QStringLiteral("msgbox:The drawing file "))) << events[0].toStdString();
    EXPECT_TRUE(events[1].startsWith(CanvasError));
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_EQ(shapeCount(), 1);
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - Before.pdr"));
}

TEST_F(FileCommands, OpenLoadsTheFileAppliesItsScaleAndNamesItInTheTitle) {
    const QString file = savedDrawing(QStringLiteral("House.pdr"), 3, QStringLiteral("100"));
    click("mnuFile_New");
    app->gPlanFileName = QStringLiteral("Site\\Plan");
    app->gOpenSiteID = 4;
    addRectangle(1, 1, 2, 2);
    port.queueOpen(file);
    events.clear();
    click("mnuFile_Open");
    ASSERT_FALSE(events.isEmpty());
    EXPECT_EQ(events[0], QStringLiteral("open:Polar Draw Files (*.pdr)|*.pdr|All Files (*.*)|*.*"));
    EXPECT_EQ(shapeCount(), 3);
    EXPECT_EQ(main.ScaleValue, 100);
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_EQ(app->gOpenSiteID, 0);
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - ") + file);
}

TEST_F(FileCommands, ACancelledOpenLeavesThePlanKeepsTheDrawingAndStillReadsItsScale) {
    app->gPlanFileName = QStringLiteral("12 High Street\\Ground Floor");
    app->gOpenSiteID = 12;
    addRectangle(10, 10, 30, 30);
    engine().setDrawingTag(QStringLiteral("200"));
    port.queueOpen(std::nullopt);
    click("mnuFile_Open");
    EXPECT_EQ(shapeCount(), 1);
    EXPECT_EQ(app->gPlanFileName, QString());
    EXPECT_EQ(app->gOpenSiteID, 0);
    EXPECT_EQ(main.ScaleValue, 200);
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - "));
}

// A damaged, empty or truncated drawing chosen in Open: the canvas's error
// 30001, and the drawing on screen stays as it was, shape for shape.
TEST_F(FileCommands, ADamagedEmptyOrTruncatedFileLeavesTheDrawingOnScreen) {
    const QString good = savedDrawing(QStringLiteral("Good.pdr"), 40, QStringLiteral("50"));
    const QByteArray bytes = bytesOf(good);
    ASSERT_GT(bytes.size(), 400);
    QByteArray damaged = bytes;
    damaged[bytes.size() / 2] = static_cast<char>(damaged[bytes.size() / 2] ^ 0x5A);
    write(path(QStringLiteral("Damaged.pdr")), damaged);
    write(path(QStringLiteral("Empty.pdr")), QByteArray());
    write(path(QStringLiteral("Truncated.pdr")), bytes.left(bytes.size() / 2));
    write(path(QStringLiteral("Text.pdr")), QByteArrayLiteral("not a drawing at all\n"));

    click("mnuFile_New");
    addRectangle(5, 5, 50, 40);
    addRectangle(60, 5, 90, 40);
    main.setCaption(QStringLiteral("Tessaly - Before.pdr"));
    const QVariantList before = engine().describeShapes();
    for (const char* name : {"Damaged.pdr", "Empty.pdr", "Truncated.pdr", "Text.pdr"}) {
        SCOPED_TRACE(name);
        app->gPlanFileName = QStringLiteral("Site\\Plan");
        port.queueOpen(path(QString::fromLatin1(name)));
        events.clear();
        click("mnuFile_Open");
        ASSERT_EQ(events.size(), 3) << events.join(QLatin1Char('|')).toStdString();
        EXPECT_TRUE(events[1].startsWith(QStringLiteral("msgbox:"))) << events[1].toStdString();
        EXPECT_TRUE(events[2].startsWith(CanvasError)) << events[2].toStdString();
        EXPECT_EQ(engine().describeShapes(), before);
        // The plan was left before the dialog; the steps after the load did not run.
        EXPECT_EQ(app->gPlanFileName, QString());
        EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - Before.pdr"));
    }
}

TEST_F(FileCommands, SaveAsWritesTheDrawingAndLeavesPlanAndTitle) {
    addRectangle(10, 10, 30, 30);
    app->gPlanFileName = QStringLiteral("Site\\Plan");
    app->gOpenSiteID = 3;
    main.setCaption(QStringLiteral("Tessaly - Site\\Plan"));
    port.queueSave(path(QStringLiteral("Copy.pdr")));
    events.clear();
    click("mnuFile_SaveAs");
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0], QStringLiteral("save:Polar Draw Files (*.pdr)|*.pdr|All Files (*.*)|*.*"));
    EXPECT_TRUE(bytesOf(path(QStringLiteral("Copy.pdr"))).startsWith("TESSPDR\x1A"));
    EXPECT_FALSE(engine().modified());
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Site\\Plan"));
    EXPECT_EQ(app->gOpenSiteID, 3);
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - Site\\Plan"));
    // The file holds the drawing.
    click("mnuFile_New");
    port.queueOpen(path(QStringLiteral("Copy.pdr")));
    click("mnuFile_Open");
    EXPECT_EQ(shapeCount(), 1);
}

TEST_F(FileCommands, ACancelledSaveAsCountsTheDrawingAsUnchanged) {
    addRectangle(10, 10, 30, 30);
    ASSERT_TRUE(engine().modified());
    const QStringList before = QDir(dir.path()).entryList(QDir::Files);
    port.queueSave(std::nullopt);
    click("mnuFile_SaveAs");
    EXPECT_FALSE(engine().modified());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), before);
}

TEST_F(FileCommands, SaveAsIntoAFolderThatCannotBeWrittenLeavesTheEarlierFileWhole) {
    const QString earlier = savedDrawing(QStringLiteral("Plan.pdr"), 2, QStringLiteral("50"));
    const QByteArray earlierBytes = bytesOf(earlier);
    addRectangle(1, 1, 9, 9);
    // A path through a file: its folder cannot be made or written.
    port.queueSave(earlier + QStringLiteral("/Inside.pdr"));
    events.clear();
    click("mnuFile_SaveAs");
    ASSERT_EQ(events.size(), 2);
    EXPECT_TRUE(events[1].startsWith(QStringLiteral("msgbox:The drawing file "))) << events[1].toStdString();
    EXPECT_EQ(bytesOf(earlier), earlierBytes);
    EXPECT_FALSE(engine().modified());
    EXPECT_EQ(shapeCount(), 3);
}

// A disk that fills up part way through the write: the file size limit of the
// process stops the write after a few kilobytes, as a full disk would. The
// earlier drawing at that path stays whole and no temporary file is left.
TEST_F(FileCommands, SaveAsOntoAFullDiskLeavesTheEarlierFileWhole) {
    const QString target = savedDrawing(QStringLiteral("Full.pdr"), 1, QStringLiteral("50"));
    const QByteArray earlierBytes = bytesOf(target);
    for (int i = 0; i < 3000; ++i)
        addRectangle(i % 200, i % 150, i % 200 + 5, i % 150 + 5);
    constexpr rlim_t DiskRoom = 16 * 1024; // bytes the "disk" takes before it is full
    ASSERT_GT(earlierBytes.size(), 0);
    ASSERT_LT(static_cast<rlim_t>(earlierBytes.size()), DiskRoom);
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto oldSignal = std::signal(SIGXFSZ, SIG_IGN);
    rlimit room{DiskRoom, old.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &room), 0);
    port.queueSave(target);
    events.clear();
    click("mnuFile_SaveAs");
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldSignal);
    ASSERT_EQ(events.size(), 2) << events.join(QLatin1Char('|')).toStdString();
    EXPECT_TRUE(events[1].startsWith(QStringLiteral("msgbox:The drawing file "))) << events[1].toStdString();
    EXPECT_EQ(bytesOf(target), earlierBytes);
    const QStringList left = QDir(dir.path()).entryList(QDir::Files);
    for (const QString& name : left)
        EXPECT_TRUE(name == QLatin1String("Full.pdr") || !name.startsWith(QLatin1String("Full.pdr")))
            << name.toStdString();
    // The drawing on screen is whole, and a save with room succeeds.
    EXPECT_EQ(shapeCount(), 3001);
    port.queueSave(target);
    click("mnuFile_SaveAs");
    EXPECT_GT(bytesOf(target).size(), static_cast<qsizetype>(DiskRoom));
}

TEST_F(FileCommands, ExitOnAChangedFreeDrawingAsksYesOrNoAndYesSavesAs) {
    addRectangle(10, 10, 30, 30);
    port.queueMsgBox(mb::ResultYes);
    port.queueSave(path(QStringLiteral("Kept.pdr")));
    std::vector<QJsonObject> boxes;
    port.onEvent = [&](const QJsonObject& e) {
        if (e[QStringLiteral("event")].toString() == QLatin1String("msgbox"))
            boxes.push_back(e);
    };
    click("mnuFile_Exit");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0][QStringLiteral("text")].toString(), ExitQuestion);
    EXPECT_EQ(boxes[0][QStringLiteral("flags")].toInt(), mb::YesNo | mb::Question);
    EXPECT_EQ(boxes[0][QStringLiteral("title")].toString(), QStringLiteral("Tessaly"));
    EXPECT_TRUE(app->ended());
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("Kept.pdr"))));
}

TEST_F(FileCommands, YesThenACancelledSaveAsLosesTheDrawingWithoutAWord) {
    addRectangle(10, 10, 30, 30);
    port.queueMsgBox(mb::ResultYes);
    port.queueSave(std::nullopt);
    events.clear();
    click("mnuFile_Exit");
    EXPECT_EQ(events, (QStringList{QStringLiteral("msgbox:") + ExitQuestion,
                                   QStringLiteral("save:Polar Draw Files (*.pdr)|*.pdr|All Files (*.*)|*.*"),
                                   QStringLiteral("unload:"), QStringLiteral("end:")}));
    EXPECT_TRUE(app->ended());
}

TEST_F(FileCommands, ExitWithAPlanSavesItWithoutAQuestion) {
    std::vector<PlanSaveUse> saves;
    app->planRoad.saveProjectOutputs = [&](PlanSaveUse use) { saves.push_back(use); };
    app->gPlanFileName = QStringLiteral("12 High Street\\Ground Floor");
    addRectangle(10, 10, 30, 30);
    events.clear();
    click("mnuFile_Exit");
    EXPECT_EQ(saves, std::vector<PlanSaveUse>{PlanSaveUse::Unload});
    EXPECT_EQ(events, (QStringList{QStringLiteral("unload:"), QStringLiteral("end:")}));
}

TEST_F(FileCommands, ClosingAModalWindowAfterTheLastChangeMeansNoPromptAtExit) {
    addRectangle(10, 10, 30, 30);
    ASSERT_TRUE(engine().modified());
    click("mnuView_Page_GridSettings");
    ASSERT_EQ(app->modalStack().size(), 1u);
    ASSERT_TRUE(engine().modified());
    app->unload(*app->modalStack().back());
    EXPECT_FALSE(engine().modified());
    events.clear();
    click("mnuFile_Exit");
    EXPECT_EQ(events, (QStringList{QStringLiteral("unload:"), QStringLiteral("end:")}));
}

} // namespace
} // namespace tessaly::testing
