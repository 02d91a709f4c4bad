#include "ScriptRunner.h"

#include "canvas/api/POLARDraw.h"
#include "core/db/QuerySql.h"
#include "core/files/FileSystem.h"
#include "core/forms/ApplicationBase.h"
#include "core/forms/Control.h"
#include "core/forms/Form.h"
#include "core/install/Installer.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"
#include "core/settings/SettingsStore.h"
#include "templates/Drawings.h"
#include "workspace/Application.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace tessaly {

namespace {

bool is(const QString& a, const char* b) {
    return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}

// A path split at its dots, outside parentheses and quotes.
QStringList splitPath(const QString& path) {
    QStringList parts;
    QString cur;
    int depth = 0;
    bool quoted = false;
    for (const QChar c : path) {
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (!quoted && c == QLatin1Char('('))
            ++depth;
        if (!quoted && c == QLatin1Char(')'))
            --depth;
        if (!quoted && depth == 0 && c == QLatin1Char('.')) {
            parts << cur;
            cur.clear();
        } else {
            cur += c;
        }
    }
    parts << cur;
    return parts;
}

QVariant parseLiteral(const QString& text, bool quoted) {
    if (quoted)
        return text;
    bool ok = false;
    const qlonglong i = text.toLongLong(&ok);
    if (ok)
        return (i >= INT_MIN && i <= INT_MAX) ? QVariant(static_cast<int>(i)) : QVariant(i);
    const double d = text.toDouble(&ok);
    if (ok)
        return d;
    if (is(text, "true"))
        return true;
    if (is(text, "false"))
        return false;
    if (is(text, "null") || is(text, "nothing"))
        return QVariant();
    return text;
}

// A path segment: a name and, for indexed members, its arguments.
struct Segment {
    QString name;
    QVariantList args;
};

Segment parseSegment(const QString& seg) {
    Segment s;
    const int open = static_cast<int>(seg.indexOf(QLatin1Char('(')));
    if (open < 0 || !seg.endsWith(QLatin1Char(')'))) {
        s.name = seg.trimmed();
        return s;
    }
    s.name = seg.left(open).trimmed();
    const QString inside = seg.mid(open + 1, seg.size() - open - 2);
    if (inside.trimmed().isEmpty())
        return s;
    for (const QString& a : inside.split(QLatin1Char(','))) {
        const QString t = a.trimmed();
        if (t.size() >= 2 && t.startsWith(QLatin1Char('"')) && t.endsWith(QLatin1Char('"')))
            s.args << t.mid(1, t.size() - 2);
        else
            s.args << parseLiteral(t, false);
    }
    return s;
}

QString joinTokens(const QList<ScriptToken>& t, int from) {
    QStringList parts;
    for (int i = from; i < t.size(); ++i)
        parts << (t[i].quoted ? QLatin1Char('"') + t[i].text + QLatin1Char('"') : t[i].text);
    return parts.join(QLatin1Char(' '));
}

} // namespace

QJsonValue toJson(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return QJsonValue();
    if (holdsObject(value)) {
        AutoPtr o = toObject(value);
        if (!o)
            return QJsonValue();
        if (auto pv = o->printValue())
            return toJson(*pv);
        if (auto* c = dynamic_cast<Control*>(o.get()))
            return c->text();
        return o->typeName();
    }
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return static_cast<double>(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QStringList: {
        QJsonArray a;
        for (const QString& s : value.toStringList())
            a << s;
        return a;
    }
    case QMetaType::QVariantList: {
        QJsonArray a;
        for (const QVariant& v : value.toList())
            a << toJson(v);
        return a;
    }
    case QMetaType::QVariantMap: {
        QJsonObject o;
        const QVariantMap m = value.toMap();
        for (auto it = m.begin(); it != m.end(); ++it)
            o.insert(it.key(), toJson(it.value()));
        return o;
    }
    default:
        return value.toString();
    }
}

