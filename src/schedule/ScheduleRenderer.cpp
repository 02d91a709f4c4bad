#include "ScheduleRenderer.h"

#include <QFontMetricsF>
#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QVector>
#include <algorithm>
#include <cmath>

namespace tessaly::schedule {

namespace {

// Colours of the chart.
const QColor ChartBack(255, 255, 255);       // days inside the range
const QColor OutsideBack(228, 231, 236);     // days outside the range
const QColor AlternateRow(246, 248, 251);    // every second row
const QColor WeekendBack(238, 241, 246);     // Saturdays and Sundays
const QColor MinorLine(225, 229, 234);       // marks of the lower tier, row borders
const QColor MajorLine(190, 197, 206);       // marks of the upper tier
const QColor HeaderBack(237, 239, 242);      // the time scale and the list title
const QColor HeaderText(48, 52, 58);         // their texts
const QColor Border(170, 177, 186);          // edges between the parts of the chart
const QColor ListBack(250, 251, 252);        // the row titles
const QColor ListText(30, 34, 39);           // their texts
const QColor SelectedRowBack(220, 232, 247); // the title of the selected bar's row
const QColor SelectionColour(26, 86, 184);   // outline and grips of the selected bar, previews
const QColor HatchColour(176, 48, 48);       // hatching of a bar whose end precedes its start
const QColor DarkText(20, 20, 20);           // text on light bars
const QColor LightText(255, 255, 255);       // text on dark bars
const QColor TipBack(255, 255, 225);         // the tip
const QColor TipBorder(118, 118, 118);
// The alpha of a preview's fill.
constexpr int PreviewAlpha = 110;

// The fonts' family and sizes (pixels).
const QString FontFamily = QStringLiteral("Liberation Sans");
constexpr int BarFontPixels = 11;
constexpr int ScaleFontPixels = 11;
constexpr int TitleFontPixels = 12;
constexpr int TipFontPixels = 12;

constexpr double MinBarWidth = 3;          // a bar narrower than this is drawn this wide
constexpr double MinTextWidth = 18;        // a bar narrower than this shows no text
constexpr double MinTextHeight = 9;        // a lane lower than this shows no text
constexpr double TextPadding = 4;          // room between a bar's edge and its text
constexpr double MaxDiamond = 12;          // the largest diamond of a bar of no length
constexpr double MilestoneTextWidth = 140; // room for the text beside a diamond
constexpr double ClipMargin = 4;           // how far beyond the painted area a cut bar reaches
constexpr double GripWidth = 4;            // the selected bar's grips at its ends
constexpr double SelectionPen = 2;
constexpr double ListPadding = 6; // room left of a row title
constexpr double TipPadding = 5;  // room around a tip's text
constexpr double TipOffsetX = 14; // where a tip stands from the pointer
constexpr double TipOffsetY = 20;
// Luminance (0-255) under which a bar's text is white.
constexpr int DarkBarLuminance = 140;
// Day 0 of the serials was a Saturday: a day's weekday from Saturday, 0 to 6.
constexpr int DaysPerWeek = 7;
constexpr int HoursPerDay = 24;

QColor toQColor(Colour c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                  static_cast<int>((c >> 16) & 0xFF));
}

QColor textOn(const QColor& fill) {
    const int luminance = (fill.red() * 299 + fill.green() * 587 + fill.blue() * 114) / 1000;
    return luminance < DarkBarLuminance ? LightText : DarkText;
}

bool isWeekend(double day) {
    const auto d = static_cast<long long>(std::floor(day));
    const long long fromSaturday = ((d % DaysPerWeek) + DaysPerWeek) % DaysPerWeek;
    return fromSaturday <= 1;
}

QFont pixelFont(int pixels, bool bold = false) {
    QFont f(FontFamily);
    f.setPixelSize(pixels);
    f.setBold(bold);
    return f;
}

int alignFlags(int align) {
    switch (align) {
    case text_align::Right:
        return Qt::AlignRight;
    case text_align::Centre:
        return Qt::AlignHCenter;
    default:
        return Qt::AlignLeft;
    }
}

// The text cut to the width with an ellipsis; nothing where only the ellipsis would show.
QString fitted(const QFontMetricsF& fm, const QString& text, double width) {
    if (fm.horizontalAdvance(text) <= width)
        return text;
    const QString cut = fm.elidedText(text, Qt::ElideRight, width);
    return cut.size() <= 1 ? QString() : cut;
}

QPolygonF diamond(const QPointF& centre, double half) {
    return QPolygonF({QPointF(centre.x(), centre.y() - half), QPointF(centre.x() + half, centre.y()),
                      QPointF(centre.x(), centre.y() + half), QPointF(centre.x() - half, centre.y())});
}

} // namespace

