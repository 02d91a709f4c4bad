#include "FakeUiPort.h"
#include "MetafileTools.h"

#include "core/runtime/Waiter.h"
#include "core/settings/SettingsStore.h"
#include "metafile/PrintMod.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::test;

namespace {

// The checksum of a header whose only varying fields are Inch, Right and Bottom.
uint16_t expectedChecksum(int inch, int right, int bottom) {
    return static_cast<uint16_t>(0x5711 ^ inch ^ right ^ bottom);
}

// An EMF whose bounds are 0,0 to width-1,height-1.
QByteArray emfWithBounds(int width, int height) {
    return recordEmf(QSizeF(width * 25.4 / 96, height * 25.4 / 96), [&](QPainter& p) {
        p.setPen(QPen(Qt::black, 1));
        p.drawRect(0, 0, width - 1, height - 1);
    });
}

class PrintModTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        settings = std::make_unique<SettingsStore>(dir.filePath(QStringLiteral("user.ini")));
        module = std::make_unique<PrintMod>(ui, waiter, *settings);
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    QString writeEmf(const QString& name, const QByteArray& emf) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(emf);
        return path(name);
    }

    QTemporaryDir dir;
    FakeUiPort ui;
    RecordingWaiter waiter;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<PrintMod> module;
};

} // namespace

TEST_F(PrintModTest, Inch96AndBounds1001By701GiveTheHeaderAndChecksum) {
    const QString source = writeEmf(QStringLiteral("plan.emf"), emfWithBounds(1001, 701));
    const QString target = path(QStringLiteral("plan.wmf"));
    module->ConvertEMFtoWMF(source, target);
    EXPECT_TRUE(ui.messages.empty());
    const QByteArray wmf = readFile(target);
    ASSERT_GE(wmf.size(), 22);
    EXPECT_EQ(u32(wmf, 0), 0x9AC6CDD7u);
    EXPECT_EQ(u16(wmf, 4), 0);
    EXPECT_EQ(i16(wmf, 6), 0);
    EXPECT_EQ(i16(wmf, 8), 0);
    EXPECT_EQ(i16(wmf, 10), 1001);
    EXPECT_EQ(i16(wmf, 12), 701);
    EXPECT_EQ(i16(wmf, 14), 96);
    EXPECT_EQ(u32(wmf, 16), 0u);
    EXPECT_EQ(u16(wmf, 20), expectedChecksum(96, 1001, 701));
    EXPECT_EQ(u16(wmf, 20), 0x5711 ^ 96 ^ 1001 ^ 701);
    EXPECT_EQ(module->AldusHeader.toBytes(), wmf.left(22));
    EXPECT_EQ(waiter.waits, (std::vector<int>{500, 300, 500}));
    EXPECT_TRUE(wmfToSvg(wmf, QStringLiteral("placeable-1001")).contains("<svg"));
    addToCorpus(QStringLiteral("wmf"), QStringLiteral("placeable.wmf"), wmf);
}

TEST_F(PrintModTest, OutputIsTheHeaderThenThePlainWmfThenTwoZeroBytes) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapes);
    const QString source = writeEmf(QStringLiteral("shapes.emf"), emf);
    const QString target = path(QStringLiteral("shapes.wmf"));
    module->ConvertEMFtoWMF(source, target);
    const QByteArray plain = metafile::convertEmfToWmf(emf, true);
    const QByteArray wmf = readFile(target);
    EXPECT_EQ(wmf.size(), plain.size() + 24);
    EXPECT_EQ(wmf.left(22), module->AldusHeader.toBytes());
    EXPECT_EQ(wmf.mid(22, plain.size()), plain);
    EXPECT_EQ(wmf.right(2), QByteArray(2, '\0'));
    // libwmf reads the placeable file.
    EXPECT_TRUE(wmfToSvg(wmf, QStringLiteral("placeable-shapes")).contains("<svg"));
}

