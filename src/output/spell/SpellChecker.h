#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <mutex>
#include <vector>

class Hunspell;

namespace tessaly::spell {

// One word of a text: where it starts and how long it is.
struct WordSpan {
    int position = 0;
    int length = 0;
};

// The spelling check of the e-mail window, built on Hunspell with the
// dictionaries installed on the machine. The language is the first one
// installed of British English, then the other English dictionaries, then
// any other; the folders searched are those of $DICPATH, then the system's
// Hunspell and MySpell folders.
class SpellChecker {
public:
    // A checker on the preferred installed dictionary.
    SpellChecker();
    // A checker on the dictionary pair "<folder>/<language>.aff" and ".dic".
    SpellChecker(const QString& folder, const QString& language);
    ~SpellChecker();

    // The checker that the program shares; the dictionary is read once.
    static SpellChecker& shared();

    bool available() const { return static_cast<bool>(engine_); }
    // The language of the dictionary in use ("en_GB"), empty when none is installed.
    const QString& language() const { return language_; }
    // The dictionary files found, in the order of preference.
    static QStringList installedLanguages();

    // Whether the dictionary knows the word. Without a dictionary every word passes.
    bool check(const QString& word) const;
    // The dictionary's suggestions for a word, best first.
    QStringList suggest(const QString& word) const;

    // The words of a text that are to be checked: runs of letters with
    // apostrophes inside them. Chunks between blanks that hold a digit, an
    // "@" or a "://" (sizes, addresses, links) are passed over.
    static std::vector<WordSpan> words(const QString& text);

private:
    void open(const QString& folder, const QString& language);
    QByteArray encode(const QString& word) const;
    QString decode(const std::string& word) const;

    std::unique_ptr<Hunspell> engine_;
    QString language_;
    bool utf8_ = true;
    mutable std::mutex mutex_;
};

} // namespace tessaly::spell
