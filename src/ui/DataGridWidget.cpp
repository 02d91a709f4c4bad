// The data grid bound to a data control of its form (G1 of the e-mail window).
#include "ControlWidget.h"
#include "core/db/DataGridModel.h"
#include "core/forms/DataBinding.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QSignalBlocker>
#include <QTableView>

namespace tessaly::ui {

namespace {

bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

// Holds the data control while the model listens to it: the window goes
// after its form, and the model must not outlive what it shows.
struct KeepsSource {
    std::shared_ptr<AutoObject> source;
};

class BoundGridModel final : private KeepsSource, public db::DataGridModel {
public:
    BoundGridModel(std::shared_ptr<AutoObject> source, db::DataControl& control,
                   QList<db::GridColumn> columns, QObject* parent)
        : KeepsSource{std::move(source)}, db::DataGridModel(control, std::move(columns), parent) {}
};

} // namespace

ControlWidget makeDataGrid(Control& control, QWidget* parent, ViewSink& sink) {
    GridObject* grid = GridObject::of(control);
    DataControlObject* data = grid ? grid->source() : nullptr;
    if (!data)
        return makePlaceholder(control, parent, sink);
    QList<db::GridColumn> columns;
    for (const QString& field : grid->columns())
        columns << db::GridColumn{field, field, db::GridColumn::Format::General, false};
    auto* view = new QTableView(parent);
    auto* model = new BoundGridModel(data->shared_from_this(), data->dataControl(), columns, view);
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    // A click on a row moves the data control's cursor there, also onto the
    // row it stands on already: the move is reported all the same. The
    // arrow keys move it to the row they reach.
    QObject::connect(view, &QAbstractItemView::pressed, view, [model, &sink](const QModelIndex& index) {
        if (index.isValid())
            sink.userInput([&] { model->setCurrentRow(index.row()); });
    });
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, view,
                     [model, &sink](const QModelIndex& current) {
                         if (QGuiApplication::mouseButtons() == Qt::NoButton && current.isValid() &&
                             current.row() != model->currentRow())
                             sink.userInput([&] { model->setCurrentRow(current.row()); });
                     });
    QObject::connect(model, &db::DataGridModel::currentRowChanged, view, [view](int row) {
        const QSignalBlocker quiet(view->selectionModel());
        if (row >= 0)
            view->selectRow(row);
        else
            view->clearSelection();
    });
    ControlWidget made{view, nullptr, {}, true};
    made.sync = [view, &control](const QString& p) {
        if (!wants(p, "AutoSized"))
            return;
        for (const QVariant& column : control.prop(QStringLiteral("AutoSized")).toList())
            view->resizeColumnToContents(column.toInt());
    };
    return made;
}

} // namespace tessaly::ui
