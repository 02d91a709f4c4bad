#include "core/script/ScriptRunner.h"

#include "core/app/CoreApplication.h"
#include "core/forms/Control.h"
#include "core/forms/Form.h"
#include "core/runtime/RuntimeError.h"
#include "core/script/ScriptJson.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <cmath>

namespace tessaly::script {

namespace {

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

// A path segment: a name and, for indexed members, its arguments.
struct Segment {
    QString name;
    QVariantList args;
};

Segment parseSegment(const QString& seg) {
    Segment s;
    const qsizetype open = seg.indexOf(QLatin1Char('('));
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

bool matchesExpected(const QJsonValue& actual, const Token& want) {
    switch (actual.type()) {
    case QJsonValue::String:
        return actual.toString() == want.text;
    case QJsonValue::Double: {
        bool ok = false;
        const double w = want.text.toDouble(&ok);
        return ok && std::fabs(w - actual.toDouble()) < 1e-9;
    }
    case QJsonValue::Bool:
        return (want.is("true") && actual.toBool()) || (want.is("false") && !actual.toBool());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return want.text.compare(QLatin1String("null"), Qt::CaseInsensitive) == 0;
    case QJsonValue::Array:
    case QJsonValue::Object: {
        QJsonParseError perr;
        const QJsonDocument doc = QJsonDocument::fromJson(want.text.toUtf8(), &perr);
        if (perr.error != QJsonParseError::NoError)
            throw LineError(QStringLiteral("the expected value is not JSON: %1").arg(want.text));
        return actual.isArray() ? doc.isArray() && doc.array() == actual.toArray()
                                : doc.isObject() && doc.object() == actual.toObject();
    }
    }
    return false;
}

} // namespace

Runner::Runner(const Registry& registry, Program program, QString homeDir, QSize screen, QTextStream& out,
               QTextStream& err)
    : registry_(registry), program_(std::move(program)), homeDir_(QDir(homeDir).absolutePath()), out_(out),
      err_(err) {
    ui_.setScreenSize(screen);
    ui_.onEvent = [this](const QJsonObject& o) { onPortEvent(o); };
    waiter_.onSleep = [this](int ms) {
        onPortEvent({{QStringLiteral("event"), QStringLiteral("sleep")}, {QStringLiteral("ms"), ms}});
    };
}

Runner::~Runner() = default;

void Runner::writeLine(const QJsonObject& o) {
    out_ << QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact)) << '\n';
    out_.flush();
}

void Runner::onPortEvent(const QJsonObject& event) {
    const QString name = event.value(QStringLiteral("event")).toString();
    if (!registry_.knowsEvent(name) && unknownEvent_.isEmpty())
        unknownEvent_ = name;
    writeLine(event);
}

int Runner::run(const QString& script) {
    const QStringList lines = script.split(QLatin1Char('\n'));
    for (qsizetype n = 0; n < lines.size(); ++n) {
        const QString trimmed = lines[n].trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        const auto fail = [&](const QString& why, int status) {
            err_ << "line " << (n + 1) << ": " << why << ": " << trimmed << '\n';
            err_.flush();
            return status;
        };
        try {
            const Tokens tokens = tokenize(trimmed);
            if (tokens[0].is("expect")) {
                if (!expect(tokens))
                    return fail(QStringLiteral("expectation failed"), 1);
            } else {
                runLine(tokens);
            }
            if (!unknownEvent_.isEmpty())
                throw LineError(QStringLiteral("the program reported an event the driver does not know: '%1'")
                                    .arg(unknownEvent_));
        } catch (const LineError& e) {
            return fail(QString::fromUtf8(e.what()), 2);
        } catch (const RuntimeError& e) {
            return fail(QStringLiteral("run-time error %1: %2").arg(e.number()).arg(e.description()), 2);
        }
    }
    return 0;
}

void Runner::runLine(const Tokens& t) {
    const Command* command = t[0].quoted ? nullptr : registry_.findCommand(t[0].text);
    if (!command)
        throw LineError(QStringLiteral("unknown command '%1'").arg(t[0].text));
    (*command)(*this, t);
}

CoreApplication& Runner::app() {
    if (!app_)
        throw LineError(QStringLiteral("the program is not running: use start"));
    return *app_;
}

