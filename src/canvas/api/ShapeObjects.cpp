#include "ShapeObjects.h"

#include "FormatObjects.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"

#include <QByteArray>

namespace tessaly::canvas {

ShapePtr ShapeTarget::first() const {
    if (ids_.empty())
        raiseError(err::InvalidProcedureCall, QStringLiteral("The shape range is empty"));
    return canvas().shapeOrRaise(ids_.front());
}

std::weak_ptr<POLARDraw> ShapeTarget::weakCanvas() const {
    return std::static_pointer_cast<POLARDraw>(canvas().shared_from_this());
}

namespace {

enum class Edge { Left, Top, Right, Bottom };

double edgeOf(const ShapeData& s, Edge e) {
    switch (e) {
    case Edge::Left:
        return s.left;
    case Edge::Top:
        return s.top;
    case Edge::Right:
        return s.right;
    default:
        return s.bottom;
    }
}

void setEdge(ShapeData& s, Edge e, double mm) {
    double l = s.left, t = s.top, r = s.right, b = s.bottom;
    switch (e) {
    case Edge::Left:
        l = mm;
        break;
    case Edge::Top:
        t = mm;
        break;
    case Edge::Right:
        r = mm;
        break;
    case Edge::Bottom:
        b = mm;
        break;
    }
    geometry::setEdges(s, l, t, r, b);
}

template <class T> void edgeProp(Members<T>& m, const QString& name, Edge e) {
    m.prop(
        name,
        [e](T& t, const QVariantList&) { return QVariant(t.canvas().toUnitsInt(edgeOf(*t.first(), e))); },
        [e](T& t, const QVariant& v, const QVariantList&) {
            POLARDraw& c = t.canvas();
            const double mm = c.fromUnits(vb::toInt32(v));
            c.editShapes(t.ids(), [&](ShapeData& s) { setEdge(s, e, mm); });
        });
}

template <class T> void flagProp(Members<T>& m, const QString& name, uint16_t flag) {
    m.prop(
        name, [flag](T& t, const QVariantList&) { return QVariant(t.first()->has(flag)); },
        [flag](T& t, const QVariant& v, const QVariantList&) {
            const bool on = vb::toBool(v);
            t.canvas().editShapes(t.ids(), [&](ShapeData& s) { s.setFlag(flag, on); });
        });
}

template <class Format, class T> void formatProp(Members<T>& m, const QString& name) {
    m.prop(name, [](T& t, const QVariantList&) {
        t.first();
        return toVariant(std::make_shared<Format>(t.weakCanvas(), t.ids()));
    });
}

// The members that Shape and ShapeRange share.
template <class T> void shapeMembers(Members<T>& m) {
    m.prop("Id", [](T& t, const QVariantList&) { return QVariant(t.first()->id); });
    m.prop("Type", [](T& t, const QVariantList&) { return QVariant(static_cast<int>(t.first()->type)); });
    m.prop(
        "Name", [](T& t, const QVariantList&) { return QVariant(t.first()->name); },
        [](T& t, const QVariant& v, const QVariantList&) {
            const QString name = vb::toText(v);
            t.canvas().editShapes(t.ids(), [&](ShapeData& s) { s.name = name; });
        });
    edgeProp(m, "Left", Edge::Left);
    edgeProp(m, "Top", Edge::Top);
    edgeProp(m, "Right", Edge::Right);
    edgeProp(m, "Bottom", Edge::Bottom);
    m.prop("Width", [](T& t, const QVariantList&) {
        const ShapePtr s = t.first();
        POLARDraw& c = t.canvas();
        return QVariant(c.toUnitsInt(s->right) - c.toUnitsInt(s->left));
    });
    m.prop("Height", [](T& t, const QVariantList&) {
        const ShapePtr s = t.first();
        POLARDraw& c = t.canvas();
        return QVariant(c.toUnitsInt(s->bottom) - c.toUnitsInt(s->top));
    });
    m.prop(
        "Rotation", [](T& t, const QVariantList&) { return QVariant(static_cast<int>(t.first()->rotation)); },
        [](T& t, const QVariant& v, const QVariantList&) {
            const int degrees = ((vb::toInt32(v) % 360) + 360) % 360;
            t.canvas().editShapes(t.ids(), [&](ShapeData& s) { s.rotation = static_cast<int16_t>(degrees); });
        });
    flagProp(m, "Filled", shape_flag::Filled);
    flagProp(m, "Stroked", shape_flag::Stroked);
    formatProp<FillFormat>(m, "Fill");
    formatProp<LineFormat>(m, "Line");
    formatProp<TextFrame>(m, "Text");
    formatProp<EffectFormat>(m, "Effect");
    formatProp<ShapeLocks>(m, "Locks");
}

} // namespace

const Members<Shape>& Shape::members() {
    static const Members<Shape> table = [] {
        Members<Shape> m;
        shapeMembers(m);
        return m;
    }();
    return table;
}

void ShapeRange::getBounds(int& left, int& top, int& right, int& bottom) const {
    POLARDraw& c = canvas();
    for (int id : ids())
        c.shapeOrRaise(id);
    const QRectF b = c.boundsOf(ids());
    left = c.toUnitsInt(b.left());
    top = c.toUnitsInt(b.top());
    right = c.toUnitsInt(b.right());
    bottom = c.toUnitsInt(b.bottom());
}

const Members<ShapeRange>& ShapeRange::members() {
    static const Members<ShapeRange> table = [] {
        Members<ShapeRange> m;
        shapeMembers(m);
        m.prop("Count",
               [](ShapeRange& r, const QVariantList&) { return QVariant(static_cast<int>(r.ids().size())); });
        m.prop("Item", [](ShapeRange& r, const QVariantList& a) {
            const int i = vb::toInt16(arg(a, 0));
            if (i < 1 || i > static_cast<int>(r.ids().size()))
                raiseError(err::InvalidProcedureCall,
                           QStringLiteral("Item %1 is not in the shape range of %2 shapes")
                               .arg(i)
                               .arg(r.ids().size()));
            const int id = r.ids()[static_cast<size_t>(i - 1)];
            r.canvas().shapeOrRaise(id);
            return toVariant(std::make_shared<Shape>(r.weakCanvas(), id));
        });
        m.byDefault("Item");
        m.method("Move", [](ShapeRange& r, QVariantList& a) {
            POLARDraw& c = r.canvas();
            const double dx = c.fromUnits(argInt(a, 0)) - c.fromUnits(0);
            const double dy = c.fromUnits(argInt(a, 1)) - c.fromUnits(0);
            c.moveShapes(r.ids(), dx, dy);
            return QVariant();
        });
        m.method("Rotate", [](ShapeRange& r, QVariantList& a) {
            r.canvas().rotateShapes(r.ids(), argInt(a, 0));
            return QVariant();
        });
        m.method("Group", [](ShapeRange& r, QVariantList&) {
            r.canvas().groupShapes(r.ids());
            return QVariant();
        });
        m.method("Ungroup", [](ShapeRange& r, QVariantList&) {
            r.canvas().ungroupShapes(r.ids());
            return QVariant();
        });
        m.method("ConvertToPolygon", [](ShapeRange& r, QVariantList&) {
            r.canvas().convertToPolygon(r.ids());
            return QVariant();
        });
        m.method("Reorder", [](ShapeRange& r, QVariantList& a) {
            r.canvas().reorderShapes(r.ids(), argInt(a, 0));
            return QVariant();
        });
        m.method("GetBounds", [](ShapeRange& r, QVariantList& a) {
            while (a.size() < 4)
                a << 0;
            int l, t, rr, b;
            r.getBounds(l, t, rr, b);
            a[0] = l;
            a[1] = t;
            a[2] = rr;
            a[3] = b;
            return QVariant();
        });
        return m;
    }();
    return table;
}

std::shared_ptr<Shape> ShapeList::item(int position) const {
    POLARDraw& c = canvas();
    const int n = c.drawing().count();
    if (position < 1 || position > n)
        raiseError(err::InvalidProcedureCall,
                   QStringLiteral("There is no shape at position %1 of %2").arg(position).arg(n));
    return std::make_shared<Shape>(std::static_pointer_cast<POLARDraw>(c.shared_from_this()),
                                   c.drawing().at(position - 1)->id);
}

std::shared_ptr<Shape> ShapeList::itemById(int id) const {
    POLARDraw& c = canvas();
    c.shapeOrRaise(id);
    return std::make_shared<Shape>(std::static_pointer_cast<POLARDraw>(c.shared_from_this()), id);
}

namespace {

// The picture of an AddPicture argument: a picture object, the bytes of a
// picture file, or any object with a Data member holding them.
PicturePtr pictureFrom(const QVariant& v) {
    if (holdsObject(v)) {
        AutoPtr object = toObject(v);
        if (!object)
            raiseError(err::ObjectRequired, QStringLiteral("Object required"));
        if (auto* p = dynamic_cast<PictureObject*>(object.get()))
            return p->picture();
        return CanvasPicture::fromData(object->get(QStringLiteral("Data")).toByteArray());
    }
    if (v.metaType().id() == QMetaType::QByteArray)
        return CanvasPicture::fromData(v.toByteArray());
    raiseError(err::InvalidPicture, QStringLiteral("Invalid picture"));
}

QRectF boxFromUnits(POLARDraw& c, const QVariantList& a, int first) {
    const double l = c.fromUnits(argInt(a, first));
    const double t = c.fromUnits(argInt(a, first + 1));
    const double r = c.fromUnits(argInt(a, first + 2));
    const double b = c.fromUnits(argInt(a, first + 3));
    return QRectF(QPointF(l, t), QPointF(r, b));
}

} // namespace

const Members<ShapeList>& ShapeList::members() {
    static const Members<ShapeList> table = [] {
        Members<ShapeList> m;
        m.prop("Count",
               [](ShapeList& l, const QVariantList&) { return QVariant(l.canvas().drawing().count()); });
        m.prop("Item", [](ShapeList& l, const QVariantList& a) { return toVariant(l.item(argInt(a, 0))); });
        m.byDefault("Item");
        m.method("ItemById",
                 [](ShapeList& l, QVariantList& a) { return toVariant(l.itemById(argInt(a, 0))); });
        m.method("AddShape", [](ShapeList& l, QVariantList& a) {
            POLARDraw& c = l.canvas();
            const int type = argInt(a, 0);
            if (!shape_type::isKnown(type) || type == shape_type::Group || type == shape_type::Picture)
                raiseError(err::InvalidProcedureCall, QStringLiteral("Shape type %1 is unknown").arg(type));
            c.addShapeMm(type, boxFromUnits(c, a, 1));
            return QVariant();
        });
        m.method("AddText", [](ShapeList& l, QVariantList& a) {
            POLARDraw& c = l.canvas();
            c.addShapeMm(shape_type::TextBox, boxFromUnits(c, a, 1), vb::toText(arg(a, 0)));
            return QVariant();
        });
        m.method("AddPicture", [](ShapeList& l, QVariantList& a) {
            POLARDraw& c = l.canvas();
            const PicturePtr picture = pictureFrom(arg(a, 0));
            const int id = c.addPictureMm(picture, boxFromUnits(c, a, 1));
            return toVariant(l.itemById(id));
        });
        m.method("SelectAll", [](ShapeList& l, QVariantList&) {
            l.canvas().selectAll();
            return QVariant();
        });
        return m;
    }();
    return table;
}

std::shared_ptr<ShapeRange> Selection::range() const {
    POLARDraw& c = canvas();
    if (c.selectedIds().empty())
        return nullptr;
    return std::make_shared<ShapeRange>(std::static_pointer_cast<POLARDraw>(c.shared_from_this()),
                                        c.selectedIds());
}

const Members<Selection>& Selection::members() {
    static const Members<Selection> table = [] {
        Members<Selection> m;
        m.prop("Range", [](Selection& s, const QVariantList&) { return toVariant(s.range()); });
        m.byDefault("Range");
        m.method("Delete", [](Selection& s, QVariantList&) {
            POLARDraw& c = s.canvas();
            c.deleteShapes(c.selectedIds());
            return QVariant();
        });
        m.method("Clear", [](Selection& s, QVariantList&) {
            s.canvas().clearSelection();
            return QVariant();
        });
        return m;
    }();
    return table;
}

} // namespace tessaly::canvas
