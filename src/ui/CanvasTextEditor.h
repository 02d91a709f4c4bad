#pragma once

#include <QPlainTextEdit>

namespace tessaly::ui {

// The in-place editor of a text shape, laid over the shape. Ctrl+Enter and
// losing the focus commit the text; Escape cancels. Each editor ends once:
// after it has committed or cancelled it reports nothing more.
class CanvasTextEditor final : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit CanvasTextEditor(QWidget* parent = nullptr);

    bool finished() const { return finished_; }
    // Ends the editor without a report (the canvas closed it itself).
    void dismiss() { finished_ = true; }

signals:
    void committed(const QString& text);
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void commit();
    void cancel();

    bool finished_ = false;
};

} // namespace tessaly::ui
