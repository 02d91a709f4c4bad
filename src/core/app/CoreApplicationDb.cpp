#include "CoreApplication.h"

#include "core/db/Connection.h"

namespace tessaly {

void CoreApplication::OpenConnection() {
    auto connection = std::make_shared<db::Connection>();
    connection->Open(gConnectionString, QString(), QString(), db::adOptionUnspecified);
    gConnection = connection;
    connectionOpen_ = true;
}

void CoreApplication::CloseDatabase() {
    if (gConnection)
        gConnection->Close();
    gConnection.reset();
    connectionOpen_ = false;
}

} // namespace tessaly
