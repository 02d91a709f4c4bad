// The schedule's script commands as behaviour scripts: each script in
// scripts/ runs on a fresh application home through the script driver, with
// the test form frmScheduleTest registered beside the program's own forms.
// Its output must equal the .out file beside it, line for line (the home's
// path written as $HOME). A script may say in its first lines
// "# status: N" (the driver's exit status, 0 by default) and
// "# error: TEXT" (what standard error must contain).
#include "ScheduleSupport.h"
#include "core/app/CoreApplication.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "program/Program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

namespace tessaly::schedule::testing {
namespace {

QString readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

QString header(const QString& script, const char* name) {
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("^# %1: *(.*)$").arg(QLatin1String(name)),
                           QRegularExpression::MultilineOption)
            .match(script);
    return m.hasMatch() ? m.captured(1).trimmed() : QString();
}

class ScheduleScriptTest : public ::testing::TestWithParam<QString> {};

TEST_P(ScheduleScriptTest, OutputIsAsRecorded) {
    const QString path = QStringLiteral(SCHEDULE_SCRIPT_DIR "/") + GetParam();
    const QString script = readFile(path);
    ASSERT_FALSE(script.isEmpty()) << path.toStdString();
    QTemporaryDir home;
    script::Registry registry;
    program::addScriptCommands(registry);
    script::Program program = program::scriptProgram();
    const auto make = program.makeApplication;
    program.makeApplication = [make](UiPort& ui, Waiter& waiter, AppHome h) {
        std::unique_ptr<CoreApplication> app = make(ui, waiter, std::move(h));
        tessaly::testing::registerScheduleTestForm(*app);
        return app;
    };
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    const QString oldDir = QDir::currentPath();
    int status = 0;
    {
        script::Runner runner(registry, program, home.path(), QSize(1024, 768), out, err);
        status = runner.run(script);
    }
    QDir::setCurrent(oldDir);
    outText.replace(QDir(home.path()).absolutePath(), QStringLiteral("$HOME"));
    const QString wantStatus = header(script, "status");
    EXPECT_EQ(status, wantStatus.isEmpty() ? 0 : wantStatus.toInt()) << errText.toStdString();
    const QString wantError = header(script, "error");
    if (!wantError.isEmpty()) {
        EXPECT_TRUE(errText.contains(wantError)) << errText.toStdString();
    }
    const QString expectedPath = path.left(path.size() - 4) + QStringLiteral(".out");
    const QString expected = readFile(expectedPath);
    if (expected.isEmpty()) {
        // The output is left beside the test binary, to be read and then recorded.
        QFile actual(QFileInfo(expectedPath).fileName() + QStringLiteral(".actual"));
        if (actual.open(QIODevice::WriteOnly))
            actual.write(outText.toUtf8());
        FAIL() << "no " << expectedPath.toStdString() << "; the output was:\n" << outText.toStdString();
    }
    EXPECT_EQ(outText.toStdString(), expected.toStdString());
}

QStringList scripts() {
    return QDir(QStringLiteral(SCHEDULE_SCRIPT_DIR))
        .entryList({QStringLiteral("*.tss")}, QDir::Files, QDir::Name);
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScheduleScriptTest, ::testing::ValuesIn(scripts()),
                         [](const ::testing::TestParamInfo<QString>& script) {
                             return script.param.left(script.param.size() - 4).toStdString();
                         });

} // namespace
} // namespace tessaly::schedule::testing
