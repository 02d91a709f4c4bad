// The main window's workspace, driven on the logic with a scripted UI port.
#include "canvas/api/POLARDraw.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "workspace/Application.h"
#include "workspace/LateBound.h"
#include "workspace/PortDialogHost.h"
#include "workspace/ToolStrip.h"
#include "workspace/frmMain.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

constexpr int ShapeListLimit = 32767; // the shape list counts in 16 bits
constexpr int RectangleType = 1;

class MainWindow : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    QStringList events; // "kind:detail" of each UI port call
    std::unique_ptr<Application> app;
    frmMain* main = nullptr;

    void SetUp() override {
        port.onEvent = [this](const QJsonObject& e) {
            const QString kind = e[QStringLiteral("event")].toString();
            QString detail;
            if (kind == QLatin1String("msgbox"))
                detail = e[QStringLiteral("text")].toString();
            else if (kind == QLatin1String("dialog"))
                detail = e[QStringLiteral("name")].toString();
            else if (kind == QLatin1String("print"))
                detail = e[QStringLiteral("what")].toString();
            events << kind + QLatin1Char(':') + detail;
        };
        app = std::make_unique<Application>(port, waiter, AppHome(dir.path()));
        main = &app->form<frmMain>();
    }
    canvas::POLARDraw& engine() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main->canvas1()); }
    void click(const QString& name, int index = -1) {
        main->raiseEvent(main->control(name, index), QStringLiteral("Click"));
    }
};

TEST_F(MainWindow, ToolStripHasItsThirtySevenButtonsWithout34And35) {
    int buttons = 0;
    for (int index = 0; index <= 40; ++index)
        if (main->find(QStringLiteral("cmdToolBarButton"), index))
            ++buttons;
    EXPECT_EQ(buttons, 37);
    EXPECT_EQ(main->find(QStringLiteral("cmdToolBarButton"), 34), nullptr);
    EXPECT_EQ(main->find(QStringLiteral("cmdToolBarButton"), 35), nullptr);
    EXPECT_NE(main->find(QStringLiteral("cmdToolBarButton"), 36), nullptr);
    EXPECT_NE(main->find(QStringLiteral("cmdToolBarButton"), 38), nullptr);
    EXPECT_EQ(main->find(QStringLiteral("cmdToolBarButton"), 39), nullptr);
}

TEST_F(MainWindow, EveryButtonShowsAnSvgIconOfTheProgram) {
    QStringList icons;
    for (const ToolButtonEntry& entry : ToolButtons) {
        const Control& b = main->control(QStringLiteral("cmdToolBarButton"), entry.index);
        const QString picture = b.prop(QStringLiteral("Picture")).toString();
        ASSERT_TRUE(picture.startsWith(QLatin1String(":/icons/"))) << entry.index;
        QFile file(picture);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << picture.toStdString();
        QXmlStreamReader xml(&file);
        ASSERT_TRUE(xml.readNextStartElement()) << picture.toStdString();
        EXPECT_EQ(xml.name(), QLatin1String("svg")) << picture.toStdString();
        EXPECT_EQ(xml.attributes().value(QLatin1String("viewBox")), QLatin1String("0 0 24 24"));
        while (!xml.atEnd())
            xml.readNext();
        EXPECT_FALSE(xml.hasError()) << picture.toStdString();
        icons << picture;
    }
    icons.removeDuplicates();
    EXPECT_EQ(icons.size(), 37); // one icon of its own for each button
}

TEST_F(MainWindow, AMissingFirstLibraryStopsTheLoadWithItsBox) {
    // No libraries in this home: the canvas's own box, then the load's.
    ASSERT_GE(events.size(), 2);
    EXPECT_TRUE(events[0].startsWith(QLatin1String("msgbox:The drawing file ")));
    EXPECT_TRUE(events[1].startsWith(
        QLatin1String("msgbox:An Error Occured In The Form Load Process In Main Screen: 30001 - ")));
    // The steps after the library's load did not run.
    EXPECT_EQ(main->SB1.panelText(3), QString());
    EXPECT_FALSE(main->Timer1.enabled());
    EXPECT_EQ(main->cboTemplates.listCount(), 13);
}

