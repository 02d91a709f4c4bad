#pragma once

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <memory>

namespace tessaly {

namespace reports {
class ActiveReport;
}

// The project manager's module-level state, shared by its windows and
// reachable by name (gIsNewClient, gCurrentClientID, the booking state
// gBarRow ... gBarStyle).
struct ProjectsModule {
    // Set by the project manager before the client window opens: -1 to add a client, 0 to edit one.
    int16_t gIsNewClient = 0;
    // The client chosen in the project manager; 0 before any choice.
    int32_t gCurrentClientID = 0;

    // The booking the schedule's dialog shows: the bar's row, the booking
    // being edited, and whether OK adds a row (-1) or updates one (0).
    int16_t gBarRow = 0;
    int32_t gSelectedScheduleID = 0;
    int16_t gIsNewBooking = 0;
    // What a newly drawn bar hands to the dialog: its dates and times.
    QDateTime gBarStartDate;
    QDateTime gBarEndDate;
    int16_t gBarStartTime = 0;
    int16_t gBarEndTime = 0;
    // Read from the chart for a new bar and not used further.
    QString gBarRowTitle;
    int16_t gBarStyle = 0;

    // The instance of the cost report: made anew by each print of the costs,
    // or at the first use of its name.
    std::shared_ptr<reports::ActiveReport> costReport;
};

} // namespace tessaly
