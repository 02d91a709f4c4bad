#include "Dialect.h"

#include "ProjectSchema.h"

namespace tessaly::db {

QString Dialect::quote(const QString& name) const {
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QStringList Dialect::createTable(const TableDef& table) const {
    QStringList columns;
    QStringList indexes;
    for (const FieldDef& f : table.fields) {
        QString col = quote(f.name) + QLatin1Char(' ') + columnType(f);
        if (!f.references.isEmpty()) {
            const TableDef* parent = findTable(f.references);
            col += QStringLiteral(" REFERENCES %1(%2)").arg(quote(f.references), quote(parent->keyField));
            if (f.cascade)
                col += QStringLiteral(" ON DELETE CASCADE");
        }
        columns.append(col);
        if (f.indexed)
            indexes.append(
                QStringLiteral("CREATE INDEX %1 ON %2(%3)")
                    .arg(quote(table.name + QLatin1Char('_') + f.name), quote(table.name), quote(f.name)));
    }
    if (table.keyField.isEmpty())
        columns.append(hiddenKeyColumn());
    QStringList statements;
    statements.append(
        QStringLiteral("CREATE TABLE %1 (%2)").arg(quote(table.name), columns.join(QStringLiteral(", "))));
    statements.append(indexes);
    return statements;
}

} // namespace tessaly::db
