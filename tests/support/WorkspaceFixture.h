#pragma once

#include "canvas/api/POLARDraw.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly::testing {

// A dialog host that records which of the canvas's dialogs were asked for,
// confirms none of them, and notes the zoom at each page setup.
class RecordingDialogHost : public canvas::CanvasDialogHost {
public:
    QStringList asked;
    std::vector<int> zoomAtPageSetup;
    std::function<void(canvas::POLARDraw&, bool&)> onPrint;

    bool editLine(canvas::LineOptions&) override { return note("Line"); }
    bool editArrows(canvas::ArrowOptions&) override { return note("Arrows"); }
    bool editShade(canvas::ShadeOptions&) override { return note("Shade"); }
    bool editPattern(canvas::PatternOptions&) override { return note("Pattern"); }
    bool editTexture(canvas::TextureOptions&) override { return note("Texture"); }
    bool editShadow(canvas::ShadowOptions&) override { return note("Shadow"); }
    bool editFont(canvas::FontOptions&) override { return note("Font"); }
    void pageSetup(canvas::POLARDraw& canvas) override {
        note("PageSetup");
        zoomAtPageSetup.push_back(canvas.zoom());
    }
    void print(canvas::POLARDraw& canvas, bool& showDialog) override {
        note("Print");
        if (onPrint)
            onPrint(canvas, showDialog);
    }
    void fileError(const QString&, int) override { note("FileError"); }

private:
    bool note(const char* what) {
        asked << QString::fromLatin1(what);
        return false;
    }
};

// A main window on a fresh home with the recording host on its canvas; the
// UI port's events are kept as "event:detail" texts.
class MainWindowCommands : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    Application app{port, waiter, AppHome(dir.path())};
    frmMain& main = app.form<frmMain>();
    RecordingDialogHost host;
    QStringList events;

    void SetUp() override {
        engine().setDialogHost(&host);
        port.onEvent = [this](const QJsonObject& e) {
            const QString kind = e[QStringLiteral("event")].toString();
            QString detail;
            if (kind == QLatin1String("msgbox"))
                detail = e[QStringLiteral("text")].toString();
            else if (kind == QLatin1String("pointer"))
                detail = QString::number(e[QStringLiteral("value")].toInt());
            events << kind + QLatin1Char(':') + detail;
            if (kind == QLatin1String("pointer"))
                host.asked << QStringLiteral("pointer:") + detail;
        };
    }
    canvas::POLARDraw& engine() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main.canvas1()); }
    void click(const QString& menu) { main.raiseEvent(main.control(menu), QStringLiteral("Click")); }
    void click(const char* menu) { click(QString::fromLatin1(menu)); }
    void addShape(int type, int left, int top, int right, int bottom) {
        QVariantList args{type, left, top, right, bottom};
        app.gShapeList->call(QStringLiteral("AddShape"), args);
    }
    void addText(const QString& text, int left, int top, int right, int bottom) {
        QVariantList args{text, left, top, right, bottom};
        app.gShapeList->call(QStringLiteral("AddText"), args);
    }
    void ChangeOrientation(bool landscape) {
        QVariantList args{landscape};
        main.call(QStringLiteral("ChangePageOrientation"), args);
    }
    void selectAll() {
        QVariantList none;
        app.gShapeList->call(QStringLiteral("SelectAll"), none);
    }
};

} // namespace tessaly::testing
