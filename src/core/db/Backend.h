#pragma once

#include "Dialect.h"
#include "RowTable.h"

#include <QStringList>
#include <QVariantList>
#include <vector>

namespace tessaly::db {

// Rows of a query, each value as the engine holds it.
struct QueryResult {
    QStringList columns;
    RowTable rows;
};

// One open database of one engine. The layer above speaks only to this
// interface, so another engine joins by giving another implementation.
//
// Statements reach a backend already translated for its dialect, one at a
// time, with `?` placeholders for parameters. Failures raise RuntimeError
// with the provider's numbers (see DbErrors.h).
class Backend {
public:
    virtual ~Backend() = default;

    virtual const Dialect& dialect() const = 0;

    // Runs a query and fetches all of its rows.
    virtual QueryResult query(const QString& sql, const QVariantList& params = {}) = 0;
    // Runs a statement that changes rows; returns how many it changed.
    virtual int execute(const QString& sql, const QVariantList& params = {}) = 0;
    // Inserts one row and returns the key the database generated for
    // `keyColumn` (Null when the table has no generated key).
    virtual QVariant insert(const QString& table, const QStringList& columns, const QVariantList& values,
                            const QString& keyColumn) = 0;

    // A write transaction; every Update of a recordset is one.
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;

    virtual void close() = 0;
};

} // namespace tessaly::db