ScheduleRenderer::ScheduleRenderer(const ScheduleModel& model, const ScheduleDesign& design,
                                   const ScheduleLayout& layout)
    : model_(model), design_(design), layout_(layout) {}

QFont ScheduleRenderer::barFont() {
    return pixelFont(BarFontPixels);
}

QFont ScheduleRenderer::scaleFont() {
    return pixelFont(ScaleFontPixels);
}

QFont ScheduleRenderer::titleFont() {
    return pixelFont(TitleFontPixels);
}

QFont ScheduleRenderer::tipFont() {
    return pixelFont(TipFontPixels);
}

void ScheduleRenderer::paint(QPainter& p, const QRectF& area, const Overlay& overlay, bool rowsShown) const {
    const QRectF view(QPointF(0, 0), layout_.view().viewport);
    const QRectF a = area.isEmpty() ? view : area.intersected(view);
    if (a.isEmpty())
        return;
    p.save();
    p.setClipRect(a);
    paintChart(p, a.intersected(layout_.chartRect()), overlay, rowsShown);
    paintScale(p, a.intersected(layout_.headerRect()));
    paintList(p, a, rowsShown);
    if (overlay.tip && !overlay.tip->text.isEmpty())
        paintTip(p, *overlay.tip);
    p.restore();
}

void ScheduleRenderer::paintChart(QPainter& p, const QRectF& c, const Overlay& overlay,
                                  bool rowsShown) const {
    if (c.isEmpty())
        return;
    p.fillRect(c, OutsideBack);
    const QRectF range = QRectF(QPointF(layout_.xOf(layout_.rangeStart()), c.top()),
                                QPointF(layout_.xOf(layout_.rangeEnd()), c.bottom()))
                             .intersected(c);
    if (!range.isEmpty())
        p.fillRect(range, ChartBack);
    int firstRow = 1, lastRow = 0;
    if (rowsShown)
        std::tie(firstRow, lastRow) = layout_.rowsIn(c);
    for (int row = firstRow; row <= lastRow; ++row)
        if (row % 2 == 0) {
            const QRectF band(range.left(), layout_.rowTop(row), range.width(), layout_.rowHeight(row));
            p.fillRect(band.intersected(range), AlternateRow);
        }
    paintGrid(p, c, firstRow, lastRow);
    if (rowsShown) {
        paintBars(p, c, firstRow, lastRow, overlay);
        if (overlay.preview)
            paintPreview(p, c, *overlay.preview);
    }
}

void ScheduleRenderer::paintGrid(QPainter& p, const QRectF& c, int firstRow, int lastRow) const {
    const auto [from, to] = layout_.daysIn(c);
    const TimeScale scale = timeScaleFor(layout_.view().dayWidth);
    if (scale.bottom == TimeUnit::Hour || scale.bottom == TimeUnit::Day || scale.bottom == TimeUnit::Week) {
        const double start = std::max(from, layout_.rangeStart());
        const double end = std::min(to, layout_.rangeEnd());
        forEachMark(TimeUnit::Day, 1, start, end, [&](double day, double next) {
            if (!isWeekend(day) || day >= layout_.rangeEnd())
                return;
            const QRectF band(QPointF(layout_.xOf(day), c.top()), QPointF(layout_.xOf(next), c.bottom()));
            p.fillRect(band.intersected(c), WeekendBack);
        });
    }
    QVector<QLineF> minor, major;
    forEachMark(scale.bottom, scale.hourStep, from, to, [&](double start, double) {
        const double x = std::round(layout_.xOf(start)) + 0.5;
        if (x >= c.left() && x <= c.right())
            minor << QLineF(x, c.top(), x, c.bottom());
    });
    forEachMark(scale.top, 1, from, to, [&](double start, double) {
        const double x = std::round(layout_.xOf(start)) + 0.5;
        if (x >= c.left() && x <= c.right())
            major << QLineF(x, c.top(), x, c.bottom());
    });
    for (int row = firstRow; row <= lastRow; ++row) {
        const double y = std::round(layout_.rowTop(row) + layout_.rowHeight(row)) - 0.5;
        minor << QLineF(c.left(), y, c.right(), y);
    }
    p.setPen(QPen(MinorLine, 0));
    p.drawLines(minor);
    p.setPen(QPen(MajorLine, 0));
    p.drawLines(major);
}

