#include "TiffWriter.h"

#include "core/runtime/RuntimeError.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace tessaly::reports {

namespace {
// Rows of a strip of Deflate-compressed pages: strips of about this many bytes.
constexpr int StripBytes = 256 * 1024;
// The Deflate level: fast, and most of the gain of the slower levels on line work.
constexpr int DeflateLevel = 4;
// The byte of a grey pixel below which a black-and-white page's pixel is black.
constexpr int BlackBelow = 128;
const char* const Software = "Tessaly";
} // namespace

// libtiff's file operations on the writer's memory.
struct TiffMemoryIo {
    static TiffWriter& of(thandle_t handle) { return *static_cast<TiffWriter*>(handle); }

    static tmsize_t read(thandle_t handle, void* buffer, tmsize_t size) {
        TiffWriter& w = of(handle);
        const qint64 available = std::max<qint64>(0, w.data_.size() - w.position_);
        const qint64 n = std::min<qint64>(available, size);
        if (n > 0)
            std::memcpy(buffer, w.data_.constData() + w.position_, static_cast<size_t>(n));
        w.position_ += n;
        return static_cast<tmsize_t>(n);
    }
    static tmsize_t write(thandle_t handle, void* buffer, tmsize_t size) {
        TiffWriter& w = of(handle);
        const qint64 end = w.position_ + size;
        if (end > w.data_.size())
            w.data_.resize(end, '\0');
        std::memcpy(w.data_.data() + w.position_, buffer, static_cast<size_t>(size));
        w.position_ = end;
        return size;
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        TiffWriter& w = of(handle);
        qint64 base = 0;
        if (whence == SEEK_CUR)
            base = w.position_;
        else if (whence == SEEK_END)
            base = w.data_.size();
        w.position_ = base + static_cast<qint64>(offset);
        return static_cast<toff_t>(w.position_);
    }
    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t handle) { return static_cast<toff_t>(of(handle).data_.size()); }
    static int map(thandle_t, void**, toff_t*) { return 0; }
    static void unmap(thandle_t, void*, toff_t) {}
};

PageColours classify(const QImage& image) {
    bool onlyBlackAndWhite = true;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = row[x] | 0xFF000000u;
            if (p == 0xFF000000u || p == 0xFFFFFFFFu)
                continue;
            if (qRed(p) != qGreen(p) || qGreen(p) != qBlue(p))
                return PageColours::Colour;
            onlyBlackAndWhite = false;
        }
    }
    return onlyBlackAndWhite ? PageColours::BlackAndWhite : PageColours::Grey;
}

TiffWriter::TiffWriter(QString documentName) : documentName_(std::move(documentName)) {
    tiff_ = TIFFClientOpen("Tessaly export", "w", this, TiffMemoryIo::read, TiffMemoryIo::write,
                           TiffMemoryIo::seek, TiffMemoryIo::close, TiffMemoryIo::size, TiffMemoryIo::map,
                           TiffMemoryIo::unmap);
    if (!tiff_)
        fail(QStringLiteral("the TIFF file cannot be started"));
}

TiffWriter::~TiffWriter() {
    if (tiff_)
        TIFFClose(tiff_);
}

void TiffWriter::fail(const QString& what) const {
    raiseError(err::PdfInUse, QStringLiteral("TIFF export: %1").arg(what));
}

void TiffWriter::addPage(const QImage& image, PageColours colours, double dpi, int pageNumber,
                         int pageCount) {
    TIFF* t = tiff_;
    TIFFSetField(t, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(image.width()));
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(image.height()));
    TIFFSetField(t, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(t, TIFFTAG_XRESOLUTION, static_cast<float>(dpi));
    TIFFSetField(t, TIFFTAG_YRESOLUTION, static_cast<float>(dpi));
    TIFFSetField(t, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(t, TIFFTAG_PAGENUMBER, static_cast<uint16_t>(pageNumber), static_cast<uint16_t>(pageCount));
    TIFFSetField(t, TIFFTAG_SOFTWARE, Software);
    if (!documentName_.isEmpty())
        TIFFSetField(t, TIFFTAG_DOCUMENTNAME, documentName_.toUtf8().constData());
    switch (colours) {
    case PageColours::BlackAndWhite:
        writeBilevel(image);
        break;
    case PageColours::Grey:
    case PageColours::Colour:
        writeDeflated(image, colours);
        break;
    }
    if (!TIFFWriteDirectory(t))
        fail(QStringLiteral("page %1 cannot be written").arg(pageNumber + 1));
}

void TiffWriter::writeBilevel(const QImage& image) {
    TIFF* t = tiff_;
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(t, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, static_cast<uint32_t>(image.height()));
    std::vector<uint8_t> row(static_cast<size_t>((image.width() + 7) / 8));
    for (int y = 0; y < image.height(); ++y) {
        std::fill(row.begin(), row.end(), 0);
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qGreen(pixels[x]) < BlackBelow) // 1 is black on a white page
                row[static_cast<size_t>(x >> 3)] |= static_cast<uint8_t>(0x80u >> (x & 7));
        if (TIFFWriteScanline(t, row.data(), static_cast<uint32_t>(y), 0) < 0)
            fail(QStringLiteral("a row cannot be written"));
    }
}

void TiffWriter::writeDeflated(const QImage& image, PageColours colours) {
    TIFF* t = tiff_;
    const bool grey = colours == PageColours::Grey;
    const QImage rows = image.convertToFormat(grey ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    const int samples = grey ? 1 : 3;
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, grey ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(t, TIFFTAG_ZIPQUALITY, DeflateLevel);
    TIFFSetField(t, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP,
                 static_cast<uint32_t>(std::max(1, StripBytes / (samples * rows.width()))));
    for (int y = 0; y < rows.height(); ++y)
        if (TIFFWriteScanline(t, const_cast<uchar*>(rows.constScanLine(y)), static_cast<uint32_t>(y), 0) < 0)
            fail(QStringLiteral("a row cannot be written"));
}

QByteArray TiffWriter::finish() {
    if (tiff_) {
        TIFFClose(tiff_);
        tiff_ = nullptr;
    }
    return data_;
}

} // namespace tessaly::reports
