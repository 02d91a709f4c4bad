#pragma once

#include <QDialog>

class QDialogButtonBox;
class QFormLayout;
class QPushButton;

namespace tessaly::ui {

// The frame of the canvas's option dialogs: a form of labelled fields above
// OK and Cancel. Each dialog takes its values in its constructor and gives
// them back by options() once accepted.
class OptionsDialog : public QDialog {
    Q_OBJECT
public:
    explicit OptionsDialog(const QString& title, QWidget* parent = nullptr);

    QPushButton* okButton() const;
    QPushButton* cancelButton() const;

protected:
    QFormLayout* form() const { return form_; }
    // Adds a widget under the fields (a preview), spanning the form.
    void addWide(QWidget* widget);

private:
    QFormLayout* form_;
    QDialogButtonBox* buttons_;
};

} // namespace tessaly::ui
