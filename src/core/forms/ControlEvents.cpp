#include "ControlEvents.h"

#include <map>

namespace tessaly::control_events {

namespace {

// Groups of events that many kinds share.
const QStringList Focus{QStringLiteral("GotFocus"), QStringLiteral("LostFocus")};
const QStringList Keys{QStringLiteral("KeyDown"), QStringLiteral("KeyPress"), QStringLiteral("KeyUp")};
const QStringList Mouse{QStringLiteral("MouseDown"), QStringLiteral("MouseMove"), QStringLiteral("MouseUp")};
// A control that takes the keyboard focus: focus, keys, mouse, and Validate
// before the focus leaves it.
const QStringList Input = Focus + Keys + Mouse + QStringList{QStringLiteral("Validate")};

QStringList names(std::initializer_list<const char*> list) {
    QStringList out;
    for (const char* name : list)
        out << QString::fromLatin1(name);
    return out;
}

// The canvas's own events, each with the arguments its handlers take: the
// pointer and keys on the page, new and changed shapes, the selection, an
// abandoned drawing action, and file problems the canvas leaves to Tessaly.
QStringList canvasEvents() {
    return Mouse +
           names({"KeyDown", "ShapeAdded", "ShapeFinished", "SelectionChanged", "SelectionCleared",
                  "ShapeChanged", "ShapeMoved", "DrawingCancelled", "FileReadError", "FileWriteError"});
}

// The schedule control's bar gestures, with the plain pointer and key events.
QStringList scheduleEvents() {
    return names(
               {"BarDrawn", "BarChanged", "BarActivated", "BarPointed", "BarSelected", "Click", "DblClick"}) +
           Input;
}

// The bound data control: the moves and writes of its recordset.
QStringList dataControlEvents() {
    return names({"MoveComplete", "WillMove", "WillChangeField", "FieldChangeComplete", "WillChangeRecord",
                  "RecordChangeComplete", "WillChangeRecordset", "RecordsetChangeComplete", "EndOfRecordset",
                  "FetchProgress", "FetchComplete", "Error"});
}

// The bound data grid: cells, rows and columns, and their updates.
QStringList gridEvents() {
    return names({"Click", "DblClick", "Change", "RowColChange", "HeadClick", "SelChange", "ButtonClick",
                  "Scroll", "BeforeUpdate", "AfterUpdate", "BeforeColUpdate", "AfterColUpdate",
                  "BeforeInsert", "AfterInsert", "BeforeDelete", "AfterDelete"}) +
           Input;
}

std::map<ControlKind, QStringList> buildTable() {
    return {
        {ControlKind::Label, names({"Change", "Click", "DblClick"}) + Mouse},
        {ControlKind::TextBox, names({"Change", "Click", "DblClick"}) + Input},
        {ControlKind::CommandButton, names({"Click"}) + Input},
        {ControlKind::CheckBox, names({"Click"}) + Input},
        {ControlKind::OptionButton, names({"Click", "DblClick"}) + Input},
        {ControlKind::ComboBox,
         names({"Change", "Click", "DblClick", "DropDown", "Scroll", "Validate"}) + Focus + Keys},
        {ControlKind::ListBox, names({"Click", "DblClick", "ItemCheck", "Scroll"}) + Input},
        {ControlKind::Frame, names({"Click", "DblClick"}) + Mouse},
        {ControlKind::PictureBox, names({"Change", "Click", "DblClick", "Paint", "Resize"}) + Input},
        {ControlKind::Menu, names({"Click"})},
        {ControlKind::StatusBar, names({"Click", "DblClick", "PanelClick", "PanelDblClick"}) + Mouse},
        {ControlKind::Slider, names({"Change", "Click", "Scroll"}) + Input},
        {ControlKind::Timer, names({"Timer"})},
        // Click comes with the tab that was shown before.
        {ControlKind::TabStrip, names({"Click", "DblClick"}) + Focus + Keys + Mouse},
        {ControlKind::DataControl, dataControlEvents()},
        {ControlKind::Grid, gridEvents()},
        {ControlKind::Canvas, canvasEvents()},
        {ControlKind::Schedule, scheduleEvents()},
        {ControlKind::DriveList, names({"Change", "Scroll", "Validate"}) + Focus + Keys},
        {ControlKind::DirList, names({"Change", "Click", "Scroll"}) + Input},
        // The date picker drops its calendar down and closes it again.
        {ControlKind::DatePicker, names({"Change", "Click", "DblClick", "DropDown", "CloseUp"}) + Input},
        {ControlKind::TimeEdit, names({"Change", "Click", "DblClick"}) + Input},
        {ControlKind::RichText, names({"Change", "Click", "DblClick", "SelChange"}) + Input},
    };
}

bool containsName(const QStringList& list, const QString& name) {
    return list.contains(name, Qt::CaseInsensitive);
}

} // namespace

const QStringList& of(ControlKind kind) {
    static const std::map<ControlKind, QStringList> table = buildTable();
    static const QStringList none;
    const auto it = table.find(kind);
    return it == table.end() ? none : it->second;
}

bool raises(ControlKind kind, const QString& event) {
    return containsName(of(kind), event);
}

const QStringList& ofForm() {
    static const QStringList events =
        names({"Initialize", "Load", "Activate", "Deactivate", "Resize", "Paint", "QueryUnload", "Unload",
               "Terminate", "Click", "DblClick"}) +
        Focus + Keys + Mouse;
    return events;
}

bool formRaises(const QString& event) {
    return containsName(ofForm(), event);
}

} // namespace tessaly::control_events
