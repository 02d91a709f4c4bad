#include "ScheduleScript.h"

#include "ScheduleControl.h"
#include "core/app/CoreApplication.h"
#include "core/forms/Control.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"

#include <functional>

namespace tessaly::schedule {

using script::LineError;
using script::Runner;
using script::Tokens;

namespace {

ScheduleControl& scheduleOf(Control& c, const QString& path) {
    auto* engine = dynamic_cast<ScheduleControl*>(c.inner.get());
    if (c.kind() != ControlKind::Schedule || !engine)
        throw LineError(QStringLiteral("'%1' is not a schedule control").arg(path));
    return *engine;
}

// The whole numbers after the action.
QList<int> numbers(const Tokens& t, qsizetype count, const QString& usage) {
    if (t.size() != 3 + count)
        throw LineError(usage);
    QList<int> n;
    for (qsizetype i = 3; i < t.size(); ++i) {
        bool ok = false;
        n << t[i].text.toInt(&ok);
        if (!ok)
            throw LineError(QStringLiteral("'%1' is not a whole number").arg(t[i].text));
    }
    return n;
}

void requireRow(const ScheduleControl& s, int row, const QString& path) {
    if (!s.model().hasRow(row))
        throw LineError(
            QStringLiteral("%1 has no row %2 (it has %3 rows)").arg(path).arg(row).arg(s.model().rowCount()));
}

void requireBar(const ScheduleControl& s, int row, int bar, const QString& path) {
    if (!s.model().hasBar(row, bar))
        throw LineError(QStringLiteral("%1 has no bar %2 on row %3").arg(path).arg(bar).arg(row));
}

DayTime point(int day, int minutes) {
    if (minutes < 0 || minutes > MinutesPerDay)
        throw LineError(QStringLiteral("minutes run from 0 to %1, not %2").arg(MinutesPerDay).arg(minutes));
    return DayTime{day, minutes};
}

// The step of one action, checked before it runs.
std::function<void()> action(ScheduleControl& s, const Tokens& t, const QString& path) {
    const QString verb = t[2].text.toLower();
    if (verb == QLatin1String("draw")) {
        const QList<int> n =
            numbers(t, 5, QStringLiteral("schedule NAME draw ROW STARTDAY STARTMIN ENDDAY ENDMIN"));
        requireRow(s, n[0], path);
        const DayTime start = point(n[1], n[2]), end = point(n[3], n[4]);
        return [&s, row = n[0], start, end] { s.drawBar(row, start, end); };
    }
    if (verb == QLatin1String("change")) {
        const QList<int> n =
            numbers(t, 6, QStringLiteral("schedule NAME change ROW BAR STARTDAY STARTMIN ENDDAY ENDMIN"));
        requireBar(s, n[0], n[1], path);
        const DayTime start = point(n[2], n[3]), end = point(n[4], n[5]);
        return [&s, row = n[0], bar = n[1], start, end] { s.changeBar(row, bar, start, end); };
    }
    const QString usage = QStringLiteral("schedule NAME %1 ROW BAR").arg(verb);
    if (verb == QLatin1String("activate") || verb == QLatin1String("point")) {
        const QList<int> n = numbers(t, 2, usage);
        requireBar(s, n[0], n[1], path);
        if (verb == QLatin1String("activate"))
            return [&s, row = n[0], bar = n[1]] { s.activateBar(row, bar); };
        return [&s, row = n[0], bar = n[1]] { s.pointBar(row, bar); };
    }
    if (verb == QLatin1String("select")) {
        const QList<int> n = numbers(t, 2, usage);
        if (n[0] != 0 || n[1] != 0)
            requireBar(s, n[0], n[1], path);
        return [&s, row = n[0], bar = n[1]] { s.selectBar(row, bar); };
    }
    throw LineError(QStringLiteral("unknown schedule action '%1'").arg(t[2].text));
}

void scheduleCommand(Runner& run, const Tokens& t) {
    if (t.size() < 3)
        throw LineError(QStringLiteral("schedule needs a name and an action"));
    Control& control = run.resolveControl(t[1].text);
    ScheduleControl& s = scheduleOf(control, t[1].text);
    run.requireInput(control.form(), control.fullName());
    const std::function<void()> step = action(s, t, t[1].text);
    run.app().dispatch(step);
}

} // namespace

void addScheduleScriptCommands(script::Registry& registry) {
    registry.command(QStringLiteral("schedule"), scheduleCommand);
}

} // namespace tessaly::schedule