void Runner::install() {
    program_.installHome(home());
}

void Runner::start() {
    if (app_ && !app_->ended()) {
        // A second instance launched beside the running one: it meets the
        // single-instance rule and ends at once.
        const std::unique_ptr<CoreApplication> second = program_.makeApplication(ui_, waiter_, home());
        if (second->Main())
            throw LineError(QStringLiteral("a second instance started although the first still runs"));
        return;
    }
    if (app_)
        retired_.push_back(std::move(app_));
    QDir().mkpath(homeDir_);
    QDir::setCurrent(homeDir_);
    app_ = program_.makeApplication(ui_, waiter_, home());
    if (!app_->Main())
        return;
    if (Form* splash = app_->loaded(QStringLiteral("frmSplash"))) {
        Control& timer = splash->control(QStringLiteral("Timer1"));
        if (timer.enabled())
            splash->raiseEvent(timer, QStringLiteral("Timer"));
    }
}

QVariant Runner::argument(const Token& token) {
    return parseLiteral(token.text, token.quoted);
}

AutoPtr Runner::resolveParent(const QString& path, QString& member, QVariantList& index) {
    const QStringList parts = splitPath(path);
    const Segment first = parseSegment(parts[0]);
    if (parts.size() == 1) {
        member = first.name;
        index = first.args;
        return AutoPtr(AutoPtr(), &app()); // not owned: the runner owns it
    }
    AutoPtr cur = app().isForm(first.name) ? app().form(first.name).shared_from_this()
                                           : toObject(app().get(first.name, first.args));
    if (!cur)
        throw LineError(QStringLiteral("'%1' is not an object").arg(first.name));
    for (qsizetype i = 1; i < parts.size() - 1; ++i) {
        const Segment s = parseSegment(parts[i]);
        AutoPtr next = toObject(cur->get(s.name, s.args));
        if (!next)
            throw LineError(QStringLiteral("'%1' is not an object").arg(s.name));
        cur = next;
    }
    const Segment last = parseSegment(parts.back());
    member = last.name;
    index = last.args;
    return cur;
}

QVariant Runner::resolveValue(const QString& path) {
    const QStringList parts = splitPath(path);
    if (parts.size() == 1) {
        const Segment s = parseSegment(parts[0]);
        if (app().isForm(s.name))
            return toVariant(app().form(s.name).shared_from_this());
        return app().get(s.name, s.args);
    }
    QString member;
    QVariantList index;
    AutoPtr parent = resolveParent(path, member, index);
    return parent->get(member, index);
}

Control& Runner::resolveControl(const QString& path) {
    auto* c = dynamic_cast<Control*>(toObject(resolveValue(path)).get());
    if (!c)
        throw LineError(QStringLiteral("'%1' is not a control").arg(path));
    return *c;
}

void Runner::requireInput(Form& form, const QString& what) {
    if (!app().acceptsInput(form))
        throw LineError(QStringLiteral("%1 is under a modal window").arg(what));
}

QJsonValue Runner::evaluate(const Tokens& expr) {
    if (!expr[0].quoted)
        if (const PrintForm* form = registry_.findPrintForm(expr[0].text, expr.size() - 1))
            return (*form)(*this, expr);
    if (expr.size() != 1)
        throw LineError(QStringLiteral("cannot print '%1'").arg(joinTokens(expr)));
    try {
        return toJson(resolveValue(expr[0].text));
    } catch (const RuntimeError& e) {
        if (e.number() == err::NotSupported || e.number() == err::NoControl ||
            e.number() == err::NoArrayElement)
            throw LineError(e.description());
        throw;
    }
}

bool Runner::expect(const Tokens& t) {
    if (t.size() < 3)
        throw LineError(QStringLiteral("expect needs an expression and a value"));
    const Tokens expression = t.mid(1, t.size() - 2);
    const QJsonValue actual = evaluate(expression);
    const Token& want = t.back();
    writeLine({{QStringLiteral("expect"), joinTokens(expression)},
               {QStringLiteral("value"), actual},
               {QStringLiteral("want"), want.text}});
    return matchesExpected(actual, want);
}

} // namespace tessaly::script
