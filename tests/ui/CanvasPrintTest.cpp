// Printing through the canvas's printer: the page comes out at true scale on
// paper turned to the page, measured in the printed PDF by poppler.
#include "UiTestSupport.h"
#include "canvas/api/FormatObjects.h"
#include "canvas/api/POLARDraw.h"
#include "canvas/api/PageObjects.h"
#include "canvas/api/ShapeObjects.h"
#include "ui/dialogs/QtCanvasDialogHost.h"

#include <QImage>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace tessaly::ui {
namespace {

using canvas::POLARDraw;

// pdftoppm's resolution: 254 dots an inch is ten pixels a millimetre.
constexpr int Dpi = 254;
constexpr int PixelsPerMm = 10;
// Points of a PDF page a millimetre.
constexpr double PointsPerMm = 72.0 / 25.4;

void call(const AutoPtr& o, const char* name, QVariantList args) {
    o->call(QString::fromLatin1(name), args);
}
AutoPtr object(const AutoPtr& o, const char* name, const QVariantList& index = {}) {
    return toObject(o->get(QString::fromLatin1(name), index));
}

QString run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(30000) || p.exitCode() != 0)
        return {};
    return QString::fromLocal8Bit(p.readAllStandardOutput());
}

// The longest run of dark pixels along row `y`: first and last column.
std::pair<int, int> darkRun(const QImage& page, int y) {
    int first = -1, last = -1;
    for (int x = 0; x < page.width(); ++x)
        if (qGray(page.pixel(x, y)) < 128) {
            if (first < 0)
                first = x;
            last = x;
        }
    return {first, last};
}

class CanvasPrintTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    std::shared_ptr<POLARDraw> canvas = POLARDraw::create();
    QtCanvasDialogHost host{nullptr};

    // Prints without the dialog into a PDF file.
    QString printToPdf() {
        QPrinter& printer = host.printer(*canvas);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = dir.filePath(QStringLiteral("printed.pdf"));
        printer.setOutputFileName(pdf);
        bool showDialog = false;
        canvas->printDrawing(showDialog);
        return pdf;
    }
    QImage rasterise(const QString& pdf) {
        const QString stem = dir.filePath(QStringLiteral("page"));
        QProcess p;
        p.start(QStringLiteral("pdftoppm"),
                {QStringLiteral("-r"), QString::number(Dpi), QStringLiteral("-gray"),
                 QStringLiteral("-singlefile"), pdf, stem});
        if (!p.waitForFinished(30000))
            return {};
        return QImage(stem + QStringLiteral(".pgm"));
    }
};

TEST_F(CanvasPrintTest, AHundredMillimetreLinePrintsAHundredMillimetresLong) {
    canvas->setDialogHost(&host);
    // A line from (30, 80) to (130, 80) mm, one millimetre thick.
    call(canvas->shapes(), "AddShape", {20, 30, 80, 130, 80});
    object(object(canvas->shapes(), "Item", {1}), "Line")->set(QStringLiteral("Weight"), 1);
    const QString pdf = printToPdf();
    ASSERT_TRUE(QFile::exists(pdf));

    const QImage page = rasterise(pdf);
    ASSERT_FALSE(page.isNull());
    const auto [first, last] = darkRun(page, 80 * PixelsPerMm);
    ASSERT_GE(first, 0);
    const double lengthMm = double(last - first + 1) / PixelsPerMm;
    EXPECT_NEAR(lengthMm, 100.0, 0.5);
    // The page's corner is the paper's corner.
    EXPECT_NEAR(double(first) / PixelsPerMm, 30.0, 0.5);
    int thick = 0;
    for (int y = 70 * PixelsPerMm; y < 90 * PixelsPerMm; ++y)
        thick += qGray(page.pixel(80 * PixelsPerMm, y)) < 128;
    EXPECT_NEAR(double(thick) / PixelsPerMm, 1.0, 0.2);
}

TEST_F(CanvasPrintTest, ThePaperIsA4TurnedToThePage) {
    canvas->setDialogHost(&host);
    call(canvas->shapes(), "AddShape", {1, 10, 10, 50, 50});
    const QString info = run(QStringLiteral("pdfinfo"), {printToPdf()});
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("Page size:\\s+([0-9.]+) x ([0-9.]+) pts")).match(info);
    ASSERT_TRUE(m.hasMatch()) << info.toStdString();
    // The starting page is landscape: 297 by 210 mm of paper.
    EXPECT_NEAR(m.captured(1).toDouble() / PointsPerMm, 297.0, 0.5);
    EXPECT_NEAR(m.captured(2).toDouble() / PointsPerMm, 210.0, 0.5);
}

TEST_F(CanvasPrintTest, APortraitPageIsPrintedOnUprightPaper) {
    canvas->page()->set(QStringLiteral("Width"), 210);
    canvas->page()->set(QStringLiteral("Height"), 295);
    canvas->page()->set(QStringLiteral("Landscape"), false);
    canvas->setDialogHost(&host);
    call(canvas->shapes(), "AddShape", {1, 10, 10, 50, 50});
    const QString info = run(QStringLiteral("pdfinfo"), {printToPdf()});
    const QRegularExpressionMatch m =
        QRegularExpression(QStringLiteral("Page size:\\s+([0-9.]+) x ([0-9.]+) pts")).match(info);
    ASSERT_TRUE(m.hasMatch()) << info.toStdString();
    EXPECT_NEAR(m.captured(1).toDouble() / PointsPerMm, 210.0, 0.5);
    EXPECT_NEAR(m.captured(2).toDouble() / PointsPerMm, 297.0, 0.5);
}

} // namespace
} // namespace tessaly::ui
