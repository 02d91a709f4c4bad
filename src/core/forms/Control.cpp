#include "Control.h"

#include "Form.h"
#include "TabStrip.h"
#include "core/db/DbErrors.h"
#include "core/db/Values.h"
#include "core/runtime/Clock.h"
#include "core/runtime/MemberName.h"
#include "core/runtime/RuntimeError.h"
#include "core/runtime/Vb.h"

namespace tessaly {

namespace {

// One panel of a status bar, reached as SB1.Panels(N).
class PanelRef final : public AutoObject {
public:
    PanelRef(Control& bar, int panel) : bar_(bar), panel_(panel) {}
    QString typeName() const override { return QStringLiteral("Panel"); }
    QVariant get(const QString& name, const QVariantList& index) override {
        if (name.compare(QLatin1String("Text"), Qt::CaseInsensitive) == 0)
            return bar_.panelText(panel_);
        return AutoObject::get(name, index);
    }
    void set(const QString& name, const QVariant& value, const QVariantList& index) override {
        if (name.compare(QLatin1String("Text"), Qt::CaseInsensitive) == 0)
            return bar_.setPanelText(panel_, vb::toText(value));
        AutoObject::set(name, value, index);
    }
    QStringList memberNames() const override { return {QStringLiteral("Text")}; }

private:
    Control& bar_;
    int panel_;
};

using member::is;

// The Style of a list box that shows a tick box at each item.
constexpr int CheckBoxListStyle = 1;

bool captioned(ControlKind k) {
    return k == ControlKind::Label || k == ControlKind::CommandButton || k == ControlKind::CheckBox ||
           k == ControlKind::OptionButton || k == ControlKind::Frame || k == ControlKind::Menu;
}

} // namespace

QString controlKindName(ControlKind kind) {
    switch (kind) {
    case ControlKind::Label:
        return QStringLiteral("Label");
    case ControlKind::TextBox:
        return QStringLiteral("TextBox");
    case ControlKind::CommandButton:
        return QStringLiteral("CommandButton");
    case ControlKind::CheckBox:
        return QStringLiteral("CheckBox");
    case ControlKind::OptionButton:
        return QStringLiteral("OptionButton");
    case ControlKind::ComboBox:
        return QStringLiteral("ComboBox");
    case ControlKind::ListBox:
        return QStringLiteral("ListBox");
    case ControlKind::Frame:
        return QStringLiteral("Frame");
    case ControlKind::PictureBox:
        return QStringLiteral("PictureBox");
    case ControlKind::Menu:
        return QStringLiteral("Menu");
    case ControlKind::StatusBar:
        return QStringLiteral("StatusBar");
    case ControlKind::Slider:
        return QStringLiteral("Slider");
    case ControlKind::Timer:
        return QStringLiteral("Timer");
    case ControlKind::TabStrip:
        return QStringLiteral("TabStrip");
    case ControlKind::DataControl:
        return QStringLiteral("DataControl");
    case ControlKind::Grid:
        return QStringLiteral("Grid");
    case ControlKind::Canvas:
        return QStringLiteral("Canvas");
    case ControlKind::Schedule:
        return QStringLiteral("Schedule");
    case ControlKind::DriveList:
        return QStringLiteral("DriveListBox");
    case ControlKind::DirList:
        return QStringLiteral("DirListBox");
    case ControlKind::DatePicker:
        return QStringLiteral("DTPicker");
    case ControlKind::TimeEdit:
        return QStringLiteral("ctDEdit");
    case ControlKind::RichText:
        return QStringLiteral("RichTextBox");
    }
    return QStringLiteral("Control");
}

Control::Control(Form& form, ControlKind kind, QString name, int index)
    : form_(form), kind_(kind), name_(std::move(name)), index_(index) {
    props_.insert(QStringLiteral("Enabled"), true);
    props_.insert(QStringLiteral("Visible"), kind != ControlKind::Timer);
    props_.insert(QStringLiteral("Left"), 0);
    props_.insert(QStringLiteral("Top"), 0);
    props_.insert(QStringLiteral("Width"), 0);
    props_.insert(QStringLiteral("Height"), 0);
    props_.insert(QStringLiteral("ToolTipText"), QString());
    if (captioned(kind))
        props_.insert(QStringLiteral("Caption"), QString());
    if (kind == ControlKind::TextBox || kind == ControlKind::ComboBox || kind == ControlKind::RichText)
        props_.insert(QStringLiteral("Text"), QString());
    if (kind == ControlKind::ComboBox || kind == ControlKind::ListBox)
        props_.insert(QStringLiteral("ListIndex"), -1);
    if (kind == ControlKind::CheckBox || kind == ControlKind::OptionButton || kind == ControlKind::Slider)
        props_.insert(QStringLiteral("Value"), 0);
    if (kind == ControlKind::Menu)
        props_.insert(QStringLiteral("Checked"), false);
    if (kind == ControlKind::DatePicker)
        props_.insert(QStringLiteral("Value"), QDateTime(clock::today(), QTime(0, 0), Qt::UTC));
    if (kind == ControlKind::TimeEdit)
        props_.insert(QStringLiteral("Value"), 0);
    if (kind == ControlKind::DirList)
        props_.insert(QStringLiteral("Path"), QString());
    if (kind == ControlKind::DriveList)
        props_.insert(QStringLiteral("Drive"), QString());
    if (kind == ControlKind::Timer) {
        props_.insert(QStringLiteral("Enabled"), false);
        props_.insert(QStringLiteral("Interval"), 0);
    }
    if (kind == ControlKind::Slider) {
        props_.insert(QStringLiteral("Min"), 0);
        props_.insert(QStringLiteral("Max"), 10);
        props_.insert(QStringLiteral("SmallChange"), 1);
        props_.insert(QStringLiteral("LargeChange"), 5);
        props_.insert(QStringLiteral("TickFrequency"), 1);
    }
}

QString Control::fullName() const {
    return index_ < 0 ? name_ : QStringLiteral("%1(%2)").arg(name_).arg(index_);
}

void Control::fire(const QString& event, QVariantList args) {
    form_.raiseEvent(*this, event, args);
}

void Control::setProp(const QString& name, const QVariant& value) {
    // One look-up: labels are written once a pixel by the image converter's walk.
    const auto it = props_.find(name);
    if (it == props_.end())
        props_.insert(name, value);
    else if (*it == value)
        return;
    else
        *it = value;
    if (onChanged)
        onChanged(name);
}

QString Control::text() const {
    if (kind_ == ControlKind::ListBox)
        return listText();
    if (props_.contains(QStringLiteral("Text")))
        return props_.value(QStringLiteral("Text")).toString();
    return caption();
}

QString Control::listText() const {
    const int i = listIndex();
    return (i >= 0 && i < listCount()) ? items_[static_cast<size_t>(i)] : QString();
}

void Control::setText(const QString& text) {
    if (!props_.contains(QStringLiteral("Text"))) {
        setCaption(text);
        return;
    }
    const bool changed = props_.value(QStringLiteral("Text")).toString() != text;
    setProp(QStringLiteral("Text"), text);
    if (kind_ == ControlKind::ComboBox) {
        // A combo box's text that matches an item selects it; other text leaves no item selected.
        int found = -1;
        for (int i = 0; i < listCount(); ++i)
            if (items_[static_cast<size_t>(i)] == text) {
                found = i;
                break;
            }
        setProp(QStringLiteral("ListIndex"), found);
    }
    if (changed &&
        (kind_ == ControlKind::TextBox || kind_ == ControlKind::ComboBox || kind_ == ControlKind::RichText))
        fire(QStringLiteral("Change"));
}

void Control::setValue(int value) {
    const bool changed = props_.value(QStringLiteral("Value")).toInt() != value;
    setProp(QStringLiteral("Value"), value);
    if (kind_ == ControlKind::CheckBox && changed)
        fire(QStringLiteral("Click"));
    else if (kind_ == ControlKind::OptionButton && value != 0) {
        form_.clearOtherOptions(*this);
        if (changed)
            fire(QStringLiteral("Click"));
    } else if (kind_ == ControlKind::Slider && changed)
        fire(QStringLiteral("Change"));
}

void Control::setPickedValue(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        db::dberr::raiseInvalidUseOfNull();
    // A date picker holds a date (a number is a date serial), a time edit whole minutes.
    const QVariant held = kind_ == ControlKind::DatePicker ? QVariant(db::values::dateFromVariant(value))
                                                           : QVariant(vb::toInt32(value));
    const bool changed = prop(QStringLiteral("Value")) != held;
    setProp(QStringLiteral("Value"), held);
    if (changed)
        fire(QStringLiteral("Change"));
}

QRect Control::geometry() const {
    return QRect(prop(QStringLiteral("Left")).toInt(), prop(QStringLiteral("Top")).toInt(),
                 prop(QStringLiteral("Width")).toInt(), prop(QStringLiteral("Height")).toInt());
}

void Control::move(int left, int top, int width, int height) {
    if (width < 0 || height < 0)
        raiseError(err::InvalidProcedureCall);
    setProp(QStringLiteral("Left"), left);
    setProp(QStringLiteral("Top"), top);
    setProp(QStringLiteral("Width"), width);
    setProp(QStringLiteral("Height"), height);
}

void Control::move(int left, int top) {
    setProp(QStringLiteral("Left"), left);
    setProp(QStringLiteral("Top"), top);
}

QString Control::listItem(int i) const {
    if (i < 0 || i >= listCount())
        return QString();
    return items_[static_cast<size_t>(i)];
}

void Control::setListIndex(int i) {
    if (i < -1 || i >= listCount())
        raiseError(380, QStringLiteral("Invalid property value"));
    setProp(QStringLiteral("ListIndex"), i);
    if (kind_ == ControlKind::ComboBox && i >= 0)
        setProp(QStringLiteral("Text"), items_[static_cast<size_t>(i)]);
    if (i >= 0)
        fire(QStringLiteral("Click"));
}

void Control::addItem(const QString& item) {
    items_.push_back(item);
    itemData_.emplace_back(0);
    selected_.push_back(false);
    if (onChanged)
        onChanged(QStringLiteral("List"));
}

void Control::removeItem(int i) {
    if (i < 0 || i >= listCount())
        raiseError(5);
    items_.erase(items_.begin() + i);
    itemData_.erase(itemData_.begin() + i);
    selected_.erase(selected_.begin() + i);
    if (onChanged)
        onChanged(QStringLiteral("List"));
}

void Control::clear() {
    items_.clear();
    itemData_.clear();
    selected_.clear();
    props_.insert(QStringLiteral("ListIndex"), -1);
    if (kind_ == ControlKind::ComboBox)
        props_.insert(QStringLiteral("Text"), QString());
    if (onChanged)
        onChanged(QStringLiteral("List"));
}

QVariant Control::itemData(int i) const {
    if (i < 0 || i >= listCount())
        raiseError(381, QStringLiteral("Invalid property array index"));
    return itemData_[static_cast<size_t>(i)];
}

void Control::setItemData(int i, const QVariant& data) {
    if (i < 0 || i >= listCount())
        raiseError(381, QStringLiteral("Invalid property array index"));
    itemData_[static_cast<size_t>(i)] = data;
}

bool Control::selected(int i) const {
    if (i < 0 || i >= listCount())
        raiseError(381, QStringLiteral("Invalid property array index"));
    return selected_[static_cast<size_t>(i)];
}

void Control::setSelected(int i, bool on) {
    if (i < 0 || i >= listCount())
        raiseError(381, QStringLiteral("Invalid property array index"));
    if (selected_[static_cast<size_t>(i)] == on)
        return;
    selected_[static_cast<size_t>(i)] = on;
    if (onChanged)
        onChanged(QStringLiteral("Selected"));
    if (prop(QStringLiteral("Style")).toInt() == CheckBoxListStyle)
        fire(QStringLiteral("ItemCheck"), {i});
}

QString Control::panelText(int panel) const {
    if (panel < 1 || panel > panelCount())
        raiseError(35600, QStringLiteral("Index out of bounds"));
    return panels_[static_cast<size_t>(panel - 1)];
}

void Control::setPanelText(int panel, const QString& text) {
    if (panel < 1 || panel > panelCount())
        raiseError(35600, QStringLiteral("Index out of bounds"));
    panels_[static_cast<size_t>(panel - 1)] = text;
    if (onChanged)
        onChanged(QStringLiteral("Panels"));
}

void Control::setPanelCount(int n) {
    panels_.resize(static_cast<size_t>(n));
}

QVariant Control::get(const QString& name, const QVariantList& index) {
    if (is(name, "Text"))
        return text();
    if (is(name, "Name"))
        return name_;
    if (is(name, "Index"))
        return index_;
    if (is(name, "List"))
        return listItem(index.isEmpty() ? listIndex() : vb::toInt32(index.value(0)));
    if (is(name, "ListCount"))
        return listCount();
    if (is(name, "ItemData"))
        return itemData(vb::toInt32(index.value(0)));
    if (is(name, "NewIndex"))
        return newIndex();
    if (is(name, "Selected") && (kind_ == ControlKind::ListBox || kind_ == ControlKind::ComboBox))
        return selected(vb::toInt32(index.value(0)));
    if (is(name, "Tabs") && kind_ == ControlKind::TabStrip && !index.isEmpty())
        return toVariant(tabs::tabObject(*this, vb::toInt32(index.value(0))));
    if (is(name, "Panels")) {
        if (index.isEmpty())
            return panelCount();
        return toVariant(std::make_shared<PanelRef>(*this, vb::toInt32(index.value(0))));
    }
    for (auto it = props_.constBegin(); it != props_.constEnd(); ++it)
        if (is(name, it.key().toLatin1().constData()))
            return it.value();
    if (inner)
        return inner->get(name, index);
    raiseNoMember(fullName(), name);
}

void Control::set(const QString& name, const QVariant& value, const QVariantList& index) {
    if (is(name, "Text"))
        return setText(vb::toText(value));
    if (is(name, "ListIndex"))
        return setListIndex(vb::toInt32(value));
    if (is(name, "Value")) {
        if (kind_ == ControlKind::CheckBox || kind_ == ControlKind::OptionButton ||
            kind_ == ControlKind::Slider)
            return setValue(value.metaType().id() == QMetaType::Bool ? (value.toBool() ? 1 : 0)
                                                                     : vb::toInt32(value));
        if (kind_ == ControlKind::DatePicker || kind_ == ControlKind::TimeEdit)
            return setPickedValue(value);
    }
    if (is(name, "ItemData"))
        return setItemData(vb::toInt32(index.value(0)), value);
    if (is(name, "Selected") && (kind_ == ControlKind::ListBox || kind_ == ControlKind::ComboBox))
        return setSelected(vb::toInt32(index.value(0)), vb::toBool(value));
    for (auto it = props_.constBegin(); it != props_.constEnd(); ++it)
        if (is(name, it.key().toLatin1().constData())) {
            const QString key = it.key();
            const QVariant old = it.value();
            QVariant v = value;
            if (old.metaType().id() == QMetaType::Bool)
                v = vb::toBool(value);
            else if (old.metaType().id() == QMetaType::Int)
                v = vb::toInt32(value);
            else if (old.metaType().id() == QMetaType::UInt)
                v = static_cast<unsigned>(vb::toDouble(value));
            else if (old.metaType().id() == QMetaType::QString)
                v = vb::toText(value);
            setProp(key, v);
            // A folder or drive list fires Change when its path or drive changes.
            if ((kind_ == ControlKind::DirList && is(key, "Path")) ||
                (kind_ == ControlKind::DriveList && is(key, "Drive")))
                fire(QStringLiteral("Change"));
            return;
        }
    if (inner)
        return inner->set(name, value, index);
    raiseNoMember(fullName(), name);
}

QVariant Control::call(const QString& name, QVariantList& args) {
    if (is(name, "AddItem")) {
        addItem(vb::toText(args.value(0)));
        return {};
    }
    if (is(name, "Clear")) {
        clear();
        return {};
    }
    if (is(name, "RemoveItem")) {
        removeItem(vb::toInt32(args.value(0)));
        return {};
    }
    if (is(name, "SetFocus")) {
        form_.setFocus(this);
        return {};
    }
    if (is(name, "ZOrder")) {
        // Position 0 brings the control in front of its neighbours; the view
        // follows the count of such moves.
        if (args.isEmpty() || vb::toInt32(args.value(0)) == 0)
            setProp(QStringLiteral("ZOrder"), prop(QStringLiteral("ZOrder")).toInt() + 1);
        return {};
    }
    if (is(name, "Move")) {
        move(vb::toInt32(args.value(0)), vb::toInt32(args.value(1)),
             args.size() > 2 ? vb::toInt32(args.value(2)) : geometry().width(),
             args.size() > 3 ? vb::toInt32(args.value(3)) : geometry().height());
        return {};
    }
    if (inner)
        return inner->call(name, args);
    raiseNoMember(fullName(), name);
}

QStringList Control::memberNames() const {
    QStringList names = props_.keys();
    names << QStringLiteral("Text") << QStringLiteral("Name") << QStringLiteral("Index");
    if (kind_ == ControlKind::ComboBox || kind_ == ControlKind::ListBox)
        names << QStringLiteral("List") << QStringLiteral("ListCount") << QStringLiteral("ItemData")
              << QStringLiteral("Selected") << QStringLiteral("AddItem") << QStringLiteral("Clear")
              << QStringLiteral("RemoveItem");
    if (kind_ == ControlKind::StatusBar)
        names << QStringLiteral("Panels");
    if (kind_ == ControlKind::TabStrip)
        names << QStringLiteral("Tabs");
    if (inner)
        names << inner->memberNames();
    return names;
}

} // namespace tessaly
