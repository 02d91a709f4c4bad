#include "templates/library/LibraryDrawing.h"

#include "canvas/api/POLARDraw.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "templates/ScaleTable.h"

#include <QHash>
#include <algorithm>
#include <cmath>

namespace tessaly::templates {

using canvas::ShapeData;
using canvas::ShapeStyle;
using canvas::StylePtr;
namespace shape_flag = canvas::shape_flag;
namespace shape_type = canvas::shape_type;

namespace {

canvas::Colour colourOf(const QColor& c) {
    return static_cast<canvas::Colour>(c.red()) | (static_cast<canvas::Colour>(c.green()) << 8) |
           (static_cast<canvas::Colour>(c.blue()) << 16);
}

// Styles of one drawing, shared between the parts that draw alike.
class StyleCache {
public:
    StylePtr get(const PartStyle& p) {
        const QString key = QStringLiteral("%1|%2|%3|%4|%5|%6")
                                .arg(p.fill ? p.fill->name() : QString())
                                .arg(p.dashed)
                                .arg(p.weight)
                                .arg(p.arrow)
                                .arg(p.fontSize)
                                .arg(p.bold);
        auto it = styles_.constFind(key);
        if (it != styles_.constEnd())
            return *it;
        ShapeStyle st;
        if (p.fill)
            st.fill.colour = colourOf(*p.fill);
        st.line.style = p.dashed ? canvas::line_style::Dash : canvas::line_style::Solid;
        st.line.weight = p.weight;
        st.line.arrowEnd = p.arrow ? canvas::arrow::Triangle : canvas::arrow::None;
        st.line.arrowSize = library_page::ArrowSize;
        st.font.size = p.fontSize;
        st.font.bold = p.bold;
        StylePtr made = std::make_shared<const ShapeStyle>(st);
        styles_.insert(key, made);
        return made;
    }

private:
    QHash<QString, StylePtr> styles_;
};

// Maps the real millimetres of one symbol onto its place on the page.
class PagePlacement {
public:
    PagePlacement(const QPointF& realOrigin, const QPoint& pageOrigin, int scale)
        : real_(realOrigin), page_(pageOrigin), scale_(scale) {}

