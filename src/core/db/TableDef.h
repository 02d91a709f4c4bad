#pragma once

#include <QList>
#include <QString>

namespace tessaly::db {

// The kinds of field the project tables hold.
enum class FieldType {
    Counter,  // 32-bit key numbered by the database
    Long,     // 32-bit signed number
    Short,    // 16-bit signed number
    Text,     // variable text
    Memo,     // free multi-line text
    Date,     // date and time; a date serial in the program
    Currency, // money, exact to four decimals
    Boolean,  // yes/no, read back as -1 and 0
    Variant,  // a column of no known table: values pass as the engine gives them
};

// The column that keys rows of a table the program sees without a key. It is
// hidden from the fields of every recordset.
inline const QString HiddenRowKey = QStringLiteral("tessaly_rowid");
// Columns whose names start with this are the layer's own and never shown.
inline const QString HiddenPrefix = QStringLiteral("tessaly_");

struct FieldDef {
    QString name;
    FieldType type = FieldType::Text;
    QString references;        // the table whose key this field refers to, if a relation is enforced
    bool cascade = false;      // deleting the referred row deletes this one
    bool indexed = false;      // looked up by the queries, so indexed
    bool defaultNow = false;   // filled with the date and time of adding when not written
    bool defaultFalse = false; // a flag that starts as 0
};

struct TableDef {
    QString name;
    QList<FieldDef> fields;
    QString keyField; // the generated key the program sees; empty for tables keyed by HiddenRowKey

    // The column that identifies a row for Update and Delete.
    QString rowKey() const { return keyField.isEmpty() ? HiddenRowKey : keyField; }
    // The field of that name, matched without regard to case, or nullptr.
    const FieldDef* field(const QString& fieldName) const;
};

} // namespace tessaly::db
