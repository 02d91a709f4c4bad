#include "MetafileTools.h"

#include "core/runtime/RuntimeError.h"
#include "metafile/EmfPaintDevice.h"
#include "metafile/RecordTypes.h"

#include <QFile>
#include <QPainterPath>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace tessaly;
using namespace tessaly::metafile;
using namespace tessaly::test;

namespace {

// Offsets of ENHMETAHEADER fields.
constexpr qsizetype BoundsAt = 8;
constexpr qsizetype FrameAt = 24;
constexpr qsizetype SignatureAt = 40;
constexpr qsizetype VersionAt = 44;
constexpr qsizetype BytesAt = 48;
constexpr qsizetype RecordsAt = 52;
constexpr qsizetype HandlesAt = 56;
constexpr qsizetype DescriptionCharsAt = 60;
constexpr qsizetype DescriptionOffsetAt = 64;
constexpr qsizetype DeviceAt = 72;
constexpr qsizetype MillimetresAt = 80;
constexpr qsizetype MicrometresAt = 100;

QString description(const QByteArray& emf) {
    const uint32_t chars = u32(emf, DescriptionCharsAt);
    const uint32_t at = u32(emf, DescriptionOffsetAt);
    QString text;
    for (uint32_t i = 0; i < chars; ++i)
        text.append(QChar(u16(emf, at + 2 * i)));
    return text;
}

std::vector<EmfRecord> ofType(const std::vector<EmfRecord>& all, uint32_t type) {
    std::vector<EmfRecord> out;
    for (const EmfRecord& r : all)
        if (r.type == type)
            out.push_back(r);
    return out;
}

// Checks what every file of the writer must hold, and that libemf2svg reads it.
void checkStructure(const QByteArray& emf, const QString& name) {
    ASSERT_GE(emf.size(), 108 + 20);
    EXPECT_EQ(u32(emf, 0), emr::Header);
    EXPECT_EQ(u32(emf, SignatureAt), 0x464D4520u);
    EXPECT_EQ(u32(emf, VersionAt), 0x00010000u);
    EXPECT_EQ(u32(emf, BytesAt), static_cast<uint32_t>(emf.size()));
    const uint32_t headerSize = u32(emf, 4);
    EXPECT_GE(headerSize, 108u);
    EXPECT_EQ(u32(emf, DescriptionOffsetAt), 108u);
    EXPECT_LE(108 + 2 * u32(emf, DescriptionCharsAt), headerSize);
    const auto records = emfRecords(emf);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(u32(emf, RecordsAt), static_cast<uint32_t>(records.size()));
    for (const EmfRecord& r : records)
        EXPECT_EQ(r.size % 4, 0u) << "record type " << r.type;
    EXPECT_EQ(records.back().type, emr::Eof);
    EXPECT_EQ(records.back().size, 20u);
    EXPECT_EQ(records.back().offset + 20, emf.size());
    // Frame never empty; the reference device consistent with its millimetres.
    EXPECT_GT(i32(emf, FrameAt + 8), i32(emf, FrameAt));
    EXPECT_GT(i32(emf, FrameAt + 12), i32(emf, FrameAt + 4));
    const int deviceW = i32(emf, DeviceAt);
    const int mmW = i32(emf, MillimetresAt);
    EXPECT_GT(deviceW, 0);
    EXPECT_EQ(i32(emf, MicrometresAt), mmW * 1000);
    // Object indexes: 0 never used, nHandles one past the highest.
    uint32_t highest = 0;
    std::set<uint32_t> live;
    for (const EmfRecord& r : records) {
        if (r.type == emr::ExtCreatePen || r.type == emr::CreateBrushIndirect ||
            r.type == emr::CreateDibPatternBrushPt || r.type == emr::ExtCreateFontIndirectW) {
            const uint32_t index = u32(emf, r.offset + 8);
            EXPECT_NE(index, 0u);
            EXPECT_FALSE(live.count(index)) << "index reused while alive";
            live.insert(index);
            highest = std::max(highest, index);
        } else if (r.type == emr::DeleteObject) {
            EXPECT_EQ(live.erase(u32(emf, r.offset + 8)), 1u);
        } else if (r.type == emr::SelectObject) {
            const uint32_t index = u32(emf, r.offset + 8);
            EXPECT_TRUE((index & 0x80000000u) || live.count(index))
                << "selects an object that does not exist";
        }
    }
    EXPECT_TRUE(live.empty()) << "objects left allocated at the end";
    EXPECT_EQ(u16(emf, HandlesAt), highest + 1);
    // libemf2svg reads the file and draws it.
    const QByteArray svg = emfToSvg(emf, name);
    EXPECT_TRUE(svg.contains("<svg")) << "emf2svg-conv failed on " << name.toStdString();
    addToCorpus(QStringLiteral("emf"), name + QStringLiteral(".emf"), emf);
}

} // namespace

