#include "Recordset.h"

#include "Backend.h"
#include "Connection.h"
#include "DbErrors.h"
#include "ProjectSchema.h"
#include "SqlStatement.h"
#include "Transaction.h"
#include "Values.h"
#include "core/runtime/RuntimeError.h"

#include <QSet>

namespace tessaly::db {

namespace {

// Result columns that carry the row keys of the tables, numbered by table.
const QString KeyAlias = QStringLiteral("tessaly_key_");
constexpr int BadArgument = 3001; // an argument out of range or of the wrong type

[[noreturn]] void raiseBadArgument() {
    raiseError(
        BadArgument,
        QStringLiteral("Arguments are of the wrong type, are out of acceptable range, or are in conflict "
                       "with one another."),
        dberr::recordsetSource());
}

[[noreturn]] void raiseRowNotFound() {
    raiseError(
        dberr::RowNotFound,
        QStringLiteral("Row cannot be located for updating. Some values may have been changed since it was "
                       "last read."),
        dberr::engineSource());
}

bool isHiddenName(const QString& name) {
    return name.startsWith(HiddenPrefix, Qt::CaseInsensitive);
}

} // namespace

// ----- Field -----

QString Field::Name() const {
    return rs_->FieldName(ordinal_);
}

FieldType Field::Type() const {
    return rs_->FieldTypeOf(ordinal_);
}

QVariant Field::Value() const {
    return rs_->value(ordinal_);
}

void Field::setValue(const QVariant& value) {
    rs_->setValue(ordinal_, value);
}

bool Field::isNull() const {
    const QVariant v = Value();
    return !v.isValid() || v.isNull();
}

// ----- Recordset: opening -----

Recordset::Recordset() = default;

Recordset::~Recordset() = default;

void Recordset::Open(const QString& source, Connection& activeConnection, int cursorType, int lockType, int) {
    if (open_)
        dberr::raiseAlreadyOpen(dberr::recordsetSource());
    std::shared_ptr<Backend> backend = activeConnection.backend();
    const SqlStatement statement = SqlStatement::parse(source);
    if (statement.kind() != StatementKind::Select) {
        // A command: it runs, and there are no rows to keep open.
        statement.requireRowsNamed();
        backend->execute(statement.render(backend->dialect()));
        return;
    }
    backend_ = std::move(backend);
    source_ = source;
    cursorType_ = cursorType;
    lockType_ = lockType;
    openStatement(statement);
    fire(RecordsetEvent::Kind::Reset, adRsnMove);
    fire(RecordsetEvent::Kind::MoveComplete, adRsnMove);
}

void Recordset::openStatement(const SqlStatement& statement) {
    const Dialect& dialect = backend_->dialect();
    bool traceable = statement.isSimpleSelect();
    for (const TableRef& t : statement.tables())
        traceable = traceable && findTable(t.name) != nullptr;
    updatable_ = lockType_ != adLockReadOnly && traceable && statement.namesRowsByEquality();

    tables_.clear();
    QString extraSelect;
    for (std::size_t i = 0; i < statement.tables().size(); ++i) {
        const TableRef& ref = statement.tables()[i];
        const TableDef* def = findTable(ref.name);
        Table t;
        t.name = def ? def->name : ref.name;
        t.keyColumn = dialect.rowKeyColumn(ref.name);
        tables_.push_back(t);
        if (updatable_)
            extraSelect += QStringLiteral(", %1.%2 AS %3%4")
                               .arg(dialect.identifier(ref.refName(), false),
                                    dialect.identifier(t.keyColumn, false), KeyAlias)
                               .arg(i);
    }
    // One table read in the order of its keys: the order in which rows were added.
    QString extraTail;
    if (traceable && tables_.size() == 1 && !statement.hasOrderBy() && !tables_[0].keyColumn.isEmpty())
        extraTail = QStringLiteral(" ORDER BY %1.%2")
                        .arg(dialect.identifier(statement.tables()[0].refName(), false),
                             dialect.identifier(tables_[0].keyColumn, false));

    fullSql_ = statement.render(dialect, extraSelect, extraTail);
    // A table opened for writing is often opened only to add a row to it:
    // its rows are read when first needed, so that adding to a large table
    // does not read the whole table first.
    pending_ = updatable_ && tables_.size() == 1 && !extraTail.isEmpty();
    QueryResult result = backend_->query(pending_ ? fullSql_ + QStringLiteral(" LIMIT 0") : fullSql_);
    resolveColumns(statement, result.columns);
    rows_ = std::move(result.rows);
    onSessionRow_ = false;
    position_ = 0;
    currentDeleted_ = false;
    editMode_ = adEditNone;
    buffer_.clear();
    open_ = true;
}

void Recordset::resolveColumns(const SqlStatement& statement, const QStringList& resultColumns) {
    columns_.assign(resultColumns.size(), Column());
    std::vector<int> shown;
    for (int i = 0; i < resultColumns.size(); ++i) {
        Column& c = columns_[i];
        c.name = resultColumns[i];
        if (c.name.startsWith(KeyAlias, Qt::CaseInsensitive)) {
            c.hidden = true;
            const int t = c.name.mid(KeyAlias.size()).toInt();
            c.table = t;
            if (t >= 0 && t < static_cast<int>(tables_.size()))
                tables_[t].keyResultColumn = i;
        } else if (isHiddenName(c.name)) {
            c.hidden = true;
        } else {
            shown.push_back(i);
        }
    }
    const auto& items = statement.items();
    bool positional = items.size() == shown.size();
    for (const SelectItem& item : items)
        positional =
            positional && item.kind != SelectItem::Kind::Star && item.kind != SelectItem::Kind::TableStar;

    auto tableWithField = [&](const QString& field, const QSet<int>& skip) -> int {
        for (int t = 0; t < static_cast<int>(tables_.size()); ++t) {
            const TableDef* def = findTable(tables_[t].name);
            if (def && def->field(field) && !skip.contains(t))
                return t;
        }
        return -1;
    };
    QHash<QString, QSet<int>> used; // tables already matched per field name, for "*" over joins
    for (std::size_t k = 0; k < shown.size(); ++k) {
        Column& c = columns_[shown[k]];
        QString field = c.name;
        int table = -1;
        bool aliased = false;
        if (positional) {
            const SelectItem& item = items[k];
            if (item.kind == SelectItem::Kind::Column) {
                field = item.column;
                aliased = !item.alias.isEmpty();
                if (item.table.isEmpty()) {
                    table = tableWithField(field, {});
                } else {
                    const auto& refs = statement.tables();
                    for (int t = 0; t < static_cast<int>(refs.size()); ++t)
                        if (refs[t].refName().compare(item.table, Qt::CaseInsensitive) == 0)
                            table = t;
                }
            }
        } else {
            QSet<int>& skip = used[field.toLower()];
            table = tableWithField(field, skip);
            if (table >= 0)
                skip.insert(table);
        }
        const TableDef* def = table >= 0 ? findTable(tables_[table].name) : nullptr;
        const FieldDef* fd = def ? def->field(field) : nullptr;
        if (fd) {
            c.table = table;
            c.baseColumn = fd->name;
            c.type = fd->type;
            if (!aliased)
                c.name = fd->name;
        }
    }
    // Two fields of the same name are told apart by their tables' names.
    QHash<QString, int> counts;
    for (int i : shown)
        ++counts[columns_[i].name.toLower()];
    for (int i : shown) {
        Column& c = columns_[i];
        if (counts.value(c.name.toLower()) > 1 && c.table >= 0)
            c.name = tables_[c.table].name + QLatin1Char('.') + c.name;
    }
    visible_ = shown;
}

void Recordset::Close() {
    if (!open_)
        dberr::raiseClosed(dberr::recordsetSource());
    open_ = false;
    rows_.clear();
    columns_.clear();
    visible_.clear();
    buffer_.clear();
    editMode_ = adEditNone;
    backend_.reset();
    fire(RecordsetEvent::Kind::Reset, adRsnMove);
}

void Recordset::Requery() {
    requireOpen();
    const SqlStatement statement = SqlStatement::parse(source_);
    openStatement(statement);
    fire(RecordsetEvent::Kind::Reset, adRsnRequery);
    fire(RecordsetEvent::Kind::MoveComplete, adRsnRequery);
}

int Recordset::State() const {
    return open_ ? adStateOpen : adStateClosed;
}

// ----- cursor -----

void Recordset::requireOpen() const {
    if (!open_)
        dberr::raiseClosed(dberr::recordsetSource());
}

bool Recordset::atRow() const {
    return !currentDeleted_ && position_ >= 0 && position_ < static_cast<int>(rows_.size());
}

void Recordset::fetchPending() const {
    if (pending_ && open_)
        const_cast<Recordset*>(this)->fetchRows();
}

void Recordset::fetchRows() {
    pending_ = false;
    QueryResult result = backend_->query(fullSql_);
    RowTable merged = std::move(result.rows);
    // Rows added before the read keep their place in the recordset, found by key.
    const int key = tables_[0].keyResultColumn;
    std::vector<int> placed(rows_.size(), 0);
    for (int i = 0; i < static_cast<int>(rows_.size()); ++i) {
        int found = -1;
        const bool unsaved = editMode_ == adEditAdd && i == position_;
        for (int j = 0; !unsaved && j < static_cast<int>(merged.size()) && found < 0; ++j)
            if (merged.value(j, key) == rows_.value(i, key))
                found = j;
        if (found < 0) {
            merged.append(rows_.row(i));
            found = static_cast<int>(merged.size()) - 1;
        }
        placed[i] = found;
    }
    const auto place = [&](int session, bool onSession) {
        return onSession && session >= 0 && session < static_cast<int>(placed.size()) ? placed[session] : 0;
    };
    position_ = place(position_, onSessionRow_);
    positionBeforeAdd_ = place(positionBeforeAdd_, sessionBeforeAdd_);
    onSessionRow_ = false;
    sessionBeforeAdd_ = false;
    rows_ = std::move(merged);
}

void Recordset::requireCurrent() const {
    requireOpen();
    if (!onSessionRow_)
        fetchPending();
    if (!atRow())
        dberr::raiseNoCurrentRecord();
}

// A deleted current row holds BOF and EOF false until the next move, unless
// it was the last row: with none left both are true.
bool Recordset::BOF() const {
    requireOpen();
    fetchPending();
    return rows_.empty() || (!currentDeleted_ && position_ < 0);
}

bool Recordset::EOF_() const {
    requireOpen();
    fetchPending();
    return rows_.empty() || (!currentDeleted_ && position_ >= static_cast<int>(rows_.size()));
}

void Recordset::saveBeforeMove() {
    if (editMode_ != adEditNone)
        Update();
}

void Recordset::placeCursor(int position, int reason) {
    fetchPending();
    position_ = position;
    currentDeleted_ = false;
    fire(RecordsetEvent::Kind::MoveComplete, reason);
}

void Recordset::MoveFirst() {
    requireOpen();
    saveBeforeMove();
    fetchPending();
    if (rows_.empty())
        dberr::raiseNoCurrentRecord();
    placeCursor(0, adRsnMoveFirst);
}

void Recordset::MoveLast() {
    requireOpen();
    saveBeforeMove();
    fetchPending();
    if (rows_.empty())
        dberr::raiseNoCurrentRecord();
    placeCursor(static_cast<int>(rows_.size()) - 1, adRsnMoveLast);
}

void Recordset::MoveNext() {
    requireOpen();
    if (EOF_())
        dberr::raiseNoCurrentRecord();
    saveBeforeMove();
    // From a deleted row the next row already stands at its place.
    placeCursor(currentDeleted_ ? position_ : position_ + 1, adRsnMoveNext);
}

void Recordset::MovePrevious() {
    requireOpen();
    if (BOF())
        dberr::raiseNoCurrentRecord();
    saveBeforeMove();
    placeCursor(std::min(position_, static_cast<int>(rows_.size())) - 1, adRsnMovePrevious);
}

int Recordset::AbsolutePosition() const {
    requireOpen();
    fetchPending();
    if (currentDeleted_)
        return adPosUnknown;
    if (BOF())
        return adPosBOF;
    if (EOF_())
        return adPosEOF;
    return position_ + 1;
}

void Recordset::setAbsolutePosition(int position) {
    requireOpen();
    fetchPending();
    if (position < 1 || position > static_cast<int>(rows_.size()))
        raiseBadArgument();
    saveBeforeMove();
    placeCursor(position - 1, adRsnMove);
}

int Recordset::RecordCount() const {
    requireOpen();
    fetchPending();
    return static_cast<int>(rows_.size());
}

int Recordset::EditMode() const {
    requireOpen();
    return editMode_;
}

// ----- fields -----

int Recordset::FieldCount() const {
    requireOpen();
    return static_cast<int>(visible_.size());
}

int Recordset::FieldOrdinal(const QString& name) const {
    // A row has a few fields, and names are mostly written as the table spells
    // them: a plain comparison finds them faster than hashing the name.
    const int count = static_cast<int>(visible_.size());
    for (int o = 0; o < count; ++o)
        if (columns_[visible_[o]].name == name)
            return o;
    for (int o = 0; o < count; ++o)
        if (columns_[visible_[o]].name.compare(name, Qt::CaseInsensitive) == 0)
            return o;
    return -1;
}

int Recordset::columnOf(int ordinal) const {
    requireOpen();
    if (ordinal < 0 || ordinal >= static_cast<int>(visible_.size()))
        dberr::raiseItemNotFound();
    return visible_[ordinal];
}

QString Recordset::FieldName(int ordinal) const {
    return columns_[columnOf(ordinal)].name;
}

FieldType Recordset::FieldTypeOf(int ordinal) const {
    return columns_[columnOf(ordinal)].type;
}

Field Recordset::Fields(const QString& name) {
    requireOpen();
    const int ordinal = FieldOrdinal(name);
    if (ordinal < 0)
        dberr::raiseItemNotFound();
    return Field(*this, ordinal);
}

Field Recordset::Fields(int ordinal) {
    columnOf(ordinal);
    return Field(*this, ordinal);
}

QVariant Recordset::value(const QString& name) const {
    requireOpen();
    const int ordinal = FieldOrdinal(name);
    if (ordinal < 0)
        dberr::raiseItemNotFound();
    return value(ordinal);
}

void Recordset::setValue(const QString& name, const QVariant& value) {
    requireOpen();
    const int ordinal = FieldOrdinal(name);
    if (ordinal < 0)
        dberr::raiseItemNotFound();
    setValue(ordinal, value);
}

QVariant Recordset::programValue(const Column& column, const QVariant& stored) const {
    // Texts and whole numbers are held as the program reads them; only the
    // other types need the engine's conversion.
    const int held = stored.metaType().id();
    switch (column.type) {
    case FieldType::Text:
    case FieldType::Memo:
        if (held == QMetaType::QString)
            return stored;
        break;
    case FieldType::Counter:
    case FieldType::Long:
    case FieldType::Short:
        if (held == QMetaType::Int)
            return stored;
        if (held == QMetaType::LongLong)
            return QVariant(static_cast<int>(stored.toLongLong()));
        break;
    case FieldType::Variant:
        return stored;
    default:
        break;
    }
    return values::toProgram(column.type, backend_->dialect().fromStorage(column.type, stored));
}

QVariant Recordset::value(int ordinal) const {
    const int col = columnOf(ordinal);
    requireCurrent();
    const QVariant stored = editMode_ != adEditNone ? buffer_[col] : rows_.value(position_, col);
    return programValue(columns_[col], stored);
}

QVariant Recordset::rowValue(int row, int ordinal) const {
    const int col = columnOf(ordinal);
    fetchPending();
    if (row < 0 || row >= static_cast<int>(rows_.size()))
        raiseBadArgument();
    const bool pending = editMode_ != adEditNone && row == position_;
    const QVariant stored = pending ? buffer_[col] : rows_.value(row, col);
    return programValue(columns_[col], stored);
}

void Recordset::requireUpdatable() const {
    requireOpen();
    if (!updatable_)
        dberr::raiseNotUpdatable();
}

void Recordset::setValue(int ordinal, const QVariant& value) {
    const int col = columnOf(ordinal);
    requireUpdatable();
    requireCurrent();
    const Column& c = columns_[col];
    if (c.table < 0)
        dberr::raiseNotUpdatable();
    if (c.type == FieldType::Counter)
        raiseError(dberr::MultipleStepError,
                   QStringLiteral("Multiple-step operation generated errors. Check each status value."),
                   dberr::recordsetSource());
    // Converted first: a value the field cannot hold changes nothing.
    const QVariant stored = backend_->dialect().toStorage(c.type, values::fromProgram(c.type, value));
    if (editMode_ == adEditNone) {
        buffer_ = rows_.row(position_);
        dirty_.assign(columns_.size(), false);
        editMode_ = adEditInProgress;
    }
    buffer_[col] = stored;
    dirty_[col] = true;
}

// ----- writing -----

void Recordset::AddNew() {
    requireUpdatable();
    if (tables_.size() != 1)
        dberr::raiseNotUpdatable();
    saveBeforeMove();
    positionBeforeAdd_ = position_;
    deletedBeforeAdd_ = currentDeleted_;
    sessionBeforeAdd_ = onSessionRow_;
    QVariantList empty;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        empty.append(QVariant());
    rows_.append(empty);
    buffer_ = empty;
    dirty_.assign(columns_.size(), false);
    editMode_ = adEditAdd;
    position_ = static_cast<int>(rows_.size()) - 1;
    onSessionRow_ = pending_;
    currentDeleted_ = false;
    fire(RecordsetEvent::Kind::MoveComplete, adRsnAddNew);
}

void Recordset::Update() {
    requireOpen();
    if (editMode_ == adEditNone)
        return;
    const int reason = editMode_ == adEditAdd ? adRsnAddNew : adRsnUpdate;
    if (editMode_ == adEditAdd)
        writeNewRow();
    else
        writeEditedRow();
    editMode_ = adEditNone;
    buffer_.clear();
    fire(RecordsetEvent::Kind::RecordChanged, reason);
}

QVariantList Recordset::readRowByKey(const QVariant& key) {
    const Dialect& dialect = backend_->dialect();
    const Table& t = tables_[0];
    QStringList select;
    for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
        const Column& c = columns_[i];
        if (i == t.keyResultColumn)
            select.append(dialect.identifier(t.keyColumn, false));
        else if (!c.hidden && c.table == 0)
            select.append(dialect.quote(c.baseColumn));
        else
            select.append(QStringLiteral("NULL"));
    }
    const QString sql = QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?")
                            .arg(select.join(QStringLiteral(", ")), dialect.quote(t.name),
                                 dialect.identifier(t.keyColumn, false));
    const QueryResult result = backend_->query(sql, {key});
    if (result.rows.empty())
        raiseRowNotFound();
    return result.rows.row(0);
}