    QPointF point(const QPointF& p) const {
        return QPoint(page_.x() + toPage(p.x() - real_.x(), scale_),
                      page_.y() + toPage(p.y() - real_.y(), scale_));
    }
    QRectF box(const QRectF& r) const { return QRectF(point(r.topLeft()), point(r.bottomRight())); }
    double length(double mm) const { return toPage(mm, scale_); }
    int scale() const { return scale_; }

private:
    QPointF real_;
    QPoint page_;
    int scale_;
};

void setBox(ShapeData& s, const QRectF& b) {
    s.left = b.left();
    s.top = b.top();
    s.right = b.right();
    s.bottom = b.bottom();
}

// A mask on the page: the opening across its width, as deep as the widest
// wall of the scale or its own depth, whichever is more, and reaching a
// little past both faces of the wall so that no edge of the wall shows.
ShapeData maskOf(const Part& part, const PagePlacement& at, StyleCache& styles) {
    ShapeData s;
    PartStyle none;
    none.fill = QColor(Qt::white);
    s.style = styles.get(none);
    s.type = shape_type::Rectangle;
    s.setFlag(shape_flag::Filled, true);
    s.setFlag(shape_flag::Stroked, false);
    const QPointF top = at.point(part.box.topLeft());
    const double depth = std::max(at.length(part.box.height()), static_cast<double>(widestWall(at.scale())));
    setBox(s, QRectF(QPointF(top.x(), top.y() - library_page::MaskBleed),
                     QPointF(at.point(part.box.topRight()).x(), top.y() + depth + library_page::MaskBleed)));
    return s;
}

ShapeData shapeOf(const Part& part, const PagePlacement& at, StyleCache& styles) {
    if (part.kind == Part::Kind::Mask)
        return maskOf(part, at, styles);
    ShapeData s;
    s.style = styles.get(part.style);
    const bool filled = part.style.fill.has_value();
    s.setFlag(shape_flag::Filled, filled);
    switch (part.kind) {
    case Part::Kind::Line:
        s.type = shape_type::Line;
        canvas::geometry::setLineEnds(s, at.point(part.points[0]), at.point(part.points[1]));
        break;
    case Part::Kind::Rect:
        s.type = shape_type::Rectangle;
        setBox(s, at.box(part.box));
        break;
    case Part::Kind::Ellipse:
        s.type = shape_type::Ellipse;
        setBox(s, at.box(part.box));
        break;
    case Part::Kind::Text: {
        s.type = shape_type::PlainText;
        s.setFlag(shape_flag::Stroked, false);
        setBox(s, at.box(part.box));
        canvas::ShapeExtra e;
        e.text = part.text;
        s.extra = std::make_shared<const canvas::ShapeExtra>(std::move(e));
        break;
    }
    case Part::Kind::Arc:
        // The arc keeps its whole-millimetre centre and radius; its corners lie on that circle.
        s.type = shape_type::Freeform;
        canvas::geometry::setFreeformPoints(s, part.arcPoints(at.point(part.centre), at.length(part.radius)));
        break;
    case Part::Kind::Polygon:
    case Part::Kind::Polyline: {
        s.type = shape_type::Freeform;
        std::vector<QPointF> pts;
        pts.reserve(part.points.size());
        for (const QPointF& p : part.points)
            pts.push_back(at.point(p));
        canvas::geometry::setFreeformPoints(s, pts);
        s.setFlag(shape_flag::Closed, part.kind == Part::Kind::Polygon);
        s.setFlag(shape_flag::Filled, filled && part.kind == Part::Kind::Polygon);
        break;
    }
    case Part::Kind::Mask:
        break; // drawn by maskOf
    }
    return s;
}

} // namespace

int toPage(double realMm, int scale) {
    return static_cast<int>(std::nearbyint(realMm / scale));
}

LibraryLayout layoutLibrary(const Library& library, int scale) {
    using namespace library_page;
    LibraryLayout out;
    const int n = static_cast<int>(library.symbols.size());
    const int columns = std::max(1, std::min(library.columns, n));
    std::vector<QSize> sizes;
    // Each column is as wide as its widest symbol, each row as high as its highest.
    std::vector<int> columnWidth(static_cast<size_t>(columns), MinCell);
    for (int i = 0; i < n; ++i) {
        const QRectF e = library.symbols[static_cast<size_t>(i)].extentAt(scale);
        sizes.emplace_back(toPage(e.width(), scale), toPage(e.height(), scale));
        int& w = columnWidth[static_cast<size_t>(i % columns)];
        w = std::max(w, sizes.back().width());
    }
    std::vector<int> columnLeft(static_cast<size_t>(columns), Margin);
    for (size_t c = 1; c < columnLeft.size(); ++c)
        columnLeft[c] = columnLeft[c - 1] + columnWidth[c - 1] + Gap;
    int y = Margin;
    for (int first = 0; first < n; first += columns) {
        const int last = std::min(n, first + columns);
        int rowHeight = MinCell;
        for (int i = first; i < last; ++i)
            rowHeight = std::max(rowHeight, sizes[static_cast<size_t>(i)].height());
        for (int i = first; i < last; ++i) {
            const QSize sz = sizes[static_cast<size_t>(i)];
            const auto c = static_cast<size_t>(i - first);
            // Centred in its cell, on whole millimetres.
            out.origins.emplace_back(columnLeft[c] + (columnWidth[c] - sz.width()) / 2,
                                     y + (rowHeight - sz.height()) / 2);
        }
        y += rowHeight + Gap;
    }
    out.pageWidth = std::max(MinWidth, columnLeft.back() + columnWidth.back() + Margin);
    out.pageHeight = std::max(MinHeight, y - Gap + Margin);
    return out;
}

std::shared_ptr<canvas::POLARDraw> buildLibraryDrawing(const Library& library, int scale) {
    const int drawScale = library.scaled ? scale : library.drawScale;
    const LibraryLayout layout = layoutLibrary(library, drawScale);
    auto draw = canvas::POLARDraw::create();
    canvas::POLARDraw::Scope batch(*draw);
    draw->editPage([&](canvas::PageState& st) {
        st.page.width = layout.pageWidth;
        st.page.height = layout.pageHeight;
        st.page.landscape = layout.pageWidth >= layout.pageHeight;
        st.drawingTag = library.scaled ? QString::number(scale) : QString();
    });
    StyleCache styles;
    for (size_t i = 0; i < library.symbols.size(); ++i) {
        const Symbol& sym = library.symbols[i];
        const PagePlacement at(sym.extentAt(drawScale).topLeft(), layout.origins[i], drawScale);
        std::vector<int> ids;
        ids.reserve(sym.parts.size());
        // The masks first, so that every line of the symbol lies over them.
        for (const bool masks : {true, false})
            for (const Part& part : sym.parts)
                if ((part.kind == Part::Kind::Mask) == masks)
                    ids.push_back(draw->insertNewShape(shapeOf(part, at, styles)));
        const int id = ids.size() > 1 ? draw->groupShapes(ids) : ids.front();
        draw->editShapes({id}, [&](ShapeData& s) { s.name = sym.name; });
    }
    return draw;
}

} // namespace tessaly::templates
