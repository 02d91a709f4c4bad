#pragma once

#include <QDate>
#include <QDateTime>

// The present date and time as Tessaly's logic reads them (Now and Date). The
// desktop follows the system's clock; the script driver may pin the present
// to one moment, so that a script's dates come out the same on every day it
// runs. The pin holds for the whole process.
namespace tessaly::clock {

// The present date and time, local wall clock.
QDateTime now();
// The present date.
QDate today();
// Pins the present to `at`; an invalid value follows the system's clock again.
void pin(const QDateTime& at);

} // namespace tessaly::clock
