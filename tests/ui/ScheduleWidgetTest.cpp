// The schedule's window on a form: built for a schedule control by the form
// view, the mouse gestures reaching the form as the control's events with
// their arguments, the tip at the pointer, Ctrl with the wheel zooming the
// time scale, scroll bars over the range and rows, and the print to PDF.
// With TESSALY_SHOT_DIR set, ScheduleShowcase saves pictures of the window
// there (scripts/screenshot-schedule.sh runs it under a virtual display).
#include "ui/ScheduleWidget.h"
#include "ScheduleSupport.h"
#include "UiTestSupport.h"
#include "schedule/ScheduleLayout.h"
#include "schedule/SchedulePrint.h"
#include "ui/FormView.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QMouseEvent>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

namespace tessaly::ui {
namespace {

using schedule::DayTime;
using tessaly::testing::ScheduleTestForm;

// Monday 2 November 2026.
const int32_t D0 = static_cast<int32_t>(schedule::dayOfDate(QDate(2026, 11, 2)));

// The test form's window, shown, with its schedule window.
class ScheduleWindow : public ::testing::Test {
protected:
    void show() {
        view.resize(view.initialSize());
        view.show();
        widget = qobject_cast<ScheduleWidget*>(view.widgetFor(form->ctSchedule1));
    }
    QWidget* port() const { return widget->viewport(); }
    // The middle of a row at a day.
    QPointF at(double day, int row) const {
        const schedule::ScheduleLayout l = s.layout();
        return QPointF(l.xOf(day), l.rowTop(row) + l.rowHeight(row) / 2);
    }
    void mouse(QEvent::Type type, QPointF p, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QMouseEvent e(type, p, port()->mapToGlobal(p), button, buttons, modifiers);
        QApplication::sendEvent(port(), &e);
    }
    void hover(QPointF p) { mouse(QEvent::MouseMove, p, Qt::NoButton, Qt::NoButton); }

    testing::ScriptedApp scripted;
    std::shared_ptr<ScheduleTestForm> form = std::make_shared<ScheduleTestForm>(scripted.app);
    schedule::ScheduleControl& s = *form->schedule;
    FormView view{*form};
    ScheduleWidget* widget = nullptr;
};

class ScheduleWidgetTest : public ScheduleWindow {
protected:
    ScheduleWidgetTest() {
        s.setFirstDay(D0);
        s.setLastDay(D0 + 59);
        for (const char* row : {"Site clearance", "Footings", "Brickwork"})
            s.addRow(QString::fromLatin1(row));
        show();
    }

