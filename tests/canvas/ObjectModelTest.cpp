#include "MakeCorpus.h"
#include "CanvasSupport.h"

#include "canvas/model/ShapeTypes.h"

#include <QDir>
#include <QFile>
#include <QPainter>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

struct Fixture : ::testing::Test {
    std::shared_ptr<POLARDraw> c = makeCanvas();
    AutoPtr canvas = c;
    AutoPtr page = obj(canvas, "Page");
    AutoPtr shapes = obj(page, "Shapes");
    AutoPtr selection = obj(page, "Selection");
    AutoPtr views = obj(canvas, "Views");
    AutoPtr view = obj(views, "Item");

    AutoPtr add(int type, int l, int t, int r, int b) {
        call(shapes, "AddShape", {type, l, t, r, b});
        return obj(shapes, "Item", {get(shapes, "Count")});
    }
};

} // namespace

TEST_F(Fixture, AddShapeByNameWalkAndReadBack) {
    AutoPtr shape = add(1, 5, 5, 45, 8);
    EXPECT_EQ(get(shapes, "Count").toInt(), 1);
    EXPECT_EQ(get(shape, "Type").toInt(), 1);
    EXPECT_EQ(get(shape, "Left").toInt(), 5);
    EXPECT_EQ(get(shape, "Top").toInt(), 5);
    EXPECT_EQ(get(shape, "Right").toInt(), 45);
    EXPECT_EQ(get(shape, "Bottom").toInt(), 8);
    EXPECT_EQ(get(shape, "Width").toInt(), 40);
    EXPECT_EQ(get(shape, "Height").toInt(), 3);
    EXPECT_EQ(get(view, "Zoom").toInt(), 100);
    // default members: ViewList() is the View, ShapeList(1) the first shape
    EXPECT_EQ(get(obj(views, ""), "Zoom").toInt(), 100);
    EXPECT_EQ(get(obj(shapes, "", {1}), "Id").toInt(), get(shape, "Id").toInt());
}

TEST_F(Fixture, ViewOfTheCanvasIsTheDefaultViewOfItsViewList) {
    const AutoPtr direct = obj(canvas, "View");
    ASSERT_NE(direct, nullptr);
    EXPECT_EQ(direct, view);
    EXPECT_EQ(direct->typeName(), QStringLiteral("View"));
    direct->set(QStringLiteral("Zoom"), 150);
    EXPECT_EQ(get(view, "Zoom").toInt(), 150);
    EXPECT_EQ(errorOf([&] { canvas->set(QStringLiteral("View"), 1); }), 383);
}

TEST_F(Fixture, EmptyPageHasNoShapesAndTheRangeIsNothing) {
    EXPECT_EQ(get(shapes, "Count").toInt(), 0);
    const QVariant range = get(selection, "Range");
    EXPECT_TRUE(holdsObject(range));
    EXPECT_EQ(toObject(range), nullptr); // Nothing, distinguishable from any selection
    add(1, 0, 0, 10, 10);
    call(shapes, "SelectAll");
    AutoPtr r = obj(selection, "");
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(get(r, "Count").toInt(), 1);
    call(selection, "Clear");
    EXPECT_EQ(obj(selection, "Range"), nullptr);
}

TEST_F(Fixture, ShapeRangeItemCountsFromOneInSelectionOrder) {
    AutoPtr a = add(1, 0, 0, 10, 10);
    AutoPtr b = add(3, 20, 0, 30, 10);
    c->setSelection({get(b, "Id").toInt(), get(a, "Id").toInt()});
    AutoPtr r = obj(selection, "Range");
    EXPECT_EQ(get(r, "Count").toInt(), 2);
    EXPECT_EQ(get(obj(r, "Item", {1}), "Id").toInt(), get(b, "Id").toInt());
    EXPECT_EQ(get(obj(r, "", {2}), "Id").toInt(), get(a, "Id").toInt());
    EXPECT_EQ(errorOf([&] { obj(r, "Item", {0}); }), 5);
    EXPECT_EQ(errorOf([&] { obj(r, "Item", {3}); }), 5);
    EXPECT_EQ(errorOf([&] { obj(r, "Item", {40000}); }), 6); // a 16-bit argument
}

