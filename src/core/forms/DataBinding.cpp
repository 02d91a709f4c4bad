#include "DataBinding.h"

#include "Control.h"
#include "Form.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly {

namespace {

bool is(const QString& a, const char* b) {
    return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}

// Error 3021: the cursor stands on no row (BOF or EOF) where one is needed.
constexpr int NoCurrentRecord = 3021;
// Error 380: a property set to a value it cannot take.
constexpr int InvalidPropertyValue = 380;

// The names of the grid control's own properties.
const QString DataSourceProperty = QStringLiteral("DataSource");
const QString ColumnsProperty = QStringLiteral("Columns");
const QString AutoSizedProperty = QStringLiteral("AutoSized");

} // namespace

// --- RecordsetObject --------------------------------------------------------

RecordsetObject::RecordsetObject(std::shared_ptr<AutoObject> owner, db::Recordset& recordset)
    : owner_(std::move(owner)), rs_(recordset) {}

QVariant RecordsetObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "BOF"))
        return rs_.BOF();
    if (is(name, "EOF"))
        return rs_.EOF_();
    if (is(name, "RecordCount"))
        return rs_.RecordCount();
    if (is(name, "AbsolutePosition"))
        return rs_.AbsolutePosition();
    if (is(name, "State"))
        return rs_.State();
    if (is(name, "Source"))
        return rs_.Source();
    if (is(name, "Fields")) {
        if (index.isEmpty())
            return rs_.FieldCount();
        const QVariant which = index.value(0);
        return which.metaType().id() == QMetaType::QString ? rs_.value(which.toString())
                                                           : rs_.value(vb::toInt32(which));
    }
    return AutoObject::get(name, index);
}

void RecordsetObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "AbsolutePosition"))
        return rs_.setAbsolutePosition(vb::toInt32(value));
    AutoObject::set(name, value, index);
}

QVariant RecordsetObject::call(const QString& name, QVariantList& args) {
    if (is(name, "MoveFirst"))
        rs_.MoveFirst();
    else if (is(name, "MoveNext"))
        rs_.MoveNext();
    else if (is(name, "MovePrevious"))
        rs_.MovePrevious();
    else if (is(name, "MoveLast"))
        rs_.MoveLast();
    else if (is(name, "Fields"))
        return get(name, args);
    else
        return AutoObject::call(name, args);
    return {};
}

QStringList RecordsetObject::memberNames() const {
    return {QStringLiteral("BOF"),         QStringLiteral("EOF"),
            QStringLiteral("RecordCount"), QStringLiteral("AbsolutePosition"),
            QStringLiteral("State"),       QStringLiteral("Source"),
            QStringLiteral("Fields"),      QStringLiteral("MoveFirst"),
            QStringLiteral("MoveNext"),    QStringLiteral("MovePrevious"),
            QStringLiteral("MoveLast")};
}

// --- DataControlObject ------------------------------------------------------

DataControlObject::DataControlObject(Control& control) : control_(control) {
    data_.MoveComplete = [this](int reason, const RuntimeError* error, int status, db::Recordset&) {
        const auto self = std::static_pointer_cast<DataControlObject>(shared_from_this());
        EventArgs args{reason, error ? error->number() : 0, status,
                       toVariant(std::make_shared<RecordsetObject>(self, data_.recordset()))};
        control_.form().raiseEvent(control_, QStringLiteral("MoveComplete"), args);
    };
}

DataControlObject::~DataControlObject() {
    data_.MoveComplete = nullptr;
}

DataControlObject& DataControlObject::attach(Control& control) {
    auto data = std::make_shared<DataControlObject>(control);
    control.inner = data;
    return *data;
}

DataControlObject* DataControlObject::of(const Control& control) {
    return dynamic_cast<DataControlObject*>(control.inner.get());
}

QVariant DataControlObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "ConnectionString"))
        return data_.ConnectionString();
    if (is(name, "RecordSource"))
        return data_.RecordSource();
    if (is(name, "Recordset"))
        return toVariant(std::make_shared<RecordsetObject>(shared_from_this(), data_.recordset()));
    return AutoObject::get(name, index);
}

void DataControlObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "ConnectionString"))
        return data_.setConnectionString(vb::toText(value));
    if (is(name, "RecordSource"))
        return data_.setRecordSource(vb::toText(value));
    AutoObject::set(name, value, index);
}

QVariant DataControlObject::call(const QString& name, QVariantList& args) {
    if (is(name, "Refresh")) {
        data_.Refresh();
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList DataControlObject::memberNames() const {
    return {QStringLiteral("ConnectionString"), QStringLiteral("RecordSource"), QStringLiteral("Recordset"),
            QStringLiteral("Refresh")};
}

// --- GridObject -------------------------------------------------------------

GridObject::GridObject(Control& control) : control_(control) {}

GridObject& GridObject::attach(Control& control, const QString& dataSource, const QStringList& columns) {
    auto grid = std::make_shared<GridObject>(control);
    control.setProp(DataSourceProperty, dataSource);
    control.setProp(ColumnsProperty, columns);
    control.setProp(AutoSizedProperty, QVariantList());
    control.inner = grid;
    return *grid;
}

GridObject* GridObject::of(const Control& control) {
    return dynamic_cast<GridObject*>(control.inner.get());
}

DataControlObject* GridObject::source() const {
    const Control* data = control_.form().find(control_.prop(DataSourceProperty).toString());
    return data ? DataControlObject::of(*data) : nullptr;
}

QStringList GridObject::columns() const {
    return control_.prop(ColumnsProperty).toStringList();
}

QVariant GridObject::get(const QString& name, const QVariantList& index) {
    if (is(name, "Row")) {
        DataControlObject* data = source();
        if (!data || data->recordset().State() != db::adStateOpen)
            return -1;
        const int position = data->recordset().AbsolutePosition();
        return position >= 1 ? position - 1 : -1;
    }
    if (is(name, "ColumnCount"))
        return static_cast<int>(columns().size());
    return AutoObject::get(name, index);
}

void GridObject::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "Row")) {
        DataControlObject* data = source();
        const int row = vb::toInt32(value);
        if (!data || data->recordset().State() != db::adStateOpen)
            raiseError(NoCurrentRecord, QStringLiteral("Either BOF or EOF is True, or the current record has "
                                                       "been deleted"));
        if (row < 0 || row >= data->recordset().RecordCount())
            raiseError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
        data->recordset().setAbsolutePosition(row + 1);
        return;
    }
    AutoObject::set(name, value, index);
}

QVariant GridObject::call(const QString& name, QVariantList& args) {
    if (is(name, "AutoSize")) {
        const int column = vb::toInt32(args.value(0));
        if (column < 0 || column >= columns().size())
            raiseError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
        QVariantList sized = control_.prop(AutoSizedProperty).toList();
        sized << column;
        control_.setProp(AutoSizedProperty, sized);
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList GridObject::memberNames() const {
    return {QStringLiteral("Row"), QStringLiteral("ColumnCount"), QStringLiteral("AutoSize")};
}

} // namespace tessaly
