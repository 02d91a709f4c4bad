#include "MetafileTools.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/ByteWriter.h"
#include "metafile/EmfParser.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfWriter.h"

#include <QRegularExpression>
#include <QSvgRenderer>
#include <gtest/gtest.h>

using namespace tessaly;
using namespace tessaly::metafile;
using namespace tessaly::test;

namespace {

QImage blankImage(const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QImage playedEmf(const QByteArray& emf, const QSize& size) {
    QImage image = blankImage(size);
    QPainter painter(&image);
    playEmf(painter, emf, QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

int expectError(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

// Builds enhanced metafiles record by record, as other programs write them.
class EmfBuilder {
public:
    EmfBuilder() : w_(body_) {}
    void record(uint32_t type, std::initializer_list<int32_t> values) {
        w_.u32(type);
        w_.u32(static_cast<uint32_t>(8 + 4 * values.size()));
        for (int32_t v : values)
            w_.i32(v);
        ++records_;
    }
    QByteArray finish(QRect bounds, QRect frame) {
        record(emr::Eof, {0, 16, 20});
        QByteArray out;
        ByteWriter h(out);
        h.u32(emr::Header);
        h.u32(88);
        for (int v : {bounds.left(), bounds.top(), bounds.right(), bounds.bottom(), frame.left(), frame.top(),
                      frame.right(), frame.bottom()})
            h.i32(v);
        h.u32(EmfSignature);
        h.u32(0x10000);
        h.u32(static_cast<uint32_t>(88 + body_.size()));
        h.u32(records_ + 1);
        h.u16(3); // handles: index 0 and the two brushes
        h.u16(0);
        h.u32(0);
        h.u32(0);
        h.u32(0);
        h.i32(1000);
        h.i32(1000);
        h.i32(250);
        h.i32(250);
        return out + body_;
    }

private:
    QByteArray body_;
    ByteWriter w_;
    uint32_t records_ = 0;
};

} // namespace

TEST(Playback, OurEmfPlaysBackLikeTheDirectPainting) {
    const QSize size(416, 416); // 110 mm at 96 dpi
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapes);
    QImage direct = blankImage(size);
    {
        QPainter p(&direct);
        paintShapes(p);
    }
    const QImage played = playedEmf(emf, size);
    // Tolerance: every channel within 40, allowing one pixel of displacement
    // (device coordinates are whole units); at most 0.5% of pixels may differ.
    const double share = mismatchShareNear(played, direct, 40, 1);
    EXPECT_LT(share, 0.005) << share;
    EXPECT_GT(mismatchShareNear(blankImage(size), direct, 40, 1), 0.2);
}

TEST(Playback, Emf2SvgRasterMatchesOurPlayback) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapes);
    const QByteArray svg = emfToSvg(emf, QStringLiteral("compare"));
    ASSERT_TRUE(svg.contains("<svg"));
    // emf2svg sizes the drawing by its bounds and moves it to the corner.
    const QRegularExpression sizeRe(QStringLiteral("width=\"([0-9.]+)\" height=\"([0-9.]+)\""));
    const QRegularExpression moveRe(QStringLiteral("translate\\(([-0-9.]+), ([-0-9.]+)\\)"));
    const auto sizeMatch = sizeRe.match(QString::fromUtf8(svg));
    const auto moveMatch = moveRe.match(QString::fromUtf8(svg));
    ASSERT_TRUE(sizeMatch.hasMatch());
    ASSERT_TRUE(moveMatch.hasMatch());
    const QSize size(qRound(sizeMatch.captured(1).toDouble()), qRound(sizeMatch.captured(2).toDouble()));
    const QPointF move(moveMatch.captured(1).toDouble(), moveMatch.captured(2).toDouble());
    QImage theirs = blankImage(size);
    {
        QPainter p(&theirs);
        QSvgRenderer renderer(svg);
        ASSERT_TRUE(renderer.isValid());
        renderer.render(&p, QRectF(QPointF(0, 0), QSizeF(size)));
    }
    QImage ours = blankImage(size);
    {
        QPainter p(&ours);
        p.translate(move);
        playEmf(p, emf, readEmfHeader(emf).frameInDevice());
    }
    ours.save(scratchDir() + QStringLiteral("/svg-ours.png"));
    theirs.save(scratchDir() + QStringLiteral("/svg-theirs.png"));
    // Tolerance: every channel within 48 (the SVG is drawn anti-aliased),
    // allowing one pixel of displacement; at most 1.5% of pixels may differ.
    const double share = mismatchShareNear(ours, theirs, 48, 1);
    EXPECT_LT(share, 0.015) << share;
    EXPECT_GT(mismatchShareNear(blankImage(size), theirs, 48, 1), 0.2);
}

TEST(Playback, RecordsOfOtherProgramsMapModesSavedStatesAndWorldTransforms) {
    EmfBuilder b;
    b.record(emr::SetMapMode, {static_cast<int32_t>(gdi::MmAnisotropic)});
    b.record(emr::SetWindowExtEx, {1000, 1000});
    b.record(emr::SetViewportExtEx, {100, 100});
    b.record(emr::CreateBrushIndirect, {1, static_cast<int32_t>(gdi::BsSolid), 0x0000FF, 0}); // red
    b.record(emr::SelectObject, {1});
    b.record(emr::SelectObject, {static_cast<int32_t>(gdi::StockFlag | gdi::NullPen)});
    b.record(emr::SaveDc, {});
    b.record(emr::CreateBrushIndirect, {2, static_cast<int32_t>(gdi::BsSolid), 0xFF0000, 0}); // blue
    b.record(emr::SelectObject, {2});
    b.record(emr::Rectangle, {0, 0, 400, 400}); // blue: 0..40 on the device
    b.record(emr::RestoreDc, {-1});
    b.record(emr::Rectangle, {500, 0, 900, 400}); // red again after the restore
    b.record(emr::ModifyWorldTransform, {0, 0, 0, 0, 0, 0, static_cast<int32_t>(gdi::MwtIdentity)});
    const QByteArray emf =
        b.finish(QRect(QPoint(0, 0), QPoint(99, 99)), QRect(QPoint(0, 0), QPoint(2540, 2540)));
    addToCorpus(QStringLiteral("emf"), QStringLiteral("foreign.emf"), emf);
    EXPECT_TRUE(emfToSvg(emf, QStringLiteral("foreign")).contains("<svg"));
    // The frame is 25.4 mm at 4 units a millimetre: 101.6 device units.
    const QImage image = playedEmf(emf, QSize(102, 102));
    EXPECT_EQ(image.pixelColor(20, 20), QColor(0, 0, 255));
    EXPECT_EQ(image.pixelColor(70, 20), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(20, 70), QColor(255, 255, 255));
    // The same file converts, with the anisotropic mapping applied.
    const QByteArray wmf = convertEmfToWmf(emf);
    EXPECT_TRUE(wmfToSvg(wmf, QStringLiteral("foreign")).contains("<svg"));
}

TEST(Playback, PlaceableWmfFillsTheTarget) {
    const QByteArray emf = recordEmf(QSizeF(50, 50), [](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 160, 0));
        p.drawRect(0, 0, 100, 50);
    });
    QByteArray placeable;
    ByteWriter w(placeable);
    w.u32(PlaceableKey);
    w.u16(0);
    for (int v : {0, 0, 100, 50, 96})
        w.i16(static_cast<int16_t>(v));
    w.u32(0);
    w.u16(0);
    placeable += convertEmfToWmf(emf) + QByteArray(2, '\0');
    EXPECT_TRUE(wmfToSvg(placeable, QStringLiteral("playback-placeable")).contains("<svg"));
    QImage image = blankImage(QSize(200, 100));
    {
        QPainter p(&image);
        playWmf(p, placeable, QRectF(0, 0, 200, 100));
    }
    EXPECT_EQ(image.pixelColor(5, 5), QColor(0, 160, 0));
    EXPECT_EQ(image.pixelColor(195, 95), QColor(0, 160, 0));
}

