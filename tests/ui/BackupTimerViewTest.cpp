// The main window's backup timer on the desktop: a QTimer of one second whose
// ticks reach the backup counter and its status panel, stopped by the Auto
// Backup entry of the File menu.
#include "ProgramWindows.h"
#include "ui/FormView.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QAction>
#include <QLabel>
#include <QStatusBar>
#include <QTimer>

namespace tessaly::ui {
namespace {

class BackupTimerView : public testing::ProgramWindows {
protected:
    FormView view{main};

    QTimer* timer() const { return qobject_cast<QTimer*>(view.objectFor(main.Timer1)); }
    // The timer's tick, as its interval's end delivers it.
    void tick() { ASSERT_TRUE(QMetaObject::invokeMethod(timer(), "timeout", Qt::DirectConnection)); }
    QString panel5() const {
        auto* label =
            view.findChild<QStatusBar*>(QStringLiteral("SB1"))->findChild<QLabel*>(QStringLiteral("Panel5"));
        return label ? label->text() : QStringLiteral("<none>");
    }
};

TEST_F(BackupTimerView, EachTickOfTheQTimerCountsAndShowsTheCount) {
    ASSERT_NE(timer(), nullptr);
    EXPECT_TRUE(timer()->isActive());
    EXPECT_EQ(timer()->interval(), 1000);
    tick();
    tick();
    EXPECT_EQ(app->gBackupTicks, 2);
    EXPECT_EQ(panel5(), QStringLiteral("2"));
}

TEST_F(BackupTimerView, TheAutoBackupEntryStopsTheQTimer) {
    QAction* entry = view.actionFor(main.control(QStringLiteral("mnuFileAutoBackup")));
    ASSERT_NE(entry, nullptr);
    EXPECT_TRUE(entry->isChecked());
    entry->trigger();
    EXPECT_FALSE(timer()->isActive());
    EXPECT_FALSE(entry->isChecked());
    EXPECT_EQ(panel5(), QStringLiteral("OFF"));
    // Checked again, the timer waits for New.
    entry->trigger();
    EXPECT_TRUE(entry->isChecked());
    EXPECT_FALSE(timer()->isActive());
    view.actionFor(main.control(QStringLiteral("mnuFile_New")))->trigger();
    EXPECT_TRUE(timer()->isActive());
}

} // namespace
} // namespace tessaly::ui
