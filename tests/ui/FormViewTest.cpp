// The generic form view: one widget per control, kept in step with the model
// both ways.
#include "ui/FormView.h"
#include "UiTestSupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStatusBar>
#include <QTabBar>
#include <QTest>
#include <QTimer>

namespace tessaly::ui {
namespace {

using testing::RecordingForm;

class FormViewTest : public ::testing::Test {
protected:
    testing::ScriptedApp scripted;
    std::shared_ptr<RecordingForm> form =
        std::make_shared<RecordingForm>(scripted.app, QStringLiteral("frmTest"));

    Control& add(ControlKind kind, const char* name, int left = 0, int top = 0, int width = 1500,
                 int height = 300) {
        Control& c = form->add(kind, QString::fromLatin1(name));
        c.move(left, top, width, height);
        return c;
    }
    template <class W> W* widget(FormView& view, const char* name) {
        return qobject_cast<W*>(view.widgetFor(form->control(QString::fromLatin1(name))));
    }
};

TEST_F(FormViewTest, ButtonClickRaisesClick) {
    add(ControlKind::CommandButton, "cmdSave").setCaption(QStringLiteral("&Save"));
    form->record(QStringLiteral("cmdSave"), QStringLiteral("Click"));
    FormView view(*form);
    view.show();
    auto* button = widget<QPushButton>(view, "cmdSave");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), QStringLiteral("&Save"));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("cmdSave.Click")});
}

TEST_F(FormViewTest, TypingFiresChangeForEveryKey) {
    add(ControlKind::TextBox, "txtZoom");
    form->record(QStringLiteral("txtZoom"), QStringLiteral("Change"));
    FormView view(*form);
    auto* edit = widget<QLineEdit>(view, "txtZoom");
    ASSERT_NE(edit, nullptr);
    QTest::keyClicks(edit, QStringLiteral("62"));
    EXPECT_EQ(form->control(QStringLiteral("txtZoom")).text(), QStringLiteral("62"));
    EXPECT_EQ(form->events,
              (QStringList{QStringLiteral("txtZoom.Change"), QStringLiteral("txtZoom.Change")}));
}

TEST_F(FormViewTest, ModelChangesShowInTheWidgets) {
    Control& label = add(ControlKind::Label, "lblName");
    Control& text = add(ControlKind::TextBox, "txtName");
    Control& button = add(ControlKind::CommandButton, "cmdGo");
    FormView view(*form);
    label.setCaption(QStringLiteral("&Name && Address"));
    text.setText(QStringLiteral("12 High Street"));
    button.setEnabled(false);
    button.setToolTipText(QStringLiteral("Click To Go"));
    text.setVisible(false);
    label.move(150, 300, 1500, 450);
    label.setBackColor(0x0000FFu); // red in the low byte
    EXPECT_EQ(widget<QLabel>(view, "lblName")->text(), QStringLiteral("Name & Address"));
    EXPECT_EQ(widget<QLineEdit>(view, "txtName")->text(), QStringLiteral("12 High Street"));
    EXPECT_FALSE(widget<QPushButton>(view, "cmdGo")->isEnabled());
    EXPECT_EQ(widget<QPushButton>(view, "cmdGo")->toolTip(), QStringLiteral("Click To Go"));
    EXPECT_TRUE(widget<QLineEdit>(view, "txtName")->isHidden());
    EXPECT_EQ(widget<QLabel>(view, "lblName")->geometry(), QRect(10, 20, 100, 30));
    EXPECT_EQ(widget<QLabel>(view, "lblName")->palette().color(QPalette::Window), QColor(255, 0, 0));
}

TEST_F(FormViewTest, SettingTextFromTheModelFiresNoSecondChange) {
    Control& text = add(ControlKind::TextBox, "txtName");
    form->record(QStringLiteral("txtName"), QStringLiteral("Change"));
    FormView view(*form);
    text.setText(QStringLiteral("abc"));
    // One Change, from the model's own Text write; the widget's update is silent.
    EXPECT_EQ(form->events, QStringList{QStringLiteral("txtName.Change")});
}

