// The colouring window on the project database of both engines: the plan's
// metafile as a picture, floods and the pen, and the coloured outputs checked
// by ImageMagick, libemf2svg and libwmf.
#include "MetafileTools.h"
#include "WindowFixture.h"
#include "metafile/Picture.h"
#include "output/colour/PaintSurface.h"
#include "output/frmColourFill.h"

namespace tessaly::test {
namespace {

using colour::PaintSurface;

constexpr int Left = 1; // the left mouse button
constexpr int Twips = PaintSurface::TwipsPerPixel;
constexpr uint32_t Red = 0x0000FF; // 0x00BBGGRR
constexpr uint32_t Green = 0x00FF00;
constexpr uint32_t White = 0xFFFFFF;

class ColourWindow : public WindowTest {
protected:
    frmColourFill* window = nullptr;
    int site = 0;
    QString s; // the plan's path without extension

    void SetUp() override {
        WindowTest::SetUp();
        if (HasFatalFailure())
            return;
        const int client = addClient(QStringLiteral("Hartley Homes"), QStringLiteral("Ann"), QString());
        site = addSite(client, QStringLiteral("12 Mill Lane"));
    }

    // Opens the colouring window on a plan of the site's folder. With
    // `withShapes` the canvas holds a rectangle and an ellipse; without, the
    // page is empty and so is the picture. The command's own save writes the
    // plan's .pdr, .emf and .wmf first.
    void openPlan(const QString& address, const QString& description, bool withShapes = true) {
        app->gPlanFileName = address + QLatin1Char('\\') + description;
        if (withShapes) {
            s = savePlan(address, description);
        } else {
            ASSERT_TRUE(QDir().mkpath(fs::toHost(app->gFileStore + QLatin1Char('\\') + address)));
            s = app->gFileStore + QLatin1Char('\\') + app->gPlanFileName;
        }
        click(*main, "mnuEditColour");
        window = static_cast<frmColourFill*>(app->loaded(QString::fromLatin1(frmColourFill::FormName)));
        ASSERT_NE(window, nullptr);
    }
    PaintSurface& surface() { return *PaintSurface::of(window->Picture1); }
    void mouse(const char* event, int button, int px, int py) {
        EventArgs args{button, 0, static_cast<float>(px * Twips), static_cast<float>(py * Twips)};
        window->raiseEvent(window->Picture1, QString::fromLatin1(event), args);
    }
    int32_t at(int px, int py) { return surface().pixel(px, py); }
    void chooseColour(uint32_t colour) {
        port.queueColour(colour);
        click(*window, "cmdChoseColour");
    }
    int flag(int plan) { return colourFlags().at(plan); }
};

TEST_P(ColourWindow, AFreeDrawingDoesNothingAtAll) {
    std::vector<PlanSaveUse> uses;
    app->planRoad.saveProjectOutputs = [&](PlanSaveUse use) { uses.push_back(use); };
    click(*main, "mnuEditColour");
    EXPECT_TRUE(uses.empty());
    EXPECT_TRUE(events.isEmpty());
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmColourFill::FormName)), nullptr);
}

TEST_P(ColourWindow, ThePlanIsSavedAndItsMetafileShownInAreaMode) {
    std::vector<PlanSaveUse> uses;
    app->planRoad.saveProjectOutputs = [&](PlanSaveUse use) { uses.push_back(use); };
    addPlan(site, QStringLiteral("Ground Floor"));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    EXPECT_EQ(uses, std::vector<PlanSaveUse>{PlanSaveUse::Colour});
    EXPECT_EQ(window->caption(), QStringLiteral("Colour Fill"));
    EXPECT_EQ(app->modalStack().back(), window);
    EXPECT_EQ(window->AreaMode, -1);
    EXPECT_EQ(window->PointMode, 0);
    EXPECT_EQ(window->OutputEMF, s + QStringLiteral(" Coloured.emf"));
    EXPECT_EQ(window->OutputWMF, s + QStringLiteral(" Coloured.wmf"));
    ASSERT_TRUE(surface().hasPicture());
    // The image holds the whole picture at its own size, an A4 landscape
    // page at 96 pixels to the inch.
    const QSize picture = metafile::loadPicture(fs::toHost(s + QStringLiteral(".emf"))).pixelSize();
    EXPECT_NEAR(picture.width(), 1122, 10);
    EXPECT_NEAR(picture.height(), 793, 10);
    EXPECT_GE(surface().image().width(), picture.width());
    EXPECT_GE(surface().image().height(), picture.height());
    // The rectangle's outline (20 mm, 20 mm) is on the picture: a dark pixel near it.
    const int px = static_cast<int>(20 / 25.4 * 96), py = static_cast<int>(60 / 25.4 * 96);
    bool dark = false;
    for (int dx = -2; dx <= 2; ++dx)
        dark = dark || (at(px + dx, py) != static_cast<int32_t>(White) && at(px + dx, py) != -1);
    EXPECT_TRUE(dark);
    EXPECT_EQ(window->Option1.caption(), QStringLiteral("Colour An Area"));
    EXPECT_EQ(window->Option2.caption(), QStringLiteral("Colour A Single Point"));
}

