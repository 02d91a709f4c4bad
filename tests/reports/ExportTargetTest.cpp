// The export target: what it refuses with run-time error 7001 before writing
// anything, and the atomic write that never leaves half a file.
#include "reports/ExportTarget.h"

#include "MetafileTools.h"
#include "TestErrors.h"
#include "core/runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace tessaly;
using tessaly::db::test::errorOf;
using tessaly::reports::ExportTarget;
using tessaly::test::readFile;

namespace {

constexpr QFileDevice::Permissions ReadOnly =
    QFileDevice::ReadOwner | QFileDevice::ReadUser | QFileDevice::ReadGroup | QFileDevice::ReadOther;
const QByteArray OldBytes = "the old file";

class ExportTargetTest : public ::testing::Test {
protected:
    QTemporaryDir dir;

    QString path(const QString& name) const { return dir.filePath(name); }
    void writeOld(const QString& file) const {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(OldBytes);
    }
    // Every file of the folder: no scratch file may be left behind.
    QStringList files() const { return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden); }
    static void write(ExportTarget& target, const QByteArray& bytes) {
        target.write([&](QIODevice& out) { out.write(bytes); });
    }
};

} // namespace

TEST_F(ExportTargetTest, WritesANewFile) {
    ExportTarget target(path(QStringLiteral("plan.pdf")));
    write(target, "new");
    EXPECT_EQ(readFile(path(QStringLiteral("plan.pdf"))), QByteArray("new"));
    EXPECT_EQ(files(), QStringList{QStringLiteral("plan.pdf")});
}

TEST_F(ExportTargetTest, ReplacesAnOldFileWhole) {
    writeOld(path(QStringLiteral("plan.pdf")));
    ExportTarget target(path(QStringLiteral("plan.pdf")));
    write(target, "new");
    EXPECT_EQ(readFile(path(QStringLiteral("plan.pdf"))), QByteArray("new"));
}

TEST_F(ExportTargetTest, PathsWithBlanksAndLettersBeyondAscii) {
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("Plans für Zoë")));
    const QString file = path(QStringLiteral("Plans für Zoë/Ground floor ÆØÅ.pdf"));
    ExportTarget target(file);
    write(target, "new");
    EXPECT_EQ(readFile(file), QByteArray("new"));
}

TEST_F(ExportTargetTest, AMissingFolderIsRefused) {
    const RuntimeError e = errorOf([&] { ExportTarget{path(QStringLiteral("gone/plan.pdf"))}; });
    EXPECT_EQ(e.number(), err::PdfInUse);
    EXPECT_TRUE(e.description().contains(QStringLiteral("does not exist"))) << e.description().toStdString();
    EXPECT_TRUE(e.description().contains(QStringLiteral("plan.pdf")));
}

TEST_F(ExportTargetTest, AReadOnlyFileIsRefusedAndKept) {
    const QString file = path(QStringLiteral("plan.pdf"));
    writeOld(file);
    ASSERT_TRUE(QFile::setPermissions(file, ReadOnly));
    const RuntimeError e = errorOf([&] { ExportTarget{file}; });
    EXPECT_EQ(e.number(), err::PdfInUse);
    EXPECT_TRUE(e.description().contains(QStringLiteral("read-only")));
    EXPECT_EQ(readFile(file), OldBytes);
}

TEST_F(ExportTargetTest, AFolderWithoutWritePermissionIsRefused) {
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("locked")));
    const QString folder = path(QStringLiteral("locked"));
    ASSERT_TRUE(QFile::setPermissions(folder, ReadOnly | QFileDevice::ExeOwner | QFileDevice::ExeUser));
    const RuntimeError e = errorOf([&] { ExportTarget{folder + QStringLiteral("/plan.pdf")}; });
    QFile::setPermissions(folder, ReadOnly | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(e.number(), err::PdfInUse);
    EXPECT_TRUE(e.description().contains(QStringLiteral("cannot be written")));
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("/plan.pdf")));
}

TEST_F(ExportTargetTest, AFileHeldByAnotherProgramIsRefusedAndKept) {
    const QString file = path(QStringLiteral("plan.pdf"));
    writeOld(file);
    // A viewer holding the file: a lock on its own open file.
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_SH), 0);
    const RuntimeError e = errorOf([&] { ExportTarget{file}; });
    ::close(fd);
    EXPECT_EQ(e.number(), err::PdfInUse);
    EXPECT_TRUE(e.description().contains(QStringLiteral("in use")));
    EXPECT_EQ(readFile(file), OldBytes);
    // Once the viewer lets go, the file can be written.
    ExportTarget target(file);
    write(target, "new");
    EXPECT_EQ(readFile(file), QByteArray("new"));
}

TEST_F(ExportTargetTest, AFolderOfTheSameNameIsRefused) {
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("plan.pdf")));
    EXPECT_EQ(errorOf([&] { ExportTarget{path(QStringLiteral("plan.pdf"))}; }).number(), err::PdfInUse);
}

TEST_F(ExportTargetTest, AnEmptyNameIsRefused) {
    EXPECT_EQ(errorOf([&] { ExportTarget{QString()}; }).number(), err::PdfInUse);
}

TEST_F(ExportTargetTest, AFullDiskLeavesTheOldFileAndNoScratch) {
    const QString file = path(QStringLiteral("plan.pdf"));
    writeOld(file);
    ExportTarget target(file);
    // The disk fills up after 64 KiB: the process may write no more.
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 64 * 1024;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const RuntimeError e = errorOf([&] { write(target, QByteArray(1024 * 1024, 'x')); });
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(e.number(), err::PdfInUse);
    EXPECT_EQ(readFile(file), OldBytes);
    EXPECT_EQ(files(), QStringList{QStringLiteral("plan.pdf")});
}

TEST_F(ExportTargetTest, AFailureWhileProducingLeavesTheOldFile) {
    const QString file = path(QStringLiteral("plan.pdf"));
    writeOld(file);
    ExportTarget target(file);
    const RuntimeError e = errorOf([&] {
        target.write([](QIODevice& out) {
            out.write("half");
            raiseError(err::InvalidPicture);
        });
    });
    EXPECT_EQ(e.number(), err::InvalidPicture);
    EXPECT_EQ(readFile(file), OldBytes);
    EXPECT_EQ(files(), QStringList{QStringLiteral("plan.pdf")});
}
