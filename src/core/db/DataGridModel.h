#pragma once

#include <QAbstractTableModel>
#include <QList>

namespace tessaly::db {

class DataControl;
class Recordset;
struct RecordsetEvent;

// Writes one cell of a bound grid as the grid does when the user leaves an
// edited cell: the cursor goes to the row (from 0; a pending edit is written
// first), the field takes the value (an empty text in a field of numbers or
// dates is Null) and the row is
// updated. A value the field refuses raises its error, and the row keeps
// what it held.
void writeGridCell(Recordset& rs, int row, const QString& dataField, const QVariant& value);

// A column of a bound grid: its caption, the field it shows, how the value
// is written, and whether it can be edited in place.
struct GridColumn {
    enum class Format {
        General,  // the value as text
        Currency, // the system's currency text, two decimals: "£1,234.50"
        Date,     // "dd/MM/yyyy" with the time when there is one
    };
    QString caption;
    QString dataField;
    Format format = Format::General;
    bool editable = false;
};

// The rows of a data control as a table for a grid view (TDBGrid1, TDBGrid2,
// G1). The model follows the control's cursor: the current row is the
// recordset's AbsolutePosition less one, and choosing a row in the grid
// moves the cursor there. Columns marked editable take edits in place; each
// edit moves to its row, assigns the field and calls Update.
class DataGridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    DataGridModel(DataControl& control, QList<GridColumn> columns, QObject* parent = nullptr);
    ~DataGridModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // The row of the cursor, -1 when it stands on no row.
    int currentRow() const;
    // Moves the cursor to a row, as a click in the grid does.
    void setCurrentRow(int row);

    const QList<GridColumn>& columns() const { return columns_; }

    // Stops following the data control: the model shows no rows from then on
    // and never touches the control again. With `controlAlive` false the
    // control is already gone and is not told.
    void detach(bool controlAlive = true);

signals:
    void currentRowChanged(int row);
    // An in-place edit was refused; the row keeps its stored value.
    void writeFailed(int number, const QString& description);

private:
    void onEvent(const RecordsetEvent& event);
    QString displayText(const QVariant& value, GridColumn::Format format) const;

    DataControl& control_;
    QList<GridColumn> columns_;
    int listener_ = 0;
    bool detached_ = false;
};

} // namespace tessaly::db