TEST_F(FormViewTest, FocusInFiresGotFocusAndLostFocus) {
    add(ControlKind::TextBox, "txtA");
    add(ControlKind::TextBox, "txtB");
    form->record(QStringLiteral("txtA"), QStringLiteral("GotFocus"));
    form->record(QStringLiteral("txtA"), QStringLiteral("LostFocus"));
    form->record(QStringLiteral("txtB"), QStringLiteral("GotFocus"));
    FormView view(*form);
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(widget<QLineEdit>(view, "txtA"), &in);
    QCoreApplication::sendEvent(widget<QLineEdit>(view, "txtB"), &in);
    EXPECT_EQ(form->events, (QStringList{QStringLiteral("txtA.GotFocus"), QStringLiteral("txtA.LostFocus"),
                                         QStringLiteral("txtB.GotFocus")}));
    EXPECT_EQ(form->focused(), form->find(QStringLiteral("txtB")));
}

TEST_F(FormViewTest, KeyPressHandlerCanSwallowAKey) {
    add(ControlKind::TextBox, "txtWallLen");
    form->on(QStringLiteral("txtWallLen"), QStringLiteral("KeyPress"), [](Control&, EventArgs& args) {
        // Only digits get through.
        const int key = args[0].toInt();
        if (key < '0' || key > '9')
            args[0] = 0;
    });
    FormView view(*form);
    QTest::keyClicks(widget<QLineEdit>(view, "txtWallLen"), QStringLiteral("4a5"));
    EXPECT_EQ(form->control(QStringLiteral("txtWallLen")).text(), QStringLiteral("45"));
}

TEST_F(FormViewTest, CheckBoxClickSetsValueAndFiresClick) {
    add(ControlKind::CheckBox, "chckGrid").setCaption(QStringLiteral("Show Grid"));
    form->record(QStringLiteral("chckGrid"), QStringLiteral("Click"));
    FormView view(*form);
    view.show();
    auto* box = widget<QCheckBox>(view, "chckGrid");
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(5, box->height() / 2));
    EXPECT_EQ(form->control(QStringLiteral("chckGrid")).value(), 1);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("chckGrid.Click")});
    form->control(QStringLiteral("chckGrid")).setValue(0);
    EXPECT_EQ(box->checkState(), Qt::Unchecked);
}

TEST_F(FormViewTest, OptionButtonsOfOneContainerExcludeEachOther) {
    add(ControlKind::OptionButton, "optA").setValue(1);
    add(ControlKind::OptionButton, "optB", 0, 400);
    FormView view(*form);
    view.show();
    auto* b = widget<QRadioButton>(view, "optB");
    QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(5, b->height() / 2));
    EXPECT_EQ(form->control(QStringLiteral("optB")).value(), 1);
    EXPECT_EQ(form->control(QStringLiteral("optA")).value(), 0);
    EXPECT_FALSE(widget<QRadioButton>(view, "optA")->isChecked());
    EXPECT_TRUE(b->isChecked());
}

TEST_F(FormViewTest, ComboBoxListsItemsAndUserSelectionFiresClick) {
    Control& combo = add(ControlKind::ComboBox, "Combo1");
    combo.addItem(QStringLiteral("External Wall Width"));
    combo.addItem(QStringLiteral("Internal Wall Width"));
    form->record(QStringLiteral("Combo1"), QStringLiteral("Click"));
    FormView view(*form);
    auto* box = widget<QComboBox>(view, "Combo1");
    ASSERT_EQ(box->count(), 2);
    combo.addItem(QStringLiteral("Furniture Line Width"));
    ASSERT_EQ(box->count(), 3);
    EXPECT_EQ(box->itemText(2), QStringLiteral("Furniture Line Width"));
    combo.setText(QStringLiteral("Please Select>>"));
    EXPECT_EQ(box->currentIndex(), -1);
    EXPECT_EQ(box->placeholderText(), QStringLiteral("Please Select>>"));
    emit box->activated(1);
    EXPECT_EQ(combo.listIndex(), 1);
    EXPECT_EQ(combo.text(), QStringLiteral("Internal Wall Width"));
    EXPECT_EQ(box->currentIndex(), 1);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("Combo1.Click")});
}

TEST_F(FormViewTest, ListBoxFollowsItemsAndSelection) {
    Control& list = add(ControlKind::ListBox, "lstShapes");
    form->record(QStringLiteral("lstShapes"), QStringLiteral("Click"));
    FormView view(*form);
    auto* widgetList = widget<QListWidget>(view, "lstShapes");
    list.addItem(QStringLiteral("Line"));
    list.addItem(QStringLiteral("Rectangle"));
    list.addItem(QStringLiteral("Text"));
    ASSERT_EQ(widgetList->count(), 3);
    list.removeItem(0);
    ASSERT_EQ(widgetList->count(), 2);
    EXPECT_EQ(widgetList->item(0)->text(), QStringLiteral("Rectangle"));
    widgetList->setCurrentRow(1); // as the user's click does
    EXPECT_EQ(list.listIndex(), 1);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("lstShapes.Click")});
    list.clear();
    EXPECT_EQ(widgetList->count(), 0);
}

