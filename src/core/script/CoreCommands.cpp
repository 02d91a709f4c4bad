#include "core/script/CoreCommands.h"

#include "core/app/CoreApplication.h"
#include "core/db/QuerySql.h"
#include "core/files/FileSystem.h"
#include "core/forms/Control.h"
#include "core/forms/ControlEvents.h"
#include "core/forms/DataBinding.h"
#include "core/forms/Form.h"
#include "core/forms/TabStrip.h"
#include "core/runtime/RuntimeError.h"
#include "core/script/ScriptJson.h"
#include "core/script/ScriptRegistry.h"
#include "core/script/ScriptRunner.h"
#include "core/script/SetupCommands.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace tessaly::script {

namespace {

void needs(const Tokens& t, qsizetype count, const QString& usage) {
    if (t.size() != count)
        throw LineError(usage);
}

// --- answers --------------------------------------------------------------

bool isCancel(const Token& v) {
    return v.is("cancel");
}

std::optional<QString> pathAnswer(const Token& v) {
    return isCancel(v) ? std::nullopt : std::optional<QString>(v.text);
}

void addAnswers(Registry& r) {
    r.answer(QStringLiteral("msgbox"), [](Runner& run, const Token& v) {
        bool ok = false;
        const int result = v.text.toInt(&ok);
        if (!ok || result < mb::ResultOk || result > mb::ResultNo)
            throw LineError(QStringLiteral("a message box answer is 1, 2, 6 or 7"));
        run.ui().queueMsgBox(result);
    });
    r.answer(QStringLiteral("input"),
             [](Runner& run, const Token& v) { run.ui().queueInput(pathAnswer(v)); });
    r.answer(QStringLiteral("open"), [](Runner& run, const Token& v) { run.ui().queueOpen(pathAnswer(v)); });
    r.answer(QStringLiteral("save"), [](Runner& run, const Token& v) { run.ui().queueSave(pathAnswer(v)); });
    r.answer(QStringLiteral("folder"),
             [](Runner& run, const Token& v) { run.ui().queueFolder(pathAnswer(v)); });
    r.answer(QStringLiteral("colour"), [](Runner& run, const Token& v) {
        if (isCancel(v))
            return run.ui().queueColour(std::nullopt);
        bool ok = false;
        const unsigned colour = v.text.toUInt(&ok);
        if (!ok)
            throw LineError(QStringLiteral("a colour answer is a decimal number"));
        run.ui().queueColour(colour);
    });
}

void answer(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("answer needs a kind and a value"));
    const AnswerKind* kind = run.registry().findAnswer(t[1].text);
    if (!kind)
        throw LineError(QStringLiteral("unknown answer kind '%1'").arg(t[1].text));
    (*kind)(run, t[2]);
}

// --- input to controls -----------------------------------------------------

// The control named by the line's second token, accepting input now.
Control& inputControl(Runner& run, const Tokens& t, const QString& verb) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("%1 needs a name").arg(verb));
    Control& c = run.resolveControl(t[1].text);
    run.requireInput(c.form(), c.fullName());
    return c;
}

void click(Runner& run, const Tokens& t) {
    Control& c = inputControl(run, t, QStringLiteral("click"));
    if (!c.enabled())
        return;
    if (c.kind() == ControlKind::CheckBox)
        c.setValue(c.value() == 0 ? 1 : 0);
    else if (c.kind() == ControlKind::OptionButton)
        c.setValue(1);
    else
        c.form().raiseEvent(c, QStringLiteral("Click"));
}

void dblclick(Runner& run, const Tokens& t) {
    Control& c = inputControl(run, t, QStringLiteral("dblclick"));
    c.form().raiseEvent(c, QStringLiteral("DblClick"));
}

void type(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("type needs a name and a text"));
    Control& c = inputControl(run, t, QStringLiteral("type"));
    c.form().setFocus(&c);
    run.app().dispatch([&] { c.setText(t[2].text); });
}

