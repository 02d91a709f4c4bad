#pragma once

#include "Backend.h"

#include <QSqlDatabase>

namespace tessaly::db {

// Fetches the rows of a query straight from the SQLite library under Qt's
// driver, through the driver's own database handle. Qt SQL's row fetch costs
// about twice as much per value, which matters when the client list of a
// large office is read into the combo box.
//
// The library's functions are looked up in the copy of SQLite that the
// driver has already loaded, so the handle and the functions always belong
// together. Where that copy cannot be found, available() is false and the
// caller keeps to Qt SQL.
class SqliteRows {
public:
    static bool available();
    // Runs `sql` (one statement, no parameters) on the driver's handle.
    // Raises -2147217900 when the statement cannot be prepared and
    // -2147467259 when a step fails.
    static QueryResult fetch(QSqlDatabase& db, const QString& sql);
};

} // namespace tessaly::db