TEST_F(FormViewTest, ControlsSitInTheirContainer) {
    Control& panel = add(ControlKind::PictureBox, "PIC1", 1830, 6135, 3885, 2280);
    Control& heading = add(ControlKind::Label, "lblFolderHeading", 60, 30, 3765, 255);
    heading.setProp(QStringLiteral("Container"), QStringLiteral("PIC1"));
    Control& frame = add(ControlKind::Frame, "fraOptions", 0, 0, 3000, 1500);
    frame.setCaption(QStringLiteral("Options"));
    Control& inFrame = add(ControlKind::CheckBox, "chckA", 120, 240, 1500, 300);
    inFrame.setProp(QStringLiteral("Container"), QStringLiteral("fraOptions"));
    panel.setVisible(false);
    FormView view(*form);
    view.show();
    QWidget* panelWidget = view.widgetFor(panel);
    EXPECT_EQ(view.widgetFor(heading)->parentWidget(), panelWidget);
    EXPECT_EQ(view.widgetFor(heading)->geometry(), QRect(4, 2, 251, 17));
    EXPECT_EQ(view.widgetFor(inFrame)->parentWidget(), view.widgetFor(frame));
    EXPECT_EQ(qobject_cast<QGroupBox*>(view.widgetFor(frame))->title(), QStringLiteral("Options"));
    EXPECT_FALSE(panelWidget->isVisible());
    panel.setVisible(true);
    EXPECT_TRUE(panelWidget->isVisible());
    EXPECT_TRUE(view.widgetFor(heading)->isVisible());
}

TEST_F(FormViewTest, SliderFollowsRangeAndValueAndFiresChange) {
    Control& slider = add(ControlKind::Slider, "TemplateZoom1");
    slider.setProp(QStringLiteral("Min"), 10);
    slider.setProp(QStringLiteral("Max"), 200);
    slider.setValue(45);
    form->record(QStringLiteral("TemplateZoom1"), QStringLiteral("Change"));
    FormView view(*form);
    auto* w = widget<QSlider>(view, "TemplateZoom1");
    EXPECT_EQ(w->minimum(), 10);
    EXPECT_EQ(w->maximum(), 200);
    EXPECT_EQ(w->value(), 45);
    w->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(slider.value(), 46);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("TemplateZoom1.Change")});
}

TEST_F(FormViewTest, TimerRunsWhileEnabledAndTicksRaiseTimer) {
    Control& timer = form->add(ControlKind::Timer, QStringLiteral("Timer1"));
    timer.setProp(QStringLiteral("Interval"), 2000);
    form->record(QStringLiteral("Timer1"), QStringLiteral("Timer"));
    FormView view(*form);
    auto* qtimer = qobject_cast<QTimer*>(view.objectFor(timer));
    ASSERT_NE(qtimer, nullptr);
    EXPECT_FALSE(qtimer->isActive());
    timer.setEnabled(true);
    EXPECT_TRUE(qtimer->isActive());
    EXPECT_EQ(qtimer->interval(), 2000);
    ASSERT_TRUE(QMetaObject::invokeMethod(qtimer, "timeout"));
    EXPECT_EQ(form->events, QStringList{QStringLiteral("Timer1.Timer")});
    timer.setEnabled(false);
    EXPECT_FALSE(qtimer->isActive());
}

TEST_F(FormViewTest, TabStripClickSetsTheTab) {
    Control& tabs = add(ControlKind::TabStrip, "SSTab1", 0, 0, 4500, 400);
    tabs.setProp(QStringLiteral("Tabs"), QStringList{QStringLiteral("Clients"), QStringLiteral("Sites")});
    form->record(QStringLiteral("SSTab1"), QStringLiteral("Click"));
    FormView view(*form);
    auto* bar = view.widgetFor(tabs)->findChild<QTabBar*>();
    ASSERT_NE(bar, nullptr);
    bar->setCurrentIndex(1); // as the user's click does
    EXPECT_EQ(tabs.prop(QStringLiteral("Tab")).toInt(), 1);
    EXPECT_EQ(form->events, QStringList{QStringLiteral("SSTab1.Click")});
    tabs.setProp(QStringLiteral("Tab"), 0);
    EXPECT_EQ(bar->currentIndex(), 0);
}

