#include "workspace/WorkspaceScript.h"

#include "canvas/api/POLARDraw.h"
#include "core/app/CoreApplication.h"
#include "core/forms/Control.h"
#include "core/script/ScriptJson.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"

#include <QPointF>
#include <functional>

namespace tessaly {

using script::LineError;
using script::Runner;
using script::Tokens;

namespace {

constexpr int LeftButton = 1; // the platform's code of the left mouse button

canvas::POLARDraw& canvasOf(Control& c, const QString& path) {
    auto* engine = dynamic_cast<canvas::POLARDraw*>(c.inner.get());
    if (c.kind() != ControlKind::Canvas || !engine)
        throw LineError(QStringLiteral("'%1' has no drawing canvas").arg(path));
    return *engine;
}

// The numbers of a canvas action: page millimetres, buttons, shift values, key codes.
QList<double> actionNumbers(const Tokens& t) {
    QList<double> n;
    for (qsizetype i = 3; i < t.size(); ++i) {
        bool ok = false;
        n << t[i].text.toDouble(&ok);
        if (!ok)
            throw LineError(QStringLiteral("'%1' is not a number").arg(t[i].text));
    }
    return n;
}

// The input of one canvas action, as the widget would feed it.
std::function<void()> canvasInput(canvas::POLARDraw& c, const QString& action, const QList<double>& n) {
    const auto needs = [&](qsizetype least, qsizetype most) {
        if (n.size() < least || n.size() > most)
            throw LineError(QStringLiteral("wrong number of values for canvas %1").arg(action));
    };
    const auto at = [&](double x, double y) { return c.pageToScreen(QPointF(x, y)); };
    const auto whole = [&](qsizetype i) { return i < n.size() ? static_cast<int>(n[i]) : 0; };
    if (action == QLatin1String("press")) {
        needs(3, 4);
        const QPointF p = at(n[1], n[2]);
        return [&c, p, button = whole(0), shift = whole(3)] { c.mousePress(button, shift, p.x(), p.y()); };
    }
    if (action == QLatin1String("move")) {
        needs(2, 3);
        const QPointF p = at(n[0], n[1]);
        return [&c, p, button = whole(2)] { c.mouseMove(button, 0, p.x(), p.y()); };
    }
    if (action == QLatin1String("release")) {
        needs(3, 4);
        const QPointF p = at(n[1], n[2]);
        return [&c, p, button = whole(0), shift = whole(3)] { c.mouseRelease(button, shift, p.x(), p.y()); };
    }
    if (action == QLatin1String("drag")) {
        needs(4, 4);
        const QPointF a = at(n[0], n[1]), b = at(n[2], n[3]);
        return [&c, a, b] {
            c.mousePress(LeftButton, 0, a.x(), a.y());
            c.mouseMove(LeftButton, 0, (a.x() + b.x()) / 2, (a.y() + b.y()) / 2);
            c.mouseMove(LeftButton, 0, b.x(), b.y());
            c.mouseRelease(LeftButton, 0, b.x(), b.y());
        };
    }
    if (action == QLatin1String("click")) {
        needs(2, 2);
        const QPointF p = at(n[0], n[1]);
        return [&c, p] {
            c.mousePress(LeftButton, 0, p.x(), p.y());
            c.mouseRelease(LeftButton, 0, p.x(), p.y());
        };
    }
    if (action == QLatin1String("dblclick")) {
        needs(2, 2);
        const QPointF p = at(n[0], n[1]);
        return [&c, p] {
            c.mousePress(LeftButton, 0, p.x(), p.y());
            c.mouseRelease(LeftButton, 0, p.x(), p.y());
            c.mouseDoubleClick(LeftButton, 0, p.x(), p.y());
            c.mouseRelease(LeftButton, 0, p.x(), p.y());
        };
    }
    if (action == QLatin1String("key")) {
        needs(2, 2);
        return [&c, key = whole(0), shift = whole(1)] { c.keyPress(key, shift); };
    }
    throw LineError(QStringLiteral("unknown canvas action '%1'").arg(action));
}

void canvasCommand(Runner& run, const Tokens& t) {
    if (t.size() < 3)
        throw LineError(QStringLiteral("canvas needs a name and an action"));
    Control& control = run.resolveControl(t[1].text);
    canvas::POLARDraw& c = canvasOf(control, t[1].text);
    run.requireInput(control.form(), control.fullName());
    const std::function<void()> input = canvasInput(c, t[2].text.toLower(), actionNumbers(t));
    run.app().dispatch(input);
}

} // namespace

void addWorkspaceScriptCommands(script::Registry& registry) {
    registry.command(QStringLiteral("canvas"), canvasCommand);
    registry.printForm(QStringLiteral("shapes"), 1, [](Runner& run, const Tokens& expr) {
        return script::toJson(canvasOf(run.resolveControl(expr[1].text), expr[1].text).describeShapes());
    });
}

} // namespace tessaly
