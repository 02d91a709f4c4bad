#include "TabStrip.h"

#include "Control.h"
#include "Form.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly::tabs {

namespace {

constexpr int IndexOutOfBounds = 35600; // the tab control's error for a tab it does not have

const QString TabsProperty = QStringLiteral("Tabs");
const QString TabProperty = QStringLiteral("Tab");
const QString EnabledProperty = QStringLiteral("TabEnabled");

using member::is;

void requireTab(const Control& strip, int tab) {
    if (tab < 1 || tab > count(strip))
        raiseError(IndexOutOfBounds, QStringLiteral("Index out of bounds"));
}

// One tab, reached as Tabs1.Tabs(N).
class TabRef final : public AutoObject {
public:
    TabRef(Control& strip, int tab) : strip_(strip), tab_(tab) {}
    QString typeName() const override { return QStringLiteral("Tab"); }
    QVariant get(const QString& name, const QVariantList& index) override {
        if (is(name, "Caption"))
            return caption(strip_, tab_);
        if (is(name, "Enabled"))
            return enabled(strip_, tab_);
        if (is(name, "Selected"))
            return selected(strip_, tab_);
        if (is(name, "Index"))
            return tab_;
        return AutoObject::get(name, index);
    }
    void set(const QString& name, const QVariant& value, const QVariantList& index) override {
        if (is(name, "Caption"))
            return setCaption(strip_, tab_, vb::toText(value));
        if (is(name, "Enabled"))
            return setEnabled(strip_, tab_, vb::toBool(value));
        if (is(name, "Selected")) {
            if (vb::toBool(value))
                select(strip_, tab_);
            return;
        }
        AutoObject::set(name, value, index);
    }
    QStringList memberNames() const override {
        return {QStringLiteral("Caption"), QStringLiteral("Enabled"), QStringLiteral("Selected"),
                QStringLiteral("Index")};
    }

private:
    Control& strip_;
    int tab_;
};

} // namespace

int count(const Control& strip) {
    return static_cast<int>(strip.prop(TabsProperty).toStringList().size());
}

QString caption(const Control& strip, int tab) {
    requireTab(strip, tab);
    return strip.prop(TabsProperty).toStringList().at(tab - 1);
}

void setCaption(Control& strip, int tab, const QString& text) {
    requireTab(strip, tab);
    QStringList captions = strip.prop(TabsProperty).toStringList();
    captions[tab - 1] = text;
    strip.setProp(TabsProperty, captions);
}

bool enabled(const Control& strip, int tab) {
    requireTab(strip, tab);
    const QVariantList flags = strip.prop(EnabledProperty).toList();
    return tab > flags.size() || flags.at(tab - 1).toBool();
}

void setEnabled(Control& strip, int tab, bool on) {
    requireTab(strip, tab);
    QVariantList flags = strip.prop(EnabledProperty).toList();
    while (flags.size() < count(strip))
        flags.append(true);
    flags[tab - 1] = on;
    strip.setProp(EnabledProperty, flags);
}

bool selected(const Control& strip, int tab) {
    requireTab(strip, tab);
    return strip.prop(TabProperty).toInt() == tab - 1;
}

void select(Control& strip, int tab) {
    requireTab(strip, tab);
    const int before = strip.prop(TabProperty).toInt();
    if (before == tab - 1)
        return;
    strip.setProp(TabProperty, tab - 1);
    EventArgs args{before};
    strip.form().raiseEvent(strip, QStringLiteral("Click"), args);
}

AutoPtr tabObject(Control& strip, int tab) {
    requireTab(strip, tab);
    return std::make_shared<TabRef>(strip, tab);
}

} // namespace tessaly::tabs
