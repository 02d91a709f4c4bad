// A page of every shape type, fill, line style, arrow head, shadow and lens,
// shown in the canvas window. The test checks what the window paints; with
// TESSALY_CANVAS_SCREENSHOT set to a file name (scripts/screenshot-canvas.sh
// runs it so under a virtual display) it also saves a picture of the screen.
#include "UiTestSupport.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "canvas/model/CanvasPicture.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "ui/CanvasWidget.h"
#include "ui/dialogs/PatternDialog.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QListWidget>
#include <QPainter>
#include <QScreen>
#include <set>

namespace tessaly::ui {
namespace {

using namespace tessaly::canvas;

// The sample page: A3 across, in millimetres.
constexpr int PageWidth = 420;
constexpr int PageHeight = 297;
// The grid of the 21 shape types: seven a row.
constexpr double TypeCell = 58, TypeRow = 46, TypeLeft = 8, TypeTop = 8;
constexpr int TypesPerRow = 7;
// The row of fills: solid, three shades, a texture and the ten hatches.
constexpr double FillTop = 150, FillCell = 27.5, FillSize = 22;
// Lines, arrows, shadows and lenses below.
constexpr double LineTop = 190, EffectTop = 240;

constexpr Colour rgb(int r, int g, int b) {
    return static_cast<Colour>(r) | static_cast<Colour>(g) << 8 | static_cast<Colour>(b) << 16;
}
constexpr Colour Brick = rgb(170, 60, 40);
constexpr Colour Sand = rgb(250, 235, 200);
constexpr Colour Sky = rgb(170, 210, 250);
constexpr Colour Leaf = rgb(60, 150, 70);

class Showcase {
public:
    explicit Showcase(POLARDraw& canvas) : c_(canvas) {}

    void build() {
        c_.page()->set(QStringLiteral("Width"), PageWidth);
        c_.page()->set(QStringLiteral("Height"), PageHeight);
        shapeTypes();
        fills();
        lines();
        effects();
        c_.clearSelection();
    }
    // Where each sample stands on the page (mm), by its caption.
    std::map<QString, QRectF> where;

private:
    int add(int type, const QRectF& box, const QString& text = {}) {
        return c_.addShapeMm(type, box, text, false);
    }
    void caption(const QString& text, const QRectF& under, int points = 7) {
        const int id = add(shape_type::PlainText,
                           QRectF(under.left() - 4, under.bottom() + 1, under.width() + 8, 5), text);
        c_.setSelection({id});
        c_.applyFont(QStringLiteral("Liberation Sans"), points, false);
        // Captions are bare text, as the program makes its labels.
        c_.editShapes({id}, [](ShapeData& s) {
            s.setFlag(shape_flag::Stroked, false);
            s.setFlag(shape_flag::Filled, false);
        });
        where[text] = under;
    }
    void select(int id) { c_.setSelection({id}); }

