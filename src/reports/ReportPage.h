#pragma once

#include "EngineObject.h"

#include <QColor>
#include <QFont>
#include <QLineF>
#include <QRectF>
#include <QSizeF>
#include <memory>
#include <variant>
#include <vector>

class QPainter;

namespace tessaly::metafile {
class Picture;
}

namespace tessaly::reports {

// What a run of a report leaves on a page, in twips from the paper's top-left
// corner: texts, lines and pictures. A page is painted from this list onto
// any device, so the viewer, the printer, the PDF and the TIFF show the same.
struct PageText {
    QRectF box;
    QString text;
    QFont font;        // pixel size in twips
    int alignment = 0; // Qt alignment flags
    QColor colour = Qt::black;
};
struct PageLine {
    QLineF line;
    double width = 0; // twips; 0 is the thinnest line the device draws
    QColor colour = Qt::black;
};
struct PagePicture {
    QRectF box;  // where the picture is drawn
    QRectF clip; // what of it shows; empty: all
    std::shared_ptr<const metafile::Picture> picture;
};
using PageItem = std::variant<PageText, PageLine, PagePicture>;

// One finished page of a report: its paper as it lies, the printable area
// within the margins (nothing is drawn outside it) and what lies on it.
class ReportPage final : public EngineObject {
public:
    ReportPage(QSizeF paper, QRectF printable);

    QSizeF size() const { return paper_; }
    QRectF printableArea() const { return printable_; }
    template <class T> void add(T item) { items_.emplace_back(std::in_place_type<T>, std::move(item)); }
    const std::vector<PageItem>& items() const { return items_; }

    // Paints the page so that its paper fills `target`; the paper is not filled.
    void paint(QPainter& painter, const QRectF& target) const;

    QString typeName() const override { return QStringLiteral("Page"); }

private:
    QSizeF paper_;
    QRectF printable_;
    std::vector<PageItem> items_;
};

using PagePtr = std::shared_ptr<ReportPage>;

// The pages of a finished run, in order. `Item(i)` counts from 0.
class PageCollection final : public EngineObject {
public:
    PageCollection();

    int count() const { return static_cast<int>(pages_.size()); }
    const ReportPage& page(int index) const;
    PagePtr pagePtr(int index) const;
    void append(PagePtr page) { pages_.push_back(std::move(page)); }
    void clear() { pages_.clear(); }

    QString typeName() const override { return QStringLiteral("Pages"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;

private:
    std::vector<PagePtr> pages_;
};

} // namespace tessaly::reports