ScriptRunner::ScriptRunner(QString homeDir, QSize screen, QTextStream& out, QTextStream& err)
    : homeDir_(QDir(homeDir).absolutePath()), screen_(screen), out_(out), err_(err) {
    ui_.setScreenSize(screen_);
    ui_.onEvent = [this](const QJsonObject& o) { writeLine(o); };
    waiter_.onSleep = [this](int ms) {
        writeLine({{QStringLiteral("event"), QStringLiteral("sleep")}, {QStringLiteral("ms"), ms}});
    };
}

ScriptRunner::~ScriptRunner() = default;

void ScriptRunner::writeLine(const QJsonObject& o) {
    out_ << QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact)) << '\n';
    out_.flush();
}

QList<ScriptToken> ScriptRunner::tokenize(const QString& line) {
    QList<ScriptToken> tokens;
    int i = 0;
    const int n = static_cast<int>(line.size());
    while (i < n) {
        while (i < n && line[i].isSpace())
            ++i;
        if (i >= n)
            break;
        ScriptToken t;
        if (line[i] == QLatin1Char('"')) {
            t.quoted = true;
            ++i;
            bool closed = false;
            while (i < n) {
                const QChar c = line[i];
                if (c == QLatin1Char('\\') && i + 1 < n) {
                    const QChar e = line[i + 1];
                    if (e == QLatin1Char('n'))
                        t.text += QLatin1Char('\n');
                    else if (e == QLatin1Char('r'))
                        t.text += QLatin1Char('\r');
                    else if (e == QLatin1Char('t'))
                        t.text += QLatin1Char('\t');
                    else
                        t.text += e;
                    i += 2;
                    continue;
                }
                if (c == QLatin1Char('"')) {
                    closed = true;
                    ++i;
                    break;
                }
                t.text += c;
                ++i;
            }
            if (!closed)
                throw ScriptLineError(QStringLiteral("unterminated quoted text"));
        } else {
            // A bare token runs to the next blank; quotes inside it (an
            // argument of an indexed member) are kept as written.
            bool quoted = false;
            while (i < n && (quoted || !line[i].isSpace())) {
                if (line[i] == QLatin1Char('"'))
                    quoted = !quoted;
                t.text += line[i];
                ++i;
            }
        }
        tokens << t;
    }
    return tokens;
}

int ScriptRunner::run(const QString& script) {
    const QStringList lines = script.split(QLatin1Char('\n'));
    for (int n = 0; n < lines.size(); ++n) {
        QString line = lines[n];
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        try {
            const QList<ScriptToken> tokens = tokenize(trimmed);
            if (is(tokens[0].text, "expect") && !tokens[0].quoted) {
                if (!expect(tokens)) {
                    err_ << "line " << (n + 1) << ": expectation failed: " << trimmed << '\n';
                    err_.flush();
                    return 1;
                }
                continue;
            }
            runLine(tokens);
        } catch (const ScriptLineError& e) {
            err_ << "line " << (n + 1) << ": " << QString::fromUtf8(e.what()) << ": " << trimmed << '\n';
            err_.flush();
            return 2;
        } catch (const RuntimeError& e) {
            err_ << "line " << (n + 1) << ": run-time error " << e.number() << ": " << e.description() << ": "
                 << trimmed << '\n';
            err_.flush();
            return 2;
        }
    }
    return 0;
}

Application& ScriptRunner::app() {
    if (!app_)
        throw ScriptLineError(QStringLiteral("the program is not running: use start"));
    return *app_;
}

