// Door and window symbols open the wall they are placed on: each carries a
// mask as deep as the widest wall of its scale, under its lines, so that a
// wall of any width of the scale table does not show through the opening.
// Checked on rendered pictures: the library page alone, and the same page
// with a wall under every symbol, must be the same inside every opening.
#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"
#include "templates/ScaleTable.h"
#include "templates/library/DrawingSet.h"
#include "templates/library/LibraryDrawing.h"

#include <QDir>
#include <QImage>
#include <cmath>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::templates;
using tessaly::canvas::POLARDraw;
using tessaly::canvas::ShapeData;
using tessaly::canvas::ShapePtr;

namespace {

// The libraries whose every symbol is a door, an opening or a window.
const char* const OpeningLibraries[] = {"Standard Doors", "Alt Standard Doors", "Bi-Fold and Sliding Doors",
                                        "Misc Doors", "Windows"};
constexpr double Dpi = 254.0; // ten pixels to the page millimetre
constexpr int WallOverhangMm =
    6; // the wall runs on this far beyond each side of the opening, less than the gap between symbols
constexpr canvas::Colour WallColour = 0x000000;
constexpr canvas::Colour Paper = 0xFFFFFF;

// The masks of one symbol: filled with the page colour, with no outline.
std::vector<QRectF> masksOf(const ShapeData& symbol) {
    std::vector<QRectF> out;
    auto look = [&](const ShapeData& s) {
        if (s.type == canvas::shape_type::Rectangle && s.has(canvas::shape_flag::Filled) &&
            !s.has(canvas::shape_flag::Stroked) && s.st().fill.colour == Paper)
            out.push_back(s.box());
    };
    if (symbol.type == canvas::shape_type::Group && symbol.extra)
        for (const ShapePtr& child : symbol.extra->children)
            look(*child);
    else
        look(symbol);
    return out;
}

// A wall of `width` page millimetres along the top of the mask, as the wall
// input makes it: a filled rectangle without outline, in the wall colour.
ShapeData wallUnder(const QRectF& mask, int width) {
    ShapeData w;
    w.type = canvas::shape_type::Rectangle;
    canvas::ShapeStyle st;
    st.fill.colour = WallColour;
    st.line.colour = WallColour;
    w.style = std::make_shared<const canvas::ShapeStyle>(st);
    w.setFlag(canvas::shape_flag::Filled, true);
    w.setFlag(canvas::shape_flag::Stroked, false);
    const double face = mask.top() + library_page::MaskBleed;
    w.left = mask.left() - WallOverhangMm;
    w.right = mask.right() + WallOverhangMm;
    w.top = face;
    w.bottom = face + width;
    return w;
}

bool dark(QRgb c) {
    return qGray(c) < 128;
}

struct Case {
    QString library;
    int scale;
    int wall;
};

void PrintTo(const Case& c, std::ostream* os) {
    *os << c.library.toStdString() << " 1:" << c.scale << " wall " << c.wall;
}

std::vector<Case> cases() {
    std::vector<Case> out;
    for (const char* lib : OpeningLibraries)
        for (int scale : {50, 100}) {
            const ScaleRow* row = scaleRow(scale);
            for (int wall : {row->externalWall, row->internalWall})
                out.push_back({QString::fromLatin1(lib), scale, wall});
        }
    return out;
}

class SymbolMask : public ::testing::TestWithParam<Case> {};

} // namespace

