#include "DataBinding.h"

#include "Control.h"
#include "Form.h"
#include "core/db/Ado.h"
#include "core/db/BoundField.h"
#include "core/db/DataControl.h"
#include "core/db/Recordset.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly {

namespace {

// The grid property that lists, in order, the columns sized to their content.
const QString AutoSizedProperty = QStringLiteral("AutoSized");

using member::is;

// The field of the current row that `key` names: a text names it, a number
// gives its position.
db::Field fieldAt(db::Recordset& rs, const QVariant& key) {
    if (key.metaType().id() == QMetaType::QString)
        return rs.Fields(key.toString());
    return rs.Fields(vb::toInt32(key));
}

// One field of the current row, reached as Recordset.Fields("Name"): it prints
// as its value.
class FieldObject final : public AutoObject {
public:
    FieldObject(db::Recordset& rs, QVariant key, AutoPtr owner)
        : rs_(rs), key_(std::move(key)), owner_(std::move(owner)) {}
    QString typeName() const override { return QStringLiteral("Field"); }
    QVariant get(const QString& name, const QVariantList& index) override {
        if (is(name, "Value"))
            return field().Value();
        if (is(name, "Name"))
            return field().Name();
        return AutoObject::get(name, index);
    }
    void set(const QString& name, const QVariant& value, const QVariantList& index) override {
        if (is(name, "Value"))
            return field().setValue(value);
        AutoObject::set(name, value, index);
    }
    QStringList memberNames() const override { return {QStringLiteral("Value"), QStringLiteral("Name")}; }
    std::optional<QVariant> printValue() override { return field().Value(); }

private:
    db::Field field() const { return fieldAt(rs_, key_); }
    db::Recordset& rs_;
    QVariant key_;
    AutoPtr owner_;
};

} // namespace

// ----- DataControlObject -----

DataControlObject::DataControlObject(Control& control)
    : control_(control), data_(std::make_unique<db::DataControl>()) {
    data_->MoveComplete = [this](int reason, const RuntimeError* error, int status, db::Recordset& rs) {
        EventArgs args{reason, error ? error->number() : 0, status,
                       toVariant(std::make_shared<RecordsetObject>(rs, shared_from_this()))};
        control_.form().raiseEvent(control_, QStringLiteral("MoveComplete"), args);
    };
}

DataControlObject::~DataControlObject() = default;

QVariant DataControlObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "Recordset"))
        return toVariant(std::make_shared<RecordsetObject>(data_->Recordset(), shared_from_this()));
    if (is(name, "ConnectionString"))
        return data_->ConnectionString();
    if (is(name, "RecordSource"))
        return data_->RecordSource();
    if (is(name, "CursorLocation"))
        return data_->CursorLocation();
    if (is(name, "CursorType"))
        return data_->CursorType();
    if (is(name, "LockType"))
        return data_->LockType();
    if (is(name, "CommandType"))
        return data_->CommandType();
    if (is(name, "Mode"))
        return data_->Mode();
    if (is(name, "ConnectionTimeout"))
        return data_->ConnectionTimeout();
    if (is(name, "CommandTimeout"))
        return data_->CommandTimeout();
    if (is(name, "CacheSize"))
        return data_->CacheSize();
    return AutoObject::get(name, index);
}

void DataControlObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "ConnectionString"))
        return data_->setConnectionString(vb::toText(value));
    if (is(name, "RecordSource"))
        return data_->setRecordSource(vb::toText(value));
    if (is(name, "CursorLocation"))
        return data_->setCursorLocation(vb::toInt32(value));
    if (is(name, "CursorType"))
        return data_->setCursorType(vb::toInt32(value));
    if (is(name, "LockType"))
        return data_->setLockType(vb::toInt32(value));
    if (is(name, "CommandType"))
        return data_->setCommandType(vb::toInt32(value));
    if (is(name, "Mode"))
        return data_->setMode(vb::toInt32(value));
    if (is(name, "ConnectionTimeout"))
        return data_->setConnectionTimeout(vb::toInt32(value));
    if (is(name, "CommandTimeout"))
        return data_->setCommandTimeout(vb::toInt32(value));
    if (is(name, "CacheSize"))
        return data_->setCacheSize(vb::toInt32(value));
    AutoObject::set(name, value, index);
}

