#pragma once

#include "canvas/io/PdrFormat.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QBuffer>
#include <QImage>

namespace tessaly::canvas::test {

// A small PNG picture (for picture shapes and textures).
inline QByteArray pngBytes(int w = 4, int h = 3, QRgb colour = qRgb(10, 200, 30)) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(colour);
    img.setDotsPerMeterX(3780); // 96 dpi
    img.setDotsPerMeterY(3780);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    return bytes;
}

// A drawing that uses every part of the format: all shape types, formats,
// a group, a link, a picture, a texture, guides and the tag.
inline pdr::Contents richDrawing() {
    pdr::Contents c;
    c.state.page.width = 210;
    c.state.page.height = 295;
    c.state.page.landscape = false;
    c.state.page.paperColour = 0xF0F0F0;
    c.state.page.outlineColour = 0x102030;
    c.state.page.shadowColour = 0x404040;
    c.state.page.showShadow = false;
    c.state.page.gridColour = 0x00FF00;
    c.state.page.guideColour = 0xE0E0E0;
    c.state.page.gridSpacingX = 7;
    c.state.page.gridSpacingY = 9;
    c.state.horizontalGuides = {0, 20, 40};
    c.state.verticalGuides = {0, 20};
    c.state.drawingTag = QStringLiteral("50");
    const PicturePtr picture = CanvasPicture::fromData(pngBytes());
    int id = 1;
    double x = 5;
    for (int type : shape_type::DrawableCodes) {
        ShapeData s;
        s.id = id++;
        s.type = static_cast<int16_t>(type);
        s.left = x;
        s.top = 10;
        s.right = x + 8;
        s.bottom = 20;
        s.rotation = static_cast<int16_t>((id * 15) % 360);
        s.name = shape_type::displayName(type) + QString::number(s.id);
        ShapeStyle st;
        st.fill.type = id % 4;
        st.fill.colour = static_cast<Colour>(0x000011 * id);
        st.fill.backColour = 0x00FFFF;
        st.fill.hatch = id % hatch::Count;
        st.fill.shade = id % shade::Count;
        if (st.fill.type == fill_type::Texture)
            st.fill.texture = picture;
        st.line.style = id % line_style::Count;
        st.line.colour = static_cast<Colour>(0x110000 * (id % 15));
        st.line.weight = id % 4;
        st.line.arrowStart = id % arrow::Count;
        st.line.arrowEnd = (id + 1) % arrow::Count;
        st.shadow.visible = id % 2 == 0;
        st.font.name = QStringLiteral("Liberation Sans");
        st.font.size = 8 + id;
        st.font.bold = id % 2 == 1;
        st.lens.active = id % 3 == 0;
        st.lens.type = lens::Heatmap;
        st.lens.percent = -40;
        s.style = std::make_shared<const ShapeStyle>(st);
        s.setFlag(shape_flag::LockA, id % 5 == 0);
        s.setFlag(shape_flag::LockB, id % 5 == 0);
        if (type == shape_type::Freeform)
            geometry::setFreeformPoints(s, {{x, 10}, {x + 4, 20}, {x + 8, 12}});
        if (shape_type::isTextType(type)) {
            ShapeExtra e = s.extraCopy();
            e.text = QStringLiteral("Text ✓ %1").arg(s.id);
            s.extra = std::make_shared<const ShapeExtra>(std::move(e));
        }
        if (type == shape_type::Link) {
            ShapeExtra e = s.extraCopy();
            e.linkStart = {1, 1};
            e.linkEnd = {2, 3};
            s.extra = std::make_shared<const ShapeExtra>(std::move(e));
        }
        c.shapes.push_back(std::make_shared<const ShapeData>(std::move(s)));
        x += 9;
    }
    ShapeData pic;
    pic.id = id++;
    pic.type = shape_type::Picture;
    pic.left = 10;
    pic.top = 100;
    pic.right = 50;
    pic.bottom = 130;
    pic.style = defaultStyle();
    ShapeExtra pe;
    pe.picture = picture;
    pic.extra = std::make_shared<const ShapeExtra>(pe);
    c.shapes.push_back(std::make_shared<const ShapeData>(pic));
    ShapeData a, b, g;
    a.id = id++;
    a.type = shape_type::Rectangle;
    a.left = 60, a.top = 100, a.right = 70, a.bottom = 110;
    a.style = defaultStyle();
    b = a;
    b.id = id++;
    b.type = shape_type::Ellipse;
    b.left = 75, b.right = 90;
    g.id = id++;
    g.type = shape_type::Group;
    g.left = 60, g.top = 100, g.right = 90, g.bottom = 110;
    g.style = defaultStyle();
    ShapeExtra ge;
    ge.children = {std::make_shared<const ShapeData>(a), std::make_shared<const ShapeData>(b)};
    g.extra = std::make_shared<const ShapeExtra>(ge);
    c.shapes.push_back(std::make_shared<const ShapeData>(g));
    return c;
}

} // namespace tessaly::canvas::test