TEST_F(Fixture, ItemByIdFindsTheShapeAndAnUnknownIdIsAClearError) {
    AutoPtr a = add(12, 0, 0, 10, 10);
    QVariantList args{get(a, "Id")};
    AutoPtr found = toObject(shapes->call("ItemById", args));
    EXPECT_EQ(get(found, "Type").toInt(), 12);
    try {
        call(shapes, "ItemById", {999});
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 5);
        EXPECT_EQ(e.description(), QStringLiteral("There is no shape with id 999 on the page"));
    }
    EXPECT_EQ(errorOf([&] { call(shapes, "Item", {2}); }), 5);
}

TEST_F(Fixture, EveryPropertyCanBeReadIncludingWriteOnlyOnes) {
    AutoPtr s = add(1, 10, 10, 50, 30);
    s->set("Filled", false);
    s->set("Stroked", false);
    EXPECT_EQ(get(s, "Filled").toBool(), false);
    EXPECT_EQ(get(s, "Stroked").toBool(), false);
    s->set("Name", "Wall7");
    EXPECT_EQ(get(s, "Name").toString(), "Wall7");
    AutoPtr fill = obj(s, "Fill");
    fill->set("Type", 0);
    fill->set("Colour", 255);
    EXPECT_EQ(get(fill, "Type").toInt(), 0);
    EXPECT_EQ(get(fill, "Colour").toInt(), 255);
    AutoPtr line = obj(s, "Line");
    line->set("Style", 2);
    line->set("Colour", 0x00FF00);
    line->set("Weight", 3);
    EXPECT_EQ(get(line, "Style").toInt(), 2);
    EXPECT_EQ(get(line, "Colour").toInt(), 0x00FF00);
    EXPECT_EQ(get(line, "Weight").toInt(), 3);
    EXPECT_EQ(errorOf([&] { line->set("Weight", 40000); }), 6);
    AutoPtr font = obj(obj(s, "Text"), "Font");
    font->set("Name", "Arial");
    font->set("Size", 12);
    font->set("Bold", true);
    EXPECT_EQ(get(font, "").toString(), "Arial");
    EXPECT_EQ(get(font, "Size").toInt(), 12);
    EXPECT_TRUE(get(font, "Bold").toBool());
    AutoPtr locks = obj(s, "Locks");
    locks->set("LockA", true);
    locks->set("LockB", true);
    EXPECT_TRUE(get(locks, "LockA").toBool());
    EXPECT_TRUE(get(locks, "LockB").toBool());
    AutoPtr effect = obj(s, "Effect");
    effect->set("LensActive", true);
    AutoPtr lens = obj(effect, "Lens");
    lens->set("Type", 3);
    lens->set("Percent", 150);
    lens->set("StartColour", 0x0000FF);
    lens->set("EndColour", 0xFF0000);
    EXPECT_TRUE(get(effect, "LensActive").toBool());
    EXPECT_EQ(get(lens, "Type").toInt(), 3);
    EXPECT_EQ(get(lens, "Percent").toInt(), 100); // kept within -100..100
    EXPECT_EQ(get(lens, "StartColour").toInt(), 0x0000FF);
    EXPECT_EQ(get(lens, "EndColour").toInt(), 0xFF0000);
    EXPECT_EQ(errorOf([&] { lens->set("Type", 4); }), 5); // only codes of the lens table
    EXPECT_EQ(errorOf([&] { s->set("Id", 3); }), 383);
    EXPECT_EQ(errorOf([&] { get(s, "NoSuchMember"); }), 438);

    const QVariantMap d = c->describeShapes().at(0).toMap();
    EXPECT_EQ(d["name"].toString(), "Wall7");
    EXPECT_EQ(d["fill"].toMap()["colour"].toInt(), 255);
    EXPECT_EQ(d["line"].toMap()["weight"].toInt(), 3);
    EXPECT_EQ(d["font"].toMap()["size"].toInt(), 12);
    EXPECT_TRUE(d["locks"].toMap()["a"].toBool());
    EXPECT_EQ(d["lens"].toMap()["type"].toInt(), 3);
    EXPECT_EQ(d["left"].toInt(), 10);
    EXPECT_EQ(d["bottom"].toInt(), 30);
}

