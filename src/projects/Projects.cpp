#include "projects/Projects.h"

#include "core/runtime/Clock.h"
#include "core/runtime/Vb.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "projects/ProjectCostReport.h"
#include "projects/ProjectsModule.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"
#include "workspace/Application.h"

#include <memory>

namespace tessaly {

namespace {

// A 16-bit module variable, read and written by name.
void shortVariable(Application& app, const char* name, const std::shared_ptr<ProjectsModule>& module,
                   int16_t ProjectsModule::*field) {
    app.variable(
        QString::fromLatin1(name), [module, field] { return QVariant(static_cast<int>((*module).*field)); },
        [module, field](const QVariant& v) { (*module).*field = vb::toInt16(v); });
}

void bookingVariables(Application& app, const std::shared_ptr<ProjectsModule>& module) {
    shortVariable(app, "gBarRow", module, &ProjectsModule::gBarRow);
    shortVariable(app, "gIsNewBooking", module, &ProjectsModule::gIsNewBooking);
    shortVariable(app, "gBarStartTime", module, &ProjectsModule::gBarStartTime);
    shortVariable(app, "gBarEndTime", module, &ProjectsModule::gBarEndTime);
    shortVariable(app, "gBarStyle", module, &ProjectsModule::gBarStyle);
    app.variable(
        QStringLiteral("gSelectedScheduleID"), [module] { return QVariant(module->gSelectedScheduleID); },
        [module](const QVariant& v) { module->gSelectedScheduleID = vb::toInt32(v); });
    app.variable(QStringLiteral("gBarStartDate"), [module] { return QVariant(module->gBarStartDate); });
    app.variable(QStringLiteral("gBarEndDate"), [module] { return QVariant(module->gBarEndDate); });
    app.variable(QStringLiteral("gBarRowTitle"), [module] { return QVariant(module->gBarRowTitle); });
}

// today DATE [TIME]: the present as the program reads it from then on.
void today(script::Runner&, const script::Tokens& t) {
    if (t.size() < 2 || t.size() > 3)
        throw script::LineError(
            QStringLiteral("today needs a date (YYYY-MM-DD) and may take a time (HH:MM)"));
    const QDate date = QDate::fromString(t[1].text, Qt::ISODate);
    const QTime time = t.size() > 2 ? QTime::fromString(t[2].text, QStringLiteral("HH:mm")) : QTime(0, 0);
    if (!date.isValid() || !time.isValid())
        throw script::LineError(
            QStringLiteral("'%1' is no date and time of the form YYYY-MM-DD HH:MM")
                .arg(t.size() > 2 ? t[1].text + QLatin1Char(' ') + t[2].text : t[1].text));
    clock::pin(QDateTime(date, time));
}

} // namespace

void registerProjects(Application& app) {
    // The module state lives as long as the windows that use it are registered.
    auto module = std::make_shared<ProjectsModule>();
    app.registerForm(QString::fromLatin1(frmNew::FormName), [module](ApplicationBase& a) {
        return std::make_shared<frmNew>(static_cast<Application&>(a), *module);
    });
    app.registerForm(QString::fromLatin1(frmClientSites::FormName), [module](ApplicationBase& a) {
        return std::make_shared<frmClientSites>(static_cast<Application&>(a), *module);
    });
    app.variable(
        QStringLiteral("gIsNewClient"), [module] { return QVariant(static_cast<int>(module->gIsNewClient)); },
        [module](const QVariant& v) { module->gIsNewClient = vb::toInt16(v); });
    app.variable(
        QStringLiteral("gCurrentClientID"), [module] { return QVariant(module->gCurrentClientID); },
        [module](const QVariant& v) { module->gCurrentClientID = vb::toInt32(v); });
    bookingVariables(app, module);
    // The cost report: the instance of the last print, or a new one at the first use of its name.
    app.variable(projects::CostReportName, [&app, module] {
        if (!module->costReport)
            projects::newCostReport(app, *module);
        return toVariant(module->costReport);
    });
}

void addProjectsScriptCommands(script::Registry& registry) {
    registry.command(QStringLiteral("today"), today);
}

} // namespace tessaly
