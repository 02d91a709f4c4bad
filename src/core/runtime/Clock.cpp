#include "Clock.h"

namespace tessaly::clock {

namespace {
QDateTime& pinned() {
    static QDateTime at;
    return at;
}
} // namespace

QDateTime now() {
    const QDateTime& at = pinned();
    return at.isValid() ? at : QDateTime::currentDateTime();
}

QDate today() {
    return now().date();
}

void pin(const QDateTime& at) {
    pinned() = at;
}

} // namespace tessaly::clock
