#include "MakeCorpus.h"
#include "CanvasSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QtEndian>

using namespace tessaly;
using namespace tessaly::canvas;
using namespace tessaly::canvas::test;

namespace {

QByteArray readAll(const QString& path) {
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

void writeAll(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

void expectSameDrawing(const Drawing& d, const pdr::Contents& c) {
    EXPECT_TRUE(d.state() == c.state);
    ASSERT_EQ(d.count(), static_cast<int>(c.shapes.size()));
    for (int i = 0; i < d.count(); ++i)
        EXPECT_TRUE(d.at(i)->sameAs(*c.shapes[static_cast<size_t>(i)])) << "shape " << i;
}

struct Files : ::testing::Test {
    QTemporaryDir dir;
    std::shared_ptr<POLARDraw> c = makeCanvas();
    EventLog log;
    Files() { c->addEventSink(&log); }
    QString path(const QString& name) const { return dir.filePath(name); }
};

} // namespace

TEST_F(Files, SaveThenLoadGivesBackTheSameDrawingFieldForField) {
    const pdr::Contents rich = richDrawing();
    ASSERT_TRUE(pdr::writeFile(path("rich.pdr"), rich.shapes, rich.state).isEmpty());
    c->loadFile(path("rich.pdr"));
    expectSameDrawing(c->drawing(), rich);
    EXPECT_EQ(c->drawingTag(), "50");
    EXPECT_FALSE(c->modified());
    c->saveFile(path("again.pdr"), 1);
    EXPECT_EQ(readAll(path("again.pdr")), readAll(path("rich.pdr")));
    auto other = makeCanvas();
    other->loadFile(path("again.pdr"));
    expectSameDrawing(other->drawing(), rich);
    EXPECT_EQ(other->describeShapes(), c->describeShapes());
    // the embedded picture and texture are the original bytes
    EXPECT_EQ(other->drawing().at(21)->extra->picture->data(), pngBytes());
}

TEST_F(Files, ADrawingMadeThroughTheObjectModelSurvivesSaveAndLoad) {
    call(c->shapes(), "AddShape", {1, 5, 5, 45, 8});
    call(c->shapes(), "AddText", {"2000", 5, 9, 25, 16});
    AutoPtr s = obj(c->shapes(), "Item", {1});
    s->set("Name", "Horizontal Wall1");
    obj(s, "Fill")->set("Colour", 0x0000C0);
    obj(obj(s, "Effect"), "Lens")->set("Type", 8);
    obj(s, "Effect")->set("LensActive", true);
    c->page()->set("GridSpacingX", 4);
    c->set("DrawingTag", "100");
    call(c->verticalGuides(), "Add", {20});
    c->saveFile(path("plan.pdr"), 1);
    const QVariantList before = c->describeShapes();
    const PageState state = c->drawing().state();
    auto again = makeCanvas();
    again->loadFile(path("plan.pdr"));
    EXPECT_EQ(again->describeShapes(), before);
    EXPECT_TRUE(again->drawing().state() == state);
    EXPECT_EQ(get(again, "DrawingTag").toString(), "100");
    // new shapes get ids above every id in the file
    call(again->shapes(), "AddShape", {1, 0, 0, 1, 1});
    EXPECT_EQ(again->drawing().at(2)->id, 3);
}

TEST_F(Files, MissingDamagedTruncatedAndForeignFilesRaise30001AndKeepTheDrawing) {
    call(c->shapes(), "AddShape", {1, 5, 5, 45, 8});
    const pdr::Contents rich = richDrawing();
    const QByteArray good = pdr::encode(rich.shapes, rich.state);
    QByteArray flipped = good;
    flipped[good.size() / 2] = static_cast<char>(flipped[good.size() / 2] ^ 0x40);
    QByteArray newer = good;
    newer[8] = 9; // major version 9
    writeAll(path("truncated.pdr"), good.left(good.size() - 10));
    writeAll(path("flipped.pdr"), flipped);
    writeAll(path("foreign.pdr"), "PK\x03\x04 this is a zip file, not a drawing");
    writeAll(path("empty.pdr"), "");
    writeAll(path("newer.pdr"), newer);
    const QVariantList before = c->describeShapes();
    const QStringList names{"missing.pdr", "truncated.pdr", "flipped.pdr",
                            "foreign.pdr", "empty.pdr",     "newer.pdr"};
    for (const QString& name : names) {
        try {
            c->loadFile(path(name));
            ADD_FAILURE() << "no error for " << name.toStdString();
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), 30001) << name.toStdString();
            EXPECT_TRUE(e.description().startsWith("The drawing file " + path(name))) << e.what();
        }
        EXPECT_EQ(c->describeShapes(), before) << name.toStdString();
    }
    EXPECT_EQ(log.only("FileReadError 30001").size(), names.size());
    EXPECT_TRUE(log.lines.contains("FileReadError 30001 The drawing file " + path("missing.pdr") +
                                   " does not exist."));
    EXPECT_TRUE(log.only("FileReadError").filter("newer version").size() == 1);
    EXPECT_TRUE(log.only("FileReadError").filter("check sum").size() >= 1);
}

