#pragma once

#include "Printing.h"
#include "ScheduleSupport.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "schedule/ScheduleControl.h"

#include <QDate>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly::schedule::testing {

// Monday 2 November 2026: the first day of the range the tests show.
inline int32_t firstTestDay() {
    return static_cast<int32_t>(dayOfDate(QDate(2026, 11, 2)));
}

// A schedule control on the test form of an application of its own, 800 by
// 400 pixels, showing 60 days from Monday 2 November 2026 with three rows.
class ScheduleTest : public ::testing::Test {
protected:
    ScheduleTest() {
        ui.onEvent = [this](const QJsonObject& e) { portEvents.push_back(e); };
        s.setViewportSize(QSizeF(800, 400));
        s.setFirstDay(d0);
        s.setLastDay(d0 + 59);
        for (const char* row : {"Site clearance", "Footings", "Brickwork"})
            s.addRow(QString::fromLatin1(row));
    }

    // The view's x of a day (fraction allowed) and y of the middle of a row.
    double xOf(double day) const { return s.layout().xOf(day); }
    double yOf(int row) const { return s.layout().rowTop(row) + s.layout().rowHeight(row) / 2; }

    QTemporaryDir dir;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    ApplicationBase app{ui, waiter, AppHome(dir.path())};
    std::shared_ptr<tessaly::testing::ScheduleTestForm> form =
        std::make_shared<tessaly::testing::ScheduleTestForm>(app);
    ScheduleControl& s = *form->schedule;
    const int32_t d0 = firstTestDay();
    std::vector<QJsonObject> portEvents;
};

} // namespace tessaly::schedule::testing