TEST(Playback, TextIsDrawnInItsColour) {
    const QByteArray emf = recordEmf(QSizeF(60, 20), [](QPainter& p) {
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPixelSize(30);
        p.setFont(font);
        p.setPen(QColor(0, 0, 200));
        p.drawText(QPointF(10, 40), QStringLiteral("HHHH"));
    });
    const QSize size(227, 76);
    const QImage image = playedEmf(emf, size);
    int blue = 0;
    for (int y = 10; y < 40; ++y)
        for (int x = 10; x < 80; ++x)
            blue += image.pixelColor(x, y).blue() > 150 && image.pixelColor(x, y).red() < 100 ? 1 : 0;
    EXPECT_GT(blue, 150);
    // Also after conversion to WMF.
    QImage fromWmf = blankImage(size);
    {
        QPainter p(&fromWmf);
        playWmf(p, convertEmfToWmf(emf), QRectF(readEmfHeader(emf).bounds));
    }
    EXPECT_GT(mismatchShareNear(fromWmf, blankImage(size), 40, 0), 0.01);
}

TEST(Playback, DamagedFilesRaiseInvalidPictureAndNeverReadBeyondThem) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapes);
    QImage image = blankImage(QSize(50, 50));
    QPainter painter(&image);
    // Cut short.
    EXPECT_EQ(expectError([&] { playEmf(painter, emf.left(emf.size() - 30), QRectF(0, 0, 50, 50)); }), 481);
    EXPECT_EQ(expectError([&] { playEmf(painter, emf.left(60), QRectF(0, 0, 50, 50)); }), 481);
    // A record size that is not a multiple of four.
    QByteArray odd = emf;
    const auto records = emfRecords(emf);
    odd[records[3].offset + 4] = static_cast<char>(odd[records[3].offset + 4] + 1);
    EXPECT_EQ(expectError([&] { playEmf(painter, odd, QRectF(0, 0, 50, 50)); }), 481);
    // A point count far beyond the record.
    QByteArray many = emf;
    for (const EmfRecord& r : records)
        if (r.type == emr::Polygon16)
            many[r.offset + 24 + 3] = static_cast<char>(0x7F);
    EXPECT_EQ(expectError([&] { playEmf(painter, many, QRectF(0, 0, 50, 50)); }), 481);
    EXPECT_EQ(expectError([&] { checkEmfRecords(many); }), 0); // the record sizes themselves are sound
    // WMF: a record of size zero, and a file without META_EOF.
    QByteArray wmf = convertEmfToWmf(emf);
    QByteArray zero = wmf;
    const auto wrecords = wmfRecords(wmf);
    zero[wrecords[4].offset] = 0;
    zero[wrecords[4].offset + 1] = 0;
    EXPECT_EQ(expectError([&] { playWmf(painter, zero, QRectF(0, 0, 50, 50)); }), 481);
    EXPECT_EQ(expectError([&] { playWmf(painter, wmf.left(wmf.size() - 6), QRectF(0, 0, 50, 50)); }), 481);
    EXPECT_EQ(expectError([&] { playWmf(painter, QByteArray(10, 'x'), QRectF(0, 0, 50, 50)); }), 481);
}

