#include "MetafileTools.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/MetafilePlayer.h"
#include "metafile/RecordTypes.h"
#include "metafile/WmfWriter.h"

#include <QPainterPath>
#include <gtest/gtest.h>
#include <set>

using namespace tessaly;
using namespace tessaly::metafile;
using namespace tessaly::test;

namespace {

std::vector<WmfRecord> withFunction(const std::vector<WmfRecord>& all, uint16_t function) {
    std::vector<WmfRecord> out;
    for (const WmfRecord& r : all)
        if (r.function == function)
            out.push_back(r);
    return out;
}

bool createsObject(uint16_t function) {
    return function == meta::CreatePenIndirect || function == meta::CreateBrushIndirect ||
           function == meta::CreateFontIndirect || function == meta::DibCreatePatternBrush;
}

// Checks the header and the object table of a converted file, and that libwmf reads it.
void checkStructure(const QByteArray& wmf, const QString& name) {
    ASSERT_GE(wmf.size(), 18 + 6);
    EXPECT_EQ(u16(wmf, 0), 1);      // memory metafile
    EXPECT_EQ(u16(wmf, 2), 9);      // header words
    EXPECT_EQ(u16(wmf, 4), 0x0300); // version
    EXPECT_EQ(u32(wmf, 6), static_cast<uint32_t>(wmf.size() / 2));
    EXPECT_EQ(wmf.size() % 2, 0);
    const auto records = wmfRecords(wmf);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.back().function, meta::Eof);
    EXPECT_EQ(records.back().words, 3u);
    EXPECT_EQ(records.back().offset + 6, wmf.size());
    uint32_t largest = 0;
    for (const WmfRecord& r : records)
        largest = std::max(largest, r.words);
    EXPECT_EQ(u32(wmf, 12), largest);
    // The table: each object takes the lowest free index, nothing stock is
    // selected, and everything created is deleted.
    std::set<int> live;
    int tableSize = 0;
    for (const WmfRecord& r : records) {
        if (createsObject(r.function)) {
            int index = 0;
            while (live.count(index))
                ++index;
            live.insert(index);
            tableSize = std::max(tableSize, index + 1);
        } else if (r.function == meta::SelectObject) {
            EXPECT_TRUE(live.count(u16(wmf, r.offset + 6))) << "selects an object that is not in the table";
        } else if (r.function == meta::DeleteObject) {
            EXPECT_EQ(live.erase(u16(wmf, r.offset + 6)), 1u);
        }
    }
    EXPECT_TRUE(live.empty());
    EXPECT_EQ(u16(wmf, 10), tableSize);
    EXPECT_TRUE(wmfToSvg(wmf, name).contains("<svg")) << "libwmf failed on " << name.toStdString();
    addToCorpus(QStringLiteral("wmf"), name + QStringLiteral(".wmf"), wmf);
}

} // namespace

TEST(WmfConverter, HeaderMapModeAndWindowComeFromTheEmfBounds) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setPen(QPen(Qt::black, 1));
        p.drawRect(10, 20, 300, 200);
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("window"));
    const auto records = wmfRecords(wmf);
    ASSERT_GE(records.size(), 3u);
    EXPECT_EQ(records[0].function, meta::SetMapMode);
    EXPECT_EQ(u16(wmf, records[0].offset + 6), 8);
    EXPECT_EQ(records[1].function, meta::SetWindowOrg);
    EXPECT_EQ(i16(wmf, records[1].offset + 6), 20); // y first
    EXPECT_EQ(i16(wmf, records[1].offset + 8), 10);
    EXPECT_EQ(records[2].function, meta::SetWindowExt);
    EXPECT_EQ(i16(wmf, records[2].offset + 6), 201);
    EXPECT_EQ(i16(wmf, records[2].offset + 8), 301);
    const auto rects = withFunction(records, meta::Rectangle);
    ASSERT_EQ(rects.size(), 1u);
    EXPECT_EQ(i16(wmf, rects[0].offset + 6), 221); // bottom, right, top, left
    EXPECT_EQ(i16(wmf, rects[0].offset + 8), 311);
    EXPECT_EQ(i16(wmf, rects[0].offset + 10), 20);
    EXPECT_EQ(i16(wmf, rects[0].offset + 12), 10);
}