TEST(EmfWriter, HeaderHoldsBoundsFrameCountsAndDescription) {
    const QByteArray emf = recordEmf(QSizeF(297, 210), [](QPainter& p) {
        p.setPen(QPen(Qt::black, 1));
        p.drawRect(0, 0, 1000, 700);
    });
    checkStructure(emf, QStringLiteral("header"));
    EXPECT_EQ(i32(emf, BoundsAt), 0);
    EXPECT_EQ(i32(emf, BoundsAt + 4), 0);
    EXPECT_EQ(i32(emf, BoundsAt + 8), 1000);
    EXPECT_EQ(i32(emf, BoundsAt + 12), 700);
    EXPECT_EQ(i32(emf, FrameAt), 0);
    EXPECT_EQ(i32(emf, FrameAt + 8), 29700);
    EXPECT_EQ(i32(emf, FrameAt + 12), 21000);
    // Three 127 mm steps hold 297 mm: 381 mm and 15 inches at 96 dpi.
    EXPECT_EQ(i32(emf, MillimetresAt), 381);
    EXPECT_EQ(i32(emf, DeviceAt), 1440);
    EXPECT_EQ(description(emf), QStringLiteral("Tessaly\0Drawing\0\0"));
    const auto records = emfRecords(emf);
    EXPECT_EQ(ofType(records, emr::Rectangle).size(), 1u);
    const EmfRecord rect = ofType(records, emr::Rectangle).front();
    // GDI leaves out the right and bottom edge of the box.
    EXPECT_EQ(i32(emf, rect.offset + 8), 0);
    EXPECT_EQ(i32(emf, rect.offset + 16), 1001);
    EXPECT_EQ(i32(emf, rect.offset + 20), 701);
}

TEST(EmfWriter, EmptyPictureHasEmptyBoundsAndAFrame) {
    const QByteArray emf = recordEmf(QSizeF(0, 0), [](QPainter&) {});
    checkStructure(emf, QStringLiteral("empty"));
    EXPECT_EQ(i32(emf, BoundsAt), 0);
    EXPECT_EQ(i32(emf, BoundsAt + 8), -1);
    EXPECT_EQ(i32(emf, BoundsAt + 12), -1);
    EXPECT_EQ(i32(emf, FrameAt + 8), 1);
    EXPECT_EQ(i32(emf, FrameAt + 12), 1);
    EXPECT_EQ(u16(emf, HandlesAt), 1);
}

TEST(EmfWriter, PenRecordsCarryWidthColourDashCapsAndJoins) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setPen(QPen(QColor(10, 20, 30), 5, Qt::DashLine, Qt::RoundCap, Qt::BevelJoin));
        p.drawLine(10, 10, 200, 10);
        QPen custom(QColor(255, 0, 0), 2, Qt::CustomDashLine, Qt::FlatCap, Qt::MiterJoin);
        custom.setDashPattern({4, 2});
        p.setPen(custom);
        p.drawLine(10, 50, 200, 50);
    });
    checkStructure(emf, QStringLiteral("pens"));
    const auto pens = ofType(emfRecords(emf), emr::ExtCreatePen);
    ASSERT_EQ(pens.size(), 2u);
    const qsizetype a = pens[0].offset;
    EXPECT_EQ(u32(emf, a + 28), gdi::PsGeometric | gdi::PsDash | gdi::PsEndcapRound | gdi::PsJoinBevel);
    EXPECT_EQ(u32(emf, a + 32), 5u);
    EXPECT_EQ(u32(emf, a + 40), 0x001E140Au);
    const qsizetype b = pens[1].offset;
    EXPECT_EQ(u32(emf, b + 28), gdi::PsGeometric | gdi::PsUserStyle | gdi::PsEndcapFlat | gdi::PsJoinMiter);
    EXPECT_EQ(u32(emf, b + 48), 2u); // two entries, in device units
    EXPECT_EQ(u32(emf, b + 52), 8u);
    EXPECT_EQ(u32(emf, b + 56), 4u);
    const auto lines = ofType(emfRecords(emf), emr::Polyline16);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(u32(emf, lines[0].offset + 24), 2u);
    EXPECT_EQ(i16(emf, lines[0].offset + 28), 10);
    EXPECT_EQ(i16(emf, lines[0].offset + 32), 200);
}

