#include "Skin.h"

#include <QApplication>
#include <QFontDatabase>
#include <QStyleFactory>

namespace tessaly::ui {

namespace {
// The application font: Liberation Sans at the size the layouts were made for.
const QString FontFamily = QStringLiteral("Liberation Sans");
constexpr int FontPointSize = 8;

// The splash window: a deep blue card with a thin light frame; the title,
// tag line and version centred on it in white and pale blue. The title keeps
// the font size its form gives it: a font rule here would override it.
constexpr const char* StyleSheet = R"(
QWidget#frmSplash {
    background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #1d3f6e, stop:1 #0e2341);
    border: 1px solid #7fa6d6;
}
QWidget#frmSplash QLabel {
    color: #dce8f7;
    qproperty-alignment: AlignCenter;
}
QWidget#frmSplash QLabel#lblTitle {
    color: #ffffff;
}
QWidget#frmSplash QLabel#lblTagLine {
    color: #a9c4e6;
    font-size: 11pt;
    font-style: italic;
}
QWidget#frmSplash QLabel#lblVersion {
    color: #8fb0d9;
}
QWidget#frmMain QWidget#SSActiveTabs1 QTabBar {
    font-size: 7pt;
}
QWidget#frmMain QWidget#SSActiveTabs1 QTabBar::tab {
    padding: 4px 2px;
    border: 1px solid #a8a8a8;
    border-bottom: none;
    border-top-left-radius: 3px;
    border-top-right-radius: 3px;
    background: #e4e4e4;
}
QWidget#frmMain QWidget#SSActiveTabs1 QTabBar::tab:selected {
    background: #f6f6f6;
}
)";
} // namespace

const char* skinStyleSheet() {
    return StyleSheet;
}

void applySkin(QApplication& app) {
    if (QStyle* fusion = QStyleFactory::create(QStringLiteral("Fusion")))
        QApplication::setStyle(fusion);
    if (QFontDatabase::families().contains(FontFamily))
        QApplication::setFont(QFont(FontFamily, FontPointSize));
    app.setStyleSheet(QString::fromLatin1(StyleSheet));
}

} // namespace tessaly::ui
