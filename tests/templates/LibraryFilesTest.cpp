// The generated library files: the file set, their loading through the
// canvas, the real size of every symbol at every scale, names and layout.

#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"
#include "templates/library/DrawingSet.h"
#include "templates/library/LibraryDrawing.h"

#include <QDir>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

using namespace tessaly;
using namespace tessaly::templates;
using tessaly::canvas::POLARDraw;
using tessaly::canvas::ShapeData;

namespace {

// The template pane's table: file name before and after the scale figure, or the scale-free name.
struct TableRow {
    const char* before;
    const char* after;
};
const TableRow ScaledRows[] = {{"Doors_", ".pdr"},     {"Doors_", "_2.pdr"}, {"BiFold_", ".pdr"},
                               {"DoorsMisc_", ".pdr"}, {"Windows_", ".pdr"}, {"Stairs_", ".pdr"},
                               {"Fixtures_", ".pdr"}};
const char* const ScaleFreeFiles[] = {"KitchenUnits.pdr",  "KitchenFixtures.pdr", "Fire.pdr",
                                      "AccessControl.pdr", "Electrical.pdr",      "User.pdr"};
const int Scales[] = {1, 10, 50, 100, 200, 300, 400, 500};

class LibraryFiles : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = new QTemporaryDir;
        written_ = new QStringList(writeDrawingFiles(builtInCatalogue(), dir_->path(), dir_->path()));
    }
    static void TearDownTestSuite() {
        delete written_;
        delete dir_;
    }
    static QString path(const QString& name) { return QDir(dir_->path()).filePath(name); }
    static std::shared_ptr<POLARDraw> load(const QString& name) {
        auto draw = POLARDraw::create();
        draw->loadFile(path(name));
        return draw;
    }

    static QTemporaryDir* dir_;
    static QStringList* written_;
};

QTemporaryDir* LibraryFiles::dir_ = nullptr;
QStringList* LibraryFiles::written_ = nullptr;

void collectGroupNames(const ShapeData& s, std::vector<QString>& names) {
    if (s.type != canvas::shape_type::Group)
        return;
    names.push_back(s.name);
    for (const auto& c : s.extra->children)
        collectGroupNames(*c, names);
}

} // namespace

