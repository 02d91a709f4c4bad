#include "DataGridWidget.h"

#include "core/db/DataGridModel.h"
#include "core/forms/DataBinding.h"
#include "core/forms/Form.h"
#include "core/runtime/Vb.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace tessaly::ui {

namespace {

// The editor of a cell: the stored value as text in a line edit. Leaving it
// writes the cell through the grid's binding under the dispatcher, so that a
// value the field refuses gives the run-time error box and the row keeps
// what it held.
class CellEditor final : public QStyledItemDelegate {
public:
    CellEditor(GridObject& binding, ViewSink& sink, QSortFilterProxyModel& proxy, QObject* parent)
        : QStyledItemDelegate(parent), binding_(binding), sink_(sink), proxy_(proxy) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override {
        return new QLineEdit(parent);
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        if (auto* line = qobject_cast<QLineEdit*>(editor))
            line->setText(vb::toText(index.data(Qt::EditRole)));
    }
    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
        auto* line = qobject_cast<QLineEdit*>(editor);
        if (!line || !line->isModified())
            return;
        const QModelIndex source = proxy_.mapToSource(index);
        const QString text = line->text();
        sink_.userInput([this, source, text] { binding_.editCell(source.row(), source.column(), text); });
    }

private:
    GridObject& binding_;
    ViewSink& sink_;
    QSortFilterProxyModel& proxy_;
};

} // namespace

DataGridView::DataGridView(Control& grid, GridObject& binding, ViewSink& sink, QWidget* parent)
    : QWidget(parent), grid_(grid), binding_(binding), sink_(sink), form_(grid.form().weak_from_this()),
      title_(new QLabel(this)), table_(new QTableView(this)),
      model_(new db::DataGridModel(*binding.dataControl(), binding.columns(), this)),
      proxy_(new QSortFilterProxyModel(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    title_->setObjectName(QStringLiteral("caption"));
    title_->setAlignment(Qt::AlignCenter);
    title_->setAutoFillBackground(true);
    title_->setFrameStyle(QFrame::Panel | QFrame::Raised);
    layout->addWidget(title_);
    layout->addWidget(table_);

    // Sorting compares the stored values, so dates and numbers sort as such.
    proxy_->setSourceModel(model_);
    proxy_->setSortRole(Qt::EditRole);
    table_->setModel(proxy_);
    table_->setSortingEnabled(true);
    table_->sortByColumn(-1, Qt::AscendingOrder); // the data control's order until a header is clicked
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setAlternatingRowColors(true);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->horizontalHeader()->setSectionsClickable(true);
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    table_->setItemDelegate(new CellEditor(binding_, sink_, *proxy_, table_));

    QObject::connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
                     [this](const QModelIndex& current) { rowChosen(current); });
    QObject::connect(model_, &db::DataGridModel::currentRowChanged, this,
                     [this](int row) { showCurrentRow(row); });
    QObject::connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        table_->resizeColumnsToContents();
        showCurrentRow(model_->currentRow());
    });
    syncCaption();
    table_->resizeColumnsToContents();
    showCurrentRow(model_->currentRow());
}

DataGridView::~DataGridView() {
    // The form may have gone first (its window is deleted later), and its data
    // control with it: then the rows are let go of without telling the control.
    model_->detach(!form_.expired());
}

void DataGridView::syncCaption() {
    const QString caption = grid_.prop(QStringLiteral("Caption")).toString();
    title_->setText(caption);
    title_->setVisible(!caption.isEmpty());
}

void DataGridView::showCurrentRow(int sourceRow) {
    following_ = true;
    QItemSelectionModel* selection = table_->selectionModel();
    if (sourceRow < 0) {
        selection->clearCurrentIndex();
        selection->clearSelection();
    } else {
        const QModelIndex shown = proxy_->mapFromSource(model_->index(sourceRow, 0));
        selection->setCurrentIndex(shown, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        table_->scrollTo(shown);
    }
    following_ = false;
}

void DataGridView::rowChosen(const QModelIndex& current) {
    if (following_ || form_.expired() || !current.isValid())
        return;
    const int row = proxy_->mapToSource(current).row();
    if (row == model_->currentRow())
        return;
    // A click or a key on another row: the data control goes there.
    sink_.userInput([this, row] { binding_.selectRow(row); });
}

ControlWidget makeDataGrid(Control& control, QWidget* parent, ViewSink& sink) {
    GridObject* binding = gridOf(control);
    if (!binding || !binding->dataControl())
        return makePlaceholder(control, parent, sink);
    auto* view = new DataGridView(control, *binding, sink, parent);
    ControlWidget made{view, nullptr, {}, false};
    made.sync = [view, &control](const QString& p) {
        if (p.isEmpty() || p == QLatin1String("Caption"))
            view->syncCaption();
        if (p.isEmpty() || p == QLatin1String("AutoSized"))
            for (const QVariant& column : control.prop(QStringLiteral("AutoSized")).toList())
                view->table()->resizeColumnToContents(column.toInt());
    };
    return made;
}

} // namespace tessaly::ui
