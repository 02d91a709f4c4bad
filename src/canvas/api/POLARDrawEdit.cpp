#include "POLARDraw.h"

#include "canvas/engine/Clipboard.h"
#include "canvas/engine/ToolController.h"
#include "canvas/model/Geometry.h"
#include "canvas/model/ShapeTypes.h"
#include "core/runtime/RuntimeError.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <unordered_map>

namespace tessaly::canvas {

namespace {
constexpr double PasteOffsetMm = 5.0; // each paste into the source canvas lands this much further down-right
constexpr int ClipboardImageDpi = 96; // resolution of the picture put on the system clipboard
constexpr double ClipboardMaxPixels = 16.0 * 1024 * 1024;
} // namespace

ShapePtr POLARDraw::shapeOrRaise(int id) const {
    ShapePtr s = drawing().find(id);
    if (!s)
        raiseError(err::InvalidProcedureCall,
                   QStringLiteral("There is no shape with id %1 on the page").arg(id));
    return s;
}

QString POLARDraw::defaultName(int type, int id) const {
    return QStringLiteral("%1 %2").arg(shape_type::displayName(type)).arg(id);
}

void POLARDraw::editShapes(const std::vector<int>& ids, const std::function<void(ShapeData&)>& edit) {
    Scope scope(*this);
    for (int id : ids) {
        ShapeData copy = *shapeOrRaise(id);
        edit(copy);
        if (copy.sameAs(*drawing().find(id)))
            continue;
        doc_.replaceShape(std::make_shared<const ShapeData>(std::move(copy)));
    }
    requestRepaint();
}

void POLARDraw::editStyles(const std::vector<int>& ids, const std::function<void(ShapeStyle&)>& edit) {
    std::unordered_map<const ShapeStyle*, StylePtr> made; // shapes that shared a style share its successor
    editShapes(ids, [&](ShapeData& s) {
        const ShapeStyle* old = &s.st();
        auto it = made.find(old);
        if (it == made.end()) {
            ShapeStyle changed = *old;
            edit(changed);
            StylePtr next =
                changed == *old ? s.style : std::make_shared<const ShapeStyle>(std::move(changed));
            it = made.emplace(old, next).first;
        }
        s.style = it->second;
    });
}

void POLARDraw::editPage(const std::function<void(PageState&)>& edit) {
    Scope scope(*this);
    PageState st = drawing().state();
    edit(st);
    doc_.setState(std::move(st));
    requestRepaint();
}

int POLARDraw::insertNewShape(ShapeData shape) {
    Scope scope(*this);
    shape.id = doc_.takeId();
    if (shape.id >= MaxShapeId)
        raiseError(err::InvalidProcedureCall, QStringLiteral("The page holds too many shapes"));
    if (!shape.style)
        shape.style = defaultStyle();
    if (shape.name.isEmpty())
        shape.name = defaultName(shape.type, shape.id);
    const int id = shape.id;
    doc_.appendShape(std::make_shared<const ShapeData>(std::move(shape)));
    requestRepaint();
    return id;
}

int POLARDraw::addShapeMm(int type, const QRectF& box, const QString& text, bool announce) {
    Scope scope(*this);
    ShapeData s;
    s.type = static_cast<int16_t>(type);
    s.setFlag(shape_flag::Filled, !shape_type::isOpenStroke(type));
    if (type == shape_type::Line || type == shape_type::Link || type == shape_type::DimensionBar) {
        geometry::setLineEnds(s, box.topLeft(), box.bottomRight());
    } else {
        s.left = box.left();
        s.top = box.top();
        s.right = box.right();
        s.bottom = box.bottom();
    }
    if (type == shape_type::Freeform)
        geometry::setFreeformPoints(s, {box.topLeft(), box.bottomRight()});
    if (!text.isEmpty()) {
        ShapeExtra e = s.extraCopy();
        e.text = text;
        s.extra = std::make_shared<const ShapeExtra>(std::move(e));
    }
    const int id = insertNewShape(std::move(s));
    if (announce)
        announceShapeAdded(id);
    return id;
}

int POLARDraw::addPictureMm(const PicturePtr& picture, const QRectF& box) {
    Scope scope(*this);
    ShapeData s;
    s.type = shape_type::Picture;
    s.left = box.left();
    s.top = box.top();
    s.right = box.right();
    s.bottom = box.bottom();
    s.setFlag(shape_flag::Stroked, false);
    ShapeExtra e;
    e.picture = picture;
    s.extra = std::make_shared<const ShapeExtra>(std::move(e));
    const int id = insertNewShape(std::move(s));
    announceShapeAdded(id);
    return id;
}

// --- selection --------------------------------------------------------------

void POLARDraw::setSelection(std::vector<int> ids) {
    std::vector<int> clean;
    for (int id : ids)
        if (drawing().contains(id) && std::find(clean.begin(), clean.end(), id) == clean.end())
            clean.push_back(id);
    if (clean == selection_)
        return;
    selection_ = std::move(clean);
    requestRepaint();
    if (selection_.empty())
        raiseSelectionCleared();
    else
        raiseSelectionChanged(selection_.front());
}

void POLARDraw::clearSelection() {
    Scope scope(*this);
    tools_->reset();
    setSelection({});
}

void POLARDraw::selectAll() {
    Scope scope(*this);
    std::vector<int> all;
    all.reserve(static_cast<size_t>(drawing().count()));
    for (const ShapePtr& s : drawing().shapes())
        all.push_back(s->id);
    setSelection(std::move(all));
}

void POLARDraw::pruneSelection() {
    std::vector<int> kept;
    for (int id : selection_)
        if (drawing().contains(id))
            kept.push_back(id);
    if (kept.size() != selection_.size())
        setSelection(std::move(kept));
}

std::vector<int> POLARDraw::selectionOrRaise() const {
    if (selection_.empty())
        raiseError(err::InvalidProcedureCall, QStringLiteral("No shape is selected"));
    return selection_;
}

QRectF POLARDraw::boundsOf(const std::vector<int>& ids) const {
    QRectF r;
    for (int id : ids)
        if (ShapePtr s = drawing().find(id)) {
            QRectF b = s->box();
            if (s->rotation != 0 && s->type != shape_type::Group)
                b = geometry::rotation(*s).mapRect(b);
            if (s->type == shape_type::Group)
                b = geometry::pageOutline(*s).boundingRect();
            r = r.isNull() ? b : r.united(b);
        }
    return r;
}

// --- commands on shapes -------------------------------------------------------

void POLARDraw::deleteShapes(std::vector<int> ids) {
    Scope scope(*this);
    std::vector<int> positions;
    for (int id : ids)
        if (int pos = drawing().positionOf(id); pos >= 0)
            positions.push_back(pos);
    std::sort(positions.rbegin(), positions.rend());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    for (int pos : positions)
        doc_.removeShape(pos);
    pruneSelection();
    requestRepaint();
}

void POLARDraw::moveShapes(const std::vector<int>& ids, double dx, double dy) {
    editShapes(ids, [&](ShapeData& s) { geometry::translate(s, dx, dy); });
}

void POLARDraw::rotateShapes(const std::vector<int>& ids, int degrees) {
    editShapes(ids, [&](ShapeData& s) {
        if (s.type == shape_type::Group && s.extra) {
            // a group turns its members about the group's centre
            const QPointF c = geometry::pageOutline(s).boundingRect().center();
            QTransform t;
            t.translate(c.x(), c.y());
            t.rotate(degrees);
            t.translate(-c.x(), -c.y());
            ShapeExtra e = *s.extra;
            for (ShapePtr& child : e.children) {
                ShapeData m = *child;
                const QPointF mc = m.box().center();
                const QPointF moved = t.map(mc);
                geometry::translate(m, moved.x() - mc.x(), moved.y() - mc.y());
                m.rotation = static_cast<int16_t>(((m.rotation + degrees) % 360 + 360) % 360);
                child = std::make_shared<const ShapeData>(std::move(m));
            }
            s.extra = std::make_shared<const ShapeExtra>(std::move(e));
            const QRectF b = geometry::pageOutline(s).boundingRect();
            s.left = b.left();
            s.top = b.top();
            s.right = b.right();
            s.bottom = b.bottom();
            return;
        }
        s.rotation = static_cast<int16_t>(((s.rotation + degrees) % 360 + 360) % 360);
    });
}

int POLARDraw::groupShapes(const std::vector<int>& ids) {
    Scope scope(*this);
    std::vector<int> positions;
    for (int id : ids)
        positions.push_back(drawing().positionOf(shapeOrRaise(id)->id));
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    if (positions.size() < 2)
        return ids.empty() ? 0 : ids.front();
    ShapeData g;
    g.type = shape_type::Group;
    g.style = defaultStyle();
    ShapeExtra e;
    for (int pos : positions)
        e.children.push_back(drawing().at(pos));
    QRectF b;
    for (const ShapePtr& c : e.children)
        b = b.isNull() ? c->box() : b.united(c->box());
    g.left = b.left();
    g.top = b.top();
    g.right = b.right();
    g.bottom = b.bottom();
    g.extra = std::make_shared<const ShapeExtra>(std::move(e));
    const int top = positions.back();
    for (auto it = positions.rbegin(); it != positions.rend(); ++it)
        doc_.removeShape(*it);
    g.id = doc_.takeId();
    g.name = defaultName(g.type, g.id);
    const int id = g.id;
    doc_.insertShape(top - static_cast<int>(positions.size()) + 1,
                     std::make_shared<const ShapeData>(std::move(g)));
    setSelection({id});
    requestRepaint();
    return id;
}

void POLARDraw::ungroupShapes(const std::vector<int>& ids) {
    Scope scope(*this);
    std::vector<int> freed;
    for (int id : ids) {
        const ShapePtr g = drawing().find(id);
        if (!g || g->type != shape_type::Group || !g->extra)
            continue;
        int pos = drawing().positionOf(id);
        doc_.removeShape(pos);
        for (const ShapePtr& c : g->extra->children) {
            doc_.insertShape(pos++, c);
            freed.push_back(c->id);
        }
    }
    if (!freed.empty())
        setSelection(freed);
    requestRepaint();
}

void POLARDraw::convertToPolygon(const std::vector<int>& ids) {
    editShapes(ids, [&](ShapeData& s) {
        if (s.type == shape_type::Group || s.type == shape_type::Picture || s.type == shape_type::Freeform)
            return;
        const bool closed = !shape_type::isOpenStroke(s.type);
        const QList<QPolygonF> polys = geometry::pageOutline(s).toSubpathPolygons();
        if (polys.isEmpty())
            return;
        std::vector<QPointF> pts(polys.front().begin(), polys.front().end());
        if (closed && pts.size() > 1 && pts.front() == pts.back())
            pts.pop_back();
        s.type = shape_type::Freeform;
        s.rotation = 0;
        s.setFlag(shape_flag::Closed, closed);
        s.setFlag(shape_flag::Smooth, false);
        s.setFlag(shape_flag::FlipX, false);
        s.setFlag(shape_flag::FlipY, false);
        geometry::setFreeformPoints(s, pts);
    });
}

void POLARDraw::reorderShapes(const std::vector<int>& ids, int step) {
    Scope scope(*this);
    std::vector<int> positions;
    for (int id : ids)
        positions.push_back(drawing().positionOf(shapeOrRaise(id)->id));
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    const int n = drawing().count();
    const int k = static_cast<int>(positions.size());
    switch (step) {
    case reorder_step::ToBack: // keeping their order
        for (int i = 0; i < k; ++i)
            doc_.moveShape(positions[static_cast<size_t>(i)], i);
        break;
    case reorder_step::BackOne:
        for (int i = 0; i < k; ++i) {
            const int pos = positions[static_cast<size_t>(i)];
            if (pos > i)
                doc_.moveShape(pos, pos - 1);
        }
        break;
    case reorder_step::ForwardOne:
        for (int i = k - 1; i >= 0; --i) {
            const int pos = positions[static_cast<size_t>(i)];
            if (pos < n - (k - i))
                doc_.moveShape(pos, pos + 1);
        }
        break;
    case reorder_step::ToFront:
        for (int i = k - 1; i >= 0; --i)
            doc_.moveShape(positions[static_cast<size_t>(i)], n - (k - i));
        break;
    default:
        raiseError(err::InvalidProcedureCall, QStringLiteral("Reorder step %1 is not supported").arg(step));
    }
    requestRepaint();
}

// --- history ------------------------------------------------------------------

void POLARDraw::undo() {
    Scope scope(*this);
    tools_->reset();
    if (doc_.undo()) {
        modified_ = true;
        pruneSelection();
        requestRepaint();
    }
}

void POLARDraw::redo() {
    Scope scope(*this);
    tools_->reset();
    if (doc_.redo()) {
        modified_ = true;
        pruneSelection();
        requestRepaint();
    }
}

// --- clipboard ----------------------------------------------------------------

void POLARDraw::copy() {
    if (selection_.empty())
        return; // nothing selected: the clipboard keeps what it had
    std::vector<ShapePtr> shapes;
    std::vector<int> positions;
    for (int id : selection_)
        positions.push_back(drawing().positionOf(id));
    std::sort(positions.begin(), positions.end());
    for (int pos : positions)
        if (pos >= 0)
            shapes.push_back(drawing().at(pos));
    ShapeClipboard::instance().put(std::move(shapes), this);
    copyToSystemClipboard();
}

void POLARDraw::cut() {
    if (selection_.empty())
        return;
    Scope scope(*this);
    copy();
    deleteShapes(selection_);
}

namespace {
// A copy of `s` with fresh ids (the shape's and its members'), moved by dx, dy.
ShapeData renumbered(const ShapeData& s, const std::function<int()>& nextId, double dx, double dy) {
    ShapeData copy = s;
    copy.id = nextId();
    if (copy.extra && !copy.extra->children.empty()) {
        ShapeExtra e = *copy.extra;
        for (ShapePtr& c : e.children)
            c = std::make_shared<const ShapeData>(renumbered(*c, nextId, 0, 0));
        copy.extra = std::make_shared<const ShapeExtra>(std::move(e));
    }
    if (copy.extra && (copy.extra->linkStart.shapeId || copy.extra->linkEnd.shapeId)) {
        ShapeExtra e = *copy.extra;
        e.linkStart = {};
        e.linkEnd = {};
        copy.extra = std::make_shared<const ShapeExtra>(std::move(e));
    }
    geometry::translate(copy, dx, dy);
    return copy;
}
} // namespace

void POLARDraw::paste() {
    ShapeClipboard& clip = ShapeClipboard::instance();
    if (clip.empty())
        return;
    Scope scope(*this);
    tools_->reset();
    QRectF bounds;
    for (const ShapePtr& s : clip.shapes())
        bounds = bounds.isNull() ? geometry::visualBounds(*s) : bounds.united(geometry::visualBounds(*s));
    QPointF offset;
    if (clip.source() == this) {
        ++clip.pastesIntoSource;
        offset = QPointF(PasteOffsetMm, PasteOffsetMm) * clip.pastesIntoSource;
    }
    // the pasted shapes must be in sight: when they would land outside the window, they go to its centre
    const QRectF visible = view_.visiblePage();
    if (!visible.intersects(bounds.translated(offset)))
        offset = visible.center() - bounds.center();
    std::vector<int> ids;
    for (const ShapePtr& s : clip.shapes()) {
        ShapeData copy = renumbered(
            *s, [this] { return doc_.takeId(); }, offset.x(), offset.y());
        const int id = copy.id;
        doc_.appendShape(std::make_shared<const ShapeData>(std::move(copy)));
        ids.push_back(id);
    }
    setSelection(ids);
    for (int id : ids)
        announceShapeAdded(id);
    requestRepaint();
}

void POLARDraw::copyToSystemClipboard() const {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    const QRectF b = boundsOf(selection_);
    if (b.isEmpty())
        return;
    double k = ClipboardImageDpi / 25.4;
    const double pixels = b.width() * k * b.height() * k;
    if (pixels > ClipboardMaxPixels)
        k *= std::sqrt(ClipboardMaxPixels / pixels);
    QImage image(std::max(1, static_cast<int>(b.width() * k) + 1),
                 std::max(1, static_cast<int>(b.height() * k) + 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        const PageSettings& page = drawing().state().page;
        RenderOptions none{false, false, false};
        render(p, QRectF(-b.left() * k, -b.top() * k, page.width * k, page.height * k), b, none);
    }
    QGuiApplication::clipboard()->setImage(image);
}

// --- the canvas's dialogs and their effects -----------------------------------------

void POLARDraw::applyLineOptions(int style, Colour colour, int weight) {
    editStyles(selection_, [&](ShapeStyle& s) {
        s.line.style = std::clamp(style, 0, line_style::Count - 1);
        s.line.colour = colour & 0xFFFFFF;
        s.line.weight = std::max(0, weight);
    });
}

void POLARDraw::applyArrows(int start, int end, int size) {
    editStyles(selection_, [&](ShapeStyle& s) {
        s.line.arrowStart = std::clamp(start, 0, arrow::Count - 1);
        s.line.arrowEnd = std::clamp(end, 0, arrow::Count - 1);
        s.line.arrowSize = std::max(1, size);
    });
}

void POLARDraw::applyShade(Colour from, Colour to, int direction) {
    Scope scope(*this);
    editStyles(selection_, [&](ShapeStyle& s) {
        s.fill.type = fill_type::Shade;
        s.fill.colour = from & 0xFFFFFF;
        s.fill.backColour = to & 0xFFFFFF;
        s.fill.shade = std::clamp(direction, 0, shade::Count - 1);
    });
    editShapes(selection_, [](ShapeData& s) { s.setFlag(shape_flag::Filled, true); });
}

void POLARDraw::applyPattern(int hatchPattern, Colour fore, Colour back) {
    Scope scope(*this);
    editStyles(selection_, [&](ShapeStyle& s) {
        s.fill.type = fill_type::Pattern;
        s.fill.hatch = std::clamp(hatchPattern, 0, hatch::Count - 1);
        s.fill.colour = fore & 0xFFFFFF;
        s.fill.backColour = back & 0xFFFFFF;
    });
    editShapes(selection_, [](ShapeData& s) { s.setFlag(shape_flag::Filled, true); });
}

void POLARDraw::applyTexture(const PicturePtr& picture) {
    if (!picture)
        return;
    Scope scope(*this);
    editStyles(selection_, [&](ShapeStyle& s) {
        s.fill.type = fill_type::Texture;
        s.fill.texture = picture;
    });
    editShapes(selection_, [](ShapeData& s) { s.setFlag(shape_flag::Filled, true); });
}

void POLARDraw::applyShadow(bool visible, Colour colour, int offsetX, int offsetY) {
    editStyles(selection_, [&](ShapeStyle& s) {
        s.shadow.visible = visible;
        s.shadow.colour = colour & 0xFFFFFF;
        s.shadow.offsetX = offsetX;
        s.shadow.offsetY = offsetY;
    });
}

void POLARDraw::applyFont(const QString& name, int size, bool bold, bool italic) {
    editStyles(selection_, [&](ShapeStyle& s) {
        s.font.name = name;
        s.font.size = std::max(1, size);
        s.font.bold = bold;
        s.font.italic = italic;
    });
}

namespace {
void needHost(CanvasDialogHost* host) {
    if (!host)
        raiseError(err::CannotCreateObject, QStringLiteral("The canvas has no dialogs in this session"));
}
} // namespace

ShapeStyle POLARDraw::styleForDialog() const {
    const ShapeStyle style = shapeOrRaise(selectionOrRaise().front())->st();
    needHost(dialogHost_);
    return style;
}

void POLARDraw::showLineDialog() {
    const ShapeStyle st = styleForDialog();
    LineOptions o{st.line.style, st.line.colour, st.line.weight};
    if (dialogHost_->editLine(o))
        applyLineOptions(o.style, o.colour, o.weight);
}

void POLARDraw::showArrowsDialog() {
    const ShapeStyle st = styleForDialog();
    ArrowOptions o{st.line.arrowStart, st.line.arrowEnd, st.line.arrowSize};
    if (dialogHost_->editArrows(o))
        applyArrows(o.start, o.end, o.size);
}

void POLARDraw::showShadeDialog() {
    const ShapeStyle st = styleForDialog();
    ShadeOptions o{st.fill.colour, st.fill.backColour, st.fill.shade};
    if (dialogHost_->editShade(o))
        applyShade(o.from, o.to, o.direction);
}

void POLARDraw::showPatternDialog() {
    const ShapeStyle st = styleForDialog();
    PatternOptions o{st.fill.hatch, st.fill.colour, st.fill.backColour};
    if (dialogHost_->editPattern(o))
        applyPattern(o.hatch, o.fore, o.back);
}

void POLARDraw::showTextureDialog() {
    const ShapeStyle st = styleForDialog();
    TextureOptions o{st.fill.texture};
    if (dialogHost_->editTexture(o))
        applyTexture(o.picture);
}

void POLARDraw::showShadowDialog() {
    const ShapeStyle st = styleForDialog();
    ShadowOptions o{st.shadow.visible, st.shadow.colour, st.shadow.offsetX, st.shadow.offsetY};
    if (dialogHost_->editShadow(o))
        applyShadow(o.visible, o.colour, o.offsetX, o.offsetY);
}

void POLARDraw::showFontDialog() {
    const ShapeStyle st = styleForDialog();
    FontOptions o{st.font.name, st.font.size, st.font.bold, st.font.italic};
    if (dialogHost_->editFont(o))
        applyFont(o.name, o.size, o.bold, o.italic);
}

void POLARDraw::showPageSetup() {
    if (dialogHost_)
        dialogHost_->pageSetup(*this);
}

void POLARDraw::printDrawing(bool& showDialog) {
    needHost(dialogHost_);
    dialogHost_->print(*this, showDialog);
}

} // namespace tessaly::canvas