TEST_F(PrintModTest, TargetIsReadThenDeletedThenRewrittenBetweenTheWaits) {
    const QString source = writeEmf(QStringLiteral("a.emf"), emfWithBounds(300, 200));
    const QString target = path(QStringLiteral("a.wmf"));
    std::vector<qint64> sizes;
    std::vector<bool> present;
    waiter.onSleep = [&](int) {
        present.push_back(QFileInfo::exists(target));
        sizes.push_back(QFileInfo(target).size());
    };
    module->ConvertEMFtoWMF(source, target);
    const QByteArray wmf = readFile(target);
    ASSERT_EQ(present.size(), 3u);
    EXPECT_TRUE(present[0]); // after the plain metafile was written
    EXPECT_EQ(sizes[0], wmf.size() - 24);
    EXPECT_TRUE(present[1]);  // after it was read back
    EXPECT_FALSE(present[2]); // after it was deleted
}

TEST_F(PrintModTest, BoundsBeyond16BitsReportTheErrorAndStillWriteWithTheLastValues) {
    const QString small = writeEmf(QStringLiteral("small.emf"), emfWithBounds(1001, 701));
    module->ConvertEMFtoWMF(small, path(QStringLiteral("small.wmf")));
    const AldusFileHeader before = module->AldusHeader;
    ASSERT_TRUE(ui.messages.empty());

    const QByteArray tallEmf = emfWithBounds(500, 40000);
    const QString tall = writeEmf(QStringLiteral("tall.emf"), tallEmf);
    const QString target = path(QStringLiteral("tall.wmf"));
    module->ConvertEMFtoWMF(tall, target);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(ui.messages[0].text,
              QStringLiteral("Error in SetAldusData Process @ Set ParimetersOverflow / 6\r\n0\r\n\r\n"));
    EXPECT_EQ(ui.messages[0].flags, 0);
    EXPECT_EQ(ui.messages[0].title, QStringLiteral("Tessaly"));
    EXPECT_EQ(ui.messages[1].text, QStringLiteral("WMF Not Created!"));
    EXPECT_EQ(ui.messages[1].flags, 16);
    EXPECT_EQ(ui.messages[1].title, QStringLiteral("Export To Metafile Failed..."));
    const QByteArray wmf = readFile(target);
    ASSERT_GT(wmf.size(), 22);
    // Bottom overflowed first, so neither it nor Right nor the checksum was refreshed.
    EXPECT_EQ(i16(wmf, 10), 1001);
    EXPECT_EQ(i16(wmf, 12), 701);
    EXPECT_EQ(u16(wmf, 20), before.Checksum);
    EXPECT_EQ(wmf.left(22), before.toBytes());
    EXPECT_EQ(wmf.size(), metafile::convertEmfToWmf(tallEmf, true).size() + 24);
    EXPECT_EQ(waiter.waits, (std::vector<int>{500, 300, 500, 500, 300, 500}));
    EXPECT_TRUE(wmfToSvg(wmf, QStringLiteral("tall")).contains("<svg"));
}

TEST_F(PrintModTest, WidthBeyond16BitsKeepsTheOldRightButRefreshesBottom) {
    module->ConvertEMFtoWMF(writeEmf(QStringLiteral("s.emf"), emfWithBounds(1001, 701)),
                            path(QStringLiteral("s.wmf")));
    const uint16_t oldChecksum = module->AldusHeader.Checksum;
    module->ConvertEMFtoWMF(writeEmf(QStringLiteral("w.emf"), emfWithBounds(40000, 300)),
                            path(QStringLiteral("w.wmf")));
    const QByteArray wmf = readFile(path(QStringLiteral("w.wmf")));
    EXPECT_EQ(i16(wmf, 12), 300);  // Bottom: refreshed before the overflow
    EXPECT_EQ(i16(wmf, 10), 1001); // Right: the last conversion's
    EXPECT_EQ(u16(wmf, 20), oldChecksum);
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_TRUE(ui.messages[0].text.startsWith(
        QStringLiteral("Error in SetAldusData Process @ Set ParimetersOverflow")));
}

