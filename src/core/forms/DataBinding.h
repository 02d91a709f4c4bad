#pragma once

#include "core/db/DataControl.h"
#include "core/runtime/AutoObject.h"

#include <QStringList>
#include <memory>

namespace tessaly {

class Control;

// The recordset of a bound data control as the logic and the script driver
// reach it by name: BOF, EOF, RecordCount, AbsolutePosition, the moves and
// Fields("Name"). It keeps its data control alive.
class RecordsetObject final : public AutoObject {
public:
    RecordsetObject(std::shared_ptr<AutoObject> owner, db::Recordset& recordset);

    db::Recordset& recordset() const { return rs_; }

    QString typeName() const override { return QStringLiteral("Recordset"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    std::shared_ptr<AutoObject> owner_;
    db::Recordset& rs_;
};

// The engine behind a control of kind DataControl (RS1 of the e-mail
// window): a data control with its own connection, reached by name as
// ConnectionString, RecordSource, Refresh and Recordset. Every move of its
// recordset raises the control's MoveComplete with the reason, the error
// number (0 for none), the status and the recordset.
class DataControlObject final : public AutoObject {
public:
    explicit DataControlObject(Control& control);
    ~DataControlObject() override;

    // Gives `control` a data control, kept as its inner object, and returns it.
    static DataControlObject& attach(Control& control);
    // The data control behind a control, or null when it has none.
    static DataControlObject* of(const Control& control);

    db::DataControl& dataControl() { return data_; }
    db::Recordset& recordset() { return data_.recordset(); }

    QString typeName() const override { return QStringLiteral("Adodc"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    Control& control_;
    db::DataControl data_;
};

// The engine behind a control of kind Grid bound to a data control of its
// form (the control's DataSource property names it). Its columns show the
// fields named by its Columns property; Row is the row of the bound
// recordset's cursor (counted from 0), and setting it moves the cursor there
// as a click on the row does. AutoSize(i) sizes column i to its content; the
// columns sized so far are listed, in order, in the AutoSized property.
class GridObject final : public AutoObject {
public:
    explicit GridObject(Control& control);

    static GridObject& attach(Control& control, const QString& dataSource, const QStringList& columns);
    static GridObject* of(const Control& control);

    // The data control the grid shows, or null when its DataSource names none.
    DataControlObject* source() const;
    QStringList columns() const;

    QString typeName() const override { return QStringLiteral("DataGrid"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    Control& control_;
};

} // namespace tessaly
