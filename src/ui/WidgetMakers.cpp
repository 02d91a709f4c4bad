#include "CanvasWidget.h"
#include "ControlWidget.h"
#include "ScheduleWidget.h"

#include <map>

namespace tessaly::ui {

namespace {
std::map<ControlKind, WidgetMaker>& makers() {
    static std::map<ControlKind, WidgetMaker> table{
        {ControlKind::Label, makeLabel},           {ControlKind::TextBox, makeTextBox},
        {ControlKind::RichText, makeRichText},     {ControlKind::CommandButton, makeCommandButton},
        {ControlKind::CheckBox, makeCheckBox},     {ControlKind::OptionButton, makeOptionButton},
        {ControlKind::ComboBox, makeComboBox},     {ControlKind::ListBox, makeListBox},
        {ControlKind::DriveList, makeDriveList},   {ControlKind::DirList, makeDirList},
        {ControlKind::Frame, makeFrame},           {ControlKind::PictureBox, makePictureBoxView},
        {ControlKind::StatusBar, makeStatusBar},   {ControlKind::TabStrip, makeTabStrip},
        {ControlKind::Slider, makeSlider},         {ControlKind::Timer, makeTimer},
        {ControlKind::Canvas, makeCanvas},         {ControlKind::Grid, makeDataGrid},
        {ControlKind::Schedule, makeSchedule},     {ControlKind::DataControl, makePlaceholder},
        {ControlKind::DatePicker, makeDatePicker}, {ControlKind::TimeEdit, makeTimeEdit},
    };
    return table;
}
} // namespace

void setWidgetMaker(ControlKind kind, WidgetMaker maker) {
    makers()[kind] = std::move(maker);
}

ControlWidget makeControlWidget(Control& control, QWidget* parent, ViewSink& sink) {
    const auto it = makers().find(control.kind());
    // Menus are built by the menu view, not here.
    if (it == makers().end())
        return ControlWidget{nullptr, nullptr, [](const QString&) {}, false};
    return it->second(control, parent, sink);
}

} // namespace tessaly::ui
