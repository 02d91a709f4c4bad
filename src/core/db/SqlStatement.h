#pragma once

#include "SqlLexer.h"

#include <QString>
#include <vector>

namespace tessaly::db {

class Dialect;

enum class StatementKind { Select, Delete, Update, Insert };

struct TableRef {
    QString name;
    QString alias;
    // How the statement refers to the table in qualified names.
    const QString& refName() const { return alias.isEmpty() ? name : alias; }
};

struct SelectItem {
    enum class Kind {
        Star,       // *
        TableStar,  // Table.*
        Column,     // Table.Field or Field, perhaps with an alias
        Expression, // anything else
    };
    Kind kind = Kind::Expression;
    QString table;
    QString column;
    QString alias;
};

// One statement as the program builds it, in the original engine's dialect,
// read into its parts.
//
// A text holds exactly one statement: a second one after the first, or any
// text after the closing semicolon, is refused ("Characters found after end of
// SQL statement.", run-time error -2147217900), so that a quote typed into a
// name can break a query but never run another one.
class SqlStatement {
public:
    // Reads `sql`; raises -2147217900 for a text that is not one statement of
    // a kind the layer runs (SELECT, DELETE, UPDATE, INSERT).
    static SqlStatement parse(const QString& sql);

    StatementKind kind() const { return kind_; }
    const QString& text() const { return sql_; }
    const std::vector<TableRef>& tables() const { return tables_; }
    const std::vector<SelectItem>& items() const { return items_; }

    // A SELECT whose fields are plain fields of tables joined by equal keys,
    // with no grouping, so that each row can be traced to rows of its tables.
    bool isSimpleSelect() const { return simpleSelect_; }
    bool hasWhere() const { return whereBegin_ >= 0; }
    bool hasOrderBy() const { return hasOrderBy_; }
    // True when the WHERE clause, if any, names rows only by terms
    // "field = value" joined by AND, in any parentheses: such a clause can
    // only narrow the rows, whatever a typed value did to the text.
    bool namesRowsByEquality() const { return whereNamesRows_; }
    QString whereText() const;

    // Raises -2147217900 unless a statement that changes rows names them by
    // equality (see namesRowsByEquality).
    void requireRowsNamed() const;

    // The statement for an engine. `extraSelect` is put at the end of the
    // field list of a SELECT (", T.key AS k"), `extraTail` at the end of the
    // statement (" ORDER BY ..."). The closing semicolon is left out.
    QString render(const Dialect& dialect, const QString& extraSelect = {},
                   const QString& extraTail = {}) const;

private:
    void parseSelect();
    void parseDelete();
    void parseUpdate();
    void parseInsert();
    bool parseFrom(int begin, int end);
    int findAtTopLevel(int from, const QStringList& words) const;
    QString renderToken(const Token& token, const Dialect& dialect) const;

    QString sql_;
    std::vector<Token> tokens_; // without the closing semicolon
    std::vector<bool> dropped_; // tokens the engines do not take (DELETE's "*")
    StatementKind kind_ = StatementKind::Select;
    std::vector<TableRef> tables_;
    std::vector<SelectItem> items_;
    bool simpleSelect_ = false;
    bool hasOrderBy_ = false;
    bool whereNamesRows_ = true;
    int fromIndex_ = -1;
    int whereBegin_ = -1; // first token after WHERE
    int whereEnd_ = -1;
};

} // namespace tessaly::db
