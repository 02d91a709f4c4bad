#pragma once

#include "Ado.h"

#include <QString>
#include <memory>

namespace tessaly::db {

class Backend;

// A connection to the project database, opened from a connection string
// (see ConnectionString.h for the forms it takes).
class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Opens the database. Raises -2147467259 with the provider's text when the
    // file is missing or damaged or the server refuses, 3705 when already open.
    void Open(const QString& connectionString, const QString& userId = {}, const QString& password = {},
              int options = adOptionUnspecified);
    void Close();
    int State() const;
    const QString& ConnectionString() const { return connectionString_; }

    // Seconds to wait for a server to answer an opening; for a lock held by another program.
    int ConnectionTimeout() const { return connectionTimeout_; }
    void setConnectionTimeout(int seconds) { connectionTimeout_ = seconds; }
    int CommandTimeout() const { return commandTimeout_; }
    void setCommandTimeout(int seconds) { commandTimeout_ = seconds; }

    // The open database, shared with the recordsets opened on it; raises 3709 when closed.
    std::shared_ptr<Backend> backend() const;

private:
    QString connectionString_;
    std::shared_ptr<Backend> backend_;
    int connectionTimeout_;
    int commandTimeout_;
};

// Opens the database that a connection string names.
std::shared_ptr<Backend> openBackend(const QString& connectionString, const QString& userId = {},
                                     const QString& password = {}, int connectionTimeoutSeconds = 15,
                                     int commandTimeoutSeconds = 30);

} // namespace tessaly::db
