#pragma once

#include <QString>
#include <stdexcept>

namespace tessaly {

// A handler wired to something the form cannot raise: a control name that no
// control of the form has, or an event that the control's kind (or a form)
// never raises. It is a mistake in the program, not a run-time error of the
// platform, so it is thrown while the form is being built and no dispatcher
// catches it: creating the form fails at once.
class WiringError : public std::logic_error {
public:
    // `control` is empty for a form event.
    WiringError(const QString& form, const QString& control, const QString& event, const QString& reason);

    const QString& form() const { return form_; }
    const QString& control() const { return control_; }
    const QString& event() const { return event_; }

private:
    QString form_;
    QString control_;
    QString event_;
};

} // namespace tessaly
