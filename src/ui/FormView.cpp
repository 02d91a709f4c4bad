#include "FormView.h"

#include "MenuView.h"
#include "ViewUnits.h"
#include "core/forms/ApplicationBase.h"
#include "core/forms/Form.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace tessaly::ui {

namespace {
// Where an aligned control sits: the platform's Align values.
enum class Align { None = 0, Top = 1, Bottom = 2, Left = 3, Right = 4 };

bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

bool isGeometry(const QString& p) {
    return p == QLatin1String("Left") || p == QLatin1String("Top") || p == QLatin1String("Width") ||
           p == QLatin1String("Height");
}

bool isFont(const QString& p) {
    return p.isEmpty() || p.startsWith(QLatin1String("Font"));
}

// A status bar sits at the bottom of its form unless told otherwise.
Align alignOf(const Control& c) {
    if (c.hasProp(QStringLiteral("Align")))
        return static_cast<Align>(c.prop(QStringLiteral("Align")).toInt());
    return c.kind() == ControlKind::StatusBar ? Align::Bottom : Align::None;
}

bool hasContainer(const Control& c) {
    return !c.prop(QStringLiteral("Container")).toString().isEmpty();
}

// The platform's value of a pressed mouse button; a button beyond the left,
// right and middle ones counts as the left.
int pressedButton(Qt::MouseButton button) {
    const int code = platformButton(button);
    return code != 0 ? code : platformButton(Qt::LeftButton);
}

// Controls that report a plain mouse click as their Click event; buttons and
// lists report it through their own signals.
bool clickedByMouse(ControlKind kind) {
    return kind == ControlKind::Label || kind == ControlKind::PictureBox || kind == ControlKind::Frame ||
           kind == ControlKind::Canvas;
}
} // namespace

FormView::FormView(Form& form, QWidget* parent)
    : QWidget(parent, Qt::Window), form_(&form), alive_(form.weak_from_this()), owned_(!alive_.expired()) {
    setObjectName(form.name());
    setAttribute(Qt::WA_StyledBackground);
    build();
}

FormView::~FormView() {
    detach();
}

void FormView::build() {
    // A form without a caption has no title bar, as a splash window. Set
    // before the children exist: changing the flags later re-polishes them.
    if (form_->caption().isEmpty())
        setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    menuBar_ = new QMenuBar(this);
    layout->setMenuBar(menuBar_);
    surface_ = new QWidget(this);
    surface_->setObjectName(QStringLiteral("surface"));
    surface_->installEventFilter(this);
    layout->addWidget(surface_);

    menus_ = std::make_unique<MenuView>(*form_, *menuBar_, *this);
    menuBar_->setVisible(!menuBar_->actions().isEmpty());
    for (const ControlPtr& c : form_->controls())
        bindControl(*c);
    placeInContainers();
    bindShortcuts();
    relayout();

    setWindowTitle(form_->caption());
    form_->onChanged = [this](const QString& p) { formChanged(p); };
    // The form's PopupMenu: the menu opens at the pointer.
    form_->onPopupMenu = [this](const QString& menuName) {
        if (QMenu* menu = popupMenu(menuName))
            menu->popup(QCursor::pos());
    };
}

void FormView::bindControl(Control& c) {
    if (c.kind() == ControlKind::Menu) {
        c.onChanged = [this, &c](const QString& p) {
            if (form_)
                menus_->sync(c, p);
        };
        return;
    }
    ControlWidget made = makeControlWidget(c, surface_, *this);
    if (made.widget) {
        made.widget->setObjectName(c.fullName());
        made.widget->installEventFilter(this);
        controlOf_[made.widget] = &c;
        // A list's mouse presses arrive at its viewport.
        if (auto* area = qobject_cast<QAbstractScrollArea*>(made.widget);
            area && c.kind() == ControlKind::ListBox) {
            area->viewport()->installEventFilter(this);
            controlOf_[area->viewport()] = &c;
        }
    }
    widgets_[&c] = made;
    c.onChanged = [this, &c](const QString& p) { controlChanged(c, p); };
    if (made.sync)
        made.sync(QString());
    applyShared(c, made.widget, QString());
}

