// Labels, text boxes and buttons.
#include "ControlWidget.h"
#include "ViewUnits.h"
#include "core/files/FileSystem.h"

#include <QCheckBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTextEdit>

namespace tessaly::ui {

namespace {
// Label alignments of the platform.
constexpr int AlignRight = 1;
constexpr int AlignCenter = 2;
// Check box values of the platform.
constexpr int Checked = 1;
constexpr int Grayed = 2;
// A label's BorderStyle with a single border.
constexpr int SingleBorder = 1;

// True when `property` is the one to sync, or when everything is.
bool wants(const QString& property, const char* name) {
    return property.isEmpty() || property == QLatin1String(name);
}

Qt::Alignment labelAlignment(int alignment) {
    if (alignment == AlignRight)
        return Qt::AlignRight | Qt::AlignTop;
    if (alignment == AlignCenter)
        return Qt::AlignHCenter | Qt::AlignTop;
    return Qt::AlignLeft | Qt::AlignTop;
}

// A button's picture: an image file of the logic's, or one of the program's
// own resources (":/...").
QIcon pictureOf(const Control& control) {
    const QString picture = control.prop(QStringLiteral("Picture")).toString();
    if (picture.isEmpty())
        return QIcon();
    return QIcon(picture.startsWith(QLatin1Char(':')) ? picture : fs::toHost(picture));
}

Qt::CheckState checkState(int value) {
    if (value == Checked)
        return Qt::Checked;
    return value == Grayed ? Qt::PartiallyChecked : Qt::Unchecked;
}
} // namespace

ControlWidget makeLabel(Control& control, QWidget* parent, ViewSink&) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    ControlWidget made{label, nullptr, {}, false};
    made.sync = [label, &control](const QString& p) {
        if (wants(p, "Caption"))
            label->setText(withoutAccessKeys(control.caption()));
        if (wants(p, "Alignment"))
            label->setAlignment(labelAlignment(control.prop(QStringLiteral("Alignment")).toInt()));
        // BorderStyle 1 is a single sunken border; 0, the default, none.
        if (wants(p, "BorderStyle"))
            label->setFrameStyle(control.prop(QStringLiteral("BorderStyle")).toInt() == SingleBorder
                                     ? QFrame::Panel | QFrame::Sunken
                                     : QFrame::NoFrame);
    };
    return made;
}

namespace {
// The line break of a multi-line box's text, as the platform's text boxes hold it.
const QString BoxLineBreak = QStringLiteral("\r\n");

// A text box of several lines (MultiLine true): its text keeps the
// platform's line breaks, the widget shows plain lines.
ControlWidget makeMultiLineTextBox(Control& control, QWidget* parent, ViewSink& sink) {
    auto* edit = new QPlainTextEdit(parent);
    QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [edit, &control, &sink] {
        QString text = edit->toPlainText();
        text.replace(QLatin1Char('\n'), BoxLineBreak);
        sink.userInput([&] { control.setText(text); });
    });
    ControlWidget made{edit, nullptr, {}, true};
    made.sync = [edit, &control](const QString& p) {
        const QSignalBlocker quiet(edit);
        QString shown = control.text();
        shown.replace(BoxLineBreak, QStringLiteral("\n"));
        if (wants(p, "Text") && edit->toPlainText() != shown)
            edit->setPlainText(shown);
        if (wants(p, "Locked"))
            edit->setReadOnly(control.locked());
    };
    return made;
}
} // namespace

