#include "DialogMapping.h"

#include "core/port/UiPort.h"

#include <QRegularExpression>

namespace tessaly::ui {

namespace {
constexpr int ButtonsMask = 0x7; // low bits: which buttons the box has
constexpr int IconShift = 4;     // bits below the icon code
constexpr int IconMask = 0x7;    // the icon code after the shift
constexpr int DefaultShift = 8;  // bits below the default button's number
constexpr int DefaultMask = 0x3; // the default button's number after the shift
// Button groups of the platform's flags.
constexpr int OkCancel = 1;
constexpr int AbortRetryIgnore = 2;
constexpr int YesNoCancel = 3;
constexpr int RetryCancel = 5;
// Icon codes of the platform's flags (the value after the shift).
constexpr int IconCritical = 1;
constexpr int IconQuestion = 2;
constexpr int IconExclamation = 3;
constexpr int IconInformation = 4;
// Result codes beyond those the logic names in mb::.
constexpr int ResultAbort = 3;
constexpr int ResultRetry = 4;
constexpr int ResultIgnore = 5;

using SB = QMessageBox::StandardButton;

void setButtons(MessageBoxLayout& layout, int group) {
    switch (group) {
    case OkCancel:
        layout.buttons = {SB::Ok, SB::Cancel};
        layout.escapeButton = SB::Cancel;
        break;
    case AbortRetryIgnore:
        layout.buttons = {SB::Abort, SB::Retry, SB::Ignore};
        break;
    case YesNoCancel:
        layout.buttons = {SB::Yes, SB::No, SB::Cancel};
        layout.escapeButton = SB::Cancel;
        break;
    case mb::YesNo:
        layout.buttons = {SB::Yes, SB::No};
        break;
    case RetryCancel:
        layout.buttons = {SB::Retry, SB::Cancel};
        layout.escapeButton = SB::Cancel;
        break;
    default:
        layout.buttons = {SB::Ok};
        layout.escapeButton = SB::Ok;
        break;
    }
}

QMessageBox::Icon iconFor(int code) {
    switch (code) {
    case IconCritical:
        return QMessageBox::Critical;
    case IconQuestion:
        return QMessageBox::Question;
    case IconExclamation:
        return QMessageBox::Warning;
    case IconInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}
} // namespace

MessageBoxLayout messageBoxLayout(int flags) {
    MessageBoxLayout layout;
    setButtons(layout, flags & ButtonsMask);
    layout.icon = iconFor((flags >> IconShift) & IconMask);
    const size_t chosen = static_cast<size_t>((flags >> DefaultShift) & DefaultMask);
    // A default beyond the buttons there are falls back to the first.
    layout.defaultButton = layout.buttons[chosen < layout.buttons.size() ? chosen : 0];
    return layout;
}

int messageBoxResult(QMessageBox::StandardButton button) {
    switch (button) {
    case SB::Ok:
        return mb::ResultOk;
    case SB::Cancel:
        return mb::ResultCancel;
    case SB::Abort:
        return ResultAbort;
    case SB::Retry:
        return ResultRetry;
    case SB::Ignore:
        return ResultIgnore;
    case SB::Yes:
        return mb::ResultYes;
    case SB::No:
        return mb::ResultNo;
    default:
        return mb::ResultCancel;
    }
}

QString qtFileFilter(const QString& filter) {
    // A caption that already ends in its patterns in brackets keeps its text
    // but for them; Qt reads the patterns from the brackets.
    static const QRegularExpression trailingPatterns(QStringLiteral("\\s*\\([^()]*\\)\\s*$"));
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList entries;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString caption = parts[i];
        caption.remove(trailingPatterns);
        const QString patterns =
            parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts).join(QLatin1Char(' '));
        entries << QStringLiteral("%1 (%2)").arg(caption.trimmed(), patterns.trimmed());
    }
    return entries.join(QStringLiteral(";;"));
}

QString defaultSuffix(const QString& defaultExt) {
    QString suffix = defaultExt.trimmed();
    while (suffix.startsWith(QLatin1Char('*')) || suffix.startsWith(QLatin1Char('.')))
        suffix.remove(0, 1);
    return suffix;
}

} // namespace tessaly::ui