void FormView::bindShortcuts() {
    for (const ControlPtr& control : form_->controls()) {
        Control* c = control.get();
        const auto it = widgets_.find(c);
        if (it == widgets_.end())
            continue;
        const ControlWidget& made = it->second;
        // Keys that press a control wherever the focus is in the window
        // ("Shortcut", several parted by "; ").
        const QString keys = c->prop(QStringLiteral("Shortcut")).toString();
        for (const QKeySequence& seq : QKeySequence::listFromString(keys))
            pressOn(*c, seq, this, Qt::WindowShortcut);
        // A default button takes Enter, a cancel button Escape, while the
        // focus is on the panel that holds it (or anywhere on its window).
        QWidget* holder = made.widget ? made.widget->parentWidget() : nullptr;
        const bool inPanel = hasContainer(*c) && holder;
        QWidget* scope = inPanel ? holder : this;
        const Qt::ShortcutContext context = inPanel ? Qt::WidgetWithChildrenShortcut : Qt::WindowShortcut;
        if (c->prop(QStringLiteral("Default")).toBool()) {
            pressOn(*c, QKeySequence(Qt::Key_Return), scope, context);
            pressOn(*c, QKeySequence(Qt::Key_Enter), scope, context);
        }
        if (c->prop(QStringLiteral("Cancel")).toBool())
            pressOn(*c, QKeySequence(Qt::Key_Escape), scope, context);
    }
}

void FormView::pressOn(Control& c, const QKeySequence& keys, QWidget* scope, Qt::ShortcutContext context) {
    auto* shortcut = new QShortcut(keys, scope);
    shortcut->setContext(context);
    shortcut->setObjectName(c.fullName() + QStringLiteral(".Shortcut"));
    QObject::connect(shortcut, &QShortcut::activated, this, [this, &c] {
        // A control that cannot be clicked now (hidden, disabled) takes no key.
        QWidget* w = widgetFor(c);
        if (!form_ || !c.enabled() || (w && !w->isVisible()))
            return;
        userInput([&c] { c.form().raiseEvent(c, QStringLiteral("Click")); });
    });
}

void FormView::placeInContainers() {
    // In the form's order, so that controls added later stay in front of those
    // added before them in the same container.
    for (const ControlPtr& c : form_->controls()) {
        const auto it = widgets_.find(c.get());
        if (it == widgets_.end() || !it->second.widget)
            continue;
        const Control* control = c.get();
        const ControlWidget& made = it->second;
        QWidget* parent = surface_;
        if (hasContainer(*control)) {
            const Control* holder = form_->find(control->prop(QStringLiteral("Container")).toString());
            if (QWidget* w = holder ? widgetFor(*holder) : nullptr)
                parent = w;
        }
        if (made.widget->parentWidget() != parent) {
            made.widget->setParent(parent);
            made.widget->setVisible(control->visible() && onCurrentTab(*control));
        }
    }
}

bool FormView::onCurrentTab(const Control& c) const {
    if (!c.hasProp(QStringLiteral("ContainerTab")) || !hasContainer(c))
        return true;
    const Control* strip = form_->find(c.prop(QStringLiteral("Container")).toString());
    if (!strip || strip->kind() != ControlKind::TabStrip)
        return true;
    return strip->prop(QStringLiteral("Tab")).toInt() == c.prop(QStringLiteral("ContainerTab")).toInt();
}

void FormView::showCurrentTab(const Control& strip) {
    for (auto& [control, made] : widgets_)
        if (made.widget && control->prop(QStringLiteral("Container")).toString() == strip.name())
            made.widget->setVisible(control->visible() && onCurrentTab(*control));
}

void FormView::detach() {
    if (owned_ && alive_.expired())
        form_ = nullptr; // gone already, and its controls with it
    if (!form_)
        return;
    for (const ControlPtr& c : form_->controls())
        c->onChanged = nullptr;
    form_->onChanged = nullptr;
    form_->onPopupMenu = nullptr;
    for (auto& [control, made] : widgets_)
        if (auto* timer = qobject_cast<QTimer*>(made.object))
            timer->stop();
    form_ = nullptr;
}

QWidget* FormView::widgetFor(const Control& c) const {
    const auto it = widgets_.find(&c);
    return it == widgets_.end() ? nullptr : it->second.widget;
}

QObject* FormView::objectFor(const Control& c) const {
    const auto it = widgets_.find(&c);
    return it == widgets_.end() ? nullptr : it->second.object;
}

