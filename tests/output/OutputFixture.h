#pragma once

#include "MetafileTools.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "output/modReportExport.h"
#include "program/Program.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly::test {

// One message box as the scripted port reported it.
struct Shown {
    QString text;
    int flags;
    QString title;
    bool operator==(const Shown&) const = default;
};

inline void PrintTo(const Shown& s, std::ostream* os) {
    *os << '"' << s.text.toStdString() << "\" " << s.flags << " \"" << s.title.toStdString() << '"';
}

// The whole program on a fresh home, with the main window loaded and a
// scripted UI port that answers the save dialog from a queue.
class OutputFixture : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QTemporaryDir out; // where the exports go
    ScriptedUiPort port;
    RecordingWaiter waiter;
    std::unique_ptr<Application> app = program::makeApplication(port, waiter, AppHome(dir.path()));
    frmMain& main = app->form<frmMain>();
    std::vector<Shown> boxes;
    QStringList saveFilters;

    void SetUp() override {
        port.onEvent = [this](const QJsonObject& e) {
            const QString kind = e[QStringLiteral("event")].toString();
            if (kind == QLatin1String("msgbox"))
                boxes.push_back({e[QStringLiteral("text")].toString(), e[QStringLiteral("flags")].toInt(),
                                 e[QStringLiteral("title")].toString()});
            if (kind == QLatin1String("save"))
                saveFilters << e[QStringLiteral("filter")].toString();
        };
    }

    canvas::POLARDraw& engine() { return *std::dynamic_pointer_cast<canvas::POLARDraw>(main.canvas1()); }
    output::modReportExport& module() { return output::reportExportModule(*app); }
    QString path(const QString& name) const { return out.filePath(name); }
    QString printTemp() const { return dir.filePath(QStringLiteral("PrintTemp.emf")); }

    void orientation(bool landscape) {
        QVariantList args{landscape};
        main.call(QStringLiteral("ChangePageOrientation"), args);
    }
    int addShape(int type, QRectF mm, const QString& text = {}) {
        return engine().addShapeMm(type, mm, text, false);
    }
    // A frame 5 mm inside the page's edges, and a word in the middle.
    void framedPlan(const QString& word = QStringLiteral("Kitchen")) {
        const canvas::PageSettings& page = engine().drawing().state().page;
        addShape(canvas::shape_type::Rectangle, QRectF(5, 5, page.width - 10, page.height - 10));
        addShape(canvas::shape_type::TextBox, QRectF(page.width / 2 - 40, page.height / 2 - 10, 80, 20),
                 word);
    }
    void exportVia(const char* menu, const std::optional<QString>& answer) {
        port.queueSave(answer);
        main.raiseEvent(main.control(QString::fromLatin1(menu)), QStringLiteral("Click"));
    }
};

} // namespace tessaly::test
