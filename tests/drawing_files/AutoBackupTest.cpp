// The backup timer of the main window, ticked by hand: the counter and its
// panel, the backup file at exactly 300 ticks with the hourglass around it,
// the Auto Backup entry's two branches, and a backup into a missing folder.
#include "drawing_files/AutoBackup.h"
#include "DrawingFilesFixture.h"

#include <QDateTime>
#include <QFileInfo>

namespace tessaly::testing {
namespace {

using drawing_files::BackupPanel;

class AutoBackup : public DrawingFilesFixture {
protected:
    QStringList backups() const {
        return QDir(dir.filePath(QStringLiteral("Temp")))
            .entryList({QStringLiteral("Backup_*.pdr")}, QDir::Files);
    }
    // The backup names a save between `before` and `after` may have.
    static QStringList namesBetween(const QDateTime& before, const QDateTime& after) {
        QStringList names;
        for (QDateTime t = before; t <= after.addSecs(1); t = t.addSecs(1))
            names << QFileInfo(drawing_files::BackupPath(QStringLiteral("/x"), t)
                                   .replace(QLatin1Char('\\'), QLatin1Char('/')))
                         .fileName();
        return names;
    }
};

TEST(BackupName, DayMonthTwoDigitYearThenHoursMinutesSeconds) {
    const QDateTime when(QDate(2026, 2, 15), QTime(14, 30, 5));
    EXPECT_EQ(drawing_files::BackupPath(QStringLiteral("C:\\Tessaly"), when),
              QStringLiteral("C:\\Tessaly\\Temp\\Backup_150226-143005.pdr"));
    // Minutes, not months, in the middle of the time; a 24-hour clock.
    EXPECT_EQ(drawing_files::BackupPath(QStringLiteral("H"), QDateTime(QDate(2031, 12, 3), QTime(9, 7, 59))),
              QStringLiteral("H\\Temp\\Backup_031231-090759.pdr"));
    EXPECT_EQ(drawing_files::BackupPath(QStringLiteral("H"), QDateTime(QDate(2026, 1, 1), QTime(23, 0, 0))),
              QStringLiteral("H\\Temp\\Backup_010126-230000.pdr"));
}

TEST_F(AutoBackup, TheLoadStartsTheTimerAtOneSecondWithThePanelEmpty) {
    EXPECT_TRUE(main.Timer1.enabled());
    EXPECT_EQ(main.Timer1.prop(QStringLiteral("Interval")).toInt(), 1000);
    EXPECT_EQ(app->gBackupTicks, 0);
    EXPECT_TRUE(main.control(QStringLiteral("mnuFileAutoBackup")).checked());
    EXPECT_EQ(main.control(QStringLiteral("mnuFileAutoBackup")).caption(), QStringLiteral("Auto Backup"));
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QString());
}

TEST_F(AutoBackup, EachTickCountsAndShowsTheCount) {
    tick();
    EXPECT_EQ(app->gBackupTicks, 1);
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("1"));
    tick(298);
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("299"));
    EXPECT_TRUE(backups().isEmpty());
}

TEST_F(AutoBackup, TheThreeHundredthTickWritesTheDrawingUnderTheHourglass) {
    addRectangle(10, 10, 40, 30);
    addRectangle(50, 10, 80, 30);
    app->gPlanFileName = QStringLiteral("Site\\Plan");
    main.setCaption(QStringLiteral("Tessaly - Site\\Plan"));
    tick(299);
    events.clear();
    const QDateTime before = QDateTime::currentDateTime();
    tick();
    const QDateTime after = QDateTime::currentDateTime();
    EXPECT_EQ(events, (QStringList{QStringLiteral("pointer:11"), QStringLiteral("pointer:0")}));
    EXPECT_EQ(app->gBackupTicks, 0);
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("300"));
    const QStringList written = backups();
    ASSERT_EQ(written.size(), 1);
    EXPECT_TRUE(namesBetween(before, after).contains(written[0])) << written[0].toStdString();
    // The copy is the drawing as it stands; plan and title are untouched.
    EXPECT_EQ(app->gPlanFileName, QStringLiteral("Site\\Plan"));
    EXPECT_EQ(main.caption(), QStringLiteral("Tessaly - Site\\Plan"));
    auto copy = canvas::POLARDraw::create();
    copy->loadFile(dir.filePath(QStringLiteral("Temp/") + written[0]));
    EXPECT_EQ(copy->describeShapes(), engine().describeShapes());
    // The next tick writes 1 again.
    tick();
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("1"));
}