TEST_F(Fixture, WritingOneEdgeMovesThatEdgeOnly) {
    AutoPtr s = add(1, 10, 10, 50, 30);
    s->set("Left", 20);
    EXPECT_EQ(get(s, "Left").toInt(), 20);
    EXPECT_EQ(get(s, "Right").toInt(), 50);
    s->set("Bottom", 40);
    EXPECT_EQ(get(s, "Top").toInt(), 10);
    EXPECT_EQ(get(s, "Height").toInt(), 30);
    s->set("Left", -20); // negative edges, as the right alignment produces, are kept
    EXPECT_EQ(get(s, "Left").toInt(), -20);
    EXPECT_EQ(get(s, "Width").toInt(), 70);
}

TEST_F(Fixture, ShapeRangeWritesGoToEveryShape) {
    AutoPtr a = add(1, 0, 0, 10, 10);
    AutoPtr b = add(1, 20, 0, 30, 10);
    call(shapes, "SelectAll");
    AutoPtr r = obj(selection, "Range");
    r->set("Stroked", false);
    obj(r, "Line")->set("Colour", 0x123456);
    r->set("Top", 5);
    EXPECT_FALSE(get(a, "Stroked").toBool());
    EXPECT_FALSE(get(b, "Stroked").toBool());
    EXPECT_EQ(get(obj(b, "Line"), "Colour").toInt(), 0x123456);
    EXPECT_EQ(get(a, "Top").toInt(), 5);
    EXPECT_EQ(get(b, "Top").toInt(), 5);
    // shapes that shared a style share the new one
    EXPECT_EQ(c->drawing().at(0)->style, c->drawing().at(1)->style);
}

TEST_F(Fixture, MoveRotateGetBoundsAndReorder) {
    AutoPtr a = add(1, 0, 0, 10, 10);
    AutoPtr b = add(3, 20, 0, 30, 10);
    call(shapes, "SelectAll");
    AutoPtr r = obj(selection, "Range");
    call(r, "Move", {5, 7});
    QVariantList bounds{0, 0, 0, 0};
    r->call("GetBounds", bounds);
    EXPECT_EQ(bounds, (QVariantList{5, 7, 35, 17}));
    call(r, "Rotate", {90});
    EXPECT_EQ(get(a, "Rotation").toInt(), 90);
    EXPECT_EQ(get(b, "Rotation").toInt(), 90);
    c->setSelection({get(b, "Id").toInt()});
    call(obj(selection, "Range"), "Reorder", {0});
    EXPECT_EQ(get(obj(shapes, "Item", {1}), "Id").toInt(), get(b, "Id").toInt());
    call(obj(selection, "Range"), "Reorder", {3});
    EXPECT_EQ(get(obj(shapes, "Item", {2}), "Id").toInt(), get(b, "Id").toInt());
    call(obj(selection, "Range"), "Reorder", {1});
    EXPECT_EQ(get(obj(shapes, "Item", {1}), "Id").toInt(), get(b, "Id").toInt());
    call(obj(selection, "Range"), "Reorder", {2});
    EXPECT_EQ(get(obj(shapes, "Item", {2}), "Id").toInt(), get(b, "Id").toInt());
}

TEST_F(Fixture, GroupUngroupConvertAndDelete) {
    add(1, 0, 0, 10, 10);
    add(3, 20, 0, 30, 10);
    call(shapes, "SelectAll");
    call(obj(selection, "Range"), "Group");
    EXPECT_EQ(get(shapes, "Count").toInt(), 1);
    AutoPtr g = obj(shapes, "Item", {1});
    EXPECT_EQ(get(g, "Type").toInt(), shape_type::Group);
    EXPECT_EQ(get(g, "Right").toInt(), 30);
    call(obj(selection, "Range"), "Move", {10, 0});
    call(obj(selection, "Range"), "Ungroup", {false});
    EXPECT_EQ(get(shapes, "Count").toInt(), 2);
    EXPECT_EQ(get(obj(shapes, "Item", {2}), "Left").toInt(), 30);
    c->setSelection({c->drawing().at(0)->id});
    call(obj(selection, "Range"), "ConvertToPolygon");
    AutoPtr poly = obj(shapes, "Item", {1});
    EXPECT_EQ(get(poly, "Type").toInt(), 0);
    EXPECT_EQ(c->drawing().at(0)->extra->points.size(), 4u);
    EXPECT_EQ(get(poly, "Right").toInt(), 20);
    call(selection, "Delete");
    EXPECT_EQ(get(shapes, "Count").toInt(), 1);
    EXPECT_EQ(obj(selection, "Range"), nullptr);
}