void ScriptRunner::runLine(const QList<ScriptToken>& t) {
    const QString verb = t[0].text;
    if (is(verb, "install")) {
        install(AppHome(homeDir_));
        installDrawings(AppHome(homeDir_));
        return;
    }
    if (is(verb, "start"))
        return cmdStart();
    if (is(verb, "answer"))
        return cmdAnswer(t);
    if (is(verb, "set"))
        return cmdSet(t);
    if (is(verb, "call"))
        return cmdCall(t);
    if (is(verb, "print")) {
        if (t.size() < 2)
            throw ScriptLineError(QStringLiteral("print needs an expression"));
        writeLine(
            {{QStringLiteral("print"), joinTokens(t, 1)}, {QStringLiteral("value"), evaluate(t.mid(1))}});
        return;
    }
    static const QStringList inputs{
        QStringLiteral("click"), QStringLiteral("dblclick"), QStringLiteral("type"),
        QStringLiteral("focus"), QStringLiteral("blur"),     QStringLiteral("select"),
        QStringLiteral("slide"), QStringLiteral("key"),      QStringLiteral("tab"),
        QStringLiteral("tick"),  QStringLiteral("close"),    QStringLiteral("canvas")};
    if (inputs.contains(verb.toLower()))
        return cmdInput(verb.toLower(), t);
    throw ScriptLineError(QStringLiteral("unknown command '%1'").arg(verb));
}

void ScriptRunner::cmdStart() {
    if (app_ && !app_->ended()) {
        // A second instance launched beside the running one: it meets the
        // single-instance rule and ends at once.
        Application second(ui_, waiter_, AppHome(homeDir_));
        if (second.Main())
            throw ScriptLineError(QStringLiteral("a second instance started although the first still runs"));
        return;
    }
    if (app_)
        retired_.push_back(std::move(app_));
    QDir().mkpath(homeDir_);
    QDir::setCurrent(homeDir_);
    app_ = std::make_unique<Application>(ui_, waiter_, AppHome(homeDir_));
    if (!app_->Main())
        return;
    if (Form* splash = app_->loaded(QStringLiteral("frmSplash"))) {
        Control& timer = splash->control(QStringLiteral("Timer1"));
        if (timer.enabled())
            splash->raiseEvent(timer, QStringLiteral("Timer"));
    }
}

void ScriptRunner::cmdAnswer(const QList<ScriptToken>& t) {
    if (t.size() != 3)
        throw ScriptLineError(QStringLiteral("answer needs a kind and a value"));
    const QString kind = t[1].text.toLower();
    const ScriptToken& v = t[2];
    const bool cancel = !v.quoted && is(v.text, "cancel");
    if (kind == QLatin1String("msgbox")) {
        bool ok = false;
        const int r = v.text.toInt(&ok);
        if (!ok || (r != 1 && r != 2 && r != 3 && r != 4 && r != 5 && r != 6 && r != 7))
            throw ScriptLineError(QStringLiteral("a message box answer is 1, 2, 6 or 7"));
        ui_.queueMsgBox(r);
    } else if (kind == QLatin1String("input")) {
        ui_.queueInput(cancel ? std::nullopt : std::optional<QString>(v.text));
    } else if (kind == QLatin1String("open")) {
        ui_.queueOpen(cancel ? std::nullopt : std::optional<QString>(v.text));
    } else if (kind == QLatin1String("save")) {
        ui_.queueSave(cancel ? std::nullopt : std::optional<QString>(v.text));
    } else if (kind == QLatin1String("folder")) {
        ui_.queueFolder(cancel ? std::nullopt : std::optional<QString>(v.text));
    } else if (kind == QLatin1String("colour")) {
        if (cancel) {
            ui_.queueColour(std::nullopt);
        } else {
            bool ok = false;
            const unsigned c = v.text.toUInt(&ok);
            if (!ok)
                throw ScriptLineError(QStringLiteral("a colour answer is a decimal number"));
            ui_.queueColour(c);
        }
    } else {
        throw ScriptLineError(QStringLiteral("unknown answer kind '%1'").arg(t[1].text));
    }
}

QVariant ScriptRunner::parseArgument(const ScriptToken& token) const {
    return parseLiteral(token.text, token.quoted);
}

