#include "SpellChecker.h"

#include <QDir>
#include <QFileInfo>
#include <QStringDecoder>
#include <QStringEncoder>
#include <hunspell/hunspell.hxx>

namespace tessaly::spell {

namespace {

// The dictionaries in the order they are preferred: British English first.
const QStringList PreferredLanguages{
    QStringLiteral("en_GB"), QStringLiteral("en_GB-large"), QStringLiteral("en_GB-ize"),
    QStringLiteral("en_IE"), QStringLiteral("en_AU"),       QStringLiteral("en_NZ"),
    QStringLiteral("en_ZA"), QStringLiteral("en_CA"),       QStringLiteral("en_US")};
// The system's dictionary folders, after those of $DICPATH.
const QStringList SystemFolders{QStringLiteral("/usr/share/hunspell"),
                                QStringLiteral("/usr/share/myspell/dicts"),
                                QStringLiteral("/usr/share/myspell")};
// The encoding name that Hunspell gives for a UTF-8 dictionary.
const QString Utf8Encoding = QStringLiteral("UTF-8");

QStringList folders() {
    QStringList out;
    for (const QString& f : qEnvironmentVariable("DICPATH").split(QLatin1Char(':'), Qt::SkipEmptyParts))
        out << f;
    return out + SystemFolders;
}

bool hasPair(const QString& folder, const QString& language) {
    return QFileInfo::exists(folder + QLatin1Char('/') + language + QStringLiteral(".aff")) &&
           QFileInfo::exists(folder + QLatin1Char('/') + language + QStringLiteral(".dic"));
}

bool isApostrophe(QChar c) {
    return c == QLatin1Char('\'') || c == QChar(0x2019);
}

// Whether a chunk between blanks is no prose to check.
bool passedOver(QStringView chunk) {
    for (const QChar c : chunk)
        if (c.isDigit() || c == QLatin1Char('@'))
            return true;
    return chunk.contains(QLatin1String("://")) ||
           chunk.startsWith(QLatin1String("www."), Qt::CaseInsensitive);
}

// The words in one chunk between blanks.
void wordsOf(const QString& text, int start, int end, std::vector<WordSpan>& out) {
    int i = start;
    while (i < end) {
        while (i < end && !text.at(i).isLetter())
            ++i;
        const int begin = i;
        while (i < end &&
               (text.at(i).isLetter() || text.at(i).isMark() ||
                (isApostrophe(text.at(i)) && i + 1 < end && text.at(i + 1).isLetter() && i > begin)))
            ++i;
        if (i > begin)
            out.push_back({begin, i - begin});
    }
}

} // namespace

SpellChecker::SpellChecker() {
    for (const QString& language : installedLanguages()) {
        for (const QString& folder : folders())
            if (hasPair(folder, language)) {
                open(folder, language);
                return;
            }
    }
}

SpellChecker::SpellChecker(const QString& folder, const QString& language) {
    if (hasPair(folder, language))
        open(folder, language);
}

SpellChecker::~SpellChecker() = default;

SpellChecker& SpellChecker::shared() {
    static SpellChecker checker;
    return checker;
}

QStringList SpellChecker::installedLanguages() {
    QStringList found;
    for (const QString& language : PreferredLanguages)
        for (const QString& folder : folders())
            if (hasPair(folder, language) && !found.contains(language))
                found << language;
    for (const QString& folder : folders())
        for (const QFileInfo& aff :
             QDir(folder).entryInfoList({QStringLiteral("*.aff")}, QDir::Files, QDir::Name))
            if (hasPair(folder, aff.completeBaseName()) && !found.contains(aff.completeBaseName()))
                found << aff.completeBaseName();
    return found;
}

void SpellChecker::open(const QString& folder, const QString& language) {
    const QByteArray aff = QFile::encodeName(folder + QLatin1Char('/') + language + QStringLiteral(".aff"));
    const QByteArray dic = QFile::encodeName(folder + QLatin1Char('/') + language + QStringLiteral(".dic"));
    engine_ = std::make_unique<Hunspell>(aff.constData(), dic.constData());
    language_ = language;
    utf8_ =
        QString::fromStdString(engine_->get_dict_encoding()).compare(Utf8Encoding, Qt::CaseInsensitive) == 0;
}

QByteArray SpellChecker::encode(const QString& word) const {
    if (utf8_)
        return word.toUtf8();
    QStringEncoder encoder(QString::fromStdString(engine_->get_dict_encoding()).toLatin1().constData());
    return encoder.isValid() ? QByteArray(encoder(word)) : word.toLatin1();
}

QString SpellChecker::decode(const std::string& word) const {
    if (utf8_)
        return QString::fromStdString(word);
    QStringDecoder decoder(QString::fromStdString(engine_->get_dict_encoding()).toLatin1().constData());
    return decoder.isValid()
               ? QString(decoder(QByteArrayView(word.data(), static_cast<qsizetype>(word.size()))))
               : QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

bool SpellChecker::check(const QString& word) const {
    if (!engine_)
        return true;
    QString plain = word;
    plain.replace(QChar(0x2019), QLatin1Char('\''));
    const std::lock_guard lock(mutex_);
    return engine_->spell(encode(plain).toStdString());
}

QStringList SpellChecker::suggest(const QString& word) const {
    QStringList out;
    if (!engine_)
        return out;
    QString plain = word;
    plain.replace(QChar(0x2019), QLatin1Char('\''));
    const std::lock_guard lock(mutex_);
    for (const std::string& s : engine_->suggest(encode(plain).toStdString()))
        out << decode(s);
    return out;
}

std::vector<WordSpan> SpellChecker::words(const QString& text) {
    std::vector<WordSpan> out;
    int i = 0;
    const int n = static_cast<int>(text.size());
    while (i < n) {
        while (i < n && text.at(i).isSpace())
            ++i;
        const int start = i;
        while (i < n && !text.at(i).isSpace())
            ++i;
        if (i > start && !passedOver(QStringView(text).mid(start, i - start)))
            wordsOf(text, start, i, out);
    }
    return out;
}

} // namespace tessaly::spell
