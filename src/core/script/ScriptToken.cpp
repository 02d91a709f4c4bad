#include "core/script/ScriptToken.h"

#include <QStringList>

namespace tessaly::script {

namespace {

QChar escaped(QChar e) {
    if (e == QLatin1Char('n'))
        return QLatin1Char('\n');
    if (e == QLatin1Char('r'))
        return QLatin1Char('\r');
    if (e == QLatin1Char('t'))
        return QLatin1Char('\t');
    return e;
}

// A quoted token from the opening quote at `i`; leaves `i` after the closing one.
Token quotedToken(const QString& line, qsizetype& i) {
    Token t{QString(), true};
    ++i;
    const qsizetype n = line.size();
    while (i < n) {
        const QChar c = line[i];
        if (c == QLatin1Char('\\') && i + 1 < n) {
            t.text += escaped(line[i + 1]);
            i += 2;
            continue;
        }
        ++i;
        if (c == QLatin1Char('"'))
            return t;
        t.text += c;
    }
    throw LineError(QStringLiteral("unterminated quoted text"));
}

Token bareToken(const QString& line, qsizetype& i) {
    Token t;
    bool quoted = false;
    while (i < line.size() && (quoted || !line[i].isSpace())) {
        if (line[i] == QLatin1Char('"'))
            quoted = !quoted;
        t.text += line[i++];
    }
    return t;
}

} // namespace

Tokens tokenize(const QString& line) {
    Tokens tokens;
    qsizetype i = 0;
    while (i < line.size()) {
        while (i < line.size() && line[i].isSpace())
            ++i;
        if (i >= line.size())
            break;
        tokens << (line[i] == QLatin1Char('"') ? quotedToken(line, i) : bareToken(line, i));
    }
    return tokens;
}

QString joinTokens(const Tokens& t, qsizetype from) {
    QStringList parts;
    for (qsizetype i = from; i < t.size(); ++i)
        parts << (t[i].quoted ? QLatin1Char('"') + t[i].text + QLatin1Char('"') : t[i].text);
    return parts.join(QLatin1Char(' '));
}

} // namespace tessaly::script
