#pragma once

#include "core/files/AppHome.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/AutoObject.h"
#include "core/runtime/Waiter.h"
#include "core/script/ScriptRegistry.h"

#include <QJsonObject>
#include <QSize>
#include <QTextStream>
#include <functional>
#include <memory>
#include <vector>

namespace tessaly {
class Control;
class CoreApplication;
class Form;
class UiPort;
class Waiter;
} // namespace tessaly

namespace tessaly::script {

// What the driver runs: the application with every subsystem, and the
// install step of its home.
struct Program {
    std::function<std::unique_ptr<CoreApplication>(UiPort&, Waiter&, AppHome)> makeApplication;
    std::function<void(const AppHome&)> installHome;
};

// Runs tessaly-script scripts: the whole application headless through the
// scripted UI port, one command a line, state printed as JSON lines. What a
// line may say is the registry's; the runner gives its entries the program,
// the port, the output and the resolution of names.
class Runner {
public:
    Runner(const Registry& registry, Program program, QString homeDir, QSize screen, QTextStream& out,
           QTextStream& err);
    ~Runner();

    // Runs the script text; returns the exit status (0 ran to its end,
    // 1 an expect failed, 2 a line could not be run).
    int run(const QString& script);

    // --- for the registry's entries -------------------------------------
    const Registry& registry() const { return registry_; }
    // The running application; a LineError when there is none.
    CoreApplication& app();
    // The application of this run, running or ended; null before the first start.
    CoreApplication* current() const { return app_.get(); }
    ScriptedUiPort& ui() { return ui_; }
    const QString& homeDir() const { return homeDir_; }
    AppHome home() const { return AppHome(homeDir_); }

    // The install step on the home, and Main with the splash's timer tick.
    void install();
    void start();

    // One JSON object as a line of output.
    void writeLine(const QJsonObject& o);

    // Names of the program: "frmMain.SB1.Panels(2).Text", "gPlanFileName".
    QVariant resolveValue(const QString& path);
    Control& resolveControl(const QString& path);
    // The object that holds the last member of `path`, with that member's name and index.
    AutoPtr resolveParent(const QString& path, QString& member, QVariantList& index);
    // Refuses input to a window under a modal one.
    void requireInput(Form& form, const QString& what);
    // The value of `print EXPRESSION`.
    QJsonValue evaluate(const Tokens& expression);
    static QVariant argument(const Token& token);

private:
    void runLine(const Tokens& tokens);
    bool expect(const Tokens& tokens); // false: the expectation failed
    void onPortEvent(const QJsonObject& event);

    const Registry& registry_;
    Program program_;
    QString homeDir_;
    QTextStream& out_;
    QTextStream& err_;
    ScriptedUiPort ui_;
    RecordingWaiter waiter_;
    std::unique_ptr<CoreApplication> app_;
    std::vector<std::unique_ptr<CoreApplication>> retired_;
    QString unknownEvent_; // an event the registry does not know, reported by the line that raised it
};

} // namespace tessaly::script
