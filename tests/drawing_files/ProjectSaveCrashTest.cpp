// A program killed in the middle of saving a project plan: whatever step the
// kill met, the plan's .pdr afterwards is a whole drawing, the previous one or
// the new one, never half of one; and its .pdf and .tiff, written by every
// save before the kill, are whole files that qpdf and tiffinfo read.
#include "ExportTools.h"
#include "canvas/api/POLARDraw.h"
#include "program/Program.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>

namespace tessaly {
namespace {

constexpr int KillRounds = 6;         // programs started and killed
constexpr int MaxSavesBeforeKill = 3; // whole saves a program makes before its kill
constexpr int PlanShapes = 20000;     // a large plan, so that each write takes a while
constexpr int WaitMs = 60000;         // the longest a step of the saver may take

TEST(ProjectSaveCrash, AKillDuringTheSaveLeavesTheDrawingWhole) {
    QTemporaryDir dir;
    const AppHome home(dir.path());
    program::installHome(home);
    const QString folder = home.fileStoreDir() + QStringLiteral("/Old Barn");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString pdr = folder + QStringLiteral("/Ground Floor.pdr");
    {
        auto canvas = canvas::POLARDraw::create();
        QVariantList none;
        auto shapes =
            toObject(toObject(canvas->get(QStringLiteral("Page"))).get()->get(QStringLiteral("Shapes")));
        for (int i = 0; i < PlanShapes; ++i) {
            QVariantList box{1, i % 280, (i / 280) % 200, i % 280 + 5, (i / 280) % 200 + 4};
            shapes->call(QStringLiteral("AddShape"), box);
        }
        canvas->saveFile(pdr, 1);
    }
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int round = 0; round < KillRounds; ++round) {
        QProcess saver;
        saver.start(QStringLiteral(TESSALY_PROJECT_SAVER),
                    {home.dir(), QStringLiteral("Old Barn\\Ground Floor"), QStringLiteral("0")});
        ASSERT_TRUE(saver.waitForStarted(WaitMs));
        const int wanted = 1 + static_cast<int>(random() % MaxSavesBeforeKill);
        int finished = 0;
        while (finished < wanted) {
            ASSERT_TRUE(saver.waitForReadyRead(WaitMs))
                << QString::fromLocal8Bit(saver.readAllStandardError()).toStdString();
            while (saver.canReadLine()) {
                saver.readLine();
                ++finished;
            }
        }
        saver.kill(); // SIGKILL, in the middle of the next save
        ASSERT_TRUE(saver.waitForFinished(WaitMs));

        auto reread = canvas::POLARDraw::create();
        ASSERT_NO_THROW(reread->loadFile(pdr)) << "round " << round;
        EXPECT_EQ(static_cast<int>(reread->drawing().shapes().size()), PlanShapes) << "round " << round;
        const QString pdf = folder + QStringLiteral("/Ground Floor.pdf");
        QString report;
        EXPECT_TRUE(test::qpdfCheck(pdf, &report)) << "round " << round << ": " << report.toStdString();
        EXPECT_EQ(test::pdfInfo(pdf).value(QStringLiteral("Pages")), QStringLiteral("1"))
            << "round " << round;
        EXPECT_EQ(test::tiffPageCount(folder + QStringLiteral("/Ground Floor.tiff")), 1) << "round " << round;
    }
}

} // namespace
} // namespace tessaly
