// Frames and panels, the placeholders of engine controls, the status bar, the
// tab strip, the slider and the timer.
#include "ControlWidget.h"
#include "PictureBoxWidget.h"
#include "core/forms/PictureBox.h"

#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>

namespace tessaly::ui {

namespace {
// Slider orientation of the platform: 0 horizontal, 1 vertical.
constexpr int VerticalSlider = 1;
// Stretch of a status bar panel: the panels share the bar's width alike.
constexpr int PanelStretch = 1;

bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

QString panelName(int panel) {
    return QStringLiteral("Panel%1").arg(panel);
}

void syncPanels(QStatusBar* bar, const Control& control) {
    for (int panel = 1; panel <= control.panelCount(); ++panel) {
        auto* label = bar->findChild<QLabel*>(panelName(panel), Qt::FindDirectChildrenOnly);
        if (!label) {
            label = new QLabel(bar);
            label->setObjectName(panelName(panel));
            label->setTextFormat(Qt::PlainText);
            label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
            label->setMinimumWidth(1);
            bar->addWidget(label, PanelStretch);
        }
        label->setText(control.panelText(panel));
    }
}

int intProp(const Control& control, const char* name) {
    return control.prop(QString::fromLatin1(name)).toInt();
}

// A tab strip: its tabs along the top, and below them the controls it
// contains; the form view shows those of the current tab.
class TabStrip final : public QWidget {
public:
    explicit TabStrip(QWidget* parent) : QWidget(parent), tabs_(new QTabBar(this)) {
        tabs_->setObjectName(QStringLiteral("tabs"));
        tabs_->setExpanding(false);
    }
    QTabBar* tabs() const { return tabs_; }

protected:
    void resizeEvent(QResizeEvent*) override {
        tabs_->setGeometry(0, 0, width(), tabs_->sizeHint().height());
    }

private:
    QTabBar* tabs_;
};
} // namespace

ControlWidget makeFrame(Control& control, QWidget* parent, ViewSink&) {
    auto* frame = new QGroupBox(parent);
    ControlWidget made{frame, nullptr, {}, false};
    made.sync = [frame, &control](const QString& p) {
        if (wants(p, "Caption"))
            frame->setTitle(control.caption());
    };
    return made;
}

ControlWidget makePictureBox(Control& control, QWidget* parent, ViewSink& sink) {
    // A box with a drawing surface shows its picture and reports the mouse.
    if (PictureBox* surface = PictureBox::of(control)) {
        auto* box = new PictureBoxWidget(control, *surface, sink, parent);
        return ControlWidget{box, nullptr,
                             [box](const QString& p) {
                                 if (wants(p, "Picture"))
                                     box->update();
                             },
                             false};
    }
    auto* panel = new QFrame(parent);
    panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    return ControlWidget{panel, nullptr, [](const QString&) {}, false};
}

ControlWidget makePlaceholder(Control& control, QWidget* parent, ViewSink&) {
    // Stands in for an engine control (canvas, grid, schedule, data control)
    // until its own widget is plugged in: a white, sunken panel.
    auto* panel = new QFrame(parent);
    panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    panel->setAutoFillBackground(true);
    QPalette palette = panel->palette();
    palette.setColor(QPalette::Window, Qt::white);
    panel->setPalette(palette);
    panel->setProperty("placeholder", controlKindName(control.kind()));
    return ControlWidget{panel, nullptr, [](const QString&) {}, false};
}

ControlWidget makeStatusBar(Control& control, QWidget* parent, ViewSink&) {
    auto* bar = new QStatusBar(parent);
    // The panels reach the window's edge; the window frame does the resizing.
    bar->setSizeGripEnabled(false);
    ControlWidget made{bar, nullptr, {}, false};
    made.sync = [bar, &control](const QString& p) {
        if (wants(p, "Panels"))
            syncPanels(bar, control);
    };
    return made;
}

ControlWidget makeTabStrip(Control& control, QWidget* parent, ViewSink& sink) {
    auto* strip = new TabStrip(parent);
    QTabBar* tabs = strip->tabs();
    QObject::connect(tabs, &QTabBar::currentChanged, tabs, [&control, &sink](int tab) {
        sink.userInput([&] {
            control.setProp(QStringLiteral("Tab"), tab);
            control.form().raiseEvent(control, QStringLiteral("Click"));
        });
    });
    ControlWidget made{strip, nullptr, {}, false};
    made.sync = [tabs, &control](const QString& p) {
        const QSignalBlocker quiet(tabs);
        if (wants(p, "Tabs")) {
            while (tabs->count() > 0)
                tabs->removeTab(0);
            for (const QString& caption : control.prop(QStringLiteral("Tabs")).toStringList())
                tabs->addTab(caption);
        }
        if (wants(p, "Tabs") || wants(p, "TabEnabled")) {
            const QVariantList enabled = control.prop(QStringLiteral("TabEnabled")).toList();
            for (int tab = 0; tab < tabs->count(); ++tab)
                tabs->setTabEnabled(tab, tab >= enabled.size() || enabled.at(tab).toBool());
        }
        // Disabling the shown tab makes the bar show another: it shows the model's again.
        if (wants(p, "Tabs") || wants(p, "Tab") || wants(p, "TabEnabled"))
            tabs->setCurrentIndex(intProp(control, "Tab"));
    };
    return made;
}

ControlWidget makeSlider(Control& control, QWidget* parent, ViewSink& sink) {
    auto* slider = new QSlider(Qt::Horizontal, parent);
    slider->setTickPosition(QSlider::TicksBelow);
    // Change fires once the user lets go, or at once for a key or page step.
    auto commit = [slider, &control, &sink] {
        const int value = slider->value();
        sink.userInput([&] { control.setValue(value); });
    };
    QObject::connect(slider, &QSlider::sliderReleased, slider, commit);
    QObject::connect(slider, &QSlider::valueChanged, slider, [slider, commit] {
        if (!slider->isSliderDown())
            commit();
    });
    ControlWidget made{slider, nullptr, {}, true};
    made.sync = [slider, &control](const QString& p) {
        const QSignalBlocker quiet(slider);
        if (wants(p, "Orientation"))
            slider->setOrientation(intProp(control, "Orientation") == VerticalSlider ? Qt::Vertical
                                                                                     : Qt::Horizontal);
        if (wants(p, "Min") || wants(p, "Max"))
            slider->setRange(intProp(control, "Min"), intProp(control, "Max"));
        if (wants(p, "SmallChange"))
            slider->setSingleStep(intProp(control, "SmallChange"));
        if (wants(p, "LargeChange"))
            slider->setPageStep(intProp(control, "LargeChange"));
        if (wants(p, "TickFrequency"))
            slider->setTickInterval(intProp(control, "TickFrequency"));
        if (wants(p, "Value") || wants(p, "Min") || wants(p, "Max"))
            slider->setValue(control.value());
    };
    return made;
}

ControlWidget makeTimer(Control& control, QWidget* parent, ViewSink& sink) {
    auto* timer = new QTimer(parent);
    timer->setObjectName(control.fullName());
    QObject::connect(timer, &QTimer::timeout, timer, [&control, &sink] {
        sink.tick([&] { control.form().raiseEvent(control, QStringLiteral("Timer")); });
    });
    ControlWidget made{nullptr, timer, {}, false};
    // A timer runs while it is enabled and has an interval.
    made.sync = [timer, &control](const QString& p) {
        if (!wants(p, "Enabled") && !wants(p, "Interval"))
            return;
        const int interval = intProp(control, "Interval");
        if (control.enabled() && interval > 0) {
            if (!timer->isActive() || timer->interval() != interval)
                timer->start(interval);
        } else {
            timer->stop();
        }
    };
    return made;
}

} // namespace tessaly::ui