QRectF ScheduleRenderer::boxOf(int row, const Bar& bar, int lane, int lanes) const {
    QRectF box = layout_.barRect(row, bar.low(), bar.high(), lane, lanes);
    if (bar.zeroLength()) {
        const double half = std::min(box.height(), MaxDiamond) / 2;
        return QRectF(box.left() - half, box.center().y() - half, 2 * half, 2 * half);
    }
    if (box.width() < MinBarWidth)
        box = QRectF(box.center().x() - MinBarWidth / 2, box.top(), MinBarWidth, box.height());
    return box;
}

QRectF ScheduleRenderer::barBox(int row, int bar) const {
    if (!model_.hasBar(row, bar))
        return {};
    return boxOf(row, model_.bar(row, bar), model_.laneOf(row, bar), model_.lanes(row));
}

void ScheduleRenderer::paintBars(QPainter& p, const QRectF& c, int firstRow, int lastRow,
                                 const Overlay& overlay) const {
    const auto [from, to] = layout_.daysIn(c);
    const double margin = MaxDiamond / layout_.view().dayWidth;
    p.setFont(barFont());
    const QRectF clip = c.adjusted(-ClipMargin, -ClipMargin, ClipMargin, ClipMargin);
    const int selRow = overlay.selection ? model_.selectedRow() : 0;
    const int selBar = overlay.selection ? model_.selectedBar() : 0;
    for (int row = firstRow; row <= lastRow; ++row) {
        const int lanes = model_.lanes(row);
        model_.barsBetween(row, from - margin, to + margin, [&](const ScheduleModel::Placed& placed) {
            const Bar& b = model_.bar(row, placed.bar);
            paintBar(p, clip, b, boxOf(row, b, placed.lane, lanes), row == selRow && placed.bar == selBar);
        });
    }
}

void ScheduleRenderer::paintBar(QPainter& p, const QRectF& clip, const Bar& bar, const QRectF& box,
                                bool selected) const {
    const QColor fill = toQColor(bar.colour);
    const QColor edge = fill.darker(160);
    if (bar.zeroLength()) {
        const double half = box.width() / 2;
        p.setPen(QPen(selected ? SelectionColour : edge, selected ? SelectionPen : 1));
        p.setBrush(fill);
        p.drawPolygon(diamond(box.center(), half));
        p.setBrush(Qt::NoBrush);
        const QRectF label(box.right() + TextPadding, box.top() - 2, MilestoneTextWidth, box.height() + 4);
        if (!bar.text.isEmpty() && box.height() >= MinTextHeight && label.intersects(clip)) {
            p.setPen(DarkText);
            p.drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
                       fitted(QFontMetricsF(p.font()), bar.text, MilestoneTextWidth));
        }
        return;
    }
    const QRectF shown = box.intersected(clip);
    if (shown.isEmpty())
        return;
    p.fillRect(shown, edge);
    if (shown.width() > 2 && shown.height() > 2)
        p.fillRect(shown.adjusted(1, 1, -1, -1), fill);
    if (bar.reversed())
        p.fillRect(shown, QBrush(HatchColour, Qt::BDiagPattern));
    const QRectF textBox = shown.adjusted(TextPadding, 0, -TextPadding, 0);
    if (!bar.text.isEmpty() && textBox.width() >= MinTextWidth - 2 * TextPadding &&
        shown.width() >= MinTextWidth && shown.height() >= MinTextHeight) {
        const QString text = fitted(QFontMetricsF(p.font()), bar.text, textBox.width());
        if (!text.isEmpty()) {
            p.setPen(textOn(fill));
            p.drawText(textBox,
                       alignFlags(bar.align) | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
                       text);
        }
    }
    if (selected) {
        p.setPen(QPen(SelectionColour, SelectionPen));
        p.setBrush(Qt::NoBrush);
        p.drawRect(box.adjusted(-1, -1, 1, 1).intersected(clip));
        for (const double x : {box.left(), box.right() - GripWidth})
            if (x >= clip.left() && x <= clip.right())
                p.fillRect(QRectF(x, box.top(), GripWidth, box.height()), SelectionColour);
    }
}

