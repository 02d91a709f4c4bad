#pragma once

#include <QImage>
#include <QMap>
#include <QRect>
#include <QString>
#include <QStringList>

// The independent readers of the exports' files: poppler's pdfinfo,
// pdftotext, pdftoppm and pdfimages, qpdf, libtiff's tiffinfo, librsvg's
// rsvg-convert and ImageMagick's identify. None of them shares code with
// Tessaly's writers.
namespace tessaly::test {

// pdfinfo's fields ("Pages", "Page size", "Creator", ...), trimmed; empty when it fails.
QMap<QString, QString> pdfInfo(const QString& path);
// Whether `qpdf --check` finds the file sound.
bool qpdfCheck(const QString& path, QString* report = nullptr);
// The text of the document as pdftotext reads it.
QString pdfText(const QString& path);
// How many raster images the document holds (pdfimages -list).
int pdfImageCount(const QString& path);
// Page `page` (from 1) rendered by pdftoppm at `dpi`; null when it fails.
QImage pdfPage(const QString& path, int dpi, int page = 1);

// tiffinfo's report; empty when it cannot read the file.
QString tiffInfo(const QString& path);
// The number of directories (pages) tiffinfo lists.
int tiffPageCount(const QString& path);
// Page `page` (from 0) of a TIFF as ImageMagick decodes it; null when it fails.
QImage tiffPage(const QString& path, int page = 0);

// An SVG file rendered by rsvg-convert at its own size; null when it fails.
QImage svgImage(const QString& path);
// "WIDTHxHEIGHT" of an image file as ImageMagick's identify reads it.
QString identifySize(const QString& path);

// The smallest rectangle holding every pixel darker than mid-grey; empty for a blank image.
QRect darkBounds(const QImage& image);

} // namespace tessaly::test
