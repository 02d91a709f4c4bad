// The main window's view: its menu bar, pop-up menu, status bar, canvas
// placeholders and layout, each checked against the frmMain model.
#include "MainWindowFixture.h"
#include "canvas/api/POLARDraw.h"
#include "core/install/Installer.h"
#include "templates/Drawings.h"
#include "ui/CanvasWidget.h"
#include "ui/FormView.h"
#include "workspace/Application.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>

namespace tessaly::ui {
namespace {

class MainWindowView : public testing::MainWindowFixture {
protected:
    std::vector<Control*> menuEntries() const {
        std::vector<Control*> entries;
        for (const ControlPtr& c : main.controls())
            if (c->kind() == ControlKind::Menu)
                entries.push_back(c.get());
        return entries;
    }
    // The widget that holds an entry's action: the bar, or its holder's menu.
    QWidget* ownerOf(const Control& entry) const {
        if (!entry.parentMenu())
            return view.menuBar();
        return view.actionFor(*entry.parentMenu())->menu();
    }
};

TEST_F(MainWindowView, MenuBarHasTheFiveMenusInOrder) {
    QStringList shown;
    for (QAction* a : view.menuBar()->actions())
        if (a->isVisible())
            shown << a->text();
    EXPECT_EQ(shown, (QStringList{QStringLiteral("&File"), QStringLiteral("&Edit"), QStringLiteral("&View"),
                                  QStringLiteral("&Draw"), QStringLiteral("&Help")}));
    // The pop-up menu's entry is there but hidden, as in the model.
    ASSERT_EQ(view.menuBar()->actions().size(), 6);
    EXPECT_EQ(view.menuBar()->actions().last()->text(), QStringLiteral("Popup"));
    EXPECT_FALSE(view.menuBar()->actions().last()->isVisible());
}

TEST_F(MainWindowView, EveryMenuEntryShowsItsModel) {
    const std::vector<Control*> entries = menuEntries();
    ASSERT_GT(entries.size(), 100u);
    for (Control* entry : entries) {
        SCOPED_TRACE(entry->fullName().toStdString());
        QAction* action = view.actionFor(*entry);
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(action->isSeparator(), entry->caption() == QLatin1String("-"));
        EXPECT_EQ(action->text(), action->isSeparator() ? QString() : entry->caption());
        EXPECT_EQ(action->isChecked(), entry->checked());
        EXPECT_EQ(action->isVisible(), entry->visible());
        // Qt counts a hidden action as disabled; a shown one has the model's state.
        EXPECT_EQ(action->isEnabled(), entry->visible() && entry->enabled());
    }
}

TEST_F(MainWindowView, ModelChangesToEntriesShowInTheMenus) {
    Control& html = main.control(QStringLiteral("mnuFile_Export_HTML"));
    QAction* action = view.actionFor(html);
    html.setVisible(true);
    EXPECT_TRUE(action->isVisible());
    EXPECT_TRUE(action->isEnabled());
    html.setEnabled(false);
    EXPECT_FALSE(action->isEnabled());
    html.setCaption(QStringLiteral("Export To &HTML"));
    EXPECT_EQ(action->text(), QStringLiteral("Export To &HTML"));
    html.setChecked(true);
    EXPECT_TRUE(action->isChecked());
    html.setChecked(false);
    EXPECT_FALSE(action->isChecked());
    EXPECT_FALSE(action->isCheckable());
}

TEST_F(MainWindowView, EveryMenuHoldsItsEntriesInModelOrder) {
    std::map<QWidget*, QList<QAction*>> expected;
    for (Control* entry : menuEntries())
        expected[ownerOf(*entry)] << view.actionFor(*entry);
    ASSERT_GT(expected.size(), 10u);
    for (const auto& [owner, actions] : expected) {
        SCOPED_TRACE(owner->objectName().toStdString());
        EXPECT_EQ(owner->actions(), actions);
    }
}

TEST_F(MainWindowView, CheckedAndHiddenEntriesAsTheMenuTreeHasThem) {
    EXPECT_TRUE(view.actionFor(main.control(QStringLiteral("mnuFileAutoBackup")))->isChecked());
    EXPECT_TRUE(view.actionFor(main.control(QStringLiteral("mnuEdit_AutoDimension")))->isChecked());
    EXPECT_FALSE(view.actionFor(main.control(QStringLiteral("mnuEdit_CreateGuide")))->isChecked());
    EXPECT_FALSE(view.actionFor(main.control(QStringLiteral("mnuFile_Export_HTML")))->isVisible());
    EXPECT_FALSE(view.actionFor(main.control(QStringLiteral("mnuFile_Convert")))->isEnabled());
    QMenu* other = view.actionFor(main.control(QStringLiteral("mnuDraw_OtherShapes")))->menu();
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->title(), QStringLiteral("Other Useful Shapes"));
    EXPECT_EQ(other->actions().first()->text(), QStringLiteral("Dimond Shape"));
    EXPECT_EQ(other->actions().last()->text(), QStringLiteral("Left Arrow Shape"));
}

TEST_F(MainWindowView, PopupMenuServesAsContextMenu) {
    QMenu* popup = view.popupMenu(QStringLiteral("mnuPopup"));
    ASSERT_NE(popup, nullptr);
    ASSERT_FALSE(popup->actions().isEmpty());
    EXPECT_EQ(popup->actions().first()->text(), QStringLiteral("Center Page On Screen"));
    EXPECT_TRUE(view.actionFor(main.control(QStringLiteral("mnuPopup_ShowGuideLines")))->isChecked());
    EXPECT_FALSE(view.actionFor(main.control(QStringLiteral("mnuPopup_Duplicate")))->isVisible());
}

TEST_F(MainWindowView, TriggeredMenuEntryRunsItsHandlerAndShowsTheNewCheckMark) {
    QAction* guide = view.actionFor(main.control(QStringLiteral("mnuEdit_CreateGuide")));
    guide->trigger();
    EXPECT_TRUE(main.control(QStringLiteral("mnuEdit_CreateGuide")).checked());
    EXPECT_TRUE(guide->isChecked());
    EXPECT_EQ(app.userSettings.read(UserSection, QStringLiteral("CreateGuide")), QStringLiteral("True"));
    guide->trigger();
    EXPECT_FALSE(guide->isChecked());
    EXPECT_EQ(app.userSettings.read(UserSection, QStringLiteral("CreateGuide")), QStringLiteral("False"));
}

TEST_F(MainWindowView, CheckMarkStaysAsTheModelHasItWhenNoHandlerChangesIt) {
    // Auto Backup has no handler yet: the model keeps it checked, and so does the menu.
    QAction* backup = view.actionFor(main.control(QStringLiteral("mnuFileAutoBackup")));
    backup->trigger();
    EXPECT_TRUE(backup->isChecked());
}

TEST_F(MainWindowView, HelpEntryShowsItsMessage) {
    std::vector<QJsonObject> events;
    port.onEvent = [&](const QJsonObject& o) { events.push_back(o); };
    view.actionFor(main.control(QStringLiteral("mnuHelp_Help")))->trigger();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0][QStringLiteral("text")].toString(),
              QStringLiteral("Please consult the supplied PDF documentation"));
    EXPECT_EQ(events[0][QStringLiteral("flags")].toInt(), 64);
}