TEST(EmfWriter, BrushRecordsForSolidHatchAndTexture) {
    QImage texture(4, 4, QImage::Format_RGB32);
    texture.fill(QColor(1, 2, 3));
    const QByteArray emf = recordEmf(QSizeF(100, 100), [&](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 128, 255));
        p.drawRect(0, 0, 50, 50);
        p.setBrush(QBrush(Qt::red, Qt::CrossPattern));
        p.drawRect(60, 0, 50, 50);
        p.setBrush(QBrush(texture));
        p.drawRect(120, 0, 50, 50);
        p.setBrush(QBrush(Qt::blue, Qt::Dense4Pattern));
        p.drawRect(180, 0, 50, 50);
    });
    checkStructure(emf, QStringLiteral("brushes"));
    const auto records = emfRecords(emf);
    const auto plain = ofType(records, emr::CreateBrushIndirect);
    ASSERT_EQ(plain.size(), 2u);
    EXPECT_EQ(u32(emf, plain[0].offset + 12), gdi::BsSolid);
    EXPECT_EQ(u32(emf, plain[0].offset + 16), 0x00FF8000u);
    EXPECT_EQ(u32(emf, plain[1].offset + 12), gdi::BsHatched);
    EXPECT_EQ(u32(emf, plain[1].offset + 20), gdi::HsCross);
    const auto patterns = ofType(records, emr::CreateDibPatternBrushPt);
    ASSERT_EQ(patterns.size(), 2u);
    const qsizetype t = patterns[0].offset;
    const uint32_t bmi = u32(emf, t + 16);
    EXPECT_EQ(i32(emf, t + bmi + 4), 4);   // width
    EXPECT_EQ(u16(emf, t + bmi + 14), 24); // bits per pixel
    const uint32_t bits = u32(emf, t + 24);
    EXPECT_EQ(static_cast<uint8_t>(emf[t + bits]), 3); // blue of the first pixel
    EXPECT_EQ(static_cast<uint8_t>(emf[t + bits + 2]), 1);
    // The null pen is a stock object.
    bool nullPen = false;
    for (const EmfRecord& r : ofType(records, emr::SelectObject))
        nullPen = nullPen || u32(emf, r.offset + 8) == (0x80000000u | gdi::NullPen);
    EXPECT_TRUE(nullPen);
}

TEST(EmfWriter, TextIsExtTextOutWithItsFont) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPixelSize(20);
        font.setBold(true);
        p.setFont(font);
        p.setPen(QColor(0, 0, 255));
        p.drawText(QPointF(30, 60), QStringLiteral("Wall 3.5m"));
        p.translate(200, 200);
        p.rotate(-90);
        p.drawText(QPointF(0, 0), QStringLiteral("Up"));
    });
    checkStructure(emf, QStringLiteral("text"));
    const auto records = emfRecords(emf);
    const auto fonts = ofType(records, emr::ExtCreateFontIndirectW);
    ASSERT_EQ(fonts.size(), 2u);
    const qsizetype f = fonts[0].offset + 12;
    EXPECT_EQ(i32(emf, f), -20);
    EXPECT_EQ(i32(emf, f + 8), 0);
    EXPECT_EQ(i32(emf, f + 16), 700);
    QString face;
    for (int i = 0; i < 32 && u16(emf, f + 28 + 2 * i) != 0; ++i)
        face.append(QChar(u16(emf, f + 28 + 2 * i)));
    EXPECT_EQ(face, QStringLiteral("Liberation Sans"));
    EXPECT_EQ(i32(emf, fonts[1].offset + 12 + 8), 900); // turned a quarter counter-clockwise
    const auto texts = ofType(records, emr::ExtTextOutW);
    ASSERT_EQ(texts.size(), 2u);
    const qsizetype t = texts[0].offset;
    EXPECT_EQ(i32(emf, t + 36), 30);
    EXPECT_EQ(i32(emf, t + 40), 60);
    EXPECT_EQ(u32(emf, t + 44), 9u);
    QString text;
    for (int i = 0; i < 9; ++i)
        text.append(QChar(u16(emf, t + u32(emf, t + 48) + 2 * i)));
    EXPECT_EQ(text, QStringLiteral("Wall 3.5m"));
    EXPECT_NE(u32(emf, t + 72), 0u); // advances given
    EXPECT_EQ(ofType(records, emr::SetTextColor).size(), 1u);
    const QByteArray svg = emfToSvg(emf, QStringLiteral("text-svg"));
    EXPECT_TRUE(svg.contains("Wall 3.5m"));
}

