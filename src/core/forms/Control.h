#pragma once

#include "core/runtime/AutoObject.h"

#include <QRect>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <vector>

namespace tessaly {

class Form;

// The kinds of control a form holds. The Qt view layer builds one widget per
// control by its kind.
enum class ControlKind {
    Label,
    TextBox,
    CommandButton,
    CheckBox,
    OptionButton,
    ComboBox,
    ListBox,
    Frame,
    PictureBox,
    Menu,
    StatusBar,
    Slider,
    Timer,
    TabStrip,
    DataControl,
    Grid,
    Canvas,
    Schedule,
    DriveList,
    DirList,
    DatePicker, // a date picker: Value is a date
    TimeEdit,   // a time edit: Value is minutes after midnight
    RichText,
};

QString controlKindName(ControlKind kind);

// One control of a form: the properties that Tessaly's logic reads and
// writes, kept by name, with the events that the platform fires when some of
// them change (a Text change fires Change, a ListIndex change fires Click,
// a check box's Value fires Click). Control arrays share a name and differ by
// Index; a control that is no array has Index -1.
class Control : public AutoObject {
public:
    Control(Form& form, ControlKind kind, QString name, int index = -1);

    Form& form() const { return form_; }
    ControlKind kind() const { return kind_; }
    const QString& name() const { return name_; }
    int index() const { return index_; }
    // "cmdToolBarButton(20)" or "txtZoom".
    QString fullName() const;

    QString typeName() const override { return controlKindName(kind_); }
    QVariant get(const QString& name, const QVariantList& index = {}) override;
    void set(const QString& name, const QVariant& value, const QVariantList& index = {}) override;
    QVariant call(const QString& name, QVariantList& args) override;
    QStringList memberNames() const override;
    std::optional<QVariant> printValue() override { return std::nullopt; }

    // Typed access for the logic.
    QString text() const;              // Text, or Caption for captioned controls
    void setText(const QString& text); // fires Change where the platform does
    QString caption() const { return prop(QStringLiteral("Caption")).toString(); }
    void setCaption(const QString& caption) { setProp(QStringLiteral("Caption"), caption); }
    bool enabled() const { return prop(QStringLiteral("Enabled")).toBool(); }
    void setEnabled(bool on) { setProp(QStringLiteral("Enabled"), on); }
    bool visible() const { return prop(QStringLiteral("Visible")).toBool(); }
    void setVisible(bool on) { setProp(QStringLiteral("Visible"), on); }
    bool checked() const { return prop(QStringLiteral("Checked")).toBool(); }
    void setChecked(bool on) { setProp(QStringLiteral("Checked"), on); }
    int value() const { return prop(QStringLiteral("Value")).toInt(); }
    void setValue(int value); // fires Click (check box, option) or Change (slider)
    // The Value of a date picker (a date; a number is read as a date serial)
    // or of a time edit (whole minutes); fires Change when it changes. A Null
    // is error 94.
    void setPickedValue(const QVariant& value);
    unsigned backColor() const { return prop(QStringLiteral("BackColor")).toUInt(); }
    void setBackColor(unsigned colour) { setProp(QStringLiteral("BackColor"), colour); }
    QString toolTipText() const { return prop(QStringLiteral("ToolTipText")).toString(); }
    void setToolTipText(const QString& t) { setProp(QStringLiteral("ToolTipText"), t); }
    bool locked() const { return prop(QStringLiteral("Locked")).toBool(); }
    void setLocked(bool on) { setProp(QStringLiteral("Locked"), on); }

    // Geometry in twips, as the logic moves controls.
    QRect geometry() const;
    void move(int left, int top, int width, int height);
    void move(int left, int top);

    // Lists (ComboBox, ListBox).
    int listCount() const { return static_cast<int>(items_.size()); }
    QString listItem(int i) const;
    int listIndex() const { return prop(QStringLiteral("ListIndex")).toInt(); }
    void setListIndex(int i); // fires Click
    void addItem(const QString& item);
    void removeItem(int i);
    void clear();
    QVariant itemData(int i) const;
    void setItemData(int i, const QVariant& data);
    // Whether an item is selected; in a list with tick boxes (Style 1), ticked.
    // Setting it on such a list fires ItemCheck with the item's index.
    bool selected(int i) const;
    void setSelected(int i, bool on);
    int newIndex() const { return listCount() - 1; }
    const std::vector<QString>& items() const { return items_; }

    // Status bar panels, counted from 1.
    int panelCount() const { return static_cast<int>(panels_.size()); }
    QString panelText(int panel) const;
    void setPanelText(int panel, const QString& text);
    void setPanelCount(int n);

    // Menus: the menu that holds this one, if any.
    Control* parentMenu() const { return parentMenu_; }
    void setParentMenu(Control* menu) { parentMenu_ = menu; }
    bool isSeparator() const { return caption() == QLatin1String("-"); }

    // Raw property access: reads return an invalid QVariant for a property
    // never set; writes fire no event.
    QVariant prop(const QString& name) const { return props_.value(name); }
    void setProp(const QString& name, const QVariant& value);
    bool hasProp(const QString& name) const { return props_.contains(name); }
    const QVariantMap& props() const { return props_; }

    // The view layer is told of every property change.
    std::function<void(const QString&)> onChanged;

    // The kind of control behind this one, for controls that wrap an engine
    // object (the canvas, a data control): forwarded member access.
    AutoPtr inner;

private:
    void fire(const QString& event, QVariantList args = {});
    QString listText() const;

    Form& form_;
    ControlKind kind_;
    QString name_;
    int index_;
    QVariantMap props_;
    std::vector<QString> items_;
    std::vector<QVariant> itemData_;
    std::vector<bool> selected_;
    std::vector<QString> panels_;
    Control* parentMenu_ = nullptr;
};

using ControlPtr = std::shared_ptr<Control>;

} // namespace tessaly
