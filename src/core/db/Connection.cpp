#include "Connection.h"

#include "ConnectionString.h"
#include "DbErrors.h"
#include "PostgresBackend.h"
#include "SqliteBackend.h"
#include "core/files/FileSystem.h"
#include "core/runtime/RuntimeError.h"

namespace tessaly::db {

namespace {

constexpr int DefaultConnectionTimeout = 15; // seconds, as the original's connections had
constexpr int DefaultCommandTimeout = 30;    // seconds
constexpr int MillisecondsPerSecond = 1000;
constexpr int ConnectionUnusable = 3709; // the connection is closed or invalid here

} // namespace

std::shared_ptr<Backend> openBackend(const QString& connectionString, const QString& userId,
                                     const QString& password, int connectionTimeoutSeconds,
                                     int commandTimeoutSeconds) {
    ConnectionSettings settings = parseConnectionString(connectionString);
    if (settings.isServer()) {
        if (!userId.isEmpty())
            settings.userId = userId;
        if (!password.isEmpty())
            settings.password = password;
        return std::make_shared<PostgresBackend>(settings, connectionTimeoutSeconds, commandTimeoutSeconds);
    }
    return std::make_shared<SqliteBackend>(fs::toHost(settings.dataSource), settings.dataSource,
                                           commandTimeoutSeconds * MillisecondsPerSecond);
}

Connection::Connection()
    : connectionTimeout_(DefaultConnectionTimeout), commandTimeout_(DefaultCommandTimeout) {}

Connection::~Connection() {
    Close();
}

void Connection::Open(const QString& connectionString, const QString& userId, const QString& password, int) {
    if (backend_)
        dberr::raiseAlreadyOpen(dberr::connectionSource());
    backend_ = openBackend(connectionString, userId, password, connectionTimeout_, commandTimeout_);
    connectionString_ = connectionString;
}

void Connection::Close() {
    if (!backend_)
        return;
    backend_->close();
    backend_.reset();
}

int Connection::State() const {
    return backend_ ? adStateOpen : adStateClosed;
}

std::shared_ptr<Backend> Connection::backend() const {
    if (!backend_)
        raiseError(
            ConnectionUnusable,
            QStringLiteral("The connection cannot be used to perform this operation. It is either closed or "
                           "invalid in this context."),
            dberr::recordsetSource());
    return backend_;
}

} // namespace tessaly::db
