#include "WiringError.h"

namespace tessaly {

namespace {
// "frmMain.cmdSave.Click: reason", or "frmMain.Load: reason" for a form event.
std::string describe(const QString& form, const QString& control, const QString& event,
                     const QString& reason) {
    const QString handler = control.isEmpty() ? QStringLiteral("%1.%2").arg(form, event)
                                              : QStringLiteral("%1.%2.%3").arg(form, control, event);
    return QStringLiteral("Handler %1: %2").arg(handler, reason).toStdString();
}
} // namespace

WiringError::WiringError(const QString& form, const QString& control, const QString& event,
                         const QString& reason)
    : std::logic_error(describe(form, control, event, reason)), form_(form), control_(control),
      event_(event) {}

} // namespace tessaly