void focus(Runner& run, const Tokens& t) {
    Control& c = inputControl(run, t, QStringLiteral("focus"));
    c.form().setFocus(&c);
}

void blur(Runner& run, const Tokens& t) {
    Control& c = inputControl(run, t, QStringLiteral("blur"));
    if (c.form().focused() == &c)
        c.form().setFocus(nullptr);
    else
        c.form().raiseEvent(c, QStringLiteral("LostFocus"));
}

// A row of a data grid, from 0: the grid moves its data control there, as a
// click on the row does.
void selectGridRow(Runner& run, Control& grid, const Token& item) {
    GridObject* binding = gridOf(grid);
    const int rows = binding ? binding->get(QStringLiteral("RowCount")).toInt() : 0;
    bool ok = false;
    const int row = item.text.startsWith(QLatin1Char('#')) ? item.text.mid(1).toInt(&ok) : -1;
    if (!binding || item.quoted || !ok || row < 0 || row >= rows)
        throw LineError(QStringLiteral("no row '%1' in %2").arg(item.text, grid.fullName()));
    run.app().dispatch([&] { binding->selectRow(row); });
}

void select(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("select needs a name and an item"));
    Control& c = inputControl(run, t, QStringLiteral("select"));
    if (c.kind() == ControlKind::Grid)
        return selectGridRow(run, c, t[2]);
    int idx = -1;
    if (!t[2].quoted && t[2].text.startsWith(QLatin1Char('#')))
        idx = t[2].text.mid(1).toInt();
    else
        for (int i = 0; i < c.listCount() && idx < 0; ++i)
            if (c.listItem(i) == t[2].text)
                idx = i;
    if (idx < 0 || idx >= c.listCount())
        throw LineError(QStringLiteral("no item '%1' in %2").arg(t[2].text, c.fullName()));
    run.app().dispatch([&] { c.setListIndex(idx); });
}

// cell GRID ROW "COLUMN" "VALUE": the user edits one cell of a data grid and
// leaves it, so that the change is written; the row is counted from 0.
void cell(Runner& run, const Tokens& t) {
    needs(t, 5, QStringLiteral("cell needs a grid, a row, a column's caption and a value"));
    Control& c = inputControl(run, t, QStringLiteral("cell"));
    GridObject* binding = c.kind() == ControlKind::Grid ? gridOf(c) : nullptr;
    if (!binding)
        throw LineError(QStringLiteral("'%1' is not a data grid").arg(t[1].text));
    bool ok = false;
    const int row = t[2].text.toInt(&ok);
    if (!ok || row < 0 || row >= binding->get(QStringLiteral("RowCount")).toInt())
        throw LineError(QStringLiteral("no row '%1' in %2").arg(t[2].text, c.fullName()));
    const int column = binding->columnOf(t[3].text);
    if (column < 0)
        throw LineError(QStringLiteral("no column '%1' in %2").arg(t[3].text, c.fullName()));
    if (!binding->columns()[column].editable)
        throw LineError(QStringLiteral("the column '%1' of %2 takes no edits").arg(t[3].text, c.fullName()));
    run.app().dispatch([&] { binding->editCell(row, column, t[4].text); });
}

void slide(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("slide needs a name and a value"));
    Control& c = inputControl(run, t, QStringLiteral("slide"));
    run.app().dispatch([&] { c.setValue(t[2].text.toInt()); });
}

void key(Runner& run, const Tokens& t) {
    needs(t, 4, QStringLiteral("key needs a name, a key code and a shift value"));
    Control& c = inputControl(run, t, QStringLiteral("key"));
    EventArgs args{t[2].text.toInt(), t[3].text.toInt()};
    c.form().raiseEvent(c, QStringLiteral("KeyDown"), args);
}

