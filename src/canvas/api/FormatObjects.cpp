#include "FormatObjects.h"

#include <algorithm>

namespace tessaly::canvas {

namespace {

// A style field: read from the first shape, written to all as one step.
template <class T, class Read, class Write>
void styleProp(Members<T>& m, const QString& name, Read read, Write write) {
    m.prop(
        name, [read](T& t, const QVariantList&) { return QVariant(read(t.first()->st())); },
        [write](T& t, const QVariant& v, const QVariantList&) {
            t.canvas().editStyles(t.ids(), [&](ShapeStyle& s) { write(s, v); });
        });
}

template <class T> void lockProp(Members<T>& m, const QString& name, uint16_t flag) {
    m.prop(
        name, [flag](T& t, const QVariantList&) { return QVariant(t.first()->has(flag)); },
        [flag](T& t, const QVariant& v, const QVariantList&) {
            const bool on = vb::toBool(v);
            t.canvas().editShapes(t.ids(), [&](ShapeData& s) { s.setFlag(flag, on); });
        });
}

int inRange(const QVariant& v, int lo, int hi, const char* what) {
    const int x = vb::toInt32(v);
    if (x < lo || x > hi)
        raiseError(err::InvalidProcedureCall,
                   QStringLiteral("%1 %2 is out of range").arg(QLatin1String(what)).arg(x));
    return x;
}

} // namespace

const Members<FillFormat>& FillFormat::members() {
    static const Members<FillFormat> table = [] {
        Members<FillFormat> m;
        styleProp(
            m, "Type", [](const ShapeStyle& s) { return s.fill.type; },
            [](ShapeStyle& s, const QVariant& v) {
                s.fill.type = inRange(v, 0, fill_type::Texture, "Fill type");
            });
        styleProp(
            m, "Colour", [](const ShapeStyle& s) { return static_cast<int>(s.fill.colour); },
            [](ShapeStyle& s, const QVariant& v) { s.fill.colour = toColour(v); });
        styleProp(
            m, "BackColour", [](const ShapeStyle& s) { return static_cast<int>(s.fill.backColour); },
            [](ShapeStyle& s, const QVariant& v) { s.fill.backColour = toColour(v); });
        styleProp(
            m, "Hatch", [](const ShapeStyle& s) { return s.fill.hatch; },
            [](ShapeStyle& s, const QVariant& v) {
                s.fill.hatch = inRange(v, 0, hatch::Count - 1, "Hatch");
            });
        styleProp(
            m, "Shade", [](const ShapeStyle& s) { return s.fill.shade; },
            [](ShapeStyle& s, const QVariant& v) {
                s.fill.shade = inRange(v, 0, shade::Count - 1, "Shade");
            });
        m.method("LoadTexture", [](FillFormat& f, QVariantList& a) {
            const PicturePtr picture = CanvasPicture::fromFile(vb::toText(arg(a, 0)));
            f.canvas().editShapes(f.ids(), [&](ShapeData& s) {
                ShapeStyle st = s.st();
                st.fill.type = fill_type::Texture;
                st.fill.texture = picture;
                s.style = std::make_shared<const ShapeStyle>(std::move(st));
                s.setFlag(shape_flag::Filled, true);
            });
            return QVariant();
        });
        return m;
    }();
    return table;
}

const Members<LineFormat>& LineFormat::members() {
    static const Members<LineFormat> table = [] {
        Members<LineFormat> m;
        styleProp(
            m, "Style", [](const ShapeStyle& s) { return s.line.style; },
            [](ShapeStyle& s, const QVariant& v) {
                s.line.style = inRange(v, 0, line_style::Count - 1, "Line style");
            });
        styleProp(
            m, "Colour", [](const ShapeStyle& s) { return static_cast<int>(s.line.colour); },
            [](ShapeStyle& s, const QVariant& v) { s.line.colour = toColour(v); });
        styleProp(
            m, "Weight", [](const ShapeStyle& s) { return s.line.weight; },
            [](ShapeStyle& s, const QVariant& v) { s.line.weight = std::max<int>(0, vb::toInt16(v)); });
        styleProp(
            m, "BeginArrow", [](const ShapeStyle& s) { return s.line.arrowStart; },
            [](ShapeStyle& s, const QVariant& v) {
                s.line.arrowStart = inRange(v, 0, arrow::Count - 1, "Arrow");
            });
        styleProp(
            m, "EndArrow", [](const ShapeStyle& s) { return s.line.arrowEnd; },
            [](ShapeStyle& s, const QVariant& v) {
                s.line.arrowEnd = inRange(v, 0, arrow::Count - 1, "Arrow");
            });
        return m;
    }();
    return table;
}

std::optional<QVariant> TextFrame::printValue() {
    return QVariant(first()->text());
}

const Members<TextFrame>& TextFrame::members() {
    static const Members<TextFrame> table = [] {
        Members<TextFrame> m;
        m.prop(
            "Value", [](TextFrame& t, const QVariantList&) { return QVariant(t.first()->text()); },
            [](TextFrame& t, const QVariant& v, const QVariantList&) {
                const QString text = vb::toText(v);
                t.canvas().editShapes(t.ids(), [&](ShapeData& s) {
                    ShapeExtra e = s.extraCopy();
                    e.text = text;
                    s.extra = std::make_shared<const ShapeExtra>(std::move(e));
                });
            });
        m.byDefault("Value");
        m.prop("Font", [](TextFrame& t, const QVariantList&) {
            t.first();
            return toVariant(std::make_shared<TextFont>(t.weakCanvas(), t.ids()));
        });
        m.method("Edit", [](TextFrame& t, QVariantList&) {
            t.canvas().openTextEditor(t.first()->id);
            return QVariant();
        });
        return m;
    }();
    return table;
}

std::optional<QVariant> TextFont::printValue() {
    return QVariant(first()->st().font.name);
}

const Members<TextFont>& TextFont::members() {
    static const Members<TextFont> table = [] {
        Members<TextFont> m;
        styleProp(
            m, "Name", [](const ShapeStyle& s) { return s.font.name; },
            [](ShapeStyle& s, const QVariant& v) { s.font.name = vb::toText(v); });
        m.byDefault("Name");
        styleProp(
            m, "Size", [](const ShapeStyle& s) { return s.font.size; },
            [](ShapeStyle& s, const QVariant& v) {
                s.font.size = inRange(QVariant(vb::toInt16(v)), 1, 4000, "Font size");
            });
        styleProp(
            m, "Bold", [](const ShapeStyle& s) { return s.font.bold; },
            [](ShapeStyle& s, const QVariant& v) { s.font.bold = vb::toBool(v); });
        styleProp(
            m, "Italic", [](const ShapeStyle& s) { return s.font.italic; },
            [](ShapeStyle& s, const QVariant& v) { s.font.italic = vb::toBool(v); });
        return m;
    }();
    return table;
}

const Members<EffectFormat>& EffectFormat::members() {
    static const Members<EffectFormat> table = [] {
        Members<EffectFormat> m;
        m.prop("Lens", [](EffectFormat& e, const QVariantList&) {
            e.first();
            return toVariant(std::make_shared<LensFormat>(e.weakCanvas(), e.ids()));
        });
        styleProp(
            m, "LensActive", [](const ShapeStyle& s) { return s.lens.active; },
            [](ShapeStyle& s, const QVariant& v) { s.lens.active = vb::toBool(v); });
        return m;
    }();
    return table;
}

const Members<LensFormat>& LensFormat::members() {
    static const Members<LensFormat> table = [] {
        Members<LensFormat> m;
        styleProp(
            m, "Type", [](const ShapeStyle& s) { return s.lens.type; },
            [](ShapeStyle& s, const QVariant& v) {
                const int code = vb::toInt32(v);
                if (!lens::isKnown(code))
                    raiseError(err::InvalidProcedureCall,
                               QStringLiteral("Lens type %1 is unknown").arg(code));
                s.lens.type = code;
            });
        styleProp(
            m, "Percent", [](const ShapeStyle& s) { return s.lens.percent; },
            [](ShapeStyle& s, const QVariant& v) { s.lens.percent = std::clamp(vb::toInt32(v), -100, 100); });
        styleProp(
            m, "StartColour", [](const ShapeStyle& s) { return static_cast<int>(s.lens.startColour); },
            [](ShapeStyle& s, const QVariant& v) { s.lens.startColour = toColour(v); });
        styleProp(
            m, "EndColour", [](const ShapeStyle& s) { return static_cast<int>(s.lens.endColour); },
            [](ShapeStyle& s, const QVariant& v) { s.lens.endColour = toColour(v); });
        return m;
    }();
    return table;
}

const Members<ShapeLocks>& ShapeLocks::members() {
    static const Members<ShapeLocks> table = [] {
        Members<ShapeLocks> m;
        lockProp(m, "LockA", shape_flag::LockA);
        lockProp(m, "LockB", shape_flag::LockB);
        return m;
    }();
    return table;
}

} // namespace tessaly::canvas