TEST_F(LibraryFiles, FileSetMatchesTheTemplateTableAtEveryScale) {
    std::set<QString> expected;
    for (int scale : Scales)
        for (const TableRow& r : ScaledRows)
            expected.insert(QString::fromLatin1(r.before) + QString::number(scale) +
                            QString::fromLatin1(r.after));
    for (const char* f : ScaleFreeFiles)
        expected.insert(QString::fromLatin1(f));
    for (const char* f : {"Default.pdr", "System.pdr", "Default Template.pdr", "TemplatePortrate.pdr",
                          "TemplateLandscape.pdr"})
        expected.insert(QString::fromLatin1(f));
    const QStringList onDisk = QDir(dir_->path()).entryList(QDir::Files);
    const std::set<QString> actual(onDisk.begin(), onDisk.end());
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(written_->size(), static_cast<int>(expected.size()));
    EXPECT_TRUE(actual.count(QStringLiteral("Doors_50.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("Doors_50_2.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("BiFold_100.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("DoorsMisc_200.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("Windows_1.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("Stairs_500.pdr")));
    EXPECT_TRUE(actual.count(QStringLiteral("Fixtures_10.pdr")));
}

TEST_F(LibraryFiles, EveryFileLoadsThroughTheCanvas) {
    for (const QString& name : QDir(dir_->path()).entryList(QDir::Files)) {
        auto draw = POLARDraw::create();
        EXPECT_NO_THROW(draw->loadFile(path(name))) << name.toStdString();
        EXPECT_GT(draw->drawing().state().page.width, 0) << name.toStdString();
    }
}

TEST_F(LibraryFiles, EverySymbolHasItsRealSizeAtEveryScale) {
    int checked = 0;
    for (const Library& lib : builtInCatalogue().libraries) {
        if (!lib.scaled)
            continue;
        for (int scale : Scales) {
            const QString name = lib.fileName(scale);
            const auto draw = load(name);
            EXPECT_EQ(draw->drawingTag(), QString::number(scale)) << name.toStdString();
            const auto& shapes = draw->drawing().shapes();
            ASSERT_EQ(shapes.size(), lib.symbols.size()) << name.toStdString();
            for (size_t i = 0; i < shapes.size(); ++i) {
                const ShapeData& s = *shapes[i];
                const Symbol& sym = lib.symbols[i];
                const QRectF real = sym.extentAt(scale);
                const QRectF page = s.box();
                // Page geometry is rounded to whole millimetres: within one page
                // millimetre, and the reach of a mask past both faces of its wall.
                const double within = scale * (1 + 2 * library_page::MaskBleed);
                EXPECT_LE(std::abs(page.width() * scale - real.width()), within)
                    << name.toStdString() << " " << sym.name.toStdString();
                EXPECT_LE(std::abs(page.height() * scale - real.height()), within)
                    << name.toStdString() << " " << sym.name.toStdString();
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 500);
}

TEST_F(LibraryFiles, DoorsAreAsWideAsTheirLeavesOnThePage) {
    // 762 / 50 = 15.24 and 838 / 100 = 8.38: whole page millimetres 15 and 8.
    const auto doors50 = load(QStringLiteral("Doors_50.pdr"));
    const ShapeData& d762 = *doors50->drawing().at(2);
    EXPECT_EQ(d762.name, QStringLiteral("Door 762 Left Hand"));
    // The leaf and its swing, then the mask through the 3 mm wall of 1:50.
    EXPECT_EQ(d762.box().size(), QSizeF(15, 15 + 3 + library_page::MaskBleed));
    const auto doors100 = load(QStringLiteral("Doors_100.pdr"));
    const ShapeData& d838 = *doors100->drawing().at(8);
    EXPECT_EQ(d838.name, QStringLiteral("Door 838 Right Hand"));
    EXPECT_EQ(d838.box().size(), QSizeF(8, 8 + 3 + library_page::MaskBleed));
    const auto doors1 = load(QStringLiteral("Doors_1.pdr"));
    EXPECT_EQ(doors1->drawing().at(4)->box().size(), QSizeF(926, 926 + 4 + library_page::MaskBleed));
    EXPECT_GE(doors1->drawing().state().page.width, 610 + 686 + 762 + 838 + 926);
}

TEST_F(LibraryFiles, EachSymbolIsOneNamedShapeAndNothingElseIsOnThePage) {
    for (const Library& lib : builtInCatalogue().libraries) {
        const QString name = lib.fileName(50);
        const auto draw = load(name);
        const auto& shapes = draw->drawing().shapes();
        ASSERT_EQ(shapes.size(), lib.symbols.size()) << name.toStdString();
        for (size_t i = 0; i < shapes.size(); ++i) {
            EXPECT_EQ(shapes[i]->name, lib.symbols[i].name) << name.toStdString();
            if (lib.symbols[i].parts.size() > 1) {
                EXPECT_EQ(shapes[i]->type, canvas::shape_type::Group) << lib.symbols[i].name.toStdString();
            }
            std::vector<QString> groupNames;
            collectGroupNames(*shapes[i], groupNames);
            for (const QString& g : groupNames)
                EXPECT_FALSE(g.isEmpty()) << name.toStdString();
        }
    }
}

TEST_F(LibraryFiles, SymbolsSitInATidyGridOnThePage) {
    for (const Library& lib : builtInCatalogue().libraries) {
        for (int scale : {1, 50, 500}) {
            if (!lib.scaled && scale != 50)
                continue;
            const QString name = lib.fileName(scale);
            const auto draw = load(name);
            const auto& page = draw->drawing().state().page;
            EXPECT_EQ(page.landscape, page.width >= page.height);
            const auto& shapes = draw->drawing().shapes();
            for (size_t i = 0; i < shapes.size(); ++i) {
                const QRectF a = shapes[i]->box();
                // On the sheet (a symbol flat at a coarse scale has an empty box, so edges are compared).
                EXPECT_TRUE(a.left() >= 0 && a.top() >= 0 && a.right() <= page.width &&
                            a.bottom() <= page.height)
                    << name.toStdString() << " " << shapes[i]->name.toStdString();
                // Whole millimetres at the symbol's corner (or as far above it as a
                // mask reaches past the face of its wall).
                EXPECT_EQ(a.left(), std::round(a.left())) << shapes[i]->name.toStdString();
                const double top = a.top() + library_page::MaskBleed;
                EXPECT_TRUE(a.top() == std::round(a.top()) || top == std::round(top))
                    << shapes[i]->name.toStdString();
                for (size_t j = i + 1; j < shapes.size(); ++j)
                    EXPECT_FALSE(a.intersects(shapes[j]->box()))
                        << name.toStdString() << ": " << shapes[i]->name.toStdString() << " and "
                        << shapes[j]->name.toStdString();
            }
            // A grid: symbols of one row share their centre line, those of one column too
            // (within the millimetre of centring on whole millimetres).
            const size_t columns =
                static_cast<size_t>(std::min<int>(lib.columns, static_cast<int>(shapes.size())));
            for (size_t i = 0; i < shapes.size(); ++i) {
                for (size_t j = i + 1; j < shapes.size(); ++j) {
                    const QPointF ci = shapes[i]->box().center();
                    const QPointF cj = shapes[j]->box().center();
                    if (i / columns == j / columns) {
                        EXPECT_LE(std::abs(ci.y() - cj.y()), 1) << name.toStdString() << " row of " << i;
                    }
                    if (i % columns == j % columns) {
                        EXPECT_LE(std::abs(ci.x() - cj.x()), 1) << name.toStdString() << " column of " << i;
                    }
                }
            }
        }
    }
}

TEST_F(LibraryFiles, ScaleFreeLibrariesCarryNoScaleAndReadWellAtPlanScales) {
    for (const Library& lib : builtInCatalogue().libraries) {
        if (lib.scaled)
            continue;
        const auto draw = load(lib.fileName(0));
        EXPECT_EQ(draw->drawingTag(), QString()) << lib.title.toStdString();
        for (const auto& s : draw->drawing().shapes()) {
            // Between 3 mm and 70 mm on the page: legible on a 1:50 or 1:100 plan.
            const QSizeF size = s->box().size();
            EXPECT_GE(std::max(size.width(), size.height()), 3) << s->name.toStdString();
            EXPECT_LE(std::max(size.width(), size.height()), 70) << s->name.toStdString();
        }
    }
}

TEST_F(LibraryFiles, UserItemsAndBlankDrawingsAreEmptyPages) {
    for (const char* f : {"User.pdr", "System.pdr", "Default Template.pdr", "Default.pdr"}) {
        const auto draw = load(QString::fromLatin1(f));
        EXPECT_EQ(draw->drawing().count(), 0) << f;
        EXPECT_EQ(draw->drawing().state().page.width, 295) << f;
        EXPECT_EQ(draw->drawing().state().page.height, 210) << f;
        EXPECT_TRUE(draw->drawing().state().page.landscape) << f;
    }
    EXPECT_EQ(load(QStringLiteral("Default.pdr"))->drawingTag(), QStringLiteral("50"));
    EXPECT_EQ(load(QStringLiteral("User.pdr"))->drawingTag(), QString());
}

TEST(LibraryPage, RealMillimetresRoundToThePageWithHalvesToEven) {
    EXPECT_EQ(toPage(762, 50), 15);
    EXPECT_EQ(toPage(125, 50), 2); // 2.5 goes to 2
    EXPECT_EQ(toPage(175, 50), 4); // 3.5 goes to 4
    EXPECT_EQ(toPage(-125, 50), -2);
    EXPECT_EQ(toPage(926, 1), 926);
}
