#include "PageObjects.h"

#include "ShapeObjects.h"

namespace tessaly::canvas {

namespace {

using PageEdit = std::function<void(PageSettings&, const QVariant&)>;

// A property of the page settings: read by `read`, written as one undo step.
template <class Read> void pageProp(Members<Page>& m, const QString& name, Read read, PageEdit write) {
    m.prop(
        name,
        [read](Page& p, const QVariantList&) { return QVariant(read(p.canvas().drawing().state().page)); },
        [write](Page& p, const QVariant& v, const QVariantList&) {
            p.canvas().editPage([&](PageState& s) { write(s.page, v); });
        });
}

int wholeMm(const QVariant& v) {
    return vb::toInt32(v);
}

} // namespace

const Members<Page>& Page::members() {
    static const Members<Page> table = [] {
        Members<Page> m;
        pageProp(
            m, "Width", [](const PageSettings& p) { return p.width; },
            [](PageSettings& p, const QVariant& v) { p.width = wholeMm(v); });
        pageProp(
            m, "Height", [](const PageSettings& p) { return p.height; },
            [](PageSettings& p, const QVariant& v) { p.height = wholeMm(v); });
        pageProp(
            m, "Landscape", [](const PageSettings& p) { return p.landscape; },
            [](PageSettings& p, const QVariant& v) { p.landscape = vb::toBool(v); });
        pageProp(
            m, "PaperColour", [](const PageSettings& p) { return static_cast<int>(p.paperColour); },
            [](PageSettings& p, const QVariant& v) { p.paperColour = toColour(v); });
        pageProp(
            m, "OutlineColour", [](const PageSettings& p) { return static_cast<int>(p.outlineColour); },
            [](PageSettings& p, const QVariant& v) { p.outlineColour = toColour(v); });
        pageProp(
            m, "ShadowColour", [](const PageSettings& p) { return static_cast<int>(p.shadowColour); },
            [](PageSettings& p, const QVariant& v) { p.shadowColour = toColour(v); });
        pageProp(
            m, "ShowPaper", [](const PageSettings& p) { return p.showPaper; },
            [](PageSettings& p, const QVariant& v) { p.showPaper = vb::toBool(v); });
        pageProp(
            m, "ShowOutline", [](const PageSettings& p) { return p.showOutline; },
            [](PageSettings& p, const QVariant& v) { p.showOutline = vb::toBool(v); });
        pageProp(
            m, "ShowShadow", [](const PageSettings& p) { return p.showShadow; },
            [](PageSettings& p, const QVariant& v) { p.showShadow = vb::toBool(v); });
        pageProp(
            m, "GridColour", [](const PageSettings& p) { return static_cast<int>(p.gridColour); },
            [](PageSettings& p, const QVariant& v) { p.gridColour = toColour(v); });
        pageProp(
            m, "GuideColour", [](const PageSettings& p) { return static_cast<int>(p.guideColour); },
            [](PageSettings& p, const QVariant& v) { p.guideColour = toColour(v); });
        pageProp(
            m, "GridSpacingX", [](const PageSettings& p) { return p.gridSpacingX; },
            [](PageSettings& p, const QVariant& v) { p.gridSpacingX = wholeMm(v); });
        pageProp(
            m, "GridSpacingY", [](const PageSettings& p) { return p.gridSpacingY; },
            [](PageSettings& p, const QVariant& v) { p.gridSpacingY = wholeMm(v); });
        m.prop("Shapes", [](Page& p, const QVariantList&) { return toVariant(p.canvas().shapes()); });
        m.prop("Selection", [](Page& p, const QVariantList&) { return toVariant(p.canvas().selection()); });
        m.prop("HorizontalGuides",
               [](Page& p, const QVariantList&) { return toVariant(p.canvas().horizontalGuides()); });
        m.prop("VerticalGuides",
               [](Page& p, const QVariantList&) { return toVariant(p.canvas().verticalGuides()); });
        return m;
    }();
    return table;
}

std::vector<int> GuideList::positions() const {
    const PageState& s = canvas().drawing().state();
    return horizontal_ ? s.horizontalGuides : s.verticalGuides;
}

void GuideList::add(int positionMm) {
    canvas().editPage(
        [&](PageState& s) { (horizontal_ ? s.horizontalGuides : s.verticalGuides).push_back(positionMm); });
}

void GuideList::clear() {
    canvas().editPage([&](PageState& s) { (horizontal_ ? s.horizontalGuides : s.verticalGuides).clear(); });
}

std::optional<QVariant> GuideList::printValue() {
    QVariantList list;
    for (int p : positions())
        list << p;
    return QVariant(list);
}

const Members<GuideList>& GuideList::members() {
    static const Members<GuideList> table = [] {
        Members<GuideList> m;
        m.method("Add", [](GuideList& g, QVariantList& a) {
            g.add(argInt(a, 0));
            return QVariant();
        });
        m.method("Clear", [](GuideList& g, QVariantList&) {
            g.clear();
            return QVariant();
        });
        m.prop("Count",
               [](GuideList& g, const QVariantList&) { return static_cast<int>(g.positions().size()); });
        m.prop("Item", [](GuideList& g, const QVariantList& a) {
            const std::vector<int> p = g.positions();
            const int i = argInt(a, 0);
            if (i < 1 || i > static_cast<int>(p.size()))
                raiseError(err::InvalidProcedureCall, QStringLiteral("Guide line %1 does not exist").arg(i));
            return QVariant(p[static_cast<size_t>(i - 1)]);
        });
        m.byDefault("Item");
        return m;
    }();
    return table;
}

} // namespace tessaly::canvas