    void shapeTypes() {
        const QStringList names = {"Arc",
                                   "Diamond",
                                   "Dimension Bar",
                                   "Ellipse",
                                   "Freeform",
                                   "Hexagon",
                                   "Isosceles Triangle",
                                   "Left Arrow",
                                   "Line",
                                   "Link",
                                   "Octagon",
                                   "Parallelogram",
                                   "Pentagon",
                                   "Plain Text",
                                   "Plus Sign",
                                   "Rectangle",
                                   "Right Triangle",
                                   "Round Rectangle",
                                   "Star",
                                   "Text Box",
                                   "Trapezoid"};
        const Colour fills[] = {Sky, Sand, rgb(220, 240, 200), rgb(250, 210, 220), rgb(230, 220, 250)};
        for (size_t i = 0; i < shape_type::DrawableCodes.size(); ++i) {
            const int type = shape_type::DrawableCodes[i];
            const double x = TypeLeft + static_cast<double>(i % TypesPerRow) * TypeCell;
            const double y = TypeTop + static_cast<double>(i / TypesPerRow) * TypeRow;
            const QRectF box(x + 6, y + 4, TypeCell - 12, TypeRow - 16);
            int id = 0;
            switch (type) {
            case shape_type::PlainText:
                id = add(type, box, QStringLiteral("Plain text\non two lines"));
                select(id);
                c_.applyFont(QStringLiteral("Liberation Sans"), 12, true);
                break;
            case shape_type::TextBox:
                id = add(type, box, QStringLiteral("Text box, turned 90"));
                select(id);
                c_.applyFont(QStringLiteral("Liberation Serif"), 10, false, true);
                c_.rotateShapes({id}, 90);
                break;
            case shape_type::Link: {
                // A link between two small boxes.
                add(shape_type::Rectangle, QRectF(box.left(), box.top(), 10, 8));
                add(shape_type::Ellipse, QRectF(box.right() - 10, box.bottom() - 8, 10, 8));
                id = add(type, QRectF(QPointF(box.left() + 10, box.top() + 4),
                                      QPointF(box.right() - 10, box.bottom() - 4)));
                break;
            }
            case shape_type::Freeform:
                id = add(type, box);
                c_.editShapes({id}, [&](ShapeData& s) {
                    std::vector<QPointF> zigzag;
                    for (int k = 0; k <= 6; ++k)
                        zigzag.emplace_back(box.left() + k * box.width() / 6,
                                            k % 2 ? box.top() : box.bottom());
                    geometry::setFreeformPoints(s, zigzag);
                });
                break;
            default:
                id = add(type, box);
                break;
            }
            if (!shape_type::isOpenStroke(type) && !shape_type::isTextType(type)) {
                c_.editStyles({id}, [&](ShapeStyle& st) {
                    st.fill.type = fill_type::Solid;
                    st.fill.colour = fills[i % 5];
                });
            }
            if (type == shape_type::Star)
                c_.rotateShapes({id}, 20);
            if (type == shape_type::Line || type == shape_type::Arc || type == shape_type::Freeform) {
                select(id);
                c_.applyLineOptions(line_style::Solid, rgb(30, 60, 160), 1);
            }
            caption(names[static_cast<int>(i)], QRectF(x, y, TypeCell, TypeRow - 12));
        }
    }

    void fills() {
        auto cell = [](int k) { return QRectF(TypeLeft + k * FillCell, FillTop, FillSize, FillSize); };
        int k = 0;
        int id = add(shape_type::Rectangle, cell(k));
        c_.editStyles({id}, [](ShapeStyle& st) { st.fill.colour = Leaf; });
        caption(QStringLiteral("Solid"), cell(k++));
        const char* shades[] = {"Shade across", "Shade down", "Shade radial"};
        for (int d = 0; d < shade::Count; ++d) {
            id = add(shape_type::Rectangle, cell(k));
            select(id);
            c_.applyShade(rgb(250, 250, 120), rgb(200, 40, 40), d);
            caption(QString::fromLatin1(shades[d]), cell(k++));
        }
        id = add(shape_type::Ellipse, cell(k));
        select(id);
        c_.applyTexture(texture());
        caption(QStringLiteral("Texture"), cell(k++));
        const char* hatches[] = {"Horizontal", "Vertical", "Fwd diagonal", "Back diagonal", "Cross",
                                 "Diag cross", "Brick",    "Concrete",     "Insulation",    "Earth"};
        for (int h = 0; h < hatch::Count; ++h) {
            id = add(shape_type::Rectangle, cell(k));
            select(id);
            c_.applyPattern(h, h >= hatch::Brick ? Brick : rgb(20, 20, 120),
                            h >= hatch::Brick ? Sand : White);
            caption(QString::fromLatin1(hatches[h]), cell(k++));
        }
    }

    static PicturePtr texture() {
        // A small tile of coloured squares, as a picture file would bring.
        QImage tile(32, 32, QImage::Format_RGB32);
        tile.fill(QColor(250, 240, 210));
        QPainter p(&tile);
        p.fillRect(0, 0, 16, 16, QColor(200, 120, 60));
        p.fillRect(16, 16, 16, 16, QColor(60, 120, 200));
        p.end();
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        tile.save(&buffer, "PNG");
        return CanvasPicture::fromData(png);
    }

