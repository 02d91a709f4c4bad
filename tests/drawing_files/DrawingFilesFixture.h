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
#include <gtest/gtest.h>

namespace tessaly::testing {

// The main window with the drawing files subsystem on a freshly installed
// home, driven through a scripted UI port whose events are kept as
// "event:detail" texts (a message box's text, a pointer's value, a dialog's
// filter).
class DrawingFilesFixture : public ::testing::Test {
protected:
    QTemporaryDir dir;
    AppHome home{dir.path()};
    bool installed = (program::installHome(home), true);
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, home);
    frmMain& main = loadMain();
    QStringList events;

    void SetUp() override {
        port.onEvent = [this](const QJsonObject& e) {
            const QString kind = e[QStringLiteral("event")].toString();
            QString detail;
            if (kind == QLatin1String("msgbox"))
                detail = e[QStringLiteral("text")].toString();
            else if (kind == QLatin1String("pointer"))
                detail = QString::number(e[QStringLiteral("value")].toInt());
            else if (kind == QLatin1String("open") || kind == QLatin1String("save"))
                detail = e[QStringLiteral("filter")].toString();
            events << kind + QLatin1Char(':') + detail;
        };
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
