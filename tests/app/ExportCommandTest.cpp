// tessaly-export as a practice runs it over a folder of plans: pairs of
// input and output, --to with many inputs, --dpi, and a clear message with a
// non-zero status for a damaged drawing, an unwritable output or a wrong
// command line.
#include "canvas/api/POLARDraw.h"
#include "canvas/model/ShapeTypes.h"

#include "ExportTools.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::test;

namespace {

struct Outcome {
    int status = -1;
    QString err;
};

class ExportCommand : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const QString& name) const { return dir.filePath(name); }

    // A drawing with a frame and a word, landscape unless asked.
    QString drawing(const QString& name, const QString& word, bool landscape = true) {
        const auto canvas = canvas::POLARDraw::create();
        canvas->editPage([landscape](canvas::PageState& s) {
            s.page.landscape = landscape;
            s.page.width = landscape ? 295 : 210;
            s.page.height = landscape ? 210 : 295;
        });
        canvas->addShapeMm(canvas::shape_type::Rectangle, QRectF(5, 5, 100, 100), {}, false);
        canvas->addShapeMm(canvas::shape_type::TextBox, QRectF(20, 40, 60, 20), word, false);
        canvas->saveFile(path(name), canvas::save_format::Pdr);
        return path(name);
    }
    Outcome run(const QStringList& arguments) const {
        QProcess process;
        process.start(QStringLiteral(TESSALY_EXPORT_PROGRAM),
                      QStringList{QStringLiteral("--home"), path(QStringLiteral("home"))} + arguments);
        if (!process.waitForFinished(60000))
            return {};
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardError())};
    }
};

} // namespace

TEST_F(ExportCommand, ConvertsPairsByTheOutputsExtension) {
    const QString plan = drawing(QStringLiteral("plan.pdr"), QStringLiteral("Kitchen"));
    const QString tall = drawing(QStringLiteral("tall.pdr"), QStringLiteral("Hall"), false);
    const Outcome r = run({plan, path(QStringLiteral("plan.pdf")), tall, path(QStringLiteral("tall.pdf")),
                           plan, path(QStringLiteral("plan.tiff")), plan, path(QStringLiteral("plan.png")),
                           plan, path(QStringLiteral("plan.bmp")), plan, path(QStringLiteral("plan.emf")),
                           plan, path(QStringLiteral("plan.wmf")), plan, path(QStringLiteral("plan.svg"))});
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_FALSE(r.err.contains(QStringLiteral("tessaly-export:"))) << r.err.toStdString();
    EXPECT_EQ(pdfInfo(path(QStringLiteral("plan.pdf"))).value(QStringLiteral("Page size")),
              QStringLiteral("792 x 612 pts (letter)"));
    EXPECT_EQ(pdfInfo(path(QStringLiteral("tall.pdf"))).value(QStringLiteral("Page size")),
              QStringLiteral("612 x 792 pts (letter)"));
    EXPECT_TRUE(qpdfCheck(path(QStringLiteral("plan.pdf"))));
    EXPECT_TRUE(pdfText(path(QStringLiteral("tall.pdf"))).contains(QStringLiteral("Hall")));
    EXPECT_EQ(tiffPageCount(path(QStringLiteral("plan.tiff"))), 1);
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.png"))), QStringLiteral("1742x1240"));
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.bmp"))), QStringLiteral("1742x1240"));
    EXPECT_FALSE(svgImage(path(QStringLiteral("plan.svg"))).isNull());
    QFile wmf(path(QStringLiteral("plan.wmf")));
    ASSERT_TRUE(wmf.open(QIODevice::ReadOnly));
    EXPECT_EQ(wmf.read(4), QByteArray("\xD7\xCD\xC6\x9A", 4));
}