TEST_F(FormViewTest, UntrappedErrorInAHandlerShowsTheDefaultBoxAndTheViewGoesOn) {
    add(ControlKind::CommandButton, "cmdFail");
    form->on(QStringLiteral("cmdFail"), QStringLiteral("Click"),
             [](Control&, EventArgs&) { raiseError(53, QStringLiteral("File not found")); });
    std::vector<QJsonObject> events;
    scripted.ui.onEvent = [&](const QJsonObject& o) { events.push_back(o); };
    FormView view(*form);
    widget<QPushButton>(view, "cmdFail")->click();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0][QStringLiteral("text")].toString(),
              QStringLiteral("Run-time error '53':\n\nFile not found"));
    EXPECT_EQ(view.form(), form.get());
}

TEST_F(FormViewTest, InputBelowAModalFormIsRefused) {
    add(ControlKind::CommandButton, "cmdGo");
    form->record(QStringLiteral("cmdGo"), QStringLiteral("Click"));
    RecordingForm modal(scripted.app, QStringLiteral("frmModal"));
    FormView view(*form);
    scripted.app.show(modal, true);
    widget<QPushButton>(view, "cmdGo")->click();
    EXPECT_TRUE(form->events.isEmpty());
}

TEST_F(FormViewTest, FramelessWhenTheFormHasNoCaption) {
    FormView untitled(*form);
    EXPECT_TRUE(untitled.windowFlags().testFlag(Qt::FramelessWindowHint));
    RecordingForm titled(scripted.app, QStringLiteral("frmTitled"));
    titled.setCaption(QStringLiteral("Settings"));
    FormView view(titled);
    EXPECT_FALSE(view.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Settings"));
}

TEST_F(FormViewTest, DetachedViewNoLongerTouchesTheForm) {
    Control& text = add(ControlKind::TextBox, "txtName");
    form->record(QStringLiteral("txtName"), QStringLiteral("Change"));
    FormView view(*form);
    view.detach();
    EXPECT_EQ(view.form(), nullptr);
    QTest::keyClicks(widget<QLineEdit>(view, "txtName"), QStringLiteral("x"));
    EXPECT_TRUE(form->events.isEmpty());
    EXPECT_FALSE(static_cast<bool>(text.onChanged));
}

} // namespace
} // namespace tessaly::ui

namespace tessaly::ui {
namespace {

TEST_F(FormViewTest, FontAndForeColourFromTheModel) {
    Control& title = add(ControlKind::Label, "lblTitle");
    title.setProp(QStringLiteral("FontSize"), 36);
    title.setProp(QStringLiteral("FontBold"), true);
    title.setProp(QStringLiteral("ForeColor"), 0x00FF00u);
    FormView view(*form);
    view.show();
    auto* label = widget<QLabel>(view, "lblTitle");
    EXPECT_EQ(label->font().pointSizeF(), 36.0);
    EXPECT_TRUE(label->font().bold());
    EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(0, 255, 0));
    title.setProp(QStringLiteral("FontSize"), 12);
    EXPECT_EQ(label->font().pointSizeF(), 12.0);
}

} // namespace
} // namespace tessaly::ui

