// The catalogue language and the catalogue built into the program.

#include "core/runtime/RuntimeError.h"
#include "templates/library/CatalogueParser.h"
#include "templates/library/DrawingSet.h"

#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::templates;

namespace {

const Symbol& symbolOf(const Catalogue& c, const QString& library, const QString& name) {
    const Library* lib = c.find(library);
    if (!lib)
        throw std::runtime_error("no library " + library.toStdString());
    for (const Symbol& s : lib->symbols)
        if (s.name == name)
            return s;
    throw std::runtime_error("no symbol " + name.toStdString());
}

QString faultOf(const QString& text) {
    try {
        parseCatalogue(text, QStringLiteral("test.sym"));
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::InvalidProcedureCall);
        return e.description();
    }
    return {};
}

} // namespace

TEST(CatalogueLanguage, ExpressionsFollowPrecedenceAndNames) {
    const QHash<QString, double> names{{QStringLiteral("W"), 762}, {QStringLiteral("p"), 300}};
    EXPECT_DOUBLE_EQ(evaluateExpression(QStringLiteral("W/2+40"), names), 421);
    EXPECT_DOUBLE_EQ(evaluateExpression(QStringLiteral("(W+38)*2"), names), 1600);
    EXPECT_DOUBLE_EQ(evaluateExpression(QStringLiteral("-p-1"), names), -301);
    EXPECT_NEAR(evaluateExpression(QStringLiteral("p*cos(60)"), names), 150, 1e-9);
    EXPECT_NEAR(evaluateExpression(QStringLiteral("sqrt(16)*sin(90)"), names), 4, 1e-9);
    EXPECT_THROW(evaluateExpression(QStringLiteral("X+1"), names), RuntimeError);
    EXPECT_THROW(evaluateExpression(QStringLiteral("W/0"), names), RuntimeError);
    EXPECT_THROW(evaluateExpression(QStringLiteral("(W"), names), RuntimeError);
}

