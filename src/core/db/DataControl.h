#pragma once

#include "Ado.h"
#include "Connection.h"
#include "Recordset.h"

#include <functional>

namespace tessaly {
class RuntimeError;
}

namespace tessaly::db {

// The bound data control of a form (RS_SiteDetails, RS_ProjectDrawings,
// RS_ProjectCosts, RS1): a connection string and a record source, a Refresh
// that opens the source on a connection of the control's own, the Recordset
// that the form moves and edits, and MoveComplete after every move.
//
// The settings start as the project manager's controls have them: client
// cursor, dynamic cursor, optimistic locks, command text, share deny none,
// 15 s to connect, 30 s per command, 50 rows cached. They are kept and given
// back as set; the recordset always fetches its rows into the program.
class DataControl {
public:
    DataControl();
    ~DataControl();
    DataControl(const DataControl&) = delete;
    DataControl& operator=(const DataControl&) = delete;

    const QString& ConnectionString() const { return connectionString_; }
    void setConnectionString(const QString& connectionString);
    const QString& RecordSource() const { return recordSource_; }
    void setRecordSource(const QString& recordSource) { recordSource_ = recordSource; }

    int CursorLocation() const { return cursorLocation_; }
    void setCursorLocation(int value) { cursorLocation_ = value; }
    int CursorType() const { return cursorType_; }
    void setCursorType(int value) { cursorType_ = value; }
    int LockType() const { return lockType_; }
    void setLockType(int value) { lockType_ = value; }
    int CommandType() const { return commandType_; }
    void setCommandType(int value) { commandType_ = value; }
    int Mode() const { return mode_; }
    void setMode(int value) { mode_ = value; }
    int ConnectionTimeout() const { return connectionTimeout_; }
    void setConnectionTimeout(int seconds) { connectionTimeout_ = seconds; }
    int CommandTimeout() const { return commandTimeout_; }
    void setCommandTimeout(int seconds) { commandTimeout_ = seconds; }
    int CacheSize() const { return cacheSize_; }
    void setCacheSize(int rows) { cacheSize_ = rows; }

    // Opens the record source anew (connecting first when the connection
    // string changed); the cursor goes to the first row and MoveComplete runs.
    void Refresh();
    // The control's recordset: the same object across refreshes, closed until the first.
    db::Recordset& recordset() { return recordset_; }
    db::Recordset& Recordset() { return recordset_; }

    // The form's handler of MoveComplete: reason, error (null when none),
    // status and the recordset, after every move of the cursor.
    using MoveCompleteHandler =
        std::function<void(int reason, const RuntimeError* error, int status, db::Recordset& recordset)>;
    MoveCompleteHandler MoveComplete;

private:
    QString connectionString_;
    QString recordSource_;
    int cursorLocation_;
    int cursorType_;
    int lockType_;
    int commandType_;
    int mode_;
    int connectionTimeout_;
    int commandTimeout_;
    int cacheSize_;
    Connection connection_;
    db::Recordset recordset_;
};

} // namespace tessaly::db
