#pragma once

#include <QString>

namespace tessaly {

class Application;

namespace db {
class Connection;
class Recordset;
} // namespace db

// The project manager's use of the shared database objects of the main module.
namespace projects {

// gConnection; error 424 when there is none.
db::Connection& sharedConnection(Application& app);
// gRecordset made new for one use, as each routine makes it.
db::Recordset& newSharedRecordset(Application& app);
// gRecordset as it is; error 424 when released.
db::Recordset& sharedRecordset(Application& app);
// A statement that returns no rows (a DELETE), passed to Open on gRecordset
// made new, with optimistic locks; gRecordset is then released without a Close.
void runCommand(Application& app, const QString& sql);

} // namespace projects
} // namespace tessaly