TEST_F(Fixture, AddTextAndAddPicture) {
    call(shapes, "AddText", {"2350", 10, 8, 30, 17});
    AutoPtr t = obj(shapes, "Item", {1});
    EXPECT_EQ(get(t, "Type").toInt(), 202);
    EXPECT_EQ(get(obj(t, "Text"), "").toString(), "2350");
    EXPECT_EQ(obj(t, "Text")->printValue()->toString(), "2350");
    auto picture = std::make_shared<PictureObject>(CanvasPicture::fromData(pngBytes(8, 6)));
    EXPECT_EQ(get(picture, "Width").toInt(), 212); // 8 px at 96 dpi in 0.01 mm
    QVariantList args{toVariant(picture), 0, 0, 100, 80};
    AutoPtr p = toObject(shapes->call("AddPicture", args));
    EXPECT_EQ(get(p, "Type").toInt(), shape_type::Picture);
    EXPECT_EQ(get(p, "Right").toInt(), 100);
    EXPECT_EQ(get(shapes, "Count").toInt(), 2);
    QVariantList bad{QByteArray("not a picture"), 0, 0, 1, 1};
    EXPECT_EQ(errorOf([&] { shapes->call("AddPicture", bad); }), 481);
}

TEST_F(Fixture, LoadTextureEmbedsThePicture) {
    QTemporaryDir dir;
    const QString path = dir.filePath("t.png");
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(pngBytes());
    f.close();
    AutoPtr s = add(1, 0, 0, 10, 10);
    call(obj(s, "Fill"), "LoadTexture", {path});
    EXPECT_EQ(get(obj(s, "Fill"), "Type").toInt(), fill_type::Texture);
    EXPECT_EQ(c->drawing().at(0)->st().fill.texture->data(), pngBytes());
    EXPECT_EQ(errorOf([&] { call(obj(s, "Fill"), "LoadTexture", {dir.filePath("none.png")}); }), 53);
}

TEST_F(Fixture, PageAndViewPropertiesRoundTrip) {
    page->set("Width", 210);
    page->set("Height", 295);
    page->set("Landscape", false);
    page->set("PaperColour", 0xFFFFF0);
    page->set("OutlineColour", 1);
    page->set("ShadowColour", 2);
    page->set("ShowPaper", false);
    page->set("ShowOutline", false);
    page->set("ShowShadow", false);
    page->set("GridColour", 3);
    page->set("GuideColour", 14737632);
    page->set("GridSpacingX", 5);
    page->set("GridSpacingY", 6);
    EXPECT_EQ(get(page, "Width").toInt(), 210);
    EXPECT_EQ(get(page, "Height").toInt(), 295);
    EXPECT_FALSE(get(page, "Landscape").toBool());
    EXPECT_EQ(get(page, "PaperColour").toInt(), 0xFFFFF0);
    EXPECT_EQ(get(page, "OutlineColour").toInt(), 1);
    EXPECT_EQ(get(page, "ShadowColour").toInt(), 2);
    EXPECT_FALSE(get(page, "ShowPaper").toBool());
    EXPECT_FALSE(get(page, "ShowOutline").toBool());
    EXPECT_FALSE(get(page, "ShowShadow").toBool());
    EXPECT_EQ(get(page, "GridColour").toInt(), 3);
    EXPECT_EQ(get(page, "GuideColour").toInt(), 14737632);
    EXPECT_EQ(get(page, "GridSpacingX").toInt(), 5);
    EXPECT_EQ(get(page, "GridSpacingY").toInt(), 6);
    for (const char* name : {"ShowGrid", "SnapToGrid", "ShowGuides", "SnapToGuides", "ShowFlagA", "ShowFlagB",
                             "ShowFlagC", "ShowFlagD"}) {
        view->set(name, true);
        EXPECT_TRUE(get(view, name).toBool()) << name;
        view->set(name, false);
        EXPECT_FALSE(get(view, name).toBool()) << name;
    }
    view->set("DefaultToolMode", 1);
    EXPECT_EQ(get(view, "DefaultToolMode").toInt(), 1);
    view->set("ToolMode", 4);
    view->set("ToolShapeType", 10250);
    view->set("ToolOption", 2);
    EXPECT_EQ(get(view, "ToolMode").toInt(), 4);
    EXPECT_EQ(get(view, "ToolShapeType").toInt(), 10250);
    EXPECT_EQ(get(view, "ToolOption").toInt(), 2);
    AutoPtr options = obj(view, "Options");
    options->set("MeasurementUnits", 1);
    options->set("AllowErrorReporting", true);
    EXPECT_EQ(get(options, "MeasurementUnits").toInt(), 1);
    EXPECT_TRUE(get(options, "AllowErrorReporting").toBool());
    canvas->set("GridVisible", true);
    canvas->set("HighlightEnabled", true);
    canvas->set("HighlightColour", 255);
    canvas->set("HighlightAltColour", 255);
    canvas->set("DrawingTag", "50");
    EXPECT_TRUE(get(canvas, "GridVisible").toBool());
    EXPECT_TRUE(get(canvas, "HighlightEnabled").toBool());
    EXPECT_EQ(get(canvas, "HighlightColour").toInt(), 255);
    EXPECT_EQ(get(canvas, "HighlightAltColour").toInt(), 255);
    EXPECT_EQ(get(canvas, "DrawingTag").toString(), "50");
    EXPECT_TRUE(get(canvas, "Modified").toBool());
    canvas->set("Modified", false);
    EXPECT_FALSE(get(canvas, "Modified").toBool());
}