namespace tessaly::ui {
namespace {

TEST_F(FormViewTest, ControlsOnATabStripShowOnTheirTab) {
    Control& tabs = add(ControlKind::TabStrip, "SSActiveTabs1", 0, 0, 3180, 9000);
    tabs.setProp(QStringLiteral("Tabs"),
                 QStringList{QStringLiteral("Drawing Objects"), QStringLiteral("Template Objects"),
                             QStringLiteral("Shape List")});
    tabs.setProp(QStringLiteral("Tab"), 0);
    Control& pane = add(ControlKind::Canvas, "POLARDraw2", 15, 705, 2475, 4000);
    pane.setProp(QStringLiteral("Container"), QStringLiteral("SSActiveTabs1"));
    pane.setProp(QStringLiteral("ContainerTab"), 1);
    Control& list = add(ControlKind::ListBox, "lstShapeList", 15, 360, 2470, 4000);
    list.setProp(QStringLiteral("Container"), QStringLiteral("SSActiveTabs1"));
    list.setProp(QStringLiteral("ContainerTab"), 2);
    Control& always = add(ControlKind::Label, "lblAlways", 15, 9000, 1000, 300);
    always.setProp(QStringLiteral("Container"), QStringLiteral("SSActiveTabs1"));
    FormView view(*form);
    view.show();
    QWidget* strip = view.widgetFor(tabs);
    EXPECT_EQ(view.widgetFor(pane)->parentWidget(), strip);
    EXPECT_EQ(view.widgetFor(pane)->geometry(), QRect(1, 47, 165, 266));
    EXPECT_FALSE(view.widgetFor(pane)->isVisible());
    EXPECT_FALSE(view.widgetFor(list)->isVisible());
    EXPECT_TRUE(view.widgetFor(always)->isVisible());
    tabs.setProp(QStringLiteral("Tab"), 1);
    EXPECT_TRUE(view.widgetFor(pane)->isVisible());
    EXPECT_FALSE(view.widgetFor(list)->isVisible());
    strip->findChild<QTabBar*>()->setCurrentIndex(2); // as the user's click does
    EXPECT_FALSE(view.widgetFor(pane)->isVisible());
    EXPECT_TRUE(view.widgetFor(list)->isVisible());
    EXPECT_TRUE(view.widgetFor(always)->isVisible());
    // Hidden by the model stays hidden on its own tab.
    list.setVisible(false);
    EXPECT_FALSE(view.widgetFor(list)->isVisible());
}

TEST_F(FormViewTest, LeftAlignedControlTakesTheFormsHeight) {
    // Aligned controls take their edge in their order: the status bar first.
    add(ControlKind::StatusBar, "SB1").setPanelCount(2);
    Control& tabs = add(ControlKind::TabStrip, "SSActiveTabs1", 0, 0, 3180, 0);
    tabs.setProp(QStringLiteral("Align"), 3);
    FormView view(*form);
    view.resize(600, 400);
    view.show();
    testing::processPending();
    const QRect bar = view.widgetFor(form->control(QStringLiteral("SB1")))->geometry();
    EXPECT_EQ(view.widgetFor(tabs)->geometry(), QRect(0, 0, 212, bar.top()));
}

} // namespace
} // namespace tessaly::ui

namespace tessaly::ui {
namespace {

TEST_F(FormViewTest, FocusSetByTheLogicMovesTheKeyboardFocus) {
    add(ControlKind::TextBox, "txtWallLen");
    add(ControlKind::CommandButton, "cmdWall", 0, 600);
    form->on(QStringLiteral("cmdWall"), QStringLiteral("Click"),
             [this](Control&, EventArgs&) { form->setFocus(form->find(QStringLiteral("txtWallLen"))); });
    form->record(QStringLiteral("txtWallLen"), QStringLiteral("GotFocus"));
    FormView view(*form);
    view.show();
    widget<QPushButton>(view, "cmdWall")->click();
    EXPECT_EQ(view.focusWidget(), view.widgetFor(form->control(QStringLiteral("txtWallLen"))));
    EXPECT_EQ(form->events, QStringList{QStringLiteral("txtWallLen.GotFocus")});
}

} // namespace
} // namespace tessaly::ui

namespace tessaly::ui {
namespace {

TEST_F(FormViewTest, ViewNoticesAFormUnloadedWithoutItsPortTellingIt) {
    // The scripted port keeps no windows: the view learns of the unload from
    // the form's end alone, and stops there.
    scripted.app.registerForm(QStringLiteral("frmGone"), [](ApplicationBase& a) {
        auto gone = std::make_shared<RecordingForm>(a, QStringLiteral("frmGone"));
        gone->add(ControlKind::CommandButton, QStringLiteral("cmdClose")).move(0, 0, 1200, 400);
        gone->on(QStringLiteral("cmdClose"), QStringLiteral("Click"),
                 [&a, g = gone.get()](Control&, EventArgs&) { a.unload(*g); });
        return gone;
    });
    Form& gone = scripted.app.form(QStringLiteral("frmGone"));
    FormView view(gone);
    auto* button = view.findChild<QPushButton*>(QStringLiteral("cmdClose"));
    button->click();
    EXPECT_EQ(scripted.app.loaded(QStringLiteral("frmGone")), nullptr);
    EXPECT_EQ(view.form(), nullptr);
    button->click(); // nothing left to reach
    EXPECT_EQ(view.form(), nullptr);
}

} // namespace
} // namespace tessaly::ui