void tab(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("tab needs a name and a tab number"));
    Control& c = inputControl(run, t, QStringLiteral("tab"));
    // A disabled tab takes no click.
    const int chosen = t[2].text.toInt();
    if (chosen >= 0 && chosen < tabs::count(c) && !tabs::enabled(c, chosen + 1))
        return;
    EventArgs args{c.prop(QStringLiteral("Tab"))};
    c.setProp(QStringLiteral("Tab"), t[2].text.toInt());
    c.form().raiseEvent(c, QStringLiteral("Click"), args);
}

// A timer ticks whatever window is on top: it is no user input.
void tick(Runner& run, const Tokens& t) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("tick needs a name"));
    Control& c = run.resolveControl(t[1].text);
    const int n = t.size() > 2 ? t[2].text.toInt() : 1;
    for (int i = 0; i < n && c.enabled(); ++i)
        c.form().raiseEvent(c, QStringLiteral("Timer"));
}

void close(Runner& run, const Tokens& t) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("close needs a name"));
    if (!run.app().isForm(t[1].text))
        throw LineError(QStringLiteral("unknown form '%1'").arg(t[1].text));
    Form* f = run.app().loaded(t[1].text);
    if (!f)
        throw LineError(QStringLiteral("form '%1' is not loaded").arg(t[1].text));
    run.requireInput(*f, f->name());
    run.app().unload(*f);
}

// The dot before the event's name in "FORM.CONTROL.EVENT": the last one outside parentheses.
qsizetype eventDot(const QString& path) {
    int depth = 0;
    for (qsizetype i = path.size() - 1; i >= 0; --i) {
        const QChar c = path.at(i);
        if (c == QLatin1Char(')'))
            ++depth;
        else if (c == QLatin1Char('('))
            --depth;
        else if (c == QLatin1Char('.') && depth == 0)
            return i;
    }
    return -1;
}

// A control raises one of its events with the given arguments, as its component would.
void raiseEvent(Runner& run, const Tokens& t) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("raise needs a control's event: raise FORM.CONTROL.EVENT ARG..."));
    const qsizetype dot = eventDot(t[1].text);
    const QString event = dot < 0 ? QString() : t[1].text.mid(dot + 1).trimmed();
    if (dot <= 0 || event.isEmpty() || event.contains(QLatin1Char('(')))
        throw LineError(
            QStringLiteral("'%1' names no control's event: raise FORM.CONTROL.EVENT ARG...").arg(t[1].text));
    Control& c = run.resolveControl(t[1].text.left(dot));
    if (!control_events::raises(c.kind(), event))
        throw LineError(QStringLiteral("a %1 raises no event '%2'").arg(controlKindName(c.kind()), event));
    run.requireInput(c.form(), c.fullName());
    EventArgs args;
    for (qsizetype i = 2; i < t.size(); ++i)
        args << Runner::argument(t[i]);
    c.form().raiseEvent(c, event, args);
}

// The events of the three mouse actions.
QString mouseEvent(const QString& action) {
    if (action == QLatin1String("press"))
        return QStringLiteral("MouseDown");
    if (action == QLatin1String("move"))
        return QStringLiteral("MouseMove");
    if (action == QLatin1String("release"))
        return QStringLiteral("MouseUp");
    throw LineError(QStringLiteral("unknown mouse action '%1': press, move or release").arg(action));
}

double number(const Token& t) {
    bool ok = false;
    const double value = t.text.toDouble(&ok);
    if (!ok)
        throw LineError(QStringLiteral("'%1' is not a number").arg(t.text));
    return value;
}

int whole(const Token& t) {
    const double value = number(t);
    if (value != static_cast<int>(value))
        throw LineError(QStringLiteral("'%1' is not a whole number").arg(t.text));
    return static_cast<int>(value);
}

