#pragma once

#include <QString>
#include <functional>

namespace tessaly::db {

class DataControl;

// A text box bound to a data control by its data field. The box shows the
// field of the current row (empty for a Null or when there is no current
// row); an edit of the box writes the field at once, which puts the row into
// edit (EditMode adEditInProgress) until the recordset's Update writes it or
// CancelUpdate drops it.
class BoundField {
public:
    BoundField(DataControl& control, QString dataField);
    ~BoundField();
    BoundField(const BoundField&) = delete;
    BoundField& operator=(const BoundField&) = delete;

    const QString& DataField() const { return dataField_; }
    // The text the box shows.
    QString Text() const;
    // An edit of the box; a text equal to the one shown changes nothing.
    // Raises the recordset's errors (3251 read-only, 3021 no row, 13 a value
    // the field cannot take).
    void setText(const QString& text);

    // Told the new text whenever the shown value changes by a move, a
    // refresh, an Update or a CancelUpdate.
    std::function<void(const QString& text)> onTextChanged;

private:
    DataControl& control_;
    QString dataField_;
    int listener_ = 0;
};

// The text a box shows for a field value: dates as "dd/MM/yyyy" and the time
// when there is one, flags as True/False, Null as empty.
QString boundText(const QVariant& value, int fieldType);

} // namespace tessaly::db
