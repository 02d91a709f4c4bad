#include "SchedulePrint.h"

#include "ScheduleControl.h"
#include "core/forms/ApplicationBase.h"
#include "core/forms/Control.h"
#include "core/forms/Form.h"
#include "core/runtime/RuntimeError.h"

#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tessaly::schedule {

namespace {
constexpr double LogicalDpi = 96; // logical pixels an inch
constexpr double MmPerInch = 25.4;
constexpr double A4LongMm = 297; // an A4 page turned across
constexpr double A4ShortMm = 210;
constexpr double PrintMarginMm = 10;
// The bands of a page, in logical pixels.
constexpr double HeadingHeight = 28;   // the print heading
constexpr double TitleHeight = 20;     // the print title and the range
constexpr double HeadingGap = 8;       // between them and the chart
constexpr double FooterHeight = 20;    // the footer and the page number
constexpr double PrintListWidth = 160; // the row titles, at most a third of the page
// The zoom on paper: the view's, within these bounds (pixels a day).
constexpr double MinPrintDayWidth = 3;
constexpr double MaxPrintDayWidth = 150;
// A range longer than this many pages side by side is drawn narrower to fit them.
constexpr int MaxPagesAcross = 100;
constexpr int HeadingFontPixels = 18;
constexpr int TitleFontPixels = 13;
constexpr int FooterFontPixels = 11;
// The platform's "Printer error".
constexpr int PrinterError = 482;
const QString PrintFontFamily = QStringLiteral("Liberation Sans");

QFont printFont(int pixels, bool bold = false) {
    QFont f(PrintFontFamily);
    f.setPixelSize(pixels);
    f.setBold(bold);
    return f;
}

int rowsOnPaper(const ScheduleControl& c) {
    return c.rowsReady() ? c.model().rowCount() : 0;
}
} // namespace

QSizeF defaultPrintPage() {
    const double perMm = LogicalDpi / MmPerInch;
    return QSizeF((A4LongMm - 2 * PrintMarginMm) * perMm, (A4ShortMm - 2 * PrintMarginMm) * perMm);
}

PrintPlan planPrint(const ScheduleControl& c, const QSizeF& page) {
    PrintPlan plan;
    plan.page = page;
    plan.listWidth = std::min(PrintListWidth, page.width() / 3);
    plan.chartTop = HeadingHeight + TitleHeight + HeadingGap;
    plan.chartHeight =
        std::max(HeaderHeight + c.view().rowHeight, page.height() - plan.chartTop - FooterHeight);
    const double room = plan.chartHeight - HeaderHeight;
    const ScheduleLayout layout = c.layout();
    double used = 0;
    for (int row = 1; row <= rowsOnPaper(c); ++row) {
        const double height = layout.rowHeight(row);
        if (used > 0 && used + height > room) {
            plan.bands.push_back(row);
            used = 0;
        }
        used += height;
    }
    const double days = std::max(1.0, static_cast<double>(c.lastDay()) + 1 - c.firstDay());
    const double chartWidth = std::max(1.0, page.width() - plan.listWidth);
    plan.dayWidth = std::clamp(c.dayWidth(), MinPrintDayWidth, MaxPrintDayWidth);
    plan.daysPerPage = chartWidth / plan.dayWidth;
    if (plan.daysPerPage >= 1)
        plan.daysPerPage = std::floor(plan.daysPerPage); // pages break between days
    plan.across = std::max(1, static_cast<int>(std::ceil(days / plan.daysPerPage - 1e-9)));
    if (plan.across > MaxPagesAcross) {
        plan.across = MaxPagesAcross;
        plan.daysPerPage = days / plan.across;
        plan.dayWidth = chartWidth / plan.daysPerPage;
    }
    return plan;
}

