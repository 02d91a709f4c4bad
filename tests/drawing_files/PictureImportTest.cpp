// Import Picture From File: every picture format the loader takes, the
// placing of the picture by its size in 0.01 mm read as pixels, and files
// that are no pictures: the box, AutoRedraw left off, nothing added.
#include "drawing_files/PictureImport.h"
#include "DrawingFilesFixture.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <cmath>

namespace tessaly::testing {
namespace {

const QString Refused =
    QStringLiteral("msgbox:Tessaly Cannot Import The Image Type, Please convert it prior to import...");
const QString ImportFilter =
    QStringLiteral("open:Bitmap files (*.bmp)|*.bmp|JPEG files (*.jpg)|*.jpg|GIF files "
                   "(*.gif)|*.gif|Metafiles (*.wmf;*.emf)|*.wmf;*.emf|All Files (*.*)|*.*");

// A red GIF of 2 by 2 pixels.
const QByteArray TinyGif = QByteArray::fromHex(
    "47494638396102000200f00000ff000000000021f90400000000002c00000000020002000002028451003b");

// A bitmap file header of `width` by `height` 24-bit pixels followed by a
// few bytes only: the size is claimed, the pixels are not there.
QByteArray bitmapHeader(quint32 width, quint32 height) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const quint32 pixels = static_cast<quint32>((static_cast<quint64>(width) * height * 3) & 0xFFFFFFFFu);
    out.writeRawData("BM", 2);
    out << quint32(54 + pixels) << quint16(0) << quint16(0) << quint32(54);
    out << quint32(40) << qint32(width) << qint32(height) << quint16(1) << quint16(24) << quint32(0) << pixels
        << qint32(2835) << qint32(2835) << quint32(0) << quint32(0);
    bytes.append(100, '\0');
    return bytes;
}

class PictureImport : public DrawingFilesFixture {
protected:
    QString imageFile(const char* name, const char* format, QSize size = QSize(64, 48)) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(40, 120, 200));
        image.setDotsPerMeterX(3780); // 96 dpi
        image.setDotsPerMeterY(3780);
        const QString file = path(QString::fromLatin1(name));
        EXPECT_TRUE(image.save(file, format));
        return file;
    }
    void import(const QString& file) {
        port.queueOpen(file);
        click("mnuFile_Import");
    }
    // Reads a shape's edge in screen pixels, as the import placed it.
    int pixelEdge(int index, const char* edge) {
        const AutoPtr canvas = main.canvas1();
        canvas->set(QStringLiteral("CoordinateMode"), 3);
        const AutoPtr shape = toObject(app->gShapeList->get(QStringLiteral("Item"), {index}));
        const int value = shape->get(QString::fromLatin1(edge)).toInt();
        canvas->set(QStringLiteral("CoordinateMode"), 1);
        return value;
    }
    int pictureWidth(const QString& file) {
        return drawing_files::LoadPicture(file)->get(QStringLiteral("Width")).toInt();
    }
};

TEST_F(PictureImport, EveryPictureFormatIsPlacedAtTheTopLeftBySizeInHiMetricReadAsPixels) {
    QStringList files{imageFile("a.bmp", "BMP"), imageFile("b.jpg", "JPEG"), imageFile("c.png", "PNG")};
    write(path(QStringLiteral("d.gif")), TinyGif);
    files << path(QStringLiteral("d.gif"));
    engine().saveFile(path(QStringLiteral("e.emf")), 2);
    files << path(QStringLiteral("e.emf"));
    QVariantList convert{path(QStringLiteral("e.emf")), path(QStringLiteral("f.wmf"))};
    app->call(QStringLiteral("ConvertEMFtoWMF"), convert);
    files << path(QStringLiteral("f.wmf"));
    int index = 0;
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        events.clear();
        import(file);
        ++index;
        ASSERT_EQ(shapeCount(), index) << events.join(QLatin1Char('|')).toStdString();
        EXPECT_EQ(events, QStringList{ImportFilter});
        const int width = pictureWidth(file);
        const int height = drawing_files::LoadPicture(file)->get(QStringLiteral("Height")).toInt();
        EXPECT_EQ(pixelEdge(index, "Left"), 0);
        EXPECT_EQ(pixelEdge(index, "Top"), 0);
        EXPECT_NEAR(pixelEdge(index, "Right"), width, 1);
        EXPECT_NEAR(pixelEdge(index, "Bottom"), height, 1);
        EXPECT_EQ(main.DrawingMode, 5);
        EXPECT_EQ(engine().coordinateMode(), 1);
        EXPECT_TRUE(engine().autoRedraw());
    }
    // 64 pixels at 96 dpi are 1693 hundredths of a millimetre.
    EXPECT_EQ(pictureWidth(files[0]), 1693);
    EXPECT_EQ(pictureWidth(files[3]), 53); // the GIF: 2 pixels
}