std::shared_ptr<AutoObject> ScriptRunner::resolveParent(const QString& path, QString& member,
                                                        QVariantList& index) {
    const QStringList parts = splitPath(path);
    const Segment first = parseSegment(parts[0]);
    std::shared_ptr<AutoObject> cur;
    int i = 0;
    if (parts.size() == 1) {
        member = first.name;
        index = first.args;
        return std::shared_ptr<AutoObject>(std::shared_ptr<AutoObject>(),
                                           &app()); // not owned: the runner owns it
    }
    if (app().isForm(first.name)) {
        cur = app().form(first.name).shared_from_this();
        i = 1;
    } else {
        const QVariant v = app().get(first.name, first.args);
        cur = toObject(v);
        if (!cur)
            throw ScriptLineError(QStringLiteral("'%1' is not an object").arg(first.name));
        i = 1;
    }
    for (; i < parts.size() - 1; ++i) {
        const Segment s = parseSegment(parts[i]);
        const QVariant v = cur->get(s.name, s.args);
        AutoPtr next = toObject(v);
        if (!next)
            throw ScriptLineError(QStringLiteral("'%1' is not an object").arg(s.name));
        cur = next;
    }
    const Segment last = parseSegment(parts.back());
    member = last.name;
    index = last.args;
    return cur;
}

QVariant ScriptRunner::resolveValue(const QString& path) {
    QString member;
    QVariantList index;
    const QStringList parts = splitPath(path);
    if (parts.size() == 1) {
        const Segment s = parseSegment(parts[0]);
        if (app().isForm(s.name))
            return toVariant(app().form(s.name).shared_from_this());
        return app().get(s.name, s.args);
    }
    AutoPtr parent = resolveParent(path, member, index);
    return parent->get(member, index);
}

Control& ScriptRunner::resolveControl(const QString& path) {
    const QVariant v = resolveValue(path);
    auto* c = dynamic_cast<Control*>(toObject(v).get());
    if (!c)
        throw ScriptLineError(QStringLiteral("'%1' is not a control").arg(path));
    return *c;
}

void ScriptRunner::requireInput(Form& form, const QString& what) {
    if (!app().acceptsInput(form))
        throw ScriptLineError(QStringLiteral("%1 is under a modal window").arg(what));
}

void ScriptRunner::cmdInput(const QString& verb, const QList<ScriptToken>& t) {
    if (t.size() < 2)
        throw ScriptLineError(QStringLiteral("%1 needs a name").arg(verb));
    if (verb == QLatin1String("close")) {
        if (!app().isForm(t[1].text))
            throw ScriptLineError(QStringLiteral("unknown form '%1'").arg(t[1].text));
        Form* f = app().loaded(t[1].text);
        if (!f)
            throw ScriptLineError(QStringLiteral("form '%1' is not loaded").arg(t[1].text));
        requireInput(*f, f->name());
        app().unload(*f);
        return;
    }
    if (verb == QLatin1String("canvas"))
        return cmdCanvas(t);
    Control& c = resolveControl(t[1].text);
    Form& f = c.form();
    if (verb != QLatin1String("tick"))
        requireInput(f, c.fullName());
    if (verb == QLatin1String("click")) {
        if (!c.enabled())
            return;
        if (c.kind() == ControlKind::CheckBox)
            c.setValue(c.value() == 0 ? 1 : 0);
        else if (c.kind() == ControlKind::OptionButton)
            c.setValue(1);
        else
            f.raiseEvent(c, QStringLiteral("Click"));
    } else if (verb == QLatin1String("dblclick")) {
        f.raiseEvent(c, QStringLiteral("DblClick"));
    } else if (verb == QLatin1String("type")) {
        if (t.size() != 3)
            throw ScriptLineError(QStringLiteral("type needs a name and a text"));
        f.setFocus(&c);
        app().dispatch([&] { c.setText(t[2].text); });
    } else if (verb == QLatin1String("focus")) {
        f.setFocus(&c);
    } else if (verb == QLatin1String("blur")) {
        if (f.focused() == &c)
            f.setFocus(nullptr);
        else
            f.raiseEvent(c, QStringLiteral("LostFocus"));
    } else if (verb == QLatin1String("select")) {
        if (t.size() != 3)
            throw ScriptLineError(QStringLiteral("select needs a name and an item"));
        int idx = -1;
        if (!t[2].quoted && t[2].text.startsWith(QLatin1Char('#')))
            idx = t[2].text.mid(1).toInt();
        else
            for (int i = 0; i < c.listCount(); ++i)
                if (c.listItem(i) == t[2].text) {
                    idx = i;
                    break;
                }
        if (idx < 0 || idx >= c.listCount())
            throw ScriptLineError(QStringLiteral("no item '%1' in %2").arg(t[2].text, c.fullName()));
        app().dispatch([&] { c.setListIndex(idx); });
    } else if (verb == QLatin1String("slide")) {
        if (t.size() != 3)
            throw ScriptLineError(QStringLiteral("slide needs a name and a value"));
        app().dispatch([&] { c.setValue(t[2].text.toInt()); });
    } else if (verb == QLatin1String("key")) {
        if (t.size() != 4)
            throw ScriptLineError(QStringLiteral("key needs a name, a key code and a shift value"));
        EventArgs args{t[2].text.toInt(), t[3].text.toInt()};
        f.raiseEvent(c, QStringLiteral("KeyDown"), args);
    } else if (verb == QLatin1String("tab")) {
        if (t.size() != 3)
            throw ScriptLineError(QStringLiteral("tab needs a name and a tab number"));
        EventArgs args{c.prop(QStringLiteral("Tab"))};
        c.setProp(QStringLiteral("Tab"), t[2].text.toInt());
        f.raiseEvent(c, QStringLiteral("Click"), args);
    } else if (verb == QLatin1String("tick")) {
        const int n = t.size() > 2 ? t[2].text.toInt() : 1;
        for (int i = 0; i < n && c.enabled(); ++i)
            f.raiseEvent(c, QStringLiteral("Timer"));
    }
}