TEST_P(SymbolMask, NoWallOfTheScaleShowsThroughAnOpening) {
    const Case& c = GetParam();
    const Library* lib = builtInCatalogue().find(c.library);
    ASSERT_NE(lib, nullptr);
    const auto alone = buildLibraryDrawing(*lib, c.scale);
    const auto walled = buildLibraryDrawing(*lib, c.scale);

    std::vector<std::pair<QString, QRectF>> openings;
    for (const ShapePtr& s : alone->drawing().shapes()) {
        const std::vector<QRectF> masks = masksOf(*s);
        ASSERT_EQ(masks.size(), 1u) << s->name.toStdString() << " has no mask of its own";
        const QRectF m = masks.front();
        // As deep as the widest wall of the scale, and past both of its faces.
        EXPECT_GE(m.height(), widestWall(c.scale) + 2 * library_page::MaskBleed - 1e-9)
            << s->name.toStdString();
        openings.emplace_back(s->name, m);
    }
    std::vector<int> walls;
    for (const auto& [name, m] : openings)
        walls.push_back(walled->insertNewShape(wallUnder(m, c.wall)));
    walled->reorderShapes(walls, 0); // behind every symbol, as a wall drawn before its door

    const QImage a = alone->renderImage(Dpi);
    const QImage b = walled->renderImage(Dpi);
    ASSERT_EQ(a.size(), b.size());
    const double k = a.width() / static_cast<double>(alone->drawing().state().page.width);
    if (const QByteArray dir = qgetenv("TESSALY_MASK_PICTURES"); !dir.isEmpty()) {
        QDir().mkpath(QString::fromLocal8Bit(dir));
        b.save(QStringLiteral("%1/%2-%3-wall%4.png")
                   .arg(QString::fromLocal8Bit(dir), lib->fileName(c.scale).chopped(4))
                   .arg(c.scale)
                   .arg(c.wall));
    }
    for (const auto& [name, m] : openings) {
        const double face = m.top() + library_page::MaskBleed;
        // The wall shows beside the opening (past a pier or jamb the symbol draws there)...
        int wallBeside = 0;
        for (int y = static_cast<int>((face + 0.25) * k); y < static_cast<int>((face + c.wall - 0.25) * k);
             ++y)
            for (int x = static_cast<int>((m.left() - WallOverhangMm) * k);
                 x < static_cast<int>(m.left() * k); ++x)
                if (dark(b.pixel(x, y)))
                    ++wallBeside;
        if (c.wall > 0) {
            EXPECT_GT(wallBeside, 0) << name.toStdString() << ": no wall beside the opening";
        }
        // ...and nowhere inside it: every pixel of the opening's band is as
        // it is without the wall (the jambs' own pixel columns aside).
        int differing = 0;
        const int x0 = static_cast<int>(std::ceil(m.left() * k)) + 1;
        const int x1 = static_cast<int>(std::floor(m.right() * k)) - 1;
        const int y0 = static_cast<int>(std::floor(face * k));
        const int y1 = static_cast<int>(std::ceil((face + c.wall) * k));
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                if (a.pixel(x, y) != b.pixel(x, y))
                    ++differing;
        EXPECT_EQ(differing, 0) << name.toStdString() << ": the wall shows through the opening";
    }
}

INSTANTIATE_TEST_SUITE_P(Libraries, SymbolMask, ::testing::ValuesIn(cases()),
                         [](const ::testing::TestParamInfo<Case>& param) {
                             QString n = param.param.library;
                             n.remove(QLatin1Char(' ')).remove(QLatin1Char('-'));
                             return QStringLiteral("%1_%2_wall%3")
                                 .arg(n)
                                 .arg(param.param.scale)
                                 .arg(param.param.wall)
                                 .toStdString();
                         });

TEST(SymbolMaskCatalogue, AMaskTakesNoOptionsAndNeedsAWidth) {
    EXPECT_EQ(builtInCatalogue().find(QStringLiteral("Standard Doors"))->symbols.front().extent().size(),
              QSizeF(610, 610)); // the door's real size leaves its mask out
    const Symbol& door = builtInCatalogue().find(QStringLiteral("Standard Doors"))->symbols.front();
    // At 1:100 the mask reaches 3 page mm (300 real) below the wall line.
    EXPECT_EQ(door.extentAt(100), QRectF(0, 0, 610, 610 + 300));
    EXPECT_EQ(door.extentAt(50), QRectF(0, 0, 610, 610 + 150));
}
