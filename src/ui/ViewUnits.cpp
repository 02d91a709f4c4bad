#include "ViewUnits.h"

namespace tessaly::ui {

namespace {
constexpr unsigned SystemColourFlag = 0x80000000u; // a system colour index rather than a BGR value
constexpr unsigned ByteMask = 0xFFu;               // one channel of a colour value
constexpr int GreenShift = 8;                      // bits below the green byte
constexpr int BlueShift = 16;                      // bits below the blue byte
} // namespace

QRect toPixels(const QRect& twips) {
    return QRect(toPixels(twips.left()), toPixels(twips.top()), toPixels(twips.width()),
                 toPixels(twips.height()));
}

bool isPlainColour(unsigned colour) {
    return (colour & SystemColourFlag) == 0;
}

QColor toQColor(unsigned colour) {
    return QColor(static_cast<int>(colour & ByteMask), static_cast<int>((colour >> GreenShift) & ByteMask),
                  static_cast<int>((colour >> BlueShift) & ByteMask));
}

unsigned fromQColor(const QColor& colour) {
    return static_cast<unsigned>(colour.red()) | (static_cast<unsigned>(colour.green()) << GreenShift) |
           (static_cast<unsigned>(colour.blue()) << BlueShift);
}

QString withoutAccessKeys(const QString& caption) {
    QString shown;
    shown.reserve(caption.size());
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == QLatin1Char('&')) {
            if (i + 1 < caption.size() && caption[i + 1] == QLatin1Char('&')) {
                shown += QLatin1Char('&');
                ++i;
            }
            continue;
        }
        shown += caption[i];
    }
    return shown;
}

} // namespace tessaly::ui

namespace tessaly::ui {

namespace {
// Key codes of the platform that differ from Qt's.
constexpr int KeyBack = 8;
constexpr int KeyTab = 9;
constexpr int KeyReturn = 13;
constexpr int KeyEscape = 27;
constexpr int KeyLeft = 37; // Up, Right and Down follow
constexpr int KeyDelete = 46;
constexpr int KeyF1 = 112; // F2 to F12 follow
// Shift mask bits.
constexpr int ShiftBit = 1;
constexpr int CtrlBit = 2;
constexpr int AltBit = 4;
} // namespace

int platformKeyCode(int qtKey) {
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey; // the same codes on both
    if (qtKey >= Qt::Key_Left && qtKey <= Qt::Key_Down)
        return KeyLeft + (qtKey - Qt::Key_Left);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return KeyF1 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace:
        return KeyBack;
    case Qt::Key_Tab:
        return KeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return KeyReturn;
    case Qt::Key_Escape:
        return KeyEscape;
    case Qt::Key_Delete:
        return KeyDelete;
    default:
        return 0;
    }
}

int platformButton(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return LeftButtonCode;
    case Qt::RightButton:
        return RightButtonCode;
    case Qt::MiddleButton:
        return MiddleButtonCode;
    default:
        return 0;
    }
}

int platformButtons(Qt::MouseButtons buttons) {
    int code = 0;
    if (buttons & Qt::LeftButton)
        code |= LeftButtonCode;
    if (buttons & Qt::RightButton)
        code |= RightButtonCode;
    if (buttons & Qt::MiddleButton)
        code |= MiddleButtonCode;
    return code;
}

int platformShiftMask(Qt::KeyboardModifiers modifiers) {
    int mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= ShiftBit;
    if (modifiers & Qt::ControlModifier)
        mask |= CtrlBit;
    if (modifiers & Qt::AltModifier)
        mask |= AltBit;
    return mask;
}

} // namespace tessaly::ui