canvas::POLARDraw& ScriptRunner::resolveCanvas(const QString& path) {
    Control& c = resolveControl(path);
    auto* engine = dynamic_cast<canvas::POLARDraw*>(c.inner.get());
    if (c.kind() != ControlKind::Canvas || !engine)
        throw ScriptLineError(QStringLiteral("'%1' has no drawing canvas").arg(path));
    return *engine;
}

void ScriptRunner::cmdCanvas(const QList<ScriptToken>& t) {
    if (t.size() < 3)
        throw ScriptLineError(QStringLiteral("canvas needs a name and an action"));
    Control& control = resolveControl(t[1].text);
    canvas::POLARDraw& c = resolveCanvas(t[1].text);
    requireInput(control.form(), control.fullName());
    const QString action = t[2].text.toLower();
    // The numbers of the action: page millimetres, buttons, shift values, key codes.
    QList<double> n;
    for (int i = 3; i < t.size(); ++i) {
        bool ok = false;
        n << t[i].text.toDouble(&ok);
        if (!ok)
            throw ScriptLineError(QStringLiteral("'%1' is not a number").arg(t[i].text));
    }
    auto needs = [&](qsizetype least, qsizetype most) {
        if (n.size() < least || n.size() > most)
            throw ScriptLineError(QStringLiteral("wrong number of values for canvas %1").arg(action));
    };
    auto at = [&](double x, double y) { return c.pageToScreen(QPointF(x, y)); };
    constexpr int Left = 1; // the left mouse button
    std::function<void()> input;
    if (action == QLatin1String("press")) {
        needs(3, 4);
        const QPointF p = at(n[1], n[2]);
        input = [&c, &n, p] {
            c.mousePress(static_cast<int>(n[0]), n.size() > 3 ? static_cast<int>(n[3]) : 0, p.x(), p.y());
        };
    } else if (action == QLatin1String("move")) {
        needs(2, 3);
        const QPointF p = at(n[0], n[1]);
        input = [&c, &n, p] { c.mouseMove(n.size() > 2 ? static_cast<int>(n[2]) : 0, 0, p.x(), p.y()); };
    } else if (action == QLatin1String("release")) {
        needs(3, 4);
        const QPointF p = at(n[1], n[2]);
        input = [&c, &n, p] {
            c.mouseRelease(static_cast<int>(n[0]), n.size() > 3 ? static_cast<int>(n[3]) : 0, p.x(), p.y());
        };
    } else if (action == QLatin1String("drag")) {
        needs(4, 4);
        const QPointF a = at(n[0], n[1]), b = at(n[2], n[3]);
        input = [&c, a, b] {
            c.mousePress(Left, 0, a.x(), a.y());
            c.mouseMove(Left, 0, (a.x() + b.x()) / 2, (a.y() + b.y()) / 2);
            c.mouseMove(Left, 0, b.x(), b.y());
            c.mouseRelease(Left, 0, b.x(), b.y());
        };
    } else if (action == QLatin1String("click")) {
        needs(2, 2);
        const QPointF p = at(n[0], n[1]);
        input = [&c, p] {
            c.mousePress(Left, 0, p.x(), p.y());
            c.mouseRelease(Left, 0, p.x(), p.y());
        };
    } else if (action == QLatin1String("dblclick")) {
        needs(2, 2);
        const QPointF p = at(n[0], n[1]);
        input = [&c, p] {
            c.mousePress(Left, 0, p.x(), p.y());
            c.mouseRelease(Left, 0, p.x(), p.y());
            c.mouseDoubleClick(Left, 0, p.x(), p.y());
            c.mouseRelease(Left, 0, p.x(), p.y());
        };
    } else if (action == QLatin1String("key")) {
        needs(2, 2);
        input = [&c, &n] { c.keyPress(static_cast<int>(n[0]), static_cast<int>(n[1])); };
    } else {
        throw ScriptLineError(QStringLiteral("unknown canvas action '%1'").arg(t[2].text));
    }
    app().dispatch(input);
}

