// Printing from the main window: the empty page guard, and a print through
// the canvas's print path into a PDF whose line is measured by poppler.
#include "canvas/api/POLARDraw.h"
#include "core/port/ScriptedUiPort.h"
#include "core/runtime/Waiter.h"
#include "workspace/Application.h"
#include "workspace/frmMain.h"

#include <QImage>
#include <QJsonObject>
#include <QPageLayout>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

constexpr int PopplerDpi = 254; // 10 pixels to the millimetre
constexpr double PixelsPerMm = PopplerDpi / 25.4;
constexpr int LineType = 20;        // the canvas's straight line
constexpr double ToleranceMm = 0.5; // what a print may be off by

// A print host that prints to a PDF file as a printer would, and counts the
// page setups it is asked for.
class PdfPrintHost final : public canvas::CanvasDialogHost {
public:
    explicit PdfPrintHost(QString path) : path_(std::move(path)) {}
    int prints = 0;
    int pageSetups = 0;
    bool lastShowDialog = false;

    bool editLine(canvas::LineOptions&) override { return false; }
    bool editArrows(canvas::ArrowOptions&) override { return false; }
    bool editShade(canvas::ShadeOptions&) override { return false; }
    bool editPattern(canvas::PatternOptions&) override { return false; }
    bool editTexture(canvas::TextureOptions&) override { return false; }
    bool editShadow(canvas::ShadowOptions&) override { return false; }
    bool editFont(canvas::FontOptions&) override { return false; }
    void pageSetup(canvas::POLARDraw&) override { ++pageSetups; }
    void print(canvas::POLARDraw& canvas, bool& showDialog) override {
        ++prints;
        lastShowDialog = showDialog;
        QPdfWriter writer(path_);
        writer.setResolution(1200);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF()));
        canvas.printTo(writer);
    }
    void fileError(const QString&, int) override {}

private:
    QString path_;
};

class PrintCommands : public ::testing::Test {
protected:
    QTemporaryDir dir;
    ScriptedUiPort port;
    RecordingWaiter waiter;
    Application app{port, waiter, AppHome(dir.path())};
    frmMain& main = app.form<frmMain>();
    QString pdf = dir.filePath(QStringLiteral("print.pdf"));
    PdfPrintHost host{pdf};
    std::vector<QJsonObject> events;

    void SetUp() override {
        std::dynamic_pointer_cast<canvas::POLARDraw>(main.canvas1())->setDialogHost(&host);
        port.onEvent = [this](const QJsonObject& e) { events.push_back(e); };
    }
    void click(const char* menu) {
        main.raiseEvent(main.control(QString::fromLatin1(menu)), QStringLiteral("Click"));
    }
    void addShape(int type, int left, int top, int right, int bottom) {
        QVariantList args{type, left, top, right, bottom};
        app.gShapeList->call(QStringLiteral("AddShape"), args);
    }
};

TEST_F(PrintCommands, EmptyPageIsRefusedWithoutPrintDialog) {
    click("mnuFile_Print");
    EXPECT_EQ(host.prints, 0);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0][QStringLiteral("event")].toString(), QStringLiteral("msgbox"));
    EXPECT_EQ(events[0][QStringLiteral("text")].toString(), QStringLiteral("Nothing to print!"));
    EXPECT_EQ(events[0][QStringLiteral("flags")].toInt(), 16);
    EXPECT_EQ(events[0][QStringLiteral("title")].toString(), QStringLiteral("Tessaly"));
}

TEST_F(PrintCommands, PageSetupGoesToTheCanvas) {
    click("mnuFile_PageSetup");
    EXPECT_EQ(host.pageSetups, 1);
}

// Finds the longest run of dark pixels along any row of a grey image.
int longestDarkRun(const QImage& image) {
    int best = 0;
    for (int y = 0; y < image.height(); ++y) {
        int run = 0;
        for (int x = 0; x < image.width(); ++x) {
            run = qGray(image.pixel(x, y)) < 128 ? run + 1 : 0;
            best = std::max(best, run);
        }
    }
    return best;
}

TEST_F(PrintCommands, AHundredMillimetreLinePrintsAHundredMillimetresLong) {
    addShape(LineType, 20, 30, 120, 30);
    click("mnuFile_Print");
    ASSERT_EQ(host.prints, 1);
    EXPECT_TRUE(host.lastShowDialog);
    EXPECT_TRUE(events.empty());
    ASSERT_TRUE(QFile::exists(pdf));
    // Rasterised by poppler, not by Qt.
    const QString stem = dir.filePath(QStringLiteral("page"));
    QProcess poppler;
    poppler.start(QStringLiteral("pdftoppm"),
                  {QStringLiteral("-r"), QString::number(PopplerDpi), QStringLiteral("-gray"),
                   QStringLiteral("-singlefile"), pdf, stem});
    ASSERT_TRUE(poppler.waitForFinished(60000));
    ASSERT_EQ(poppler.exitCode(), 0) << poppler.readAllStandardError().toStdString();
    const QImage page(stem + QStringLiteral(".pgm"));
    ASSERT_FALSE(page.isNull());
    const double lengthMm = longestDarkRun(page) / PixelsPerMm;
    EXPECT_NEAR(lengthMm, 100.0, ToleranceMm);
}

TEST_F(PrintCommands, PrintingLeavesTheModifiedFlagAlone) {
    addShape(LineType, 20, 30, 120, 30);
    main.canvas1()->set(QStringLiteral("Modified"), false);
    click("mnuFile_Print");
    EXPECT_FALSE(main.canvas1()->get(QStringLiteral("Modified")).toBool());
}

} // namespace
} // namespace tessaly