TEST_F(Fixture, ShowConnectorsIsStoredAsWritten) {
    AutoPtr options = obj(view, "Options");
    options->set("ShowConnectors", true);
    view->set("ToolMode", 1); // a tool change alone leaves the option as it is
    EXPECT_TRUE(get(options, "ShowConnectors").toBool());
    options->set("ShowConnectors", false);
    EXPECT_FALSE(get(options, "ShowConnectors").toBool());
}

TEST_F(Fixture, GuideListsAddClearAndPrintAsAList) {
    AutoPtr h = obj(page, "HorizontalGuides");
    AutoPtr v = obj(page, "VerticalGuides");
    for (int y = 0; y <= 210; y += 20)
        call(h, "Add", {y});
    call(v, "Add", {40});
    EXPECT_EQ(get(h, "Count").toInt(), 11);
    EXPECT_EQ(h->printValue()->toList().at(3).toInt(), 60);
    EXPECT_EQ(v->printValue()->toList(), (QVariantList{40}));
    call(h, "Clear");
    EXPECT_TRUE(h->printValue()->toList().isEmpty());
    EXPECT_EQ(v->printValue()->toList().size(), 1);
}

TEST_F(Fixture, CachedObjectsStayValidAcrossLoadFile) {
    QTemporaryDir dir;
    add(1, 0, 0, 10, 10);
    c->saveFile(dir.filePath("one.pdr"), 1);
    add(3, 0, 0, 10, 10);
    add(3, 0, 0, 10, 10);
    c->saveFile(dir.filePath("three.pdr"), 1);
    AutoPtr h = obj(page, "HorizontalGuides");
    c->loadFile(dir.filePath("one.pdr"));
    EXPECT_EQ(get(shapes, "Count").toInt(), 1);
    c->loadFile(dir.filePath("three.pdr"));
    EXPECT_EQ(get(shapes, "Count").toInt(), 3);
    EXPECT_EQ(get(obj(shapes, "Item", {3}), "Type").toInt(), 3);
    EXPECT_EQ(get(page, "Width").toInt(), 295);
    call(h, "Add", {5});
    EXPECT_EQ(c->drawing().state().horizontalGuides, std::vector<int>{5});
    EXPECT_EQ(obj(canvas, "Page"), page); // the same object every time
    EXPECT_EQ(obj(page, "Shapes"), shapes);
}

