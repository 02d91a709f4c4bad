#pragma once

#include "core/runtime/AutoObject.h"

#include <QString>

namespace tessaly {
class UiPort;
}

namespace tessaly::spell {

class SpellChecker;

// The spell checker control of the e-mail window (VSSpell1): it holds a
// Text, and CheckSpelling offers each word the dictionary does not know in
// the spelling dialog, with the dictionary's suggestions. Replace puts the
// chosen word in the text; Ignore passes over the word, here and wherever it
// comes again in this check; Cancel ends the check with the text as it
// stands. ErrorCount is the number of words the dialog offered.
class VSSpell final : public AutoObject {
public:
    // On the given checker, or on the shared one (read at the first check) when none is given.
    explicit VSSpell(UiPort& ui, SpellChecker* checker = nullptr);

    QString Text;
    int ErrorCount = 0;

    void CheckSpelling();

    QString typeName() const override { return QStringLiteral("VSSpell"); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;

private:
    UiPort& ui_;
    SpellChecker* checker_;
};

} // namespace tessaly::spell
