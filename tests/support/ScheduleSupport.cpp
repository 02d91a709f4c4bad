#include "ScheduleSupport.h"

#include "core/common/CommonRoutines.h"
#include "core/runtime/Vb.h"
#include "schedule/ScheduleEvents.h"
#include "schedule/ScheduleTips.h"

namespace tessaly::testing {

namespace {
// The schedule's place on the form, in twips (800 by 400 pixels).
constexpr int ScheduleWidth = 12000;
constexpr int ScheduleHeight = 6000;
// The form's inner size, in twips.
constexpr int FormWidth = 12000;
constexpr int FormHeight = 6000;

QString timeText(int minutes) {
    auto m = static_cast<int16_t>(minutes);
    return common::MinutesToTimeText(m);
}

QString dateText(int day) {
    return schedule::dateOfDay(day).toString(QStringLiteral("dd/MM/yyyy"));
}
} // namespace

ScheduleTestForm::ScheduleTestForm(ApplicationBase& app)
    : Form(app, FormName), ctSchedule1(add(ControlKind::Schedule, QStringLiteral("ctSchedule1"))),
      ctTips1(add(ControlKind::PictureBox, QStringLiteral("ctTips1"))) {
    setCaption(QStringLiteral("Schedule Test"));
    setSize(FormWidth, FormHeight, FormWidth, FormHeight);
    ctSchedule1.move(0, 0, ScheduleWidth, ScheduleHeight);
    schedule = schedule::ScheduleControl::attach(ctSchedule1);
    schedule::ScheduleTips::attach(ctTips1, schedule);
    for (const QString& event : schedule::event::All)
        on(QStringLiteral("ctSchedule1"), event, [this, event](Control&, EventArgs& args) {
            QStringList line{event};
            for (const QVariant& a : args)
                line << vb::toText(a);
            events << line.join(QLatin1Char(' '));
            if (event == schedule::event::BarDrawn && cancelDrawing)
                args[3] = true;
            if (event == schedule::event::BarPointed)
                ctTips1.set(QStringLiteral("TipText"), tipFor(args.value(0).toInt(), args.value(1).toInt()));
        });
    member(QStringLiteral("Events"), [this] { return QVariant(events); });
    member(QStringLiteral("LastEvent"),
           [this] { return QVariant(events.isEmpty() ? QString() : events.last()); });
    member(
        QStringLiteral("CancelDrawing"), [this] { return QVariant(cancelDrawing); },
        [this](const QVariant& v) { cancelDrawing = vb::toBool(v); });
    routine(QStringLiteral("ClearEvents"), [this](QVariantList&) {
        events.clear();
        return QVariant();
    });
}

QString ScheduleTestForm::tipFor(int row, int bar) const {
    const schedule::Bar& b = schedule->bar(row, bar);
    return QStringLiteral(" ") + b.text + QStringLiteral("\r\nComments: ") + b.comment +
           QStringLiteral(" \n From - ") + dateText(b.start.date) + QStringLiteral("  ") +
           timeText(b.start.minutes) + QStringLiteral(" \n   To - ") + dateText(b.end.date) +
           QStringLiteral("  ") + timeText(b.end.minutes) + QStringLiteral(" ");
}

void registerScheduleTestForm(ApplicationBase& app) {
    app.registerForm(ScheduleTestForm::FormName,
                     [](ApplicationBase& a) { return std::make_shared<ScheduleTestForm>(a); });
}

} // namespace tessaly::testing
