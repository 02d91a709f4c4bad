// The page templates of new plans: page, scale, border, and the stamps of a
// new plan landing inside the border and over no line.

#include "canvas/api/POLARDraw.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "templates/library/BlankDrawings.h"

#include <QPainterPath>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::templates;
using tessaly::canvas::POLARDraw;

namespace {

// Stamps a new plan adds: address, plan, and the copyright at its widest
// (250 in landscape, 200 in portrait, when neither address nor plan is shown).
QRectF edges(double l, double t, double r, double b) {
    return QRectF(QPointF(l, t), QPointF(r, b));
}
const QRectF LandscapeStamps[] = {edges(200, 190, 287, 195), edges(200, 195, 287, 200),
                                  edges(10, 195, 90, 200), edges(10, 195, 250, 200)};
const QRectF PortraitStamps[] = {edges(110, 278, 200, 283), edges(110, 283, 200, 288),
                                 edges(10, 283, 90, 288), edges(10, 283, 200, 288)};

// Whether any line of the shape passes through the box (sampled every quarter millimetre).
bool crosses(const canvas::ShapeData& shape, const QRectF& box) {
    const QPainterPath outline = canvas::geometry::pageOutline(shape);
    for (const QPolygonF& poly : outline.toSubpathPolygons()) {
        for (int i = 0; i + 1 < poly.size(); ++i) {
            const QLineF seg(poly[i], poly[i + 1]);
            const int steps = std::max(1, static_cast<int>(seg.length() * 4));
            for (int k = 0; k <= steps; ++k)
                if (box.contains(seg.pointAt(static_cast<double>(k) / steps)))
                    return true;
        }
    }
    return false;
}

std::shared_ptr<POLARDraw> savedAndLoaded(const std::shared_ptr<POLARDraw>& draw) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.pdr"));
    draw->saveFile(path, canvas::save_format::Pdr);
    auto loaded = POLARDraw::create();
    loaded->loadFile(path);
    return loaded;
}

void checkTemplate(bool landscape, const QRectF* stamps, size_t count) {
    const auto draw = savedAndLoaded(buildPageTemplate(landscape));
    const auto& page = draw->drawing().state().page;
    EXPECT_EQ(page.width, landscape ? 295 : 210);
    EXPECT_EQ(page.height, landscape ? 210 : 295);
    EXPECT_EQ(page.landscape, landscape);
    EXPECT_EQ(draw->drawingTag(), QStringLiteral("50"));
    const auto& shapes = draw->drawing().shapes();
    ASSERT_EQ(shapes.size(), 2u);
    const canvas::ShapeData& border = *shapes[0];
    EXPECT_EQ(border.name, QStringLiteral("Drawing Border"));
    EXPECT_EQ(border.type, canvas::shape_type::Rectangle);
    EXPECT_FALSE(border.has(canvas::shape_flag::Filled));
    EXPECT_TRUE(border.has(canvas::shape_flag::LockA) && border.has(canvas::shape_flag::LockB));
    EXPECT_EQ(border.box(), edges(5, 5, page.width - 5, page.height - 5));
    EXPECT_EQ(shapes[1]->name, QStringLiteral("Title Strip"));
    for (size_t i = 0; i < count; ++i) {
        const QRectF& stamp = stamps[i];
        EXPECT_TRUE(border.box().contains(stamp)) << i;
        for (const auto& s : shapes)
            EXPECT_FALSE(crosses(*s, stamp)) << s->name.toStdString() << " crosses stamp " << i;
    }
}

} // namespace

TEST(PageTemplates, LandscapeKeepsTheStampsClear) {
    checkTemplate(true, LandscapeStamps, std::size(LandscapeStamps));
}

TEST(PageTemplates, PortraitKeepsTheStampsClear) {
    checkTemplate(false, PortraitStamps, std::size(PortraitStamps));
}

TEST(PageTemplates, ALineThroughAStampIsSeen) {
    // The check above can fail: a line through the address stamp is found.
    canvas::ShapeData line;
    line.type = canvas::shape_type::Line;
    canvas::geometry::setLineEnds(line, QPointF(5, 192), QPointF(290, 192));
    EXPECT_TRUE(crosses(line, LandscapeStamps[0]));
}

TEST(BlankDrawings, NewDrawingIsA4LandscapeAtTheGivenScale) {
    const auto draw = savedAndLoaded(buildBlankDrawing(QStringLiteral("50")));
    EXPECT_EQ(draw->drawing().state().page.width, 295);
    EXPECT_EQ(draw->drawing().state().page.height, 210);
    EXPECT_TRUE(draw->drawing().state().page.landscape);
    EXPECT_EQ(draw->drawingTag(), QStringLiteral("50"));
    EXPECT_EQ(draw->drawing().count(), 0);
}
