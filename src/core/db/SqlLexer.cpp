#include "SqlLexer.h"

#include "DbErrors.h"

#include <QStringList>

namespace tessaly::db {

namespace {

bool isWordStart(QChar c) {
    return c.isLetter() || c == QLatin1Char('_');
}

bool isWordPart(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

[[noreturn]] void unterminated(const QString& sql, int from) {
    dberr::raiseCommandError(
        QStringLiteral("Syntax error in string in query expression '%1'.").arg(sql.mid(from)));
}

int readQuoted(const QString& sql, int i, QChar quote, QString* value) {
    const int from = i;
    ++i;
    while (true) {
        if (i >= sql.size())
            unterminated(sql, from);
        if (sql.at(i) == quote) {
            if (i + 1 < sql.size() && sql.at(i + 1) == quote) {
                value->append(quote);
                i += 2;
                continue;
            }
            return i + 1;
        }
        value->append(sql.at(i));
        ++i;
    }
}

int readNumber(const QString& sql, int i) {
    while (i < sql.size() && (sql.at(i).isDigit() || sql.at(i) == QLatin1Char('.')))
        ++i;
    // An exponent: 1E5, 2.5e-3.
    if (i < sql.size() && (sql.at(i) == QLatin1Char('e') || sql.at(i) == QLatin1Char('E'))) {
        int j = i + 1;
        if (j < sql.size() && (sql.at(j) == QLatin1Char('+') || sql.at(j) == QLatin1Char('-')))
            ++j;
        if (j < sql.size() && sql.at(j).isDigit()) {
            while (j < sql.size() && sql.at(j).isDigit())
                ++j;
            i = j;
        }
    }
    return i;
}

bool twoCharSymbol(const QString& sql, int i, QString* symbol) {
    if (i + 1 >= sql.size())
        return false;
    const QString two = sql.mid(i, 2);
    static const QStringList pairs = {QStringLiteral("<>"), QStringLiteral("<="), QStringLiteral(">="),
                                      QStringLiteral("!="), QStringLiteral("||")};
    if (pairs.contains(two)) {
        *symbol = two;
        return true;
    }
    return false;
}

} // namespace

std::vector<Token> tokenize(const QString& sql) {
    std::vector<Token> tokens;
    int i = 0;
    while (i < sql.size()) {
        const QChar c = sql.at(i);
        if (c.isSpace()) {
            ++i;
            continue;
        }
        Token t;
        t.start = i;
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            t.kind = TokenKind::String;
            i = readQuoted(sql, i, c, &t.text);
        } else if (c == QLatin1Char('[') || c == QLatin1Char('`')) {
            t.kind = TokenKind::QuotedIdentifier;
            const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('`');
            const int closing = sql.indexOf(close, i + 1);
            if (closing < 0)
                dberr::raiseCommandError(QStringLiteral("Invalid bracketing of name '%1'.").arg(sql.mid(i)));
            t.text = sql.mid(i + 1, closing - i - 1);
            i = closing + 1;
        } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < sql.size() && sql.at(i + 1).isDigit())) {
            t.kind = TokenKind::Number;
            i = readNumber(sql, i);
            t.text = sql.mid(t.start, i - t.start);
        } else if (isWordStart(c)) {
            t.kind = TokenKind::Word;
            while (i < sql.size() && isWordPart(sql.at(i)))
                ++i;
            t.text = sql.mid(t.start, i - t.start);
        } else {
            const QString pair = sql.mid(i, 2);
            if (pair == QLatin1String("--") || pair == QLatin1String("/*"))
                dberr::raiseCommandError(
                    QStringLiteral(
                        "Syntax error in query expression '%1': '%2' outside quotes is not allowed.")
                        .arg(sql.mid(i), pair));
            t.kind = TokenKind::Symbol;
            QString two;
            if (twoCharSymbol(sql, i, &two)) {
                t.text = two;
                i += 2;
            } else {
                t.text = QString(c);
                ++i;
            }
        }
        t.end = i;
        tokens.push_back(std::move(t));
    }
    return tokens;
}

} // namespace tessaly::db
