#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

typedef struct tiff TIFF;

namespace tessaly::reports {

// What a rendered page holds, which decides how it is stored.
enum class PageColours {
    BlackAndWhite, // black on white: 1 bit, CCITT Group 4; pixels darker than mid-grey are black
    Grey,          // shades of grey: 8 bits, Deflate
    Colour,        // anything else: 8 bits each of red, green and blue, Deflate
};

// The colours of an image of format RGB32: black and white when it has no other pixel.
PageColours classify(const QImage& image);

// A multi-page TIFF written with libtiff into memory, one directory a page,
// each with its resolution, page number and the program's name.
class TiffWriter {
public:
    explicit TiffWriter(QString documentName);
    ~TiffWriter();
    TiffWriter(const TiffWriter&) = delete;
    TiffWriter& operator=(const TiffWriter&) = delete;

    // Adds a page rendered at `dpi` (an RGB32 image), stored as `colours` says.
    // `pageNumber` counts from 0 of `pageCount`. Run-time error 7001 when libtiff fails.
    void addPage(const QImage& image, PageColours colours, double dpi, int pageNumber, int pageCount);
    // Closes the file and returns its bytes.
    QByteArray finish();

private:
    void writeBilevel(const QImage& image);
    // 8-bit grey or 24-bit colour, Deflate-compressed with the horizontal predictor.
    void writeDeflated(const QImage& image, PageColours colours);
    [[noreturn]] void fail(const QString& what) const;

    QString documentName_;
    QByteArray data_;
    qint64 position_ = 0;
    TIFF* tiff_ = nullptr;

    friend struct TiffMemoryIo;
};

} // namespace tessaly::reports
