#pragma once

#include "canvas/api/POLARDraw.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

namespace tessaly::testing {

// The scripted UI port, with every "let pending events run" counted and
// handed to a hook: what the user does while a long command yields.
class YieldingPort final : public UiPort {
public:
    ScriptedUiPort scripted;
    int yields = 0;
    std::function<void()> onYield;

    int msgBox(const QString& t, int f, const QString& title) override {
        return scripted.msgBox(t, f, title);
    }
    std::optional<QString> inputBox(const QString& p, const QString& t, const QString& d) override {
        return scripted.inputBox(p, t, d);
    }
    std::optional<QString> openDialog(const FileDialogRequest& r) override { return scripted.openDialog(r); }
    std::optional<QString> saveDialog(const FileDialogRequest& r) override { return scripted.saveDialog(r); }
    std::optional<QString> folderDialog(const FileDialogRequest& r) override {
        return scripted.folderDialog(r);
    }
    std::optional<unsigned> colourDialog(unsigned c) override { return scripted.colourDialog(c); }
    bool canvasDialog(const QString& n) override { return scripted.canvasDialog(n); }
    void setMousePointer(int v) override { scripted.setMousePointer(v); }
    void doEvents() override {
        ++yields;
        if (onYield)
            onYield();
    }
    QSize screenSize() override { return scripted.screenSize(); }
    void showForm(Form& f, bool modal) override { scripted.showForm(f, modal); }
    void unloadForm(Form& f) override { scripted.unloadForm(f); }
    void printed(const QString& w) override { scripted.printed(w); }
    void processEnded() override { scripted.processEnded(); }
};

// One event of the port as "event:detail": a message box's text, a pointer's
// value, a file dialog's title (when it has one) and filter.
inline QString eventText(const QJsonObject& e) {
    const QString kind = e[QStringLiteral("event")].toString();
    QString detail = e[QStringLiteral("text")].toString();
    if (kind == QLatin1String("pointer"))
        detail = QString::number(e[QStringLiteral("value")].toInt());
    if (e.contains(QStringLiteral("filter"))) {
        const QString title = e[QStringLiteral("title")].toString();
        detail =
            (title.isEmpty() ? QString() : title + QLatin1Char('|')) + e[QStringLiteral("filter")].toString();
    }
    return kind + QLatin1Char(':') + detail;
}

// The main window with the drawing files subsystem on a freshly installed
// home, driven through the scripted port; its events are kept by eventText.
class DrawingFilesFixture : public ::testing::Test {
protected:
    QTemporaryDir dir;
    AppHome home{dir.path()};
    bool installed = (program::installHome(home), true);
    YieldingPort ports;
    ScriptedUiPort& port = ports.scripted;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(ports, waiter, home);
    frmMain& main = loadMain();
    QStringList events;

    void SetUp() override {
        port.onEvent = [this](const QJsonObject& e) { events << eventText(e); };
    }

    frmMain& loadMain() {
        app->gTemplateFolder = home.templateDir() + QLatin1Char('/');
        return app->form<frmMain>();
    }
    canvas::POLARDraw& engine() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main.canvas1()); }
    void click(const char* menu) {
        main.raiseEvent(main.control(QString::fromLatin1(menu)), QStringLiteral("Click"));
    }
    void tick(int times = 1) {
        for (int i = 0; i < times; ++i)
            main.raiseEvent(main.Timer1, QStringLiteral("Timer"));
    }
    void addRectangle(int left, int top, int right, int bottom) {
        QVariantList args{1, left, top, right, bottom};
        app->gShapeList->call(QStringLiteral("AddShape"), args);
    }
    int shapeCount() const { return app->gShapeList->get(QStringLiteral("Count")).toInt(); }
    QString path(const QString& name) const { return dir.filePath(name); }
    static QByteArray bytesOf(const QString& hostPath) {
        QFile f(hostPath);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    static void write(const QString& hostPath, const QByteArray& bytes) {
        QFile f(hostPath);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_EQ(f.write(bytes), bytes.size());
    }
};

} // namespace tessaly::testing
