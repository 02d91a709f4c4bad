#pragma once

#include "core/port/UiPort.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextEdit;

namespace tessaly::ui {

// The spelling dialog: the unknown word in its sentence, the dictionary's
// suggestions, a box for the word to put in its place (the best suggestion
// to start with), and Replace, Ignore and Cancel.
class SpellDialog final : public QDialog {
    Q_OBJECT

public:
    SpellDialog(const SpellQuery& query, QWidget* parent = nullptr);

    // What the user chose; Cancel when the dialog was closed.
    SpellChoice choice() const { return choice_; }

private:
    void finish(SpellChoice::Action action);

    QTextEdit* context_;
    QLineEdit* replacement_;
    QListWidget* suggestions_;
    QPushButton* replace_;
    SpellChoice choice_;
};

} // namespace tessaly::ui
