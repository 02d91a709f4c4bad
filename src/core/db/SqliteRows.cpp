#include "SqliteRows.h"

#include "DbErrors.h"

#include <QSqlDriver>
#include <dlfcn.h>
#include <sqlite3.h>

namespace tessaly::db {

namespace {

// The SQLite functions the fetch uses, from the driver's copy of the library.
struct SqliteApi {
    decltype(&sqlite3_prepare_v2) prepare = nullptr;
    decltype(&sqlite3_step) step = nullptr;
    decltype(&sqlite3_finalize) finalize = nullptr;
    decltype(&sqlite3_column_count) columnCount = nullptr;
    decltype(&sqlite3_column_name) columnName = nullptr;
    decltype(&sqlite3_column_type) columnType = nullptr;
    decltype(&sqlite3_column_int64) columnInt64 = nullptr;
    decltype(&sqlite3_column_double) columnDouble = nullptr;
    decltype(&sqlite3_column_text) columnText = nullptr;
    decltype(&sqlite3_column_blob) columnBlob = nullptr;
    decltype(&sqlite3_column_bytes) columnBytes = nullptr;
    decltype(&sqlite3_errmsg) errmsg = nullptr;
    bool ok = false;
};

template <typename F> void resolve(void* library, const char* name, F* target) {
    *target = reinterpret_cast<F>(dlsym(library, name));
}

const SqliteApi& api() {
    static const SqliteApi loaded = [] {
        SqliteApi a;
        // Only a library that is already loaded: the one under Qt's driver.
        void* library = dlopen("libsqlite3.so.0", RTLD_NOW | RTLD_NOLOAD);
        if (!library)
            return a;
        resolve(library, "sqlite3_prepare_v2", &a.prepare);
        resolve(library, "sqlite3_step", &a.step);
        resolve(library, "sqlite3_finalize", &a.finalize);
        resolve(library, "sqlite3_column_count", &a.columnCount);
        resolve(library, "sqlite3_column_name", &a.columnName);
        resolve(library, "sqlite3_column_type", &a.columnType);
        resolve(library, "sqlite3_column_int64", &a.columnInt64);
        resolve(library, "sqlite3_column_double", &a.columnDouble);
        resolve(library, "sqlite3_column_text", &a.columnText);
        resolve(library, "sqlite3_column_blob", &a.columnBlob);
        resolve(library, "sqlite3_column_bytes", &a.columnBytes);
        resolve(library, "sqlite3_errmsg", &a.errmsg);
        a.ok = a.prepare && a.step && a.finalize && a.columnCount && a.columnName && a.columnType &&
               a.columnInt64 && a.columnDouble && a.columnText && a.columnBlob && a.columnBytes && a.errmsg;
        return a;
    }();
    return loaded;
}

sqlite3* handleOf(QSqlDatabase& db) {
    const QVariant h = db.driver()->handle();
    if (!h.isValid() || qstrcmp(h.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(h.data());
}

// Finalizes the statement however the fetch ends.
class Statement {
public:
    Statement(const SqliteApi& a, sqlite3_stmt* s) : api_(a), stmt_(s) {}
    ~Statement() { api_.finalize(stmt_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt* get() const { return stmt_; }

private:
    const SqliteApi& api_;
    sqlite3_stmt* stmt_;
};

} // namespace

bool SqliteRows::available() {
    return api().ok;
}

QueryResult SqliteRows::fetch(QSqlDatabase& db, const QString& sql) {
    const SqliteApi& a = api();
    sqlite3* handle = handleOf(db);
    if (!handle)
        dberr::raiseClosed(dberr::connectionSource());
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* raw = nullptr;
    if (a.prepare(handle, text.constData(), static_cast<int>(text.size()), &raw, nullptr) != SQLITE_OK)
        dberr::raiseCommandError(QString::fromUtf8(a.errmsg(handle)));
    if (!raw)
        return {};
    Statement stmt(a, raw);
    QueryResult result;
    const int n = a.columnCount(raw);
    for (int i = 0; i < n; ++i)
        result.columns.append(QString::fromUtf8(a.columnName(raw, i)));
    result.rows.setColumnCount(n);
    int rc = SQLITE_ROW;
    while ((rc = a.step(raw)) == SQLITE_ROW) {
        result.rows.beginRow();
        for (int i = 0; i < n; ++i) {
            switch (a.columnType(raw, i)) {
            case SQLITE_INTEGER:
                result.rows.addInteger(static_cast<qint64>(a.columnInt64(raw, i)));
                break;
            case SQLITE_FLOAT:
                result.rows.addDouble(a.columnDouble(raw, i));
                break;
            case SQLITE_NULL:
                result.rows.addNull();
                break;
            case SQLITE_BLOB:
                result.rows.addBytes(static_cast<const char*>(a.columnBlob(raw, i)), a.columnBytes(raw, i));
                break;
            default: {
                // The text first, then its length (the order SQLite asks for).
                const char* chars = reinterpret_cast<const char*>(a.columnText(raw, i));
                result.rows.addText(chars, a.columnBytes(raw, i));
                break;
            }
            }
        }
    }
    if (rc != SQLITE_DONE)
        dberr::raiseProviderFailure(QString::fromUtf8(a.errmsg(handle)));
    return result;
}

} // namespace tessaly::db
