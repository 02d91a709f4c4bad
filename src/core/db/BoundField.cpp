#include "BoundField.h"

#include "DataControl.h"
#include "Values.h"
#include "core/runtime/Vb.h"

namespace tessaly::db {

QString boundText(const QVariant& value, int fieldType) {
    if (!value.isValid() || value.isNull())
        return QString();
    switch (static_cast<FieldType>(fieldType)) {
    case FieldType::Date: {
        const QDateTime dt = values::dateFromSerial(value.toDouble());
        if (dt.time() == QTime(0, 0))
            return dt.toString(QStringLiteral("dd/MM/yyyy"));
        return dt.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    }
    case FieldType::Boolean:
        return vb::toText(QVariant(value.toInt() != 0));
    default:
        return vb::toText(value);
    }
}

BoundField::BoundField(DataControl& control, QString dataField)
    : control_(control), dataField_(std::move(dataField)) {
    listener_ = control_.recordset().addListener([this](const RecordsetEvent&) {
        if (onTextChanged)
            onTextChanged(Text());
    });
}

BoundField::~BoundField() {
    control_.recordset().removeListener(listener_);
}

QString BoundField::Text() const {
    Recordset& rs = control_.recordset();
    if (rs.State() != adStateOpen || rs.BOF() || rs.EOF_() || rs.AbsolutePosition() == adPosUnknown)
        return QString();
    const int ordinal = rs.FieldOrdinal(dataField_);
    if (ordinal < 0)
        return QString();
    return boundText(rs.value(ordinal), static_cast<int>(rs.FieldTypeOf(ordinal)));
}

void BoundField::setText(const QString& text) {
    if (text == Text())
        return;
    control_.recordset().setValue(dataField_, text);
}

} // namespace tessaly::db