    void drag(QPointF from, QPointF to) {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }
    void doubleClick(QPointF p) {
        mouse(QEvent::MouseButtonPress, p, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, p, Qt::LeftButton, Qt::NoButton);
        mouse(QEvent::MouseButtonDblClick, p, Qt::LeftButton, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, p, Qt::LeftButton, Qt::NoButton);
    }
    void wheel(QPointF p, int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent e(p, port()->mapToGlobal(p), QPoint(), QPoint(0, delta), Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
        QApplication::sendEvent(port(), &e);
    }
};

TEST_F(ScheduleWidgetTest, TheFormViewMakesAScheduleWindowForTheControl) {
    ASSERT_NE(widget, nullptr);
    EXPECT_EQ(widget->size(), QSize(800, 400));
    EXPECT_EQ(s.view().viewport, QSizeF(port()->size()));
    EXPECT_EQ(view.widgetFor(form->ctTips1)->isVisible(), false);
}

TEST_F(ScheduleWidgetTest, DraggingOnARowRaisesBarDrawn) {
    drag(at(D0 + 2.2, 2), at(D0 + 4.7, 2));
    EXPECT_EQ(form->events, QStringList{"BarDrawn 2 1 True False"});
    EXPECT_EQ(s.model().bar(2, 1).start, (DayTime{D0 + 2, 0}));
    EXPECT_EQ(s.model().bar(2, 1).end, (DayTime{D0 + 4, 1440}));
    EXPECT_EQ(form->ctSchedule1.get("SelectedBar").toInt(), 1);
}

TEST_F(ScheduleWidgetTest, MovingAndStretchingRaiseBarChanged) {
    s.addBar(1, DayTime{D0 + 2, 480}, DayTime{D0 + 3, 1020});
    drag(at(D0 + 3, 1), at(D0 + 4.1, 1));
    EXPECT_EQ(form->events.last(), QStringLiteral("BarChanged 1 1  480 1020 %1 %2").arg(D0 + 3).arg(D0 + 4));
    const QRectF box = s.barBox(1, 1);
    drag(QPointF(box.right() - 2, box.center().y()), QPointF(box.right() + 2 * 28 + 2, box.center().y()));
    EXPECT_EQ(form->events.last(), QStringLiteral("BarChanged 1 1  480 1440 %1 %2").arg(D0 + 3).arg(D0 + 6));
    EXPECT_EQ(form->events.first(), "BarSelected 1 1");
}

TEST_F(ScheduleWidgetTest, ADoubleClickRaisesBarActivated) {
    s.addBar(3, DayTime{D0 + 5, 0}, DayTime{D0 + 8, 1440});
    doubleClick(at(D0 + 6, 3));
    EXPECT_EQ(form->events, (QStringList{"BarSelected 3 1", "BarActivated 3 1"}));
}

TEST_F(ScheduleWidgetTest, ThePointerOnABarRaisesBarPointedAndShowsTheTip) {
    s.addBar(2, DayTime{D0 + 1, 450}, DayTime{D0 + 4, 990});
    s.editBar(2, 1).text = "Footings";
    hover(at(D0 + 2, 2));
    EXPECT_EQ(form->events, QStringList{"BarPointed 2 1"});
    ASSERT_TRUE(s.shownTip().has_value());
    EXPECT_TRUE(s.shownTip()->text.startsWith(" Footings\r\nComments: "));
    // The tip is on the screen: its yellow shows where the control says.
    const QImage image = port()->grab().toImage();
    const QRectF tip = schedule::ScheduleRenderer(s.model(), s.design(), s.layout()).tipRect(*s.shownTip());
    EXPECT_EQ(image.pixelColor(tip.topLeft().toPoint() + QPoint(2, 2)).rgb(), QColor(255, 255, 225).rgb());
    hover(at(D0 + 30, 3));
    EXPECT_FALSE(s.shownTip().has_value());
}

TEST_F(ScheduleWidgetTest, EscapeCancelsADragAndNothingIsRaised) {
    const QPointF from = at(D0 + 2, 1), to = at(D0 + 6, 1);
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    ASSERT_TRUE(s.preview().has_value());
    QTest::keyClick(widget, Qt::Key_Escape);
    EXPECT_FALSE(s.preview().has_value());
    mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    EXPECT_TRUE(form->events.isEmpty());
    EXPECT_EQ(s.model().totalBars(), 0);
}

TEST_F(ScheduleWidgetTest, CtrlWheelZoomsTheTimeScaleAndTheScrollBarsFollow) {
    const QPointF p = at(D0 + 5, 1);
    EXPECT_EQ(s.timeScaleName(), "Days");
    for (int i = 0; i < 12; ++i)
        wheel(p, 120, Qt::ControlModifier);
    EXPECT_EQ(s.timeScaleName(), "Hours");
    EXPECT_NEAR(s.layout().dayAt(p.x()), D0 + 5, 1e-6);
    testing::processPending();
    QScrollBar* h = widget->horizontalScrollBar();
    EXPECT_GT(h->maximum(), 1000);
    EXPECT_EQ(h->value(), static_cast<int>(std::lround((s.originDay() - D0) * s.dayWidth())));
    h->setValue(0);
    EXPECT_DOUBLE_EQ(s.originDay(), D0);
    for (int i = 0; i < 30; ++i)
        wheel(p, -120, Qt::ControlModifier);
    EXPECT_EQ(s.timeScaleName(), "Months");
    testing::processPending();
    EXPECT_EQ(h->maximum(), 0); // the whole range fits
}

TEST_F(ScheduleWidgetTest, ManyRowsScrollWithTheWheel) {
    for (int i = 4; i <= 60; ++i)
        s.addRow(QStringLiteral("Element %1").arg(i));
    testing::processPending();
    QScrollBar* v = widget->verticalScrollBar();
    EXPECT_EQ(v->maximum(), static_cast<int>(std::ceil(s.layout().lastScrollY())));
    wheel(at(D0 + 5, 1), -120, Qt::NoModifier);
    EXPECT_DOUBLE_EQ(s.scrollY(), 3 * s.view().rowHeight);
    testing::processPending();
    EXPECT_EQ(v->value(), static_cast<int>(3 * s.view().rowHeight));
}

TEST_F(ScheduleWidgetTest, NoInputReachesTheChartUnderAModalWindow) {
    auto modal = std::make_shared<testing::RecordingForm>(scripted.app, QStringLiteral("frmModal"));
    scripted.app.registerForm(QStringLiteral("frmModal"), [modal](ApplicationBase&) { return modal; });
    scripted.app.show(scripted.app.form(QStringLiteral("frmModal")), true);
    drag(at(D0 + 2, 1), at(D0 + 6, 1));
    EXPECT_EQ(s.model().totalBars(), 0);
    EXPECT_TRUE(form->events.isEmpty());
}

TEST_F(ScheduleWidgetTest, ThePrintGoesToThePrintersPdf) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("chart.pdf"));
    widget->printer().setOutputFormat(QPrinter::PdfFormat);
    widget->printer().setOutputFileName(file);
    s.printTitle = QStringLiteral("Schedule Print");
    widget->print(false);
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {file});
    ASSERT_TRUE(info.waitForFinished(30000));
    const QString text = QString::fromUtf8(info.readAllStandardOutput());
    EXPECT_TRUE(text.contains(QRegularExpression(QStringLiteral("Pages:\\s+2\\b")))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Schedule Print")));
    EXPECT_TRUE(text.contains(QRegularExpression(QStringLiteral("Page size:\\s+84[12](\\.\\d+)? x 595"))))
        << text.toStdString();
}

// --- the showcase: twenty bars on five rows ---------------------------------------------

constexpr schedule::Colour rgb(int r, int g, int b) {
    return static_cast<schedule::Colour>(r) | static_cast<schedule::Colour>(g) << 8 |
           static_cast<schedule::Colour>(b) << 16;
}

struct Booking {
    int row;
    int from, to; // days after the first
    int startMinutes, endMinutes;
    const char* text;
    schedule::Colour colour;
};

// A small house: five stages, twenty bookings, some overlapping.
const Booking Bookings[] = {
    {1, 0, 1, 480, 1020, "Survey", rgb(170, 210, 250)},
    {1, 2, 4, 0, 1440, "Clear site", rgb(250, 210, 140)},
    {1, 3, 3, 0, 1440, "Skip hire", rgb(230, 230, 230)},
    {1, 5, 5, 720, 720, "Site ready", rgb(60, 150, 70)},
    {2, 6, 9, 480, 1020, "Dig footings", rgb(200, 160, 110)},
    {2, 8, 9, 0, 1440, "Inspection", rgb(250, 120, 120)},
    {2, 10, 11, 420, 960, "Pour concrete", rgb(160, 160, 170)},
    {2, 12, 13, 0, 1440, "Cure", rgb(220, 220, 225)},
    {3, 9, 10, 480, 1020, "Drain runs", rgb(120, 180, 220)},
    {3, 11, 12, 0, 1440, "Soakaway", rgb(90, 140, 200)},
    {3, 13, 13, 600, 600, "Drain test", rgb(30, 90, 170)},
    {3, 14, 15, 480, 1020, "Backfill", rgb(190, 150, 100)},
    {4, 14, 20, 0, 1440, "Ground floor walls", rgb(190, 80, 60)},
    {4, 17, 19, 0, 1440, "Scaffold", rgb(240, 200, 60)},
    {4, 21, 26, 0, 1440, "First floor walls", rgb(170, 70, 50)},
    {4, 24, 25, 480, 1020, "Lintels", rgb(120, 120, 130)},
    {5, 27, 30, 0, 1440, "Trusses", rgb(150, 110, 70)},
    {5, 29, 33, 0, 1440, "Felt and batten", rgb(80, 80, 90)},
    {5, 34, 38, 0, 1440, "Tiling", rgb(180, 60, 40)},
    {5, 39, 39, 960, 960, "Roof done", rgb(60, 150, 70)},
};

class ScheduleShowcase : public ScheduleWindow {
protected:
    ScheduleShowcase() {
        form->ctSchedule1.move(0, 0, 15300, 5400); // 1020 by 360 pixels
        form->setSize(15300, 5400, 15300, 5400);
        s.setFirstDay(D0);
        s.setLastDay(D0 + 59);
        s.setRowSetting(18);
        for (const char* row : {"Site clearance", "Footings", "Drainage", "Brickwork", "Roof"})
            s.addRow(QString::fromLatin1(row));
        for (const Booking& b : Bookings) {
            const int bar =
                s.addBar(b.row, DayTime{D0 + b.from, b.startMinutes}, DayTime{D0 + b.to, b.endMinutes});
            schedule::Bar& edit = s.editBar(b.row, bar);
            edit.text = QString::fromLatin1(b.text);
            edit.colour = b.colour;
            edit.comment = QStringLiteral("Booked with the site manager");
            edit.key = QString::number(bar + 100 * b.row);
        }
        show();
    }