    void lines() {
        const char* styles[] = {"Solid", "Dash", "Dot", "Dash dot", "Dash dot dot"};
        for (int s = 0; s < line_style::Count; ++s)
            for (int w = 0; w < 3; ++w) {
                const double y = LineTop + s * 8 + w * 2.5;
                const int id = add(shape_type::Line, QRectF(QPointF(TypeLeft, y), QPointF(TypeLeft + 70, y)));
                select(id);
                c_.applyLineOptions(s, rgb(20, 20, 20), w);
                if (w == 0)
                    where[QString::fromLatin1(styles[s])] = QRectF(TypeLeft, y - 1, 70, 7);
            }
        const char* heads[] = {"None", "Triangle", "Open", "Tick", "Dot"};
        for (int a = 1; a < arrow::Count; ++a) {
            const double y = LineTop + (a - 1) * 10 + 2;
            const int id = add(shape_type::Line, QRectF(QPointF(100, y), QPointF(170, y)));
            select(id);
            c_.applyLineOptions(line_style::Solid, rgb(160, 30, 30), 1);
            c_.applyArrows(a, a, 4);
            caption(QString::fromLatin1(heads[a]), QRectF(175, y - 2, 20, 0));
        }
        // A dimension bar with ticks, as the program draws them.
        const int bar =
            add(shape_type::DimensionBar, QRectF(QPointF(210, LineTop + 4), QPointF(300, LineTop + 4)));
        select(bar);
        c_.applyArrows(arrow::Tick, arrow::Tick, 3);
        caption(QStringLiteral("Dimension bar, 90 mm"), QRectF(210, LineTop + 4, 90, 0));
        // A thick wall line and a diagonal one.
        const int wall = add(shape_type::Line, QRectF(QPointF(310, LineTop), QPointF(410, LineTop + 30)));
        select(wall);
        c_.applyLineOptions(line_style::Solid, rgb(90, 90, 90), 3);
        caption(QStringLiteral("Weight 3 diagonal"), QRectF(330, LineTop + 30, 60, 0));
    }

    void effects() {
        // Shadows.
        int id = add(shape_type::Rectangle, QRectF(TypeLeft, EffectTop, 40, 25));
        select(id);
        c_.applyShadow(true, rgb(120, 120, 120), 3, 3);
        caption(QStringLiteral("Shadow"), QRectF(TypeLeft, EffectTop, 40, 28));
        id = add(shape_type::Star, QRectF(TypeLeft + 55, EffectTop, 30, 28));
        select(id);
        c_.editStyles({id}, [](ShapeStyle& st) { st.fill.colour = rgb(250, 220, 60); });
        c_.applyShadow(true, rgb(60, 60, 140), -3, 4);
        caption(QStringLiteral("Shadow up-left"), QRectF(TypeLeft + 55, EffectTop, 30, 30));
        // Lenses over a striped strip.
        const double left = 120;
        for (int s = 0; s < 8; ++s) {
            const int stripe = add(shape_type::Rectangle, QRectF(left + s * 36, EffectTop, 36, 36));
            c_.editStyles({stripe}, [&](ShapeStyle& st) {
                st.fill.type = fill_type::Shade;
                st.fill.colour = s % 2 ? rgb(230, 80, 60) : rgb(60, 120, 220);
                st.fill.backColour = s % 2 ? rgb(250, 230, 120) : rgb(120, 220, 160);
                st.fill.shade = shade::Vertical;
                st.line.weight = 0;
            });
        }
        const struct {
            int type;
            int percent;
            const char* name;
        } lenses[] = {{lens::BrightenDarken, 60, "Brighten"},
                      {lens::AddColour, 50, "Add colour"},
                      {lens::LimitColour, 50, "Limit colour"},
                      {lens::Heatmap, 0, "Heat map"},
                      {lens::Invert, 0, "Invert"},
                      {lens::TintedGrayscale, 0, "Tinted grey"},
                      {lens::Transparency, 50, "Transparency"},
                      {lens::CustomPalette, 0, "Palette"}};
        for (int l = 0; l < 8; ++l) {
            const QRectF box(left + l * 36 + 4, EffectTop + 6, 28, 24);
            id = add(shape_type::Ellipse, box);
            c_.editStyles({id}, [&](ShapeStyle& st) {
                st.lens.active = true;
                st.lens.type = lenses[l].type;
                st.lens.percent = lenses[l].percent;
                st.lens.startColour = rgb(255, 255, 0);
                st.lens.endColour = rgb(120, 0, 160);
            });
            caption(QString::fromLatin1(lenses[l].name), QRectF(left + l * 36, EffectTop, 36, 36));
        }
    }