TEST_P(ColourWindow, TheCommandsSaveWritesThePlansMetafilesAndNoReports) {
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"), false);
    EXPECT_TRUE(surface().hasPicture());
    EXPECT_EQ(at(10, 10), static_cast<int32_t>(White));
    EXPECT_TRUE(messageBoxes().isEmpty());
    EXPECT_EQ(waiter.waits, (std::vector<int>{500, 300, 500})); // ConvertEMFtoWMF's waits
    for (const char* ending : {".pdr", ".emf", ".wmf"})
        EXPECT_TRUE(QFileInfo::exists(fs::toHost(s + QLatin1String(ending)))) << ending;
    for (const char* ending : {".pdf", ".tiff"})
        EXPECT_FALSE(QFileInfo::exists(fs::toHost(s + QLatin1String(ending)))) << ending;
    EXPECT_FALSE(QFileInfo::exists(home() + QStringLiteral("/PrintTemp.emf")));
    EXPECT_FALSE(emfToSvg(read(s + QStringLiteral(".emf")), QStringLiteral("colour-save")).isEmpty());
}

// A .emf that the canvas cannot write (a folder holds its name): the canvas
// says so, the conversion reports its failure, and the window opens with an
// empty picture, since its load ignores errors.
TEST_P(ColourWindow, AMetafileThatCannotBeWrittenLeavesAnEmptyPicture) {
    ASSERT_TRUE(QDir().mkpath(fs::toHost(app->gFileStore + QStringLiteral("\\12 Mill Lane\\Nowhere.emf"))));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Nowhere"), false);
    EXPECT_FALSE(surface().hasPicture());
    EXPECT_EQ(at(10, 10), static_cast<int32_t>(White));
    const QStringList boxes = messageBoxes();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_EQ(boxes[0], QStringLiteral("Path/File access error"));
    EXPECT_EQ(eventsOf(QStringLiteral("msgbox")).at(0)[QStringLiteral("flags")].toInt(), mb::Critical);
    EXPECT_TRUE(boxes[1].startsWith(QStringLiteral("Error in ConvertEMFtoWMF Process- ")))
        << boxes[1].toStdString();
    EXPECT_TRUE(QFileInfo::exists(fs::toHost(s + QStringLiteral(".pdr"))));
    EXPECT_FALSE(QFileInfo::exists(fs::toHost(s + QStringLiteral(".wmf"))));
    // A flood on the empty picture paints nothing and does not fail.
    chooseColour(Red);
    mouse("MouseUp", Left, 5, 5);
    EXPECT_FALSE(surface().hasPicture());
}

// The command's save has no trap: with the site's folder gone, its first
// failure is the run-time error box, and the window does not open.
TEST_P(ColourWindow, AMissingSiteFolderIsTheRunTimeErrorAndNoWindow) {
    app->gPlanFileName = QStringLiteral("12 Mill Lane\\Ground Floor");
    click(*main, "mnuEditColour");
    EXPECT_EQ(messageBoxes(), QStringList{QStringLiteral("Run-time error '76':\n\nPath not found")});
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmColourFill::FormName)), nullptr);
    EXPECT_FALSE(QFileInfo::exists(fs::toHost(app->gFileStore + QStringLiteral("\\12 Mill Lane"))));
}

TEST_P(ColourWindow, AReleaseFloodsAtTheReleasePosition) {
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    chooseColour(Red);
    EXPECT_EQ(window->lblcolour.backColor(), Red);
    EXPECT_EQ(window->ChosenColour, Red);
    // Pressed inside the rectangle, released outside every shape.
    const int insideX = static_cast<int>(80 / 25.4 * 96), insideY = static_cast<int>(60 / 25.4 * 96);
    mouse("MouseDown", Left, insideX, insideY);
    EXPECT_EQ(window->LastX, insideX * Twips);
    mouse("MouseUp", Left, 5, 5);
    EXPECT_EQ(at(5, 5), static_cast<int32_t>(Red));
    EXPECT_EQ(at(insideX, insideY), static_cast<int32_t>(White));
    EXPECT_TRUE(events.contains(QStringLiteral("pointer:11")));
    EXPECT_EQ(events.filter(QStringLiteral("pointer:")).last(), QStringLiteral("pointer:0"));
    // Flooding on a pixel of the chosen colour changes nothing.
    const QImage before = surface().image().copy();
    mouse("MouseUp", Left, 5, 5);
    EXPECT_EQ(surface().image(), before);
    // The right button does not flood.
    chooseColour(Green);
    mouse("MouseUp", 2, insideX, insideY);
    EXPECT_EQ(at(insideX, insideY), static_cast<int32_t>(White));
    mouse("MouseUp", Left, insideX, insideY);
    EXPECT_EQ(at(insideX, insideY), static_cast<int32_t>(Green));
    EXPECT_EQ(at(5, 5), static_cast<int32_t>(Red));
}