TEST(Playback, ConvertedWmfPlaysLikeItsEmf) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), [](QPainter& p) {
        paintShapes(p);
        p.setPen(QPen(Qt::darkGray, 2, Qt::DashLine));
        p.setBrush(QBrush(Qt::blue, Qt::CrossPattern));
        p.drawRect(300, 10, 80, 60);
        p.setClipRect(QRect(0, 0, 100, 416));
        p.setPen(QPen(Qt::red, 8));
        p.drawLine(0, 240, 400, 240);
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    const QRect bounds = readEmfHeader(emf).bounds;
    const QSize size = bounds.size();
    QImage fromEmf = blankImage(size);
    {
        QPainter p(&fromEmf);
        p.translate(-bounds.topLeft());
        playEmf(p, emf, readEmfHeader(emf).frameInDevice());
    }
    QImage fromWmf = blankImage(size);
    {
        QPainter p(&fromWmf);
        playWmf(p, wmf, QRectF(QPointF(0, 0), QSizeF(size)));
    }
    // Tolerance: every channel within 40, one pixel of displacement (curves
    // become line segments); at most 1% of pixels may differ.
    const double share = mismatchShareNear(fromEmf, fromWmf, 40, 1);
    EXPECT_LT(share, 0.01) << share;
    // The clip holds in both: nothing red right of it.
    EXPECT_NE(fromWmf.pixelColor(50 - bounds.left(), 240 - bounds.top()), QColor(Qt::white));
    EXPECT_NE(fromWmf.pixelColor(200 - bounds.left(), 240 - bounds.top()), QColor(Qt::red));
}
