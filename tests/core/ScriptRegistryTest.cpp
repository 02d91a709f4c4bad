// The script driver's vocabulary as a registry that subsystems extend: their
// commands, answer kinds, print forms and events reach the runner, and an
// event the registry does not know stops the script.
#include "core/script/ScriptRegistry.h"
#include "core/script/CoreCommands.h"
#include "core/script/ScriptRunner.h"
#include "program/Program.h"

#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::script;

namespace {

// A runner on a fresh home, with the core's vocabulary and whatever a test adds.
class RegistryRun : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString output, errors;
    QTextStream out{&output}, err{&errors};
    Registry registry;

    void SetUp() override { addCoreCommands(registry); }

    int run(const QString& script) {
        Runner runner(registry, program::scriptProgram(), dir.path(), QSize(1024, 768), out, err);
        return runner.run(script);
    }
    QStringList lines() const { return output.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
};

TEST(ScriptTokens, QuotesEscapesAndBareTokensWithQuotedArguments) {
    const Tokens t = tokenize(QStringLiteral(R"(set frmMain.List1.List("a b") "x \"y\"\n" 12)"));
    ASSERT_EQ(t.size(), 4);
    EXPECT_EQ(t[1].text, QStringLiteral(R"(frmMain.List1.List("a b"))"));
    EXPECT_FALSE(t[1].quoted);
    EXPECT_EQ(t[2].text, QStringLiteral("x \"y\"\n"));
    EXPECT_TRUE(t[2].quoted);
    EXPECT_TRUE(t[0].is("SET"));
    EXPECT_FALSE(t[2].is("x"));
    EXPECT_THROW(tokenize(QStringLiteral("type a \"open")), LineError);
}

TEST(ScriptRegistryNames, EntriesAreFoundWithoutRegardToCaseAndPrintFormsByArity) {
    Registry r;
    r.command(QStringLiteral("Mouse"), [](Runner&, const Tokens&) {});
    r.printForm(QStringLiteral("shapes"), 1, [](Runner&, const Tokens&) { return QJsonValue(1); });
    EXPECT_NE(r.findCommand(QStringLiteral("mouse")), nullptr);
    EXPECT_EQ(r.findCommand(QStringLiteral("mice")), nullptr);
    EXPECT_NE(r.findPrintForm(QStringLiteral("SHAPES"), 1), nullptr);
    EXPECT_EQ(r.findPrintForm(QStringLiteral("shapes"), 2), nullptr);
    EXPECT_EQ(r.commands(), QStringList{QStringLiteral("Mouse")});
}

TEST(ScriptRegistryNames, TheWholeProgramKnowsTheCoreAndWorkspaceVocabulary) {
    Registry r;
    program::addScriptCommands(r);
    for (const char* verb : {"install", "start", "answer", "click", "type", "select", "tick", "close", "set",
                             "call", "print", "canvas"})
        EXPECT_NE(r.findCommand(QString::fromLatin1(verb)), nullptr) << verb;
    for (const char* kind : {"msgbox", "input", "open", "save", "folder", "colour"})
        EXPECT_NE(r.findAnswer(QString::fromLatin1(kind)), nullptr) << kind;
    EXPECT_NE(r.findPrintForm(QStringLiteral("shapes"), 1), nullptr);
    EXPECT_NE(r.findPrintForm(QStringLiteral("sql"), 1), nullptr);
    EXPECT_TRUE(r.knowsEvent(QStringLiteral("msgbox")));
    EXPECT_TRUE(r.knowsEvent(QStringLiteral("sleep")));
}

TEST_F(RegistryRun, ACommandAddedBySubsystemRunsWithTheLineTokens) {
    registry.command(QStringLiteral("greet"), [](Runner& run, const Tokens& t) {
        run.writeLine({{QStringLiteral("greeting"), t[1].text}, {QStringLiteral("count"), t.size()}});
    });
    EXPECT_EQ(run(QStringLiteral("greet \"the office\" 2\n")), 0) << errors.toStdString();
    EXPECT_EQ(lines(), QStringList{QStringLiteral(R"({"count":3,"greeting":"the office"})")});
}

TEST_F(RegistryRun, AnUnknownCommandStopsTheScriptWithStatusTwoAndItsLine) {
    EXPECT_EQ(run(QStringLiteral("# a comment\n\nfrobnicate x\nprint forms\n")), 2);
    EXPECT_EQ(errors, QStringLiteral("line 3: unknown command 'frobnicate': frobnicate x\n"));
    EXPECT_TRUE(output.isEmpty());
}

TEST_F(RegistryRun, AnAnswerKindAddedBySubsystemQueuesOnTheScriptedPort) {
    std::optional<QVariant> taken;
    bool had = false;
    registry.answer(QStringLiteral("spell"), [](Runner& run, const Token& v) {
        run.ui().queueAnswer(QStringLiteral("spell"),
                             v.is("cancel") ? std::nullopt : std::optional<QVariant>(v.text));
    });
    registry.command(QStringLiteral("takespell"), [&](Runner& run, const Tokens&) {
        had = run.ui().takeAnswer(QStringLiteral("SPELL"), taken);
    });
    EXPECT_EQ(run(QStringLiteral("answer spell colour\ntakespell\n")), 0) << errors.toStdString();
    EXPECT_TRUE(had);
    ASSERT_TRUE(taken.has_value());
    EXPECT_EQ(taken->toString(), QStringLiteral("colour"));
    EXPECT_EQ(run(QStringLiteral("takespell\n")), 0);
    EXPECT_FALSE(had);
    EXPECT_EQ(run(QStringLiteral("answer speling x\n")), 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("unknown answer kind 'speling'")));
}

TEST_F(RegistryRun, AnEventMustBeRegisteredBeforeTheProgramMayReportIt) {
    registry.command(QStringLiteral("send"), [](Runner& run, const Tokens&) {
        run.ui().notify(QStringLiteral("mail"), {{QStringLiteral("to"), QStringLiteral("a@b.example")}});
    });
    EXPECT_EQ(run(QStringLiteral("send\n")), 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("an event the driver does not know: 'mail'")))
        << errors.toStdString();

