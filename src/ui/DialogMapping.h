#pragma once

#include <QMessageBox>
#include <QString>
#include <vector>

namespace tessaly::ui {

// How a message box of the logic looks on the desktop: its icon, its buttons
// in order, the default button, and the button that Escape and the title
// bar's close button press (NoButton when the box can only be answered by one
// of its buttons, as a Yes/No box).
struct MessageBoxLayout {
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    std::vector<QMessageBox::StandardButton> buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton;
};

// The layout for the platform's message box flags (buttons in the low three
// bits, the icon in the next three, the default button in bits 8 and 9).
MessageBoxLayout messageBoxLayout(int flags);

// The platform's result code for a pressed button: 1 OK, 2 Cancel, 3 Abort,
// 4 Retry, 5 Ignore, 6 Yes, 7 No.
int messageBoxResult(QMessageBox::StandardButton button);

// A file dialog filter of the logic, "Caption|pattern|Caption|pattern", as
// Qt's "Caption (pattern pattern);;..." with the patterns of each pair.
QString qtFileFilter(const QString& filter);

// The default extension as a file dialog's default suffix: "*.pdr", ".pdr"
// and "pdr" all give "pdr".
QString defaultSuffix(const QString& defaultExt);

} // namespace tessaly::ui