QAction* FormView::actionFor(const Control& menuEntry) const {
    return menus_->actionFor(menuEntry);
}

QMenu* FormView::popupMenu(const QString& menuName) const {
    return menus_->popup(menuName);
}

QSize FormView::initialSize() const {
    if (!form_)
        return size();
    const int width = toPixels(form_->scaleWidth() > 0 ? form_->scaleWidth() : form_->width());
    int height = toPixels(form_->scaleHeight() > 0 ? form_->scaleHeight() : form_->height());
    if (menuBar_->isVisibleTo(this))
        height += menuBar_->sizeHint().height();
    return QSize(width, height);
}

void FormView::controlChanged(Control& c, const QString& p) {
    if (!form_)
        return;
    const auto it = widgets_.find(&c);
    if (it == widgets_.end())
        return;
    if (it->second.sync)
        it->second.sync(p);
    applyShared(c, it->second.widget, p);
}

void FormView::applyShared(Control& c, QWidget* w, const QString& p) {
    if (!w)
        return;
    if (wants(p, "Visible") || p == QLatin1String("ContainerTab"))
        w->setVisible(c.visible() && onCurrentTab(c));
    if (c.kind() == ControlKind::TabStrip && p == QLatin1String("Tab"))
        showCurrentTab(c);
    if (wants(p, "Enabled"))
        w->setEnabled(c.enabled());
    if (p == QLatin1String("ZOrder"))
        w->raise();
    if (wants(p, "ToolTipText"))
        w->setToolTip(c.toolTipText());
    if (wants(p, "BackColor") || wants(p, "ForeColor"))
        applyColours(c, w);
    if (isFont(p))
        applyFont(c, w);
    if (p == QLatin1String("Container")) {
        placeInContainers();
        relayout();
    } else if (!p.isEmpty() && (isGeometry(p) || p == QLatin1String("Align"))) {
        if (alignOf(c) == Align::None || hasContainer(c)) {
            w->setGeometry(placed(c, *w));
            placeScrollersIn(c);
        } else {
            relayout();
        }
    }
    if (p == QLatin1String("Visible") && alignOf(c) != Align::None)
        relayout();
}

void FormView::applyColours(const Control& c, QWidget* w) {
    QPalette palette = w->palette();
    bool changed = false;
    if (c.hasProp(QStringLiteral("BackColor")) && !isPlainColour(c.backColor())) {
        // A system colour (the window colour of a locked box): the style's own.
        const QPalette standard = QApplication::palette(w);
        for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
            palette.setColor(role, standard.color(role));
        changed = true;
    }
    if (c.hasProp(QStringLiteral("BackColor")) && isPlainColour(c.backColor())) {
        const QColor back = toQColor(c.backColor());
        for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
            palette.setColor(role, back);
        w->setAutoFillBackground(true);
        // The skin's button style would paint over the palette: a coloured
        // button (the wall colour) carries its colour in its own style.
        if (qobject_cast<QAbstractButton*>(w) && c.kind() == ControlKind::CommandButton)
            w->setStyleSheet(QStringLiteral("QPushButton { background-color: %1; }").arg(back.name()));
        changed = true;
    }
    const unsigned fore = c.prop(QStringLiteral("ForeColor")).toUInt();
    if (c.hasProp(QStringLiteral("ForeColor")) && isPlainColour(fore)) {
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, toQColor(fore));
        changed = true;
    }
    if (changed)
        w->setPalette(palette);
}

void FormView::applyFont(const Control& c, QWidget* w) {
    if (!c.hasProp(QStringLiteral("FontName")) && !c.hasProp(QStringLiteral("FontSize")) &&
        !c.hasProp(QStringLiteral("FontBold")) && !c.hasProp(QStringLiteral("FontItalic")) &&
        !c.hasProp(QStringLiteral("FontUnderline")))
        return;
    QFont font = w->font();
    if (c.hasProp(QStringLiteral("FontName")))
        font.setFamily(c.prop(QStringLiteral("FontName")).toString());
    if (c.hasProp(QStringLiteral("FontSize")))
        font.setPointSizeF(c.prop(QStringLiteral("FontSize")).toDouble());
    if (c.hasProp(QStringLiteral("FontBold")))
        font.setBold(c.prop(QStringLiteral("FontBold")).toBool());
    if (c.hasProp(QStringLiteral("FontItalic")))
        font.setItalic(c.prop(QStringLiteral("FontItalic")).toBool());
    if (c.hasProp(QStringLiteral("FontUnderline")))
        font.setUnderline(c.prop(QStringLiteral("FontUnderline")).toBool());
    w->setFont(font);
}