namespace {
class Host : public CanvasDialogHost {
public:
    QStringList calls;
    bool editLine(LineOptions& o) override {
        calls << QStringLiteral("line %1 %2 %3").arg(o.style).arg(o.colour).arg(o.weight);
        o = {1, 0x00FF00, 2};
        return true;
    }
    bool editArrows(ArrowOptions& o) override {
        o = {arrow::Triangle, arrow::Open, 4};
        return true;
    }
    bool editShade(ShadeOptions& o) override {
        o = {0x0000FF, 0xFF0000, shade::Vertical};
        return true;
    }
    bool editPattern(PatternOptions& o) override {
        o = {hatch::Brick, 0x000080, 0xFFFFFF};
        return true;
    }
    bool editTexture(TextureOptions& o) override {
        o.picture = CanvasPicture::fromData(pngBytes());
        return true;
    }
    bool editShadow(ShadowOptions& o) override {
        o = {true, 0x333333, 3, 4};
        return true;
    }
    bool editFont(FontOptions& o) override {
        calls << QStringLiteral("font %1 %2").arg(o.name).arg(o.size);
        return false; // cancelled: nothing changes
    }
    void pageSetup(POLARDraw&) override { calls << "pageSetup"; }
    void print(POLARDraw&, bool& showDialog) override {
        calls << QStringLiteral("print %1").arg(showDialog);
        showDialog = false;
    }
    void fileError(const QString& text, int code) override {
        calls << QStringLiteral("error %1 %2").arg(code).arg(text);
    }
};
} // namespace

TEST_F(Files, AHandledReadErrorIsNotShownByTheCanvasAnUnhandledOneIs) {
    Host host;
    c->setDialogHost(&host);
    log.handleFileErrors = true;
    EXPECT_EQ(errorOf([&] { c->loadFile(path("none.pdr")); }), 30001);
    EXPECT_TRUE(host.calls.isEmpty());
    log.handleFileErrors = false;
    EXPECT_EQ(errorOf([&] { c->loadFile(path("none.pdr")); }), 30001);
    EXPECT_EQ(host.calls.size(), 1);
    EXPECT_TRUE(host.calls[0].startsWith("error 30001 The drawing file"));
}

TEST_F(Files, AFailedSaveRaisesFileWriteErrorAndReturns) {
    call(c->shapes(), "AddShape", {1, 5, 5, 45, 8});
    EXPECT_EQ(errorOf([&] { c->saveFile(path("no/such/folder/x.pdr"), 1); }), 0);
    EXPECT_EQ(log.only("FileWriteError 75").size(), 1);
    EXPECT_FALSE(QFile::exists(path("no/such/folder/x.pdr")));
    EXPECT_TRUE(c->modified());
    EXPECT_EQ(errorOf([&] { c->saveFile(path("x.pdr"), 7); }), 5);
}