TEST_P(ColourWindow, ThePointModeIsAOnePixelPen) {
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"), false);
    chooseColour(Red);
    window->Option2.setValue(1);
    EXPECT_EQ(window->PointMode, -1);
    EXPECT_EQ(window->AreaMode, 0);
    EXPECT_EQ(window->Option1.value(), 0);
    // A click without movement paints nothing; a release does not flood.
    mouse("MouseDown", Left, 100, 100);
    mouse("MouseUp", Left, 100, 100);
    EXPECT_EQ(at(100, 100), static_cast<int32_t>(White));
    // A drag: lines from the last position, one pixel wide.
    mouse("MouseDown", Left, 100, 100);
    mouse("MouseMove", Left, 110, 100);
    mouse("MouseMove", Left, 110, 105);
    for (int x = 100; x <= 110; ++x)
        EXPECT_EQ(at(x, 100), static_cast<int32_t>(Red)) << x;
    EXPECT_EQ(at(110, 104), static_cast<int32_t>(Red));
    // The last point of a line is left out, and the pen is one pixel wide.
    EXPECT_EQ(at(110, 105), static_cast<int32_t>(White));
    EXPECT_EQ(at(105, 101), static_cast<int32_t>(White));
    EXPECT_EQ(at(105, 99), static_cast<int32_t>(White));
    EXPECT_EQ(surface().drawWidth, 1);
    // A move without the button paints nothing.
    mouse("MouseMove", 0, 150, 150);
    EXPECT_EQ(at(130, 130), static_cast<int32_t>(White));
    window->Option1.setValue(1);
    EXPECT_EQ(window->AreaMode, -1);
    EXPECT_EQ(window->PointMode, 0);
}

TEST_P(ColourWindow, ACancelledColourDialogKeepsTheColour) {
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"), false);
    chooseColour(Green);
    port.queueColour(std::nullopt);
    click(*window, "cmdChoseColour");
    EXPECT_EQ(window->lblcolour.backColor(), Green);
}

TEST_P(ColourWindow, TheResizeRule) {
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"), false);
    window->setSize(20000, 14000, 19000, 13000);
    window->raiseFormEvent(QStringLiteral("Resize"));
    EXPECT_EQ(window->Picture1.geometry(), QRect(2880, 0, 19000 - (2880 + 25), 13000 - 20));
    EXPECT_GE(surface().image().width(), (19000 - 2905) / Twips);
}

