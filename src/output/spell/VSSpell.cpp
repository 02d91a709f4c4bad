#include "VSSpell.h"

#include "SpellChecker.h"
#include "core/port/UiPort.h"
#include "core/runtime/Vb.h"

#include <QSet>

namespace tessaly::spell {

namespace {
bool is(const QString& a, const char* b) {
    return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}
} // namespace

VSSpell::VSSpell(UiPort& ui, SpellChecker* checker) : ui_(ui), checker_(checker) {}

void VSSpell::CheckSpelling() {
    if (!checker_)
        checker_ = &SpellChecker::shared();
    ErrorCount = 0;
    QSet<QString> ignored;
    int from = 0;
    bool more = true;
    while (more) {
        more = false;
        for (const WordSpan& span : SpellChecker::words(Text)) {
            if (span.position < from)
                continue;
            const QString word = Text.mid(span.position, span.length);
            if (ignored.contains(word) || checker_->check(word))
                continue;
            ++ErrorCount;
            const SpellChoice choice = ui_.spellDialog({word, checker_->suggest(word), Text, span.position});
            if (choice.action == SpellChoice::Action::Cancel)
                return;
            if (choice.action == SpellChoice::Action::Ignore) {
                ignored.insert(word);
                from = span.position + span.length;
                continue;
            }
            // The text changed: its words are found again after the replacement.
            Text.replace(span.position, span.length, choice.replacement);
            from = span.position + static_cast<int>(choice.replacement.size());
            more = true;
            break;
        }
    }
}

QVariant VSSpell::get(const QString& name, const QVariantList& index) {
    if (is(name, "Text"))
        return Text;
    if (is(name, "ErrorCount"))
        return ErrorCount;
    return AutoObject::get(name, index);
}

void VSSpell::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "Text"))
        return void(Text = vb::toText(value));
    AutoObject::set(name, value, index);
}

QVariant VSSpell::call(const QString& name, QVariantList& args) {
    if (is(name, "CheckSpelling")) {
        CheckSpelling();
        return {};
    }
    return AutoObject::call(name, args);
}

QStringList VSSpell::memberNames() const {
    return {QStringLiteral("Text"), QStringLiteral("ErrorCount"), QStringLiteral("CheckSpelling")};
}

} // namespace tessaly::spell
