#include "SqliteBackend.h"

#include "DbErrors.h"
#include "ProjectSchema.h"
#include "SqliteRows.h"
#include "Values.h"
#include "core/runtime/RuntimeError.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

namespace tessaly::db {

namespace {

// The first bytes of every SQLite file.
constexpr char SqliteMagic[] = "SQLite format 3";
constexpr int SqliteMagicLength = 16; // the text with its closing zero byte

// The date and time of adding, as the column default gives it.
const QString NowDefault = QStringLiteral("(strftime('%Y-%m-%d %H:%M:%S','now','localtime'))");

bool hasSqliteHeader(const QString& hostPath) {
    QFile f(hostPath);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(SqliteMagicLength);
    return head == QByteArray(SqliteMagic, SqliteMagicLength);
}

QString engineColumnType(const FieldDef& f) {
    switch (f.type) {
    case FieldType::Counter:
        return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    case FieldType::Long:
    case FieldType::Short:
        return QStringLiteral("INTEGER");
    case FieldType::Currency:
        // Exact decimal text, so that no amount passes through a double and a
        // number written by plain SQL reads back as the amount it names.
        return QStringLiteral("TEXT");
    case FieldType::Boolean:
        return QStringLiteral("INTEGER NOT NULL DEFAULT 0");
    case FieldType::Date:
        return f.defaultNow ? QStringLiteral("TEXT DEFAULT ") + NowDefault : QStringLiteral("TEXT");
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Variant:
        return QStringLiteral("TEXT");
    }
    return QStringLiteral("TEXT");
}

} // namespace

QString SqliteDialect::identifier(const QString& name, bool quoted) const {
    return quoted ? quote(name) : name;
}

QString SqliteDialect::booleanLiteral(bool value) const {
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QString SqliteDialect::rowKeyColumn(const QString& table) const {
    const TableDef* def = findTable(table);
    return def ? def->rowKey() : QStringLiteral("rowid");
}

QVariant SqliteDialect::storedFlag(bool value) const {
    return value ? -1 : 0;
}

QVariant SqliteDialect::dateFromStorage(const QVariant& stored) const {
    if (stored.metaType().id() == QMetaType::QString) {
        const QDateTime dt = values::fromIsoText(stored.toString());
        if (dt.isValid())
            return dt;
        // A date written by other SQL in the day/month/year form; text that is
        // no date at all reads as Null rather than stopping the read.
        try {
            return values::dateFromVariant(stored);
        } catch (const RuntimeError&) {
            return {};
        }
    }
    return values::dateFromSerial(stored.toDouble()); // a serial written by another program
}

bool SqliteDialect::flagFromStorage(const QVariant& stored) const {
    return stored.toLongLong() != 0;
}

QString SqliteDialect::columnType(const FieldDef& field) const {
    return engineColumnType(field);
}

QString SqliteDialect::hiddenKeyColumn() const {
    return quote(HiddenRowKey) + QStringLiteral(" INTEGER PRIMARY KEY AUTOINCREMENT");
}

QString SqliteDialect::insertStatement(const QString& table, const QStringList& columns,
                                       const QString&) const {
    return insertInto(table, columns);
}

SqliteBackend::SqliteBackend(const QString& hostPath, const QString& logicPath, int busyTimeoutMs)
    : QtSqlBackend(QStringLiteral("QSQLITE")) {
    const QFileInfo info(hostPath);
    if (hostPath.isEmpty() || !info.isFile())
        dberr::raiseProviderFailure(QStringLiteral("Could not find file '%1'.").arg(logicPath));
    const QString unrecognized = QStringLiteral("Unrecognized database format '%1'.").arg(logicPath);
    if (!hasSqliteHeader(hostPath))
        dberr::raiseProviderFailure(unrecognized);
    QSqlDatabase& db = database();
    db.setDatabaseName(hostPath);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!db.open())
        dberr::raiseProviderFailure(unrecognized);
    try {
        run(QStringLiteral("PRAGMA journal_mode=WAL"), dberr::ProviderFailure);
        run(QStringLiteral("PRAGMA foreign_keys=ON"), dberr::ProviderFailure);
        // With write-ahead logging, NORMAL keeps the file consistent through any
        // crash of the program or the machine; a power cut may lose the last
        // commits, never half of one.
        run(QStringLiteral("PRAGMA synchronous=NORMAL"), dberr::ProviderFailure);
        run(QStringLiteral("SELECT count(*) FROM sqlite_master"), dberr::ProviderFailure);
    } catch (const std::exception&) {
        close();
        dberr::raiseProviderFailure(unrecognized);
    }
}

QueryResult SqliteBackend::query(const QString& sql, const QVariantList& params) {
    if (params.isEmpty() && SqliteRows::available() && database().isOpen())
        return SqliteRows::fetch(database(), sql);
    return QtSqlBackend::query(sql, params);
}

QString SqliteBackend::beginStatement() const {
    // The write lock is taken at once, so two programs writing at the same
    // time wait for each other instead of failing when a read turns into a write.
    return QStringLiteral("BEGIN IMMEDIATE");
}

void SqliteBackend::configureNew(QSqlDatabase& db) {
    QSqlQuery q(db);
    q.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    q.exec(QStringLiteral("PRAGMA foreign_keys=ON"));
}

} // namespace tessaly::db
