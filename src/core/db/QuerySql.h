#pragma once

#include <QList>
#include <QVariantMap>

namespace tessaly::db {

// For the script driver: opens a connection of its own on `connectionString`,
// runs one SELECT read-only and returns its rows as maps from field name to
// value. Values are what the recordset gives (Null as a null QVariant,
// currency as a double, flags as -1 and 0), except dates, which come as ISO
// text "yyyy-MM-ddTHH:mm:ss" for readability. Raises -2147217900 for a text
// that is not one SELECT.
QList<QVariantMap> querySql(const QString& connectionString, const QString& sql);

} // namespace tessaly::db
