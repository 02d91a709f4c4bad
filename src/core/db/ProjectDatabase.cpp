#include "ProjectDatabase.h"

#include "Backend.h"
#include "Connection.h"
#include "ConnectionString.h"
#include "DbErrors.h"
#include "ProjectSchema.h"
#include "SqliteBackend.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QUuid>
#include <functional>

namespace tessaly::db {

namespace {

using Exec = std::function<void(const QString& sql, const QVariantList& params)>;

// Every table, then the pick list.
void buildTables(const Dialect& dialect, const Exec& exec) {
    for (const TableDef& t : projectTables())
        for (const QString& statement : dialect.createTable(t))
            exec(statement, {});
    const QString insertItem =
        dialect.insertStatement(QStringLiteral("ProjectItems"), {QStringLiteral("ProjectItems")}, QString());
    for (const QString& item : defaultProjectItems())
        exec(insertItem, {item});
}

void createSqliteFile(const QString& path) {
    const QString name =
        QStringLiteral("tessaly-create-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    QString failure;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        if (!db.open()) {
            failure = db.lastError().text();
        } else {
            SqliteBackend::configureNew(db);
            QSqlQuery q(db);
            const Exec exec = [&](const QString& sql, const QVariantList& params) {
                if (!failure.isEmpty())
                    return;
                if (!q.prepare(sql)) {
                    failure = q.lastError().text();
                    return;
                }
                for (const QVariant& p : params)
                    q.addBindValue(p);
                if (!q.exec())
                    failure = q.lastError().text();
            };
            exec(QStringLiteral("BEGIN"), {});
            buildTables(SqliteDialect(), exec);
            exec(QStringLiteral("COMMIT"), {});
            q.finish();
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!failure.isEmpty())
        dberr::raiseProviderFailure(failure);
}

} // namespace

bool createProjectDatabase(const QString& hostPath) {
    const QFileInfo target(hostPath);
    if (target.exists())
        return false;
    if (!QDir().mkpath(target.absolutePath()))
        dberr::raiseProviderFailure(QStringLiteral("Could not create the folder of '%1'.").arg(hostPath));
    // Built beside the target and renamed onto it, so that a crash never
    // leaves a half-made database that later counts as the user's.
    const QString building = target.absolutePath() + QStringLiteral("/.") + target.fileName() +
                             QStringLiteral(".new-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    try {
        createSqliteFile(building);
    } catch (...) {
        QFile::remove(building);
        throw;
    }
    if (!QFile::rename(building, hostPath)) {
        QFile::remove(building);
        if (QFileInfo::exists(hostPath))
            return false; // made by another program meanwhile
        dberr::raiseProviderFailure(QStringLiteral("Could not create '%1'.").arg(hostPath));
    }
    return true;
}

bool createServerProjectDatabase(const QString& connectionString) {
    std::shared_ptr<Backend> backend = openBackend(connectionString);
    const QString schema = parseConnectionString(connectionString).schema;
    if (!schema.isEmpty())
        backend->execute(QStringLiteral("CREATE SCHEMA IF NOT EXISTS ") + backend->dialect().quote(schema));
    const QueryResult existing = backend->query(
        QStringLiteral("SELECT 1 FROM information_schema.tables WHERE table_schema = current_schema() "
                       "AND table_name = 'Clients'"));
    if (!existing.rows.empty())
        return false;
    backend->begin();
    try {
        buildTables(backend->dialect(),
                    [&](const QString& sql, const QVariantList& params) { backend->execute(sql, params); });
        backend->commit();
    } catch (...) {
        backend->rollback();
        throw;
    }
    return true;
}

} // namespace tessaly::db