QRect FormView::placed(const Control& c, const QWidget& w) const {
    QRect r = toPixels(c.geometry());
    // A scrolling control (a canvas, a list) ends at the edge of the panel
    // that holds it, so that its scroll bars stay in sight.
    const QWidget* holder = w.parentWidget();
    if (hasContainer(c) && holder && holder != surface_ && qobject_cast<const QAbstractScrollArea*>(&w)) {
        r.setRight(std::min(r.right(), holder->width() - 1));
        r.setBottom(std::min(r.bottom(), holder->height() - 1));
    }
    return r;
}

void FormView::placeScrollersIn(const Control& holder) {
    for (const ControlPtr& c : form_->controls()) {
        QWidget* w = widgetFor(*c);
        if (w && c->prop(QStringLiteral("Container")).toString() == holder.name() &&
            qobject_cast<QAbstractScrollArea*>(w))
            w->setGeometry(placed(*c, *w));
    }
}

void FormView::relayout() {
    if (!form_)
        return;
    // Aligned controls take the edges of the form in their order; the others
    // sit where their twips say, inside their container.
    QRect free = surface_->rect();
    for (const ControlPtr& c : form_->controls()) {
        QWidget* w = widgetFor(*c);
        if (!w)
            continue;
        const Align align = hasContainer(*c) ? Align::None : alignOf(*c);
        if (align == Align::None) {
            w->setGeometry(placed(*c, *w));
            continue;
        }
        if (!c->visible())
            continue;
        const QRect want = toPixels(c->geometry());
        const int height = want.height() > 0 ? want.height() : w->sizeHint().height();
        const int width = want.width() > 0 ? want.width() : w->sizeHint().width();
        switch (align) {
        case Align::Top:
            w->setGeometry(free.left(), free.top(), free.width(), height);
            free.setTop(free.top() + height);
            break;
        case Align::Bottom:
            w->setGeometry(free.left(), free.bottom() + 1 - height, free.width(), height);
            free.setBottom(free.bottom() - height);
            break;
        case Align::Left:
            w->setGeometry(free.left(), free.top(), width, free.height());
            free.setLeft(free.left() + width);
            break;
        case Align::Right:
            w->setGeometry(free.right() + 1 - width, free.top(), width, free.height());
            free.setRight(free.right() - width);
            break;
        case Align::None:
            break;
        }
        w->raise();
    }
    // The panels have their sizes now: the scrolling controls in them are kept inside.
    for (const ControlPtr& c : form_->controls())
        if (QWidget* w = widgetFor(*c); w && hasContainer(*c) && qobject_cast<QAbstractScrollArea*>(w))
            w->setGeometry(placed(*c, *w));
}

void FormView::formChanged(const QString& p) {
    if (p == QLatin1String("Caption"))
        setWindowTitle(form_->caption());
    // Showing is the UI port's: it knows whether the form is modal.
    if (p == QLatin1String("Visible") && !form_->visible())
        hide();
}

void FormView::surfaceResized() {
    if (!form_)
        return;
    const QSize inner = surface_->size();
    if (inner != lastInner_) {
        lastInner_ = inner;
        const QRect frame = frameGeometry();
        form_->setSize(toTwips(frame.width()), toTwips(frame.height()), toTwips(inner.width()),
                       toTwips(inner.height()));
        Form* f = form_;
        if (!tick([f] { f->raiseFormEvent(QStringLiteral("Resize")); }))
            return;
    }
    relayout();
}

void FormView::syncFocus() {
    // Only a focus that the logic moved is passed on: the user's own moves
    // are already where they belong.
    if (!form_ || form_->focused() == shownFocus_)
        return;
    Control* wanted = form_->focused();
    QWidget* w = wanted ? widgetFor(*wanted) : nullptr;
    if (!w || !w->isVisible() || !w->isEnabled())
        return; // tried again once it can take the focus
    shownFocus_ = wanted;
    w->setFocus(Qt::OtherFocusReason);
}