TEST_F(Files, DialogEffectsApplyToTheSelectionThroughTheHost) {
    Host host;
    c->setDialogHost(&host);
    call(c->shapes(), "AddText", {"T", 5, 5, 45, 18});
    EXPECT_EQ(errorOf([&] { call(c, "ShowLineDialog"); }), 5); // nothing selected
    c->setSelection({1});
    for (const char* name : {"ShowLineDialog", "ShowArrowsDialog", "ShowShadeDialog", "ShowPatternDialog",
                             "ShowTextureDialog", "ShowShadowDialog", "ShowFontDialog", "ShowPageSetup"})
        call(c, name);
    QVariantList args{true};
    c->call("PrintDrawing", args);
    EXPECT_FALSE(args[0].toBool()); // by reference
    const ShapeStyle& st = c->drawing().at(0)->st();
    EXPECT_EQ(st.line.style, 1);
    EXPECT_EQ(st.line.colour, 0x00FF00u);
    EXPECT_EQ(st.line.weight, 2);
    EXPECT_EQ(st.line.arrowStart, arrow::Triangle);
    EXPECT_EQ(st.line.arrowSize, 4);
    EXPECT_EQ(st.fill.type, fill_type::Texture); // the texture came after shade and pattern
    EXPECT_EQ(st.fill.hatch, hatch::Brick);
    EXPECT_EQ(st.fill.texture->data(), pngBytes());
    EXPECT_TRUE(st.shadow.visible);
    EXPECT_EQ(st.shadow.offsetY, 4);
    EXPECT_EQ(st.font.name, "Arial");
    EXPECT_EQ(host.calls, (QStringList{"line 0 0 0", "font Arial 10", "pageSetup", "print 1"}));
    c->undo(); // the shadow dialog was one step
    EXPECT_FALSE(c->drawing().at(0)->st().shadow.visible);
    c->applyFont("Liberation Serif", 14, true);
    EXPECT_EQ(c->drawing().at(0)->st().font.size, 14);
    c->applyPattern(hatch::Earth, 1, 2);
    EXPECT_EQ(c->drawing().at(0)->st().fill.type, fill_type::Pattern);
}

TEST_F(Files, ExportsBmpAndPngOfTheWholePageAt150Dpi) {
    call(c->shapes(), "AddShape", {1, 100, 50, 200, 150});
    AutoPtr s = obj(c->shapes(), "Item", {1});
    obj(s, "Fill")->set("Colour", 255);
    c->saveFile(path("page.png"), 4);
    c->saveFile(path("page.bmp"), 3);
    for (const char* name : {"page.png", "page.bmp"}) {
        const QImage img(path(name));
        ASSERT_FALSE(img.isNull()) << name;
        EXPECT_EQ(img.width(), qRound(295 * 150 / 25.4));
        EXPECT_EQ(img.height(), qRound(210 * 150 / 25.4));
        const double k = 150 / 25.4;
        EXPECT_EQ(img.pixelColor(qRound(150 * k), qRound(100 * k)), QColor(255, 0, 0)) << name;
        EXPECT_EQ(img.pixelColor(qRound(50 * k), qRound(100 * k)), QColor(255, 255, 255)) << name;
    }
    EXPECT_EQ(readAll(path("page.bmp")).left(2), QByteArray("BM"));
    EXPECT_EQ(readAll(path("page.png")).mid(1, 3), QByteArray("PNG"));
}

TEST_F(Files, ExportsAnEnhancedMetafile) {
    call(c->shapes(), "AddShape", {1, 100, 50, 200, 150});
    c->saveFile(path("page.emf"), 2);
    const QByteArray emf = readAll(path("page.emf"));
    ASSERT_GT(emf.size(), 88);
    EXPECT_EQ(qFromLittleEndian<quint32>(emf.constData()), 1u);        // EMR_HEADER
    EXPECT_EQ(emf.mid(40, 4), QByteArray(" EMF"));                     // the signature
    EXPECT_EQ(qFromLittleEndian<qint32>(emf.constData() + 32), 29500); // frame right, 0.01 mm
    EXPECT_EQ(qFromLittleEndian<qint32>(emf.constData() + 36), 21000); // frame bottom
}

TEST(FuzzCorpus, EveryStoredInputDecodesOrRaises30001) {
    QDirIterator it(QStringLiteral(CANVAS_FUZZ_CORPUS), QDir::Files);
    int files = 0;
    while (it.hasNext()) {
        const QString p = it.next();
        ++files;
        const int e = errorOf([&] { pdr::readFile(p); });
        EXPECT_TRUE(e == 0 || e == 30001) << p.toStdString() << " raised " << e;
    }
    EXPECT_GE(files, 3);
}
