#pragma once

#include "Backend.h"

#include <QSqlDatabase>
#include <QSqlError>

class QSqlQuery;

namespace tessaly::db {

// The statements that end a transaction, for every engine.
inline const QString CommitStatement = QStringLiteral("COMMIT");
inline const QString RollbackStatement = QStringLiteral("ROLLBACK");

// The part of a backend that Qt SQL gives for every engine: running
// statements, fetching rows, transactions and the mapping of failures to the
// provider's error numbers.
class QtSqlBackend : public Backend {
public:
    ~QtSqlBackend() override;

    QueryResult query(const QString& sql, const QVariantList& params = {}) override;
    int execute(const QString& sql, const QVariantList& params = {}) override;
    QVariant insert(const QString& table, const QStringList& columns, const QVariantList& values,
                    const QString& keyColumn) override;
    void begin() override;
    void commit() override;
    void rollback() override;
    void close() override;

protected:
    // Makes the Qt connection of `driver` under a name of its own.
    explicit QtSqlBackend(const QString& driver);

    QSqlDatabase& database() { return db_; }
    bool inTransaction() const { return inTransaction_; }
    // The statement that opens a write transaction.
    virtual QString beginStatement() const { return QStringLiteral("BEGIN"); }
    // How engine values of exact numbers are fetched.
    virtual QSql::NumericalPrecisionPolicy precisionPolicy() const { return QSql::LowPrecisionDouble; }
    // Runs a statement that the engine must accept, raising with `number` otherwise.
    void run(const QString& sql, int number);
    // Raises the provider's error for a failed statement.
    [[noreturn]] void fail(const QSqlError& error, int number) const;

private:
    // Ends the write transaction, if any, then raises the failure of `query`.
    [[noreturn]] void failWithin(QSqlQuery& query, int number);
    QueryResult fetch(const QString& sql, const QVariantList& params, int* affected);

    QString name_;
    QSqlDatabase db_;
    bool inTransaction_ = false;
};

} // namespace tessaly::db