bool FormView::userInput(const std::function<void()>& step) {
    return deliver(step, true);
}

bool FormView::tick(const std::function<void()>& step) {
    return deliver(step, false);
}

bool FormView::deliver(const std::function<void()>& step, bool fromUser) {
    if (!form_)
        return false;
    ApplicationBase& app = form_->app();
    if (fromUser && !app.acceptsInput(*form_))
        return true;
    app.dispatch(step);
    // The handler may have unloaded the form: the UI port has detached us
    // then, or else the form is gone with its controls.
    if (owned_ && alive_.expired())
        form_ = nullptr;
    if (!form_)
        return false;
    syncFocus();
    return true;
}

void FormView::closeEvent(QCloseEvent* event) {
    if (!form_) {
        event->accept();
        return;
    }
    // Closing by the title bar unloads the form; its handlers decide, and the
    // UI port closes this window when the form is gone.
    event->ignore();
    Form* f = form_;
    userInput([f] { f->app().unload(*f); });
}

bool FormView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == surface_) {
        if (event->type() == QEvent::Resize)
            surfaceResized();
        return false;
    }
    const auto it = controlOf_.find(watched);
    if (it == controlOf_.end() || !form_)
        return false;
    return controlEvent(*it->second, event);
}

bool FormView::controlEvent(Control& c, QEvent* event) {
    switch (event->type()) {
    case QEvent::Polish:
        // The style has just polished the widget, and a style sheet's polish
        // puts back the application's palette: the control's colours again.
        if (QWidget* w = widgets_[&c].widget)
            applyColours(c, w);
        return false;
    case QEvent::FocusIn:
        if (widgets_[&c].takesFocus) {
            shownFocus_ = &c;
            userInput([&c] { c.form().setFocus(&c); });
        }
        return false;
    case QEvent::KeyPress:
        return keyPressed(c, event);
    case QEvent::MouseButtonPress:
        // MouseDown with the platform's button value (1 left, 2 right, 4 middle) and the
        // position in twips, for the controls that handle it.
        if (!clickedByMouse(c.kind()) && form_->hasHandler(c.name(), QStringLiteral("MouseDown"))) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const int button = pressedButton(mouse->button());
            EventArgs args{button, platformShiftMask(mouse->modifiers()),
                           toTwips(qRound(mouse->position().x())), toTwips(qRound(mouse->position().y()))};
            userInput([&] { c.form().raiseEvent(c, QStringLiteral("MouseDown"), args); });
        }
        return false;
    case QEvent::MouseButtonRelease:
        if (clickedByMouse(c.kind()) && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
            form_->hasHandler(c.name(), QStringLiteral("Click")))
            userInput([&c] { c.form().raiseEvent(c, QStringLiteral("Click")); });
        return false;
    case QEvent::MouseButtonDblClick:
        if (clickedByMouse(c.kind()) && form_->hasHandler(c.name(), QStringLiteral("DblClick")))
            userInput([&c] { c.form().raiseEvent(c, QStringLiteral("DblClick")); });
        return false;
    default:
        return false;
    }
}

bool FormView::keyPressed(Control& c, QEvent* event) {
    // KeyDown and KeyPress pass their codes by reference: a handler that sets
    // the code to 0 swallows the key, and KeyPress may change the character.
    auto* key = static_cast<QKeyEvent*>(event);
    if (form_->hasHandler(c.name(), QStringLiteral("KeyDown"))) {
        EventArgs args{platformKeyCode(key->key()), platformShiftMask(key->modifiers())};
        if (!userInput([&] { c.form().raiseEvent(c, QStringLiteral("KeyDown"), args); }))
            return true;
        if (args.value(0).toInt() == 0)
            return true;
    }
    if (key->text().isEmpty() || !form_->hasHandler(c.name(), QStringLiteral("KeyPress")))
        return false;
    const int typed = key->text().at(0).unicode();
    EventArgs args{typed};
    if (!userInput([&] { c.form().raiseEvent(c, QStringLiteral("KeyPress"), args); }))
        return true;
    const int kept = args.value(0).toInt();
    if (kept == 0)
        return true;
    if (kept != typed) {
        if (auto* edit = qobject_cast<QLineEdit*>(widgetFor(c)))
            edit->insert(QString(QChar(kept)));
        return true;
    }
    return false;
}

} // namespace tessaly::ui
