#include "ReportPage.h"

#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "metafile/Picture.h"

#include <QPainter>

namespace tessaly::reports {

ReportPage::ReportPage(QSizeF paper, QRectF printable) : paper_(paper), printable_(printable) {
    property(QStringLiteral("Width"), [this] { return paper_.width(); });
    property(QStringLiteral("Height"), [this] { return paper_.height(); });
    property(QStringLiteral("ItemCount"), [this] { return static_cast<int>(items_.size()); });
}

namespace {

struct ItemPainter {
    QPainter& painter;

    void operator()(const PageText& t) const {
        painter.setFont(t.font);
        painter.setPen(t.colour);
        painter.drawText(t.box, t.alignment, t.text);
    }
    void operator()(const PageLine& l) const {
        painter.setPen(QPen(l.colour, l.width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(l.line);
    }
    void operator()(const PagePicture& p) const {
        if (!p.picture || p.picture->isNull())
            return;
        painter.save();
        if (!p.clip.isEmpty())
            painter.setClipRect(p.clip, Qt::IntersectClip);
        p.picture->draw(painter, p.box);
        painter.restore();
    }
};

} // namespace

void ReportPage::paint(QPainter& painter, const QRectF& target) const {
    if (paper_.isEmpty() || target.isEmpty())
        return;
    painter.save();
    painter.translate(target.topLeft());
    painter.scale(target.width() / paper_.width(), target.height() / paper_.height());
    painter.setClipRect(printable_, Qt::IntersectClip);
    const ItemPainter draw{painter};
    for (const PageItem& item : items_)
        std::visit(draw, item);
    painter.restore();
}

PageCollection::PageCollection() {
    property(QStringLiteral("Count"), [this] { return count(); });
}

const ReportPage& PageCollection::page(int index) const {
    return *pagePtr(index);
}

PagePtr PageCollection::pagePtr(int index) const {
    if (index < 0 || index >= count())
        raiseError(err::InvalidProcedureCall, QStringLiteral("There is no page %1").arg(index));
    return pages_[static_cast<size_t>(index)];
}

QVariant PageCollection::get(const QString& name, const QVariantList& index) {
    if (name.compare(QLatin1String("Item"), Qt::CaseInsensitive) == 0 && index.size() == 1)
        return toVariant(pagePtr(vb::toInt32(index[0])));
    return EngineObject::get(name, index);
}

} // namespace tessaly::reports
