#pragma once

#include "core/forms/Form.h"

#include <QString>
#include <functional>

class QObject;
class QWidget;

namespace tessaly::ui {

// Where a widget hands what happened on the desktop to the form model. Both
// run the step under the dispatcher; user input reaches a form only while it
// takes input (no modal window above it), a timer's tick always does. Both
// return whether the view still shows a live form afterwards: a handler may
// have unloaded it, and then its controls are gone.
class ViewSink {
public:
    virtual ~ViewSink() = default;
    virtual bool userInput(const std::function<void()>& step) = 0;
    virtual bool tick(const std::function<void()>& step) = 0;
};

// The widget made for one control, and how to bring it up to date with one of
// the control's properties. The form view itself applies what every control
// shares (geometry, Visible, Enabled, ToolTipText, BackColor, ForeColor, the
// font and the container); `sync` covers the rest.
struct ControlWidget {
    QWidget* widget = nullptr; // nullptr for a control that shows nothing (a timer)
    QObject* object = nullptr; // what stands for such a control (its QTimer)
    std::function<void(const QString& property)> sync;
    // Whether the view gives this widget's focus changes to the form.
    bool takesFocus = false;
};

using WidgetMaker = std::function<ControlWidget(Control& control, QWidget* parent, ViewSink& sink)>;

// Makes the widget for a control by its kind.
ControlWidget makeControlWidget(Control& control, QWidget* parent, ViewSink& sink);

// Replaces the widget made for one kind of control: the drawing canvas and the
// schedule plug their own widgets in here instead of the placeholders.
void setWidgetMaker(ControlKind kind, WidgetMaker maker);

// The makers for the standard kinds, one group a file.
ControlWidget makeLabel(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeTextBox(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeRichText(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeCommandButton(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeCheckBox(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeOptionButton(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeComboBox(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeListBox(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeDriveList(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeDirList(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeFrame(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makePictureBox(Control& control, QWidget* parent, ViewSink& sink);
// A picture box with a paint surface shows it (PaintSurfaceWidget.cpp); any other is makePictureBox's.
ControlWidget makePictureBoxView(Control& control, QWidget* parent, ViewSink& sink);
// A grid bound to a data control of its form (DataGridWidget.cpp); a placeholder without one.
ControlWidget makeDataGrid(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makePlaceholder(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeStatusBar(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeTabStrip(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeSlider(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeTimer(Control& control, QWidget* parent, ViewSink& sink);
// The date picker and the time edit (DateTimeWidgets.cpp).
ControlWidget makeDatePicker(Control& control, QWidget* parent, ViewSink& sink);
ControlWidget makeTimeEdit(Control& control, QWidget* parent, ViewSink& sink);
// A data grid bound to its data control (DataGridWidget.cpp).
ControlWidget makeDataGrid(Control& control, QWidget* parent, ViewSink& sink);

// The widget of a control that wraps an engine (the drawing canvas, the
// schedule): a View made on the control's engine, or a plain panel for a
// control that has none.
template <class Engine, class View>
ControlWidget makeEngineView(Control& control, QWidget* parent, ViewSink& sink) {
    auto engine = std::dynamic_pointer_cast<Engine>(control.inner);
    if (!engine)
        return makePlaceholder(control, parent, sink);
    return ControlWidget{new View(std::move(engine), &sink, parent), nullptr, [](const QString&) {}, false};
}

} // namespace tessaly::ui
