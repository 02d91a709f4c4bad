#pragma once

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <vector>

namespace tessaly::test {

// One record of an enhanced metafile as the tests read it, independently of
// the module's own reader.
struct EmfRecord {
    uint32_t type;
    uint32_t size;
    qsizetype offset;
};
std::vector<EmfRecord> emfRecords(const QByteArray& emf);

// One record of a WMF (without placeable header).
struct WmfRecord {
    uint16_t function;
    uint32_t words;
    qsizetype offset;
};
std::vector<WmfRecord> wmfRecords(const QByteArray& wmf, qsizetype start = 0);

uint32_t u32(const QByteArray& b, qsizetype at);
int32_t i32(const QByteArray& b, qsizetype at);
uint16_t u16(const QByteArray& b, qsizetype at);
int16_t i16(const QByteArray& b, qsizetype at);

// Paints with a QPainter onto an EmfPaintDevice and returns the file.
QByteArray recordEmf(QSizeF frameMm, const std::function<void(QPainter&)>& paint, int dpi = 96);

// The drawing most tests use: filled and outlined shapes, no text.
void paintShapes(QPainter& painter);
// The same without the ellipse, for renderers that leave ellipses unfilled.
void paintShapesWithoutEllipse(QPainter& painter);

// A scratch folder for the files of one test binary.
QString scratchDir();
QString writeScratch(const QString& name, const QByteArray& bytes);
// The bytes of a file; empty when it cannot be read.
QByteArray readFile(const QString& path);
// Files the fuzz targets start from, written by the tests.
void addToCorpus(const QString& kind, const QString& name, const QByteArray& bytes);

// Runs an external program; returns its exit code (-1 when it did not run).
int runTool(const QString& program, const QStringList& arguments, QByteArray* output = nullptr);

// Converts an EMF with emf2svg-conv; returns the SVG text (empty on failure).
QByteArray emfToSvg(const QByteArray& emf, const QString& name);
// Converts a WMF with libwmf's wmf2svg; returns the SVG text (empty on failure).
QByteArray wmfToSvg(const QByteArray& wmf, const QString& name);

// Renders a WMF with libwmf's wmf2gd, stretched to `size`.
QImage wmfToPng(const QByteArray& wmf, const QString& name, const QSize& size);
QStringList libwmfFontArguments();

// Share of pixels whose colour differs by more than `channelTolerance` in
// any channel. Images of different sizes differ everywhere.
double mismatchShare(const QImage& a, const QImage& b, int channelTolerance);
// Compares after letting each pixel match any pixel within `radius` of it,
// so that edges placed one pixel apart by two renderers do not count.
double mismatchShareNear(const QImage& a, const QImage& b, int channelTolerance, int radius);

} // namespace tessaly::test
