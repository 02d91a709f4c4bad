#include "templates/library/BlankDrawings.h"

#include "canvas/api/POLARDraw.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

namespace tessaly::templates {

namespace {

using canvas::ShapeData;
namespace shape_flag = canvas::shape_flag;

std::shared_ptr<canvas::POLARDraw> blankPage(int width, int height, const QString& tag) {
    auto draw = canvas::POLARDraw::create();
    draw->editPage([&](canvas::PageState& st) {
        st.page.width = width;
        st.page.height = height;
        st.page.landscape = width > height;
        st.drawingTag = tag;
    });
    draw->setModified(false);
    return draw;
}

// A frame line of the page template: held in place so that a click on the page does not move it.
ShapeData frameShape(int type, const QString& name) {
    ShapeData s;
    s.type = static_cast<int16_t>(type);
    s.name = name;
    s.flags = shape_flag::Stroked | shape_flag::LockA | shape_flag::LockB;
    return s;
}

} // namespace

std::shared_ptr<canvas::POLARDraw> buildBlankDrawing(const QString& drawingTag) {
    return blankPage(blank_page::LongSide, blank_page::ShortSide, drawingTag);
}

std::shared_ptr<canvas::POLARDraw> buildPageTemplate(bool landscape) {
    using namespace blank_page;
    const int width = landscape ? LongSide : ShortSide;
    const int height = landscape ? ShortSide : LongSide;
    auto draw = blankPage(width, height, NewDrawingScale);
    canvas::POLARDraw::Scope batch(*draw);

    ShapeData border = frameShape(canvas::shape_type::Rectangle, QStringLiteral("Drawing Border"));
    border.left = BorderInset;
    border.top = BorderInset;
    border.right = width - BorderInset;
    border.bottom = height - BorderInset;
    draw->insertNewShape(border);

    ShapeData strip = frameShape(canvas::shape_type::Line, QStringLiteral("Title Strip"));
    const int stripTop = landscape ? LandscapeStripTop : PortraitStripTop;
    canvas::geometry::setLineEnds(strip, QPointF(BorderInset, stripTop),
                                  QPointF(width - BorderInset, stripTop));
    draw->insertNewShape(strip);
    draw->setModified(false);
    return draw;
}

} // namespace tessaly::templates
