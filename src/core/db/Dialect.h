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

    // A neutral value (see Values.h) as the engine holds it, and back. A Null
    // stays Null, whole numbers and texts are held as they are, dates as ISO
    // text and currency as exact decimal text; each engine holds flags in its
    // own way, and reads back dates and flags from what its driver gives.
    QVariant toStorage(FieldType type, const QVariant& neutral) const;
    QVariant fromStorage(FieldType type, const QVariant& stored) const;

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

protected:
    // How the engine holds a flag.
    virtual QVariant storedFlag(bool value) const = 0;
    // A date and a flag as the engine's driver gives them, never Null; a date
    // the engine does not hold as one reads as Null.
    virtual QVariant dateFromStorage(const QVariant& stored) const = 0;
    virtual bool flagFromStorage(const QVariant& stored) const = 0;
    // An INSERT of `columns` with `?` placeholders, or of the defaults alone
    // when there are no columns.
    QString insertInto(const QString& table, const QStringList& columns) const;
};

} // namespace tessaly::db