QVariant DataControlObject::call(const QString& name, QVariantList& args) {
    if (is(name, "Refresh")) {
        data_->Refresh();
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList DataControlObject::memberNames() const {
    return {QStringLiteral("Recordset"),         QStringLiteral("ConnectionString"),
            QStringLiteral("RecordSource"),      QStringLiteral("CursorLocation"),
            QStringLiteral("CursorType"),        QStringLiteral("LockType"),
            QStringLiteral("CommandType"),       QStringLiteral("Mode"),
            QStringLiteral("ConnectionTimeout"), QStringLiteral("CommandTimeout"),
            QStringLiteral("CacheSize"),         QStringLiteral("Refresh")};
}

// ----- RecordsetObject -----

RecordsetObject::RecordsetObject(db::Recordset& recordset, AutoPtr owner)
    : rs_(recordset), owner_(std::move(owner)) {}

QVariant RecordsetObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "BOF"))
        return rs_.BOF();
    if (is(name, "EOF"))
        return rs_.EOF_();
    if (is(name, "AbsolutePosition"))
        return rs_.AbsolutePosition();
    if (is(name, "RecordCount"))
        return rs_.RecordCount();
    if (is(name, "EditMode"))
        return rs_.EditMode();
    if (is(name, "State"))
        return rs_.State();
    if (is(name, "Source"))
        return rs_.Source();
    if (is(name, "FieldCount"))
        return rs_.FieldCount();
    if (is(name, "Fields") && !index.isEmpty()) {
        const QVariant key = index.value(0);
        // Checked now, so that a wrong name fails where it is written.
        fieldAt(rs_, key);
        return toVariant(std::make_shared<FieldObject>(rs_, key, shared_from_this()));
    }
    return AutoObject::get(name, index);
}

void RecordsetObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "AbsolutePosition"))
        return rs_.setAbsolutePosition(vb::toInt32(value));
    if (is(name, "Fields") && !index.isEmpty()) {
        const QVariant key = index.value(0);
        if (key.metaType().id() == QMetaType::QString)
            return rs_.setValue(key.toString(), value);
        return rs_.setValue(vb::toInt32(key), value);
    }
    AutoObject::set(name, value, index);
}

QVariant RecordsetObject::call(const QString& name, QVariantList& args) {
    if (is(name, "MoveFirst"))
        rs_.MoveFirst();
    else if (is(name, "MoveLast"))
        rs_.MoveLast();
    else if (is(name, "MoveNext"))
        rs_.MoveNext();
    else if (is(name, "MovePrevious"))
        rs_.MovePrevious();
    else if (is(name, "AddNew"))
        rs_.AddNew();
    else if (is(name, "Update"))
        rs_.Update();
    else if (is(name, "CancelUpdate"))
        rs_.CancelUpdate();
    else if (is(name, "Delete"))
        rs_.Delete(args.isEmpty() ? db::adAffectCurrent : vb::toInt32(args.value(0)));
    else if (is(name, "Requery"))
        rs_.Requery();
    else if (is(name, "Close"))
        rs_.Close();
    else
        return AutoObject::call(name, args);
    return {};
}

QStringList RecordsetObject::memberNames() const {
    return {QStringLiteral("BOF"),          QStringLiteral("EOF"),        QStringLiteral("AbsolutePosition"),
            QStringLiteral("RecordCount"),  QStringLiteral("EditMode"),   QStringLiteral("State"),
            QStringLiteral("Source"),       QStringLiteral("FieldCount"), QStringLiteral("Fields"),
            QStringLiteral("MoveFirst"),    QStringLiteral("MoveLast"),   QStringLiteral("MoveNext"),
            QStringLiteral("MovePrevious"), QStringLiteral("AddNew"),     QStringLiteral("Update"),
            QStringLiteral("CancelUpdate"), QStringLiteral("Delete"),     QStringLiteral("Requery"),
            QStringLiteral("Close")};
}

// ----- GridObject -----

GridObject::GridObject(Control& grid, QString dataSource, QList<db::GridColumn> columns)
    : grid_(grid), dataSource_(std::move(dataSource)), columns_(std::move(columns)) {}

db::DataControl* GridObject::dataControl() const {
    Control* source = grid_.form().find(dataSource_);
    auto* object = source ? dynamic_cast<DataControlObject*>(source->inner.get()) : nullptr;
    return object ? &object->data() : nullptr;
}

QVariantList GridObject::rows() const {
    QVariantList out;
    db::DataControl* data = dataControl();
    if (!data)
        return out;
    db::DataGridModel model(*data, columns_);
    const int count = model.rowCount();
    for (int r = 0; r < count; ++r) {
        QVariantMap row;
        for (int c = 0; c < columns_.size(); ++c)
            row.insert(columns_[c].caption, model.data(model.index(r, c)).toString());
        out.append(row);
    }
    return out;
}

int GridObject::row() const {
    db::DataControl* data = dataControl();
    if (!data || data->Recordset().State() != db::adStateOpen)
        return -1;
    const int position = data->Recordset().AbsolutePosition();
    return position >= 1 ? position - 1 : -1;
}

