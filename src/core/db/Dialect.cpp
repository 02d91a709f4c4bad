#include "Dialect.h"

#include "ProjectSchema.h"
#include "Values.h"

namespace tessaly::db {

namespace {

// A stored amount is the decimal text Tessaly writes; a whole number or a
// real written by other SQL names the amount itself, in pounds and pence.
qint64 currencyFromStorage(const QVariant& stored) {
    qint64 v = 0;
    if (stored.metaType().id() == QMetaType::QString && values::parseCurrencyText(stored.toString(), &v))
        return v;
    return values::currencyFromVariant(stored);
}

} // namespace

QString Dialect::quote(const QString& name) const {
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QVariant Dialect::toStorage(FieldType type, const QVariant& neutral) const {
    if (!neutral.isValid() || neutral.isNull())
        return QVariant();
    switch (type) {
    case FieldType::Date:
        return values::isoText(neutral.toDateTime());
    case FieldType::Boolean:
        return storedFlag(neutral.toBool());
    case FieldType::Currency:
        return values::currencyText(neutral.toLongLong());
    default:
        return neutral;
    }
}

QVariant Dialect::fromStorage(FieldType type, const QVariant& stored) const {
    if (!stored.isValid() || stored.isNull())
        return QVariant();
    switch (type) {
    case FieldType::Counter:
    case FieldType::Long:
    case FieldType::Short:
        return stored.toInt();
    case FieldType::Text:
    case FieldType::Memo:
        return stored.toString();
    case FieldType::Date:
        return dateFromStorage(stored);
    case FieldType::Currency:
        return static_cast<qlonglong>(currencyFromStorage(stored));
    case FieldType::Boolean:
        return flagFromStorage(stored);
    case FieldType::Variant:
        return stored;
    }
    return stored;
}

QString Dialect::insertInto(const QString& table, const QStringList& columns) const {
    if (columns.isEmpty())
        return QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quote(table));
    QStringList quoted;
    QStringList marks;
    for (const QString& c : columns) {
        quoted.append(quote(c));
        marks.append(QStringLiteral("?"));
    }
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(quote(table), quoted.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
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