TEST(CatalogueLanguage, MacrosRepeatsAndMirrorBuildParts) {
    const Catalogue c = parseCatalogue(QStringLiteral(R"(
# a door
macro door W
  rect 0 0 40 W fill
  arc 0 W W -90 90
end
library "Doors" "D_{scale}.pdr" scaled columns=2
symbol "Left" use door 800
symbol "Right" mirror use door 800
symbol "Treads"
  rect 0 0 900 1000 fill=#102030
  repeat k 1 3
    line 0 k*250 900 k*250 dash
  end
  text 0 0 900 100 "UP" size=6 bold
end
library "Fixed" "F.pdr" fixed=20
symbol "Dot"
  circle 50 50 50
end
)"));
    ASSERT_EQ(c.libraries.size(), 2u);
    const Library& doors = c.libraries[0];
    EXPECT_EQ(doors.title, QStringLiteral("Doors"));
    EXPECT_TRUE(doors.scaled);
    EXPECT_EQ(doors.columns, 2);
    EXPECT_EQ(doors.fileName(50), QStringLiteral("D_50.pdr"));
    EXPECT_FALSE(c.libraries[1].scaled);
    EXPECT_EQ(c.libraries[1].drawScale, 20);
    EXPECT_EQ(c.libraries[1].fileName(50), QStringLiteral("F.pdr"));

    const Symbol& left = doors.symbols[0];
    ASSERT_EQ(left.parts.size(), 2u);
    EXPECT_EQ(left.parts[0].kind, Part::Kind::Rect);
    EXPECT_EQ(left.parts[0].box, QRectF(0, 0, 40, 800));
    EXPECT_EQ(left.parts[1].kind, Part::Kind::Arc);
    EXPECT_EQ(left.extent(), QRectF(0, 0, 800, 800));

    // The other hand: the leaf stands at the right, the swing ends at the left.
    const Symbol& right = doors.symbols[1];
    EXPECT_EQ(right.parts[0].box, QRectF(760, 0, 40, 800));
    const std::vector<QPointF> arc = right.parts[1].arcPoints(right.parts[1].centre, right.parts[1].radius);
    EXPECT_NEAR(arc.front().x(), 800, 1e-9);
    EXPECT_NEAR(arc.front().y(), 0, 1e-9);
    EXPECT_NEAR(arc.back().x(), 0, 1e-9);
    EXPECT_NEAR(arc.back().y(), 800, 1e-9);
    EXPECT_EQ(right.extent(), QRectF(0, 0, 800, 800));

    const Symbol& treads = doors.symbols[2];
    ASSERT_EQ(treads.parts.size(), 5u);
    EXPECT_EQ(treads.parts[0].style.fill, QColor(0x10, 0x20, 0x30));
    EXPECT_EQ(treads.parts[3].points[0], QPointF(0, 750));
    EXPECT_TRUE(treads.parts[3].style.dashed);
    EXPECT_EQ(treads.parts[4].text, QStringLiteral("UP"));
    EXPECT_EQ(treads.parts[4].style.fontSize, 6);
    EXPECT_TRUE(treads.parts[4].style.bold);
}

TEST(CatalogueLanguage, FaultsNameTheLine) {
    EXPECT_EQ(
        faultOf(QStringLiteral("library \"A\" \"A_{scale}.pdr\" scaled\nsymbol \"X\"\n  box 1 2\nend\n")),
        QStringLiteral("test.sym, line 3: unknown command 'box'"));
    EXPECT_EQ(faultOf(QStringLiteral("symbol \"X\" use door 1\n")),
              QStringLiteral("test.sym, line 1: a symbol before the first library"));
    EXPECT_EQ(faultOf(QStringLiteral("library \"A\" \"A.pdr\" scaled\n")),
              QStringLiteral(
                  "test.sym, line 1: a scaled library names its files with {scale}, a fixed one without"));
    EXPECT_EQ(faultOf(QStringLiteral("library \"A\" \"A.pdr\" fixed=50\nsymbol \"X\" use door 1\n")),
              QStringLiteral("test.sym, line 2: unknown macro 'door'"));
    EXPECT_EQ(faultOf(QStringLiteral("library \"A\" \"A.pdr\" fixed=50\nsymbol \"X\"\n  line 0 0 1 1\n")),
              QStringLiteral("test.sym, line 2: 'symbol' has no 'end'"));
    EXPECT_EQ(
        faultOf(QStringLiteral("library \"A\" \"A.pdr\" fixed=50\nsymbol \"X\"\n  line 0 0 1 1 glow\nend\n")),
        QStringLiteral("test.sym, line 3: unknown option 'glow'"));
    EXPECT_EQ(faultOf(QStringLiteral("library \"A\" \"A.pdr\" fixed=50\nsymbol \"X\"\n line 0 0 1 "
                                     "1\nend\nsymbol \"X\"\n line 0 0 1 1\nend\n")),
              QStringLiteral("test.sym, line 5: symbol 'X' is named twice"));
}

TEST(BuiltInCatalogue, HoldsEveryLibraryOfTheTemplatePane) {
    const Catalogue& c = builtInCatalogue();
    struct Row {
        const char* title;
        const char* pattern;
        bool scaled;
    };
    const Row rows[] = {{"Standard Doors", "Doors_{scale}.pdr", true},
                        {"Alt Standard Doors", "Doors_{scale}_2.pdr", true},
                        {"Bi-Fold and Sliding Doors", "BiFold_{scale}.pdr", true},
                        {"Misc Doors", "DoorsMisc_{scale}.pdr", true},
                        {"Windows", "Windows_{scale}.pdr", true},
                        {"Stairs", "Stairs_{scale}.pdr", true},
                        {"General Fixtures", "Fixtures_{scale}.pdr", true},
                        {"Kitchen Units", "KitchenUnits.pdr", false},
                        {"Kitchen Fixtures", "KitchenFixtures.pdr", false},
                        {"Fire Equipment", "Fire.pdr", false},
                        {"Security Equipment", "AccessControl.pdr", false},
                        {"Electrical Symbols", "Electrical.pdr", false}};
    EXPECT_EQ(c.libraries.size(), std::size(rows));
    for (const Row& r : rows) {
        const Library* lib = c.find(QString::fromLatin1(r.title));
        ASSERT_NE(lib, nullptr) << r.title;
        EXPECT_EQ(lib->filePattern, QString::fromLatin1(r.pattern)) << r.title;
        EXPECT_EQ(lib->scaled, r.scaled) << r.title;
        EXPECT_GE(lib->symbols.size(), 8u) << r.title;
    }
}

TEST(BuiltInCatalogue, DoorsHaveTheStandardLeafWidthsInBothHands) {
    const Catalogue& c = builtInCatalogue();
    for (int width : {610, 686, 762, 838, 926}) {
        for (const char* hand : {"Left", "Right"}) {
            const QString name = QStringLiteral("Door %1 %2 Hand").arg(width).arg(QLatin1String(hand));
            const Symbol& door = symbolOf(c, QStringLiteral("Standard Doors"), name);
            // The leaf standing open and its swing: a square of the leaf's width.
            EXPECT_EQ(door.extent().size(), QSizeF(width, width)) << name.toStdString();
            // Its mask through the wall from the wall line, the leaf, the swing.
            ASSERT_EQ(door.parts.size(), 3u);
            EXPECT_EQ(door.parts[0].kind, Part::Kind::Mask);
            EXPECT_EQ(door.parts[0].box, QRectF(0, width, width, 0));
            EXPECT_EQ(door.parts[2].kind, Part::Kind::Arc);
            EXPECT_DOUBLE_EQ(door.parts[2].radius, width);
            const Symbol& framed =
                symbolOf(c, QStringLiteral("Alt Standard Doors"), QStringLiteral("Framed ") + name);
            // Linings of 32 either side, 100 of wall below the swing.
            EXPECT_EQ(framed.extent().size(), QSizeF(width + 64, width + 100)) << name.toStdString();
        }
    }
}

TEST(BuiltInCatalogue, HoldsTheUsualSymbolsOfEachFamily) {
    const Catalogue& c = builtInCatalogue();
    const std::pair<const char*, const char*> wanted[] = {
        {"Bi-Fold and Sliding Doors", "Bi-Fold 3 Panel 1800"},
        {"Bi-Fold and Sliding Doors", "Patio Slider 1800"},
        {"Bi-Fold and Sliding Doors", "Pocket Door 762"},
        {"Misc Doors", "Stable Door 838 Left Hand"},
        {"Misc Doors", "Garage Up And Over Door 2134"},
        {"Misc Doors", "Roller Door 2400"},
        {"Windows", "Casement 4 Light 2339"},
        {"Windows", "Bay Window 2400"},
        {"Windows", "Fixed Light 1200"},
        {"Stairs", "Half Landing Flight"},
        {"Stairs", "Winder Flight Quarter Turn"},
        {"Stairs", "Spiral Stair 1600"},
        {"General Fixtures", "Bidet"},
        {"General Fixtures", "Boiler"},
        {"Kitchen Units", "Tall Unit 600"},
        {"Kitchen Units", "Corner Base Unit 1000 x 1000"},
        {"Kitchen Fixtures", "Washing Machine 600"},
        {"Fire Equipment", "Manual Call Point"},
        {"Security Equipment", "PIR Detector"},
        {"Electrical Symbols", "Consumer Unit"},
        {"Electrical Symbols", "Switch Two Way"}};
    for (const auto& [library, name] : wanted)
        EXPECT_NO_THROW(symbolOf(c, QString::fromLatin1(library), QString::fromLatin1(name))) << name;
    EXPECT_EQ(
        symbolOf(c, QStringLiteral("General Fixtures"), QStringLiteral("Bath 1700 x 700")).extent().size(),
        QSizeF(1700, 700));
    EXPECT_EQ(
        symbolOf(c, QStringLiteral("Stairs"), QStringLiteral("Straight Flight 12 Treads")).extent().size(),
        QSizeF(900, 3000));
}
