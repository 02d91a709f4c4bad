#include "PostgresBackend.h"

#include "DbErrors.h"
#include "ProjectSchema.h"
#include "Transaction.h"
#include "Values.h"

namespace tessaly::db {

namespace {

constexpr int MillisecondsPerSecond = 1000;

QString engineColumnType(const FieldDef& f) {
    switch (f.type) {
    case FieldType::Counter:
        return QStringLiteral("SERIAL PRIMARY KEY");
    case FieldType::Long:
        return QStringLiteral("INTEGER");
    case FieldType::Short:
        return QStringLiteral("SMALLINT");
    case FieldType::Currency:
        return QStringLiteral("NUMERIC(19,4)");
    case FieldType::Boolean:
        return QStringLiteral("BOOLEAN NOT NULL DEFAULT FALSE");
    case FieldType::Date:
        return f.defaultNow ? QStringLiteral("TIMESTAMP(0) DEFAULT LOCALTIMESTAMP(0)")
                            : QStringLiteral("TIMESTAMP(0)");
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Variant:
        return QStringLiteral("TEXT");
    }
    return QStringLiteral("TEXT");
}

} // namespace

QString PostgresDialect::identifier(const QString& name, bool quoted) const {
    if (isSchemaName(name))
        return quote(canonicalName(name));
    return quoted ? quote(name) : name;
}

QString PostgresDialect::booleanLiteral(bool value) const {
    return value ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
}

QString PostgresDialect::rowKeyColumn(const QString& table) const {
    const TableDef* def = findTable(table);
    return def ? def->rowKey() : QString();
}

QVariant PostgresDialect::storedFlag(bool value) const {
    return value;
}

QVariant PostgresDialect::dateFromStorage(const QVariant& stored) const {
    if (stored.metaType().id() == QMetaType::QDateTime) {
        const QDateTime dt = stored.toDateTime();
        return QDateTime(dt.date(), dt.time(), Qt::UTC);
    }
    const QDateTime dt = values::fromIsoText(stored.toString());
    return dt.isValid() ? QVariant(dt) : QVariant();
}

bool PostgresDialect::flagFromStorage(const QVariant& stored) const {
    return stored.toBool();
}

QString PostgresDialect::columnType(const FieldDef& field) const {
    return engineColumnType(field);
}

QString PostgresDialect::hiddenKeyColumn() const {
    return HiddenRowKey + QStringLiteral(" BIGSERIAL PRIMARY KEY");
}

QString PostgresDialect::insertStatement(const QString& table, const QStringList& columns,
                                         const QString& keyColumn) const {
    QString sql = insertInto(table, columns);
    if (!keyColumn.isEmpty())
        sql += QStringLiteral(" RETURNING ") + identifier(keyColumn, false);
    return sql;
}

// Unlike a write transaction, whose rollback is quiet, every step of it is a
// statement that must succeed.
class PostgresBackend::ReadOnlyTransaction {
public:
    explicit ReadOnlyTransaction(PostgresBackend& backend) : backend_(backend) {}
    void begin() { backend_.run(QStringLiteral("BEGIN READ ONLY"), dberr::ProviderFailure); }
    void commit() { backend_.run(CommitStatement, dberr::ProviderFailure); }
    void rollback() { backend_.run(RollbackStatement, dberr::ProviderFailure); }

private:
    PostgresBackend& backend_;
};

PostgresBackend::PostgresBackend(const ConnectionSettings& settings, int connectTimeoutSeconds,
                                 int commandTimeoutSeconds)
    : QtSqlBackend(QStringLiteral("QPSQL")) {
    QSqlDatabase& db = database();
    db.setHostName(settings.host());
    db.setPort(settings.port());
    db.setDatabaseName(settings.database());
    db.setUserName(settings.userId);
    db.setPassword(settings.password);
    db.setConnectOptions(QStringLiteral("connect_timeout=%1").arg(connectTimeoutSeconds));
    if (!db.open()) {
        const QString text = db.lastError().databaseText().trimmed();
        close();
        dberr::raiseProviderFailure(
            text.isEmpty() ? QStringLiteral("Could not connect to '%1'.").arg(settings.dataSource) : text);
    }
    try {
        run(QStringLiteral("SET client_min_messages TO warning"), dberr::ProviderFailure);
        run(QStringLiteral("SET statement_timeout = %1").arg(commandTimeoutSeconds * MillisecondsPerSecond),
            dberr::ProviderFailure);
        if (!settings.schema.isEmpty())
            run(QStringLiteral("SET search_path TO %1").arg(dialect_.quote(settings.schema)),
                dberr::ProviderFailure);
    } catch (...) {
        close();
        throw;
    }
}

QueryResult PostgresBackend::query(const QString& sql, const QVariantList& params) {
    if (inTransaction())
        return QtSqlBackend::query(sql, params);
    ReadOnlyTransaction readOnly{*this};
    return runInTransaction(readOnly, [&] { return QtSqlBackend::query(sql, params); });
}

} // namespace tessaly::db