TEST_F(ExportCommand, ToWritesEveryInputBesideItselfOrIntoAFolder) {
    const QStringList inputs{drawing(QStringLiteral("a.pdr"), QStringLiteral("Alpha")),
                             drawing(QStringLiteral("b.pdr"), QStringLiteral("Beta")),
                             drawing(QStringLiteral("c.pdr"), QStringLiteral("Gamma"))};
    Outcome r = run(QStringList{QStringLiteral("--to"), QStringLiteral("pdf")} + inputs);
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_TRUE(pdfText(path(QStringLiteral("a.pdf"))).contains(QStringLiteral("Alpha")));
    EXPECT_TRUE(pdfText(path(QStringLiteral("b.pdf"))).contains(QStringLiteral("Beta")));
    EXPECT_TRUE(pdfText(path(QStringLiteral("c.pdf"))).contains(QStringLiteral("Gamma")));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("svg")));
    r = run(QStringList{QStringLiteral("--to"), QStringLiteral(".svg"), QStringLiteral("--out"),
                        path(QStringLiteral("svg"))} +
            inputs);
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_EQ(QDir(path(QStringLiteral("svg"))).entryList(QDir::Files),
              (QStringList{"a.svg", "b.svg", "c.svg"}));
}

TEST_F(ExportCommand, DpiSetsTheResolutionOfImages) {
    const QString plan = drawing(QStringLiteral("plan.pdr"), QStringLiteral("Kitchen"));
    const Outcome r =
        run({QStringLiteral("--dpi"), QStringLiteral("300"), plan, path(QStringLiteral("plan.png"))});
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_EQ(identifySize(path(QStringLiteral("plan.png"))), QStringLiteral("3484x2480"));
}

TEST_F(ExportCommand, ADamagedDrawingIsNamedAndTheOthersAreStillWritten) {
    QFile damaged(path(QStringLiteral("damaged.pdr")));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("TESSPDR\x1a this is not a drawing");
    damaged.close();
    const QString good = drawing(QStringLiteral("good.pdr"), QStringLiteral("Kitchen"));
    const Outcome r = run({path(QStringLiteral("damaged.pdr")), path(QStringLiteral("damaged.pdf")), good,
                           path(QStringLiteral("good.pdf")), path(QStringLiteral("missing.pdr")),
                           path(QStringLiteral("missing.pdf"))});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("damaged.pdr: cannot read the drawing")))
        << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("missing.pdr: cannot read the drawing")))
        << r.err.toStdString();
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("damaged.pdf"))));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("missing.pdf"))));
    EXPECT_EQ(pdfInfo(path(QStringLiteral("good.pdf"))).value(QStringLiteral("Pages")), QStringLiteral("1"));
}

TEST_F(ExportCommand, AnUnwritableOutputIsNamedAndAnOldFileKept) {
    const QString plan = drawing(QStringLiteral("plan.pdr"), QStringLiteral("Kitchen"));
    QFile old(path(QStringLiteral("old.pdf")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    ASSERT_TRUE(QFile::setPermissions(path(QStringLiteral("old.pdf")), QFileDevice::ReadOwner));
    const Outcome r = run({plan, path(QStringLiteral("no folder/plan.pdf")), plan,
                           path(QStringLiteral("old.pdf")), plan, path(QStringLiteral("plan.jpg"))});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("plan.pdf: ")) &&
                r.err.contains(QStringLiteral("does not exist")))
        << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("old.pdf: ")) && r.err.contains(QStringLiteral("read-only")))
        << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("plan.jpg: unknown output type '.jpg'")))
        << r.err.toStdString();
    QFile kept(path(QStringLiteral("old.pdf")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray("old"));
}

TEST_F(ExportCommand, AWrongCommandLineShowsTheUsage) {
    const QString plan = drawing(QStringLiteral("plan.pdr"), QStringLiteral("Kitchen"));
    for (const QStringList& arguments :
         {QStringList{}, QStringList{plan},
          QStringList{QStringLiteral("--dpi"), QStringLiteral("x"), plan, plan},
          QStringList{QStringLiteral("--bogus"), plan, plan},
          QStringList{QStringLiteral("--out"), dir.path(), plan, plan}}) {
        const Outcome r = run(arguments);
        EXPECT_EQ(r.status, 2) << arguments.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("usage: tessaly-export"))) << r.err.toStdString();
    }
}
