#include "MetafileTools.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/ByteWriter.h"
#include "metafile/EmfParser.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/Picture.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfParser.h"
#include "metafile/WmfWriter.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <random>

using namespace tessaly;
using namespace tessaly::metafile;
using namespace tessaly::test;

namespace {

// Mutants made of each seed file, and the cut lengths tried.
constexpr int MutantsPerSeed = 120;
constexpr int Cuts = 24;
// A fixed seed: the same mutants every run.
constexpr unsigned MutationSeed = 20240611;

// Runs the bytes through every reader; only 481 (and 6 from the converter)
// may come out. Returns the number of errors seen.
int replay(const QByteArray& bytes) {
    int errors = 0;
    auto guarded = [&](const std::function<void()>& step) {
        try {
            step();
        } catch (const RuntimeError& e) {
            EXPECT_TRUE(e.number() == 481 || e.number() == 6) << "error " << e.number();
            ++errors;
        }
    };
    guarded([&] { Picture::fromData(bytes).toImage(QSize(24, 24)); });
    QImage image(24, 24, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    if (looksLikeEmf(bytes)) {
        guarded([&] { playEmf(painter, bytes, QRectF(0, 0, 24, 24)); });
        guarded([&] { convertEmfToWmf(bytes, false); });
        guarded([&] { convertEmfToWmf(bytes, true); });
    }
    if (looksLikeWmf(bytes))
        guarded([&] { playWmf(painter, bytes, QRectF(0, 0, 24, 24)); });
    return errors;
}

std::vector<QByteArray> seeds() {
    std::vector<QByteArray> all;
    const QByteArray emf = recordEmf(QSizeF(110, 110), [](QPainter& p) {
        paintShapes(p);
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPixelSize(18);
        p.setFont(font);
        p.drawText(QPointF(30, 300), QStringLiteral("Kitchen"));
        p.setClipRect(QRect(0, 0, 200, 200));
        p.setBrush(QBrush(Qt::blue, Qt::Dense3Pattern));
        p.drawRect(10, 10, 50, 50);
        QImage image(6, 4, QImage::Format_RGB32);
        image.fill(Qt::green);
        p.drawImage(QRectF(100, 100, 30, 20), image);
    });
    all.push_back(emf);
    const QByteArray wmf = convertEmfToWmf(emf);
    all.push_back(wmf);
    QByteArray placeable;
    ByteWriter w(placeable);
    w.u32(PlaceableKey);
    w.u16(0);
    for (int v : {0, 0, 367, 367, 96})
        w.i16(static_cast<int16_t>(v));
    w.u32(0);
    w.u16(0);
    all.push_back(placeable + wmf + QByteArray(2, '\0'));
    for (const char* format : {"BMP", "PNG"}) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(&buffer, format);
        all.push_back(bytes);
    }
    return all;
}

QByteArray mutate(const QByteArray& seed, std::mt19937& random) {
    QByteArray m = seed;
    if (m.size() < 8)
        return m;
    std::uniform_int_distribution<int> kind(0, 2);
    std::uniform_int_distribution<qsizetype> at(0, m.size() - 4);
    const int changes = 1 + static_cast<int>(random() % 4);
    for (int i = 0; i < changes; ++i) {
        const qsizetype offset = at(random) & ~qsizetype(3);
        switch (kind(random)) {
        case 0:
            m[offset] = static_cast<char>(random());
            break;
        case 1: { // an extreme 32-bit value over a field
            static const uint32_t extremes[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 0u, 0x00010000u};
            const uint32_t v = extremes[random() % 5];
            for (int b = 0; b < 4; ++b)
                m[offset + b] = static_cast<char>((v >> (8 * b)) & 0xFF);
            break;
        }
        default: // an extreme 16-bit value
            m[offset] = static_cast<char>(0xFF);
            m[offset + 1] = static_cast<char>(random() % 2 ? 0x7F : 0xFF);
            break;
        }
    }
    return m;
}

} // namespace

TEST(CorpusReplay, FilesThatOnceCrashedAreReadSafely) {
    const QDir dir(QStringLiteral(TESSALY_METAFILE_REGRESSIONS));
    const QStringList files = dir.entryList(QDir::Files);
    ASSERT_FALSE(files.isEmpty());
    for (const QString& name : files) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        SCOPED_TRACE(name.toStdString());
        replay(file.readAll());
    }
}

TEST(CorpusReplay, TruncatedAndMutatedFilesRaise481OrReadCleanly) {
    std::mt19937 random(MutationSeed);
    int errors = 0;
    int runs = 0;
    for (const QByteArray& seed : seeds()) {
        EXPECT_EQ(replay(seed), 0) << "the unchanged seed must read";
        for (int c = 1; c <= Cuts; ++c) {
            errors += replay(seed.left(seed.size() * c / (Cuts + 1)));
            ++runs;
        }
        for (int i = 0; i < MutantsPerSeed; ++i) {
            errors += replay(mutate(seed, random));
            ++runs;
        }
    }
    // The damage is seen: most cut files are refused.
    EXPECT_GT(errors, runs / 4);
}
