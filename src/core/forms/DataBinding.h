#pragma once

#include "core/db/DataGridModel.h"
#include "core/runtime/AutoObject.h"

#include <QList>
#include <QString>
#include <memory>

namespace tessaly {

class Control;

namespace db {
class BoundField;
class DataControl;
class Recordset;
} // namespace db

// The data control of a form as the logic and the script driver reach it by
// name: ConnectionString, RecordSource, the settings of the control, Refresh
// and its Recordset. The control's MoveComplete reaches the form as the
// control's own event, with the reason, the number of the operation's error
// (0 when none), the status and the recordset.
class DataControlObject final : public AutoObject {
public:
    explicit DataControlObject(Control& control);
    ~DataControlObject() override;

    db::DataControl& data() { return *data_; }

    QString typeName() const override { return QStringLiteral("Adodc"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    Control& control_;
    std::unique_ptr<db::DataControl> data_;
};

// A recordset reached by name: BOF, EOF, AbsolutePosition, RecordCount,
// EditMode, State, Source, Fields("Name") (a field that prints as its value,
// with Value and Name), and the moves and writes of the recordset.
class RecordsetObject final : public AutoObject {
public:
    // `owner` keeps the recordset's holder alive while this object lives.
    RecordsetObject(db::Recordset& recordset, AutoPtr owner);

    QString typeName() const override { return QStringLiteral("Recordset"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    db::Recordset& rs_;
    AutoPtr owner_;
};

// A data grid of a form bound to a data control of the same form: its
// columns, the rows it shows (Rows: one object per row keyed by the column
// captions, the values as the grid writes them), the current row (Row, from 0,
// -1 on none) and SelectRow, which moves the data control to a row as a click
// on that row does.
class GridObject final : public AutoObject {
public:
    GridObject(Control& grid, QString dataSource, QList<db::GridColumn> columns);

    // The data control named by DataSource; nullptr when the form has none.
    db::DataControl* dataControl() const;
    const QList<db::GridColumn>& columns() const { return columns_; }
    const QString& dataSource() const { return dataSource_; }
    QVariantList rows() const;
    int row() const;
    // Moves the data control to the row (from 0): a pending edit is written
    // first and MoveComplete runs; the grid then raises RowColChange and Click.
    void selectRow(int row);
    // The column of a caption (without regard to case), -1 when there is none.
    int columnOf(const QString& caption) const;
    // The user edits one cell and leaves it: a click on the row makes it the
    // current one (selectRow), then the field takes the value and the row is
    // written (db::writeGridCell). Error 5 for a row or column the grid does
    // not have or a column that takes no edits; the field's own error when it
    // refuses the value, the row keeping what it held.
    void editCell(int row, int column, const QVariant& value);

    QString typeName() const override { return QStringLiteral("TDBGrid"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    // Error 5 for a column the grid does not have.
    void checkColumn(int column) const;

    Control& grid_;
    QString dataSource_;
    QList<db::GridColumn> columns_;
};

// Makes a control of kind DataControl a data control with the engine behind it.
db::DataControl& makeDataControl(Control& control);
// The engine of a data control; error 438 when the control is none.
db::DataControl& dataControlOf(const Control& control);
// Makes a control of kind Grid a grid bound to the data control named `dataSource`.
GridObject& makeDataGrid(Control& grid, const QString& dataSource, QList<db::GridColumn> columns);
// The binding of a grid control, or nullptr.
GridObject* gridOf(const Control& grid);

// A text box bound to a field of a data control: the box shows the field of
// the current row and follows every move. What is typed or set into the box
// is written to the field (which puts the row into edit) when the recordset
// stands on a row; otherwise the text stays in the box only, until the next
// move shows the field again. The form calls `boxChanged` from the box's
// Change event.
class BoundText {
public:
    BoundText(Control& box, db::DataControl& data, const QString& dataField);
    ~BoundText();
    BoundText(const BoundText&) = delete;
    BoundText& operator=(const BoundText&) = delete;

    void boxChanged();
    Control& box() const { return box_; }

private:
    Control& box_;
    db::DataControl& data_;
    std::unique_ptr<db::BoundField> field_;
    bool showing_ = false;
};

} // namespace tessaly