void ScriptRunner::cmdSet(const QList<ScriptToken>& t) {
    if (t.size() != 3)
        throw ScriptLineError(QStringLiteral("set needs a path and a value"));
    QString member;
    QVariantList index;
    AutoPtr parent = resolveParent(t[1].text, member, index);
    const QVariant value = parseArgument(t[2]);
    app().dispatch([&] { parent->set(member, value, index); });
}

void ScriptRunner::cmdCall(const QList<ScriptToken>& t) {
    if (t.size() < 2)
        throw ScriptLineError(QStringLiteral("call needs a name"));
    QVariantList args;
    for (int i = 2; i < t.size(); ++i)
        args << parseArgument(t[i]);
    QString member;
    QVariantList index;
    AutoPtr parent = resolveParent(t[1].text, member, index);
    if (!parent->hasMember(member) && !dynamic_cast<Form*>(parent.get()) && parent.get() != app_.get())
        throw ScriptLineError(QStringLiteral("unknown routine '%1'").arg(t[1].text));
    QJsonObject o{{QStringLiteral("call"), t[1].text}};
    try {
        const QVariant r = parent->call(member, args);
        o.insert(QStringLiteral("result"), toJson(r));
    } catch (const RuntimeError& e) {
        if (e.number() == err::NotSupported && !parent->hasMember(member))
            throw ScriptLineError(QStringLiteral("unknown routine '%1'").arg(t[1].text));
        o.insert(QStringLiteral("error"), e.number());
        o.insert(QStringLiteral("description"), e.description());
    }
    writeLine(o);
}

