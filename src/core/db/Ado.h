#pragma once

// The numbers of Tessaly's database surface. The logic passes them as plain
// integers, exactly as the original data access library took them.
namespace tessaly::db {

// Cursor types.
constexpr int adOpenForwardOnly = 0; // a cursor that only moves forward
constexpr int adOpenKeyset = 1;      // a keyset cursor
constexpr int adOpenDynamic = 2;     // a dynamic cursor: the type every routine asks for
constexpr int adOpenStatic = 3;      // a static snapshot

// Lock types.
constexpr int adLockReadOnly = 1;    // rows can be read, never changed
constexpr int adLockPessimistic = 2; // rows locked while edited
constexpr int adLockOptimistic = 3;  // rows locked only while Update writes them

// Command types.
constexpr int adCmdText = 1;         // the source is SQL text
constexpr int adCmdUnspecified = -1; // the source's kind is not stated

// Connection open options.
constexpr int adOptionUnspecified = -1; // no option: the connection opens synchronously

// Cursor locations.
constexpr int adUseServer = 2; // the cursor lives in the engine
constexpr int adUseClient = 3; // the rows are fetched into the program

// Connection modes.
constexpr int adModeShareDenyNone = 16; // other users may open the database for anything

// Object states.
constexpr int adStateClosed = 0; // not open
constexpr int adStateOpen = 1;   // open

// Edit modes of the current row.
constexpr int adEditNone = 0;       // no edit pending
constexpr int adEditInProgress = 1; // fields of the current row were changed and are not yet written
constexpr int adEditAdd = 2;        // AddNew made a row that Update has not yet written
constexpr int adEditDelete = 4;     // the current row was deleted

// Which rows Delete removes.
constexpr int adAffectCurrent = 1; // the current row only

// AbsolutePosition away from a row.
constexpr int adPosUnknown = -1; // the current row has been deleted
constexpr int adPosBOF = -2;     // the cursor stands before the first row
constexpr int adPosEOF = -3;     // the cursor stands after the last row

// Reasons given with MoveComplete.
constexpr int adRsnAddNew = 1;        // AddNew made a new current row
constexpr int adRsnDelete = 2;        // a row was deleted
constexpr int adRsnUpdate = 3;        // a row was written
constexpr int adRsnUndoUpdate = 4;    // CancelUpdate dropped an edit
constexpr int adRsnUndoAddNew = 5;    // CancelUpdate dropped a new row
constexpr int adRsnRequery = 7;       // the rows were read again
constexpr int adRsnMove = 10;         // the cursor was placed (Open, AbsolutePosition)
constexpr int adRsnMoveFirst = 12;    // MoveFirst
constexpr int adRsnMoveNext = 13;     // MoveNext
constexpr int adRsnMovePrevious = 14; // MovePrevious
constexpr int adRsnMoveLast = 15;     // MoveLast

// Status given with MoveComplete.
constexpr int adStatusOK = 1;             // the operation succeeded
constexpr int adStatusErrorsOccurred = 2; // the operation failed; the error argument says why

} // namespace tessaly::db