void printPage(QPainter& p, const ScheduleControl& c, const PrintPlan& plan, int index) {
    const int column = index % plan.across;
    const int band = index / plan.across;
    const ScheduleDesign& design = c.design();
    const double width = plan.page.width();
    p.save();
    p.setPen(Qt::black);
    p.setFont(printFont(HeadingFontPixels, true));
    p.drawText(QRectF(0, 0, width, HeadingHeight), Qt::AlignLeft | Qt::AlignVCenter, design.printHeading);
    p.setFont(printFont(TitleFontPixels));
    const QRectF titleBand(0, HeadingHeight, width, TitleHeight);
    p.drawText(titleBand, Qt::AlignLeft | Qt::AlignVCenter, c.printTitle);
    p.drawText(titleBand, Qt::AlignRight | Qt::AlignVCenter,
               design.formatDate(dateOfDay(c.firstDay())) + QStringLiteral(" - ") +
                   design.formatDate(dateOfDay(c.lastDay())));
    p.setFont(printFont(FooterFontPixels));
    const QRectF footer(0, plan.page.height() - FooterHeight, width, FooterHeight);
    p.drawText(footer, Qt::AlignLeft | Qt::AlignVCenter, design.printFooter);
    p.drawText(footer, Qt::AlignRight | Qt::AlignVCenter,
               QStringLiteral("Page %1 of %2").arg(index + 1).arg(plan.pages()));

    const int rows = rowsOnPaper(c);
    const ScheduleLayout full = c.layout();
    const int first = plan.bands[static_cast<size_t>(band)];
    const int last = band + 1 < plan.down() ? plan.bands[static_cast<size_t>(band) + 1] - 1 : rows;
    ScheduleView view = c.view();
    view.listWidth = plan.listWidth;
    view.dayWidth = plan.dayWidth;
    view.originDay = c.firstDay() + column * plan.daysPerPage;
    view.scrollY = full.rowOffset(first);
    const double rangeEnd = std::max<double>(c.firstDay() + 1, static_cast<double>(c.lastDay()) + 1);
    const double days = std::min(plan.daysPerPage, rangeEnd - view.originDay);
    const double height = last >= first ? full.rowOffset(last + 1) - full.rowOffset(first) : 0;
    view.viewport =
        QSizeF(plan.listWidth + days * plan.dayWidth, HeaderHeight + std::min(height, plan.chartHeight));
    p.translate(0, plan.chartTop);
    const ScheduleLayout layout(view, c.firstDay(), c.lastDay(),
                                rows > 0 ? c.rowGeometry() : uniformRows(0, view.rowHeight));
    Overlay overlay;
    overlay.selection = false;
    ScheduleRenderer(c.model(), design, layout).paint(p, QRectF(), overlay, rows > 0);
    p.setPen(QPen(Qt::darkGray, 0));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(QPointF(0, 0), view.viewport));
    p.restore();
}

int ScheduleControl::printTo(QPagedPaintDevice& device) const {
    QPainter p;
    if (!p.begin(&device))
        raiseError(PrinterError, QStringLiteral("The schedule cannot be printed: the printer did not start"));
    const double scale = device.logicalDpiX() / LogicalDpi;
    const PrintPlan plan = planPrint(*this, QSizeF(device.width() / scale, device.height() / scale));
    for (int i = 0; i < plan.pages(); ++i) {
        if (i > 0)
            device.newPage();
        p.save();
        p.scale(scale, scale);
        printPage(p, *this, plan, i);
        p.restore();
    }
    p.end();
    return plan.pages();
}

void ScheduleControl::printChart() {
    if (printHost_) {
        printHost_(*this);
        return;
    }
    // With no printer behind the control, the print goes to the UI port's record.
    const AutoPtr owner = control_.lock();
    if (!owner)
        return;
    auto& control = static_cast<Control&>(*owner);
    const PrintPlan plan = planPrint(*this, defaultPrintPage());
    control.form().app().ui.printed(QStringLiteral("schedule \"%1\" of %2 rows and %3 bars on %4 pages")
                                        .arg(printTitle)
                                        .arg(model_.rowCount())
                                        .arg(model_.totalBars())
                                        .arg(plan.pages()));
}

} // namespace tessaly::schedule