TEST_F(MainWindow, ShapeListOverflowsPast32767Shapes) {
    click(QStringLiteral("mnuView_Shapes"));
    EXPECT_EQ(main->lstShapeList.listCount(), 0);
    for (int i = 0; i <= ShapeListLimit; ++i) {
        canvas::ShapeData s;
        s.type = static_cast<int16_t>(RectangleType);
        s.left = s.top = 1;
        s.right = s.bottom = 2;
        engine().insertNewShape(std::move(s));
    }
    events.clear();
    main->lstShapeList.addItem(QStringLiteral("left over"));
    click(QStringLiteral("cdmShapeData"));
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0], QStringLiteral("msgbox:Run-time error '6':\n\nOverflow"));
    // The list was cleared before the count overflowed.
    EXPECT_EQ(main->lstShapeList.listCount(), 0);
}

TEST_F(MainWindow, ALabelThatIsNotANumberStopsTheDimensionBar) {
    main->SB1.setPanelText(2, QStringLiteral("Dimension Bar"));
    main->control(QStringLiteral("lblHLineLen")).setCaption(QStringLiteral("12a"));
    main->AskForDimensions = false;
    events.clear();
    engine().mouseRelease(1, 0, 100, 100);
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0], QStringLiteral("msgbox:Run-time error '13':\n\nType mismatch"));
    EXPECT_TRUE(waiter.waits.empty());
}

TEST_F(MainWindow, CanvasDialogsGoThroughTheUiPort) {
    PortDialogHost host(port);
    canvas::LineOptions line;
    line.weight = 4;
    EXPECT_FALSE(host.editLine(line));
    EXPECT_EQ(line.weight, 4); // left as the canvas filled it
    canvas::FontOptions font;
    EXPECT_FALSE(host.editFont(font));
    host.pageSetup(engine());
    bool show = true;
    host.print(engine(), show);
    host.fileError(QStringLiteral("The drawing file x.pdr does not exist."), 30001);
    const QStringList tail = events.mid(events.size() - 6);
    EXPECT_EQ(tail, (QStringList{QStringLiteral("dialog:LineDialog"), QStringLiteral("dialog:FontDialog"),
                                 QStringLiteral("dialog:PageSetup"), QStringLiteral("dialog:PrintDialog"),
                                 QStringLiteral("print:drawing of 0 shapes on a page of 295 by 210 mm"),
                                 QStringLiteral("msgbox:The drawing file x.pdr does not exist.")}));
}

TEST_F(MainWindow, TheMainCanvasesUseThePortForTheirDialogs) {
    QVariantList args{RectangleType, 10, 10, 20, 20};
    app->gShapeList->call(QStringLiteral("AddShape"), args);
    QVariantList none;
    app->gShapeList->call(QStringLiteral("SelectAll"), none);
    events.clear();
    main->canvas1()->call(QStringLiteral("ShowShadowDialog"), none);
    main->canvas2()->call(QStringLiteral("ShowPageSetup"), none);
    EXPECT_EQ(events,
              (QStringList{QStringLiteral("dialog:ShadowDialog"), QStringLiteral("dialog:PageSetup")}));
}

TEST_F(MainWindow, TheMyTemplatesCanvasUsesThePortForItsDialogs) {
    Form& templates = app->form(QStringLiteral("frmMyTemplates"));
    QVariantList none;
    events.clear();
    templates.control(QStringLiteral("PD1")).inner->call(QStringLiteral("ShowPageSetup"), none);
    EXPECT_EQ(events, QStringList{QStringLiteral("dialog:PageSetup")});
}

TEST(LateBound, AMemberOfNothingIsRunTimeError424) {
    const AutoPtr nothing;
    try {
        late::get(nothing, "Count");
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::ObjectRequired);
    }
    EXPECT_THROW(late::call(nothing, "SelectAll"), RuntimeError);
    EXPECT_THROW(late::set(nothing, "Zoom", 50), RuntimeError);
}

TEST_F(MainWindow, TheRightButtonBringsTheContextMenu) {
    QStringList shown;
    main->onPopupMenu = [&shown](const QString& menu) { shown << menu; };
    main->MouseIsDown = true;
    engine().mousePress(2, 0, 100, 100);
    engine().mouseRelease(2, 0, 100, 100);
    EXPECT_EQ(shown, QStringList{QStringLiteral("mnuPopup")});
    EXPECT_FALSE(main->MouseIsDown);
    EXPECT_EQ(main->PopupMenuCount, 1);
    // The left button brings no menu.
    engine().mousePress(1, 0, 100, 100);
    engine().mouseRelease(1, 0, 100, 100);
    EXPECT_EQ(shown.size(), 1);
}

} // namespace
} // namespace tessaly