    POLARDraw& c_;
};

// The share of pixels in `area` near each of two colours.
std::pair<double, double> shares(const QImage& img, const QRect& area, QColor a, QColor b) {
    auto near = [](QColor p, QColor q) {
        return std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) + std::abs(p.blue() - q.blue()) <
               60;
    };
    int na = 0, nb = 0, all = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor p = img.pixelColor(x, y);
            na += near(p, a);
            nb += near(p, b);
            ++all;
        }
    return {double(na) / all, double(nb) / all};
}

TEST(CanvasShowcase, EveryShapeTypeFillAndEffectShowsInTheWindow) {
    auto canvas = POLARDraw::create();
    Showcase showcase(*canvas);
    showcase.build();
    std::set<int> types;
    for (const ShapePtr& s : canvas->drawing().shapes())
        types.insert(s->type);
    for (int code : shape_type::DrawableCodes)
        EXPECT_TRUE(types.count(code)) << "type " << code;

    const QByteArray shotPath = qgetenv("TESSALY_CANVAS_SCREENSHOT");
    CanvasWidget widget(canvas, nullptr);
    widget.setWindowTitle(QStringLiteral("Tessaly canvas"));
    if (!shotPath.isEmpty() && QGuiApplication::primaryScreen())
        widget.setGeometry(QGuiApplication::primaryScreen()->geometry());
    else
        widget.resize(1280, 960);
    widget.show();
    testing::processPending();
    canvas->fitTo(0);
    testing::processPending();
    const QImage shown = widget.viewport()->grab().toImage();
    const ViewGeometry& view = canvas->viewGeometry();
    auto onScreen = [&](const QRectF& mm) {
        return QRectF(view.pageToClient(mm.topLeft()), view.pageToClient(mm.bottomRight())).toAlignedRect();
    };
    // The brick hatch shows both its colours; so do the other plan hatches.
    for (const char* name : {"Brick", "Concrete", "Insulation", "Earth"}) {
        const QRect area = onScreen(showcase.where.at(QString::fromLatin1(name))).adjusted(3, 3, -3, -3);
        const auto [brick, sand] = shares(shown, area, QColor(170, 60, 40), QColor(250, 235, 200));
        EXPECT_GT(brick, 0.03) << name;
        EXPECT_GT(sand, 0.2) << name;
    }
    // The shade across runs from yellow at the left to red at the right.
    const QRect across = onScreen(showcase.where.at(QStringLiteral("Shade across"))).adjusted(3, 3, -3, -3);
    const QColor leftEdge = shown.pixelColor(across.left() + 1, across.center().y());
    const QColor rightEdge = shown.pixelColor(across.right() - 1, across.center().y());
    EXPECT_GT(leftEdge.green(), 200);
    EXPECT_LT(rightEdge.green(), 90);

    if (!shotPath.isEmpty()) {
        QScreen* screen = widget.screen();
        ASSERT_NE(screen, nullptr);
        const QPixmap shot = screen->grabWindow(0);
        ASSERT_TRUE(shot.save(QString::fromLocal8Bit(shotPath)));
    }
}

TEST(CanvasShowcase, ThePatternDialogShowsEveryHatchApart) {
    PatternDialog dialog(PatternOptions{hatch::Brick, Brick, Sand});
    dialog.show();
    testing::processPending();
    // No two samples of the list are the same picture.
    std::vector<QImage> samples;
    for (int i = 0; i < dialog.hatchList()->count(); ++i)
        samples.push_back(dialog.hatchList()->item(i)->icon().pixmap(48, 48).toImage());
    for (size_t i = 0; i < samples.size(); ++i)
        for (size_t j = i + 1; j < samples.size(); ++j)
            EXPECT_NE(samples[i], samples[j]) << i << " and " << j;
    const QByteArray shotPath = qgetenv("TESSALY_CANVAS_SCREENSHOT");
    if (!shotPath.isEmpty()) {
        const QFileInfo shot(QString::fromLocal8Bit(shotPath));
        ASSERT_TRUE(dialog.grab().save(shot.dir().filePath(QStringLiteral("canvas-pattern-dialog.png"))));
    }
}

} // namespace
} // namespace tessaly::ui
