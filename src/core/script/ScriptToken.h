#pragma once

#include <QList>
#include <QString>
#include <stdexcept>

namespace tessaly::script {

// One token of a script line; quoted tokens keep that they were quoted.
struct Token {
    QString text;
    bool quoted = false;

    // A bare (unquoted) token that is `word`, in any case.
    bool is(const char* word) const {
        return !quoted && text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
};
using Tokens = QList<Token>;

// A line that cannot be run: exit status 2.
struct LineError : std::runtime_error {
    explicit LineError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

// Splits a line into tokens: blanks separate them; a token in double quotes
// may hold blanks and the escapes \" \\ \n \r \t. A bare token runs to the
// next blank, keeping quotes inside it (an argument of an indexed member).
Tokens tokenize(const QString& line);

// The tokens from `from` on, joined again as they were written.
QString joinTokens(const Tokens& tokens, qsizetype from = 0);

} // namespace tessaly::script
