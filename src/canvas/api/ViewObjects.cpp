#include "ViewObjects.h"

#include "canvas/engine/ToolController.h"

#include <cmath>

namespace tessaly::canvas {

void ViewList::screenToClient(int& x, int& y) const {
    const QPoint origin = canvas().viewGeometry().screenOrigin;
    x -= origin.x();
    y -= origin.y();
}

void ViewList::clientToPage(int& x, int& y) const {
    POLARDraw& c = canvas();
    const QPointF mm = c.viewGeometry().clientToPage(QPointF(x, y));
    x = c.toUnitsInt(mm.x());
    y = c.toUnitsInt(mm.y());
}

const Members<ViewList>& ViewList::members() {
    static const Members<ViewList> table = [] {
        Members<ViewList> m;
        m.prop("Item", [](ViewList& v, const QVariantList&) { return toVariant(v.canvas().view()); });
        m.byDefault("Item");
        m.method("CenterPage", [](ViewList& v, QVariantList&) {
            v.canvas().centerPage();
            return QVariant();
        });
        m.method("FitTo", [](ViewList& v, QVariantList& a) {
            v.canvas().fitTo(argInt(a, 0));
            return QVariant();
        });
        m.method("ScreenToClient", [](ViewList& v, QVariantList& a) {
            int x = argInt(a, 0), y = argInt(a, 1);
            v.screenToClient(x, y);
            a[0] = x;
            a[1] = y;
            return QVariant();
        });
        m.method("ClientToPage", [](ViewList& v, QVariantList& a) {
            int x = argInt(a, 0), y = argInt(a, 1);
            v.clientToPage(x, y);
            a[0] = x;
            a[1] = y;
            return QVariant();
        });
        return m;
    }();
    return table;
}

namespace {

// A switch or number of the view settings.
template <class T> void viewProp(Members<View>& m, const QString& name, T ViewSettings::*field) {
    m.prop(
        name, [field](View& v, const QVariantList&) { return QVariant(v.canvas().viewSettings().*field); },
        [field](View& v, const QVariant& value, const QVariantList&) {
            POLARDraw& c = v.canvas();
            if constexpr (std::is_same_v<T, bool>)
                c.viewSettings().*field = vb::toBool(value);
            else
                c.viewSettings().*field = vb::toInt32(value);
            c.requestRepaint();
        });
}

void flagProp(Members<View>& m, const QString& name, int index) {
    m.prop(
        name,
        [index](View& v, const QVariantList&) {
            return QVariant(v.canvas().viewSettings().showFlags[index]);
        },
        [index](View& v, const QVariant& value, const QVariantList&) {
            v.canvas().viewSettings().showFlags[index] = vb::toBool(value);
        });
}

} // namespace

const Members<View>& View::members() {
    static const Members<View> table = [] {
        Members<View> m;
        m.prop(
            "Zoom", [](View& v, const QVariantList&) { return QVariant(v.canvas().zoom()); },
            [](View& v, const QVariant& value, const QVariantList&) {
                v.canvas().setZoom(vb::toInt32(value));
            });
        m.prop(
            "ToolMode",
            [](View& v, const QVariantList&) { return QVariant(v.canvas().viewSettings().toolMode); },
            [](View& v, const QVariant& value, const QVariantList&) {
                v.canvas().tools().setToolMode(vb::toInt32(value));
            });
        m.prop(
            "ToolShapeType",
            [](View& v, const QVariantList&) { return QVariant(v.canvas().viewSettings().toolShapeType); },
            [](View& v, const QVariant& value, const QVariantList&) {
                v.canvas().tools().setToolShapeType(vb::toInt32(value));
            });
        m.prop(
            "ToolOption",
            [](View& v, const QVariantList&) { return QVariant(v.canvas().viewSettings().toolOption); },
            [](View& v, const QVariant& value, const QVariantList&) {
                v.canvas().tools().setToolOption(vb::toInt32(value));
            });
        viewProp(m, "DefaultToolMode", &ViewSettings::defaultToolMode);
        viewProp(m, "ShowGrid", &ViewSettings::showGrid);
        viewProp(m, "SnapToGrid", &ViewSettings::snapToGrid);
        viewProp(m, "ShowGuides", &ViewSettings::showGuides);
        viewProp(m, "SnapToGuides", &ViewSettings::snapToGuides);
        flagProp(m, "ShowFlagA", 0);
        flagProp(m, "ShowFlagB", 1);
        flagProp(m, "ShowFlagC", 2);
        flagProp(m, "ShowFlagD", 3);
        m.prop("Options", [](View& v, const QVariantList&) { return toVariant(v.canvas().viewOptions()); });
        return m;
    }();
    return table;
}

const Members<ViewOptions>& ViewOptions::members() {
    static const Members<ViewOptions> table = [] {
        Members<ViewOptions> m;
        m.prop(
            "MeasurementUnits",
            [](ViewOptions& o, const QVariantList&) {
                return QVariant(o.canvas().viewSettings().measurementUnits);
            },
            [](ViewOptions& o, const QVariant& v, const QVariantList&) {
                o.canvas().viewSettings().measurementUnits = vb::toInt32(v);
            });
        m.prop(
            "AllowErrorReporting",
            [](ViewOptions& o, const QVariantList&) {
                return QVariant(o.canvas().viewSettings().allowErrorReporting);
            },
            [](ViewOptions& o, const QVariant& v, const QVariantList&) {
                o.canvas().viewSettings().allowErrorReporting = vb::toBool(v);
            });
        m.prop(
            "ShowConnectors",
            [](ViewOptions& o, const QVariantList&) {
                return QVariant(o.canvas().viewSettings().showConnectors);
            },
            [](ViewOptions& o, const QVariant& v, const QVariantList&) {
                o.canvas().viewSettings().showConnectors = vb::toBool(v);
                o.canvas().requestRepaint();
            });
        return m;
    }();
    return table;
}

} // namespace tessaly::canvas
