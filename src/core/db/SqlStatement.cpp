#include "SqlStatement.h"

#include "DbErrors.h"
#include "Dialect.h"

#include <QSet>

namespace tessaly::db {

namespace {

// Words of the dialect that are never names.
bool isReserved(const QString& word) {
    static const QSet<QString> reserved = {
        QStringLiteral("select"), QStringLiteral("from"),     QStringLiteral("where"),
        QStringLiteral("and"),    QStringLiteral("or"),       QStringLiteral("not"),
        QStringLiteral("in"),     QStringLiteral("like"),     QStringLiteral("is"),
        QStringLiteral("null"),   QStringLiteral("between"),  QStringLiteral("inner"),
        QStringLiteral("left"),   QStringLiteral("right"),    QStringLiteral("outer"),
        QStringLiteral("full"),   QStringLiteral("cross"),    QStringLiteral("join"),
        QStringLiteral("on"),     QStringLiteral("as"),       QStringLiteral("group"),
        QStringLiteral("order"),  QStringLiteral("by"),       QStringLiteral("having"),
        QStringLiteral("union"),  QStringLiteral("distinct"), QStringLiteral("distinctrow"),
        QStringLiteral("top"),    QStringLiteral("all"),      QStringLiteral("true"),
        QStringLiteral("false"),  QStringLiteral("delete"),   QStringLiteral("update"),
        QStringLiteral("insert"), QStringLiteral("into"),     QStringLiteral("values"),
        QStringLiteral("set"),    QStringLiteral("asc"),      QStringLiteral("desc"),
        QStringLiteral("exists"), QStringLiteral("case"),     QStringLiteral("when"),
        QStringLiteral("then"),   QStringLiteral("else"),     QStringLiteral("end"),
        QStringLiteral("limit"),  QStringLiteral("percent"),
    };
    return reserved.contains(word.toLower());
}

bool isName(const Token& t) {
    return t.kind == TokenKind::QuotedIdentifier || (t.kind == TokenKind::Word && !isReserved(t.text));
}

[[noreturn]] void invalidStatement() {
    dberr::raiseCommandError(QStringLiteral(
        "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."));
}

// Checks that a token range is terms "operand = operand" joined by AND, in
// any parentheses. In a WHERE clause one side must be a field and the other
// a value; in a join's ON clause both sides are fields.
class ConditionShape {
public:
    enum class Mode { FieldEqualsValue, FieldEqualsField };

    ConditionShape(const std::vector<Token>& tokens, Mode mode) : t_(tokens), mode_(mode) {}

    bool matches(int begin, int end) {
        end_ = end;
        int i = begin;
        return begin < end && conjunction(i) && i == end;
    }

private:
    enum class Operand { None, Field, Value };

    bool at(int i, const char* symbol) const { return i < end_ && t_[i].isSymbol(symbol); }

    bool conjunction(int& i) {
        if (!term(i))
            return false;
        while (i < end_ && t_[i].isWord("AND")) {
            ++i;
            if (!term(i))
                return false;
        }
        return true;
    }

    bool term(int& i) {
        const int save = i;
        if (at(i, "(")) {
            ++i;
            if (conjunction(i) && at(i, ")")) {
                ++i;
                return true;
            }
            i = save;
        }
        return comparison(i);
    }

    bool comparison(int& i) {
        const Operand a = operand(i);
        if (a == Operand::None || !at(i, "="))
            return false;
        ++i;
        const Operand b = operand(i);
        if (mode_ == Mode::FieldEqualsField)
            return a == Operand::Field && b == Operand::Field;
        return (a == Operand::Field && b == Operand::Value) || (a == Operand::Value && b == Operand::Field);
    }

    Operand operand(int& i) {
        if (i >= end_)
            return Operand::None;
        if (at(i, "(")) {
            ++i;
            const Operand inner = operand(i);
            if (inner == Operand::None || !at(i, ")"))
                return Operand::None;
            ++i;
            return inner;
        }
        const Token& tok = t_[i];
        if (tok.kind == TokenKind::Number || tok.kind == TokenKind::String || tok.isWord("TRUE") ||
            tok.isWord("FALSE")) {
            ++i;
            return Operand::Value;
        }
        if (at(i, "-") && i + 1 < end_ && t_[i + 1].kind == TokenKind::Number) {
            i += 2;
            return Operand::Value;
        }
        if (isName(tok)) {
            ++i;
            if (at(i, ".") && i + 1 < end_ && isName(t_[i + 1]))
                i += 2;
            return Operand::Field;
        }
        return Operand::None;
    }