void Recordset::writeNewRow() {
    const Table& t = tables_[0];
    QStringList names;
    QVariantList values;
    for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
        if (!dirty_[i] || columns_[i].table != 0)
            continue;
        names.append(columns_[i].baseColumn);
        values.append(buffer_[i]);
    }
    // The row is read back inside the transaction, with the values the engine gave it.
    rows_.set(position_, runInTransaction(*backend_, [&] {
                  const QVariant key = backend_->insert(t.name, names, values, t.keyColumn);
                  return readRowByKey(key);
              }));
}

void Recordset::writeEditedRow() {
    runInTransaction(*backend_, [&] {
        for (int t = 0; t < static_cast<int>(tables_.size()); ++t)
            writeEditedColumns(t);
    });
    rows_.set(position_, buffer_);
}

void Recordset::writeEditedColumns(int t) {
    const Dialect& dialect = backend_->dialect();
    QStringList sets;
    QVariantList params;
    for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
        if (!dirty_[i] || columns_[i].table != t)
            continue;
        sets.append(dialect.quote(columns_[i].baseColumn) + QStringLiteral(" = ?"));
        params.append(buffer_[i]);
    }
    if (sets.isEmpty())
        return;
    params.append(rows_.value(position_, tables_[t].keyResultColumn));
    const QString sql = QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                            .arg(dialect.quote(tables_[t].name), sets.join(QStringLiteral(", ")),
                                 dialect.identifier(tables_[t].keyColumn, false));
    if (backend_->execute(sql, params) == 0)
        raiseRowNotFound();
}

