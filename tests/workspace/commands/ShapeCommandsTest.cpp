// Commands of the main window whose effect shows in the canvas's own dialogs
// and view: the formatting dialogs, the fits, the page orientation.
#include "WorkspaceFixture.h"

#include <QImage>

namespace tessaly {
namespace {

using testing::MainWindowCommands;

constexpr int Rectangle = 1;

TEST_F(MainWindowCommands, FormattingDialogsGoToTheCanvas) {
    addShape(Rectangle, 10, 10, 40, 30);
    selectAll();
    for (const char* menu : {"mnuPopup_Line_Options", "mnuPopup_Line_Arrows", "mnuPopup_Fill_Shade",
                             "mnuPopup_Fill_Pattern", "mnuPopup_Fill_Texture", "mnuPopup_Shadow_Options"})
        click(menu);
    EXPECT_EQ(host.asked,
              (QStringList{QStringLiteral("Line"), QStringLiteral("Arrows"), QStringLiteral("Shade"),
                           QStringLiteral("Pattern"), QStringLiteral("Texture"), QStringLiteral("Shadow")}));
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(MainWindowCommands, GuardedFormattingWarnsWithNothingSelected) {
    for (const char* menu : {"mnuPopup_Fill_Shade", "mnuPopup_Fill_Pattern", "mnuPopup_Fill_Texture",
                             "mnuPopup_Fill_Colour", "mnuPopup_Shadow_Lens_Efects", "mnuPopup_Text_Font"})
        click(menu);
    EXPECT_TRUE(host.asked.isEmpty());
    EXPECT_EQ(events.size(), 6);
    for (const QString& e : events)
        EXPECT_EQ(e, QStringLiteral("msgbox:Nothing selected!"));
}

TEST_F(MainWindowCommands, LineOptionsIgnoresTheCanvasError) {
    // Nothing selected: the canvas complains, and the command swallows it.
    EXPECT_TRUE(
        main.raiseEvent(main.control(QStringLiteral("mnuPopup_Line_Options")), QStringLiteral("Click")));
    EXPECT_TRUE(events.isEmpty());
    // The arrows have no such trap: the error reaches the user.
    EXPECT_FALSE(
        main.raiseEvent(main.control(QStringLiteral("mnuPopup_Line_Arrows")), QStringLiteral("Click")));
    ASSERT_EQ(events.size(), 1);
    EXPECT_TRUE(events[0].startsWith(QStringLiteral("msgbox:Run-time error")));
}

TEST_F(MainWindowCommands, FontDialogForATextShape) {
    addText(QStringLiteral("Kitchen"), 10, 10, 60, 20);
    selectAll();
    click("mnuPopup_Text_Font");
    EXPECT_EQ(host.asked, QStringList{QStringLiteral("Font")});
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(MainWindowCommands, ContentOpensTheTextEditor) {
    addShape(Rectangle, 10, 10, 40, 30);
    selectAll();
    click("mnuPopup_Text_Content");
    EXPECT_TRUE(engine().textEditor().open);
}

TEST_F(MainWindowCommands, TextureFromFileFillsTheSelection) {
    addShape(Rectangle, 10, 10, 40, 30);
    selectAll();
    const QString picture = dir.filePath(QStringLiteral("brick.bmp"));
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(picture, "BMP"));
    port.queueOpen(picture);
    click("mnuPopup_Fill_TextureFile");
    const QVariantMap fill = engine().describeShapes().value(0).toMap().value(QStringLiteral("fill")).toMap();
    EXPECT_TRUE(fill.value(QStringLiteral("texture")).toBool());
    EXPECT_TRUE(engine().autoRedraw());
}

TEST_F(MainWindowCommands, FitsChangeTheZoomAsTheCanvasFitsDo) {
    addShape(Rectangle, 10, 10, 40, 30);
    selectAll();
    const struct {
        const char* menu;
        int mode;
    } fits[] = {{"mnuView_Page_FitToPage", 0},        {"mnuPopou_Page_FitToPage", 0},
                {"mnuView_Page_FitToSelection", 1},   {"mnuPopou_Page_FitToSelection", 1},
                {"mnuView_Page_FitToScreenWidth", 2}, {"mnuView_Page_FitToScreenHeight", 3}};
    engine().setViewportSize(QSize(800, 600));
    for (const auto& f : fits) {
        engine().setZoom(333);
        engine().fitTo(f.mode);
        const int expected = engine().zoom();
        engine().setZoom(333);
        click(f.menu);
        EXPECT_EQ(engine().zoom(), expected) << f.menu;
    }
}

TEST_F(MainWindowCommands, PortraitOrientationStepsInOrder) {
    app.gDefaultPageZoom = 62;
    ChangeOrientation(false);
    // Zoom 62 - 25 stands when the page setup opens; the hourglass goes after the fit.
    ASSERT_EQ(host.zoomAtPageSetup.size(), 1u);
    EXPECT_EQ(host.zoomAtPageSetup[0], 37);
    EXPECT_EQ(host.asked, (QStringList{QStringLiteral("pointer:11"), QStringLiteral("PageSetup"),
                                       QStringLiteral("pointer:0")}));
    EXPECT_FALSE(main.PageIsLandscape);
}

TEST_F(MainWindowCommands, LandscapeOrientationResetsThePointerBeforeThePageSetup) {
    app.gDefaultPageZoom = 62;
    ChangeOrientation(true);
    ASSERT_EQ(host.zoomAtPageSetup.size(), 1u);
    EXPECT_EQ(host.zoomAtPageSetup[0], 62);
    EXPECT_EQ(host.asked, (QStringList{QStringLiteral("pointer:11"), QStringLiteral("pointer:0"),
                                       QStringLiteral("PageSetup")}));
    EXPECT_TRUE(main.PageIsLandscape);
}

} // namespace
} // namespace tessaly