TEST_F(Fixture, CoordinateModePixelsConvertsEveryCoordinate) {
    AutoPtr s = add(1, 10, 20, 30, 40);
    canvas->set("CoordinateMode", 3);
    const double k = 96.0 / 25.4;
    EXPECT_EQ(get(s, "Left").toInt(), qRound(10 * k));
    EXPECT_EQ(get(s, "Bottom").toInt(), qRound(40 * k));
    c->setSelection({get(s, "Id").toInt()});
    call(obj(selection, "Range"), "Move", {1, 0}); // one pixel
    canvas->set("CoordinateMode", 1);
    EXPECT_NEAR(c->drawing().at(0)->left, 10 + 1 / k, 1e-9);
    view->set("Zoom", 200);
    canvas->set("CoordinateMode", 3);
    call(shapes, "AddShape", {1, 0, 0, 378, 189}); // 378 px at 200% is 50 mm
    canvas->set("CoordinateMode", 1);
    AutoPtr t = obj(shapes, "Item", {2});
    EXPECT_EQ(get(t, "Right").toInt(), 50);
    EXPECT_EQ(get(t, "Bottom").toInt(), 25);
    EXPECT_EQ(errorOf([&] { canvas->set("CoordinateMode", 2); }), 5);
}

TEST_F(Fixture, ScreenToClientThenClientToPageGivesTheClickInMillimetres) {
    c->setScreenOrigin(QPoint(100, 50));
    view->set("Zoom", 100);
    c->setScroll(QPointF(-10, -5));
    const QPointF screen = c->pageToScreen(QPointF(40, 30));
    QVariantList xy{qRound(screen.x()), qRound(screen.y())};
    canvas->set("CoordinateMode", 3);
    views->call("ScreenToClient", xy);
    EXPECT_EQ(xy[0].toInt(), qRound(screen.x()) - 100);
    canvas->set("CoordinateMode", 1);
    views->call("ClientToPage", xy);
    EXPECT_EQ(xy, (QVariantList{40, 30}));
}

TEST_F(Fixture, ZoomFitAndCentre) {
    view->set("Zoom", 250);
    EXPECT_EQ(get(canvas, "Zoom").toInt(), 250);
    canvas->set("Zoom", 5);
    EXPECT_EQ(get(view, "Zoom").toInt(), 10);
    call(views, "FitTo", {0});
    const int fit = get(view, "Zoom").toInt();
    // 295 x 210 mm in 800 x 600 px: the width decides
    EXPECT_EQ(fit, static_cast<int>(800 * 0.95 / (295 * 96 / 25.4) * 100));
    call(views, "FitTo", {3});
    EXPECT_EQ(get(view, "Zoom").toInt(), static_cast<int>(600 * 0.95 / (210 * 96 / 25.4) * 100));
    call(views, "CenterPage");
    const QPointF centre = c->viewGeometry().clientToPage(QPointF(400, 300));
    EXPECT_NEAR(centre.x(), 147.5, 1e-9);
    EXPECT_NEAR(centre.y(), 105, 1e-9);
    AutoPtr s = add(1, 100, 100, 110, 105);
    c->setSelection({get(s, "Id").toInt()});
    call(views, "FitTo", {1});
    EXPECT_EQ(get(view, "Zoom").toInt(), 1000);
}

TEST(ObjectModelLifetime, ObjectsKeptAfterTheCanvasIsReleasedRaise424) {
    AutoPtr page;
    {
        auto c = makeCanvas();
        page = c->page();
    }
    EXPECT_EQ(errorOf([&] { get(page, "Width"); }), 424);
}

TEST(ObjectModelLifetime, SeveralCanvasesAreIndependent) {
    auto main = makeCanvas();
    auto templates = makeCanvas();
    call(main->shapes(), "AddShape", {1, 0, 0, 5, 5});
    EXPECT_EQ(get(main->shapes(), "Count").toInt(), 1);
    EXPECT_EQ(get(templates->shapes(), "Count").toInt(), 0);
}

TEST(ObjectModelLifetime, ZeroAndFarOffShapesDoNotBreakAnything) {
    auto c = makeCanvas();
    call(c->shapes(), "AddShape", {1, 5, 5, 5, 5});
    call(c->shapes(), "AddShape", {3, 2000000000, 2000000000, -2000000000, 5});
    call(c->shapes(), "AddShape", {20, 50, 50, 10, 10});
    QImage img(200, 200, QImage::Format_RGB32);
    QPainter p(&img);
    c->renderView(p);
    EXPECT_EQ(c->drawing().count(), 3);
    EXPECT_EQ(c->drawing().topmostAt(QPointF(30, 30), 1), 2);
}
