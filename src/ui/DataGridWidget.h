#pragma once

#include "ControlWidget.h"

#include <QWidget>
#include <memory>

class QLabel;
class QSortFilterProxyModel;
class QTableView;

namespace tessaly {
class GridObject;
namespace db {
class DataGridModel;
}
} // namespace tessaly

namespace tessaly::ui {

// A data grid on the desktop: the grid's caption over a table of the rows of
// its data control. Headers sort the rows on show by a column (the data
// control keeps its own order); a click or a key that makes another row
// current moves the data control there, with MoveComplete, and every move of
// the data control shows as the current row.
class DataGridView final : public QWidget {
public:
    DataGridView(Control& grid, GridObject& binding, ViewSink& sink, QWidget* parent);
    ~DataGridView() override;

    QTableView* table() const { return table_; }
    QLabel* title() const { return title_; }
    // Brings the caption up to the control's.
    void syncCaption();

private:
    void showCurrentRow(int sourceRow);
    void rowChosen(const QModelIndex& current);

    Control& grid_;
    GridObject& binding_;
    ViewSink& sink_;
    std::weak_ptr<AutoObject> form_; // the grid's form, to know whether its data control still lives
    QLabel* title_;
    QTableView* table_;
    db::DataGridModel* model_;
    QSortFilterProxyModel* proxy_;
    bool following_ = false; // the view is showing a move of the data control
};

} // namespace tessaly::ui