TEST(WmfConverter, PensBrushesAndFontsAreCreatedSelectedAndDeleted) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), [](QPainter& p) {
        paintShapes(p);
        p.setBrush(QBrush(Qt::red, Qt::BDiagPattern));
        p.drawRect(300, 10, 50, 50);
        p.setBrush(QBrush(Qt::blue, Qt::Dense5Pattern));
        p.setPen(Qt::NoPen);
        p.drawRect(300, 70, 50, 50);
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("objects"));
    const auto records = wmfRecords(wmf);
    const auto pens = withFunction(records, meta::CreatePenIndirect);
    ASSERT_FALSE(pens.empty());
    // The first pen: 4 units wide, flat caps and mitre joins, red 200.
    EXPECT_EQ(u16(wmf, pens[0].offset + 6), gdi::PsEndcapFlat | gdi::PsJoinMiter);
    EXPECT_EQ(i16(wmf, pens[0].offset + 8), 4);
    EXPECT_EQ(u32(wmf, pens[0].offset + 12), 200u);
    bool nullPen = false;
    for (const WmfRecord& r : pens)
        nullPen = nullPen || u16(wmf, r.offset + 6) == gdi::PsNull;
    EXPECT_TRUE(nullPen); // a null pen is created, not taken from stock
    bool hatch = false;
    for (const WmfRecord& r : withFunction(records, meta::CreateBrushIndirect))
        hatch = hatch ||
                (u16(wmf, r.offset + 6) == gdi::BsHatched && u16(wmf, r.offset + 12) == gdi::HsBDiagonal);
    EXPECT_TRUE(hatch);
    EXPECT_EQ(withFunction(records, meta::DibCreatePatternBrush).size(), 1u);
}

TEST(WmfConverter, BeziersAreFlattenedIntoPolygons) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), [](QPainter& p) {
        QPainterPath path;
        path.moveTo(10, 100);
        path.cubicTo(50, 0, 150, 200, 200, 100);
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
        p.setBrush(Qt::green);
        p.drawEllipse(QRectF(50, 150, 100, 60));
        p.rotate(10);
        p.drawEllipse(QRectF(200, 150, 100, 60));
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("beziers"));
    const auto records = wmfRecords(wmf);
    const auto lines = withFunction(records, meta::Polyline);
    ASSERT_EQ(lines.size(), 1u);
    const int16_t count = i16(wmf, lines[0].offset + 6);
    EXPECT_GT(count, 8); // many points along the curve
    EXPECT_EQ(i16(wmf, lines[0].offset + 8), 10);
    EXPECT_EQ(i16(wmf, lines[0].offset + 10), 100);
    EXPECT_EQ(i16(wmf, lines[0].offset + 8 + 4 * (count - 1)), 200);
    EXPECT_EQ(withFunction(records, meta::Ellipse).size(), 1u); // the upright one
    EXPECT_EQ(withFunction(records, meta::Polygon).size(), 1u); // the turned one
}

TEST(WmfConverter, TextIsEightBitInTheWesternCodePageWithAFont) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        QFont font(QStringLiteral("Liberation Serif"));
        font.setPixelSize(24);
        font.setItalic(true);
        p.setFont(font);
        p.setPen(QColor(0, 100, 0));
        p.drawText(QPointF(20, 50), QStringLiteral("Caf\u00e9 \u20ac5"));
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("text"));
    const auto records = wmfRecords(wmf);
    const auto fonts = withFunction(records, meta::CreateFontIndirect);
    ASSERT_EQ(fonts.size(), 1u);
    EXPECT_EQ(i16(wmf, fonts[0].offset + 6), -24);
    EXPECT_EQ(static_cast<uint8_t>(wmf[fonts[0].offset + 16]), 1); // italic
    EXPECT_EQ(wmf.mid(fonts[0].offset + 24, 17), QByteArray("Liberation Serif\0", 17));
    const auto texts = withFunction(records, meta::ExtTextOut);
    ASSERT_EQ(texts.size(), 1u);
    const qsizetype t = texts[0].offset;
    EXPECT_EQ(i16(wmf, t + 6), 50); // y, then x
    EXPECT_EQ(i16(wmf, t + 8), 20);
    EXPECT_EQ(i16(wmf, t + 10), 7);
    EXPECT_EQ(wmf.mid(t + 14, 7), QByteArray("Caf\xE9 \x80"
                                             "5"));
    const auto colours = withFunction(records, meta::SetTextColor);
    ASSERT_EQ(colours.size(), 1u);
    EXPECT_EQ(u32(wmf, colours[0].offset + 6), 0x00006400u);
    EXPECT_EQ(withFunction(records, meta::SetTextAlign).size(), 1u);
    const QByteArray svg = wmfToSvg(wmf, QStringLiteral("text-svg"));
    EXPECT_TRUE(svg.contains(">C</text>"));
    EXPECT_TRUE(svg.contains("font-style:italic"));
}