TEST_F(PrintModTest, MissingSourceGivesTheTrapsMessageAndWritesNothing) {
    const QString target = path(QStringLiteral("none.wmf"));
    module->ConvertEMFtoWMF(path(QStringLiteral("none.emf")), target);
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              QStringLiteral("Error in ConvertEMFtoWMF Process- Subscript out of range / 9\r\n2"));
    EXPECT_EQ(ui.messages[0].flags, 0);
    EXPECT_EQ(ui.messages[0].title, QStringLiteral("Tessaly"));
    EXPECT_FALSE(QFileInfo::exists(target));
    EXPECT_TRUE(waiter.waits.empty());
}

TEST_F(PrintModTest, SourceThatIsNotAnEmfIsTreatedAsNoHandle) {
    const QString source = writeEmf(QStringLiteral("junk.emf"), QByteArray("not a metafile at all"));
    module->ConvertEMFtoWMF(source, path(QStringLiteral("junk.wmf")));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].text,
              QStringLiteral("Error in ConvertEMFtoWMF Process- Subscript out of range / 9\r\n0"));
    EXPECT_FALSE(QFileInfo::exists(path(QStringLiteral("junk.wmf"))));
}

TEST_F(PrintModTest, InchComesFromTheUserSetting) {
    settings->write(QStringLiteral("Data"), QStringLiteral("APM_Inch"), QStringLiteral("72"));
    module->ConvertEMFtoWMF(writeEmf(QStringLiteral("i.emf"), emfWithBounds(200, 100)),
                            path(QStringLiteral("i.wmf")));
    const QByteArray wmf = readFile(path(QStringLiteral("i.wmf")));
    EXPECT_EQ(i16(wmf, 14), 72);
    EXPECT_EQ(u16(wmf, 20), expectedChecksum(72, 200, 100));
}

TEST_F(PrintModTest, ANonNumericInchIsReportedWithTheFieldsOfTheLastConversion) {
    module->ConvertEMFtoWMF(writeEmf(QStringLiteral("a.emf"), emfWithBounds(1001, 701)),
                            path(QStringLiteral("a.wmf")));
    settings->write(QStringLiteral("Data"), QStringLiteral("APM_Inch"), QStringLiteral("wide"));
    module->ConvertEMFtoWMF(writeEmf(QStringLiteral("b.emf"), emfWithBounds(20, 10)),
                            path(QStringLiteral("b.wmf")));
    ASSERT_EQ(ui.messages.size(), 2u);
    EXPECT_EQ(
        ui.messages[0].text,
        QStringLiteral("Error in SetAldusData Process @ Set ParimetersType mismatch / 13\r\n0\r\n\r\n"));
    EXPECT_EQ(ui.messages[1].text, QStringLiteral("WMF Not Created!"));
}

TEST_F(PrintModTest, SetAldusDataFillsTheFieldsFromNegativeAndPositiveBounds) {
    module->EnhMetaHeader.rclBounds = QRect(QPoint(-10, -20), QPoint(100, 200));
    EXPECT_EQ(module->SetAldusData(), -1);
    EXPECT_EQ(module->AldusHeader.Right, 111);
    EXPECT_EQ(module->AldusHeader.Bottom, 221);
    EXPECT_EQ(module->AldusHeader.Inch, 96);
    EXPECT_EQ(module->AldusHeader.Checksum, expectedChecksum(96, 111, 221));
    module->EnhMetaHeader.rclBounds = QRect(QPoint(5, 7), QPoint(104, 56));
    EXPECT_EQ(module->SetAldusData(), -1);
    EXPECT_EQ(module->AldusHeader.Right, 100);
    EXPECT_EQ(module->AldusHeader.Bottom, 50);
}

