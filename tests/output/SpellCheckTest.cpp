// The spelling check on the installed Hunspell dictionaries, with the dialog
// answered by the scripted UI port.
#include "core/port/ScriptedUiPort.h"
#include "output/spell/SpellChecker.h"
#include "output/spell/VSSpell.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace tessaly::spell {
namespace {

TEST(SpellChecker, BritishEnglishComesFirst) {
    const QStringList languages = SpellChecker::installedLanguages();
    ASSERT_FALSE(languages.isEmpty());
    EXPECT_EQ(languages.first(), QStringLiteral("en_GB"));
    EXPECT_EQ(SpellChecker::shared().language(), QStringLiteral("en_GB"));
}

TEST(SpellChecker, KnowsBritishSpellingsAndSuggests) {
    const SpellChecker& c = SpellChecker::shared();
    ASSERT_TRUE(c.available());
    EXPECT_TRUE(c.check(QStringLiteral("colour")));
    EXPECT_TRUE(c.check(QStringLiteral("centre")));
    EXPECT_TRUE(c.check(QStringLiteral("doesn't")));
    EXPECT_TRUE(c.check(QStringLiteral("doesn’t")));
    EXPECT_FALSE(c.check(QStringLiteral("plese")));
    EXPECT_TRUE(c.suggest(QStringLiteral("plese")).contains(QStringLiteral("please")));
}

TEST(SpellChecker, WordsLeaveOutNumbersAddressesAndLinks) {
    const QString text = QStringLiteral("Dear Ann, the 1:50 plans for A4 are at www.x.test or ann@x.test; "
                                        "don't   wait.\nThanks");
    QStringList words;
    for (const WordSpan& w : SpellChecker::words(text))
        words << text.mid(w.position, w.length);
    EXPECT_EQ(words, (QStringList{QStringLiteral("Dear"), QStringLiteral("Ann"), QStringLiteral("the"),
                                  QStringLiteral("plans"), QStringLiteral("for"), QStringLiteral("are"),
                                  QStringLiteral("at"), QStringLiteral("or"), QStringLiteral("don't"),
                                  QStringLiteral("wait"), QStringLiteral("Thanks")}));
}

class VSSpellTest : public ::testing::Test {
protected:
    ScriptedUiPort port;
    QList<QJsonObject> offered;
    VSSpell spell{port};
    void SetUp() override {
        port.onEvent = [this](const QJsonObject& e) {
            if (e[QStringLiteral("event")].toString() == QLatin1String("spell"))
                offered << e;
        };
    }
};

TEST_F(VSSpellTest, ReplaceIgnoreAndTheCount) {
    spell.Text = QStringLiteral("Plese find the plans attachd. Plese call.");
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("Please")));
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("ignore")));
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("Please")));
    spell.CheckSpelling();
    EXPECT_EQ(spell.Text, QStringLiteral("Please find the plans attachd. Please call."));
    EXPECT_EQ(spell.ErrorCount, 3);
    ASSERT_EQ(offered.size(), 3);
    EXPECT_EQ(offered[0][QStringLiteral("word")].toString(), QStringLiteral("Plese"));
    EXPECT_EQ(offered[0][QStringLiteral("result")].toString(), QStringLiteral("Please"));
    EXPECT_TRUE(offered[0][QStringLiteral("suggestions")].toArray().contains(QStringLiteral("Please")));
    EXPECT_EQ(offered[1][QStringLiteral("word")].toString(), QStringLiteral("attachd"));
    EXPECT_EQ(offered[1][QStringLiteral("result")].toString(), QStringLiteral("ignore"));
    EXPECT_EQ(offered[2][QStringLiteral("word")].toString(), QStringLiteral("Plese"));
}

TEST_F(VSSpellTest, AnIgnoredWordIsPassedOverForTheRestOfTheCheck) {
    spell.Text = QStringLiteral("Tessaly draws. Tessaly keeps.");
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("ignore")));
    spell.CheckSpelling();
    EXPECT_EQ(spell.ErrorCount, 1);
    EXPECT_EQ(offered.size(), 1);
}

TEST_F(VSSpellTest, CancelEndsTheCheckWithTheTextAsItStands) {
    spell.Text = QStringLiteral("Plese find the plans attachd.");
    port.queueAnswer(QStringLiteral("spell"), QVariant(QStringLiteral("Please")));
    port.queueAnswer(QStringLiteral("spell"), std::nullopt);
    spell.CheckSpelling();
    EXPECT_EQ(spell.Text, QStringLiteral("Please find the plans attachd."));
    EXPECT_EQ(spell.ErrorCount, 2);
    EXPECT_EQ(offered[1][QStringLiteral("result")].toString(), QStringLiteral("cancel"));
}

TEST_F(VSSpellTest, WithNothingQueuedTheDialogIsCancelled) {
    spell.Text = QStringLiteral("Plese.");
    spell.CheckSpelling();
    EXPECT_EQ(spell.Text, QStringLiteral("Plese."));
    EXPECT_EQ(spell.ErrorCount, 1);
}

TEST_F(VSSpellTest, AWellSpeltTextOffersNothing) {
    spell.Text = QStringLiteral("Please find the colour plans of the centre attached.");
    spell.CheckSpelling();
    EXPECT_EQ(spell.ErrorCount, 0);
    EXPECT_TRUE(offered.isEmpty());
}

TEST(SpellChecker, WithoutADictionaryEveryWordPasses) {
    const SpellChecker none(QStringLiteral("/nonexistent"), QStringLiteral("xx_XX"));
    EXPECT_FALSE(none.available());
    EXPECT_TRUE(none.check(QStringLiteral("plese")));
    EXPECT_TRUE(none.suggest(QStringLiteral("plese")).isEmpty());
}

} // namespace
} // namespace tessaly::spell