// mouse NAME ACTION BUTTON X Y [SHIFT]: MouseDown, MouseMove or MouseUp of a
// control (a picture box, a list box) with the platform's button and shift
// values (1 left, 2 right, 4 middle; 1 Shift, 2 Ctrl, 4 Alt) and X and Y in
// the control's scale units.
void mouse(Runner& run, const Tokens& t) {
    if (t.size() < 6 || t.size() > 7)
        throw LineError(
            QStringLiteral("mouse needs a name, an action, a button, X and Y, and may take a shift value"));
    Control& c = run.resolveControl(t[1].text);
    if (c.kind() == ControlKind::Canvas)
        throw LineError(QStringLiteral("'%1' is a drawing canvas: use canvas").arg(t[1].text));
    const QString event = mouseEvent(t[2].text.toLower());
    run.requireInput(c.form(), c.fullName());
    if (!c.enabled())
        return;
    EventArgs args{whole(t[3]), t.size() > 6 ? whole(t[6]) : 0, static_cast<float>(number(t[4])),
                   static_cast<float>(number(t[5]))};
    c.form().raiseEvent(c, event, args);
}

void addInput(Registry& r) {
    r.command(QStringLiteral("mouse"), mouse);
    r.command(QStringLiteral("click"), click);
    r.command(QStringLiteral("dblclick"), dblclick);
    r.command(QStringLiteral("type"), type);
    r.command(QStringLiteral("focus"), focus);
    r.command(QStringLiteral("blur"), blur);
    r.command(QStringLiteral("select"), select);
    r.command(QStringLiteral("cell"), cell);
    r.command(QStringLiteral("slide"), slide);
    r.command(QStringLiteral("key"), key);
    r.command(QStringLiteral("tab"), tab);
    r.command(QStringLiteral("tick"), tick);
    r.command(QStringLiteral("close"), close);
    r.command(QStringLiteral("raise"), raiseEvent);
}

// --- set, call, print --------------------------------------------------------

void set(Runner& run, const Tokens& t) {
    needs(t, 3, QStringLiteral("set needs a path and a value"));
    QString member;
    QVariantList index;
    AutoPtr parent = run.resolveParent(t[1].text, member, index);
    const QVariant value = Runner::argument(t[2]);
    run.app().dispatch([&] { parent->set(member, value, index); });
}

void call(Runner& run, const Tokens& t) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("call needs a name"));
    QVariantList args;
    for (qsizetype i = 2; i < t.size(); ++i)
        args << Runner::argument(t[i]);
    QString member;
    QVariantList index;
    AutoPtr parent = run.resolveParent(t[1].text, member, index);
    const bool application = parent.get() == run.current();
    if (!parent->hasMember(member) && !dynamic_cast<Form*>(parent.get()) && !application)
        throw LineError(QStringLiteral("unknown routine '%1'").arg(t[1].text));
    QJsonObject o{{QStringLiteral("call"), t[1].text}};
    try {
        o.insert(QStringLiteral("result"), toJson(parent->call(member, args)));
    } catch (const RuntimeError& e) {
        if (e.number() == err::NotSupported && !parent->hasMember(member))
            throw LineError(QStringLiteral("unknown routine '%1'").arg(t[1].text));
        o.insert(QStringLiteral("error"), e.number());
        o.insert(QStringLiteral("description"), e.description());
    }
    run.writeLine(o);
}

void print(Runner& run, const Tokens& t) {
    if (t.size() < 2)
        throw LineError(QStringLiteral("print needs an expression"));
    const Tokens expression = t.mid(1);
    run.writeLine({{QStringLiteral("print"), joinTokens(expression)},
                   {QStringLiteral("value"), run.evaluate(expression)}});
}

QJsonValue printForms(Runner& run, const Tokens&) {
    QJsonArray loaded, modal;
    if (CoreApplication* app = run.current()) {
        for (Form* f : app->loadedForms())
            loaded << f->name();
        for (Form* f : app->modalStack())
            modal << f->name();
    }
    return QJsonObject{{QStringLiteral("loaded"), loaded}, {QStringLiteral("modal"), modal}};
}

QJsonValue printCaption(Runner& run, const Tokens& expr) {
    if (!run.app().isForm(expr[1].text))
        throw LineError(QStringLiteral("unknown form '%1'").arg(expr[1].text));
    Form* f = run.app().loaded(expr[1].text);
    return f ? QJsonValue(f->caption()) : QJsonValue();
}

