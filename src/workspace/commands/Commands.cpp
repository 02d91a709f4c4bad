#include "workspace/commands/Commands.h"

#include "workspace/Application.h"
#include "workspace/frmMain.h"

namespace tessaly {

void registerViewCommands(frmMain& /*form*/, Application& /*app*/) {}

void registerCommandForms(Application& /*app*/) {}

} // namespace tessaly