    // Saves the window when TESSALY_SHOT_DIR names a folder.
    void shoot(const QString& name) { EXPECT_TRUE(testing::saveShot(view, "TESSALY_SHOT_DIR", name)); }
};

TEST_F(ScheduleShowcase, TwentyBarsOnFiveRowsWithATip) {
    ASSERT_NE(widget, nullptr);
    EXPECT_EQ(s.model().totalBars(), 20);
    EXPECT_EQ(s.model().lanes(4), 2); // walls and scaffold overlap
    s.selectBar(2, 3);
    const QImage image = widget->viewport()->grab().toImage();
    // Every bar shows its colour somewhere in its box.
    for (int row = 1; row <= 5; ++row)
        for (int bar = 1; bar <= s.model().barCount(row); ++bar) {
            const QRectF box = s.barBox(row, bar);
            if (!box.intersects(QRectF(widget->viewport()->rect())))
                continue;
            const schedule::Colour c = s.model().bar(row, bar).colour;
            const QColor want(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF),
                              static_cast<int>((c >> 16) & 0xFF));
            bool found = false;
            const QRect r = box.toAlignedRect().intersected(image.rect());
            for (int y = r.top(); y <= r.bottom() && !found; ++y)
                for (int x = r.left(); x <= r.right() && !found; ++x)
                    found = image.pixelColor(x, y).rgb() == want.rgb();
            EXPECT_TRUE(found) << "row " << row << " bar " << bar;
        }
    // The pointer on "Dig footings" brings up its tip.
    hover(at(D0 + 7, 2) + QPointF(0, -4));
    ASSERT_TRUE(s.shownTip().has_value());
    EXPECT_TRUE(s.shownTip()->text.startsWith(" Dig footings\r\n"));
    shoot(QStringLiteral("schedule-days.png"));
}