TEST_F(PictureImport, APictureLargerThanThePageOverhangsItFromTheTopLeft) {
    import(imageFile("wide.png", "PNG", QSize(800, 600)));
    ASSERT_EQ(shapeCount(), 1);
    const QVariantMap shape = engine().describeShapes().constFirst().toMap();
    EXPECT_EQ(shape[QStringLiteral("left")].toInt(), 0);
    EXPECT_EQ(shape[QStringLiteral("top")].toInt(), 0);
    EXPECT_GT(shape[QStringLiteral("right")].toInt(), engine().drawing().state().page.width);
    EXPECT_GT(shape[QStringLiteral("bottom")].toInt(), engine().drawing().state().page.height);
}

TEST_F(PictureImport, TheCoordinateModeInForceIsPutBack) {
    engine().setCoordinateMode(3);
    import(imageFile("a.bmp", "BMP"));
    EXPECT_EQ(shapeCount(), 1);
    EXPECT_EQ(engine().coordinateMode(), 3);
}

TEST_F(PictureImport, ACancelledDialogTouchesNothing) {
    main.DrawingMode = 3;
    events.clear();
    port.queueOpen(std::nullopt);
    click("mnuFile_Import");
    EXPECT_EQ(events, QStringList{ImportFilter});
    EXPECT_TRUE(engine().autoRedraw());
    EXPECT_EQ(main.DrawingMode, 3);
    EXPECT_EQ(shapeCount(), 0);
}

TEST_F(PictureImport, FilesThatAreNoPicturesGive481AndLeaveAutoRedrawOff) {
    const QByteArray png = bytesOf(imageFile("whole.png", "PNG", QSize(300, 200)));
    write(path(QStringLiteral("damaged.png")), png.left(png.size() / 3));
    write(path(QStringLiteral("zero.bmp")), QByteArray());
    write(path(QStringLiteral("text.bmp")), QByteArrayLiteral("Kitchen 4200 x 3600\nHall 1800 x 5000\n"));
    write(path(QStringLiteral("huge.bmp")), bitmapHeader(40000, 40000));
    write(path(QStringLiteral("large.bmp")), bitmapHeader(20000, 20000));
    write(path(QStringLiteral("drawing.pdr")), bytesOf(path(QStringLiteral("Templates/Default.pdr"))));
    QByteArray emf = bytesOf([&] {
        engine().saveFile(path(QStringLiteral("page.emf")), 2);
        return path(QStringLiteral("page.emf"));
    }());
    write(path(QStringLiteral("cut.emf")), emf.left(emf.size() / 2));
    for (const char* name :
         {"damaged.png", "zero.bmp", "text.bmp", "huge.bmp", "large.bmp", "drawing.pdr", "cut.emf"}) {
        SCOPED_TRACE(name);
        engine().setAutoRedraw(true);
        main.DrawingMode = 3;
        events.clear();
        import(path(QString::fromLatin1(name)));
        ASSERT_EQ(events.size(), 2) << events.join(QLatin1Char('|')).toStdString();
        EXPECT_EQ(events[1], Refused);
        EXPECT_FALSE(engine().autoRedraw());
        EXPECT_EQ(main.DrawingMode, 3);
        EXPECT_EQ(engine().coordinateMode(), 1);
        EXPECT_EQ(shapeCount(), 0);
    }
}

TEST_F(PictureImport, TheRefusalBoxHasItsCaptionAndTheInformationIcon) {
    write(path(QStringLiteral("text.bmp")), QByteArrayLiteral("no picture"));
    std::vector<QJsonObject> boxes;
    port.onEvent = [&](const QJsonObject& e) {
        if (e[QStringLiteral("event")].toString() == QLatin1String("msgbox"))
            boxes.push_back(e);
    };
    import(path(QStringLiteral("text.bmp")));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0][QStringLiteral("title")].toString(), QStringLiteral("Importing and external file"));
    EXPECT_EQ(boxes[0][QStringLiteral("flags")].toInt(), mb::Information);
}

TEST_F(PictureImport, AMissingFilePassesWithoutAWordAndLeavesAutoRedrawOff) {
    events.clear();
    import(path(QStringLiteral("nowhere.bmp")));
    EXPECT_EQ(events, QStringList{ImportFilter});
    EXPECT_FALSE(engine().autoRedraw());
    EXPECT_EQ(shapeCount(), 0);
}

TEST_F(PictureImport, TheLoaderGivesTheSizeInHiMetric) {
    const AutoPtr picture = drawing_files::LoadPicture(imageFile("p.png", "PNG", QSize(96, 192)));
    // 3780 dots a metre is a shade over 96 dpi.
    EXPECT_NEAR(picture->get(QStringLiteral("Width")).toInt(), 2540, 1);
    EXPECT_NEAR(picture->get(QStringLiteral("Height")).toInt(), 5080, 1);
    try {
        drawing_files::LoadPicture(path(QStringLiteral("nowhere.png")));
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::FileNotFound);
    }
}

} // namespace
} // namespace tessaly::testing
