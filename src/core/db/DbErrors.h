#pragma once

#include <QString>

// Error numbers and texts of Tessaly's database layer. The logic traps and
// shows these numbers, so they are the ones the original provider gave.
namespace tessaly::db::dberr {

constexpr int InvalidUseOfNull = 94;           // a Null read where a text or number is needed
constexpr int NoCurrentRecord = 3021;          // BOF or EOF is true, or the current row was deleted
constexpr int NotUpdatable = 3251;             // the recordset is read-only, or the operation is not possible
constexpr int ItemNotFound = 3265;             // no field of that name
constexpr int ObjectClosed = 3704;             // the object is closed
constexpr int ObjectOpen = 3705;               // the object is already open
constexpr int ProviderFailure = -2147467259;   // the provider failed: missing or damaged file, engine error
constexpr int CommandError = -2147217900;      // the SQL text cannot be run
constexpr int RowNotFound = -2147217864;       // the row to write is no longer in the table
constexpr int MultipleStepError = -2147217887; // a field value cannot be stored

// Sources named with the errors.
QString engineSource();     // "Microsoft JET Database Engine"
QString recordsetSource();  // "ADODB.Recordset"
QString connectionSource(); // "ADODB.Connection"

[[noreturn]] void raiseInvalidUseOfNull();
[[noreturn]] void raiseNoCurrentRecord();
[[noreturn]] void raiseNotUpdatable();
[[noreturn]] void raiseItemNotFound();
[[noreturn]] void raiseClosed(const QString& source);
[[noreturn]] void raiseAlreadyOpen(const QString& source);
[[noreturn]] void raiseCommandError(const QString& text);
[[noreturn]] void raiseProviderFailure(const QString& text);

} // namespace tessaly::db::dberr
