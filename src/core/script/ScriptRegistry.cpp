#include "core/script/ScriptRegistry.h"

namespace tessaly::script {

void Registry::command(const QString& verb, Command c) {
    commands_[key(verb)] = {verb, std::move(c)};
}

void Registry::answer(const QString& kind, AnswerKind a) {
    answers_[key(kind)] = {kind, std::move(a)};
}

void Registry::printForm(const QString& head, int arguments, PrintForm form) {
    prints_[key(head)] = {head, Print{arguments, std::move(form)}};
}

void Registry::event(const QString& name, QStringList fields) {
    events_[key(name)] = {name, std::move(fields)};
}

const Command* Registry::findCommand(const QString& verb) const {
    const auto it = commands_.find(key(verb));
    return it == commands_.end() ? nullptr : &it->second.second;
}

const AnswerKind* Registry::findAnswer(const QString& kind) const {
    const auto it = answers_.find(key(kind));
    return it == answers_.end() ? nullptr : &it->second.second;
}

const PrintForm* Registry::findPrintForm(const QString& head, qsizetype arguments) const {
    const auto it = prints_.find(key(head));
    if (it == prints_.end() || it->second.second.arguments != arguments)
        return nullptr;
    return &it->second.second.form;
}

bool Registry::knowsEvent(const QString& name) const {
    return events_.contains(key(name));
}

template <class T> QStringList Registry::names(const std::map<QString, std::pair<QString, T>>& entries) {
    QStringList out;
    for (const auto& [k, entry] : entries)
        out << entry.first;
    return out;
}

QStringList Registry::commands() const {
    return names(commands_);
}

QStringList Registry::answerKinds() const {
    return names(answers_);
}

QStringList Registry::printForms() const {
    return names(prints_);
}

QStringList Registry::events() const {
    return names(events_);
}

} // namespace tessaly::script
