// Benchmarks of the schedule control on a big site: 1,000 time lines (rows)
// and 10,000 or 100,000 bookings (bars) over the program's range of 120 days.
//
//   Rebuild      ClearAll, the rows and every bar with its text, comment,
//                alignment, key, colour and picture, through the members by
//                name on the control of a form as the program calls them,
//                until the chart is ready to paint.
//   Repaint      the whole of a 1920 by 1080 view.
//   DragFeedback one move of the pointer while a bar is dragged: the preview
//                and the repaint of the part of the view it changes.
//   Print20Pages a print of 20 pages into a PDF file.
#include "core/forms/ApplicationBase.h"
#include "core/forms/Form.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "schedule/ScheduleControl.h"

#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

using namespace tessaly;
using namespace tessaly::schedule;

constexpr int Rows = 1000;
constexpr int RangeDays = 120; // 30 days before today to 90 after
constexpr int FirstDay = 46300;
const QSize FullHd(1920, 1080);

// A repeatable sequence of numbers.
class Numbers {
public:
    uint32_t next() {
        state_ = state_ * 1664525u + 1013904223u;
        return state_ >> 8;
    }
    int below(int n) { return static_cast<int>(next() % static_cast<uint32_t>(n)); }

private:
    uint32_t state_ = 12345;
};

// A form with one schedule control, as the project manager holds it.
struct Site {
    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    ApplicationBase app{ui, waiter, AppHome(dir.path())};
    std::shared_ptr<Form> form = std::make_shared<Form>(app, QStringLiteral("frmClientSites"));
    Control& control = form->add(ControlKind::Schedule, QStringLiteral("ctSchedule1"));
    std::shared_ptr<ScheduleControl> engine = ScheduleControl::attach(control);

    void call(const char* name, QVariantList args) { control.call(QString::fromLatin1(name), args); }

    // ResetScheduleRows and LoadScheduleBars of a site with `bars` bookings.
    void rebuild(int bars) {
        call("ClearAll", {});
        control.set(QStringLiteral("RowSetting"), 15);
        control.set(QStringLiteral("FirstDay"), FirstDay);
        control.set(QStringLiteral("LastDay"), FirstDay + RangeDays - 1);
        for (int r = 1; r <= Rows; ++r)
            call("AddRow", {QStringLiteral("Time line %1").arg(r)});
        control.set(QStringLiteral("RowsReady"), true);
        Numbers n;
        const QString text = QStringLiteral("Booking");
        const QString comment = QStringLiteral("Comment of the booking");
        for (int b = 0; b < bars; ++b) {
            const int row = 1 + n.below(Rows);
            const int start = FirstDay + n.below(RangeDays);
            const int length = n.below(4);
            QVariantList args{row, 480, 1020, start, start + length};
            const QVariant bar = control.call(QStringLiteral("AddBar"), args);
            const QVariantList at{row, bar};
            control.set(QStringLiteral("BarText"), text, at);
            control.set(QStringLiteral("BarComment"), comment, at);
            control.set(QStringLiteral("BarTextAlign"), 0, at);
            control.set(QStringLiteral("BarKey"), b + 1, at);
            control.set(QStringLiteral("BarColour"), static_cast<int>(n.next() & 0xFFFFFF), at);
            call("AddPicture", {control.get(QStringLiteral("Picture"))});
        }
        benchmark::DoNotOptimize(engine->layout().contentHeight()); // the rows' heights, ready to paint
    }
};

