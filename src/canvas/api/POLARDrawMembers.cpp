#include "Members.h"
#include "POLARDraw.h"
#include "PageObjects.h"
#include "ShapeObjects.h"
#include "ViewObjects.h"

namespace tessaly::canvas {

namespace {

using M = Members<POLARDraw>;

M::Method noArgs(void (POLARDraw::*fn)()) {
    return [fn](POLARDraw& c, QVariantList&) {
        (c.*fn)();
        return QVariant();
    };
}

const M& table() {
    static const M table = [] {
        M m;
        m.prop("Page", [](POLARDraw& c, const QVariantList&) { return toVariant(c.page()); });
        m.prop("Views", [](POLARDraw& c, const QVariantList&) { return toVariant(c.views()); });
        // The default view of Views, the same object as Views.Item: read-only.
        m.prop("View", [](POLARDraw& c, const QVariantList&) { return toVariant(c.view()); });
        m.prop(
            "Zoom", [](POLARDraw& c, const QVariantList&) { return QVariant(c.zoom()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.setZoom(vb::toInt32(v)); });
        m.prop(
            "GridVisible", [](POLARDraw& c, const QVariantList&) { return QVariant(c.gridVisible()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.setGridVisible(vb::toBool(v)); });
        m.prop(
            "CoordinateMode", [](POLARDraw& c, const QVariantList&) { return QVariant(c.coordinateMode()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) {
                c.setCoordinateMode(vb::toInt32(v));
            });
        m.prop(
            "Modified", [](POLARDraw& c, const QVariantList&) { return QVariant(c.modified()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.setModified(vb::toBool(v)); });
        m.prop(
            "HighlightEnabled",
            [](POLARDraw& c, const QVariantList&) { return QVariant(c.highlightEnabled); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.highlightEnabled = vb::toBool(v); });
        m.prop(
            "HighlightColour",
            [](POLARDraw& c, const QVariantList&) { return QVariant(static_cast<int>(c.highlightColour)); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.highlightColour = toColour(v); });
        m.prop(
            "HighlightAltColour",
            [](POLARDraw& c, const QVariantList&) {
                return QVariant(static_cast<int>(c.highlightAltColour));
            },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.highlightAltColour = toColour(v); });
        m.prop(
            "DrawingTag", [](POLARDraw& c, const QVariantList&) { return QVariant(c.drawingTag()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.setDrawingTag(vb::toText(v)); });
        m.prop(
            "AutoRedraw", [](POLARDraw& c, const QVariantList&) { return QVariant(c.autoRedraw()); },
            [](POLARDraw& c, const QVariant& v, const QVariantList&) { c.setAutoRedraw(vb::toBool(v)); });
        m.method("LoadFile", [](POLARDraw& c, QVariantList& a) {
            c.loadFile(vb::toText(arg(a, 0)));
            return QVariant();
        });
        m.method("SaveFile", [](POLARDraw& c, QVariantList& a) {
            c.saveFile(vb::toText(arg(a, 0)), argInt(a, 1));
            return QVariant();
        });
        m.method("Undo", noArgs(&POLARDraw::undo));
        m.method("Redo", noArgs(&POLARDraw::redo));
        m.method("Cut", noArgs(&POLARDraw::cut));
        m.method("Copy", noArgs(&POLARDraw::copy));
        m.method("Paste", noArgs(&POLARDraw::paste));
        m.method("RefreshScreen", noArgs(&POLARDraw::refreshScreen));
        m.method("Redraw", noArgs(&POLARDraw::redraw));
        m.method("ShowPageSetup", noArgs(&POLARDraw::showPageSetup));
        m.method("PrintDrawing", [](POLARDraw& c, QVariantList& a) {
            bool show = a.isEmpty() ? true : vb::toBool(a[0]);
            c.printDrawing(show);
            if (!a.isEmpty())
                a[0] = show;
            return QVariant();
        });
        m.method("ShowLineDialog", noArgs(&POLARDraw::showLineDialog));
        m.method("ShowArrowsDialog", noArgs(&POLARDraw::showArrowsDialog));
        m.method("ShowShadeDialog", noArgs(&POLARDraw::showShadeDialog));
        m.method("ShowPatternDialog", noArgs(&POLARDraw::showPatternDialog));
        m.method("ShowTextureDialog", noArgs(&POLARDraw::showTextureDialog));
        m.method("ShowShadowDialog", noArgs(&POLARDraw::showShadowDialog));
        m.method("ShowFontDialog", noArgs(&POLARDraw::showFontDialog));
        return m;
    }();
    return table;
}

} // namespace

QVariant POLARDraw::get(const QString& name, const QVariantList& index) {
    return table().get(*this, name, index);
}

void POLARDraw::set(const QString& name, const QVariant& value, const QVariantList& index) {
    table().set(*this, name, value, index);
}

QVariant POLARDraw::call(const QString& name, QVariantList& args) {
    return table().call(*this, name, args);
}

QStringList POLARDraw::memberNames() const {
    return classMemberNames();
}

QStringList POLARDraw::classMemberNames() {
    return table().names();
}

} // namespace tessaly::canvas
