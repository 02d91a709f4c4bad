#include "projects/ProjectDb.h"

#include "core/db/Ado.h"
#include "core/db/Connection.h"
#include "core/db/Recordset.h"
#include "workspace/Application.h"

namespace tessaly::projects {

namespace {
[[noreturn]] void raiseNothing() {
    raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
}
} // namespace

db::Connection& sharedConnection(Application& app) {
    if (!app.gConnection)
        raiseNothing();
    return *app.gConnection;
}

db::Recordset& newSharedRecordset(Application& app) {
    app.gRecordset = std::make_shared<db::Recordset>();
    return *app.gRecordset;
}

db::Recordset& sharedRecordset(Application& app) {
    if (!app.gRecordset)
        raiseNothing();
    return *app.gRecordset;
}

void runCommand(Application& app, const QString& sql) {
    newSharedRecordset(app).Open(sql, sharedConnection(app), db::adOpenDynamic, db::adLockOptimistic,
                                 db::adCmdText);
    app.gRecordset.reset();
}

} // namespace tessaly::projects