// A file's existence, size and SHA-256; a relative path lies in the home.
QJsonValue printFile(Runner& run, const Tokens& expr) {
    QString path = expr[1].text;
    if (QDir::isRelativePath(fs::toHost(path)))
        path = run.homeDir() + QLatin1Char('/') + path;
    QFile f(fs::toHost(path));
    QJsonObject o{{QStringLiteral("exists"), f.exists()},
                  {QStringLiteral("size"), QJsonValue()},
                  {QStringLiteral("sha256"), QJsonValue()}};
    if (f.exists() && f.open(QIODevice::ReadOnly)) {
        const QByteArray data = f.readAll();
        o.insert(QStringLiteral("size"), static_cast<double>(data.size()));
        o.insert(QStringLiteral("sha256"),
                 QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex()));
    }
    return o;
}

// Rows of a query over a connection of the driver's own, so that it works
// after the program has ended.
QJsonValue printSql(Runner& run, const Tokens& expr) {
    const QString connection = projectDatabaseConnection(run);
    QJsonArray rows;
    try {
        for (const QVariantMap& row : db::querySql(connection, expr[1].text))
            rows << toJson(row);
    } catch (const RuntimeError& e) {
        throw LineError(QStringLiteral("sql failed: %1").arg(e.description()));
    }
    return rows;
}

void addPrintForms(Registry& r) {
    r.printForm(QStringLiteral("forms"), 0, printForms);
    r.printForm(QStringLiteral("caption"), 1, printCaption);
    r.printForm(QStringLiteral("file"), 1, printFile);
    r.printForm(QStringLiteral("sql"), 1, printSql);
}

// The events of the UI port, with their fields.
void addPortEvents(Registry& r) {
    const QStringList fileDialog{QStringLiteral("filter"), QStringLiteral("title"), QStringLiteral("result")};
    r.event(QStringLiteral("msgbox"), {QStringLiteral("text"), QStringLiteral("flags"),
                                       QStringLiteral("title"), QStringLiteral("result")});
    r.event(QStringLiteral("inputbox"), {QStringLiteral("prompt"), QStringLiteral("title"),
                                         QStringLiteral("default"), QStringLiteral("result")});
    r.event(QStringLiteral("open"), fileDialog);
    r.event(QStringLiteral("save"), fileDialog);
    r.event(QStringLiteral("folder"), fileDialog);
    r.event(QStringLiteral("colour"), {QStringLiteral("initial"), QStringLiteral("result")});
    r.event(QStringLiteral("dialog"), {QStringLiteral("name")});
    r.event(QStringLiteral("pointer"), {QStringLiteral("value")});
    r.event(QStringLiteral("sleep"), {QStringLiteral("ms")});
    r.event(QStringLiteral("show"), {QStringLiteral("form"), QStringLiteral("modal")});
    r.event(QStringLiteral("unload"), {QStringLiteral("form")});
    r.event(QStringLiteral("print"), {QStringLiteral("what")});
    r.event(QStringLiteral("report"), {QStringLiteral("caption"), QStringLiteral("document"),
                                       QStringLiteral("pages"), QStringLiteral("modal")});
    r.event(QStringLiteral("end"), {});
}

} // namespace

void addCoreCommands(Registry& r) {
    r.command(QStringLiteral("install"), [](Runner& run, const Tokens&) { run.install(); });
    r.command(QStringLiteral("start"), [](Runner& run, const Tokens&) { run.start(); });
    r.command(QStringLiteral("answer"), answer);
    r.command(QStringLiteral("set"), set);
    r.command(QStringLiteral("call"), call);
    r.command(QStringLiteral("print"), print);
    addAnswers(r);
    addInput(r);
    addPrintForms(r);
    addPortEvents(r);
    addSetupCommands(r);
}

} // namespace tessaly::script