TEST_F(ScheduleShowcase, PrintedPages) {
    QTemporaryDir scratch;
    const QString shots = qEnvironmentVariable("TESSALY_SHOT_DIR");
    const QString file =
        QDir(shots.isEmpty() ? scratch.path() : shots).filePath(QStringLiteral("schedule-print.pdf"));
    QDir().mkpath(QFileInfo(file).path());
    s.printTitle = QStringLiteral("Schedule Print");
    widget->printer().setOutputFormat(QPrinter::PdfFormat);
    widget->printer().setOutputFileName(file);
    widget->print(false);
    // 60 days at 28 pixels a day over 887 pixels of paper: two pages across.
    EXPECT_EQ(schedule::planPrint(s, schedule::defaultPrintPage()).pages(), 2);
    EXPECT_TRUE(QFileInfo(file).size() > 0);
}

TEST_F(ScheduleShowcase, HoursAndMonths) {
    const QPointF p = at(D0 + 10.3, 2);
    for (int i = 0; i < 10; ++i)
        s.wheel(120, schedule::mouse::CtrlKey, p.x(), p.y());
    EXPECT_EQ(s.timeScaleName(), "Hours");
    shoot(QStringLiteral("schedule-hours.png"));
    for (int i = 0; i < 17; ++i)
        s.wheel(-120, schedule::mouse::CtrlKey, p.x(), p.y());
    EXPECT_EQ(s.timeScaleName(), "Weeks");
    shoot(QStringLiteral("schedule-weeks.png"));
    s.setLastDay(D0 + 400);
    s.setDayWidth(schedule::MinDayWidth * 1.5);
    EXPECT_EQ(s.timeScaleName(), "Months");
    shoot(QStringLiteral("schedule-months.png"));
}

} // namespace
} // namespace tessaly::ui
