#pragma once

#include <QString>
#include <vector>

namespace tessaly::db {

enum class TokenKind {
    Word,             // a name or keyword, unquoted
    QuotedIdentifier, // [name] or `name`
    String,           // 'text' or "text"; `text` holds the value without quotes
    Number,           // 12, 3.5
    Symbol,           // ( ) , . ; * = <> <= >= < > + - / & | and the like
};

struct Token {
    TokenKind kind = TokenKind::Symbol;
    QString text;  // the name, the string's value, the number or the symbol
    int start = 0; // offset of the token's first character in the statement
    int end = 0;   // offset just after its last character

    bool isSymbol(const char* s) const { return kind == TokenKind::Symbol && text == QLatin1String(s); }
    bool isWord(const char* w) const {
        return kind == TokenKind::Word && text.compare(QLatin1String(w), Qt::CaseInsensitive) == 0;
    }
};

// Splits a statement into tokens, the way the original engine read it: single
// and double quotes enclose texts (a doubled quote stands for one), brackets
// enclose names. The engine knew no comments, so "--" and "/*" outside quotes
// are refused, and so is a text whose quote is never closed (run-time error
// -2147217900).
std::vector<Token> tokenize(const QString& sql);

} // namespace tessaly::db
