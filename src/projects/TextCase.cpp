#include "projects/TextCase.h"

namespace tessaly::projects {

namespace {

// The characters that separate words for the proper case.
bool separatesWords(QChar c) {
    switch (c.unicode()) {
    case 0x00: // NUL
    case 0x09: // tab
    case 0x0A: // line feed
    case 0x0B: // vertical tab
    case 0x0C: // form feed
    case 0x0D: // carriage return
    case 0x20: // blank
        return true;
    default:
        return false;
    }
}

} // namespace

QString properCase(const QString& text) {
    QString out = text.toLower();
    bool wordStart = true;
    for (QChar& c : out) {
        if (separatesWords(c)) {
            wordStart = true;
            continue;
        }
        if (wordStart)
            c = c.toUpper();
        wordStart = false;
    }
    return out;
}

QString trimSpaces(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == QLatin1Char(' '))
        ++first;
    while (last > first && text[last - 1] == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

QString applyCase(CaseRule rule, const QString& text) {
    switch (rule) {
    case CaseRule::Proper:
        return properCase(text);
    case CaseRule::Upper:
        return text.toUpper();
    case CaseRule::Lower:
        return text.toLower();
    case CaseRule::Unchanged:
        break;
    }
    return text;
}

} // namespace tessaly::projects
