#include "projects/Projects.h"

#include "core/runtime/Vb.h"
#include "projects/ProjectsModule.h"
#include "projects/frmClientSites.h"
#include "projects/frmNew.h"
#include "workspace/Application.h"

#include <memory>

namespace tessaly {

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
}

} // namespace tessaly
