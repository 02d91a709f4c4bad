#pragma once

#include "core/files/AppHome.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"

#include <QJsonValue>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <memory>
#include <stdexcept>

namespace tessaly {

class Application;
class AutoObject;
namespace canvas {
class POLARDraw;
}

// One token of a script line; quoted tokens keep that they were quoted.
struct ScriptToken {
    QString text;
    bool quoted = false;
};

// A line that cannot be run: exit status 2.
struct ScriptLineError : std::runtime_error {
    explicit ScriptLineError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

// Runs tessaly-script scripts: the whole application headless through the
// scripted UI port, one command a line, state printed as JSON lines.
class ScriptRunner {
public:
    ScriptRunner(QString homeDir, QSize screen, QTextStream& out, QTextStream& err);
    ~ScriptRunner();

    // Runs the script text; returns the exit status (0 ran to its end,
    // 1 an expect failed, 2 a line could not be run).
    int run(const QString& script);

    static QList<ScriptToken> tokenize(const QString& line);

private:
    void runLine(const QList<ScriptToken>& tokens); // throws ScriptLineError
    bool expect(const QList<ScriptToken>& tokens);  // false: the expectation failed

    void cmdStart();
    void cmdAnswer(const QList<ScriptToken>& t);
    void cmdInput(const QString& verb, const QList<ScriptToken>& t);
    void cmdSet(const QList<ScriptToken>& t);
    void cmdCall(const QList<ScriptToken>& t);
    void cmdCanvas(const QList<ScriptToken>& t);
    canvas::POLARDraw& resolveCanvas(const QString& path);
    QJsonValue evaluate(const QList<ScriptToken>& expr);

    Application& app();
    class Control& resolveControl(const QString& path);
    std::shared_ptr<AutoObject> resolveParent(const QString& path, QString& member, QVariantList& index);
    QVariant resolveValue(const QString& path);
    void requireInput(class Form& form, const QString& what);
    QVariant parseArgument(const ScriptToken& token) const;
    void writeLine(const QJsonObject& o);

    QString homeDir_;
    QSize screen_;
    QTextStream& out_;
    QTextStream& err_;
    ScriptedUiPort ui_;
    RecordingWaiter waiter_;
    std::unique_ptr<Application> app_;
    std::vector<std::unique_ptr<Application>> retired_;
};

// Turns a value of the object model into the JSON that print shows.
QJsonValue toJson(const QVariant& value);

} // namespace tessaly