void Rebuild(benchmark::State& state) {
    Site site;
    for (auto _ : state)
        site.rebuild(static_cast<int>(state.range(0)));
    state.counters["bars"] = static_cast<double>(site.engine->model().totalBars());
}
BENCHMARK(Rebuild)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// Repaints a full-HD view of the middle rows; with a second argument of 1
// the view is zoomed out to show the whole range of days at once.
void Repaint(benchmark::State& state) {
    Site site;
    site.rebuild(static_cast<int>(state.range(0)));
    ScheduleControl& s = *site.engine;
    s.setViewportSize(FullHd);
    if (state.range(1) == 1)
        s.setDayWidth((FullHd.width() - DefaultListWidth) / RangeDays);
    s.setScrollY(s.layout().contentHeight() / 2);
    QImage image(FullHd, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter p(&image);
        s.paint(p);
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
    const ScheduleLayout l = s.layout();
    const auto [first, last] = l.rowsIn(l.chartRect());
    const auto [from, to] = l.daysIn(l.chartRect());
    int shown = 0;
    for (int row = first; row <= last; ++row)
        s.model().barsBetween(row, from, to, [&](const ScheduleModel::Placed&) { ++shown; });
    state.counters["rows"] = last - first + 1;
    state.counters["bars_shown"] = shown;
}
BENCHMARK(Repaint)->Args({10000, 0})->Args({100000, 0})->Args({100000, 1})->Unit(benchmark::kMillisecond);

void DragFeedback(benchmark::State& state) {
    Site site;
    site.rebuild(static_cast<int>(state.range(0)));
    ScheduleControl& s = *site.engine;
    s.setViewportSize(FullHd);
    QImage image(FullHd, QImage::Format_ARGB32_Premultiplied);
    {
        QPainter p(&image);
        s.paint(p);
    }
    // A bar of the first row in view, pressed in its middle.
    const ScheduleLayout l = s.layout();
    const auto [first, last] = l.rowsIn(l.chartRect());
    int row = first, bar = 0;
    for (; row <= last && bar == 0; ++row)
        for (int b = 1; b <= s.model().barCount(row) && bar == 0; ++b)
            if (l.chartRect().contains(s.barBox(row, b).center()))
                bar = b;
    --row;
    const QPointF at = s.barBox(row, bar).center();
    QRectF dirty;
    s.setRepaintCallback([&](const QRectF& area) { dirty = dirty.isNull() ? area : dirty.united(area); });
    s.mousePress(mouse::Left, 0, at.x(), at.y());
    int step = 0;
    for (auto _ : state) {
        // Each move shifts the preview by a day, back and forth.
        const double x = at.x() + ((++step % 2) ? 2 : -2) * s.dayWidth() + 1;
        dirty = QRectF();
        s.mouseMove(mouse::Left, 0, x, at.y());
        QPainter p(&image);
        p.setClipRect(dirty);
        s.paint(p, dirty.isEmpty() ? QRectF() : dirty);
        p.end();
        benchmark::DoNotOptimize(image.constBits());
    }
    state.counters["dragging"] = s.preview().has_value() ? 1 : 0;
    s.keyPress(EscapeKey, 0);
}
BENCHMARK(DragFeedback)->Arg(100000)->Unit(benchmark::kMillisecond);

void Print20Pages(benchmark::State& state) {
    Site site;
    ScheduleControl& s = *site.engine;
    // Rows of one lane, 30 to a page, 4 pages down; 31 days to a page, 5
    // pages across; a booking every 5 days of every row.
    constexpr int PrintRows = 120;
    constexpr int SlotDays = 5;
    s.setFirstDay(FirstDay);
    s.setLastDay(FirstDay + 5 * 31 - 1);
    Numbers n;
    for (int r = 1; r <= PrintRows; ++r) {
        s.addRow(QStringLiteral("Time line %1").arg(r));
        for (int day = 0; day + SlotDays <= 5 * 31; day += SlotDays) {
            const int bar =
                s.addBar(r, DayTime{FirstDay + day, 480}, DayTime{FirstDay + day + n.below(4), 1020});
            s.editBar(r, bar).text = QStringLiteral("Booking %1").arg(bar);
            s.editBar(r, bar).colour = n.next() & 0xFFFFFF;
        }
    }
    s.printTitle = QStringLiteral("Schedule Print");
    QTemporaryDir dir;
    int pages = 0;
    for (auto _ : state) {
        QPdfWriter writer(dir.filePath(QStringLiteral("schedule.pdf")));
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                         QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter));
        pages = s.printTo(writer);
    }
    state.counters["pages"] = pages;
    state.counters["bars"] = s.model().totalBars();
    if (pages != 20)
        state.SkipWithError("the print did not come to 20 pages");
}
BENCHMARK(Print20Pages)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