TEST(EmfWriter, TransformsAreAppliedToCoordinatesAndPenWidths) {
    QImage image(8, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QByteArray emf = recordEmf(QSizeF(100, 100), [&](QPainter& p) {
        p.translate(100, 50);
        p.scale(2, 2);
        p.setPen(QPen(Qt::black, 3));
        p.drawLine(0, 0, 10, 0);
        p.drawImage(QRectF(0, 10, 8, 4), image);
        p.rotate(30);
        p.drawImage(QRectF(0, 10, 8, 4), image);
    });
    checkStructure(emf, QStringLiteral("transforms"));
    const auto records = emfRecords(emf);
    const EmfRecord line = ofType(records, emr::Polyline16).front();
    EXPECT_EQ(i16(emf, line.offset + 28), 100);
    EXPECT_EQ(i16(emf, line.offset + 30), 50);
    EXPECT_EQ(i16(emf, line.offset + 32), 120);
    const EmfRecord pen = ofType(records, emr::ExtCreatePen).front();
    EXPECT_EQ(u32(emf, pen.offset + 32), 6u);
    const auto images = ofType(records, emr::StretchDiBits);
    ASSERT_EQ(images.size(), 2u);
    EXPECT_EQ(i32(emf, images[0].offset + 24), 100);
    EXPECT_EQ(i32(emf, images[0].offset + 28), 70);
    EXPECT_EQ(i32(emf, images[0].offset + 72), 16);
    EXPECT_EQ(i32(emf, images[0].offset + 76), 8);
    EXPECT_EQ(ofType(records, emr::SetWorldTransform).size(), 1u);
    EXPECT_EQ(ofType(records, emr::ModifyWorldTransform).size(), 1u);
}

TEST(EmfWriter, ClippingIsARegionRecordAndResets) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setClipRect(QRect(10, 20, 100, 50));
        p.drawLine(0, 0, 300, 300);
        p.setClipping(false);
        p.drawLine(0, 300, 300, 0);
    });
    checkStructure(emf, QStringLiteral("clip"));
    const auto clips = ofType(emfRecords(emf), emr::ExtSelectClipRgn);
    ASSERT_GE(clips.size(), 2u);
    const qsizetype c = clips[0].offset;
    EXPECT_EQ(u32(emf, c + 12), gdi::RgnCopy);
    EXPECT_EQ(u32(emf, c + 24), 1u); // one rectangle
    EXPECT_EQ(i32(emf, c + 48), 10);
    EXPECT_EQ(i32(emf, c + 52), 20);
    EXPECT_EQ(i32(emf, c + 56), 110);
    EXPECT_EQ(i32(emf, c + 60), 70);
    EXPECT_EQ(u32(emf, clips[1].offset + 8), 0u); // no region: the clip is gone
}

TEST(EmfWriter, PathsKeepTheirBeziersArcsAndPies) {
    const QByteArray emf = recordEmf(QSizeF(100, 100), [](QPainter& p) {
        p.setBrush(Qt::yellow);
        p.drawPie(QRect(10, 10, 100, 100), 30 * 16, 120 * 16);
        p.drawArc(QRect(150, 10, 100, 60), 0, 270 * 16);
        p.drawRoundedRect(QRectF(10, 150, 120, 60), 10, 10);
    });
    checkStructure(emf, QStringLiteral("paths"));
    const auto records = emfRecords(emf);
    EXPECT_EQ(ofType(records, emr::BeginPath).size(), 3u);
    EXPECT_EQ(ofType(records, emr::EndPath).size(), 3u);
    EXPECT_GE(ofType(records, emr::PolyBezierTo16).size(), 3u);
    EXPECT_EQ(ofType(records, emr::StrokeAndFillPath).size(), 2u); // pie and rounded rectangle
    EXPECT_EQ(ofType(records, emr::StrokePath).size(), 1u);        // the arc is not filled
    EXPECT_EQ(ofType(records, emr::CloseFigure).size(), 2u);
}

TEST(EmfWriter, LargeCoordinatesUse32BitRecords) {
    const QByteArray emf = recordEmf(QSizeF(20000, 100), [](QPainter& p) { p.drawLine(0, 0, 40000, 10); });
    checkStructure(emf, QStringLiteral("large"));
    const auto records = emfRecords(emf);
    ASSERT_EQ(ofType(records, emr::Polyline).size(), 1u);
    EXPECT_EQ(i32(emf, ofType(records, emr::Polyline).front().offset + 36), 40000);
    EXPECT_EQ(i32(emf, BoundsAt + 8), 40000);
}

TEST(EmfWriter, SavesAtomicallyAndReports75WhenItCannot) {
    EmfPaintDevice device(QSizeF(10, 10));
    {
        QPainter p(&device);
        p.drawLine(0, 0, 5, 5);
    }
    const QString path = scratchDir() + QStringLiteral("/saved.emf");
    device.save(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), device.toBytes());
    try {
        device.save(scratchDir() + QStringLiteral("/missing-folder/x.emf"));
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 75);
    }
}

TEST(EmfWriter, ShapesDrawingIsReadByEmf2Svg) {
    const QByteArray emf = recordEmf(QSizeF(110, 110), paintShapes);
    checkStructure(emf, QStringLiteral("shapes"));
    const QByteArray svg = emfToSvg(emf, QStringLiteral("shapes-svg"));
    EXPECT_TRUE(svg.contains("<ellipse"));
    EXPECT_TRUE(svg.contains("#FFDC00"));
}
