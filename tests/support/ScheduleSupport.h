#pragma once

#include "core/forms/ApplicationBase.h"
#include "core/forms/Form.h"
#include "schedule/ScheduleControl.h"

#include <QStringList>
#include <memory>

namespace tessaly::testing {

// A form of the tests that hosts a schedule control `ctSchedule1` (800 by 400
// pixels) and its tips `ctTips1`. It records every event of the schedule as a
// line of the event's name and arguments ("BarDrawn 1 3 True False"), and on
// BarPointed puts a tip of the bar's text, comment, dates and times into the
// tips, so that a pointed bar shows its tip.
//
// The script driver reaches the record as frmScheduleTest.Events and
// frmScheduleTest.LastEvent; `call frmScheduleTest.ClearEvents` empties it,
// `set frmScheduleTest.CancelDrawing True` makes the BarDrawn handler cancel.
class ScheduleTestForm final : public Form {
public:
    static inline const QString FormName = QStringLiteral("frmScheduleTest");
    explicit ScheduleTestForm(ApplicationBase& app);

    Control& ctSchedule1;
    Control& ctTips1;
    std::shared_ptr<schedule::ScheduleControl> schedule;
    QStringList events;
    bool cancelDrawing = false;

    // The tip the form builds for a bar.
    QString tipFor(int row, int bar) const;
};

// Registers the form in an application, under its name.
void registerScheduleTestForm(ApplicationBase& app);

} // namespace tessaly::testing