TEST_F(MainWindowView, StatusBarHasFivePanelsWithTheModelsTexts) {
    auto* bar = qobject_cast<QStatusBar*>(view.widgetFor(main.control(QStringLiteral("SB1"))));
    ASSERT_NE(bar, nullptr);
    const QList<QLabel*> panels = bar->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panels.size(), 5);
    EXPECT_EQ(bar->findChild<QLabel*>(QStringLiteral("Panel3"))->text(), QStringLiteral("Standard Doors"));
    EXPECT_EQ(bar->findChild<QLabel*>(QStringLiteral("Panel4"))->text(), QStringLiteral("1024 X 768"));
    main.control(QStringLiteral("SB1")).setPanelText(2, QStringLiteral("Horizontal Wall"));
    EXPECT_EQ(bar->findChild<QLabel*>(QStringLiteral("Panel2"))->text(), QStringLiteral("Horizontal Wall"));
}

TEST_F(MainWindowView, SideTabsShowTheirCaptions) {
    auto* tabs = view.widgetFor(main.control(QStringLiteral("SSActiveTabs1")))->findChild<QTabBar*>();
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("Drawing Objects"));
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Template Objects"));
    EXPECT_EQ(tabs->tabText(2), QStringLiteral("Shape List"));
    EXPECT_EQ(tabs->currentIndex(), 0);
}

TEST_F(MainWindowView, BothCanvasesAreDrawingWidgetsOfTheirEngines) {
    for (const char* name : {"POLARDraw1", "POLARDraw2"}) {
        Control& control = main.control(QString::fromLatin1(name));
        auto* canvas = qobject_cast<CanvasWidget*>(view.widgetFor(control));
        ASSERT_NE(canvas, nullptr) << name;
        EXPECT_EQ(static_cast<AutoObject*>(&canvas->canvas()), control.inner.get()) << name;
    }
}

TEST_F(MainWindowView, BackupTimerRunsEverySecondOnceLoaded) {
    auto* timer = qobject_cast<QTimer*>(view.objectFor(main.control(QStringLiteral("Timer1"))));
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 1000);
}

TEST_F(MainWindowView, ResizingTheWindowTellsTheFormAndLaysTheCanvasOut) {
    view.resize(900, 700);
    view.show();
    testing::processPending();
    const QSize inner = view.surface()->size();
    ASSERT_GT(inner.height(), 0);
    EXPECT_EQ(main.scaleWidth(), inner.width() * 15);
    EXPECT_EQ(main.scaleHeight(), inner.height() * 15);
    // The form's Resize moved the canvas: left = side tabs + 20, top 495,
    // the rest of the width, the height less 820 (all in twips).
    const QRect canvas = view.widgetFor(main.control(QStringLiteral("POLARDraw1")))->geometry();
    EXPECT_EQ(canvas.left(), (3180 + 20) / 15);
    EXPECT_EQ(canvas.top(), 495 / 15);
    EXPECT_EQ(canvas.width(), (inner.width() * 15 - 3200) / 15);
    EXPECT_EQ(canvas.height(), (inner.height() * 15 - 820) / 15);
    const QRect list = view.widgetFor(main.control(QStringLiteral("lstShapeList")))->geometry();
    EXPECT_EQ(list, QRect(1, 24, 2470 / 15, (inner.height() * 15 - 1240) / 15));
    view.hide();
}

TEST_F(MainWindowView, StatusBarSitsAtTheBottomOfTheForm) {
    view.resize(640, 480);
    view.show();
    testing::processPending();
    const QRect bar = view.widgetFor(main.control(QStringLiteral("SB1")))->geometry();
    EXPECT_EQ(bar.bottom(), view.surface()->height() - 1);
    EXPECT_EQ(bar.left(), 0);
    EXPECT_EQ(bar.width(), view.surface()->width());
    view.hide();
}

TEST_F(MainWindowView, WindowTitleFollowsTheCaption) {
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Tessaly - Untitled Drawing"));
    main.setCaption(QStringLiteral("Tessaly - 12 High Street\\Ground Floor"));
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Tessaly - 12 High Street\\Ground Floor"));
}

} // namespace
} // namespace tessaly::ui