ControlWidget makeTextBox(Control& control, QWidget* parent, ViewSink& sink) {
    if (control.prop(QStringLiteral("MultiLine")).toBool())
        return makeMultiLineTextBox(control, parent, sink);
    auto* edit = new QLineEdit(parent);
    QObject::connect(edit, &QLineEdit::textEdited, edit, [&control, &sink](const QString& text) {
        sink.userInput([&] { control.setText(text); });
    });
    ControlWidget made{edit, nullptr, {}, true};
    made.sync = [edit, &control](const QString& p) {
        const QSignalBlocker quiet(edit);
        if (wants(p, "Text") && edit->text() != control.text())
            edit->setText(control.text());
        if (wants(p, "Locked"))
            edit->setReadOnly(control.locked());
        if (wants(p, "MaxLength") && control.hasProp(QStringLiteral("MaxLength"))) {
            const int most = control.prop(QStringLiteral("MaxLength")).toInt();
            edit->setMaxLength(most > 0 ? most : QLineEdit().maxLength());
        }
        if (wants(p, "PasswordChar"))
            edit->setEchoMode(control.prop(QStringLiteral("PasswordChar")).toString().isEmpty()
                                  ? QLineEdit::Normal
                                  : QLineEdit::Password);
        if (p == QLatin1String("SelStart") || p == QLatin1String("SelLength"))
            edit->setSelection(control.prop(QStringLiteral("SelStart")).toInt(),
                               control.prop(QStringLiteral("SelLength")).toInt());
    };
    return made;
}

ControlWidget makeRichText(Control& control, QWidget* parent, ViewSink& sink) {
    auto* edit = new QTextEdit(parent);
    edit->setAcceptRichText(false);
    QObject::connect(edit, &QTextEdit::textChanged, edit, [edit, &control, &sink] {
        const QString text = edit->toPlainText();
        sink.userInput([&] { control.setText(text); });
    });
    ControlWidget made{edit, nullptr, {}, true};
    made.sync = [edit, &control](const QString& p) {
        const QSignalBlocker quiet(edit);
        if (wants(p, "Text") && edit->toPlainText() != control.text())
            edit->setPlainText(control.text());
        if (wants(p, "Locked"))
            edit->setReadOnly(control.locked());
    };
    return made;
}

ControlWidget makeCommandButton(Control& control, QWidget* parent, ViewSink& sink) {
    auto* button = new QPushButton(parent);
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button, [&control, &sink] {
        sink.userInput([&] { control.form().raiseEvent(control, QStringLiteral("Click")); });
    });
    ControlWidget made{button, nullptr, {}, true};
    made.sync = [button, &control](const QString& p) {
        if (wants(p, "Caption"))
            button->setText(control.caption());
        if (wants(p, "Default"))
            button->setDefault(control.prop(QStringLiteral("Default")).toBool());
        if (wants(p, "Picture"))
            button->setIcon(pictureOf(control));
    };
    return made;
}

ControlWidget makeCheckBox(Control& control, QWidget* parent, ViewSink& sink) {
    auto* box = new QCheckBox(parent);
    auto sync = [box, &control](const QString& p) {
        const QSignalBlocker quiet(box);
        if (wants(p, "Caption"))
            box->setText(control.caption());
        if (wants(p, "Value"))
            box->setCheckState(checkState(control.value()));
    };
    QObject::connect(box, &QCheckBox::clicked, box, [&control, &sink, sync](bool on) {
        if (sink.userInput([&] { control.setValue(on ? Checked : 0); }))
            sync(QStringLiteral("Value"));
    });
    return ControlWidget{box, nullptr, sync, true};
}

ControlWidget makeOptionButton(Control& control, QWidget* parent, ViewSink& sink) {
    auto* option = new QRadioButton(parent);
    // The model clears the other options of the container.
    option->setAutoExclusive(false);
    auto sync = [option, &control](const QString& p) {
        const QSignalBlocker quiet(option);
        if (wants(p, "Caption"))
            option->setText(control.caption());
        if (wants(p, "Value"))
            option->setChecked(control.value() != 0);
    };
    QObject::connect(option, &QRadioButton::clicked, option, [&control, &sink, sync] {
        if (sink.userInput([&] { control.setValue(1); }))
            sync(QStringLiteral("Value"));
    });
    return ControlWidget{option, nullptr, sync, true};
}

} // namespace tessaly::ui
