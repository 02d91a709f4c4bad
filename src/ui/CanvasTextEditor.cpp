#include "CanvasTextEditor.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QTextDocument>
#include <QTextOption>

namespace tessaly::ui {

CanvasTextEditor::CanvasTextEditor(QWidget* parent) : QPlainTextEdit(parent) {
    setObjectName(QStringLiteral("canvasTextEditor"));
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setTabChangesFocus(true);
    // Lines stand centred, as the canvas draws the text of a shape.
    QTextOption option = document()->defaultTextOption();
    option.setAlignment(Qt::AlignHCenter);
    document()->setDefaultTextOption(option);
}

void CanvasTextEditor::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && (event->modifiers() & Qt::ControlModifier)) {
        commit();
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        cancel();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void CanvasTextEditor::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    // A pop-up of the editor itself (its context menu) takes the focus only for a moment.
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}

void CanvasTextEditor::commit() {
    if (finished_)
        return;
    finished_ = true;
    emit committed(toPlainText());
}

void CanvasTextEditor::cancel() {
    if (finished_)
        return;
    finished_ = true;
    emit cancelled();
}

} // namespace tessaly::ui