QJsonValue ScriptRunner::evaluate(const QList<ScriptToken>& expr) {
    const QString head = expr[0].text;
    if (!expr[0].quoted && is(head, "forms") && expr.size() == 1) {
        QJsonArray loaded, modal;
        if (app_) {
            for (Form* f : app_->loadedForms())
                loaded << f->name();
            for (Form* f : app_->modalStack())
                modal << f->name();
        }
        return QJsonObject{{QStringLiteral("loaded"), loaded}, {QStringLiteral("modal"), modal}};
    }
    if (!expr[0].quoted && is(head, "caption") && expr.size() == 2) {
        if (!app().isForm(expr[1].text))
            throw ScriptLineError(QStringLiteral("unknown form '%1'").arg(expr[1].text));
        Form* f = app().loaded(expr[1].text);
        return f ? QJsonValue(f->caption()) : QJsonValue();
    }
    if (!expr[0].quoted && is(head, "file") && expr.size() == 2) {
        QString path = expr[1].text;
        if (QDir::isRelativePath(fs::toHost(path)))
            path = homeDir_ + QLatin1Char('/') + path;
        const QString host = fs::toHost(path);
        QFile f(host);
        QJsonObject o{{QStringLiteral("exists"), f.exists()}};
        if (f.exists() && f.open(QIODevice::ReadOnly)) {
            const QByteArray data = f.readAll();
            o.insert(QStringLiteral("size"), static_cast<double>(data.size()));
            o.insert(QStringLiteral("sha256"),
                     QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex()));
        } else {
            o.insert(QStringLiteral("size"), QJsonValue());
            o.insert(QStringLiteral("sha256"), QJsonValue());
        }
        return o;
    }
    if (!expr[0].quoted && is(head, "shapes") && expr.size() == 2)
        return toJson(resolveCanvas(expr[1].text).describeShapes());
    if (!expr[0].quoted && is(head, "sql") && expr.size() == 2) {
        // A connection of the driver's own, so that it works after the program has ended.
        SettingsStore machine(AppHome(homeDir_).machineSettingsPath());
        const QString location = machine.read(MachineKey, QStringLiteral("DB_Location"));
        const QString connection = location.contains(QLatin1String("Data Source="), Qt::CaseInsensitive)
                                       ? location
                                       : QStringLiteral("Data Source=") + location;
        QJsonArray rows;
        try {
            for (const QVariantMap& row : db::querySql(connection, expr[1].text))
                rows << toJson(row);
        } catch (const RuntimeError& e) {
            throw ScriptLineError(QStringLiteral("sql failed: %1").arg(e.description()));
        }
        return rows;
    }
    if (expr.size() != 1)
        throw ScriptLineError(QStringLiteral("cannot print '%1'").arg(joinTokens(expr, 0)));
    try {
        return toJson(resolveValue(head));
    } catch (const RuntimeError& e) {
        if (e.number() == err::NotSupported || e.number() == 340 || e.number() == 730)
            throw ScriptLineError(e.description());
        throw;
    }
}

bool ScriptRunner::expect(const QList<ScriptToken>& t) {
    if (t.size() < 3)
        throw ScriptLineError(QStringLiteral("expect needs an expression and a value"));
    const QJsonValue actual = evaluate(t.mid(1, t.size() - 2));
    const ScriptToken& want = t.back();
    writeLine({{QStringLiteral("expect"), joinTokens(t.mid(1, t.size() - 2), 0)},
               {QStringLiteral("value"), actual},
               {QStringLiteral("want"), want.text}});
    switch (actual.type()) {
    case QJsonValue::String:
        return actual.toString() == want.text;
    case QJsonValue::Double: {
        bool ok = false;
        const double w = want.text.toDouble(&ok);
        return ok && std::fabs(w - actual.toDouble()) < 1e-9;
    }
    case QJsonValue::Bool:
        return (is(want.text, "true") && actual.toBool()) || (is(want.text, "false") && !actual.toBool());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return is(want.text, "null");
    case QJsonValue::Array:
    case QJsonValue::Object: {
        QJsonParseError perr;
        const QJsonDocument doc = QJsonDocument::fromJson(want.text.toUtf8(), &perr);
        if (perr.error != QJsonParseError::NoError)
            throw ScriptLineError(QStringLiteral("the expected value is not JSON: %1").arg(want.text));
        return actual.isArray() ? doc.isArray() && doc.array() == actual.toArray()
                                : doc.isObject() && doc.object() == actual.toObject();
    }
    }
    return false;
}

} // namespace tessaly
