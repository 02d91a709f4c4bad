#pragma once

#include "Ado.h"
#include "RowTable.h"
#include "TableDef.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

namespace tessaly {
class RuntimeError;
}

namespace tessaly::db {

class Backend;
class Connection;
class Recordset;
class SqlStatement;

// What a recordset tells its listeners.
struct RecordsetEvent {
    enum class Kind {
        MoveComplete,  // the cursor was placed; reason says how
        RecordChanged, // the current row was written, dropped or deleted; reason says which
        Reset,         // the recordset was opened, read again or closed
    };
    Kind kind = Kind::MoveComplete;
    int reason = 0;                      // adRsn... value
    const RuntimeError* error = nullptr; // the error of a failed operation, if any
    int status = adStatusOK;
    Recordset* recordset = nullptr;
};

// One field of the current row, as `Fields("Name")` gives it: reads and
// assignments go to the recordset.
class Field {
public:
    Field(Recordset& recordset, int ordinal) : rs_(&recordset), ordinal_(ordinal) {}
    Field(const Field&) = default;

    QString Name() const;
    FieldType Type() const;
    QVariant Value() const;
    void setValue(const QVariant& value);
    bool isNull() const;

    operator QVariant() const { return Value(); }
    Field& operator=(const QVariant& value) {
        setValue(value);
        return *this;
    }
    // Assigning one field to another copies the value, as the platform did.
    Field& operator=(const Field& other) {
        setValue(other.Value());
        return *this;
    }

private:
    Recordset* rs_;
    int ordinal_;
};

// The rows of one query with a cursor over them, fetched into the program
// (a client-side cursor), with the operations the program's routines use.
//
// The cursor stands on a row, before the first (BOF) or after the last (EOF);
// with no rows both are true. Rows are added with AddNew, field assignments
// and Update (the database numbers the key, and the new row is read back
// with its key and defaults); Update writes the current row in one
// transaction; Delete removes the current row, after which the cursor stands
// on the deleted row until the next move. Moving while an edit is pending
// writes it first.
//
// A recordset opened read-only, or on a query whose rows cannot be traced to
// single rows of tables, refuses every write with error 3251. A DELETE (or
// other statement that changes rows) passed to Open runs and leaves the
// recordset closed.
class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    void Open(const QString& source, Connection& activeConnection, int cursorType = adOpenForwardOnly,
              int lockType = adLockReadOnly, int options = adCmdUnspecified);
    void Close();
    // Reads the rows again with the same source; the cursor goes to the first row.
    void Requery();
    int State() const;

    bool BOF() const;
    bool EOF_() const; // EOF: the name of the platform's property is a macro in C
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    int AbsolutePosition() const;
    void setAbsolutePosition(int position);
    int RecordCount() const;
    int EditMode() const;

    Field Fields(const QString& name);
    Field Fields(int ordinal);
    int FieldCount() const;
    QString FieldName(int ordinal) const;
    FieldType FieldTypeOf(int ordinal) const;
    // The ordinal of a field, -1 when the recordset has none of that name.
    int FieldOrdinal(const QString& name) const;

    // Fields(name).Value and its assignment.
    QVariant value(const QString& name) const;
    void setValue(const QString& name, const QVariant& value);
    QVariant value(int ordinal) const;
    void setValue(int ordinal, const QVariant& value);

    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete(int affectRecords = adAffectCurrent);

    QString Source() const { return source_; }
    int CursorType() const { return cursorType_; }
    int LockType() const { return lockType_; }
    // True when the rows can be written through this recordset.
    bool isUpdatable() const { return updatable_; }

    // The value of a field in any row (0-based), without moving the cursor;
    // the current row shows its pending edit.
    QVariant rowValue(int row, int ordinal) const;

    // Listeners are told of every event; the number returned removes one.
    using Listener = std::function<void(const RecordsetEvent&)>;
    int addListener(Listener listener);
    void removeListener(int id);

private:
    struct Column {
        QString name; // the field's name as the program reads it
        FieldType type = FieldType::Variant;
        int table = -1;      // the table the value comes from, -1 for none
        QString baseColumn;  // the column of that table
        bool hidden = false; // the layer's own key columns
    };
    struct Table {
        QString name;             // the table's own name
        QString keyColumn;        // the column that identifies its rows
        int keyResultColumn = -1; // where the key is in each row
    };

    void openStatement(const SqlStatement& statement);
    void resolveColumns(const SqlStatement& statement, const QStringList& resultColumns);
    void requireOpen() const;
    void requireCurrent() const;
    // Reads the rows of a recordset whose reading was put off.
    void fetchPending() const;
    void fetchRows();
    void requireUpdatable() const;
    bool atRow() const;
    int columnOf(int ordinal) const;
    QVariant programValue(const Column& column, const QVariant& stored) const;
    void placeCursor(int position, int reason);
    void saveBeforeMove();
    void fire(RecordsetEvent::Kind kind, int reason);
    void writeNewRow();
    void writeEditedRow();
    // The UPDATE of the edited columns of the `t`th table; none when none of them changed.
    void writeEditedColumns(int t);
    QVariantList readRowByKey(const QVariant& key);

    std::shared_ptr<Backend> backend_;
    QString source_;
    int cursorType_ = adOpenForwardOnly;
    int lockType_ = adLockReadOnly;
    bool open_ = false;
    bool updatable_ = false;

    std::vector<Column> columns_;
    std::vector<int> visible_; // ordinal -> column
    std::vector<Table> tables_;
    RowTable rows_; // values as the engine holds them

    int position_ = -1; // index of the current row; -1 before the first, rows_.size() after the last
    bool currentDeleted_ = false;
    int editMode_ = adEditNone;
    QVariantList buffer_; // the current row while an edit is pending
    std::vector<bool> dirty_;
    int positionBeforeAdd_ = -1;
    bool deletedBeforeAdd_ = false;

    // Rows not read yet: rows_ then holds only the rows added since opening,
    // and the cursor stands on one of them (onSessionRow_) or on the first row.
    bool pending_ = false;
    bool onSessionRow_ = false;
    bool sessionBeforeAdd_ = false;
    QString fullSql_;

    std::vector<std::pair<int, Listener>> listeners_;
    int nextListenerId_ = 1;
};

} // namespace tessaly::db
