#include "Waiter.h"

#include <QThread>

namespace tessaly {

void RealWaiter::sleep(int milliseconds) {
    if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void RecordingWaiter::sleep(int milliseconds) {
    waits.push_back(milliseconds);
    if (onSleep)
        onSleep(milliseconds);
}

} // namespace tessaly
