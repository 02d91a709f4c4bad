#include "DataGridModel.h"

#include "BoundField.h"
#include "DataControl.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

#include "core/common/SystemFormats.h"

namespace tessaly::db {

namespace {
// The decimals of a currency column.
constexpr int CurrencyDecimals = 2;
} // namespace

void writeGridCell(Recordset& rs, int row, const QString& dataField, const QVariant& value) {
    if (rs.AbsolutePosition() != row + 1)
        rs.setAbsolutePosition(row + 1);
    // A cleared cell of a number or a date is Null; a text keeps its empty text.
    const int ordinal = rs.FieldOrdinal(dataField);
    const FieldType type = ordinal < 0 ? FieldType::Variant : rs.FieldTypeOf(ordinal);
    const bool cleared = value.metaType().id() == QMetaType::QString && value.toString().isEmpty() &&
                         type != FieldType::Text && type != FieldType::Memo;
    try {
        rs.setValue(dataField, cleared ? QVariant() : value);
        rs.Update();
    } catch (const RuntimeError&) {
        if (rs.State() == adStateOpen && rs.EditMode() != adEditNone)
            rs.CancelUpdate();
        throw;
    }
}

DataGridModel::DataGridModel(DataControl& control, QList<GridColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), control_(control), columns_(std::move(columns)) {
    listener_ = control_.recordset().addListener([this](const RecordsetEvent& e) { onEvent(e); });
}

DataGridModel::~DataGridModel() {
    if (!detached_)
        control_.recordset().removeListener(listener_);
}

void DataGridModel::detach(bool controlAlive) {
    if (detached_)
        return;
    beginResetModel();
    if (controlAlive)
        control_.recordset().removeListener(listener_);
    detached_ = true;
    endResetModel();
}

void DataGridModel::onEvent(const RecordsetEvent& event) {
    switch (event.kind) {
    case RecordsetEvent::Kind::Reset:
        beginResetModel();
        endResetModel();
        break;
    case RecordsetEvent::Kind::RecordChanged:
        if (event.reason == adRsnUpdate || event.reason == adRsnUndoUpdate) {
            const int row = currentRow();
            if (row >= 0)
                emit dataChanged(index(row, 0), index(row, columnCount() - 1));
        } else {
            beginResetModel();
            endResetModel();
        }
        break;
    case RecordsetEvent::Kind::MoveComplete:
        if (event.reason == adRsnAddNew) {
            beginResetModel();
            endResetModel();
        }
        emit currentRowChanged(currentRow());
        break;
    }
}

int DataGridModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid() || detached_)
        return 0;
    Recordset& rs = control_.recordset();
    return rs.State() == adStateOpen ? rs.RecordCount() : 0;
}

int DataGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QString DataGridModel::displayText(const QVariant& value, GridColumn::Format format) const {
    if (!value.isValid() || value.isNull())
        return QString();
    switch (format) {
    case GridColumn::Format::Currency:
        return sysfmt::currency(value.toDouble(), CurrencyDecimals);
    case GridColumn::Format::Date:
        return boundText(value, static_cast<int>(FieldType::Date));
    case GridColumn::Format::General:
        break;
    }
    return vb::toText(value);
}

QVariant DataGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || detached_ || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    Recordset& rs = control_.recordset();
    if (rs.State() != adStateOpen || index.row() >= rs.RecordCount() || index.column() >= columns_.size())
        return QVariant();
    const GridColumn& column = columns_[index.column()];
    const int ordinal = rs.FieldOrdinal(column.dataField);
    if (ordinal < 0)
        return QVariant();
    const QVariant value = rs.rowValue(index.row(), ordinal);
    if (role == Qt::EditRole)
        return value;
    return displayText(value, column.format);
}

QVariant DataGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Horizontal)
        return section >= 0 && section < columns_.size() ? QVariant(columns_[section].caption) : QVariant();
    return QVariant(section + 1);
}

Qt::ItemFlags DataGridModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || detached_)
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() < columns_.size() && columns_[index.column()].editable &&
        control_.recordset().State() == adStateOpen && control_.recordset().isUpdatable())
        f |= Qt::ItemIsEditable;
    return f;
}

bool DataGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    try {
        writeGridCell(control_.recordset(), index.row(), columns_[index.column()].dataField, value);
    } catch (const RuntimeError& e) {
        emit writeFailed(e.number(), e.description());
        return false;
    }
    emit dataChanged(index, index);
    return true;
}

int DataGridModel::currentRow() const {
    if (detached_)
        return -1;
    Recordset& rs = control_.recordset();
    if (rs.State() != adStateOpen)
        return -1;
    const int position = rs.AbsolutePosition();
    return position >= 1 ? position - 1 : -1;
}

void DataGridModel::setCurrentRow(int row) {
    if (detached_)
        return;
    Recordset& rs = control_.recordset();
    if (rs.State() != adStateOpen || row < 0 || row >= rs.RecordCount())
        return;
    try {
        rs.setAbsolutePosition(row + 1); // writes a pending edit first
    } catch (const RuntimeError& e) {
        emit writeFailed(e.number(), e.description());
    }
}

} // namespace tessaly::db
