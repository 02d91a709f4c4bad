#include "workspace/commands/CommandSupport.h"

#include "core/port/UiPort.h"
#include "workspace/Application.h"

namespace tessaly::commands {

namespace {
const QString NothingSelectedText = QStringLiteral("Nothing selected!");
const QString WarningTitle = QStringLiteral("Warning");
constexpr int CheckedValue = 1; // the Value of a ticked check box
} // namespace

QVariant get(const AutoPtr& o, const char* member, const QVariantList& index) {
    if (!o)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return o->get(QString::fromLatin1(member), index);
}

void put(const AutoPtr& o, const char* member, const QVariant& value) {
    if (!o)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    o->set(QString::fromLatin1(member), value);
}

QVariant invoke(const AutoPtr& o, const char* member, QVariantList args) {
    if (!o)
        raiseError(err::ObjectRequired, QStringLiteral("Object variable not set"));
    return o->call(QString::fromLatin1(member), args);
}

AutoPtr object(const AutoPtr& owner, const char* member) {
    return toObject(get(owner, member));
}

AutoPtr selectedRange(Application& app) {
    return object(app.gSelection, "Range");
}

bool RequireSelection(Application& app) {
    const AutoPtr range = selectedRange(app);
    if (range && get(range, "Count").toInt() > 0)
        return true;
    app.ui.msgBox(NothingSelectedText, mb::Exclamation, WarningTitle);
    return false;
}

void onClick(Form& form, const QString& name, std::function<void()> handler) {
    form.on(name, QStringLiteral("Click"), [h = std::move(handler)](Control&, EventArgs&) { h(); });
}

bool ticked(int checkValue) {
    return checkValue != 0;
}

int checkValueOf(bool on) {
    return on ? CheckedValue : 0;
}

} // namespace tessaly::commands