TEST_P(ColourWindow, SaveWritesTheThreeColouredFilesAndMarksThePlan) {
    const int ground = addPlan(site, QStringLiteral("Ground Floor"));
    const int first = addPlan(site, QStringLiteral("First Floor"));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    chooseColour(Red);
    mouse("MouseUp", Left, 5, 5);
    const QSize size = surface().image().size();
    waiter.waits.clear();
    events.clear();
    click(*window, "cmdSave");
    EXPECT_EQ(events.first(), QStringLiteral("pointer:11"));
    EXPECT_EQ(waiter.waits.front(), 400);
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmColourFill::FormName)), nullptr);
    EXPECT_TRUE(events.contains(QStringLiteral("pointer:0")));
    EXPECT_EQ(flag(ground), -1);
    EXPECT_EQ(flag(first), 0);

    // The bitmap, read by ImageMagick.
    QByteArray identify;
    ASSERT_EQ(runTool(QStringLiteral("identify"),
                      {QStringLiteral("-format"), QStringLiteral("%m %w %h"),
                       fs::toHost(s + QStringLiteral(" Coloured.bmp"))},
                      &identify),
              0)
        << identify.constData();
    EXPECT_EQ(identify.trimmed(),
              QStringLiteral("BMP3 %1 %2").arg(size.width()).arg(size.height()).toLatin1());
    const QImage bitmap(fs::toHost(s + QStringLiteral(" Coloured.bmp")));
    EXPECT_EQ(bitmap.pixel(5, 5), qRgb(255, 0, 0));

    // The metafile: a bitmap in a valid EMF, read by libemf2svg.
    const QByteArray emf = read(s + QStringLiteral(" Coloured.emf"));
    ASSERT_GT(emf.size(), 108);
    QString description;
    for (uint32_t i = 0; i < u32(emf, 60); ++i)
        description.append(QChar(u16(emf, 108 + 2 * static_cast<qsizetype>(i))));
    EXPECT_EQ(description, QStringLiteral("Tessaly EMF Output") + QChar(0) + QChar(0));
    bool mapMode = false;
    for (const EmfRecord& r : emfRecords(emf))
        mapMode = mapMode || (r.type == 17 && u32(emf, r.offset + 8) == 8); // EMR_SETMAPMODE, MM_ANISOTROPIC
    EXPECT_TRUE(mapMode);
    EXPECT_TRUE(emfToSvg(emf, QStringLiteral("coloured-plan")).contains("<image"));

    // The placeable metafile, read by libwmf.
    const QByteArray wmf = read(s + QStringLiteral(" Coloured.wmf"));
    ASSERT_GT(wmf.size(), 22);
    EXPECT_EQ(u32(wmf, 0), 0x9AC6CDD7u);
    EXPECT_FALSE(wmfToSvg(wmf, QStringLiteral("coloured-plan")).isEmpty());
    // The plan itself is untouched.
    EXPECT_TRUE(QFileInfo::exists(fs::toHost(s + QStringLiteral(".emf"))));
}

TEST_P(ColourWindow, OnlyTheFirstOfSeveralRowsIsMarked) {
    const int first = addPlan(site, QStringLiteral("Ground Floor"));
    const int second = addPlan(site, QStringLiteral("Ground Floor"));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    click(*window, "cmdSave");
    EXPECT_EQ(flag(first), -1);
    EXPECT_EQ(flag(second), 0);
}

// An apostrophe breaks the query: the run-time error box, the files written,
// no mark, and the window stays.
TEST_P(ColourWindow, AnApostropheBreaksTheQuery) {
    const int client = addClient(QStringLiteral("Neill"), QStringLiteral("Pat"), QString());
    const int other = addSite(client, QStringLiteral("St John's Road"));
    const int plan = addPlan(other, QStringLiteral("Ground Floor"));
    openPlan(QStringLiteral("St John's Road"), QStringLiteral("Ground Floor"));
    click(*window, "cmdSave");
    const QStringList boxes = messageBoxes();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes[0].startsWith(QStringLiteral("Run-time error '"))) << boxes[0].toStdString();
    EXPECT_TRUE(QFileInfo::exists(fs::toHost(s + QStringLiteral(" Coloured.bmp"))));
    EXPECT_TRUE(QFileInfo::exists(fs::toHost(s + QStringLiteral(" Coloured.wmf"))));
    EXPECT_EQ(flag(plan), 0);
    EXPECT_NE(app->loaded(QString::fromLatin1(frmColourFill::FormName)), nullptr);
}

// A backslash in the plan's name: the address and the description are the
// first two parts, so another plan is marked.
TEST_P(ColourWindow, ABackslashSplitsTheNameWrongly) {
    const int ground = addPlan(site, QStringLiteral("Ground"));
    const int floor = addPlan(site, QStringLiteral("Ground\\Floor"));
    QDir().mkpath(fs::toHost(app->gFileStore) + QStringLiteral("/12 Mill Lane/Ground"));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground\\Floor"));
    click(*window, "cmdSave");
    EXPECT_TRUE(messageBoxes().isEmpty());
    EXPECT_EQ(flag(ground), -1);
    EXPECT_EQ(flag(floor), 0);
    EXPECT_TRUE(QFileInfo::exists(fs::toHost(app->gFileStore) +
                                  QStringLiteral("/12 Mill Lane/Ground/Floor Coloured.bmp")));
}

TEST_P(ColourWindow, CancelStoresNothing) {
    const int plan = addPlan(site, QStringLiteral("Ground Floor"));
    openPlan(QStringLiteral("12 Mill Lane"), QStringLiteral("Ground Floor"));
    mouse("MouseUp", Left, 5, 5);
    click(*window, "cmdCancel");
    EXPECT_EQ(app->loaded(QString::fromLatin1(frmColourFill::FormName)), nullptr);
    EXPECT_FALSE(QFileInfo::exists(fs::toHost(s + QStringLiteral(" Coloured.bmp"))));
    EXPECT_EQ(flag(plan), 0);
}

TESSALY_DB_ENGINES(ColourWindow);

} // namespace
} // namespace tessaly::test