TEST_F(PrintModTest, ChecksumIsTheXorOfTheTenWordsBeforeIt) {
    AldusFileHeader header;
    header.Reserved = 0x12345678;
    header.Handle = 0x0101;
    header.Left = 3;
    header.Top = 5;
    header.Right = 640;
    header.Bottom = 480;
    header.Inch = 1440;
    PrintMod::ComputeAldusChecksum(header);
    EXPECT_EQ(header.Key, 0x9AC6CDD7u);
    EXPECT_EQ(header.Checksum, 0x1234 ^ 0x5678 ^ 0x9AC6 ^ 0xCDD7 ^ 1440 ^ 480 ^ 640 ^ 5 ^ 3 ^ 0x0101);
    const QByteArray bytes = header.toBytes();
    ASSERT_EQ(bytes.size(), 22);
    uint16_t all = 0;
    for (int i = 0; i < 22; i += 2)
        all ^= u16(bytes, i);
    EXPECT_EQ(all, 0); // the ten words and their checksum cancel out
}

TEST_F(PrintModTest, PictureToEmfWritesTheBitmapWithMapModeFrameAndDescription) {
    PictureControlState control;
    control.image = QImage(40, 30, QImage::Format_RGB32);
    control.image.fill(QColor(250, 10, 20));
    control.Left = 100;
    control.Top = 50;
    control.pictureWidthHiMetric = 1058;
    control.pictureHeightHiMetric = 794;
    control.ScaleMode = 1;
    const QString out = path(QStringLiteral("plan Coloured.emf"));
    EXPECT_TRUE(module->PictureToEMF(control, out, 8, QStringLiteral("Tessaly EMF Output")));
    EXPECT_EQ(control.ScaleMode, 1);
    const QByteArray emf = readFile(out);
    ASSERT_GT(emf.size(), 108);
    EXPECT_EQ(i32(emf, 24), 100);
    EXPECT_EQ(i32(emf, 28), 50);
    EXPECT_EQ(i32(emf, 32), 1058);
    EXPECT_EQ(i32(emf, 36), 794);
    EXPECT_EQ(i32(emf, 16), 39); // bounds: the bitmap at 0,0
    EXPECT_EQ(i32(emf, 20), 29);
    QString description;
    for (uint32_t i = 0; i < u32(emf, 60); ++i)
        description.append(QChar(u16(emf, 108 + 2 * i)));
    EXPECT_EQ(description, QStringLiteral("Tessaly EMF Output\0\0"));
    const auto records = emfRecords(emf);
    bool mapMode = false;
    bool bitmap = false;
    for (const EmfRecord& r : records) {
        mapMode = mapMode || (r.type == metafile::emr::SetMapMode && u32(emf, r.offset + 8) == 8);
        if (r.type == metafile::emr::StretchDiBits) {
            bitmap = true;
            EXPECT_EQ(i32(emf, r.offset + 72), 40);
            EXPECT_EQ(i32(emf, r.offset + 76), 30);
        }
    }
    EXPECT_TRUE(mapMode);
    EXPECT_TRUE(bitmap);
    EXPECT_EQ(u32(emf, 48), static_cast<uint32_t>(emf.size()));
    EXPECT_TRUE(emfToSvg(emf, QStringLiteral("coloured")).contains("<image"));
    addToCorpus(QStringLiteral("emf"), QStringLiteral("coloured.emf"), emf);

    // The colour output's next step converts it.
    module->ConvertEMFtoWMF(out, path(QStringLiteral("plan Coloured.wmf")));
    EXPECT_TRUE(ui.messages.empty());
    const QByteArray wmf = readFile(path(QStringLiteral("plan Coloured.wmf")));
    EXPECT_EQ(i16(wmf, 10), 40);
    EXPECT_EQ(i16(wmf, 12), 30);
}

TEST_F(PrintModTest, PictureToEmfReportsAFailedClose) {
    PictureControlState control;
    control.image = QImage(4, 4, QImage::Format_RGB32);
    control.ScaleMode = 1;
    EXPECT_FALSE(
        module->PictureToEMF(control, path(QStringLiteral("no-folder/x.emf")), 8, QStringLiteral("T")));
    EXPECT_EQ(control.ScaleMode, 1);
}
