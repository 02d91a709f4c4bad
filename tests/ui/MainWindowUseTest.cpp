// The main window as a user meets it on the desktop. Its keys: the
// clipboard, undo, redo and delete keys act on the drawing wherever the focus
// is in the window; the file commands show their keys in the menu; the wall
// keypad takes Enter and Escape, and shows every key whole. Its template
// pane: a library shows from its first symbol, whole, and scrolls both ways.
#include "MainWindowFixture.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/ShapeObjects.h"
#include "ui/CanvasWidget.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

namespace tessaly::ui {
namespace {

class MainWindowUse : public testing::MainWindowFixture {
protected:
    void SetUp() override {
        view.resize(1280, 1000);
        view.show();
        view.activateWindow();
        QApplication::setActiveWindow(&view);
        testing::processPending();
        ASSERT_EQ(QApplication::activeWindow(), &view);
    }
    canvas::POLARDraw& drawing() const {
        return *std::dynamic_pointer_cast<canvas::POLARDraw>(
            main.control(QStringLiteral("POLARDraw1")).inner);
    }
    template <class W> W* widget(const char* name, int index = -1) const {
        const Control& c = index < 0 ? main.control(QString::fromLatin1(name))
                                     : main.control(QString::fromLatin1(name), index);
        return qobject_cast<W*>(view.widgetFor(c));
    }
    // Focuses a widget of the window and sends it a key, as the desktop does.
    void press(QWidget* focus, Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        focus->setFocus(Qt::OtherFocusReason);
        testing::processPending();
        QTest::keyClick(focus, key, mods);
        testing::processPending();
    }
    void pressButton(int index) {
        main.raiseEvent(main.control(QStringLiteral("cmdToolBarButton"), index), QStringLiteral("Click"));
        testing::processPending();
    }
    int addRectangle() {
        canvas::POLARDraw& d = drawing();
        QVariantList args{1, 20, 20, 60, 50};
        d.shapes()->call(QStringLiteral("AddShape"), args);
        return d.drawing().at(d.drawing().count() - 1)->id;
    }
};

TEST_F(MainWindowUse, UndoRedoAndClipboardKeysActOnTheDrawingFromAnyControl) {
    const int before = drawing().drawing().count();
    const int id = addRectangle();
    auto* scale = widget<QComboBox>("cboScale");
    auto* list = widget<QListWidget>("lstShapeList");
    auto* templates = widget<CanvasWidget>("POLARDraw2");
    ASSERT_NE(scale, nullptr);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(templates, nullptr);

    press(scale, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(drawing().drawing().contains(id)) << "Ctrl+Z on the scale box did not undo";
    press(list, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(drawing().drawing().contains(id)) << "Ctrl+Shift+Z on the shape list did not redo";
    press(templates->viewport(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(drawing().drawing().contains(id)) << "Ctrl+Z on the template pane did not undo the drawing";
    press(scale, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(drawing().drawing().contains(id)) << "Ctrl+Y did not redo";

    // Cut and paste bring the shape back as a new one; copy and paste make a second.
    drawing().setSelection({id});
    press(scale, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(drawing().drawing().count(), before);
    press(list, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(drawing().drawing().count(), before + 1);
    press(scale, Qt::Key_C, Qt::ControlModifier);
    press(scale, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(drawing().drawing().count(), before + 2);

    // Delete removes the selection, also with the focus on the canvas itself.
    press(scale, Qt::Key_Delete);
    EXPECT_EQ(drawing().drawing().count(), before + 1);
    auto* canvas1 = widget<CanvasWidget>("POLARDraw1");
    drawing().setSelection({drawing().drawing().at(drawing().drawing().count() - 1)->id});
    press(canvas1->viewport(), Qt::Key_Delete);
    EXPECT_EQ(drawing().drawing().count(), before);
}

TEST_F(MainWindowUse, ATextBoxKeepsItsOwnEditingKeys) {
    const int id = addRectangle();
    main.control(QStringLiteral("WallInput")).setVisible(true);
    auto* length = widget<QLineEdit>("txtWallLen");
    ASSERT_NE(length, nullptr);
    length->setText(QStringLiteral("2000"));
    press(length, Qt::Key_End);
    press(length, Qt::Key_Z, Qt::ControlModifier);
    press(length, Qt::Key_Backspace);
    EXPECT_EQ(length->text(), QStringLiteral("200"));
    EXPECT_TRUE(drawing().drawing().contains(id)) << "Ctrl+Z in a text box undid the drawing";
    drawing().setSelection({id});
    press(length, Qt::Key_Delete);
    EXPECT_TRUE(drawing().drawing().contains(id)) << "Delete in a text box deleted the shape";
}

TEST_F(MainWindowUse, FileCommandsShowTheirKeysAndKeepTheirCaptions) {
    const std::pair<const char*, QKeySequence> expected[] = {
        {"mnuFile_New", QKeySequence(QStringLiteral("Ctrl+N"))},
        {"mnuFile_Open", QKeySequence(QStringLiteral("Ctrl+O"))},
        {"mnuFile_Save", QKeySequence(QStringLiteral("Ctrl+S"))},
        {"mnuFile_SaveAs", QKeySequence(QStringLiteral("Ctrl+Shift+S"))},
        {"mnuFile_Print", QKeySequence(QStringLiteral("Ctrl+P"))}};
    const char* const captions[] = {"&New Blank Drawing", "&Open Drawing", "&Save Plan To Project File",
                                    "Sa&ve As", "&Print"};
    int i = 0;
    for (const auto& [name, keys] : expected) {
        QAction* action = view.actionFor(main.control(QString::fromLatin1(name)));
        ASSERT_NE(action, nullptr) << name;
        EXPECT_EQ(action->shortcut(), keys) << name;
        EXPECT_EQ(action->text(), QString::fromLatin1(captions[i++])) << name;
    }
    // Print by its key, from the scale box: the empty page has nothing to print.
    QStringList boxes;
    port.onEvent = [&](const QJsonObject& o) { boxes << o.value(QStringLiteral("text")).toString(); };
    press(widget<QComboBox>("cboScale"), Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(boxes.contains(QStringLiteral("Nothing to print!")))
        << "Ctrl+P did not reach the Print command";
}

TEST_F(MainWindowUse, TheWallKeypadTakesEnterAndEscapeAndShowsEveryKeyWhole) {
    pressButton(20);
    auto* panel = view.widgetFor(main.control(QStringLiteral("WallInput")));
    ASSERT_NE(panel, nullptr);
    ASSERT_TRUE(panel->isVisible());
    for (int index = 0; index <= 12; ++index) {
        QWidget* key = widget<QWidget>("WallInputButton", index);
        ASSERT_NE(key, nullptr);
        EXPECT_TRUE(panel->contentsRect().contains(key->geometry()))
            << "key " << index << " is cut off: " << key->geometry().bottom() << " below "
            << panel->contentsRect().bottom();
    }
    // Escape: Cancel, the panel goes and no wall is made.
    const int before = drawing().drawing().count();
    press(widget<QLineEdit>("txtWallLen"), Qt::Key_Escape);
    EXPECT_FALSE(main.control(QStringLiteral("WallInput")).visible());
    EXPECT_EQ(drawing().drawing().count(), before);
    // Enter: OK, a wall of the typed length.
    pressButton(20);
    auto* length = widget<QLineEdit>("txtWallLen");
    length->setFocus(Qt::OtherFocusReason);
    length->selectAll();
    QTest::keyClicks(length, QStringLiteral("3000"));
    ASSERT_EQ(main.control(QStringLiteral("txtWallLen")).text(), QStringLiteral("3000"));
    press(length, Qt::Key_Return);
    EXPECT_FALSE(main.control(QStringLiteral("WallInput")).visible());
    ASSERT_EQ(drawing().drawing().count(), before + 1);
    const auto wall = drawing().drawing().at(before);
    EXPECT_EQ(wall->name.left(15), QStringLiteral("Horizontal Wall"));
    EXPECT_NEAR(wall->right - wall->left, 3000 / 50, 1e-9);
    // With the panel hidden, Enter and Escape press nothing.
    press(widget<QComboBox>("cboScale"), Qt::Key_Return);
    EXPECT_EQ(drawing().drawing().count(), before + 1);
}

TEST_F(MainWindowUse, ATemplateLibraryShowsFromItsFirstSymbolAndScrollsBothWays) {
    auto* pane = widget<CanvasWidget>("POLARDraw2");
    ASSERT_NE(pane, nullptr);
    main.control(QStringLiteral("SSActiveTabs1")).setProp(QStringLiteral("Tab"), 1);
    testing::processPending();
    ASSERT_TRUE(pane->isVisible());
    Control& box = main.control(QStringLiteral("cboTemplates"));
    for (const int item : {0, 4, 6}) {
        box.setListIndex(item);
        testing::processPending();
        SCOPED_TRACE(box.text().toStdString());
        // The pane lies inside its tab, its scroll bars with it.
        const QWidget* tab = pane->parentWidget();
        EXPECT_LE(pane->geometry().bottom(), tab->height() - 1);
        EXPECT_LE(pane->geometry().right(), tab->width() - 1);
        // The library is wider than the pane: the bar across shows, and the one
        // down where the library is higher than the pane; both at their start.
        canvas::POLARDraw& shown = pane->canvas();
        const double ppm = shown.viewGeometry().pixelsPerMm();
        const double high = (shown.drawing().state().page.height + 2 * CanvasWidget::WholePageMarginMm) * ppm;
        EXPECT_TRUE(pane->horizontalScrollBar()->isVisible());
        EXPECT_EQ(pane->verticalScrollBar()->isVisible(), high > pane->viewport()->height() + 1) << high;
        EXPECT_EQ(pane->horizontalScrollBar()->value(), 0);
        EXPECT_EQ(pane->verticalScrollBar()->value(), 0);
        // The first symbol stands whole in the window.
        canvas::POLARDraw& templates = pane->canvas();
        const QRectF first = templates.drawing().at(0)->box();
        const QRect window = pane->viewport()->rect();
        const QPointF topLeft = templates.viewGeometry().pageToClient(first.topLeft());
        const QPointF bottomRight = templates.viewGeometry().pageToClient(first.bottomRight());
        EXPECT_TRUE(window.contains(topLeft.toPoint())) << topLeft.x() << "," << topLeft.y();
        EXPECT_TRUE(window.contains(bottomRight.toPoint())) << bottomRight.x() << "," << bottomRight.y();
        // The far end of the library is reached by the bars.
        const QSizeF page(templates.drawing().state().page.width, templates.drawing().state().page.height);
        const double k = templates.viewGeometry().pixelsPerMm();
        EXPECT_GE(pane->horizontalScrollBar()->maximum() + window.width(),
                  static_cast<int>(page.width() * k));
        EXPECT_GE(pane->verticalScrollBar()->maximum() + window.height(),
                  static_cast<int>(page.height() * k));
    }
    // Scrolled to its end, a press lands on the page point under the pointer.
    pane->horizontalScrollBar()->setValue(pane->horizontalScrollBar()->maximum());
    testing::processPending();
    const QPointF under =
        pane->canvas().viewGeometry().screenToPage(QPointF(pane->viewport()->mapToGlobal(QPoint(10, 10))));
    const QPointF expected =
        pane->canvas().viewGeometry().clientToPage(QPointF(10 + pane->horizontalScrollBar()->value(), 10));
    EXPECT_NEAR(under.x(), expected.x(), 1e-6);
    EXPECT_NEAR(under.y(), expected.y(), 1e-6);
}

} // namespace
} // namespace tessaly::ui
