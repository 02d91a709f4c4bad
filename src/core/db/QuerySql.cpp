#include "QuerySql.h"

#include "Connection.h"
#include "DbErrors.h"
#include "Recordset.h"
#include "SqlStatement.h"
#include "Values.h"

namespace tessaly::db {

QList<QVariantMap> querySql(const QString& connectionString, const QString& sql) {
    if (SqlStatement::parse(sql).kind() != StatementKind::Select)
        dberr::raiseCommandError(QStringLiteral("Only a SELECT can be queried: '%1'.").arg(sql));
    Connection connection;
    connection.Open(connectionString);
    Recordset rs;
    rs.Open(sql, connection, adOpenForwardOnly, adLockReadOnly, adCmdText);
    QList<QVariantMap> rows;
    const int fields = rs.FieldCount();
    while (!rs.EOF_()) {
        QVariantMap row;
        for (int i = 0; i < fields; ++i) {
            QVariant v = rs.value(i);
            if (rs.FieldTypeOf(i) == FieldType::Date && v.isValid() && !v.isNull())
                v = values::dateFromSerial(v.toDouble()).toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss"));
            row.insert(rs.FieldName(i), v);
        }
        rows.append(row);
        rs.MoveNext();
    }
    rs.Close();
    return rows;
}

} // namespace tessaly::db
