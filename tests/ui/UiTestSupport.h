#pragma once

#include "core/forms/ApplicationBase.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"

#include <QRect>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

class QWidget;

#include "Printing.h"

namespace tessaly::ui::testing {

// A fresh application home in a temporary folder.
class TempHome {
public:
    TempHome() : home_(dir_.path()) {}
    const AppHome& home() const { return home_; }

private:
    QTemporaryDir dir_;
    AppHome home_;
};

// A form made by hand for the tests: it records every event it is sent as
// "control.Event" (or "Form.Event" for its own).
class RecordingForm final : public Form {
public:
    RecordingForm(ApplicationBase& app, const QString& name);
    // Records `event` of every control named so.
    void record(const QString& control, const QString& event);
    void recordForm(const QString& event);
    QStringList events;
};

// An application base with the scripted port, for views made by hand.
struct ScriptedApp {
    TempHome home;
    ScriptedUiPort ui;
    RecordingWaiter waiter;
    ApplicationBase app{ui, waiter, home.home()};
};

// Lets queued events run (no wait: only what is pending now).
void processPending();

// Saves `window`, once the pending events have run, as `fileName` in the
// folder that the environment variable `variable` names (made when missing);
// nothing is saved when the variable is unset. False when the save fails.
bool saveShot(QWidget& window, const char* variable, const QString& fileName);

} // namespace tessaly::ui::testing
