#include "ReportPageView.h"

#include "core/port/ReportDocument.h"

#include <QPainter>
#include <cmath>

namespace tessaly::ui {

namespace {
constexpr double TwipsPerInch = 1440.0;
constexpr int ShadowOffset = 4; // pixels
const QColor Desk(128, 128, 128);
const QColor Shadow(64, 64, 64);
} // namespace

ReportPageView::ReportPageView(ReportDocument& report, QWidget* parent) : QWidget(parent), report_(report) {
    setAutoFillBackground(false);
}

void ReportPageView::show(int page, int zoomPercent) {
    page_ = page;
    zoom_ = zoomPercent;
    resize(sizeHint());
    update();
}

QSize ReportPageView::paperPixels() const {
    if (report_.pageCount() == 0)
        return {};
    const QSizeF twips = report_.pageSize(page_);
    const double k = logicalDpiX() / TwipsPerInch * zoom_ / 100.0;
    return {static_cast<int>(std::lround(twips.width() * k)),
            static_cast<int>(std::lround(twips.height() * k))};
}

QSize ReportPageView::sizeHint() const {
    return paperPixels() + QSize(2 * Margin + ShadowOffset, 2 * Margin + ShadowOffset);
}

void ReportPageView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Desk);
    if (report_.pageCount() == 0)
        return;
    const QRect paper(QPoint(Margin, Margin), paperPixels());
    p.fillRect(paper.translated(ShadowOffset, ShadowOffset), Shadow);
    p.fillRect(paper, Qt::white);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    report_.paintPage(page_, p, QRectF(paper));
}

} // namespace tessaly::ui
