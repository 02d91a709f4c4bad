#pragma once

#include "TableDef.h"

#include <QStringList>
#include <QVariant>

namespace tessaly::db {

// What differs between the engines below the layer: how names and flags are
// written, how rows are keyed, how values are held, how tables are made.
// Everything above it is the same for every engine.
class Dialect {
public:
    virtual ~Dialect() = default;

    // A name of the statement as the engine must read it; `quoted` when the
    // statement bracketed it.
    virtual QString identifier(const QString& name, bool quoted) const = 0;
    // A name quoted for the engine.
    QString quote(const QString& name) const;
    // The engine's text for a true or false literal of the statement.
    virtual QString booleanLiteral(bool value) const = 0;
    // The column that identifies a row of `table`; empty when rows of that
    // table cannot be identified (they are then read-only).
    virtual QString rowKeyColumn(const QString& table) const = 0;

    // A neutral value (see Values.h) as the engine holds it, and back.
    virtual QVariant toStorage(FieldType type, const QVariant& neutral) const = 0;
    virtual QVariant fromStorage(FieldType type, const QVariant& stored) const = 0;

    // The statements that make a table with its keys, defaults, relations and indexes.
    QStringList createTable(const TableDef& table) const;
    // The engine's column type, default included, of a field.
    virtual QString columnType(const FieldDef& field) const = 0;
    // The column definition of the hidden key of a table the program sees without one.
    virtual QString hiddenKeyColumn() const = 0;
    // An INSERT with `?` placeholders for `columns`; when `keyColumn` is not
    // empty and the engine returns keys that way, the statement yields the
    // generated key as its one row.
    virtual QString insertStatement(const QString& table, const QStringList& columns,
                                    const QString& keyColumn) const = 0;
};

} // namespace tessaly::db
