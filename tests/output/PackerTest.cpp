// The packer: archives that unzip lists and extracts byte for byte.
#include "output/mail/Packer.h"
#include "MetafileTools.h"
#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessaly::mail {
namespace {

using test::readFile;
using test::runTool;

const QString Unzip = QStringLiteral("unzip");

QByteArray randomBytes(int size, quint32 seed) {
    QRandomGenerator random(seed);
    QByteArray out(size, '\0');
    for (char& c : out)
        c = static_cast<char>(random.bounded(256));
    return out;
}

void write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

class Packer : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString folder() const { return dir.path() + QStringLiteral("/TempFileStore"); }
    QString archive() const { return folder() + QStringLiteral("\\Drawings.zip"); }
    QString pattern() const { return folder() + QStringLiteral("\\*.*"); }
    void SetUp() override { ASSERT_TRUE(QDir().mkpath(folder())); }
};

TEST_F(Packer, EveryFileOfTheFolderIsPackedAndExtractsByteForByte) {
    const QByteArray emf = randomBytes(70000, 1);
    QByteArray wmf(50000, 'w'); // compressible line work
    const QByteArray pdf = randomBytes(12345, 2);
    write(folder() + QStringLiteral("/Ground Floor.emf"), emf);
    write(folder() + QStringLiteral("/Ground Floor.wmf"), wmf);
    write(folder() + QStringLiteral("/Première Étage.pdf"), pdf);
    write(folder() + QStringLiteral("/README"), "no extension");
    const QStringList entries = packFiles(archive(), pattern());
    EXPECT_EQ(entries, (QStringList{QStringLiteral("Ground Floor.emf"), QStringLiteral("Ground Floor.wmf"),
                                    QStringLiteral("Première Étage.pdf"), QStringLiteral("README")}));
    const QString zip = folder() + QStringLiteral("/Drawings.zip");
    QByteArray listing;
    ASSERT_EQ(runTool(Unzip, {QStringLiteral("-l"), zip}, &listing), 0) << listing.constData();
    EXPECT_TRUE(listing.contains("4 files"));
    EXPECT_TRUE(listing.contains("Ground Floor.emf"));
    const QString out = dir.path() + QStringLiteral("/out");
    QByteArray log;
    ASSERT_EQ(runTool(Unzip, {QStringLiteral("-q"), zip, QStringLiteral("-d"), out}, &log), 0)
        << log.constData();
    EXPECT_EQ(readFile(out + QStringLiteral("/Ground Floor.emf")), emf);
    EXPECT_EQ(readFile(out + QStringLiteral("/Ground Floor.wmf")), wmf);
    EXPECT_EQ(readFile(out + QStringLiteral("/Première Étage.pdf")), pdf);
    EXPECT_EQ(readFile(out + QStringLiteral("/README")), QByteArray("no extension"));
    // Line work is deflated.
    EXPECT_LT(QFileInfo(zip).size(), emf.size() + pdf.size() + 10000);
}

TEST_F(Packer, TheArchiveNeverHoldsItself) {
    write(folder() + QStringLiteral("/plan.emf"), "emf");
    write(folder() + QStringLiteral("/Drawings.zip"), "an archive left from an earlier try");
    const QStringList entries = packFiles(archive(), pattern());
    EXPECT_EQ(entries, QStringList{QStringLiteral("plan.emf")});
    QByteArray listing;
    ASSERT_EQ(runTool(Unzip, {QStringLiteral("-Z1"), folder() + QStringLiteral("/Drawings.zip")}, &listing),
              0);
    EXPECT_EQ(listing.trimmed(), QByteArray("plan.emf"));
}

TEST_F(Packer, AnEmptyFolderGivesAnEmptyArchive) {
    EXPECT_TRUE(packFiles(archive(), pattern()).isEmpty());
    const QByteArray zip = readFile(folder() + QStringLiteral("/Drawings.zip"));
    ASSERT_EQ(zip.size(), 22);
    EXPECT_TRUE(zip.startsWith("PK\x05\x06"));
    QByteArray listing;
    // unzip calls an archive without entries empty, with its warning status 1.
    EXPECT_EQ(runTool(Unzip, {QStringLiteral("-l"), folder() + QStringLiteral("/Drawings.zip")}, &listing),
              1);
    EXPECT_TRUE(listing.contains("zipfile is empty")) << listing.constData();
}

TEST_F(Packer, ThePatternChoosesTheFilesWithoutRegardToCase) {
    write(folder() + QStringLiteral("/a.EMF"), "1");
    write(folder() + QStringLiteral("/b.emf"), "2");
    write(folder() + QStringLiteral("/c.wmf"), "3");
    EXPECT_EQ(packFiles(archive(), folder() + QStringLiteral("\\*.emf")),
              (QStringList{QStringLiteral("a.EMF"), QStringLiteral("b.emf")}));
}

TEST_F(Packer, AMissingFolderIsPathNotFound) {
    try {
        packFiles(dir.path() + QStringLiteral("/none\\Drawings.zip"),
                  dir.path() + QStringLiteral("/none\\*.*"));
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathNotFound);
    }
}

} // namespace
} // namespace tessaly::mail