void GridObject::selectRow(int row) {
    db::DataControl* data = dataControl();
    if (!data || data->Recordset().State() != db::adStateOpen || row < 0 ||
        row >= data->Recordset().RecordCount())
        raiseError(err::InvalidProcedureCall, QStringLiteral("The grid has no row %1").arg(row));
    const int before = this->row();
    data->Recordset().setAbsolutePosition(row + 1);
    EventArgs change{before, 0};
    grid_.form().raiseEvent(grid_, QStringLiteral("RowColChange"), change);
    grid_.form().raiseEvent(grid_, QStringLiteral("Click"));
}

int GridObject::columnOf(const QString& caption) const {
    for (int c = 0; c < columns_.size(); ++c)
        if (columns_[c].caption.compare(caption, Qt::CaseInsensitive) == 0)
            return c;
    return -1;
}

void GridObject::checkColumn(int column) const {
    if (column < 0 || column >= columns_.size())
        raiseError(err::InvalidProcedureCall, QStringLiteral("The grid has no column %1").arg(column));
}

void GridObject::editCell(int row, int column, const QVariant& value) {
    checkColumn(column);
    if (!columns_[column].editable)
        raiseError(err::InvalidProcedureCall,
                   QStringLiteral("The column %1 takes no edits").arg(columns_[column].caption));
    if (row != this->row())
        selectRow(row);
    db::DataControl* data = dataControl();
    db::writeGridCell(data->Recordset(), row, columns_[column].dataField, value);
}

QVariant GridObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "Rows"))
        return rows();
    if (is(name, "Row"))
        return row();
    if (is(name, "RowCount")) {
        db::DataControl* data = dataControl();
        return data && data->Recordset().State() == db::adStateOpen ? data->Recordset().RecordCount() : 0;
    }
    if (is(name, "DataSource"))
        return dataSource_;
    if (is(name, "ColumnCount"))
        return static_cast<int>(columns_.size());
    if (is(name, "Columns")) {
        if (index.isEmpty())
            return static_cast<int>(columns_.size());
        const int c = vb::toInt32(index.value(0));
        checkColumn(c);
        return columns_[c].caption;
    }
    return AutoObject::get(name, index);
}

void GridObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "Row"))
        return selectRow(vb::toInt32(value));
    AutoObject::set(name, value, index);
}

QVariant GridObject::call(const QString& name, QVariantList& args) {
    if (is(name, "SelectRow")) {
        selectRow(vb::toInt32(args.value(0)));
        return {};
    }
    if (is(name, "Refresh"))
        return {}; // the grid shows the recordset as it is at every paint
    if (is(name, "AutoSize")) {
        // Sizes a column to its content; the view does the sizing, and the
        // columns sized so far are listed, in order, in AutoSized.
        const int column = vb::toInt32(args.value(0));
        checkColumn(column);
        QVariantList sized = grid_.prop(AutoSizedProperty).toList();
        sized << column;
        grid_.setProp(AutoSizedProperty, sized);
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList GridObject::memberNames() const {
    return {QStringLiteral("Rows"),       QStringLiteral("Row"),         QStringLiteral("RowCount"),
            QStringLiteral("DataSource"), QStringLiteral("Columns"),     QStringLiteral("SelectRow"),
            QStringLiteral("Refresh"),    QStringLiteral("ColumnCount"), QStringLiteral("AutoSize")};
}

// ----- making and finding -----

db::DataControl& makeDataControl(Control& control) {
    auto object = std::make_shared<DataControlObject>(control);
    control.inner = object;
    return object->data();
}

db::DataControl& dataControlOf(const Control& control) {
    auto* object = dynamic_cast<DataControlObject*>(control.inner.get());
    if (!object)
        raiseNoMember(control.fullName(), QStringLiteral("Recordset"));
    return object->data();
}

GridObject& makeDataGrid(Control& grid, const QString& dataSource, QList<db::GridColumn> columns) {
    auto object = std::make_shared<GridObject>(grid, dataSource, std::move(columns));
    grid.inner = object;
    grid.setProp(QStringLiteral("DataSource"), dataSource);
    return *object;
}

GridObject* gridOf(const Control& grid) {
    return dynamic_cast<GridObject*>(grid.inner.get());
}

// ----- BoundText -----

BoundText::BoundText(Control& box, db::DataControl& data, const QString& dataField)
    : box_(box), data_(data), field_(std::make_unique<db::BoundField>(data, dataField)) {
    box_.setProp(QStringLiteral("DataField"), dataField);
    field_->onTextChanged = [this](const QString& text) {
        showing_ = true;
        box_.setText(text);
        showing_ = false;
    };
}

BoundText::~BoundText() = default;

void BoundText::boxChanged() {
    if (showing_)
        return;
    db::Recordset& rs = data_.Recordset();
    if (rs.State() != db::adStateOpen || rs.BOF() || rs.EOF_() || rs.AbsolutePosition() == db::adPosUnknown)
        return;
    field_->setText(box_.text());
}

} // namespace tessaly
