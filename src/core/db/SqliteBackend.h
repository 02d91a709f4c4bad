#pragma once

#include "QtSqlBackend.h"

namespace tessaly::db {

// SQLite's dialect: names as written, flags as -1 and 0, dates as ISO text.
class SqliteDialect final : public Dialect {
public:
    QString identifier(const QString& name, bool quoted) const override;
    QString booleanLiteral(bool value) const override;
    QString rowKeyColumn(const QString& table) const override;
    QString columnType(const FieldDef& field) const override;
    QString hiddenKeyColumn() const override;
    QString insertStatement(const QString& table, const QStringList& columns,
                            const QString& keyColumn) const override;

protected:
    QVariant storedFlag(bool value) const override;
    QVariant dateFromStorage(const QVariant& stored) const override;
    bool flagFromStorage(const QVariant& stored) const override;
};

// The embedded project database: one SQLite file, shared safely by several
// running programs through write-ahead logging and a busy timeout.
class SqliteBackend final : public QtSqlBackend {
public:
    // Opens the existing file at `hostPath`. `logicPath` is the path as the
    // program gave it, for the messages. Raises -2147467259 "Could not find
    // file '<path>'." when there is no such file and "Unrecognized database
    // format '<path>'." when the file is not a database.
    SqliteBackend(const QString& hostPath, const QString& logicPath, int busyTimeoutMs);

    const Dialect& dialect() const override { return dialect_; }
    QueryResult query(const QString& sql, const QVariantList& params = {}) override;

    // Prepares a new, empty file: write-ahead logging and relations enforced.
    static void configureNew(QSqlDatabase& db);

protected:
    QString beginStatement() const override;

private:
    SqliteDialect dialect_;
};

} // namespace tessaly::db
