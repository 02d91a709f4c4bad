#pragma once

#include <QString>

namespace tessaly::db {

// The install step's database: creates the SQLite file at `hostPath`
// (KORV.mdb, a SQLite file despite its name) with every project table, its
// keys, defaults, relations and indexes, and the ProjectItems pick list. An
// existing file is never touched: the user's data stays. The file appears
// whole or not at all. Returns true when it was created. Raises -2147467259
// when it cannot be made.
bool createProjectDatabase(const QString& hostPath);

// The same tables in the PostgreSQL database (and schema, if the string names
// one) of a server connection string, unless they are there already.
// Returns true when they were created.
bool createServerProjectDatabase(const QString& connectionString);

} // namespace tessaly::db
