#include "PostgresBackend.h"

#include "DbErrors.h"
#include "ProjectSchema.h"
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

QVariant PostgresDialect::toStorage(FieldType type, const QVariant& neutral) const {
    if (!neutral.isValid() || neutral.isNull())
        return QVariant();
    switch (type) {
    case FieldType::Date:
        return values::isoText(neutral.toDateTime());
    case FieldType::Boolean:
        return neutral.toBool();
    case FieldType::Currency:
        return values::currencyText(neutral.toLongLong());
    default:
        return neutral;
    }
}

QVariant PostgresDialect::fromStorage(FieldType type, const QVariant& stored) const {
    if (!stored.isValid() || stored.isNull())
        return QVariant();
    switch (type) {
    case FieldType::Counter:
    case FieldType::Long:
    case FieldType::Short:
        return stored.toInt();
    case FieldType::Text:
    case FieldType::Memo:
        return stored.toString();
    case FieldType::Date: {
        if (stored.metaType().id() == QMetaType::QDateTime) {
            const QDateTime dt = stored.toDateTime();
            return QDateTime(dt.date(), dt.time(), Qt::UTC);
        }
        const QDateTime dt = values::fromIsoText(stored.toString());
        return dt.isValid() ? QVariant(dt) : QVariant();
    }
    case FieldType::Currency: {
        qint64 v = 0;
        if (stored.metaType().id() == QMetaType::QString && values::parseCurrencyText(stored.toString(), &v))
            return static_cast<qlonglong>(v);
        return static_cast<qlonglong>(values::currencyFromVariant(stored));
    }
    case FieldType::Boolean:
        return stored.toBool();
    case FieldType::Variant:
        return stored;
    }
    return stored;
}

QString PostgresDialect::columnType(const FieldDef& field) const {
    return engineColumnType(field);
}

QString PostgresDialect::hiddenKeyColumn() const {
    return HiddenRowKey + QStringLiteral(" BIGSERIAL PRIMARY KEY");
}

QString PostgresDialect::insertStatement(const QString& table, const QStringList& columns,
                                         const QString& keyColumn) const {
    QString sql;
    if (columns.isEmpty()) {
        sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quote(table));
    } else {
        QStringList quoted;
        QStringList marks;
        for (const QString& c : columns) {
            quoted.append(quote(c));
            marks.append(QStringLiteral("?"));
        }
        sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                  .arg(quote(table), quoted.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    }
    if (!keyColumn.isEmpty())
        sql += QStringLiteral(" RETURNING ") + identifier(keyColumn, false);
    return sql;
}

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
    run(QStringLiteral("BEGIN READ ONLY"), dberr::ProviderFailure);
    try {
        QueryResult result = QtSqlBackend::query(sql, params);
        run(QStringLiteral("COMMIT"), dberr::ProviderFailure);
        return result;
    } catch (...) {
        run(QStringLiteral("ROLLBACK"), dberr::ProviderFailure);
        throw;
    }
}

} // namespace tessaly::db