TEST_F(AutoBackup, OnlyACountPassingThroughThreeHundredFires) {
    app->gBackupTicks = 300;
    tick(5);
    EXPECT_EQ(app->gBackupTicks, 305);
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("305"));
    EXPECT_TRUE(backups().isEmpty());
}

TEST_F(AutoBackup, BackupsKeepComingAtAnUnchangedDrawing) {
    engine().setModified(false);
    tick(300);
    ASSERT_EQ(backups().size(), 1);
    // Rename the first so that a second in the same second is still seen.
    const QString first = dir.filePath(QStringLiteral("Temp/") + backups()[0]);
    ASSERT_TRUE(QFile::rename(first, dir.filePath(QStringLiteral("Temp/Backup_first.pdr"))));
    tick(300);
    EXPECT_EQ(backups().size(), 2);
}

TEST_F(AutoBackup, UncheckingStopsTheTimerAndShowsOff) {
    tick(299);
    click("mnuFileAutoBackup");
    EXPECT_FALSE(main.Timer1.enabled());
    EXPECT_FALSE(main.control(QStringLiteral("mnuFileAutoBackup")).checked());
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("OFF"));
    EXPECT_EQ(app->gBackupTicks, 299);
}

TEST_F(AutoBackup, CheckingAgainOnlyChecksUntilACommandStartsTheTimer) {
    tick(10);
    click("mnuFileAutoBackup");
    click("mnuFileAutoBackup");
    EXPECT_TRUE(main.control(QStringLiteral("mnuFileAutoBackup")).checked());
    EXPECT_FALSE(main.Timer1.enabled());
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("OFF"));
    EXPECT_EQ(app->gBackupTicks, 10);
    click("mnuFile_New");
    EXPECT_TRUE(main.Timer1.enabled());
    EXPECT_EQ(app->gBackupTicks, 0);
}

TEST_F(AutoBackup, TheMainWindowsTakingOfAPlanStartsTheTimerToo) {
    click("mnuFileAutoBackup");
    click("mnuFileAutoBackup");
    app->gBackupTicks = 77;
    app->gPlanFileName = QStringLiteral("Site\\Plan");
    app->planRoad.takePlan();
    EXPECT_TRUE(main.Timer1.enabled());
    EXPECT_EQ(app->gBackupTicks, 0);
}

// The Temp folder is expected to exist and is not made: the save fails as the
// canvas's save fails, with its message under the hourglass, and the timer
// counts on.
TEST_F(AutoBackup, ABackupIntoAMissingTempFolderFailsAndTheProgramGoesOn) {
    ASSERT_TRUE(QDir(dir.filePath(QStringLiteral("Temp"))).removeRecursively());
    addRectangle(10, 10, 40, 30);
    tick(299);
    events.clear();
    tick();
    ASSERT_EQ(events.size(), 3) << events.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(events[0], QStringLiteral("pointer:11"));
    EXPECT_TRUE(events[1].startsWith(QStringLiteral("msgbox:The drawing file "))) << events[1].toStdString();
    EXPECT_EQ(events[2], QStringLiteral("pointer:0"));
    EXPECT_FALSE(QDir(dir.filePath(QStringLiteral("Temp"))).exists());
    EXPECT_EQ(app->gBackupTicks, 0);
    tick(3);
    EXPECT_EQ(main.SB1.panelText(BackupPanel), QStringLiteral("3"));
    EXPECT_EQ(shapeCount(), 1);
}

} // namespace
} // namespace tessaly::testing