void ScheduleRenderer::paintPreview(QPainter& p, const QRectF& c, const Preview& preview) const {
    if (preview.row < 1 || preview.row > layout_.rowCount())
        return;
    int lane = 0, lanes = 1;
    Colour colour = DefaultBarColour;
    if (model_.hasBar(preview.row, preview.bar)) {
        lane = model_.laneOf(preview.row, preview.bar);
        lanes = model_.lanes(preview.row);
        colour = model_.bar(preview.row, preview.bar).colour;
    }
    QRectF box = layout_.barRect(preview.row, preview.low, preview.high, lane, lanes);
    if (box.width() < MinBarWidth)
        box.setWidth(MinBarWidth);
    const QRectF shown = box.intersected(c.adjusted(-ClipMargin, -ClipMargin, ClipMargin, ClipMargin));
    if (shown.isEmpty())
        return;
    QColor fill = toQColor(colour);
    fill.setAlpha(PreviewAlpha);
    p.fillRect(shown, fill);
    p.setPen(QPen(SelectionColour, SelectionPen, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    p.drawRect(shown.adjusted(1, 1, -1, -1));
}

void ScheduleRenderer::paintScale(QPainter& p, const QRectF& h) const {
    if (h.isEmpty())
        return;
    p.fillRect(h, HeaderBack);
    const TimeScale scale = timeScaleFor(layout_.view().dayWidth);
    p.setFont(scaleFont());
    paintTier(p, scale.top, 1, 0, true);
    paintTier(p, scale.bottom, scale.hourStep, TierHeight, false);
    const QRectF header = layout_.headerRect();
    p.setPen(QPen(Border, 0));
    p.drawLine(QLineF(header.left(), TierHeight - 0.5, header.right(), TierHeight - 0.5));
    p.drawLine(QLineF(header.left(), HeaderHeight - 0.5, header.right(), HeaderHeight - 0.5));
}

void ScheduleRenderer::paintTier(QPainter& p, TimeUnit unit, int hourStep, double top, bool upper) const {
    const QRectF header = layout_.headerRect();
    const auto [from, to] = layout_.daysIn(header);
    const QFontMetricsF fm(p.font());
    forEachMark(unit, hourStep, from, to, [&](double start, double end) {
        const double x0 = layout_.xOf(start), x1 = layout_.xOf(end);
        if (x0 >= header.left()) {
            p.setPen(QPen(upper ? Border : MajorLine, 0));
            const double x = std::round(x0) + 0.5;
            p.drawLine(QLineF(x, top + (upper ? 0 : 4), x, top + TierHeight));
        }
        // A label stays whole and in view while its mark is partly scrolled
        // away: it takes the visible part of the mark, and a shorter text or
        // none where that part is too narrow.
        const double left = std::max(x0, header.left());
        const double room = std::min(x1, header.right()) - left - 2 * TextPadding;
        const QString text = markText(unit, start, room, upper);
        if (text.isEmpty())
            return;
        p.setPen(HeaderText);
        const QRectF box(left + TextPadding, top, room, TierHeight);
        p.drawText(box, (upper ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter | Qt::TextDontClip,
                   text);
    });
}

QString ScheduleRenderer::markText(TimeUnit unit, double start, double width, bool upper) const {
    const QFontMetricsF fm(scaleFont());
    const QDate date = dateOfDay(static_cast<int64_t>(std::floor(start + 1e-9)));
    QStringList candidates;
    const QString day = QString::number(date.day());
    switch (unit) {
    case TimeUnit::Hour: {
        const int hour =
            static_cast<int>(std::lround((start - std::floor(start)) * HoursPerDay)) % HoursPerDay;
        candidates << design_.hourText(hour);
        break;
    }
    case TimeUnit::Day:
        if (upper)
            candidates << design_.formatDate(date) << design_.monthName(date.month()) + QLatin1Char(' ') + day
                       << day;
        else
            candidates << design_.dayName(date.dayOfWeek()) + QLatin1Char(' ') + day << day;
        break;
    case TimeUnit::Week:
        candidates << design_.monthName(date.month()) + QLatin1Char(' ') + day << day;
        break;
    case TimeUnit::Month:
        if (upper)
            candidates << design_.monthName(date.month()) + QLatin1Char(' ') + QString::number(date.year());
        candidates << design_.monthName(date.month()) << design_.monthName(date.month()).left(1);
        break;
    case TimeUnit::Year:
        candidates << QString::number(date.year());
        break;
    }
    for (const QString& c : candidates)
        if (fm.horizontalAdvance(c) <= width)
            return c;
    return QString();
}

void ScheduleRenderer::paintList(QPainter& p, const QRectF& a, bool rowsShown) const {
    const QRectF list = layout_.listRect().intersected(a);
    if (!list.isEmpty()) {
        p.fillRect(list, ListBack);
        if (rowsShown) {
            const auto [firstRow, lastRow] = layout_.rowsIn(list);
            p.setFont(titleFont());
            const QFontMetricsF fm(p.font());
            const double width = layout_.view().listWidth - 2 * ListPadding;
            QVector<QLineF> lines;
            for (int row = firstRow; row <= lastRow; ++row) {
                const QRectF band(0, layout_.rowTop(row), layout_.view().listWidth, layout_.rowHeight(row));
                if (row == model_.selectedRow())
                    p.fillRect(band.intersected(list), SelectedRowBack);
                else if (row % 2 == 0)
                    p.fillRect(band.intersected(list), AlternateRow);
                p.setPen(ListText);
                p.drawText(band.adjusted(ListPadding, 0, -ListPadding, 0),
                           Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip,
                           fitted(fm, model_.rowText(row), width));
                const double y = std::round(band.bottom()) - 0.5;
                lines << QLineF(0, y, layout_.view().listWidth, y);
            }
            p.setPen(QPen(MinorLine, 0));
            p.drawLines(lines);
        }
    }
    const QRectF corner = layout_.cornerRect();
    if (corner.intersects(a)) {
        p.fillRect(corner, HeaderBack);
        QFont bold = titleFont();
        bold.setBold(true);
        p.setFont(bold);
        p.setPen(HeaderText);
        p.drawText(corner.adjusted(ListPadding, 0, -ListPadding, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   fitted(QFontMetricsF(bold), design_.listTitle, corner.width() - 2 * ListPadding));
        p.setPen(QPen(Border, 0));
        p.drawLine(QLineF(0, HeaderHeight - 0.5, corner.right(), HeaderHeight - 0.5));
    }
    const double x = std::round(layout_.view().listWidth) - 0.5;
    p.setPen(QPen(Border, 0));
    p.drawLine(QLineF(x, a.top(), x, a.bottom()));
}

QRectF ScheduleRenderer::tipRect(const Tip& tip) const {
    const QFontMetricsF fm(tipFont());
    QString text = tip.text;
    text.remove(QLatin1Char('\r'));
    const QStringList lines = text.split(QLatin1Char('\n'));
    double width = 0;
    for (const QString& line : lines)
        width = std::max(width, fm.horizontalAdvance(line));
    const QSizeF size(width + 2 * TipPadding, lines.size() * fm.lineSpacing() + 2 * TipPadding);
    const QSizeF view = layout_.view().viewport;
    double x = tip.anchor.x() + TipOffsetX;
    double y = tip.anchor.y() + TipOffsetY;
    if (x + size.width() > view.width())
        x = view.width() - size.width() - 1;
    if (y + size.height() > view.height())
        y = tip.anchor.y() - size.height() - TipPadding;
    return QRectF(QPointF(std::max(0.0, x), std::max(0.0, y)), size);
}

void ScheduleRenderer::paintTip(QPainter& p, const Tip& tip) const {
    const QRectF box = tipRect(tip);
    p.setPen(QPen(TipBorder, 0));
    p.setBrush(TipBack);
    p.drawRect(box.adjusted(0.5, 0.5, -0.5, -0.5));
    p.setBrush(Qt::NoBrush);
    p.setFont(tipFont());
    p.setPen(DarkText);
    const QFontMetricsF fm(p.font());
    QString text = tip.text;
    text.remove(QLatin1Char('\r'));
    double y = box.top() + TipPadding;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        p.drawText(QPointF(box.left() + TipPadding, y + fm.ascent()), line);
        y += fm.lineSpacing();
    }
}

} // namespace tessaly::schedule
