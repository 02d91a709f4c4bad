#include "Output.h"

#include "ExportCommands.h"
#include "ExportLayouts.h"
#include "modReportExport.h"

#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QJsonArray>

namespace tessaly {

void registerOutput(Application& app) {
    auto module = std::make_shared<output::modReportExport>(app);
    app.variable(output::ReportExportModuleName, [module] { return toVariant(module); });
    for (const QString& name : {output::PortraitLayout, output::LandscapeLayout})
        app.variable(name, [module, name] { return toVariant(module->layout(name)); });
    app.routine(QStringLiteral("ExportReportToPDF"), [module](QVariantList& a) {
        module->callExport(true, a);
        return QVariant();
    });
    app.routine(QStringLiteral("ExportReportToTIFF"), [module](QVariantList& a) {
        module->callExport(false, a);
        return QVariant();
    });
    app.extendForm(QString::fromLatin1(frmMain::FormName),
                   [&app](Form& form) { registerExportCommands(static_cast<frmMain&>(form), app); });
}

void addOutputScriptCommands(script::Registry& registry) {
    registry.printForm(QStringLiteral("reports"), 0, [](script::Runner& run, const script::Tokens&) {
        QJsonArray loaded;
        output::modReportExport& module = output::reportExportModule(run.app());
        for (const QString& name : {output::PortraitLayout, output::LandscapeLayout})
            if (module.loadedLayout(name))
                loaded << name;
        return QJsonValue(QJsonObject{{QStringLiteral("loaded"), loaded}});
    });
}

} // namespace tessaly