    registry.event(QStringLiteral("mail"), {QStringLiteral("to")});
    output.clear();
    errors.clear();
    EXPECT_EQ(run(QStringLiteral("send\n")), 0) << errors.toStdString();
    EXPECT_EQ(lines(), QStringList{QStringLiteral(R"({"event":"mail","to":"a@b.example"})")});
}

TEST_F(RegistryRun, APrintFormAddedBySubsystemAnswersPrintAndExpect) {
    registry.printForm(QStringLiteral("twice"), 1,
                       [](Runner&, const Tokens& e) { return QJsonValue(e[1].text.toInt() * 2); });
    EXPECT_EQ(run(QStringLiteral("print twice 21\nexpect twice 4 8\nexpect twice 4 9\n")), 1);
    EXPECT_EQ(lines().value(0), QStringLiteral(R"({"print":"twice 21","value":42})"));
    EXPECT_EQ(lines().value(1), QStringLiteral(R"({"expect":"twice 4","value":8,"want":"8"})"));
    EXPECT_EQ(errors, QStringLiteral("line 3: expectation failed: expect twice 4 9\n"));
}

} // namespace

namespace {

TEST(ScriptRaise, AnEventTheControlsKindNeverRaisesIsALineError) {
    QTemporaryDir dir;
    QString output, errors;
    QTextStream out(&output), err(&errors);
    Registry registry;
    program::addScriptCommands(registry);
    Runner runner(registry, program::scriptProgram(), dir.path(), QSize(1024, 768), out, err);
    EXPECT_EQ(runner.run(QStringLiteral("install\nstart\nraise frmMain.cmdToolBarButton(20).Click\n"
                                        "raise frmMain.cmdToolBarButton(20).BarDrawn 1 1\n")),
              2);
    EXPECT_TRUE(errors.startsWith(QStringLiteral("line 4: a CommandButton raises no event 'BarDrawn'")))
        << errors.toStdString();
}

} // namespace
