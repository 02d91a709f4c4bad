#include "CanvasSupport.h"

#include "canvas/model/ShapeTypes.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

TEST(History, UndoRedoReachesTwoHundredStepsAndMore) {
    auto c = makeCanvas();
    AutoPtr shapes = c->shapes();
    call(shapes, "AddShape", {1, 0, 0, 10, 10});
    AutoPtr s = obj(shapes, "Item", {1});
    constexpr int Steps = 250;
    for (int i = 1; i <= Steps; ++i)
        s->set("Left", i);
    EXPECT_EQ(get(s, "Left").toInt(), Steps);
    for (int i = Steps - 1; i >= 0; --i) {
        c->undo();
        ASSERT_EQ(get(s, "Left").toInt(), i);
    }
    c->undo(); // takes back the AddShape
    EXPECT_EQ(c->drawing().count(), 0);
    c->undo(); // nothing left: no failure
    for (int i = 0; i <= Steps; ++i)
        c->redo();
    EXPECT_EQ(get(obj(shapes, "Item", {1}), "Left").toInt(), Steps);
}

TEST(History, StepsShareTheShapesTheyDidNotChange) {
    auto c = makeCanvas();
    for (int i = 0; i < 50; ++i)
        call(c->shapes(), "AddShape", {1, i, 0, i + 5, 5});
    std::vector<ShapePtr> before(c->drawing().shapes());
    obj(c->shapes(), "Item", {10})->set("Top", 3);
    for (int i = 0; i < 50; ++i) {
        if (i == 9)
            EXPECT_NE(c->drawing().at(i), before[9]);
        else
            EXPECT_EQ(c->drawing().at(i), before[static_cast<size_t>(i)]); // the very same value
    }
    c->undo();
    EXPECT_EQ(c->drawing().at(9), before[9]);
}

TEST(History, ModifiedIsSetByEditsAndClearedBySaveAndLoad) {
    QTemporaryDir dir;
    auto c = makeCanvas();
    EXPECT_FALSE(c->modified());
    c->page()->set("Width", 210);
    EXPECT_TRUE(c->modified());
    c->saveFile(dir.filePath("a.pdr"), 1);
    EXPECT_FALSE(c->modified());
    call(c->horizontalGuides(), "Add", {5});
    EXPECT_TRUE(c->modified());
    c->loadFile(dir.filePath("a.pdr"));
    EXPECT_FALSE(c->modified());
    c->undo(); // nothing to take back after a load
    EXPECT_FALSE(c->modified());
    EXPECT_EQ(get(c->page(), "Width").toInt(), 210);
}

TEST(Clipboard, CopyOnOneCanvasPastesOnAnotherSelectedAndVisible) {
    auto templates = makeCanvas();
    auto main = makeCanvas();
    EventLog log;
    main->addEventSink(&log);
    call(templates->shapes(), "AddShape", {3, 20, 20, 40, 30});
    obj(templates->shapes(), "Item", {1})->set("Name", "Door");
    templates->setSelection({1});
    call(templates, "Copy");
    call(main->shapes(), "AddShape", {1, 0, 0, 5, 5});
    log.lines.clear();
    call(main, "Paste");
    ASSERT_EQ(main->drawing().count(), 2);
    const ShapeData& pasted = *main->drawing().at(1);
    EXPECT_EQ(pasted.name, "Door");
    EXPECT_EQ(pasted.type, 3);
    EXPECT_NE(pasted.id, 1); // a fresh id on the target page
    EXPECT_EQ(main->selectedIds(), std::vector<int>{pasted.id});
    EXPECT_TRUE(main->viewGeometry().visiblePage().intersects(pasted.box()));
    EXPECT_EQ(log.only("ShapeAdded"), QStringList{QStringLiteral("ShapeAdded 2 %1").arg(pasted.id)});
    EXPECT_TRUE(log.only("ShapeFinished").isEmpty());
}

TEST(Clipboard, PasteOutOfSightComesToTheMiddleOfTheWindow) {
    auto source = makeCanvas();
    auto target = makeCanvas();
    call(source->shapes(), "AddShape", {1, 250, 180, 260, 190});
    source->setSelection({1});
    source->copy();
    target->setScroll(QPointF(-100, -100)); // the window shows the area left of and above the page
    target->paste();
    EXPECT_TRUE(target->viewGeometry().visiblePage().contains(target->drawing().at(0)->box()));
}

TEST(Clipboard, CopyWithNothingSelectedThenPasteDoesNotFail) {
    auto source = makeCanvas();
    auto target = makeCanvas();
    call(source->shapes(), "AddShape", {1, 0, 0, 5, 5});
    source->setSelection({1});
    source->copy(); // the clipboard holds a shape from an earlier copy
    auto empty = makeCanvas();
    EXPECT_EQ(errorOf([&] { call(empty, "Copy"); }), 0);
    EXPECT_EQ(errorOf([&] { call(target, "Paste"); }), 0);
    EXPECT_EQ(errorOf([&] { call(empty, "Cut"); }), 0);
}

TEST(Clipboard, CutRemovesAndPasteIntoTheSourceOffsetsTheCopy) {
    auto c = makeCanvas();
    call(c->shapes(), "AddShape", {1, 10, 10, 20, 20});
    c->setSelection({1});
    c->copy();
    c->paste();
    EXPECT_EQ(c->drawing().count(), 2);
    EXPECT_NEAR(c->drawing().at(1)->left, 15, 1e-9);
    c->cut();
    EXPECT_EQ(c->drawing().count(), 1);
    c->undo(); // one step for the cut
    EXPECT_EQ(c->drawing().count(), 2);
}

TEST(Clipboard, TheSystemClipboardReceivesAPictureWhenThereIsAGuiApplication) {
    auto c = makeCanvas();
    call(c->shapes(), "AddShape", {1, 0, 0, 20, 10});
    obj(obj(c->shapes(), "Item", {1}), "Fill")->set("Colour", 255);
    c->setSelection({1});
    c->copy();
    const QImage image = QGuiApplication::clipboard()->image();
    ASSERT_FALSE(image.isNull());
    EXPECT_NEAR(image.width(), 20 * 96 / 25.4, 2);
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 2), QColor(255, 0, 0));
}
