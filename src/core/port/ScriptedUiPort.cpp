#include "ScriptedUiPort.h"

#include "core/forms/Form.h"
#include "core/port/ReportDocument.h"

#include <QJsonValue>

namespace tessaly {

namespace {
constexpr int ButtonsMask = 7;      // the low three bits choose the buttons
constexpr int DefaultMask = 0x300;  // which button is the default
constexpr int OkCancel = 1;         // OK and Cancel
constexpr int AbortRetryIgnore = 2; // Abort, Retry and Ignore
constexpr int YesNoCancel = 3;      // Yes, No and Cancel
constexpr int RetryCancel = 5;      // Retry and Cancel
constexpr int ResultAbort = 3, ResultRetry = 4, ResultIgnore = 5;
} // namespace

int ScriptedUiPort::defaultResult(int flags) {
    const int buttons = flags & ButtonsMask;
    const int which = (flags & DefaultMask) >> 8; // 0 first, 1 second, 2 third
    auto pick = [which](std::initializer_list<int> results) {
        const int n = static_cast<int>(results.size());
        return *(results.begin() + (which < n ? which : 0));
    };
    switch (buttons) {
    case OkCancel:
        return pick({mb::ResultOk, mb::ResultCancel});
    case AbortRetryIgnore:
        return pick({ResultAbort, ResultRetry, ResultIgnore});
    case YesNoCancel:
        return pick({mb::ResultYes, mb::ResultNo, mb::ResultCancel});
    case mb::YesNo:
        return pick({mb::ResultYes, mb::ResultNo});
    case RetryCancel:
        return pick({ResultRetry, mb::ResultCancel});
    default:
        return mb::ResultOk;
    }
}

int ScriptedUiPort::msgBox(const QString& text, int flags, const QString& title) {
    int result = defaultResult(flags);
    if (!msgBoxAnswers_.empty()) {
        result = msgBoxAnswers_.front();
        msgBoxAnswers_.pop_front();
    }
    emitEvent({{QStringLiteral("event"), QStringLiteral("msgbox")},
               {QStringLiteral("text"), text},
               {QStringLiteral("flags"), flags},
               {QStringLiteral("title"), title},
               {QStringLiteral("result"), result}});
    return result;
}

std::optional<QString> ScriptedUiPort::inputBox(const QString& prompt, const QString& title,
                                                const QString& defaultText) {
    std::optional<QString> result;
    if (!inputAnswers_.empty()) {
        result = inputAnswers_.front();
        inputAnswers_.pop_front();
    }
    emitEvent({{QStringLiteral("event"), QStringLiteral("inputbox")},
               {QStringLiteral("prompt"), prompt},
               {QStringLiteral("title"), title},
               {QStringLiteral("default"), defaultText},
               {QStringLiteral("result"), result ? QJsonValue(*result) : QJsonValue()}});
    return result;
}

std::optional<QString> ScriptedUiPort::fileDialog(const char* kind, std::deque<std::optional<QString>>& answers,
                                                  const FileDialogRequest& request) {
    std::optional<QString> result;
    if (!answers.empty()) {
        result = answers.front();
        answers.pop_front();
    }
    emitEvent({{QStringLiteral("event"), QString::fromLatin1(kind)},
               {QStringLiteral("filter"), request.filter},
               {QStringLiteral("title"), request.title},
               {QStringLiteral("result"), result ? QJsonValue(*result) : QJsonValue()}});
    return result;
}

std::optional<QString> ScriptedUiPort::openDialog(const FileDialogRequest& request) {
    return fileDialog("open", openAnswers_, request);
}

std::optional<QString> ScriptedUiPort::saveDialog(const FileDialogRequest& request) {
    return fileDialog("save", saveAnswers_, request);
}

std::optional<QString> ScriptedUiPort::folderDialog(const FileDialogRequest& request) {
    return fileDialog("folder", folderAnswers_, request);
}

std::optional<unsigned> ScriptedUiPort::colourDialog(unsigned initial) {
    std::optional<unsigned> result;
    if (!colourAnswers_.empty()) {
        result = colourAnswers_.front();
        colourAnswers_.pop_front();
    }
    emitEvent({{QStringLiteral("event"), QStringLiteral("colour")},
               {QStringLiteral("initial"), static_cast<qint64>(initial)},
               {QStringLiteral("result"), result ? QJsonValue(static_cast<qint64>(*result)) : QJsonValue()}});
    return result;
}

bool ScriptedUiPort::canvasDialog(const QString& name) {
    emitEvent({{QStringLiteral("event"), QStringLiteral("dialog")}, {QStringLiteral("name"), name}});
    return false;
}

void ScriptedUiPort::setMousePointer(int value) {
    pointer_ = value;
    emitEvent({{QStringLiteral("event"), QStringLiteral("pointer")}, {QStringLiteral("value"), value}});
}

void ScriptedUiPort::showForm(Form& form, bool modal) {
    emitEvent({{QStringLiteral("event"), QStringLiteral("show")},
               {QStringLiteral("form"), form.name()},
               {QStringLiteral("modal"), modal}});
}

void ScriptedUiPort::unloadForm(Form& form) {
    emitEvent({{QStringLiteral("event"), QStringLiteral("unload")}, {QStringLiteral("form"), form.name()}});
}

void ScriptedUiPort::printed(const QString& what) {
    emitEvent({{QStringLiteral("event"), QStringLiteral("print")}, {QStringLiteral("what"), what}});
}

void ScriptedUiPort::processEnded() {
    emitEvent({{QStringLiteral("event"), QStringLiteral("end")}});
}

bool ScriptedUiPort::takeAnswer(const QString& kind, std::optional<QVariant>& answer) {
    auto& queue = answers_[kind.toLower()];
    if (queue.empty())
        return false;
    answer = std::move(queue.front());
    queue.pop_front();
    return true;
}

void ScriptedUiPort::notify(const QString& event, const QVariantMap& fields) {
    QJsonObject o = QJsonObject::fromVariantMap(fields);
    o.insert(QStringLiteral("event"), event);
    emitEvent(o);
}

void ScriptedUiPort::showReport(const std::shared_ptr<ReportDocument>& report, bool modal) {
    if (!report)
        return;
    emitEvent({{QStringLiteral("event"), QStringLiteral("report")},
               {QStringLiteral("caption"), report->caption()},
               {QStringLiteral("document"), report->documentName()},
               {QStringLiteral("pages"), report->pageCount()},
               {QStringLiteral("modal"), modal}});
}

SpellChoice ScriptedUiPort::spellDialog(const SpellQuery& query) {
    SpellChoice choice;
    std::optional<QVariant> answer;
    if (takeAnswer(QStringLiteral("spell"), answer) && answer) {
        const QString text = answer->toString();
        if (text.compare(QLatin1String("ignore"), Qt::CaseInsensitive) == 0)
            choice.action = SpellChoice::Action::Ignore;
        else if (text.compare(QLatin1String("cancel"), Qt::CaseInsensitive) != 0) {
            choice.action = SpellChoice::Action::Replace;
            choice.replacement = text;
        }
    }
    QString result = QStringLiteral("cancel");
    if (choice.action == SpellChoice::Action::Ignore)
        result = QStringLiteral("ignore");
    else if (choice.action == SpellChoice::Action::Replace)
        result = choice.replacement;
    notify(QStringLiteral("spell"), {{QStringLiteral("word"), query.word},
                                     {QStringLiteral("suggestions"), query.suggestions},
                                     {QStringLiteral("result"), result}});
    return choice;
}

} // namespace tessaly
