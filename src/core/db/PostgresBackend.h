#pragma once

#include "ConnectionString.h"
#include "QtSqlBackend.h"

namespace tessaly::db {

// PostgreSQL's dialect: the tables' mixed-case names are quoted, flags are
// booleans, dates are timestamps, currency is NUMERIC(19,4).
class PostgresDialect final : public Dialect {
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

// A project database on a PostgreSQL server, for offices that share one.
// Every query runs in a read-only transaction of its own, so a query can
// never change data, whatever functions its text calls.
class PostgresBackend final : public QtSqlBackend {
public:
    PostgresBackend(const ConnectionSettings& settings, int connectTimeoutSeconds, int commandTimeoutSeconds);

    const Dialect& dialect() const override { return dialect_; }
    QueryResult query(const QString& sql, const QVariantList& params = {}) override;

protected:
    QSql::NumericalPrecisionPolicy precisionPolicy() const override { return QSql::HighPrecision; }

private:
    // The read-only transaction of a query.
    class ReadOnlyTransaction;

    PostgresDialect dialect_;
};

} // namespace tessaly::db
