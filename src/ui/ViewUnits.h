#pragma once

#include <QColor>
#include <QRect>
#include <QString>

namespace tessaly::ui {

// Form geometry is kept in twips; the screen has 15 twips to a pixel at the
// standard density.
constexpr int TwipsPerPixel = 15;

inline int toPixels(int twips) {
    return twips / TwipsPerPixel;
}
inline int toTwips(int pixels) {
    return pixels * TwipsPerPixel;
}
QRect toPixels(const QRect& twips);

// Colours of the logic are 0x00BBGGRR: red in the low byte. Values with the
// high bit set name system colours, which keep the widget's own palette.
bool isPlainColour(unsigned colour);
QColor toQColor(unsigned colour);
unsigned fromQColor(const QColor& colour);

// A caption as a label shows it: "&" marks the access key and is not shown,
// "&&" shows one ampersand.
QString withoutAccessKeys(const QString& caption);

} // namespace tessaly::ui

namespace tessaly::ui {

// The platform's key code for a Qt key (letters, digits, Enter, Escape, Tab,
// Backspace, Delete, the arrows and F1 to F12), 0 for others; and its shift
// mask: 1 Shift, 2 Ctrl, 4 Alt.
int platformKeyCode(int qtKey);
int platformShiftMask(Qt::KeyboardModifiers modifiers);
// The platform's mouse button codes: 1 left, 2 right, 4 middle; a button
// that goes down or up, and the set of buttons held during a move.
constexpr int LeftButtonCode = 1;
constexpr int RightButtonCode = 2;
constexpr int MiddleButtonCode = 4;
int platformButton(Qt::MouseButton button);
int platformButtons(Qt::MouseButtons buttons);

} // namespace tessaly::ui