TEST(WmfConverter, ClipsBecomeSavedIntersectAndExcludeRectangles) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setPen(QPen(Qt::red, 2));
        p.setClipRect(QRect(10, 10, 100, 100));
        p.drawLine(0, 0, 200, 200);
        p.setPen(QPen(Qt::blue, 3));
        QRegion region = QRegion(0, 0, 200, 200) - QRegion(50, 50, 20, 20);
        p.setClipRegion(region);
        p.drawLine(0, 200, 200, 0);
        p.setClipping(false);
        p.drawLine(0, 100, 200, 100);
    });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("clips"));
    const auto records = wmfRecords(wmf);
    EXPECT_EQ(withFunction(records, meta::SaveDc).size(), withFunction(records, meta::RestoreDc).size());
    EXPECT_GE(withFunction(records, meta::SaveDc).size(), 2u);
    const auto intersect = withFunction(records, meta::IntersectClipRect);
    ASSERT_GE(intersect.size(), 2u);
    EXPECT_EQ(i16(wmf, intersect[0].offset + 6), 110);
    EXPECT_EQ(i16(wmf, intersect[0].offset + 12), 10);
    const auto exclude = withFunction(records, meta::ExcludeClipRect);
    ASSERT_EQ(exclude.size(), 1u);
    EXPECT_EQ(i16(wmf, exclude[0].offset + 6), 70);
    EXPECT_EQ(i16(wmf, exclude[0].offset + 12), 50);
}

TEST(WmfConverter, BitmapsBecomeStretchDib) {
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(QColor(10, 200, 30));
    const QByteArray emf =
        recordEmf(QSizeF(100, 100), [&](QPainter& p) { p.drawImage(QRectF(30, 40, 60, 30), image); });
    const QByteArray wmf = convertEmfToWmf(emf);
    checkStructure(wmf, QStringLiteral("bitmap"));
    const auto dibs = withFunction(wmfRecords(wmf), meta::StretchDib);
    ASSERT_EQ(dibs.size(), 1u);
    const qsizetype d = dibs[0].offset;
    EXPECT_EQ(u32(wmf, d + 6), gdi::SrcCopy);
    EXPECT_EQ(i16(wmf, d + 12), 10); // source height, width
    EXPECT_EQ(i16(wmf, d + 14), 20);
    EXPECT_EQ(i16(wmf, d + 20), 30); // destination height, width, y, x
    EXPECT_EQ(i16(wmf, d + 22), 60);
    EXPECT_EQ(i16(wmf, d + 24), 40);
    EXPECT_EQ(i16(wmf, d + 26), 30);
    EXPECT_EQ(u32(wmf, d + 28), 40u); // BITMAPINFOHEADER follows
}

TEST(WmfConverter, CoordinatesBeyond16BitsRaiseOverflowUnlessScaled) {
    const QByteArray emf = recordEmf(QSizeF(20000, 100), [](QPainter& p) {
        p.drawLine(0, 10, 40000, 10);
        p.drawRect(100, 20, 39000, 50);
    });
    try {
        convertEmfToWmf(emf);
        FAIL() << "no overflow";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 6);
    }
    const QByteArray scaled = convertEmfToWmf(emf, true);
    checkStructure(scaled, QStringLiteral("scaled"));
    const auto records = wmfRecords(scaled);
    EXPECT_LE(i16(scaled, records[2].offset + 8), 32767);
    EXPECT_GT(i16(scaled, records[2].offset + 8), 30000);
}

TEST(WmfConverter, DamagedSourceRaisesInvalidPicture) {
    QByteArray emf = recordEmf(QSizeF(100, 100), paintShapes);
    emf.truncate(emf.size() / 2);
    try {
        convertEmfToWmf(emf);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 481);
    }
}

TEST(WmfConverter, LibwmfRasterMatchesOurPlaybackOfTheSameWmf) {
    // libwmf's gd renderer leaves ellipses unfilled, so this drawing keeps to
    // rectangles, lines, polygons and curves.
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapesWithoutEllipse);
    const QByteArray wmf = convertEmfToWmf(emf);
    const auto records = wmfRecords(wmf);
    const QSize size(i16(wmf, records[2].offset + 8), i16(wmf, records[2].offset + 6));
    const QImage theirs = wmfToPng(wmf, QStringLiteral("raster"), size);
    ASSERT_FALSE(theirs.isNull());
    ASSERT_EQ(theirs.size(), size);
    QImage ours(size, QImage::Format_RGB32);
    ours.fill(Qt::white);
    {
        QPainter p(&ours);
        playWmf(p, wmf, QRectF(QPointF(0, 0), QSizeF(size)));
    }
    ours.save(scratchDir() + QStringLiteral("/raster-ours.png"));
    // Tolerance: a pixel matches when a pixel of the other picture within one
    // pixel of it has every channel within 40 of it (the two renderers place
    // edges and anti-alias differently); at most 1% may differ.
    const double share = mismatchShareNear(ours, theirs.convertToFormat(QImage::Format_RGB32), 40, 1);
    EXPECT_LT(share, 0.01) << "share of differing pixels " << share;
    // Not a match by accident: a blank picture differs far more.
    QImage blank(size, QImage::Format_RGB32);
    blank.fill(Qt::white);
    EXPECT_GT(mismatchShareNear(blank, theirs.convertToFormat(QImage::Format_RGB32), 40, 1), 0.2);
}