void Recordset::CancelUpdate() {
    requireOpen();
    if (editMode_ == adEditAdd) {
        rows_.erase(position_);
        editMode_ = adEditNone;
        buffer_.clear();
        position_ = positionBeforeAdd_;
        onSessionRow_ = sessionBeforeAdd_;
        currentDeleted_ = deletedBeforeAdd_;
        fire(RecordsetEvent::Kind::RecordChanged, adRsnUndoAddNew);
        fire(RecordsetEvent::Kind::MoveComplete, adRsnUndoAddNew);
        return;
    }
    if (editMode_ == adEditInProgress) {
        editMode_ = adEditNone;
        buffer_.clear();
        fire(RecordsetEvent::Kind::RecordChanged, adRsnUndoUpdate);
    }
}

void Recordset::Delete(int affectRecords) {
    requireUpdatable();
    if (affectRecords != adAffectCurrent)
        raiseBadArgument();
    if (tables_.size() != 1)
        dberr::raiseNotUpdatable();
    requireCurrent();
    if (editMode_ == adEditAdd) {
        // The new row was never written: deleting it drops it.
        CancelUpdate();
        return;
    }
    const Dialect& dialect = backend_->dialect();
    const Table& t = tables_[0];
    const QString sql = QStringLiteral("DELETE FROM %1 WHERE %2 = ?")
                            .arg(dialect.quote(t.name), dialect.identifier(t.keyColumn, false));
    runInTransaction(*backend_, [&] { backend_->execute(sql, {rows_.value(position_, t.keyResultColumn)}); });
    editMode_ = adEditNone;
    buffer_.clear();
    rows_.erase(position_);
    currentDeleted_ = true;
    fire(RecordsetEvent::Kind::RecordChanged, adRsnDelete);
}

// ----- listeners -----

int Recordset::addListener(Listener listener) {
    const int id = nextListenerId_++;
    listeners_.emplace_back(id, std::move(listener));
    return id;
}

void Recordset::removeListener(int id) {
    std::erase_if(listeners_, [id](const auto& entry) { return entry.first == id; });
}

void Recordset::fire(RecordsetEvent::Kind kind, int reason) {
    RecordsetEvent event;
    event.kind = kind;
    event.reason = reason;
    event.recordset = this;
    const auto listeners = listeners_;
    for (const auto& entry : listeners)
        entry.second(event);
}

} // namespace tessaly::db