    const std::vector<Token>& t_;
    Mode mode_;
    int end_ = 0;
};

SelectItem readItem(const std::vector<Token>& t, int begin, int end) {
    SelectItem item;
    const int n = end - begin;
    auto aliasAt = [&](int i) -> bool {
        // [AS] alias after a field
        if (i == end)
            return true;
        if (t[i].isWord("AS") && i + 2 == end && isName(t[i + 1])) {
            item.alias = t[i + 1].text;
            return true;
        }
        if (i + 1 == end && isName(t[i])) {
            item.alias = t[i].text;
            return true;
        }
        return false;
    };
    if (n == 1 && t[begin].isSymbol("*")) {
        item.kind = SelectItem::Kind::Star;
        return item;
    }
    if (n == 3 && isName(t[begin]) && t[begin + 1].isSymbol(".") && t[begin + 2].isSymbol("*")) {
        item.kind = SelectItem::Kind::TableStar;
        item.table = t[begin].text;
        return item;
    }
    if (n >= 3 && isName(t[begin]) && t[begin + 1].isSymbol(".") && isName(t[begin + 2]) &&
        aliasAt(begin + 3)) {
        item.kind = SelectItem::Kind::Column;
        item.table = t[begin].text;
        item.column = t[begin + 2].text;
        return item;
    }
    if (n >= 1 && isName(t[begin]) && aliasAt(begin + 1)) {
        item.kind = SelectItem::Kind::Column;
        item.column = t[begin].text;
        return item;
    }
    item.kind = SelectItem::Kind::Expression;
    item.alias.clear();
    return item;
}

} // namespace

SqlStatement SqlStatement::parse(const QString& sql) {
    SqlStatement s;
    s.sql_ = sql;
    s.tokens_ = tokenize(sql);
    for (std::size_t i = 0; i < s.tokens_.size(); ++i) {
        if (!s.tokens_[i].isSymbol(";"))
            continue;
        if (i + 1 != s.tokens_.size())
            dberr::raiseCommandError(QStringLiteral("Characters found after end of SQL statement."));
        s.tokens_.pop_back();
        break;
    }
    if (s.tokens_.empty())
        invalidStatement();
    s.dropped_.assign(s.tokens_.size(), false);
    const Token& first = s.tokens_.front();
    if (first.isWord("SELECT"))
        s.parseSelect();
    else if (first.isWord("DELETE"))
        s.parseDelete();
    else if (first.isWord("UPDATE"))
        s.parseUpdate();
    else if (first.isWord("INSERT"))
        s.parseInsert();
    else
        invalidStatement();
    return s;
}

int SqlStatement::findAtTopLevel(int from, const QStringList& words) const {
    int depth = 0;
    for (int i = from; i < static_cast<int>(tokens_.size()); ++i) {
        const Token& t = tokens_[i];
        if (t.isSymbol("("))
            ++depth;
        else if (t.isSymbol(")"))
            --depth;
        else if (depth == 0 && t.kind == TokenKind::Word)
            for (const QString& w : words)
                if (t.text.compare(w, Qt::CaseInsensitive) == 0)
                    return i;
    }
    return -1;
}

void SqlStatement::parseSelect() {
    kind_ = StatementKind::Select;
    const int count = static_cast<int>(tokens_.size());
    int i = 1;
    bool plain = true;
    while (i < count && (tokens_[i].isWord("DISTINCT") || tokens_[i].isWord("DISTINCTROW") ||
                         tokens_[i].isWord("TOP") || tokens_[i].isWord("ALL"))) {
        plain = false;
        ++i;
    }
    fromIndex_ = findAtTopLevel(i, {QStringLiteral("FROM")});
    if (fromIndex_ < 0) {
        simpleSelect_ = false;
        return;
    }
    // The field list, split at top-level commas.
    int depth = 0;
    int itemStart = i;
    for (int k = i; k <= fromIndex_; ++k) {
        if (k < fromIndex_ && tokens_[k].isSymbol("("))
            ++depth;
        else if (k < fromIndex_ && tokens_[k].isSymbol(")"))
            --depth;
        if (k == fromIndex_ || (depth == 0 && tokens_[k].isSymbol(","))) {
            items_.push_back(readItem(tokens_, itemStart, k));
            if (items_.back().kind == SelectItem::Kind::Expression)
                plain = false;
            itemStart = k + 1;
        }
    }
    const QStringList clauseWords = {QStringLiteral("WHERE"), QStringLiteral("GROUP"),
                                     QStringLiteral("HAVING"), QStringLiteral("ORDER"),
                                     QStringLiteral("UNION")};
    const int fromEnd = [&] {
        const int e = findAtTopLevel(fromIndex_ + 1, clauseWords);
        return e < 0 ? count : e;
    }();
    if (!parseFrom(fromIndex_ + 1, fromEnd))
        plain = false;
    int next = fromEnd;
    if (next < count && tokens_[next].isWord("WHERE")) {
        whereBegin_ = next + 1;
        const int e = findAtTopLevel(whereBegin_, {QStringLiteral("GROUP"), QStringLiteral("HAVING"),
                                                   QStringLiteral("ORDER"), QStringLiteral("UNION")});
        whereEnd_ = e < 0 ? count : e;
        whereNamesRows_ =
            ConditionShape(tokens_, ConditionShape::Mode::FieldEqualsValue).matches(whereBegin_, whereEnd_);
        next = whereEnd_;
    }
    if (next < count) {
        if (tokens_[next].isWord("ORDER") && findAtTopLevel(next + 1, clauseWords) < 0)
            hasOrderBy_ = true;
        else
            plain = false;
    }
    simpleSelect_ = plain;
}

bool SqlStatement::parseFrom(int begin, int end) {
    // Parentheses around joins are the original engine's habit; they carry no meaning here.
    std::vector<int> idx;
    for (int k = begin; k < end; ++k)
        idx.push_back(k);
    std::size_t p = 0;
    bool plain = true;
    auto skipParens = [&] {
        while (p < idx.size() && (tokens_[idx[p]].isSymbol("(") || tokens_[idx[p]].isSymbol(")")))
            ++p;
    };
    auto readTable = [&]() -> bool {
        skipParens();
        if (p >= idx.size() || !isName(tokens_[idx[p]]))
            return false;
        TableRef ref;
        ref.name = tokens_[idx[p]].text;
        ++p;
        if (p < idx.size() && tokens_[idx[p]].isWord("AS") && p + 1 < idx.size() &&
            isName(tokens_[idx[p + 1]])) {
            ref.alias = tokens_[idx[p + 1]].text;
            p += 2;
        } else if (p < idx.size() && isName(tokens_[idx[p]])) {
            ref.alias = tokens_[idx[p]].text;
            ++p;
        }
        tables_.push_back(ref);
        skipParens();
        return true;
    };
    auto isJoinWord = [&](std::size_t q) {
        const Token& t = tokens_[idx[q]];
        return t.isWord("INNER") || t.isWord("LEFT") || t.isWord("RIGHT") || t.isWord("JOIN") ||
               t.isWord("FULL") || t.isWord("CROSS");
    };
    if (!readTable())
        return false;
    while (p < idx.size()) {
        const Token& t = tokens_[idx[p]];
        if (t.isSymbol(",")) {
            plain = false;
            ++p;
            if (!readTable())
                return false;
            continue;
        }
        if (!isJoinWord(p))
            return false;
        if (!(t.isWord("INNER") || t.isWord("LEFT") || t.isWord("JOIN")))
            plain = false;
        while (p < idx.size() && !tokens_[idx[p]].isWord("JOIN"))
            ++p;
        ++p;
        if (!readTable())
            return false;
        if (p >= idx.size() || !tokens_[idx[p]].isWord("ON"))
            return false;
        ++p;
        const std::size_t condBegin = p;
        while (p < idx.size() && !isJoinWord(p))
            ++p;
        // Trailing ")" that close parentheses opened before the join are not the condition's.
        int condEnd = idx[p - 1] + 1;
        int balance = 0;
        for (std::size_t q = condBegin; q < p; ++q)
            balance += tokens_[idx[q]].isSymbol("(") ? 1 : (tokens_[idx[q]].isSymbol(")") ? -1 : 0);
        while (balance < 0 && tokens_[condEnd - 1].isSymbol(")")) {
            --condEnd;
            ++balance;
        }
        if (!ConditionShape(tokens_, ConditionShape::Mode::FieldEqualsField).matches(idx[condBegin], condEnd))
            plain = false;
    }
    return plain;
}

void SqlStatement::parseDelete() {
    kind_ = StatementKind::Delete;
    const int count = static_cast<int>(tokens_.size());
    int i = 1;
    // Jet's "DELETE * FROM" and "DELETE Table.* FROM": the engines take "DELETE FROM".
    if (i < count && tokens_[i].isSymbol("*")) {
        dropped_[i] = true;
        ++i;
    } else if (i + 2 < count && isName(tokens_[i]) && tokens_[i + 1].isSymbol(".") &&
               tokens_[i + 2].isSymbol("*")) {
        dropped_[i] = dropped_[i + 1] = dropped_[i + 2] = true;
        i += 3;
    }
    if (i >= count || !tokens_[i].isWord("FROM"))
        invalidStatement();
    fromIndex_ = i;
    ++i;
    if (i >= count || !isName(tokens_[i]))
        invalidStatement();
    tables_.push_back({tokens_[i].text, QString()});
    ++i;
    if (i < count && tokens_[i].isWord("WHERE")) {
        whereBegin_ = i + 1;
        whereEnd_ = count;
        whereNamesRows_ =
            ConditionShape(tokens_, ConditionShape::Mode::FieldEqualsValue).matches(whereBegin_, whereEnd_);
    } else if (i < count) {
        dberr::raiseCommandError(QStringLiteral("Could not delete from specified tables."));
    }
}

void SqlStatement::parseUpdate() {
    kind_ = StatementKind::Update;
    const int count = static_cast<int>(tokens_.size());
    if (count < 4 || !isName(tokens_[1]) || !tokens_[2].isWord("SET"))
        invalidStatement();
    tables_.push_back({tokens_[1].text, QString()});
    const int where = findAtTopLevel(3, {QStringLiteral("WHERE")});
    if (where >= 0) {
        whereBegin_ = where + 1;
        whereEnd_ = count;
        whereNamesRows_ =
            ConditionShape(tokens_, ConditionShape::Mode::FieldEqualsValue).matches(whereBegin_, whereEnd_);
    }
}

void SqlStatement::parseInsert() {
    kind_ = StatementKind::Insert;
    const int count = static_cast<int>(tokens_.size());
    if (count < 3 || !tokens_[1].isWord("INTO") || !isName(tokens_[2]))
        invalidStatement();
    tables_.push_back({tokens_[2].text, QString()});
}

QString SqlStatement::whereText() const {
    if (whereBegin_ < 0 || whereBegin_ >= whereEnd_)
        return QString();
    const int from = tokens_[whereBegin_].start;
    return sql_.mid(from, tokens_[whereEnd_ - 1].end - from);
}

void SqlStatement::requireRowsNamed() const {
    if (whereNamesRows_)
        return;
    dberr::raiseCommandError(QStringLiteral("Query expression '%1' does not name the rows to change: only "
                                            "terms of the form field = value joined by AND may do that.")
                                 .arg(whereText()));
}

QString SqlStatement::renderToken(const Token& token, const Dialect& dialect) const {
    switch (token.kind) {
    case TokenKind::Word:
        if (token.isWord("TRUE") || token.isWord("FALSE"))
            return dialect.booleanLiteral(token.isWord("TRUE"));
        if (isReserved(token.text))
            return token.text;
        return dialect.identifier(token.text, false);
    case TokenKind::QuotedIdentifier:
        return dialect.identifier(token.text, true);
    case TokenKind::String: {
        QString value = token.text;
        value.replace(QLatin1Char('\''), QStringLiteral("''"));
        return QLatin1Char('\'') + value + QLatin1Char('\'');
    }
    case TokenKind::Number:
        return token.text;
    case TokenKind::Symbol:
        if (token.text == QLatin1String("&"))
            return QStringLiteral("||"); // Jet joins texts with &
        if (token.text == QLatin1String("!="))
            return QStringLiteral("<>");
        return token.text;
    }
    return token.text;
}

QString SqlStatement::render(const Dialect& dialect, const QString& extraSelect,
                             const QString& extraTail) const {
    QString out;
    out.reserve(sql_.size() + extraSelect.size() + extraTail.size() + 16);
    int previousEnd = 0;
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        const Token& t = tokens_[i];
        if (static_cast<int>(i) == fromIndex_ && kind_ == StatementKind::Select)
            out += extraSelect;
        out += sql_.mid(previousEnd, t.start - previousEnd);
        if (!dropped_[i])
            out += renderToken(t, dialect);
        previousEnd = t.end;
    }
    out += extraTail;
    return out;
}

} // namespace tessaly::db
