// The wiring of every window of Tessaly: each registered handler names a
// control that its form has, and an event that the control's kind (or the
// form) raises. Forms check this as handlers are registered, so a misspelt
// control or event stops the form from being created at all.
#include "core/forms/ControlEvents.h"
#include "core/forms/WiringError.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "program/Program.h"
#include "workspace/Application.h"

#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>

namespace tessaly {
namespace {

// Every window the program registers today; more join as subsystems arrive.
constexpr int MinimumForms = 8;
// frmMain alone wires its tool strip, menus, canvases and panels: well over
// a hundred handlers.
constexpr int MinimumMainHandlers = 100;

// What one form had wired when it was created.
struct Wiring {
    int handlers = 0;
    int formHandlers = 0;
    QStringList faults; // "control.event: why" for each bad handler
};

// The control of that name, or the first member of the control array.
const Control* firstNamed(const Form& form, const QString& name) {
    for (const ControlPtr& c : form.controls())
        if (c->name().compare(name, Qt::CaseInsensitive) == 0)
            return c.get();
    return nullptr;
}

// Checks each handler of `form` against its controls and the event table.
Wiring inspect(const Form& form) {
    Wiring w;
    for (const QString& handler : form.handlerNames()) {
        ++w.handlers;
        const QString control = handler.section(QLatin1Char('.'), 0, 0);
        const QString event = handler.section(QLatin1Char('.'), 1);
        const Control* first = firstNamed(form, control);
        if (!first)
            w.faults << handler + QStringLiteral(": no such control");
        else if (!control_events::raises(first->kind(), event))
            w.faults << handler + QStringLiteral(": a ") + controlKindName(first->kind()) +
                            QStringLiteral(" never raises it");
    }
    for (const QString& event : form.formHandlerNames()) {
        ++w.formHandlers;
        if (!control_events::formRaises(event))
            w.faults << event + QStringLiteral(": no form event");
    }
    return w;
}

class WiringTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app;
    QStringList boxes;                  // the text of every message box shown
    std::map<QString, Wiring> wiringOf; // by form name, as each form was created

    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        const AppHome home(dir.path());
        program::installHome(home);
        port.onEvent = [this](const QJsonObject& e) {
            if (e[QStringLiteral("event")].toString() == QLatin1String("msgbox"))
                boxes << e[QStringLiteral("text")].toString();
        };
        app = program::makeApplication(port, waiter, home);
        app->onFormCreated = [this](Form& form) { wiringOf[form.name()] = inspect(form); };
    }

    // As the script driver starts Tessaly: Main, then the splash's timer,
    // whose tick loads the main window.
    void start() {
        ASSERT_TRUE(app->Main());
        Form* splash = app->loaded(QStringLiteral("frmSplash"));
        ASSERT_NE(splash, nullptr);
        Control& timer = splash->control(QStringLiteral("Timer1"));
        ASSERT_TRUE(timer.enabled());
        splash->raiseEvent(timer, QStringLiteral("Timer"));
        ASSERT_NE(app->loaded(QStringLiteral("frmMain")), nullptr)
            << boxes.join(QStringLiteral("; ")).toStdString();
    }
};

TEST_F(WiringTest, EveryRegisteredFormWiresOnlyItsOwnControlsAndTheirEvents) {
    start();
    const QStringList forms = app->registeredForms();
    ASSERT_GE(forms.size(), MinimumForms) << forms.join(QLatin1Char(' ')).toStdString();
    for (const QString& name : forms) {
        if (wiringOf.contains(name))
            continue;
        try {
            app->form(name);
        } catch (const WiringError& e) {
            ADD_FAILURE() << e.what();
        }
    }
    int handlers = 0;
    for (const QString& name : forms) {
        ASSERT_TRUE(wiringOf.contains(name)) << name.toStdString() << " was never created";
        const Wiring& w = wiringOf[name];
        EXPECT_TRUE(w.faults.isEmpty())
            << name.toStdString() << ": " << w.faults.join(QStringLiteral("; ")).toStdString();
        EXPECT_GE(w.handlers + w.formHandlers, 1) << name.toStdString() << " wires nothing";
        handlers += w.handlers + w.formHandlers;
    }
    EXPECT_GE(wiringOf[QStringLiteral("frmMain")].handlers, MinimumMainHandlers);
    EXPECT_GE(handlers, MinimumMainHandlers + MinimumForms);
    // A form that failed inside a handler shows it as an internal error box.
    for (const QString& text : boxes)
        EXPECT_FALSE(text.contains(QLatin1String("Handler "))) << text.toStdString();
}

TEST_F(WiringTest, TheRegisteredFormsAreListedByTheirNames) {
    const QStringList forms = app->registeredForms();
    for (const char* name : {"frmSplash", "frmSettings", "frmMain", "frmGrid", "frmGuidelines", "frmPaper",
                             "frmShadowLens", "frmMyTemplates"})
        EXPECT_TRUE(forms.contains(QString::fromLatin1(name))) << name;
}

