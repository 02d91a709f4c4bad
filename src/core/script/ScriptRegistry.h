#pragma once

#include "core/script/ScriptToken.h"

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>

namespace tessaly::script {

class Runner;

// A command of the script driver: the whole line's tokens, the verb first.
using Command = std::function<void(Runner&, const Tokens&)>;
// An answer kind of `answer KIND VALUE`: queues the answer of the next dialog of that kind.
using AnswerKind = std::function<void(Runner&, const Token& value)>;
// A form of `print` and `expect` that is not a property path, such as
// `shapes NAME`: given the whole expression, its head first.
using PrintForm = std::function<QJsonValue(Runner&, const Tokens& expression)>;

// The script driver's vocabulary. The core enters its commands, answer kinds,
// print forms and UI port events, and every subsystem adds its own from its
// folder; the program collects them all in one registry that the runner reads.
// Names are matched without regard to case. A second entry of a name replaces
// the first.
class Registry {
public:
    void command(const QString& verb, Command command);
    void answer(const QString& kind, AnswerKind kind_);
    // A print form whose expression is `head` followed by `arguments` tokens.
    void printForm(const QString& head, int arguments, PrintForm form);
    // An event that the program reports on the script's output
    // ({"event": NAME, ...}), with the fields it carries.
    void event(const QString& name, QStringList fields);

    const Command* findCommand(const QString& verb) const;
    const AnswerKind* findAnswer(const QString& kind) const;
    const PrintForm* findPrintForm(const QString& head, qsizetype arguments) const;
    bool knowsEvent(const QString& name) const;

    QStringList commands() const;
    QStringList answerKinds() const;
    QStringList printForms() const;
    QStringList events() const;

private:
    static QString key(const QString& name) { return name.toLower(); }
    template <class T> static QStringList names(const std::map<QString, std::pair<QString, T>>& entries);

    std::map<QString, std::pair<QString, Command>> commands_;
    std::map<QString, std::pair<QString, AnswerKind>> answers_;
    struct Print {
        int arguments;
        PrintForm form;
    };
    std::map<QString, std::pair<QString, Print>> prints_;
    std::map<QString, std::pair<QString, QStringList>> events_;
};

} // namespace tessaly::script
