#pragma once

#include <QMap>
#include <QString>

namespace tessaly::db {

// A connection string read into its parts.
//
// The embedded form is the original's:
//   "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=<path>;Persist Security Info=False;"
// with or without the trailing semicolon. The Data Source is the path of the
// SQLite file (KORV.mdb keeps its name); every other key is accepted and
// ignored.
//
// The server form names a PostgreSQL database:
//   "Provider=PostgreSQL;Data Source=<host>[:<port>]/<database>;User
//   ID=<user>;Password=<password>;Schema=<schema>"
// The port defaults to 5432. "Schema" is optional and puts that schema first
// on the search path, so that several project databases can share one
// server database. User and password given to Connection::Open take the
// place of those in the string.
//
// A value may be enclosed in double quotes when it holds a semicolon.
struct ConnectionSettings {
    QMap<QString, QString> values; // every key, lower case, with its value
    QString provider;
    QString dataSource;
    QString userId;
    QString password;
    QString schema;

    // True when the string names a PostgreSQL server.
    bool isServer() const;
    // The parts of a server Data Source.
    QString host() const;
    int port() const;
    QString database() const;
};

ConnectionSettings parseConnectionString(const QString& connectionString);

} // namespace tessaly::db
