#include "QtSqlBackend.h"

#include "DbErrors.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <atomic>

namespace tessaly::db {

namespace {

QString nextConnectionName() {
    static std::atomic<int> counter{0};
    return QStringLiteral("tessaly-db-%1").arg(++counter);
}

} // namespace

QtSqlBackend::QtSqlBackend(const QString& driver) : name_(nextConnectionName()) {
    db_ = QSqlDatabase::addDatabase(driver, name_);
}

QtSqlBackend::~QtSqlBackend() {
    close();
}

void QtSqlBackend::close() {
    if (name_.isEmpty())
        return;
    if (db_.isOpen()) {
        QtSqlBackend::rollback(); // not an override: the backend may be going
        db_.close();
    }
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
    name_.clear();
}

void QtSqlBackend::fail(const QSqlError& error, int number) const {
    QString text = error.databaseText();
    if (text.isEmpty())
        text = error.text();
    if (number == dberr::CommandError)
        dberr::raiseCommandError(text);
    dberr::raiseProviderFailure(text);
}

void QtSqlBackend::failWithin(QSqlQuery& query, int number) {
    // The transaction ends before the statement is released: an engine that
    // refuses everything in a failed transaction could not release it otherwise.
    const QSqlError error = query.lastError();
    rollback();
    query.finish();
    fail(error, number);
}

void QtSqlBackend::run(const QString& sql, int number) {
    if (!db_.isOpen())
        dberr::raiseClosed(dberr::connectionSource());
    QSqlQuery q(db_);
    if (!q.exec(sql))
        fail(q.lastError(), number);
}

QueryResult QtSqlBackend::fetch(const QString& sql, const QVariantList& params, int* affected) {
    if (!db_.isOpen())
        dberr::raiseClosed(dberr::connectionSource());
    QueryResult result;
    QSqlQuery q(db_);
    q.setForwardOnly(true);
    q.setNumericalPrecisionPolicy(precisionPolicy());
    if (params.isEmpty()) {
        if (!q.exec(sql))
            fail(q.lastError(), dberr::CommandError);
    } else {
        if (!q.prepare(sql))
            fail(q.lastError(), dberr::CommandError);
        for (const QVariant& p : params)
            q.addBindValue(p);
        if (!q.exec())
            failWithin(q, dberr::ProviderFailure);
    }
    if (q.isSelect()) {
        const QSqlRecord record = q.record();
        const int n = record.count();
        for (int i = 0; i < n; ++i)
            result.columns.append(record.fieldName(i));
        result.rows.setColumnCount(n);
        while (q.next()) {
            QVariantList row;
            row.reserve(n);
            for (int i = 0; i < n; ++i)
                row.append(q.value(i));
            result.rows.append(row);
        }
        if (q.lastError().isValid())
            fail(q.lastError(), dberr::ProviderFailure);
    }
    if (affected)
        *affected = q.numRowsAffected();
    return result;
}

QueryResult QtSqlBackend::query(const QString& sql, const QVariantList& params) {
    return fetch(sql, params, nullptr);
}

int QtSqlBackend::execute(const QString& sql, const QVariantList& params) {
    int affected = 0;
    fetch(sql, params, &affected);
    return affected;
}

QVariant QtSqlBackend::insert(const QString& table, const QStringList& columns, const QVariantList& values,
                              const QString& keyColumn) {
    const QString sql = dialect().insertStatement(table, columns, keyColumn);
    if (!db_.isOpen())
        dberr::raiseClosed(dberr::connectionSource());
    QSqlQuery q(db_);
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        fail(q.lastError(), dberr::CommandError);
    for (const QVariant& v : values)
        q.addBindValue(v);
    if (!q.exec())
        failWithin(q, dberr::ProviderFailure);
    if (q.isSelect() && q.next())
        return q.value(0);
    return q.lastInsertId();
}

void QtSqlBackend::begin() {
    run(beginStatement(), dberr::ProviderFailure);
    inTransaction_ = true;
}

void QtSqlBackend::commit() {
    // When COMMIT fails the transaction stays open for the caller's rollback.
    run(CommitStatement, dberr::ProviderFailure);
    inTransaction_ = false;
}

void QtSqlBackend::rollback() {
    if (!inTransaction_)
        return;
    inTransaction_ = false;
    if (db_.isOpen())
        QSqlQuery(db_).exec(RollbackStatement);
}

} // namespace tessaly::db