// A throwaway form for the checks of Form::on and Form::onForm.
class WiringCheck : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    ApplicationBase app{port, waiter, AppHome(dir.path())};
    std::shared_ptr<Form> form;
    void SetUp() override {
        form = std::make_shared<Form>(app, QStringLiteral("frmProbe"));
        form->add(ControlKind::CommandButton, QStringLiteral("cmdSave"));
        form->add(ControlKind::Canvas, QStringLiteral("POLARDraw1"));
        form->add(ControlKind::Menu, QStringLiteral("mnuZoom"), 0);
        form->add(ControlKind::Menu, QStringLiteral("mnuZoom"), 1);
    }
    static void nothing(Control&, EventArgs&) {}
};

TEST_F(WiringCheck, AHandlerForAControlTheFormDoesNotHaveIsAWiringError) {
    try {
        form->on(QStringLiteral("cmdSaev"), QStringLiteral("Click"), nothing);
        FAIL() << "no WiringError";
    } catch (const WiringError& e) {
        EXPECT_EQ(e.form(), QStringLiteral("frmProbe"));
        EXPECT_EQ(e.control(), QStringLiteral("cmdSaev"));
        EXPECT_EQ(e.event(), QStringLiteral("Click"));
        EXPECT_STREQ(e.what(), "Handler frmProbe.cmdSaev.Click: the form has no control of that name");
    }
    EXPECT_FALSE(form->hasHandler(QStringLiteral("cmdSaev"), QStringLiteral("Click")));
}

TEST_F(WiringCheck, AnEventTheControlsKindNeverRaisesIsAWiringError) {
    try {
        form->on(QStringLiteral("cmdSave"), QStringLiteral("ShapeAdded"), nothing);
        FAIL() << "no WiringError";
    } catch (const WiringError& e) {
        EXPECT_STREQ(e.what(),
                     "Handler frmProbe.cmdSave.ShapeAdded: a CommandButton never raises ShapeAdded");
    }
    EXPECT_THROW(form->on(QStringLiteral("POLARDraw1"), QStringLiteral("ShapeAded"), nothing), WiringError);
    EXPECT_THROW(form->on(QStringLiteral("mnuZoom"), QStringLiteral("DblClick"), nothing), WiringError);
}

TEST_F(WiringCheck, AFormEventThatNoFormRaisesIsAWiringError) {
    try {
        form->onForm(QStringLiteral("Lod"), [](EventArgs&) {});
        FAIL() << "no WiringError";
    } catch (const WiringError& e) {
        EXPECT_TRUE(e.control().isEmpty());
        EXPECT_STREQ(e.what(), "Handler frmProbe.Lod: a form never raises Lod");
    }
}

TEST_F(WiringCheck, HandlersForControlsArraysAndTheirEventsAreAccepted) {
    form->on(QStringLiteral("cmdSave"), QStringLiteral("Click"), nothing);
    form->on(QStringLiteral("mnuZoom"), QStringLiteral("Click"), nothing);
    form->on(QStringLiteral("polardraw1"), QStringLiteral("shapeadded"), nothing);
    form->onForm(QStringLiteral("QueryUnload"), [](EventArgs&) {});
    EXPECT_EQ(form->handlerNames(),
              (QStringList{QStringLiteral("cmdSave.Click"), QStringLiteral("mnuZoom.Click"),
                           QStringLiteral("polardraw1.shapeadded")}));
    EXPECT_EQ(form->formHandlerNames(), QStringList{QStringLiteral("QueryUnload")});
}

TEST(ControlEventsTable, EveryKindOfControlRaisesSomething) {
    for (int k = static_cast<int>(ControlKind::Label); k <= static_cast<int>(ControlKind::RichText); ++k)
        EXPECT_FALSE(control_events::of(static_cast<ControlKind>(k)).isEmpty())
            << controlKindName(static_cast<ControlKind>(k)).toStdString();
    EXPECT_TRUE(control_events::raises(ControlKind::Schedule, QStringLiteral("BarDrawn")));
    EXPECT_TRUE(control_events::raises(ControlKind::DataControl, QStringLiteral("MoveComplete")));
    EXPECT_TRUE(control_events::raises(ControlKind::Timer, QStringLiteral("timer")));
    EXPECT_FALSE(control_events::raises(ControlKind::Timer, QStringLiteral("Click")));
    EXPECT_FALSE(control_events::raises(ControlKind::Menu, QStringLiteral("Change")));
    EXPECT_TRUE(control_events::formRaises(QStringLiteral("Unload")));
    EXPECT_FALSE(control_events::formRaises(QStringLiteral("Timer")));
}

} // namespace
} // namespace tessaly
